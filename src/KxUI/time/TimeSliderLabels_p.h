#pragma once

#include <optional>

namespace Kestrel::UI {

struct TimeSliderGeometry;

/** Which tick labels fit, asked from left to right between the labels of the first and the last
    visible time. Widths in pixels. */
class TimeSliderLabels {
public:
    static constexpr int Gap = 4; ///< between two labels

    TimeSliderLabels(const TimeSliderGeometry& geometry, int firstWidth, int lastWidth);

    /** Whether the label of the last visible time is clear of the first one's. */
    bool lastFits() const;

    /** Whether a label centred on x fits; if so it takes its room. */
    bool take(int x, int labelWidth);

private:
    int m_width;
    int m_firstWidth;
    int m_lastWidth;
    int m_taken; ///< the right edge of what is drawn so far
};

/** Where the times of the marks are written, in widget pixels: beside their mark, away from the
    other one as long as there is room. */
struct TimeSliderMarkLabels {
    static constexpr int Gap = 4; ///< between a mark and its time

    std::optional<int> in; ///< left end; nothing where it would run into the other mark
    std::optional<int> out;

    /** A mark is at an x of the ruler, with the width of its time; nothing where it is unset. */
    struct Mark {
        int x;
        int labelWidth;
    };
    static TimeSliderMarkLabels plan(int width, const std::optional<Mark>& in,
                                     const std::optional<Mark>& out);
};

} // namespace Kestrel::UI
