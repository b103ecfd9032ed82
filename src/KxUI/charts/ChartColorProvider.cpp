#include <KxUI/charts/ChartColorProvider.h>

#include <KxUI/kit/ColorContrast_p.h>

#include <QHash>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

// Ottosson's OKLab (2020).
struct OkLab {
    double l, a, b;
};

double toLinear(double v) {
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

int toCode(double light) {
    const double v = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
    return int(std::lround(std::clamp(v, 0.0, 1.0) * 255));
}

OkLab labOf(const QColor& color) {
    const double r = toLinear(color.redF());
    const double g = toLinear(color.greenF());
    const double b = toLinear(color.blueF());
    const double l = std::cbrt(0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b);
    const double m = std::cbrt(0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b);
    const double s = std::cbrt(0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b);
    return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

QColor colorOf(const OkLab& lab) {
    const auto cube = [](double x) { return x * x * x; };
    const double l = cube(lab.l + 0.3963377774 * lab.a + 0.2158037573 * lab.b);
    const double m = cube(lab.l - 0.1055613458 * lab.a - 0.0638541728 * lab.b);
    const double s = cube(lab.l - 0.0894841775 * lab.a - 1.2914855480 * lab.b);
    return QColor(toCode(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
                  toCode(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
                  toCode(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s));
}

// The first colour on the way to black (`end` 0) or to white (1) that is seen; invalid if none is.
QColor firstSeen(const OkLab& from, double end, const QColor& background) {
    constexpr int Steps = 400;
    for (int i = 1; i <= Steps; ++i) {
        OkLab lab = from;
        lab.l += (end - from.l) * i / Steps;
        const QColor candidate = colorOf(lab);
        if (contrastRatio(candidate, background) >= VisibleContrast)
            return candidate;
    }
    return {};
}

const std::vector<QColor>& okabeIto() {
    static const std::vector<QColor> colors{QColor(0x00, 0x72, 0xB2), QColor(0xD5, 0x5E, 0x00),
                                            QColor(0x00, 0x9E, 0x73), QColor(0xE6, 0x9F, 0x00),
                                            QColor(0x56, 0xB4, 0xE9), QColor(0xCC, 0x79, 0xA7),
                                            QColor(0xF0, 0xE4, 0x42), QColor(0x99, 0x99, 0x99)};
    return colors;
}

} // namespace

class ChartColorProviderPrivate {
public:
    std::vector<QColor> palette = okabeIto();
    QHash<QString, QColor> ofKeys;
};

IChartColorProvider::~IChartColorProvider() = default;

ChartColorProvider::ChartColorProvider()
    : d(std::make_unique<ChartColorProviderPrivate>()) {}

ChartColorProvider::~ChartColorProvider() = default;

void ChartColorProvider::setPalette(const std::vector<QColor>& colors) {
    if (!colors.empty())
        d->palette = colors;
}

void ChartColorProvider::setColor(const QString& key, const QColor& color) {
    if (color.isValid())
        d->ofKeys.insert(key, color);
    else
        d->ofKeys.remove(key);
}

QColor ChartColorProvider::color(const QString& key, int index, const QColor& background) {
    const auto size = int(d->palette.size());
    const QColor own = d->ofKeys.value(key);
    return visible(own.isValid() ? own : d->palette[std::size_t((index % size + size) % size)],
                   background);
}

QColor ChartColorProvider::visible(const QColor& color, const QColor& background) {
    if (contrastRatio(color, background) >= VisibleContrast)
        return color;
    const OkLab lab = labOf(color);
    const QColor darker = firstSeen(lab, 0, background);
    const QColor lighter = firstSeen(lab, 1, background);
    if (!darker.isValid() || !lighter.isValid())
        return darker.isValid() ? darker : lighter;
    return std::abs(labOf(darker).l - lab.l) < std::abs(labOf(lighter).l - lab.l) ? darker
                                                                                  : lighter;
}

} // namespace Kestrel::UI
