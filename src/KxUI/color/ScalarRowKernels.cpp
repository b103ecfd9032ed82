#include <KxUI/color/PixelPacking_p.h>

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace Kestrel::UI {
namespace {

using namespace Packing;
using namespace Components;

using Byte = std::uint8_t;

// One pixel: x, y, z are luma, Cb and Cr, or red, green and blue.
struct Pixel {
    float alpha;
    float x;
    float y;
    float z;
};

template <std::size_t Count>
using Pixels = std::array<Pixel, Count>;

template <class Sample, std::size_t Count>
std::array<Sample, Count> load(const Byte* from) {
    std::array<Sample, Count> samples;
    std::memcpy(samples.data(), from, sizeof samples);
    return samples;
}

template <class Sample, std::size_t Count>
void store(const std::array<Sample, Count>& samples, Byte* to) {
    std::memcpy(to, samples.data(), sizeof samples);
}

// ---- Groups of pixels from and to memory: codes as floats in, codes as floats out.

template <int Cb, int Y0, int Cr, int Y1>
void unpack(Pairs8<Cb, Y0, Cr, Y1>, const Byte* from, Pixels<2>& pixels) {
    pixels[0] = {1.0F, float(from[Y0]), float(from[Cb]), float(from[Cr])};
    pixels[1] = {1.0F, float(from[Y1]), float(from[Cb]), float(from[Cr])};
}

template <int Cb, int Y0, int Cr, int Y1>
void pack(Pairs8<Cb, Y0, Cr, Y1>, const Pixels<2>& pixels, Byte* to) {
    to[Cb] = Byte(pixels[0].y);
    to[Y0] = Byte(pixels[0].x);
    to[Cr] = Byte(pixels[0].z);
    to[Y1] = Byte(pixels[1].x);
}

template <class Sample, int A, int X, int Y, int Z>
void unpack(Quads<Sample, A, X, Y, Z>, const Byte* from, Pixels<1>& pixels) {
    const auto samples = load<Sample, 4>(from);
    pixels[0] = {float(samples[A]), float(samples[X]), float(samples[Y]), float(samples[Z])};
}

template <class Sample, int A, int X, int Y, int Z>
void pack(Quads<Sample, A, X, Y, Z>, const Pixels<1>& pixels, Byte* to) {
    std::array<Sample, 4> samples;
    samples[A] = Sample(pixels[0].alpha);
    samples[X] = Sample(pixels[0].x);
    samples[Y] = Sample(pixels[0].y);
    samples[Z] = Sample(pixels[0].z);
    store(samples, to);
}

template <class Sample>
void unpack(Triples<Sample>, const Byte* from, Pixels<1>& pixels) {
    const auto samples = load<Sample, 3>(from);
    pixels[0] = {1.0F, float(samples[0]), float(samples[1]), float(samples[2])};
}

template <class Sample>
void pack(Triples<Sample>, const Pixels<1>& pixels, Byte* to) {
    store(std::array<Sample, 3>{Sample(pixels[0].x), Sample(pixels[0].y), Sample(pixels[0].z)}, to);
}

constexpr std::uint32_t tenBits(std::uint32_t word, int place) {
    return word >> (10 * place) & 1023U;
}

void unpack(Words10, const Byte* from, Pixels<1>& pixels) {
    const std::uint32_t word = load<std::uint32_t, 1>(from)[0];
    pixels[0] = {float(word >> 30), float(tenBits(word, 0)), float(tenBits(word, 1)),
                 float(tenBits(word, 2))};
}

void pack(Words10, const Pixels<1>& pixels, Byte* to) {
    const auto& [alpha, red, green, blue] = pixels[0];
    store(std::array<std::uint32_t, 1>{std::uint32_t(red) | std::uint32_t(green) << 10 |
                                       std::uint32_t(blue) << 20 | std::uint32_t(alpha) << 30},
          to);
}

// The samples of a V210 group in the order of its words: Cb Y Cr Y, three times.
using V210Samples = std::array<std::uint32_t, 12>;

void unpack(Packing::V210, const Byte* from, Pixels<6>& pixels) {
    V210Samples samples;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const Byte* const bytes = from + i / 3 * 4;
        const std::uint32_t word = std::uint32_t(bytes[0]) | std::uint32_t(bytes[1]) << 8 |
                                   std::uint32_t(bytes[2]) << 16 | std::uint32_t(bytes[3]) << 24;
        samples[i] = tenBits(word, int(i % 3));
    }
    for (std::size_t i = 0; i < 6; ++i) {
        const std::size_t pair = i / 2 * 4;
        pixels[i] = {1.0F, float(samples[2 * i + 1]), float(samples[pair]),
                     float(samples[pair + 2])};
    }
}

void pack(Packing::V210, const Pixels<6>& pixels, Byte* to) {
    for (std::size_t word = 0; word < 4; ++word) {
        std::uint32_t bits = 0;
        for (std::size_t place = 0; place < 3; ++place) {
            const std::size_t sample = 3 * word + place;
            const auto& pixel = pixels[sample / 2];
            const float chroma = sample % 4 == 0 ? pixel.y : pixel.z;
            bits |= std::uint32_t(sample % 2 == 1 ? pixel.x : chroma) << (10 * place);
        }
        for (std::size_t byte = 0; byte < 4; ++byte)
            to[4 * word + byte] = Byte(bits >> (8 * byte));
    }
}

// ---- Codes to values and back.

template <class Kind>
Pixel toRgb(const Pixel& code, const CodeScale& scale, const YCbCrToRgbCoefficients& coefficients) {
    const float alpha =
        isFloat<Kind> ? code.alpha : (code.alpha - scale.alphaOffset) / scale.alphaRange;
    if constexpr (std::is_same_v<Kind, FloatRgb>) {
        return code;
    } else if constexpr (isRgb<Kind>) {
        return {alpha, code.x / scale.lumaRange, code.y / scale.lumaRange,
                code.z / scale.lumaRange};
    } else {
        float luma = 0;
        float cb = 0;
        float cr = 0;
        if constexpr (isFloat<Kind>) {
            luma = code.x * FloatLumaFactor;
            cb = (code.y - FloatChromaOffset) / FloatChromaRange - FloatChromaCentre;
            cr = (code.z - FloatChromaOffset) / FloatChromaRange - FloatChromaCentre;
        } else {
            luma = (code.x - scale.lumaOffset) / scale.lumaRange;
            cb = (code.y - scale.cbOffset) / scale.chromaRange;
            cr = (code.z - scale.crOffset) / scale.chromaRange;
        }
        return {alpha, luma + coefficients.crToRed * cr,
                luma + coefficients.crToGreen * cr + coefficients.cbToGreen * cb,
                luma + coefficients.cbToBlue * cb};
    }
}

template <class Kind>
Pixel fromRgb(const Pixel& rgb, const RgbToYCbCrMatrix& matrix) {
    if constexpr (isRgb<Kind>) {
        return rgb;
    } else {
        const auto dot = [&rgb](const std::array<float, 3>& row) {
            return row[0] * rgb.x + row[1] * rgb.y + row[2] * rgb.z;
        };
        return {rgb.alpha, dot(matrix.luma), dot(matrix.cb), dot(matrix.cr)};
    }
}

// Rounds; in this order of comparisons, what is not a number gets the lowest code.
float limit(float scaled, float low, float high) {
    const float rounded = scaled + 0.5F;
    const float raised = rounded > low ? rounded : low;
    return raised < high ? raised : high;
}

template <class Kind>
Pixel toCodes(const Pixel& value, const CodeScale& scale) {
    if constexpr (std::is_same_v<Kind, FloatRgb>) {
        return value;
    } else if constexpr (isFloat<Kind>) {
        const auto chroma = [](float each) {
            return (each + FloatChromaCentre) * FloatChromaRange + FloatChromaOffset;
        };
        return {value.alpha, value.x / FloatLumaFactor, chroma(value.y), chroma(value.z)};
    } else {
        const float factor = std::is_same_v<Kind, YCbCrTimes255> ? 255.0F : 1.0F;
        const auto code = [factor](float each, float offset, float range) {
            return (each * (range / factor) + offset / factor) * factor;
        };
        const auto chroma = [&](float each) {
            return limit(code(each, isRgb<Kind> ? 0.0F : scale.crOffset, scale.chromaRange),
                         scale.chromaLow, scale.chromaHigh);
        };
        return {
            limit(value.alpha * scale.alphaRange + scale.alphaOffset, 0.0F, scale.alphaHigh),
            limit(code(value.x, scale.lumaOffset, scale.lumaRange), scale.lumaLow, scale.lumaHigh),
            chroma(value.y), chroma(value.z)};
    }
}

// ---- Rows.

template <class Pack, class Kind>
struct ScalarRow {
    using Group = Pack;

    static void decode(const void* source, const PlanarRow& to, std::size_t pixels,
                       const CodeScale& scale, const YCbCrToRgbCoefficients& coefficients) {
        const auto* from = static_cast<const Byte*>(source);
        std::ptrdiff_t place = 0;
        for (std::size_t i = 0; i < pixels; i += Group::Pixels, from += Group::Bytes) {
            Pixels<Group::Pixels> codes;
            unpack(Group(), from, codes);
            for (std::size_t k = 0; k < std::min(Group::Pixels, pixels - i); ++k) {
                const Pixel rgb = toRgb<Kind>(codes[k], scale, coefficients);
                to.red[place] = rgb.x;
                to.green[place] = rgb.y;
                to.blue[place] = rgb.z;
                if (to.alpha)
                    to.alpha[place] = rgb.alpha;
                place += to.step;
            }
        }
    }

    static void encode(const ConstPlanarRow& from, std::size_t pixels, void* destination,
                       const CodeScale& scale, const RgbToYCbCrMatrix& matrix) {
        auto* to = static_cast<Byte*>(destination);
        for (std::size_t i = 0; i < pixels; i += Group::Pixels, to += Group::Bytes) {
            Pixels<Group::Pixels> values;
            for (std::size_t k = 0; k < Group::Pixels; ++k) {
                const auto place = std::ptrdiff_t(std::min(i + k, pixels - 1)) * from.step;
                values[k] = fromRgb<Kind>({from.alpha ? from.alpha[place] : 1.0F, from.red[place],
                                           from.green[place], from.blue[place]},
                                          matrix);
            }
            // Pairs share the mean of their chroma.
            for (std::size_t k = 0; k + 1 < Group::Pixels; k += 2) {
                values[k].y = (values[k].y + values[k + 1].y) * 0.5F;
                values[k].z = (values[k].z + values[k + 1].z) * 0.5F;
                values[k + 1].y = values[k].y;
                values[k + 1].z = values[k].z;
            }
            for (Pixel& each : values)
                each = toCodes<Kind>(each, scale);
            pack(Group(), values, to);
        }
    }
};

} // namespace

const RowKernels& scalarRowKernels() noexcept {
    static const RowKernels kernels = makeRowKernels<ScalarRow>("scalar");
    return kernels;
}

} // namespace Kestrel::UI
