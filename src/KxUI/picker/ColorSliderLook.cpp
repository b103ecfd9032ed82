#include <KxUI/picker/ColorSlider_p.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>
#include <KxUI/picker/SwatchPainting_p.h>
#include <KxUI/values/LinearSliderLook_p.h>

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int NominalLength = 120;
constexpr int SmallestLength = 40;
constexpr int Thickness = 18;
constexpr double GrooveHeight = 10.0;
constexpr double RingRadius = 5.5;
constexpr double HandleLength = 14.0;
constexpr double End = 7.0; // from an end of the groove to the middle of the handle there
constexpr double DisabledOpacity = 0.35;
constexpr double ShrinkBelow = 0.2;

// Drawn once for all sliders and fields: two circles cost more than a gradient.
const QImage& colorRing(double radius, double ratio) {
    static std::map<std::pair<double, double>, QImage> rings;
    QImage& ring = rings[{radius, ratio}];
    if (!ring.isNull())
        return ring;
    constexpr double Outside = 2.0;
    const int side = 2 * static_cast<int>(std::ceil((radius + Outside) * ratio));
    ring = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
    ring.setDevicePixelRatio(ratio);
    ring.fill(Qt::transparent);
    QPainter painter(&ring);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre(side / ratio / 2.0, side / ratio / 2.0);
    painter.setPen(QPen(QColor(0, 0, 0, 200), 3.5));
    painter.drawEllipse(centre, radius, radius);
    painter.setPen(QPen(QColor(Qt::white), 1.75));
    painter.drawEllipse(centre, radius, radius);
    return ring;
}

} // namespace

void paintColorRing(QPainter& painter, const QPointF& centre, double radius) {
    const double ratio = painter.device()->devicePixelRatioF();
    const QImage& ring = colorRing(radius, ratio);
    const double half = ring.width() / ratio / 2.0;
    const QPointF corner(onPixels(centre.x() - half, ratio), onPixels(centre.y() - half, ratio));
    painter.drawImage(corner, ring);
}

ColorSliderLook& ColorSliderLook::of(const ColorSlider* slider) {
    return static_cast<ColorSliderLook&>(*LinearSliderPrivate::of(slider));
}

QSize ColorSliderLook::hint(bool smallest) const {
    const QSize size(smallest ? SmallestLength : NominalLength, Thickness);
    return isHorizontal() ? size : size.transposed();
}

SliderGeometry ColorSliderLook::plan() const {
    SliderRoom room;
    room.size = q->size();
    room.orientation = orientation;
    room.forward = isForward();
    room.handleAlong = HandleLength;
    room.endAlong = End;
    room.thickness = Thickness;
    return SliderGeometry::of({minimum, maximum, exponent, grid}, room);
}

QRectF ColorSliderLook::handleArea(double shown) {
    return LinearSliderPrivate::handleArea(shown).adjusted(-1.0, -1.0, 1.0, 1.0);
}

// A hue is shown pure: greys and black would have a groove of one colour.
GradientGround ColorSliderLook::ground() const {
    GradientGround ground = GradientGround::of(state, ColorModel::modelOf(component));
    if (component == ColorModel::Hue)
        ground.components = {0.0F, 1.0F, 1.0F};
    return ground;
}

ComponentSpan ColorSliderLook::span() const {
    return {component, static_cast<float>(minimum), static_cast<float>(maximum)};
}

void ColorSliderLook::show(const ColorState& newState) {
    const ColorValue before = state.color();
    state = newState;
    const double number = static_cast<double>(state.component(component));
    m_peak = std::max(m_peak, std::fabs(number));
    if (m_row.differs(ground(), span(), display))
        q->update();
    const QPointer<LinearSlider> alive(q);
    // The same number to more digits, as a user typed it, stays.
    if (static_cast<float>(value) != static_cast<float>(number) && std::isfinite(number))
        setByHost(number);
    if (alive && before != state.color())
        Q_EMIT static_cast<ColorSlider*>(q)->colorChanged(state.color());
}

void ColorSliderLook::noteValue(double newValue) {
    const auto number = static_cast<float>(newValue);
    if (number == state.component(component))
        return;
    const ColorValue before = state.color();
    state.setComponent(component, number, state);
    m_peak = std::max(m_peak, std::fabs(newValue));
    if (before != state.color())
        Q_EMIT static_cast<ColorSlider*>(q)->colorChanged(state.color());
}

void ColorSliderLook::settleRange() {
    const double now = std::fabs(value);
    const double peak = std::max(std::exchange(m_peak, now), now);
    if (!ColorModel::isUnlimited(component))
        return;
    const double usual = ColorModel::usualMaximum(component);
    if (now <= maximum && (maximum <= usual || peak >= ShrinkBelow * maximum))
        return;
    const double end = std::max(usual, NiceStep::notBelow(std::max(peak, usual)).value());
    if (end != maximum)
        q->setRange(isSymmetric() ? -end : ColorModel::usualMinimum(component), end);
}

void ColorSliderLook::setComponent(ColorModel::Component newComponent) {
    component = newComponent;
    const double number = static_cast<double>(state.component(component));
    m_peak = 0.0;
    const QPointer<LinearSlider> alive(q);
    // Before the number, which would be dragged to within the old range otherwise.
    q->setRange(ColorModel::usualMinimum(component), ColorModel::usualMaximum(component));
    if (alive && std::isfinite(number))
        setByHost(number);
    if (!alive)
        return;
    defaultValue = component == ColorModel::Alpha ? 1.0 : 0.0;
    settleRange();
    if (alive)
        relayout();
}

void ColorSliderLook::setDisplay(const DisplayCall& newDisplay) {
    display = newDisplay;
    q->update();
}

QRectF ColorSliderLook::groove() {
    const QRectF all = geometry().slider;
    const double rest = (Thickness - GrooveHeight) / 2.0;
    return isHorizontal() ? all.adjusted(1.0, rest, -1.0, -rest)
                          : all.adjusted(rest, 1.0, -rest, -1.0);
}

// Along x from the low end, whatever the orientation is.
void ColorSliderLook::paintGradient(QPainter& painter, const QRectF& area, double ratio) {
    const SliderScale& scale = geometry().scale;
    const double length = std::fabs(scale.length);
    const QImage& row =
        m_row.row(ground(), span(), static_cast<int>(std::lround(length * ratio)), display);
    const bool isPlain = isHorizontal() && isForward();
    QRectF whole = area;
    double start = scale.origin;
    if (!isPlain) {
        painter.save();
        painter.translate(isHorizontal() ? QPointF(scale.origin, area.center().y())
                                         : QPointF(area.center().x(), scale.origin));
        if (isHorizontal())
            painter.scale(-1.0, 1.0);
        else
            painter.rotate(scale.length < 0.0 ? -90.0 : 90.0);
        start = 0.0;
        whole = QRectF(1.0 - End, -GrooveHeight / 2.0, length + 2.0 * End - 2.0, GrooveHeight);
    }
    const double end = start + length;
    const auto part = [&](double from, double to, double pixel, double pixels) {
        painter.drawImage(QRectF(from, whole.top(), to - from, whole.height()), row,
                          QRectF(pixel, 0.0, pixels, 1.0));
    };
    part(whole.left(), start, 0.0, 1.0);
    part(start, end, 0.0, row.width());
    part(end, whole.right(), row.width() - 1.0, 1.0);
    if (!isPlain)
        painter.restore();
}

void ColorSliderLook::paintHandle(QPainter& painter) {
    const QRectF handle = geometry().handle(value);
    painter.setRenderHint(QPainter::Antialiasing);
    paintColorRing(painter, handle.center(),
                   isDragged() || isHovered() ? RingRadius + 0.5 : RingRadius);
    if (side() != 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, 200));
        painter.drawEllipse(handle.center(), RingRadius - 1.0, RingRadius - 1.0);
        paintBeyond(painter, handle, orientation, (side() > 0) == isForward() ? 1.0 : -1.0,
                    Qt::white);
    }
}

void ColorSliderLook::paint(QPainter& painter, const QRect&) {
    const double ratio = painter.device()->devicePixelRatioF();
    const QRectF area = rectOnPixels(groove(), ratio);
    const QPalette& palette = q->palette();
    if (!q->isEnabled())
        painter.setOpacity(DisabledOpacity);
    if (component == ColorModel::Alpha)
        paintChecker(painter, area, ratio);
    paintGradient(painter, area, ratio);
    const QColor window = palette.color(QPalette::Window);
    const double line = q->hasFocus() ? 1.5 : 1.0;
    painter.setPen(QPen(q->hasFocus() ? visibleHighlight(palette, window)
                                      : mixed(window, palette.color(QPalette::WindowText), 0.45),
                        line));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(area.adjusted(-0.5, -0.5, 0.5, 0.5));
    paintHandle(painter);
}

} // namespace Kestrel::UI
