#include <KxUI/color/HalfFloat_p.h>
#include <KxUI/color/RowKernels_p.h>

#include <hwy/targets.h>
#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

using namespace Kestrel::UI;

Q_DECLARE_METATYPE(Kestrel::UI::PixelLayout)

namespace {

using Bytes = std::vector<std::uint8_t>;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(NDEBUG)
constexpr int ChromaStep = 17; // 0 and 255 are among the multiples
#else
constexpr int ChromaStep = 1;
#endif

// The scalar kernels, then all that this processor runs.
std::vector<const RowKernels*> levels() {
    std::vector<const RowKernels*> all{&scalarRowKernels()};
    for (std::int64_t left = hwy::SupportedTargets(); left != 0; left &= left - 1) {
        hwy::SetSupportedTargetsForTest(left & -left);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
        if (std::find(all.begin(), all.end(), &rowKernels()) == all.end())
            all.push_back(&rowKernels());
        hwy::SetSupportedTargetsForTest(0);
    }
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    return all;
}

// Four planes of pixels that lie `step` floats apart, among floats that nobody may touch.
struct Planes {
    Planes(int pixels, int step)
        : m_step(step)
        // Red begins at even and at odd places, at and beside the lines of the cache.
        , m_plane(std::size_t(std::abs(step)) * std::size_t(pixels + 2 + pixels / 2 % 2))
        , m_first(std::size_t(step < 0 ? -step * pixels : step))
        , samples(4 * m_plane, -77.0F) {}

    PlanarRow row(bool withAlpha) {
        float* const first = samples.data() + m_first;
        return {withAlpha ? first : nullptr, first + m_plane, first + 2 * m_plane,
                first + 3 * m_plane, m_step};
    }

    std::ptrdiff_t m_step;
    std::size_t m_plane;
    std::size_t m_first;
    std::vector<float> samples;
};

template <class T>
bool sameBits(const std::vector<T>& a, const std::vector<T>& b) {
    return std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0;
}

template <class Sample>
Bytes bytesOf(const std::vector<Sample>& samples) {
    Bytes bytes(samples.size() * sizeof(Sample));
    std::memcpy(bytes.data(), samples.data(), bytes.size());
    return bytes;
}

using Shorts = std::vector<std::uint16_t>;
using Words = std::vector<std::uint32_t>;

constexpr std::uint32_t word10(std::uint32_t low, std::uint32_t middle, std::uint32_t high) {
    return low | middle << 10 | high << 20;
}

std::vector<PixelLayout> layouts(PixelLayout first = PixelLayout(0)) {
    std::vector<PixelLayout> all;
    for (int i = int(first); i < PixelLayoutCount; ++i)
        all.push_back(PixelLayout(i));
    return all;
}

bool isFloat(PixelLayout layout) {
    return layout == PixelLayout::AYCbCrFloat || layout == PixelLayout::RGBFloat ||
           layout == PixelLayout::RGBAFloat;
}

// Any bytes, or floats within -2 to 2, after one byte that spoils the alignment.
Bytes randomRow(PixelLayout layout, int pixels, std::mt19937& random) {
    Bytes row(rowBytes(layout, pixels) + 1);
    for (std::uint8_t& each : row)
        each = std::uint8_t(random());
    for (std::size_t i = 1; isFloat(layout) && i + sizeof(float) <= row.size();
         i += sizeof(float)) {
        const float value = float(random() % 4096) / 1024.0F - 2.0F;
        std::memcpy(&row[i], &value, sizeof value);
    }
    return row;
}

} // namespace

class RowKernelsTest : public QObject {
    Q_OBJECT

private slots:
    // The last of some pixels: normalised luma, Cb and Cr, then alpha.
    void decodedValues_data() {
        const Kestrel::Test::Columns<PixelLayout, Bytes, int, QVector<float>> add(
            "layout", "row", "pixels", "expected");
        const float y = 184.0F / 219;
        const float cb = -38.0F / 224;
        const float cr = 112.0F / 224;
        add("black", PixelLayout::CbYCrY8, {128, 16, 128, 16}, 2, {0, 0, 0, 1});
        add("odd", PixelLayout::CbYCrY8, {1, 2, 3, 4, 90, 200, 240, 7}, 3, {y, cb, cr, 1});
        add("legacy MPEG", PixelLayout::CbYCrY8LegacyMpeg, {90, 1, 240, 200}, 2,
            {184.0F / 218, -38.0F / 255, 112.0F / 255, 1});
        add("legacy", PixelLayout::YCbYCr8Legacy, {1, 90, 200, 240}, 2,
            {184.0F / 218, -37.0F / 255, 112.0F / 255, 1});
        add("AYCbCr8", PixelLayout::AYCbCr8, {51, 16, 128, 128}, 1, {16.0F / 219, 0, 0, 0.2F});
        add("CbYCrA8", PixelLayout::CbYCrA8, {90, 200, 240, 16}, 1, {y, cb, cr, 0});
        add("V210", PixelLayout::V210,
            bytesOf(Words{word10(1, 2, 3), word10(4, 5, 6), word10(7, 8, 64), word10(9, 960, 940)}),
            6, {1, -0.5F, 0.5F, 1});
        add("AYCbCr16", PixelLayout::AYCbCr16, bytesOf(Shorts{13107, 60160, 4096, 61440}), 1,
            {1, -0.5F, 0.5F, 0.2F});
        add("AYCbCr16From8", PixelLayout::AYCbCr16From8,
            bytesOf(Shorts{65535, 235 * 255, 16 * 255, 240 * 255}), 1, {1, -0.5F, 0.5F, 1});
        add("float", PixelLayout::AYCbCrFloat, bytesOf(std::vector<float>{0.3F, 0.5F, 0.9F, 0.1F}),
            1,
            {0.5F * 1.1643835F, 0.8372549F / 0.8784314F - 0.502F, 0.0372549F / 0.8784314F - 0.502F,
             0.3F});
    }
    void decodedValues() {
        QFETCH(PixelLayout, layout);
        QFETCH(Bytes, row);
        QFETCH(int, pixels);
        QFETCH(QVector<float>, expected);
        const YCbCrToRgbCoefficients c{1.5F, -0.5F, -0.25F, 2.0F};
        QCOMPARE(rowBytes(layout, pixels), row.size());
        for (const bool withAlpha : {true, false}) {
            Planes planes(pixels, 1);
            const PlanarRow to = planes.row(withAlpha);
            decodeRow(layout, row.data(), to, pixels, c);
            const float y = expected[0];
            const float cb = expected[1];
            const float cr = expected[2];
            QCOMPARE(to.red[pixels - 1], y + 1.5F * cr);
            QCOMPARE(to.green[pixels - 1], y - 0.5F * cr - 0.25F * cb);
            QCOMPARE(to.blue[pixels - 1], y + 2.0F * cb);
            QCOMPARE(planes.row(true).alpha[pixels - 1], withAlpha ? expected[3] : -77.0F);
        }
    }

    // Pairs of greys with BT.709 (which leaves chroma at its centre), then alpha.
    void encodedCodes_data() {
        const Kestrel::Test::Columns<PixelLayout, QVector<float>, Bytes> add("layout", "greys",
                                                                             "expected");
        const float huge = std::numeric_limits<float>::infinity();
        add("8-bit", PixelLayout::CbYCrY8, {1, 0, 1}, {128, 235, 128, 16});
        add("8-bit, odd", PixelLayout::CbYCrY8, {0.25F, 1}, {128, 71, 128, 71});
        add("8-bit, limits", PixelLayout::CbYCrY8, {9, -9, 1}, {128, 254, 128, 1});
        add("not a number", PixelLayout::CbYCrY8, {huge, NAN, 1}, {0, 254, 0, 1});
        add("legacy MPEG", PixelLayout::CbYCrY8LegacyMpeg, {1, -1, 1}, {128, 234, 128, 0});
        add("legacy", PixelLayout::YCbYCr8Legacy, {1, 9, 1}, {234, 128, 255, 128});
        add("AYCbCr8", PixelLayout::AYCbCr8, {1, 9, 0.5F},
            {128, 219, 128, 128, 128, 238, 128, 128});
        add("CbYCrA8", PixelLayout::CbYCrA8, {1, 1}, {128, 235, 128, 235});
        add("V210", PixelLayout::V210, {1, 0, 9, NAN, 0, 0, 1},
            bytesOf(Words{word10(512, 940, 512), word10(64, 4, 1019), word10(4, 4, 512),
                          word10(64, 512, 64)}));
        add("16-bit", PixelLayout::AYCbCr16, {1, 9, 0.5F},
            bytesOf(Shorts{32768, 60160, 32768, 32768, 32768, 65535, 32768, 32768}));
        add("16-bit from 8", PixelLayout::AYCbCr16From8, {1, -9, 1},
            bytesOf(Shorts{65535, 59925, 32640, 32640, 65535, 0, 32640, 32640}));
        add("RGB8", PixelLayout::RGB8, {0.5F, 2, 0}, {128, 128, 128, 255, 255, 255});
        add("RGB10A2", PixelLayout::RGB10A2, {0.5F, 1},
            bytesOf(Words{word10(512, 512, 512) | 3U << 30}));
    }
    void encodedCodes() {
        QFETCH(PixelLayout, layout);
        QFETCH(QVector<float>, greys);
        const int pixels = int(greys.size()) - 1;
        const std::vector<float> alpha(std::size_t(pixels), greys.back());
        Bytes row(rowBytes(layout, pixels));
        encodeRow(layout, {alpha.data(), greys.data(), greys.data(), greys.data()}, pixels,
                  row.data(), colorSpaceRgbToYCbCr(ColorSpace::Rec709));
        QTEST(row, "expected");
    }

    void chromaOfAPairIsItsMean() {
        const float red[]{1, 0}, zero[]{0, 0};
        std::array<std::uint8_t, 4> row{};
        encodeRow(PixelLayout::CbYCrY8, {nullptr, red, zero, zero}, 2, row.data(),
                  colorSpaceRgbToYCbCr(ColorSpace::Rec709));
        QCOMPARE(row, (std::array<std::uint8_t, 4>{115, 63, 184, 16}));
    }

    void rgbRoundTrip() {
        std::mt19937 random(5);
        for (const PixelLayout layout : layouts(PixelLayout::RGB8)) {
            Bytes row = randomRow(layout, 5000, random);
            if (layout >= PixelLayout::RGBHalf)
                for (std::size_t i = 2; i < row.size(); i += 2)
                    row[i] &= 0xBF; // finite: what is not a number need not come back as it was
            Bytes back = row;
            std::fill(back.begin() + 1, back.end(), std::uint8_t(0));
            Planes planes(5000, 1);
            decodeRow(layout, row.data() + 1, planes.row(true), 5000);
            encodeRow(layout, planes.row(true), 5000, back.data() + 1);
            QVERIFY(back == row);
        }
    }

    void emptyRowsTouchNothing() {
        for (const PixelLayout layout : layouts()) {
            decodeRow(layout, nullptr, {}, 0);
            decodeRow(layout, nullptr, {}, 12);
            encodeRow(layout, {}, 12, nullptr);
            encodeRow(layout, {}, -3, nullptr);
        }
        decodeRow(PixelLayout::V210, nullptr, {}, 5);
        QCOMPARE(rowBytes(PixelLayout::V210, 7), std::size_t(16));
    }

    void levelsAgreeOnEveryShape() {
        std::mt19937 random(11);
        std::vector<int> widths{47, 48, 49, 64, 97, 98, 150, 186};
        for (int width = 0; width <= 33; ++width)
            widths.push_back(width);
        for (const PixelLayout layout : layouts()) {
            for (const int width : widths) {
                for (const int step : {1, 2, 3, 4, -1}) {
                    for (const bool withAlpha : {true, false}) {
                        const Bytes source = randomRow(layout, width, random);
                        Planes planes = decodeAll(layout, &source[1], width, step, withAlpha, 1);
                        if (!isFloat(layout))
                            spoil(planes.samples, random);
                        encodeAll(layout, planes, width, withAlpha, 1);
                    }
                }
            }
        }
        QCOMPARE(m_differences.join(QStringLiteral("; ")), QString());
    }

    void levelsAgreeOnEveryByte() {
        constexpr int Width = 256;
        for (const PixelLayout layout :
             {PixelLayout::CbYCrY8, PixelLayout::CbYCrY8LegacyMpeg, PixelLayout::YCbYCr8Legacy,
              PixelLayout::AYCbCr8, PixelLayout::CbYCrA8}) {
            // Where Cb, Cr, alpha or the second luma, and luma lie.
            const bool shared = layout < PixelLayout::AYCbCr8;
            const std::array<std::size_t, 4> place =
                layout == PixelLayout::YCbYCr8Legacy ? std::array<std::size_t, 4>{1, 3, 2, 0}
                : layout == PixelLayout::AYCbCr8     ? std::array<std::size_t, 4>{2, 3, 0, 1}
                                                     : std::array<std::size_t, 4>{0, 2, 3, 1};
            Bytes row(rowBytes(layout, Width));
            for (int cb = 0; cb < 256; cb += ChromaStep) {
                for (int cr = 0; cr < 256; cr += ChromaStep) {
                    for (std::size_t i = 0; i < row.size(); i += 4) {
                        row[i + place[0]] = std::uint8_t(cb);
                        row[i + place[1]] = std::uint8_t(cr);
                        row[i + place[2]] = std::uint8_t(shared ? i / 2 + 1 : i / 4);
                        row[i + place[3]] = std::uint8_t(shared ? i / 2 : i / 4);
                    }
                    for (int option = 0; option < ColorSpace::Count; ++option) {
                        Planes planes = decodeAll(layout, row.data(), Width, 1, true, option);
                        if ((cb + cr) % 8 == 0)
                            encodeAll(layout, planes, Width, true, option);
                    }
                }
            }
        }
        QCOMPARE(m_differences.join(QStringLiteral("; ")), QString());
    }

    // Powers of two and fractions by the standard library, which knows no half.
    void halvesAreWhatTheirBitsSay() {
        for (int code = 0; code < 65536; ++code) {
            const int exponent = code >> 10 & 31;
            const float sign = code < 32768 ? 1.0F : -1.0F;
            const auto fraction = float(code & 1023);
            const auto half = std::uint16_t(code);
            const float value = halfToFloat(half);
            if (exponent == 31 && fraction > 0) {
                QVERIFY(std::isnan(value) && std::isnan(halfToFloat(floatToHalf(value))));
                continue;
            }
            const float expected = exponent == 31 ? INFINITY
                                   : exponent > 0 ? std::ldexp(1024 + fraction, exponent - 25)
                                                  : std::ldexp(fraction, -24);
            QCOMPARE(bitsOfFloat(value), bitsOfFloat(sign * expected));
            QCOMPARE(floatToHalf(value), half);
            if (exponent == 31 || half % 32768 == 0x7BFF)
                continue;
            // Half-way to the next one the even code wins; a little to either side the nearer one.
            const float middle = (value + halfToFloat(std::uint16_t(half + 1))) / 2;
            QCOMPARE(int(floatToHalf(middle)), code + code % 2);
            QCOMPARE(int(floatToHalf(std::nextafter(middle, 0.0F))), code);
            QCOMPARE(int(floatToHalf(std::nextafter(middle, sign * INFINITY))), code + 1);
        }
        QCOMPARE(floatToHalf(65519.996F), std::uint16_t(0x7BFF));
        QCOMPARE(floatToHalf(-65520), std::uint16_t(0xFC00));
        QCOMPARE(floatToHalf(1e-45F), std::uint16_t(0));
        QCOMPARE(floatToHalf(-1e-45F), std::uint16_t(0x8000));
    }

    // The floats around each half and around each middle, and what no half stands for.
    void levelsAgreeOnFloatsBetweenHalves() {
        std::vector<float> samples;
        for (int code = 0; code < 65536; ++code) {
            const std::uint32_t bits = bitsOfFloat(halfToFloat(std::uint16_t(code)));
            for (const int beside : {-4097, -4096, -4095, -1, 0, 1, 4095, 4096, 4097})
                samples.push_back(floatOfBits(bits + std::uint32_t(beside)));
        }
        const int width = int(samples.size());
        Planes planes(width, 1);
        for (std::size_t plane = 0; plane < 4; ++plane)
            std::copy(samples.begin(), samples.end(),
                      planes.row(true).alpha + std::ptrdiff_t(plane * planes.m_plane));
        encodeAll(PixelLayout::RGBHalf, planes, width, false, 0);
        encodeAll(PixelLayout::RGBAHalf, planes, width, true, 0);
        QCOMPARE(m_differences.join(QStringLiteral("; ")), QString());
    }

    // Every 16-bit code of each component; enough random words for every code of ten bits.
    void levelsAgreeOnEveryWideCode() {
        constexpr std::size_t Width = 65536;
        Bytes row(8 * Width);
        for (std::size_t i = 0; i < Width; ++i) {
            for (std::size_t k = 0; k < 4; ++k) {
                const auto code = std::uint16_t(i * (2 * k + 1) + k);
                std::memcpy(&row[8 * i + 2 * k], &code, sizeof code);
            }
        }
        std::mt19937 random(13);
        for (const PixelLayout layout :
             {PixelLayout::AYCbCr16, PixelLayout::AYCbCr16From8, PixelLayout::RGBA16,
              PixelLayout::RGBHalf, PixelLayout::RGBAHalf, PixelLayout::V210,
              PixelLayout::RGB10A2}) {
            if (layout == PixelLayout::V210 || layout == PixelLayout::RGB10A2)
                row = randomRow(layout, Width, random);
            Planes planes = decodeAll(layout, row.data(), Width, 1, true, 0);
            encodeAll(layout, planes, Width, true, 0);
        }
        QCOMPARE(m_differences.join(QStringLiteral("; ")), QString());
    }

private:
    // Puts in what only an encoder meets.
    static void spoil(std::vector<float>& samples, std::mt19937& random) {
        const std::array<float, 4> odd{NAN, INFINITY, -INFINITY, 1e30F};
        for (float& each : samples) {
            const std::size_t pick = random() % 64;
            each = pick < odd.size() ? odd[pick] : each * 1.5F - 0.25F;
        }
    }

    static std::size_t wholePixels(PixelLayout layout, int width) {
        return std::size_t(layout == PixelLayout::V210 ? width - width % 6 : width);
    }

    // Decodes at every level and notes differences from the scalar result, which is returned.
    Planes decodeAll(PixelLayout layout, const std::uint8_t* source, int width, int step,
                     bool withAlpha, int option) {
        Planes expected(width, step);
        for (const RowKernels* level : m_levels) {
            Planes planes(width, step);
            if (const std::size_t pixels = wholePixels(layout, width))
                level->decode[std::size_t(layout)](source, planes.row(withAlpha), pixels,
                                                   codeScale(layout), colorSpaceYCbCrToRgb(option));
            if (level == m_levels.front())
                expected = planes;
            else if (!sameBits(planes.samples, expected.samples))
                note("decoding", *level, layout, width);
        }
        return expected;
    }

    void encodeAll(PixelLayout layout, Planes& planes, int width, bool withAlpha, int option) {
        Bytes expected;
        for (const RowKernels* level : m_levels) {
            Bytes row(rowBytes(layout, width) + 2, 99);
            if (const std::size_t pixels = wholePixels(layout, width))
                level->encode[std::size_t(layout)](planes.row(withAlpha), pixels, &row[1],
                                                   codeScale(layout), colorSpaceRgbToYCbCr(option));
            if (level == m_levels.front())
                expected = row;
            else if (row != expected)
                note("encoding", *level, layout, width);
        }
    }

    void note(const char* what, const RowKernels& level, PixelLayout layout, int width) {
        if (m_differences.size() < 20)
            m_differences += QStringLiteral("%1 at %2: layout %3, width %4")
                                 .arg(QLatin1String(what), QLatin1String(level.name))
                                 .arg(int(layout))
                                 .arg(width);
    }

    const std::vector<const RowKernels*> m_levels = levels();
    QStringList m_differences;
};

KXUI_TEST(RowKernelsTest);
#include "RowKernelsTest.moc"
