#pragma once

#include <KxUI/Export.h>
#include <KxUI/files/FileInfo.h>

#include <QObject>

#include <memory>
#include <vector>

class QFileInfo;

namespace Kestrel::UI {

/** A directory listing in natural order that can fold numbered files into image sequences.

    A fill reads names only. The status of the items (size, time, kind, permission) is fetched
    afterwards, one item in each turn of the event loop, by whoever is connected to
    lazyStatFetchNext():

    @code
    connect(&list, &FileInfoList::lazyStatFetchNext, &list, [&list] {
        list.fetchLazyStat();
        list.onLazyStatFetchNext();
    }, Qt::QueuedConnection);
    connect(&list, &FileInfoList::fileInfoAvailable, view, &View::reload);
    list.setShouldFilterSequences(true);
    list.fill(directory);
    @endcode

    The connection must be queued: onLazyStatFetchNext() emits the signal for the next item.

    Lives on one thread, as a rule the interface thread. */
class KXUI_EXPORT FileInfoList : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString directory READ directory NOTIFY listChanged)
    Q_PROPERTY(QString errorString READ errorString NOTIFY listChanged)
    Q_PROPERTY(int size READ size NOTIFY listChanged)
    Q_PROPERTY(bool shouldFilterSequences READ shouldFilterSequences WRITE setShouldFilterSequences
                   NOTIFY settingsChanged)
    Q_PROPERTY(bool splitIncompleteSequences READ splitIncompleteSequences WRITE
                   setSplitIncompleteSequences NOTIFY settingsChanged)

public:
    /** An empty list; `parent` owns it when it is given. */
    explicit FileInfoList(QObject* parent = nullptr);
    ~FileInfoList() override;

    /** Lists a directory in place of what the list holds, and puts the cursor of the status
        fetching at the first item. The items `.` and `..` are listed, too. A relative path counts
        from the current directory, an empty one is it. Emits listChanged(), then
        lazyStatFetchNext() when there are items.

        Sequences are items of the text `img.####.exr 1-100`, with `,step` when the step is not 1;
        members of different digit counts share a single #. When frames are missing, the present
        ranges follow in brackets, or become items of their own (setSplitIncompleteSequences()).

        @return the number of directory entries read; 0 when the directory cannot be read, for the
                reason given by errorString() */
    int fill(const QString& directory);

    /** fill() for a directory whose name is given in the system's encoding. */
    int fillRaw(const QByteArray& directory);

    /** The directory filled last, as it was given. */
    QString directory() const;

    /** Why the last fill failed, in the system's words; empty when it did not. */
    QString errorString() const;

    /** Whether fill() folds numbered files into sequences; at first off. */
    bool shouldFilterSequences() const;
    void setShouldFilterSequences(bool filter);

    /** Whether fill() makes an item of each present range of a sequence that misses frames; at
        first off. */
    bool splitIncompleteSequences() const;
    void setSplitIncompleteSequences(bool split);

    /** The items. References to them hold until the list is filled again or grows. */
    const std::vector<FileInfo>& getFileList() const;
    std::vector<FileInfo>& getFileList();

    /** The item at an index from 0 to size() - 1. */
    FileInfo& operator[](int index);
    const FileInfo& operator[](int index) const;

    /** The number of items. */
    int size() const;

    /** Adds a copy of an item at the end. */
    void push_back(const FileInfo& info);

    /** Adds a file at the end, with the status that `info` holds. */
    void push_back(const QFileInfo& info);

    /** The index of the item whose status is to be fetched; size() at the end. */
    int lazyStatIndex() const;

    /** The item whose status is to be fetched; null at the end. */
    FileInfo* lazyStatItem();

    /** Fetches the status of the item at the cursor and stores it; a sequence takes that of its
        first frame. False at the end, and when the file is gone: its size and time are then 0. */
    bool fetchLazyStat();

public Q_SLOTS:
    /** Puts the cursor at the first item and emits lazyStatFetchNext() when there is one. */
    void startLazyStat();

    /** Moves the cursor on by one item and emits lazyStatFetchNext(), or fileInfoAvailable() when
        that reaches the end or the cursor is there already. Nothing for an empty list. */
    void onLazyStatFetchNext();

Q_SIGNALS:
    /** The list was filled, or an item was added. */
    void listChanged();

    /** shouldFilterSequences() or splitIncompleteSequences() changed, for the next fill on. */
    void settingsChanged();

    /** The cursor has reached the end of the list. */
    void fileInfoAvailable();

    /** The status of the item at the cursor is wanted. */
    void lazyStatFetchNext();

private:
    class Builder;
    struct Private;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
