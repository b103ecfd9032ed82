#include "KeyCurveModel.h"

#include <KxUI/curveedit/CurveLimits_p.h>
#include <KxUI/curveedit/KeyEdits_p.h>
#include <KxUI/curveedit/KeyRange_p.h>
#include <KxUI/kit/ChannelColors.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QPointer>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace Kestrel::UI {
namespace {

using Key = KeyCurve::Key;
using Keys = std::vector<Key>;
using Shape = KeyCurve::Shape;

// The keys of one curve that move, and those between them.
struct Stretch {
    std::size_t first = 0;
    std::size_t last = 0;
    Keys keys;
};
using Stretches = std::map<int, Stretch>;

} // namespace

struct KeyCurveModel::Private {
    struct Item {
        KeyCurve curve;
        QString name;
        QColor color;
        Abilities abilities = CanMoveX | CanAdd | CanRemove | HasShapes | HasSlopes;
        Limits limits = CurveLimits::none();
    };

    explicit Private(KeyCurveModel* model)
        : q(model) {}

    bool holds(int curve) const { return curve >= 0 && std::size_t(curve) < items.size(); }
    bool holds(int curve, int knot) const {
        return holds(curve) && knot >= 0 && std::size_t(knot) < at(curve).curve.size();
    }
    bool can(int curve, Ability ability) const {
        return holds(curve) && at(curve).abilities.testFlag(ability);
    }
    Item& at(int curve) { return items[std::size_t(curve)]; }
    const Item& at(int curve) const { return items[std::size_t(curve)]; }
    const Keys& keys(int curve) const { return at(curve).curve.keys(); }

    void store(int curve, const KeyCurve& becomes);
    void tell(int curve, const KeyRange& range);
    bool room(int curve, double& x) const;
    bool mayMove(int curve, const Stretch& stretch) const;
    bool find(const std::vector<Move>& moves, Stretches& stretches) const;
    bool place(const std::vector<Move>& moves, Stretches& stretches) const;
    bool putKeys(int curve, std::size_t first, const Keys& keys);

    KeyCurveModel* q;
    std::vector<Item> items;
};

void KeyCurveModel::Private::tell(int curve, const KeyRange& range) {
    if (!range.isEmpty())
        Q_EMIT q->knotsChanged(curve, range.first, range.last);
}

void KeyCurveModel::Private::store(int curve, const KeyCurve& becomes) {
    const QPointer<KeyCurveModel> self(q);
    const KeyCurve was = at(curve).curve;
    const bool isSelected = isSelectionEqual(was.keys(), becomes.keys());
    at(curve).curve = becomes;
    if (was.size() != becomes.size() || was.before() != becomes.before() ||
        was.after() != becomes.after())
        Q_EMIT q->knotsChanged(curve, 0, int(becomes.size()) - 1);
    else if (was != becomes)
        tell(curve, KeyRange::between(was, becomes));
    if (self && !isSelected)
        Q_EMIT q->selectionChanged(curve);
}

// The nearest place for a new key.
bool KeyCurveModel::Private::room(int curve, double& x) const {
    const Item& item = at(curve);
    const Keys& keys = item.curve.keys();
    if (std::isnan(x) || keys.size() >= std::size_t(std::max(item.limits.mostKnots, 0)))
        return false;
    const double wanted = CurveLimits::onStep(item.limits, x);
    const std::size_t next = item.curve.firstFrom(wanted);
    const auto before = [&](std::size_t i) { return i > 0 ? keys[i - 1].x : -HUGE_VAL; };
    const auto after = [&](std::size_t i) { return i < keys.size() ? keys[i].x : HUGE_VAL; };
    x = wanted;
    if (next == keys.size() || keys[next].x != wanted)
        return CurveLimits::place(item.limits, before(next), after(next), x);
    // Beside the key that is there, but not where nobody could tell the two apart.
    return item.limits.gap > 0 &&
           CurveLimits::place(item.limits, before(next + 1), after(next + 1), x);
}

bool KeyCurveModel::Private::mayMove(int curve, const Stretch& stretch) const {
    const Item& item = at(curve);
    const Keys& keys = item.curve.keys();
    const auto at = [&](std::size_t i) -> const Key& {
        return i < stretch.first || i > stretch.last ? keys[i] : stretch.keys[i - stretch.first];
    };
    for (std::size_t i = stretch.first; i <= stretch.last; ++i) {
        const Key& was = keys[i];
        const Key& becomes = at(i);
        using CurveLimits::mayBecome;
        if (!isTaken(becomes) ||
            !mayBecome(was.x, becomes.x, item.limits.lowX, item.limits.highX) ||
            !mayBecome(was.y, becomes.y, item.limits.lowY, item.limits.highY))
            return false;
    }
    const std::size_t begin = stretch.first > 0 ? stretch.first - 1 : 0;
    for (std::size_t i = begin; i <= stretch.last && i + 1 < keys.size(); ++i) {
        const bool moved = at(i).x != keys[i].x || at(i + 1).x != keys[i + 1].x;
        if (moved && !CurveLimits::keepsGap(at(i).x, at(i + 1).x, item.limits.gap,
                                            keys[i + 1].x - keys[i].x))
            return false;
    }
    return true;
}

// Replaces neighbouring keys, of which the selection does not change.
bool KeyCurveModel::Private::putKeys(int curve, std::size_t first, const Keys& keys) {
    KeyCurve& line = at(curve).curve;
    const KeyRange range = KeyRange::changed(line, first, keys);
    if (!line.setKeys(first, keys))
        return false;
    tell(curve, range);
    return true;
}

KeyCurveModel::KeyCurveModel(QObject* parent)
    : CurveModel(parent)
    , m(std::make_unique<Private>(this)) {}

KeyCurveModel::~KeyCurveModel() = default;

int KeyCurveModel::addCurve(const QString& name, const KeyCurve& curve) {
    KXUI_INTERFACE_THREAD(this);
    const int index = count();
    m->items.emplace_back();
    m->items.back().curve = curve;
    m->items.back().name = name;
    Q_EMIT curvesChanged();
    return index;
}

void KeyCurveModel::removeCurve(int curve) {
    KXUI_INTERFACE_THREAD(this);
    if (!m->holds(curve))
        return;
    m->items.erase(m->items.begin() + curve);
    Q_EMIT curvesChanged();
}

KeyCurve KeyCurveModel::keyCurve(int curve) const {
    return m->holds(curve) ? m->at(curve).curve : KeyCurve();
}

void KeyCurveModel::setKeyCurve(int curve, const KeyCurve& keys) {
    KXUI_INTERFACE_THREAD(this);
    if (m->holds(curve) && m->at(curve).curve != keys)
        m->store(curve, keys);
}

void KeyCurveModel::setName(int curve, const QString& name) {
    if (!m->holds(curve) || m->at(curve).name == name)
        return;
    m->at(curve).name = name;
    Q_EMIT curvesChanged();
}

void KeyCurveModel::setColor(int curve, const QColor& color) {
    if (!m->holds(curve) || m->at(curve).color == color)
        return;
    m->at(curve).color = color;
    Q_EMIT curvesChanged();
}

void KeyCurveModel::setAbilities(int curve, Abilities abilities) {
    if (!m->holds(curve) || m->at(curve).abilities == abilities)
        return;
    m->at(curve).abilities = abilities;
    Q_EMIT curvesChanged();
}

void KeyCurveModel::setLimits(int curve, const Limits& limits) {
    if (!m->holds(curve) || CurveLimits::isSame(m->at(curve).limits, limits))
        return;
    m->at(curve).limits = limits;
    Q_EMIT curvesChanged();
}

int KeyCurveModel::count() const {
    return int(m->items.size());
}

QString KeyCurveModel::name(int curve) const {
    return m->holds(curve) ? m->at(curve).name : QString();
}

QColor KeyCurveModel::color(int curve, const QPalette& palette) const {
    using Channel = ChannelColors::Channel;
    constexpr std::array<Channel, 5> channels{ChannelColors::Red, ChannelColors::Green,
                                              ChannelColors::Blue, ChannelColors::Alpha,
                                              ChannelColors::Luma};
    if (m->holds(curve) && m->at(curve).color.isValid())
        return m->at(curve).color;
    if (!m->holds(curve) || count() == 1) // a single one is no channel
        return CurveModel::color(curve, palette);
    return ChannelColors::of(palette).line(channels[std::size_t(curve) % channels.size()]);
}

CurveModel::Abilities KeyCurveModel::abilities(int curve) const {
    return m->holds(curve) ? m->at(curve).abilities : Abilities();
}

CurveModel::Limits KeyCurveModel::limits(int curve) const {
    return m->holds(curve) ? m->at(curve).limits : Limits();
}

int KeyCurveModel::knots(int curve) const {
    return m->holds(curve) ? int(m->at(curve).curve.size()) : 0;
}

CurveModel::Knot KeyCurveModel::knot(int curve, int index) const {
    Knot knot;
    if (!m->holds(curve, index))
        return knot;
    const KeyCurve& keys = m->at(curve).curve;
    const Key& key = keys.keys()[std::size_t(index)];
    const KeyCurve::Slopes slopes = keys.slopes(std::size_t(index));
    knot.x = key.x;
    knot.y = key.y;
    knot.slopeIn = slopes.in;
    knot.slopeOut = slopes.out;
    knot.shape = int(key.shape);
    knot.selected = key.selected;
    knot.broken = key.broken;
    return knot;
}

void KeyCurveModel::places(int curve, int first, int count, QPointF* out) const {
    if (count <= 0 || !m->holds(curve, first) || !m->holds(curve, first + count - 1))
        return;
    const Key* const keys = m->keys(curve).data() + first;
    for (int i = 0; i < count; ++i)
        out[i] = {keys[i].x, keys[i].y};
}

std::vector<int> KeyCurveModel::selectedKnots(int curve) const {
    std::vector<int> selected;
    for (int i = 0; i < knots(curve); ++i) {
        if (m->keys(curve)[std::size_t(i)].selected)
            selected.push_back(i);
    }
    return selected;
}

int KeyCurveModel::firstKnotFrom(int curve, double x) const {
    return m->holds(curve) ? int(m->at(curve).curve.firstFrom(x)) : 0;
}

void KeyCurveModel::sample(int curve, double from, double to, int count, double* out) const {
    if (m->holds(curve) && count > 0)
        m->at(curve).curve.sample(from, to, std::size_t(count), out);
    else
        std::fill_n(out, std::max(count, 0), 0.0);
}

void KeyCurveModel::ranges(int curve, double from, double to, int count, double* low,
                           double* high) const {
    const KeyCurve line = keyCurve(curve);
    for (int part = 0; part < count; ++part) {
        const double width = (to - from) / count;
        const KeyCurve::Range range = line.range(from + part * width, from + (part + 1) * width);
        low[part] = range.low;
        high[part] = range.high;
    }
}

// Those that hold the moved keys, as they are; false where one of these does not exist.
bool KeyCurveModel::Private::find(const std::vector<Move>& moves, Stretches& stretches) const {
    for (const Move& each : moves) {
        if (!holds(each.curve, each.knot))
            return false;
        const auto knot = std::size_t(each.knot);
        Stretch& stretch = stretches.insert({each.curve, {knot, knot, {}}}).first->second;
        stretch.first = std::min(stretch.first, knot);
        stretch.last = std::max(stretch.last, knot);
    }
    for (auto& [curve, stretch] : stretches) {
        const auto begin = keys(curve).begin();
        stretch.keys.assign(begin + std::ptrdiff_t(stretch.first),
                            begin + std::ptrdiff_t(stretch.last) + 1);
    }
    return true;
}

// Puts the keys where they go; false where one may not.
bool KeyCurveModel::Private::place(const std::vector<Move>& moves, Stretches& stretches) const {
    for (const Move& each : moves) {
        Stretch& stretch = stretches.at(each.curve);
        Key& key = stretch.keys[std::size_t(each.knot) - stretch.first];
        const double was = keys(each.curve)[std::size_t(each.knot)].x;
        if (each.x != was && !can(each.curve, CanMoveX))
            return false;
        key.x = each.x == was ? was : CurveLimits::onStep(at(each.curve).limits, each.x);
        key.y = each.y;
    }
    return std::all_of(stretches.begin(), stretches.end(), [this](const auto& stretch) {
        return mayMove(stretch.first, stretch.second);
    });
}

bool KeyCurveModel::move(const std::vector<Move>& moves) {
    KXUI_INTERFACE_THREAD(this);
    Stretches stretches;
    if (!m->find(moves, stretches) || !m->place(moves, stretches))
        return false;
    // All of it is stored before anybody hears of it.
    std::vector<std::pair<int, KeyRange>> told;
    for (const auto& [curve, stretch] : stretches) {
        KeyCurve& line = m->at(curve).curve;
        told.emplace_back(curve, KeyRange::changed(line, stretch.first, stretch.keys));
        line.setKeys(stretch.first, stretch.keys);
    }
    const QPointer<KeyCurveModel> self(this);
    for (const auto& [curve, range] : told) {
        if (self && m->holds(curve))
            m->tell(curve, range);
    }
    return true;
}

int KeyCurveModel::add(int curve, double x, double y) {
    KXUI_INTERFACE_THREAD(this);
    if (!m->can(curve, CanAdd) || std::isnan(y) || !m->room(curve, x))
        return -1;
    const Limits& limits = m->at(curve).limits;
    KeyCurve keys = m->at(curve).curve;
    const std::size_t next = keys.firstFrom(x);
    Key key;
    key.x = x;
    key.y = std::min(std::max(y, limits.lowY), limits.highY);
    if (!keys.isEmpty()) {
        key.shape = keys.key(next > 0 ? next - 1 : 0).shape;
        key.slopeIn = key.slopeOut = keys.slopeAt(x);
    }
    const std::size_t count = keys.size();
    const std::size_t index = keys.insert(key);
    if (keys.size() == count)
        return -1;
    m->store(curve, keys);
    return int(index);
}

int KeyCurveModel::addOnLine(int curve, double x) {
    KXUI_INTERFACE_THREAD(this);
    if (!m->can(curve, CanAdd) || !m->room(curve, x))
        return -1;
    KeyCurve keys = m->at(curve).curve;
    const Limits& limits = m->at(curve).limits;
    const double y = keys.valueAt(x);
    const std::size_t count = keys.size();
    const bool isInside = y >= limits.lowY && y <= limits.highY;
    const std::size_t index = isInside ? keys.insertOnCurve(x) : count;
    if (keys.size() == count) // beyond the ends, or where the line leaves the limits
        return add(curve, x, y);
    m->store(curve, keys);
    return int(index);
}

bool KeyCurveModel::remove(int curve, const std::vector<int>& knots) {
    KXUI_INTERFACE_THREAD(this);
    if (!m->can(curve, CanRemove) || !CurveLimits::areIndices(knots, m->keys(curve).size()))
        return false;
    KeyCurve becomes = m->at(curve).curve;
    const std::size_t fewest = std::size_t(std::max(m->at(curve).limits.fewestKnots, 0));
    if (becomes.size() < fewest + knots.size())
        return false;
    const auto first = std::size_t(knots.front());
    if (std::size_t(knots.back()) - first + 1 == knots.size()) {
        becomes.erase(first, knots.size());
    } else {
        Keys kept;
        auto gone = knots.begin();
        for (std::size_t i = 0; i < becomes.size(); ++i) {
            if (gone != knots.end() && std::size_t(*gone) == i)
                ++gone;
            else
                kept.push_back(becomes.keys()[i]);
        }
        becomes.setKeys(std::move(kept));
    }
    m->store(curve, becomes);
    return true;
}

bool KeyCurveModel::setShape(int curve, const std::vector<int>& knots, int shape) {
    KXUI_INTERFACE_THREAD(this);
    if (!m->can(curve, HasShapes) || !CurveLimits::areIndices(knots, m->keys(curve).size()) ||
        shape < 0 || shape > int(Shape::Free))
        return false;
    const KeyCurve& present = m->at(curve).curve;
    const auto first = std::size_t(knots.front());
    // A free piece keeps its slopes at both ends.
    const std::size_t end = std::min(std::size_t(knots.back()) + 2, present.size());
    Keys keys(present.keys().begin(), present.keys().begin() + std::ptrdiff_t(end));
    for (const int knot : knots) {
        if (Shape(shape) == Shape::Free)
            setFree(keys, present, std::size_t(knot));
        keys[std::size_t(knot)].shape = Shape(shape);
    }
    keys.erase(keys.begin(), keys.begin() + std::ptrdiff_t(first));
    return m->putKeys(curve, first, keys);
}

bool KeyCurveModel::setSlopes(int curve, int knot, double in, double out, bool broken) {
    KXUI_INTERFACE_THREAD(this);
    if (!m->can(curve, HasSlopes) || !m->holds(curve, knot))
        return false;
    const KeyCurve& present = m->at(curve).curve;
    const auto index = std::size_t(knot);
    const std::size_t first = index > 0 ? index - 1 : 0;
    const std::size_t end = std::min(index + 2, present.size());
    const KeyCurve::Slopes slopes = present.slopes(index);
    Keys keys(present.keys().begin(), present.keys().begin() + std::ptrdiff_t(end));
    const double arriving = broken ? in : out;
    if (index > 0 && arriving != slopes.in)
        setFree(keys, present, index - 1);
    if (out != slopes.out)
        setFree(keys, present, index);
    keys[index].slopeIn = arriving;
    keys[index].slopeOut = out;
    keys[index].broken = broken;
    keys.erase(keys.begin(), keys.begin() + std::ptrdiff_t(first));
    return m->putKeys(curve, first, keys);
}

void KeyCurveModel::select(int curve, int first, int last, SelectionMode mode) {
    KXUI_INTERFACE_THREAD(this);
    if (!m->holds(curve))
        return;
    KeyCurve& line = m->at(curve).curve;
    bool isOther = false;
    const int end = knots(curve);
    const bool areAll = mode == SelectOnly;
    for (int i = areAll ? 0 : std::max(first, 0); i < (areAll ? end : std::min(last + 1, end));
         ++i) {
        const bool was = line.keys()[std::size_t(i)].selected;
        const bool isNamed = i >= first && i <= last;
        const bool becomes = mode == SelectToggle ? !was : isNamed && mode != SelectRemove;
        isOther = isOther || was != becomes;
        line.setSelected(std::size_t(i), becomes);
    }
    if (isOther)
        Q_EMIT selectionChanged(curve);
}

QByteArray KeyCurveModel::save(int curve) const {
    return QByteArray::fromStdString(keyCurve(curve).text());
}

bool KeyCurveModel::load(int curve, const QByteArray& bytes) {
    KXUI_INTERFACE_THREAD(this);
    KeyCurve keys;
    if (!m->holds(curve) || !keys.setText({bytes.constData(), std::size_t(bytes.size())}))
        return false;
    m->store(curve, keys);
    return true;
}

} // namespace Kestrel::UI
