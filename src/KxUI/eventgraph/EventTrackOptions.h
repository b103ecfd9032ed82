#pragma once

#include <QColor>
#include <QString>
#include <QtGlobal>

namespace Kestrel::UI {

class EventTrack;

/** The kind of a track. */
enum class EventTrackType : qint32 {
    Timeline = 0, ///< activities, drawn as spans
    Value = 1,    ///< samples, drawn as a graph between the minimum and maximum value
    Bandwidth = 2 ///< bytes per second of each activity of a timeline track
};

/** What a track is made with: its name, its place, the range and height of its graph, how much it
    keeps. Spelled `EventTrack::Options` where a track is made. Its layout is frozen.
    \code
    EventTrack decode(EventTrack::Options::timeline("Decode", Qt::blue).at(10));
    EventTrack memory(EventTrack::Options::graph("Memory", Qt::green, 0, 64).at(20));
    \endcode */
struct EventTrackOptions {
    QString name;                                   ///< shown at the left end of the row, searched
    QColor color;                                   ///< of activities and graphs
    int sortKey = 0;                                ///< rows stand in the order of this number
    EventTrackType type = EventTrackType::Timeline; ///< what the track shows
    float minValue = 0.0F;                          ///< the value at the lower edge of a graph
    float maxValue = 1.0F;                          ///< the value at its upper edge
    int maxEventsPerSecond = 5000;                  ///< kept for each second of a limited capture
    int maxEvents = 10000;                          ///< kept in an unlimited capture
    int graphHeight = 100;                          ///< pixels; a timeline has a height of its own
    /** The timeline that a bandwidth follows, or null; borrowed. */
    EventTrack* timeTrack = nullptr;

    /** A track of activities. */
    static EventTrackOptions timeline(const QString& name, const QColor& color) {
        EventTrackOptions options;
        options.name = name;
        options.color = color;
        return options;
    }
    /** A track of samples between two values. */
    static EventTrackOptions graph(const QString& name, const QColor& color, float minValue,
                                   float maxValue) {
        EventTrackOptions options = timeline(name, color).ranging(minValue, maxValue);
        options.type = EventTrackType::Value;
        return options;
    }
    /** A track of the bytes per second, up to `maxValue`, of each activity of a timeline. */
    static EventTrackOptions bandwidth(const QString& name, const QColor& color, float maxValue,
                                       EventTrack* timeTrack) {
        EventTrackOptions options = timeline(name, color).ranging(0.0F, maxValue);
        options.type = EventTrackType::Bandwidth;
        options.timeTrack = timeTrack;
        return options;
    }

    /** Sets the sort key. */
    EventTrackOptions& at(int key) {
        sortKey = key;
        return *this;
    }
    /** Sets the range of a graph: the values at its lower and upper edge. */
    EventTrackOptions& ranging(float from, float to) {
        minValue = from;
        maxValue = to;
        return *this;
    }
    /** Sets how many events are kept: for each second of a limited capture, and at most in an
        unlimited one. */
    EventTrackOptions& keeping(int eventsPerSecond, int events) {
        maxEventsPerSecond = eventsPerSecond;
        maxEvents = events;
        return *this;
    }
    /** Sets the height of a graph in pixels. */
    EventTrackOptions& high(int pixels) {
        graphHeight = pixels;
        return *this;
    }
};

} // namespace Kestrel::UI
