#include <KxUI/picker/SwatchGrid_p.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>
#include <KxUI/kit/RefusalFlash_p.h>
#include <KxUI/picker/ColorMime_p.h>
#include <KxUI/picker/SwatchGridAccessible_p.h>
#include <KxUI/picker/SwatchModel.h>
#include <KxUI/picker/SwatchPainting_p.h>

#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

int SwatchGridPrivate::count() const {
    return q->model() ? q->model()->rowCount(q->rootIndex()) : 0;
}

QModelIndex SwatchGridPrivate::index(int row) const {
    return q->model() ? q->model()->index(row, 0, q->rootIndex()) : QModelIndex();
}

SwatchGridGeometry SwatchGridPrivate::geometry() const {
    return {cell, q->viewport()->width(), count(), q->isRightToLeft()};
}

QPoint SwatchGridPrivate::toContents(const QPoint& place) const {
    return place + QPoint(0, q->verticalScrollBar()->value());
}

QPoint SwatchGridPrivate::toViewport(const QPoint& place) const {
    return place - QPoint(0, q->verticalScrollBar()->value());
}

void SwatchGridPrivate::follow(QAbstractItemModel* model) {
    for (const QMetaObject::Connection& connection : m_connections)
        QObject::disconnect(connection);
    m_connections.clear();
    forget();
    if (!model)
        return;
    const auto changed = [this] { forget(); };
    using Model = QAbstractItemModel;
    m_connections = {QObject::connect(model, &Model::dataChanged, q, changed),
                     QObject::connect(model, &Model::rowsInserted, q, changed),
                     QObject::connect(model, &Model::rowsRemoved, q, changed),
                     QObject::connect(model, &Model::rowsMoved, q, changed),
                     QObject::connect(model, &Model::layoutChanged, q, changed),
                     QObject::connect(model, &Model::modelReset, q, changed),
                     QObject::connect(model, &QObject::destroyed, q, changed)};
}

void SwatchGridPrivate::forget() {
    m_knowsColors = false;
    m_hovered = -1;
    m_gap = -1;
    q->updateGeometries();
    q->viewport()->update();
    SwatchGridAccessible::tellReordered(q);
}

const std::vector<QColor>& SwatchGridPrivate::colors() {
    const int rows = count();
    if (std::exchange(m_knowsColors, true) && static_cast<int>(m_colors.size()) == rows)
        return m_colors;
    std::vector<ColorValue> values;
    values.reserve(static_cast<std::size_t>(rows));
    for (int row = 0; row < rows; ++row)
        values.push_back(q->color(row));
    m_colors = shownColors(values, display);
    return m_colors;
}

void SwatchGridPrivate::paintCell(QPainter& painter, int row, double ratio) {
    const QPalette palette = q->palette();
    const QColor ground = palette.color(QPalette::Base);
    const QRectF area(geometry().cellOf(row).translated(toViewport(QPoint())));
    const QColor& shown = colors()[static_cast<std::size_t>(row)];
    if (row == q->currentIndex().row()) {
        const QColor ring = q->hasFocus() ? visibleHighlight(palette, ground)
                                          : mixed(ground, palette.color(QPalette::Text), 0.6);
        painter.fillRect(rectOnPixels(area.adjusted(-2, -2, 2, 2), ratio), ring);
        painter.fillRect(rectOnPixels(area, ratio), ground);
    } else {
        const QColor line =
            row == m_hovered ? palette.color(QPalette::Text) : swatchOutline(palette, ground);
        painter.fillRect(rectOnPixels(area, ratio), line);
    }
    paintSwatch(painter, rectOnPixels(area.adjusted(1, 1, -1, -1), ratio), shown, ratio);
}

void SwatchGridPrivate::paint(QPainter& painter, const QRect& exposed) {
    const SwatchGridGeometry grid = geometry();
    const double ratio = q->devicePixelRatioF();
    const QRect area = exposed.translated(toContents(QPoint())).adjusted(-2, -2, 2, 2);
    const QPalette palette = q->palette();
    const QColor line = swatchOutline(palette, palette.color(QPalette::Base));
    const QPoint offset = toViewport(QPoint());
    const std::vector<QColor>& shown = colors();
    const int current = q->currentIndex().row();
    const int end = grid.endIn(area);
    for (int row = grid.firstIn(area); row < end; ++row) {
        if (row == current || row == m_hovered)
            continue;
        const QRectF cellArea(grid.cellOf(row).translated(offset));
        painter.fillRect(rectOnPixels(cellArea, ratio), line);
        paintSwatch(painter, rectOnPixels(cellArea.adjusted(1, 1, -1, -1), ratio),
                    shown[static_cast<std::size_t>(row)], ratio);
    }
    for (const int row : {m_hovered, current}) {
        if (row >= 0 && row < grid.count)
            paintCell(painter, row, ratio);
    }
    if (m_gap >= 0)
        painter.fillRect(grid.gapLine(m_gap).translated(offset),
                         visibleHighlight(palette, palette.color(QPalette::Base)));
    if (grid.count > 0 || readOnly)
        return;
    painter.setPen(mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.6));
    painter.drawText(q->viewport()->rect().adjusted(4, 4, -4, -4),
                     Qt::AlignCenter | Qt::TextWordWrap, SwatchGrid::tr("Drop colours here"));
}

void SwatchGridPrivate::hover(int row) {
    const int before = std::exchange(m_hovered, row);
    for (const int each : {before, row}) {
        if (before != row && each >= 0)
            q->viewport()->update(q->visualRect(index(each)));
    }
}

bool SwatchGridPrivate::canChange() const {
    return !readOnly && q->isEnabled() && q->model();
}

bool SwatchGridPrivate::canTake(const QMimeData* data) const {
    if (!canChange())
        return false;
    return (colorDragSource() == q && dragged.isValid()) || colorIn(data, display, 1.0F);
}

void SwatchGridPrivate::choose(const QModelIndex& index) {
    if (index.isValid())
        Q_EMIT q->colorChosen(q->color(index.row()));
}

bool SwatchGridPrivate::add(int row, const ColorValue& color, const QString& name) {
    const QPointer<SwatchGrid> alive(q);
    QAbstractItemModel* const model = q->model();
    if (auto* const swatches = qobject_cast<SwatchModel*>(model)) {
        if (!swatches->insert(row, color, name))
            return false;
    } else {
        if (!model->insertRow(row, q->rootIndex()) || !alive)
            return false;
        const QPersistentModelIndex added = index(row);
        model->setData(added, QVariant::fromValue(color), SwatchModel::ColorRole);
        if (alive && !name.isEmpty())
            model->setData(added, name);
    }
    if (alive)
        q->setCurrentIndex(index(row));
    return true;
}

void SwatchGridPrivate::move(int from, int before) {
    if (before == from || before == from + 1 || !canChange())
        return;
    const QPointer<SwatchGrid> alive(q);
    if (!q->model()->moveRow(q->rootIndex(), from, q->rootIndex(), before))
        RefusalFlash::over(q->viewport());
    else if (alive)
        q->setCurrentIndex(index(before > from ? before - 1 : before));
}

QModelIndex SwatchGridPrivate::step(QAbstractItemView::CursorAction action) const {
    const int rows = count();
    const int row = q->currentIndex().row();
    if (rows == 0 || row < 0)
        return index(0);
    const SwatchGridGeometry grid = geometry();
    const int columns = grid.columns();
    const int rightwards = grid.isMirrored ? -1 : 1;
    const int page = std::max(1, q->viewport()->height() / grid.pitch()) * columns;
    const auto within = [&](int to) { return index(to < 0 || to >= rows ? row : to); };
    switch (action) {
    case QAbstractItemView::MoveLeft:
        return within(row - rightwards);
    case QAbstractItemView::MoveRight:
        return within(row + rightwards);
    case QAbstractItemView::MovePrevious:
        return within(row - 1);
    case QAbstractItemView::MoveNext:
        return within(row + 1);
    case QAbstractItemView::MoveUp:
        return within(row - columns);
    case QAbstractItemView::MoveDown:
        // Into the last row also where that one is shorter.
        return row / columns < (rows - 1) / columns ? index(std::min(row + columns, rows - 1))
                                                    : index(row);
    case QAbstractItemView::MoveHome:
        return index(0);
    case QAbstractItemView::MoveEnd:
        return index(rows - 1);
    case QAbstractItemView::MovePageUp:
        return index(row - page < 0 ? row % columns : row - page);
    case QAbstractItemView::MovePageDown:
        return index(std::min(row + page, rows - 1));
    }
    return index(row);
}

void SwatchGridPrivate::moveBy(QAbstractItemView::CursorAction action) {
    const int from = q->currentIndex().row();
    const int to = from < 0 ? -1 : step(action).row();
    if (to >= 0)
        move(from, to > from ? to + 1 : to);
}

void SwatchGridPrivate::startDrag() {
    const int row = q->currentIndex().row();
    if (row < 0)
        return;
    dragged = q->currentIndex();
    const QPointer<SwatchGrid> alive(q);
    dragColor(q, q->color(row), display, dragged.data().toString());
    if (!alive)
        return;
    dragged = QPersistentModelIndex();
    setGap(-1);
}

void SwatchGridPrivate::setGap(int gap) {
    if (std::exchange(m_gap, gap) != gap)
        q->viewport()->update();
}

void SwatchGridPrivate::takeDrop(const QMimeData* data) {
    const int gap = std::exchange(m_gap, -1);
    q->viewport()->update();
    const int before = gap < 0 ? count() : gap;
    if (colorDragSource() == q && dragged.isValid()) {
        move(dragged.row(), before);
    } else if (const auto color = colorIn(data, display, 1.0F)) {
        const QPointer<SwatchGrid> alive(q);
        if (!add(before, *color, colorNameIn(data)) && alive)
            RefusalFlash::over(q->viewport());
    }
}

bool SwatchGridPrivate::isOwnKey(const QKeyEvent& event) const {
    if (event.matches(QKeySequence::Copy) || event.matches(QKeySequence::Paste))
        return true;
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return modifiers == Qt::NoModifier || modifiers == Qt::AltModifier;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Delete:
    case Qt::Key_Home:
    case Qt::Key_End:
        return modifiers == Qt::NoModifier;
    default:
        return false;
    }
}

bool SwatchGridPrivate::pressKey(const QKeyEvent& event) {
    if (!isOwnKey(event))
        return false;
    if (event.matches(QKeySequence::Copy)) {
        q->copyCurrent();
        return true;
    }
    if (event.matches(QKeySequence::Paste)) {
        q->paste();
        return true;
    }
    const bool moves = event.modifiers().testFlag(Qt::AltModifier);
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        choose(q->currentIndex());
        return true;
    case Qt::Key_Delete:
        q->removeCurrent();
        return true;
    case Qt::Key_Left:
        return moves && (moveBy(QAbstractItemView::MoveLeft), true);
    case Qt::Key_Right:
        return moves && (moveBy(QAbstractItemView::MoveRight), true);
    case Qt::Key_Up:
        return moves && (moveBy(QAbstractItemView::MoveUp), true);
    case Qt::Key_Down:
        return moves && (moveBy(QAbstractItemView::MoveDown), true);
    default:
        return false;
    }
}

void SwatchGridPrivate::fillMenu(QMenu& menu) {
    const bool hasCurrent = q->currentIndex().isValid();
    const auto addAction = [&](const QString& text, bool enabled, auto what) {
        QAction* const action = menu.addAction(text);
        action->setEnabled(enabled);
        QObject::connect(action, &QAction::triggered, q, what);
    };
    addAction(SwatchGrid::tr("&Copy colour"), hasCurrent, &SwatchGrid::copyCurrent);
    addAction(SwatchGrid::tr("&Paste colour"), canChange() && copiedColor(display, 1.0F),
              &SwatchGrid::paste);
    menu.addSeparator();
    addAction(SwatchGrid::tr("Re&name"), hasCurrent && canChange(), &SwatchGrid::renameCurrent);
    addAction(SwatchGrid::tr("&Remove"), hasCurrent && canChange(), &SwatchGrid::removeCurrent);
    addAction(SwatchGrid::tr("Remove &all\u2026"), canChange() && count() > 0,
              [this] { askToClear(); });
}

void SwatchGridPrivate::askToClear() {
    auto* const question = new QMessageBox(
        QMessageBox::Warning, SwatchGrid::tr("Remove all"),
        SwatchGrid::tr("Remove %n colour(s)? This can not be undone.", nullptr, count()),
        QMessageBox::Cancel, q);
    question->setAttribute(Qt::WA_DeleteOnClose);
    QAbstractButton* const remove =
        question->addButton(SwatchGrid::tr("Remove all"), QMessageBox::DestructiveRole);
    QObject::connect(remove, &QAbstractButton::clicked, q, [this] {
        if (canChange() && count() > 0)
            q->model()->removeRows(0, count(), q->rootIndex());
    });
    question->open();
}

} // namespace Kestrel::UI
