#pragma once

#include <KxUI/files/FileInfo.h>
#include <KxUI/files/SequenceFold_p.h>

#include <QSharedData>

#include <boost/container/small_vector.hpp>

namespace Kestrel::UI {

/** `img.####.exr 1-100`. */
QByteArray sequenceNameOf(std::string_view frameName, std::int32_t first, std::int32_t last);

/** A sequence as the folding of a directory found it. */
struct FoldedSequence {
    std::string_view frameName;
    Base::FrameRange range;
    std::int32_t shortestDigits = 0;
    std::int32_t numberBegin = 0;
    std::int32_t numberLength = 0;
};

/** What an item knows; copies of the item share it. */
class FileInfoData : public QSharedData {
public:
    FileInfoData() = default;
    explicit FileInfoData(const QByteArray& itemName)
        : name(itemName) {}

    bool has(FileInfo::Flag flag) const { return flags.testFlag(flag); }

    QByteArray frameName() const { return frameNameLength < 0 ? name : name.left(frameNameLength); }

    /** A name that is not absolute joined with the directory that was listed. */
    QByteArray pathTo(const QByteArray& itemName) const;

    /** The name of the file of a frame. */
    QByteArray frameFile(std::int32_t frame) const;

    /** First to last frame, as far as they were stated. */
    std::optional<Base::FrameRange> statedRange() const;

    /** Takes a sequence's name apart if it has a range behind: `img.####.exr 1-9 ( 1-3  5-9 )`. */
    void readSequenceText();

    /** Becomes a folded sequence, named by its range. */
    void setFolded(const FoldedSequence& folded);

    /** All files of a folded sequence; `textRanges` are what its name shows when frames are missing,
        empty when none are. */
    void setMembers(const FrameStretch* first, const FrameStretch* end,
                    std::vector<Base::FrameRange> textRanges);

    /** Counts the frames that the stretches miss. */
    void countMissing();

    /** The stretch that a frame lies in; null for none. */
    const FrameStretch* stretchOf(std::int32_t frame) const;

    QByteArray name;
    QByteArray sequenceName;
    QByteArray directory; ///< absolute; empty when not listed
    std::uint64_t size = 0;
    std::int64_t lastModified = 0;
    std::int64_t missingFrames = 0;
    FileInfo* parent = nullptr;
    std::vector<Base::FrameRange> frameRanges;
    boost::container::small_vector<FrameStretch, 1> stretches; ///< files that were listed or named
    std::map<std::int32_t, FileInfo*> members;
    FileInfo::Flags flags;
    std::int32_t startFrame = 0;
    std::int32_t endFrame = 0;
    std::int32_t numberOfHashes = 0;
    std::int32_t frameStep = 1;
    std::int32_t shortestDigits = 0;   ///< of the members' numbers; 0 to go by the hashes
    std::int32_t frameNameLength = -1; ///< the part of the name before the range; -1 for all of it
    std::int32_t numberBegin = -1;     ///< where the # of the number begin; -1 for the first one
    std::int32_t numberLength = 0;     ///< how many # stand for it
};

} // namespace Kestrel::UI
