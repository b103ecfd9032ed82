#include "ToolLine.h"
#include "app/MainWindow.h"
#include "app/QtStart.h"
#include "app/StartUp.h"
#include "play/PlayReport.h"
#include "robot/Robot.h"
#include "tour/Tour.h"

#include <QApplication>
#include <QFont>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdio>

using namespace Kestrel::Workbench;

namespace {

/** The platform without a screen says over and over what it cannot do; nobody has to read it. */
void quietly(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (!message.startsWith(QLatin1String("This plugin does not support ")))
        std::fprintf(stderr, "%s\n",
                     qFormatLogMessage(type, context, message).toUtf8().constData());
}

void goWithoutScreen(const ToolLine& line) {
    qInstallMessageHandler(quietly);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", QByteArray::number(qMax(line.tourScale, 1)));
}

} // namespace

int main(int argc, char** argv) {
    nameProgram("kxui-workbench-tool");
    const ToolLine line = readArguments(argc, argv, parseToolLine);
    if (line.action != CommandLine::Action::Run)
        return endAt(line);
    QList<QByteArray> paths;
    if (!readPaths(line, argc, argv, &paths))
        return WrongUse;
    const bool tour = !line.tourFolder.isEmpty();
    if (tour || line.playSeconds > 0)
        goWithoutScreen(line);
    else if (!hasScreen())
        return complain(Failed, QStringLiteral("the robot needs a screen"));
    prepareScreens(!tour); // its pictures have exactly the scale that they name
    // Neither shows what is the user's, nor leaves anything there.
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    QApplication application(argc, argv);
    if (tour) {
        // Without a screen there is no desktop to say how large its text is.
        QFont font = QApplication::font();
        font.setPointSize(9);
        QApplication::setFont(font);
    }
    if (!setUpApplication(line))
        return WrongUse;
    if (!provideSomething(&paths))
        return Failed;
    if (tour)
        return Tour(line, paths).run();
    MainWindow window(line.timeBase, line.cacheBytes,
                      line.darkPalette ? Theme::Dark : Theme::Light);
    open(&window, line, paths);
    if (line.playSeconds > 0) {
        const PlayReport report(&window, line.playSeconds);
        return QApplication::exec();
    }
    const Robot robot(&window, line.robotSeed, line.robotMinutes);
    return QApplication::exec();
}
