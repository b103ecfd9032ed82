#pragma once

#include <KxUI/picker/ColorSlider_p.h>

#include <QWidget>

class QGridLayout;
class QLabel;
class QToolButton;

namespace Kestrel::UI {

class DoubleSpinBox;

/** The number as a user would type it: the double with the fewest digits that is this float. */
double fewestDigits(float number);

/** Sets a field unless it shows this float already, perhaps to more digits. */
void showNumber(DoubleSpinBox* field, float number);

/** A number field as a picker's rows have it, as wide as all others. */
DoubleSpinBox* makeNumberField(QWidget* parent);

/** A row of a picker: a label, by which the number can be dragged, a slider and a number. The
    widgets lie in the grid of their parent, so that all rows have the same columns. */
struct ColorPickerRow {
    enum Column { Link, Label, Slider, Number };

    void build(QGridLayout* grid, int row, QWidget* parent);
    void setComponent(ColorModel::Component component, bool isShort);
    void setDecimals(int decimals) const;
    void show(const ColorState& state) const;
    void setVisible(bool visible) const;

    ColorModel::Component component() const { return slider->component(); }

    QToolButton* link = nullptr; ///< for rows of red, green and blue
    QLabel* label = nullptr;
    ColorSlider* slider = nullptr;
    DoubleSpinBox* number = nullptr;
};

} // namespace Kestrel::UI
