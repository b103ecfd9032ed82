#include <KxUI/color/ColorConversions.h>

#include <support/TestRegistry.h>

#include <array>
#include <cmath>
#include <limits>

using namespace Kestrel::UI;

namespace {

using Color = std::array<float, 3>;

bool near(const Color& a, const Color& b, float tolerance) {
    for (std::size_t i = 0; i < 3; ++i) {
        if (!(std::abs(a[i] - b[i]) <= tolerance))
            return false;
    }
    return true;
}

// The colour bars of 100 % amplitude, white to blue, that the standards print as 8-bit codes.
constexpr std::array<Color, 7> Bars{
    {{1, 1, 1}, {1, 1, 0}, {0, 1, 1}, {0, 1, 0}, {1, 0, 1}, {1, 0, 0}, {0, 0, 1}}};
using BarCodes = std::array<std::array<int, 3>, 7>;
constexpr BarCodes Bt601{{{235, 128, 128},
                          {210, 16, 146},
                          {170, 166, 16},
                          {145, 54, 34},
                          {106, 202, 222},
                          {81, 90, 240},
                          {41, 240, 110}}};
constexpr BarCodes Bt709{{{235, 128, 128},
                          {219, 16, 138},
                          {188, 154, 16},
                          {173, 42, 26},
                          {78, 214, 230},
                          {63, 102, 240},
                          {32, 240, 118}}};

} // namespace

class ColorConversionsTest : public QObject {
    Q_OBJECT

private slots:
    void options() {
        QStringList names;
        for (int i = 0; i < ColorSpace::Count; ++i)
            names += QString::fromLatin1(colorSpaceName(i));
        QCOMPARE(names.join(QLatin1Char('|')),
                 "Rec 709|Rec 601|Nova Legacy|Nova Legacy MPEG|Nova Legacy YUVS");
        for (const int unknown : {-1, 5}) {
            QCOMPARE(&colorSpaceYCbCrToRgb(unknown), &colorSpaceYCbCrToRgb(0));
            QCOMPARE(&colorSpaceRgbToYCbCr(unknown), &colorSpaceRgbToYCbCr(0));
        }
    }

    // Each matrix undoes its coefficients, the legacy ones once their studio range is removed.
    void matricesInvert() {
        for (int i = 0; i < ColorSpace::Count; ++i) {
            const RgbToYCbCrMatrix& m = colorSpaceRgbToYCbCr(i);
            const YCbCrToRgbCoefficients& c = colorSpaceYCbCrToRgb(i);
            for (const Color& bar : Bars) {
                const auto dot = [&](const std::array<float, 3>& row) {
                    return row[0] * bar[0] + row[1] * bar[1] + row[2] * bar[2];
                };
                const float y = dot(m.luma);
                const Color back{y + c.crToRed * dot(m.cr),
                                 y + c.crToGreen * dot(m.cr) + c.cbToGreen * dot(m.cb),
                                 y + c.cbToBlue * dot(m.cb)};
                QVERIFY2(near(back, bar, i < 2 ? 1e-5F : 0.012F), colorSpaceName(i));
            }
        }
    }

    void matricesOfLumaWeights() {
        const auto close = [](float a, double b) { return std::abs(double(a) - b) < 1e-6; };
        const RgbToYCbCrMatrix m = rgbToYCbCrMatrix(0.2627, 0.0593);
        QVERIFY(close(m.luma[1], 0.678) && close(m.cb[0], -0.139630) && close(m.cb[1], -0.360370));
        QVERIFY(close(m.cr[1], -0.459786) && close(m.cr[2], -0.040214));
        const YCbCrToRgbCoefficients c = yCbCrToRgbCoefficients(0.2627, 0.0593);
        QVERIFY(close(c.crToRed, 1.4746) && close(c.crToGreen, -0.571353));
        QVERIFY(close(c.cbToGreen, -0.164553) && close(c.cbToBlue, 1.8814));
        for (const auto& [kr, kb] : {std::pair(0.0, 0.1), {0.1, -1.0}, {0.5, 0.5}, {qQNaN(), 0.1}})
            QCOMPARE(rgbToYCbCrMatrix(kr, kb).luma, colorSpaceRgbToYCbCr(ColorSpace::Rec709).luma);
    }

    void colourBars() {
        for (const int option : {ColorSpace::Rec601, ColorSpace::Rec709}) {
            const BarCodes& codes = option == ColorSpace::Rec601 ? Bt601 : Bt709;
            for (std::size_t i = 0; i < Bars.size(); ++i) {
                const Color& bar = Bars[i];
                std::array<std::uint8_t, 4> packed{};
                encodeRow(PixelLayout::CbYCrY8, {nullptr, &bar[0], &bar[1], &bar[2]}, 1,
                          packed.data(), colorSpaceRgbToYCbCr(option));
                QCOMPARE((std::array<int, 3>{packed[1], packed[0], packed[2]}), codes[i]);
                Color back{};
                decodeRow(PixelLayout::CbYCrY8, packed.data(),
                          {nullptr, &back[0], &back[1], &back[2], 1}, 1,
                          colorSpaceYCbCrToRgb(option));
                QVERIFY(near(back, bar, 0.009F));
            }
        }
    }

    void singleColours() {
        Color out{};
        rgbToStudioYCbCr(1, 1, 1, out[0], out[1], out[2]);
        QVERIFY(near(out, {235.0F / 255, 0, 0}, 0.001F));
        rgbToStudioYCbCr(0, 0, 1, out[0], out[1], out[2]);
        QVERIFY(near(out, {0.1607451F, 0.439F, -0.071F}, 1e-6F));
        rgbToFullYCbCr(1, 0, 0, out[0], out[1], out[2]);
        QVERIFY(near(out, {0.299F, -0.168736F, 0.5F}, 1e-6F));
        yiqToRgb(0.5F, 0.1F, -0.2F, out[0], out[1], out[2]);
        QVERIFY(near(out, {0.47143F, 0.60227F, 0.04838F}, 1e-5F));
    }

    void hsv() {
        const std::array<std::pair<Color, Color>, 7> known{
            {{{0, 0, 0}, {0, 0, 0}},
             {{0.5F, 0.5F, 0.5F}, {0, 0, 0.5F}},
             {{1, 0.5F, 0}, {1.0F / 12, 1, 1}},
             {{0.4F, 0.8F, 0.4F}, {2.0F / 6, 0.5F, 0.8F}},
             {{0, 2, 2}, {0.5F, 1, 2}},
             {{0, 0, 1}, {4.0F / 6, 1, 1}},
             {{1, 0, 1}, {5.0F / 6, 1, 1}}}};
        for (const auto& [rgb, hsv] : known) {
            Color out{};
            rgbToHsv(rgb[0], rgb[1], rgb[2], out[0], out[1], out[2]);
            QVERIFY(near(out, hsv, 1e-6F));
            for (const float turns : {0.0F, 1.0F, -3.0F}) {
                hsvToRgb(hsv[0] + turns, hsv[1], hsv[2], out[0], out[1], out[2]);
                QVERIFY(near(out, rgb, 5e-6F));
            }
        }
    }

    void hueStaysBelowOne() {
        Color out{};
        rgbToHsv(1.0F, 0.0F, std::numeric_limits<float>::denorm_min(), out[0], out[1], out[2]);
        QCOMPARE(out[0], 0.0F);
        for (const float hue : {-1e-9F, NAN, INFINITY}) {
            hsvToRgb(hue, 1, 1, out[0], out[1], out[2]);
            QVERIFY(near(out, {1, 0, 0}, 1e-6F));
        }
        rgbToHsv(-1, -2, -3, out[0], out[1], out[2]);
        QCOMPARE(out, (Color{0, 0, -1}));
    }
};

KXUI_TEST(ColorConversionsTest);
#include "ColorConversionsTest.moc"
