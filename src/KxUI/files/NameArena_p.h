#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace Kestrel::UI {

/** Keeps many short names in few allocations. */
class NameArena {
public:
    /** Copies a name and puts a NUL after it. The view holds while the arena lives. */
    std::string_view add(std::string_view name) {
        const std::size_t needed = name.size() + 1;
        if (m_left < needed) {
            const std::size_t size = std::max(needed, blockSize);
            std::unique_ptr<char[]> block(new char[size]);
            m_blocks.push_back(std::move(block));
            m_next = m_blocks.back().get();
            m_left = size;
        }
        char* const copy = m_next;
        std::memcpy(copy, name.data(), name.size());
        copy[name.size()] = '\0';
        m_next += needed;
        m_left -= needed;
        return {copy, name.size()};
    }

private:
    static constexpr std::size_t blockSize = 64 * 1024;

    std::vector<std::unique_ptr<char[]>> m_blocks;
    char* m_next = nullptr;
    std::size_t m_left = 0;
};

} // namespace Kestrel::UI
