#include <KxUI/base/FrameRange.h>

#include <charconv>

namespace Kestrel::Base {
namespace {

// Takes a number from the front of a text; false where there is none or it does not fit.
bool takeNumber(std::string_view& text, std::int32_t& number) {
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (problem != std::errc())
        return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool takeOneOf(std::string_view& text, std::string_view characters) {
    if (text.empty() || characters.find(text.front()) == std::string_view::npos)
        return false;
    text.remove_prefix(1);
    return true;
}

std::optional<FrameRange> read(std::string_view text) {
    FrameRange range;
    if (!takeNumber(text, range.first))
        return std::nullopt;
    range.last = range.first;
    if (takeOneOf(text, "-")) {
        if (!takeNumber(text, range.last) || range.last < range.first)
            return std::nullopt;
        if (takeOneOf(text, "x,") && (!takeNumber(text, range.step) || range.step < 1))
            return std::nullopt;
    }
    return text.empty() ? std::make_optional(range) : std::nullopt;
}

} // namespace

std::optional<FrameRange> parseFrameRange(std::string_view text, std::string* error) {
    const std::optional<FrameRange> range = read(text);
    if (!range && error)
        *error = "Frame range failed to parser: \"" + std::string(text) + "\"";
    return range;
}

} // namespace Kestrel::Base
