#pragma once

#include <QFontMetrics>
#include <QStyle>

#include <optional>

/** \file
    Lengths of the style, in logical pixels at 96 dots an inch, and what follows from a font. */

namespace Kestrel::UI::StyleMetrics {

constexpr double Radius = 3;
constexpr int FieldPadding = 5;   ///< between a field's edge and its text
constexpr int ButtonPadding = 11; ///< between a button's edge and its text
constexpr int LeastButtonText =
    42;                          ///< buttons with short texts are as wide as if it were this long
constexpr int ArrowWidth = 18;   ///< of a combo box
constexpr int StepWidth = 16;    ///< of a spin box's buttons
constexpr int ArrowMark = 9;     ///< side of an arrow
constexpr int StepMark = 7;      ///< side of an arrow of a spin box
constexpr int HandleLength = 10; ///< of a slider's handle, along its groove
constexpr int HandleThickness = 16;
constexpr int GrooveWidth = 4;  ///< of a slider
constexpr int ScrollMargin = 2; ///< around the handle of a scroll bar
constexpr int IndicatorSide = 14;

/** `length` on a screen of that many dots an inch. */
inline int scaled(int length, double dotsPerInch) {
    return qRound(length * dotsPerInch / 96);
}

/** The height of buttons, fields and choices: 22 at a text of 9 points. */
inline int controlHeight(const QFontMetrics& font) {
    return font.height() + scaled(7, font.fontDpi());
}

/** The lengths that are not those of the style below. */
std::optional<int> lengthOf(QStyle::PixelMetric metric);

/** The habits that are not those of the style below; `animation` is in milliseconds. */
std::optional<int> hintOf(QStyle::StyleHint hint, int animation);

} // namespace Kestrel::UI::StyleMetrics
