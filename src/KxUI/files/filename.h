#pragma once

/** \file
    File name helpers with C signatures, for C and C++ hosts.

    Strings are 8-bit, UTF-8 by convention; on POSIX systems they are bytes and pass through
    unchanged. Both slash and backslash separate components, `X:` is a drive, results use `/` only.
    Character classes and case are ASCII, whatever the locale. No function throws: where memory runs
    out it gives the answer of its failure. One thread at a time. */

#include <KxUI/Export.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#else
#include <stdbool.h>
#endif

struct dirent;

/** Makes a path absolute. Steps `./` and `../` that it begins with are resolved.

    @param to     receives the result, always NUL-terminated when `tolen` is at least 1; null to
                  learn the length only
    @param tolen  size of `to` in bytes; what does not fit is cut off
    @param from   the path. A leading `~/` stands for the variable HOME and `~name` for a sibling of
                  it, unless `cwd` is given. Null counts as empty
    @param cwd    base of a relative path; null for the current directory of the process
    @return the length of the whole result, which exceeds `tolen - 1` when it was cut off (a base
            that had to be cut counts with its cut length); 0 with an empty `to` when the current
            directory is wanted and cannot be told, as after its removal

    `to` may overlap `from` or `cwd`. */
KXUI_EXPORT uint64_t filename_absolute(char* to, int tolen, const char* from, const char* cwd);

/** The last component of a path: a pointer into `path`, to its end when the path ends with a
    separator; null for null. */
KXUI_EXPORT const char* filename_name(const char* path);

/** Whether all of `name` matches `pattern`, byte for byte and with regard to case.

    `?` is any byte, `*` any run of bytes, `[a-z]` one of a set and `[!a-z]` or `[^a-z]` one outside
    it, `{one,two}` or `{one|two}` one of several texts (they nest), `\` takes the next character
    literally. An unclosed set matches nothing; a null name or pattern is no match. Takes time in
    proportion to the product of both lengths at worst. */
KXUI_EXPORT bool filename_match(const char* name, const char* pattern);

/** Whether the path exists and is a directory; null is none. The answer for the path asked last is
    kept, a failure included, until another path is asked for. */
KXUI_EXPORT bool filename_isdir(const char* path);

/** Lists a directory in natural order (a9 before a10). The entries `.` and `..` are listed, too.

    @param dir        the directory; empty means the current one, null none
    @param list       receives an array of NUL-terminated names with a null pointer after the last;
                      a `dirent` here is nothing more than the characters of the name. The caller
                      frees each name, then the array, with `free`. Null when there is nothing.
                      Nothing is listed when `list` itself is null
    @param sequences  non-zero to fold the files of an image sequence into one entry
                      `img%04d.exr 1-100` (`,step` when not 1, `(n missing)` when incomplete),
                      marked by a byte of value 1 before its NUL. A directory that heads a run of
                      names of one pattern gets a trailing `/` and keeps the run from being folded
    @return the number of entries; 0 when the directory cannot be read */
KXUI_EXPORT int filename_list(const char* dir, struct dirent*** list, char sequences);

#ifdef __cplusplus
}
#endif
