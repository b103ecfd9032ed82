#include "media/ByteOrder.h"
#include "media/FastRows.h"
#include "media/FileBytes.h"
#include "media/Inflater.h"

#include <KxUI/color/ColorConversions.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <optional>

namespace Kestrel::Workbench {

namespace {

enum class PixelType : std::uint32_t { Unsigned, Half, Float };

struct ExrChannel {
    std::string name;
    PixelType type = PixelType::Half;

    std::size_t bytes() const { return type == PixelType::Half ? 2 : 4; }
};

/** What of a header tells where the pixels are. */
struct ExrHeader {
    std::vector<ExrChannel> channels;
    PixelWindow data;
    /** Rows that are compressed together; 0 where that is not done by ZIP. */
    std::int64_t blockRows = 0;
    /** Of the table of blocks, in the file. */
    std::uint64_t tableAt = 0;
};

/** Goes through the bytes of a header; what lies beyond their end is zeros, and told by `isGood`. */
class HeaderBytes {
public:
    HeaderBytes(const std::uint8_t* bytes, std::size_t size)
        : m_bytes(bytes)
        , m_size(size) {}

    bool isGood() const { return m_good; }
    std::size_t at() const { return m_at; }

    std::uint32_t word() { return std::uint32_t(take(4) ? littleWord(m_bytes + m_at - 4) : 0); }
    std::uint32_t byte() { return take(1) ? m_bytes[m_at - 1] : 0; }

    std::string text() {
        const auto* begin = m_bytes + m_at;
        const auto* end = std::find(begin, m_bytes + m_size, std::uint8_t(0));
        std::string result(begin, end);
        take(result.size() + 1);
        return result;
    }

    /** The next bytes, apart. */
    HeaderBytes part(std::size_t bytes) {
        return take(bytes) ? HeaderBytes(m_bytes + m_at - bytes, bytes) : HeaderBytes(m_bytes, 0);
    }

    void skip(std::size_t bytes) { take(bytes); }

private:
    bool take(std::size_t bytes) {
        m_good = m_good && bytes <= m_size - m_at;
        if (m_good)
            m_at += bytes;
        return m_good;
    }

    const std::uint8_t* m_bytes;
    std::size_t m_size;
    std::size_t m_at = 0;
    bool m_good = true;
};

/** False where a channel is stored with fewer samples than there are pixels. */
bool readChannels(HeaderBytes list, std::vector<ExrChannel>* channels) {
    for (;;) {
        ExrChannel channel;
        channel.name = list.text();
        if (channel.name.empty())
            return list.isGood();
        const std::uint32_t type = list.word();
        channel.type = PixelType(type);
        list.skip(4);
        const std::uint32_t across = list.word();
        const std::uint32_t down = list.word();
        if (!list.isGood() || type > std::uint32_t(PixelType::Float) || across != 1 || down != 1)
            return false;
        channels->push_back(std::move(channel));
    }
}

std::int64_t blockRowsOf(std::uint32_t compression) {
    switch (compression) {
    case 0: // none
    case 2: // ZIP of single rows
        return 1;
    case 3: // ZIP
        return 16;
    default:
        return 0;
    }
}

PixelWindow windowOf(HeaderBytes box) {
    std::array<std::int64_t, 4> edges{};
    for (std::int64_t& edge : edges)
        edge = std::int32_t(box.word());
    return {edges[0], edges[1], edges[2] - edges[0] + 1, edges[3] - edges[1] + 1};
}

/** Nothing for files of tiles, of several parts, of deep pixels, and for what is no header. */
std::optional<ExrHeader> readHeader(const FileBytes& file) {
    constexpr std::size_t most = std::size_t(1) << 18;
    std::vector<std::uint8_t> bytes(most);
    bytes.resize(file.readSome(0, bytes.data(), bytes.size()));
    HeaderBytes reader(bytes.data(), bytes.size());
    constexpr std::uint32_t magic = 20000630;
    constexpr std::uint32_t version = 2;
    constexpr std::uint32_t longNames = 0x400;
    if (reader.word() != magic || (reader.word() & ~longNames) != version)
        return std::nullopt;
    ExrHeader header;
    for (;;) {
        const std::string name = reader.text();
        if (name.empty())
            break;
        reader.text();
        HeaderBytes value = reader.part(reader.word());
        if (name == "channels") {
            if (!readChannels(value, &header.channels))
                return std::nullopt;
        } else if (name == "compression") {
            header.blockRows = blockRowsOf(value.byte());
        } else if (name == "dataWindow") {
            header.data = windowOf(value);
        }
        if (!reader.isGood() || !value.isGood())
            return std::nullopt;
    }
    header.tableAt = reader.at();
    return reader.isGood() ? std::make_optional(header) : std::nullopt;
}

/** Undoes what makes bytes small differences before they are compressed: each is the sum of all
    before it. Eight at a time: sums of bytes that do not carry into each other. */
void sumUp(std::uint8_t* bytes, std::size_t count) {
    constexpr std::uint64_t lowBits = 0x7f7f7f7f7f7f7f7fU;
    const auto sum = [](std::uint64_t a, std::uint64_t b) {
        return ((a & lowBits) + (b & lowBits)) ^ ((a ^ b) & ~lowBits);
    };
    std::uint64_t before = 0x80; // the first byte is no difference
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        std::uint64_t eight = littleLong(bytes + i) ^ 0x8080808080808080U;
        eight = sum(eight, eight << 8);
        eight = sum(eight, eight << 16);
        eight = sum(eight, eight << 32);
        putLittleLong(bytes + i, sum(eight, before * 0x0101010101010101U));
        // All that one step waits for of the step before it.
        before = (before + (eight >> 56)) & 0xffU;
    }
    for (; i < count; ++i) {
        before = (before + bytes[i] + 0x80U) & 0xffU;
        bytes[i] = std::uint8_t(before);
    }
}

/** Puts the bytes of even and of odd places, which are compressed apart, together again. */
void interleave(const std::uint8_t* apart, std::uint8_t* to, std::size_t count) {
    const std::uint8_t* odd = apart + (count + 1) / 2;
    const std::size_t pairs = count / 2;
    for (std::size_t i = 0; i < pairs; ++i) {
        to[2 * i] = apart[i];
        to[2 * i + 1] = odd[i];
    }
    if (count % 2 == 1)
        to[count - 1] = apart[pairs];
}

class ExrRows : public FastRows {
public:
    explicit ExrRows(const std::string& path)
        : m_file(path) {}

    bool isKnown(const FileLayout& layout) {
        const auto header = readHeader(m_file);
        if (!header || header->blockRows == 0 || !isSame(header->data, layout.data))
            return false;
        m_header = *header;
        return findPlanes(layout) && makeRoom();
    }

    bool read(std::int64_t first, std::int64_t last, PictureRows& rows,
              const std::function<void()>& checkpoint) override {
        const std::int64_t top = m_header.data.y;
        const std::int64_t blocks = (m_header.data.height - 1) / m_header.blockRows + 1;
        std::vector<std::uint64_t> table(std::size_t(blocks), 0);
        if (!m_file.read(m_header.tableAt, table.data(), table.size() * sizeof table[0]))
            return false;
        for (std::int64_t block = (first - top) / m_header.blockRows; block < blocks; ++block) {
            const std::int64_t y = top + block * m_header.blockRows;
            if (y >= last)
                break;
            checkpoint();
            const auto count = std::min(m_header.blockRows, m_header.data.bottom() - y);
            const std::uint8_t* pixels =
                readBlock(littleLong(&table[std::size_t(block)]), y, std::size_t(count) * m_line);
            if (!pixels)
                return false;
            for (std::int64_t i = std::max<std::int64_t>(first - y, 0);
                 i < std::min(count, last - y); ++i)
                rows.add(y + i, samplesOf(pixels + std::size_t(i) * m_line));
        }
        return true;
    }

private:
    static bool isSame(const PixelWindow& a, const PixelWindow& b) {
        return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
    }

    /** Where the shown channels lie within a row: its channels follow each other, each whole. */
    bool findPlanes(const FileLayout& layout) {
        const auto width = std::size_t(m_header.data.width);
        std::array<bool, 3> found{};
        bool anyFound = false;
        for (const ExrChannel& channel : m_header.channels) {
            for (std::size_t c = 0; c < found.size(); ++c) {
                if (layout.channelNames[std::size_t(layout.pick[c])] != channel.name)
                    continue;
                if (channel.type == PixelType::Unsigned || (anyFound && channel.type != m_type))
                    return false;
                found[c] = anyFound = true;
                m_planes[c] = m_line;
                m_type = channel.type;
            }
            m_line += channel.bytes() * width;
        }
        return std::all_of(found.begin(), found.end(), [](bool each) { return each; });
    }

    bool makeRoom() {
        constexpr std::size_t mostBytes = std::size_t(256) << 20;
        const auto rows = std::size_t(std::min(m_header.blockRows, m_header.data.height));
        if (m_line > mostBytes / rows || m_header.data.width > INT_MAX / 8)
            return false;
        m_packed.resize(m_line * rows);
        m_apart.resize(m_line * rows);
        m_block.resize(m_line * rows);
        const auto width = std::size_t(m_header.data.width);
        m_floats.resize(m_type == PixelType::Float ? width * 3 : 0);
        m_halfs.resize(width * 3);
        return true;
    }

    /** The pixels of a block; null where it is damaged. */
    const std::uint8_t* readBlock(std::uint64_t offset, std::int64_t y, std::size_t bytes) {
        std::array<std::uint8_t, 8> head{};
        if (!m_file.read(offset, head.data(), head.size()) ||
            std::int32_t(littleWord(head.data())) != y)
            return nullptr;
        const std::size_t packed = littleWord(head.data() + 4);
        // What would not get smaller is stored as it is.
        if (packed > bytes || !m_file.read(offset + head.size(), m_packed.data(), packed))
            return nullptr;
        if (packed == bytes)
            return m_packed.data();
        if (!m_inflater.inflate(m_packed.data(), packed, m_apart.data(), bytes))
            return nullptr;
        sumUp(m_apart.data(), bytes);
        interleave(m_apart.data(), m_block.data(), bytes);
        return m_block.data();
    }

    SampleRow<std::uint16_t> samplesOf(const std::uint8_t* line) {
        const auto width = std::size_t(m_header.data.width);
        SampleRow<std::uint16_t> row;
        if (m_type == PixelType::Float) {
            for (std::size_t c = 0; c < 3; ++c)
                std::memcpy(m_floats.data() + c * width, line + m_planes[c], width * sizeof(float));
            const float* red = m_floats.data();
            UI::encodeRow(UI::PixelLayout::RGBHalf, {nullptr, red, red + width, red + 2 * width},
                          int(width), m_halfs.data());
            row.red = m_halfs.data();
            row.green = row.red + 1;
            row.blue = row.red + 2;
            row.step = 3;
            return row;
        }
        for (std::size_t c = 0; c < 3; ++c)
            std::memcpy(m_halfs.data() + c * width, line + m_planes[c],
                        width * sizeof(std::uint16_t));
        row.red = m_halfs.data();
        row.green = row.red + width;
        row.blue = row.green + width;
        return row;
    }

    FileBytes m_file;
    ExrHeader m_header;
    /** Bytes from the start of a row to each shown channel. */
    std::array<std::size_t, 3> m_planes{};
    PixelType m_type = PixelType::Half;
    /** Bytes of a row. */
    std::size_t m_line = 0;
    Inflater m_inflater;
    std::vector<std::uint8_t> m_packed;
    std::vector<std::uint8_t> m_apart;
    std::vector<std::uint8_t> m_block;
    std::vector<float> m_floats;
    std::vector<std::uint16_t> m_halfs;
};

} // namespace

std::unique_ptr<FastRows> fastExrRows(const std::string& path, const FileLayout& layout) {
    if (!isLittleEndian())
        return nullptr;
    auto rows = std::make_unique<ExrRows>(path);
    if (!rows->isKnown(layout))
        return nullptr;
    return rows;
}

} // namespace Kestrel::Workbench
