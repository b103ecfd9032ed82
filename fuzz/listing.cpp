// Both directory listings, plain and folded, of a directory in memory against their rules. Each
// line is a name; a last character / > < makes it a directory or a link, and "name*7" makes seven
// names that count up.

#include <KxUI/files/FileInfoList.h>
#include <KxUI/files/filename.h>

#include <support/MemoryDirectory.h>
#include <support/Require.h>

#include <algorithm>

using namespace Kestrel::Fuzz;
using namespace Kestrel::UI;

namespace {

constexpr const char* path = "/d";

void countUp(std::string& name) {
    std::size_t at = name.size();
    while (at > 0 && !(name[at - 1] >= '0' && name[at - 1] < '9'))
        --at;
    if (at > 0)
        ++name[at - 1];
}

Names namesOf(std::string_view lines) {
    Names names;
    while (!lines.empty() && names.size() < 24) {
        std::string name = take(lines, '\n');
        name.resize(std::min(name.find('\0'), name.size()));
        int count = 1;
        if (const auto star = name.size() - 2; name.size() > 2 && name[star] == '*') {
            count = name.back() & 7;
            name.resize(star);
        }
        // Only the last character may be a separator, and says what the entry is.
        const auto last = name.empty() ? name.end() : name.end() - 1;
        std::replace(name.begin(), last, '/', '_');
        for (; count > 0; --count, countUp(name))
            names.push_back(name);
    }
    return names;
}

Names listed(bool sequences) {
    struct dirent** list = nullptr;
    const int count = filename_list(path, &list, sequences);
    Names names;
    for (int i = 0; i < count; ++i) {
        names.emplace_back(reinterpret_cast<const char*>(list[i]));
        std::free(list[i]);
    }
    std::free(list);
    return names;
}

Names items(bool fold, bool split) {
    FileInfoList list;
    list.setShouldFilterSequences(fold);
    list.setSplitIncompleteSequences(split);
    list.fillRaw(path);
    Names names;
    for (const FileInfo& info : list.getFileList())
        names.push_back((info.isSequence() ? "\1" : "") + std::string(info.rawFileName()));
    return names;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryDirectory directory(namesOf(textOf(data, size)));
    const auto& [names, directories] = directory;
    Names plain = names;
    FoldingOracle::sort(plain, false);
    require(listed(false) == plain, "a listing is in natural order");
    require(items(false, false) == plain, "so is a list of items");
    require(listed(true) == FoldingOracle::patternListing(names, directories),
            "files fold by patterns");
    for (const bool split : {false, true})
        require(items(true, split) == FoldingOracle::frameNameListing(names, directories, split),
                "files fold by frame names");
    return 0;
}
