#include <KxUI/eventgraph/EventGraphWriter.h>

#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventTraceWriter_p.h>
#include <KxUI/kit/Flush_p.h>
#include <KxUI/kit/Xml_p.h>

#include <QIODevice>
#include <QXmlStreamWriter>

namespace Kestrel::UI {
namespace {

// A QXmlStreamWriter that writes into a string, which it does several times as fast as to a device,
// and a string that goes to the device in large pieces.
class Document {
public:
    explicit Document(QIODevice* device)
        : m_device(device) {
        QByteArray declaration;
        QXmlStreamWriter(&declaration).writeStartDocument();
        m_xml.setAutoFormatting(true);
        m_xml.writeStartDocument();
        // To a string it is written without the encoding.
        m_text = QString::fromLatin1(declaration);
        m_text.reserve(2 * pieceSize); // which also keeps the room when it is emptied
    }

    // Call between elements: a piece must not end amid a surrogate pair.
    void passOn() {
        if (m_text.size() >= pieceSize)
            flush();
    }

    bool finish() {
        m_xml.writeEndDocument();
        flush();
        return !m_failed;
    }

    bool failed() const { return m_failed; }

    QXmlStreamWriter& xml() { return m_xml; }

private:
    static constexpr int pieceSize = 1 << 14;

    void flush() {
        const QByteArray bytes = m_text.toUtf8();
        m_failed = m_failed || m_device->write(bytes) != bytes.size();
        m_text.resize(0);
    }

    QIODevice* m_device;
    QString m_text;
    QXmlStreamWriter m_xml{&m_text};
    bool m_failed = false;
};

class Writing {
public:
    Writing(QIODevice* device, EventGraphWriter::Flags flags)
        : m_document(device)
        , m_flags(flags) {}

    bool write(const EventGraphSnapshot& capture) {
        QXmlStreamWriter& xml = m_document.xml();
        xml.writeStartElement(QStringLiteral("EventGraph"));
        Xml::writeNumber(xml, "StartTime", capture.startTime);
        Xml::writeNumber(xml, "EndTime", capture.endTime);
        for (const EventTrackSnapshot& track : capture.tracks)
            writeTrack(track);
        xml.writeEndElement();
        return m_document.finish();
    }

private:
    void writeTrack(const EventTrackSnapshot& track) {
        QXmlStreamWriter& xml = m_document.xml();
        xml.writeStartElement(QStringLiteral("Track"));
        Xml::writeText(xml, "Name", track.name);
        Xml::writeText(xml, "Color", track.color.name());
        Xml::writeNumber(xml, "Priority", track.sortKey);
        if (!track.events.empty())
            writeEvents(track.events);
        xml.writeEndElement();
        xml.setAutoFormatting(true);
    }

    // The automatic format is made of many small pieces, each of which costs as much as a tag; here
    // line break and indentation are one.
    void writeEvents(const EventTrack::EventList& events) {
        m_document.xml().setAutoFormatting(false);
        for (const EventTrack::Event& event : events) {
            if (m_document.failed())
                break;
            writeEvent(event);
        }
        writeSpace(m_trackIndent);
    }

    void writeEvent(const EventTrack::Event& event) {
        QXmlStreamWriter& xml = m_document.xml();
        const bool hasText = takesText(event.userData);
        writeSpace(m_eventIndent);
        if (hasText)
            xml.writeStartElement(m_event);
        else
            xml.writeEmptyElement(m_event);
        const auto type = static_cast<std::size_t>(event.type);
        xml.writeAttribute(m_type, m_types[type]);
        if (event.time != m_lastTime || m_lastTimeText.isEmpty()) {
            m_lastTime = event.time;
            m_lastTimeText = QString::number(event.time);
        }
        xml.writeAttribute(m_time, m_lastTimeText);
        if (hasText) {
            writeText(event.userData->text());
            xml.writeEndElement();
        }
        m_document.passOn();
    }

    // White space between elements. writeDTD writes its text as it stands; writeCharacters would
    // look for something to escape in it, which takes a good part of the time of a capture.
    void writeSpace(const QString& space) { m_document.xml().writeDTD(space); }

    // Whether the text is to be written; remembers the object for the next event.
    bool takesText(const EventUserDataIP& userData) {
        if (!(m_flags & EventGraphWriter::IncludeUserData))
            return false;
        const bool duplicate = userData.get() == m_remembered.get();
        if (!duplicate)
            m_remembered = userData;
        return userData && !(duplicate && (m_flags & EventGraphWriter::SkipDuplicates));
    }

    void writeText(const QString& text) {
        QXmlStreamWriter& xml = m_document.xml();
        writeSpace(m_dataIndent);
        const QString characters = Xml::writable(text);
        // A reader turns carriage returns into line feeds unless they are references.
        if (characters.contains(QLatin1Char('\r'))) {
            xml.writeStartElement(m_eventData);
            const QStringList parts = characters.split(QLatin1Char('\r'));
            for (int i = 0; i < parts.size(); ++i) {
                if (i > 0)
                    xml.writeEntityReference(QStringLiteral("#13"));
                xml.writeCharacters(parts.at(i));
            }
            xml.writeEndElement();
        } else {
            xml.writeTextElement(m_eventData, characters);
        }
        writeSpace(m_eventIndent);
    }

    Document m_document;
    EventGraphWriter::Flags m_flags;
    // Counted, so that no later object can have the same address.
    EventUserDataIP m_remembered;

    const QString m_trackIndent = QStringLiteral("\n    ");
    const QString m_eventIndent = QStringLiteral("\n        ");
    const QString m_dataIndent = QStringLiteral("\n            ");
    const QString m_event = QStringLiteral("Event");
    const QString m_eventData = QStringLiteral("EventData");
    const QString m_type = QStringLiteral("Type");
    const QString m_time = QStringLiteral("Time");
    const QString m_types[3] = {QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")};
    int m_lastTime = 0;
    QString m_lastTimeText;
};

} // namespace

EventGraphWriter::EventGraphWriter(const EventGraphView& view, Flags flags)
    : m_view(view)
    , m_flags(flags) {}

EventGraphWriter::EventGraphWriter(const EventGraphView& view, int flags)
    : EventGraphWriter(view, Flags(QFlag(flags))) {}

bool EventGraphWriter::write(QIODevice* device) const {
    return !device || write(m_view.snapshot(), m_flags, device);
}

bool EventGraphWriter::write(const EventGraphSnapshot& capture, Flags flags, QIODevice* device) {
    if (!device)
        return true;
    return device->isWritable() && Writing(device, flags).write(capture) && flushed(device);
}

bool EventGraphWriter::writeTrace(const EventGraphSnapshot& capture, QIODevice* device) {
    if (!device)
        return true;
    return device->isWritable() && writeEventTrace(capture, device);
}

} // namespace Kestrel::UI
