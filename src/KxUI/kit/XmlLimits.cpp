#include <KxUI/kit/XmlLimits_p.h>

#include <utility>

namespace Kestrel::UI {

XmlLimits::XmlLimits(QIODevice* source, const XmlBounds& bounds)
    : m_source(source)
    , m_bounds(bounds) {
    if (m_source && !m_source->isSequential() && m_source->size() - m_source->pos() > bounds.bytes)
        m_violation = tooLarge();
}

qint64 XmlLimits::readData(char* data, qint64 size) {
    if (!m_source || !m_violation.isEmpty())
        return -1;
    const qint64 count = m_source->read(data, size);
    for (qint64 i = 0; i < count; ++i, ++m_position) {
        if (m_position >= m_bounds.bytes) {
            violate(tooLarge());
            return i;
        }
        if (!acceptByte(static_cast<unsigned char>(data[i])))
            return i;
    }
    return count;
}

// A read may end anywhere, so the first byte of a unit is kept until the second one comes.
bool XmlLimits::acceptByte(unsigned char byte) {
    const unsigned char before = std::exchange(m_lastByte, byte);
    if (m_position == 0)
        return true;
    if (m_position == 1) {
        detectUnits(before, byte);
        if (m_units == Units::Bytes && !accept(before))
            return false;
    }
    if (m_units == Units::Bytes)
        return accept(byte);
    // Only a unit whose high byte is 0 can be markup.
    const bool complete = m_position % 2 == 1;
    const unsigned char high = m_units == Units::BigEndian ? before : byte;
    const unsigned char low = m_units == Units::BigEndian ? byte : before;
    return !complete || high != 0 || accept(low);
}

qint64 XmlLimits::writeData(const char*, qint64) {
    return -1;
}

// The byte order marks and the first characters by which readers tell UTF-16 (XML 1.0, appendix F).
void XmlLimits::detectUnits(unsigned char first, unsigned char second) {
    if ((first == 0xfe && second == 0xff) || (first == 0 && second == '<'))
        m_units = Units::BigEndian;
    else if ((first == 0xff && second == 0xfe) || (first == '<' && second == 0))
        m_units = Units::LittleEndian;
}

/** What the character after a "<" begins. */
bool XmlLimits::openTag(unsigned char c) {
    m_in = c == '!' ? In::Bang : c == '?' ? In::Instruction : c == '/' ? In::EndTag : In::StartTag;
    if (m_in != In::StartTag)
        return true;
    m_attributes = 0;
    return ++m_depth <= m_bounds.nesting ||
           violate(tr("Elements are nested more than %1 deep").arg(m_bounds.nesting));
}

bool XmlLimits::accept(unsigned char c) {
    switch (m_in) {
    case In::Text:
        if (c == '<')
            m_in = In::Open;
        break;
    case In::Open:
        if (!openTag(c))
            return false;
        break;
    case In::Bang:
        if (c == 'D')
            return violate(tr("A document type declaration is not allowed"));
        m_in = c == '-' ? In::Comment : c == '[' ? In::Section : In::Text;
        break;
    case In::StartTag:
        if (c == '"' || c == '\'') {
            m_quote = c;
            m_in = In::Value;
        } else if (c == '=') {
            if (++m_attributes > m_bounds.attributes)
                return violate(
                    tr("An element has more than %1 attributes").arg(m_bounds.attributes));
        } else if (c == '>') {
            if (m_last == '/')
                --m_depth;
            m_in = In::Text;
        }
        break;
    case In::Value:
        if (c == m_quote)
            m_in = In::StartTag;
        break;
    case In::EndTag:
        if (c == '>') {
            --m_depth;
            m_in = In::Text;
        }
        break;
    case In::Instruction:
        if (c == '>' && m_last == '?')
            m_in = In::Text;
        break;
    case In::Comment:
        if (c == '>' && m_last == '-' && m_secondLast == '-')
            m_in = In::Text;
        break;
    case In::Section:
        if (c == '>' && m_last == ']' && m_secondLast == ']')
            m_in = In::Text;
        break;
    }
    m_secondLast = m_last;
    m_last = c;
    return true;
}

QString XmlLimits::tooLarge() const {
    constexpr int MebiBits = 20;
    constexpr int GibiBits = 30;
    return (m_bounds.bytes >> GibiBits) > 0
               ? tr("The file is larger than %1 GiB").arg(m_bounds.bytes >> GibiBits)
               : tr("The file is larger than %1 MiB").arg(m_bounds.bytes >> MebiBits);
}

bool XmlLimits::violate(const QString& why) {
    m_violation = why;
    return false;
}

} // namespace Kestrel::UI
