#pragma once

#include <KxUI/files/FileNames.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** \file
    What the controls beside a name field do to the name in it: suffix, place of the frame, version.
    Pure functions of bytes. A name may have folders before it; they stay as they are, but for
    versions. Suffixes are in small letters, without the point before them. */
namespace Kestrel::UI::NameEdits {

/** Where the last part of a path begins. */
std::size_t nameBegin(std::string_view path);

/** In ASCII's small letters. */
std::string lowered(std::string_view text);

/** The suffixes that patterns ask for: `exr` and `tar.gz` of "*.exr" and "*.tar.gz". */
std::vector<std::string> suffixesOf(const std::vector<std::string>& patterns);

/** Where the longest known suffix of a name begins, at its point; the length of the name for none. */
std::size_t knownSuffixAt(std::string_view name, const std::vector<std::string>& known);

/** Where anything begins that looks like a suffix, at its point. */
std::size_t suffixAt(std::string_view name, const std::vector<std::string>& known);

/** The name with a suffix where it has no known one and does not end in a point. */
std::string completed(std::string_view name, std::string_view suffix,
                      const std::vector<std::string>& known);

/** The name with another suffix in place of a known one, else completed(). */
std::string withSuffix(std::string_view name, std::string_view suffix,
                       const std::vector<std::string>& known);

/** The place of the frame in the last part of a name, with the folders before it. */
std::optional<FileNames::Pattern> patternOf(std::string_view name);

/** The name of a sequence: with a place for the frame before the suffix, where it has none. The
    number of a single frame, as in `a.1001.exr`, becomes the place. */
std::string asSequence(std::string_view name, FileNames::Style style, std::int32_t digits,
                       const std::vector<std::string>& known);

/** The name without the place of the frame and the sign before it. */
std::string asSingle(std::string_view name);

/** The name with another number of digits in the place of the frame, if it has one. */
std::string withDigits(std::string_view name, FileNames::Style style, std::int32_t digits);

/** How much of a name, from nameBegin() on, is neither frame nor suffix: what a user types anew. */
std::size_t stemLength(std::string_view name, const std::vector<std::string>& known);

/** The version in a name, or else in the folders before it. */
std::optional<std::int32_t> versionOf(std::string_view name);

/** The name with another version; folders before it that have the same one follow. */
std::string withVersion(std::string_view name, std::int32_t number);

/** The name with the version after the highest among its own and those of `listed`, in any case. */
std::string withNextFreeVersion(std::string_view name, const std::vector<std::string>& listed);

} // namespace Kestrel::UI::NameEdits
