#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace Kestrel::Fuzz {

/** Ends the process, which is how a target reports a finding. */
inline void require(bool condition, const char* what) {
    if (condition)
        return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/** Cuts a text at its first `separator` and returns what stands before it. */
inline std::string take(std::string_view& text, char separator) {
    const std::size_t at = text.find(separator);
    const std::string front(text.substr(0, at));
    text.remove_prefix(at == std::string_view::npos ? text.size() : at + 1);
    return front;
}

} // namespace Kestrel::Fuzz
