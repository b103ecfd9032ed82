#include <KxUI/kit/ColorContrast_p.h>

#include <KxUI/kit/QtCompat_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

double weighted(double red, double green, double blue) {
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
}

} // namespace

double relativeLuminance(const QColor& color) {
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return weighted(linear(color.redF()), linear(color.greenF()), linear(color.blueF()));
}

double contrastRatio(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({relativeLuminance(a), relativeLuminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

double brightness(const QColor& color) {
    return weighted(color.redF(), color.greenF(), color.blueF());
}

QColor firstVisible(std::initializer_list<QColor> candidates,
                    std::initializer_list<QColor> backgrounds, double enough) {
    QColor best;
    double bestContrast = 0;
    for (const QColor& candidate : candidates) {
        double contrast = 21;
        for (const QColor& background : backgrounds)
            contrast = std::min(contrast, contrastRatio(candidate, background));
        if (contrast > bestContrast) {
            best = candidate;
            bestContrast = contrast;
        }
        if (contrast >= enough)
            break;
    }
    return best;
}

QColor visibleHighlight(const QPalette& palette, const QColor& ground) {
    const QColor highlight = palette.color(QPalette::Highlight);
    const QColor text = palette.color(QPalette::WindowText);
    return firstVisible(
        {highlight, mixed(highlight, text, 0.25), mixed(highlight, text, 0.5), text}, {ground},
        VisibleContrast);
}

QColor mixed(const QColor& a, const QColor& b, double part) {
    const auto mix = [part](double x, double y) { return ColorPart(x + (y - x) * part); };
    return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()),
                            mix(a.blueF(), b.blueF()));
}

} // namespace Kestrel::UI
