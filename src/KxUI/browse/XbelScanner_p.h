#pragma once

#include <KxUI/browse/Xbel_p.h>

#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::UI::Xbel {

/** Cuts a document into its tags and texts without losing a byte. A stream reader could not say
    which bytes it read. */
class Scanner {
public:
    enum class Token {
        End,
        Problem,
        Text,        ///< also CDATA sections
        Aside,       ///< comments and processing instructions
        Declaration, ///< of the document type
        StartTag,
        EmptyTag, ///< a start tag that is an end tag, too
        EndTag
    };

    struct Attribute {
        std::string_view name;
        std::string value; ///< without escapes
    };

    explicit Scanner(std::string_view bytes);

    Token next();

    /** The bytes of the token. */
    std::string_view bytes() const { return m_bytes.substr(m_begin, m_at - m_begin); }
    /** The name of the tag. */
    std::string_view name() const { return m_name; }
    const std::vector<Attribute>& attributes() const { return m_attributes; }
    /** What a text says. */
    std::string text() const;

    Xbel::Problem problem() const { return m_problem; }
    /** Where the token begins. */
    std::size_t position() const { return m_begin; }
    /** The line of the byte that is looked at, from 1. */
    int line() const;

private:
    Token fail(Xbel::Problem problem);
    Token scanText();
    Token scanMarkup();
    Token scanDeclaration();
    Token scanStartTag();
    Token scanEndTag();
    bool scanAttributes();
    bool skipTo(std::string_view end);
    bool scanName(std::string_view& name);
    void skipBlanks();
    bool hasValidReferences(std::string_view text) const;
    bool startsWith(std::string_view text) const {
        return m_bytes.substr(m_at, text.size()) == text;
    }

    std::string_view m_bytes;
    bool m_isCut = false;  ///< bytes that no document has stand behind
    bool m_isFresh = true; ///< nothing was asked for
    std::size_t m_begin = 0;
    std::size_t m_at = 0;
    std::string_view m_name;
    std::vector<Attribute> m_attributes;
    Xbel::Problem m_problem = Xbel::Problem::None;
};

} // namespace Kestrel::UI::Xbel
