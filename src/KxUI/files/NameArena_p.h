#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace Kestrel::UI {

/** Keeps many short names in few allocations. */
class NameArena {
public:
    /** Copies a name and puts a NUL after it. The view holds while the arena lives. */
    std::string_view add(std::string_view name) {
        const std::size_t needed = name.size() + 1;
        if (m_left < needed) {
            m_left = std::max(needed, blockSize);
            m_blocks.emplace_back(new char[m_left]);
            m_next = m_blocks.back().get();
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
