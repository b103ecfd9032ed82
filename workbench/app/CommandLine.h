#pragma once

#include <KxUI/base/TimeBase.h>

#include <QString>
#include <QStringList>

#include <cstddef>

namespace Kestrel::Workbench {

/** What the program was asked to do. */
struct CommandLine {
    enum class Action {
        Run,      ///< open the window, or make the tour when `tourFolder` is set
        ShowText, ///< print `text` and end well
        Refuse,   ///< print `text` as an error and end with the code for wrong use
    };

    Action action = Action::Run;
    QString text;
    /** Folders and files; empty means the sample. */
    QStringList paths;
    Base::TimeBase timeBase{24, false};
    /** Where the tour saves its pictures; empty without a tour. */
    QString tourFolder;
    /** The screen scale whose pictures this process saves; 0 for all, each in its own process. */
    int tourScale = 0;
    bool darkPalette = true;
    /** Begin in the built-in layout rather than in the last one, and do not keep this one. */
    bool freshWorkspace = false;
    /** The workspace file to begin with; empty for none. */
    QString layoutFile;
    /** The language of the texts, as "de"; empty for the user's. */
    QString language;
    /** For how long a robot uses the window, and what it does; 0 without one. */
    int robotMinutes = 0;
    unsigned robotSeed = 0;
    std::size_t cacheBytes = std::size_t(1) << 30;
};

/** Reads the arguments, program name first. Paths are not looked at. Needs an application object.
 */
CommandLine parseCommandLine(const QStringList& arguments);

} // namespace Kestrel::Workbench
