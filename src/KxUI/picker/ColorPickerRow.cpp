#include <KxUI/picker/ColorPickerRow_p.h>

#include <KxUI/kit/ChannelColors.h>
#include <KxUI/values/DoubleSpinBox.h>

#include <QGridLayout>
#include <QLabel>
#include <QToolButton>

#include <array>
#include <charconv>
#include <cmath>

namespace Kestrel::UI {

double fewestDigits(float number) {
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    double exact = static_cast<double>(number);
    std::from_chars(digits.data(), written.ptr, exact);
    return exact;
}

void showNumber(DoubleSpinBox* field, float number) {
    if (std::isfinite(number) && static_cast<float>(field->value()) != number)
        field->setValue(fewestDigits(number));
}

DoubleSpinBox* makeNumberField(QWidget* parent) {
    constexpr int Frame = 16;
    auto* field = new DoubleSpinBox(parent);
    field->setButtonSymbols(QAbstractSpinBox::NoButtons);
    field->setAlignment(Qt::AlignRight);
    field->setFixedWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("-00.0000")) +
                         Frame);
    return field;
}

void ColorPickerRow::build(QGridLayout* grid, int row, QWidget* parent) {
    label = new QLabel(parent);
    slider = new ColorSlider(parent);
    number = makeNumberField(parent);
    number->setLabel(label);
    grid->addWidget(label, row, Label);
    grid->addWidget(slider, row, Slider);
    grid->addWidget(number, row, Number);
}

void ColorPickerRow::setComponent(ColorModel::Component component, bool isShort) {
    slider->setComponent(component);
    const QString name = componentName(component);
    label->setText(isShort ? componentLetter(component) : name);
    label->setToolTip(name);
    number->setAccessibleName(name);
    const bool isUnit = !ColorModel::isUnlimited(component);
    const double most = static_cast<double>(ColorState::Largest);
    number->setRange(isUnit || component == ColorModel::Value ? 0.0 : -most, isUnit ? 1.0 : most);
    number->setSoftRange(ColorModel::usualMinimum(component), ColorModel::usualMaximum(component));
    number->setDefaultValue(component == ColorModel::Alpha ? 1.0 : 0.0);
}

void ColorPickerRow::setDecimals(int decimals) const {
    number->setDecimals(decimals);
    number->setFewestDecimals(decimals);
}

void ColorPickerRow::show(const ColorState& state) const {
    ColorSliderLook::of(slider).show(state);
    showNumber(number, state.component(component()));
}

void ColorPickerRow::setVisible(bool visible) const {
    for (QWidget* widget : {static_cast<QWidget*>(label), static_cast<QWidget*>(slider),
                            static_cast<QWidget*>(number)})
        widget->setVisible(visible);
    if (link)
        link->setVisible(visible);
}

} // namespace Kestrel::UI
