#pragma once

#include "media/ChannelPick.h"
#include "media/PictureRows.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Kestrel::Workbench {

/** What a fast reader has to find in a file, as the general one read it from the header. */
struct FileLayout {
    PixelWindow data;
    /** Names of all channels, and which are shown. */
    std::vector<std::string> channelNames;
    ChannelPick pick{};
};

/** Reads the rows of one file by a library that is made for its kind, faster than the general
    reader, which has to turn every kind into one. Whatever that does not know is left to the general
    reader, and so is what is damaged: it has the words for it. Samples are the same, bit by bit. */
class FastRows {
public:
    virtual ~FastRows() = default;

    /** Hands rows first .. last - 1 of the data window over. False where the file is damaged or cut
        short.
        @param checkpoint  called now and then; may throw to end the work */
    virtual bool read(std::int64_t first, std::int64_t last, PictureRows& rows,
                      const std::function<void()>& checkpoint) = 0;
};

/** OpenEXR files of one part of scanlines, uncompressed or by ZIP, whose shown channels are all half floats or all floats
    (handed over as the nearest halfs). Null for others. */
std::unique_ptr<FastRows> fastExrRows(const std::string& path, const FileLayout& layout);

/** PNG files of red, green and blue, not interlaced, of 8 or 16 bits. Null for others. */
std::unique_ptr<FastRows> fastPngRows(const std::string& path, const FileLayout& layout);

} // namespace Kestrel::Workbench
