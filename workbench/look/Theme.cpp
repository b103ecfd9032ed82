#include "look/Theme.h"

#include <KxUI/kit/IconFactory.h>

#include <QApplication>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QToolTip>

namespace Kestrel::Workbench {

namespace {

struct Shades {
    QRgb window, base, alternate, button, text, dimmed, highlight, highlightedText;
    QRgb light, midlight, mid, dark, shadow;
};

constexpr Shades darkShades{0xff2d2d2d, 0xff232323, 0xff282828, 0xff3a3a3a, 0xffd2d2d2,
                            0xff7d7d7d, 0xff4a6785, 0xffffffff, 0xff565656, 0xff3c3c3c,
                            0xff242424, 0xff1f1f1f, 0xff101010};
constexpr Shades lightShades{0xffd8d8d8, 0xffececec, 0xffe4e4e4, 0xffdedede, 0xff1e1e1e,
                             0xff848484, 0xff5b82ab, 0xffffffff, 0xfff4f4f4, 0xffe6e6e6,
                             0xffb4b4b4, 0xff7c7c7c, 0xff5a5a5a};

/** Fusion with icons on the panes that follow the palette and the scale, which its own do not. */
class Style : public QProxyStyle {
public:
    Style()
        : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

    QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                       const QWidget* widget) const override {
        if (which == SP_TitleBarCloseButton)
            return UI::IconFactory::icon(QStringLiteral("PaneClose"));
        if (which == SP_TitleBarNormalButton)
            return UI::IconFactory::icon(QStringLiteral("PaneFloat"));
        return QProxyStyle::standardIcon(which, option, widget);
    }
};

} // namespace

QPalette themePalette(Theme theme) {
    const Shades& shade = theme == Theme::Dark ? darkShades : lightShades;
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, QRgb colour) {
        palette.setColor(role, QColor(colour));
    };
    set(QPalette::Window, shade.window);
    set(QPalette::WindowText, shade.text);
    set(QPalette::Base, shade.base);
    set(QPalette::AlternateBase, shade.alternate);
    set(QPalette::Text, shade.text);
    set(QPalette::Button, shade.button);
    set(QPalette::ButtonText, shade.text);
    set(QPalette::BrightText, shade.highlightedText);
    set(QPalette::ToolTipBase, shade.base);
    set(QPalette::ToolTipText, shade.text);
    set(QPalette::PlaceholderText, shade.dimmed);
    set(QPalette::Highlight, shade.highlight);
    set(QPalette::HighlightedText, shade.highlightedText);
    set(QPalette::Link, shade.highlight);
    set(QPalette::Light, shade.light);
    set(QPalette::Midlight, shade.midlight);
    set(QPalette::Mid, shade.mid);
    set(QPalette::Dark, shade.dark);
    set(QPalette::Shadow, shade.shadow);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(shade.dimmed));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(shade.mid));
    return palette;
}

void applyTheme(Theme theme) {
    QApplication::setStyle(new Style);
    const QPalette palette = themePalette(theme);
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}

ThemeColors themeColors(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Window).lightness() < 128;
    ThemeColors colors;
    colors.playhead = dark ? QColor(0xf0, 0xa0, 0x30) : QColor(0xc0, 0x5c, 0x00);
    colors.mark = dark ? QColor(0x6f, 0xb4, 0xe8) : QColor(0x0a, 0x58, 0x9c);
    colors.keyFrame = dark ? QColor(0xe8, 0xd8, 0x4a) : QColor(0x8a, 0x6d, 0x00);
    colors.cached = dark ? QColor(0x5f, 0xa8, 0x5a) : QColor(0x2e, 0x8b, 0x3d);
    colors.missing = dark ? QColor(0xc8, 0x4a, 0x44) : QColor(0xc0, 0x2a, 0x24);
    colors.surround = dark ? QColor(0x18, 0x18, 0x18) : QColor(0x76, 0x76, 0x76);
    colors.warning = dark ? QColor(0xe0, 0x9a, 0x52) : QColor(0x9c, 0x52, 0x00);
    return colors;
}

} // namespace Kestrel::Workbench
