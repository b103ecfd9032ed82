#include <KxUI/browse/XbelScanner_p.h>

#include <algorithm>
#include <cstdint>

namespace Kestrel::UI::Xbel {
namespace {

constexpr std::string_view blanks = " \t\r\n";

bool isBlank(char c) {
    return blanks.find(c) != std::string_view::npos;
}

bool isNameByte(char c, bool isFirst) {
    const auto byte = static_cast<unsigned char>(c);
    const unsigned char lower = byte | 0x20U;
    if ((lower >= 'a' && lower <= 'z') || c == '_' || c == ':' || byte >= 0x80)
        return true;
    return !isFirst && ((c >= '0' && c <= '9') || c == '-' || c == '.');
}

bool isCharacter(std::uint32_t code) {
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code < 0xd800) ||
           (code >= 0xe000 && code < 0xfffe) || (code >= 0x10000 && code < 0x110000);
}

// The length of the UTF-8 sequence that begins a text, 0 for none that a document may have.
std::size_t characterLength(std::string_view text) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned char first = byte(0);
    if (first < 0x80)
        return isCharacter(first) ? 1 : 0;
    const std::size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || text.size() < length)
        return 0;
    std::uint32_t code = first & (0x7fU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0U) != 0x80)
            return 0;
        code = code << 6U | (byte(i) & 0x3fU);
    }
    const bool isShortest = length == 2 || (length == 3 ? code >= 0x800 : code >= 0x10000);
    return isShortest && isCharacter(code) ? length : 0;
}

std::size_t validLength(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t length = characterLength(text.substr(at));
        if (length == 0)
            break;
        at += length;
    }
    return at;
}

void appendUtf8(std::string& text, std::uint32_t code) {
    const auto more = [&](unsigned shift) {
        text += static_cast<char>(0x80U | ((code >> shift) & 0x3fU));
    };
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xc0U | code >> 6U);
        more(0);
    } else if (code < 0x10000) {
        text += static_cast<char>(0xe0U | code >> 12U);
        more(6);
        more(0);
    } else {
        text += static_cast<char>(0xf0U | code >> 18U);
        more(12);
        more(6);
        more(0);
    }
}

// What the reference `&name;` means; 0 for what no document of ours may refer to.
std::uint32_t referred(std::string_view name) {
    static constexpr std::pair<std::string_view, char> known[]{
        {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"apos", '\''}, {"quot", '"'}};
    for (const auto& [entity, c] : known) {
        if (name == entity)
            return static_cast<std::uint32_t>(c);
    }
    if (name.size() < 2 || name.size() > 9 || name[0] != '#')
        return 0;
    const bool isHex = name[1] == 'x';
    name.remove_prefix(isHex ? 2 : 1);
    std::uint32_t code = 0;
    for (const char c : name) {
        const std::size_t digit =
            std::string_view("0123456789abcdef").find(c >= 'A' && c <= 'F' ? char(c | 0x20) : c);
        if (digit >= (isHex ? 16U : 10U))
            return 0;
        code = code * (isHex ? 16 : 10) + static_cast<std::uint32_t>(digit);
    }
    return !name.empty() && isCharacter(code) ? code : 0;
}

std::string unescaped(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '&') {
            plain += text[at];
            continue;
        }
        const std::size_t end = text.find(';', at);
        appendUtf8(plain, referred(text.substr(at + 1, end - at - 1)));
        at = end;
    }
    return plain;
}

} // namespace

Scanner::Scanner(std::string_view bytes)
    : m_bytes(bytes.substr(0, validLength(bytes)))
    , m_isCut(m_bytes.size() < bytes.size()) {
    if (startsWith("\xef\xbb\xbf"))
        m_at = 3;
}

int Scanner::line() const {
    const std::string_view passed = m_bytes.substr(0, m_at);
    return 1 + static_cast<int>(std::count(passed.begin(), passed.end(), '\n'));
}

Scanner::Token Scanner::fail(Xbel::Problem problem) {
    m_problem = problem;
    return Token::Problem;
}

Scanner::Token Scanner::next() {
    // A mark of the byte order belongs to what comes first.
    m_begin = m_isFresh ? 0 : m_at;
    m_isFresh = false;
    if (m_at == m_bytes.size())
        return m_isCut ? fail(Xbel::Problem::NotWellFormed) : Token::End;
    return m_bytes[m_at] == '<' ? scanMarkup() : scanText();
}

std::string Scanner::text() const {
    std::string_view text = bytes();
    constexpr std::string_view section = "<![CDATA[";
    if (text.substr(0, section.size()) == section)
        return std::string(text.substr(section.size(), text.size() - section.size() - 3));
    return unescaped(text);
}

bool Scanner::hasValidReferences(std::string_view text) const {
    for (std::size_t at = text.find('&'); at != std::string_view::npos;
         at = text.find('&', at + 1)) {
        const std::size_t end = text.find(';', at);
        if (end == std::string_view::npos || referred(text.substr(at + 1, end - at - 1)) == 0)
            return false;
    }
    return true;
}

bool Scanner::skipTo(std::string_view end) {
    const std::size_t found = m_bytes.find(end, m_at);
    if (found == std::string_view::npos)
        return false;
    m_at = found + end.size();
    return true;
}

void Scanner::skipBlanks() {
    while (m_at < m_bytes.size() && isBlank(m_bytes[m_at]))
        ++m_at;
}

bool Scanner::scanName(std::string_view& name) {
    const std::size_t begin = m_at;
    while (m_at < m_bytes.size() && isNameByte(m_bytes[m_at], m_at == begin))
        ++m_at;
    name = m_bytes.substr(begin, m_at - begin);
    return !name.empty();
}

Scanner::Token Scanner::scanText() {
    const std::size_t from = m_at;
    m_at = std::min(m_bytes.find('<', m_at), m_bytes.size());
    const std::string_view text = m_bytes.substr(from, m_at - from);
    if (!hasValidReferences(text) || text.find("]]>") != std::string_view::npos)
        return fail(Xbel::Problem::NotWellFormed);
    return Token::Text;
}

Scanner::Token Scanner::scanMarkup() {
    const auto when = [this](bool isWhole, Token token) {
        return isWhole ? token : fail(Xbel::Problem::NotWellFormed);
    };
    if (startsWith("<!--")) {
        m_at += 4;
        return when(skipTo("--") && startsWith(">") && ++m_at, Token::Aside);
    }
    if (startsWith("<?")) {
        m_at += 2;
        std::string_view target;
        return when(scanName(target) && skipTo("?>"), Token::Aside);
    }
    if (startsWith("<![CDATA["))
        return when(skipTo("]]>"), Token::Text);
    if (startsWith("<!DOCTYPE"))
        return scanDeclaration();
    return startsWith("</") ? scanEndTag() : scanStartTag();
}

Scanner::Token Scanner::scanDeclaration() {
    char quote = 0;
    for (; m_at < m_bytes.size(); ++m_at) {
        const char c = m_bytes[m_at];
        if (quote != 0) {
            quote = c == quote ? '\0' : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '[') {
            return fail(Xbel::Problem::Forbidden);
        } else if (c == '>') {
            ++m_at;
            return Token::Declaration;
        }
    }
    return fail(Xbel::Problem::NotWellFormed);
}

Scanner::Token Scanner::scanEndTag() {
    m_at += 2;
    if (!scanName(m_name))
        return fail(Xbel::Problem::NotWellFormed);
    skipBlanks();
    if (!startsWith(">"))
        return fail(Xbel::Problem::NotWellFormed);
    ++m_at;
    return Token::EndTag;
}

Scanner::Token Scanner::scanStartTag() {
    ++m_at;
    m_attributes.clear();
    if (!scanName(m_name) || !scanAttributes())
        return fail(Xbel::Problem::NotWellFormed);
    const bool isEmpty = startsWith("/");
    m_at += isEmpty ? 1 : 0;
    if (!startsWith(">"))
        return fail(Xbel::Problem::NotWellFormed);
    ++m_at;
    return isEmpty ? Token::EmptyTag : Token::StartTag;
}

bool Scanner::scanAttributes() {
    constexpr std::size_t most = 64;
    for (;;) {
        const std::size_t behind = m_at;
        skipBlanks();
        if (startsWith("/") || startsWith(">"))
            return true;
        Attribute attribute;
        if (m_at == behind || !scanName(attribute.name) || m_attributes.size() == most)
            return false;
        skipBlanks();
        if (!startsWith("="))
            return false;
        ++m_at;
        skipBlanks();
        if (!startsWith("\"") && !startsWith("'"))
            return false;
        const char quote = m_bytes[m_at++];
        const std::size_t end = m_bytes.find(quote, m_at);
        if (end == std::string_view::npos)
            return false;
        const std::string_view value = m_bytes.substr(m_at, end - m_at);
        m_at = end + 1;
        const auto isSame = [&](const Attribute& other) { return other.name == attribute.name; };
        if (value.find('<') != std::string_view::npos || !hasValidReferences(value) ||
            std::any_of(m_attributes.begin(), m_attributes.end(), isSame))
            return false;
        attribute.value = unescaped(value);
        m_attributes.push_back(std::move(attribute));
    }
}

} // namespace Kestrel::UI::Xbel
