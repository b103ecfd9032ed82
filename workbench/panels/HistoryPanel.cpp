#include "panels/HistoryPanel.h"

#include "play/Session.h"

#include <KxUI/undo/MultiStackUndoView.h>
#include <KxUI/values/SearchField.h>

#include <QApplication>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

/** Writes a step's text, and its sequence dimmed at the right. */
class StepDelegate : public QStyledItemDelegate {
public:
    StepDelegate(GradeHistory* grades, QObject* parent)
        : QStyledItemDelegate(parent)
        , m_grades(grades) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        const QString text = std::exchange(item.text, QString());
        const QStyle* style = item.widget ? item.widget->style() : QApplication::style();
        style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

        const bool selected = item.state.testFlag(QStyle::State_Selected);
        const bool undone = index.row() > m_grades->group()->index();
        const QColor bright =
            item.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
        const QColor dimmed =
            selected ? bright : item.palette.color(QPalette::Disabled, QPalette::Text);
        const QRect line = item.rect.adjusted(sideMargin, 0, -sideMargin, 0);
        const QFontMetrics& metrics = item.fontMetrics;
        painter->save();
        painter->setFont(item.font);
        painter->setPen(undone ? dimmed : bright);
        painter->drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                          metrics.elidedText(text, Qt::ElideRight, line.width()));
        const int room = line.width() - metrics.horizontalAdvance(text) - 2 * sideMargin;
        if (room > metrics.averageCharWidth() * 4) {
            painter->setPen(dimmed);
            painter->drawText(
                line, Qt::AlignRight | Qt::AlignVCenter,
                metrics.elidedText(m_grades->titleOf(index.row() - 1), Qt::ElideMiddle, room));
        }
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QSize hint = QStyledItemDelegate::sizeHint(option, index);
        return {hint.width(), std::max(hint.height(), option.fontMetrics.height() + 6)};
    }

private:
    static constexpr int sideMargin = 8;

    GradeHistory* m_grades;
};

} // namespace

HistoryPanel::HistoryPanel(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_grades(session->grades())
    , m_search(new UI::SearchField)
    , m_view(new UI::MultiStackUndoView) {
    setObjectName(QStringLiteral("HistoryPanel"));
    m_view->setAccessibleName(tr("History"));
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setItemDelegate(new StepDelegate(session->grades(), m_view));
    m_view->setGroup(session->grades()->group());
    m_search->setPlaceholderText(tr("Search edits"));
    connect(m_search, &UI::SearchField::searchChanged, this, &HistoryPanel::search);
    connect(m_search, &UI::SearchField::leaveWanted, m_view, [this] { m_view->setFocus(); });
    const QAbstractItemModel* model = m_view->model();
    connect(model, &QAbstractItemModel::rowsInserted, this, &HistoryPanel::showMatches);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &HistoryPanel::showMatches);
    connect(model, &QAbstractItemModel::dataChanged, this, &HistoryPanel::showMatches);
    connect(model, &QAbstractItemModel::modelReset, this, &HistoryPanel::showMatches);

    auto* top = new QVBoxLayout;
    top->setContentsMargins(4, 4, 4, 4);
    top->addWidget(m_search);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(m_view);
}

void HistoryPanel::search(const QString& words) {
    const bool wasEmpty = m_pattern.isEmpty();
    m_pattern = UI::SearchPattern(words);
    if (!wasEmpty && m_pattern.isEmpty()) {
        for (int row = 0; row < m_view->model()->rowCount(); ++row)
            m_view->setRowHidden(row, false);
    }
    showMatches();
}

void HistoryPanel::showMatches() {
    if (m_pattern.isEmpty()) {
        m_search->setMatches(0, -1);
        return;
    }
    const QAbstractItemModel* model = m_view->model();
    int count = 0;
    // The first row is the state before the first edit: there is always a way back to it.
    for (int row = 1; row < model->rowCount(); ++row) {
        const QString text =
            model->index(row, 0).data().toString() + QLatin1Char(' ') + m_grades->titleOf(row - 1);
        const bool matches = m_pattern.matches(text);
        m_view->setRowHidden(row, !matches);
        count += int(matches);
    }
    m_search->setMatches(0, count);
}

} // namespace Kestrel::Workbench
