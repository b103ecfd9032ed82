#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/FrameRange.h>
#include <KxUI/files/FileInfo.h>

#include <QByteArray>
#include <QMetaType>

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace Kestrel::UI {

struct ListingData;
class StatusTable;

/** What is known of one directory at one moment: immutable, so that any thread may read it.

    Items are files, directories and, when folded, image sequences, in natural order, without the
    directory itself and the one above. Names are the bytes that the system gave. A listing costs some 20 bytes a
    directory entry beside its name and 80 an item; the next one of the same directory shares the
    names. FileGatherer makes them. */
class KXUI_EXPORT FileListing {
public:
    /** How far the reading is. */
    enum class State : std::uint8_t {
        Empty,    ///< nothing was asked for yet
        Reading,  ///< more will come
        Complete, ///< all entries were read
        Failed,   ///< error() tells why; what was read before is kept
        Stopped   ///< the reading was given up; what was read before is kept
    };

    /** What an item is. */
    enum class Kind : std::uint8_t {
        Directory, ///< a directory, or a link to one
        File,      ///< a file
        Sequence,  ///< files that are numbered frames
        Unknown    ///< a link, or what the file system does not say, until its status is told
    };

    /** What the system told of an item. */
    struct Status {
        /** How far asking is. */
        enum Known : std::uint8_t {
            NotAsked, ///< nobody has asked
            Told,     ///< size and modified hold
            Gone,     ///< there is no such file any more
            Denied,   ///< its folder may not be searched
            Failed    ///< another error
        };

        Known known = NotAsked;    ///< How far asking is.
        bool isEstimate = false;   ///< The size is that of one frame times the frames.
        bool isLink = false;       ///< The name is a symbolic link; the rest is its target's.
        bool isBrokenLink = false; ///< The target is not there; the rest is the link's own.
        std::uint64_t size = 0;    ///< Bytes.
        std::int64_t modified = 0; ///< Seconds since 1970; of a sequence, its last frame's.
    };

    /** A row of the directory. Its layout is frozen. */
    struct Item {
        std::string_view name;     ///< `notes.txt`, `img.####.exr`; holds while the listing lives.
        std::uint64_t key = 0;     ///< The same for the same item in a later listing.
        std::int64_t missing = 0;  ///< Frames of the range, at its step, that have no file.
        std::int32_t first = 0;    ///< First frame of a sequence; 0 for other items.
        std::int32_t last = 0;     ///< Last frame of a sequence; 0 for other items.
        std::int32_t step = 1;     ///< Frames from one to the next; 1 for other items.
        std::int32_t frames = 1;   ///< The files that it stands for.
        Kind kind = Kind::Unknown; ///< What it is.
    };

    /** A listing of nothing. */
    FileListing();
    FileListing(const FileListing& other) noexcept;
    FileListing& operator=(const FileListing& other) noexcept;
    ~FileListing();

    /** The directory as it was asked for: absolute, in the system's encoding. */
    QByteArray directory() const;

    /** How far the reading is. */
    State state() const;

    /** The system's number for why the reading failed, -1 when too many other folders do not answer
        and nobody was left to ask; 0 when it did not fail. FileManager::errorText() has words for
        it. */
    int error() const;

    /** Names read so far, with those that are hidden, filtered away or folded. */
    std::int64_t entriesRead() const;

    /** Whether numbered files were folded into sequences. */
    bool isFolded() const;

    /** The number of items. */
    int size() const;

    /** An item by its index, from 0 to size() - 1. */
    const Item& item(int index) const;

    /** What was told of an item; the rest is not asked for before somebody does:
        FileGatherer::requestStatus(). */
    Status status(int index) const;

    /** The frames of a sequence that are there, in order; those of a range are Item::step apart.
        Empty for other items. */
    std::vector<Base::FrameRange> frameRanges(int index) const;

    /** The item as FileInfoList has it, with its directory. */
    FileInfo fileInfo(int index) const;

    /** The path of an item, in the system's encoding; of a sequence with # for the frame. */
    QByteArray path(int index) const;

    /** The path of a frame of a sequence; of one that is not there, with the digits that it would
        have. The path itself for other items. */
    QByteArray framePath(int index, std::int32_t frame) const;

    /** The index of the item of this name, as Item::name has it; -1 for none. */
    int find(std::string_view name) const;

    /** The index of the item that stands for a file: of its name, or the sequence that it is a frame
        of. -1 for none. */
    int findFile(std::string_view name) const;

    /** The index of the item of this key; -1 for none. */
    int findKey(std::uint64_t key) const;

private:
    friend struct ListingData;

    FileListing(std::shared_ptr<const ListingData> data, std::shared_ptr<const StatusTable> status,
                State state, int error);

    std::shared_ptr<const ListingData> m_data;
    std::shared_ptr<const StatusTable> m_status;
    State m_state = State::Empty;
    int m_error = 0;
};

} // namespace Kestrel::UI

Q_DECLARE_METATYPE(std::shared_ptr<const Kestrel::UI::FileListing>)
