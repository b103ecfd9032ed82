#include <KxUI/curves/KeyCurve.h>

#include <KxUI/curves/Curve.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Kestrel::UI {
namespace {

using Key = KeyCurve::Key;

// Where a curve's solver takes two knots for one.
constexpr double CoincidentWidth = 1e-7;

Key keyOf(double x, double y) {
    Key key;
    key.x = x;
    key.y = y;
    key.shape = KeyCurve::Shape::Natural;
    return key;
}

// Where both functions are compared: at every key and between.
std::vector<double> places(const KeyCurve& curve) {
    constexpr int Between = 16;
    const std::vector<Key>& keys = curve.keys();
    std::vector<double> places;
    for (std::size_t i = 0; i + 1 < keys.size(); ++i) {
        for (int part = 0; part < Between; ++part)
            places.push_back(keys[i].x + (keys[i + 1].x - keys[i].x) * part / Between);
    }
    places.push_back(keys.back().x);
    return places;
}

Curve through(std::vector<double> xs, const KeyCurve& curve, const Curve& like) {
    std::sort(xs.begin(), xs.end());
    Curve result(unsigned(like.maxKnots()), unsigned(xs.size()));
    for (std::size_t i = 0; i < xs.size(); ++i)
        result.setKnot(int(i), {float(xs[i]), float(curve.valueAt(xs[i])), false});
    return result;
}

struct Difference {
    double x = 0;
    double size = 0;
};

Difference largestDifference(const Curve& a, const KeyCurve& b, const std::vector<double>& places) {
    Difference worst;
    for (const double x : places) {
        // Both at the same place, which a float may not hold.
        const double size = std::abs(double(a.valueAt(float(x))) - b.valueAt(double(float(x))));
        if (!(size <= worst.size))
            worst = {x, size};
    }
    return worst;
}

} // namespace

KeyCurve KeyCurve::of(const Curve& curve) {
    std::vector<Key> keys;
    for (int i = 0; i < curve.numKnots(); ++i) {
        const Knot knot = curve.knot(i);
        const Key key = keyOf(double(knot.x), double(knot.y));
        if (!keys.empty() && key.x - keys.back().x < CoincidentWidth) {
            keys.back().shape = Shape::Linear;
            // A step needs two places: it ends where the last of the knots is.
            const double start = std::nextafter(key.x, -HUGE_VAL);
            if (keys.size() > 1 && keys[keys.size() - 2].x >= start)
                keys.pop_back();
            else
                keys.back().x = std::min(keys.back().x, start);
        }
        keys.push_back(key);
    }
    return KeyCurve(std::move(keys));
}

bool KeyCurve::toCurve(Curve& curve, float tolerance) const {
    const auto capacity = std::size_t(std::max(curve.maxKnots(), 0));
    if (size() < 2 || capacity < 2)
        return false;
    const std::vector<double> at = places(*this);
    std::vector<double> xs{keys().front().x, keys().back().x};
    if (size() <= capacity) {
        xs.clear();
        for (const Key& key : keys())
            xs.push_back(key.x);
    }
    for (;;) {
        const Curve candidate = through(xs, *this, curve);
        const Difference worst = largestDifference(candidate, *this, at);
        if (worst.size <= double(tolerance)) {
            curve = candidate;
            return true;
        }
        // One more where it is missed most.
        if (xs.size() == capacity || std::find(xs.begin(), xs.end(), worst.x) != xs.end())
            return false;
        xs.push_back(worst.x);
    }
}

} // namespace Kestrel::UI
