#pragma once

#include <KxUI/picker/DisplayCall_p.h>

#include <QString>

#include <optional>

/** \file
    Colours as text: codes, names and CSS colours are what the screen shows, numbers are light of
    the working space. */

namespace Kestrel::UI {

/** Longer texts are no colours. */
constexpr int LongestColorText = 256;

/** What a text says. */
struct ColorText {
    enum Problem {
        None,
        Unreadable, ///< no colour in any notation
        NoWayBack   ///< a colour of the screen, which the display transform can not bring back
    };
    Problem problem = Unreadable;
    ColorValue color;      ///< where there is no problem
    bool hasAlpha = false; ///< else the text says nothing of it
};

/** Reads, around spaces: "#rgb", "#rgba", "#rrggbb", "#rrggbbaa", the same without "#" or with
    "0x"; "rgb(255 128 0)", "rgba(100%, 50%, 0%, 0.5)" as in CSS Color 4; names of SVG 1.1; and three
    or four numbers with spaces, commas or semicolons between them, bare or in brackets of any kind,
    which are light. Where commas are not followed by a space but the numbers are, they are decimal
    commas. Alpha is limited to 0-1. */
ColorText readColorText(const QString& text, const DisplayCall& display);

/** A colour by its codes of eight bits on the screen. */
struct ColorCode {
    QString text;           ///< "#rrggbb", or "#rrggbbaa" where the colour is not opaque
    bool isClipped = false; ///< the screen can not show the colour: the code is only near it
};

ColorCode colorCode(const ColorValue& color, const DisplayCall& display);

/** Light, as few digits as read back to the same bits: "0.18 0.2 0.3 1". */
QString colorNumbers(const ColorValue& color, bool withAlpha = true);

/** For other programs: the code, or numbers where it is clipped, or could not be read back. */
QString colorPlainText(const ColorValue& color, const DisplayCall& display);

} // namespace Kestrel::UI
