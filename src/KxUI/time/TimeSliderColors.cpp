#include <KxUI/time/TimeSliderColors_p.h>

#include <QPalette>

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace Kestrel::UI {
namespace {

constexpr double ReadableText = 4.5; // WCAG 2.1, 1.4.3
constexpr double VisibleShape = 1.4;

double luminance(const QColor& color) {
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

// The first candidate that is good enough on every background, else the best there is.
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

} // namespace

double contrastRatio(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

TimeSliderColors TimeSliderColors::of(const QPalette& palette) {
    const QColor dark = palette.color(QPalette::Dark);
    TimeSliderColors colors;
    colors.window = palette.color(QPalette::Window);
    colors.empty = palette.color(QPalette::Midlight);
    colors.clip = dark.lighter(136);
    colors.playback = dark.lighter(180);
    colors.outside = dark.darker(168);
    // Lightening a light window changes next to nothing, nor does it change black.
    colors.rangeBar = firstVisible({colors.window.lighter(200), palette.color(QPalette::Mid), dark,
                                    palette.color(QPalette::WindowText)},
                                   {colors.window}, VisibleShape);
    colors.rangeBarHover = firstVisible({colors.rangeBar.lighter(130), colors.rangeBar.darker(130)},
                                        {colors.rangeBar}, VisibleShape);
    const auto textOn = [&palette](const QColor& preferred,
                                   std::initializer_list<QColor> backgrounds) {
        return firstVisible({preferred, palette.color(QPalette::Text),
                             palette.color(QPalette::BrightText), palette.color(QPalette::Base),
                             palette.color(QPalette::Shadow)},
                            backgrounds, ReadableText);
    };
    colors.text = textOn(palette.color(QPalette::WindowText), {colors.clip, colors.playback});
    colors.outsideText = textOn(colors.text, {colors.outside});
    colors.sweep =
        firstVisible({Qt::white, colors.text}, {colors.clip, colors.playback}, VisibleShape);
    colors.focus = palette.color(QPalette::Highlight);
    return colors;
}

} // namespace Kestrel::UI
