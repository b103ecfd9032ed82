#pragma once

#include <KxUI/browse/AskedFrames_p.h>
#include <KxUI/browse/ReplacedFiles_p.h>
#include <KxUI/files/FileListing.h>
#include <KxUI/files/FileNames.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** \file
    What the name field of a file chooser means. Plain: no window, no disk; bytes in the system's
    encoding. */
namespace Kestrel::UI {

/** What a file chooser is for, as far as it matters to names. */
struct NameRules {
    enum class Mode : std::uint8_t { OpenFile, OpenFiles, SaveFile, OpenFolder };

    Mode mode = Mode::OpenFile;
    bool acceptsSequences = true;
    bool acceptsFrames = true; ///< single files
    FileNames::Style style = FileNames::Style::Hashes;
    std::vector<std::string> suffixes; ///< of all filters
    std::string suffix;                ///< what a name without one gets; empty for nothing
    std::optional<Base::FrameRange> written;
    std::vector<std::string> schemes; ///< of addresses that are not the file system's
    bool isWindows = false;           ///< what names may not be there
};

/** What stands in the fields. */
struct NameInput {
    std::string text;
    std::vector<std::string> chosen; ///< the rows that the text was made of, while nobody edits it
    std::string frames;              ///< of one sequence that is opened
};

/** Why a name cannot be taken. */
enum class NameProblem : std::uint8_t {
    None,
    NotFound,
    SeveralNames,   ///< where one is wanted
    SeveralFolders, ///< all names have to lie in one
    Forbidden,      ///< has a character that no name may have
    Reserved,       ///< is the name of a device
    TooLong,
    IsFolder,      ///< a folder has the name of a sequence to be written
    NoSequences,   ///< a sequence, where only files are wanted
    NoSingleFiles, ///< a file, where only sequences are wanted
    FramesUnreadable,
    FramesNotThere
};

/** One of the names in the field. */
struct NameTarget {
    std::string name; ///< without folders; of a sequence with its frame in the style of the rules
    int item = -1;    ///< in the listing; -1 for what is not there
    bool isSequence = false;
    Base::FrameRange frames; ///< of a sequence: all of it, or the part that was asked for
    std::shared_ptr<const FileListing> unshown; ///< what the item is of, where it is not shown

    /** The listing that has the item. */
    const FileListing& in(const FileListing& shown) const { return unshown ? *unshown : shown; }
};

/** What the fields mean. */
struct NameReading {
    enum class Meaning : std::uint8_t {
        Nothing,
        Filter,  ///< a pattern of names to be shown
        Folder,  ///< a folder to go to, or to choose
        Names,   ///< files to choose
        Address, ///< "scheme://...", passed on unread
    };

    Meaning meaning = Meaning::Nothing;
    NameProblem problem = NameProblem::None;
    std::string culprit; ///< what the problem is about
    std::string folder;  ///< that the names lie in, as it was typed; empty for the one shown
    std::string text;    ///< the pattern, or the address
    std::vector<NameTarget> targets;
    AskedFrames asked;      ///< of one sequence to be opened
    ReplacedFiles replaced; ///< of what is to be written

    bool isOpening() const { return meaning == Meaning::Names || meaning == Meaning::Folder; }
};

/** Reads the fields against what is known of the folder that the names lie in.
    @param listing  of the folder shown, or with `inFolder` of the folder in the text */
NameReading readName(const NameInput& input, const NameRules& rules, const FileListing& listing,
                     bool inFolder = false);

/** Whether a listing knows the answer, so that the disk need not be asked: names to be opened that
    are in it. */
bool isSettled(const NameReading& reading, const FileListing& listing);

} // namespace Kestrel::UI
