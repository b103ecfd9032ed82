#pragma once

#include <KxUI/scopes/CodeCounts_p.h>

#include <memory>
#include <vector>

namespace Kestrel::UI {

/** Where the codes of a channel lie on an axis: each from the middle between it and the code below to
    that between it and the code above. */
class CodePlaces {
public:
    CodePlaces(CodeAxis codes, ScopeHistogram::Axis axis, float whiteNits);

    bool isOf(CodeAxis codes, ScopeHistogram::Axis axis, float whiteNits) const;

    /** The counts spread over columns of equal width from `lower` to `upper`, each code over all of its
        place: what is drawn of it shows no comb of codes that are wider, or not much narrower, than a
        column. */
    std::vector<float> columns(const CodeCounts::Counts& counts, double lower, double upper,
                               int columns) const;
    /** The exact count of codes whose values lie in `lower` up to but without `upper`. */
    std::uint64_t count(const CodeCounts::Counts& counts, double lower, double upper) const;

private:
    CodeAxis m_codes;
    ScopeHistogram::Axis m_axis;
    float m_whiteNits;
    // Ascending: where each code ends, and its value. The first one begins where it is.
    std::vector<float> m_ends;
    std::vector<float> m_middles;
    std::vector<std::uint32_t> m_order; // the code of each
    float m_begin = 0;
};

/** The height that fills a histogram: the largest column but those of the axis's ends and of `black`
    and `white`, which a border may fill; the largest of all where there are no others. */
float referenceHeight(const std::vector<float>& columns, int black, int white);

} // namespace Kestrel::UI
