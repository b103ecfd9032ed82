#include <KxUI/browse/NameEdits_p.h>

#include <KxUI/files/platform/Directory_p.h>

#include <algorithm>

namespace Kestrel::UI::NameEdits {
namespace {

constexpr auto nowhere = std::string_view::npos;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isAlphanumeric(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool endsIn(std::string_view name, std::string_view suffix) {
    return name.size() > suffix.size() + 1 && name[name.size() - suffix.size() - 1] == '.' &&
           NameEdits::lowered(name.substr(name.size() - suffix.size())) == suffix;
}

// Versions need a sign before them, which the beginning of a name is as good as.
std::string rooted(std::string_view name) {
    return "/" + std::string(name);
}

// ".1001" at the end of a stem, which is the number of a frame and no version.
std::size_t frameAt(std::string_view stem) {
    constexpr std::size_t leastDigits = 3;
    constexpr std::size_t mostDigits = 99; // as many as a place for a frame can ask for
    std::size_t at = stem.size();
    while (at > 0 && isDigit(stem[at - 1]))
        --at;
    const std::size_t digits = stem.size() - at;
    const bool isFrame = digits >= leastDigits && digits <= mostDigits;
    return isFrame && at > 0 && stem[at - 1] == '.' ? at : nowhere;
}

} // namespace

std::size_t nameBegin(std::string_view path) {
    const std::size_t last = path.find_last_of(Platform::backslashSeparates() ? "/\\" : "/");
    return last == nowhere ? 0 : last + 1;
}

std::string lowered(std::string_view text) {
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(), [](char c) { return lowered(c); });
    return small;
}

std::vector<std::string> suffixesOf(const std::vector<std::string>& patterns) {
    std::vector<std::string> suffixes;
    for (const std::string& pattern : patterns) {
        if (pattern.compare(0, 2, "*.") != 0 || pattern.size() == 2 ||
            pattern.find_first_of("*?[]{}|\\", 2) != std::string::npos)
            continue;
        suffixes.push_back(lowered(std::string_view(pattern).substr(2)));
    }
    return suffixes;
}

std::size_t knownSuffixAt(std::string_view name, const std::vector<std::string>& known) {
    const std::string_view last = name.substr(nameBegin(name));
    std::size_t longest = 0;
    for (const std::string& suffix : known) {
        if (suffix.size() >= longest && !suffix.empty() && endsIn(last, suffix))
            longest = suffix.size() + 1;
    }
    return name.size() - longest;
}

std::size_t suffixAt(std::string_view name, const std::vector<std::string>& known) {
    constexpr std::size_t longest = 8;
    if (const std::size_t at = knownSuffixAt(name, known); at < name.size())
        return at;
    const std::size_t point = name.rfind('.');
    if (point == nowhere || point <= nameBegin(name) || point + 1 == name.size() ||
        name.size() - point - 1 > longest)
        return name.size();
    const std::string_view part = name.substr(point + 1);
    const bool isNumber = std::all_of(part.begin(), part.end(), isDigit);
    const bool isWord = std::all_of(part.begin(), part.end(), isAlphanumeric);
    const auto version = FileNames::versionOf(rooted(name));
    const bool isVersion = version && version->at > point + 1;
    return isWord && !isNumber && !isVersion ? point : name.size();
}

std::string completed(std::string_view name, std::string_view suffix,
                      const std::vector<std::string>& known) {
    std::string text(name);
    if (suffix.empty() || nameBegin(name) == name.size() || name.back() == '.' ||
        knownSuffixAt(name, known) < name.size())
        return text;
    return text.append(".").append(suffix);
}

std::string withSuffix(std::string_view name, std::string_view suffix,
                       const std::vector<std::string>& known) {
    const std::size_t at = knownSuffixAt(name, known);
    if (at == name.size() || suffix.empty())
        return completed(name, suffix, known);
    return std::string(name.substr(0, at)).append(".").append(suffix);
}

std::optional<FileNames::Pattern> patternOf(std::string_view name) {
    const std::size_t begin = nameBegin(name);
    auto pattern = FileNames::patternOf(name.substr(begin));
    if (pattern)
        pattern->before.insert(0, name.substr(0, begin));
    return pattern;
}

std::string asSequence(std::string_view name, FileNames::Style style, std::int32_t digits,
                       const std::vector<std::string>& known) {
    if (patternOf(name) || nameBegin(name) == name.size())
        return std::string(name);
    const std::size_t at = suffixAt(name, known);
    const std::string_view stem = name.substr(0, at);
    FileNames::Pattern pattern{std::string(stem), std::string(name.substr(at)), digits};
    if (const std::size_t frame = frameAt(stem); frame != nowhere) {
        pattern.before = stem.substr(0, frame);
        pattern.digits = static_cast<std::int32_t>(stem.size() - frame);
    } else {
        pattern.before += '.';
    }
    return FileNames::written(pattern, style);
}

std::string asSingle(std::string_view name) {
    auto pattern = patternOf(name);
    if (!pattern)
        return std::string(name);
    std::string& before = pattern->before;
    const bool hasSign = before.size() > nameBegin(before) + 1 &&
                         std::string_view("._-").find(before.back()) != nowhere;
    if (hasSign)
        before.pop_back();
    return before + pattern->after;
}

std::string withDigits(std::string_view name, FileNames::Style style, std::int32_t digits) {
    auto pattern = patternOf(name);
    if (!pattern)
        return std::string(name);
    pattern->digits = digits;
    return FileNames::written(*pattern, style);
}

std::size_t stemLength(std::string_view name, const std::vector<std::string>& known) {
    const std::size_t begin = nameBegin(name);
    std::size_t end = suffixAt(name, known);
    if (const auto pattern = patternOf(name)) {
        end = std::min(end, pattern->before.size());
        if (end > begin + 1 && std::string_view("._-").find(name[end - 1]) != nowhere)
            --end;
    }
    return end - begin;
}

std::optional<std::int32_t> versionOf(std::string_view name) {
    const auto version = FileNames::versionOf(rooted(name));
    return version ? std::optional<std::int32_t>(version->number) : std::nullopt;
}

std::string withVersion(std::string_view name, std::int32_t number) {
    const std::string before = rooted(name);
    const auto version = FileNames::versionOf(before);
    if (!version)
        return std::string(name);
    std::string after = FileNames::withVersion(before, number);
    // Folders from the last to the first: what lies before them has not moved.
    for (std::size_t end = nameBegin(before); end > 1; end = nameBegin(before.substr(0, end - 1))) {
        const std::string folders = before.substr(0, end - 1);
        const auto folder = FileNames::versionOf(folders);
        if (folder && folder->at > nameBegin(folders) && folder->number == version->number &&
            folder->at != version->at)
            after.replace(0, folders.size(), FileNames::withVersion(folders, number));
    }
    return after.substr(1);
}

std::string withNextFreeVersion(std::string_view name, const std::vector<std::string>& listed) {
    if (!versionOf(name))
        return std::string(name);
    std::vector<std::string> names;
    names.reserve(listed.size());
    for (const std::string& each : listed)
        names.push_back(lowered(rooted(each)));
    const std::string own = lowered(rooted(name));
    std::int32_t next = FileNames::nextFreeVersion(own, names);
    // The first folder of the path is what the listing knows.
    if (const std::size_t end = own.find('/', 1); end != std::string::npos)
        next = std::max(next, FileNames::nextFreeVersion(own.substr(0, end), names));
    return withVersion(name, next);
}

} // namespace Kestrel::UI::NameEdits
