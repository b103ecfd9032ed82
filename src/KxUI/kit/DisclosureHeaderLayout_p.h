#pragma once

#include <QRect>

namespace Kestrel::UI {

/** What stands in the header of a section, and how wide it wants to be in pixels; 0 for what is not
    there. */
struct DisclosureHeaderParts {
    int arrow = 0;
    int check = 0;
    int title = 0;
    int dot = 0;
    int summary = 0;
    int widgets = 0; ///< of the host, with the gaps between them
};

/** Where that is. The title gives up room last but for the host's widgets, which give up none. */
struct DisclosureHeaderLayout {
    static constexpr int Margin = 4;
    static constexpr int Gap = 6;

    QRect arrow;
    QRect check;
    QRect title;
    QRect dot;
    QRect summary;
    QRect widgets;

    static DisclosureHeaderLayout of(const QSize& size, const DisclosureHeaderParts& parts,
                                     Qt::LayoutDirection direction);
    /** All of it, and what cannot be done without. */
    static int wantedWidth(const DisclosureHeaderParts& parts);
    static int leastWidth(const DisclosureHeaderParts& parts);
};

/** The offset of a view of `viewHeight` at which `top` to `bottom` is seen, as far as it fits, and
    `top` in any case; the nearest to `offset`. */
int revealedOffset(int top, int bottom, int viewHeight, int offset);

} // namespace Kestrel::UI
