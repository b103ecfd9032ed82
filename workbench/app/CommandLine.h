#pragma once

#include <KxUI/base/TimeBase.h>

#include <QString>
#include <QStringList>

#include <cstddef>

class QCommandLineParser;

namespace Kestrel::Workbench {

/** What the program was asked to do. */
struct CommandLine {
    enum class Action {
        Run,      ///< open the window
        ShowText, ///< print `text` and end well
        Refuse,   ///< print `text` as an error and end with the code for wrong use
    };

    Action action = Action::Run;
    QString text;
    /** Folders and files; empty means the sample. */
    QStringList paths;
    Base::TimeBase timeBase{24, false};
    bool darkPalette = true;
    /** Begin in the built-in layout rather than in the last one, and do not keep this one. */
    bool freshWorkspace = false;
    /** The workspace file to begin with; empty for none. */
    QString layoutFile;
    /** The language of the texts, as "de"; empty for the user's. */
    QString language;
    std::size_t cacheBytes = std::size_t(1) << 30;
    /** Otherwise the size that the user chose last counts. */
    bool isCacheGiven = false;

    /** Wrong use, with the reason. */
    static CommandLine refusal(const QString& why);
};

/** Reads the arguments, program name first. Paths are not looked at. Needs an application object.
 */
CommandLine parseCommandLine(const QStringList& arguments);

// The two halves of it, for programs that know more options.
void addOptions(QCommandLineParser* parser);
CommandLine readOptions(QCommandLineParser* parser, const QStringList& arguments);

} // namespace Kestrel::Workbench
