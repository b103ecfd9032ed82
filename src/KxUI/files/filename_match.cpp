#include <KxUI/files/filename.h>

#include <boost/container/small_vector.hpp>

#include <algorithm>
#include <bitset>
#include <cstdint>
#include <exception>
#include <optional>
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

// Where the groups of a pattern go on. Read once from its end, as every search that begins anew at
// a brace would take time in the square of the pattern. Only positions that a search may begin at
// or pass are told rightly: what a backslash escapes is none.
class Groups {
public:
    explicit Groups(std::string_view pattern)
        : m_places(pattern.size() + 2, boost::container::default_init) {
        const std::size_t size = pattern.size();
        m_places[size] = m_places[size + 1] = {size, nowhere, true};
        for (std::size_t at = size; at-- > 0;) {
            const Place& next = m_places[at + 1];
            Place& place = m_places[at] = next;
            switch (pattern[at]) {
            case '\\':
                place = m_places[at + 2];
                break;
            case '{': {
                // A separator inside a nested group ends the search, as in every version of these
                // patterns so far.
                const Place& after = m_places[next.behind];
                place = {after.behind, next.isWhole ? after.alternative : nowhere,
                         next.isWhole && after.isWhole};
                break;
            }
            case '}':
                place = {at + 1, nowhere, true};
                break;
            case ',':
            case '|':
                place = {next.behind, at + 1, false};
                break;
            default:
                break;
            }
        }
    }

    // The position behind the brace that closes the group around `at`, or the end of the pattern.
    std::size_t behind(std::size_t at) const { return m_places[at].behind; }

    // The alternative after the one that begins at `at`.
    std::size_t nextAlternative(std::size_t at) const { return m_places[at].alternative; }

private:
    struct Place {
        std::size_t behind;
        std::size_t alternative;
        bool isWhole; // without a separator up to the closing brace
    };

    boost::container::small_vector<Place, 32> m_places;
};

// The rest of a set from each position on, as sets may begin inside each other. Read once from the
// end of the pattern.
class Sets {
public:
    explicit Sets(std::string_view pattern)
        : m_rests(pattern.size() + 1) {
        for (std::size_t at = pattern.size(); at-- > 0;) {
            const char c = pattern[at];
            if (c == ']') {
                m_rests[at].end = at;
                continue;
            }
            const bool isRange =
                c == '-' && at > 0 && at + 1 < pattern.size() && pattern[at + 1] != ']';
            m_rests[at] = m_rests[isRange ? at + 2 : at + 1];
            if (!isRange) {
                m_rests[at].members.set(bit(c));
                continue;
            }
            const auto low = static_cast<signed char>(pattern[at - 1]);
            const auto high = static_cast<signed char>(pattern[at + 1]);
            for (int each = low; each <= high; ++each)
                m_rests[at].members.set(bit(static_cast<char>(each)));
        }
    }

    const CharacterSet& members(std::size_t at) const { return m_rests[at].members; }

    // Where the set around `at` is closed.
    std::size_t end(std::size_t at) const { return m_rests[at].end; }

private:
    struct Rest {
        CharacterSet members;
        std::size_t end = nowhere;
    };

    std::vector<Rest> m_rests;
};

class Matcher {
public:
    Matcher(std::string_view name, std::string_view pattern)
        : m_name(name)
        , m_pattern(pattern) {}

    bool matches() {
        return m_pattern.find_first_of("{}|,") == nowhere ? matchesStraight() : matchesBranching();
    }

private:
    // Without groups there is one position at a time, and the last star to go back to.
    bool matchesStraight() {
        std::size_t at = 0;
        std::size_t position = 0;
        std::size_t starAt = 0;
        std::size_t afterStar = nowhere;
        while (at < m_name.size()) {
            if (position < m_pattern.size()) {
                if (m_pattern[position] == '*') {
                    afterStar = ++position;
                    starAt = at;
                    continue;
                }
                if (const std::size_t next = acceptedBy(position, m_name[at]); next != nowhere) {
                    position = next;
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

    // The position after the one that takes this character; nowhere when it does not. Most patterns
    // are a star and letters, which need no steps.
    std::size_t acceptedBy(std::size_t position, char c) {
        const char wanted = m_pattern[position];
        if (wanted != '[' && wanted != '\\')
            return wanted == c || wanted == '?' ? position + 1 : nowhere;
        if (m_steps.empty())
            m_steps.resize(m_pattern.size());
        const Step& step = stepAt(position);
        return accepts(step, c) ? step.next : nowhere;
    }

    bool matchesBranching() {
        m_steps.resize(m_pattern.size());
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
        if (step.kind == Step::Kind::NotLookedAt)
            lookAt(position, step);
        return step;
    }

    void lookAt(std::size_t position, Step& step) {
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
            for (auto each = step.next; each != nowhere; each = groups().nextAlternative(each))
                m_alternatives.push_back(each);
            step.count = static_cast<std::uint32_t>(m_alternatives.size()) - step.index;
            break;
        case ',':
        case '|':
            step.kind = Step::Kind::Jump;
            step.next = groups().behind(position + 1);
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
    }

    // Reads the set that begins at step.next. One that is never closed matches nothing.
    void readSet(Step& step) {
        step.kind = Step::Kind::Dead;
        const bool inverted = step.next < m_pattern.size() &&
                              (m_pattern[step.next] == '^' || m_pattern[step.next] == '!');
        const std::size_t first = inverted ? step.next + 1 : step.next;
        if (first >= m_pattern.size())
            return;
        if (!m_restsOfSets)
            m_restsOfSets.emplace(m_pattern);
        const std::size_t end = m_restsOfSets->end(first + 1);
        if (end == nowhere)
            return;
        CharacterSet set = m_restsOfSets->members(first + 1);
        set.set(bit(m_pattern[first]));
        step.kind = Step::Kind::OneOf;
        step.next = end + 1;
        step.index = static_cast<std::uint32_t>(m_sets.size());
        m_sets.push_back(inverted ? ~set : set);
    }

    const Groups& groups() {
        if (!m_groups)
            m_groups.emplace(m_pattern);
        return *m_groups;
    }

    std::string_view m_name;
    std::string_view m_pattern;
    boost::container::small_vector<Step, 32> m_steps;
    std::optional<Groups> m_groups;
    std::optional<Sets> m_restsOfSets;
    std::vector<CharacterSet> m_sets;
    std::vector<std::size_t> m_alternatives; // where those of each group begin
};

} // namespace

bool filename_match(const char* name, const char* pattern) {
    try {
        return name && pattern && Matcher(name, pattern).matches();
    } catch (const std::exception&) {
        return false; // no memory; the caller may be C
    }
}
