#include <KxUI/picker/SwatchGridGeometry_p.h>

#include <algorithm>

namespace Kestrel::UI {

int SwatchGridGeometry::columns() const {
    return std::max(1, (width - 2 * Margin + Gap) / pitch());
}

int SwatchGridGeometry::rows() const {
    return (count + columns() - 1) / columns();
}

int SwatchGridGeometry::height() const {
    return rows() == 0 ? 0 : rows() * pitch() - Gap + 2 * Margin;
}

QRect SwatchGridGeometry::cellOf(int index) const {
    if (index < 0 || index >= count)
        return {};
    const int left = Margin + index % columns() * pitch();
    const int top = Margin + index / columns() * pitch();
    return {isMirrored ? width - left - cell : left, top, cell, cell};
}

// Counted from the side where rows begin; not limited.
int SwatchGridGeometry::columnAt(int x) const {
    const int along = (isMirrored ? width - 1 - x : x) - Margin + Gap / 2;
    return along < 0 ? -1 : along / pitch();
}

int SwatchGridGeometry::cellAt(const QPoint& place) const {
    const int column = columnAt(place.x());
    const int down = place.y() - Margin + Gap / 2;
    if (column < 0 || column >= columns() || down < 0)
        return -1;
    const int index = down / pitch() * columns() + column;
    return index < count ? index : -1;
}

int SwatchGridGeometry::gapAt(const QPoint& place) const {
    const int row =
        std::clamp((place.y() - Margin + Gap / 2) / pitch(), 0, std::max(0, rows() - 1));
    const int along = (isMirrored ? width - 1 - place.x() : place.x()) - Margin + cell / 2;
    const int column = std::clamp(along / pitch(), 0, columns());
    const bool isBelow = place.y() >= height() - Margin + Gap;
    return isBelow ? count : std::min(count, row * columns() + column);
}

QRect SwatchGridGeometry::gapLine(int index) const {
    if (count == 0)
        return {isMirrored ? width - Margin : Margin - Gap, Margin, Gap, cell};
    // At the end of a row rather than at the beginning of one that is not there.
    const bool isAfter = index >= count;
    const QRect beside = cellOf(isAfter ? count - 1 : index);
    const int left = isAfter != isMirrored ? beside.right() + 1 : beside.left() - Gap;
    return {left, beside.top(), Gap, cell};
}

int SwatchGridGeometry::firstIn(const QRect& area) const {
    return std::clamp((area.top() - Margin) / pitch(), 0, rows()) * columns();
}

int SwatchGridGeometry::endIn(const QRect& area) const {
    return std::min(count,
                    std::clamp((area.bottom() - Margin) / pitch() + 1, 0, rows()) * columns());
}

} // namespace Kestrel::UI
