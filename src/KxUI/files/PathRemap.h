#pragma once

#include <KxUI/Export.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::UI {

/** How the paths of a machine are written. */
enum class PathStyle : std::uint8_t {
    Posix,  ///< `/` separates, case counts
    Windows ///< `/` and a backslash separate, the case of ASCII letters does not count
};

/** Where the files of one place of another machine are found on this one. */
struct PathRule {
    bool isEnabled = true;                  ///< Whether it is used.
    PathStyle fromStyle = PathStyle::Posix; ///< How `from` is written.
    std::string from;                       ///< A folder there: absolute.
    std::string to;                         ///< The same folder here.
    std::string note;                       ///< For people.
};

/** How paths of other machines become ours: by rules, whole components at a time (`/mnt/show` does
    not touch `/mnt/show2`). One rule is used, the first in their order that matches, and once: what
    it makes is not looked at again. Neither `.` nor `..` are taken out, and addresses (`https://`)
    stay as they are. Paths are bytes. Immutable: any thread. */
class KXUI_EXPORT PathRemap {
public:
    /** What map() has made of a path. */
    struct Result {
        std::string path; ///< The path here; the one given when no rule matches.
        int rule = -1;    ///< The index of the rule that was used; -1 for none.
    };

    /** Why a rule cannot be used. */
    enum class Problem {
        None,           ///< it can
        NoSource,       ///< PathRule::from is empty
        RelativeSource, ///< it is not absolute
        UpwardSource,   ///< it has `..` in it
        NoDestination   ///< PathRule::to is empty
    };

    /** Without rules: nothing changes. */
    PathRemap();
    /** Rules that have a problem are left out; the indices are those of `rules`. */
    explicit PathRemap(const std::vector<PathRule>& rules);
    PathRemap(const PathRemap& other) noexcept;
    PathRemap& operator=(const PathRemap& other) noexcept;
    ~PathRemap();

    /** A path as this machine has it. The rest behind the matched folder is written with the
        separator of the destination; a separator at the end stays. */
    Result map(std::string_view path) const;

    /** The rule because of which another one can never be used, for it comes first and matches all
        that the other one would; -1 for none. */
    int shadowedBy(int rule) const;

    /** Why a rule cannot be used. */
    static Problem problemOf(const PathRule& rule);

private:
    struct Private;

    std::shared_ptr<const Private> d;
};

} // namespace Kestrel::UI
