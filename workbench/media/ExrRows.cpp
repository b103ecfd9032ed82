#include "media/FastRows.h"

#include <KxUI/color/ColorConversions.h>

#include <libdeflate.h>
#include <openexr.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <optional>

namespace Kestrel::Workbench {

namespace {

void keepSilent(exr_const_context_t /*context*/, exr_result_t /*code*/, const char* /*message*/) {}

/** A file that is open for reading. */
class ExrFile {
public:
    explicit ExrFile(const std::string& path) {
        exr_context_initializer_t settings = EXR_DEFAULT_CONTEXT_INITIALIZER;
        settings.error_handler_fn = keepSilent; // the general reader tells what is wrong
        if (exr_start_read(&m_context, path.c_str(), &settings) != EXR_ERR_SUCCESS)
            m_context = nullptr;
    }
    ~ExrFile() {
        if (m_context)
            exr_finish(&m_context);
    }
    ExrFile(const ExrFile&) = delete;
    ExrFile& operator=(const ExrFile&) = delete;

    exr_context_t context() const { return m_context; }

    bool isOnePartOfScanlines() const {
        int parts = 0;
        exr_storage_t storage = EXR_STORAGE_LAST_TYPE;
        return m_context && exr_get_count(m_context, &parts) == EXR_ERR_SUCCESS && parts == 1 &&
               exr_get_storage(m_context, 0, &storage) == EXR_ERR_SUCCESS &&
               storage == EXR_STORAGE_SCANLINE;
    }

    bool hasData(const PixelWindow& window) const {
        exr_attr_box2i_t box{};
        return exr_get_data_window(m_context, 0, &box) == EXR_ERR_SUCCESS &&
               box.min.x == window.x && box.min.y == window.y &&
               box.max.x + std::int64_t(1) == window.right() &&
               box.max.y + std::int64_t(1) == window.bottom();
    }

    exr_compression_t compression() const {
        exr_compression_t compression = EXR_COMPRESSION_LAST_TYPE;
        exr_get_compression(m_context, 0, &compression);
        return compression;
    }

    bool isZip() const {
        return compression() == EXR_COMPRESSION_ZIP || compression() == EXR_COMPRESSION_ZIPS;
    }

    /** The type of the shown channels; nothing where they differ, or are not all there in full. */
    std::optional<exr_pixel_type_t> typeOf(const std::array<std::string, 3>& names) const {
        const exr_attr_chlist_t* channels = nullptr;
        if (exr_get_channels(m_context, 0, &channels) != EXR_ERR_SUCCESS)
            return std::nullopt;
        std::optional<exr_pixel_type_t> type;
        for (const std::string& name : names) {
            const auto* end = channels->entries + channels->num_channels;
            const auto* found =
                std::find_if(channels->entries, end, [&name](const exr_attr_chlist_entry_t& each) {
                    return name == each.name.str;
                });
            if (found == end || found->x_sampling != 1 || found->y_sampling != 1 ||
                found->pixel_type == EXR_PIXEL_UINT ||
                found->pixel_type != type.value_or(found->pixel_type))
                return std::nullopt;
            type = found->pixel_type;
        }
        return type;
    }

private:
    exr_context_t m_context = nullptr;
};

/** What the library unpacks by zlib is unpacked by libdeflate, which takes half the time, and handed
    to it as a stream that holds the same bytes uncompressed: undoing the rest of what EXR does to
    them stays with the library. */
class QuickZip {
public:
    explicit QuickZip(exr_decode_pipeline_t* pipeline)
        : m_inflater(libdeflate_alloc_decompressor())
        , m_usual(pipeline->decompress_fn) {
        pipeline->decoding_user_data = this;
        if (m_inflater)
            pipeline->decompress_fn = [](exr_decode_pipeline_t* chunk) {
                return static_cast<QuickZip*>(chunk->decoding_user_data)->unpack(chunk);
            };
    }
    ~QuickZip() { libdeflate_free_decompressor(m_inflater); }
    QuickZip(const QuickZip&) = delete;
    QuickZip& operator=(const QuickZip&) = delete;

private:
    exr_result_t unpack(exr_decode_pipeline_t* chunk) {
        const auto bytes = std::size_t(chunk->chunk.unpacked_size);
        // What would not get smaller is stored as it is.
        if (chunk->chunk.packed_size == chunk->chunk.unpacked_size)
            return m_usual(chunk);
        m_bytes.resize(bytes);
        if (libdeflate_zlib_decompress(m_inflater, chunk->packed_buffer,
                                       std::size_t(chunk->chunk.packed_size), m_bytes.data(), bytes,
                                       nullptr) != LIBDEFLATE_SUCCESS)
            return EXR_ERR_CORRUPT_CHUNK;
        store();
        void* const packed = chunk->packed_buffer;
        const std::uint64_t packedSize = chunk->chunk.packed_size;
        chunk->packed_buffer = m_stored.data();
        chunk->chunk.packed_size = m_stored.size();
        const exr_result_t result = m_usual(chunk);
        chunk->packed_buffer = packed;
        chunk->chunk.packed_size = packedSize;
        return result;
    }

    /** Makes a zlib stream of the bytes, uncompressed. */
    void store() {
        m_stored.resize(libdeflate_zlib_compress_bound(m_deflater.get(), m_bytes.size()));
        m_stored.resize(libdeflate_zlib_compress(m_deflater.get(), m_bytes.data(), m_bytes.size(),
                                                 m_stored.data(), m_stored.size()));
    }

    struct FreeDeflater {
        void operator()(libdeflate_compressor* deflater) const {
            libdeflate_free_compressor(deflater);
        }
    };

    libdeflate_decompressor* m_inflater;
    /** Of level 0, which stores. */
    std::unique_ptr<libdeflate_compressor, FreeDeflater> m_deflater{libdeflate_alloc_compressor(0)};
    exr_result_t (*m_usual)(exr_decode_pipeline_t*);
    std::vector<std::uint8_t> m_bytes;
    std::vector<std::uint8_t> m_stored;
};

class ExrRows : public FastRows {
public:
    explicit ExrRows(const std::string& path)
        : m_file(path) {}

    ~ExrRows() override {
        if (m_isStarted)
            exr_decoding_destroy(m_file.context(), &m_pipeline);
    }

    bool isKnown(const FileLayout& layout) {
        for (std::size_t c = 0; c < m_names.size(); ++c)
            m_names[c] = layout.channelNames[std::size_t(layout.pick[c])];
        // The others are no faster this way.
        if (!m_file.isOnePartOfScanlines() || !m_file.hasData(layout.data) ||
            (!m_file.isZip() && m_file.compression() != EXR_COMPRESSION_NONE))
            return false;
        const auto type = m_file.typeOf(m_names);
        std::int32_t rows = 0;
        if (!type || exr_get_scanlines_per_chunk(m_file.context(), 0, &rows) != EXR_ERR_SUCCESS)
            return false;
        m_isFloat = *type == EXR_PIXEL_FLOAT;
        m_data = layout.data;
        m_chunkRows = rows;
        constexpr std::int64_t mostPixels = std::int64_t(1) << 26;
        return rows > 0 && m_data.width <= mostPixels / rows;
    }

    bool read(std::int64_t first, std::int64_t last, PictureRows& rows,
              const std::function<void()>& checkpoint) override {
        m_planes.resize(std::size_t(m_chunkRows) * lineBytes() * 3);
        m_halfs.resize(m_isFloat ? std::size_t(m_data.width) * 3 : 0);
        for (std::int64_t y = first - (first - m_data.y) % m_chunkRows; y < last;
             y += m_chunkRows) {
            checkpoint();
            exr_chunk_info_t chunk{};
            if (exr_read_scanline_chunk_info(m_file.context(), 0, int(y), &chunk) !=
                    EXR_ERR_SUCCESS ||
                !decode(chunk))
                return false;
            for (std::int64_t row = std::max(y, first);
                 row < std::min(y + std::int64_t(chunk.height), last); ++row)
                rows.add(row, samplesOf(std::size_t(row - y)));
        }
        return true;
    }

private:
    std::size_t lineBytes() const {
        return std::size_t(m_data.width) * (m_isFloat ? sizeof(float) : sizeof(std::uint16_t));
    }

    std::byte* plane(std::size_t c) {
        return m_planes.data() + c * std::size_t(m_chunkRows) * lineBytes();
    }

    bool decode(const exr_chunk_info_t& chunk) {
        exr_context_t context = m_file.context();
        const bool isFirst = !m_isStarted;
        if ((isFirst ? exr_decoding_initialize(context, 0, &chunk, &m_pipeline)
                     : exr_decoding_update(context, 0, &chunk, &m_pipeline)) != EXR_ERR_SUCCESS)
            return false;
        m_isStarted = true;
        aim();
        if (isFirst) {
            if (exr_decoding_choose_default_routines(context, 0, &m_pipeline) != EXR_ERR_SUCCESS)
                return false;
            if (m_file.isZip() && m_pipeline.decompress_fn)
                m_zip.emplace(&m_pipeline);
        }
        return exr_decoding_run(context, 0, &m_pipeline) == EXR_ERR_SUCCESS;
    }

    /** Says where the shown channels go; the others go nowhere. */
    void aim() {
        for (int i = 0; i < m_pipeline.channel_count; ++i) {
            exr_coding_channel_info_t& channel = m_pipeline.channels[i];
            const auto shown = std::find(m_names.begin(), m_names.end(), channel.channel_name);
            channel.decode_to_ptr = nullptr;
            if (shown == m_names.end())
                continue;
            channel.user_pixel_stride = channel.user_bytes_per_element;
            channel.user_line_stride = std::int32_t(lineBytes());
            channel.decode_to_ptr =
                reinterpret_cast<std::uint8_t*>(plane(std::size_t(shown - m_names.begin())));
        }
    }

    SampleRow<std::uint16_t> samplesOf(std::size_t row) {
        std::array<const std::byte*, 3> lines{};
        for (std::size_t c = 0; c < lines.size(); ++c) {
            // A grey picture has one plane, the first of its name.
            const auto at = std::find(m_names.begin(), m_names.end(), m_names[c]);
            lines[c] = plane(std::size_t(at - m_names.begin())) + row * lineBytes();
        }
        if (m_isFloat) {
            const auto floats = [&lines](std::size_t c) {
                return reinterpret_cast<const float*>(lines[c]);
            };
            UI::encodeRow(UI::PixelLayout::RGBHalf, {nullptr, floats(0), floats(1), floats(2)},
                          int(m_data.width), m_halfs.data());
            return {m_halfs.data(), m_halfs.data() + 1, m_halfs.data() + 2, 3};
        }
        const auto halfs = [&lines](std::size_t c) {
            return reinterpret_cast<const std::uint16_t*>(lines[c]);
        };
        return {halfs(0), halfs(1), halfs(2), 1};
    }

    ExrFile m_file;
    exr_decode_pipeline_t m_pipeline = EXR_DECODE_PIPELINE_INITIALIZER;
    bool m_isStarted = false;
    std::optional<QuickZip> m_zip;
    std::array<std::string, 3> m_names;
    bool m_isFloat = false;
    PixelWindow m_data;
    std::int64_t m_chunkRows = 1;
    /** The shown channels of a chunk, one after the other. */
    std::vector<std::byte> m_planes;
    std::vector<std::uint16_t> m_halfs;
};

} // namespace

std::unique_ptr<FastRows> fastExrRows(const std::string& path, const FileLayout& layout) {
    auto rows = std::make_unique<ExrRows>(path);
    if (!rows->isKnown(layout))
        return nullptr;
    return rows;
}

} // namespace Kestrel::Workbench
