#include <KxUI/eventgraph/EventFileScanner_p.h>

#include <KxUI/eventgraph/EventUserDataString.h>
#include <KxUI/kit/QtCompat_p.h>

#include <QIODevice>

#include <algorithm>
#include <cstring>
#include <limits>

namespace Kestrel::UI {
namespace {

// How an attempt to read one element went. `Incomplete`: the block ends before the element does.
enum class Scan { Done, Incomplete, Foreign };

// Characters of UTF-8 bytes in which references have been replaced; null when not all are fit for
// XML.
std::optional<QString> decoded(const char* begin, const char* end, bool ascii) {
    const int size = static_cast<int>(end - begin);
    if (ascii)
        return QString::fromLatin1(begin, size);
    std::optional<QString> text = fromStrictUtf8(begin, size);
    if (!text)
        return {};
    for (const QChar c : *text) {
        if (c.unicode() >= 0xfffe)
            return {};
    }
    return text;
}

// A cursor over the part of the document that is in memory. Each read either moves on or leaves the
// result at what went wrong, after which all further reads do nothing.
class Cursor {
public:
    Cursor(const char* begin, const char* end)
        : m_at(begin)
        , m_end(end) {}

    const char* position() const { return m_at; }
    Scan result() const { return m_result; }
    bool ok() const { return m_result == Scan::Done; }

    void skipSpace() {
        while (m_at != m_end && (*m_at == ' ' || *m_at == '\n' || *m_at == '\t'))
            ++m_at;
    }

    // Moves over the literal if it is next; otherwise false. A literal cut off is incomplete.
    template <std::size_t Size>
    bool take(const char (&literal)[Size]) {
        constexpr std::ptrdiff_t length = static_cast<std::ptrdiff_t>(Size) - 1;
        if (!ok())
            return false;
        const std::ptrdiff_t held = m_end - m_at;
        if (held >= length) {
            if (std::memcmp(m_at, literal, std::size_t(length)) != 0)
                return false;
            m_at += length;
            return true;
        }
        if (std::memcmp(m_at, literal, std::size_t(held)) == 0)
            m_result = Scan::Incomplete;
        return false;
    }

    template <std::size_t Size>
    void expect(const char (&literal)[Size]) {
        if (!take(literal) && ok())
            m_result = Scan::Foreign;
    }

    int integer() {
        if (!ok())
            return 0;
        const bool negative = m_at != m_end && *m_at == '-';
        const char* at = m_at + (negative ? 1 : 0);
        const char* const first = at;
        qint64 value = 0;
        for (; at != m_end && *at >= '0' && *at <= '9' && at - first <= 10; ++at)
            value = value * 10 + (*at - '0');
        if (negative)
            value = -value;
        const bool fits =
            value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
        if (at == m_end)
            m_result = Scan::Incomplete;
        else if (at == first || !fits)
            m_result = Scan::Foreign;
        m_at = at;
        return static_cast<int>(value);
    }

    // The text up to `stop`, which is not taken.
    QString text(char stop, bool breaksAllowed) {
        m_buffer.clear();
        const char* from = m_at;
        unsigned char high = 0;
        for (; ok(); ++m_at) {
            if (m_at == m_end) {
                m_result = Scan::Incomplete;
                break;
            }
            const char c = *m_at;
            high = static_cast<unsigned char>(high | static_cast<unsigned char>(c));
            if (c == stop)
                break;
            if (c == '&') {
                m_buffer.insert(m_buffer.end(), from, m_at);
                reference();
                from = m_at + 1;
            } else if (c == '<' || c == '>' ||
                       (static_cast<unsigned char>(c) < 0x20 &&
                        !(breaksAllowed && (c == '\n' || c == '\t')))) {
                m_result = Scan::Foreign;
            }
        }
        if (!ok())
            return {};
        std::optional<QString> result;
        if (m_buffer.empty()) {
            result = decoded(from, m_at, high < 0x80);
        } else {
            m_buffer.insert(m_buffer.end(), from, m_at);
            result = decoded(m_buffer.data(), m_buffer.data() + m_buffer.size(), high < 0x80);
        }
        if (!result)
            m_result = Scan::Foreign;
        return result.value_or(QString());
    }

private:
    // Replaces a reference; stays on its semicolon.
    void reference() {
        struct Known {
            const char* name;
            char character;
        };
        static constexpr Known all[] = {{"&lt;", '<'},   {"&gt;", '>'},   {"&amp;", '&'},
                                        {"&quot;", '"'}, {"&#10;", '\n'}, {"&#13;", '\r'},
                                        {"&#9;", '\t'}};
        for (const Known& known : all) {
            const auto length = static_cast<std::ptrdiff_t>(std::strlen(known.name));
            if (m_end - m_at >= length &&
                std::memcmp(m_at, known.name, static_cast<std::size_t>(length)) == 0) {
                m_buffer.push_back(known.character);
                m_at += length - 1;
                return;
            }
        }
        m_result = m_end - m_at < 6 ? Scan::Incomplete : Scan::Foreign;
    }

    const char* m_at;
    const char* m_end;
    Scan m_result = Scan::Done;
    std::vector<char> m_buffer;
};

class Scanner {
public:
    explicit Scanner(QIODevice* device)
        : m_device(device) {}

    std::optional<EventFile> scan() {
        // No more than a small file needs, which is room for one byte beyond its end.
        m_block.resize(std::min(blockSize, std::size_t(m_device->bytesAvailable()) + 1));
        while (m_next != Next::End) {
            Cursor cursor(m_block.data() + m_from, m_block.data() + m_to);
            element(cursor);
            if (cursor.result() == Scan::Foreign)
                return {};
            if (cursor.result() == Scan::Done)
                m_from = static_cast<std::size_t>(cursor.position() - m_block.data());
            else if (!refill())
                return {};
        }
        return restIsSpace() ? std::optional<EventFile>(std::move(m_file)) : std::nullopt;
    }

private:
    enum class Next { Document, Track, Event, End };

    static constexpr std::size_t blockSize = std::size_t(1) << 20;
    static constexpr std::size_t largestElement = std::size_t(64) << 20;

    // Reads one element's tags, changing nothing unless all of it is there.
    void element(Cursor& cursor) {
        switch (m_next) {
        case Next::Document:
            return document(cursor);
        case Next::Track:
            return track(cursor);
        case Next::Event:
            return event(cursor);
        case Next::End:
            return;
        }
    }

    void document(Cursor& cursor) {
        cursor.expect("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
        cursor.skipSpace();
        cursor.expect("<EventGraph StartTime=\"");
        const int startTime = cursor.integer();
        cursor.expect("\" EndTime=\"");
        const int endTime = cursor.integer();
        const bool empty = cursor.take("\"/>");
        if (!empty)
            cursor.expect("\">");
        if (!cursor.ok())
            return;
        m_file.startTime = startTime;
        m_file.endTime = endTime;
        m_next = empty ? Next::End : Next::Track;
    }

    void track(Cursor& cursor) {
        cursor.skipSpace();
        if (cursor.take("</EventGraph>")) {
            m_next = Next::End;
            return;
        }
        EventFile::Track track;
        cursor.expect("<Track Name=\"");
        track.name = cursor.text('"', false);
        cursor.expect("\" Color=\"");
        track.color = cursor.text('"', false);
        cursor.expect("\" Priority=\"");
        track.priority = cursor.integer();
        const bool empty = cursor.take("\"/>");
        if (!empty)
            cursor.expect("\">");
        if (!cursor.ok())
            return;
        m_file.tracks.push_back(std::move(track));
        m_next = empty ? Next::Track : Next::Event;
    }

    void event(Cursor& cursor) {
        cursor.skipSpace();
        if (cursor.take("</Track>")) {
            m_next = Next::Track;
            return;
        }
        EventFile::Event event;
        cursor.expect("<Event Type=\"");
        event.type = cursor.integer();
        cursor.expect("\" Time=\"");
        event.time = cursor.integer();
        if (!cursor.take("\"/>")) {
            cursor.expect("\">");
            cursor.skipSpace();
            cursor.expect("<EventData>");
            const QString text = cursor.text('<', true);
            cursor.expect("</EventData>");
            cursor.skipSpace();
            cursor.expect("</Event>");
            if (cursor.ok())
                event.text = new EventUserDataString(text);
        }
        if (cursor.ok())
            m_file.tracks.back().events.push_back(std::move(event));
    }

    // Gets more of the document behind what is not yet read; false at its end.
    bool refill() {
        const std::size_t held = m_to - m_from;
        std::memmove(m_block.data(), m_block.data() + m_from, held);
        m_from = 0;
        m_to = held;
        if (held == m_block.size()) {
            if (held >= largestElement)
                return false;
            m_block.resize(held * 2);
        }
        const qint64 count =
            m_device->read(m_block.data() + m_to, static_cast<qint64>(m_block.size() - m_to));
        m_to += static_cast<std::size_t>(std::max<qint64>(count, 0));
        return count > 0;
    }

    bool restIsSpace() {
        do {
            Cursor cursor(m_block.data() + m_from, m_block.data() + m_to);
            cursor.skipSpace();
            m_from = static_cast<std::size_t>(cursor.position() - m_block.data());
            if (m_from != m_to)
                return false;
        } while (refill());
        return true;
    }

    QIODevice* m_device;
    std::vector<char> m_block;
    std::size_t m_from = 0;
    std::size_t m_to = 0;
    Next m_next = Next::Document;
    EventFile m_file;
};

} // namespace

std::optional<EventFile> scanEventFile(QIODevice* device) {
    return Scanner(device).scan();
}

} // namespace Kestrel::UI
