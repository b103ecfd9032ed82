// A slider from 0.001 to 1000 and the number that it stands for.

#include <KxUI/values/LogSlider.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    auto* slider = new LogSlider(Qt::Horizontal);
    auto* number = new QLabel;
    number->setFixedWidth(60);
    auto* row = new QHBoxLayout(&window);
    row->addWidget(slider, 1);
    row->addWidget(number);

    slider->setRealRange(-3, 3, 100); // 100 positions a decade; throws for what cannot be
    QObject::connect(slider, &QSlider::valueChanged, number,
                     [=] { number->setText(QString::number(slider->realValue(), 'g', 3)); });
    slider->setRealValue(18);

    window.resize(560, 60);
    window.show();
    return QApplication::exec();
}
