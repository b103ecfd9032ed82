#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace Kestrel::UI {

/** What the system told of a file that stands for an item. */
struct FileStatus {
    std::uint64_t key = 0;  ///< of the item
    std::uint64_t size = 0; ///< bytes of the file asked, which is a sequence's first frame
    std::int64_t modified = 0;
    std::int32_t last = 0;  ///< the last frame when it was asked
    std::uint32_t turn = 0; ///< of asking; a refresh begins another one
    std::int32_t item = -1; ///< in the listing that was asked about; another may stand there by now
    std::uint8_t known = 0; ///< FileListing::Status::Known
    bool isLink = false;
    bool isBrokenLink = false;
    bool isDirectory = false;
};

/** Statuses by the keys of their items. Copies are cheap and share what neither changes, so that a
    worker can sort by a state of affairs that goes on changing. */
class StatusTable {
public:
    /** Null for none. */
    const FileStatus* find(std::uint64_t key) const;

    /** Adds statuses, in place of those of the same keys. */
    void add(std::vector<FileStatus> statuses);

    void clear();

private:
    static constexpr std::size_t shardCount = 1024;
    using Shard = std::vector<FileStatus>; // by key

    // Keys are hashes: their upper bits are as good as any.
    static std::size_t shardOf(std::uint64_t key) { return key >> 54; }

    std::array<std::shared_ptr<const Shard>, shardCount> m_shards;
};

} // namespace Kestrel::UI
