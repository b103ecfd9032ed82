// Numbers that are typed, dragged and calculated, and a slider over six decades.

#include <KxUI/values/DoubleSpinBox.h>
#include <KxUI/values/LogSlider.h>

#include <QApplication>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    auto* form = new QFormLayout(&window);
    const auto add = [&](const QString& name, double value) {
        auto* field = new DoubleSpinBox;
        auto* label = new QLabel(name);
        field->setLabel(label); // drag it, double-click it to reset
        field->setDefaultValue(value);
        field->setValue(value);
        form->addRow(label, field);
        return field;
    };

    // "+=10%", "0.18*2" and "max(x; 1)" can be typed into each of them.
    DoubleSpinBox* gain = add(QStringLiteral("Gain"), 1.0);
    gain->setSoftRange(0.0, 4.0); // numbers beyond can be typed
    gain->setBarVisible(true);

    DoubleSpinBox* width = add(QStringLiteral("Width"), 1920.0); // kept in pixels
    width->setUnits(ValueUnits::length(300.0));
    width->setUnit(QStringLiteral("mm")); // shown, and meant by plain numbers

    DoubleSpinBox* opacity = add(QStringLiteral("Opacity"), 0.75);
    opacity->setUnits(ValueUnits::percent());
    opacity->setRange(0.0, 1.0);
    opacity->setSingleStep(1.0); // a per cent

    // Every edit of the user begins and ends; what is set by setValue() is none.
    auto* state = new QLabel(QStringLiteral("as it was"));
    form->addRow(QStringLiteral("Gain is"), state);
    QObject::connect(gain, &DoubleSpinBox::editStarted, state,
                     [=] { state->setText(QStringLiteral("changing")); });
    QObject::connect(gain, &DoubleSpinBox::editFinished, state, [=](bool accepted) {
        state->setText(accepted ? QStringLiteral("changed") : QStringLiteral("as it was"));
    });

    auto* slider = new LogSlider(Qt::Horizontal);
    auto* number = new DoubleSpinBox;
    number->setFixedWidth(80);
    auto* row = new QHBoxLayout;
    row->addWidget(slider, 1);
    row->addWidget(number);
    form->addRow(QStringLiteral("Exposure"), row);
    slider->setRealRange(-3, 3, 100); // 100 positions a decade; throws for what cannot be
    QObject::connect(slider, &LogSlider::realValueChanged, number, &DoubleSpinBox::setValue);
    QObject::connect(number, &DoubleSpinBox::valueEdited, slider, &LogSlider::setRealValue);
    slider->setRealValue(18);

    window.resize(560, 190);
    window.show();
    return QApplication::exec();
}
