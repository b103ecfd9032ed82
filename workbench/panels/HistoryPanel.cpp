#include "panels/HistoryPanel.h"

#include "play/Session.h"

#include <KxUI/undo/MultiStackUndoView.h>

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
    , m_view(new UI::MultiStackUndoView) {
    setObjectName(QStringLiteral("HistoryPanel"));
    m_view->setAccessibleName(tr("History"));
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setItemDelegate(new StepDelegate(session->grades(), m_view));
    m_view->setGroup(session->grades()->group());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
}

} // namespace Kestrel::Workbench
