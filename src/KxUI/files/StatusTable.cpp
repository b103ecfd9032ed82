#include <KxUI/files/StatusTable_p.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

bool isBefore(const FileStatus& a, const FileStatus& b) {
    return a.key < b.key;
}

} // namespace

const FileStatus* StatusTable::find(std::uint64_t key) const {
    const auto& shard = m_shards[shardOf(key)];
    if (!shard)
        return nullptr;
    const auto found =
        std::lower_bound(shard->begin(), shard->end(), key,
                         [](const FileStatus& each, std::uint64_t k) { return each.key < k; });
    return found != shard->end() && found->key == key ? &*found : nullptr;
}

void StatusTable::add(std::vector<FileStatus> statuses) {
    std::stable_sort(statuses.begin(), statuses.end(), isBefore);
    for (auto first = statuses.begin(); first != statuses.end();) {
        const std::size_t index = shardOf(first->key);
        auto last = first;
        while (last != statuses.end() && shardOf(last->key) == index)
            ++last;
        auto shard = std::make_shared<Shard>();
        const Shard none;
        const Shard& old = m_shards[index] ? *m_shards[index] : none;
        shard->reserve(old.size() + static_cast<std::size_t>(last - first));
        auto next = old.begin();
        for (; first != last; ++first) {
            if (first + 1 != last && (first + 1)->key == first->key)
                continue; // told twice: the later one holds
            for (; next != old.end() && next->key < first->key; ++next)
                shard->push_back(*next);
            if (next != old.end() && next->key == first->key)
                ++next;
            shard->push_back(*first);
        }
        shard->insert(shard->end(), next, old.end());
        m_shards[index] = std::move(shard);
    }
}

void StatusTable::clear() {
    m_shards.fill(nullptr);
}

} // namespace Kestrel::UI
