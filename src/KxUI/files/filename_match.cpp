#include <KxUI/files/filename.h>

#include <boost/container/small_vector.hpp>

#include <algorithm>
#include <bitset>
#include <string_view>
#include <vector>

// The pattern is run as an automaton: the set of pattern positions reached so far is moved along
// the name one character at a time. Trying alternatives one after the other would take exponential
// time for a handful of stars.
namespace {

using CharacterSet = std::bitset<256>;

constexpr std::size_t nowhere = std::string_view::npos;

std::size_t bit(char c) {
    return static_cast<unsigned char>(c);
}

// What the pattern does at one position.
struct Step {
    enum class Kind : unsigned char {
        NotLookedAt,
        Literal,
        AnyOne,
        AnyRun,
        OneOf,
        Group,
        Jump,
        Dead
    };

    Kind kind = Kind::NotLookedAt;
    char literal = 0;
    std::size_t next = 0;  // the position after this step
    std::size_t index = 0; // of the set, or of the first alternative of the group
    std::size_t count = 0; // of alternatives
};

class Matcher {
public:
    Matcher(std::string_view name, std::string_view pattern)
        : m_name(name)
        , m_pattern(pattern)
        , m_steps(pattern.size())
        , m_reached(pattern.size() + 1)
        , m_reachedNext(pattern.size() + 1) {}

    bool matches() {
        m_reached[0] = true;
        for (std::size_t at = 0;; ++at) {
            const bool alive = advance(at);
            if (at == m_name.size())
                return m_reached[m_pattern.size()];
            if (!alive)
                return false;
            m_reached.swap(m_reachedNext);
            std::fill(m_reachedNext.begin(), m_reachedNext.end(), false);
        }
    }

private:
    // Follows all positions reached before the character `at` of the name. Steps lead to higher
    // positions only, so one sweep does. Whether any position is reached behind the character.
    bool advance(std::size_t at) {
        const bool atEnd = at == m_name.size();
        const char c = atEnd ? '\0' : m_name[at];
        bool alive = false;
        const auto consume = [&](bool accepted, std::size_t next) {
            if (accepted && !atEnd) {
                m_reachedNext[next] = true;
                alive = true;
            }
        };
        for (std::size_t position = 0; position < m_pattern.size(); ++position) {
            if (!m_reached[position])
                continue;
            const Step& step = stepAt(position);
            switch (step.kind) {
            case Step::Kind::Literal:
                consume(step.literal == c, step.next);
                break;
            case Step::Kind::AnyOne:
                consume(true, step.next);
                break;
            case Step::Kind::AnyRun:
                m_reached[step.next] = true;
                consume(true, position);
                break;
            case Step::Kind::OneOf:
                consume(m_sets[step.index].test(bit(c)), step.next);
                break;
            case Step::Kind::Group:
                for (std::size_t i = 0; i < step.count; ++i)
                    m_reached[m_alternatives[step.index + i]] = true;
                break;
            case Step::Kind::Jump:
                m_reached[step.next] = true;
                break;
            case Step::Kind::NotLookedAt:
            case Step::Kind::Dead:
                break;
            }
        }
        return alive;
    }

    const Step& stepAt(std::size_t position) {
        Step& step = m_steps[position];
        if (step.kind != Step::Kind::NotLookedAt)
            return step;
        step.next = position + 1;
        step.literal = m_pattern[position];
        switch (m_pattern[position]) {
        case '?':
            step.kind = Step::Kind::AnyOne;
            break;
        case '*':
            step.kind = Step::Kind::AnyRun;
            break;
        case '[':
            readSet(step);
            break;
        case '{':
            step.kind = Step::Kind::Group;
            step.index = m_alternatives.size();
            for (auto each = step.next; each != nowhere; each = nextAlternative(each))
                m_alternatives.push_back(each);
            step.count = m_alternatives.size() - step.index;
            break;
        case ',':
        case '|':
            step.kind = Step::Kind::Jump;
            step.next = behindGroup(position + 1);
            break;
        case '}':
            step.kind = Step::Kind::Jump;
            break;
        case '\\':
            step.kind = Step::Kind::Literal;
            if (step.next < m_pattern.size())
                step.literal = m_pattern[step.next++];
            break;
        default:
            step.kind = Step::Kind::Literal;
            break;
        }
        return step;
    }

    // Reads the set that begins at step.next. One that is never closed matches nothing.
    void readSet(Step& step) {
        CharacterSet set;
        std::size_t at = step.next;
        const bool inverted =
            at < m_pattern.size() && (m_pattern[at] == '^' || m_pattern[at] == '!');
        if (inverted)
            ++at;
        const std::size_t first = at;
        for (; at < m_pattern.size(); ++at) {
            const char c = m_pattern[at];
            if (c == ']' && at > first) {
                step.kind = Step::Kind::OneOf;
                step.next = at + 1;
                step.index = m_sets.size();
                m_sets.push_back(inverted ? ~set : set);
                return;
            }
            const bool isRange =
                c == '-' && at > first && at + 1 < m_pattern.size() && m_pattern[at + 1] != ']';
            if (!isRange) {
                set.set(bit(c));
                continue;
            }
            const auto low = static_cast<signed char>(m_pattern[at - 1]);
            const auto high = static_cast<signed char>(m_pattern[++at]);
            for (int each = low; each <= high; ++each)
                set.set(bit(static_cast<char>(each)));
        }
        step.kind = Step::Kind::Dead;
    }

    // The position behind the brace that closes the group around `at`, or the end of the pattern.
    std::size_t behindGroup(std::size_t at) const {
        for (int depth = 0; at < m_pattern.size(); ++at) {
            switch (m_pattern[at]) {
            case '\\':
                ++at;
                break;
            case '{':
                ++depth;
                break;
            case '}':
                if (depth-- == 0)
                    return at + 1;
                break;
            default:
                break;
            }
        }
        return m_pattern.size();
    }

    // The alternative after the one that begins at `at`. A separator inside a nested group ends the
    // search, as in every version of these patterns so far.
    std::size_t nextAlternative(std::size_t at) const {
        for (int depth = 0; at < m_pattern.size(); ++at) {
            switch (m_pattern[at]) {
            case '\\':
                ++at;
                break;
            case '{':
                ++depth;
                break;
            case '}':
                if (depth-- == 0)
                    return nowhere;
                break;
            case ',':
            case '|':
                return depth == 0 ? at + 1 : nowhere;
            default:
                break;
            }
        }
        return nowhere;
    }

    std::string_view m_name;
    std::string_view m_pattern;
    boost::container::small_vector<Step, 32> m_steps;
    boost::container::small_vector<bool, 128> m_reached;
    boost::container::small_vector<bool, 128> m_reachedNext;
    std::vector<CharacterSet> m_sets;
    std::vector<std::size_t> m_alternatives; // where those of each group begin
};

} // namespace

bool filename_match(const char* name, const char* pattern) {
    return name && pattern && Matcher(name, pattern).matches();
}
