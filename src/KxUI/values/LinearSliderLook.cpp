#include <KxUI/values/LinearSliderLook_p.h>

#include <KxUI/kit/ColorContrast_p.h>

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int NominalLength = 84; // as of Qt's sliders
constexpr int Sample = 400;       // long enough for every style's handle

} // namespace

void paintBeyond(QPainter& painter, const QRectF& area, Qt::Orientation orientation, double towards,
                 const QPalette& palette) {
    constexpr double Half = 2.5;
    const QPointF middle = area.center();
    const auto at = [&](double along, double across) {
        return middle +
               (orientation == Qt::Horizontal ? QPointF(along, across) : QPointF(across, along));
    };
    const QPointF corners[] = {at(towards * Half, 0.0), at(-towards * Half, -Half),
                               at(-towards * Half, Half)};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    // The edge tells it from a handle of the same colour, which styles have.
    painter.setPen(QPen(palette.color(QPalette::Button), 1.0));
    painter.setBrush(palette.color(QPalette::ButtonText));
    painter.drawPolygon(corners, 3);
    painter.restore();
}

QStyleOptionSlider LinearSliderLook::option(const QRect& area, int length) const {
    QStyleOptionSlider option;
    option.initFrom(q);
    option.rect = area;
    option.subControls = QStyle::SC_None;
    option.activeSubControls = QStyle::SC_None;
    option.orientation = orientation;
    option.direction = Qt::LeftToRight; // upsideDown says it all
    option.minimum = 0;
    option.maximum = length;
    option.tickPosition = QSlider::NoTicks;
    option.upsideDown = !isForward();
    option.state.setFlag(QStyle::State_Horizontal, isHorizontal());
    return option;
}

SliderRoom LinearSliderLook::room(const QSize& size) const {
    QStyleOptionSlider sample;
    SliderRoom room;
    room.size = size;
    room.orientation = orientation;
    room.forward = isForward();
    room.mirrored = q->layoutDirection() == Qt::RightToLeft;
    const QStyle* const style = q->style();
    sample = option({}, Sample);
    room.thickness = style->pixelMetric(QStyle::PM_SliderThickness, &sample, q);
    const int thickness = static_cast<int>(room.thickness);
    sample.rect = isHorizontal() ? QRect(0, 0, Sample, thickness) : QRect(0, 0, thickness, Sample);
    sample.upsideDown = false;
    const QRectF handle =
        style->subControlRect(QStyle::CC_Slider, &sample, QStyle::SC_SliderHandle, q);
    room.handleAlong = isHorizontal() ? handle.width() : handle.height();
    room.endAlong = isHorizontal() ? handle.center().x() : handle.center().y();
    room.hasTicks = tickMode != LinearSlider::NoTicks;
    room.hasLabels = tickMode == LinearSlider::TicksAndLabels;
    if (room.hasLabels) {
        const QFontMetricsF metrics(q->font());
        room.labelHeight = std::ceil(metrics.height());
        room.labelWidth = [metrics](const QString& text) {
            return metrics.horizontalAdvance(text);
        };
        QLocale locale = q->locale();
        locale.setNumberOptions(locale.numberOptions() | QLocale::OmitGroupSeparator);
        room.labelText = [locale](double shown, int digits) {
            return locale.toString(shown, 'g', digits);
        };
    }
    return room;
}

SliderGeometry LinearSliderLook::plan() const {
    return SliderGeometry::of({minimum, maximum, exponent, grid}, room(q->size()));
}

QSize LinearSliderLook::hint(bool smallest) const {
    const SliderGeometry sample =
        SliderGeometry::of({minimum, maximum, exponent, grid}, room(QSize(Sample, Sample)));
    const int across = static_cast<int>(std::ceil(sample.across));
    const int along = smallest ? static_cast<int>(sample.handleAlong) * 2 : NominalLength;
    return isHorizontal() ? QSize(along, across) : QSize(across, along);
}

void LinearSliderLook::paint(QPainter& painter, const QRect& exposed) {
    const QRect area = geometry().slider.toRect();
    if (exposed.intersects(area)) {
        // Styles take it that their rectangle begins at 0.
        painter.translate(area.topLeft());
        paintSlider(painter, area.size());
        painter.translate(-area.topLeft());
        paintSide(painter);
    }
    if (!geometry().ticks.ticks.empty() && !area.contains(exposed))
        paintTicks(painter, exposed);
}

void LinearSliderLook::paintSlider(QPainter& painter, const QSize& size) {
    const SliderScale& scale = geometry().scale;
    const double length = std::fabs(scale.length);
    const double ratio = painter.device()->devicePixelRatioF();
    const double place = std::round(scale.partOf(value) * length * ratio) / ratio;
    QStyleOptionSlider whole = option(QRect(QPoint(), size), static_cast<int>(std::lround(length)));
    whole.sliderPosition = static_cast<int>(place);
    whole.sliderValue = whole.sliderPosition;
    if (isDragged() || isHovered())
        whole.activeSubControls = QStyle::SC_SliderHandle;
    whole.state.setFlag(QStyle::State_Sunken, isDragged());
    const double rest = place - whole.sliderPosition;
    if (rest == 0.0 && std::isnan(centre)) {
        whole.subControls = QStyle::SC_SliderGroove | QStyle::SC_SliderHandle;
        q->style()->drawComplexControl(QStyle::CC_Slider, &whole, &painter, q);
    } else {
        paintGroove(painter, whole);
        paintHandle(painter, whole, rest);
    }
}

void LinearSliderLook::paintGroove(QPainter& painter, QStyleOptionSlider& groove) {
    const int place = groove.sliderPosition;
    const bool upsideDown = groove.upsideDown;
    groove.subControls = QStyle::SC_SliderGroove;
    const auto paintPart = [&](double from, double to, int position, bool fromHighEnd) {
        const QRectF whole = groove.rect;
        painter.save();
        painter.setClipRect(isHorizontal() ? QRectF(from, 0.0, to - from, whole.height())
                                           : QRectF(0.0, from, whole.width(), to - from),
                            Qt::IntersectClip);
        groove.sliderPosition = position;
        groove.upsideDown = fromHighEnd;
        q->style()->drawComplexControl(QStyle::CC_Slider, &groove, &painter, q);
        painter.restore();
    };
    if (std::isnan(centre)) {
        q->style()->drawComplexControl(QStyle::CC_Slider, &groove, &painter, q);
    } else {
        // The style fills what lies below the handle. So: two halves of grooves that are empty
        // there, and between the centre and the value a full one.
        const SliderGeometry& parts = geometry();
        const double offset = parts.along(parts.slider.topLeft());
        const double end = isHorizontal() ? groove.rect.width() : groove.rect.height();
        const double a = parts.scale.pixelOf(centre) - offset;
        const double b = parts.scale.pixelOf(value) - offset;
        paintPart(0.0, end / 2.0, 0, true);
        paintPart(end / 2.0, end, 0, false);
        paintPart(std::min(a, b), std::max(a, b), groove.maximum, false);
    }
    groove.sliderPosition = place;
    groove.upsideDown = upsideDown;
}

// A style places its handle at whole logical pixels; on a scaled screen there are places between.
void LinearSliderLook::paintHandle(QPainter& painter, const QStyleOptionSlider& handle,
                                   double rest) {
    QStyleOptionSlider only = handle;
    only.subControls = QStyle::SC_SliderHandle;
    const double shift = isForward() ? rest : -rest;
    const QPointF offset = isHorizontal() ? QPointF(shift, 0.0) : QPointF(0.0, shift);
    painter.translate(offset);
    q->style()->drawComplexControl(QStyle::CC_Slider, &only, &painter, q);
    painter.translate(-offset);
}

void LinearSliderLook::paintSide(QPainter& painter) {
    if (side() != 0)
        paintBeyond(painter, geometry().handle(value), orientation,
                    (side() > 0) == isForward() ? 1.0 : -1.0, q->palette());
}

void LinearSliderLook::paintTicks(QPainter& painter, const QRect& exposed) {
    const SliderGeometry& parts = geometry();
    const QPalette& palette = q->palette();
    const QColor text = palette.color(QPalette::WindowText);
    const QColor line = mixed(palette.color(QPalette::Window), text, 0.6);
    const double ratio = painter.device()->devicePixelRatioF();
    const auto crisp = [ratio](double x) { return std::floor(x * ratio) / ratio; };
    const QRectF visible = QRectF(exposed).adjusted(-1.0, -1.0, 1.0, 1.0);
    for (const SliderTick& each : parts.ticks.ticks) {
        QRectF tick = parts.tick(each);
        // A logical pixel wide, its edges on device pixels.
        if (isHorizontal())
            tick.setRect(crisp(tick.x()), tick.y(), 1.0, tick.height());
        else
            tick.setRect(tick.x(), crisp(tick.y()), tick.width(), 1.0);
        if (visible.intersects(tick))
            painter.fillRect(tick, line);
    }
    painter.setPen(text);
    for (const SliderLabel& label : parts.labels) {
        if (visible.intersects(label.room))
            painter.drawText(label.room, Qt::AlignCenter | Qt::TextDontClip, label.text);
    }
}

} // namespace Kestrel::UI
