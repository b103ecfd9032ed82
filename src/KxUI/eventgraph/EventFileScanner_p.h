#pragma once

#include <KxUI/eventgraph/EventUserDataIP.h>

#include <QString>

#include <optional>
#include <vector>

QT_BEGIN_NAMESPACE
class QIODevice;
QT_END_NAMESPACE

namespace Kestrel::UI {

/** What a capture file says. */
struct EventFile {
    struct Event {
        int type = 0;
        int time = 0;
        EventUserDataIP text; ///< an EventUserDataString, or null
    };
    struct Track {
        QString name;
        QString color;
        int priority = 0;
        std::vector<Event> events;
    };

    int startTime = 0;
    int endTime = 0;
    std::vector<Track> tracks;
};

/** Reads a document of exactly the shape that EventGraphWriter gives it (white space between
    elements is free), many times as fast as an XML reader. Anything else, errors included, gives
    null and is the business of a real reader. Reads from the device's position on, in blocks. */
std::optional<EventFile> scanEventFile(QIODevice* device);

} // namespace Kestrel::UI
