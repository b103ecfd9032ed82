#pragma once

#include <array>
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

/** Columns from x to before `end`; none where they are the same. */
struct TimeSliderSpan {
    int x = 0;
    int end = 0;
};

/** What the times of the in and the out mark cover. */
using TimeSliderMarkSpans = std::array<TimeSliderSpan, 2>;

/** Where the playhead's time is written: its left end when it is centred on the playhead and kept
    inside the widget, or, where that would run into the time of a mark, beside that one. Nothing
    where there is no room close by. */
std::optional<int> playheadLabelLeft(int width, int x, int labelWidth,
                                     const TimeSliderMarkSpans& marks);

} // namespace Kestrel::UI
