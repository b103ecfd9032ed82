#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace Kestrel::UI::Platform {

/** Calls `changed` whenever something happens in a directory: names that come and go, files that
    were written, the end of the directory itself. It is called on a thread of its own and must
    return soon. May take as long as the file system likes: for worker threads. Returns 0 and the
    number to give to unwatchDirectory(), or the error number. */
int watchDirectory(const std::string& path, std::function<void()> changed, std::int64_t& watch);

/** Ends a watch. A call that is on its way may still come. Any thread. */
void unwatchDirectory(std::int64_t watch);

} // namespace Kestrel::UI::Platform
