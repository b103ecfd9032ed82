#pragma once

#include <array>
#include <string>
#include <vector>

namespace Kestrel::Workbench {

/** Which channels of a file are shown as red, green and blue; the same channel three times for a
    grey picture. */
using ChannelPick = std::array<int, 3>;

/** Chooses among a file's channels: R, G and B by name; else the first layer that has its own R, G
    and B; else a luminance or the first of one or two channels as grey; else the first three.
    `names` must not be empty. */
ChannelPick pickChannels(const std::vector<std::string>& names);

} // namespace Kestrel::Workbench
