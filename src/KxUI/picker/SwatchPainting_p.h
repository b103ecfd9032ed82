#pragma once

#include <KxUI/picker/DisplayCall_p.h>

#include <QColor>

#include <vector>

class QPainter;
class QPalette;
class QRectF;

namespace Kestrel::UI {

/** What the screen shows of a colour, with its alpha. */
QColor shownColor(const ColorValue& color, const DisplayCall& display);

/** The same of many, by one call of the transform. */
std::vector<QColor> shownColors(const std::vector<ColorValue>& colors, const DisplayCall& display);

/** What is seen behind a colour that lets something through: squares in two greys, which are the
    same on light and dark palettes, so that a colour looks the same on both. */
void paintChecker(QPainter& painter, const QRectF& area, double ratio);

/** A colour as the screen shows it. One with alpha covers half of the area as if it had none, the
    other half as it is, over a checker. */
void paintSwatch(QPainter& painter, const QRectF& area, const QColor& shown, double ratio);

/** The line around a colour on a ground, which is seen whatever the colour is. */
QColor swatchOutline(const QPalette& palette, const QColor& ground);

} // namespace Kestrel::UI
