#pragma once

#include <QMetaType>

#include <cstdint>

namespace Kestrel::UI {

/** What a host's player is doing. */
enum PlaybackStatus : std::int32_t {
    NoPlayback = 0,       ///< there is nothing to play
    PlayingBackwards = 1, ///< time runs towards the start
    Stopped = 2,          ///< there is something to play, and it stands still
    PlayingForwards = 3   ///< time runs towards the end
};

} // namespace Kestrel::UI

Q_DECLARE_METATYPE(Kestrel::UI::PlaybackStatus)
