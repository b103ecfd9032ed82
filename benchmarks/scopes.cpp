#include <KxUI/scopes/ColorSpaceScope.h>
#include <KxUI/scopes/HistogramScope.h>
#include <KxUI/scopes/ScopeResult.h>
#include <KxUI/scopes/Vectorscope.h>
#include <KxUI/scopes/WaveformScope.h>

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
}
#include <QApplication>
#include <QMouseEvent>

#include <support/Bench.h>

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Kestrel::UI;

namespace {

constexpr int Width = 1920;
constexpr int Height = 1080;

// A picture with soft shapes and grain, as light of 0 to about 1.
float component(int x, int y, int channel) {
    const std::uint32_t hash = std::uint32_t(x * 7919 + y * 104729 + channel) * 2654435761U;
    const float grain = float(hash >> 20) / 4096.0F * 0.1F;
    const auto wave = float(std::sin(x * 0.003 + y * 0.001 * (channel + 1)));
    return 0.45F + 0.35F * wave + grain;
}

struct Frame {
    explicit Frame(PixelLayout layout)
        : memory(rowBytes(layout, Width) * Height) {
        std::vector<float> row(std::size_t(4) * Width, 1.0F);
        for (int y = 0; y < Height; ++y) {
            for (int i = 0; i < 4 * Width; ++i) {
                if (i % 4 != 3)
                    row[std::size_t(i)] = component(i / 4, y, i % 4);
            }
            encodeRow(layout, {&row[3], &row[0], &row[1], &row[2], 4}, Width,
                      &memory[rowBytes(layout, Width) * std::size_t(y)]);
        }
        image.pixels = memory.data();
        image.layout = layout;
        image.width = Width;
        image.height = Height;
        image.stride = std::ptrdiff_t(rowBytes(layout, Width));
    }

    std::vector<unsigned char> memory;
    ScopeImage image;
};

const Frame& frame() {
    static const Frame only(PixelLayout::RGBAHalf);
    return only;
}

// What libavfilter counts, but packed.
const Frame& codes() {
    static const Frame only(PixelLayout::RGB8);
    return only;
}

// A filter of libavfilter on the same picture as 8-bit codes, with one thread.
class Filter {
public:
    Filter(const std::string& description, AVPixelFormat format)
        : m_graph(avfilter_graph_alloc())
        , m_source(av_frame_alloc())
        , m_result(av_frame_alloc()) {
        m_graph->nb_threads = 1;
        const std::string buffer =
            "video_size=1920x1080:pix_fmt=" + std::string(av_get_pix_fmt_name(format)) +
            ":time_base=1/25";
        check(avfilter_graph_create_filter(&m_in, avfilter_get_by_name("buffer"), "in",
                                           buffer.c_str(), nullptr, m_graph));
        check(avfilter_graph_create_filter(&m_out, avfilter_get_by_name("buffersink"), "out",
                                           nullptr, nullptr, m_graph));
        AVFilterInOut* outputs = avfilter_inout_alloc();
        AVFilterInOut* inputs = avfilter_inout_alloc();
        *outputs = {av_strdup("in"), m_in, 0, nullptr};
        *inputs = {av_strdup("out"), m_out, 0, nullptr};
        check(avfilter_graph_parse_ptr(m_graph, description.c_str(), &inputs, &outputs, nullptr));
        avfilter_inout_free(&inputs);
        avfilter_inout_free(&outputs);
        check(avfilter_graph_config(m_graph, nullptr));
        fill(format);
    }
    ~Filter() {
        av_frame_free(&m_result);
        av_frame_free(&m_source);
        avfilter_graph_free(&m_graph);
    }
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    void run() {
        m_source->pts = ++m_time;
        check(av_buffersrc_add_frame_flags(m_in, m_source, AV_BUFFERSRC_FLAG_KEEP_REF));
        check(av_buffersink_get_frame(m_out, m_result));
        av_frame_unref(m_result);
    }

private:
    static void check(int status) {
        if (status < 0)
            throw std::runtime_error("libavfilter");
    }

    // Planes: green, blue and red, or luma and chroma of the same.
    void fill(AVPixelFormat format) {
        m_source->format = format;
        m_source->width = Width;
        m_source->height = Height;
        check(av_frame_get_buffer(m_source, 0));
        const bool isRgb = format == AV_PIX_FMT_GBRP;
        const auto& matrix = colorSpaceRgbToYCbCr(ColorSpace::Rec709);
        for (int y = 0; y < Height; ++y) {
            for (int x = 0; x < Width; ++x) {
                const std::array<float, 3> rgb{component(x, y, 0), component(x, y, 1),
                                               component(x, y, 2)};
                const auto dot = [&rgb](const std::array<float, 3>& row) {
                    return row[0] * rgb[0] + row[1] * rgb[1] + row[2] * rgb[2];
                };
                const std::array<float, 3> codes =
                    isRgb ? std::array<float, 3>{255 * rgb[1], 255 * rgb[2], 255 * rgb[0]}
                          : std::array<float, 3>{16 + 219 * dot(matrix.luma),
                                                 128 + 224 * dot(matrix.cb),
                                                 128 + 224 * dot(matrix.cr)};
                for (std::size_t i = 0; i < 3; ++i)
                    m_source->data[i][y * m_source->linesize[i] + x] =
                        std::uint8_t(std::min(std::max(codes[i], 0.0F), 255.0F));
            }
        }
    }

    AVFilterGraph* m_graph;
    AVFilterContext* m_in = nullptr;
    AVFilterContext* m_out = nullptr;
    AVFrame* m_source;
    AVFrame* m_result;
    std::int64_t m_time = 0;
};

ScopeRequest parts(int wanted) {
    ScopeRequest request;
    request.parts = wanted;
    return request;
}

void addOurs(const std::string& work, const ScopeRequest& request, int threads = 1,
             const char* who = "ours", const Frame& (*of)() = frame) {
    Kestrel::Bench::add(work, who, [request, threads, of](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(countScopes(of().image, request, threads));
    });
}

void addFilter(const std::string& work, const std::string& description, AVPixelFormat format) {
    Kestrel::Bench::add(work, "libavfilter", [description, format](benchmark::State& state) {
        Filter filter(description, format);
        for (auto _ : state)
            filter.run();
    });
}

// Every repaint from another side.
void turn(benchmark::State& state, const ScopeImage& picture, Drawing drawing) {
    ScopeModel model;
    model.setSolidRange({0, 1, 32});
    ColorSpaceScope scope;
    scope.setModel(&model);
    scope.setDrawing(drawing);
    scope.resize(800, 600);
    scope.show();
    model.setImage(picture);
    while (!model.isCurrent())
        QCoreApplication::processEvents();
    QImage image(scope.size(), QImage::Format_RGB32);
    scope.render(&image);
    if (drawing == Drawing::OpenGL && !scope.usesOpenGL()) {
        state.SkipWithError("no OpenGL");
        return;
    }
    for (auto _ : state) {
        scope.setOrbit(scope.yaw() + 5, scope.pitch());
        scope.render(&image);
    }
}

// Of every cell that a solid has.
ScopeImage allColors() {
    constexpr int Size = 1024;
    auto pixels = std::make_shared<std::vector<unsigned char>>(3 * Size * Size);
    std::uint32_t random = 1;
    for (unsigned char& each : *pixels) {
        random = random * 1664525 + 1013904223;
        each = static_cast<unsigned char>(random >> 24);
    }
    ScopeImage image;
    image.owner = pixels;
    image.pixels = pixels->data();
    image.layout = PixelLayout::RGB8;
    image.width = image.height = Size;
    image.stride = 3 * Size;
    return image;
}

void figuresTheirs(benchmark::State& state) {
    OIIO::ImageSpec spec(Width, Height, 4, OIIO::TypeDesc::HALF);
    OIIO::ImageBuf buffer(spec, const_cast<unsigned char*>(frame().memory.data()));
    for (auto _ : state)
        benchmark::DoNotOptimize(OIIO::ImageBufAlgo::computePixelStats(buffer, {}, 1));
}

// A scope of the picture, counted and shown once.
template <class Scope>
struct Shown {
    explicit Shown(void (*prepare)(Scope&)) {
        if (prepare)
            prepare(scope);
        scope.setModel(&model);
        scope.resize(800, 600);
        scope.show();
        model.setImage(frame().image);
        while (!model.isCurrent())
            QCoreApplication::processEvents();
        scope.render(&image);
    }

    ScopeModel model;
    Scope scope;
    QImage image{800, 600, QImage::Format_RGB32};
};

// Repaints with the pointer at another place, and at another brightness.
template <class Scope>
void addRepaints(const std::string& name, void (*prepare)(Scope&) = nullptr) {
    Kestrel::Bench::add(name + " repainted after a hover, 800 x 600", "ours",
                        [prepare](benchmark::State& state) {
                            Shown<Scope> shown(prepare);
                            int x = 0;
                            for (auto _ : state) {
                                x = (x + 1) % 600;
                                QMouseEvent event(QEvent::MouseMove, QPointF(100 + x, 200),
                                                  shown.scope.mapToGlobal(QPoint(x, 0)),
                                                  Qt::NoButton, Qt::NoButton, Qt::NoModifier);
                                QApplication::sendEvent(&shown.scope, &event);
                                shown.scope.render(&shown.image);
                            }
                        });
    Kestrel::Bench::add(name + " repainted at another brightness, 800 x 600", "ours",
                        [prepare](benchmark::State& state) {
                            Shown<Scope> shown(prepare);
                            bool isBright = false;
                            for (auto _ : state) {
                                isBright = !isBright;
                                shown.scope.setBrightness(isBright ? 1 : 0);
                                shown.scope.render(&shown.image);
                            }
                        });
}

} // namespace

void registerBenchmarks() {
    using Kestrel::Bench::targetRatio;
    // Where it is not said otherwise, ours reads half floats of four channels (16.6 MB) and converts
    // them, and libavfilter reads planes of ready 8-bit codes (6.2 MB).
    const std::string rgb = "waveform of RGB, 256 rows, 1080p half floats";
    ScopeRequest request = parts(ScopeRequest::Waveform);
    request.waveform.values.bins = 256;
    addOurs(rgb, request);
    addFilter(rgb, "waveform=m=column:i=0.004:d=overlay:c=7", AV_PIX_FMT_GBRP);
    targetRatio(rgb, "libavfilter", 4);
    const std::string rgb8 = "waveform of RGB, 256 rows, both of 8-bit codes";
    ScopeRequest coded = request;
    coded.waveform.values = ValueRange::ofCodes(8, true);
    addOurs(rgb8, coded, 1, "ours", codes);
    addFilter(rgb8, "waveform=m=column:i=0.004:d=overlay:c=7", AV_PIX_FMT_GBRP);
    const std::string twice = "waveform of RGB by two threads";
    addOurs(twice, request, 2);
    addOurs(twice, request, 1, "one thread");
    targetRatio(twice, "one thread", 1.8);

    const std::string luma = "waveform of luma, ours 1,024 rows, theirs 256";
    request.waveform.values.bins = 1024;
    request.waveform.channels = WaveformRange::Luma;
    addOurs(luma, request);
    addFilter(luma, "waveform=m=column:i=0.004", AV_PIX_FMT_YUV444P);
    targetRatio(luma, "libavfilter", 1.5);

    const std::string vectors = "vectorscope, ours 512 x 512 with the matrix";
    addOurs(vectors, parts(ScopeRequest::Vectors));
    addFilter(vectors, "vectorscope=m=gray:i=0.004:g=none", AV_PIX_FMT_YUV444P);
    targetRatio(vectors, "libavfilter", 1.1);

    const std::string histogram = "histogram of RGB, ours by all codes of half floats";
    ScopeRequest values = parts(ScopeRequest::Values);
    values.values = ScopeRequest::RgbValues;
    addOurs(histogram, values);
    addFilter(histogram, "histogram", AV_PIX_FMT_GBRP);
    targetRatio(histogram, "libavfilter", 1.2);

    const std::string histogram8 = "histogram of RGB, both of 8-bit codes";
    addOurs(histogram8, values, 1, "ours", codes);
    addFilter(histogram8, "histogram", AV_PIX_FMT_GBRP);

    const std::string counted = "figures with the counts";
    addOurs(counted, parts(ScopeRequest::Values));
    Kestrel::Bench::add(counted, "OpenImageIO", figuresTheirs);
    addFilter(counted, "signalstats", AV_PIX_FMT_YUV444P);
    targetRatio(counted, "libavfilter", 4);
    const std::string figures = "figures of counts";
    Kestrel::Bench::add(figures, "ours", [](benchmark::State& state) {
        const ScopeResult result = countScopes(frame().image, parts(ScopeRequest::Values), 1);
        for (auto _ : state)
            benchmark::DoNotOptimize(result.values.statistics());
    });
    Kestrel::Bench::add(figures, "OpenImageIO", figuresTheirs);
    targetRatio(figures, "OpenImageIO", 50);

    const auto addTurn = [](const std::string& work, const char* who, const ScopeImage& picture,
                            Drawing drawing) {
        Kestrel::Bench::add(work, who, [picture, drawing](benchmark::State& state) {
            turn(state, picture, drawing);
        });
    };
    addTurn("colour space repainted after a turn, 800 x 600", "ours", frame().image,
            Drawing::Painter);
    const std::string full = "32,768 cells repainted after a turn";
    addTurn(full, "ours", allColors(), Drawing::Painter);
    addTurn(full, "by OpenGL", allColors(), Drawing::OpenGL);
    targetRatio(full, "by OpenGL", 8);
    const std::string hues = "hues and saturations";
    addOurs(hues, parts(ScopeRequest::Hues));

    const std::string all = "everything of a picture, theirs without a cube";
    addOurs(all, parts(ScopeRequest::AllParts));
    Kestrel::Bench::add(all, "libavfilter", [](benchmark::State& state) {
        Filter waveform("waveform=m=column:i=0.004:d=overlay:c=7", AV_PIX_FMT_GBRP);
        Filter vectorscope("vectorscope=m=gray:i=0.004:g=none", AV_PIX_FMT_YUV444P);
        Filter bins("histogram", AV_PIX_FMT_GBRP);
        Filter statistics("signalstats", AV_PIX_FMT_YUV444P);
        for (auto _ : state) {
            for (Filter* each : {&waveform, &vectorscope, &bins, &statistics})
                each->run();
        }
    });
    targetRatio(all, "libavfilter", 5);

    addRepaints<HistogramScope>("histogram");
    addRepaints<WaveformScope>("waveform of luma");
    addRepaints<WaveformScope>(
        "parade of RGB", [](WaveformScope& scope) { scope.setMode(WaveformScope::RgbParade); });
    addRepaints<WaveformScope>(
        "waveform of RGB", [](WaveformScope& scope) { scope.setMode(WaveformScope::RgbOverlay); });
    addRepaints<Vectorscope>("vectorscope");
}
