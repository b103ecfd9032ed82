#include <KxUI/files/filename.h>

#include <boost/container/small_vector.hpp>

#include <algorithm>
#include <bitset>
#include <cstdint>
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
    std::uint32_t count = 0; // of a group: its alternatives
    std::uint32_t index = 0; // of a set: where it is; of a group: where its first alternative is
    std::size_t next = 0;    // the position after this step
};

// A set of pattern positions that knows the stretch it lies in.
class Positions {
public:
    explicit Positions(std::size_t count)
        : m_has(count) {}

    bool has(std::size_t position) const { return m_has[position]; }
    bool isEmpty() const { return m_end == 0; }
    std::size_t begin() const { return m_begin; }
    std::size_t end() const { return m_end; }

    void add(std::size_t position) {
        m_has[position] = true;
        m_begin = std::min(m_begin, position);
        m_end = std::max(m_end, position + 1);
    }

    void clear() {
        for (std::size_t i = m_begin; i < m_end; ++i)
            m_has[i] = false;
        m_begin = m_has.size();
        m_end = 0;
    }

private:
    boost::container::small_vector<bool, 64> m_has;
    std::size_t m_begin = m_has.size();
    std::size_t m_end = 0;
};

class Matcher {
public:
    Matcher(std::string_view name, std::string_view pattern)
        : m_name(name)
        , m_pattern(pattern)
        , m_steps(pattern.size()) {}

    bool matches() {
        return m_pattern.find_first_of("{}|,") == nowhere ? matchesStraight() : matchesBranching();
    }

private:
    bool matchesStraight() {
        std::size_t at = 0;
        std::size_t position = 0;
        std::size_t starAt = 0;
        std::size_t afterStar = nowhere;
        while (at < m_name.size()) {
            if (position < m_pattern.size()) {
                const Step& step = stepAt(position);
                if (step.kind == Step::Kind::AnyRun) {
                    position = afterStar = step.next;
                    starAt = at;
                    continue;
                }
                if (accepts(step, m_name[at])) {
                    position = step.next;
                    ++at;
                    continue;
                }
            }
            if (afterStar == nowhere)
                return false;
            position = afterStar;
            at = ++starAt;
        }
        while (position < m_pattern.size() && m_pattern[position] == '*')
            ++position;
        return position == m_pattern.size();
    }

    bool matchesBranching() {
        Positions first(m_pattern.size() + 1);
        Positions second(m_pattern.size() + 1);
        Positions* reached = &first;
        Positions* reachedNext = &second;
        reached->add(0);
        for (const char& c : m_name) {
            advance(*reached, &c, *reachedNext);
            if (reachedNext->isEmpty())
                return false;
            reached->clear();
            std::swap(reached, reachedNext);
        }
        advance(*reached, nullptr, *reachedNext);
        return reached->has(m_pattern.size());
    }

    // Follows all positions reached, over the next character of the name if there is one. Steps
    // lead to higher positions only, so one sweep does.
    void advance(Positions& reached, const char* c, Positions& reachedNext) {
        const std::size_t size = m_pattern.size();
        for (auto at = reached.begin(); at < reached.end() && at < size; ++at) {
            if (!reached.has(at))
                continue;
            const Step& step = stepAt(at);
            switch (step.kind) {
            case Step::Kind::AnyRun:
                reached.add(step.next);
                if (c)
                    reachedNext.add(at);
                break;
            case Step::Kind::Group:
                for (std::uint32_t i = 0; i < step.count; ++i)
                    reached.add(m_alternatives[step.index + i]);
                break;
            case Step::Kind::Jump:
                reached.add(step.next);
                break;
            default:
                if (c && accepts(step, *c))
                    reachedNext.add(step.next);
                break;
            }
        }
    }

    // Whether the step is one over this character.
    bool accepts(const Step& step, char c) const {
        switch (step.kind) {
        case Step::Kind::Literal:
            return step.literal == c;
        case Step::Kind::AnyOne:
            return true;
        case Step::Kind::OneOf:
            return m_sets[step.index].test(bit(c));
        default:
            return false;
        }
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
            step.index = static_cast<std::uint32_t>(m_alternatives.size());
            for (auto each = step.next; each != nowhere; each = nextAlternative(each))
                m_alternatives.push_back(each);
            step.count = static_cast<std::uint32_t>(m_alternatives.size()) - step.index;
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
                step.index = static_cast<std::uint32_t>(m_sets.size());
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
    std::vector<CharacterSet> m_sets;
    std::vector<std::size_t> m_alternatives; // where those of each group begin
};

} // namespace

bool filename_match(const char* name, const char* pattern) {
    return name && pattern && Matcher(name, pattern).matches();
}
