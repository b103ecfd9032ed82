#include <KxUI/files/PathRemap.h>

#include <algorithm>
#include <array>
#include <limits>
#include <map>

namespace Kestrel::UI {
namespace {

constexpr int none = std::numeric_limits<int>::max();

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isSeparator(char c, PathStyle style) {
    return c == '/' || (c == '\\' && style == PathStyle::Windows);
}

bool isAddress(std::string_view path) {
    const std::size_t colon = path.find("://");
    return colon != 0 && colon != std::string_view::npos &&
           std::all_of(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(colon), isLetter);
}

std::string lower(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

/** Walks the components of a path. The first one says what the path counts from: `/`, `//` for a
    server, `c:`; empty for a relative one. */
class Components {
public:
    Components(std::string_view path, PathStyle style)
        : m_path(path)
        , m_style(style) {
        if (style == PathStyle::Windows && path.size() > 3 && isSep(0) && isSep(1) &&
            path[2] == '?' && isSep(3))
            m_at = 4;
    }

    // False at the end.
    bool next(std::string& component) {
        if (!m_hasRoot) {
            m_hasRoot = true;
            component = root();
            return true;
        }
        skipSeparators();
        const std::size_t begin = m_at;
        while (m_at < m_path.size() && !isSep(m_at))
            ++m_at;
        component = folded(m_path.substr(begin, m_at - begin));
        return m_at > begin;
    }

    void skipSeparators() {
        while (m_at < m_path.size() && isSep(m_at))
            ++m_at;
    }

    std::size_t at() const { return m_at; }

private:
    bool isSep(std::size_t i) const { return isSeparator(m_path[i], m_style); }

    std::string folded(std::string_view text) const {
        return m_style == PathStyle::Windows ? lower(text) : std::string(text);
    }

    std::string root() {
        if (m_style == PathStyle::Windows && m_at + 1 < m_path.size() && isLetter(m_path[m_at]) &&
            m_path[m_at + 1] == ':') {
            m_at += 2;
            return folded(m_path.substr(m_at - 2, 2));
        }
        if (m_at >= m_path.size() || !isSep(m_at))
            return {};
        const bool isServer =
            m_style == PathStyle::Windows && m_at + 1 < m_path.size() && isSep(m_at + 1);
        return isServer ? "//" : "/";
    }

    std::string_view m_path;
    PathStyle m_style;
    std::size_t m_at = 0;
    bool m_hasRoot = false;
};

/** Rules of one style by the components of their sources. */
struct Node {
    std::map<std::string, Node, std::less<>> below;
    int rule = none;
};

// A destination without the separators at its end, but for those that make a root.
std::string destination(std::string to) {
    const auto isEnd = [&] { return to.back() == '/' || to.back() == '\\'; };
    while (to.size() > 1 && isEnd() && !(to.size() == 3 && to[1] == ':'))
        to.pop_back();
    return to;
}

char separatorOf(const std::string& to) {
    const bool hasDrive = to.size() > 1 && isLetter(to[0]) && to[1] == ':';
    const bool hasSlash = to.find('/') != std::string::npos;
    const bool hasBackslash = to.find('\\') != std::string::npos;
    return hasDrive || to.substr(0, 2) == "\\\\" ? (hasSlash && !hasBackslash ? '/' : '\\') : '/';
}

} // namespace

struct PathRemap::Private {
    struct Target {
        std::string to;
        char separator = '/';
    };

    std::array<Node, 2> trees; // by style
    std::vector<Target> targets;
    std::vector<int> shadowedBy;

    void add(const PathRule& rule, int index) {
        Node* node = &trees[static_cast<std::size_t>(rule.fromStyle)];
        Components components(rule.from, rule.fromStyle);
        for (std::string component; components.next(component);) {
            node = &node->below[component];
            if (node->rule != none)
                shadowedBy[static_cast<std::size_t>(index)] = node->rule;
            if (node->rule != none)
                return;
        }
        node->rule = index;
    }

    // The first rule that matches, and where the rest of the path begins.
    int find(std::string_view path, PathStyle style, std::size_t& rest) const {
        const Node* node = &trees[static_cast<std::size_t>(style)];
        int best = none;
        Components components(path, style);
        for (std::string component; !node->below.empty() && components.next(component);) {
            const auto child = node->below.find(component);
            if (child == node->below.end())
                break;
            node = &child->second;
            if (node->rule < best) {
                best = node->rule;
                rest = components.at();
            }
        }
        return best;
    }
};

PathRemap::PathRemap()
    : PathRemap(std::vector<PathRule>()) {}

PathRemap::PathRemap(const std::vector<PathRule>& rules) {
    auto made = std::make_shared<Private>();
    made->shadowedBy.assign(rules.size(), -1);
    for (const PathRule& rule : rules) {
        const std::string to = destination(rule.to.empty() ? "/" : rule.to);
        made->targets.push_back({to, separatorOf(to)});
    }
    for (int i = 0; i < static_cast<int>(rules.size()); ++i) {
        const PathRule& rule = rules[static_cast<std::size_t>(i)];
        if (rule.isEnabled && problemOf(rule) == Problem::None)
            made->add(rule, i);
    }
    d = std::move(made);
}

PathRemap::PathRemap(const PathRemap& other) noexcept = default;
PathRemap& PathRemap::operator=(const PathRemap& other) noexcept = default;
PathRemap::~PathRemap() = default;

PathRemap::Result PathRemap::map(std::string_view path) const {
    Result result{std::string(path), -1};
    if (path.empty() || isAddress(path))
        return result;
    std::size_t rest = 0;
    std::size_t windowsRest = 0;
    const int posix = d->find(path, PathStyle::Posix, rest);
    const int windows = d->find(path, PathStyle::Windows, windowsRest);
    const int rule = std::min(posix, windows);
    if (rule == none)
        return result;
    const PathStyle style = windows < posix ? PathStyle::Windows : PathStyle::Posix;
    const Private::Target& target = d->targets[static_cast<std::size_t>(rule)];
    result.rule = rule;
    result.path = target.to;
    bool needsSeparator = result.path.back() != '/' && result.path.back() != '\\';
    bool wasSeparator = false;
    for (const char c : path.substr(windows < posix ? windowsRest : rest)) {
        if (isSeparator(c, style)) {
            wasSeparator = true;
            continue;
        }
        if (wasSeparator && needsSeparator)
            result.path += target.separator;
        needsSeparator = true;
        wasSeparator = false;
        result.path += c;
    }
    if (wasSeparator && needsSeparator)
        result.path += target.separator;
    return result;
}

int PathRemap::shadowedBy(int rule) const {
    const auto index = static_cast<std::size_t>(rule);
    return rule >= 0 && index < d->shadowedBy.size() ? d->shadowedBy[index] : -1;
}

PathRemap::Problem PathRemap::problemOf(const PathRule& rule) {
    if (rule.from.empty())
        return Problem::NoSource;
    Components components(rule.from, rule.fromStyle);
    std::string component;
    if (!components.next(component) || component.empty())
        return Problem::RelativeSource;
    while (components.next(component)) {
        if (component == "..")
            return Problem::UpwardSource;
    }
    return rule.to.empty() ? Problem::NoDestination : Problem::None;
}

} // namespace Kestrel::UI
