// What a file chooser makes of a name: whatever is typed over whatever is listed, it is read without
// trouble, reads the same again, and the controls beside it lead from a name to a name. The first
// byte chooses the mode, then come the frames and the text, each to the end of its line, and the
// names of the folder.

#include <KxUI/browse/NameEdits_p.h>
#include <KxUI/browse/NameRow_p.h>
#include <KxUI/files/ListingData_p.h>
#include <KxUI/files/StatusTable_p.h>

#include <support/Require.h>

#include <set>

using namespace Kestrel::Fuzz;
using namespace Kestrel::UI;

namespace {

std::shared_ptr<const FileListing> listingOf(std::string_view lines, bool fold) {
    constexpr std::size_t most = 40;
    auto all = std::make_shared<Platform::Listing>();
    std::set<std::string> known; // no folder has a name twice
    while (!lines.empty() && all->entries.size() < most) {
        std::string name = take(lines, '\n');
        name.resize(std::min(name.find('\0'), name.size()));
        const bool isFolder = !name.empty() && name.back() == '/';
        if (isFolder)
            name.pop_back();
        if (name.empty() || name.find('/') != std::string::npos || !known.insert(name).second)
            continue;
        all->entries.emplace_back(all->names.add(name), isFolder ? Platform::EntryType::Directory
                                                                 : Platform::EntryType::Other);
    }
    auto raw = std::make_shared<RawEntries>();
    raw->directory = "/d";
    raw->entries = all->entries;
    raw->names = std::move(all);
    ListingSettings settings;
    settings.fold = fold;
    return ListingData::listing(makeListing(raw, settings), std::make_shared<StatusTable>(),
                                FileListing::State::Complete, 0);
}

void checkEdits(const std::string& name, const NameRules& rules) {
    const std::string sequence = NameEdits::asSequence(name, rules.style, 4, rules.suffixes);
    const bool isNamed = NameEdits::nameBegin(name) < name.size();
    require(!isNamed || NameEdits::patternOf(sequence), "a sequence has a place for the frame");
    require(NameEdits::asSequence(sequence, rules.style, 4, rules.suffixes) == sequence,
            "one place is enough");
    const std::size_t begin = NameEdits::nameBegin(name);
    require(begin + NameEdits::stemLength(name, rules.suffixes) <= name.size(),
            "the stem is in the name");
    const std::string whole = NameEdits::completed(name, rules.suffix, rules.suffixes);
    require(NameEdits::completed(whole, rules.suffix, rules.suffixes) == whole,
            "a name is completed once");
    if (const auto version = NameEdits::versionOf(name); version && *version < 2147483647)
        require(NameEdits::versionOf(NameEdits::withVersion(name, *version + 1)) == *version + 1,
                "the version is counted on");
}

void checkReading(const NameReading& reading, const FileListing& listing) {
    for (const NameTarget& target : reading.targets)
        require(target.item < listing.size(), "an item of the listing");
    require(reading.replaced.count >= 0 && reading.asked.missing >= 0, "counts are counts");
    std::int64_t frames = 0;
    for (const auto& range : reading.replaced.frames)
        frames += countOf(range);
    require(reading.replaced.frames.empty() || frames == reading.replaced.count,
            "as many frames as are told of");
    require((reading.asked.problem == AskedFrames::Problem::None) ||
                reading.problem != NameProblem::None,
            "frames that are not there are a problem");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const unsigned choice = data[0];
    std::string_view rest = textOf(data + 1, size - 1);
    NameInput input;
    input.frames = take(rest, '\n');
    input.text = take(rest, '\n');
    NameRules rules;
    rules.mode = static_cast<NameRules::Mode>(choice % 4);
    rules.style = static_cast<FileNames::Style>(choice / 4 % 4);
    rules.acceptsFrames = (choice & 16) == 0;
    rules.isWindows = (choice & 32) != 0;
    rules.suffixes = {"exr", "tar.gz"};
    rules.suffix = "exr";
    rules.schemes = {"asset"};
    if ((choice & 64) != 0)
        rules.written = Kestrel::Base::FrameRange(1, 100, 3);
    const auto folded = listingOf(rest, true);
    const auto plain = listingOf(rest, false);
    const NameReading reading = readName(input, rules, *folded);
    const NameReading unfolded = readName(input, rules, *plain);
    checkReading(reading, *folded);
    checkReading(unfolded, *plain);
    if (rules.mode == NameRules::Mode::SaveFile)
        require(reading.replaced.count == unfolded.replaced.count,
                "what is lost does not depend on the way it is listed");
    for (const std::string& name : FileNames::split(input.text).names)
        checkEdits(name, rules);
    return 0;
}
