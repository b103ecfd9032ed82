#include <support/PatternOracle.h>

#include <vector>

namespace Kestrel::Fuzz::PatternOracle {
namespace {

// Tries every alternative and every length of a star; what failed once is not tried again.
class Matcher {
public:
    Matcher(const std::string& name, const std::string& pattern)
        : m_name(name)
        , m_pattern(pattern)
        , m_failed((name.size() + 1) * (pattern.size() + 1)) {}

    bool matches(std::size_t n, std::size_t p) {
        const std::size_t state = p * (m_name.size() + 1) + n;
        if (m_failed[state])
            return false;
        const bool result = tries(n, p);
        m_failed[state] = !result;
        return result;
    }

private:
    bool tries(std::size_t n, std::size_t p) {
        const bool nameEnds = n == m_name.size();
        switch (at(p)) {
        case '\0':
            return nameEnds;
        case '?':
            return !nameEnds && matches(n + 1, p + 1);
        case '*':
            return matches(n, p + 1) || (!nameEnds && matches(n + 1, p));
        case '[':
            return !nameEnds && inSet(m_name[n], p) && matches(n + 1, p);
        case '{':
            for (++p;; ++p) {
                if (matches(n, p))
                    return true;
                int depth = 0;
                for (; at(p) != '\0' && at(p) != ',' && at(p) != '|'; ++p) {
                    depth += at(p) == '{' ? 1 : at(p) == '}' ? -1 : 0;
                    if (depth < 0)
                        return false;
                    p += at(p) == '\\' && at(p + 1) != '\0';
                }
                if (depth != 0 || at(p) == '\0')
                    return false;
            }
        case ',':
        case '|':
            ++p;
            for (int depth = 0; at(p) != '\0' && depth >= 0; ++p) {
                depth += at(p) == '{' ? 1 : at(p) == '}' ? -1 : 0;
                p += at(p) == '\\' && at(p + 1) != '\0';
            }
            return matches(n, p);
        case '}':
            return matches(n, p + 1);
        case '\\':
            p += at(p + 1) != '\0';
            break;
        default:
            break;
        }
        return !nameEnds && m_name[n] == at(p) && matches(n + 1, p + 1);
    }

    // Moves `p` behind the set; false for one that is never closed.
    bool inSet(char c, std::size_t& p) const {
        const bool inverted = at(p + 1) == '^' || at(p + 1) == '!';
        const std::size_t first = p + 1 + inverted;
        const std::size_t end = m_pattern.find(']', first + 1);
        if (end == std::string::npos)
            return false;
        bool found = false;
        for (std::size_t i = first; i < end; ++i) {
            if (m_pattern[i] == '-' && i > first && i + 1 < end) {
                const auto low = static_cast<signed char>(m_pattern[i - 1]);
                const auto high = static_cast<signed char>(m_pattern[++i]);
                const auto each = static_cast<signed char>(c);
                found = found || (low <= each && each <= high);
            } else {
                found = found || c == m_pattern[i];
            }
        }
        p = end + 1;
        return found != inverted;
    }

    char at(std::size_t p) const { return p < m_pattern.size() ? m_pattern[p] : '\0'; }

    const std::string& m_name;
    const std::string& m_pattern;
    std::vector<bool> m_failed;
};

} // namespace

bool matches(const std::string& name, const std::string& pattern) {
    return Matcher(name, pattern).matches(0, 0);
}

} // namespace Kestrel::Fuzz::PatternOracle
