#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/FrameRange.h>

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <map>
#include <vector>

namespace Kestrel::UI {

/** One item of a file listing: a file, a directory, or an image sequence.

    Names are kept as the bytes that the system gave and shown decoded: as UTF-8 on POSIX systems
    whatever the locale, with replacement characters for what is not UTF-8. Nothing is cut. Member
    files and the parent are borrowed; copies of an item borrow the same ones.

    A value for one thread at a time. */
class KXUI_EXPORT FileInfo {
public:
    /** The bits of the item's flags. */
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

    /** An item without a name. */
    FileInfo() = default;

    /** An item of a name in the system's encoding; null counts as empty. A sequence is named by the
        text of its listing (`img.####.exr 1-100`) or by its frame name alone (`img.#.exr`). */
    FileInfo(const char* name, bool isSequence);

    /** The name, decoded. */
    QString fileName() const;

    /** The name as the system gave it; valid until the item changes or dies. */
    const char* rawFileName() const;

    /** The length of rawFileName() in bytes. */
    int getFilenameLength() const;

    /** The listed directory joined with the name, decoded. The name of an item that was not listed
        counts from the current directory. */
    QString absoluteFilePath() const;

    /** The same path in the system's encoding: what to open, also when the name is not UTF-8. */
    QByteArray rawAbsoluteFilePath() const;

    /** The file of one frame of a sequence: its path in the system's encoding. The number takes the
        place of the # characters, with as many digits as the shortest member has. Whether the file
        exists is not asked. */
    QByteArray rawFramePath(std::int32_t frame) const;

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

    /** Bits of Flag. */
    std::uint32_t flags() const { return m_flags; }

    /** Sets or clears bits of Flag, given as a number or by name. */
    void setFlag(std::uint32_t flag, bool on = true);
    void setIsDirectory(bool isDirectory);
    void setIsSequence(bool isSequence);

    /** Whether one bit of Flag is set; a file is whatever is no directory, sequences included.
        isDir() and isWritable() tell nothing before hasAdditionalInfo(). */
    bool isDir() const { return hasFlag(Directory); }
    bool isFile() const { return !isDir(); }
    bool isSequence() const { return hasFlag(Sequence); }
    bool isWritable() const { return hasFlag(Writable); }
    bool hasAdditionalInfo() const { return hasFlag(AdditionalInfo); }
    bool sequenceNameBuilt() const { return hasFlag(SequenceNameBuilt); }
    bool hasGaps() const { return hasFlag(Gaps); }

    /** Whether this is a sequence of more than one file with an extension that marks sequences.
        Looks once and keeps the answer. */
    bool isAutoSequence();

    /** Stores what a status call told. Times are seconds since 1970, sizes bytes. */
    void setAdditionalInfo(std::uint64_t size, std::int64_t lastModified, bool isDirectory,
                           bool isWritable);

    /** The size in bytes, that of the first frame for a sequence; 0 before it was fetched. */
    std::uint64_t size() const { return m_size; }
    /** Seconds since 1970; 0 before the status was fetched. */
    std::int64_t lastModified() const { return m_lastModified; }

    /** First and last frame of a sequence, and how many # stand for the number in its frame name.
     */
    void setFrameInformation(std::int32_t startFrame, std::int32_t endFrame,
                             std::int32_t numberOfHashes);
    std::int32_t startFrame() const { return m_startFrame; }
    std::int32_t endFrame() const { return m_endFrame; }
    std::int32_t numberOfHashes() const { return m_numberOfHashes; }

    /** The distance between the frames of a listed sequence; 1 for other items. */
    std::int32_t frameStep() const { return m_frameStep; }

    /** How many frames a listed sequence misses at its step. */
    std::int64_t missingFrames() const { return m_missingFrames; }

    /** The present stretches of a sequence with gaps, in order; empty for one without. A single
        frame after the last gap is not among those of a listed sequence. */
    const std::vector<Kestrel::Base::FrameRange>& frameRanges() const { return m_frameRanges; }

    /** The member files by frame. A listing leaves this empty. */
    const std::map<std::int32_t, FileInfo*>& sequenceCollection() const { return m_members; }

    /** Adds a member file, in place of the one this frame had. */
    void insertSequenceFile(std::int32_t frame, FileInfo* info);

    /** Starts the sequence over: forgets members, ranges, gaps and the built name. */
    void clearSequenceList();

    /** The number of member files inserted. */
    int sequenceSize() const { return static_cast<int>(m_members.size()); }

    /** The sequence that this item belongs to; null for none. */
    FileInfo* getParent() const { return m_parent; }
    void setParent(FileInfo* parent) { m_parent = parent; }

    /** Makes an extension mark sequences for the whole process: `exr`, `.EXR` and `EXR` are one.
        Not while another thread lists files. */
    static void addSequenceFileExtension(const char* extension);

    /** Whether an extension, written in any of these forms, marks sequences. */
    static bool isSequenceExtension(const char* extension);

private:
    friend class FileInfoList;

    bool hasFlag(Flag flag) const { return (m_flags & flag) != 0; }
    void detectAutoSequence();
    QByteArray frameName() const;
    QByteArray pathTo(const QByteArray& name) const;

    QByteArray m_name;
    QByteArray m_sequenceName;
    QByteArray m_directory; // absolute; empty when not listed
    std::uint64_t m_size = 0;
    std::int64_t m_lastModified = 0;
    std::int64_t m_missingFrames = 0;
    FileInfo* m_parent = nullptr;
    std::vector<Kestrel::Base::FrameRange> m_frameRanges;
    std::map<std::int32_t, FileInfo*> m_members;
    std::uint32_t m_flags = 0;
    std::int32_t m_startFrame = 0;
    std::int32_t m_endFrame = 0;
    std::int32_t m_numberOfHashes = 0;
    std::int32_t m_frameStep = 1;
    std::int32_t m_shortestDigits = 0;   // of the members' numbers; 0 to go by the hashes
    std::int32_t m_frameNameLength = -1; // the part of m_name before the range; -1 for all of it
};

} // namespace Kestrel::UI
