#include <KxUI/browse/Xbel_p.h>

#include <KxUI/files/platform/Directory_p.h>

#include <algorithm>

namespace Kestrel::UI::Xbel {
namespace {

using Kind = Node::Kind;

void write(std::string& bytes, const std::vector<Node>& nodes) {
    for (const Node& node : nodes) {
        bytes += node.head;
        write(bytes, node.children);
        bytes += node.tail;
    }
}

Node foreign(std::string bytes) {
    Node node;
    node.head = std::move(bytes);
    return node;
}

Node titleNode(const std::string& title) {
    Node node;
    node.kind = Kind::Title;
    node.head = "<title>";
    node.children.push_back(foreign(escaped(title)));
    node.tail = "</title>";
    node.title = title;
    return node;
}

bool isBlank(const Node& node) {
    return node.kind == Kind::Foreign &&
           node.head.find_first_not_of(" \t\r\n") == std::string::npos;
}

// A start tag that is all there is becomes one with an end.
void makeOpen(Node& node) {
    if (!node.tail.empty())
        return;
    node.head.erase(node.head.rfind('/'), 1);
    node.tail = node.kind == Kind::Folder ? "</folder>" : "</bookmark>";
}

std::optional<Place> findIn(std::vector<Node>& nodes, Node* group, std::string_view id) {
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!nodes[i].isEntry())
            continue;
        if (nodes[i].id == id)
            return Place{&nodes, i, group};
        if (const auto place = findIn(nodes[i].children, &nodes[i], id))
            return place;
    }
    return {};
}

bool isPlainByte(char c) {
    const auto lower = static_cast<unsigned char>(static_cast<unsigned char>(c) | 0x20U);
    return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~/").find(c) != std::string_view::npos;
}

std::string percentEncoded(std::string_view path) {
    std::string text;
    for (const char c : path) {
        if (isPlainByte(c)) {
            text += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        text += '%';
        text += "0123456789ABCDEF"[byte >> 4U];
        text += "0123456789ABCDEF"[byte & 15U];
    }
    return text;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// Nothing where a NUL would come of it. A percent sign without digits stands for itself.
std::optional<std::string> percentDecoded(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '%' && i + 2 < text.size() && hexDigit(text[i + 1]) >= 0 &&
            hexDigit(text[i + 2]) >= 0) {
            c = static_cast<char>(hexDigit(text[i + 1]) * 16 + hexDigit(text[i + 2]));
            i += 2;
        }
        if (c == '\0')
            return {};
        bytes += c;
    }
    return bytes;
}

// An address of a file's text, for a document has no control characters and only whole letters.
bool isWritable(std::string_view address) {
    return std::all_of(address.begin(), address.end(), [](char c) { return c >= ' ' && c < 0x7f; });
}

bool isDrive(std::string_view path) {
    return path.size() >= 2 && path[1] == ':' &&
           static_cast<unsigned char>((path[0] | 0x20) - 'a') < 26;
}

} // namespace

std::string written(const Document& document) {
    std::string bytes = document.before;
    write(bytes, document.nodes);
    return bytes + document.after;
}

std::string escaped(std::string_view text) {
    std::string safe;
    for (const char c : text) {
        if (c == '<')
            safe += "&lt;";
        else if (c == '>')
            safe += "&gt;";
        else if (c == '&')
            safe += "&amp;";
        else if (c == '"')
            safe += "&quot;";
        else if (c == '\n' || c == '\r' || c == '\t')
            safe += "&#" + std::to_string(static_cast<int>(c)) + ';';
        else
            safe += c;
    }
    return safe;
}

Node bookmark(const std::string& href, const std::string& title, const std::string& id,
              const std::string& added) {
    Node node;
    node.kind = Kind::Bookmark;
    node.href = href;
    node.id = id;
    node.head = "<bookmark href=\"" + escaped(href) + "\" id=\"" + escaped(id) + "\">";
    node.tail = "</bookmark>";
    setTitle(node, title);
    if (!added.empty())
        node.children.push_back(foreign("<info><metadata owner=\"kestrel-ui\" kx:added=\"" +
                                        escaped(added) +
                                        "\" xmlns:kx=\"urn:kestrel:favourites:1\"/></info>"));
    return node;
}

Node folder(const std::string& title, const std::string& id) {
    Node node;
    node.kind = Kind::Folder;
    node.id = id;
    node.head = "<folder id=\"" + escaped(id) + "\">";
    node.tail = "\n  </folder>";
    setTitle(node, title);
    return node;
}

void setTitle(Node& entry, const std::string& title) {
    entry.title = title;
    const auto old = std::find_if(entry.children.begin(), entry.children.end(),
                                  [](const Node& node) { return node.kind == Kind::Title; });
    if (title.empty()) {
        if (old != entry.children.end())
            entry.children.erase(old);
        return;
    }
    makeOpen(entry);
    if (old != entry.children.end())
        *old = titleNode(title);
    else
        entry.children.insert(entry.children.begin(), titleNode(title));
}

std::optional<Place> find(Document& document, std::string_view id) {
    return id.empty() ? std::nullopt : findIn(document.nodes, nullptr, id);
}

Node take(const Place& place) {
    std::vector<Node>& list = *place.list;
    std::size_t first = place.index;
    Node taken = std::move(list[place.index]);
    if (first > 0 && isBlank(list[first - 1]))
        --first;
    using Offset = std::vector<Node>::difference_type;
    list.erase(list.begin() + Offset(first), list.begin() + Offset(place.index) + 1);
    // Stray text on both sides must not become the "]]>" that no text may hold.
    if (first > 0 && first < list.size() && list[first - 1].kind == Kind::Foreign &&
        !list[first - 1].head.empty() && list[first - 1].head.back() == ']' &&
        list[first].kind == Kind::Foreign && !list[first].head.empty() &&
        std::string_view("]>").find(list[first].head.front()) != std::string_view::npos)
        list.insert(list.begin() + Offset(first), foreign("\n"));
    return taken;
}

void insert(Document& document, Node entry, std::string_view group, std::string_view before,
            std::string_view behind) {
    std::vector<Node>* list = &document.nodes;
    bool isInGroup = false;
    if (const auto place = find(document, group);
        place && place->node().kind == Kind::Folder && group != entry.id) {
        makeOpen(place->node());
        list = &place->node().children;
        isInGroup = true;
    }
    const auto indexOf = [&](std::string_view id) {
        const auto found = std::find_if(list->begin(), list->end(), [&](const Node& node) {
            return !id.empty() && node.isEntry() && node.id == id;
        });
        return static_cast<std::size_t>(found - list->begin());
    };
    std::size_t at = indexOf(before);
    if (at < list->size()) {
        // The blanks before that one are its own.
        at -= at > 0 && isBlank((*list)[at - 1]) ? 1 : 0;
    } else if (const std::size_t last = indexOf(behind); last < list->size()) {
        at = last + 1;
    } else if (at > 0 && isBlank(list->back())) {
        --at; // the blanks at the end lead to the end tag
    }
    using Offset = std::vector<Node>::difference_type;
    const auto place = list->begin() + Offset(at);
    list->insert(list->insert(place, std::move(entry)), foreign(isInGroup ? "\n    " : "\n  "));
}

bool isAddress(std::string_view text) {
    const std::size_t end = text.find("://");
    if (end == 0 || end == std::string_view::npos)
        return false;
    return std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), [](char c) {
        return isPlainByte(c) ? c != '/' && c != '_' && c != '~' : c == '+';
    });
}

std::string hrefOf(std::string_view path) {
    if (isAddress(path))
        return isWritable(path) ? std::string(path) : std::string();
    if (!Platform::backslashSeparates())
        return "file://" + percentEncoded(path);
    std::string slashes(path);
    std::replace(slashes.begin(), slashes.end(), '\\', '/');
    if (slashes.compare(0, 2, "//") == 0)
        return "file:" + percentEncoded(slashes);
    if (isDrive(slashes))
        return "file:///" + slashes.substr(0, 2) + percentEncoded(slashes.substr(2));
    return "file://" + percentEncoded(slashes);
}

std::optional<std::string> pathOf(std::string_view href) {
    constexpr std::string_view scheme = "file://";
    if (href.substr(0, scheme.size()) != scheme)
        return isAddress(href) ? std::optional<std::string>(href) : std::nullopt;
    std::string_view rest = href.substr(scheme.size());
    constexpr std::string_view local = "localhost/";
    if (rest.substr(0, local.size()) == local)
        rest.remove_prefix(local.size() - 1);
    const bool hasServer = !rest.empty() && rest[0] != '/';
    if (hasServer && !Platform::backslashSeparates())
        return std::string(href);
    if (Platform::backslashSeparates() &&
        isDrive(rest.substr(std::min<std::size_t>(1, rest.size()))))
        rest.remove_prefix(1);
    auto path = percentDecoded(rest);
    if (path && path->empty())
        return {};
    if (path && hasServer)
        path->insert(0, "//");
    return path;
}

} // namespace Kestrel::UI::Xbel
