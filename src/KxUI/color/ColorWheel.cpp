#include <KxUI/color/ColorWheel.h>

#include <KxUI/color/ColorConversions.h>
#include <KxUI/color/ColorWheelAccessible_p.h>
#include <KxUI/color/ColorWheel_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int NominalSize = 200;
constexpr int EmbeddedSize = 89;
constexpr double DisabledOpacity = 0.35;
constexpr double KeyZoom = 1.25;
constexpr double DeltaToDouble = 480.0; // four notches of a usual wheel

// A step that brings a number no further out of 0-1 than it is.
float stepped(float x, float step) {
    return std::clamp(x + step, std::min(x, 0.0F), std::max(x, 1.0F));
}

// What a key makes of a colour; nothing for a key that changes none.
std::optional<Hsv> editedByKey(const QKeyEvent& event, const Hsv& color) {
    const float steps = event.modifiers().testFlag(Qt::ShiftModifier) ? 10.0F : 1.0F;
    const float degrees = steps / 360.0F;
    const float hundredths = steps * 0.01F;
    Hsv edited = color;
    switch (event.key()) {
    case Qt::Key_Left:
        edited.hue = wrappedUnit(color.hue - degrees);
        return edited;
    case Qt::Key_Right:
        edited.hue = wrappedUnit(color.hue + degrees);
        return edited;
    case Qt::Key_Up:
        edited.saturation = stepped(color.saturation, hundredths);
        return edited;
    case Qt::Key_Down:
        edited.saturation = stepped(color.saturation, -hundredths);
        return edited;
    case Qt::Key_PageUp:
        edited.value = stepped(color.value, hundredths);
        return edited;
    case Qt::Key_PageDown:
        edited.value = stepped(color.value, -hundredths);
        return edited;
    default:
        return std::nullopt;
    }
}

} // namespace

ColorWheel::ColorWheel(QWidget* parent)
    : ColorWheel(ColorTransform(), PlainWheel, parent) {}

ColorWheel::ColorWheel(ColorTransform transform, DisplayMode mode, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<ColorWheelPrivate>(this, std::move(transform), mode)) {
    ColorWheelAccessible::install();
    qRegisterMetaType<DisplayMode>();
    qRegisterMetaType<InteractionMode>();
    setFocusPolicy(Qt::WheelFocus);
    setContextMenuPolicy(Qt::CustomContextMenu);
    if (d->embedded) {
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        setFixedSize(EmbeddedSize, EmbeddedSize);
    }
}

ColorWheel::~ColorWheel() = default;

void ColorWheel::setHSV(float hue, float saturation, float value) {
    KXUI_INTERFACE_THREAD(this);
    d->setColor({hue, saturation, value}, d->ringValue);
}

void ColorWheel::setHSVSlot(float hue, float saturation, float value) {
    KXUI_INTERFACE_THREAD(this);
    setHSV(hue, saturation, value);
}

void ColorWheel::setHSV(const QVector3D& hsv) {
    KXUI_INTERFACE_THREAD(this);
    setHSV(hsv.x(), hsv.y(), hsv.z());
}

QVector3D ColorWheel::hsv() const {
    return {d->color.hue, d->color.saturation, d->color.value};
}

bool ColorWheel::getHSV(float& hue, float& saturation, float& value) const {
    hue = d->color.hue;
    saturation = d->color.saturation;
    value = d->color.value;
    return value == 0.0F;
}

float ColorWheel::hue() const {
    return d->color.hue;
}

float ColorWheel::saturation() const {
    return d->color.saturation;
}

float ColorWheel::value() const {
    return d->color.value;
}

float ColorWheel::ringValue() const {
    return d->ringValue;
}

void ColorWheel::setHue(float hue) {
    KXUI_INTERFACE_THREAD(this);
    setHSV(wrappedUnit(hue), d->color.saturation, d->color.value);
}

void ColorWheel::setSaturation(float saturation) {
    KXUI_INTERFACE_THREAD(this);
    setHSV(d->color.hue, saturation, d->color.value);
}

void ColorWheel::setValue(float value) {
    KXUI_INTERFACE_THREAD(this);
    setHSV(d->color.hue, d->color.saturation, value);
}

void ColorWheel::setRingValue(float value) {
    KXUI_INTERFACE_THREAD(this);
    d->setColor(d->color, value);
}

float ColorWheel::getClampedHue() const {
    return clampedUnit(static_cast<double>(d->color.hue));
}

void ColorWheel::setZoomEnabled(bool enabled) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->zoomEnabled, enabled) != enabled)
        Q_EMIT zoomEnabledChanged(enabled);
}

bool ColorWheel::getZoomEnabled() const {
    return d->zoomEnabled;
}

float ColorWheel::zoom() const {
    return d->zoom;
}

QPointF ColorWheel::pan() const {
    return d->pan;
}

void ColorWheel::setDisplayMode(DisplayMode mode) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->displayMode, mode) == mode)
        return;
    update();
    Q_EMIT displayModeChanged(mode);
}

ColorWheel::DisplayMode ColorWheel::displayMode() const {
    return d->displayMode;
}

void ColorWheel::setInteractionMode(InteractionMode mode) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->interactionMode, mode) != mode)
        Q_EMIT interactionModeChanged(mode);
}

ColorWheel::InteractionMode ColorWheel::interactionMode() const {
    return d->interactionMode;
}

void ColorWheel::setInteractionScale(float scale) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->interactionScale, scale) != scale)
        Q_EMIT interactionScaleChanged(scale);
}

float ColorWheel::interactionScale() const {
    return d->interactionScale;
}

void ColorWheel::setHueRotation(float radians) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->hueRotation, radians) == radians)
        return;
    update();
    Q_EMIT hueRotationChanged(radians);
}

float ColorWheel::hueRotation() const {
    return d->hueRotation;
}

bool ColorWheel::isAbsoluteMode() const {
    return d->interactionMode == AbsoluteInteraction || (d->drag.modes() & DragAbsolute);
}

ColorWheel::DragModes ColorWheel::dragMode() const {
    return d->drag.modes();
}

void ColorWheel::setColorTransform(ColorTransform transform) {
    KXUI_INTERFACE_THREAD(this);
    d->transform = std::move(transform);
    d->pictures.clear();
    update();
}

void ColorWheel::setColorSource(ColorSource source) {
    KXUI_INTERFACE_THREAD(this);
    d->source = std::move(source);
}

void ColorWheel::updateFromControl() {
    if (!d->source)
        return;
    const QPointer<ColorWheel> self(this);
    const ColorSource source = d->source; // which may be replaced by what it calls
    const auto [red, green, blue] = source();
    if (!self)
        return;
    Hsv color;
    rgbToHsv(red, green, blue, color.hue, color.saturation, color.value);
    if (color.saturation == 0.0F)
        color.hue = d->color.hue;
    d->setColor(color, d->ringValue);
}

QSize ColorWheel::sizeHint() const {
    return d->embedded ? QSize(EmbeddedSize, EmbeddedSize) : QSize(NominalSize, NominalSize);
}

QSize ColorWheel::minimumSizeHint() const {
    return {EmbeddedSize, EmbeddedSize};
}

void ColorWheel::resetView() {
    d->showView(1.0F, QPointF());
}

void ColorWheel::cancelDrag() {
    if (d->drag.isActive() && d->bracket.isEditing())
        d->bracket.cancel();
    else
        d->execute(d->drag.takeBack());
}

bool ColorWheel::isEditing() const {
    return d->bracket.isEditing();
}

void ColorWheel::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->bracket.cancel();
}

bool ColorWheel::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::EnabledChange:
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
        update();
        break;
    case QEvent::ShortcutOverride:
        if (!d->isOwnKey(*static_cast<QKeyEvent*>(event)))
            break;
        event->accept();
        return true;
    case QEvent::ContextMenu:
        if (!d->menuSuppressed ||
            static_cast<QContextMenuEvent*>(event)->reason() != QContextMenuEvent::Mouse)
            break;
        event->accept();
        return true;
    default:
        break;
    }
    return d->takes(event) || QWidget::event(event);
}

void ColorWheel::paintEvent(QPaintEvent* event) {
    const ColorWheelGeometry geometry = d->geometry();
    if (!geometry.isUsable())
        return;
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(DisabledOpacity);
    d->paintPictures(painter, geometry, event->region());
    painter.setRenderHint(QPainter::Antialiasing); // slow for the pictures, which need none
    d->paintMarkers(painter, geometry);
    if (hasFocus())
        d->paintFocus(painter);
}

void ColorWheel::mousePressEvent(QMouseEvent* event) {
    const bool held = d->drag.isHeld();
    d->menuSuppressed = held && event->button() == Qt::RightButton;
    if (d->menuSuppressed && d->bracket.isEditing() && d->drag.isActive()) {
        event->accept();
        d->bracket.cancel();
        return;
    }
    if ((!held || event->button() == d->drag.button()) && !d->bracket.beginDrag(Qt::NoButton))
        return;
    const ColorWheelCommands commands =
        d->drag.press(d->scene(), d->inputOf(*event), event->button());
    event->setAccepted(d->drag.isHeld());
    d->drive(commands);
}

void ColorWheel::mouseMoveEvent(QMouseEvent* event) {
    event->setAccepted(d->drag.isHeld());
    d->drive(d->drag.move(d->scene(), d->inputOf(*event)));
}

void ColorWheel::mouseReleaseEvent(QMouseEvent* event) {
    d->drive(d->drag.release(event->button()));
}

void ColorWheel::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || d->drag.isHeld()) {
        mousePressEvent(event);
        return;
    }
    // What a press would drag is what goes back.
    const DragModes modes = ColorWheelDrag::modesFor(d->scene(), d->inputOf(*event).mouse,
                                                     event->button(), Qt::NoModifier);
    if (modes == NoDrag)
        event->ignore();
    else if (d->displayMode == ValueRingWheel && modes == DragValue)
        d->editWhole({d->color.hue, d->color.saturation, 1.0F});
    else
        d->editWhole(d->neutralColor());
}

void ColorWheel::wheelEvent(QWheelEvent* event) {
    const int delta = event->angleDelta().y();
    if (!d->zoomEnabled || delta == 0) {
        event->ignore();
        return;
    }
    event->accept();
    if (!d->drag.isActive())
        d->zoomAbout(d->upwards(event->position()), std::exp2(delta / DeltaToDouble));
}

void ColorWheel::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const QPointF middle(width() / 2.0, height() / 2.0);
    const std::optional<Hsv> edited =
        key == Qt::Key_Home ? d->neutralColor() : editedByKey(*event, d->color);
    if (edited) {
        if (d->bracket.beginKey(*event))
            d->editOnce(*edited);
    } else if (key == Qt::Key_Escape && d->drag.isHeld()) {
        cancelDrag();
    } else if (d->zoomEnabled && (key == Qt::Key_Plus || key == Qt::Key_Equal)) {
        d->zoomAbout(middle, KeyZoom);
    } else if (d->zoomEnabled && key == Qt::Key_Minus) {
        d->zoomAbout(middle, 1.0 / KeyZoom);
    } else if (d->zoomEnabled && key == Qt::Key_0) {
        resetView();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void ColorWheel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    d->execute(d->drag.finish());
}

} // namespace Kestrel::UI
