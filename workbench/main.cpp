#include "app/CommandLine.h"
#include "app/MainWindow.h"
#include "app/QtStart.h"
#include "app/StartUp.h"

#include <QApplication>
#include <QIcon>

using namespace Kestrel::Workbench;

int main(int argc, char** argv) {
    nameProgram();
    const CommandLine line = readArguments(argc, argv, parseCommandLine);
    if (line.action != CommandLine::Action::Run)
        return endAt(line);
    QList<QByteArray> paths;
    if (!readPaths(line, argc, argv, &paths))
        return WrongUse;
    if (!hasScreen())
        return complain(Failed, QStringLiteral("there is no screen to open a window on; "
                                               "kxui-workbench-tool --tour OUT needs none"));
    prepareScreens(true);
    QApplication application(argc, argv);
    QIcon icon;
    for (const int size : {48, 256})
        icon.addFile(QStringLiteral(":/icon/kxui-workbench-%1.png").arg(size), QSize(size, size));
    QApplication::setWindowIcon(icon);
    if (!setUpApplication(line))
        return WrongUse;
    bool needsSample = false;
    if (paths.isEmpty())
        needsSample = !findSample(&paths);
    MainWindow window(line.timeBase, line.cacheBytes,
                      line.darkPalette ? Theme::Dark : Theme::Light);
    open(&window, line, paths);
    if (needsSample)
        window.openSample();
    return QApplication::exec();
}
