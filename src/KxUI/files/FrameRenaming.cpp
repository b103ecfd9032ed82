#include <KxUI/files/FrameRenaming_p.h>

#include <KxUI/files/platform/FileCalls_p.h>

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_set>

namespace Kestrel::UI {
namespace {

std::string_view folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 ? path.substr(0, 1) : path.substr(0, std::min(slash, path.size()));
}

// The names in the folders that a renaming has to do with: one reading of a folder costs less than
// a question for each file.
class Folders : private Platform::ReadProgress {
public:
    explicit Folders(const std::function<bool()>& goesOn)
        : m_goesOn(goesOn) {}

    int read(const std::string& folder) {
        auto& names = m_names[folder];
        if (!names.empty())
            return 0;
        Platform::DirectoryHandle directory;
        Platform::Listing listing;
        int error = directory.open(folder);
        if (error == 0)
            error = Platform::readDirectory(directory, listing, *this);
        for (const Platform::Entry& entry : listing.entries)
            names.insert(Platform::joinedPath(folder, entry.view()));
        return error;
    }

    bool has(const std::string& path) const {
        const auto names = m_names.find(std::string(folderOf(path)));
        return names != m_names.end() && names->second.count(path) != 0;
    }

private:
    bool block(const Platform::Listing&) override { return m_goesOn(); }

    const std::function<bool()>& m_goesOn;
    std::map<std::string, std::unordered_set<std::string>> m_names;
};

RenamingOutcome objection(const std::vector<FileRenaming>& files,
                          const std::function<bool()>& goesOn) {
    using Platform::Failure;
    Folders folders(goesOn);
    std::unordered_set<std::string_view> leaving;
    for (const FileRenaming& each : files) {
        for (const std::string* path : {&each.from, &each.to}) {
            if (const int error = folders.read(std::string(folderOf(*path))); error != 0)
                return {error, std::string(folderOf(*path))};
        }
        if (!folders.has(each.from))
            return {Platform::errorOf(Failure::NotFound), each.from};
        leaving.insert(each.from);
    }
    for (const FileRenaming& each : files) {
        if (folders.has(each.to) && leaving.count(each.to) == 0)
            return {Platform::errorOf(Failure::Exists), each.to};
    }
    return {};
}

// From the last one on, so that each finds its old name free.
void takeBack(const std::vector<FileRenaming>& files, RenamingOutcome& outcome,
              const std::function<bool(std::size_t done)>& tell) {
    for (std::size_t i = outcome.renamed; i-- > 0;) {
        if (files[i].from != files[i].to && Platform::renameToNew(files[i].to, files[i].from) != 0)
            ++outcome.stranded;
        tell(i);
    }
    outcome.renamed = outcome.stranded;
}

} // namespace

RenamingOutcome renameFiles(const std::vector<FileRenaming>& files,
                            const std::function<bool(std::size_t done)>& goesOn) {
    bool isStopped = false;
    RenamingOutcome outcome = objection(files, [&] {
        isStopped = isStopped || !goesOn(0);
        return !isStopped;
    });
    if (isStopped)
        outcome = {};
    for (auto each = files.begin(); each != files.end() && outcome.error == 0; ++each) {
        isStopped = isStopped || !goesOn(outcome.renamed);
        if (isStopped)
            break;
        if (each->from != each->to)
            outcome.error = Platform::renameToNew(each->from, each->to);
        if (outcome.error == 0)
            ++outcome.renamed;
        else
            outcome.path = each->from;
    }
    outcome.isStopped = isStopped;
    if (isStopped || outcome.error != 0)
        takeBack(files, outcome, goesOn);
    return outcome;
}

} // namespace Kestrel::UI
