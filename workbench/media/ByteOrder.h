#pragma once

#include <QtEndian>

#include <cstdint>
#include <cstring>

namespace Kestrel::Workbench {

/** Whether this machine has the byte order that files of pixels mostly have. */
constexpr bool isLittleEndian() {
    return Q_BYTE_ORDER == Q_LITTLE_ENDIAN;
}

// From memory of any alignment and into it, lowest byte first.

inline std::uint32_t littleWord(const void* bytes) {
    return qFromLittleEndian<std::uint32_t>(bytes);
}

inline std::uint64_t littleLong(const void* bytes) {
    return qFromLittleEndian<std::uint64_t>(bytes);
}

inline void putLittleLong(void* bytes, std::uint64_t value) {
    qToLittleEndian(value, bytes);
}

} // namespace Kestrel::Workbench
