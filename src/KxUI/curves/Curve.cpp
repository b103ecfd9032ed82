#include <KxUI/curves/Curve.h>

#include <KxUI/curves/platform/WideLoops_p.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

namespace Kestrel::UI {
namespace {

constexpr float LargestFloat = std::numeric_limits<float>::max();

// The distance of neighbouring floats just below 1. Knots nearer than this stand at one place.
constexpr float CoincidentWidth = std::numeric_limits<float>::epsilon() / 2;

KXUI_LOOP_BODY float abscissa(unsigned int entry, unsigned int size) noexcept {
    return static_cast<float>(entry) / static_cast<float>(size - 1);
}

// The spline's cubic terms are multiples of this. Never the square of the width alone: it would
// overflow for wide intervals, and then even a second derivative of 0 gave no number.
float bend(float secondDerivative, float width) noexcept {
    return secondDerivative * width * width * (1.0F / 6.0F);
}

} // namespace

// One interval of the spline, between the knots at `x` and `x + width`. Tables and single values
// share `at`, so that they hold the same bits.
struct Curve::Piece {
    float x;
    float width;
    float leftY;
    float rightY;
    float leftBend;
    float rightBend;

    // The cubic in the form of Numerical Recipes.
    KXUI_LOOP_BODY float at(float position) const noexcept {
        const float t = (position - x) / width;
        const float a = 1.0F - t;
        return t * rightY + a * leftY + ((t * t * t - t) * rightBend + (a * a * a - a) * leftBend);
    }

    // Entries begin..end-1 of a table of `size`.
    KXUI_LOOP_BODY void fill(unsigned int begin, unsigned int end, unsigned int size,
                             float* out) const noexcept {
        const Piece piece = *this;
        for (unsigned int i = begin; i < end; ++i)
            out[i - begin] = piece.at(abscissa(i, size));
    }

    KXUI_WIDE_LOOP void fillWide(unsigned int begin, unsigned int end, unsigned int size,
                                 float* out) const noexcept {
        fill(begin, end, size, out);
    }
};

Curve::Curve(unsigned int maxKnots, unsigned int numKnots)
    : m_capacity(static_cast<int>(std::min<unsigned int>(maxKnots, MaximumKnots))) {
    m_count = static_cast<int>(std::min<unsigned int>(numKnots, unsigned(m_capacity)));
    for (int i = 0; i < m_count; ++i) {
        const float position = static_cast<float>(i) / static_cast<float>(m_count - 1);
        m_knots[std::size_t(i)] = {position, position, false};
    }
    calculateCoefficients();
}

Knot Curve::knot(int index) const noexcept {
    return index >= 0 && index < m_count ? m_knots[std::size_t(index)] : Knot();
}

void Curve::setKnot(int index, const Knot& knot) noexcept {
    if (index < 0 || index >= m_count)
        return;
    m_knots[std::size_t(index)] = knot;
    calculateCoefficients();
}

void Curve::insertKnotAt(int index) noexcept {
    if (index < 0 || index > m_count || m_count >= m_capacity)
        return;
    const auto knots = m_knots.begin();
    std::move_backward(knots + index, knots + m_count, knots + m_count + 1);
    ++m_count;
    calculateCoefficients();
}

void Curve::removeKnotAt(int index) noexcept {
    if (index < 0 || index >= m_count || m_count <= 2)
        return;
    const auto knots = m_knots.begin();
    std::move(knots + index + 1, knots + m_count, knots + index);
    --m_count;
    calculateCoefficients();
}

// Counts without leaving early: at a random x a branch would be mispredicted more often than not.
// Requires first x <= x < last x.
inline int Curve::interval(float x) const noexcept {
    int index = 0;
    int before = 1;
    for (int i = 1; i < m_count - 1; ++i) {
        before &= static_cast<int>(!(m_knots[std::size_t(i)].x > x));
        index += before;
    }
    return index;
}

int Curve::span(float x) const noexcept {
    if (m_count == 0 || !(x >= m_knots[0].x))
        return -1;
    return x < m_knots[std::size_t(m_count - 1)].x ? interval(x) : m_count - 2;
}

inline Curve::Piece Curve::piece(int index) const noexcept {
    const auto left = std::size_t(index);
    const auto right = left + 1;
    const float width = m_widths[left];
    return {m_knots[left].x,
            width,
            m_knots[left].y,
            m_knots[right].y,
            bend(m_secondDerivatives[left], width),
            bend(m_secondDerivatives[right], width)};
}

float Curve::valueAt(float x) const noexcept {
    if (m_count == 0)
        return 0.0F;
    const Knot& first = m_knots[0];
    const Knot& last = m_knots[std::size_t(m_count - 1)];
    if (x < first.x)
        return first.y;
    if (!(x < last.x))
        return last.y;
    return piece(interval(x)).at(x);
}

void Curve::calculateCoefficients() const noexcept {
    m_secondDerivatives.fill(0.0F);
    m_widths.fill(0.0F);
    for (int i = 0; i + 1 < m_count; ++i) {
        const auto left = std::size_t(i);
        m_widths[left] = std::min(m_knots[left + 1].x - m_knots[left].x, LargestFloat);
    }
    int first = 0;
    for (int last = 1; last < m_count; ++last) {
        const bool broken = m_widths[std::size_t(last - 1)] < CoincidentWidth;
        if (broken) {
            solveStretch(first, last - 1);
            first = last;
        }
    }
    solveStretch(first, m_count - 1);
}

// Tridiagonal elimination for the natural spline through the knots first..last, in double
// precision because near knots cancel. The ends keep their second derivative of 0.
void Curve::solveStretch(int first, int last) const noexcept {
    if (last - first < 2)
        return;
    std::array<double, MaximumKnots> diagonal{};
    std::array<double, MaximumKnots> right{};
    const auto x = [this](int i) { return double(m_knots[std::size_t(i)].x); };
    const auto y = [this](int i) { return double(m_knots[std::size_t(i)].y); };
    const auto slope = [&](int i) { return (y(i + 1) - y(i)) / (x(i + 1) - x(i)); };

    for (int i = first + 1; i < last; ++i) {
        const auto row = std::size_t(i);
        diagonal[row] = 2.0 * (x(i + 1) - x(i - 1));
        right[row] = 6.0 * (slope(i) - slope(i - 1));
        if (i > first + 1) {
            const double width = x(i) - x(i - 1);
            const double factor = width / diagonal[row - 1];
            diagonal[row] -= factor * width;
            right[row] -= factor * right[row - 1];
        }
    }
    bool holdable = true;
    double next = 0.0;
    for (int i = last - 1; i > first; --i) {
        const auto row = std::size_t(i);
        next = (right[row] - (x(i + 1) - x(i)) * next) / diagonal[row];
        holdable = holdable && std::abs(next) < double(LargestFloat);
        m_secondDerivatives[row] = holdable ? static_cast<float>(next) : 0.0F;
    }

    // Ordinates far outside the unit square can bend the spline beyond what a float holds; straight
    // lines between such knots are the finite answer.
    for (int i = first; i < last; ++i) {
        const Piece each = piece(i);
        holdable = holdable && std::abs(each.leftBend) < LargestFloat / 4 &&
                   std::abs(each.rightBend) < LargestFloat / 4;
    }
    if (!holdable)
        std::fill(m_secondDerivatives.begin() + first, m_secondDerivatives.begin() + last, 0.0F);
}

// Entries begin..end-1 of a table of `size`, stored from `out` on.
void Curve::fill(unsigned int begin, unsigned int end, unsigned int size,
                 float* out) const noexcept {
    if (m_count == 0 || size < 2) {
        std::fill(out, out + (end - begin), valueAt(0.0F));
        return;
    }
    // The first entry at or right of x. The guess is off by what the division rounds at most.
    const auto entryAt = [&](float x) {
        const double guess = double(x) * double(size - 1);
        unsigned int entry = begin;
        if (guess >= double(end))
            entry = end;
        else if (guess > double(begin))
            entry = static_cast<unsigned int>(guess);
        while (entry > begin && !(abscissa(entry - 1, size) < x))
            --entry;
        while (entry < end && abscissa(entry, size) < x)
            ++entry;
        return entry;
    };
    const auto put = [&](unsigned int to, float value) {
        std::fill(out, out + (to - begin), value);
        out += to - begin;
        begin = to;
    };

    const Knot& first = m_knots[0];
    const Knot& last = m_knots[std::size_t(m_count - 1)];
    put(entryAt(first.x), first.y);
    const unsigned int tail = std::max(begin, entryAt(last.x));
    for (int i = 0; i + 1 < m_count && begin < tail; ++i) {
        const unsigned int to = std::min(tail, entryAt(m_knots[std::size_t(i + 1)].x));
        if (to <= begin)
            continue;
        if (hasWideLoops())
            piece(i).fillWide(begin, to, size, out);
        else
            piece(i).fill(begin, to, size, out);
        out += to - begin;
        begin = to;
    }
    put(end, last.y);
}

void Curve::buildLUT(unsigned int size, float* out) const noexcept {
    if (out)
        fill(0, size, size, out);
}

void Curve::storeCodes(const float* values, unsigned int count, unsigned short* out,
                       std::ptrdiff_t stride) noexcept {
    for (unsigned int i = 0; i < count; ++i) {
        const float scaled = values[i] * 65535.0F + 0.5F;
        // In this order, something that is not a number becomes 0.
        const float clamped = std::min(65535.0F, std::max(0.0F, scaled));
        out[std::ptrdiff_t(i) * stride] = static_cast<unsigned short>(clamped);
    }
}

void Curve::buildRGBALUT(unsigned int size, unsigned short* out, int stride) const noexcept {
    if (!out)
        return;
    std::array<float, CodeChunk> values;
    for (unsigned int begin = 0; begin < size;) {
        const unsigned int count = std::min(CodeChunk, size - begin);
        fill(begin, begin + count, size, values.data());
        storeCodes(values.data(), count, out + std::ptrdiff_t(begin) * stride, stride);
        begin += count;
    }
}

bool Curve::isIdentity() const noexcept {
    const auto near = [](float value, float target) { return std::abs(value - target) < 0.0001F; };
    return m_count == 2 && near(m_knots[0].x, 0.0F) && near(m_knots[0].y, 0.0F) &&
           near(m_knots[1].x, 1.0F) && near(m_knots[1].y, 1.0F);
}

bool Curve::operator==(const Curve& other) const noexcept {
    return std::equal(m_knots.begin(), m_knots.begin() + m_count, other.m_knots.begin(),
                      other.m_knots.begin() + other.m_count,
                      [](const Knot& a, const Knot& b) { return a.x == b.x && a.y == b.y; });
}

std::ostream& operator<<(std::ostream& stream, const Curve& curve) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.flags(stream.flags());
    text.precision(stream.precision());
    for (int i = 0; i < curve.numKnots(); ++i) {
        const Knot knot = curve.knot(i);
        text << (i == 0 ? "(" : ", (") << knot.x << ", " << knot.y << ')';
    }
    return stream << text.str();
}

std::istringstream& operator>>(std::istringstream& stream, Curve& curve) {
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    std::ios_base::iostate state = std::ios_base::eofbit;
    std::size_t from = 0;
    for (int k = 0; k < curve.maxKnots(); ++k) {
        const std::size_t open = text.find('(', from);
        const std::size_t close = text.find(')', open);
        if (open == std::string::npos || close == std::string::npos)
            break;
        std::istringstream pair(text.substr(open + 1, close - open - 1));
        pair.imbue(std::locale::classic());
        Knot knot;
        char separator = 0;
        if (!(pair >> knot.x >> separator >> knot.y)) {
            state |= std::ios_base::failbit;
            break;
        }
        if (k == curve.numKnots())
            curve.insertKnotAt(k);
        curve.setKnot(k, knot);
        from = close + 1;
    }
    stream.setstate(state);
    return stream;
}

} // namespace Kestrel::UI
