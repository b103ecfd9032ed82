#include <KxUI/style/ApplicationStyle.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/style/ApplicationStyle_p.h>

#include <QApplication>

namespace Kestrel::UI {
namespace {

struct ThemeColors {
    QRgb window, base, alternate, button, text, placeholder, disabled;
    QRgb highlight, highlightedText, link, visited;
    QRgb light, midlight, mid, dark, shadow;
};

constexpr ThemeColors darkColors{
    0xff2d2d2d, 0xff232323, 0xff282828, 0xff3a3a3a, 0xffd2d2d2, 0xff949494, 0xff7d7d7d, 0xff4a6785,
    0xffffffff, 0xff7fb0e0, 0xffb09fd8, 0xff565656, 0xff3c3c3c, 0xff242424, 0xff1f1f1f, 0xff101010};
constexpr ThemeColors lightColors{
    0xffd8d8d8, 0xffececec, 0xffe4e4e4, 0xffdedede, 0xff1e1e1e, 0xff666666, 0xff848484, 0xff4a7099,
    0xffffffff, 0xff1d4f86, 0xff5c3d8a, 0xfff4f4f4, 0xffe6e6e6, 0xffb4b4b4, 0xff7c7c7c, 0xff5a5a5a};
constexpr ThemeColors contrastColors{
    0xff000000, 0xff000000, 0xff1a1a1a, 0xff141414, 0xffffffff, 0xffc0c0c0, 0xff909090, 0xffffd800,
    0xff000000, 0xff6cc4ff, 0xffd7a6ff, 0xffffffff, 0xffc0c0c0, 0xff808080, 0xff606060, 0xff000000};

QPalette paletteOf(const ThemeColors& colors) {
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, QRgb color) {
        palette.setColor(role, QColor(color));
    };
    set(QPalette::Window, colors.window);
    set(QPalette::WindowText, colors.text);
    set(QPalette::Base, colors.base);
    set(QPalette::AlternateBase, colors.alternate);
    set(QPalette::Text, colors.text);
    set(QPalette::Button, colors.button);
    set(QPalette::ButtonText, colors.text);
    set(QPalette::BrightText, colors.highlightedText);
    set(QPalette::ToolTipBase, colors.base);
    set(QPalette::ToolTipText, colors.text);
    set(QPalette::PlaceholderText, colors.placeholder);
    set(QPalette::Highlight, colors.highlight);
    set(QPalette::HighlightedText, colors.highlightedText);
    set(QPalette::Link, colors.link);
    set(QPalette::LinkVisited, colors.visited);
    set(QPalette::Light, colors.light);
    set(QPalette::Midlight, colors.midlight);
    set(QPalette::Mid, colors.mid);
    set(QPalette::Dark, colors.dark);
    set(QPalette::Shadow, colors.shadow);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::PlaceholderText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, role, QColor(colors.disabled));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(colors.mid));
    return palette;
}

} // namespace

QPalette ApplicationStyle::palette(Theme theme) {
    switch (theme) {
    case Dark:
        return paletteOf(darkColors);
    case Light:
        return paletteOf(lightColors);
    case HighContrast:
        return paletteOf(contrastColors);
    case FromPalette:
        break;
    }
    return QApplication::palette();
}

ApplicationStyle::Accents ApplicationStyle::accentsOf(const QPalette& palette) {
    const QColor window = palette.color(QPalette::Window);
    const bool isDark = window.lightness() < 128;
    Accents accents;
    accents.playhead = isDark ? QColor(0xf0, 0xa0, 0x30) : QColor(0xc0, 0x5c, 0x00);
    accents.mark = isDark ? QColor(0x6f, 0xb4, 0xe8) : QColor(0x0a, 0x58, 0x9c);
    accents.keyFrame = isDark ? QColor(0xe8, 0xd8, 0x4a) : QColor(0x8a, 0x6d, 0x00);
    accents.cached = isDark ? QColor(0x5f, 0xa8, 0x5a) : QColor(0x2e, 0x8b, 0x3d);
    accents.missing = isDark ? QColor(0xd2, 0x54, 0x4e) : QColor(0xc0, 0x2a, 0x24);
    accents.surround = isDark ? QColor(0x18, 0x18, 0x18) : QColor(0x76, 0x76, 0x76);
    const auto readable = [&window](const QColor& color, const QColor& further) {
        return firstVisible({color, further}, {window}, ReadableContrast);
    };
    accents.warning = isDark ? readable(QColor(0xe0, 0x9a, 0x52), QColor(0xff, 0xd0, 0x90))
                             : readable(QColor(0x9c, 0x52, 0x00), QColor(0x5a, 0x2e, 0x00));
    accents.danger = isDark ? readable(QColor(0xf0, 0x80, 0x78), QColor(0xff, 0xb8, 0xb0))
                            : readable(QColor(0xa8, 0x20, 0x1c), QColor(0x70, 0x08, 0x08));
    const std::shared_ptr<StyleCaches> caches = livingStyleCaches();
    accents.focus = QColor(caches ? caches->shades.of(palette, QPalette::Active).focus
                                  : shadesOf(palette, QPalette::Active).focus);
    return accents;
}

} // namespace Kestrel::UI
