#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Kestrel::UI {

/** Which texture: all that its pixels depend on, in 16 bytes. */
struct TextureKey {
    std::uint8_t element = 0;  ///< what is shown
    std::uint8_t edges = 0;    ///< the sides that join a neighbour
    std::uint16_t state = 0;   ///< how it is shown: hovered, pressed ...
    std::uint16_t extent = 0;  ///< height in pixels of the device; 0 where it does not matter
    std::uint16_t ratio64 = 0; ///< pixels of the device a logical pixel, times 64
    std::uint64_t colors = 0;  ///< the colours

    bool operator==(const TextureKey& other) const {
        return first() == other.first() && colors == other.colors;
    }
    std::uint64_t first() const {
        return std::uint64_t(element) | std::uint64_t(edges) << 8 | std::uint64_t(state) << 16 |
               std::uint64_t(extent) << 32 | std::uint64_t(ratio64) << 48;
    }
    /** Mixes both words (the finalizer of SplitMix64). */
    std::uint64_t hash() const {
        std::uint64_t x = first() ^ (colors + 0x9e3779b97f4a7c15U + (first() << 6));
        x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9U;
        x = (x ^ (x >> 27)) * 0x94d049bb133111ebU;
        return x ^ (x >> 31);
    }
};
static_assert(sizeof(TextureKey) == 16, "two words, nothing between them");

/** Values by key, of which the ones that were not used for longest go when there are too many bytes
    of them. Looking up allocates nothing. */
template <class Value>
class TextureTable {
public:
    explicit TextureTable(std::int64_t limit)
        : m_limit(limit) {}

    /** Null where there is none. Valid until the next insertion; makes it the one used last. */
    const Value* find(const TextureKey& key) {
        if (m_slots.empty())
            return nullptr;
        const std::uint32_t node = m_slots[slotOf(key)];
        if (node == None)
            return nullptr;
        moveToFront(node);
        return &m_nodes[node].value;
    }

    /** For a key that is not in the table. The value stays until the next insertion, however large
        it is. */
    const Value& insert(const TextureKey& key, Value value, std::int64_t bytes) {
        m_bytes += bytes;
        shrink();
        if ((m_count + 1) * 2 > m_slots.size())
            grow();
        const std::uint32_t node = takeNode();
        m_nodes[node].key = key;
        m_nodes[node].value = std::move(value);
        m_nodes[node].bytes = bytes;
        link(node);
        m_slots[slotOf(key)] = node;
        ++m_count;
        return m_nodes[node].value;
    }

    void clear() {
        m_nodes.clear();
        m_slots.clear();
        m_newest = m_oldest = m_free = None;
        m_count = 0;
        m_bytes = 0;
    }

    void setLimit(std::int64_t limit) {
        m_limit = limit;
        shrink();
    }

    std::int64_t bytes() const { return m_bytes; }
    std::size_t count() const { return m_count; }

private:
    static constexpr std::uint32_t None = 0xffffffffU;

    struct Node {
        TextureKey key;
        Value value;
        std::int64_t bytes = 0;
        std::uint32_t newer = None; // the next free one where it is free
        std::uint32_t older = None;
    };

    // Where the key is, or the empty slot where it would go.
    std::size_t slotOf(const TextureKey& key) const {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t slot = static_cast<std::size_t>(key.hash()) & mask;
        while (m_slots[slot] != None && !(m_nodes[m_slots[slot]].key == key))
            slot = (slot + 1) & mask;
        return slot;
    }

    void shrink() {
        while (m_bytes > m_limit && m_oldest != None)
            remove(m_oldest);
    }

    void remove(std::uint32_t node) {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t hole = slotOf(m_nodes[node].key);
        m_slots[hole] = None;
        // What stood behind it may be reached through its slot only.
        for (std::size_t slot = (hole + 1) & mask; m_slots[slot] != None;
             slot = (slot + 1) & mask) {
            const std::uint32_t moved = std::exchange(m_slots[slot], None);
            m_slots[slotOf(m_nodes[moved].key)] = moved;
        }
        unlink(node);
        m_bytes -= m_nodes[node].bytes;
        --m_count;
        m_nodes[node].value = Value();
        m_nodes[node].newer = m_free;
        m_free = node;
    }

    void grow() {
        m_slots.assign(m_slots.empty() ? 64 : m_slots.size() * 2, None);
        for (std::uint32_t node = m_newest; node != None; node = m_nodes[node].older)
            m_slots[slotOf(m_nodes[node].key)] = node;
    }

    std::uint32_t takeNode() {
        if (m_free != None)
            return std::exchange(m_free, m_nodes[m_free].newer);
        m_nodes.emplace_back();
        return static_cast<std::uint32_t>(m_nodes.size() - 1);
    }

    void moveToFront(std::uint32_t node) {
        if (node == m_newest)
            return;
        unlink(node);
        link(node);
    }

    void link(std::uint32_t node) {
        m_nodes[node].newer = None;
        m_nodes[node].older = m_newest;
        (m_newest == None ? m_oldest : m_nodes[m_newest].newer) = node;
        m_newest = node;
    }

    void unlink(std::uint32_t node) {
        const std::uint32_t newer = m_nodes[node].newer;
        const std::uint32_t older = m_nodes[node].older;
        (newer == None ? m_newest : m_nodes[newer].older) = older;
        (older == None ? m_oldest : m_nodes[older].newer) = newer;
    }

    std::vector<Node> m_nodes;
    std::vector<std::uint32_t> m_slots; // indices of nodes; a power of two of them
    std::uint32_t m_newest = None;
    std::uint32_t m_oldest = None;
    std::uint32_t m_free = None;
    std::size_t m_count = 0;
    std::int64_t m_bytes = 0;
    std::int64_t m_limit;
};

} // namespace Kestrel::UI
