#include <KxUI/time/TimeSliderColors_p.h>

#include <KxUI/kit/ColorContrast_p.h>

#include <QPalette>

#include <initializer_list>

namespace Kestrel::UI {
namespace {

constexpr double VisibleShape = 1.4;

} // namespace

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
                            backgrounds, ReadableContrast);
    };
    colors.text = textOn(palette.color(QPalette::WindowText), {colors.clip, colors.playback});
    colors.outsideText = textOn(colors.text, {colors.outside});
    colors.sweep =
        firstVisible({Qt::white, colors.text}, {colors.clip, colors.playback}, VisibleShape);
    colors.focus = palette.color(QPalette::Highlight);
    return colors;
}

} // namespace Kestrel::UI
