#include <KxUI/files/FileInfoList.h>
#include <KxUI/files/NaturalOrder_p.h>
#include <KxUI/files/filename.h>

#include <support/TestRegistry.h>

#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <cstdlib>
#include <fcntl.h>
#include <numeric>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

using namespace Kestrel::UI;
using Names = std::vector<std::string>;

static int statusCalls = 0;

extern "C" {
int __real_stat(const char* path, struct stat* record);
int __real_lstat(const char* path, struct stat* record);
int __real_fstatat(int directory, const char* path, struct stat* record, int flags);
int __real_statx(int directory, const char* path, int flags, unsigned mask, struct statx* record);

int __wrap_stat(const char* path, struct stat* record) {
    ++statusCalls;
    return __real_stat(path, record);
}
int __wrap_lstat(const char* path, struct stat* record) {
    ++statusCalls;
    return __real_lstat(path, record);
}
int __wrap_fstatat(int directory, const char* path, struct stat* record, int flags) {
    ++statusCalls;
    return __real_fstatat(directory, path, record, flags);
}
int __wrap_statx(int directory, const char* path, int flags, unsigned mask, struct statx* record) {
    ++statusCalls;
    return __real_statx(directory, path, flags, mask, record);
}
}

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
            while (digit(*a) && *a == *b) {
                ++a;
                ++b;
            }
            const int d = digit(*a) && digit(*b) ? *a - *b : 0;
            int la = 0;
            int lb = 0;
            for (; digit(*a); ++a)
                ++la;
            for (; digit(*b); ++b)
                ++lb;
            if (recorded == 0)
                recorded = la != lb ? la - lb : d;
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

int number(const std::string& run) {
    const auto significant = run.substr(std::min(run.find_first_not_of('0'), run.size()));
    if (significant.size() > 10)
        return 0;
    const long long value = significant.empty() ? 0 : std::stoll(significant);
    return value > 0x7FFFFFFF ? 0 : int(value);
}

struct Gap {
    int first, last;
};

struct Run {
    std::size_t count = 1;
    int first = 0, last = 0, step = 0;
    long long missing = 0;
    std::vector<Gap> gaps;

    bool add(int frame) {
        const auto k = static_cast<long long>(count);
        ++count;
        const long long d = static_cast<long long>(frame) - last;
        const int previous = last;
        last = frame;
        if (d < 1)
            return false;
        if (k == 1) {
            step = int(d);
        } else if (d != step) {
            const int g = int(std::gcd(d, static_cast<long long>(step)));
            if (g < step) {
                missing = (missing + k - 1) * (step / g - 1);
                step = g;
            }
            missing += d / step - 1;
            if (missing != 0)
                gaps.push_back({previous + 1, frame - 1});
        }
        return true;
    }
};

class Patterns {
public:
    bool frame(const std::string& name, std::string& pattern, int& value) {
        const auto dot = name.rfind('.');
        std::size_t start = 0;
        std::size_t length = 0;
        for (std::size_t at = 0; at < name.size() && at < dot; at += length) {
            start = at;
            length = 1;
            while (digit(name[at]) && at + length < name.size() && digit(name[at + length]))
                ++length;
        }
        if (length == 0 || !digit(name[start]))
            return false;
        if (length >= 2 && name[start] == '0')
            m_width = std::min(m_width, length);
        const bool padded = (length >= 2 && name[start] == '0') || length >= m_width;
        value = number(name.substr(start, length));
        pattern = name.substr(0, start) + (padded ? "%0" + std::to_string(length) + "d" : "%d") +
                  name.substr(start + length);
        return true;
    }

private:
    std::size_t m_width = 4;
};

Names patternListing(Names names, const std::string& dir) {
    sort(names, true);
    Patterns patterns;
    Names result;
    for (std::size_t i = 0; i < names.size();) {
        std::string pattern;
        std::string other;
        int frame = 0;
        Run run;
        if (patterns.frame(names[i], pattern, run.first)) {
            run.last = run.first;
            while (i + run.count < names.size() &&
                   patterns.frame(names[i + run.count], other, frame) && other == pattern) {
                if (!run.add(frame))
                    break;
            }
        }
        const bool isDirectory = run.count > 1 && filename_isdir((dir + "/" + names[i]).c_str());
        if (run.count > 1 && !isDirectory) {
            std::string text =
                pattern + " " + std::to_string(run.first) + "-" + std::to_string(run.last);
            if (run.step > 1)
                text += "," + std::to_string(run.step);
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

bool frameName(const std::string& name, std::string& frameName, int& frame) {
    const auto dot = name.rfind('.');
    if (dot == 0)
        return false;
    auto position = dot;
    if (dot == std::string::npos || (dot + 1 < name.size() && digit(name[dot + 1])))
        position = name.size() - 1;
    while (position > 0 && !digit(name[position]))
        --position;
    if (position == 0)
        return false;
    auto begin = position;
    while (begin > 0 && digit(name[begin - 1]))
        --begin;
    const auto length = position + 1 - begin;
    frame = number(name.substr(begin, length));
    frameName = name.substr(0, begin) + std::string(length, '#') + name.substr(position + 1);
    return true;
}

bool makeCommon(std::string& a, std::string& b) {
    if (a == b)
        return true;
    const auto front = [](const std::string& text) { return text.substr(0, text.find('#')); };
    const auto back = [](const std::string& text) { return text.substr(text.rfind('#') + 1); };
    if (front(a) != front(b) || back(a) != back(b))
        return false;
    a = b = front(a) + "#" + back(a);
    return true;
}

// Items as texts; a sequence has a byte 1 before it.
Names frameNameListing(Names names, const std::string& dir, bool split) {
    sort(names, true);
    Names result;
    for (std::size_t i = 0; i < names.size();) {
        std::string F;
        std::string other;
        int frame = 0;
        Run run;
        if (frameName(names[i], F, run.first)) {
            run.last = run.first;
            while (i + run.count < names.size() && frameName(names[i + run.count], other, frame) &&
                   makeCommon(F, other)) {
                if (!run.add(frame))
                    break;
            }
        }
        if (run.count == 1 || filename_isdir((dir + "/" + names[i]).c_str())) {
            result.push_back(names[i++]);
            continue;
        }
        i += run.count;
        std::vector<Gap> ranges;
        int start = run.first;
        for (const Gap& gap : run.gaps) {
            ranges.push_back({start, gap.first - 1});
            start = gap.last + 1;
        }
        if (start < run.last)
            ranges.push_back({start, run.last});
        const auto stretch = [](int a, int b) {
            return std::to_string(a) + "-" + std::to_string(b);
        };
        std::string text = "\1" + F + " " + stretch(run.first, run.last);
        if (run.step > 1)
            text += "," + std::to_string(run.step);
        if (run.missing != 0 && !split) {
            text += " (";
            for (const Gap& range : ranges)
                text += " " + stretch(range.first, range.last) + " ";
            text += ")";
        }
        if (run.missing == 0 || !split) {
            result.push_back(text);
            continue;
        }
        for (const Gap& range : ranges) {
            if (range.first != range.last) {
                result.push_back("\1" + F + " " + stretch(range.first, range.last));
                continue;
            }
            const int a = range.first;
            const int h = int(F.rfind('#') - F.find('#')) + 1;
            const int digits = a == 0 ? 1 : int(std::floor(std::log10(a))) + 1;
            result.push_back(F.substr(0, F.find('#')) +
                             std::string(std::size_t(std::max(0, h > 1 ? h - digits : 0)), '0') +
                             std::to_string(a) + F.substr(F.rfind('#') + 1));
        }
    }
    return result;
}

} // namespace Oracle

namespace {

// A folder whose entries are made anew for each case.
class Folder {
public:
    Folder() { QVERIFY(m_root.isValid()); }
    ~Folder() { make({}); } // also names that the temporary folder could not remove

    std::string path() const { return m_root.path().toStdString(); }
    const Names& names() const { return m_names; }

    // A name that ends with / becomes a directory, with > a link to one, with < a link to a file.
    void make(const Names& entries) {
        for (const auto& old : m_names) {
            if (::unlink((path() + "/" + old).c_str()) != 0)
                ::rmdir((path() + "/" + old).c_str());
        }
        m_names = {".", ".."};
        for (std::string name : entries) {
            const char kind = name.back();
            if (kind == '/' || kind == '>' || kind == '<')
                name.pop_back();
            const std::string full = path() + "/" + name;
            int result = -1;
            if (kind == '/')
                result = ::mkdir(full.c_str(), 0777);
            else if (kind == '>' || kind == '<')
                result = ::symlink(kind == '>' ? "/tmp" : "/dev/null", full.c_str());
            else
                result = ::close(::open(full.c_str(), O_CREAT | O_EXCL | O_WRONLY, 0666));
            if (result == 0)
                m_names.push_back(name);
        }
    }

private:
    QTemporaryDir m_root;
    Names m_names;
};

Names cListing(const std::string& dir, bool sequences) {
    struct dirent** list = nullptr;
    const int count = filename_list(dir.c_str(), &list, sequences ? 1 : 0);
    Names names;
    for (int i = 0; i < count; ++i) {
        names.emplace_back(reinterpret_cast<const char*>(list[i]));
        std::free(list[i]);
    }
    std::free(list);
    return names;
}

Names items(const std::string& dir, bool fold, bool split) {
    FileInfoList list;
    list.setShouldFilterSequences(fold);
    list.setSplitIncompleteSequences(split);
    list.fill(QString::fromStdString(dir));
    Names names;
    for (const FileInfo& info : list.getFileList())
        names.push_back((info.isSequence() ? "\1" : "") + std::string(info.rawFileName()));
    return names;
}

class Generator {
public:
    explicit Generator(unsigned seed)
        : m_random(seed) {}

    int below(int limit) { return int(m_random() % unsigned(limit)); }

    // A handful of sequences with steps, gaps and paddings, singles, directories and odd names.
    Names directory() {
        static const char* const stems[] = {"shot", "Shot", "a",    "a1_b", "a2_b",  "x-",
                                            "",     "0",    "#",    "a#",   ".",     ".h.",
                                            "é",    "\xff", "\xfe", "a b",  "v%03d", "~"};
        static const char* const tails[] = {".exr", ".EXR", "",    ".mp3", ".mp4",  "x.exr", ".7z",
                                            ".",    ".0",   "_v2", "#.e",  ".t.gz", ".exr"};
        Names names;
        for (int sequences = 1 + below(4); sequences > 0; --sequences) {
            const std::string stem = stems[below(int(std::size(stems)))];
            const std::string tail = tails[below(int(std::size(tails)))];
            const int padding = below(6);
            const int step = 1 + below(4) * below(3);
            static const int starts[] = {0, 1, 7, 95, 996, 9995, 2147483640};
            long long frame = starts[below(int(std::size(starts)))];
            for (int members = below(12); members >= 0; --members) {
                std::string number = std::to_string(frame);
                const auto width = std::size_t(below(20) == 0 ? below(7) : padding);
                if (number.size() < width)
                    number.insert(0, width - number.size(), '0');
                if (below(60) == 0)
                    number += "00000000000";
                static const char* const kinds[] = {"/", ">", "<"};
                names.push_back(stem + number + tail + (below(12) == 0 ? kinds[below(3)] : ""));
                frame += step * (below(5) == 0 ? 1 + below(4) : 1);
            }
        }
        return names;
    }

private:
    std::mt19937 m_random;
};

QString shown(const Names& names) {
    QString text;
    for (const auto& name : names)
        text += QString::fromLatin1(name.data(), int(name.size())) + QLatin1Char('\n');
    return text;
}

} // namespace

class FoldingTest : public QObject {
    Q_OBJECT

private slots:
    void followsTheRules() {
        Folder folder;
        Generator generator(20);
        for (int round = 0; round < 3000; ++round) {
            folder.make(generator.directory());
            const std::string dir = folder.path();
            Names plain = folder.names();
            Oracle::sort(plain, false);
            QCOMPARE(shown(cListing(dir, false)), shown(plain));
            QCOMPARE(shown(items(dir, false, false)), shown(plain));
            QCOMPARE(shown(cListing(dir, true)),
                     shown(Oracle::patternListing(folder.names(), dir)));
            for (const bool split : {false, true})
                QCOMPARE(shown(items(dir, true, split)),
                         shown(Oracle::frameNameListing(folder.names(), dir, split)));
        }
    }

    void knownListings_data() {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("patterns");
        QTest::addColumn<QStringList>("frameNames");
        QTest::addColumn<QStringList>("split");
        const auto row = [](const char* name, const QStringList& files, const QStringList& patterns,
                            const QStringList& frameNames, const QStringList& split) {
            QTest::newRow(name) << files << patterns << frameNames << split;
        };
        row("complete", {"i.0001.exr", "i.0002.exr", "i.0003.exr"}, {"i.%04d.exr 1-3\1"},
            {"i.####.exr 1-3"}, {"i.####.exr 1-3"});
        row("step and gap", {"r0010.dpx", "r0020.dpx", "r0040.dpx"},
            {"r%04d.dpx 10-40,10(1 missing)\1"}, {"r####.dpx 10-40,10 ( 10-20 )"},
            {"r####.dpx 10-20"});
        row("shrinking step", {"a0001", "a0005", "a0007", "a0008"}, {"a%04d 1-8(3 missing)\1"},
            {"a#### 1-8 ( 1-5  7-7 )"}, {"a#### 1-5", "a0007"});
        row("growing digits", {"a1.exr", "a2.exr", "a10.exr"}, {"a%d.exr 1-10(7 missing)\1"},
            {"a#.exr 1-10 ( 1-2 )"}, {"a#.exr 1-2"});
        row("last frame alone", {"x0001.dpx", "x0002.dpx", "x0003.dpx", "x0005.dpx"},
            {"x%04d.dpx 1-5(1 missing)\1"}, {"x####.dpx 1-5 ( 1-3 )"}, {"x####.dpx 1-3"});
        row("gap that is none", {"x0001.dpx", "x0003.dpx", "x0004.dpx", "x0005.dpx"},
            {"x%04d.dpx 1-5(1 missing)\1"}, {"x####.dpx 1-5 ( 1-3  4-5 )"},
            {"x####.dpx 1-3", "x####.dpx 4-5"});
        row("999 to 1000", {"s0999.exr", "s1000.exr"}, {"s%04d.exr 999-1000\1"},
            {"s####.exr 999-1000"}, {"s####.exr 999-1000"});
        row("alone", {"a0001.exr", ".0001", "1.exr"}, {".0001", "1.exr", "a0001.exr"},
            {".0001", "1.exr", "a0001.exr"}, {".0001", "1.exr", "a0001.exr"});
        row("headed by a directory", {"d1.e/", "d2.e", "d3.e"}, {"d1.e/", "d2.e", "d3.e"},
            {"d1.e", "d#.e 2-3"}, {"d1.e", "d#.e 2-3"});
    }

    void knownListings() {
        QFETCH(QStringList, files);
        Names names;
        for (const QString& file : qAsConst(files))
            names.push_back(file.toStdString());
        Folder folder;
        folder.make(names);
        const auto listed = [](Names all) {
            QStringList texts;
            for (std::string& name : all) {
                name.erase(0, name.find_first_not_of('\1'));
                if (name != "." && name != "..")
                    texts.append(QString::fromStdString(name));
            }
            return texts;
        };
        QTEST(listed(cListing(folder.path(), true)), "patterns");
        QTEST(listed(items(folder.path(), true, false)), "frameNames");
        QTEST(listed(items(folder.path(), true, true)), "split");
    }

    void naturalOrder() {
        std::mt19937 random(7);
        const std::string alphabet("aAbBzZ_.0019\x7f\x80\xff", 15);
        NameArena arena;
        for (int round = 0; round < 400; ++round) {
            Names names;
            for (int i = 0; i < 40; ++i) {
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
                QCOMPARE(shown(sorted), shown(names));
            }
        }
    }

    // The directory itself tells what a file is; only a link that heads a run is looked at.
    void regularFilesCostNoStatusCall() {
        Names names;
        for (int i = 1000; i < 3000; ++i)
            names.push_back((i % 2 != 0 ? "odd." : "even.") + std::to_string(i) + ".exr");
        names.push_back("dir1.e/");
        names.push_back("dir2.e/");
        Folder folder;
        folder.make(names);
        statusCalls = 0;
        cListing(folder.path(), true);
        cListing(folder.path(), false);
        items(folder.path(), true, false);
        QCOMPARE(statusCalls, 0);

        names.push_back("link1.e>");
        names.push_back("link2.e>");
        folder.make(names);
        statusCalls = 0;
        QVERIFY(cListing(folder.path(), true).size() > 4);
        QCOMPARE(statusCalls, 1);
    }
};

KXUI_TEST(FoldingTest);

#include "FoldingTest.moc"
