#pragma once

#include <QPalette>

class QString;
class QToolButton;
class QWidget;

namespace Kestrel::UI {
class DoubleSpinBox;
} // namespace Kestrel::UI

/** \file
    What the panels of the grade are put together from. */

namespace Kestrel::Workbench {

/** The number that a user would type for it, rather than all its binary digits. */
double typed(float number);

/** Shows a number unless it is just what was made of the field's own, which may have more digits.
 */
void showNumber(UI::DoubleSpinBox* box, float number);

/** A field for numbers in a column: all their decimals are shown. */
UI::DoubleSpinBox* makeNumber(double least, double most, int decimals, double step);

/** A flat button with a text. */
QToolButton* makeTextButton(const QString& text);

void setTextColor(QWidget* widget, QPalette::ColorRole role, const QColor& color);

} // namespace Kestrel::Workbench
