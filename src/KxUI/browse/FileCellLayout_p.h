#pragma once

#include <QRect>
#include <QSize>

namespace Kestrel::UI {

/** Where the parts of an item lie in a view without columns. */
struct FileCellLayout {
    static constexpr int Margin = 4;
    static constexpr int Gap = 6;
    static constexpr int IconSide = 16;
    static constexpr int PictureHeight = 90;

    QRect picture; ///< or icon
    QRect name;
    QRect facts; ///< frames, and which are missing

    /** One line: icon, name, facts at the other end, which take `factsWidth` but leave two
        fifths of the line to the name. */
    static FileCellLayout compact(const QRect& cell, int factsWidth, bool isRightToLeft);

    /** A picture above two lines. */
    static FileCellLayout thumbnail(const QRect& cell, int lineHeight);

    /** The size of a cell for letters of this height and usual width. */
    static QSize compactSize(int lineHeight, int letter);
    static QSize thumbnailSize(int lineHeight, int letter);

    /** Where a picture of this size, in points, lies in `frame`: whole, in its middle, never
        enlarged. */
    static QRect fitted(const QSizeF& picture, const QRect& frame);
};

} // namespace Kestrel::UI
