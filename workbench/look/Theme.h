#pragma once

#include <QColor>
#include <QPalette>

namespace Kestrel::Workbench {

/** The two looks of the application, both neutral grey so that they do not tint the eye. */
enum class Theme { Dark, Light };

QPalette themePalette(Theme theme);

/** Gives the running application the Fusion style and the theme's palette. */
void applyTheme(Theme theme);

/** Colours of the timeline, and what lies round a picture, for widgets that paint themselves. They
    are read from the palette in use, so that a widget needs no word when the theme changes. */
struct ThemeColors {
    QColor playhead;
    QColor mark;
    QColor keyFrame;
    QColor cached;
    QColor missing;
    QColor surround;
    QColor warning;
};

ThemeColors themeColors(const QPalette& palette);

} // namespace Kestrel::Workbench
