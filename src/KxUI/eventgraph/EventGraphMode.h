#pragma once

namespace Kestrel::UI {

/** Which events a capture keeps when there are more than its tracks may hold. */
enum class EventGraphMode : int {
    /** From the start of the capture until a track is full or the capture's duration has passed. */
    Forwards = 0,
    /** Continuously; a full track forgets its oldest event, and the stop drops what is older than
        the capture's duration. */
    History = 1
};

} // namespace Kestrel::UI
