#include <KxUI/scopes/ColorSpaceScope.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/scopes/ColorSpaceScope_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double LargestValue = 65504; // of half floats

} // namespace

ColorSpaceScope::ColorSpaceScope(QWidget* parent)
    : ScopeView(std::make_unique<ColorSpaceScopePrivate>(), parent) {}

ColorSpaceScope::~ColorSpaceScope() = default;

ColorSpaceScopePrivate& ColorSpaceScope::own() const {
    return static_cast<ColorSpaceScopePrivate&>(scope());
}

ColorSpaceScope::Space ColorSpaceScope::space() const {
    return own().space;
}

void ColorSpaceScope::setSpace(Space space) {
    KXUI_INTERFACE_THREAD(this);
    if (own().space == space || space < RgbCube || space > HsvCone)
        return;
    own().space = space;
    own().changeCells();
    Q_EMIT spaceChanged(space);
}

ColorSpaceScope::Projection ColorSpaceScope::projection() const {
    return own().projection;
}

void ColorSpaceScope::setProjection(Projection projection) {
    KXUI_INTERFACE_THREAD(this);
    if (own().projection == projection)
        return;
    own().projection = projection;
    own().changeTrace();
    Q_EMIT projectionChanged(projection);
}

double ColorSpaceScope::yaw() const {
    return own().orbit.yaw;
}

double ColorSpaceScope::pitch() const {
    return own().orbit.pitch;
}

void ColorSpaceScope::setYaw(double degrees) {
    setOrbit(degrees, pitch());
}

void ColorSpaceScope::setPitch(double degrees) {
    setOrbit(yaw(), degrees);
}

void ColorSpaceScope::setOrbit(double yaw, double pitch) {
    KXUI_INTERFACE_THREAD(this);
    const SolidOrbit wanted = SolidOrbit{yaw, pitch}.normalized();
    if (own().orbit == wanted)
        return;
    own().orbit = wanted;
    own().changeTrace();
    Q_EMIT orbitChanged(wanted.yaw, wanted.pitch);
}

double ColorSpaceScope::zoom() const {
    return 1 / own().viewport.width;
}

void ColorSpaceScope::setZoom(double factor) {
    KXUI_INTERFACE_THREAD(this);
    const ScopeViewport& seen = own().viewport;
    const QPointF middle(seen.left + seen.width / 2, seen.bottom + seen.height / 2);
    const double wanted = std::isnan(factor) ? 1 : std::clamp(factor, 1.0, ScopeViewport::MostZoom);
    own().zoomAbout(middle, wanted / zoom());
}

int ColorSpaceScope::minimumCount() const {
    return own().minimumCount;
}

void ColorSpaceScope::setMinimumCount(int pixels) {
    KXUI_INTERFACE_THREAD(this);
    const int wanted = std::max(pixels, 1);
    if (own().minimumCount == wanted)
        return;
    own().minimumCount = wanted;
    own().changeCells();
    Q_EMIT minimumCountChanged(wanted);
}

bool ColorSpaceScope::hasSlab() const {
    return own().hasSlab;
}

double ColorSpaceScope::slabLower() const {
    return own().slabLower;
}

double ColorSpaceScope::slabUpper() const {
    return own().slabUpper;
}

void ColorSpaceScope::setSlab(double lower, double upper) {
    KXUI_INTERFACE_THREAD(this);
    const auto finite = [](double value, double otherwise) {
        return std::isnan(value) ? otherwise : std::clamp(value, -LargestValue, LargestValue);
    };
    const auto [low, high] = std::minmax({finite(lower, 0), finite(upper, 1)});
    if (own().hasSlab && own().slabLower == low && own().slabUpper == high)
        return;
    own().hasSlab = true;
    own().slabLower = low;
    own().slabUpper = high;
    own().changeCells();
    Q_EMIT slabChanged();
}

void ColorSpaceScope::clearSlab() {
    KXUI_INTERFACE_THREAD(this);
    if (!own().hasSlab)
        return;
    own().hasSlab = false;
    own().slabLower = 0;
    own().slabUpper = 1;
    own().changeCells();
    Q_EMIT slabChanged();
}

ColorSpaceScope::GamutWires ColorSpaceScope::gamutWires() const {
    return own().wires;
}

void ColorSpaceScope::setGamutWires(GamutWires wires) {
    KXUI_INTERFACE_THREAD(this);
    const GamutWires known = wires & GamutWires(AllWires);
    if (own().wires == known)
        return;
    own().wires = known;
    own().changeTrace();
    Q_EMIT gamutWiresChanged(known);
}

void ColorSpaceScope::showView(NamedView view) {
    KXUI_INTERFACE_THREAD(this);
    const QPointer<ColorSpaceScope> guard(this);
    switch (view) {
    case HomeView:
        resetView();
        return;
    case FrontView:
        setOrbit(0, 0);
        break;
    case SideView:
        setOrbit(90, 0);
        break;
    case TopView:
        setOrbit(0, 90);
        break;
    }
    if (guard)
        setProjection(Orthographic);
}

} // namespace Kestrel::UI
