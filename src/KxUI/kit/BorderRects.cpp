#include <KxUI/kit/BorderRects_p.h>

#include <QStyle>

#include <algorithm>
#include <numeric>

namespace Kestrel::UI {
namespace {

using Place = BorderLayout::Place;

/** The strips of two opposite edges along the direction that they share, and what lies between. */
struct Band {
    struct Strip {
        std::size_t item = 0;
        bool fromEnd = false;
        int wish = 0;
        int least = 0;
        int length = 0;
    };
    std::vector<Strip> strips; ///< outermost first
    bool hasMiddle = false;
    int middleLeast = 0;

    int gaps(int spacing) const {
        const int parts = static_cast<int>(strips.size()) + (hasMiddle ? 1 : 0);
        return std::max(0, parts - 1) * spacing;
    }
    int total(int Strip::*length) const {
        return std::accumulate(strips.begin(), strips.end(), 0,
                               [=](int sum, const Strip& strip) { return sum + strip.*length; });
    }
    void fit(int room);
};

void Band::fit(int room) {
    const int forStrips = std::max(0, room - middleLeast);
    const int wished = total(&Strip::wish);
    const int needed = total(&Strip::least);
    int left = std::max(0, room);
    int slack = wished - needed;
    int slackLeft = forStrips - needed;
    for (Strip& strip : strips) {
        if (wished <= forStrips) {
            strip.length = strip.wish;
        } else if (needed >= forStrips) {
            strip.length = std::min(strip.least, left);
        } else { // each its share of what is left, so that rounding loses no pixel
            const int own = strip.wish - strip.least;
            const int share =
                slack > 0 ? static_cast<int>(static_cast<qint64>(own) * slackLeft / slack) : 0;
            strip.length = strip.least + share;
            slack -= own;
            slackLeft -= share;
        }
        left -= strip.length;
    }
}

bool isMiddle(Place place) {
    return place != BorderLayout::North && place != BorderLayout::South;
}

/** Start and end, with the centre between. */
Band row(const BorderItems& items) {
    Band band;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const BorderItem& item = items[i];
        if (item.hidden || !isMiddle(item.place))
            continue;
        if (item.place == BorderLayout::Centre) {
            band.hasMiddle = true;
            band.middleLeast = std::max(band.middleLeast, item.minimum.width());
        } else {
            const int least = std::max(0, item.minimum.width());
            band.strips.push_back(
                {i, item.place == BorderLayout::End, std::max(item.hint.width(), least), least, 0});
        }
    }
    return band;
}

/** North and south at a width, with all the others between; by their hints where it is below zero.
 */
Band column(const BorderItems& items, int width) {
    Band band;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const BorderItem& item = items[i];
        if (item.hidden)
            continue;
        const int least = std::max(0, item.minimum.height());
        if (isMiddle(item.place)) {
            band.hasMiddle = true;
            band.middleLeast = std::max(band.middleLeast, least);
        } else {
            const int wish = width < 0 ? item.hint.height() : item.heightAt(width);
            band.strips.push_back(
                {i, item.place == BorderLayout::South, std::max(wish, least), least, 0});
        }
    }
    return band;
}

/** From the edges inwards: `place` is told where each strip begins and how long it is, and at last
    what remains. */
template <class Put>
void walk(const Band& band, int from, int to, int spacing, Put put) {
    for (const Band::Strip& strip : band.strips) {
        put(static_cast<int>(strip.item), strip.fromEnd ? to - strip.length : from, strip.length);
        if (strip.fromEnd)
            to -= strip.length + spacing;
        else
            from += strip.length + spacing;
    }
    put(-1, from, std::max(0, to - from));
}

/** The middle's wishes at the widths that its items would have. */
int middleHeight(const BorderItems& items, int spacing, int width) {
    Band band = row(items);
    band.fit(width - band.gaps(spacing));
    int height = 0;
    walk(band, 0, width, spacing, [&](int index, int, int length) {
        if (index >= 0) {
            height = std::max(height, items[static_cast<std::size_t>(index)].heightAt(length));
            return;
        }
        for (const BorderItem& item : items) {
            if (!item.hidden && item.place == BorderLayout::Centre)
                height = std::max(height, item.heightAt(length));
        }
    });
    return height;
}

QSize sumOf(const BorderItems& items, int spacing, QSize BorderItem::*size) {
    const Band across = row(items);
    const Band down = column(items, -1);
    QSize outer(0, 0);
    QSize middle(0, 0);
    QSize centre(0, 0);
    for (const BorderItem& item : items) {
        if (item.hidden)
            continue;
        const QSize own = (item.*size).expandedTo(item.minimum).expandedTo(QSize(0, 0));
        if (!isMiddle(item.place)) {
            outer = QSize(std::max(outer.width(), own.width()), outer.height() + own.height());
        } else if (item.place == BorderLayout::Centre) {
            centre = centre.expandedTo(own);
        } else {
            middle = QSize(middle.width() + own.width(), std::max(middle.height(), own.height()));
        }
    }
    middle = QSize(middle.width() + centre.width() + across.gaps(spacing),
                   std::max(middle.height(), centre.height()));
    return {std::max(outer.width(), middle.width()),
            outer.height() + middle.height() + down.gaps(spacing)};
}

} // namespace

std::vector<QRect> borderRects(const QRect& room, const BorderItems& items, int spacing,
                               Qt::LayoutDirection direction) {
    std::vector<QRect> rects(items.size());
    Band down = column(items, room.width());
    down.fit(room.height() - down.gaps(spacing));
    QRect middle;
    walk(down, room.top(), room.top() + room.height(), spacing, [&](int index, int y, int height) {
        const QRect rect(room.left(), y, room.width(), height);
        (index < 0 ? middle : rects[static_cast<std::size_t>(index)]) = rect;
    });

    Band across = row(items);
    across.fit(middle.width() - across.gaps(spacing));
    walk(across, middle.left(), middle.left() + middle.width(), spacing,
         [&](int index, int x, int width) {
             const QRect rect = QStyle::visualRect(direction, middle,
                                                   QRect(x, middle.top(), width, middle.height()));
             if (index >= 0) {
                 rects[static_cast<std::size_t>(index)] = rect;
                 return;
             }
             for (std::size_t i = 0; i < items.size(); ++i) {
                 if (!items[i].hidden && items[i].place == BorderLayout::Centre)
                     rects[i] = rect;
             }
         });
    return rects;
}

QSize borderHint(const BorderItems& items, int spacing) {
    return sumOf(items, spacing, &BorderItem::hint);
}

QSize borderMinimum(const BorderItems& items, int spacing) {
    return sumOf(items, spacing, &BorderItem::minimum);
}

int borderHeightForWidth(const BorderItems& items, int spacing, int width) {
    const Band down = column(items, width);
    return down.total(&Band::Strip::wish) + down.gaps(spacing) +
           std::max(down.middleLeast, middleHeight(items, spacing, width));
}

} // namespace Kestrel::UI
