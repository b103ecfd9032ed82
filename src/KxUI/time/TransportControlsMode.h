#pragma once

#include <QMetaType>

#include <cstdint>

namespace Kestrel::UI {

/** Where the jump buttons of the transport controls go. */
enum TransportControlsMode : std::int32_t {
    KeyframesOrEdits = 0, ///< to the next keyframe or edit, whichever is nearest
    KeyframesOnly = 1     ///< to the next keyframe
};

} // namespace Kestrel::UI

Q_DECLARE_METATYPE(Kestrel::UI::TransportControlsMode)
