#pragma once

#include <KxUI/scopes/CodeCounts_p.h>
#include <KxUI/scopes/CountingKernels_p.h>
#include <KxUI/scopes/ScopeResult.h>
#include <KxUI/scopes/Transfer_p.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

// The rules of counting pixel by pixel, without vectors, strips or threads.
namespace Kestrel::Test {

using namespace Kestrel::UI;

struct SlowPixel {
    int x;
    int y;
    std::array<float, 3> rgb;
    float alpha;
};

// What a pass counts of an image that it counts whole or in part, with a proxy of 1.
class SlowCount {
public:
    SlowCount(const ScopeImage& image, const ScopeRequest& request)
        : m_image(image)
        , m_request(request) {
        m_region = image.frame();
        if (!request.wholeFrame)
            m_region = m_region.intersected(request.region);
        for (int y = 0; y < m_region.height; y += request.rowStep)
            readRow(y);
    }

    // Empty, or the first thing that differs.
    std::string differs(const ScopeResult& result) const {
        if (const std::string what = valuesDiffer(result); !what.empty())
            return what;
        if (const std::string what = waveformDiffers(result.waveform); !what.empty())
            return what;
        if (const std::string what = planesDiffer(result); !what.empty())
            return what;
        return result.hues.isEmpty() ? std::string() : huesDiffer(result.hues);
    }

    const std::vector<SlowPixel>& pixels() const { return m_pixels; }

private:
    using Counts = std::vector<std::uint32_t>;

    void readRow(int y) {
        const int width = m_image.usableWidth();
        std::vector<float> row(4 * std::size_t(width));
        const auto* source = static_cast<const unsigned char*>(m_image.pixels) +
                             m_image.stride * (y + m_region.top - m_image.top);
        decodeRow(m_image.layout, source,
                  {row.data() + 3, row.data(), row.data() + 1, row.data() + 2, 4}, width,
                  colorSpaceYCbCrToRgb(m_image.colorSpace));
        const bool hasAlpha = m_image.hasAlpha();
        for (int x = 0; x < m_region.width; ++x) {
            const float* const p = row.data() + 4 * (x + m_region.left - m_image.left);
            SlowPixel pixel{x, y, {p[0], p[1], p[2]}, p[3]};
            if (m_image.alpha == ScopeImage::Alpha::SkipTransparent && hasAlpha && p[3] == 0)
                continue;
            if (m_image.alpha == ScopeImage::Alpha::Unpremultiply && hasAlpha) {
                if (!(p[3] > 0) || !std::isfinite(p[3]))
                    continue;
                for (float& each : pixel.rgb)
                    each /= p[3];
            }
            if (m_request.encoding.transform)
                m_request.encoding.transform(pixel.rgb.data(), 1);
            if (m_request.encoding.transfer != ScopeEncoding::Transfer::AsStored) {
                for (float& each : pixel.rgb)
                    each = signal(each);
            }
            m_pixels.push_back(pixel);
        }
    }

    float signal(float light) const {
        const bool codes =
            m_image.layout >= PixelLayout::RGB8 && m_image.layout <= PixelLayout::RGBA16 &&
            !m_request.encoding.transform &&
            (m_image.alpha != ScopeImage::Alpha::Unpremultiply || !m_image.hasAlpha());
        const float rounded = codes ? light : HalfCode::value(HalfCode::of(light));
        return std::isfinite(rounded) ? float(signalOfLight(m_request.encoding, double(rounded)))
                                      : rounded;
    }

    static float dot(const std::array<float, 3>& row, const std::array<float, 3>& rgb) {
        return row[0] * rgb[0] + row[1] * rgb[1] + row[2] * rgb[2];
    }

    static bool areNumbers(const std::array<float, 3>& rgb) {
        return !std::isnan(rgb[0]) && !std::isnan(rgb[1]) && !std::isnan(rgb[2]);
    }

    float valueOf(const SlowPixel& pixel, int channel) const {
        switch (channel) {
        case ScopeHistogram::Alpha:
            return pixel.alpha;
        case ScopeHistogram::Luma:
            return dot(m_request.encoding.matrix.luma, pixel.rgb);
        case ScopeHistogram::Largest:
            return areNumbers(pixel.rgb)
                       ? std::fmax(std::fmax(pixel.rgb[0], pixel.rgb[1]), pixel.rgb[2])
                       : NAN;
        default:
            return pixel.rgb[std::size_t(channel)];
        }
    }

    std::string valuesDiffer(const ScopeResult& result) const {
        const CodeCounts* const counted = result.values.counts();
        if (!counted)
            return (m_request.parts & ScopeRequest::Values) ? "values are missing" : "";
        for (int i = 0; i < ScopeHistogram::Channels; ++i) {
            const Counts& codes = counted->counts[std::size_t(i)];
            const CodeAxis axis = counted->axes[std::size_t(i)];
            if (codes.empty())
                continue;
            std::map<std::size_t, std::uint32_t> slow;
            for (const SlowPixel& pixel : m_pixels) {
                const float value = valueOf(pixel, i);
                const float code = value * float(axis.unit) + 0.5F;
                slow[axis.isHalf() ? HalfCode::of(value) : std::size_t(code)] +=
                    std::uint32_t(m_request.rowStep);
            }
            // Of two zeros any may be the largest.
            const bool isZero = axis.isHalf() && i == ScopeHistogram::Largest;
            if (isZero && codes[0] + codes[HalfCode::Sign] != slow[0] + slow[HalfCode::Sign])
                return "zeros of the largest";
            for (const auto& [code, count] : slow) {
                if (codes[code] != count && !(isZero && (code == 0 || code == HalfCode::Sign)))
                    return "values of channel " + std::to_string(i);
            }
            if (countOf(*counted, ScopeHistogram::Channel(i)) !=
                m_pixels.size() * std::size_t(m_request.rowStep))
                return "number of values of channel " + std::to_string(i);
        }
        return {};
    }

    // All that was counted, without a look at each of so many codes.
    static std::uint64_t countOf(const CodeCounts& counts, ScopeHistogram::Channel channel) {
        std::uint64_t sum = 0;
        counts.ascend(channel, [&sum](float, std::uint64_t count) { sum += count; });
        if (!counts.axes[channel].isHalf())
            return sum;
        const auto& codes = counts.counts[channel];
        return sum + codes[HalfCode::NotANumber] + codes[HalfCode::Infinity] +
               codes[HalfCode::Infinity | HalfCode::Sign];
    }

    std::string waveformDiffers(const ScopeWaveform& waveform) const {
        for (int i = 0; i < ScopeWaveform::Channels; ++i) {
            const auto channel = ScopeWaveform::Channel(i);
            if (!waveform.has(channel))
                continue;
            const ValueRange& range = waveform.range(channel);
            const auto columns = std::size_t(waveform.columns);
            const auto bins = std::size_t(range.bins);
            std::vector<Counts> slow(columns, Counts(bins + 3));
            Counts pixels(columns);
            for (const SlowPixel& pixel : m_pixels) {
                const int along = waveform.byRows ? pixel.y : pixel.x;
                const int size = waveform.byRows ? m_region.height : m_region.width;
                const auto column = std::size_t(std::int64_t(along) * waveform.columns / size);
                slow[column][std::size_t(range.binOf(component(pixel, channel)))] +=
                    std::uint32_t(m_request.rowStep);
                pixels[column] += std::uint32_t(m_request.rowStep);
            }
            for (std::size_t column = 0; column < columns; ++column) {
                const std::uint32_t* const fast = waveform.column0(channel, int(column));
                if (!std::equal(fast, fast + bins, slow[column].begin()) ||
                    waveform.below[channel][column] != slow[column][bins] ||
                    waveform.above[channel][column] != slow[column][bins + 1] ||
                    waveform.nan[channel][column] != slow[column][bins + 2] ||
                    waveform.columnPixels[column] != pixels[column])
                    return "waveform of channel " + std::to_string(i) + ", column " +
                           std::to_string(column);
            }
        }
        return {};
    }

    float component(const SlowPixel& pixel, ScopeWaveform::Channel channel) const {
        const RgbToYCbCrMatrix& matrix = m_request.encoding.matrix;
        switch (channel) {
        case ScopeWaveform::Luma:
            return dot(matrix.luma, pixel.rgb);
        case ScopeWaveform::Cb:
            return dot(matrix.cb, pixel.rgb);
        case ScopeWaveform::Cr:
            return dot(matrix.cr, pixel.rgb);
        default:
            return pixel.rgb[std::size_t(channel)];
        }
    }

    std::string planesDiffer(const ScopeResult& result) const {
        ScopeVectors vectors;
        ScopeSolid solid;
        vectors.counts.resize(result.vectors.counts.size());
        solid.counts.resize(result.solid.counts.size());
        solid.outsideCounts.resize(result.solid.counts.size());
        const auto step = std::uint32_t(m_request.rowStep);
        for (const SlowPixel& pixel : m_pixels) {
            if (result.vectors.size > 0)
                addVector(pixel, result.vectors, step, vectors);
            if (result.solid.cells > 0)
                addCell(pixel, result.solid, step, solid);
        }
        if (vectors.counts != result.vectors.counts || vectors.nan != result.vectors.nan ||
            vectors.outside != result.vectors.outside || vectors.gated != result.vectors.gated)
            return "vectors";
        if (solid.counts != result.solid.counts || solid.nan != result.solid.nan ||
            solid.outsideCounts != result.solid.outsideCounts)
            return "solid";
        return {};
    }

    // By the conversion that widgets use; divided as that does, or a code may be the next one.
    std::string huesDiffer(const ScopeHues& counted) const {
        ScopeHues slow;
        slow.hue.resize(ScopeHues::Codes + 1);
        slow.saturation.resize(ScopeHues::Codes + 1);
        const auto step = std::uint32_t(m_request.rowStep);
        for (const SlowPixel& pixel : m_pixels) {
            float hue = 0;
            float saturation = 0;
            float value = 0;
            rgbToHsv(pixel.rgb[0], pixel.rgb[1], pixel.rgb[2], hue, saturation, value);
            const auto [least, most] = std::minmax_element(pixel.rgb.begin(), pixel.rgb.end());
            const auto code = [](float part) {
                return std::size_t(part * float(ScopeHues::Codes) + 0.5F);
            };
            if (!areNumbers(pixel.rgb) || !std::isfinite(*most - *least)) {
                slow.none += step;
                continue;
            }
            if (*most > *least && *most > 0)
                slow.hue[code(hue) % ScopeHues::Codes] += step;
            else
                slow.greys += step;
            if (saturation <= 1)
                slow.saturation[code(saturation)] += step;
            else
                slow.above += step;
        }
        const bool same = slow.hue == counted.hue && slow.saturation == counted.saturation &&
                          slow.greys == counted.greys && slow.above == counted.above &&
                          slow.none == counted.none;
        return same ? "" : "hues";
    }

    void addVector(const SlowPixel& pixel, const ScopeVectors& like, std::uint32_t step,
                   ScopeVectors& to) const {
        const RgbToYCbCrMatrix& matrix = m_request.encoding.matrix;
        const float luma = dot(matrix.luma, pixel.rgb);
        const int x = like.range.binOf(dot(matrix.cb, pixel.rgb));
        const int y = like.range.binOf(dot(matrix.cr, pixel.rgb));
        if (!areNumbers(pixel.rgb))
            to.nan += step;
        else if (luma < m_request.vectors.lumaLower || luma > m_request.vectors.lumaUpper)
            to.gated += step;
        else if (x >= like.size || y >= like.size)
            to.outside += step;
        else
            to.counts[std::size_t(y) * std::size_t(like.size) + std::size_t(x)] += step;
    }

    static void addCell(const SlowPixel& pixel, const ScopeSolid& like, std::uint32_t step,
                        ScopeSolid& to) {
        if (!areNumbers(pixel.rgb)) {
            to.nan += step;
            return;
        }
        std::array<int, 3> cell{};
        bool inside = true;
        for (std::size_t i = 0; i < 3; ++i) {
            const int bin = like.range.binOf(pixel.rgb[i]);
            inside = inside && bin < like.cells;
            cell[i] = bin == like.range.below() ? 0 : std::min(bin, like.cells - 1);
        }
        auto& counts = inside ? to.counts : to.outsideCounts;
        counts[like.index(cell[0], cell[1], cell[2])] += step;
    }

    ScopeImage m_image;
    ScopeRequest m_request;
    ScopeRegion m_region;
    std::vector<SlowPixel> m_pixels;
};

} // namespace Kestrel::Test
