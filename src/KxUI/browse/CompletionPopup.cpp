#include <KxUI/browse/CompletionPopup_p.h>

#include <KxUI/files/FileTexts_p.h>
#include <KxUI/files/RawName_p.h>

#include <QAbstractListModel>
#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int MostVisible = 10;
constexpr int LeastWidth = 160;
constexpr int MostWidth = 640;
constexpr int Padding = 12; // of the texts, and something for the frame

} // namespace

/** The rows, and a last one that says how many more there are. */
class CompletionPopup::Rows : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    bool show(const CompletionMatches& matches) {
        if (matches.rows == m_matches.rows && matches.count == m_matches.count)
            return false;
        beginResetModel();
        m_matches = matches;
        endResetModel();
        return true;
    }

    int names() const { return static_cast<int>(m_matches.rows.size()); }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : names() + (m_matches.count > names() ? 1 : 0);
    }

    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole || !index.isValid())
            return {};
        if (index.row() >= names())
            return CompletionPopup::tr("%n more", nullptr, m_matches.count - names());
        const CompletionMatches::Row& row = m_matches.rows[static_cast<std::size_t>(index.row())];
        const QString text = FileTexts::name(viewOf(row.name));
        return row.isFolder ? text + QLatin1Char('/') : text;
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override {
        return index.row() < names() ? QAbstractListModel::flags(index) : Qt::NoItemFlags;
    }

private:
    CompletionMatches m_matches;
};

CompletionPopup::CompletionPopup(QWidget* field)
    : QListView(field)
    , m_field(field)
    , m_rows(new Rows(this)) {
    setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setLayoutDirection(Qt::LeftToRight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setUniformItemSizes(true);
    setTextElideMode(Qt::ElideMiddle);
    setMouseTracking(true);
    setModel(m_rows);
    setAccessibleName(tr("Completions"));
}

CompletionPopup::~CompletionPopup() = default;

void CompletionPopup::show(const CompletionMatches& matches, int current) {
    const bool isOther = m_rows->show(matches);
    const QModelIndex index = m_rows->index(current);
    if (isOther || currentIndex() != index) {
        setCurrentIndex(index);
        if (index.isValid())
            scrollTo(index);
        else
            scrollToTop();
    }
    if (isOther || !isVisible())
        place();
    if (!isVisible())
        QListView::show();
    tellCurrent();
}

void CompletionPopup::place() {
    const int rows = std::min(m_rows->rowCount(), MostVisible);
    const int frame = 2 * frameWidth();
    int wanted = LeastWidth;
    for (int row = 0; row < m_rows->rowCount(); ++row) {
        const QString text = m_rows->index(row).data().toString();
        wanted = std::max(wanted, fontMetrics().horizontalAdvance(text));
    }
    if (m_rows->rowCount() > rows)
        wanted += verticalScrollBar()->sizeHint().width();
    const QSize size(std::min(wanted + frame + Padding, std::max(MostWidth, m_field->width())),
                     rows * std::max(1, sizeHintForRow(0)) + frame);
    QRect rect(m_field->mapToGlobal(QPoint(0, m_field->height())), size);
    const QRect screen = m_field->screen()->availableGeometry();
    const int above = m_field->mapToGlobal(QPoint(0, 0)).y() - screen.top();
    if (rect.bottom() > screen.bottom() && above > screen.bottom() - rect.top())
        rect.moveBottom(screen.top() + above - 1);
    rect.moveLeft(std::max(screen.left(), std::min(rect.left(), screen.right() - rect.width())));
    setGeometry(rect);
}

// The focus stays in the field, so that nobody else says which row is chosen.
void CompletionPopup::tellCurrent() {
    if (!QAccessible::isActive() || !currentIndex().isValid())
        return;
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(currentIndex().row());
    QAccessible::updateAccessibility(&event);
}

bool CompletionPopup::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    const bool isWindow = watched == m_field->window();
    const bool goes = (isWindow && (type == QEvent::Move || type == QEvent::Resize ||
                                    type == QEvent::Hide || type == QEvent::WindowDeactivate)) ||
                      (watched == m_field && (type == QEvent::Move || type == QEvent::Hide));
    bool isElsewhere = false;
    if (type == QEvent::MouseButtonPress || type == QEvent::Wheel) {
        const auto* widget = qobject_cast<QWidget*>(watched);
        isElsewhere = widget && widget != m_field && widget != this && !isAncestorOf(widget) &&
                      !m_field->isAncestorOf(widget);
    }
    if ((goes || isElsewhere) && onLeft)
        onLeft();
    return false;
}

void CompletionPopup::mouseMoveEvent(QMouseEvent*) {} // a row is chosen by a click only

void CompletionPopup::mouseReleaseEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->pos());
    if (event->button() != Qt::LeftButton || !index.isValid() || index.row() >= m_rows->names())
        return;
    const auto chosen = onChosen;
    if (chosen)
        chosen(index.row());
}

void CompletionPopup::showEvent(QShowEvent* event) {
    QListView::showEvent(event);
    qApp->installEventFilter(this);
}

void CompletionPopup::hideEvent(QHideEvent* event) {
    qApp->removeEventFilter(this);
    QListView::hideEvent(event);
}

} // namespace Kestrel::UI
