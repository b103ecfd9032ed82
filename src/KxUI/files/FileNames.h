#pragma once

#include <KxUI/Export.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::UI {

/** What names of files mean: frames, versions, several names in one text. Pure functions of bytes
    that are UTF-8 by convention. Any thread. */
class KXUI_EXPORT FileNames {
public:
    FileNames() = delete;

    /** The names in a text. */
    struct List {
        std::vector<std::string> names; ///< None of them is empty.
        bool isOpen = false;            ///< A quote is not closed: the last name goes on.
    };

    /** Reads the text of a name field: one name, or several, each in double quotes, with blanks
        between them. Without a quote everything is one name, but for blanks at both ends. With
        quotes, a backslash takes a quote or a backslash behind it literally; any other stands for
        itself, and where backslashes separate folders all of them do. */
    static List split(std::string_view text);

    /** The text that split() reads as these names. */
    static std::string joined(const std::vector<std::string>& names);

    /** How the place of the frame is written in a name. */
    enum class Style {
        Hashes,  ///< `a.####.exr`
        AtSigns, ///< `a.@@@@.exr`
        Printf,  ///< `a.%04d.exr`
        Dollar   ///< `a.$F4.exr`
    };

    /** A name with a place for the frame. */
    struct Pattern {
        std::string before;      ///< What stands before the frame.
        std::string after;       ///< What stands behind it.
        std::int32_t digits = 1; ///< Digits at least, with zeros in front; 1 for no zeros.
    };

    /** The last place for a frame in a name, in any of the styles. A single `@` is none. */
    static std::optional<Pattern> patternOf(std::string_view name);

    /** The name in a style. */
    static std::string written(const Pattern& pattern, Style style);

    /** The name of the file of a frame, which may need more digits. */
    static std::string frameFile(const Pattern& pattern, std::int32_t frame);

    /** The number of a version in a name: `12` of `comp_v012.exr`. */
    struct Version {
        std::size_t at = 0;      ///< Where its digits begin.
        std::size_t digits = 0;  ///< How many there are.
        std::int32_t number = 0; ///< What they mean.
    };

    /** The last version of a name or a path: the letter v in either case and digits, with a point, an
        underscore, a dash or a slash before it and no letter behind. */
    static std::optional<Version> versionOf(std::string_view name);

    /** The name with another version in the place of the last one, written with as many digits or
        more; the name itself when it has none. */
    static std::string withVersion(std::string_view name, std::int32_t number);

    /** One more than the highest version among the name's own and those of `listed` that begin as it
        does, whatever comes behind the version; 0 for a name without one. */
    static std::int32_t nextFreeVersion(std::string_view name,
                                        const std::vector<std::string>& listed);

    /** Whether a name comes before another one in the order of listings: a9, a10, b1. */
    static bool naturalLess(std::string_view a, std::string_view b);
};

} // namespace Kestrel::UI
