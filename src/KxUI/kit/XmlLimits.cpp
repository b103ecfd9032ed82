#include <KxUI/kit/XmlLimits_p.h>

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
    if (m_position == 0)
        detectUnits(data, count);
    for (qint64 i = 0; i < count; ++i, ++m_position) {
        if (m_position >= m_bounds.bytes) {
            violate(tooLarge());
            return i;
        }
        if (m_unitSize == 2) {
            // Only the low byte of a unit whose high byte is 0 can be markup.
            const bool low = m_position % 2 == m_unitOffset;
            if (!low)
                continue;
            const qint64 high = m_unitOffset == 0 ? i + 1 : i - 1;
            if (high < 0 || high >= count || data[high] != 0)
                continue;
        }
        if (!accept(static_cast<unsigned char>(data[i])))
            return i;
    }
    return count;
}

qint64 XmlLimits::writeData(const char*, qint64) {
    return -1;
}

// The byte order marks and the first characters by which readers tell UTF-16 (XML 1.0, appendix F).
void XmlLimits::detectUnits(const char* data, qint64 size) {
    if (size < 2)
        return;
    const auto first = static_cast<unsigned char>(data[0]);
    const auto second = static_cast<unsigned char>(data[1]);
    const bool bigEndian = (first == 0xfe && second == 0xff) || (first == 0 && second == '<');
    const bool littleEndian = (first == 0xff && second == 0xfe) || (first == '<' && second == 0);
    m_unitSize = bigEndian || littleEndian ? 2 : 1;
    m_unitOffset = bigEndian ? 1 : 0;
}

bool XmlLimits::accept(unsigned char c) {
    switch (m_in) {
    case In::Text:
        if (c == '<')
            m_in = In::Open;
        break;
    case In::Open:
        if (c == '!') {
            m_in = In::Bang;
        } else if (c == '?') {
            m_in = In::Instruction;
        } else if (c == '/') {
            m_in = In::EndTag;
        } else {
            if (++m_depth > m_bounds.nesting)
                return violate(tr("Elements are nested more than %1 deep").arg(m_bounds.nesting));
            m_attributes = 0;
            m_in = In::StartTag;
        }
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
