#include <KxUI/files/NaturalOrder_p.h>
#include <KxUI/files/filename.h>

#include <support/Plain.h>
#include <support/TempFolder.h>

#if !defined(KXUI_WITHOUT_QT)
#include <KxUI/files/FileInfoList.h>
#endif

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <numeric>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using namespace Kestrel::UI;
using Names = std::vector<std::string>;

// The rules of listing and folding written down step by step, with no thought of speed.
namespace Oracle {

bool digit(char c) {
    return c >= '0' && c <= '9';
}

int lower(char c) {
    return c >= 'A' && c <= 'Z' ? c + 32 : c;
}

int compare(const char* a, const char* b, bool grouping) {
    int recorded = 0;
    for (;; ++a, ++b) {
        if (digit(*a) && digit(*b)) {
            for (; digit(*a) && *a == *b; ++a)
                ++b;
            const int d = digit(*a) && digit(*b) ? *a - *b : 0;
            int left = 0;
            for (; digit(*a); ++a)
                ++left;
            for (; digit(*b); ++b)
                --left;
            if (recorded == 0)
                recorded = left != 0 ? left : d;
            if (!grouping && recorded != 0)
                return recorded;
        }
        if (lower(*a) != lower(*b))
            return lower(*a) - lower(*b);
        if (*a != *b)
            return *b - *a;
        if (*a == '\0')
            return recorded;
    }
}

void sort(Names& names, bool grouping) {
    std::sort(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
        return compare(a.c_str(), b.c_str(), grouping) < 0;
    });
}

bool has(const Names& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// A name cut at its frame number.
struct Frame {
    std::string prefix, digits, suffix;

    Frame(const std::string& name, std::size_t begin, std::size_t end)
        : prefix(name.substr(0, begin))
        , digits(name.substr(begin, end - begin))
        , suffix(name.substr(end)) {}

    int number() const {
        const auto value = std::stold(digits.empty() ? "0" : digits);
        return value > 2147483647.0L ? 0 : int(value);
    }
};

struct Run {
    std::size_t count = 1;
    int first = 0, last = 0, step = 0;
    long long missing = 0;
    std::vector<std::pair<int, int>> gaps;

    bool add(int frame) {
        const auto k = static_cast<long long>(count++);
        const int previous = std::exchange(last, frame);
        const int d = frame - previous;
        if (d < 1)
            return false;
        if (k == 1) {
            step = d;
        } else if (d != step) {
            const int g = std::gcd(d, step);
            if (g < step)
                missing = (missing + k - 1) * (std::exchange(step, g) / g - 1);
            missing += d / step - 1;
            if (missing != 0)
                gaps.emplace_back(previous + 1, frame - 1);
        }
        return true;
    }

    std::string range() const { return std::to_string(first) + "-" + std::to_string(last); }
    std::string steps() const { return step > 1 ? "," + std::to_string(step) : ""; }
};

// Text: the frame pattern or frame name of a name, "" for none. Join: whether two texts belong to
// one run; may rewrite the first.
template <class Text, class Join>
Run runAt(const Names& names, std::size_t i, std::string& text, Text textOf, Join join) {
    Run run;
    text = textOf(names[i], run.first);
    run.last = run.first;
    int frame = 0;
    while (!text.empty() && i + run.count < names.size()) {
        const std::string next = textOf(names[i + run.count], frame);
        if (next.empty() || !join(text, next) || !run.add(frame))
            break;
    }
    return run;
}

Names patternListing(Names names, const Names& directories) {
    sort(names, true);
    std::size_t width = 4;
    const auto pattern = [&](const std::string& name, int& number) -> std::string {
        const auto end = std::min(name.rfind('.'), name.size());
        auto begin = end;
        while (begin > 0 && digit(name[begin - 1]))
            --begin;
        if (begin == end)
            return {};
        const Frame frame(name, begin, end);
        number = frame.number();
        const auto length = frame.digits.size();
        const bool padded = length >= 2 && frame.digits[0] == '0';
        if (padded && length < width)
            width = length;
        return frame.prefix +
               (padded || length >= width ? "%0" + std::to_string(length) + "d" : "%d") +
               frame.suffix;
    };
    Names result;
    for (std::size_t i = 0; i < names.size();) {
        std::string text;
        const Run run = runAt(names, i, text, pattern, std::equal_to<>());
        const bool isDirectory = run.count > 1 && has(directories, names[i]);
        if (run.count > 1 && !isDirectory) {
            text += " " + run.range() + run.steps();
            if (run.missing != 0)
                text += "(" + std::to_string(run.missing) + " missing)";
            result.push_back(text + "\1");
        } else {
            result.push_back(names[i] + (isDirectory ? "/" : ""));
            for (std::size_t k = 1; k < run.count; ++k)
                result.push_back(names[i + k]);
        }
        i += run.count;
    }
    sort(result, false);
    return result;
}

std::string front(const std::string& name) {
    return name.substr(0, name.find('#'));
}

std::string back(const std::string& name) {
    return name.substr(name.rfind('#') + 1);
}

std::string frameName(const std::string& name, int& number) {
    const auto dot = name.rfind('.');
    const bool fromEnd =
        dot == std::string::npos || (dot + 1 < name.size() && digit(name[dot + 1]));
    auto position = fromEnd ? name.size() - 1 : dot;
    while (position > 0 && !digit(name[position]))
        --position;
    if (dot == 0 || position == 0)
        return {};
    auto begin = position;
    while (begin > 0 && digit(name[begin - 1]))
        --begin;
    const Frame frame(name, begin, position + 1);
    number = frame.number();
    return frame.prefix + std::string(frame.digits.size(), '#') + frame.suffix;
}

bool makeCommon(std::string& a, const std::string& b) {
    if (a == b)
        return true;
    if (front(a) != front(b) || back(a) != back(b))
        return false;
    a = front(a) + "#" + back(a);
    return true;
}

// Items as texts; a sequence has a byte 1 before it.
Names frameNameListing(Names names, const Names& directories, bool split) {
    sort(names, true);
    Names result;
    for (std::size_t i = 0; i < names.size();) {
        std::string F;
        const Run run = runAt(names, i, F, frameName, makeCommon);
        if (run.count == 1 || has(directories, names[i])) {
            result.push_back(names[i++]);
            continue;
        }
        i += run.count;
        std::vector<std::pair<int, int>> ranges;
        int start = run.first;
        for (const auto& [first, last] : run.gaps) {
            ranges.emplace_back(start, first - 1);
            start = last + 1;
        }
        if (start < run.last)
            ranges.emplace_back(start, run.last);
        std::string text = "\1" + F + " " + run.range() + run.steps();
        if (run.missing != 0)
            text += " (";
        for (const auto& [a, b] : ranges) {
            const std::string stretch = " " + std::to_string(a) + "-" + std::to_string(b);
            if (run.missing != 0)
                text += stretch + " ";
            if (!split || run.missing == 0)
                continue;
            const int h = int(F.rfind('#') - F.find('#')) + 1;
            const int zeros = h - (a == 0 ? 1 : int(std::floor(std::log10(a))) + 1);
            result.push_back(a != b ? "\1" + F + stretch
                                    : front(F) + std::string(std::size_t(std::max(zeros, 0)), '0') +
                                          std::to_string(a) + back(F));
        }
        if (run.missing == 0 || !split)
            result.push_back(run.missing != 0 ? text + ")" : text);
    }
    return result;
}

} // namespace Oracle

namespace {

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

// What is known to be right, so that the rules above cannot drift along with the code.
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

KXUI_PLAIN_TEST(FoldingTest, namesFollowTheRules) {
    Folder folder;
    std::mt19937 random(20);
    for (int round = 0; round < 1000; ++round) {
        folder.make(generated(random));
        Names plain = folder.names();
        Oracle::sort(plain, false);
        COMPARE(shown(folder.list(false)), shown(plain));
        COMPARE(shown(folder.list(true)),
                shown(Oracle::patternListing(folder.names(), folder.directories())));
    }
}

KXUI_PLAIN_TEST(FoldingTest, knownNames) {
    Folder folder;
    for (const auto& listing : knownListings) {
        folder.make(listing.files);
        COMPARE(visible(folder.list(true)), shown(listing.patterns));
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

// What a FileInfoList holds, with a byte 1 before a sequence.
static Names items(const Folder& folder, bool fold, bool split) {
    FileInfoList list;
    list.setShouldFilterSequences(fold);
    list.setSplitIncompleteSequences(split);
    list.fill(QString::fromStdString(folder.path()));
    Names names;
    for (const FileInfo& info : list.getFileList())
        names.push_back((info.isSequence() ? "\1" : "") + std::string(info.rawFileName()));
    return names;
}

KXUI_PLAIN_TEST(FoldingTest, itemsFollowTheRules) {
    Folder folder;
    std::mt19937 random(20);
    for (int round = 0; round < 1000; ++round) {
        folder.make(generated(random));
        COMPARE(shown(items(folder, false, false)), shown(folder.list(false)));
        for (const bool split : {false, true})
            COMPARE(shown(items(folder, true, split)),
                    shown(Oracle::frameNameListing(folder.names(), folder.directories(), split)));
    }
}

KXUI_PLAIN_TEST(FoldingTest, knownItems) {
    Folder folder;
    for (const auto& listing : knownListings) {
        folder.make(listing.files);
        COMPARE(visible(items(folder, true, false)), shown(listing.frameNames));
        COMPARE(visible(items(folder, true, true)), shown(listing.split));
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
