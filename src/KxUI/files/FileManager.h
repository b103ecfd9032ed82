#pragma once

#include <KxUI/Export.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace Kestrel::UI {

/** Process-wide settings and words of the file listing. */
class KXUI_EXPORT FileManager {
public:
    FileManager() = delete;

    /** Registers, while no other thread lists files, the extensions of the usual image formats as marks of sequences, for
        FileInfo::isAutoSequence(); folding does not ask for them. Works once per process; further
        calls do nothing. */
    static void setInitialSequenceExtensions();

    /** Makes one more extension mark sequences; see FileInfo::addSequenceFileExtension(). Null does
        nothing. */
    static void addSequenceFileExtension(const char* extension);

    /** How many threads read folders at a time, from 1 to 48; at first 12. Those that the system has
        not answered for two seconds do not count. Any thread. */
    static void setThreadLimit(int count);

    /** Folders that do not answer, which threads of the library are waiting for. Any thread. */
    static QStringList stuckDirectories();

    /** Why a folder cannot be listed, as a sentence for the user; empty for 0.
        @param error  FileListing::error() */
    static QString errorText(int error);

    /** What kind of file a name means by its extension: "OpenEXR image", "TXT file", "File". */
    static QString fileTypeName(const QByteArray& name);
};

} // namespace Kestrel::UI
