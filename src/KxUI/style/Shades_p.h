#pragma once

#include <QPalette>
#include <QRgb>

#include <array>
#include <cstdint>
#include <unordered_map>

namespace Kestrel::UI {

/** The colours that the style paints with, derived from one group of a palette. Greys stay greys;
    the palette's highlight shows in what has the focus, is selected or is checked, and nowhere
    else. */
struct Shades {
    std::uint64_t id = 0; ///< the same for palettes whose colours are the same

    QRgb window = 0;
    QRgb windowText = 0;
    QRgb base = 0;
    QRgb text = 0;
    QRgb button = 0;
    QRgb buttonText = 0;
    QRgb highlight = 0;
    QRgb highlightedText = 0;
    QRgb tip = 0;

    QRgb outline = 0;   ///< around controls and panels
    QRgb indicator = 0; ///< around check boxes and the like: contrast 3 to window and base
    QRgb focus = 0;     ///< contrast 3 to window, base and button
    QRgb checked = 0;   ///< of a checked button: button text is readable on it
    QRgb groove = 0;    ///< of sliders and scroll bars
    QRgb grip = 0;      ///< what is dragged in a groove
    QRgb idleTab = 0;   ///< a tab that is not the current one
    QRgb menu = 0;
    bool isDark = false;
    bool isHighContrast = false;
};

/** What the colours of `group` give. Takes microseconds. */
Shades shadesOf(const QPalette& palette, QPalette::ColorGroup group);

/** Remembers shades: by the palette's key where that is known, else by its colours, so that a
    palette which is set up anew for each paint costs no more than looking at its colours. */
class ShadesTable {
public:
    /** Valid until the next call. */
    const Shades& of(const QPalette& palette, QPalette::ColorGroup group);

    void clear();

private:
    struct Recent {
        qint64 key = 0;
        int group = -1;
        const Shades* shades = nullptr;
    };

    std::array<Recent, 64> m_recent;
    std::unordered_map<std::uint64_t, Shades> m_all;
};

/** A number that stands for the colours that shadesOf() reads. */
std::uint64_t shadesId(const QPalette& palette, QPalette::ColorGroup group);

/** The way from `a` (0) to `b` (1). */
QRgb mixedShade(QRgb a, QRgb b, double part);

} // namespace Kestrel::UI
