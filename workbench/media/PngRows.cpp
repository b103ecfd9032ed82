#include "media/FastRows.h"
#include "media/FileBytes.h"
#include "media/FrameMemory.h"
#include "media/Inflater.h"

#include <QtEndian>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace Kestrel::Workbench {

namespace {

constexpr std::size_t signatureBytes = 8;
/** Of a chunk: its length and name before it, a checksum after it. */
constexpr std::size_t chunkHeadBytes = 8;
constexpr std::size_t checksumBytes = 4;
constexpr std::size_t mostBytes = std::size_t(512) << 20;

std::uint32_t bigWord(const std::uint8_t* bytes) {
    return qFromBigEndian<std::uint32_t>(bytes);
}

bool isNamed(const std::uint8_t* chunk, const char* name) {
    return std::memcmp(chunk + 4, name, 4) == 0;
}

/** How a row was made small differences, by the PNG specification, third edition, chapter 9. */
enum class Filter : std::uint8_t { None, Sub, Up, Average, Paeth };

/** Of the bytes at the left, above, and above at the left the one closest to their plane. */
int closest(int left, int up, int corner) {
    const int toLeft = std::abs(up - corner);
    const int toUp = std::abs(left - corner);
    const int toCorner = std::abs(left + up - 2 * corner);
    const int side = toUp < toLeft ? up : left;
    return toCorner < std::min(toLeft, toUp) ? corner : side;
}

/** Undoes a filter in place, pixels of so many bytes. The row before the first is zeros. */
template <std::size_t pixel>
bool unfilter(std::uint8_t filter, std::uint8_t* row, const std::uint8_t* above,
              std::size_t bytes) {
    switch (Filter(filter)) {
    case Filter::None:
        return true;
    case Filter::Sub:
        for (std::size_t i = pixel; i < bytes; ++i)
            row[i] = std::uint8_t(row[i] + row[i - pixel]);
        return true;
    case Filter::Up:
        for (std::size_t i = 0; i < bytes; ++i)
            row[i] = std::uint8_t(row[i] + above[i]);
        return true;
    case Filter::Average:
        for (std::size_t i = 0; i < pixel; ++i)
            row[i] = std::uint8_t(row[i] + above[i] / 2);
        for (std::size_t i = pixel; i < bytes; ++i)
            row[i] = std::uint8_t(row[i] + (row[i - pixel] + above[i]) / 2);
        return true;
    case Filter::Paeth: {
        // What was last is kept in registers: reading it back from memory is what would take time.
        int left[pixel] = {};
        int corner[pixel] = {};
        for (std::size_t i = 0; i < bytes; i += pixel) {
            for (std::size_t c = 0; c < pixel; ++c) {
                const int up = above[i + c];
                left[c] = (row[i + c] + closest(left[c], up, corner[c])) & 0xff;
                corner[c] = up;
                row[i + c] = std::uint8_t(left[c]);
            }
        }
        return true;
    }
    }
    return false;
}

class PngRows : public FastRows {
public:
    explicit PngRows(const std::string& path)
        : m_file(path) {}

    bool isKnown(const FileLayout& layout) {
        std::uint8_t head[signatureBytes + chunkHeadBytes + 13] = {};
        if (!m_file.read(0, head, sizeof head) || !isNamed(head + signatureBytes, "IHDR"))
            return false;
        const std::uint8_t* header = head + signatureBytes + chunkHeadBytes;
        constexpr std::uint8_t rgb = 2;
        m_width = bigWord(header);
        m_height = bigWord(header + 4);
        m_deep = header[8] == 16;
        m_line = std::size_t(m_width) * 3 * (m_deep ? 2 : 1);
        const bool isPlain = (m_deep || header[8] == 8) && header[9] == rgb && header[10] == 0 &&
                             header[11] == 0 && header[12] == 0;
        return isPlain && layout.channelNames.size() == 3 && layout.pick == ChannelPick{0, 1, 2} &&
               layout.data.x == 0 && layout.data.y == 0 && layout.data.width == m_width &&
               layout.data.height == m_height && m_height <= mostBytes / (m_line + 1);
    }

    bool read(std::int64_t first, std::int64_t last, PictureRows& rows,
              const std::function<void()>& checkpoint) override {
        const FrameMemory::Bytes pixels = inflated(checkpoint);
        if (!pixels)
            return false;
        const std::vector<std::uint8_t> nothing(m_line, 0);
        std::vector<std::uint16_t> wide(m_deep ? m_line / 2 : 0);
        const std::uint8_t* above = nothing.data();
        auto* row = reinterpret_cast<std::uint8_t*>(pixels.get());
        for (std::int64_t y = 0; y < last; ++y, row += m_line + 1) {
            if (y % 256 == 0)
                checkpoint();
            const bool good = m_deep ? unfilter<6>(row[0], row + 1, above, m_line)
                                     : unfilter<3>(row[0], row + 1, above, m_line);
            if (!good)
                return false;
            above = row + 1;
            if (y < first)
                continue;
            if (m_deep)
                rows.add(y, widened(above, &wide));
            else
                rows.add(y, SampleRow<std::uint8_t>{above, above + 1, above + 2, 3});
        }
        return true;
    }

private:
    /** All rows with their filters; null where the file is damaged. */
    FrameMemory::Bytes inflated(const std::function<void()>& checkpoint) const {
        const std::vector<std::uint8_t> packed = packedPixels();
        checkpoint();
        // Deflate makes at most 1,032 bytes of one: a header that claims more is damaged.
        const std::size_t bytes = (m_line + 1) * m_height;
        if (packed.size() < bytes / 1032)
            return nullptr;
        FrameMemory::Bytes pixels = FrameMemory::bytes(bytes);
        if (!pixels || !Inflater().inflate(packed.data(), packed.size(), pixels.get(), bytes))
            return nullptr;
        return pixels;
    }

    /** The pixels as the file has them, which may be in any number of chunks. */
    std::vector<std::uint8_t> packedPixels() const {
        std::vector<std::uint8_t> packed;
        std::uint64_t at = signatureBytes;
        std::uint8_t chunk[chunkHeadBytes];
        while (m_file.read(at, chunk, sizeof chunk) && !isNamed(chunk, "IEND")) {
            const std::size_t bytes = bigWord(chunk);
            at += chunkHeadBytes;
            if (at + bytes > m_file.size())
                break;
            if (isNamed(chunk, "IDAT")) {
                packed.resize(packed.size() + bytes);
                if (!m_file.read(at, packed.data() + packed.size() - bytes, bytes))
                    break;
            }
            at += bytes + checksumBytes;
        }
        return packed;
    }

    static SampleRow<std::uint16_t> widened(const std::uint8_t* bytes,
                                            std::vector<std::uint16_t>* samples) {
        qFromBigEndian<std::uint16_t>(bytes, qsizetype(samples->size()), samples->data());
        const std::uint16_t* first = samples->data();
        return {first, first + 1, first + 2, 3};
    }

    FileBytes m_file;
    std::uint32_t m_width = 0;
    std::uint32_t m_height = 0;
    bool m_deep = false;
    /** Bytes of a row, without that of its filter. */
    std::size_t m_line = 0;
};

} // namespace

std::unique_ptr<FastRows> fastPngRows(const std::string& path, const FileLayout& layout) {
    auto rows = std::make_unique<PngRows>(path);
    if (!rows->isKnown(layout))
        return nullptr;
    return rows;
}

} // namespace Kestrel::Workbench
