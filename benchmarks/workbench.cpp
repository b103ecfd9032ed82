#include "workbench_play.h"

#include <support/Bench.h>

#include "grade/PreparedGrade.h"
#include "media/Histogram.h"

#include <qfloat16.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

using namespace Kestrel::Workbench;

namespace {

constexpr int Width = 1920;
constexpr int Height = 1080;
constexpr SampleFormat HalfLinear{SampleFormat::Type::Half, Encoding::SceneLinear};

/** Shades with highlights and grain: what a table's neighbourhoods see of a real picture. */
std::vector<std::uint16_t> halfPicture() {
    std::mt19937 random(1);
    std::normal_distribution<float> grain(1.0F, 0.05F);
    std::vector<std::uint16_t> rgb;
    rgb.reserve(std::size_t(Width) * Height * 3);
    for (int y = 0; y < Height; ++y) {
        for (int x = 0; x < Width; ++x) {
            const float shade = 0.02F + 1.3F * float(x) / Width * float(y) / Height;
            for (const float tint : {0.9F, 1.0F, 1.15F}) {
                const qfloat16 half(shade * tint * grain(random));
                std::uint16_t bits = 0;
                std::memcpy(&bits, &half, sizeof(bits));
                rgb.push_back(bits);
            }
        }
    }
    return rgb;
}

std::vector<QRgb> screenPicture() {
    const PreparedGrade identity({}, HalfLinear);
    const std::vector<std::uint16_t> rgb = halfPicture();
    std::vector<QRgb> pixels(std::size_t(Width) * Height);
    identity.gradeRow(rgb.data(), pixels.data(), Width * Height);
    return pixels;
}

Grade warmGrade() {
    Grade grade;
    grade.gain = {0.08F, 0.15F, 0.95F};
    grade.exposure = 0.7F;
    for (int slot = 0; slot < Grade::Slots; ++slot) {
        Kestrel::UI::Curve curve(8, 4);
        curve.setKnot(1, {0.3F, 0.22F + 0.02F * float(slot), false});
        curve.setKnot(2, {0.7F, 0.8F, false});
        grade.curves.setCurve(slot, curve);
    }
    return grade;
}

/** A frame a turn, row by row as the workers do it, on this thread alone. */
template <class Sample>
void gradeFrames(benchmark::State& state, const PreparedGrade& grade,
                 const std::vector<Sample>& picture, std::size_t samplesAPixel) {
    std::vector<QRgb> out(std::size_t(Width) * Height);
    for (auto _ : state) {
        for (std::size_t y = 0; y < Height; ++y)
            grade.gradeRow(picture.data() + y * Width * samplesAPixel, out.data() + y * Width,
                           Width);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}

} // namespace

void registerBenchmarks() {
    using namespace Kestrel::Bench;
    registerPlayBenchmarks();

    const std::string half = "graded playback: a frame of half floats, 1920 x 1080";
    add(half, "ours", [](benchmark::State& state) {
        gradeFrames(state, PreparedGrade(warmGrade(), HalfLinear), halfPicture(), 3);
    });
    target(half, 4000);

    const std::string screen = "graded playback: a frame of 8-bit codes, 1920 x 1080";
    add(screen, "ours", [](benchmark::State& state) {
        gradeFrames(state, PreparedGrade(warmGrade(), {}), screenPicture(), 1);
    });
    target(screen, 4000);

    add("graded playback: half floats with YCbCr preview, 1920 x 1080", "ours",
        [](benchmark::State& state) {
            Grade grade = warmGrade();
            grade.preview = Kestrel::UI::ColorSpace::Rec709;
            gradeFrames(state, PreparedGrade(grade, HalfLinear), halfPicture(), 3);
        });

    add("grade: its tables, after a change", "ours", [](benchmark::State& state) {
        const Grade grade = warmGrade();
        for (auto _ : state) {
            const PreparedGrade prepared(grade, HalfLinear);
            benchmark::DoNotOptimize(&prepared);
        }
    });

    add("grade: its tables, for a frame of another exposure", "ours", [](benchmark::State& state) {
        const GradeTables tables(warmGrade(), HalfLinear);
        float stops = -1.0F;
        for (auto _ : state) {
            const PreparedGrade prepared(tables, stops);
            benchmark::DoNotOptimize(&prepared);
            stops = -stops;
        }
    });

    add("histogram of a frame, 1920 x 1080", "ours", [](benchmark::State& state) {
        const std::vector<QRgb> pixels = screenPicture();
        const QImage picture(reinterpret_cast<const uchar*>(pixels.data()), Width, Height,
                             QImage::Format_RGB32);
        for (auto _ : state) {
            const Histogram histogram = Histogram::of(picture);
            benchmark::DoNotOptimize(&histogram);
        }
    });
}
