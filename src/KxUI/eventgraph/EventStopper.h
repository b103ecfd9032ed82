#pragma once

#include <KxUI/eventgraph/EventTrack.h>

namespace Kestrel::UI {

/** Records the end of an activity that was started elsewhere, when it is destroyed.
    Borrows the track, which must outlive it. */
class EventStopper {
public:
    /** Does nothing when the track is null. */
    explicit EventStopper(EventTrack* track)
        : m_track(track) {}

    ~EventStopper() {
        if (m_track)
            m_track->addEvent(EventTrack::Type::End, EventUserDataIP());
    }

private:
    EventTrack* m_track;
};

} // namespace Kestrel::UI
