#include <KxUI/curves/KeyCurveData_p.h>

#include <KxUI/curves/platform/WideLoops_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

// Signed, since that becomes a double in one step.
using Index = std::ptrdiff_t;

// Evenly spaced places; the last one is exact.
struct Places {
    double from;
    double to;
    Index count;
    double step = count > 1 ? (to - from) / double(count - 1) : 0;
    double perStep = 1 / step;

    double at(Index entry) const {
        return entry == 0 || entry + 1 < count ? from + double(entry) * step : to;
    }
    // The first entry from `entry` on that is not before `x`; the last one's place does not count.
    Index firstFrom(double x, Index entry) const {
        const double guess = (x - from) * perStep + 1;
        Index found = count - 1;
        if (guess < double(count))
            found = std::min(found, Index(std::max(guess, 0.0)));
        found = std::max(found, entry);
        const auto place = [this](Index i) { return from + double(i) * step; };
        while (found + 1 < count && place(found) < x)
            ++found;
        while (found > entry && !(place(found - 1) < x))
            --found;
        return found;
    }
};

// How many values are worked out together: where a piece ends inside, those behind are worked out
// again by the next piece, which costs less than a branch that nobody can predict.
constexpr Index Block = 8;

KXUI_LOOP_BODY void fillBlock(const KeyCurvePiece& piece, const Places& places, Index entry,
                              double* out) noexcept {
    const double first = double(entry);
    for (Index i = 0; i < Block; ++i)
        out[i] = piece.at(places.from + (first + double(i)) * places.step);
}

// Fills the entries from `entry` up to where the pieces end, but for the last one. Where it
// stopped.
KXUI_LOOP_BODY Index fillPieces(const std::vector<KeyCurvePiece>& pieces, double lastX,
                                std::size_t& hint, const Places& places, Index entry,
                                double* out) noexcept {
    while (hint < pieces.size()) {
        const KeyCurvePiece piece = pieces[hint];
        const bool isLast = hint + 1 == pieces.size();
        const double endX = isLast ? lastX : pieces[hint + 1].x;
        const Index end = places.firstFrom(endX, entry);
        Index i = entry;
        for (; i < end && i + Block <= places.count; i += Block)
            fillBlock(piece, places, i, out + i);
        for (; i < end; ++i)
            out[i] = piece.at(places.at(i));
        if (isLast || end + 1 >= places.count)
            return end;
        if (end == entry) // more pieces than places: the next one is found by search
            return end;
        entry = end;
        ++hint;
    }
    return entry;
}

KXUI_WIDE_LOOP Index fillPiecesWide(const std::vector<KeyCurvePiece>& pieces, double lastX,
                                    std::size_t& hint, const Places& places, Index entry,
                                    double* out) noexcept {
    return fillPieces(pieces, lastX, hint, places, entry, out);
}

} // namespace

void KeyCurve::sample(double from, double to, std::size_t count, double* out) const noexcept {
    if (!out)
        return;
    const Places places{from, to, Index(count)};
    const bool isRising = places.step > 0 && std::isfinite(places.perStep);
    const bool isWide = hasWideLoops();
    std::size_t hint = 0;
    for (Index entry = 0; entry < places.count; ++entry) {
        const double x = places.at(entry);
        if (isRising && entry + 1 < places.count && !m->pieces.empty() && x >= m->firstX() &&
            x < m->lastX()) {
            hint = m->pieceAt(x, hint);
            const Index end = isWide
                                  ? fillPiecesWide(m->pieces, m->lastX(), hint, places, entry, out)
                                  : fillPieces(m->pieces, m->lastX(), hint, places, entry, out);
            entry = end - 1; // the piece holds x, so this is past `entry`
            continue;
        }
        out[entry] = m->pieces.empty() ? valueAt(x) : m->valueAt(x, hint);
    }
}

} // namespace Kestrel::UI
