// A panel in the library's look, with a choice of its colours that takes effect at once.

#include <KxUI/style/ApplicationStyle.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    ApplicationStyle::install(ApplicationStyle::Dark);

    QWidget window;
    auto* form = new QFormLayout(&window);
    auto* theme = new QComboBox;
    theme->addItem("Dark", ApplicationStyle::Dark);
    theme->addItem("Light", ApplicationStyle::Light);
    theme->addItem("High contrast", ApplicationStyle::HighContrast);
    QObject::connect(theme, QOverload<int>::of(&QComboBox::currentIndexChanged), [=] {
        ApplicationStyle::install(theme->currentData().value<ApplicationStyle::Theme>());
    });
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setValue(40);
    auto* premultiplied = new QCheckBox("Premultiplied");
    premultiplied->setChecked(true);
    auto* progress = new QProgressBar;
    progress->setValue(65);
    auto* render = new QPushButton("Render");
    render->setDefault(true);

    form->addRow("Theme", theme);
    form->addRow("File", new QLineEdit("shot.####.exr"));
    form->addRow("Samples", new QSpinBox);
    form->addRow("Filter", slider);
    form->addRow(premultiplied);
    form->addRow("Done", progress);
    form->addRow(render);

    if (argc > 1) // the theme to begin with
        theme->setCurrentIndex(theme->findText(argv[1], Qt::MatchStartsWith));

    window.resize(300, 0);
    window.show();
    return QApplication::exec();
}
