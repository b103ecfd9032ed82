#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/FrameRange.h>

#include <QByteArray>
#include <QFlags>
#include <QMetaType>
#include <QSharedDataPointer>
#include <QString>

#include <cstdint>
#include <map>
#include <vector>

namespace Kestrel::UI {

class FileInfoData;

/** One item of a file listing: a file, a directory, or an image sequence.

    Names are kept as the bytes that the system gave and shown decoded: as UTF-8 on POSIX systems
    whatever the locale, with replacement characters for what is not UTF-8. Nothing is cut.

    A sequence stands for its files in one of two ways. One that was listed, or made from the text
    of a listing, knows the frames that were there. One that a host puts together borrows its member
    files, see insertSequenceFile(). presentRanges(), hasFrame() and rawFramePath() answer for both.

    A value; copies are cheap and share what they hold until one of them changes. They borrow the
    same members and the same parent. One thread at a time for each item; copies may be used by
    other threads. */
class KXUI_EXPORT FileInfo {
public:
    /** What is known of an item. */
    enum Flag : std::uint32_t {
        Directory = 1,             ///< a directory
        Sequence = 2,              ///< a sequence of image files
        Writable = 4,              ///< the process may write it
        AdditionalInfo = 8,        ///< size, time, kind and permission have been fetched
        SequenceNameBuilt = 16,    ///< constructSequenceName() has done its work
        Gaps = 64,                 ///< frames are missing
        AutoSequence = 128,        ///< the answer of isAutoSequence()
        AutoSequenceDetected = 256 ///< isAutoSequence() has looked
    };
    /** Bits of Flag. */
    Q_DECLARE_FLAGS(Flags, Flag)

    /** An item without a name. */
    FileInfo();

    /** An item of a name in the system's encoding; null counts as empty. A sequence is named by its
        frame name alone (`img.#.exr`) or by the text of a listing (`img.####.exr 1-100`,
        `img.#.exr 1-10,3 ( 1-4  10-10 )`). The item then knows what the text says: its frame name,
        range, step and present frames, as the listed item does. */
    FileInfo(const char* name, bool isSequence);
    /** Deleted: a pointer given for the flag would silently mean true. */
    template <class T>
    FileInfo(const char* name, T* isSequence) = delete;

    /** Shares what the other one holds. */
    FileInfo(const FileInfo& other) noexcept;
    FileInfo& operator=(const FileInfo& other) noexcept;
    ~FileInfo();

    /** The name, decoded. */
    QString fileName() const;

    /** The name as the system gave it; valid until the item changes or dies. */
    const char* rawFileName() const;

    /** The length of rawFileName() in bytes. */
    int getFilenameLength() const;

    /** The name of the files of a sequence, without a range. The frame is a number sign for each of
        its digits, as in `img.####.exr`, or a single one where the numbers differ in length. The
        file name for an item that is no sequence. */
    QString frameName() const;

    /** The same in the system's encoding. */
    QByteArray rawFrameName() const;

    /** The listed directory joined with the name, decoded. The name of an item that was not listed
        counts from the current directory. */
    QString absoluteFilePath() const;

    /** The same path in the system's encoding: what to open, also when the name is not UTF-8. */
    QByteArray rawAbsoluteFilePath() const;

    /** The file of one frame of a sequence: its path, decoded, for showing. */
    QString framePath(std::int32_t frame) const;

    /** The file of one frame of a sequence: its path in the system's encoding, to be opened. For a
        frame that hasFrame(), it is the member's path. For another one the number takes the place
        of the # characters, with as many digits as the shortest member has. The disk is not
        asked. */
    QByteArray rawFramePath(std::int32_t frame) const;

    /** Whether a sequence has a file of this frame: among its members if it has any, else among the
        files that were listed, else whether it lies in the range at its step. */
    bool hasFrame(std::int32_t frame) const;

    /** All frames for which hasFrame() is true, in order. Within a range, the frames are
        frameStep() apart; nothing is left out. Empty for an item that is no sequence. */
    std::vector<Kestrel::Base::FrameRange> presentRanges() const;

    /** The name of the sequence with its range; empty until it is built. Items of a folded listing
        have it from the start: `img.####.exr 1-100`. */
    QString sequenceName() const;

    /** The sequence name followed by the present ranges. `img.####.exr 1-10 ( 1-3 5-10 )` misses
        frame 4. */
    QString getSequenceLongName() const;

    /** Builds the sequence name once: the file name with its first # written numberOfHashes()
        times, and the range of start and end frame, or of the member files when both are 0. Finds
        the gaps between the member files. Does nothing for an item that is not a sequence or is
        named already. */
    void constructSequenceName();

    /** All flags that are set. */
    Flags flags() const;

    /** Sets or clears flags. */
    void setFlag(Flags flag, bool on = true);
    void setIsDirectory(bool isDirectory);
    void setIsSequence(bool isSequence);

    /** Whether one bit of Flag is set; a file is whatever is no directory, sequences included.
        isDir() and isWritable() tell nothing before hasAdditionalInfo(). */
    bool isDir() const { return flags().testFlag(Directory); }
    bool isFile() const { return !isDir(); }
    bool isSequence() const { return flags().testFlag(Sequence); }
    bool isWritable() const { return flags().testFlag(Writable); }
    bool hasAdditionalInfo() const { return flags().testFlag(AdditionalInfo); }
    bool sequenceNameBuilt() const { return flags().testFlag(SequenceNameBuilt); }
    bool hasGaps() const { return flags().testFlag(Gaps); }

    /** Whether this is a sequence of more than one file with an extension that marks sequences.
        Looks once and keeps the answer. */
    bool isAutoSequence();

    /** Stores what a status call told. Times are seconds since 1970, sizes bytes. */
    void setAdditionalInfo(std::uint64_t size, std::int64_t lastModified, bool isDirectory,
                           bool isWritable);

    /** The size in bytes, that of the first frame for a sequence; 0 before it was fetched. */
    std::uint64_t size() const;
    /** Seconds since 1970; 0 before the status was fetched. */
    std::int64_t lastModified() const;

    /** First and last frame of a sequence, and how many # stand for the number in its frame name.
        Another first or last frame makes a listed sequence forget which frames were there. */
    void setFrameInformation(std::int32_t startFrame, std::int32_t endFrame,
                             std::int32_t numberOfHashes);
    std::int32_t startFrame() const;
    std::int32_t endFrame() const;
    std::int32_t numberOfHashes() const;

    /** The distance between the frames of a listed sequence; 1 for other items. */
    std::int32_t frameStep() const;

    /** How many frames from the first to the last one of a listed sequence have no file, at its
        step: 1, 5, 7, 8 miss 4. The texts of listings count and show gaps in ways of their own that
        have never been changed, see frameRanges(); an item made from such a text knows what the text
        says. */
    std::int64_t missingFrames() const;

    /** The stretches that the text of a sequence with gaps names, in order; empty for one without.
        That of a listed sequence leaves out a single frame after the last gap, and counts stretches
        from gap to gap: presentRanges() tells the frames themselves. */
    const std::vector<Kestrel::Base::FrameRange>& frameRanges() const;

    /** The member files by frame. A listing leaves this empty. */
    const std::map<std::int32_t, FileInfo*>& sequenceCollection() const;

    /** Adds a member file, in place of the one this frame had. It is borrowed; null stands for one
        that has no item, and then goes by the frame name. */
    void insertSequenceFile(std::int32_t frame, FileInfo* info);

    /** Starts the sequence over: forgets members, ranges, gaps, present frames and the built name.
     */
    void clearSequenceList();

    /** The number of member files inserted. */
    int sequenceSize() const;

    /** The sequence that this item belongs to, borrowed; null for none. */
    FileInfo* getParent() const;
    void setParent(FileInfo* parent);

    /** Makes an extension mark sequences for the whole process: `exr`, `.EXR` and `EXR` are one.
        Null and an empty text do nothing. Not while another thread lists files. */
    static void addSequenceFileExtension(const char* extension);

    /** Whether an extension, written in any of these forms, marks sequences; null does not. */
    static bool isSequenceExtension(const char* extension);

private:
    friend class FileInfoList;
    friend class FileListing;

    explicit FileInfo(FileInfoData* data);
    void detectAutoSequence();

    QSharedDataPointer<FileInfoData> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(FileInfo::Flags)

} // namespace Kestrel::UI

Q_DECLARE_TYPEINFO(Kestrel::UI::FileInfo, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(Kestrel::UI::FileInfo)
