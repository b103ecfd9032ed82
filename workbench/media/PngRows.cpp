#include "media/FastRows.h"

#include <spng.h>

#include <cstdio>

namespace Kestrel::Workbench {

namespace {

class PngRows : public FastRows {
public:
    explicit PngRows(const std::string& path)
        : m_file(std::fopen(path.c_str(), "rbe"))
        // Each chunk has a checksum of its own; that of the whole stream would only be one more.
        , m_context(spng_ctx_new(SPNG_CTX_IGNORE_ADLER32)) {}

    bool isKnown(const FileLayout& layout) {
        spng_ihdr header{};
        spng_trns clear{};
        if (!m_file || !m_context || spng_set_png_file(m_context.get(), m_file.get()) != 0 ||
            spng_get_ihdr(m_context.get(), &header) != 0 ||
            spng_get_trns(m_context.get(), &clear) == 0)
            return false;
        m_isDeep = header.bit_depth == 16;
        m_width = header.width;
        const bool isPlain = header.bit_depth >= 8 &&
                             header.color_type == SPNG_COLOR_TYPE_TRUECOLOR &&
                             header.interlace_method == SPNG_INTERLACE_NONE;
        return isPlain && layout.channelNames.size() == 3 && layout.pick == ChannelPick{0, 1, 2} &&
               layout.data.x == 0 && layout.data.y == 0 && layout.data.width == header.width &&
               layout.data.height == header.height;
    }

    bool read(std::int64_t first, std::int64_t last, PictureRows& rows,
              const std::function<void()>& checkpoint) override {
        // As in the file, but for the byte order, which is the machine's.
        if (spng_decode_image(m_context.get(), nullptr, 0, SPNG_FMT_PNG, SPNG_DECODE_PROGRESSIVE) !=
            0)
            return false;
        std::vector<std::uint16_t> line(m_width * 3);
        const std::size_t bytes = line.size() * (m_isDeep ? 2 : 1);
        for (std::int64_t y = 0; y < last; ++y) {
            if (y % 128 == 0)
                checkpoint();
            const int result = spng_decode_row(m_context.get(), line.data(), bytes);
            if (result != 0 && result != SPNG_EOI)
                return false;
            if (y < first)
                continue;
            if (m_isDeep) {
                rows.add(
                    y, SampleRow<std::uint16_t>{line.data(), line.data() + 1, line.data() + 2, 3});
            } else {
                const auto* codes = reinterpret_cast<const std::uint8_t*>(line.data());
                rows.add(y, SampleRow<std::uint8_t>{codes, codes + 1, codes + 2, 3});
            }
        }
        return true;
    }

private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    struct FreeContext {
        void operator()(spng_ctx* context) const { spng_ctx_free(context); }
    };

    std::unique_ptr<std::FILE, CloseFile> m_file;
    std::unique_ptr<spng_ctx, FreeContext> m_context;
    std::size_t m_width = 0;
    bool m_isDeep = false;
};

} // namespace

std::unique_ptr<FastRows> fastPngRows(const std::string& path, const FileLayout& layout) {
    auto rows = std::make_unique<PngRows>(path);
    if (!rows->isKnown(layout))
        return nullptr;
    return rows;
}

} // namespace Kestrel::Workbench
