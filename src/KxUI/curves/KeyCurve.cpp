#include <KxUI/curves/KeyCurveData_p.h>

#include <algorithm>
#include <atomic>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Key = KeyCurve::Key;

bool isTaken(const Key& key) {
    const auto fits = [](double number) { return std::abs(number) < KeyCurve::Largest; };
    return fits(key.x) && fits(key.y) && fits(key.slopeIn) && fits(key.slopeOut);
}

bool isBefore(const Key& key, double x) {
    return key.x < x;
}

bool isSame(const Key& a, const Key& b) {
    return a.x == b.x && a.y == b.y && a.slopeIn == b.slopeIn && a.slopeOut == b.slopeOut &&
           a.shape == b.shape && a.broken == b.broken;
}

const KeyCurve::Range Nothing{HUGE_VAL, -HUGE_VAL};

KeyCurve::Range united(const KeyCurve::Range& a, const KeyCurve::Range& b) {
    return {std::min(a.low, b.low), std::max(a.high, b.high)};
}

// Makes the curve's own slopes those of a key, so that they stay.
void freeze(Key& key, const KeyCurve::Slopes& slopes) {
    key.slopeIn = slopes.in;
    key.slopeOut = slopes.out;
    key.broken = key.broken || slopes.in != slopes.out;
}

} // namespace

KeyCurve::KeyCurve()
    : m(std::make_shared<Data>()) {}

KeyCurve::KeyCurve(std::vector<Key> keys)
    : KeyCurve() {
    setKeys(std::move(keys));
}

KeyCurve::KeyCurve(const KeyCurve&) = default;
KeyCurve& KeyCurve::operator=(const KeyCurve&) = default;
KeyCurve::~KeyCurve() = default;

// What is left behind stays a curve.
KeyCurve::KeyCurve(KeyCurve&& other) noexcept
    : m(other.m) {}

KeyCurve& KeyCurve::operator=(KeyCurve&& other) noexcept {
    m.swap(other.m);
    return *this;
}

KeyCurve::Data& KeyCurve::own() {
    if (m.use_count() > 1)
        m = std::make_shared<Data>(*m);
    else // whoever shared it on another thread has done reading
        std::atomic_thread_fence(std::memory_order_acquire);
    return *m;
}

std::size_t KeyCurve::size() const noexcept {
    return m->keys.size();
}

Key KeyCurve::key(std::size_t index) const noexcept {
    return index < size() ? m->keys[index] : Key();
}

const std::vector<Key>& KeyCurve::keys() const noexcept {
    return m->keys;
}

void KeyCurve::setKeys(std::vector<Key> keys) {
    keys.erase(
        std::remove_if(keys.begin(), keys.end(), [](const Key& key) { return !isTaken(key); }),
        keys.end());
    std::stable_sort(keys.begin(), keys.end(),
                     [](const Key& a, const Key& b) { return a.x < b.x; });
    // Backwards, the last of those at one x is the first.
    const auto kept = std::unique(keys.rbegin(), keys.rend(),
                                  [](const Key& a, const Key& b) { return a.x == b.x; });
    keys.erase(keys.begin(), kept.base());
    Data& data = own();
    data.keys = std::move(keys);
    data.pieces.assign(data.keys.empty() ? 0 : data.keys.size() - 1, {});
    calculatePieces(data.keys, {0, data.pieces.size()}, data.pieces);
}

std::size_t KeyCurve::insert(const Key& key) {
    if (!isTaken(key))
        return size();
    const std::size_t index = firstFrom(key.x);
    if (index < size() && m->keys[index].x == key.x) {
        setKey(index, key);
        return index;
    }
    Data& data = own();
    data.keys.insert(data.keys.begin() + std::ptrdiff_t(index), key);
    if (data.keys.size() > 1)
        data.pieces.insert(data.pieces.begin() +
                               std::ptrdiff_t(std::min(index, data.pieces.size())),
                           KeyCurvePiece());
    calculatePieces(data.keys, piecesTouched(data.keys, index, index + 1), data.pieces);
    return index;
}

std::size_t KeyCurve::insertOnCurve(double x) {
    const std::size_t next = firstFrom(x);
    if (next == size() || !(x >= m->firstX()))
        return size();
    if (m->keys[next].x == x)
        return next;
    const std::size_t left = next - 1;
    Key key;
    key.x = x;
    key.y = valueAt(x);
    key.shape = m->keys[left].shape;
    key.slopeIn = key.slopeOut = slopeAt(x);
    if (!isTaken(key))
        return size();
    // Pieces whose slopes follow the neighbours keep the present ones; a natural spline through a
    // point of its own is the same spline.
    const auto follows = [this](std::size_t piece) {
        const Shape shape = m->keys[piece].shape;
        return shape == Shape::Smooth || shape == Shape::Monotone;
    };
    std::vector<Key> keys = m->keys;
    const std::size_t first = left == 0 ? 0 : left - 1;
    const std::size_t end = std::min(next + 1, size() - 1);
    for (std::size_t piece = first; piece < end; ++piece) {
        if (!follows(piece))
            continue;
        keys[piece].shape = Shape::Free;
        freeze(keys[piece], slopes(piece));
        freeze(keys[piece + 1], slopes(piece + 1));
    }
    if (follows(left))
        key.shape = Shape::Free;
    keys.insert(keys.begin() + std::ptrdiff_t(next), key);
    setKeys(std::move(keys));
    return next;
}

bool KeyCurve::setKey(std::size_t index, const Key& key) {
    return setKeys(index, {key});
}

bool KeyCurve::setKeys(std::size_t first, const std::vector<Key>& keys) {
    if (first > size() || keys.size() > size() - first)
        return false;
    const std::size_t end = first + keys.size();
    const auto isRising = [](const Key& a, const Key& b) { return a.x < b.x; };
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (!isTaken(keys[i]) || (i > 0 && !isRising(keys[i - 1], keys[i])))
            return false;
    }
    if (keys.empty())
        return true;
    if ((first > 0 && !isRising(m->keys[first - 1], keys.front())) ||
        (end < size() && !isRising(keys.back(), m->keys[end])))
        return false;
    Data& data = own();
    std::copy(keys.begin(), keys.end(), data.keys.begin() + std::ptrdiff_t(first));
    calculatePieces(data.keys, piecesTouched(data.keys, first, end), data.pieces);
    return true;
}

void KeyCurve::erase(std::size_t first, std::size_t count) {
    if (first >= size() || count == 0)
        return;
    count = std::min(count, size() - first);
    Data& data = own();
    const auto remove = [first, count](auto& items) {
        const auto at = [&](std::size_t i) {
            return items.begin() + std::ptrdiff_t(std::min(i, items.size()));
        };
        items.erase(at(first), at(first + count));
    };
    remove(data.keys);
    remove(data.pieces);
    data.pieces.resize(data.keys.empty() ? 0 : data.keys.size() - 1);
    calculatePieces(data.keys, piecesTouched(data.keys, first, first), data.pieces);
}

void KeyCurve::setSelected(std::size_t index, bool selected) {
    if (index < size() && m->keys[index].selected != selected)
        own().keys[index].selected = selected;
}

std::size_t KeyCurve::firstFrom(double x) const noexcept {
    return std::size_t(std::lower_bound(m->keys.begin(), m->keys.end(), x, isBefore) -
                       m->keys.begin());
}

KeyCurve::Slopes KeyCurve::slopes(std::size_t index) const noexcept {
    const std::vector<KeyCurvePiece>& pieces = m->pieces;
    if (index >= size() || pieces.empty())
        return {};
    if (index == 0)
        return {pieces.front().startSlope(), pieces.front().startSlope()};
    const double in = pieces[index - 1].endSlope();
    return {in, index < pieces.size() ? pieces[index].startSlope() : in};
}

KeyCurve::Beyond KeyCurve::before() const noexcept {
    return m->before;
}

KeyCurve::Beyond KeyCurve::after() const noexcept {
    return m->after;
}

void KeyCurve::setBeyond(Beyond before, Beyond after) {
    Data& data = own();
    data.before = before;
    data.after = after;
}

bool KeyCurve::operator==(const KeyCurve& other) const noexcept {
    return m == other.m || (m->before == other.m->before && m->after == other.m->after &&
                            std::equal(m->keys.begin(), m->keys.end(), other.m->keys.begin(),
                                       other.m->keys.end(), isSame));
}

// Evaluation.

std::size_t KeyCurve::Data::pieceAt(double x) const noexcept {
    std::size_t first = 0;
    std::size_t count = pieces.size();
    while (count > 1) { // the last piece that does not begin after x
        const std::size_t half = count / 2;
        first += pieces[first + half].x <= x ? half : 0;
        count -= half;
    }
    return first;
}

std::size_t KeyCurve::Data::pieceAt(double x, std::size_t hint) const noexcept {
    constexpr int Near = 8;
    for (int steps = 0; steps < Near; ++steps) {
        if (pieces[hint].x > x && hint > 0)
            --hint;
        else if (hint + 1 < pieces.size() && pieces[hint + 1].x <= x)
            ++hint;
        else
            return hint;
    }
    return pieceAt(x);
}

KeyCurve::Data::Place KeyCurve::Data::place(double x) const noexcept {
    const bool isLeft = x < firstX();
    if (!isLeft && !(x > lastX()))
        return {std::isnan(x) ? lastX() : x, 0, 0, false};
    const double end = isLeft ? firstX() : lastX();
    const double period = length();
    switch (pieces.empty() ? Beyond::Hold : isLeft ? before : after) {
    case Beyond::Hold:
        return {end, 0, 0, false};
    case Beyond::Line:
        return {end, x - end, isLeft ? pieces.front().startSlope() : pieces.back().endSlope(),
                false};
    case Beyond::Repeat: {
        const double rest = std::fmod(x - firstX(), period);
        const double from = rest < 0 ? rest + period : rest;
        return {std::clamp(firstX() + from, firstX(), lastX()), 0, 0, false};
    }
    case Beyond::Mirror: {
        const double rest = std::fmod(std::abs(x - firstX()), 2 * period);
        const bool goesOn = isLeft; // from the first key on, the picture runs the other way
        if (rest > period)
            return {std::clamp(lastX() - (rest - period), firstX(), lastX()), 0, 0, !goesOn};
        return {std::clamp(firstX() + rest, firstX(), lastX()), 0, 0, goesOn};
    }
    }
    return {end, 0, 0, false};
}

double KeyCurve::Data::valueAt(double x, std::size_t& hint) const noexcept {
    if (keys.empty())
        return 0;
    const Place at = place(x);
    const double beyond = at.along * at.slope;
    if (!(at.x < lastX()))
        return keys.back().y + beyond;
    hint = pieceAt(at.x, hint);
    return pieces[hint].at(at.x) + beyond;
}

double KeyCurve::valueAt(double x) const noexcept {
    if (m->pieces.empty())
        return m->keys.empty() ? 0 : m->keys.front().y;
    std::size_t hint = m->pieceAt(x);
    return m->valueAt(x, hint);
}

double KeyCurve::slopeAt(double x) const noexcept {
    if (m->pieces.empty())
        return 0;
    const Data::Place at = m->place(x);
    const bool isInside = x >= m->firstX() && x <= m->lastX();
    if (!isInside && (x < m->firstX() ? m->before : m->after) == Beyond::Hold)
        return 0;
    if (!isInside && at.along != 0)
        return at.slope;
    const KeyCurvePiece& piece = m->pieces[m->pieceAt(at.x)];
    const double slope = at.x < m->lastX() ? piece.slopeAt(at.x) : piece.endSlope();
    return at.back ? -slope : slope;
}

KeyCurve::Range KeyCurve::Data::rangeInside(double from, double to,
                                            bool withLastKey) const noexcept {
    Range range = Nothing;
    for (std::size_t i = pieceAt(from); i < pieces.size() && pieces[i].x <= to; ++i) {
        const double end = i + 1 < pieces.size() ? pieces[i + 1].x : lastX();
        pieces[i].addTo(range, std::max(from, pieces[i].x), std::min(to, end));
    }
    if (withLastKey && !(to < lastX()))
        range = united(range, {keys.back().y, keys.back().y});
    return range;
}

KeyCurve::Range KeyCurve::Data::rangeBeyond(bool mirrored, double from, double to) const noexcept {
    const double turn = std::floor((from - firstX()) / length());
    const double seams = std::floor((to - firstX()) / length()) - turn;
    // What repeats begins again behind the last key.
    const double a = !mirrored && from == lastX() ? firstX() : place(from).x;
    const double b = place(to).x;
    if (seams == 0)
        return rangeInside(std::min(a, b), std::max(a, b), mirrored);
    if (seams > 1)
        return rangeInside(firstX(), lastX(), mirrored);
    if (!mirrored)
        return united(rangeInside(a, lastX(), false), rangeInside(firstX(), b, false));
    // Every second time the curve turns round at its first key.
    const bool turnsAtFirst = std::fmod(turn, 2) != 0;
    return turnsAtFirst ? rangeInside(firstX(), std::max(a, b))
                        : rangeInside(std::min(a, b), lastX());
}

KeyCurve::Range KeyCurve::range(double from, double to) const noexcept {
    if (to < from)
        std::swap(from, to);
    Range range = Nothing;
    const double ends[] = {valueAt(from), valueAt(to)};
    for (const double value : ends)
        range = united(range, {value, value});
    if (m->pieces.empty())
        return range;
    const double first = m->firstX();
    const double last = m->lastX();
    if (to >= first && from <= last)
        range = united(range, m->rangeInside(std::max(from, first), std::min(to, last)));
    const auto addBeyond = [&](Beyond beyond, double near, double far) {
        if (beyond == Beyond::Repeat || beyond == Beyond::Mirror)
            range = united(range, m->rangeBeyond(beyond == Beyond::Mirror, near, far));
    };
    if (from < first)
        addBeyond(m->before, from, std::min(to, first));
    if (to > last)
        addBeyond(m->after, std::max(from, last), to);
    return range;
}

} // namespace Kestrel::UI
