#pragma once

#include <KxUI/Export.h>
#include <KxUI/files/FileListing.h>

#include <QObject>
#include <QStringList>

#include <memory>
#include <vector>

namespace Kestrel::UI {

/** Lists directories without ever waiting for them, as image sequences if asked to.

    gather() returns at once. listingChanged() tells of what has been read so far, first after some
    50 ms and then at a pace that costs at most a fifth of the reading; a directory of 100,000 files
    on a local disk arrives in one piece. Sizes and times are asked for only where somebody looks:
    requestStatus().

    All functions are for the thread that made the object, as a rule the interface thread, and all
    signals come from it. The destructor, cancel() and another gather() never wait: a call of the
    system that does not return keeps a thread of the library, not the caller, and ends with the
    process at the latest (on a broken disk the system may keep the process until it answers). A
    program that forks while folders are being read must go on to exec. */
class KXUI_EXPORT FileGatherer : public QObject {
    Q_OBJECT
    Q_PROPERTY(QByteArray directory READ directory WRITE gather NOTIFY listingChanged)
    Q_PROPERTY(bool gathering READ isGathering NOTIFY gatheringChanged)
    Q_PROPERTY(
        bool foldsSequences READ foldsSequences WRITE setFoldsSequences NOTIFY settingsChanged)
    Q_PROPERTY(bool showsHidden READ showsHidden WRITE setShowsHidden NOTIFY settingsChanged)
    Q_PROPERTY(
        QStringList namePatterns READ namePatterns WRITE setNamePatterns NOTIFY settingsChanged)
    Q_PROPERTY(
        bool directoriesOnly READ directoriesOnly WRITE setDirectoriesOnly NOTIFY settingsChanged)
    Q_PROPERTY(Watch watch READ watch WRITE setWatch NOTIFY settingsChanged)

public:
    /** Where changes are looked for and read by themselves. */
    enum class Watch {
        Never, ///< nowhere: refresh() looks
        Local, ///< on disks of this machine
        Always ///< on network shares as well, by asking now and then
    };
    Q_ENUM(Watch)

    /** Of an empty listing; `parent` owns it when it is given. */
    explicit FileGatherer(QObject* parent = nullptr);
    ~FileGatherer() override;

    /** The listing as it stands; never null. Hold it as long as you like. */
    std::shared_ptr<const FileListing> listing() const;

    /** The directory asked for last: an absolute path without steps to itself
        or upwards, in the system's encoding. */
    QByteArray directory() const;

    /** Whether an answer is awaited. */
    bool isGathering() const;

    /** Milliseconds since the file system answered last while isGathering(); else 0. */
    int waitingTime() const;

    /** Whether numbered files become sequences; at first on. A change folds anew without reading
        again, on another thread. */
    bool foldsSequences() const;
    void setFoldsSequences(bool folds);

    /** Whether names that begin with a dot are items; at first off. */
    bool showsHidden() const;
    void setShowsHidden(bool shows);

    /** Patterns of filename_match() of which files have to match one; at first empty, for all. */
    QStringList namePatterns() const;
    void setNamePatterns(const QStringList& patterns);

    /** Whether files are left out; at first off. */
    bool directoriesOnly() const;
    void setDirectoriesOnly(bool only);

    /** Where changes are looked for; at first Local. */
    Watch watch() const;
    void setWatch(Watch watch);

    /** Asks for the statuses of items, which are indices of listing(), in this order and before all
        that were asked for earlier and not answered: those are forgotten. A sequence is asked for
        its first and its last frame. */
    void requestStatus(const std::vector<int>& indices);

    /** Asks for the size of all files of a sequence, or of all files below a directory; answers by
        totalsArrived(). One at a time: another request, cancelTotals() or gather() ends it. */
    void requestTotals(int index);

public Q_SLOTS:
    /** Lists a directory, given in the system's encoding; a relative one counts from the current
        directory. The listing is empty until something has been read, unless it is the same
        directory, or one that was listed lately: then what was listed stands until the new one is
        there. */
    void gather(const QByteArray& directory);

    /** The same by its text. */
    void gatherPath(const QString& directory);

    /** Reads the directory again; statuses are asked for anew, past what a network file system
        remembers. */
    void refresh();

    /** Gives the reading up and keeps the listing, whose state is then Stopped. */
    void cancel();

    /** Gives the counting of requestTotals() up. */
    void cancelTotals();

Q_SIGNALS:
    /** listing() is another one. */
    void listingChanged();

    /** isGathering() is another. */
    void gatheringChanged(bool gathering);

    /** The status of at least one of these items of listing() is there. */
    void statusArrived(int first, int last);

    /** Bytes and number of the files asked for by requestTotals(), of the item of this name. Comes
        now and then while it counts, then once with `final`; `exact` is false when some could not
        be asked. */
    void totalsArrived(const QByteArray& name, qint64 bytes, qint64 files, bool final, bool exact);

    /** The reading has ended: Complete, Failed or Stopped. */
    void finished();

    /** The file system has not answered for this long: at 300, at 2,000 and at each 10,000 ms. */
    void waiting(int milliseconds);

    /** Something has changed in the directory, which will be read again. */
    void directoryChanged();

    /** A switch was set. */
    void settingsChanged();

protected:
    bool event(QEvent* event) override;

private:
    struct Private;
    friend class FileGathererPace;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
