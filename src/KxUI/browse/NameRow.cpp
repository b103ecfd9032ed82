#include <KxUI/browse/NameRow_p.h>

#include <KxUI/browse/NameEdits_p.h>
#include <KxUI/browse/UnshownFiles_p.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

using Kind = FileListing::Kind;
using Meaning = NameReading::Meaning;
using Mode = NameRules::Mode;
using Names = std::vector<std::string>;

constexpr std::size_t LongestName = 255; // bytes, on all file systems that matter

bool isOneOf(std::string_view text, const std::vector<std::string>& list) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

bool isAddress(std::string_view text, const Names& schemes) {
    const std::size_t end = text.find("://");
    return end != std::string_view::npos && end > 0 &&
           isOneOf(NameEdits::lowered(text.substr(0, end)), schemes);
}

bool isFolderWord(std::string_view name) {
    return name.empty() || name == "." || name == ".." || name == "~";
}

bool isPattern(std::string_view name) {
    return name.find_first_of("*?") != std::string_view::npos;
}

// Devices of Windows, with any suffix.
bool isDevice(std::string_view name) {
    static const Names devices{"con",  "prn",  "aux",  "nul",  "com1", "com2", "com3", "com4",
                               "com5", "com6", "com7", "com8", "com9", "lpt1", "lpt2", "lpt3",
                               "lpt4", "lpt5", "lpt6", "lpt7", "lpt8", "lpt9"};
    return isOneOf(NameEdits::lowered(name.substr(0, name.find('.'))), devices);
}

NameProblem problemOf(std::string_view name, bool isWindows) {
    if (name.size() > LongestName)
        return NameProblem::TooLong;
    if (name.find('\0') != std::string_view::npos)
        return NameProblem::Forbidden;
    if (!isWindows)
        return NameProblem::None;
    const bool hasBadEnd = name.back() == '.' || name.back() == ' ';
    const bool hasControls = std::any_of(name.begin(), name.end(),
                                         [](char c) { return static_cast<unsigned char>(c) < 32; });
    if (hasBadEnd || hasControls || name.find_first_of("<>:\"|?*") != std::string_view::npos)
        return NameProblem::Forbidden;
    return isDevice(name) ? NameProblem::Reserved : NameProblem::None;
}

/** Reads the names of one text. */
class Reader {
public:
    Reader(const NameInput& input, const NameRules& rules, const FileListing& listing)
        : m_input(input)
        , m_rules(rules)
        , m_listing(listing) {}

    NameReading read(bool inFolder);

private:
    bool takeFolders(Names& names);
    bool isListed(const std::string& name) const { return m_listing.find(name) >= 0; }
    bool readSpecial(const Names& names);
    void readFolder(const std::string& name);
    void readOpened(const Names& names);
    void readSaved(std::string name, bool isLiteral);
    NameTarget opened(const std::string& name);
    NameTarget openedUnshown(const std::string& name);
    NameTarget fileTarget(const std::string& name, int item);
    NameTarget sequenceTarget(const FileListing& listing, int item) const;
    void askFrames();
    void fail(NameProblem problem, const std::string& culprit) {
        if (m_reading.problem != NameProblem::None)
            return;
        m_reading.problem = problem;
        m_reading.culprit = culprit;
    }

    const NameInput& m_input;
    const NameRules& m_rules;
    const FileListing& m_listing;
    NameReading m_reading;
    bool m_isKnown = true; ///< the listing is that of the folder in the text
};

NameReading Reader::read(bool inFolder) {
    const bool isQuoted = m_input.text.find('"') != std::string::npos;
    Names names = m_input.chosen;
    if (names.empty()) {
        if (isAddress(m_input.text, m_rules.schemes)) {
            m_reading.meaning = Meaning::Address;
            m_reading.text = m_input.text;
            return std::move(m_reading);
        }
        names = FileNames::split(m_input.text).names;
        if (names.empty() || !takeFolders(names))
            return std::move(m_reading);
    }
    m_isKnown = inFolder || m_reading.folder.empty();
    if (readSpecial(names))
        return std::move(m_reading);
    m_reading.meaning = Meaning::Names;
    if (names.size() > 1 && m_rules.mode != Mode::OpenFiles)
        fail(NameProblem::SeveralNames, names[1]);
    else if (m_rules.mode == Mode::SaveFile)
        readSaved(names.front(), isQuoted);
    else
        readOpened(names);
    return std::move(m_reading);
}

// False when the names lie in several folders.
bool Reader::takeFolders(Names& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::size_t begin = NameEdits::nameBegin(names[i]);
        const std::string folder = names[i].substr(0, begin);
        names[i].erase(0, begin);
        if (i == 0)
            m_reading.folder = folder;
        if (folder != m_reading.folder) {
            m_reading.meaning = Meaning::Names;
            fail(NameProblem::SeveralFolders, folder);
            return false;
        }
    }
    return true;
}

// What is no file: a folder to go to, a pattern of names.
bool Reader::readSpecial(const Names& names) {
    if (names.size() != 1)
        return false;
    const std::string& name = names.front();
    const int item = m_isKnown ? m_listing.find(name) : -1;
    const bool isFolder = m_isKnown && hasFolder(m_listing, name);
    if (isFolderWord(name) || isFolder || m_rules.mode == Mode::OpenFolder) {
        readFolder(name);
        if (item >= 0 && isFolder)
            m_reading.targets.push_back({name, item, false, {}, {}});
        return true;
    }
    if (m_reading.folder.empty() && isPattern(name) && !isListed(name) && m_input.chosen.empty()) {
        m_reading.meaning = Meaning::Filter;
        m_reading.text = name;
        return true;
    }
    return false;
}

void Reader::readFolder(const std::string& name) {
    m_reading.meaning = Meaning::Folder;
    m_reading.folder += name;
    if (const NameProblem problem = problemOf(name.empty() ? "-" : name, false);
        problem != NameProblem::None)
        fail(problem, name);
}

void Reader::readOpened(const Names& names) {
    for (const std::string& name : names) {
        NameTarget target = opened(name);
        if (target.isSequence && !m_rules.acceptsSequences)
            fail(NameProblem::NoSequences, name);
        if (!target.isSequence && target.item >= 0 && !m_rules.acceptsFrames)
            fail(NameProblem::NoSingleFiles, name);
        m_reading.targets.push_back(std::move(target));
    }
    askFrames();
}

NameTarget Reader::opened(const std::string& name) {
    if (!m_isKnown)
        return fileTarget(name, -1);
    const int item = m_listing.find(name);
    if (item >= 0)
        return m_listing.item(item).kind == Kind::Sequence ? sequenceTarget(m_listing, item)
                                                           : fileTarget(name, item);
    if (const auto pattern = FileNames::patternOf(name)) {
        const auto sequences = sequencesOf(m_listing, *pattern);
        if (!sequences.empty())
            return sequenceTarget(m_listing, sequences.front());
    }
    // One frame's name means its sequence, where those are wanted.
    const int member = m_listing.findFile(name);
    if (member >= 0 && m_rules.acceptsSequences)
        return sequenceTarget(m_listing, member);
    return member >= 0 ? fileTarget(name, member) : openedUnshown(name);
}

// Whoever types the whole name of what is hidden means it.
NameTarget Reader::openedUnshown(const std::string& name) {
    auto unshown = unshownFiles(m_listing, name);
    const auto pattern = FileNames::patternOf(name);
    const bool isFile = unshown && unshown->find(name) >= 0;
    const auto sequences =
        unshown && pattern && !isFile ? sequencesOf(*unshown, *pattern) : std::vector<int>();
    if (!isFile && sequences.empty())
        return fileTarget(name, -1);
    NameTarget target = isFile ? fileTarget(name, 0) : sequenceTarget(*unshown, sequences.front());
    target.unshown = std::move(unshown);
    return target;
}

NameTarget Reader::fileTarget(const std::string& name, int item) {
    if (item < 0)
        fail(NameProblem::NotFound, name);
    // What comes later, or what the host knows better.
    const bool isSequence = item < 0 && m_rules.acceptsSequences && FileNames::patternOf(name);
    return {name, item, isSequence, {}, {}};
}

NameTarget Reader::sequenceTarget(const FileListing& listing, int item) const {
    const FileListing::Item& listed = listing.item(item);
    NameTarget target;
    target.item = item;
    target.isSequence = true;
    target.frames = {listed.first, listed.last, listed.step};
    target.name = listed.name;
    if (m_rules.style != FileNames::Style::Hashes) {
        if (const auto pattern = FileNames::patternOf(target.name))
            target.name = FileNames::written(*pattern, m_rules.style);
    }
    return target;
}

void Reader::askFrames() {
    auto& targets = m_reading.targets;
    if (targets.size() != 1 || !targets.front().isSequence || targets.front().item < 0)
        return;
    NameTarget& target = targets.front();
    m_reading.asked =
        askedFrames(m_input.frames, target.frames, target.in(m_listing).frameRanges(target.item));
    if (m_reading.asked.problem == AskedFrames::Problem::Unreadable)
        fail(NameProblem::FramesUnreadable, m_input.frames);
    else if (m_reading.asked.problem == AskedFrames::Problem::NoneThere)
        fail(NameProblem::FramesNotThere, m_input.frames);
    else
        target.frames = m_reading.asked.frames;
}

void Reader::readSaved(std::string name, bool isLiteral) {
    if (!isLiteral)
        name = NameEdits::completed(name, m_rules.suffix, m_rules.suffixes);
    NameTarget target;
    target.name = name;
    const auto pattern = FileNames::patternOf(name);
    if (pattern && m_rules.acceptsSequences) {
        target.isSequence = true;
        target.name = FileNames::written(*pattern, m_rules.style);
        if (m_rules.written)
            target.frames = *m_rules.written;
    } else if (!m_rules.acceptsFrames) {
        fail(NameProblem::NoSingleFiles, name);
    }
    if (const NameProblem problem = problemOf(name, m_rules.isWindows);
        problem != NameProblem::None)
        fail(problem, name);
    if (m_isKnown) {
        m_reading.replaced = target.isSequence
                                 ? replacedBySequence(m_listing, *pattern, m_rules.written)
                                 : replacedByFile(m_listing, name);
        target.item = m_listing.find(name);
    }
    if (m_reading.replaced.isFolder)
        fail(NameProblem::IsFolder, name);
    m_reading.targets.push_back(std::move(target));
}

} // namespace

NameReading readName(const NameInput& input, const NameRules& rules, const FileListing& listing,
                     bool inFolder) {
    return Reader(input, rules, listing).read(inFolder);
}

bool isSettled(const NameReading& reading, const FileListing& listing) {
    if (reading.meaning != NameReading::Meaning::Names ||
        listing.state() == FileListing::State::Failed)
        return reading.meaning == NameReading::Meaning::Filter ||
               reading.meaning == NameReading::Meaning::Address;
    return !reading.targets.empty() &&
           std::all_of(reading.targets.begin(), reading.targets.end(),
                       [](const NameTarget& target) { return target.item >= 0; });
}

} // namespace Kestrel::UI
