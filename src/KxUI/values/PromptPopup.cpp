#include <KxUI/values/PromptPopup_p.h>

#include <KxUI/kit/SearchPattern.h>
#include <KxUI/values/SearchField.h>

#include <QGuiApplication>
#include <QListView>
#include <QMouseEvent>
#include <QPointer>
#include <QScreen>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int MostRows = 16;

} // namespace

/** The items that the pattern finds. */
class PromptPopup::Rows : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setPattern(const SearchPattern& pattern) {
        m_pattern = pattern;
        invalidateFilter();
    }
    void setRoot(const QModelIndex& root) { m_root = root; }

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
        if (parent != m_root) // what lies around the items
            return true;
        return m_pattern.matches(
            sourceModel()->index(row, filterKeyColumn(), parent).data().toString());
    }

private:
    SearchPattern m_pattern;
    QPersistentModelIndex m_root;
};

PromptPopup::PromptPopup(QAbstractItemModel* items, const QModelIndex& root, int column,
                         QWidget* parent)
    : QFrame(parent, Qt::Popup)
    , m_rows(new Rows(this))
    , m_field(new SearchField)
    , m_list(new QListView) {
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    m_rows->setRoot(root);
    m_rows->setFilterKeyColumn(column);
    m_rows->setSourceModel(items);
    m_list->setModel(m_rows);
    m_list->setRootIndex(m_rows->mapFromSource(root));
    m_list->setModelColumn(column);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setMouseTracking(true);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setUniformItemSizes(true);
    m_field->setDelay(0);
    m_field->setHistoryEnabled(false);
    setFocusProxy(m_field);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    layout->addWidget(m_field);
    layout->addWidget(m_list);

    connect(m_field, &SearchField::searchChanged, this, &PromptPopup::search);
    connect(m_field, &SearchField::nextWanted, this, [this] { choose(m_list->currentIndex()); });
    connect(m_field, &SearchField::leaveWanted, this,
            [this](Qt::Key key) { step(key == Qt::Key_Down ? 1 : -1); });
    connect(m_list, &QListView::clicked, this, &PromptPopup::choose);
    connect(m_list, &QListView::entered, m_list, &QListView::setCurrentIndex);
}

void PromptPopup::open(int row) {
    const QWidget* const box = parentWidget();
    const QModelIndex root = m_list->rootIndex();
    const int rows = std::clamp(m_rows->rowCount(root), 1, MostRows);
    const int rowHeight = std::max(1, m_list->sizeHintForRow(0));
    m_list->setFixedHeight(rows * rowHeight + 2 * m_list->frameWidth());
    setFixedWidth(std::max(box->width(), std::min(2 * box->width(), sizeHint().width())));
    adjustSize();
    QPoint place = box->mapToGlobal(QPoint(0, box->height()));
    if (const QScreen* screen = QGuiApplication::screenAt(place)) {
        const QRect free = screen->availableGeometry();
        if (place.y() + height() > free.bottom())
            place.setY(box->mapToGlobal(QPoint()).y() - height());
        place.setX(
            std::clamp(place.x(), free.left(), std::max(free.left(), free.right() - width() + 1)));
    }
    move(place);
    show();
    m_field->setFocus(Qt::PopupFocusReason);
    const QModelIndex sourceRoot = m_rows->mapToSource(root);
    const QModelIndex marked =
        m_rows->mapFromSource(m_rows->sourceModel()->index(row, m_list->modelColumn(), sourceRoot));
    m_list->setCurrentIndex(marked);
    m_list->scrollTo(marked, QAbstractItemView::PositionAtCenter);
}

void PromptPopup::search(const QString& text) {
    m_rows->setPattern(SearchPattern(text));
    m_field->setMatches(0, m_rows->rowCount(m_list->rootIndex()));
    if (!m_list->currentIndex().isValid())
        step(1);
}

void PromptPopup::step(int rows) {
    const QModelIndex root = m_list->rootIndex();
    const int count = m_rows->rowCount(root);
    int row = m_list->currentIndex().isValid() ? m_list->currentIndex().row() : -1;
    if (row < 0 && rows < 0)
        row = count;
    for (row += rows; row >= 0 && row < count; row += rows) {
        const QModelIndex index = m_rows->index(row, m_list->modelColumn(), root);
        if (index.flags().testFlag(Qt::ItemIsEnabled)) {
            m_list->setCurrentIndex(index);
            return;
        }
    }
}

void PromptPopup::choose(const QModelIndex& shown) {
    if (!shown.isValid() || !shown.flags().testFlag(Qt::ItemIsEnabled))
        return;
    const int row = m_rows->mapToSource(shown).row();
    const QPointer<PromptPopup> alive(this);
    close();
    if (alive) // deleted later
        Q_EMIT chosen(row);
}

void PromptPopup::mousePressEvent(QMouseEvent* event) {
    // The press on the box that closes its list must not open it again.
    const QWidget* const box = parentWidget();
    const bool onBox = box->rect().contains(box->mapFromGlobal(mapToGlobal(event->pos())));
    setAttribute(Qt::WA_NoMouseReplay, onBox);
    QFrame::mousePressEvent(event);
}

} // namespace Kestrel::UI
