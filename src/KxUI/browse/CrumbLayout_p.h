#pragma once

#include <vector>

namespace Kestrel::UI {

/** Where the crumbs of a path lie in a row, from left to right: each with an arrow behind it, and,
    where there is no room for all, dots in the place of those behind the first. */
struct CrumbLayout {
    struct Span {
        int left = 0;
        int width = 0; ///< 0 for what is hidden

        int right() const { return left + width; }
    };

    std::vector<Span> crumbs;
    std::vector<Span> arrows;
    Span dots;
    Span dotsArrow;
    int end = 0; ///< where free space begins

    /** Of crumbs as wide as these. `room` is what there is without what must stay free. The last
        crumb is narrowed where nothing else is left. */
    static CrumbLayout of(const std::vector<int>& widths, int arrow, int dots, int room);
};

} // namespace Kestrel::UI
