// A file chooser that says on its output what happens to it: ChooserProgram open|save|folder FOLDER [NAME]

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/browse/FileChooserDialog.h>
#include <KxUI/files/FileListModel.h>

#include <QApplication>
#include <QEvent>

#include <iostream>

using namespace Kestrel::UI;

namespace {

/** Says when a widget is seen, and when no longer. */
class Watcher : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show)
            std::cout << watched->objectName().toStdString() << std::endl;
        else if (event->type() == QEvent::Hide)
            std::cout << "no " << watched->objectName().toStdString() << std::endl;
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QByteArray mode = argc > 1 ? argv[1] : "open";
    FileChooserDialog dialog(mode == "save"     ? FileChooserDialog::SaveFile
                             : mode == "folder" ? FileChooserDialog::OpenFolder
                                                : FileChooserDialog::OpenFile);
    dialog.setWindowTitle(QStringLiteral("Chooser"));
    dialog.setFolder(argc > 2 ? argv[2] : ".");
    dialog.setFilters({QStringLiteral("Images (*.exr)")});
    if (argc > 3)
        dialog.setFileName(argv[3]);
    Watcher watcher;
    dialog.findChild<QWidget*>(QStringLiteral("sheet"))->installEventFilter(&watcher);
    QObject::connect(dialog.browser()->model(), &FileListModel::settled, &dialog, [&] {
        if (!dialog.browser()->model()->gatherer()->isGathering())
            std::cout << "listed" << std::endl;
    });
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    if (!isAccepted)
        std::cout << "cancelled" << std::endl;
    else
        for (const auto& choice : dialog.choices())
            std::cout << "chosen " << choice.path.constData() << ' ' << choice.frames.first << '-'
                      << choice.frames.last << std::endl;
    return 0;
}
