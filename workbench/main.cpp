#include "app/CommandLine.h"
#include "app/Language.h"
#include "app/MainWindow.h"
#include "media/FrameDecoder.h"
#include "media/Paths.h"
#include "robot/Robot.h"
#include "sample/SampleGenerator.h"
#include "sample/SampleProgress.h"
#include "tour/Tour.h"

#include <QApplication>
#include <QFile>
#include <QIcon>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#endif

#include <cstdio>
#include <optional>
#include <string>

using namespace Kestrel::Workbench;

namespace {

enum ExitCode { Done = 0, Failed = 1, WrongUse = 2 };

int complain(ExitCode code, const QString& message) {
    std::fprintf(stderr, "kxui-workbench: %s\n", message.toUtf8().constData());
    return code;
}

/** The arguments need an application object of their own: the one of the interface can only be made
    where there is a screen, and --help must not need one. */
CommandLine readArguments(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return parseCommandLine(QCoreApplication::arguments());
}

/** The bytes of an argument that was read as this text: a path need not be UTF-8. */
std::string argumentBytes(const QString& text, int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (QString::fromLocal8Bit(argv[i]) == text)
            return argv[i];
    }
    return text.toStdString();
}

/** The platform without a screen says over and over what it cannot do; nobody has to read it. */
void quietly(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (!message.startsWith(QLatin1String("This plugin does not support ")))
        std::fprintf(stderr, "%s\n",
                     qFormatLogMessage(type, context, message).toUtf8().constData());
}

bool hasScreen() {
#ifdef Q_OS_LINUX
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || qEnvironmentVariableIsSet("DISPLAY") ||
           qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
#else
    return true;
#endif
}

} // namespace

int main(int argc, char** argv) {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    // File names are UTF-8 here whatever the locale says, also in the C locale.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
    QCoreApplication::setOrganizationName(QStringLiteral("Kestrel"));
    QCoreApplication::setApplicationName(QStringLiteral("kxui-workbench"));
    QGuiApplication::setDesktopFileName(QStringLiteral("kxui-workbench"));

    CommandLine line = readArguments(argc, argv);
    if (line.action == CommandLine::Action::Refuse)
        return complain(WrongUse, line.text + QStringLiteral("\nTry --help."));
    if (line.action == CommandLine::Action::ShowText) {
        std::fputs(line.text.toUtf8().constData(), stdout);
        return Done;
    }
    QList<QByteArray> paths;
    for (const QString& path : line.paths) {
        const std::string bytes = absolutePath(argumentBytes(path, argc, argv));
        paths.append(QByteArray::fromStdString(bytes));
        if (!pathExists(bytes))
            return complain(WrongUse,
                            QStringLiteral("there is no file or folder \"%1\"").arg(path));
    }
    const bool tour = !line.tourFolder.isEmpty();
    if (tour) {
        qInstallMessageHandler(quietly);
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_SCALE_FACTOR", QByteArray::number(qMax(line.tourScale, 1)));
    } else if (!hasScreen()) {
        return complain(Failed, QStringLiteral("there is no screen to open a window on; "
                                               "--tour OUT saves pictures without one"));
    }
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    // The tour's pictures have exactly the scale that they name.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, !tour);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    QApplication application(argc, argv);
    if (tour) {
        // Without a screen there is no desktop to say how large its text is.
        QFont font = QApplication::font();
        font.setPointSize(9);
        QApplication::setFont(font);
    }
    QIcon icon;
    for (const int size : {48, 256})
        icon.addFile(QStringLiteral(":/icon/kxui-workbench-%1.png").arg(size), QSize(size, size));
    QApplication::setWindowIcon(icon);
    if (!setLanguage(line.language) && !line.language.isEmpty())
        return complain(WrongUse,
                        QStringLiteral("there are no texts in \"%1\"").arg(line.language));
    setUpImageReading();
    applyTheme(line.darkPalette ? Theme::Dark : Theme::Light);

    if (paths.isEmpty()) {
        const SampleResult sample = provideSample(!tour);
        if (!sample.message.isEmpty())
            return complain(Failed, sample.message);
        if (sample.folder.isEmpty())
            return Failed;
        paths.append(QFile::encodeName(sample.folder));
    }
    if (tour)
        return Tour(line, paths).run();

    MainWindow window(line.timeBase, line.cacheBytes,
                      line.darkPalette ? Theme::Dark : Theme::Light);
    if (!line.freshWorkspace)
        window.rememberArrangement();
    if (!line.layoutFile.isEmpty()) {
        const QString problem = window.loadFrom(line.layoutFile);
        if (!problem.isEmpty())
            complain(Failed, QStringLiteral("\"%1\" is no workspace that can be shown: %2")
                                 .arg(line.layoutFile, problem));
    }
    window.show();
    window.openPaths(paths);
    window.showPage(window.getFocusPage());
    std::optional<Robot> robot;
    if (line.robotMinutes > 0)
        robot.emplace(&window, line.robotSeed, line.robotMinutes);
    return QApplication::exec();
}
