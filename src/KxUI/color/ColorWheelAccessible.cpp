#include <KxUI/color/ColorWheelAccessible_p.h>

#include <KxUI/color/ColorWheelGeometry_p.h>

#include <QtMath>

namespace Kestrel::UI {
namespace {

QAccessibleInterface* create(const QString& className, QObject* object) {
    if (className == QLatin1String("Kestrel::UI::ColorWheel")) {
        if (auto* wheel = qobject_cast<ColorWheel*>(object))
            return new ColorWheelAccessible(wheel);
    }
    return nullptr;
}

int rounded(float x, double scale) {
    return qRound(static_cast<double>(clampedUnit(static_cast<double>(x))) * scale);
}

} // namespace

ColorWheelAccessible::ColorWheelAccessible(ColorWheel* wheel)
    : QAccessibleWidget(wheel, QAccessible::ColorChooser) {}

void ColorWheelAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory(create);
        return true;
    }();
    Q_UNUSED(installed)
}

QString ColorWheelAccessible::text(QAccessible::Text kind) const {
    const QString text = QAccessibleWidget::text(kind);
    if (kind == QAccessible::Name && text.isEmpty())
        return ColorWheel::tr("Colour wheel");
    if (kind != QAccessible::Value)
        return text;
    Hsv color;
    static_cast<ColorWheel*>(object())->getHSV(color.hue, color.saturation, color.value);
    return ColorWheel::tr("Hue %1\u00b0, saturation %2 %, value %3 %")
        .arg(rounded(color.hue, 360.0))
        .arg(rounded(color.saturation, 100.0))
        .arg(rounded(color.value, 100.0));
}

} // namespace Kestrel::UI
