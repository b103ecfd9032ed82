#pragma once

#include <cstdint>
#include <limits>

namespace Kestrel::Base {

/** A count of frames at the current time base. It is not a duration in seconds and carries no rate
    of its own. */
using Time = std::int64_t;

/** The time that is not set: what parsing returns on failure and formatting prints as dashes. */
inline constexpr Time InvalidTime = std::numeric_limits<Time>::min();

} // namespace Kestrel::Base
