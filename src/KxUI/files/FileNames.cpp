#include <KxUI/files/FileNames.h>

#include <KxUI/files/NaturalOrder_p.h>
#include <KxUI/files/SequenceFold_p.h>
#include <KxUI/files/platform/Directory_p.h>

#include <algorithm>
#include <limits>

namespace Kestrel::UI {
namespace {

constexpr auto nowhere = std::string_view::npos;

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/** Where a frame stands in a name. */
struct Place {
    std::size_t at = nowhere;
    std::size_t length = 0;
    std::int32_t digits = 1;
};

// The last row of a sign, of a least length.
Place signs(std::string_view name, char sign, std::size_t least) {
    for (std::size_t last = name.rfind(sign); last != nowhere;) {
        const std::size_t before = name.find_last_not_of(sign, last);
        const std::size_t at = before == nowhere ? 0 : before + 1;
        if (last + 1 - at >= least)
            return {at, last + 1 - at, static_cast<std::int32_t>(last + 1 - at)};
        last = at == 0 ? nowhere : name.rfind(sign, at - 1);
    }
    return {};
}

// The last `%d`, `%4d` or `%04d`; or `$F` and `$F4`. No name has room for a number of hundreds of
// digits.
Place numbered(std::string_view name, std::string_view opening, std::string_view closing) {
    constexpr std::size_t mostDigits = 2;
    for (std::size_t at = name.rfind(opening); at != nowhere;
         at = at == 0 ? nowhere : name.rfind(opening, at - 1)) {
        std::size_t end = at + opening.size();
        const std::size_t begin = end;
        while (end < name.size() && isDigit(name[end]))
            ++end;
        const std::int32_t digits = frameNumber(name.substr(begin, end - begin));
        const std::size_t zero = end > begin && name[begin] == '0' ? 1 : 0;
        if (name.substr(end, closing.size()) == closing && end - begin <= mostDigits + zero)
            return {at, end + closing.size() - at, std::max(digits, 1)};
    }
    return {};
}

std::string quoted(const std::string& name) {
    std::string text = "\"";
    for (const char c : name) {
        if (c == '"' || (c == '\\' && !Platform::backslashSeparates()))
            text += '\\';
        text += c;
    }
    return text += '"';
}

} // namespace

FileNames::List FileNames::split(std::string_view text) {
    List list;
    if (text.find('"') == nowhere) {
        if (const std::string_view name = trimmed(text); !name.empty())
            list.names.emplace_back(name);
        return list;
    }
    std::string name;
    const auto end = [&] {
        if (!name.empty())
            list.names.push_back(std::move(name));
        name.clear();
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        if (text[i] == '\\' && !Platform::backslashSeparates() && (next == '"' || next == '\\'))
            name += text[++i];
        else if (text[i] == '"')
            list.isOpen = !list.isOpen;
        else if (isBlank(text[i]) && !list.isOpen)
            end();
        else
            name += text[i];
    }
    end();
    return list;
}

std::string FileNames::joined(const std::vector<std::string>& names) {
    if (names.size() == 1 && names.front().find('"') == std::string::npos &&
        trimmed(names.front()).size() == names.front().size())
        return names.front();
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : " ") + quoted(name);
    return text;
}

std::optional<FileNames::Pattern> FileNames::patternOf(std::string_view name) {
    for (const Place& place : {numbered(name, "%", "d"), numbered(name, "$F", ""),
                               signs(name, '#', 1), signs(name, '@', 2)}) {
        if (place.at != nowhere)
            return Pattern{std::string(name.substr(0, place.at)),
                           std::string(name.substr(place.at + place.length)), place.digits};
    }
    return std::nullopt;
}

std::string FileNames::written(const Pattern& pattern, Style style) {
    const bool isPadded = pattern.digits > 1;
    const std::string digits = isPadded ? std::to_string(pattern.digits) : std::string();
    const auto count = static_cast<std::size_t>(std::max(pattern.digits, 1));
    switch (style) {
    case Style::Hashes:
        return pattern.before + std::string(count, '#') + pattern.after;
    case Style::AtSigns: // one alone would be no place for a frame
        return pattern.before + std::string(std::max<std::size_t>(count, 2), '@') + pattern.after;
    case Style::Printf:
        return pattern.before + (isPadded ? "%0" : "%") + digits + 'd' + pattern.after;
    case Style::Dollar:
        return pattern.before + "$F" + digits + pattern.after;
    }
    return {};
}

std::string FileNames::frameFile(const Pattern& pattern, std::int32_t frame) {
    return pattern.before + paddedNumber(frame, pattern.digits) + pattern.after;
}

std::optional<FileNames::Version> FileNames::versionOf(std::string_view name) {
    constexpr std::string_view separators = "._-/";
    for (std::size_t v = name.find_last_of("vV"); v != nowhere && v > 0;
         v = name.find_last_of("vV", v - 1)) {
        std::size_t end = v + 1;
        while (end < name.size() && isDigit(name[end]))
            ++end;
        if (end == v + 1 || separators.find(name[v - 1]) == nowhere ||
            (end < name.size() && isLetter(name[end])))
            continue;
        return Version{v + 1, end - v - 1, frameNumber(name.substr(v + 1, end - v - 1))};
    }
    return std::nullopt;
}

std::string FileNames::withVersion(std::string_view name, std::int32_t number) {
    std::string text(name);
    if (const auto version = versionOf(name))
        text.replace(version->at, version->digits,
                     paddedNumber(number, static_cast<std::int32_t>(version->digits)));
    return text;
}

std::int32_t FileNames::nextFreeVersion(std::string_view name,
                                        const std::vector<std::string>& listed) {
    const auto own = versionOf(name);
    if (!own)
        return 0;
    std::int32_t highest = own->number;
    for (const std::string& each : listed) {
        if (each.compare(0, own->at, name, 0, own->at) != 0)
            continue;
        std::size_t end = own->at;
        while (end < each.size() && isDigit(each[end]))
            ++end;
        highest =
            std::max(highest, frameNumber(std::string_view(each).substr(own->at, end - own->at)));
    }
    return highest == std::numeric_limits<std::int32_t>::max() ? highest : highest + 1;
}

bool FileNames::naturalLess(std::string_view a, std::string_view b) {
    std::vector<Platform::Entry> both{{b, Platform::EntryType::Other},
                                      {a, Platform::EntryType::Other}};
    sortNaturally(both, NaturalOrder::Plain);
    return a != b && both.front().name == a.data();
}

} // namespace Kestrel::UI
