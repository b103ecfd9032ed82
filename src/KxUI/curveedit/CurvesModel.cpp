#include "CurvesModel.h"

#include <KxUI/curveedit/CurveLimits_p.h>
#include <KxUI/curves/KeyText_p.h>
#include <KxUI/kit/ChannelColors.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QPointer>

#include <algorithm>
#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

// How near an edit brings two knots.
constexpr float SmallestGap = 1.0F / 512.0F;
// What is left of it where floats round.
constexpr double RoundedGap = double(SmallestGap) * 0.9999;
constexpr int FewestKnots = 2;

using Points = std::vector<UI::Knot>;

Points pointsOf(const Curve& curve) {
    Points points;
    for (int i = 0; i < curve.numKnots(); ++i)
        points.push_back(curve.knot(i));
    return points;
}

Curve curveOf(const Points& points, int capacity) {
    Curve curve(unsigned(capacity), unsigned(points.size()));
    for (std::size_t i = 0; i < points.size(); ++i)
        curve.setKnot(int(i), points[i]);
    return curve;
}

bool isNumber(const UI::Knot& knot) {
    return std::isfinite(knot.x) && std::isfinite(knot.y);
}

// Sorted, and numbers only.
Curve mended(const Curve& curve) {
    Points points = pointsOf(curve);
    const auto isBefore = [](const UI::Knot& a, const UI::Knot& b) { return a.x < b.x; };
    const auto end = std::remove_if(points.begin(), points.end(),
                                    [](const UI::Knot& knot) { return !isNumber(knot); });
    if (end == points.end() && std::is_sorted(points.begin(), points.end(), isBefore))
        return curve;
    points.erase(end, points.end());
    std::stable_sort(points.begin(), points.end(), isBefore);
    return curveOf(points, curve.maxKnots());
}

Curves mended(const Curves& curves) {
    Curves result = curves;
    for (int slot = 0; slot < curves.numCurves(); ++slot)
        result.setCurve(slot, mended(curves.curve(slot)));
    return result;
}

bool isSame(const Curve& a, const Curve& b) {
    return a == b && a.maxKnots() == b.maxKnots();
}

bool isSameSelection(const Curve& a, const Curve& b) {
    if (a.numKnots() != b.numKnots())
        return false;
    for (int i = 0; i < a.numKnots(); ++i) {
        if (a.knot(i).selected != b.knot(i).selected)
            return false;
    }
    return true;
}

// Whether an edit may make the one curve of the other, knots having kept their indices.
bool mayBecome(const Curve& was, const Curve& becomes) {
    using CurveLimits::keepsGap;
    using CurveLimits::mayBecome;
    for (int i = 0; i < was.numKnots(); ++i) {
        const UI::Knot from = was.knot(i);
        const UI::Knot to = becomes.knot(i);
        if (!mayBecome(double(from.x), double(to.x), 0, 1) ||
            !mayBecome(double(from.y), double(to.y), 0, 1))
            return false;
        const UI::Knot next = becomes.knot(i + 1);
        const bool moved = from.x != to.x || was.knot(i + 1).x != next.x;
        if (i + 1 < was.numKnots() && moved &&
            !keepsGap(double(to.x), double(next.x), RoundedGap, double(was.knot(i + 1).x - from.x)))
            return false;
    }
    return true;
}

} // namespace

struct CurvesModel::Private {
    explicit Private(CurvesModel* model)
        : q(model) {}

    bool holds(int curve) const { return curve >= 0 && curve < curves.numCurves(); }
    bool holds(int curve, int knot) const {
        return holds(curve) && knot >= 0 && knot < curves.curve(curve).numKnots();
    }
    void store(const Curves& becomes);
    void store(int slot, const Curve& becomes) {
        Curves all = curves;
        all.setCurve(slot, becomes);
        store(all);
    }

    // The slopes that the spline has, which single precision differences would only guess at.
    KeyCurve::Slopes slopesAt(int slot, int knot) const {
        const KeyCurve& spline = splines[std::size_t(slot)];
        const double x = double(curves.curve(slot).knot(knot).x);
        return spline.slopes(std::min(spline.firstFrom(x), spline.size() - 1));
    }

    CurvesModel* q;
    Curves curves{1, Curve::MaximumKnots, 2};
    std::array<KeyCurve, Curves::MaximumCurves> splines{KeyCurve::of(curves.curve(0))};
    QStringList names;
};

// Tells of what became another one, once all of it is stored.
void CurvesModel::Private::store(const Curves& becomes) {
    const QPointer<CurvesModel> self(q);
    const Curves was = curves;
    curves = becomes;
    const int count = curves.numCurves();
    for (int slot = 0; slot < count; ++slot)
        splines[std::size_t(slot)] = KeyCurve::of(curves.curve(slot));
    bool areOthers = was.numCurves() != count;
    for (int slot = 0; slot < count; ++slot)
        areOthers = areOthers || was.curve(slot).maxKnots() != becomes.curve(slot).maxKnots();
    if (areOthers)
        Q_EMIT self->curvesChanged();
    const bool isOther = areOthers || was != becomes;
    for (int slot = 0; slot < count && self; ++slot) {
        if (areOthers || was.curve(slot) != becomes.curve(slot))
            Q_EMIT self->knotsChanged(slot, 0, becomes.curve(slot).numKnots() - 1);
        if (self && (areOthers || !isSameSelection(was.curve(slot), becomes.curve(slot))))
            Q_EMIT self->selectionChanged(slot);
    }
    if (self && isOther)
        Q_EMIT self->valueChanged();
}

CurvesModel::CurvesModel(QObject* parent)
    : CurveModel(parent)
    , m(std::make_unique<Private>(this)) {
    qRegisterMetaType<Curves>();
}

CurvesModel::~CurvesModel() = default;

const Curves& CurvesModel::curves() const {
    return m->curves;
}

void CurvesModel::setCurves(const Curves& curves) {
    KXUI_INTERFACE_THREAD(this);
    const Curves becomes = mended(curves);
    bool isEqual = becomes.numCurves() == m->curves.numCurves();
    for (int slot = 0; slot < becomes.numCurves(); ++slot)
        isEqual = isEqual && isSame(becomes.curve(slot), m->curves.curve(slot));
    if (!isEqual)
        m->store(becomes);
}

Curve CurvesModel::curve(int slot) const {
    return m->holds(slot) ? m->curves.curve(slot) : Curve();
}

void CurvesModel::setCurve(int slot, const Curve& curve) {
    KXUI_INTERFACE_THREAD(this);
    const Curve becomes = mended(curve);
    if (m->holds(slot) && !isSame(becomes, m->curves.curve(slot)))
        m->store(slot, becomes);
}

QStringList CurvesModel::names() const {
    return m->names;
}

void CurvesModel::setNames(const QStringList& names) {
    if (m->names == names)
        return;
    m->names = names;
    Q_EMIT curvesChanged();
}

int CurvesModel::count() const {
    return m->curves.numCurves();
}

QString CurvesModel::name(int curve) const {
    const QString given = m->names.value(curve);
    if (!given.isEmpty() || !m->holds(curve))
        return given;
    const std::array<QString, Curves::MaximumCurves> names{tr("Red"), tr("Green"), tr("Blue"),
                                                           tr("Master")};
    return count() == 1 ? names.back() : names[std::size_t(curve)];
}

QColor CurvesModel::color(int curve, const QPalette& palette) const {
    using Channel = ChannelColors::Channel;
    constexpr std::array<Channel, Curves::MaximumCurves> channels{
        ChannelColors::Red, ChannelColors::Green, ChannelColors::Blue, ChannelColors::Luma};
    if (!m->holds(curve))
        return CurveModel::color(curve, palette);
    const Channel channel = count() == 1 ? channels.back() : channels[std::size_t(curve)];
    return ChannelColors::of(palette).line(channel);
}

CurveModel::Abilities CurvesModel::abilities(int curve) const {
    return m->holds(curve) ? CanMoveX | CanAdd | CanRemove : Abilities();
}

CurveModel::Limits CurvesModel::limits(int curve) const {
    Limits limits;
    limits.gap = double(SmallestGap);
    limits.fewestKnots = FewestKnots;
    limits.mostKnots = m->curves.curve(curve).maxKnots();
    return limits;
}

int CurvesModel::knots(int curve) const {
    return m->holds(curve) ? m->curves.curve(curve).numKnots() : 0;
}

CurveModel::Knot CurvesModel::knot(int curve, int index) const {
    Knot knot;
    if (!m->holds(curve, index))
        return knot;
    const UI::Knot point = m->curves.curve(curve).knot(index);
    const KeyCurve::Slopes slopes = m->slopesAt(curve, index);
    knot.x = double(point.x);
    knot.y = double(point.y);
    knot.slopeIn = slopes.in;
    knot.slopeOut = slopes.out;
    knot.selected = point.selected;
    return knot;
}

void CurvesModel::places(int curve, int first, int count, QPointF* out) const {
    for (int i = 0; i < count; ++i) {
        const UI::Knot point = m->curves.curve(curve).knot(first + i);
        out[i] = {double(point.x), double(point.y)};
    }
}

int CurvesModel::firstKnotFrom(int curve, double x) const {
    const int end = knots(curve);
    int index = 0;
    while (index < end && double(m->curves.curve(curve).knot(index).x) < x)
        ++index;
    return index;
}

void CurvesModel::sample(int curve, double from, double to, int count, double* out) const {
    if (!m->holds(curve)) {
        std::fill_n(out, std::max(count, 0), 0.0);
        return;
    }
    const Curve& line = m->curves.curve(curve);
    const double step = count > 1 ? (to - from) / (count - 1) : 0;
    for (int i = 0; i < count; ++i) {
        const double x = i > 0 && i + 1 == count ? to : from + i * step;
        out[i] = double(line.valueAt(float(x)));
    }
}

bool CurvesModel::move(const std::vector<Move>& moves) {
    KXUI_INTERFACE_THREAD(this);
    Curves becomes = m->curves;
    for (const Move& each : moves) {
        if (!m->holds(each.curve, each.knot))
            return false;
        Curve curve = becomes.curve(each.curve);
        const bool selected = curve.knot(each.knot).selected;
        curve.setKnot(each.knot, {float(each.x), float(each.y), selected});
        becomes.setCurve(each.curve, curve);
    }
    for (int slot = 0; slot < count(); ++slot) {
        if (!mayBecome(m->curves.curve(slot), becomes.curve(slot)))
            return false;
    }
    m->store(becomes);
    return true;
}

int CurvesModel::add(int curve, double x, double y) {
    KXUI_INTERFACE_THREAD(this);
    if (!m->holds(curve) || std::isnan(x) || std::isnan(y))
        return -1;
    Curve becomes = m->curves.curve(curve);
    const int count = becomes.numKnots();
    const int index = firstKnotFrom(curve, std::nextafter(x, HUGE_VAL));
    const double before = index > 0 ? double(becomes.knot(index - 1).x) : -HUGE_VAL;
    const double after = index < count ? double(becomes.knot(index).x) : HUGE_VAL;
    if (count >= becomes.maxKnots() || !CurveLimits::place(limits(curve), before, after, x))
        return -1;
    becomes.insertKnotAt(index);
    becomes.setKnot(index, {float(x), float(std::min(std::max(y, 0.0), 1.0)), false});
    m->store(curve, becomes);
    return index;
}

int CurvesModel::addOnLine(int curve, double x) {
    // At the place that add() will choose, which is not where the line is asked for otherwise.
    const int next = firstKnotFrom(curve, std::nextafter(x, HUGE_VAL));
    const int end = knots(curve);
    if (!m->holds(curve) || end == 0)
        return add(curve, x, 0);
    const Curve& line = m->curves.curve(curve);
    const double before = next > 0 ? double(line.knot(next - 1).x) : -HUGE_VAL;
    const double after = next < end ? double(line.knot(next).x) : HUGE_VAL;
    if (!CurveLimits::place(limits(curve), before, after, x))
        return -1;
    return add(curve, x, double(line.valueAt(float(x))));
}

bool CurvesModel::remove(int curve, const std::vector<int>& knots) {
    KXUI_INTERFACE_THREAD(this);
    if (!m->holds(curve) || knots.empty())
        return false;
    Points points = pointsOf(m->curves.curve(curve));
    if (std::size_t(FewestKnots) + knots.size() > points.size())
        return false;
    int end = int(points.size());
    for (auto index = knots.rbegin(); index != knots.rend(); ++index) {
        if (*index < 0 || *index >= end)
            return false;
        end = *index;
        points.erase(points.begin() + *index);
    }
    m->store(curve, curveOf(points, m->curves.curve(curve).maxKnots()));
    return true;
}

void CurvesModel::select(int curve, int first, int last, SelectionMode mode) {
    KXUI_INTERFACE_THREAD(this);
    if (!m->holds(curve))
        return;
    Curve becomes = m->curves.curve(curve);
    for (int i = 0; i < becomes.numKnots(); ++i) {
        UI::Knot knot = becomes.knot(i);
        const bool isNamed = i >= first && i <= last;
        if (isNamed)
            knot.selected = mode == SelectToggle ? !knot.selected : mode != SelectRemove;
        else if (mode == SelectOnly)
            knot.selected = false;
        becomes.setKnot(i, knot);
    }
    m->store(curve, becomes);
}

QByteArray CurvesModel::save(int curve) const {
    KeyTextWriter writer;
    for (int i = 0; i < knots(curve); ++i) {
        const UI::Knot knot = m->curves.curve(curve).knot(i);
        writer.add(knot.x, knot.y, knot.selected);
    }
    return QByteArray::fromStdString(writer.take());
}

bool CurvesModel::load(int curve, const QByteArray& bytes) {
    KXUI_INTERFACE_THREAD(this);
    KeyText text;
    if (!m->holds(curve) || !text.read({bytes.constData(), std::size_t(bytes.size())}))
        return false;
    const int capacity = m->curves.curve(curve).maxKnots();
    if (text.keys.size() > std::size_t(capacity))
        return false;
    Points points;
    for (const KeyCurve::Key& key : text.keys)
        points.push_back({float(key.x), float(key.y), key.selected});
    if (!std::all_of(points.begin(), points.end(), isNumber))
        return false;
    m->store(curve, mended(curveOf(points, capacity)));
    return true;
}

} // namespace Kestrel::UI
