#pragma once

#include <cstdint>

namespace Kestrel::UI {

/** Size in bytes of the file at a path, 0 when there is none. Shares the one-entry status cache of
    filename_isdir(), so asking for the kind, size and time of one path costs one status call. */
std::uint64_t filename_size(const char* path);

/** Modification time of the file at a path in seconds since 1970, or its access or change time
    where the earlier ones are 0; 0 when there is no such file. Shares the cache of
    filename_isdir(). */
std::int64_t filename_time(const char* path);

} // namespace Kestrel::UI
