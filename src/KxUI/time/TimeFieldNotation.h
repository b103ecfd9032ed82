#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/Time.h>
#include <KxUI/base/TimeBase.h>
#include <KxUI/base/Timecode.h>

#include <QString>

namespace Kestrel::UI {

/** How a field writes its time and reads what is typed. A plain value for any thread; its layout is
    frozen. */
struct KXUI_EXPORT TimeFieldNotation {
    Base::TimeBase timeBase{25, false};                          ///< what times are counted at
    Base::Timecode::DisplayType type = Base::Timecode::Timecode; ///< what they are written as
    Base::Time offset = 0; ///< the timecode of frame 0, as a number of frames

    /** The notation that two flags ask for: frame numbers, or timecode with or without drop frame.
     */
    static Base::Timecode::DisplayType displayType(bool displayTimecode, bool displayDropFrames) {
        if (!displayTimecode)
            return Base::Timecode::Frames;
        return displayDropFrames ? Base::Timecode::DropFrameTimecode : Base::Timecode::Timecode;
    }

    /** What the user meant by a text. */
    struct Edit {
        /** What is to be done. */
        enum Kind {
            Nothing, ///< no text
            Failed,  ///< it can not be read
            SetTime, ///< go to `time`
            SetRange ///< the range `time` to `upper`; `upper` may be invalid
        };

        Kind kind = Nothing;                  ///< what is to be done
        Base::Time time = Base::InvalidTime;  ///< InvalidTime where there is none
        Base::Time upper = Base::InvalidTime; ///< of a range
    };

    /** The text of a time, none for InvalidTime. */
    QString text(Base::Time time) const;

    /** Reads a text: "+" and "-" step from `current` (from 0 if that is invalid), a "-" further
        inside joins two times to a range, anything else is a time. Steps and ranges know no
        offset. */
    Edit read(const QString& text, Base::Time current) const;

    /** The number of frames that the digit right of `caret` counts in a text; 0 where there is none
        or the number does not fit. */
    Base::Time digitStep(const QString& text, int caret) const;
};

} // namespace Kestrel::UI
