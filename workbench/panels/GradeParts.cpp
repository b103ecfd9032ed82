#include "panels/GradeParts.h"

#include <KxUI/values/DoubleSpinBox.h>

#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

double typed(float number) {
    return QString::number(double(number), 'g', 7).toDouble();
}

void showNumber(UI::DoubleSpinBox* box, float number) {
    constexpr double Rounding = 1e-6;
    if (std::abs(box->value() - double(number)) > Rounding * std::max(1.0, std::abs(box->value())))
        box->setValue(typed(number));
}

UI::DoubleSpinBox* makeNumber(double least, double most, int decimals, double step) {
    auto* box = new UI::DoubleSpinBox;
    box->setRange(least, most);
    box->setDecimals(decimals);
    box->setFewestDecimals(decimals);
    box->setSingleStep(step);
    box->setAlignment(Qt::AlignRight);
    return box;
}

QToolButton* makeTextButton(const QString& text) {
    auto* button = new QToolButton;
    button->setText(text);
    button->setAutoRaise(true);
    return button;
}

void setTextColor(QWidget* widget, QPalette::ColorRole role, const QColor& color) {
    QPalette palette;
    palette.setColor(QPalette::Active, role, color);
    palette.setColor(QPalette::Inactive, role, color);
    widget->setPalette(palette);
}

} // namespace Kestrel::Workbench
