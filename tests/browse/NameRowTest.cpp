#include "Listings.h"

#include <KxUI/browse/ChooserTexts_p.h>
#include <KxUI/browse/NameRow_p.h>

#include <support/TestRegistry.h>

#include <QtTest>

using namespace Kestrel;
using namespace Kestrel::UI;
using Meaning = NameReading::Meaning;
using Mode = NameRules::Mode;

namespace {

std::vector<std::string> shotNames() {
    std::vector<std::string> names{"notes.txt",     "lib/", "a b.exr", "odd\xff.exr", "what?.txt",
                                   "comp_v001.exr", ".rc",  ".cache/", ".tmp.1.exr",  ".tmp.2.exr"};
    Test::addFrames(names, "plate.", 1001, 1012, ".exr");
    names.erase(std::remove(names.begin(), names.end(), "plate.1005.exr"), names.end());
    Test::addFrames(names, "loop.", 8, 12, ".dpx", 1);
    names.insert(names.end(), {"twin.01.exr", "twin.0001.exr"}); // one frame, two files
    return names;
}

NameRules rulesFor(Mode mode) {
    NameRules rules;
    rules.mode = mode;
    rules.suffixes = {"exr", "dpx"};
    rules.suffix = "exr";
    rules.schemes = {"asset"};
    return rules;
}

NameReading read(const std::string& text, const NameRules& rules, const std::string& frames = {},
                 bool fold = true) {
    return readName({text, {}, frames}, rules, *Test::listingOf(shotNames(), fold));
}

/** A reading in one line: what it means, the folder, the names with their frames, the problem. */
std::string shown(const NameReading& reading) {
    static const char* const meanings[] = {"nothing", "filter", "folder", "names", "address"};
    std::string text = meanings[int(reading.meaning)];
    if (!reading.folder.empty())
        text += " in " + reading.folder;
    if (!reading.text.empty())
        text += " " + reading.text;
    for (const NameTarget& target : reading.targets) {
        text += " [" + target.name + "]";
        if (target.isSequence)
            text += ChooserTexts::range(target.frames).toStdString();
    }
    if (reading.problem != NameProblem::None)
        text += " problem " + std::to_string(int(reading.problem));
    return text;
}

std::string problem(NameProblem which) {
    return " problem " + std::to_string(int(which));
}

} // namespace

class NameRowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void opens() {
        const struct {
            const char *text, *frames;
            std::string expected;
        } rows[] = {
            {"", "", "nothing"},
            {"  ", "", "nothing"},
            {"notes.txt", "", "names [notes.txt]"},
            {"a b.exr", "", "names [a b.exr]"},
            {"lib", "", "folder in lib [lib]"},
            {"lib/", "", "folder in lib/"},
            {"..", "", "folder in .."},
            {"/mnt/x/", "", "folder in /mnt/x/"},
            {"~", "", "folder in ~"},
            {"*.dpx", "", "filter *.dpx"},
            {"what?.txt", "", "names [what?.txt]"},
            {"plate.####.exr", "", "names [plate.####.exr]1001-1012"},
            {"plate.%04d.exr", "1003-1006", "names [plate.####.exr]1003-1006"},
            {"plate.@@@@.exr", "", "names [plate.####.exr]1001-1012"},
            {"plate.$F4.exr", "", "names [plate.####.exr]1001-1012"},
            {"plate.1004.exr", "", "names [plate.####.exr]1001-1012"},
            {"loop.%d.dpx", "", "names [loop.#.dpx]8-12"},
            {"plate.####.exr", "5-7",
             "names [plate.####.exr]1001-1012" + problem(NameProblem::FramesNotThere)},
            {"plate.####.exr", "?",
             "names [plate.####.exr]1001-1012" + problem(NameProblem::FramesUnreadable)},
            {"twin.01.exr", "", "names [twin.#.exr]1"},
            {"twin.0001.exr", "", "names [twin.#.exr]1"},
            {".rc", "", "names [.rc]"},
            {".cache", "", "folder in .cache"},
            {".tmp.%d.exr", "1", "names [.tmp.#.exr]1"},
            {".tmp.2.exr", "", "names [.tmp.2.exr]"},
            {"plate.1005.exr", "", "names [plate.1005.exr]" + problem(NameProblem::NotFound)},
            {"none", "", "names [none]" + problem(NameProblem::NotFound)},
            {"sub/x.exr", "", "names in sub/ [x.exr]" + problem(NameProblem::NotFound)},
            {"asset://a/b", "", "address asset://a/b"},
            {"\"notes.txt\" \"a b.exr\"", "", "names" + problem(NameProblem::SeveralNames)}};
        for (const auto& row : rows)
            QCOMPARE(shown(read(row.text, rulesFor(Mode::OpenFile), row.frames)), row.expected);
        QCOMPARE(shown(read("\"notes.txt\" \"a b.exr\"", rulesFor(Mode::OpenFiles))),
                 std::string("names [notes.txt] [a b.exr]"));
        QCOMPARE(shown(read("\"s/a\" \"t/b\"", rulesFor(Mode::OpenFiles))),
                 "names in s/" + problem(NameProblem::SeveralFolders));
        QCOMPARE(shown(read("plate.1004.exr", rulesFor(Mode::OpenFile), {}, false)),
                 std::string("names [plate.1004.exr]"));
    }

    void opensWhatIsWanted() {
        NameRules rules = rulesFor(Mode::OpenFile);
        rules.acceptsSequences = false;
        QCOMPARE(read("plate.####.exr", rules).problem, NameProblem::NoSequences);
        QCOMPARE(shown(read("plate.1004.exr", rules)), std::string("names [plate.1004.exr]"));
        rules = rulesFor(Mode::OpenFile);
        rules.acceptsFrames = false;
        QCOMPARE(read("notes.txt", rules).problem, NameProblem::NoSingleFiles);
        rules.style = FileNames::Style::Dollar;
        QCOMPARE(shown(read("plate.####.exr", rules)),
                 std::string("names [plate.$F4.exr]1001-1012"));
        // Rows are told by their bytes, whatever the field shows.
        const auto listing = Test::listingOf(shotNames());
        const auto odd = readName({"odd\xef\xbf\xbd.exr", {"odd\xff.exr"}, {}},
                                  rulesFor(Mode::OpenFile), *listing);
        QCOMPARE(shown(odd), std::string("names [odd\xff.exr]"));
        QVERIFY(isSettled(odd, *listing));
        QVERIFY(!isSettled(read("none", rulesFor(Mode::OpenFile)), *listing));
        // Names in another folder are looked for in its listing.
        const auto other =
            readName({"sub/plate.%04d.exr", {}, {}}, rulesFor(Mode::OpenFile), *listing, true);
        QCOMPARE(shown(other), std::string("names in sub/ [plate.####.exr]1001-1012"));
    }

    void missingFrames() {
        const auto reading = read("plate.####.exr", rulesFor(Mode::OpenFile));
        QCOMPARE(reading.asked.missing, std::int64_t(1));
        QCOMPARE(ChooserTexts::notice(reading, {}).text, QString("Frame 1005 is missing"));
    }

    void saves() {
        NameRules rules = rulesFor(Mode::SaveFile);
        const struct {
            const char* text;
            std::string expected;
            int replaced;
        } rows[] = {{"new", "names [new.exr]", 0},
                    {"notes.txt", "names [notes.txt.exr]", 0},
                    {"\"notes.txt\"", "names [notes.txt]", 1},
                    {"new.", "names [new.]", 0},
                    {"a b", "names [a b.exr]", 1},
                    {"plate.####", "names [plate.####.exr]0", 11},
                    {"plate.%04d.exr", "names [plate.####.exr]0", 11},
                    {"plate.###.exr", "names [plate.###.exr]0", 11},
                    {"plate.#####.exr", "names [plate.#####.exr]0", 0},
                    {"plate.1004.exr", "names [plate.1004.exr]", 1},
                    {"loop.#.dpx", "names [loop.#.dpx]0", 5},
                    {"loop.##.dpx", "names [loop.##.dpx]0", 3},
                    {"twin.##.exr", "names [twin.##.exr]0", 1},
                    {"twin.####.exr", "names [twin.####.exr]0", 1},
                    {"\"twin.0001.exr\"", "names [twin.0001.exr]", 1},
                    {"lib", "folder in lib [lib]", 0},
                    {"v002/new", "names in v002/ [new.exr]", 0},
                    {"\"lib.exr\" b", "names" + problem(NameProblem::SeveralNames), 0}};
        for (const bool fold : {true, false}) {
            for (const auto& row : rows) {
                const auto reading = read(row.text, rules, {}, fold);
                QCOMPARE(shown(reading), row.expected);
                QCOMPARE(int(reading.replaced.count), row.replaced);
            }
        }
        rules.written = Base::FrameRange(1000, 1010, 2);
        const auto some = read("plate.####", rules);
        QCOMPARE(int(some.replaced.count), 5);
        QCOMPARE(ChooserTexts::notice(some, {}).text,
                 QString("5 frames exist and would be replaced (1002-1010x2)."));
        rules.acceptsFrames = false;
        QCOMPARE(read("new", rules).problem, NameProblem::NoSingleFiles);
        QVERIFY(ChooserTexts::notice(read("comp_v001", rulesFor(Mode::SaveFile)), {})
                    .offersNextVersion);
    }

    void forbiddenNames() {
        NameRules rules = rulesFor(Mode::SaveFile);
        QCOMPARE(read(std::string("a\0b", 3), rules).problem, NameProblem::Forbidden);
        QCOMPARE(read(std::string(256, 'a'), rules).problem, NameProblem::TooLong);
        for (const char* name : {"con", "a:b", "a<b"})
            QCOMPARE(read(name, rules).problem, NameProblem::None);
        rules.isWindows = true;
        const struct {
            const char* name;
            NameProblem problem;
        } rows[] = {{"CON", NameProblem::Reserved},        {"lpt1.x", NameProblem::Reserved},
                    {"console", NameProblem::None},        {"a:b", NameProblem::Forbidden},
                    {"a\x01.exr", NameProblem::Forbidden}, {"a.", NameProblem::Forbidden}};
        for (const auto& row : rows)
            QCOMPARE(read(row.name, rules).problem, row.problem);
    }

    void choosesFolders() {
        const NameRules rules = rulesFor(Mode::OpenFolder);
        QCOMPARE(shown(read("lib", rules)), std::string("folder in lib [lib]"));
        QCOMPARE(shown(read("/a/b", rules)), std::string("folder in /a/b"));
        QCOMPARE(shown(read("", rules)), std::string("nothing"));
    }
};

KXUI_TEST(NameRowTest);

#include "NameRowTest.moc"
