#include <KxUI/kit/BorderLayout.h>

#include <KxUI/kit/BorderRects_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QWidget>

#include <vector>

namespace Kestrel::UI {

/** The data of a BorderLayout. */
class BorderLayoutPrivate {
public:
    struct Entry {
        std::unique_ptr<QLayoutItem> item;
        BorderLayout::Place place = BorderLayout::Centre;
    };

    const BorderItems& items();

    std::vector<Entry> entries;
    bool placed = false; ///< nothing changed since the last setGeometry()
    bool known = false;  ///< and none since the items were asked

private:
    BorderItems m_items;
};

/** Asked once for each change: nested layouts would ask again at every level. */
const BorderItems& BorderLayoutPrivate::items() {
    if (known)
        return m_items;
    m_items.clear();
    for (const Entry& entry : entries) {
        QLayoutItem* const item = entry.item.get();
        m_items.push_back(
            {entry.place, item->sizeHint(), item->minimumSize(), {}, item->isEmpty()});
        if (item->hasHeightForWidth())
            m_items.back().heightForWidth = [item](int width) {
                return item->heightForWidth(width);
            };
    }
    known = true;
    return m_items;
}

BorderLayout::BorderLayout(QWidget* parent)
    : QLayout(parent)
    , d(std::make_unique<BorderLayoutPrivate>()) {
    setContentsMargins(0, 0, 0, 0);
}

BorderLayout::~BorderLayout() = default;

void BorderLayout::addWidget(QWidget* widget, Place place) {
    KXUI_INTERFACE_THREAD(this);
    if (!widget)
        return;
    addChildWidget(widget);
    add(new QWidgetItem(widget), place);
}

void BorderLayout::add(QLayoutItem* item, Place place) {
    KXUI_INTERFACE_THREAD(this);
    if (!item)
        return;
    if (QLayout* const layout = item->layout())
        addChildLayout(layout);
    d->entries.push_back({std::unique_ptr<QLayoutItem>(item), place});
    invalidate();
}

void BorderLayout::addItem(QLayoutItem* item) {
    add(item, Centre);
}

QWidget* BorderLayout::widgetAt(Place place) const {
    for (const BorderLayoutPrivate::Entry& entry : d->entries) {
        if (entry.place == place && entry.item->widget())
            return entry.item->widget();
    }
    return nullptr;
}

int BorderLayout::count() const {
    return static_cast<int>(d->entries.size());
}

QLayoutItem* BorderLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? d->entries[static_cast<std::size_t>(index)].item.get()
                                         : nullptr;
}

QLayoutItem* BorderLayout::takeAt(int index) {
    if (!itemAt(index))
        return nullptr;
    const auto entry = d->entries.begin() + index;
    QLayoutItem* const item = entry->item.release();
    d->entries.erase(entry);
    if (QLayout* const layout = item->layout()) {
        if (layout->parent() == this)
            layout->setParent(nullptr);
    }
    invalidate();
    return item;
}

QSize BorderLayout::sizeHint() const {
    const QMargins margins = contentsMargins();
    return borderHint(d->items(), spacing()) +
           QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

QSize BorderLayout::minimumSize() const {
    const QMargins margins = contentsMargins();
    return borderMinimum(d->items(), spacing()) +
           QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

Qt::Orientations BorderLayout::expandingDirections() const {
    Qt::Orientations directions;
    for (const BorderLayoutPrivate::Entry& entry : d->entries) {
        if (!entry.item->isEmpty())
            directions |= entry.item->expandingDirections();
    }
    return directions;
}

bool BorderLayout::hasHeightForWidth() const {
    for (const BorderItem& item : d->items()) {
        if (!item.hidden && item.heightForWidth)
            return true;
    }
    return false;
}

int BorderLayout::heightForWidth(int width) const {
    if (!hasHeightForWidth())
        return -1;
    const QMargins margins = contentsMargins();
    return borderHeightForWidth(d->items(), spacing(), width - margins.left() - margins.right()) +
           margins.top() + margins.bottom();
}

void BorderLayout::invalidate() {
    d->known = false;
    d->placed = false;
    QLayout::invalidate();
}

void BorderLayout::setGeometry(const QRect& rect) {
    if (d->placed && rect == geometry())
        return;
    QLayout::setGeometry(rect);
    const QRect room = (alignment() ? alignmentRect(rect) : rect).marginsRemoved(contentsMargins());
    const auto direction = parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    const std::vector<QRect> rects = borderRects(room, d->items(), spacing(), direction);
    d->placed = true;
    for (std::size_t i = 0; i < rects.size() && i < d->entries.size(); ++i) {
        if (!d->entries[i].item->isEmpty())
            d->entries[i].item->setGeometry(rects[i]);
    }
}

} // namespace Kestrel::UI
