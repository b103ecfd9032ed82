#include <KxUI/browse/XbelScanner_p.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace Kestrel::UI::Xbel {
namespace {

using Kind = Node::Kind;
using Token = Scanner::Token;

// FNV-1a, which is the same in every process.
std::string hashOf(std::string_view text) {
    std::uint64_t hash = 14695981039346656037U;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    std::string digits;
    for (int i = 0; i < 16; ++i, hash >>= 4U)
        digits += "0123456789abcdef"[hash & 15U];
    return digits;
}

class Reader {
public:
    explicit Reader(std::string_view bytes)
        : m_scanner(bytes) {}

    Document read();

private:
    void fail(Problem problem);
    bool readRoot();
    void readInside();
    void take(Token token);
    void open(bool isEmpty);
    void close();
    void keepForeign();
    Kind kindOf(std::string_view name) const;
    void fillIn(Node& node);
    void finish(Node& node);
    void giveId(Node& node);
    Node& top() { return m_open.back(); }

    Scanner m_scanner;
    Document m_document;
    std::vector<Node> m_open; ///< the root and what is open within it, foreign ones as well
    std::vector<std::string> m_names;
    std::set<std::string> m_ids;
    std::map<std::string, int> m_turns; ///< by what they were made of
    int m_foreign = 0; ///< how many of the open ones are foreign: they are the innermost
    int m_folders = 0;
    int m_entries = 0;
};

void Reader::fail(Problem problem) {
    m_document.problem = problem;
    m_document.line = m_scanner.line();
}

// Up to the root's start tag.
bool Reader::readRoot() {
    bool hasDeclaration = false;
    for (;;) {
        const Token token = m_scanner.next();
        const std::string_view bytes = m_scanner.bytes();
        const bool isBlank = bytes.find_first_not_of("\xef\xbb\xbf \t\r\n") == bytes.npos;
        if (token == Token::Problem || token == Token::End) {
            fail(token == Token::End ? Problem::NotBookmarks : m_scanner.problem());
            return false;
        }
        if ((token == Token::Text && !isBlank) || token == Token::EndTag ||
            (token == Token::Declaration && hasDeclaration)) {
            fail(Problem::NotWellFormed);
            return false;
        }
        hasDeclaration = hasDeclaration || token == Token::Declaration;
        m_document.before += bytes;
        if (token != Token::StartTag && token != Token::EmptyTag)
            continue;
        if (m_scanner.name() != "xbel") {
            fail(Problem::NotBookmarks);
            return false;
        }
        m_names.emplace_back(m_scanner.name());
        m_open.emplace_back();
        m_open.back().kind = Kind::Folder;
        if (token == Token::StartTag)
            return true;
        // A root that is closed at once has no room for anything.
        m_document.before.erase(m_document.before.rfind('/'), 1);
        m_document.after = "</xbel>";
        m_names.clear();
        return true;
    }
}

Kind Reader::kindOf(std::string_view name) const {
    if (m_foreign > 0 || m_open.back().kind == Kind::Title)
        return Kind::Foreign;
    const Kind parent = m_open.back().kind;
    if (name == "title" && m_open.size() > 1) {
        // Only the first one is it.
        const auto& children = m_open.back().children;
        const auto isTitle = [](const Node& node) { return node.kind == Kind::Title; };
        return std::any_of(children.begin(), children.end(), isTitle) ? Kind::Foreign : Kind::Title;
    }
    if (parent == Kind::Folder)
        return name == "bookmark" ? Kind::Bookmark
               : name == "folder" ? Kind::Folder
                                  : Kind::Foreign;
    return Kind::Foreign;
}

void Reader::keepForeign() {
    const std::string_view bytes = m_scanner.bytes();
    // One slice for what lies side by side.
    std::vector<Node>& siblings = top().children;
    if (m_foreign > 0) {
        top().head += bytes;
        return;
    }
    if (siblings.empty() || siblings.back().kind != Kind::Foreign)
        siblings.emplace_back();
    siblings.back().head += bytes;
}

void Reader::giveId(Node& node) {
    std::string id = node.id;
    // Ids that are missing, or there twice, are made in the same way by everybody who reads the file.
    if (id.empty() || m_ids.count(id) > 0) {
        const std::string content = hashOf(node.href + '\n' + node.title);
        do {
            id = "x" + hashOf(content + std::to_string(m_turns[content]++));
        } while (m_ids.count(id) > 0);
    }
    m_ids.insert(id);
    if (id == node.id)
        return;
    if (!node.hasIdAttribute) {
        const std::size_t end = node.head.size() - (node.tail.empty() ? 2 : 1);
        node.head.insert(end, " id=\"" + id + '"');
    }
    node.id = id;
}

void Reader::fillIn(Node& node) {
    node.head = m_scanner.bytes();
    for (const Scanner::Attribute& attribute : m_scanner.attributes()) {
        if (attribute.name == "id")
            node.id = attribute.value, node.hasIdAttribute = true;
        else if (attribute.name == "href")
            node.href = attribute.value;
    }
}

void Reader::finish(Node& node) {
    for (const Node& child : node.children) {
        if (child.kind == Kind::Title)
            node.title = child.title;
    }
    if (node.isEntry())
        giveId(node);
}

void Reader::open(bool isEmpty) {
    const Kind kind = kindOf(m_scanner.name());
    const bool isEntry = kind == Kind::Bookmark || kind == Kind::Folder;
    if (static_cast<int>(m_open.size()) >= Limits::Elements ||
        (kind == Kind::Folder && m_folders >= Limits::Folders) ||
        (isEntry && ++m_entries > Limits::Entries)) {
        fail(Problem::TooLarge);
        return;
    }
    if (kind == Kind::Foreign && isEmpty) {
        keepForeign();
        return;
    }
    Node node;
    node.kind = kind;
    fillIn(node);
    if (isEntry && node.href.size() > Limits::Href) {
        fail(Problem::TooLarge);
        return;
    }
    m_foreign += kind == Kind::Foreign ? 1 : 0;
    m_folders += kind == Kind::Folder ? 1 : 0;
    m_names.emplace_back(m_scanner.name());
    m_open.push_back(std::move(node));
    if (isEmpty)
        close();
}

// The innermost one is done: it becomes a child of the next.
void Reader::close() {
    Node node = std::move(m_open.back());
    m_open.pop_back();
    m_names.pop_back();
    m_foreign -= node.kind == Kind::Foreign ? 1 : 0;
    m_folders -= node.kind == Kind::Folder ? 1 : 0;
    if (node.kind != Kind::Foreign) {
        finish(node);
        top().children.push_back(std::move(node));
        return;
    }
    std::vector<Node>& siblings = top().children;
    if (m_foreign > 0)
        top().head += node.head;
    else if (!siblings.empty() && siblings.back().kind == Kind::Foreign)
        siblings.back().head += node.head;
    else
        siblings.push_back(std::move(node));
}

void Reader::take(Token token) {
    switch (token) {
    case Token::StartTag:
    case Token::EmptyTag:
        open(token == Token::EmptyTag);
        return;
    case Token::EndTag:
        if (m_names.back() != m_scanner.name()) {
            fail(Problem::NotWellFormed);
        } else if (m_open.size() == 1) {
            m_document.after = m_scanner.bytes();
            m_names.clear();
        } else if (m_foreign > 0) {
            top().head += m_scanner.bytes();
            close();
        } else {
            top().tail = m_scanner.bytes();
            close();
        }
        return;
    case Token::Declaration:
        fail(Problem::NotWellFormed);
        return;
    case Token::Text:
        if (top().kind == Kind::Title && top().title.size() < Limits::Title)
            top().title += m_scanner.text();
        break;
    default:
        break;
    }
    keepForeign();
}

void Reader::readInside() {
    while (m_document.problem == Problem::None && !m_names.empty()) {
        const Token token = m_scanner.next();
        if (token == Token::Problem)
            fail(m_scanner.problem());
        else if (token == Token::End)
            fail(Problem::NotWellFormed);
        else
            take(token);
    }
    // What is open is made whole, so that it can be written.
    while (m_open.size() > 1) {
        std::string& end = top().kind == Kind::Foreign ? top().head : top().tail;
        end += "</" + m_names.back() + ">";
        close();
    }
}

Document Reader::read() {
    if (!readRoot()) {
        m_document.before.clear();
        return m_document;
    }
    readInside();
    m_document.nodes = std::move(m_open.front().children);
    while (m_document.problem == Problem::None) {
        const Token token = m_scanner.next();
        const std::string_view bytes = m_scanner.bytes();
        if (token == Token::End)
            break;
        if (token != Token::Aside &&
            (token != Token::Text || bytes.find_first_not_of(" \t\r\n") != bytes.npos))
            fail(Problem::NotWellFormed);
        else
            m_document.after += bytes;
    }
    return m_document;
}

} // namespace

Document read(std::string_view bytes) {
    if (bytes.size() > Limits::Bytes) {
        Document document = read(std::string_view());
        document.problem = Problem::TooLarge;
        document.line = 1;
        return document;
    }
    Document document;
    if (!bytes.empty())
        document = Reader(bytes).read();
    if (document.before.empty())
        document.before = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE xbel>\n"
                          "<xbel version=\"1.0\" xmlns:kx=\"urn:kestrel:favourites:1\">";
    if (document.after.empty())
        document.after = "\n</xbel>\n";
    return document;
}

} // namespace Kestrel::UI::Xbel
