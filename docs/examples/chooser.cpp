// Asks where to render to: a name with a version, a sequence or a single file, and an option of the
// host. Nothing waits: the answer comes when the user has given it.

#include <KxUI/browse/FileChooserDialog.h>

#include <QApplication>
#include <QCheckBox>

#include <iostream>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);

    FileChooserDialog dialog(FileChooserDialog::SaveFile);
    dialog.setPurpose(QStringLiteral("render")); // folder, size, filter and names are remembered
    dialog.setFilters({QStringLiteral("Images (*.exr *.dpx)"), QStringLiteral("Movies (*.mov)")});
    dialog.setFolder(argc > 1 ? argv[1] : ".");
    dialog.setFileName("render.####.exr");
    dialog.setFrameRange(Kestrel::Base::FrameRange(1017, 1030)); // only these can be lost
    dialog.setPatternStyle(FileNames::Style::Printf);            // as the host's writer wants it
    dialog.setAcceptButtonText(QStringLiteral("&Render"));

    auto* alpha = new QCheckBox(QStringLiteral("Write the alpha channel"));
    dialog.setExtraWidget(alpha);

    // A rule of the host's: asked while the user types, and before the dialog closes.
    dialog.setValidator([](const std::vector<FileChooserDialog::Choice>& choices) {
        return choices.front().path.contains(' ')
                   ? QStringLiteral("The render farm takes no blanks in names.")
                   : QString();
    });

    QObject::connect(&dialog, &FileChooserDialog::chosen, &dialog, [&] {
        const auto choice = dialog.choices().front();
        std::cout << "frames " << choice.frames.first << " to " << choice.frames.last << " as "
                  << choice.path.constData() << '\n';
    });
    dialog.resize(720, 420);
    dialog.show();
    return QApplication::exec();
}
