#pragma once

#include <KxUI/scopes/PixelReader_p.h>
#include <KxUI/scopes/ScopeResult.h>
#include <KxUI/scopes/WaveformStrip_p.h>

#include <atomic>
#include <memory>
#include <vector>

namespace Kestrel::UI {

/** One count of one image, cut into units that threads share. What is counted does not depend on who
    counts what. */
class ScopePass {
public:
    /** What a thread counts in; kept from pass to pass, so that memory is not asked for again. */
    class Scratch;

    /** `unitSize`: columns or rows of a unit; 0: what is fastest. */
    ScopePass(ScopeImage image, const ScopeRequest& request, int unitSize = 0);
    ~ScopePass();

    int units() const { return m_units; }
    /** A place to count in. Any thread, as what follows. */
    std::unique_ptr<Scratch> makeScratch() const;
    /** Makes a place of another pass, or a null one, one of this pass. */
    void prepare(std::unique_ptr<Scratch>& scratch) const;
    /** Counts a unit. Units may be counted in any order, each once, several at a time. Lets through
        what the transform throws. */
    void count(int unit, Scratch& scratch);
    /** The result, when all units are counted; once. */
    ScopeResult finish(const std::vector<Scratch*>& scratches);

private:
    struct Span {
        int begin = 0;
        int end = 0;
    };

    void cutRegion();
    void makeWaveform();
    void cutUnits(int unitSize);
    int rowsAtOnce(Span pixels) const;
    void countRows(const PixelBlock& rows, Span rowsOfUnit, Scratch& scratch);
    void compute(const PixelBlock& block, Scratch& scratch);
    void computeValues(Scratch& scratch) const;
    void computePlaces(const PixelBlock& block, Scratch& scratch) const;
    void takeFromColumns(const PixelBlock& block, const PixelPiece& piece);
    void computeWaveform(const PixelBlock& block, Scratch& scratch);
    template <class Add>
    static void inParts(Scratch& scratch, Add add);
    void addPiece(Scratch& scratch) const;
    void addCodes(ScopeHistogram::Channel channel, Scratch& scratch) const;
    void addVectorCells(Scratch& scratch) const;
    std::uint32_t columnOf(const PixelBlock& block, std::size_t place) const;
    void addValues(const std::vector<Scratch*>& scratches, ScopeResult& result) const;
    void addVectors(const std::vector<Scratch*>& scratches, ScopeResult& result) const;
    void addSolid(const std::vector<Scratch*>& scratches, ScopeResult& result) const;
    void addHues(const std::vector<Scratch*>& scratches, ScopeResult& result) const;
    bool wants(ScopeRequest::Part part) const { return (m_request.parts & part) != 0; }
    bool wants(ScopeHistogram::Channel channel) const;
    CodeAxis axis(ScopeHistogram::Channel channel) const;

    const ScopeImage m_image;
    const ScopeRequest m_request;
    PixelReader m_reader;
    ScopeWaveform m_waveform;
    std::vector<std::uint32_t> m_columnOf; // of each pixel along the waveform
    // In pixels of the image.
    Span m_x;
    Span m_y;
    int m_unitSize = 1;     // columns of the waveform, or rows
    std::size_t m_fold = 1; // pixels across a column of the waveform
    int m_units = 0;
    bool m_strips = false;
    std::size_t m_countersOfPixel = 1;
    bool m_derivesLuma = false;
    bool m_derivesChroma = false;
};

/** Counts with `threads` threads, of which the caller's is one. */
ScopeResult countScopes(const ScopeImage& image, const ScopeRequest& request, int threads,
                        int unitSize);

} // namespace Kestrel::UI
