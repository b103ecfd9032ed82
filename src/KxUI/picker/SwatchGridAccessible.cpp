#include <KxUI/picker/SwatchGridAccessible_p.h>

#include <KxUI/picker/ColorMime_p.h>
#include <KxUI/picker/SwatchGrid.h>

namespace Kestrel::UI {
namespace {

const QString RemoveAction = QStringLiteral("Remove");

int countOf(const SwatchGrid& grid) {
    return grid.model() ? grid.model()->rowCount(grid.rootIndex()) : 0;
}

} // namespace

SwatchGridAccessible::SwatchGridAccessible(SwatchGrid* grid)
    : QAccessibleWidget(grid, QAccessible::List) {}

SwatchGridAccessible::~SwatchGridAccessible() {
    for (const QAccessible::Id id : m_children)
        QAccessible::deleteAccessibleInterface(id);
}

SwatchGrid* SwatchGridAccessible::grid() const {
    return static_cast<SwatchGrid*>(object());
}

void SwatchGridAccessible::tellReordered(SwatchGrid* grid) {
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(grid, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}

void SwatchGridAccessible::tellFocus(SwatchGrid* grid, int row) {
    if (!QAccessible::isActive() || !grid->hasFocus())
        return;
    auto* const self =
        dynamic_cast<SwatchGridAccessible*>(QAccessible::queryAccessibleInterface(grid));
    if (QAccessibleInterface* const cell = self ? self->child(row) : nullptr) {
        QAccessibleEvent event(cell, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

int SwatchGridAccessible::childCount() const {
    return countOf(*grid());
}

QAccessibleInterface* SwatchGridAccessible::child(int index) const {
    if (index < 0 || index >= childCount())
        return nullptr;
    while (static_cast<int>(m_children.size()) <= index)
        m_children.push_back(QAccessible::registerAccessibleInterface(
            new SwatchCellAccessible(grid(), static_cast<int>(m_children.size()))));
    return QAccessible::accessibleInterface(m_children[static_cast<std::size_t>(index)]);
}

int SwatchGridAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* const cell = dynamic_cast<const SwatchCellAccessible*>(child);
    return cell && cell->parent() == this ? cell->row() : -1;
}

QAccessibleInterface* SwatchGridAccessible::childAt(int x, int y) const {
    return child(grid()->indexAt(grid()->viewport()->mapFromGlobal(QPoint(x, y))).row());
}

QAccessibleInterface* SwatchGridAccessible::focusChild() const {
    return grid()->hasFocus() ? child(grid()->currentIndex().row()) : nullptr;
}

QString SwatchGridAccessible::text(QAccessible::Text kind) const {
    const QString text = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && text.isEmpty() ? SwatchGrid::tr("Swatches") : text;
}

SwatchCellAccessible::SwatchCellAccessible(SwatchGrid* grid, int row)
    : m_grid(grid)
    , m_row(row) {}

QModelIndex SwatchCellAccessible::index() const {
    return m_grid->model()->index(m_row, 0, m_grid->rootIndex());
}

bool SwatchCellAccessible::isValid() const {
    return m_grid && m_row < countOf(*m_grid);
}

QWindow* SwatchCellAccessible::window() const {
    return parent() ? parent()->window() : nullptr;
}

QAccessibleInterface* SwatchCellAccessible::parent() const {
    return m_grid ? QAccessible::queryAccessibleInterface(m_grid) : nullptr;
}

QString SwatchCellAccessible::text(QAccessible::Text kind) const {
    if (!isValid())
        return {};
    const QString words = colorWords(m_grid->color(m_row), DisplayCall(m_grid->displayTransform()),
                                     QStringLiteral(", "));
    const QString name = index().data().toString();
    switch (kind) {
    case QAccessible::Name:
        return name.isEmpty() ? words : name;
    case QAccessible::Value:
        return words;
    case QAccessible::Description:
        return SwatchGrid::tr("%1 of %2").arg(m_row + 1).arg(countOf(*m_grid));
    default:
        return {};
    }
}

void SwatchCellAccessible::setText(QAccessible::Text kind, const QString& text) {
    if (kind == QAccessible::Name && isValid() && !m_grid->isReadOnly() && m_grid->isEnabled())
        m_grid->model()->setData(index(), text);
}

QRect SwatchCellAccessible::rect() const {
    if (!isValid())
        return {};
    const QRect part = m_grid->visualRect(index());
    return {m_grid->viewport()->mapToGlobal(part.topLeft()), part.size()};
}

QAccessible::State SwatchCellAccessible::state() const {
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid)
        return state;
    const bool isCurrent = m_grid->currentIndex().row() == m_row;
    state.disabled = !m_grid->isEnabled();
    state.focusable = !state.disabled;
    state.focused = isCurrent && m_grid->hasFocus();
    state.selectable = true;
    state.selected = isCurrent;
    state.editable = !m_grid->isReadOnly();
    state.invisible = !m_grid->isVisible();
    state.offscreen = !m_grid->viewport()->rect().intersects(m_grid->visualRect(index()));
    return state;
}

void* SwatchCellAccessible::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
}

QStringList SwatchCellAccessible::actionNames() const {
    if (!isValid() || !m_grid->isEnabled())
        return {};
    QStringList names{pressAction(), setFocusAction()};
    if (!m_grid->isReadOnly())
        names << RemoveAction;
    return names;
}

void SwatchCellAccessible::doAction(const QString& name) {
    if (!actionNames().contains(name))
        return;
    const QPointer<SwatchGrid> grid = m_grid;
    const int row = m_row;
    grid->setCurrentIndex(index());
    if (!grid)
        return;
    if (name == setFocusAction())
        grid->setFocus(Qt::OtherFocusReason);
    else if (name == RemoveAction)
        grid->removeCurrent();
    else
        Q_EMIT grid->colorChosen(grid->color(row));
}

} // namespace Kestrel::UI
