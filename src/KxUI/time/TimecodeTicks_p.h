#pragma once

#include <KxUI/time/TimeSliderGeometry_p.h>

namespace Kestrel::UI {

/** Ticks of a ruler that is labelled in timecode: they stand on whole seconds, minutes and hours, and
    within a second on parts that its frames can be divided into. Counted in labels rather than frames,
    since drop-frame timecode leaves labels out. */
struct TimecodeTicks {
    /** How frames are labelled. */
    struct Rate {
        Base::Time fps = 25;    ///< labels of a second, 1 or more
        Base::Time dropped = 0; ///< labels left out at the minutes that are no tens
        Base::Time start = 0;   ///< labels before frame 0

        /** The frame of a label, or of the first one after it where that is left out. */
        Base::Time frameOf(Base::Time label) const;
        bool isLeftOut(Base::Time label) const;
        /** A label that is not beyond that of a frame, and close to it. */
        Base::Time labelBefore(Base::Time frame) const;
    };

    Rate rate;
    Base::Time step = 1; ///< in labels
    Base::Time major = 1;

    /** As fine as may be, with major ticks whose labels have room. */
    static TimecodeTicks plan(const TimeSliderGeometry& geometry, const Rate& rate, int labelWidth);

    /** Whether times are small enough to be counted in labels. */
    static bool canCount(const TimeSliderRange& visible, const Rate& rate);

    /** As TimeSliderTicks::forEach(). */
    template <class Visit>
    void forEach(const TimeSliderRange& visible, Visit visit) const {
        const Base::Time first = visible.first.time();
        const Base::Time last = visible.last.time();
        Base::Time label = rate.labelBefore(first);
        label -= (label % step + step) % step;
        for (Base::Time before = first;; label += step) {
            // A whole minute is marked at its first frame, also where that has a later label.
            if (rate.isLeftOut(label) && label % rate.fps != 0)
                continue;
            const Base::Time frame = rate.frameOf(label);
            if (frame > last)
                return;
            if (frame > before)
                visit(frame, kindOf(label));
            before = std::max(before, frame);
        }
    }

    /** What stands at a label that is a multiple of the step. */
    TimeSliderTicks::Kind kindOf(Base::Time label) const {
        if (label % major == 0)
            return TimeSliderTicks::Major;
        if (step < rate.fps && label % rate.fps == 0)
            return TimeSliderTicks::Tenth;
        return label % major * 2 % major == 0 ? TimeSliderTicks::Half : TimeSliderTicks::Step;
    }
};

} // namespace Kestrel::UI
