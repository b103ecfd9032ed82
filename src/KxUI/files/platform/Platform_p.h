#pragma once

#include <KxUI/files/NameArena_p.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/** What the file listing needs from the system. One backend is compiled: POSIX or Windows. */
namespace Kestrel::UI::Platform {

/** What a directory tells about an entry without a status call. */
enum class EntryType : std::uint8_t {
    Other,     ///< certainly not a directory
    Directory, ///< certainly a directory
    Unknown    ///< a link, or a file system that does not say: only the status knows
};

/** One name of a directory. */
struct Entry {
    const char* name = nullptr; ///< NUL-terminated, in the system's encoding
    std::uint32_t length = 0;   ///< bytes without the NUL
    EntryType type = EntryType::Unknown;

    Entry() = default;
    Entry(std::string_view text, EntryType entryType)
        : name(text.data())
        , length(static_cast<std::uint32_t>(text.size()))
        , type(entryType) {}

    std::string_view view() const { return {name, length}; }
};

/** What some systems tell of a file with its name. */
struct ListedStatus {
    std::uint64_t size = 0;    ///< bytes
    std::int64_t modified = 0; ///< seconds since 1970
};

/** The entries of a directory and the memory of their names. */
struct Listing {
    std::vector<Entry> entries;
    std::vector<ListedStatus> statuses; ///< of the entries; empty where names come without
    NameArena names;
};

/** The status of a file; times in seconds since 1970. */
struct Status {
    std::uint32_t mode = 0; ///< type and permission bits
    std::uint64_t size = 0; ///< bytes
    std::int64_t accessed = 0;
    std::int64_t modified = 0;
    std::int64_t changed = 0;

    bool isDirectory() const { return (mode & 0xF000U) == 0x4000U; }

    /** The modification time, or else the access or change time, whichever is not 0. */
    std::int64_t time() const {
        return modified != 0 ? modified : accessed != 0 ? accessed : changed;
    }
};

/** Reads all entries of a directory, `.` and `..` included, in the system's order; an empty path is
    the current directory. Returns 0, or the system's error number with nothing listed. */
int readDirectory(const std::string& path, Listing& listing);

/** Asks for the status of a path, following links. False when there is no such file. */
bool queryStatus(const std::string& path, Status& status);

/** The path of an entry; of a name alone when the directory is the empty path. */
std::string joinedPath(const std::string& directory, std::string_view name);

/** Whether an entry of a directory is itself one. Costs a status call for unknown types only. */
bool isDirectory(const std::string& path, const Entry& entry);

/** Whether this process may write to the file. */
bool isWritable(const std::string& path);

/** Whether the path stands for itself, wherever the process is. */
bool isAbsolute(std::string_view path);

/** The path as one that stands for itself. */
std::string absolutePath(const std::string& path);

/** The current directory of the process; empty when it has none. */
std::string currentDirectory();

/** What the variable HOME says; empty when it says nothing. */
std::string homeDirectory();

/** Tells the processor that an address is about to be read, where the compiler offers that. */
inline void prefetch([[maybe_unused]] const void* address) {
#if defined(__GNUC__)
    __builtin_prefetch(address);
#endif
}

/** A name in the system's encoding as UTF-8, and back. On POSIX systems names are bytes and pass
    through as they are. */
std::string toUtf8(std::string_view name);
std::string fromUtf8(std::string_view name);

} // namespace Kestrel::UI::Platform
