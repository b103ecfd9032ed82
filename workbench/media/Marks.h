#pragma once

#include <KxUI/base/Time.h>

#include <set>

namespace Kestrel::Workbench {

/** What is marked on a timeline. A plain value. */
struct Marks {
    /** InvalidTime where there is none. */
    Base::Time in = Base::InvalidTime;
    Base::Time out = Base::InvalidTime;
    /** Whether playback stays between the marks. */
    bool isLocked = false;
    std::set<Base::Time> keyFrames;

    bool operator==(const Marks& other) const {
        return in == other.in && out == other.out && isLocked == other.isLocked &&
               keyFrames == other.keyFrames;
    }
    bool operator!=(const Marks& other) const { return !(*this == other); }
};

} // namespace Kestrel::Workbench
