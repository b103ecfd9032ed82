#include <KxUI/eventgraph/EventGraphReader.h>

#include <KxUI/eventgraph/EventFileScanner_p.h>
#include <KxUI/eventgraph/EventGraphView_p.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <KxUI/kit/XmlLimits_p.h>
#include <KxUI/kit/Xml_p.h>

#include <QXmlStreamReader>

#include <limits>

namespace Kestrel::UI {

namespace {

// More than any capture has.
constexpr XmlBounds fileBounds{qint64(4) << 30, 64, 64};

} // namespace

// Where what is read goes.
class EventGraphReader::Tracks {
public:
    explicit Tracks(EventGraphView& view)
        : m_view(view) {}

    void setTimes(int startTime, int endTime) {
        CaptureState& capture = CaptureState::of(m_view);
        const StateWriteGuard guard(capture.lock);
        capture.startTime = startTime;
        capture.endTime = endTime;
    }

    void begin(const QString& name, const QString& colorName, int priority) {
        QColor color;
        color.setNamedColor(colorName);
        auto track =
            std::make_unique<EventTrack>(EventTrack::Options::timeline(name, color).at(priority));
        track->setGraph(&m_view);
        track->clear();
        {
            const MutexGuard guard(profilerMutex());
            EventTrackPrivate& fields = EventTrackPrivate::of(*track);
            fields.options.maxEvents = std::numeric_limits<int>::max();
            fields.eventLimit = std::numeric_limits<int>::max();
        }
        m_startData = nullptr;
        m_loaded.push_back(std::move(track));
    }

    void add(int type, int time, EventUserDataIP userData) {
        // The end of an activity has the data of its start when its own was left out.
        if (static_cast<EventTrack::Type>(type) == EventTrack::Type::Start) {
            m_startData = userData;
        } else {
            if (!userData)
                userData = m_startData;
            m_startData = nullptr;
        }
        // The time is the event's own, even where it is the number that means now elsewhere.
        EventTrackPrivate::of(*m_loaded.back())
            .record(static_cast<EventTrack::Type>(type), userData, time,
                    EventTrackPrivate::TimeOf::Event);
    }

    // Gives the tracks rows. A row stands before those of equal priority that were there, so the
    // last one comes first. Without clear(), unlike EventGraphView::addTrack.
    void finish() {
        const MutexGuard guard(profilerMutex());
        CaptureState& capture = CaptureState::of(m_view);
        for (std::size_t i = m_loaded.size(); i > m_first; --i)
            capture.addRow(EventTrackPrivate::of(*m_loaded[i - 1]));
        capture.rowsChanged();
    }

private:
    EventGraphView& m_view;
    std::vector<std::unique_ptr<EventTrack>>& m_loaded =
        EventGraphViewPrivate::of(m_view).loadedTracks;
    const std::size_t m_first = m_loaded.size();
    EventUserDataIP m_startData;
};

EventGraphReader::EventGraphReader(EventGraphView& view)
    : m_view(view) {}

bool EventGraphReader::read(QIODevice* device) {
    m_error.clear();
    Tracks tracks(m_view);
    const bool ok = readInto(tracks, device);
    tracks.finish();
    return ok;
}

bool EventGraphReader::readInto(Tracks& tracks, QIODevice* device) {
    const bool readable = device && device->isReadable();
    XmlLimits limits(readable ? device : nullptr, fileBounds);
    if (readable && !device->isSequential() && limits.violation().isEmpty()) {
        const qint64 from = device->pos();
        if (const auto file = scanEventFile(device)) {
            tracks.setTimes(file->startTime, file->endTime);
            for (const EventFile::Track& track : file->tracks) {
                tracks.begin(track.name, track.color, track.priority);
                for (const EventFile::Event& event : track.events)
                    tracks.add(event.type, event.time, event.text);
            }
            return true;
        }
        device->seek(from);
    }

    limits.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    QXmlStreamReader xml(&limits);
    if (readable)
        readDocument(xml, tracks);
    else
        xml.raiseError(tr("The device is not open for reading"));
    if (!limits.violation().isEmpty())
        xml.raiseError(limits.violation());
    if (!xml.hasError())
        return true;
    m_error = tr("%1\nLine %2, column %3")
                  .arg(xml.errorString(), QString::number(xml.lineNumber()),
                       QString::number(xml.columnNumber()));
    return false;
}

void EventGraphReader::readDocument(QXmlStreamReader& xml, Tracks& tracks) {
    while (!xml.atEnd() && !xml.isStartElement()) {
        // XmlLimits knows UTF-8 and UTF-16; a document may name another encoding.
        if (xml.readNext() == QXmlStreamReader::DTD)
            xml.raiseError(XmlLimits::tr("A document type declaration is not allowed"));
    }
    if (xml.hasError())
        return;
    if (xml.name() != QLatin1String("EventGraph")) {
        xml.raiseError(tr("The file doesn't contain an event graph"));
        return;
    }
    const QXmlStreamAttributes attributes = xml.attributes();
    tracks.setTimes(Xml::number(attributes, "StartTime"), Xml::number(attributes, "EndTime"));
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("Track"))
            readTrack(xml, tracks);
        else
            xml.skipCurrentElement();
    }
    // What follows the root has to be read for its errors to be found.
    while (!xml.atEnd())
        xml.readNext();
}

void EventGraphReader::readTrack(QXmlStreamReader& xml, Tracks& tracks) {
    const QXmlStreamAttributes attributes = xml.attributes();
    tracks.begin(Xml::text(attributes, "Name"), Xml::text(attributes, "Color"),
                 Xml::number(attributes, "Priority"));
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("Event"))
            readEvent(xml, tracks);
        else
            xml.skipCurrentElement();
    }
}

void EventGraphReader::readEvent(QXmlStreamReader& xml, Tracks& tracks) {
    const QXmlStreamAttributes attributes = xml.attributes();
    const int type = Xml::number(attributes, "Type");
    const int time = Xml::number(attributes, "Time");
    EventUserDataIP userData;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("EventData"))
            userData = new EventUserDataString(xml.readElementText());
        else
            xml.skipCurrentElement();
    }
    if (!xml.hasError())
        tracks.add(type, time, std::move(userData));
}

} // namespace Kestrel::UI
