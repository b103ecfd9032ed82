#include <KxUI/curveedit/CurveView_p.h>

#include <KxUI/curves/KeyCurve.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

const char* const Format = "application/x-kxui-curve";

using Key = KeyCurve::Key;

Key keyOf(const CurveModel::Knot& knot, bool hasShapes) {
    Key key;
    key.x = knot.x;
    key.y = knot.y;
    key.slopeIn = hasShapes ? knot.slopeIn : 0.0;
    key.slopeOut = hasShapes ? knot.slopeOut : 0.0;
    key.shape = hasShapes ? KeyCurve::Shape(knot.shape) : KeyCurve::Shape::Natural;
    key.broken = hasShapes && knot.broken;
    return key;
}

std::vector<Key> keysOf(const CurveModel& model, int curve, const std::vector<int>& knots) {
    const bool hasShapes = model.abilities(curve).testFlag(CurveModel::HasShapes);
    std::vector<Key> keys;
    for (const int knot : knots)
        keys.push_back(keyOf(model.knot(curve, knot), hasShapes));
    return keys;
}

std::vector<int> allKnots(const CurveModel& model, int curve) {
    std::vector<int> knots(std::size_t(model.knots(curve)));
    for (std::size_t i = 0; i < knots.size(); ++i)
        knots[i] = int(i);
    return knots;
}

std::vector<Key> keysOfClipboard() {
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    if (!data)
        return {};
    const QByteArray bytes = data->hasFormat(QLatin1String(Format))
                                 ? data->data(QLatin1String(Format))
                                 : data->text().toUtf8();
    KeyCurve curve;
    if (!curve.setText({bytes.constData(), std::size_t(bytes.size())}))
        return {};
    return curve.keys();
}

// Whether the keys are a whole curve between limits, which takes the place of another one.
bool isWhole(const CurveModel::Limits& limits, const std::vector<Key>& keys) {
    return std::isfinite(limits.lowX) && std::isfinite(limits.highX) && keys.size() >= 2 &&
           keys.front().x == limits.lowX && keys.back().x == limits.highX;
}

} // namespace

bool CurveViewPrivate::copySelected() const {
    if (!hasCurve(current))
        return false;
    std::vector<int> knots = model->selectedKnots(current);
    if (knots.empty())
        knots = allKnots(*model, current);
    if (knots.empty())
        return false;
    const std::string text = KeyCurve(keysOf(*model, current, knots)).text();
    auto* data = new QMimeData;
    data->setData(QLatin1String(Format), QByteArray::fromStdString(text));
    data->setText(QString::fromStdString(text));
    QGuiApplication::clipboard()->setMimeData(data);
    return true;
}

// In an edit. What the keys were added as is selected.
void CurveViewPrivate::addKeys(int curve, const std::vector<Key>& keys, double shift) {
    const QPointer<CurveView> self(q);
    const CurveModel::Abilities abilities = model->abilities(curve);
    std::vector<double> places;
    for (const Key& key : keys) {
        const int added = model->add(curve, key.x + shift, key.y);
        if (!self || !hasCurve(curve))
            return;
        if (added < 0)
            continue;
        places.push_back(model->knot(curve, added).x);
        if (abilities.testFlag(CurveModel::HasShapes))
            model->setShape(curve, {added}, int(key.shape));
        if (self && hasCurve(curve) && key.shape == KeyCurve::Shape::Free &&
            abilities.testFlag(CurveModel::HasSlopes))
            model->setSlopes(curve, added, key.broken ? key.slopeIn : key.slopeOut, key.slopeOut,
                             key.broken);
        if (!self || !hasCurve(curve))
            return;
    }
    model->select(curve, 0, -1, CurveModel::SelectOnly);
    for (const double x : places) {
        if (!self || !hasCurve(curve))
            return;
        const int knot = model->firstKnotFrom(curve, x);
        if (knot < model->knots(curve))
            model->select(curve, knot, knot, CurveModel::SelectAdd);
    }
}

void CurveViewPrivate::paste() {
    if (!hasCurve(current))
        return;
    const std::vector<Key> keys = keysOfClipboard();
    if (keys.empty())
        return say(CurveView::tr("There is no curve on the clipboard"));
    const int curve = current;
    if (isWhole(model->limits(curve), keys)) {
        const QByteArray bytes = QByteArray::fromStdString(KeyCurve(keys).text());
        edit.editOnce(CurveView::tr("paste"), [this, curve, bytes] { model->load(curve, bytes); });
        return;
    }
    if (!canAdd(curve))
        return;
    const double target = std::isfinite(playhead) ? playhead : marker;
    const double shift = std::isfinite(target) ? target - keys.front().x : 0.0;
    edit.editOnce(CurveView::tr("paste"),
                  [this, curve, keys, shift] { addKeys(curve, keys, shift); });
}

// Behind what is selected, by its own width and a step.
void CurveViewPrivate::duplicate() {
    if (!hasCurve(current))
        return;
    const int curve = current;
    const std::vector<Key> keys = keysOf(*model, curve, model->selectedKnots(curve));
    if (keys.empty() || !canAdd(curve))
        return;
    const double step = keys.size() > 1 ? (keys.back().x - keys.front().x) / double(keys.size() - 1)
                                        : 10.0 * nudgeStep().x();
    const double shift = keys.back().x - keys.front().x + step;
    edit.editOnce(CurveView::tr("duplicate"),
                  [this, curve, keys, shift] { addKeys(curve, keys, shift); });
}

void CurveView::copy() {
    KXUI_INTERFACE_THREAD(this);
    d->copySelected();
}

void CurveView::cut() {
    KXUI_INTERFACE_THREAD(this);
    if (d->hasCurve(d->current) && !d->model->selectedKnots(d->current).empty() &&
        d->copySelected())
        d->removeSelected(tr("cut"));
}

void CurveView::paste() {
    KXUI_INTERFACE_THREAD(this);
    d->paste();
}

void CurveView::duplicateSelected() {
    KXUI_INTERFACE_THREAD(this);
    d->duplicate();
}

} // namespace Kestrel::UI
