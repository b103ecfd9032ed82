#include <KxUI/color/ColorWheel_p.h>

#include <KxUI/kit/OwnKeys_p.h>
#include <KxUI/kit/QtCompat_p.h>

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <utility>

namespace Kestrel::UI {
namespace {

constexpr double MarkerRadius = 5.5;
constexpr double RingMarkerWidth = 2.0;
constexpr double OutlineWidth = 1.5; // around a marker, on either side

QRect around(const QRectF& shape, double margin) {
    return shape.normalized().adjusted(-margin, -margin, margin, margin).toAlignedRect();
}

void drawPicture(QPainter& painter, const ColorWheelPicture& picture, const QRegion& region,
                 double deviceRatio) {
    for (const QRect& part : region) {
        const QRectF wanted(QPointF(part.topLeft()) * deviceRatio,
                            QSizeF(part.size()) * deviceRatio);
        const QRect pixels = wanted.toAlignedRect() & picture.area;
        if (pixels.isEmpty())
            continue;
        const QRectF target(QPointF(pixels.topLeft()) / deviceRatio,
                            QSizeF(pixels.size()) / deviceRatio);
        painter.drawImage(target, picture.image, pixels.translated(-picture.area.topLeft()));
    }
}

// Dark around light, so that it shows on every colour.
void drawRingMarker(QPainter& painter, const QLineF& line) {
    for (const auto& [color, width] : {std::pair(Qt::black, RingMarkerWidth + 2.0 * OutlineWidth),
                                       std::pair(Qt::white, RingMarkerWidth)}) {
        painter.setPen(QPen(QColor(color), width, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(line);
    }
}

void drawMarker(QPainter& painter, const QPointF& centre, const QColor& color) {
    painter.setPen(QPen(QColor(Qt::black), 2.0 * OutlineWidth + 1.0));
    painter.setBrush(color);
    painter.drawEllipse(centre, MarkerRadius, MarkerRadius);
    painter.setPen(QPen(QColor(Qt::white), OutlineWidth));
    painter.drawEllipse(centre, MarkerRadius, MarkerRadius);
}

} // namespace

ColorWheelPrivate::ColorWheelPrivate(ColorWheel* wheel, ColorWheel::ColorTransform given,
                                     ColorWheel::DisplayMode mode)
    : displayMode(mode)
    , zoomEnabled(mode != ColorWheel::EmbeddedWheel)
    , embedded(mode == ColorWheel::EmbeddedWheel)
    , transform(std::move(given))
    , bracket(
          wheel,
          [this] {
              return ColorWheelColor{color, ringValue};
          },
          [this](const ColorWheelColor& shown) { showEdited(shown); },
          [wheel](const ColorWheelColor& shown) {
              Q_EMIT wheel->valueEdited(
                  {shown.color.hue, shown.color.saturation, shown.color.value});
          })
    , m_wheel(wheel) {}

ColorWheelGeometry ColorWheelPrivate::geometry() const {
    return ColorWheelGeometry::of(m_wheel->size(), displayMode, static_cast<double>(zoom), pan,
                                  static_cast<double>(hueRotation));
}

ColorWheelScene ColorWheelPrivate::scene() const {
    ColorWheelScene scene;
    scene.geometry = geometry();
    scene.color = color;
    scene.ringValue = ringValue;
    scene.zoom = zoom;
    scene.pan = pan;
    scene.zoomEnabled = zoomEnabled;
    scene.relative = interactionMode != ColorWheel::AbsoluteInteraction;
    scene.interactionScale = static_cast<double>(interactionScale);
    return scene;
}

ColorWheelInput ColorWheelPrivate::inputOf(const QMouseEvent& event) const {
    return {upwards(event.localPos()), event.buttons(), event.modifiers()};
}

QPointF ColorWheelPrivate::upwards(const QPointF& position) const {
    return {position.x(), m_wheel->height() - position.y()};
}

bool ColorWheelPrivate::takes(QEvent* event) {
    if (bracket.takes(event))
        return true;
    if (!bracket.isAdrift() || !drag.isActive())
        return false;
    const QPointer<ColorWheel> wheel(m_wheel);
    execute(drag.finish());
    return wheel.isNull();
}

bool ColorWheelPrivate::isOwnKey(const QKeyEvent& event) const {
    if (event.key() == Qt::Key_Escape)
        return drag.isHeld() || (bracket.isEditing() && bracket.gesture() == EditGestures::Keys);
    if (zoomEnabled && UI::isOwnKey(event, {Qt::Key_Plus, Qt::Key_Equal, Qt::Key_Minus, Qt::Key_0}))
        return true;
    return event.key() != Qt::Key_End && isSliderKey(event);
}

Hsv ColorWheelPrivate::neutralColor() const {
    return {color.hue, 0.0F, displayMode == ColorWheel::SquareWheel ? 1.0F : color.value};
}

// What is painted for a colour, and differently for others.
QRegion ColorWheelPrivate::markerRegion(const Hsv& shown) const {
    const ColorWheelGeometry places = geometry();
    const QLineF ring = places.ringMarkerOf(shown, ringValue);
    const QPointF marker = places.toWidget(places.markerOf(shown));
    const QRectF ringBox(places.toWidget(ring.p1()), places.toWidget(ring.p2()));
    return QRegion(around({marker, QSizeF()}, MarkerRadius + 2.0 * OutlineWidth)) +
           around(ringBox, RingMarkerWidth + 2.0 * OutlineWidth);
}

void ColorWheelPrivate::showColor(const Hsv& shown, float ring) {
    const bool newColor = !(shown == color);
    const bool newRing = ring != ringValue;
    if (!newColor && !newRing)
        return;
    QRegion changed = markerRegion(color);
    const bool newSquare = displayMode == ColorWheel::SquareWheel && shown.hue != color.hue;
    color = shown;
    ringValue = ring;
    changed += markerRegion(color);
    if (newSquare)
        changed += around(geometry().square(), 1.0);
    m_wheel->update(changed);
    if (newColor && QAccessible::isActive()) {
        const QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(m_wheel);
        QAccessibleValueChangeEvent event(m_wheel,
                                          seen ? seen->text(QAccessible::Value) : QString());
        QAccessible::updateAccessibility(&event);
    }
    const QPointer<ColorWheel> wheel(m_wheel);
    if (newColor)
        Q_EMIT wheel->colorChanged();
    if (wheel && newRing)
        Q_EMIT wheel->ringValueChanged(ring);
}

void ColorWheelPrivate::setColor(const Hsv& shown, float ring) {
    bracket.hostSet({shown, ring});
    showColor(shown, ring);
}

void ColorWheelPrivate::showView(float newZoom, const QPointF& newPan) {
    if (newZoom == zoom && newPan == pan)
        return;
    zoom = newZoom;
    pan = newPan;
    m_wheel->update();
    Q_EMIT m_wheel->viewChanged();
}

// Whoever is told of a command may delete the wheel, or hide it, which ends the drag.
void ColorWheelPrivate::execute(const ColorWheelCommands& commands) {
    const QPointer<ColorWheel> wheel(m_wheel);
    const bool dragging = drag.isActive();
    for (const ColorWheelCommand& command : commands) {
        if (!wheel || (dragging && !drag.isActive()))
            return;
        tell(command);
    }
}

void ColorWheelPrivate::drive(const ColorWheelCommands& commands) {
    const QPointer<ColorWheel> wheel(m_wheel);
    execute(commands);
    if (wheel && !drag.isActive() && bracket.gesture() != EditGestures::Keys)
        bracket.finish();
}

void ColorWheelPrivate::tell(const ColorWheelCommand& command) {
    const QPointer<ColorWheel> wheel(m_wheel);
    switch (command.kind) {
    case ColorWheelCommand::Begin:
        Q_EMIT wheel->startDragSignal();
        break;
    case ColorWheelCommand::ShowColor:
        tellColor(command);
        break;
    case ColorWheelCommand::ShowView:
        showView(command.zoom, command.pan);
        break;
    case ColorWheelCommand::Moved:
        Q_EMIT wheel->draggingSignal();
        break;
    case ColorWheelCommand::End:
        Q_EMIT wheel->stopDragSignal();
        break;
    case ColorWheelCommand::Changed:
        Q_EMIT wheel->changedSignal();
        break;
    }
}

void ColorWheelPrivate::tellColor(const ColorWheelCommand& command) {
    const auto show = [this, &command] {
        const QPointer<ColorWheel> wheel(m_wheel);
        showColor(command.color, command.ringValue);
        if (wheel)
            Q_EMIT wheel->hsvChanged(color.hue, color.saturation, color.value);
    };
    const ColorWheelColor edited{command.color, command.ringValue};
    if (m_restoring || edited == ColorWheelColor{color, ringValue})
        show();
    else
        bracket.note(edited, show);
}

// An edit that is complete by itself, or taken back.
void ColorWheelPrivate::showEdited(const ColorWheelColor& shown) {
    const QPointer<ColorWheel> wheel(m_wheel);
    m_restoring = true;
    if (drag.isActive())
        execute(drag.takeBack());
    else
        editOnce(shown.color, shown.ringValue);
    if (wheel)
        m_restoring = false;
}

void ColorWheelPrivate::editOnce(const Hsv& edited) {
    editOnce(edited, ringAfter(edited));
}

float ColorWheelPrivate::ringAfter(const Hsv& edited) const {
    return edited.value == color.value ? ringValue : edited.value;
}

void ColorWheelPrivate::editOnce(const Hsv& edited, float ring) {
    if (drag.isActive())
        return;
    execute({{ColorWheelCommand::Begin},
             {ColorWheelCommand::ShowColor, edited, ring},
             {ColorWheelCommand::End},
             {ColorWheelCommand::Changed}});
}

void ColorWheelPrivate::editWhole(const Hsv& edited) {
    const float ring = ringAfter(edited);
    if (ColorWheelColor{edited, ring} == ColorWheelColor{color, ringValue})
        editOnce(edited, ring);
    else
        bracket.editOnce({edited, ring});
}

void ColorWheelPrivate::zoomAbout(const QPointF& point, double factor) {
    const float newZoom = limitedZoom(static_cast<double>(zoom) * factor);
    const double oldDisc = geometry().disc;
    const double newDisc =
        ColorWheelGeometry::of(m_wheel->size(), displayMode, static_cast<double>(newZoom), {}, 0.0)
            .disc;
    if (!(oldDisc >= 1.0 && newDisc >= 1.0))
        return;
    const QPointF fromMiddle = point - QPointF(m_wheel->width() / 2.0, m_wheel->height() / 2.0);
    showView(newZoom, panForZoom(pan, fromMiddle, oldDisc, newDisc));
}

void ColorWheelPrivate::paintPictures(QPainter& painter, const ColorWheelGeometry& places,
                                      const QRegion& region) {
    constexpr auto OutlineOpacity = static_cast<ColorPart>(0.35);
    const QSize size = m_wheel->size();
    const double ratio = m_wheel->devicePixelRatioF();
    QColor outline = m_wheel->palette().color(QPalette::WindowText);
    outline.setAlphaF(OutlineOpacity);
    const bool hasSquare = displayMode == ColorWheel::SquareWheel;
    QRegion besideSquare = region;
    if (hasSquare)
        besideSquare -= places.square().toRect().adjusted(1, 1, -1, -1);
    drawPicture(painter, pictures.wheel(places, size, ratio, outline, transform), besideSquare,
                ratio);
    if (!hasSquare)
        return;
    drawPicture(painter, pictures.square(places, size, ratio, wrappedUnit(color.hue), transform),
                region, ratio);
    painter.setPen(outline);
    painter.drawRect(places.square());
}

void ColorWheelPrivate::paintMarkers(QPainter& painter, const ColorWheelGeometry& places) const {
    const QLineF ring = places.ringMarkerOf(color, ringValue);
    drawRingMarker(painter, {places.toWidget(ring.p1()), places.toWidget(ring.p2())});
    drawMarker(painter, places.toWidget(places.markerOf(color)), shownColor(color, transform));
}

void ColorWheelPrivate::paintFocus(QPainter& painter) const {
    constexpr double Width = 1.5;
    constexpr double Radius = 3.0;
    constexpr double Inset = Width / 2.0;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(m_wheel->palette().color(QPalette::Highlight), Width));
    painter.drawRoundedRect(QRectF(m_wheel->rect()).adjusted(Inset, Inset, -Inset, -Inset), Radius,
                            Radius);
}

} // namespace Kestrel::UI
