#include <KxUI/eventgraph/EventTraceWriter_p.h>

#include <KxUI/eventgraph/CaptureState_p.h>
#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/kit/Flush_p.h>

#include <QIODevice>

#include <cmath>

namespace Kestrel::UI {
namespace {

using Event = EventTrack::Event;

// A JSON string (RFC 8259, section 7).
QByteArray quoted(const QString& text) {
    QByteArray result("\"");
    for (const char c : text.toUtf8()) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            result += '\\';
        if (code < 0x20) {
            result += "\\u00";
            result += QByteArray::number(code, 16).rightJustified(2, '0');
        } else {
            result += c;
        }
    }
    return result += '"';
}

class Trace {
public:
    explicit Trace(QIODevice* device)
        : m_device(device) {}

    bool write(const EventGraphSnapshot& capture) {
        m_startTime = capture.startTime;
        m_piece = "{\"displayTimeUnit\":\"ms\",\"traceEvents\":[\n"
                  "{\"ph\":\"M\",\"pid\":1,\"tid\":0,\"ts\":0,\"name\":\"process_name\","
                  "\"args\":{\"name\":\"Events\"}}";
        int thread = 0;
        for (const EventTrackSnapshot& track : capture.tracks)
            writeTrack(track, ++thread);
        m_piece += "\n]}\n";
        flush();
        return !m_failed;
    }

private:
    void writeTrack(const EventTrackSnapshot& track, int thread) {
        m_name = quoted(track.name);
        m_place = ",\"pid\":1,\"tid\":" + QByteArray::number(thread) + ",\"ts\":";
        const bool timeline = track.type == EventTrack::TrackType::Timeline;
        if (timeline) {
            const auto describe = [&](const char* what, const QByteArray& arguments) {
                m_piece += QByteArray(",\n{\"ph\":\"M\"") + m_place + "0,\"name\":\"" + what +
                           "\",\"args\":{" + arguments + "}}";
            };
            describe("thread_name", "\"name\":" + m_name);
            describe("thread_sort_index", "\"sort_index\":" + QByteArray::number(thread));
        }
        m_start = startTimeEvent();
        for (const Event& event : track.events) {
            if (timeline)
                writeTimelineEvent(event);
            else if (event.type == EventTrack::Type::Sample)
                writeCounter(event);
            if (m_piece.size() > (1 << 16))
                flush();
            if (m_failed)
                return;
        }
    }

    Event startTimeEvent() const { return {m_startTime, EventTrack::Type::Start, 0.0f, {}}; }

    void writeTimelineEvent(const Event& event) {
        switch (event.type) {
        case EventTrack::Type::Start:
            m_start = event;
            break;
        case EventTrack::Type::End:
            begin('X', m_start.time);
            m_piece += ",\"dur\":" + microseconds(timeDifference(event.time, m_start.time));
            finish(event.userData ? event.userData : m_start.userData);
            break;
        case EventTrack::Type::Sample:
            begin('i', event.time);
            m_piece += ",\"s\":\"t\"";
            finish(event.userData);
            break;
        }
    }

    void writeCounter(const Event& event) {
        if (!std::isfinite(event.value))
            return; // JSON has no such number
        begin('C', event.time);
        m_piece +=
            ",\"args\":{\"value\":" + QByteArray::number(static_cast<double>(event.value), 'g', 9) +
            "}}";
    }

    void begin(char phase, int time) {
        m_piece += ",\n{\"ph\":\"";
        m_piece += phase;
        m_piece +=
            '"' + m_place + microseconds(timeDifference(time, m_startTime)) + ",\"name\":" + m_name;
    }

    void finish(const EventUserDataIP& userData) {
        if (userData)
            m_piece += ",\"args\":{\"text\":" + quoted(userData->text()) + '}';
        m_piece += '}';
    }

    static QByteArray microseconds(int milliseconds) {
        return QByteArray::number(qint64(milliseconds) * 1000);
    }

    void flush() {
        m_failed = m_failed || m_device->write(m_piece) != m_piece.size();
        m_piece.clear();
    }

    QIODevice* m_device;
    bool m_failed = false;
    int m_startTime = 0;
    QByteArray m_name;
    QByteArray m_place;
    QByteArray m_piece;
    Event m_start;
};

} // namespace

bool writeEventTrace(const EventGraphSnapshot& capture, QIODevice* device) {
    return Trace(device).write(capture) && flushed(device);
}

} // namespace Kestrel::UI
