#include "media/FrameDecoder.h"

#include "media/ChannelPick.h"
#include "media/DisplayTable.h"

#include <OpenImageIO/imageio.h>

#include <QCoreApplication>
#include <QRect>

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

namespace Kestrel::Workbench {

namespace {

/** What the decoder says, on worker threads too. */
struct Message {
    Q_DECLARE_TR_FUNCTIONS(FrameDecoder)
};

/** Reading stops; the message goes to the user. */
struct DecodeFailure {
    QString message;
};

/** A rectangle in 64 bits: a damaged header may claim any 32-bit origin and size. */
struct Window {
    std::int64_t x = 0;
    std::int64_t y = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;

    std::int64_t right() const { return x + width; }
    std::int64_t bottom() const { return y + height; }
};

/** How samples are read from the file and turned into screen codes. */
struct SampleCode {
    OIIO::TypeDesc type = OIIO::TypeDesc::UINT8;
    /** Null where the samples are screen codes already (type UINT8). */
    const DisplayTable* table = nullptr;
    SampleFormat format;

    std::size_t bytes() const { return type.size(); }
};

void requireReadableFile(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        throw DecodeFailure{Message::tr("The file cannot be found: %1")
                                .arg(QString::fromLocal8Bit(std::strerror(errno)))};
    // Opening a pipe would wait for its writer.
    if (!S_ISREG(status.st_mode))
        throw DecodeFailure{Message::tr("This is not a regular file.")};
    if (status.st_size == 0)
        throw DecodeFailure{Message::tr("The file is empty (0 bytes).")};
}

QString readerMessage(std::string message) {
    const auto end = message.find('\n');
    if (end != std::string::npos)
        message.resize(end);
    constexpr std::size_t longest = 200;
    if (message.size() > longest)
        message = message.substr(0, longest) + "...";
    return QString::fromStdString(message).trimmed();
}

bool isFloat(const OIIO::ImageSpec& spec) {
    return spec.format == OIIO::TypeDesc::HALF || spec.format == OIIO::TypeDesc::FLOAT ||
           spec.format == OIIO::TypeDesc::DOUBLE;
}

/** @param deep  more than 8 bits are to be read where there are more, though a screen shows 8 */
SampleCode sampleCodeFor(const OIIO::ImageSpec& spec, bool deep) {
    const std::string colorSpace = spec.get_string_attribute("oiio:ColorSpace");
    const Encoding encoding = encodingOf(colorSpace, isFloat(spec));
    using Type = SampleFormat::Type;
    if (isFloat(spec))
        return {OIIO::TypeDesc::HALF, &halfTable(encoding), {Type::Half, encoding}};
    if (encoding == Encoding::Display && !(deep && spec.format.size() > 1))
        return {};
    return {OIIO::TypeDesc::UINT16, &integerTable(encoding), {Type::Integer16, encoding}};
}

QString describe(const OIIO::ImageInput& input, const OIIO::ImageSpec& spec) {
    const QString reader = QString::fromLatin1(input.format_name());
    const QString format =
        reader == QLatin1String("openexr") ? QStringLiteral("EXR") : reader.toUpper();
    const QString channels = spec.nchannels == 1 ? Message::tr("1 channel")
                                                 : Message::tr("%1 channels").arg(spec.nchannels);
    return QStringLiteral("%1, %2, %3")
        .arg(format, QString::fromLatin1(spec.format.c_str()), channels);
}

/** Averages whole blocks of `factor` x `factor` codes into the rows of the picture. */
class BlockAverage {
public:
    BlockAverage(QImage& image, int factor)
        : m_image(image)
        , m_factor(factor)
        , m_sums(std::size_t(image.width()) * 3)
        , m_counts(std::size_t(image.width())) {}

    /** Adds a pixel at column and row of the full display window. */
    void add(std::int64_t column, std::int64_t row, const std::array<std::uint8_t, 3>& codes) {
        const auto target = row / m_factor;
        if (target != m_row) {
            flush();
            m_row = target;
        }
        const auto cell = std::size_t(column / m_factor);
        for (std::size_t c = 0; c < 3; ++c)
            m_sums[cell * 3 + c] += codes[c];
        ++m_counts[cell];
    }

    /** Writes the row that is being gathered. */
    void flush() {
        if (m_row < 0)
            return;
        auto* out = reinterpret_cast<QRgb*>(m_image.scanLine(int(m_row)));
        for (std::size_t x = 0; x < m_counts.size(); ++x) {
            if (const auto count = m_counts[x]; count > 0)
                out[x] = qRgb(int(m_sums[x * 3] / count), int(m_sums[x * 3 + 1] / count),
                              int(m_sums[x * 3 + 2] / count));
        }
        std::fill(m_sums.begin(), m_sums.end(), 0);
        std::fill(m_counts.begin(), m_counts.end(), 0);
        m_row = -1;
    }

private:
    QImage& m_image;
    int m_factor;
    std::int64_t m_row = -1;
    std::vector<std::uint64_t> m_sums;
    std::vector<std::uint64_t> m_counts;
};

/** One file on its way to a picture. */
class Decode {
public:
    Decode(const std::string& path, const DecodeLimits& limits,
           const std::function<bool()>& cancelled)
        : m_limits(limits)
        , m_cancelled(cancelled) {
        requireReadableFile(path);
        m_input = OIIO::ImageInput::open(path);
        if (!m_input)
            throw DecodeFailure{
                Message::tr("The file cannot be read: %1").arg(readerMessage(OIIO::geterror()))};
        m_spec = m_input->spec(0, 0);
        m_data = {m_spec.x, m_spec.y, m_spec.width, m_spec.height};
        m_display = {m_spec.full_x, m_spec.full_y, m_spec.full_width, m_spec.full_height};
        if (m_display.width <= 0 || m_display.height <= 0)
            m_display = m_data;
        requireSaneImage();
    }

    void run(Frame& frame) {
        const int factor = reduction();
        frame.format = describe(*m_input, m_spec);
        frame.fullSize = {int(m_display.width), int(m_display.height)};
        const double aspect = double(m_spec.get_float_attribute("PixelAspectRatio", 1.0F));
        frame.pixelAspect = aspect > 0.05 && aspect < 20.0 ? aspect : 1.0;
        const auto reduced = [factor](std::int64_t edge) {
            return int((edge + factor - 1) / factor);
        };
        frame.image =
            QImage(reduced(m_display.width), reduced(m_display.height), QImage::Format_RGB32);
        if (frame.image.isNull())
            throw std::bad_alloc();
        frame.image.fill(Qt::black);
        const bool keep = m_limits.keepSamples && factor == 1;
        const SampleCode code = sampleCodeFor(m_spec, keep);
        std::shared_ptr<Samples> kept;
        if (keep && code.table) {
            kept = std::make_shared<Samples>();
            kept->format = code.format;
            kept->rgb.resize(std::size_t(m_display.width) * std::size_t(m_display.height) * 3);
        }
        readRows(frame.image, factor, code, kept.get());
        frame.samples = std::move(kept);
        frame.state = Frame::State::Ready;
    }

private:
    /** Of red, green and blue among the samples of a pixel. */
    using Offsets = std::array<std::size_t, 3>;

    void requireSaneImage() const {
        if (m_spec.deep)
            throw DecodeFailure{Message::tr("Deep images are not shown.")};
        if (m_spec.nchannels < 1 || m_data.width < 1 || m_data.height < 1)
            throw DecodeFailure{Message::tr("The file holds no pixels.")};
        // Far enough from the ends of an int that no sum of an origin and a size leaves it.
        constexpr std::int64_t farthest = std::int64_t(1) << 30;
        for (const auto edge : {m_data.x, m_data.y, m_data.width, m_data.height, m_display.x,
                                m_display.y, m_display.width, m_display.height}) {
            if (edge > farthest || edge < -farthest)
                throw DecodeFailure{Message::tr("The file's image window is damaged.")};
        }
        const auto rows =
            std::min(m_data.bottom(), m_display.bottom()) - std::max(m_data.y, m_display.y);
        if (m_data.width > m_limits.sourcePixels / std::max<std::int64_t>(rows, 1))
            throw DecodeFailure{Message::tr("The image is too large to show: %1 x %2 pixels.")
                                    .arg(m_data.width)
                                    .arg(m_data.height)};
    }

    int reduction() const {
        const auto edge = std::max(m_display.width, m_display.height);
        return int((edge + m_limits.longestEdge - 1) / m_limits.longestEdge);
    }

    /** Rows in a strip: some megabytes, whole tiles, whole blocks of compressed scanlines. */
    std::int64_t stripRows(std::size_t rowBytes) const {
        if (m_spec.tile_height > 0)
            return m_spec.tile_height;
        constexpr std::size_t stripBytes = std::size_t(16) << 20;
        constexpr std::int64_t block = 64;
        return std::max<std::int64_t>(std::int64_t(stripBytes / rowBytes) / block * block, block);
    }

    void readRows(QImage& image, int factor, const SampleCode& code, Samples* kept) {
        const ChannelPick pick = pickChannels(m_spec.channelnames);
        const auto [low, high] = std::minmax_element(pick.begin(), pick.end());
        // Channels far apart are read one by one rather than with everything between them.
        constexpr int widestSpan = 8;
        const bool together = *high - *low < widestSpan;
        const std::size_t span = together ? std::size_t(*high - *low + 1) : 3;
        const std::size_t rowBytes = std::size_t(m_data.width) * span * code.bytes();
        const std::int64_t rows = stripRows(rowBytes);
        constexpr std::size_t mostBytes = std::size_t(512) << 20;
        if (rowBytes > mostBytes / std::size_t(rows))
            throw DecodeFailure{Message::tr("The image is too wide to read.")};

        const std::int64_t end = std::min(m_data.bottom(), m_display.bottom());
        std::int64_t y = std::max(m_data.y, m_display.y);
        // Strips begin on tile rows and compressed blocks, which count from the data's top.
        if (y < end)
            y -= (y - m_data.y) % rows;
        std::vector<std::byte> strip(std::size_t(std::min(rows, m_data.height)) * rowBytes);
        BlockAverage average(image, factor);
        Offsets offsets{0, 1, 2};
        if (together)
            std::transform(pick.begin(), pick.end(), offsets.begin(),
                           [first = *low](int channel) { return std::size_t(channel - first); });
        for (; y < end; y += rows) {
            if (m_cancelled && m_cancelled())
                throw DecodeFailure{};
            const std::int64_t last = std::min(y + rows, m_data.bottom());
            if (together) {
                readStrip(y, last, *low, *high + 1, code, strip.data(), span);
            } else {
                for (std::size_t c = 0; c < offsets.size(); ++c)
                    readStrip(y, last, pick[c], pick[c] + 1, code, strip.data() + c * code.bytes(),
                              span);
            }
            convert(strip, y, last, offsets, span, code, image, factor, average);
            if (kept)
                keepSamples(strip, y, last, offsets, span, *kept);
        }
        average.flush();
    }

    /** Reads rows first .. last - 1 of some channels into pixels of `span` samples. */
    void readStrip(std::int64_t first, std::int64_t last, int channelBegin, int channelEnd,
                   const SampleCode& code, std::byte* to, std::size_t span) {
        const auto pixelStride = OIIO::stride_t(span * code.bytes());
        const auto rowStride = OIIO::stride_t(m_data.width) * pixelStride;
        const bool read =
            m_spec.tile_width > 0
                ? m_input->read_tiles(0, 0, m_spec.x, int(m_data.right()), int(first), int(last),
                                      m_spec.z, m_spec.z + 1, channelBegin, channelEnd, code.type,
                                      to, pixelStride, rowStride)
                : m_input->read_scanlines(0, 0, int(first), int(last), m_spec.z, channelBegin,
                                          channelEnd, code.type, to, pixelStride, rowStride);
        if (!read)
            throw DecodeFailure{Message::tr("The file is damaged or cut short: %1")
                                    .arg(readerMessage(m_input->geterror()))};
    }

    /** Turns the rows of a strip into screen codes, where they lie inside the display window. */
    void convert(const std::vector<std::byte>& strip, std::int64_t first, std::int64_t last,
                 const Offsets& offsets, std::size_t span, const SampleCode& code, QImage& image,
                 int factor, BlockAverage& average) const {
        if (code.table)
            convertSamples<std::uint16_t>(
                reinterpret_cast<const std::uint16_t*>(strip.data()),
                [&table = *code.table](std::uint16_t sample) { return table[sample]; }, first, last,
                offsets, span, image, factor, average);
        else
            convertSamples<std::uint8_t>(
                reinterpret_cast<const std::uint8_t*>(strip.data()),
                [](std::uint8_t sample) { return sample; }, first, last, offsets, span, image,
                factor, average);
    }

    template <typename Sample, typename Code>
    void convertSamples(const Sample* samples, Code codeOf, std::int64_t first, std::int64_t last,
                        const Offsets& offsets, std::size_t span, QImage& image, int factor,
                        BlockAverage& average) const {
        const std::int64_t left = std::max(m_data.x, m_display.x);
        const std::int64_t right = std::min(m_data.right(), m_display.right());
        const std::int64_t bottom = std::min(last, m_display.bottom());
        for (std::int64_t y = std::max(first, m_display.y); y < bottom; ++y) {
            const Sample* pixel = samples + (std::size_t(y - first) * std::size_t(m_data.width) +
                                             std::size_t(left - m_data.x)) *
                                                span;
            const std::int64_t row = y - m_display.y;
            if (factor == 1) {
                auto* out =
                    reinterpret_cast<QRgb*>(image.scanLine(int(row))) + (left - m_display.x);
                for (std::int64_t x = left; x < right; ++x, pixel += span)
                    *out++ = qRgb(codeOf(pixel[offsets[0]]), codeOf(pixel[offsets[1]]),
                                  codeOf(pixel[offsets[2]]));
            } else {
                for (std::int64_t x = left; x < right; ++x, pixel += span)
                    average.add(x - m_display.x, row,
                                {codeOf(pixel[offsets[0]]), codeOf(pixel[offsets[1]]),
                                 codeOf(pixel[offsets[2]])});
            }
        }
    }

    /** Copies the picked samples of a strip, where they lie inside the display window. */
    void keepSamples(const std::vector<std::byte>& strip, std::int64_t first, std::int64_t last,
                     const Offsets& offsets, std::size_t span, Samples& kept) const {
        const auto* samples = reinterpret_cast<const std::uint16_t*>(strip.data());
        const std::int64_t left = std::max(m_data.x, m_display.x);
        const std::int64_t right = std::min(m_data.right(), m_display.right());
        const std::int64_t bottom = std::min(last, m_display.bottom());
        if (left >= right)
            return;
        for (std::int64_t y = std::max(first, m_display.y); y < bottom; ++y) {
            const auto* pixel =
                samples + std::size_t((y - first) * m_data.width + left - m_data.x) * span;
            auto* out = kept.rgb.data() +
                        std::size_t((y - m_display.y) * m_display.width + left - m_display.x) * 3;
            for (std::int64_t x = left; x < right; ++x, pixel += span) {
                for (const std::size_t offset : offsets)
                    *out++ = pixel[offset];
            }
        }
    }

    const DecodeLimits& m_limits;
    const std::function<bool()>& m_cancelled;
    std::unique_ptr<OIIO::ImageInput> m_input;
    OIIO::ImageSpec m_spec;
    Window m_data;
    Window m_display;
};

} // namespace

Frame decodeFrame(const std::string& path, Base::Time time, const DecodeLimits& limits,
                  const std::function<bool()>& cancelled) {
    Frame frame;
    frame.time = time;
    frame.isComplete = limits.keepSamples;
    try {
        Decode(path, limits, cancelled).run(frame);
        return frame;
    } catch (const DecodeFailure& failure) {
        frame.message = failure.message;
    } catch (const std::bad_alloc&) {
        frame.message = Message::tr("There is not enough memory for this image.");
    } catch (const std::exception& error) {
        frame.message = Message::tr("The file cannot be read: %1").arg(readerMessage(error.what()));
    }
    frame.state = Frame::State::Unreadable;
    frame.image = QImage();
    frame.samples = nullptr;
    return frame;
}

void setUpImageReading() {
    OIIO::attribute("threads", 1);
    OIIO::attribute("exr_threads", -1);
    OIIO::attribute("limits:channels", 4096);
    OIIO::attribute("limits:imagesize_MB", 16384);
}

} // namespace Kestrel::Workbench
