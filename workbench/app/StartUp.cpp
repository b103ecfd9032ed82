#include "app/StartUp.h"

#include "app/CommandLine.h"
#include "app/Language.h"
#include "app/MainWindow.h"
#include "app/QtStart.h"
#include "media/FrameDecoder.h"
#include "media/Paths.h"
#include "sample/SampleGenerator.h"
#include "sample/SampleProgress.h"

#include <QFile>
#include <QGuiApplication>

#include <chrono>
#include <cstdio>
#include <string>

namespace Kestrel::Workbench {

namespace {

/** For the disk to say that something is not there; the list says the rest. */
constexpr std::chrono::milliseconds patience(2000);

const char* programName = "kxui-workbench";

/** The bytes of an argument that was read as this text. */
std::string argumentBytes(const QString& text, int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (QString::fromLocal8Bit(argv[i]) == text)
            return argv[i];
    }
    return text.toStdString();
}

} // namespace

int complain(ExitCode code, const QString& message) {
    std::fprintf(stderr, "%s: %s\n", programName, message.toUtf8().constData());
    return code;
}

void nameProgram(const char* name) {
    programName = name;
    prepareFileNames();
    QCoreApplication::setOrganizationName(QStringLiteral("Kestrel"));
    QCoreApplication::setApplicationName(QStringLiteral("kxui-workbench"));
    QGuiApplication::setDesktopFileName(QStringLiteral("kxui-workbench"));
}

int endAt(const CommandLine& line) {
    if (line.action == CommandLine::Action::Refuse)
        return complain(WrongUse, line.text + QStringLiteral("\nTry --help."));
    std::fputs(line.text.toUtf8().constData(), stdout);
    return Done;
}

bool readPaths(const CommandLine& line, int argc, char** argv, QList<QByteArray>* paths) {
    for (const QString& path : line.paths) {
        const std::string bytes = absolutePath(argumentBytes(path, argc, argv));
        if (isMissing(bytes, patience)) {
            complain(WrongUse, QStringLiteral("there is no file or folder \"%1\"").arg(path));
            return false;
        }
        paths->append(QByteArray::fromStdString(bytes));
    }
    return true;
}

bool hasScreen() {
#ifdef Q_OS_LINUX
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || qEnvironmentVariableIsSet("DISPLAY") ||
           qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
#else
    return true;
#endif
}

bool setUpApplication(const CommandLine& line) {
    if (!setLanguage(line.language) && !line.language.isEmpty()) {
        complain(WrongUse, QStringLiteral("there are no texts in \"%1\"").arg(line.language));
        return false;
    }
    setUpImageReading();
    UI::ApplicationStyle::install(line.darkPalette ? Theme::Dark : Theme::Light);
    return true;
}

bool findSample(QList<QByteArray>* paths) {
    const SampleGenerator generator(SampleGenerator::standardFolder());
    if (!generator.exists())
        return false;
    paths->append(QFile::encodeName(SampleGenerator::standardFolder()));
    return true;
}

bool provideSomething(QList<QByteArray>* paths) {
    if (!paths->isEmpty())
        return true;
    const SampleResult sample = provideSample();
    if (!sample.message.isEmpty())
        complain(Failed, sample.message);
    else if (!sample.folder.isEmpty())
        paths->append(QFile::encodeName(sample.folder));
    return !paths->isEmpty();
}

void open(MainWindow* window, const CommandLine& line, const QList<QByteArray>& paths) {
    if (!line.freshWorkspace)
        window->rememberArrangement();
    if (!line.isCacheGiven)
        window->recallCacheSize();
    if (!line.layoutFile.isEmpty()) {
        const QString problem = window->loadFrom(line.layoutFile);
        if (!problem.isEmpty())
            complain(Failed, QStringLiteral("\"%1\" is no workspace that can be shown: %2")
                                 .arg(line.layoutFile, problem));
    }
    window->show();
    window->openPaths(paths);
    window->showPage(window->getFocusPage());
    window->openTools();
}

} // namespace Kestrel::Workbench
