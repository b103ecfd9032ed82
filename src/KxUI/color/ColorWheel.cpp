#include <KxUI/color/ColorWheel.h>

#include <KxUI/color/ColorConversions.h>
#include <KxUI/color/ColorWheelAccessible_p.h>
#include <KxUI/color/ColorWheelDrag_p.h>
#include <KxUI/color/ColorWheelPictures_p.h>

#include <QAccessible>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int NominalSize = 200;
constexpr int EmbeddedSize = 89;
constexpr double MarkerRadius = 5.5;
constexpr double RingMarkerWidth = 2.0;
constexpr double OutlineWidth = 1.5; // around a marker, on either side

// A step that brings a number no further out of 0-1 than it is.
float stepped(float x, float step) {
    return std::clamp(x + step, std::min(x, 0.0F), std::max(x, 1.0F));
}

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

ColorWheel::ColorWheel(QWidget* parent)
    : ColorWheel(ColorTransform(), PlainWheel, parent) {}

ColorWheel::ColorWheel(ColorTransform transform, DisplayMode mode, QWidget* parent)
    : QWidget(parent)
    , m_displayMode(mode)
    , m_zoomEnabled(mode != EmbeddedWheel)
    , m_embedded(mode == EmbeddedWheel)
    , m_transform(std::move(transform))
    , m_drag(std::make_unique<ColorWheelDrag>())
    , m_pictures(std::make_unique<ColorWheelPictures>()) {
    ColorWheelAccessible::install();
    setFocusPolicy(Qt::WheelFocus);
    setContextMenuPolicy(Qt::CustomContextMenu);
    if (m_embedded) {
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        setFixedSize(EmbeddedSize, EmbeddedSize);
    }
}

ColorWheel::~ColorWheel() = default;

void ColorWheel::setHSV(float hue, float saturation, float value) {
    showColor({hue, saturation, value}, m_ringValue);
}

void ColorWheel::setHSVSlot(float hue, float saturation, float value) {
    setHSV(hue, saturation, value);
}

bool ColorWheel::getHSV(float& hue, float& saturation, float& value) const {
    hue = m_hue;
    saturation = m_saturation;
    value = m_value;
    return m_value == 0.0F;
}

void ColorWheel::setHue(float hue) {
    showColor({wrappedUnit(hue), m_saturation, m_value}, m_ringValue);
}

void ColorWheel::setSaturation(float saturation) {
    showColor({m_hue, saturation, m_value}, m_ringValue);
}

void ColorWheel::setValue(float value) {
    showColor({m_hue, m_saturation, value}, m_ringValue);
}

void ColorWheel::setRingValue(float value) {
    showColor({m_hue, m_saturation, m_value}, value);
}

float ColorWheel::getClampedHue() const {
    return clampedUnit(static_cast<double>(m_hue));
}

void ColorWheel::setDisplayMode(DisplayMode mode) {
    if (mode == m_displayMode)
        return;
    m_displayMode = mode;
    update();
}

void ColorWheel::setHueRotation(float radians) {
    if (radians == m_hueRotation)
        return;
    m_hueRotation = radians;
    update();
}

bool ColorWheel::isAbsoluteMode() const {
    return m_interactionMode == AbsoluteInteraction || (m_drag->modes() & DragAbsolute);
}

ColorWheel::DragModes ColorWheel::dragMode() const {
    return m_drag->modes();
}

void ColorWheel::setColorTransform(ColorTransform transform) {
    m_transform = std::move(transform);
    m_pictures->clear();
    update();
}

void ColorWheel::setColorSource(ColorSource source) {
    m_source = std::move(source);
}

void ColorWheel::updateFromControl() {
    if (!m_source)
        return;
    const auto [red, green, blue] = m_source();
    Hsv color;
    rgbToHsv(red, green, blue, color.hue, color.saturation, color.value);
    if (color.saturation == 0.0F)
        color.hue = m_hue;
    showColor(color, m_ringValue);
}

QSize ColorWheel::sizeHint() const {
    return m_embedded ? QSize(EmbeddedSize, EmbeddedSize) : QSize(NominalSize, NominalSize);
}

QSize ColorWheel::minimumSizeHint() const {
    return {EmbeddedSize, EmbeddedSize};
}

void ColorWheel::resetView() {
    setView(1.0F, QPointF());
}

void ColorWheel::cancelDrag() {
    execute(m_drag->takeBack());
}

bool ColorWheel::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && m_drag->isHeld() &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    // The right button took a drag back; that is all it meant.
    if (event->type() == QEvent::ContextMenu && m_menuSuppressed &&
        static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Mouse) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::EnabledChange || event->type() == QEvent::PaletteChange ||
        event->type() == QEvent::StyleChange)
        update();
    return QWidget::event(event);
}

void ColorWheel::paintEvent(QPaintEvent* event) {
    const ColorWheelGeometry geometry = geometryNow();
    if (!geometry.isUsable())
        return;
    const Hsv color{m_hue, m_saturation, m_value};
    const double ratio = devicePixelRatioF();
    QColor outline = palette().color(QPalette::WindowText);
    outline.setAlphaF(0.35);

    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(0.35);
    QRegion besideSquare = event->region();
    if (m_displayMode == SquareWheel)
        besideSquare -= geometry.square().toRect().adjusted(1, 1, -1, -1);
    drawPicture(painter, m_pictures->wheel(geometry, size(), ratio, outline, m_transform),
                besideSquare, ratio);
    if (m_displayMode == SquareWheel) {
        const float hue = wrappedUnit(m_hue);
        drawPicture(painter, m_pictures->square(geometry, size(), ratio, hue, m_transform),
                    event->region(), ratio);
        painter.setPen(outline);
        painter.drawRect(geometry.square());
    }
    painter.setRenderHint(QPainter::Antialiasing); // slow for the pictures, which need none
    const QLineF ringMarker = geometry.ringMarkerOf(color, m_ringValue);
    drawRingMarker(painter,
                   {geometry.toWidget(ringMarker.p1()), geometry.toWidget(ringMarker.p2())});
    drawMarker(painter, geometry.toWidget(geometry.markerOf(color)),
               shownColor(color, m_transform));
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75), 3.0, 3.0);
    }
}

void ColorWheel::mousePressEvent(QMouseEvent* event) {
    const bool held = m_drag->isHeld();
    const ColorWheelCommands commands = m_drag->press(scene(), inputOf(*event), event->button());
    m_menuSuppressed = held && event->button() == Qt::RightButton;
    event->setAccepted(m_drag->isHeld());
    execute(commands);
}

void ColorWheel::mouseMoveEvent(QMouseEvent* event) {
    event->setAccepted(m_drag->isHeld());
    execute(m_drag->move(scene(), inputOf(*event)));
}

void ColorWheel::mouseReleaseEvent(QMouseEvent* event) {
    execute(m_drag->release(event->button()));
}

void ColorWheel::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || m_drag->isHeld()) {
        mousePressEvent(event);
        return;
    }
    // What a press would drag is what goes back.
    const DragModes modes =
        ColorWheelDrag::modesFor(scene(), inputOf(*event).mouse, event->button(), Qt::NoModifier);
    if (modes == NoDrag)
        event->ignore();
    else if (m_displayMode == ValueRingWheel && modes == DragValue)
        editOnce({m_hue, m_saturation, 1.0F});
    else
        editOnce(neutralColor());
}

void ColorWheel::wheelEvent(QWheelEvent* event) {
    if (!m_zoomEnabled || event->angleDelta().y() == 0) {
        event->ignore();
        return;
    }
    constexpr double DeltaToDouble = 480.0; // four notches of a usual wheel
    if (!m_drag->isActive())
        zoomAbout(upwards(event->position()), std::exp2(event->angleDelta().y() / DeltaToDouble));
    event->accept();
}

void ColorWheel::keyPressEvent(QKeyEvent* event) {
    const float steps = event->modifiers().testFlag(Qt::ShiftModifier) ? 10.0F : 1.0F;
    const auto turn = [&](float degrees) {
        editOnce({wrappedUnit(m_hue + steps * degrees / 360.0F), m_saturation, m_value});
    };
    const auto saturate = [&](float step) {
        editOnce({m_hue, stepped(m_saturation, steps * step), m_value});
    };
    const auto lighten = [&](float step) {
        editOnce({m_hue, m_saturation, stepped(m_value, steps * step)});
    };
    constexpr double ZoomStep = 1.25;
    const QPointF middle(width() / 2.0, height() / 2.0);
    switch (event->key()) {
    case Qt::Key_Left:
        return turn(-1.0F);
    case Qt::Key_Right:
        return turn(1.0F);
    case Qt::Key_Up:
        return saturate(0.01F);
    case Qt::Key_Down:
        return saturate(-0.01F);
    case Qt::Key_PageUp:
        return lighten(0.01F);
    case Qt::Key_PageDown:
        return lighten(-0.01F);
    case Qt::Key_Home:
        return editOnce(neutralColor());
    case Qt::Key_Escape:
        if (m_drag->isHeld())
            return cancelDrag();
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
    case Qt::Key_Minus:
        if (m_zoomEnabled)
            return zoomAbout(middle, event->key() == Qt::Key_Minus ? 1.0 / ZoomStep : ZoomStep);
        break;
    case Qt::Key_0:
        if (m_zoomEnabled)
            return resetView();
        break;
    default:
        break;
    }
    QWidget::keyPressEvent(event);
}

void ColorWheel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    execute(m_drag->finish());
}

ColorWheelGeometry ColorWheel::geometryNow() const {
    return ColorWheelGeometry::of(size(), m_displayMode, static_cast<double>(m_zoom), m_pan,
                                  static_cast<double>(m_hueRotation));
}

ColorWheelScene ColorWheel::scene() const {
    ColorWheelScene scene;
    scene.geometry = geometryNow();
    scene.color = {m_hue, m_saturation, m_value};
    scene.ringValue = m_ringValue;
    scene.zoom = m_zoom;
    scene.pan = m_pan;
    scene.zoomEnabled = m_zoomEnabled;
    scene.relative = m_interactionMode != AbsoluteInteraction;
    scene.interactionScale = static_cast<double>(m_interactionScale);
    return scene;
}

ColorWheelInput ColorWheel::inputOf(const QMouseEvent& event) const {
    return {upwards(event.localPos()), event.buttons(), event.modifiers()};
}

QPointF ColorWheel::upwards(const QPointF& position) const {
    return {position.x(), height() - position.y()};
}

// What is painted for a colour, and differently for others.
QRegion ColorWheel::markerRegion(const Hsv& color) const {
    const ColorWheelGeometry geometry = geometryNow();
    const QLineF ring = geometry.ringMarkerOf(color, m_ringValue);
    const QPointF marker = geometry.toWidget(geometry.markerOf(color));
    const QRectF ringBox(geometry.toWidget(ring.p1()), geometry.toWidget(ring.p2()));
    return QRegion(around({marker, QSizeF()}, MarkerRadius + 2.0 * OutlineWidth)) +
           around(ringBox, RingMarkerWidth + 2.0 * OutlineWidth);
}

void ColorWheel::showColor(const Hsv& color, float ringValue) {
    const Hsv old{m_hue, m_saturation, m_value};
    QRegion changed = markerRegion(old);
    const bool newSquare = m_displayMode == SquareWheel && color.hue != m_hue;
    std::tie(m_hue, m_saturation, m_value) = std::tie(color.hue, color.saturation, color.value);
    m_ringValue = ringValue;
    changed += markerRegion(color);
    if (newSquare)
        changed += around(geometryNow().square(), 1.0);
    update(changed);
    if (QAccessible::isActive()) {
        const QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(this);
        QAccessibleValueChangeEvent event(this, seen ? seen->text(QAccessible::Value) : QString());
        QAccessible::updateAccessibility(&event);
    }
}

Hsv ColorWheel::neutralColor() const {
    return {m_hue, 0.0F, m_displayMode == SquareWheel ? 1.0F : m_value};
}

// A change that is complete by itself. None while a drag is under way, whose signals would no
// longer come in pairs.
void ColorWheel::editOnce(const Hsv& color) {
    if (m_drag->isActive())
        return;
    const float ringValue = color.value == m_value ? m_ringValue : color.value;
    execute({{ColorWheelCommand::Begin},
             {ColorWheelCommand::ShowColor, color, ringValue},
             {ColorWheelCommand::End},
             {ColorWheelCommand::Changed}});
}

// Whoever is told of a command may delete the wheel, or hide it, which ends the drag.
void ColorWheel::execute(const ColorWheelCommands& commands) {
    const QPointer<ColorWheel> self(this);
    const bool dragging = m_drag->isActive();
    for (const ColorWheelCommand& command : commands) {
        if (!self || (dragging && !m_drag->isActive()))
            return;
        switch (command.kind) {
        case ColorWheelCommand::Begin:
            emit startDragSignal();
            break;
        case ColorWheelCommand::ShowColor:
            showColor(command.color, command.ringValue);
            emit hsvChanged(m_hue, m_saturation, m_value);
            break;
        case ColorWheelCommand::ShowView:
            setView(command.zoom, command.pan);
            break;
        case ColorWheelCommand::Moved:
            emit draggingSignal();
            break;
        case ColorWheelCommand::End:
            emit stopDragSignal();
            break;
        case ColorWheelCommand::Changed:
            emit changedSignal();
            break;
        }
    }
}

void ColorWheel::setView(float zoom, const QPointF& pan) {
    if (zoom == m_zoom && pan == m_pan)
        return;
    m_zoom = zoom;
    m_pan = pan;
    update();
}

void ColorWheel::zoomAbout(const QPointF& point, double factor) {
    const float zoom = limitedZoom(static_cast<double>(m_zoom) * factor);
    const double oldDisc = geometryNow().disc;
    const double newDisc =
        ColorWheelGeometry::of(size(), m_displayMode, static_cast<double>(zoom), {}, 0.0).disc;
    if (!(oldDisc >= 1.0 && newDisc >= 1.0))
        return;
    const QPointF fromMiddle = point - QPointF(width() / 2.0, height() / 2.0);
    setView(zoom, panForZoom(m_pan, fromMiddle, oldDisc, newDisc));
}

} // namespace Kestrel::UI
