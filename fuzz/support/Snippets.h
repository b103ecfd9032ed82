#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::Fuzz {

/** Makes documents of bytes, so that mutations reach behind the parser: each byte chooses a
    snippet, in which the next bytes choose a number for each % and a name for each $. A snippet
    that opens an element has it closed by "</", or at the end. */
class Snippets {
public:
    Snippets(std::vector<std::string> snippets, std::vector<std::string> names)
        : m_snippets(std::move(snippets))
        , m_names(std::move(names)) {}

    /** Bytes that begin with < are a document as they stand. */
    std::string document(std::string_view bytes) const {
        if (!bytes.empty() && bytes.front() == '<')
            return std::string(bytes);
        std::string text;
        std::vector<std::string> open;
        add(m_snippets.front(), bytes, text, open);
        while (!bytes.empty())
            add(m_snippets[next(bytes) % m_snippets.size()], bytes, text, open);
        while (!open.empty())
            close(text, open);
        return text;
    }

private:
    static unsigned next(std::string_view& bytes) {
        if (bytes.empty())
            return 0;
        const auto byte = static_cast<unsigned char>(bytes.front());
        bytes.remove_prefix(1);
        return byte;
    }

    static std::string number(unsigned byte) {
        static const std::vector<std::string> odd{
            "-1", "2147483647", "-2147483648", "2147483648", "16777215", "100000",
            "-7", "",           "x",           "007"};
        return byte < 128 ? std::to_string(byte) : odd[byte % odd.size()];
    }

    static void close(std::string& text, std::vector<std::string>& open) {
        if (open.empty())
            return;
        text += "</" + open.back() + '>';
        open.pop_back();
    }

    void add(const std::string& snippet, std::string_view& bytes, std::string& text,
             std::vector<std::string>& open) const {
        if (snippet == "</")
            return close(text, open);
        // The last tag of a snippet is the one that stays open.
        const std::size_t tag = snippet.rfind('<');
        if (tag != std::string::npos && snippet[tag + 1] != '/' &&
            snippet[snippet.size() - 2] != '/')
            open.push_back(snippet.substr(tag + 1, snippet.find_first_of(" >", tag) - tag - 1));
        for (const char c : snippet) {
            if (c == '%')
                text += number(next(bytes));
            else if (c == '$')
                text += m_names[next(bytes) % m_names.size()];
            else
                text += c;
        }
    }

    std::vector<std::string> m_snippets; // the first one begins every document
    std::vector<std::string> m_names;
};

} // namespace Kestrel::Fuzz
