#include <KxUI/curveedit/KeyEdits_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {

using Key = KeyCurve::Key;
using Keys = std::vector<Key>;
using Shape = KeyCurve::Shape;

bool isSelectionEqual(const Keys& a, const Keys& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const Key& x, const Key& y) { return x.selected == y.selected; });
}

void setFree(Keys& keys, const KeyCurve& curve, std::size_t piece) {
    if (piece + 1 >= keys.size() || keys[piece].shape == Shape::Free)
        return;
    for (const std::size_t i : {piece, piece + 1}) {
        const KeyCurve::Slopes slopes = curve.slopes(i);
        keys[i].slopeIn = slopes.in;
        keys[i].slopeOut = slopes.out;
        keys[i].broken = keys[i].broken || slopes.in != slopes.out;
    }
    keys[piece].shape = Shape::Free;
}

bool isTaken(const Key& key) {
    const auto fits = [](double number) { return std::abs(number) < KeyCurve::Largest; };
    return fits(key.x) && fits(key.y);
}

} // namespace Kestrel::UI
