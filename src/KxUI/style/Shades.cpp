#include <KxUI/style/Shades_p.h>

#include <KxUI/kit/ColorContrast_p.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

// What shadesOf() reads: another role there must be another one here.
constexpr QPalette::ColorRole roles[] = {
    QPalette::Window,    QPalette::WindowText,      QPalette::Base,
    QPalette::Text,      QPalette::Button,          QPalette::ButtonText,
    QPalette::Highlight, QPalette::HighlightedText, QPalette::ToolTipBase};

constexpr double IndicatorContrast = 3.1; // 3 (WCAG 2.1, 1.4.11), also after rounding
constexpr std::size_t MostShades = 256;

// The least step from `from` towards `to` that has enough contrast to all the backgrounds.
QRgb standingOut(QRgb from, QRgb to, std::initializer_list<QRgb> backgrounds) {
    for (int step = 0; step < 16; ++step) {
        const QRgb shade = mixedShade(from, to, step / 16.0);
        const auto stands = [shade](QRgb background) {
            return contrastRatio(QColor(shade), QColor(background)) >= IndicatorContrast;
        };
        if (std::all_of(backgrounds.begin(), backgrounds.end(), stands))
            return shade;
    }
    return to;
}

// As much of the highlight as leaves text readable on it.
QRgb checkedShade(const Shades& shades) {
    for (int part = 12; part > 0; --part) {
        const QRgb shade = mixedShade(shades.button, shades.highlight, part / 16.0);
        if (contrastRatio(QColor(shade), QColor(shades.buttonText)) >= ReadableContrast)
            return shade;
    }
    return mixedShade(shades.button, shades.highlight, 1 / 16.0);
}

} // namespace

QRgb mixedShade(QRgb a, QRgb b, double part) {
    return mixed(QColor(a), QColor(b), part).rgb();
}

std::uint64_t shadesId(const QPalette& palette, QPalette::ColorGroup group) {
    std::uint64_t id = 0xcbf29ce484222325U;
    const auto add = [&id](const QColor& color) {
        id = (id ^ color.rgb()) * 0x9e3779b97f4a7c15U;
        id ^= id >> 29;
    };
    for (const QPalette::ColorRole role : roles)
        add(palette.color(group, role));
    add(palette.color(QPalette::Active, QPalette::WindowText));
    // Disabled controls differ in more than their colours.
    return group == QPalette::Disabled ? id ^ 1U : id & ~std::uint64_t(1);
}

Shades shadesOf(const QPalette& palette, QPalette::ColorGroup group) {
    Shades shades;
    QRgb* const own[] = {&shades.window,    &shades.windowText,      &shades.base,
                         &shades.text,      &shades.button,          &shades.buttonText,
                         &shades.highlight, &shades.highlightedText, &shades.tip};
    for (std::size_t i = 0; i < std::size(roles); ++i)
        *own[i] = palette.color(group, roles[i]).rgb();
    shades.id = shadesId(palette, group);

    const QColor window(shades.window);
    const bool isEnabled = group != QPalette::Disabled;
    shades.isDark = brightness(window) < 0.5;
    shades.isHighContrast =
        contrastRatio(window, palette.color(QPalette::Active, QPalette::WindowText)) > 20;
    const QRgb black = qRgb(0, 0, 0);
    const QRgb away = shades.isDark ? qRgb(255, 255, 255) : black;
    shades.outline = shades.isHighContrast ? mixedShade(shades.window, shades.windowText, 0.75)
                     : shades.isDark       ? mixedShade(shades.window, black, 0.5)
                                           : mixedShade(shades.window, black, 0.32);
    shades.indicator =
        isEnabled ? standingOut(mixedShade(shades.base, shades.text, shades.isDark ? 0.25 : 0.4),
                                shades.text, {shades.window, shades.base})
                  : mixedShade(shades.window, shades.text, 0.6);
    shades.focus = standingOut(shades.highlight, away, {shades.window, shades.base, shades.button});
    shades.checked = checkedShade(shades);
    shades.groove = shades.isHighContrast ? mixedShade(shades.window, shades.windowText, 0.2)
                    : shades.isDark       ? mixedShade(shades.window, black, 0.4)
                                          : mixedShade(shades.window, black, 0.1);
    shades.grip = shades.isHighContrast
                      ? shades.windowText
                      : mixedShade(shades.button, away, shades.isDark ? 0.22 : 0.4);
    if (!isEnabled)
        shades.grip = mixedShade(shades.grip, shades.window, 0.6);
    shades.idleTab = mixedShade(shades.window, black, shades.isDark ? 0.25 : 0.1);
    shades.menu = shades.isHighContrast ? shades.base
                  : shades.isDark       ? mixedShade(shades.window, away, 0.04)
                                        : mixedShade(shades.window, qRgb(255, 255, 255), 0.5);
    return shades;
}

const Shades& ShadesTable::of(const QPalette& palette, QPalette::ColorGroup group) {
    const qint64 key = palette.cacheKey();
    const auto mixedKey = static_cast<std::uint64_t>(key) * 0x9e3779b97f4a7c15U;
    Recent& recent = m_recent[(mixedKey >> 58) ^ static_cast<std::uint64_t>(group)];
    if (recent.shades && recent.key == key && recent.group == group)
        return *recent.shades;
    if (m_all.size() >= MostShades)
        clear();
    const std::uint64_t id = shadesId(palette, group);
    auto known = m_all.find(id);
    if (known == m_all.end())
        known = m_all.emplace(id, shadesOf(palette, group)).first;
    recent = {key, group, &known->second};
    return known->second;
}

void ShadesTable::clear() {
    m_recent = {};
    m_all.clear();
}

} // namespace Kestrel::UI
