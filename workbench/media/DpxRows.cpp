#include "media/FastRows.h"
#include "media/FileBytes.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace Kestrel::Workbench {

namespace {

// Places in the header of SMPTE ST 268-1.
constexpr std::size_t headerBytes = 2048;
constexpr std::size_t pixelsAt = 4;
constexpr std::size_t orientationAt = 768;
constexpr std::size_t elementsAt = 770;
constexpr std::size_t widthAt = 772;
constexpr std::size_t heightAt = 776;
constexpr std::size_t signedAt = 780;
constexpr std::size_t descriptorAt = 800;
constexpr std::size_t bitsAt = 803;
constexpr std::size_t packingAt = 804;
constexpr std::size_t encodingAt = 806;
constexpr std::size_t elementPixelsAt = 808;
constexpr std::size_t linePaddingAt = 812;
constexpr std::uint32_t undefined = 0xffffffffU;

std::uint32_t swapped(std::uint32_t word) {
    return word >> 24 | (word >> 8 & 0xff00U) | (word << 8 & 0xff0000U) | word << 24;
}

class DpxHeader {
public:
    explicit DpxHeader(const FileBytes& file) {
        if (!file.read(0, m_bytes.data(), m_bytes.size()))
            return;
        const std::uint32_t magic = word(0);
        isDpx = magic == 0x53445058U || magic == 0x58504453U;
        isSwapped = magic == 0x58504453U;
    }

    std::uint32_t word(std::size_t at) const {
        std::uint32_t value = 0;
        std::memcpy(&value, m_bytes.data() + at, sizeof value);
        return isSwapped ? swapped(value) : value;
    }

    std::uint32_t half(std::size_t at) const {
        const auto word16 = [&](std::size_t i) { return std::uint32_t(m_bytes[i]); };
        std::uint16_t value = 0;
        std::memcpy(&value, m_bytes.data() + at, sizeof value);
        return isSwapped ? word16(at) << 8 | word16(at + 1) : value;
    }

    std::uint32_t byte(std::size_t at) const { return m_bytes[at]; }

    bool isDpx = false;
    /** Written by a machine of the other byte order. */
    bool isSwapped = false;

private:
    std::array<std::uint8_t, headerBytes> m_bytes{};
};

class DpxRows : public FastRows {
public:
    DpxRows(const std::string& path, const FileLayout& layout)
        : m_file(path)
        , m_header(m_file)
        , m_width(std::size_t(layout.data.width))
        , m_top(layout.data.y) {}

    bool isKnown(const FileLayout& layout) {
        constexpr std::uint32_t rgb = 50;
        constexpr std::uint32_t filledFromTheTop = 1;
        const std::uint32_t padding = m_header.word(linePaddingAt);
        const std::uint32_t element = m_header.word(elementPixelsAt);
        m_pixels = element == undefined || element == 0 ? m_header.word(pixelsAt) : element;
        return m_header.isDpx && m_header.half(orientationAt) == 0 &&
               m_header.half(elementsAt) == 1 && m_header.word(widthAt) == layout.data.width &&
               m_header.word(heightAt) == layout.data.height && m_header.word(signedAt) == 0 &&
               m_header.byte(descriptorAt) == rgb && m_header.byte(bitsAt) == 10 &&
               m_header.half(packingAt) == filledFromTheTop && m_header.half(encodingAt) == 0 &&
               (padding == 0 || padding == undefined) && layout.pick == ChannelPick{0, 1, 2} &&
               layout.channelNames.size() == 3;
    }

    bool read(std::int64_t first, std::int64_t last, PictureRows& rows,
              const std::function<void()>& checkpoint) override {
        // Few enough to stay in the cache of a core.
        constexpr std::size_t stripWords = 65536;
        const std::size_t stripRows = std::max<std::size_t>(stripWords / m_width, 1);
        std::vector<std::uint32_t> words(stripRows * m_width);
        std::vector<std::uint16_t> planes(m_width * 3);
        SampleRow<std::uint16_t> row;
        row.red = planes.data();
        row.green = planes.data() + m_width;
        row.blue = planes.data() + 2 * m_width;
        for (std::int64_t y = first; y < last; y += std::int64_t(stripRows)) {
            checkpoint();
            const auto count = std::min(stripRows, std::size_t(last - y));
            const std::uint64_t line = std::uint64_t(m_width) * sizeof(std::uint32_t);
            if (!m_file.read(m_pixels + std::uint64_t(y - m_top) * line, words.data(),
                             count * std::size_t(line)))
                return false;
            for (std::size_t i = 0; i < count; ++i) {
                unpack(words.data() + i * m_width, planes.data());
                rows.add(y + std::int64_t(i), row);
            }
        }
        return true;
    }

private:
    void unpack(const std::uint32_t* words, std::uint16_t* planes) const {
        // Ten bits are spread over sixteen, so that white stays white.
        const auto wide = [](std::uint32_t code) {
            code &= 0x3ffU;
            return std::uint16_t(code << 6 | code >> 4);
        };
        const auto planeOf = [&](std::size_t plane, unsigned shift, auto wordAt) {
            std::uint16_t* to = planes + plane * m_width;
            for (std::size_t x = 0; x < m_width; ++x)
                to[x] = wide(wordAt(words[x]) >> shift);
        };
        const auto planesBy = [&](auto wordAt) {
            planeOf(0, 22, wordAt);
            planeOf(1, 12, wordAt);
            planeOf(2, 2, wordAt);
        };
        if (m_header.isSwapped)
            planesBy([](std::uint32_t word) { return swapped(word); });
        else
            planesBy([](std::uint32_t word) { return word; });
    }

    FileBytes m_file;
    DpxHeader m_header;
    std::size_t m_width;
    std::int64_t m_top;
    std::uint64_t m_pixels = 0;
};

} // namespace

std::unique_ptr<FastRows> fastDpxRows(const std::string& path, const FileLayout& layout) {
    auto rows = std::make_unique<DpxRows>(path, layout);
    if (!rows->isKnown(layout))
        return nullptr;
    return rows;
}

} // namespace Kestrel::Workbench
