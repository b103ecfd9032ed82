#include <KxUI/color/ColorConversions.h>

#include <KxUI/color/RowKernels_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

struct Option {
    const char* name;
    YCbCrToRgbCoefficients toRgb;
    RgbToYCbCrMatrix toYCbCr;
};

// ITU-R BT.709 and BT.601, then the host's own, which are to be kept digit by digit.
constexpr std::array<Option, ColorSpace::Count> Options{{
    {"Rec 709",
     {1.5748F, -0.468124F, -0.187324F, 1.8556F},
     {{0.2126F, 0.7152F, 0.0722F}, {-0.114572F, -0.385428F, 0.5F}, {0.5F, -0.454153F, -0.045847F}}},
    {"Rec 601",
     {1.402F, -0.714136F, -0.344136F, 1.772F},
     {{0.299F, 0.587F, 0.114F}, {-0.168736F, -0.331264F, 0.5F}, {0.5F, -0.418688F, -0.081312F}}},
    {"Nova Legacy",
     {1.5966F, -0.813202F, -0.391998F, 2.0184F},
     {{0.298984F, 0.587011F, 0.114005F},
      {-0.148129F, -0.29083F, 0.438959F},
      {0.439068F, -0.367663F, -0.071405F}}},
    {"Nova Legacy MPEG",
     {1.5883F, -0.813202F, -0.391998F, 2.0457F},
     {{0.300534F, 0.586987F, 0.112479F},
      {-0.14691F, -0.286937F, 0.433847F},
      {0.440386F, -0.369569F, -0.070817F}}},
    {"Nova Legacy YUVS",
     {1.596F, -0.81511F, -0.37294F, 2.0472F},
     {{0.301685F, 0.590705F, 0.107609F},
      {-0.147365F, -0.288543F, 0.435908F},
      {0.437541F, -0.370116F, -0.067424F}}},
}};

const Option& option(int index) noexcept {
    const bool known = index >= 0 && index < ColorSpace::Count;
    return Options[std::size_t(known ? index : ColorSpace::Rec709)];
}

struct Layout {
    int colorSpace;
    CodeScale scale;
};

constexpr CodeScale rgb(float highest, float highestAlpha) {
    return {0, highest, 0, 0, highest, 0, highestAlpha, 0, highest, 0, highest, highestAlpha};
}

// In the order of PixelLayout. Scales: luma offset and range, Cb and Cr offset and their range,
// alpha offset and range, limits of luma codes and of chroma codes, highest alpha code.
constexpr std::array<Layout, PixelLayoutCount> Layouts{{
    {ColorSpace::NovaLegacy, {16, 219, 128, 128, 224, 0, 1, 1, 254, 0, 255, 0}},
    {ColorSpace::NovaLegacyMpeg, {16, 218, 128, 128, 255, 0, 1, 0, 255, 0, 255, 0}},
    {ColorSpace::NovaLegacy, {16, 218, 127, 128, 255, 0, 1, 0, 255, 0, 255, 0}},
    {ColorSpace::NovaLegacy, {0, 219, 128, 128, 224, 0, 255, 0, 238, 0, 255, 255}},
    {ColorSpace::Rec709, {16, 219, 128, 128, 224, 16, 219, 1, 254, 0, 255, 255}},
    {ColorSpace::Rec709, {64, 876, 512, 512, 896, 0, 1, 4, 1019, 4, 1019, 0}},
    {ColorSpace::Rec709, {4096, 56064, 32768, 32768, 57344, 0, 65535, 0, 65535, 0, 65535, 65535}},
    {ColorSpace::Rec709, {4080, 55845, 32640, 32640, 57120, 0, 65535, 0, 65535, 0, 65535, 65535}},
    {ColorSpace::NovaLegacy, rgb(1, 1)},
    {ColorSpace::Rec709, rgb(255, 1)},
    {ColorSpace::Rec709, rgb(255, 255)},
    {ColorSpace::Rec709, rgb(255, 255)},
    {ColorSpace::Rec709, rgb(1023, 3)},
    {ColorSpace::Rec709, rgb(65535, 1)},
    {ColorSpace::Rec709, rgb(65535, 65535)},
    {ColorSpace::Rec709, rgb(1, 1)},
    {ColorSpace::Rec709, rgb(1, 1)},
    {ColorSpace::Rec709, rgb(1, 1)},
    {ColorSpace::Rec709, rgb(1, 1)},
}};

// How many of `pixels` a layout holds.
std::size_t wholePixels(PixelLayout layout, int pixels) noexcept {
    const auto count = std::size_t(std::max(pixels, 0));
    return layout == PixelLayout::V210 ? count - count % 6 : count;
}

struct LumaWeights {
    LumaWeights(double kr, double kb) noexcept {
        if (kr > 0 && kb > 0 && kr + kb < 1) {
            red = kr;
            blue = kb;
        }
        green = 1 - red - blue;
    }

    double red = 0.2126;
    double blue = 0.0722;
    double green = 0;
};

} // namespace

const char* colorSpaceName(int index) noexcept {
    return option(index).name;
}

const YCbCrToRgbCoefficients& colorSpaceYCbCrToRgb(int index) noexcept {
    return option(index).toRgb;
}

const RgbToYCbCrMatrix& colorSpaceRgbToYCbCr(int index) noexcept {
    return option(index).toYCbCr;
}

RgbToYCbCrMatrix rgbToYCbCrMatrix(double kr, double kb) noexcept {
    const LumaWeights k(kr, kb);
    const double ofBlue = 0.5 / (1 - k.blue);
    const double ofRed = 0.5 / (1 - k.red);
    return {{float(k.red), float(k.green), float(k.blue)},
            {float(-k.red * ofBlue), float(-k.green * ofBlue), 0.5F},
            {0.5F, float(-k.green * ofRed), float(-k.blue * ofRed)}};
}

YCbCrToRgbCoefficients yCbCrToRgbCoefficients(double kr, double kb) noexcept {
    const LumaWeights k(kr, kb);
    const double crToRed = 2 * (1 - k.red);
    const double cbToBlue = 2 * (1 - k.blue);
    return {float(crToRed), float(-crToRed * k.red / k.green), float(-cbToBlue * k.blue / k.green),
            float(cbToBlue)};
}

void rgbToStudioYCbCr(float red, float green, float blue, float& luma, float& cb,
                      float& cr) noexcept {
    luma = 0.257F * red + 0.504F * green + 0.098F * blue + 0.0627451F;
    cb = 0.439F * blue - (0.148F * red + 0.291F * green);
    cr = 0.439F * red - 0.368F * green - 0.071F * blue;
}

void rgbToFullYCbCr(float red, float green, float blue, float& luma, float& cb,
                    float& cr) noexcept {
    luma = 0.299F * red + 0.587F * green + 0.114F * blue;
    cb = 0.5F * blue - (0.331264F * green + 0.168736F * red);
    cr = 0.5F * red - 0.418688F * green - 0.081312F * blue;
}

void yiqToRgb(float y, float i, float q, float& red, float& green, float& blue) noexcept {
    red = y + 0.9563F * i + 0.621F * q;
    green = y - 0.2721F * i - 0.6474F * q;
    blue = y - 1.107F * i + 1.7046F * q;
}

void rgbToHsv(float red, float green, float blue, float& hue, float& saturation,
              float& value) noexcept {
    value = std::max({red, green, blue});
    const float chroma = value - std::min({red, green, blue});
    hue = 0.0F;
    saturation = 0.0F;
    if (!(chroma > 0.0F && value > 0.0F))
        return;
    saturation = chroma / value;
    float sixths = 0.0F;
    if (value == red)
        sixths = (green - blue) / chroma;
    else if (value == green)
        sixths = 2.0F + (blue - red) / chroma;
    else
        sixths = 4.0F + (red - green) / chroma;
    hue = sixths / 6.0F;
    if (hue < 0.0F)
        hue += 1.0F;
    // A tiny negative hue rounds to 1, which is the red of 0.
    if (hue >= 1.0F)
        hue = 0.0F;
}

void hsvToRgb(float hue, float saturation, float value, float& red, float& green,
              float& blue) noexcept {
    const float sixths = std::isfinite(hue) ? (hue - std::floor(hue)) * 6.0F : 0.0F;
    const int sector = static_cast<int>(sixths);
    const float part = sixths - static_cast<float>(sector);
    const float low = value * (1.0F - saturation);
    const float falling = value * (1.0F - saturation * part);
    const float rising = value * (1.0F - saturation * (1.0F - part));
    const auto put = [&](float r, float g, float b) {
        red = r;
        green = g;
        blue = b;
    };
    switch (sector) {
    case 1:
        return put(falling, value, low);
    case 2:
        return put(low, value, rising);
    case 3:
        return put(low, falling, value);
    case 4:
        return put(rising, low, value);
    case 5:
        return put(value, low, falling);
    default: // 0, or 6 where a tiny negative hue wrapped to 1
        return put(value, rising, low);
    }
}

const CodeScale& codeScale(PixelLayout layout) noexcept {
    return Layouts[std::size_t(layout)].scale;
}

std::size_t rowBytes(PixelLayout layout, int pixels) noexcept {
    const RowKernels::Group group = scalarRowKernels().group[std::size_t(layout)];
    return (wholePixels(layout, pixels) + group.pixels - 1) / group.pixels * group.bytes;
}

int rowColorSpace(PixelLayout layout) noexcept {
    return Layouts[std::size_t(layout)].colorSpace;
}

void decodeRow(PixelLayout layout, const void* source, const PlanarRow& to, int pixels,
               const YCbCrToRgbCoefficients& coefficients) noexcept {
    const auto index = std::size_t(layout);
    const std::size_t count = wholePixels(layout, pixels);
    if (count != 0 && source && to.red && to.green && to.blue)
        rowKernels().decode[index](source, to, count, codeScale(layout), coefficients);
}

void decodeRow(PixelLayout layout, const void* source, const PlanarRow& to, int pixels) noexcept {
    decodeRow(layout, source, to, pixels, colorSpaceYCbCrToRgb(rowColorSpace(layout)));
}

void encodeRow(PixelLayout layout, const ConstPlanarRow& from, int pixels, void* destination,
               const RgbToYCbCrMatrix& matrix) noexcept {
    const auto index = std::size_t(layout);
    const std::size_t count = wholePixels(layout, pixels);
    if (count != 0 && destination && from.red && from.green && from.blue)
        rowKernels().encode[index](from, count, destination, codeScale(layout), matrix);
}

void encodeRow(PixelLayout layout, const ConstPlanarRow& from, int pixels,
               void* destination) noexcept {
    encodeRow(layout, from, pixels, destination, colorSpaceRgbToYCbCr(rowColorSpace(layout)));
}

} // namespace Kestrel::UI
