#pragma once

#include <KxUI/kit/BorderLayout.h>

#include <QRect>
#include <QSize>

#include <functional>
#include <vector>

namespace Kestrel::UI {

/** What the places of a BorderLayout's items follow from. */
struct BorderItem {
    BorderLayout::Place place = BorderLayout::Centre;
    QSize hint;
    QSize minimum;
    std::function<int(int)> heightForWidth = {}; ///< empty where the height is that of the hint
    bool hidden = false;

    int heightAt(int width) const { return heightForWidth ? heightForWidth(width) : hint.height(); }
};

using BorderItems = std::vector<BorderItem>;

/** The rectangle of each item within `room`; empty for hidden ones. */
std::vector<QRect> borderRects(const QRect& room, const BorderItems& items, int spacing,
                               Qt::LayoutDirection direction = Qt::LeftToRight);

/** What all items want, and what they need. */
QSize borderHint(const BorderItems& items, int spacing);
QSize borderMinimum(const BorderItems& items, int spacing);

/** What all items want at a width. */
int borderHeightForWidth(const BorderItems& items, int spacing, int width);

} // namespace Kestrel::UI
