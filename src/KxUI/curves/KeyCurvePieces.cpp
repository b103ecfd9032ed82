#include <KxUI/curves/KeyCurvePieces_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Key = KeyCurve::Key;
using Keys = std::vector<Key>;
using Shape = KeyCurve::Shape;

double width(const Keys& keys, std::size_t piece) {
    return keys[piece + 1].x - keys[piece].x;
}

double rise(const Keys& keys, std::size_t piece) {
    return keys[piece + 1].y - keys[piece].y;
}

double chord(const Keys& keys, std::size_t piece) {
    return rise(keys, piece) / width(keys, piece);
}

// Whether a double holds the slope of the line through both keys.
bool isSteep(const Keys& keys, std::size_t piece) {
    return !(std::abs(rise(keys, piece)) < KeyCurve::Largest * width(keys, piece));
}

bool isNatural(const Keys& keys, std::size_t piece) {
    return keys[piece].shape == Shape::Natural && !isSteep(keys, piece);
}

double smoothSlope(const Keys& keys, std::size_t key) {
    const std::size_t left = key == 0 ? 0 : key - 1;
    const std::size_t right = std::min(key + 1, keys.size() - 1);
    return (keys[right].y - keys[left].y) / (keys[right].x - keys[left].x);
}

// F. N. Fritsch and J. Butland, A Method for Constructing Local Monotone Piecewise Cubic
// Interpolants, 1984; weights by the widths as in PCHIP.
double monotoneSlope(const Keys& keys, std::size_t key) {
    if (key == 0 || key + 1 == keys.size())
        return 0;
    const double before = chord(keys, key - 1);
    const double after = chord(keys, key);
    if (!(before > 0 && after > 0) && !(before < 0 && after < 0))
        return 0;
    const double left = width(keys, key - 1);
    const double right = width(keys, key);
    return 3 * (left + right) / ((2 * right + left) / before + (right + 2 * left) / after);
}

// Both slopes times the width, which is what u sees.
KeyCurvePiece cubic(const Keys& keys, std::size_t index, double start, double end) {
    KeyCurvePiece piece;
    const double height = rise(keys, index);
    piece.x = keys[index].x;
    piece.y = keys[index].y;
    piece.perWidth = 1 / width(keys, index);
    if (!std::isfinite(piece.perWidth)) {
        piece.perWidth = 0;
        return piece;
    }
    piece.a = start;
    piece.b = 3 * height - 2 * start - end;
    piece.c = start + end - 2 * height;
    if (!std::isfinite(piece.b) || !std::isfinite(piece.c)) {
        piece.a = height;
        piece.b = piece.c = 0;
    }
    return piece;
}

KeyCurvePiece line(const Keys& keys, std::size_t index) {
    const double height = rise(keys, index);
    return cubic(keys, index, height, height);
}

KeyCurvePiece localPiece(const Keys& keys, std::size_t index) {
    const Key& from = keys[index];
    const Key& to = keys[index + 1];
    const double wide = width(keys, index);
    switch (from.shape) {
    case Shape::Constant: {
        KeyCurvePiece piece = line(keys, index);
        piece.a = 0;
        return piece;
    }
    case Shape::Smooth:
        return cubic(keys, index, wide * smoothSlope(keys, index),
                     wide * smoothSlope(keys, index + 1));
    case Shape::Monotone:
        return cubic(keys, index, wide * monotoneSlope(keys, index),
                     wide * monotoneSlope(keys, index + 1));
    case Shape::Free:
        return cubic(keys, index, wide * from.slopeOut,
                     wide * (to.broken ? to.slopeIn : to.slopeOut));
    case Shape::Linear:
    case Shape::Natural: // a steep one
        break;
    }
    return line(keys, index);
}

// Tridiagonal elimination for the second derivatives of the natural spline through the keys from
// `first` up to `last`; both ends have none.
std::vector<double> secondDerivatives(const Keys& keys, std::size_t first, std::size_t last) {
    const std::size_t count = last - first + 1;
    std::vector<double> diagonal(count);
    std::vector<double> right(count);
    for (std::size_t i = 1; i + 1 < count; ++i) {
        const std::size_t key = first + i;
        diagonal[i] = 2 * (keys[key + 1].x - keys[key - 1].x);
        right[i] = 6 * (chord(keys, key) - chord(keys, key - 1));
        if (i > 1) {
            const double wide = width(keys, key - 1);
            const double factor = wide / diagonal[i - 1];
            diagonal[i] -= factor * wide;
            right[i] -= factor * right[i - 1];
        }
    }
    for (std::size_t i = count - 1; i-- > 1;)
        right[i] = (right[i] - width(keys, first + i) * right[i + 1]) / diagonal[i];
    return right;
}

void calculateRun(const Keys& keys, std::size_t first, std::size_t end,
                  std::vector<KeyCurvePiece>& pieces) {
    const std::vector<double> bends = secondDerivatives(keys, first, end);
    for (std::size_t i = first; i < end; ++i) {
        const double wide = width(keys, i);
        const double square = wide * wide / 6;
        const double left = bends[i - first];
        const double right = bends[i - first + 1];
        const double height = rise(keys, i);
        pieces[i] = cubic(keys, i, height - square * (2 * left + right),
                          height + square * (left + 2 * right));
    }
}

} // namespace

void KeyCurvePiece::addTo(KeyCurve::Range& range, double from, double to) const noexcept {
    const auto add = [&range](double value) {
        range.low = std::min(range.low, value);
        range.high = std::max(range.high, value);
    };
    add(at(from));
    add(at(to));
    const double start = (from - x) * perWidth;
    const double end = (to - x) * perWidth;
    const auto addExtreme = [&](double u) {
        if (u > start && u < end)
            add(y + u * (a + u * (b + u * c)));
    };
    // Where a + 2 b u + 3 c u^2 is 0, by the form that does not cancel.
    const double root = b * b - 3 * a * c;
    if (!(root >= 0))
        return;
    const double sum = -(b + std::copysign(std::sqrt(root), b));
    if (c != 0)
        addExtreme(sum / (3 * c));
    if (sum != 0)
        addExtreme(a / sum);
}

KeyCurveSpan piecesTouched(const Keys& keys, std::size_t first, std::size_t end) {
    const std::size_t count = keys.empty() ? 0 : keys.size() - 1;
    // A slope depends on both neighbours, a piece on the slopes at both ends.
    KeyCurveSpan span{first < 2 ? 0 : first - 2, std::min(end + 1, count)};
    span.first = std::min(span.first, span.end);
    while (span.first > 0 && isNatural(keys, span.first) && isNatural(keys, span.first - 1))
        --span.first;
    while (span.end > 0 && span.end < count && isNatural(keys, span.end) &&
           isNatural(keys, span.end - 1))
        ++span.end;
    return span;
}

void calculatePieces(const Keys& keys, const KeyCurveSpan& span,
                     std::vector<KeyCurvePiece>& pieces) {
    for (std::size_t i = span.first; i < span.end;) {
        if (!isNatural(keys, i)) {
            pieces[i] = localPiece(keys, i);
            ++i;
            continue;
        }
        std::size_t end = i + 1;
        while (end < span.end && isNatural(keys, end))
            ++end;
        calculateRun(keys, i, end, pieces);
        i = end;
    }
}

} // namespace Kestrel::UI
