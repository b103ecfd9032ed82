#pragma once

#include "media/Sequence.h"

#include <QString>

#include <string>
#include <vector>

namespace Kestrel::Workbench {

/** The names in a folder, sorted by bytes, to find out which files a folded sequence stands for. */
class FolderNames {
public:
    /** An empty folder. */
    FolderNames() = default;

    explicit FolderNames(std::vector<std::string> names);

    /** Reads a folder; one that cannot be read has no names. Any thread. */
    static FolderNames read(const std::string& folder);

    /** The files of a sequence named with hashes in place of its frame number, as "shot.####.exr";
        a single hash stands for any number of digits. Empty when no file fits. */
    std::vector<Sequence::Member> members(const std::string& hashedName) const;

private:
    std::vector<std::string> m_names;
};

/** The hashed name in the text of a folded sequence: "shot.####.exr" of
    "shot.####.exr 1-10 ( 1-3  5-10 )". Empty when the text is none. */
std::string hashedNameOf(const std::string& sequenceText);

/** Why a folder cannot be listed, for the user; empty when it can. */
QString folderProblem(const std::string& folder);

} // namespace Kestrel::Workbench
