#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

namespace Kestrel::Workbench {

class MainWindow;
struct CommandLine;

enum ExitCode { Done = 0, Failed = 1, WrongUse = 2 };

/** Says what went wrong on standard error; returns the code. */
int complain(ExitCode code, const QString& message);

/** What has to be set before any application object is made: names, that which complaints begin
    with among them, and how file names are read.
 */
void nameProgram(const char* name = "kxui-workbench");

/** Reads the arguments by `read`, which needs an application object. It is one of their own: that
    of the interface can only be made where there is a screen, and --help must not need one. */
template <typename Line>
Line readArguments(int argc, char** argv, Line (*read)(const QStringList&)) {
    const QCoreApplication application(argc, argv);
    return read(QCoreApplication::arguments());
}

/** Ends a program whose arguments say all there is to do, or make no sense: prints the text.
    Returns the exit code. */
int endAt(const CommandLine& line);

/** What the arguments name, absolute, in the bytes of the file system: a path need not be UTF-8.
    False, and said so, when something is not there. */
bool readPaths(const CommandLine& line, int argc, char** argv, QList<QByteArray>* paths);

/** Whether a window can be opened. */
bool hasScreen();

/** Sets language, palette and image reading of the application object; false, and said so, when
    there are no texts in the language that was asked for. */
bool setUpApplication(const CommandLine& line);

/** Names the sample; false when it is not there yet. */
bool findSample(QList<QByteArray>* paths);

/** Names the sample when nothing else was: made where it is not there yet, without a window. False,
    and said so, when there is none. */
bool provideSomething(QList<QByteArray>* paths);

/** Shows the window, in the workspace that was asked for and on these files and folders. */
void open(MainWindow* window, const CommandLine& line, const QList<QByteArray>& paths);

} // namespace Kestrel::Workbench
