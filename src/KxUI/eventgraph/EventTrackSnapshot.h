#pragma once

#include <KxUI/eventgraph/EventTrack.h>

namespace Kestrel::UI {

/** What a track held at one moment: a value that nothing changes and no lock guards. It keeps its
    events and their user data alive. Its layout is frozen. */
struct EventTrackSnapshot {
    QString name;                                                 ///< EventTrack::name()
    QColor color;                                                 ///< EventTrack::color()
    int sortKey = 0;                                              ///< EventTrack::sortKey()
    EventTrack::TrackType type = EventTrack::TrackType::Timeline; ///< EventTrack::type()
    float minValue = 0;                                           ///< EventTrack::minValue()
    float maxValue = 0;                                           ///< EventTrack::maxValue()
    int graphHeight = 0;                                          ///< EventTrack::graphHeight()
    EventTrack::EventList events;                                 ///< oldest first
    bool hasSamples = false;                                      ///< EventTrack::hasSamples()
    QString tooltipText; ///< EventTrack::trackTooltipText()
};

} // namespace Kestrel::UI
