#include <KxUI/files/RecentListings_p.h>

#include <algorithm>

namespace Kestrel::UI {

RecentListings& RecentListings::instance() {
    // Never destroyed: workers may come back while the process ends.
    static auto* const recent = new RecentListings(8, 500000);
    return *recent;
}

RecentListings::List::iterator RecentListings::place(const std::string& directory) {
    return std::find_if(m_recent.begin(), m_recent.end(),
                        [&](const Recent& each) { return each.data->raw->directory == directory; });
}

void RecentListings::keep(Recent recent) {
    List forgotten; // dies outside the lock
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (const auto old = place(recent.data->raw->directory); old != m_recent.end()) {
        recent.status = old->status;
        forgotten.splice(forgotten.end(), m_recent, old);
    }
    if (recent.data->entriesRead > m_mostEntries)
        return; // the others would all have to go for it
    m_recent.push_front(std::move(recent));
    std::size_t count = 0;
    std::int64_t entries = 0;
    auto each = m_recent.begin();
    while (each != m_recent.end() && ++count <= m_most &&
           (entries += each->data->entriesRead) <= m_mostEntries)
        ++each;
    forgotten.splice(forgotten.end(), m_recent, each, m_recent.end());
}

void RecentListings::keepStatus(const std::string& directory,
                                std::shared_ptr<const StatusTable> status) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (const auto found = place(directory); found != m_recent.end())
        found->status.swap(status);
}

std::optional<RecentListings::Recent> RecentListings::find(const std::string& directory) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = place(directory);
    if (found == m_recent.end())
        return std::nullopt;
    m_recent.splice(m_recent.begin(), m_recent, found);
    return m_recent.front();
}

void RecentListings::clear() {
    List forgotten; // dies outside the lock
    const std::lock_guard<std::mutex> lock(m_mutex);
    forgotten.swap(m_recent);
}

} // namespace Kestrel::UI
