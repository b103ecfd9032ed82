#pragma once

#include <cstddef>
#include <limits>
#include <vector>

namespace Kestrel::UI {

/** The lowest and the highest of some values; none where the lowest is above the highest. */
struct Extent {
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -std::numeric_limits<double>::infinity();

    bool isEmpty() const { return !(lowest <= highest); }
    void add(double value);
    void add(const Extent& other);
};

/** The points of a line in ascending order of x, with a pyramid of extents over blocks of 32, 1,024 ...
    of them: the extent of any part is known after some hundred steps. */
class LineData {
public:
    std::size_t size() const { return m_y.size() - m_first; }
    double x(std::size_t i) const { return m_x[m_first + i]; }
    double y(std::size_t i) const { return m_y[m_first + i]; }

    /** Takes all points whose x is finite, sorted by it; the shorter list counts. */
    void assign(std::vector<double> x, std::vector<double> y);
    /** False, and nothing is taken, where x is not finite or lies before the last one. */
    bool append(double x, double y);
    /** How many points are kept, the newest; 0 is all. */
    void setCapacity(std::size_t capacity);
    std::size_t capacity() const { return m_capacity; }

    /** The first point from `hint` on whose x is at least as large; quick where it is near. */
    std::size_t firstFrom(double x, std::size_t hint = 0) const;
    /** The same from `from` on, quick where it is near `guess` on either side. */
    std::size_t firstNear(double x, std::size_t from, std::size_t guess) const;
    /** Of the finite values of y. */
    Extent extent(std::size_t begin, std::size_t end) const;
    /** The bytes of the pyramid. */
    std::size_t indexBytes() const;

private:
    void rebuild();
    void raise(std::size_t index, double value);
    void limit();

    std::vector<double> m_x;
    std::vector<double> m_y;
    std::size_t m_first = 0; // what lies before was dropped
    std::size_t m_capacity = 0;
    std::vector<std::vector<Extent>> m_levels;
};

} // namespace Kestrel::UI
