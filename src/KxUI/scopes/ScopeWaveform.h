#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ValueRange.h>

#include <array>
#include <cstdint>
#include <vector>

namespace Kestrel::UI {

/** The values of each column of a picture, counted. A plain value. */
struct KXUI_EXPORT ScopeWaveform {
    /** What is counted; the numbers are part of saved states. */
    enum Channel {
        Red,     ///< the signal's red
        Green,   ///< its green
        Blue,    ///< its blue
        Luma,    ///< by the matrix of the encoding
        Cb,      ///< likewise
        Cr,      ///< likewise
        Channels ///< how many there are
    };

    int columns = 0;     ///< at most the pixels of a row
    bool byRows = false; ///< a column stands for a row of the picture
    ValueRange luma;     ///< of red, green, blue and luma
    ValueRange chroma;   ///< of Cb and Cr
    /** By channel, column after column, each with the bins of its range from the lowest; empty where
        the channel was not counted. */
    std::array<std::vector<std::uint32_t>, Channels> counts;
    /** By channel and column: what is below the range, above it, each with an infinity, and no
        number. */
    std::array<std::vector<std::uint32_t>, Channels> below;
    std::array<std::vector<std::uint32_t>, Channels> above;
    std::array<std::vector<std::uint32_t>, Channels> nan;
    /** By column: pixels that were counted. */
    std::vector<std::uint32_t> columnPixels;
    int pictureColumns = 0; ///< pixels of the picture that the columns were made of
    int pictureRows = 0;    ///< pixels of a column of the picture

    /** Whether the channel was counted. */
    bool has(Channel channel) const noexcept { return !counts[channel].empty(); }
    /** What its bins are. */
    const ValueRange& range(Channel channel) const noexcept {
        return channel == Cb || channel == Cr ? chroma : luma;
    }
    /** How often a bin occurs in a column; both must exist. */
    std::uint32_t count(Channel channel, int column, int bin) const noexcept {
        return column0(channel, column)[bin];
    }
    /** The bins of a column. */
    const std::uint32_t* column0(Channel channel, int column) const noexcept {
        return counts[channel].data() + std::size_t(column) * std::size_t(range(channel).bins);
    }
    /** The first pixel of the region that falls into a column; that of `columns` is the pixel behind
        the last. */
    int firstPixel(int column) const noexcept;
};

/** What is to be counted of a waveform. A plain value; its layout is frozen. */
struct KXUI_EXPORT WaveformRange {
    /** Bits of channels. */
    static constexpr int Luma = 1 << ScopeWaveform::Luma;
    static constexpr int Rgb =
        1 << ScopeWaveform::Red | 1 << ScopeWaveform::Green | 1 << ScopeWaveform::Blue;
    static constexpr int YCbCr =
        1 << ScopeWaveform::Luma | 1 << ScopeWaveform::Cb | 1 << ScopeWaveform::Cr;

    int channels = Rgb;                    ///< bits of `1 << ScopeWaveform::Channel`
    ValueRange values{-0.1F, 1.1F, 512};   ///< of red, green, blue and luma
    ValueRange chroma{-0.55F, 0.55F, 512}; ///< of Cb and Cr
    int mostColumns = 2048;                ///< wider pictures are folded; 1 to 16384
    bool byRows = false;                   ///< columns of the waveform are rows of the picture

    /** Whether they are the same, and whether they are not. */
    friend bool operator==(const WaveformRange& a, const WaveformRange& b) noexcept {
        return a.channels == b.channels && a.values == b.values && a.chroma == b.chroma &&
               a.mostColumns == b.mostColumns && a.byRows == b.byRows;
    }
    friend bool operator!=(const WaveformRange& a, const WaveformRange& b) noexcept {
        return !(a == b);
    }
};

} // namespace Kestrel::UI
