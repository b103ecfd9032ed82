#include "media/FrameDecoder.h"

#include "media/ChannelPick.h"
#include "media/DisplayTable.h"
#include "media/FastRows.h"
#include "media/FrameMemory.h"
#include "media/PictureRows.h"
#include "media/platform/Heap.h"

#include <OpenImageIO/imageio.h>

#include <QCoreApplication>
#include <QRect>

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>
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

/** How samples are read from the file and turned into screen codes. */
struct SampleCode {
    OIIO::TypeDesc type = OIIO::TypeDesc::UINT8;
    /** Null where the samples are screen codes already, of 8 or 16 bits. */
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

SampleCode sampleCodeFor(const OIIO::ImageSpec& spec) {
    const std::string colorSpace = spec.get_string_attribute("oiio:ColorSpace");
    const Encoding encoding = encodingOf(colorSpace, isFloat(spec));
    using Type = SampleFormat::Type;
    if (isFloat(spec))
        return {OIIO::TypeDesc::HALF, &halfTable(encoding), {Type::Half, encoding}};
    if (encoding == Encoding::Display && spec.format.size() == 1)
        return {};
    // As they are in the file: the reader's own way from 16 bits to 8 takes longer than all else.
    const DisplayTable* table = encoding == Encoding::Display ? nullptr : &integerTable(encoding);
    return {OIIO::TypeDesc::UINT16, table, {Type::Integer16, encoding}};
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

/** One file on its way to a picture. */
class Decode {
public:
    Decode(const std::string& path, const DecodeLimits& limits,
           const std::function<bool()>& cancelled)
        : m_path(path)
        , m_limits(limits)
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
        frame.image = FrameMemory::picture({reduced(m_display.width), reduced(m_display.height)});
        if (frame.image.isNull())
            throw std::bad_alloc();
        const bool isCovered = m_data.x <= m_display.x && m_data.y <= m_display.y &&
                               m_data.right() >= m_display.right() &&
                               m_data.bottom() >= m_display.bottom();
        if (!isCovered)
            frame.image.fill(Qt::black);
        const bool keep = m_limits.keepSamples && factor == 1;
        const SampleCode code = sampleCodeFor(m_spec);
        std::shared_ptr<Samples> kept;
        if (keep && code.bytes() > 1) {
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

    /** Rows in a strip: few enough to stay in a cache, whole tiles, whole blocks of compressed scanlines. */
    std::int64_t stripRows(std::size_t rowBytes) const {
        if (m_spec.tile_height > 0)
            return m_spec.tile_height;
        constexpr std::size_t stripBytes = std::size_t(1) << 20;
        constexpr std::int64_t block = 64;
        return std::max<std::int64_t>(std::int64_t(stripBytes / rowBytes) / block * block, block);
    }

    void readRows(QImage& image, int factor, const SampleCode& code, Samples* kept) {
        const std::int64_t first = std::max(m_data.y, m_display.y);
        const std::int64_t last = std::min(m_data.bottom(), m_display.bottom());
        if (first >= last)
            return;
        const ChannelPick pick = pickChannels(m_spec.channelnames);
        if (const auto fast = fastRows(pick)) {
            PictureRows rows(&image, factor, m_data, m_display, code.table, kept);
            if (fast->read(first, last, rows, [this] { checkpoint(); }))
                return rows.finish();
        }
        PictureRows rows(&image, factor, m_data, m_display, code.table, kept);
        readStrips(first, last, pick, code, rows);
        rows.finish();
    }

    std::unique_ptr<FastRows> fastRows(const ChannelPick& pick) const {
        if (m_limits.generalReader)
            return nullptr;
        const FileLayout layout{m_data, m_spec.channelnames, pick};
        const std::string_view format = m_input->format_name();
        if (format == "openexr")
            return fastExrRows(m_path, layout);
        if (format == "png")
            return fastPngRows(m_path, layout);
        return nullptr;
    }

    void checkpoint() const {
        if (m_cancelled && m_cancelled())
            throw DecodeFailure{};
    }

    void readStrips(std::int64_t first, std::int64_t end, const ChannelPick& pick,
                    const SampleCode& code, PictureRows& out) {
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

        // Strips begin on tile rows and compressed blocks, which count from the data's top.
        std::int64_t y = first - (first - m_data.y) % rows;
        std::vector<std::byte> strip(std::size_t(std::min(rows, m_data.height)) * rowBytes);
        Offsets offsets{0, 1, 2};
        if (together)
            std::transform(pick.begin(), pick.end(), offsets.begin(),
                           [first = *low](int channel) { return std::size_t(channel - first); });
        for (; y < end; y += rows) {
            checkpoint();
            const std::int64_t last = std::min(y + rows, m_data.bottom());
            if (together) {
                readStrip(y, last, *low, *high + 1, code, strip.data(), span);
            } else {
                for (std::size_t c = 0; c < offsets.size(); ++c)
                    readStrip(y, last, pick[c], pick[c] + 1, code, strip.data() + c * code.bytes(),
                              span);
            }
            for (std::int64_t row = y; row < last; ++row) {
                const std::byte* pixels = strip.data() + std::size_t(row - y) * rowBytes;
                if (code.bytes() == 1)
                    out.add(row, samplesAt<std::uint8_t>(pixels, offsets, span));
                else
                    out.add(row, samplesAt<std::uint16_t>(pixels, offsets, span));
            }
        }
    }

    template <typename Sample>
    static SampleRow<Sample> samplesAt(const std::byte* pixels, const Offsets& offsets,
                                       std::size_t span) {
        const auto* samples = reinterpret_cast<const Sample*>(pixels);
        return {samples + offsets[0], samples + offsets[1], samples + offsets[2], span};
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

    const std::string& m_path;
    const DecodeLimits& m_limits;
    const std::function<bool()>& m_cancelled;
    std::unique_ptr<OIIO::ImageInput> m_input;
    OIIO::ImageSpec m_spec;
    PixelWindow m_data;
    PixelWindow m_display;
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
    setUpHeap();
    OIIO::attribute("threads", 1);
    OIIO::attribute("exr_threads", -1);
    OIIO::attribute("limits:channels", 4096);
    OIIO::attribute("limits:imagesize_MB", 16384);
}

} // namespace Kestrel::Workbench
