#include <KxUI/kit/ChoiceBarLayout_p.h>

#include <QStyle>

#include <algorithm>
#include <numeric>

namespace Kestrel::UI {
namespace {

using Widths = std::vector<int>;

Widths wanted(const std::vector<ChoiceWidth>& choices, bool uniform, bool iconsOnly) {
    Widths widths;
    widths.reserve(choices.size());
    for (const ChoiceWidth& choice : choices)
        widths.push_back(iconsOnly && choice.iconOnly > 0 ? choice.iconOnly : choice.full);
    if (uniform && !widths.empty())
        std::fill(widths.begin(), widths.end(), *std::max_element(widths.begin(), widths.end()));
    return widths;
}

int sum(const Widths& widths) {
    return std::accumulate(widths.begin(), widths.end(), 0);
}

/** The whole parts of `room` that each of `count` gets, the remainder spread from the first on. */
int share(int room, int count, int index) {
    return room * (index + 1) / count - room * index / count;
}

} // namespace

int ChoiceBarLayout::wantedWidth(const std::vector<ChoiceWidth>& widths, bool uniform) {
    return sum(wanted(widths, uniform, false));
}

int ChoiceBarLayout::leastWidth(const std::vector<ChoiceWidth>& widths, bool uniform,
                                int menuWidth) {
    return std::min(sum(wanted(widths, uniform, true)), menuWidth);
}

ChoiceBarLayout ChoiceBarLayout::of(const std::vector<ChoiceWidth>& choices,
                                    const ChoiceBarRoom& room) {
    ChoiceBarLayout layout;
    const int available = room.size.width();
    Widths widths = wanted(choices, room.uniform, false);
    if (sum(widths) > available) {
        layout.iconsOnly = true;
        widths = wanted(choices, room.uniform, true);
    }
    const bool all = sum(widths) <= available;
    if (!all) {
        int left = available - room.menuWidth;
        const auto last = std::find_if(widths.begin(), widths.end(),
                                       [&left](int width) { return (left -= width) < 0; });
        widths.erase(last, widths.end());
    }
    const QRect whole(QPoint(), room.size);
    const int spare = available - sum(widths);
    int x = 0;
    const int count = static_cast<int>(widths.size());
    for (int i = 0; i < count; ++i) {
        const int width = widths[static_cast<std::size_t>(i)] + (all ? share(spare, count, i) : 0);
        layout.parts.push_back(
            QStyle::visualRect(room.direction, whole, QRect(x, 0, width, room.size.height())));
        x += width;
    }
    if (!all)
        layout.menu = QStyle::visualRect(room.direction, whole,
                                         QRect(x, 0, available - x, room.size.height()));
    return layout;
}

int ChoiceBarLayout::choiceAt(const QPoint& point) const {
    const auto part = std::find_if(parts.begin(), parts.end(),
                                   [&](const QRect& rect) { return rect.contains(point); });
    return part == parts.end() ? -1 : static_cast<int>(part - parts.begin());
}

QRect ChoiceBarLayout::partOf(int choice) const {
    return choice >= 0 && choice < seen() ? parts[static_cast<std::size_t>(choice)] : menu;
}

} // namespace Kestrel::UI
