// Fields for paths: a plate to read, a sequence to write, a folder; and the path of a folder as a bar.

#include <KxUI/browse/FilePathEdit.h>
#include <KxUI/browse/PathBar.h>

#include <QApplication>
#include <QDir>
#include <QFormLayout>
#include <QLabel>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QString shot =
        QDir(QCoreApplication::arguments().value(1, QStringLiteral("."))).absolutePath();
    QWidget window;
    auto* form = new QFormLayout(&window);

    // Says where to go; the host says when it is there.
    auto* bar = new PathBar;
    bar->setPath(shot.toUtf8());
    QObject::connect(bar, &PathBar::pathEntered, bar, &PathBar::setPath);
    form->addRow(QStringLiteral("Shot"), bar);

    auto* plate = new FilePathEdit;
    plate->setNameFilters({QStringLiteral("Images (*.exr *.dpx)")});
    plate->setAcceptsSequences(true);
    plate->setChecks(true); // on another thread, after a pause
    plate->setBaseFolder(shot);
    plate->setPrefersRelative(true); // what is chosen in there
    plate->setPath(QStringLiteral("plate.####.exr"));
    form->addRow(QStringLiteral("Plate"), plate);

    auto* render = new FilePathEdit;
    render->setKind(FilePathEdit::SaveFile); // Ctrl+Plus is the next version
    render->setAcceptsSequences(true);
    render->setChecks(true);
    render->setExpander([shot](const QString& text) {
        return QString(text).replace(QStringLiteral("$SHOT"), shot);
    });
    render->setPath(QStringLiteral("$SHOT/comp/v003/comp_v003.####.exr"));
    form->addRow(QStringLiteral("Render"), render);

    // One signal an edit, and a path to open whatever its bytes are.
    auto* opened = new QLabel(QStringLiteral("as it was"));
    form->addRow(QStringLiteral("Last edit"), opened);
    for (FilePathEdit* field : {plate, render}) {
        QObject::connect(field, &FilePathEdit::pathChanged, opened, [=] {
            opened->setText(QDir(shot).relativeFilePath(QString::fromUtf8(field->rawPath())));
        });
    }
    render->setFocus();

    window.resize(480, 150);
    window.show();
    return QApplication::exec();
}
