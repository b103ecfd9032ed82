#include <KxUI/kit/CollapsibleToolbar.h>

#include <KxUI/kit/InterfaceThread_p.h>

#include <QAbstractButton>
#include <QEvent>
#include <QHBoxLayout>
#include <QMenu>
#include <QPointer>
#include <QToolButton>

#include <algorithm>
#include <utility>
#include <vector>

namespace Kestrel::UI {
namespace {

int widthOf(const QWidget* widget) {
    return qBound(widget->minimumWidth(),
                  qMax(widget->sizeHint().width(), widget->minimumSizeHint().width()),
                  widget->maximumWidth());
}

int heightOf(const QWidget* widget) {
    return qBound(widget->minimumHeight(),
                  qMax(widget->sizeHint().height(), widget->minimumSizeHint().height()),
                  widget->maximumHeight());
}

} // namespace

/** The data of a CollapsibleToolbar, and what it does with them. */
class CollapsibleToolbarPrivate {
public:
    struct Item {
        QPointer<QWidget> widget;
        QString name;
        int priority = 0;
        bool canCollapse = false;
        bool collapsed = false;
        bool visible = true;

        /** One that the host hides takes none; one that collapsed would take some. */
        bool takesRoom() const { return visible && widget && (!widget->isHidden() || collapsed); }
    };

    explicit CollapsibleToolbarPrivate(CollapsibleToolbar* toolbar)
        : m_toolbar(toolbar)
        , m_row(new QHBoxLayout(toolbar))
        , m_overflow(new QToolButton(toolbar))
        , m_menu(new QMenu(toolbar)) {
        fillRow();
    }

    void append(Item item);
    /** Null for what is none. */
    Item* find(const QWidget* widget);
    void collapse();
    int overflowWidth() const { return m_overflow->sizeHint().width(); }

    std::vector<Item> items;

private:
    void fillRow();
    void fillMenu();

    CollapsibleToolbar* m_toolbar;
    QHBoxLayout* m_row;
    QToolButton* m_overflow;
    QMenu* m_menu;
};

void CollapsibleToolbarPrivate::fillRow() {
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(0);
    // The layout must not hold the row at a width at which nothing would ever collapse.
    m_row->setSizeConstraint(QLayout::SetNoConstraint);
    m_overflow->setText(QStringLiteral("\u00bb"));
    m_overflow->setToolTip(CollapsibleToolbar::tr("More"));
    m_overflow->setAccessibleName(CollapsibleToolbar::tr("More"));
    m_overflow->setAutoRaise(true);
    m_overflow->hide();
    m_row->addWidget(m_overflow);
    QObject::connect(m_menu, &QMenu::aboutToShow, m_toolbar, [this] { fillMenu(); });
    QObject::connect(m_overflow, &QToolButton::clicked, m_toolbar, [this] {
        m_menu->popup(m_overflow->mapToGlobal(QPoint(0, m_overflow->height())));
    });
}

void CollapsibleToolbarPrivate::append(Item item) {
    if (!item.widget)
        return;
    m_row->insertWidget(m_row->count() - 1, item.widget);
    items.push_back(std::move(item));
    m_toolbar->updateGeometry();
    collapse();
}

CollapsibleToolbar::CollapsibleToolbar(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<CollapsibleToolbarPrivate>(this)) {}

CollapsibleToolbar::~CollapsibleToolbar() = default;

void CollapsibleToolbar::addItem(QWidget* widget) {
    KXUI_INTERFACE_THREAD(this);
    d->append({widget, QString(), 0, false, false});
}

void CollapsibleToolbar::addOverflowItem(QAbstractButton* button, const QString& name,
                                         int priority) {
    KXUI_INTERFACE_THREAD(this);
    d->append({button, name, priority, true, false});
}

CollapsibleToolbarPrivate::Item* CollapsibleToolbarPrivate::find(const QWidget* widget) {
    const auto found = std::find_if(items.begin(), items.end(),
                                    [widget](const Item& item) { return item.widget == widget; });
    return widget && found != items.end() ? &*found : nullptr;
}

void CollapsibleToolbar::setItemVisible(QWidget* item, bool visible) {
    KXUI_INTERFACE_THREAD(this);
    CollapsibleToolbarPrivate::Item* const found = d->find(item);
    if (!found || found->visible == visible)
        return;
    found->visible = visible;
    found->collapsed = false;
    item->setVisible(visible);
    updateGeometry();
    d->collapse();
}

bool CollapsibleToolbar::isItemVisible(const QWidget* item) const {
    const CollapsibleToolbarPrivate::Item* const found = d->find(item);
    return found && found->visible;
}

QStringList CollapsibleToolbar::overflowNames() const {
    QStringList names;
    for (const CollapsibleToolbarPrivate::Item& item : d->items) {
        if (item.collapsed && item.widget)
            names.append(item.name);
    }
    return names;
}

QSize CollapsibleToolbar::sizeHint() const {
    QSize size(0, 0);
    for (const CollapsibleToolbarPrivate::Item& item : d->items) {
        if (!item.takesRoom())
            continue;
        size.rwidth() += widthOf(item.widget);
        size.setHeight(qMax(size.height(), heightOf(item.widget)));
    }
    return size;
}

QSize CollapsibleToolbar::minimumSizeHint() const {
    QSize size = sizeHint();
    int collapsible = 0;
    for (const CollapsibleToolbarPrivate::Item& item : d->items) {
        if (item.canCollapse && item.takesRoom())
            collapsible += widthOf(item.widget);
    }
    size.rwidth() -= std::max(0, collapsible - d->overflowWidth());
    return size;
}

bool CollapsibleToolbar::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        d->collapse();
    }
    return QWidget::event(event);
}

void CollapsibleToolbar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    d->collapse();
}

void CollapsibleToolbarPrivate::collapse() {
    int wanted = m_toolbar->sizeHint().width();
    std::vector<Item*> candidates;
    for (Item& item : items) {
        if (item.canCollapse && item.takesRoom())
            candidates.push_back(&item);
    }
    std::reverse(candidates.begin(), candidates.end());
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Item* a, const Item* b) { return a->priority < b->priority; });

    const bool fits = wanted <= m_toolbar->width();
    if (!fits)
        wanted += overflowWidth();
    for (Item* item : candidates) {
        const bool collapsed = wanted > m_toolbar->width();
        if (collapsed)
            wanted -= widthOf(item->widget);
        if (item->collapsed != collapsed) {
            item->collapsed = collapsed;
            item->widget->setVisible(!collapsed);
        }
    }
    m_overflow->setVisible(!fits && !candidates.empty());
}

void CollapsibleToolbarPrivate::fillMenu() {
    m_menu->clear();
    for (const Item& item : items) {
        auto* button = qobject_cast<QAbstractButton*>(item.widget);
        if (!item.collapsed || !button)
            continue;
        QAction* action = m_menu->addAction(button->icon(), item.name);
        action->setEnabled(button->isEnabled());
        action->setCheckable(button->isCheckable());
        action->setChecked(button->isChecked());
        action->setToolTip(button->toolTip());
        QObject::connect(action, &QAction::triggered, button, &QAbstractButton::click);
    }
}

} // namespace Kestrel::UI
