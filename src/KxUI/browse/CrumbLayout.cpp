#include <KxUI/browse/CrumbLayout_p.h>

#include <algorithm>
#include <numeric>

namespace Kestrel::UI {

CrumbLayout CrumbLayout::of(const std::vector<int>& widths, int arrow, int dots, int room) {
    CrumbLayout layout;
    const std::size_t count = widths.size();
    layout.crumbs.resize(count);
    layout.arrows.resize(count);
    if (count == 0)
        return layout;

    // Those from `first` on are shown behind the first one and the dots.
    std::size_t first = 1;
    int needed = std::accumulate(widths.begin(), widths.end(), static_cast<int>(count) * arrow);
    for (; needed > room && first + 1 < count; ++first) {
        needed -= widths[first] + arrow;
        if (first == 1)
            needed += dots + arrow;
    }
    const bool hasDots = first > 1;
    const bool hidesRoot = hasDots && needed > room;
    if (hidesRoot)
        needed -= widths[0] + arrow;

    int at = 0;
    const auto place = [&at](Span& span, int width) {
        span = {at, width};
        at += width;
    };
    for (std::size_t i = 0; i < count; ++i) {
        if (i == 1 && hasDots) {
            place(layout.dots, dots);
            place(layout.dotsArrow, arrow);
        }
        if ((i == 0 && hidesRoot) || (i > 0 && i < first))
            continue;
        const bool isLast = i + 1 == count;
        const int excess = isLast ? std::max(0, needed - room) : 0;
        place(layout.crumbs[i], std::max(std::min(widths[i], arrow), widths[i] - excess));
        place(layout.arrows[i], arrow);
    }
    layout.end = at;
    return layout;
}

} // namespace Kestrel::UI
