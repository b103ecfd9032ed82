#include <KxUI/color/ColorConversions.h>
#include <KxUI/color/RowKernels_p.h>

extern "C" {
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}
#include <libyuv.h>
#include <support/Bench.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

using namespace Kestrel::UI;

namespace {

constexpr int Width = 1920;
constexpr int Height = 1080;
constexpr std::size_t Pixels = std::size_t(Width) * Height;

std::vector<std::uint8_t> noise(std::size_t bytes) {
    std::vector<std::uint8_t> all(bytes);
    std::mt19937 random(1);
    for (std::uint8_t& each : all)
        each = std::uint8_t(random());
    return all;
}

struct PackedFrame {
    explicit PackedFrame(PixelLayout packing)
        : layout(packing)
        , stride(rowBytes(packing, Width))
        , bytes(noise(stride * Height)) {}

    std::uint8_t* row(int y) { return bytes.data() + std::size_t(y) * stride; }

    PixelLayout layout;
    std::size_t stride;
    std::vector<std::uint8_t> bytes;
};

// Four planes of floats: green, blue and red, as libswscale orders them, and alpha.
struct PlanarFrame {
    PlanarFrame() {
        std::mt19937 random(2);
        std::uniform_real_distribution<float> unit(0.0F, 1.0F);
        for (auto& plane : planes) {
            plane.resize(Pixels);
            for (float& each : plane)
                each = unit(random);
        }
    }

    PlanarRow row(int y, bool withAlpha) {
        const std::size_t start = std::size_t(y) * Width;
        return {withAlpha ? &planes[3][start] : nullptr, &planes[2][start], &planes[0][start],
                &planes[1][start], 1};
    }

    std::array<std::vector<float>, 4> planes;
};

// libswscale, with a filter that treats chroma as ours does: two pixels share it when decoding
// (SWS_POINT), and give their mean when encoding (SWS_AREA).
class Swscale {
public:
    Swscale(AVPixelFormat from, AVPixelFormat to, int filter)
        : m_context(sws_getContext(Width, Height, from, Width, Height, to, filter, nullptr, nullptr,
                                   nullptr),
                    &sws_freeContext) {}

    void operator()(const std::array<const void*, 4>& from, const std::array<int, 4>& fromStrides,
                    const std::array<void*, 4>& to, const std::array<int, 4>& toStrides) const {
        std::array<const std::uint8_t*, 4> source{};
        std::array<std::uint8_t*, 4> destination{};
        for (std::size_t i = 0; i < 4; ++i) {
            source[i] = static_cast<const std::uint8_t*>(from[i]);
            destination[i] = static_cast<std::uint8_t*>(to[i]);
        }
        sws_scale(m_context.get(), source.data(), fromStrides.data(), 0, Height, destination.data(),
                  toStrides.data());
    }

private:
    std::unique_ptr<SwsContext, decltype(&sws_freeContext)> m_context;
};

constexpr int FloatStride = Width * int(sizeof(float));
constexpr std::array<int, 4> FloatStrides{FloatStride, FloatStride, FloatStride, FloatStride};

template <class Work>
void measure(benchmark::State& state, const Work& work) {
    for (auto _ : state) {
        work();
        benchmark::ClobberMemory();
    }
}

void addOurDecode(const std::string& work, PixelLayout layout, bool withAlpha) {
    Kestrel::Bench::add(work, "ours", [=](benchmark::State& state) {
        PackedFrame source(layout);
        PlanarFrame frame;
        measure(state, [&] {
            for (int y = 0; y < Height; ++y)
                decodeRow(layout, source.row(y), frame.row(y, withAlpha), Width);
        });
    });
}

void addOurEncode(const std::string& work, PixelLayout layout, bool withAlpha) {
    Kestrel::Bench::add(work, "ours", [=](benchmark::State& state) {
        PackedFrame destination(layout);
        PlanarFrame frame;
        measure(state, [&] {
            for (int y = 0; y < Height; ++y)
                encodeRow(layout, frame.row(y, withAlpha), Width, destination.row(y));
        });
    });
}

// Decoding by libswscale from planes of the given strides that lie one after the other.
void addSwscaleDecode(const std::string& work, AVPixelFormat format,
                      const std::array<int, 4>& strides, bool withAlpha) {
    Kestrel::Bench::add(work, "libswscale", [=](benchmark::State& state) {
        std::size_t size = 0;
        for (const int stride : strides)
            size += std::size_t(stride) * Height;
        const std::vector<std::uint8_t> source = noise(size);
        std::array<const void*, 4> planes{};
        const std::uint8_t* next = source.data();
        for (std::size_t i = 0; i < 4 && strides[i] > 0; ++i) {
            planes[i] = next;
            next += std::size_t(strides[i]) * Height;
        }
        PlanarFrame frame;
        auto& to = frame.planes;
        const Swscale swscale(format, withAlpha ? AV_PIX_FMT_GBRAPF32LE : AV_PIX_FMT_GBRPF32LE,
                              SWS_POINT);
        measure(state, [&] {
            swscale(planes, strides,
                    {to[0].data(), to[1].data(), to[2].data(), withAlpha ? to[3].data() : nullptr},
                    FloatStrides);
        });
    });
}

void addMemset(const std::string& work, std::size_t planes) {
    Kestrel::Bench::add(work, "memset of the output", [=](benchmark::State& state) {
        PlanarFrame frame;
        measure(state, [&] {
            for (std::size_t i = 0; i < planes; ++i)
                std::memset(frame.planes[i].data(), 1, Pixels * sizeof(float));
        });
    });
}

} // namespace

/** Those of the wheel, in a file of their own. */
void registerColorWheelBenchmarks();

void registerBenchmarks() {
    registerColorWheelBenchmarks();

    using namespace Kestrel::Bench;

    const std::string decode422 = "1080p frame: 8-bit 4:2:2 to planar float";
    addOurDecode(decode422, PixelLayout::CbYCrY8, false);
    addSwscaleDecode(decode422, AV_PIX_FMT_UYVY422, {Width * 2, 0, 0, 0}, false);
    addMemset(decode422, 3);
    add(decode422, "libyuv (to 8-bit RGBA)", [](benchmark::State& state) {
        PackedFrame source(PixelLayout::CbYCrY8);
        PackedFrame destination(PixelLayout::BGRA8);
        measure(state, [&] {
            libyuv::UYVYToARGB(source.row(0), int(source.stride), destination.row(0),
                               int(destination.stride), Width, Height);
        });
    });
    targetRatio(decode422, "libswscale", 5);
    targetRatio(decode422, "memset of the output", 1 / 1.5);

    const std::string decodeV210 = "1080p frame: V210 to planar float";
    addOurDecode(decodeV210, PixelLayout::V210, false);
    addSwscaleDecode(decodeV210, AV_PIX_FMT_YUV422P10LE, {Width * 2, Width, Width, 0}, false);
    targetRatio(decodeV210, "libswscale", 4);

    const std::string decode16 = "1080p frame: 16-bit AYCbCr to planar float";
    addOurDecode(decode16, PixelLayout::AYCbCr16, true);
    addSwscaleDecode(decode16, AV_PIX_FMT_AYUV64LE, {Width * 8, 0, 0, 0}, true);
    addMemset(decode16, 4);
    targetRatio(decode16, "libswscale", 4);

    const std::string encode422 = "1080p frame: planar float to 8-bit 4:2:2";
    addOurEncode(encode422, PixelLayout::CbYCrY8, false);
    add(encode422, "libswscale", [](benchmark::State& state) {
        PlanarFrame frame;
        PackedFrame destination(PixelLayout::CbYCrY8);
        const Swscale swscale(AV_PIX_FMT_GBRPF32LE, AV_PIX_FMT_UYVY422, SWS_AREA);
        measure(state, [&] {
            swscale({frame.planes[0].data(), frame.planes[1].data(), frame.planes[2].data()},
                    FloatStrides, {destination.row(0)}, {int(destination.stride), 0, 0, 0});
        });
    });
    add(encode422, "libyuv (from 8-bit RGBA)", [](benchmark::State& state) {
        PackedFrame source(PixelLayout::BGRA8);
        PackedFrame destination(PixelLayout::CbYCrY8);
        measure(state, [&] {
            libyuv::ARGBToUYVY(source.row(0), int(source.stride), destination.row(0),
                               int(destination.stride), Width, Height);
        });
    });
    targetRatio(encode422, "libswscale", 8);

    const auto name = [](const char* layout, const char* direction) {
        return std::string("1080p frame: ") + layout + direction;
    };
    const std::array<std::pair<const char*, PixelLayout>, 6> others{
        {{"8-bit AYCbCr", PixelLayout::AYCbCr8},
         {"float AYCbCr", PixelLayout::AYCbCrFloat},
         {"8-bit RGB", PixelLayout::RGB8},
         {"8-bit BGRA", PixelLayout::BGRA8},
         {"10-bit RGB with 2-bit alpha", PixelLayout::RGB10A2},
         {"16-bit RGBA", PixelLayout::RGBA16}}};
    for (const auto& [text, layout] : others) {
        addOurDecode(name(text, " to planar float"), layout, true);
        addOurEncode(name(text, " from planar float"), layout, true);
    }
    addOurEncode(name("V210", " from planar float"), PixelLayout::V210, false);
}
