#include <KxUI/files/NaturalOrder_p.h>
#include <KxUI/files/filename.h>

#include <support/FoldingOracle.h>
#include <support/Plain.h>
#include <support/TempFolder.h>

#if !defined(KXUI_WITHOUT_QT)
#include <KxUI/files/FileInfoList.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using namespace Kestrel::UI;
using Kestrel::Fuzz::Names;
namespace Oracle = Kestrel::Fuzz::FoldingOracle;

namespace {

constexpr auto nowhere = std::string::npos;

#if defined(_WIN32)
int makeDirectory(const std::string& path) {
    return ::mkdir(path.c_str());
}

int makeLink(const char*, const std::string&) {
    return -1;
}

// The system drops dots at the end of a name.
std::string nameOnDisk(const std::string& name) {
    return name.substr(0, name.find_last_not_of('.') + 1);
}
#else
int makeDirectory(const std::string& path) {
    return ::mkdir(path.c_str(), 0777);
}

int makeLink(const char* target, const std::string& path) {
    return ::symlink(target, path.c_str());
}

std::string nameOnDisk(const std::string& name) {
    return name;
}
#endif

// A folder whose entries are made anew for each case.
class Folder {
public:
    std::string path() const { return m_root.utf8(); }
    const Names& names() const { return m_names; }
    const Names& directories() const { return m_directories; }

    // A name that ends with / becomes a directory, with > a link to one, with < a link to a file.
    void make(const Names& entries) {
        for (std::size_t i = 2; i < m_names.size(); ++i) {
            const std::string old = path() + "/" + m_names[i];
            if (std::remove(old.c_str()) != 0)
                ::rmdir(old.c_str());
        }
        m_names = m_directories = {".", ".."};
        for (std::string name : entries) {
            const char kind = name.back();
            if (kind == '/' || kind == '>' || kind == '<')
                name.pop_back();
            name = nameOnDisk(name);
            const std::string full = path() + "/" + name;
            int result = -1;
            if (kind == '/')
                result = makeDirectory(full);
            else if (kind == '>' || kind == '<')
                result = makeLink(kind == '>' ? "/" : "/dev/null", full);
            else
                result = ::close(::open(full.c_str(), O_CREAT | O_EXCL | O_WRONLY, 0666));
            if (result != 0)
                continue;
            m_names.push_back(name);
            if (kind == '/' || kind == '>')
                m_directories.push_back(name);
        }
    }

    // What filename_list() tells.
    Names list(bool sequences) const {
        struct dirent** list = nullptr;
        const int count = filename_list(path().c_str(), &list, sequences ? 1 : 0);
        Names names;
        for (int i = 0; i < count; ++i) {
            names.emplace_back(reinterpret_cast<const char*>(list[i]));
            std::free(list[i]);
        }
        std::free(list);
        return names;
    }

private:
    Kestrel::Test::TempFolder m_root;
    Names m_names;
    Names m_directories;
};

std::string shown(const Names& names) {
    std::string text;
    for (const auto& name : names)
        text += name + '\n';
    return text;
}

// Without the marks of sequences and the entries of every folder.
std::string visible(const Names& names) {
    std::string text = shown(names);
    text.erase(std::remove(text.begin(), text.end(), '\1'), text.end());
    return text.substr(std::strlen(".\n..\n"));
}

#if !defined(KXUI_WITHOUT_QT)
// A handful of sequences with steps, gaps and paddings, directories, links and odd names.
Names generated(std::mt19937& random) {
    const auto below = [&](std::size_t limit) { return std::size_t(random() % limit); };
    static const Names stems{"shot", "Shot", "a", "a1_b", "a2_b", "x-",  "",      "0",  "#",
                             "a#",   ".",    "é", "\xff", "\xfe", "a b", "v%03d", ".h."};
    static const Names tails{".exr",  ".exr", ".EXR", "",   ".mp3", ".mp4",
                             "x.exr", ".7z",  ".",    ".0", "_v2",  "#.e"};
    static const long long starts[] = {0, 1, 7, 95, 996, 9995, 2147483640};
    Names names;
    for (auto sequences = 1 + below(4); sequences > 0; --sequences) {
        const std::string stem = stems[below(stems.size())];
        const std::string tail = tails[below(tails.size())];
        const auto padding = below(6);
        const auto step = int(1 + below(4) * below(3));
        long long frame = starts[below(std::size(starts))];
        for (auto members = 1 + below(12); members > 0; --members) {
            std::string number = std::to_string(frame);
            const auto width = below(20) == 0 ? below(7) : padding;
            number.insert(0, width - std::min(width, number.size()), '0');
            number += below(60) == 0 ? "00000000000" : "";
            names.push_back(stem + number + tail);
            if (below(12) == 0)
                names.back() += "/><"[below(3)];
            frame += step * int(below(5) == 0 ? 1 + below(4) : 1);
        }
    }
    return names;
}

// What a FileInfoList holds, with a byte 1 before a sequence.
Names items(const Folder& folder, bool fold, bool split) {
    FileInfoList list;
    list.setShouldFilterSequences(fold);
    list.setSplitIncompleteSequences(split);
    list.fill(QString::fromStdString(folder.path()));
    Names names;
    for (const FileInfo& info : list.getFileList())
        names.push_back((info.isSequence() ? "\1" : "") + std::string(info.rawFileName()));
    return names;
}
#endif

// What is known to be right, so that the rules of the fuzz target cannot drift along with the code.
const struct {
    Names files, patterns, frameNames, split;
} knownListings[] = {{{"r0010.dpx", "r0020.dpx", "r0040.dpx"},
                      {"r%04d.dpx 10-40,10(1 missing)"},
                      {"r####.dpx 10-40,10 ( 10-20 )"},
                      {"r####.dpx 10-20"}},
                     {{"a0001", "a0005", "a0007", "a0008"},
                      {"a%04d 1-8(3 missing)"},
                      {"a#### 1-8 ( 1-5  7-7 )"},
                      {"a#### 1-5", "a0007"}},
                     {{"a1.exr", "a2.exr", "a10.exr"},
                      {"a%d.exr 1-10(7 missing)"},
                      {"a#.exr 1-10 ( 1-2 )"},
                      {"a#.exr 1-2"}},
                     {{"x0001", "x0003", "x0004", "x0005"},
                      {"x%04d 1-5(1 missing)"},
                      {"x#### 1-5 ( 1-3  4-5 )"},
                      {"x#### 1-3", "x#### 4-5"}},
                     {{"s0999.exr", "s1000.exr"},
                      {"s%04d.exr 999-1000"},
                      {"s####.exr 999-1000"},
                      {"s####.exr 999-1000"}},
                     {{"d1.e/", "d2.e", "d3.e"},
                      {"d1.e/", "d2.e", "d3.e"},
                      {"d1.e", "d#.e 2-3"},
                      {"d1.e", "d#.e 2-3"}}};

} // namespace

KXUI_PLAIN_TEST(FoldingTest, knownNames) {
    Folder folder;
    for (const auto& listing : knownListings) {
        folder.make(listing.files);
        COMPARE(visible(folder.list(true)), shown(listing.patterns));
#if !defined(KXUI_WITHOUT_QT)
        COMPARE(visible(items(folder, true, false)), shown(listing.frameNames));
        COMPARE(visible(items(folder, true, true)), shown(listing.split));
#endif
    }
}

KXUI_PLAIN_TEST(FoldingTest, naturalOrder) {
    std::mt19937 random(7);
    const std::string alphabet("aAbBzZ_.0019\x7f\x80\xff", 15);
    NameArena arena;
    for (int round = 0; round < 400; ++round) {
        Names names;
        for (int i = 0; i < 200; ++i) {
            std::string name;
            while (name.size() < 12 && random() % 8 != 0)
                name += alphabet[random() % alphabet.size()];
            if (random() % 16 == 0)
                name += std::string(253 + random() % 4, '9');
            names.push_back(i % 10 == 9 ? names.front() : name);
        }
        for (const auto order : {NaturalOrder::Plain, NaturalOrder::Grouping}) {
            std::vector<Platform::Entry> entries;
            for (const auto& name : names)
                entries.emplace_back(arena.add(name), Platform::EntryType::Other);
            sortNaturally(entries, order);
            Names sorted;
            for (const auto& entry : entries)
                sorted.emplace_back(entry.view());
            Oracle::sort(names, order == NaturalOrder::Grouping);
            COMPARE(shown(sorted), shown(names));
        }
    }
}

#if !defined(KXUI_WITHOUT_QT)

static int statusCalls = 0;

extern "C" {
int __real_stat(const char* path, struct stat* record);

int __wrap_stat(const char* path, struct stat* record) {
    ++statusCalls;
    return __real_stat(path, record);
}
}

static std::string withoutZeros(std::string name) {
    name.erase(std::remove(name.begin(), name.end(), '0'), name.end());
    return name;
}

// The frames of all sequences are the files that are there: nothing else, and nothing left out but
// what has no number or the number of another file.
KXUI_PLAIN_TEST(FoldingTest, framesAreTheFiles) {
    Folder folder;
    std::mt19937 random(21);
    for (int round = 0; round < 1000; ++round) {
        Names entries = generated(random);
        const auto hasHash = [](const std::string& name) { return name.find('#') != nowhere; };
        entries.erase(std::remove_if(entries.begin(), entries.end(), hasHash), entries.end());
        folder.make(entries);
        const std::set<std::string> names(folder.names().begin(), folder.names().end());
        FileInfoList list;
        list.setShouldFilterSequences(true);
        list.fill(QString::fromStdString(folder.path()));
        std::set<std::string> told;
        for (const FileInfo& info : list.getFileList()) {
            if (!info.isSequence())
                told.insert(withoutZeros(info.rawFileName()));
            if (const FileInfo read(info.rawFileName(), info.isSequence());
                info.startFrame() <= info.endFrame()) {
                CHECK_FOR(read.rawFrameName() == info.rawFrameName(), info.rawFileName());
                CHECK(read.frameRanges() == info.frameRanges());
                COMPARE(read.endFrame(), info.endFrame());
            }
            std::set<int> frames;
            for (const auto& [first, last, step] : info.presentRanges()) {
                for (long long frame = first; frame <= last; frame += step)
                    CHECK(frames.insert(int(frame)).second);
            }
            for (const int frame : frames) {
                const std::string name =
                    info.rawFramePath(frame).mid(int(folder.path().size()) + 1).toStdString();
                CHECK_FOR(names.count(name) != 0, name);
                told.insert(withoutZeros(name));
                CHECK(info.hasFrame(frame));
                COMPARE(info.hasFrame(frame - 1), frames.count(frame - 1) != 0);
            }
        }
        for (const std::string& name : names)
            CHECK_FOR(told.count(withoutZeros(name)) != 0 || name.find("00000000000") != nowhere ||
                          name.find("2147483") != nowhere,
                      name);
    }
}

// The directory itself tells what a file is; only a link that heads a run is looked at.
KXUI_PLAIN_TEST(FoldingTest, regularFilesCostNoStatusCall) {
    Names names{"dir1.e/", "dir2.e/"};
    for (int i = 1000; i < 3000; ++i)
        names.push_back((i % 2 != 0 ? "odd." : "even.") + std::to_string(i) + ".exr");
    Folder folder;
    folder.make(names);
    statusCalls = 0;
    folder.list(true);
    folder.list(false);
    items(folder, true, false);
    COMPARE(statusCalls, 0);

    names.insert(names.end(), {"link1.e>", "link2.e>"});
    folder.make(names);
    statusCalls = 0;
    folder.list(true);
    COMPARE(statusCalls, 1);
}

#endif
