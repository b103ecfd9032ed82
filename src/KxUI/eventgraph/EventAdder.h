#pragma once

#include <KxUI/eventgraph/EventTrack.h>

namespace Kestrel::UI {

/** Records an activity for as long as it lives: a start when made, an end when destroyed.

    A copy that is destroyed records an end of its own. Borrows the track, which must outlive it. */
class EventAdder {
public:
    /** Does nothing at either end when `enabled` is false or the track is null. */
    EventAdder(EventTrack* track, EventUserDataIP userData, bool enabled)
        : m_track(track)
        , m_userData(std::move(userData))
        , m_active(enabled && track) {
        if (m_active)
            m_track->addEvent(EventTrack::Type::Start, m_userData);
    }

    /** Deleted: a pointer given for `enabled` would silently mean true. */
    EventAdder(EventTrack* track, EventUserDataIP userData, const void* enabled) = delete;

    /** Copies what the end will carry; no start is recorded. */
    EventAdder(const EventAdder&) = default;
    EventAdder& operator=(const EventAdder&) = default;

    ~EventAdder() {
        if (m_active)
            m_track->addEvent(EventTrack::Type::End, std::move(m_userData));
    }

    /** Replaces the user data that the end will carry. */
    void setUserData(EventUserDataIP userData) { m_userData = std::move(userData); }

    /** What the end will carry. */
    EventUserDataIP userData() const { return m_userData; }

private:
    EventTrack* m_track;
    EventUserDataIP m_userData;
    bool m_active;
};

} // namespace Kestrel::UI
