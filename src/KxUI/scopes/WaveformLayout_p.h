#pragma once

#include <KxUI/scopes/ScopeEncoding.h>
#include <KxUI/scopes/ScopeImage.h>
#include <KxUI/scopes/ScopeWaveform.h>

#include <QPointF>
#include <QRectF>

#include <vector>

namespace Kestrel::UI {

/** How the waveforms of several channels share a scope. Places of the whole are 0 to 1, u rightwards
    and v upwards. Within a cell, s runs along the picture and t along the values, both 0 to 1. */
struct WaveformLayout {
    enum Arrangement {
        Overlay, ///< on each other
        Parade,  ///< side by side along the picture
        Stack    ///< one after the other along the values
    };
    struct Cell {
        std::vector<ScopeWaveform::Channel> channels;
        QRectF area; ///< left, v of its lower edge, width, height
    };

    /** `byRows`: values run rightwards, and the picture's rows downwards. */
    WaveformLayout(const std::vector<ScopeWaveform::Channel>& channels, Arrangement arrangement,
                   bool byRows);

    /** The cell at a place, or the nearest one. */
    std::size_t cellAt(const QPointF& uv) const;
    /** s and t of a place in a cell. */
    QPointF toCell(std::size_t cell, const QPointF& uv) const;
    QPointF fromCell(std::size_t cell, const QPointF& st) const;

    std::vector<Cell> cells;
    Arrangement arrangement;
    bool byRows;
};

/** The values at the ends of an axis. */
struct WaveformAxis {
    double lower = -0.1;
    double upper = 1.1;

    double valueAt(double t) const { return lower + t * (upper - lower); }
    double placeOf(double value) const { return (value - lower) / (upper - lower); }

    /** The axis of Cb and Cr that has the codes of this one at its ends. */
    WaveformAxis ofChroma(const ScopeEncoding& encoding) const;
};

/** Whether a channel's values lie around 0. */
inline bool isChroma(ScopeWaveform::Channel channel) {
    return channel == ScopeWaveform::Cb || channel == ScopeWaveform::Cr;
}

/** The bits of the codes that the pixels of an image are in, narrow or full, where counted by them: 8
    or 10; else 0. */
struct SourceCodes {
    int bits = 0;
    bool isYCbCr =
        false; ///< of luma and chroma in narrow range; else of red, green and blue in full

    SourceCodes(const ScopeImage& image, const ScopeEncoding& encoding);
};

/** What to count for an axis of which `begin` to `end` (0 to 1) is seen: the codes of the source each
    by itself where `channels` are what it stores, else bins as fine as the zoom asks for. */
WaveformRange waveformRangeFor(const WaveformAxis& axis, int channels, double begin, double end,
                               const SourceCodes& codes, const ScopeEncoding& encoding);

/** The part of an axis that is counted for a part that is seen: the whole, or, from a zoom of two on,
    one of the pieces of it that change only now and then while the user pans. */
struct AxisPart {
    double begin = 0;
    double end = 1;

    static AxisPart around(double begin, double end);
};

} // namespace Kestrel::UI
