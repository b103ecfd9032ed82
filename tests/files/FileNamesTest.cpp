#include <KxUI/files/FileNames.h>
#include <KxUI/files/ListingDiff_p.h>
#include <KxUI/files/PathRemap.h>

#include <support/Plain.h>

#include <algorithm>
#include <random>

using namespace Kestrel::UI;

#if !defined(_WIN32)
namespace {

std::string shown(const FileNames::List& list) {
    std::string text = list.isOpen ? "open:" : "";
    for (const std::string& name : list.names)
        text += '[' + name + ']';
    return text;
}

} // namespace

KXUI_PLAIN_TEST(FileNamesTest, lists) {
    const struct {
        const char* text;
        const char* names;
    } rows[] = {{"", ""},
                {"  a b.exr ", "[a b.exr]"},
                {"C:\\dir\\x", "[C:\\dir\\x]"},
                {"\"a b\" \"c\"", "[a b][c]"},
                {"\"a\\\"b\" x\\\\\\n", "[a\"b][x\\\\n]"},
                {"\"a", "open:[a]"},
                {"\"\" \"a\"\t\"b\\\"", "open:[a][b\"]"},
                {"\"end\\", "open:[end\\]"}};
    for (const auto& row : rows)
        COMPARE(shown(FileNames::split(row.text)), row.names);
    std::mt19937 random(5);
    for (int round = 0; round < 2000; ++round) {
        std::vector<std::string> names(1 + random() % 3);
        for (std::string& name : names) {
            for (std::size_t i = 0, n = 1 + random() % 6; i < n; ++i)
                name += "ab\"\\ \t\n\xff"[random() % 8];
        }
        const auto read = FileNames::split(FileNames::joined(names));
        CHECK(read.names == names && !read.isOpen);
    }
}
#endif

KXUI_PLAIN_TEST(FileNamesTest, patterns) {
    const struct {
        const char *name, *hashes, *printf, *frame;
    } rows[] = {{"a.####.exr", "a.####.exr", "a.%04d.exr", "a.0012.exr"},
                {"a.@@@.exr", "a.###.exr", "a.%03d.exr", "a.012.exr"},
                {"a_%d.x", "a_#.x", "a_%d.x", "a_12.x"},
                {"a.%05d.b%d", "a.%05d.b#", "a.%05d.b%d", "a.%05d.b12"},
                {"s$F4.x", "s####.x", "s%04d.x", "s0012.x"},
                {"s$F", "s#", "s%d", "s12"},
                {"u@h.####", "u@h.####", "u@h.%04d", "u@h.0012"}};
    for (const auto& row : rows) {
        const auto pattern = FileNames::patternOf(row.name);
        CHECK_FOR(pattern.has_value(), row.name);
        COMPARE(FileNames::written(*pattern, FileNames::Style::Hashes), row.hashes);
        COMPARE(FileNames::written(*pattern, FileNames::Style::Printf), row.printf);
        COMPARE(FileNames::frameFile(*pattern, 12), row.frame);
    }
    COMPARE(FileNames::frameFile(*FileNames::patternOf("a.##.x"), 1234), "a.1234.x");
    COMPARE(FileNames::patternOf("a.%012d.x")->digits, 12);
    COMPARE(FileNames::written({"a", "b", 4}, FileNames::Style::Dollar), "a$F4b");
    COMPARE(FileNames::written({"a", "b", 4}, FileNames::Style::AtSigns), "a@@@@b");
    for (const char* name : {"", "a.0001.exr", "u@h", "100%", "%x", "$f4", "%99999999999d"})
        CHECK_FOR(!FileNames::patternOf(name), name);
}

KXUI_PLAIN_TEST(FileNamesTest, versions) {
    const struct {
        const char *name, *next;
        int number;
    } rows[] = {{"comp_v012.####.exr", "comp_v013.####.exr", 12},
                {"a.v9", "a.v10", 9},
                {"x-V099.mov", "x-V100.mov", 99},
                {"/s/v003/a_v1.exr", "/s/v003/a_v2.exr", 1},
                {"/s/v003/a.exr", "/s/v004/a.exr", 3},
                {"a_v1_v2b.exr", "a_v2_v2b.exr", 1}};
    for (const auto& row : rows) {
        const auto version = FileNames::versionOf(row.name);
        CHECK_FOR(version && version->number == row.number, row.name);
        COMPARE(FileNames::withVersion(row.name, row.number + 1), row.next);
    }
    for (const char* name : {"", "v", "v1", "cave12", "a_v", "a_v1b"}) {
        CHECK_FOR(!FileNames::versionOf(name), name);
        COMPARE(FileNames::withVersion(name, 3), name);
    }
    COMPARE(FileNames::nextFreeVersion("c_v002.exr", {"c_v001.exr", "c_v7.mov", "d_v9", "c_v"}), 8);
    CHECK(FileNames::naturalLess("a9", "a10") && !FileNames::naturalLess("a10", "a9") &&
          !FileNames::naturalLess("a", "a"));
}

KXUI_PLAIN_TEST(FileNamesTest, remaps) {
    using Style = PathStyle;
    const PathRemap remap({{true, Style::Posix, "/mnt/show", "P:\\show\\", ""},
                           {false, Style::Posix, "/off", "/on", ""},
                           {true, Style::Posix, "/mnt/show/a", "/never", ""},
                           {true, Style::Windows, "C:\\Work", "/work", ""},
                           {true, Style::Windows, "\\\\Srv\\Share", "/srv/", ""},
                           {true, Style::Posix, "/deep/er", "/1", ""},
                           {true, Style::Posix, "/deep", "Q:/d", ""},
                           {true, Style::Windows, "Z:", "/", ""},
                           {true, Style::Posix, "../up", "/x", ""}});
    const struct {
        const char *path, *mapped;
        int rule;
    } rows[] = {{"/mnt/show/a/x.exr", "P:\\show\\a\\x.exr", 0},
                {"/mnt//show", "P:\\show", 0},
                {"/mnt/show/", "P:\\show\\", 0},
                {"/mnt/show2/a", "/mnt/show2/a", -1},
                {"/MNT/show/a", "/MNT/show/a", -1},
                {"mnt/show/a", "mnt/show/a", -1},
                {"/off/a", "/off/a", -1},
                {"c:/work/A//b/../c", "/work/A/b/../c", 3},
                {"C:\\WORK", "/work", 3},
                {"\\\\?\\C:\\work\\a", "/work/a", 3},
                {"C:\\Works", "C:\\Works", -1},
                {"//srv/share/a b\\c", "/srv/a b/c", 4},
                {"/deep/er/x", "/1/x", 5},
                {"/deep/est", "Q:/d/est", 6},
                {"z:\\a\\b", "/a/b", 7},
                {"file:///mnt/show/a", "file:///mnt/show/a", -1},
                {"", "", -1}};
    for (const auto& row : rows) {
        const auto result = remap.map(row.path);
        COMPARE(result.path, row.mapped);
        COMPARE(result.rule, row.rule);
    }
    COMPARE(remap.shadowedBy(2), 0);
    COMPARE(remap.shadowedBy(6), -1);
    using Problem = PathRemap::Problem;
    CHECK(PathRemap::problemOf({true, Style::Posix, "", "/", ""}) == Problem::NoSource);
    CHECK(PathRemap::problemOf({true, Style::Posix, "a", "/", ""}) == Problem::RelativeSource);
    CHECK(PathRemap::problemOf({true, Style::Posix, "/a/..", "/", ""}) == Problem::UpwardSource);
    CHECK(PathRemap::problemOf({true, Style::Windows, "\\a", "", ""}) == Problem::NoDestination);
}

// What is told, step by step, makes one list of rows out of the other.
KXUI_PLAIN_TEST(FileNamesTest, diffs) {
    std::mt19937 random(11);
    for (int round = 0; round < 3000; ++round) {
        std::vector<std::uint64_t> before(random() % 12);
        std::vector<std::uint64_t> after(random() % 12);
        for (auto* rows : {&before, &after}) {
            for (auto& key : *rows)
                key = random() % 16;
            if (random() % 3)
                std::sort(rows->begin(), rows->end());
        }
        const ListingDiff diff =
            diffOf(before, after, [&](int a, int b) { return (a + b) % 3 == 0; });
        std::vector<std::uint64_t> rows = before;
        if (diff.isRearranged) {
            CHECK(diff.newRows.size() == before.size());
            for (std::size_t i = 0; i < before.size(); ++i)
                CHECK(diff.newRows[i] < 0 || after[std::size_t(diff.newRows[i])] == before[i]);
            continue;
        }
        for (const auto& [first, count] : diff.removed)
            rows.erase(rows.begin() + first, rows.begin() + first + count);
        for (const auto& [first, count] : diff.inserted)
            rows.insert(rows.begin() + first, after.begin() + first, after.begin() + first + count);
        CHECK(rows == after);
    }
}
