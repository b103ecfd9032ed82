#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace Kestrel::UI {

/** The container of the events of a track (EventTrack::EventList). Hosts get it from a snapshot and
    read it like a constant std::deque: size(), operator[], front(), back(), a range-based for.

    \code
    for (const EventTrack::Event& event : track.snapshot().events)
        total += event.time;
    \endcode

    Copies are cheap, since they share their values until one of them changes: a copy of a million
    values takes some microseconds, and a later change of the original does not show in it. Each
    thread may use copies of its own at any time.

    Values are added at the end and taken from the front, in blocks. The functions that do so are
    for recorders: they do not destroy what a change leaves over but append it to `unneeded`, a
    container of Block, to be destroyed when no lock is held any more. */
template <class T>
class SharedDeque {
public:
    /** Some of the values, for as long as it lives. */
    class Block;

    /// \cond what every container of the standard has
    /** Walks over the values; a change of the deque ends its use. */
    class const_iterator {
    public:
        using iterator_category = std::random_access_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = const T*;
        using reference = const T&;

        const_iterator() noexcept = default;
        const_iterator(const SharedDeque* deque, difference_type i) noexcept
            : m_deque(deque)
            , m_i(i) {}

        reference operator*() const noexcept { return (*m_deque)[std::size_t(m_i)]; }
        pointer operator->() const noexcept { return &**this; }
        reference operator[](difference_type n) const noexcept { return *(*this + n); }
        const_iterator& operator+=(difference_type n) noexcept {
            m_i += n;
            return *this;
        }
        const_iterator& operator-=(difference_type n) noexcept { return *this += -n; }
        const_iterator& operator++() noexcept { return *this += 1; }
        const_iterator& operator--() noexcept { return *this += -1; }
        const_iterator operator++(int) noexcept { return {m_deque, m_i++}; }
        const_iterator operator--(int) noexcept { return {m_deque, m_i--}; }
        const_iterator operator+(difference_type n) const noexcept { return {m_deque, m_i + n}; }
        const_iterator operator-(difference_type n) const noexcept { return {m_deque, m_i - n}; }
        difference_type operator-(const_iterator other) const noexcept { return m_i - other.m_i; }
        bool operator==(const_iterator other) const noexcept { return m_i == other.m_i; }
        bool operator!=(const_iterator other) const noexcept { return m_i != other.m_i; }
        bool operator<(const_iterator other) const noexcept { return m_i < other.m_i; }

    private:
        const SharedDeque* m_deque = nullptr;
        difference_type m_i = 0;
    };

    using value_type = T;
    using iterator = const_iterator;

    std::size_t size() const noexcept { return m_end - m_begin; }
    bool empty() const noexcept { return m_begin == m_end; }
    /// \endcond

    /** The value of a number below size(). */
    const T& operator[](std::size_t i) const noexcept {
        return m_blocks[(m_begin + i) / blockSize].values()[(m_begin + i) % blockSize];
    }
    /** The oldest value; there must be one. */
    const T& front() const noexcept { return (*this)[0]; }
    /** The newest value; there must be one. */
    const T& back() const noexcept { return (*this)[size() - 1]; }

    /// \cond
    const_iterator begin() const noexcept { return {this, 0}; }
    const_iterator end() const noexcept { return {this, std::ptrdiff_t(size())}; }
    /// \endcond

    /** Adds a value at the end. A block that another deque shares is replaced by a copy. */
    template <class Blocks>
    void push_back(T&& value, Blocks& unneeded) {
        const std::size_t used = m_end % blockSize;
        if (m_end == m_blocks.size() * blockSize)
            m_blocks.push_back(Block(m_blocks.empty() ? smallestBlock : blockSize));
        else if (Block& last = m_blocks.back(); used == last.capacity() || !last.isUnique())
            replaceLast(used, unneeded);
        m_blocks.back().append(std::move(value));
        ++m_end;
    }

    /** Removes and returns the oldest value; there must be one. */
    template <class Blocks>
    T takeFront(Blocks& unneeded) {
        Block& first = m_blocks[m_begin / blockSize];
        T& value = first.values()[m_begin % blockSize];
        // Other deques may still show a value of a shared block.
        T result = first.isUnique() ? std::move(value) : value;
        ++m_begin;
        if (empty())
            takeAll(unneeded);
        else if (m_begin % blockSize == 0)
            dropFirst(unneeded);
        return result;
    }

    /** Removes all values. */
    template <class Blocks>
    void takeAll(Blocks& unneeded) {
        for (Block& block : m_blocks)
            unneeded.push_back(std::move(block));
        m_blocks.clear();
        m_begin = m_end = 0;
    }

private:
    static constexpr std::size_t blockSize = 512;
    static constexpr std::size_t smallestBlock = 8;

    // The last block's place goes to one that is ours alone and has room for more.
    template <class Blocks>
    void replaceLast(std::size_t used, Blocks& unneeded) {
        Block& last = m_blocks.back();
        Block block(std::min(blockSize, std::max(smallestBlock, 2 * used)));
        // Values that were taken are nobody's business any more, only their places count.
        const std::size_t taken = m_blocks.size() == 1 ? m_begin : 0;
        const bool unique = last.isUnique();
        for (std::size_t i = 0; i < used; ++i) {
            T& value = last.values()[i];
            block.append(i < taken ? T() : unique ? std::move(value) : T(value));
        }
        std::swap(last, block);
        unneeded.push_back(std::move(block));
    }

    // The places of blocks that are gone are kept until they are as many as the others: moving
    // those up each time would cost the square of their number.
    template <class Blocks>
    void dropFirst(Blocks& unneeded) {
        const std::size_t gone = m_begin / blockSize;
        unneeded.push_back(std::move(m_blocks[gone - 1]));
        if (gone * 2 < m_blocks.size())
            return;
        m_blocks.erase(m_blocks.begin(), m_blocks.begin() + std::ptrdiff_t(gone));
        m_begin -= gone * blockSize;
        m_end -= gone * blockSize;
    }

    std::vector<Block> m_blocks;
    std::size_t m_begin = 0; // counted from the first value of the first block
    std::size_t m_end = 0;
};

/// \cond
/** Room for values, which counts the deques it belongs to. */
template <class T>
class SharedDeque<T>::Block {
public:
    explicit Block(std::size_t capacity)
        : m_head(new (::operator new(sizeof(Head) + capacity * sizeof(T))) Head) {
        static_assert(alignof(T) <= alignof(Head), "the values stand behind the head");
        m_head->capacity = capacity;
    }
    Block(const Block& other) noexcept
        : m_head(other.m_head) {
        if (m_head)
            m_head->owners.fetch_add(1, std::memory_order_relaxed);
    }
    Block(Block&& other) noexcept
        : m_head(std::exchange(other.m_head, nullptr)) {}
    Block& operator=(Block other) noexcept {
        std::swap(m_head, other.m_head);
        return *this;
    }
    ~Block() {
        if (!m_head || m_head->owners.fetch_sub(1, std::memory_order_acq_rel) != 1)
            return;
        std::destroy_n(values(), m_head->used);
        m_head->~Head();
        ::operator delete(m_head);
    }

    /** Whether no other deque shares it; then none will but by a copy of this one. */
    bool isUnique() const noexcept { return m_head->owners.load(std::memory_order_acquire) == 1; }
    std::size_t capacity() const noexcept { return m_head->capacity; }
    T* values() const noexcept { return reinterpret_cast<T*>(m_head + 1); }

    /** Into a unique block that has room. */
    void append(T&& value) { new (values() + m_head->used++) T(std::move(value)); }

private:
    struct Head {
        std::atomic<std::size_t> owners{1};
        std::size_t used = 0;
        std::size_t capacity = 0;
    };

    Head* m_head;
};
/// \endcond

} // namespace Kestrel::UI
