#pragma once

#include <KxUI/scopes/CountingKernels_p.h>
#include <KxUI/scopes/ScopeImage.h>
#include <KxUI/scopes/TransferTable_p.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Kestrel::UI {

/** Signals of the pixels of a piece of some rows, row after row, without those that alpha leaves
    out. */
struct PixelPiece {
    /** The most pixels of a piece. */
    static constexpr std::size_t Most = 480;
    /** Room for whole groups of pixels at both ends, and for a whole vector. */
    static constexpr std::size_t Room = Most + 16 + CountingLanes;
    using Plane = std::array<float, Room>;

    alignas(64) Plane red{}, green{}, blue{}, alpha{}, luma{}, cb{}, cr{}, largest{};
    std::size_t width = 0;       ///< pixels of a row, with those that alpha left out
    std::size_t count = 0;       ///< pixels
    std::size_t transparent = 0; ///< that alpha left out

    /** Where in its row each pixel lay. */
    std::size_t place(std::size_t pixel) const {
        return transparent > 0 ? places[pixel] : pixel % width;
    }
    ColorPlanes colors() const {
        return {first + red.data(), first + green.data(), first + blue.data()};
    }
    const float* alphas() const { return first + alpha.data(); }

    /** Where the pixels begin in the planes of red, green, blue and alpha. */
    std::size_t first = 0;
    std::array<std::uint16_t, Room> places{}; // where some were left out
    alignas(64) std::array<std::uint16_t, Room> codes{};
    std::vector<float> interleaved; // for the host's transform
};

/** Neighbouring pixels of some rows that are the same distance apart. */
struct PixelBlock {
    int x = 0;
    int y = 0;
    std::size_t width = 0; ///< pixels of a row
    int rows = 1;
    int step = 1; ///< from row to row
};

/** The memory of a block that is read next, which is asked for little by little before that. */
class PixelMemory {
public:
    PixelMemory() = default;
    PixelMemory(const unsigned char* first, std::size_t bytes, int rows, std::ptrdiff_t stride)
        : m_row(first)
        , m_bytes(bytes)
        , m_rows(rows)
        , m_stride(stride) {}

    /** Cache lines that were not asked for, at most. */
    std::size_t lines() const { return std::size_t(m_rows) * (m_bytes / Line + 2) - m_at / Line; }
    /** Asks for some more of them. */
    void ask(std::size_t lines);

private:
    static constexpr std::size_t Line = 64;

    const unsigned char* m_row = nullptr;
    std::size_t m_bytes = 0; // of a row
    int m_rows = 0;
    std::ptrdiff_t m_stride = 0;
    std::size_t m_at = 0;
};

/** Reads pieces of rows: decodes them, and makes the signal of them that the encoding describes. Many
    threads may use one reader, each with its own piece. */
class PixelReader {
public:
    /** Without `readsAlpha` alpha is read only where it says what is left out. */
    PixelReader(const ScopeImage& image, const ScopeEncoding& encoding, bool readsAlpha = true);

    /** Reads at most PixelPiece::Most pixels, which lie in the image. Several rows only where
        `readsSeveralRows`. Lets through what the transform throws. */
    void read(const PixelBlock& block, PixelPiece& piece) const;
    /** Whether pieces of several rows that begin at `x` can be read at once. */
    bool readsSeveralRows(int x, std::size_t width) const;

    /** The memory of a block; rows below the image are not there. */
    PixelMemory memory(const PixelBlock& block) const;

    /** What the channels that are read are counted by: exactly if `exact`. */
    CodeAxis colorAxis() const { return m_colorAxis; }
    CodeAxis alphaAxis() const { return m_alphaAxis; }
    bool isExact() const { return m_exact; }
    /** Whether values are stored as floats that halves are too coarse for. */
    bool isFine() const { return m_fine; }

private:
    const unsigned char* row(int y) const;
    void decode(const PixelBlock& block, PixelPiece& piece) const;
    void leaveOut(PixelPiece& piece) const;
    void unpremultiply(PixelPiece& piece) const;
    void transform(PixelPiece& piece) const;
    void applyTransfer(float* values, PixelPiece& piece) const;

    ScopeImage m_image;
    YCbCrToRgbCoefficients m_coefficients;
    std::function<void(float*, int)> m_transform;
    std::shared_ptr<const TransferTable> m_table;
    CodeAxis m_tableAxis;
    CodeAxis m_colorAxis;
    CodeAxis m_alphaAxis;
    int m_group = 1; // pixels that share samples
    bool m_readsAlpha = true;
    bool m_exact = false;
    bool m_fine = false;
};

} // namespace Kestrel::UI
