#include <KxUI/curveedit/KeyRange_p.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

using Key = KeyCurve::Key;
using Keys = std::vector<Key>;
using Shape = KeyCurve::Shape;

bool isSame(const Key& a, const Key& b) {
    return a.x == b.x && a.y == b.y && a.slopeIn == b.slopeIn && a.slopeOut == b.slopeOut &&
           a.shape == b.shape && a.broken == b.broken;
}

bool looksFurther(Shape shape) {
    return shape == Shape::Smooth || shape == Shape::Monotone;
}

bool repeats(KeyCurve::Beyond beyond) {
    return beyond == KeyCurve::Beyond::Repeat || beyond == KeyCurve::Beyond::Mirror;
}

// `shapeOf` tells the shape of a piece before or after the change.
template <class ShapeOf>
KeyRange reach(std::size_t count, std::size_t first, std::size_t end, const ShapeOf& shapeOf) {
    std::size_t low = first;
    std::size_t high = end - 1;
    const std::size_t pieces = count - 1;
    if (low > 0) {
        --low;
        if (low > 0 && looksFurther(shapeOf(low - 1)))
            --low;
    }
    while (low > 0 && low < pieces && shapeOf(low) == Shape::Natural &&
           shapeOf(low - 1) == Shape::Natural)
        --low;
    if (high < pieces) {
        ++high;
        if (high < pieces && looksFurther(shapeOf(high)))
            ++high;
    }
    while (high > 0 && high < pieces && shapeOf(high - 1) == Shape::Natural &&
           shapeOf(high) == Shape::Natural)
        ++high;
    return {int(low), int(high)};
}

template <class Last>
void skipSame(const Keys& was, std::size_t at, const Keys& keys, std::size_t& begin, Last& end) {
    while (begin < end && isSame(was[at + begin], keys[begin]))
        ++begin;
    while (end > begin && isSame(was[at + end - 1], keys[end - 1]))
        --end;
}

} // namespace

KeyRange KeyRange::touched(const KeyCurve& curve, std::size_t first, std::size_t end) {
    const Keys& keys = curve.keys();
    if (first >= end || end > keys.size())
        return {};
    if (repeats(curve.before()) || repeats(curve.after()))
        return {0, int(keys.size()) - 1};
    return reach(keys.size(), first, end, [&](std::size_t piece) { return keys[piece].shape; });
}

KeyRange KeyRange::between(const KeyCurve& was, const KeyCurve& becomes) {
    std::size_t begin = 0;
    std::size_t end = std::min(was.size(), becomes.size());
    skipSame(was.keys(), 0, becomes.keys(), begin, end);
    return touched(was, begin, end).united(touched(becomes, begin, end));
}

KeyRange KeyRange::changed(const KeyCurve& was, std::size_t first, const Keys& keys) {
    std::size_t begin = 0;
    std::size_t end = keys.size();
    if (first > was.size() || end > was.size() - first)
        return {};
    skipSame(was.keys(), first, keys, begin, end);
    if (begin == end)
        return {};
    const KeyRange before = touched(was, first + begin, first + end);
    if (repeats(was.before()) || repeats(was.after()))
        return before;
    const auto shapeOf = [&](std::size_t piece) {
        const bool isNew = piece >= first && piece - first < keys.size();
        return (isNew ? keys[piece - first] : was.keys()[piece]).shape;
    };
    return before.united(reach(was.size(), first + begin, first + end, shapeOf));
}

KeyRange KeyRange::united(const KeyRange& other) const {
    if (isEmpty() || other.isEmpty())
        return isEmpty() ? other : *this;
    return {std::min(first, other.first), std::max(last, other.last)};
}

} // namespace Kestrel::UI
