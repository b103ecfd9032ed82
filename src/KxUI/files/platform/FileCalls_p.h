#pragma once

#include <KxUI/files/platform/Directory_p.h>

#include <string>

/** Single files and directories, asked about and changed by their paths. Every call may take as long
    as the file system likes: for worker threads. */
namespace Kestrel::UI::Platform {

/** What this process may do with a path. */
struct Access {
    bool read = false;
    bool write = false;
};

/** What the system says this process may do; a server may still refuse it. */
Access queryAccess(const std::string& path);

/** Makes one directory. 0 or the error number. */
int makeDirectory(const std::string& path);

/** Gives a file or a directory another path and never replaces what is there. 0 or the error
    number. */
int renameToNew(const std::string& from, const std::string& to);

} // namespace Kestrel::UI::Platform
