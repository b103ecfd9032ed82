// Sliders over real values, a frame slider on a parameter, and fields to search and to choose.

#include <KxUI/kit/CallbackParameter.h>
#include <KxUI/kit/SearchPattern.h>
#include <KxUI/time/FrameSlider.h>
#include <KxUI/values/PromptComboBox.h>
#include <KxUI/values/SearchField.h>
#include <KxUI/values/TinySlider.h>

#include <QApplication>
#include <QFormLayout>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    int held = 1096; // what the host keeps
    CallbackParameter frame([&] { return QVariant(held); },
                            [&](const QVariant& wanted) {
                                held = wanted.toInt();
                                return true; // false would refuse it
                            });
    frame.setRange(1001, 1240);

    QWidget window;
    auto* form = new QFormLayout(&window);
    auto* balance = new LinearSlider;
    balance->setRange(-1, 1);
    balance->setCentre(0); // the fill begins here
    balance->setTickMode(LinearSlider::TicksAndLabels);
    balance->setValue(0.35);
    form->addRow(QStringLiteral("Balance"), balance);

    auto* radius = new TinySlider;
    radius->setRange(0, 500);
    radius->setExponent(3); // more room for small ones
    radius->setSuffix(QStringLiteral("\u00a0px"));
    radius->setValue(12.5);
    form->addRow(QStringLiteral("Radius"), radius);

    auto* slider = new FrameSlider;
    slider->setParameter(&frame); // shows it, and writes edits between beginEdit() and endEdit()
    form->addRow(QStringLiteral("Frame"), slider);

    auto* camera = new PromptComboBox;
    camera->setPrompt(QStringLiteral("Choose a camera"));
    const QStringList cameras = {QStringLiteral("shot camera"), QStringLiteral("witness camera")};
    camera->addItems(cameras); // and none of them is chosen
    form->addRow(QStringLiteral("Camera"), camera);

    auto* search = new SearchField;
    form->addRow(QStringLiteral("Search"), search);
    const auto find = [=](const QString& text) {
        const SearchPattern pattern(text);
        int count = 0;
        for (const QString& name : cameras)
            count += pattern.matches(name);
        search->setMatches(0, text.isEmpty() ? -1 : count);
    };
    QObject::connect(search, &SearchField::searchChanged, search, find);
    search->setText(QStringLiteral("cam wit")); // by the host, which is not told of it
    find(search->text());

    window.resize(480, 190);
    window.show();
    const int result = QApplication::exec();
    slider->setParameter(nullptr); // or let the parameter outlive it
    return result;
}
