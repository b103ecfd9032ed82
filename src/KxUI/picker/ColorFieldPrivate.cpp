#include <KxUI/picker/ColorField_p.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>
#include <KxUI/kit/EditModifiers.h>
#include <KxUI/kit/ValueAccessible_p.h>
#include <KxUI/picker/ColorSlider_p.h>

#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double Margin = 7.0; // for the marker at the edge
constexpr int CoarseSide = 64;
constexpr int Rest = 50; // milliseconds without another picture before it is drawn in full
constexpr double RingRadius = 5.5;
constexpr double DisabledOpacity = 0.35;

std::size_t indexOf(ColorModel::Component component) {
    return static_cast<std::size_t>(ColorModel::indexOf(component));
}

double partOf(const ComponentSpan& span, float number) {
    return std::clamp(static_cast<double>((number - span.from) / (span.to - span.from)), 0.0, 1.0);
}

float numberAt(const ComponentSpan& span, double part) {
    return span.from + static_cast<float>(std::clamp(part, 0.0, 1.0)) * (span.to - span.from);
}

// No further out than it is.
float stepped(const ComponentSpan& span, float number, float hundredths) {
    const float step = hundredths * 0.01F * (span.to - span.from);
    return std::clamp(number + step, std::min(number, span.from), std::max(number, span.to));
}

} // namespace

ColorModel::Component ColorPlane::across() const {
    return ColorModel::component(model(), indexOf(pinned) == 0 ? 1 : 0);
}

ColorModel::Component ColorPlane::up() const {
    return ColorModel::component(model(), indexOf(pinned) == 2 ? 1 : 2);
}

ComponentSpan ColorPlane::span(ColorModel::Component component) {
    return {component, static_cast<float>(ColorModel::usualMinimum(component)),
            static_cast<float>(ColorModel::usualMaximum(component))};
}

QPointF ColorPlane::pointOf(const ColorTriple& components) const {
    return {area.left() + area.width() * partOf(span(across()), components[indexOf(across())]),
            area.bottom() - area.height() * partOf(span(up()), components[indexOf(up())])};
}

ColorTriple ColorPlane::at(const QPointF& point, const ColorTriple& from, bool isAcross,
                           bool isUp) const {
    ColorTriple to = from;
    if (isAcross && area.width() > 0.0)
        to[indexOf(across())] = numberAt(span(across()), (point.x() - area.left()) / area.width());
    if (isUp && area.height() > 0.0)
        to[indexOf(up())] = numberAt(span(up()), (area.bottom() - point.y()) / area.height());
    return to;
}

ColorTriple ColorPlane::stepped(const ColorTriple& from, float right, float upwards) const {
    ColorTriple to = from;
    float& x = to[indexOf(across())];
    float& y = to[indexOf(up())];
    x = UI::stepped(span(across()), x, right);
    y = UI::stepped(span(up()), y, upwards);
    return to;
}

ColorFieldPrivate::ColorFieldPrivate(ColorField* field)
    : q(field)
    , bracket(
          field, [this] { return state; }, [this](const ColorState& edited) { store(edited); },
          [field](const ColorState& edited) { Q_EMIT field->valueEdited(edited.color()); }) {}

ColorPlane ColorFieldPrivate::plane() const {
    const QRectF all = q->rect();
    return {pinned, all.adjusted(Margin, Margin, -Margin, -Margin)};
}

GradientGround ColorFieldPrivate::ground() const {
    GradientGround ground = GradientGround::of(state, ColorModel::modelOf(pinned));
    const ColorPlane parts = plane();
    ground.components[indexOf(parts.across())] = 0.0F;
    ground.components[indexOf(parts.up())] = 0.0F;
    return ground;
}

void ColorFieldPrivate::store(const ColorState& newState) {
    const bool isOther = newState.color() != state.color();
    state = newState;
    q->update();
    if (!isOther)
        return;
    const QPointer<ColorField> alive(q);
    if (QAccessible::isActive()) {
        QAccessibleEvent event(q, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
    if (alive)
        Q_EMIT q->colorChanged(state.color());
}

void ColorFieldPrivate::setByHost(const ColorState& newState) {
    bracket.hostSet(newState);
    store(newState);
}

void ColorFieldPrivate::show(const ColorState& newState) {
    if (!(newState == state))
        setByHost(newState);
}

void ColorFieldPrivate::dragTo(const QMouseEvent& event) {
    if (bracket.gesture() != EditGestures::Drag)
        return;
    const bool isAcrossOnly = event.modifiers().testFlag(Qt::ControlModifier);
    const bool isUpOnly = event.modifiers().testFlag(Qt::ShiftModifier) && !isAcrossOnly;
    const ColorModel::Model model = ColorModel::modelOf(pinned);
    const ColorPlane parts = plane();
    ColorState edited = state;
    const ColorTriple before = state.components(model);
    // A press on the marker changes nothing, though its middle is between two pixels.
    if (event.type() == QEvent::MouseButtonPress &&
        (parts.pointOf(before) - event.localPos()).manhattanLength() < 2.0)
        return;
    edited.setComponents(model, parts.at(event.localPos(), before, !isUpOnly, !isAcrossOnly));
    bracket.change(edited);
}

bool ColorFieldPrivate::isOwnKey(const QKeyEvent& event) const {
    const auto others =
        event.modifiers() & ~(Qt::ShiftModifier | Qt::ControlModifier | Qt::KeypadModifier);
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return others == Qt::NoModifier;
    default:
        return false;
    }
}

void ColorFieldPrivate::pressKey(const QKeyEvent& event) {
    if (!bracket.beginKey(event) || bracket.gesture() != EditGestures::Keys)
        return;
    const auto step = static_cast<float>(EditModifiers::factor(event.modifiers()));
    const int key = event.key();
    const float right = key == Qt::Key_Right ? step : key == Qt::Key_Left ? -step : 0.0F;
    const float up = key == Qt::Key_Up ? step : key == Qt::Key_Down ? -step : 0.0F;
    const ColorModel::Model model = ColorModel::modelOf(pinned);
    ColorState edited = state;
    edited.setComponents(model, plane().stepped(state.components(model), right, up));
    bracket.change(edited);
}

bool ColorFieldPrivate::isOutdated() const {
    return m_picture.isNull() || !(ground() == m_ground) || pinned != m_pinned ||
           display.number() != m_display;
}

// A transform may be slow: while the colours change from one painting to the next, few of them do.
const QImage& ColorFieldPrivate::picture(const QSize& pixels) {
    const bool isOther = isOutdated();
    const bool isSmall = m_picture.size() != pixels;
    if (!isOther && (!isSmall || m_rest.isActive()))
        return m_picture;
    const bool isMoving = isOther && !m_picture.isNull() && !display.isPlain() &&
                          pinned == m_pinned && display.number() == m_display;
    if (isMoving)
        m_rest.start(Rest, q);
    else
        m_rest.stop();
    const ColorPlane parts = plane();
    m_ground = ground();
    m_pinned = pinned;
    m_display = display.number();
    const QSize coarse(std::min(CoarseSide, pixels.width()), std::min(CoarseSide, pixels.height()));
    m_picture = gradientField(m_ground, ColorPlane::span(parts.across()),
                              ColorPlane::span(parts.up()), isMoving ? coarse : pixels, display);
    return m_picture;
}

bool ColorFieldPrivate::sharpen(int timer) {
    if (timer != m_rest.timerId())
        return false;
    m_rest.stop();
    q->update();
    return true;
}

void ColorFieldPrivate::paint(QPainter& painter) {
    const double ratio = painter.device()->devicePixelRatioF();
    const ColorPlane parts = plane();
    const QRectF area = rectOnPixels(parts.area, ratio);
    if (area.isEmpty())
        return;
    if (!q->isEnabled())
        painter.setOpacity(DisabledOpacity);
    const QSize pixels(static_cast<int>(std::lround(area.width() * ratio)),
                       static_cast<int>(std::lround(area.height() * ratio)));
    const QImage& colors = picture(pixels);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, colors.size() != pixels);
    painter.drawImage(area, colors, QRectF(colors.rect()));
    const QPalette& palette = q->palette();
    const QColor window = palette.color(QPalette::Window);
    painter.setPen(QPen(q->hasFocus() ? visibleHighlight(palette, window)
                                      : mixed(window, palette.color(QPalette::WindowText), 0.45),
                        q->hasFocus() ? 1.5 : 1.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(area.adjusted(-0.5, -0.5, 0.5, 0.5));
    painter.setRenderHint(QPainter::Antialiasing);
    paintColorRing(painter, parts.pointOf(state.components(parts.model())), RingRadius);
}

ColorFieldAccessible::ColorFieldAccessible(ColorField* field)
    : QAccessibleWidget(field, QAccessible::ColorChooser) {}

QString ColorFieldAccessible::text(QAccessible::Text kind) const {
    const QString text = QAccessibleWidget::text(kind);
    if (kind == QAccessible::Name && text.isEmpty())
        return ColorField::tr("Colour field");
    if (kind != QAccessible::Value)
        return text;
    const auto* const field = static_cast<const ColorField*>(object());
    const auto part = [&](ColorModel::Component component) {
        const float number = ColorFieldPrivate::of(field).state.component(component);
        return QStringLiteral("%1 %2").arg(
            componentName(component),
            field->locale().toString(static_cast<double>(number), 'g', 3));
    };
    return part(field->horizontalComponent()) + QStringLiteral(", ") +
           part(field->verticalComponent());
}

} // namespace Kestrel::UI
