#pragma once

#include <KxUI/files/FileListing.h>
#include <KxUI/files/SequenceFold_p.h>

#include <string>

namespace Kestrel::UI {

/** What a listing shows of a directory. */
struct ListingSettings {
    bool fold = true;
    bool showHidden = false;
    bool directoriesOnly = false;
    std::vector<std::string> patterns; ///< of filename_match(), in the system's encoding; for files

    bool operator==(const ListingSettings& other) const {
        return fold == other.fold && showHidden == other.showHidden &&
               directoriesOnly == other.directoriesOnly && patterns == other.patterns;
    }
};

/** The names of a directory as they were read. */
struct RawEntries {
    std::string directory;                          ///< absolute, in the system's encoding
    std::shared_ptr<const Platform::Listing> names; ///< keeps the names; may still grow elsewhere
    std::vector<Platform::Entry> entries; ///< in the system's order, with types found out since
};

/** What a sequence of a listing knows beside its item. The stretches and ranges lie in the listing's
    own. */
struct SequenceParts {
    std::string_view head; ///< the member that the run began with, as a rule its first frame
    std::int32_t item = 0; ///< index
    std::int32_t shortest = 0;
    std::int32_t numberBegin = 0;
    std::int32_t numberLength = 0;
    std::uint32_t stretchesBegin = 0;
    std::uint32_t stretchesEnd = 0;
    std::uint32_t rangesBegin = 0; ///< those of the listing's text; only with frames missing
    std::uint32_t rangesEnd = 0;
};

/** The immutable part of a listing. */
struct ListingData {
    std::shared_ptr<const RawEntries> raw; ///< keeps the names; null for an empty listing
    NameArena frameNames;
    std::vector<FileListing::Item> items;
    std::vector<SequenceParts> sequences; ///< by item
    std::vector<FrameStretch> stretches;
    std::vector<Base::FrameRange> ranges;
    std::vector<std::int32_t> byKey; ///< indices of the items
    std::int64_t entriesRead = 0;
    bool folded = true;

    /** Null for an item that is no sequence. */
    const SequenceParts* sequence(int index) const;

    /** The name of the file of a frame. */
    std::string frameFile(int index, std::int32_t frame) const;

    /** The name of the file that tells about an item. */
    std::string firstFile(int index) const;

    /** Whether a name is written like those of a sequence's files. */
    bool mayHave(const SequenceParts& parts, std::string_view name,
                 const FrameNameRules::Frame& frame) const;

    /** Whether the directory has a name, shown or not. */
    bool wasRead(std::string_view name) const;

    int findKey(std::uint64_t key) const;
    std::string path(std::string_view name) const;

    /** For those who make listings of their own. */
    static std::shared_ptr<const FileListing> listing(std::shared_ptr<const ListingData> data,
                                                      std::shared_ptr<const StatusTable> status,
                                                      FileListing::State state, int error);
    static const std::shared_ptr<const ListingData>& of(const FileListing& listing);
    static const std::shared_ptr<const StatusTable>& statusOf(const FileListing& listing);
};

/** The items of what has been read so far. Any thread. */
std::shared_ptr<ListingData> makeListing(std::shared_ptr<const RawEntries> raw,
                                         const ListingSettings& settings);

/** A hash of bytes, good in all its bits. */
std::uint64_t hashOf(std::string_view bytes, std::uint64_t seed = 0);

} // namespace Kestrel::UI
