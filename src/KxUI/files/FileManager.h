#pragma once

#include <KxUI/Export.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace Kestrel::UI {

class FileInfo;
class FileListing;

/** Process-wide settings and words of the file listing; questions about single files, and changes to
    them, that never make the caller wait.

    Those that take a `context` return at once, and call back on the caller's thread, which has an
    event loop, never before they have returned. The context is an object of that thread; when it is
    deleted first nobody is called. Without one they call back as long as the application lives. Paths
    are in the system's encoding; relative ones count from the current directory. */
class KXUI_EXPORT FileManager {
public:
    FileManager() = delete;

    /** Numbers of errors that no system has. */
    enum Error {
        NobodyLeft = -1, ///< too many other folders do not answer: nobody was left to ask
        NoAnswer = -2,   ///< the file system did not answer in time
        Stopped = -3,    ///< the caller did not want it any more
        NoFrames = -4    ///< no sequence, or a name that has no place for its frames
    };

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

    /** Folders and files that do not answer, which threads of the library are waiting for. Any
        thread. */
    static QStringList stuckDirectories();

    /** Forgets what was in the folders that were listed last. FileGatherer shows it of a folder that is
        entered again until the disk has answered: of eight at most, and 500,000 names. Any thread. */
    static void forgetListings();

    /** What the system says of a path. */
    struct PathStatus {
        /** What is there. */
        enum class Kind : std::uint8_t {
            Unknown,   ///< `error` tells why
            Missing,   ///< nothing, or a link that leads nowhere
            Directory, ///< a directory, or a link to one
            File,      ///< a file, or a link to one
            Other      ///< a device, a pipe and the like
        };

        Kind kind = Kind::Unknown; ///< What is there.
        int error = 0;             ///< The system's number, or one of Error; 0 when it answered.
        bool isReadable = false;   ///< This process may read it, as far as the system knows.
        bool isWritable = false; ///< The same for writing; of what is missing, for making it there.
        bool isLink = false;     ///< The path itself is a symbolic link; the rest is its target's.
        std::uint64_t size = 0;  ///< Bytes.
        std::int64_t modified = 0; ///< Seconds since 1970.
    };

    /** Asks what is at a path. One that does not answer within so many milliseconds is Unknown, with
        the error NoAnswer; 0 waits as long as it takes. */
    static void requestStatus(const QByteArray& path, int milliseconds, QObject* context,
                              std::function<void(const PathStatus& status)> answered);

    /** Looks for the directory nearest above a path that is there and answers, if a nearer one does
        not within so many milliseconds. It is empty when none does. */
    static void requestNearestDirectory(const QByteArray& path, int milliseconds, QObject* context,
                                        std::function<void(const QByteArray& directory)> answered);

    /** Makes one directory; the one above it has to be there. Calls back with 0 or the error. It is
        not made when the context is deleted before it was begun. */
    static void makeDirectory(const QByteArray& path, QObject* context,
                              std::function<void(int error)> done);

    /** Gives a file or directory another path on the same disk; never replaces what is there. Calls
        back with 0 or the error. It is not done when the context is deleted before it was begun. */
    static void rename(const QByteArray& from, const QByteArray& to, QObject* context,
                       std::function<void(int error)> done);

    /** What became of renaming a sequence. */
    struct RenameResult {
        int error = 0;    ///< 0, the system's number, or one of Error.
        QByteArray path;  ///< The file or folder that the error is about.
        int renamed = 0;  ///< Files that have their new names now.
        int stranded = 0; ///< Of these, those that have them though it failed.
    };

    /** Renames all files of a sequence, or none: before the first one it is seen that all are there
        and that none would replace another file; after a failure, those renamed before get their old
        names again. Only when the file system refuses that, too, files are left with their new names,
        and RenameResult::stranded counts them. A process that ends meanwhile leaves some of both.

        When the context is deleted it goes on, but does not begin.
        @param from         the sequence, as it was listed
        @param toFrameName  the other name, with a place for the frame in any style that
                            FileNames::patternOf() reads; in the folder of the sequence, unless it is
                            a path
        @param frameOffset  is added to the numbers of all frames
        @param context      whose thread is called back, if it is still there
        @param done         called once, with what became of it
        @param progress     is called now and then with the files renamed and the number of all;
                            false stops it and takes all back, with the error Stopped */
    static void renameSequence(const FileInfo& from, const QByteArray& toFrameName, int frameOffset,
                               QObject* context,
                               std::function<void(const RenameResult& result)> done,
                               std::function<bool(int renamed, int count)> progress = {});

    /** Why a folder cannot be listed, as a sentence for the user; empty for 0.
        @param error  FileListing::error() */
    static QString errorText(int error);

    /** Why a listing is not all that is in its folder, as a sentence for the user; empty when it is, and
        while it is being read. */
    static QString errorText(const FileListing& listing);

    /** Why something could not be done with a file or folder, as a sentence for the user that says its
        name; empty for 0. */
    static QString errorText(int error, const QByteArray& path);

    /** What kind of file a name means by its extension: "OpenEXR image", "TXT file", "File". */
    static QString fileTypeName(const QByteArray& name);
};

} // namespace Kestrel::UI
