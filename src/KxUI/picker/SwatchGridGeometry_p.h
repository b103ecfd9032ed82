#pragma once

#include <QPoint>
#include <QRect>

namespace Kestrel::UI {

/** Where the cells of a grid of swatches are, in logical pixels from the top of its contents.
    Columns go from left to right, or from right to left. */
struct SwatchGridGeometry {
    static constexpr int Gap = 2;
    static constexpr int Margin = 3;

    int cell = 20;
    int width = 0; ///< of the viewport
    int count = 0;
    bool isMirrored = false;

    int pitch() const { return cell + Gap; }
    /** At least 1. */
    int columns() const;
    int rows() const;
    int height() const;
    /** Null for an index that is not there. */
    QRect cellOf(int index) const;
    /** The cell at a place, with half of the gap around it; -1 for none. */
    int cellAt(const QPoint& place) const;
    /** Before which cell something that is dropped at a place goes, up to `count`. */
    int gapAt(const QPoint& place) const;
    /** The line that shows this place. */
    QRect gapLine(int index) const;
    /** The cells that an area shows, from the first one up to but without the last. */
    int firstIn(const QRect& area) const;
    int endIn(const QRect& area) const;

private:
    int columnAt(int x) const;
};

} // namespace Kestrel::UI
