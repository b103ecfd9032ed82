#pragma once

#include <KxUI/files/platform/Platform_p.h>

#include <cstdint>
#include <string>

/** Directories read in a way that can be given up, for threads that may never come back from the
    system. */
namespace Kestrel::UI::Platform {

/** What an error number of the system means to who asked for a directory or a file. */
enum class Failure : std::uint8_t {
    None,
    NotFound,
    NotADirectory,
    Denied,
    Unreachable, ///< the server does not answer, or is not connected
    Stale,       ///< the server has forgotten it; asking again may help
    LinkLoop,
    TooManyOpenFiles,
    OutOfMemory,
    NameTooLong,
    Exists,
    DiskFull,
    ReadOnly,
    OtherDisk, ///< a file cannot be moved there by renaming
    Other
};
Failure failureOf(int error);

/** An error number that stands for the failure; 0 for None. */
int errorOf(Failure failure);

/** What a file system tells of one name. The status is that of a link's target, unless that is not
    there: then it is the link's own. */
struct EntryStatus : Status {
    std::uint64_t device = 0;     ///< the same for all that lies on one file system
    std::int64_t nanoseconds = 0; ///< of the modification time, beyond its seconds
    bool isLink = false;
    bool isBrokenLink = false;

    /** The modification time in nanoseconds since 1970: another one after each change of a directory,
        where the file system keeps such times. */
    std::int64_t stamp() const { return modified * 1000000000 + nanoseconds; }
};

/** Looks at a listing that is being read. */
class ReadProgress {
public:
    ReadProgress() = default;
    virtual ~ReadProgress() = default;
    ReadProgress(const ReadProgress&) = delete;
    ReadProgress& operator=(const ReadProgress&) = delete;

    /** Called after each block of names; false ends the reading. */
    virtual bool block(const Listing& soFar) = 0;
};

/** An open directory. Every function may take as long as the file system likes, the destructor
    included: for worker threads. */
class DirectoryHandle {
public:
    DirectoryHandle() = default;
    ~DirectoryHandle();
    DirectoryHandle(const DirectoryHandle&) = delete;
    DirectoryHandle& operator=(const DirectoryHandle&) = delete;

    /** Opens a directory in place of the one that is open; follows links. 0 or the error number. */
    int open(const std::string& path);
    bool isOpen() const { return m_handle >= 0; }
    void close();

    /** The status of the directory itself. 0 or the error number. */
    int status(EntryStatus& status) const;

private:
    friend int readDirectory(DirectoryHandle&, Listing&, ReadProgress&);
    friend int queryStatusAt(const DirectoryHandle&, const char*, bool, EntryStatus&);

    std::intptr_t m_handle = -1;
    std::string m_path; ///< where a directory has no descriptor
};

/** Adds the entries of a directory to a listing, `.` and `..` included, in the system's order. What
    was read stays listed when the reading ends early, by an error or by the wish of `progress`.
    Returns 0 or the error number. Once for each opening. */
int readDirectory(DirectoryHandle& directory, Listing& listing, ReadProgress& progress);

/** Asks for the status of a name in a directory. With `cached`, a network file system may answer
    from what it knows. 0 or the error number. */
int queryStatusAt(const DirectoryHandle& directory, const char* name, bool cached,
                  EntryStatus& status);

/** Asks for the status of a path, past what a network file system remembers; a directory that is
    mounted when somebody asks for it is. 0 or the error number. */
int queryPath(const std::string& path, EntryStatus& status);

/** Whether a backslash separates folders, so that no name can have one. */
bool backslashSeparates();

/** An absolute path without `.` and `..`, which are taken away by the text, and without separators
    that say nothing. */
std::string cleanPath(std::string_view path);

} // namespace Kestrel::UI::Platform
