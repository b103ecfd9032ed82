#include <KxUI/time/TimeSliderLabels_p.h>

#include <KxUI/time/TimeSliderGeometry_p.h>

#include <algorithm>
#include <cstdlib>

namespace Kestrel::UI {

TimeSliderLabels::TimeSliderLabels(const TimeSliderGeometry& geometry, int firstWidth,
                                   int lastWidth)
    : m_width(geometry.width)
    , m_firstWidth(firstWidth)
    , m_lastWidth(lastWidth)
    , m_taken(firstWidth) {}

bool TimeSliderLabels::lastFits() const {
    return m_firstWidth + Gap + m_lastWidth <= m_width;
}

bool TimeSliderLabels::take(int x, int labelWidth) {
    constexpr int margin = TimeSliderGeometry::Margin;
    const int half = (labelWidth + 1) / 2;
    if (x <= 2 * margin + half + m_firstWidth || x >= m_width - 2 * margin - half - m_lastWidth)
        return false;
    if (x - half < m_taken + Gap)
        return false;
    m_taken = x + half;
    return true;
}

TimeSliderMarkLabels TimeSliderMarkLabels::plan(int width, const std::optional<Mark>& in,
                                                const std::optional<Mark>& out) {
    TimeSliderMarkLabels labels;
    int inEnd = in ? in->x : -1;
    if (in) {
        const bool hasRoom = in->x - in->labelWidth - Gap >= 0;
        const int x = hasRoom ? in->x - in->labelWidth - Gap : in->x + Gap;
        if (hasRoom || x + in->labelWidth < (out ? out->x : width)) {
            labels.in = x;
            inEnd = std::max(inEnd, x + in->labelWidth);
        }
    }
    if (out) {
        const bool hasRoom = out->x + Gap + out->labelWidth <= width;
        const int x = hasRoom ? out->x + Gap : out->x - out->labelWidth - Gap;
        if (hasRoom || x > inEnd + 1)
            labels.out = x;
    }
    return labels;
}

std::optional<int> playheadLabelLeft(int width, int x, int labelWidth,
                                     const TimeSliderMarkSpans& marks) {
    constexpr int gap = TimeSliderLabels::Gap;
    const int centred = std::max(std::min(x - labelWidth / 2, width - labelWidth), 0);
    const auto isFree = [&](int left) {
        return std::none_of(marks.begin(), marks.end(), [&](const TimeSliderSpan& mark) {
            return mark.x < mark.end && left < mark.end + gap && left + labelWidth + gap > mark.x;
        });
    };
    if (isFree(centred))
        return centred;
    std::optional<int> nearest;
    for (const TimeSliderSpan& mark : marks) {
        for (const int left : {mark.x - gap - labelWidth, mark.end + gap}) {
            const bool isInside = left >= 0 && left + labelWidth <= width;
            const int apart = std::abs(left - centred);
            if (isInside && isFree(left) && apart <= 2 * labelWidth &&
                (!nearest || apart < std::abs(*nearest - centred)))
                nearest = left;
        }
    }
    return nearest;
}

} // namespace Kestrel::UI
