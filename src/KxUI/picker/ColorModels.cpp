#include <KxUI/picker/ColorModels_p.h>

#include <KxUI/color/ColorConversions.h>

#include <QCoreApplication>

#include <algorithm>

namespace Kestrel::UI {

ColorModel::Model ColorModel::modelOf(Component component) {
    return component < Hue ? Rgb : static_cast<Model>(1 + (component - Hue) / 3);
}

ColorModel::Component ColorModel::component(Model model, int nth) {
    const int first = model == Rgb ? 0 : Hue + 3 * (model - 1);
    return static_cast<Component>(first + std::clamp(nth, 0, 2));
}

int ColorModel::indexOf(Component component) {
    return component < Hue ? component : (component - Hue) % 3;
}

double ColorModel::usualMinimum(Component component) {
    switch (component) {
    case Temperature:
    case Magenta:
        return -1.0;
    case Cb:
    case Cr:
        return -0.5;
    default:
        return 0.0;
    }
}

double ColorModel::usualMaximum(Component component) {
    return component == Cb || component == Cr ? 0.5 : 1.0;
}

bool ColorModel::isUnlimited(Component component) {
    return component != Alpha && component != Hue && component != Saturation;
}

ColorTriple componentsOf(ColorModel::Model model, const ColorTriple& rgb, int ycbcr) {
    const auto [red, green, blue] = rgb;
    ColorTriple to = rgb;
    switch (model) {
    case ColorModel::Rgb:
        break;
    case ColorModel::Hsv:
        rgbToHsv(std::max(red, 0.0F), std::max(green, 0.0F), std::max(blue, 0.0F), to[0], to[1],
                 to[2]);
        break;
    case ColorModel::Tmi:
        to = {blue - red, (red + blue) / 2.0F - green, (red + green + blue) / 3.0F};
        break;
    case ColorModel::YCbCr: {
        const RgbToYCbCrMatrix& matrix = colorSpaceRgbToYCbCr(ycbcr);
        const auto sum = [&](const std::array<float, 3>& row) {
            return row[0] * rgb[0] + row[1] * rgb[1] + row[2] * rgb[2];
        };
        to = {sum(matrix.luma), sum(matrix.cb), sum(matrix.cr)};
        break;
    }
    }
    return to;
}

ColorTriple rgbOf(ColorModel::Model model, const ColorTriple& components, int ycbcr) {
    const auto [a, b, c] = components;
    ColorTriple rgb = components;
    switch (model) {
    case ColorModel::Rgb:
        break;
    case ColorModel::Hsv:
        hsvToRgb(a, b, c, rgb[0], rgb[1], rgb[2]);
        break;
    case ColorModel::Tmi:
        rgb = {c + b / 3.0F - a / 2.0F, c - 2.0F * b / 3.0F, c + b / 3.0F + a / 2.0F};
        break;
    case ColorModel::YCbCr: {
        const YCbCrToRgbCoefficients& to = colorSpaceYCbCrToRgb(ycbcr);
        rgb = {a + to.crToRed * c, a + to.crToGreen * c + to.cbToGreen * b, a + to.cbToBlue * b};
        break;
    }
    }
    return rgb;
}

QString componentName(ColorModel::Component component) {
    static constexpr std::array<const char*, 13> Names{
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Red"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Green"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Blue"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Alpha"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Hue"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Saturation"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Value"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Temperature"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Magenta"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Intensity"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Luma"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Cb"),
        QT_TRANSLATE_NOOP("Kestrel::UI::ColorModel", "Cr")};
    const auto index = static_cast<std::size_t>(component);
    return QCoreApplication::translate("Kestrel::UI::ColorModel",
                                       index < Names.size() ? Names[index] : "");
}

QString componentLetter(ColorModel::Component component) {
    static constexpr std::array<const char*, 13> Letters{"R", "G", "B", "A", "H",  "S", "V",
                                                         "T", "M", "I", "Y", "Cb", "Cr"};
    const auto index = static_cast<std::size_t>(component);
    return QString::fromLatin1(index < Letters.size() ? Letters[index] : "");
}

bool isLinear(ColorModel::Component component) {
    return component != ColorModel::Hue;
}

} // namespace Kestrel::UI
