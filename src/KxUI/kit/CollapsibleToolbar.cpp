#include <KxUI/kit/CollapsibleToolbar.h>

#include <QAbstractButton>
#include <QEvent>
#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>

#include <algorithm>

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

CollapsibleToolbar::CollapsibleToolbar(QWidget* parent)
    : QWidget(parent)
    , m_row(new QHBoxLayout(this))
    , m_overflow(new QToolButton(this))
    , m_menu(new QMenu(this)) {
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(0);
    // The layout must not hold the row at a width at which nothing would ever collapse.
    m_row->setSizeConstraint(QLayout::SetNoConstraint);
    m_overflow->setText(QStringLiteral("\u00bb"));
    m_overflow->setToolTip(tr("More"));
    m_overflow->setAccessibleName(tr("More"));
    m_overflow->setAutoRaise(true);
    m_overflow->hide();
    m_row->addWidget(m_overflow);
    connect(m_menu, &QMenu::aboutToShow, this, &CollapsibleToolbar::fillMenu);
    connect(m_overflow, &QToolButton::clicked, this,
            [this] { m_menu->popup(m_overflow->mapToGlobal(QPoint(0, m_overflow->height()))); });
}

CollapsibleToolbar::~CollapsibleToolbar() = default;

void CollapsibleToolbar::addItem(QWidget* widget) {
    append({widget, QString(), 0, false, false});
}

void CollapsibleToolbar::addOverflowItem(QAbstractButton* button, const QString& name,
                                         int priority) {
    append({button, name, priority, true, false});
}

void CollapsibleToolbar::append(Item item) {
    m_row->insertWidget(m_row->count() - 1, item.widget);
    m_items.push_back(std::move(item));
    updateGeometry();
    collapse();
}

QStringList CollapsibleToolbar::overflowNames() const {
    QStringList names;
    for (const Item& item : m_items) {
        if (item.collapsed && item.widget)
            names.append(item.name);
    }
    return names;
}

int CollapsibleToolbar::overflowWidth() const {
    return m_overflow->sizeHint().width();
}

QSize CollapsibleToolbar::sizeHint() const {
    QSize size(0, 0);
    for (const Item& item : m_items) {
        // A widget that the host hides takes no room; one that collapsed would take some.
        if (!item.widget || (item.widget->isHidden() && !item.collapsed))
            continue;
        size.rwidth() += widthOf(item.widget);
        size.setHeight(qMax(size.height(), heightOf(item.widget)));
    }
    return size;
}

QSize CollapsibleToolbar::minimumSizeHint() const {
    QSize size = sizeHint();
    int collapsible = 0;
    for (const Item& item : m_items) {
        if (item.widget && item.canCollapse && (!item.widget->isHidden() || item.collapsed))
            collapsible += widthOf(item.widget);
    }
    size.rwidth() -= std::max(0, collapsible - overflowWidth());
    return size;
}

bool CollapsibleToolbar::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        collapse();
    }
    return QWidget::event(event);
}

void CollapsibleToolbar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    collapse();
}

void CollapsibleToolbar::collapse() {
    int wanted = sizeHint().width();
    std::vector<Item*> candidates;
    for (Item& item : m_items) {
        if (item.widget && item.canCollapse && (!item.widget->isHidden() || item.collapsed))
            candidates.push_back(&item);
    }
    std::reverse(candidates.begin(), candidates.end());
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Item* a, const Item* b) { return a->priority < b->priority; });

    const bool fits = wanted <= width();
    if (!fits)
        wanted += overflowWidth();
    for (Item* item : candidates) {
        const bool collapsed = wanted > width();
        if (collapsed)
            wanted -= widthOf(item->widget);
        if (item->collapsed != collapsed) {
            item->collapsed = collapsed;
            item->widget->setVisible(!collapsed);
        }
    }
    m_overflow->setVisible(!fits && !candidates.empty());
}

void CollapsibleToolbar::fillMenu() {
    m_menu->clear();
    for (const Item& item : m_items) {
        auto* button = qobject_cast<QAbstractButton*>(item.widget);
        if (!item.collapsed || !button)
            continue;
        QAction* action = m_menu->addAction(button->icon(), item.name);
        action->setEnabled(button->isEnabled());
        action->setToolTip(button->toolTip());
        connect(action, &QAction::triggered, button, &QAbstractButton::click);
    }
}

} // namespace Kestrel::UI
