#include "media/Sequence.h"

#include "media/Paths.h"

#include <algorithm>
#include <numeric>

namespace Kestrel::Workbench {

Sequence::Sequence(QString title, std::string folder, std::vector<Member> members)
    : m_title(std::move(title))
    , m_folder(std::move(folder))
    , m_members(std::move(members)) {
    std::stable_sort(m_members.begin(), m_members.end(),
                     [](const Member& a, const Member& b) { return a.first < b.first; });
    m_members.erase(
        std::unique(m_members.begin(), m_members.end(),
                    [](const Member& a, const Member& b) { return a.first == b.first; }),
        m_members.end());
    Base::Time step = 0;
    for (std::size_t i = 1; i < m_members.size() && step != 1; ++i)
        step = std::gcd(step, m_members[i].first - m_members[i - 1].first);
    m_step = std::max<Base::Time>(step, 1);
}

Base::Time Sequence::firstTime() const {
    return m_members.empty() ? Base::InvalidTime : m_members.front().first;
}

Base::Time Sequence::lastTime() const {
    return m_members.empty() ? Base::InvalidTime : m_members.back().first;
}

Base::Time Sequence::missingCount() const {
    if (m_members.empty())
        return 0;
    return (lastTime() - firstTime()) / m_step + 1 - Base::Time(m_members.size());
}

std::optional<Base::Time> Sequence::heldTime(Base::Time time) const {
    if (m_members.empty() || time < firstTime() || time > lastTime())
        return std::nullopt;
    const Base::Time held = time - (time - firstTime()) % m_step;
    return find(held) == m_members.end() ? std::nullopt : std::make_optional(held);
}

std::set<Base::Time> Sequence::edits() const {
    if (m_members.empty())
        return {};
    std::set<Base::Time> times{firstTime(), lastTime()};
    for (std::size_t i = 1; i < m_members.size(); ++i) {
        const Base::Time expected = m_members[i - 1].first + m_step;
        if (m_members[i].first != expected)
            times.insert({expected, m_members[i].first});
    }
    return times;
}

std::string Sequence::path(Base::Time time) const {
    const auto found = find(time);
    return found == m_members.end() ? std::string() : joinPath(m_folder, found->second);
}

std::vector<Sequence::Member>::const_iterator Sequence::find(Base::Time time) const {
    const auto found =
        std::lower_bound(m_members.begin(), m_members.end(), time,
                         [](const Member& member, Base::Time t) { return member.first < t; });
    return found != m_members.end() && found->first == time ? found : m_members.end();
}

} // namespace Kestrel::Workbench
