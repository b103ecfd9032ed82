#include "media/ChannelPick.h"

#include <algorithm>
#include <cctype>

namespace Kestrel::Workbench {

namespace {

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return text;
}

int indexOf(const std::vector<std::string>& names, const std::string& name) {
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? -1 : int(found - names.begin());
}

/** The three channels of a layer, by short or long names; -1 first when it has not all three. */
ChannelPick layerChannels(const std::vector<std::string>& names, const std::string& prefix) {
    for (const auto& set : {std::array<const char*, 3>{"r", "g", "b"},
                            std::array<const char*, 3>{"red", "green", "blue"}}) {
        const ChannelPick pick{indexOf(names, prefix + set[0]), indexOf(names, prefix + set[1]),
                               indexOf(names, prefix + set[2])};
        if (std::none_of(pick.begin(), pick.end(), [](int index) { return index < 0; }))
            return pick;
    }
    return {-1, -1, -1};
}

} // namespace

ChannelPick pickChannels(const std::vector<std::string>& names) {
    std::vector<std::string> lower;
    lower.reserve(names.size());
    for (const auto& name : names)
        lower.push_back(lowered(name));

    if (const auto plain = layerChannels(lower, {}); plain[0] >= 0)
        return plain;
    for (const auto& name : lower) {
        const auto dot = name.rfind('.');
        if (dot == std::string::npos || name.compare(dot, 2, ".r") != 0)
            continue;
        if (const auto layer = layerChannels(lower, name.substr(0, dot + 1)); layer[0] >= 0)
            return layer;
    }
    if (const int luminance = indexOf(lower, "y"); luminance >= 0)
        return {luminance, luminance, luminance};
    if (names.size() < 3)
        return {0, 0, 0};
    return {0, 1, 2};
}

} // namespace Kestrel::Workbench
