#include <KxUI/picker/SwatchGrid.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/QtCompat_p.h>
#include <KxUI/kit/RefusalFlash_p.h>
#include <KxUI/picker/ColorMime_p.h>
#include <KxUI/picker/SwatchGridAccessible_p.h>
#include <KxUI/picker/SwatchGrid_p.h>
#include <KxUI/picker/SwatchModel.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QDragMoveEvent>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int NameWidth = 140;

/** Gives a name more room than its square has. */
class NameDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex&) const override {
        auto* const field = new QLineEdit(parent);
        field->setPlaceholderText(SwatchGrid::tr("Name"));
        return field;
    }

    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex&) const override {
        const QRect free = editor->parentWidget()->rect();
        QRect place(option.rect.topLeft(),
                    QSize(std::min(NameWidth, free.width()), editor->sizeHint().height()));
        place.moveTop(option.rect.center().y() - place.height() / 2);
        place.moveLeft(std::clamp(place.left(), 0, std::max(0, free.width() - place.width())));
        place.moveTop(std::clamp(place.top(), 0, std::max(0, free.height() - place.height())));
        editor->setGeometry(place);
    }
};

} // namespace

SwatchGrid::SwatchGrid(QWidget* parent)
    : QAbstractItemView(parent)
    , d(std::make_unique<SwatchGridPrivate>(this)) {
    installAccessible<SwatchGridAccessible, SwatchGrid>();
    qRegisterMetaType<ColorValue>();
    setItemDelegate(new NameDelegate(this));
    setSelectionMode(SingleSelection);
    setEditTriggers(EditKeyPressed);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true);
    viewport()->setAttribute(Qt::WA_Hover);
    connect(this, &QAbstractItemView::clicked, this,
            [this](const QModelIndex& index) { d->choose(index); });
}

SwatchGrid::~SwatchGrid() = default;

DisplayTransform SwatchGrid::displayTransform() const {
    return d->display.transform();
}

void SwatchGrid::setDisplayTransform(const DisplayTransform& transform) {
    KXUI_INTERFACE_THREAD(this);
    d->display = DisplayCall(transform);
    d->forget();
}

int SwatchGrid::cellSize() const {
    return d->cell;
}

void SwatchGrid::setCellSize(int pixels) {
    KXUI_INTERFACE_THREAD(this);
    const int limited = std::clamp(pixels, SmallestCell, LargestCell);
    if (std::exchange(d->cell, limited) == limited)
        return;
    updateGeometries();
    viewport()->update();
    Q_EMIT cellSizeChanged(limited);
}

bool SwatchGrid::isReadOnly() const {
    return d->readOnly;
}

void SwatchGrid::setReadOnly(bool readOnly) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->readOnly, readOnly) == readOnly)
        return;
    setEditTriggers(readOnly ? NoEditTriggers : EditKeyPressed);
    viewport()->update();
    Q_EMIT readOnlyChanged(readOnly);
}

ColorValue SwatchGrid::color(int row) const {
    return d->index(row).data(SwatchModel::ColorRole).value<ColorValue>();
}

QRect SwatchGrid::visualRect(const QModelIndex& index) const {
    if (!index.isValid() || index.model() != model())
        return {};
    const QRect cell = d->geometry().cellOf(index.row());
    // What is around the present one goes with it.
    return cell.isNull() ? cell : cell.adjusted(-2, -2, 2, 2).translated(d->toViewport(QPoint()));
}

void SwatchGrid::scrollTo(const QModelIndex& index, ScrollHint hint) {
    const QRect cell = d->geometry().cellOf(index.isValid() ? index.row() : -1);
    if (cell.isNull())
        return;
    const int margin = SwatchGridGeometry::Margin;
    const int top = cell.top() - margin;
    const int bottom = cell.bottom() + 1 + margin - viewport()->height();
    const int now = verticalOffset();
    int to = std::clamp(now, std::min(bottom, top), top);
    if (hint == PositionAtTop)
        to = top;
    else if (hint == PositionAtBottom)
        to = bottom;
    else if (hint == PositionAtCenter)
        to = (top + bottom) / 2;
    verticalScrollBar()->setValue(to);
}

QModelIndex SwatchGrid::indexAt(const QPoint& point) const {
    const int row = d->geometry().cellAt(d->toContents(point));
    return row < 0 ? QModelIndex() : d->index(row);
}

void SwatchGrid::setModel(QAbstractItemModel* model) {
    KXUI_INTERFACE_THREAD(this);
    QAbstractItemView::setModel(model);
    d->follow(model);
}

QSize SwatchGrid::sizeHint() const {
    SwatchGridGeometry grid;
    grid.cell = d->cell;
    const int columns = 8;
    const int rows = 4;
    const int frame = 2 * frameWidth() + 2 * SwatchGridGeometry::Margin - SwatchGridGeometry::Gap;
    const int bar = verticalScrollBar()->sizeHint().width();
    return {columns * grid.pitch() + frame + bar, rows * grid.pitch() + frame};
}

void SwatchGrid::renameCurrent() {
    KXUI_INTERFACE_THREAD(this);
    if (d->canChange() && currentIndex().isValid())
        edit(currentIndex());
}

void SwatchGrid::removeCurrent() {
    KXUI_INTERFACE_THREAD(this);
    const int row = currentIndex().row();
    if (!d->canChange() || row < 0)
        return;
    const QPointer<SwatchGrid> alive(this);
    model()->removeRow(row, rootIndex());
    // The one that came into its place is the next to go.
    if (alive && d->count() > 0)
        setCurrentIndex(d->index(std::min(row, d->count() - 1)));
}

void SwatchGrid::copyCurrent() {
    KXUI_INTERFACE_THREAD(this);
    if (currentIndex().isValid())
        copyColor(color(currentIndex().row()), d->display, currentIndex().data().toString());
}

void SwatchGrid::paste() {
    KXUI_INTERFACE_THREAD(this);
    if (!d->canChange())
        return;
    const QPointer<SwatchGrid> alive(this);
    const std::optional<ColorValue> color = copiedColor(d->display, 1.0F);
    const int row = currentIndex().isValid() ? currentIndex().row() + 1 : d->count();
    if ((!color || !d->add(row, *color, copiedColorName())) && alive)
        RefusalFlash::over(viewport());
}

bool SwatchGrid::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && d->isOwnKey(*static_cast<QKeyEvent*>(event)) &&
        state() != EditingState) {
        event->accept();
        return true;
    }
    return QAbstractItemView::event(event);
}

bool SwatchGrid::viewportEvent(QEvent* event) {
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        d->hover(indexAt(static_cast<QHoverEvent*>(event)->pos()).row());
        break;
    case QEvent::HoverLeave:
        d->hover(-1);
        break;
    default:
        break;
    }
    return QAbstractItemView::viewportEvent(event);
}

void SwatchGrid::changeEvent(QEvent* event) {
    QAbstractItemView::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange || event->type() == QEvent::StyleChange)
        updateGeometries();
    viewport()->update();
}

void SwatchGrid::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    d->paint(painter, event->rect());
}

void SwatchGrid::resizeEvent(QResizeEvent* event) {
    QAbstractItemView::resizeEvent(event);
    updateGeometries();
}

void SwatchGrid::mousePressEvent(QMouseEvent* event) {
    const bool onCell = indexAt(event->pos()).isValid();
    d->pressed.reset();
    if (event->button() == Qt::LeftButton && onCell)
        d->pressed = event->pos();
    QAbstractItemView::mousePressEvent(event);
}

void SwatchGrid::mouseMoveEvent(QMouseEvent* event) {
    if (!d->pressed || !(event->buttons() & Qt::LeftButton) ||
        (event->pos() - *d->pressed).manhattanLength() < QApplication::startDragDistance())
        return;
    d->pressed.reset();
    d->startDrag(); // nothing after it: the grid may be gone
}

void SwatchGrid::mouseReleaseEvent(QMouseEvent* event) {
    d->pressed.reset();
    QAbstractItemView::mouseReleaseEvent(event);
}

void SwatchGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    // Two clicks, as fast as anyone likes.
    mousePressEvent(event);
}

void SwatchGrid::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QAbstractItemView::wheelEvent(event);
        return;
    }
    event->accept();
    constexpr int step = 2;
    setCellSize(d->cell + step * d->notches.add(event->angleDelta().y()));
}

void SwatchGrid::keyPressEvent(QKeyEvent* event) {
    if (!d->pressKey(*event))
        QAbstractItemView::keyPressEvent(event);
}

void SwatchGrid::contextMenuEvent(QContextMenuEvent* event) {
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    d->fillMenu(*menu);
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint at = visualRect(currentIndex()).center();
    menu->popup(byKey ? viewport()->mapToGlobal(at) : event->globalPos());
}

void SwatchGrid::dragEnterEvent(QDragEnterEvent* event) {
    dragMoveEvent(event);
}

void SwatchGrid::dragMoveEvent(QDragMoveEvent* event) {
    if (!d->canTake(event->mimeData())) {
        event->ignore();
        return;
    }
    d->setGap(d->geometry().gapAt(d->toContents(dropPosition(*event))));
    event->setDropAction(Qt::CopyAction);
    event->accept();
    startAutoScroll();
}

void SwatchGrid::dragLeaveEvent(QDragLeaveEvent*) {
    stopAutoScroll();
    d->setGap(-1);
}

void SwatchGrid::dropEvent(QDropEvent* event) {
    stopAutoScroll();
    if (!d->canTake(event->mimeData())) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    d->setGap(d->geometry().gapAt(d->toContents(dropPosition(*event))));
    d->takeDrop(event->mimeData());
}

QModelIndex SwatchGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
    return d->step(action);
}

int SwatchGrid::horizontalOffset() const {
    return 0;
}

int SwatchGrid::verticalOffset() const {
    return verticalScrollBar()->value();
}

bool SwatchGrid::isIndexHidden(const QModelIndex& index) const {
    return index.column() != 0;
}

void SwatchGrid::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags flags) {
    const QModelIndex index = indexAt(rect.center());
    if (selectionModel())
        selectionModel()->select(QItemSelection(index, index), flags);
}

QRegion SwatchGrid::visualRegionForSelection(const QItemSelection& selection) const {
    QRegion region;
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            region += visualRect(d->index(row));
    }
    return region;
}

void SwatchGrid::updateGeometries() {
    const SwatchGridGeometry grid = d->geometry();
    const QSize most = maximumViewportSize();
    SwatchGridGeometry whole = grid;
    whole.width = most.width();
    const bool fits = whole.height() <= most.height();
    QScrollBar* const bar = verticalScrollBar();
    bar->setSingleStep(grid.pitch());
    bar->setPageStep(viewport()->height());
    bar->setRange(0, fits ? 0 : std::max(0, grid.height() - viewport()->height()));
    QAbstractItemView::updateGeometries();
}

void SwatchGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QAbstractItemView::currentChanged(current, previous);
    viewport()->update(visualRect(previous));
    viewport()->update(visualRect(current));
    SwatchGridAccessible::tellFocus(this, current.row());
}

} // namespace Kestrel::UI
