#pragma once

#include <KxUI/base/Time.h>
#include <KxUI/time/TimeSliderTime.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace Kestrel::UI {

/** A range of frames, both ends part of it; invalid while an end is. */
struct TimeSliderRange {
    TimeSliderTime first;
    TimeSliderTime last;

    TimeSliderTime length() const { return last + 1 - first; }
    bool isValid() const { return first.isValid() && last.isValid(); }
    bool contains(TimeSliderTime time) const { return time >= first && time <= last; }
    TimeSliderRange shifted(TimeSliderTime by) const { return {first + by, last + by}; }

    friend bool operator==(const TimeSliderRange& a, const TimeSliderRange& b) {
        return a.first == b.first && a.last == b.last;
    }
};

/** The range made `factor` times shorter about `centre`. Never the same range unless the factor is
    1, cannot be used, or there is no shorter range. */
TimeSliderRange zoomedRange(const TimeSliderRange& range, TimeSliderTime centre, float factor);

/** The same by rounding alone, which leaves a short range as it is for a factor close to 1. */
TimeSliderRange zoomedRangeByRounding(const TimeSliderRange& range, TimeSliderTime centre,
                                      float factor);

/** The range moved so that it contains `time`: at its end (mode 1, coming from before it), at its
    start (mode 3, coming from after it) or in the centre; not beyond the clip for a time of the
    clip. The range itself if it contains the time. */
TimeSliderRange scrolledRange(const TimeSliderRange& range, TimeSliderTime time, int mode,
                              const TimeSliderRange& clip);

/** Where times are on a slider of some size: pure arithmetic, with an answer for every input. */
struct TimeSliderGeometry {
    static constexpr int Margin = 5;             ///< beside and above the ruler
    static constexpr int RangeBarHeight = 3;     ///< of the overview bar, at the top
    static constexpr int Baseline = 16 + Margin; ///< where the ticks stand
    static constexpr int KeyFrameY = 22;
    static constexpr int StripHeight = 2;

    int width = 0;
    int height = 0;
    TimeSliderRange visible;
    TimeSliderRange clip;

    /** The clip has frames to show. */
    bool hasClip() const { return clip.length() >= 1; }

    /** Pixels that the visible range is spread over, 0 on the narrowest widgets. */
    int innerWidth() const { return width > 2 * Margin ? width - 2 * Margin : 0; }

    int timeToX(Base::Time time) const;
    Base::Time xToTime(int x) const;
    int clampX(int x) const;

    /** How many frames a distance in pixels is worth, rounded half away from zero. */
    TimeSliderTime pixelsToTime(float pixels) const;

    /** The overview bar maps the whole clip. */
    int timeToRangeBarX(TimeSliderTime time) const;
    TimeSliderTime xToRangeBarTime(int x) const;

    /** Top of a cache bar. */
    static int cacheBarY(int bar, int bars) { return 23 + bar * (bars == 1 ? 4 : 3); }

    /** How far a drag with the cursor at x scrolls in one step: 0 unless x is more than 5 pixels
        outside the widget, else the time of 20 pixels, at least a frame, towards the cursor. */
    TimeSliderTime autoScroll(int x) const;
};

/** TimeSliderGeometry::timeToX() for many times: what they share is worked out once. */
class TimeSliderMapping {
public:
    explicit TimeSliderMapping(const TimeSliderGeometry& geometry)
        : m_first(geometry.visible.first)
        , m_length(geometry.visible.length() >= 1 ? geometry.visible.length().toFloat() : 0)
        , m_width(static_cast<float>(geometry.innerWidth())) {}

    int operator()(Base::Time time) const {
        if (time == Base::InvalidTime || !(m_length > 0))
            return TimeSliderGeometry::Margin;
        const float x = m_width * ((TimeSliderTime(time) - m_first).toFloat() / m_length);
        return TimeSliderGeometry::Margin + static_cast<int>(std::clamp(x, -FarAway, FarAway));
    }

    /** Pixels far outside any widget, and still safe to add to another coordinate. */
    static constexpr float FarAway = 1 << 30;

private:
    TimeSliderTime m_first;
    float m_length; ///< in frames, 0 while nothing is visible
    float m_width;
};

inline int TimeSliderGeometry::timeToX(Base::Time time) const {
    return TimeSliderMapping(*this)(time);
}

/** A part of the ruler's background, from x up to but without end. */
struct TimeSliderBand {
    enum Kind { Clip, Playback, Outside };
    int x;
    int end;
    Kind kind;
};

/** The ruler's background from left to right without gaps or overlaps; empty bands are possible. */
std::array<TimeSliderBand, 5> planBands(const TimeSliderGeometry& geometry,
                                        const TimeSliderRange& playback);

/** How fine the ticks are: in frames, and the pixels between two steps. */
struct TimeSliderTicks {
    enum Kind { Major, Step, Half, Tenth };

    Base::Time step = 1;
    Base::Time major = 10;
    double pixelsPerStep = 0;

    static TimeSliderTicks plan(const TimeSliderGeometry& geometry);

    /** Rows of a tick of this kind above the baseline. A plain step is the shortest on purpose: it
        is the most frequent and must not compete with the labels' ticks. */
    static int rows(Kind kind) {
        constexpr std::array<int, 4> rowsOf = {6, 2, 3, 4};
        return rowsOf[static_cast<std::size_t>(kind)];
    }

    /** Calls visit(time, kind) for each tick after the first visible time, in order: a thousand at
        most. */
    template <class Visit>
    void forEach(const TimeSliderRange& visible, Visit visit) const {
        // In units of the finest ticks that are wanted; their places within a major step repeat.
        const bool tenths = step >= 10 && pixelsPerStep > 30;
        const bool halves = step >= 10 && pixelsPerStep > 10;
        const Base::Time unit = tenths ? step / 10 : halves ? step / 2 : step;
        const int perStep = static_cast<int>(step / unit);
        const int perMajor = static_cast<int>(major / unit);

        const Base::Time first = visible.first.time();
        const Base::Time pastUnit = first % unit < 0 ? first % unit + unit : first % unit;
        // Differences of any two times fit 64 unsigned bits.
        const auto origin = static_cast<std::uint64_t>(first);
        const std::uint64_t span = static_cast<std::uint64_t>(visible.last.time()) - origin;
        const auto offset = static_cast<std::uint64_t>(unit - pastUnit);
        if (offset > span)
            return;
        auto time = static_cast<Base::Time>(origin + offset);
        int place = static_cast<int>(time / unit % perMajor);
        if (place < 0)
            place += perMajor;
        for (std::uint64_t left = (span - offset) / static_cast<std::uint64_t>(unit);; --left) {
            if (place == 0)
                visit(time, Major);
            else if (place % perStep == 0)
                visit(time, Step);
            else
                visit(time, tenths && place % 5 != 0 ? Tenth : Half);
            if (left == 0)
                return;
            time += unit;
            place = place + 1 == perMajor ? 0 : place + 1;
        }
    }
};

} // namespace Kestrel::UI
