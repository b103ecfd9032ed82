#include <KxUI/browse/AskedFrames_p.h>
#include <KxUI/browse/NameEdits_p.h>

#include <support/TestRegistry.h>

#include <QtTest>

#include <random>
#include <set>

using namespace Kestrel;
using namespace Kestrel::UI;
using Base::FrameRange;
using Names = std::vector<std::string>;

Q_DECLARE_METATYPE(Kestrel::Base::FrameRange)

namespace {

const Names known{"exr", "dpx", "gz", "tar.gz"};

std::set<int> framesOf(const FrameRange& range) {
    std::set<int> frames;
    for (int frame = range.first; frame <= range.last; frame += std::max(range.step, 1))
        frames.insert(frame);
    return frames;
}

} // namespace

class NameEditsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void suffixes() {
        QCOMPARE(NameEdits::suffixesOf({"*.EXR", "*.tar.gz", "*", "*.*", "*.ti?", "a.x", "*."}),
                 (Names{"exr", "tar.gz"}));
        const struct {
            const char *name, *completed, *replaced;
        } rows[] = {{"a", "a.exr", "a.exr"},
                    {"a.dpx", "a.dpx", "a.exr"},
                    {"a.DPX", "a.DPX", "a.exr"},
                    {"a.mov", "a.mov.exr", "a.mov.exr"},
                    {"a.tar.gz", "a.tar.gz", "a.exr"},
                    {"a.", "a.", "a."},
                    {"s.dpx/a", "s.dpx/a.exr", "s.dpx/a.exr"},
                    {".exr", ".exr.exr", ".exr.exr"},
                    {"a.####.exr", "a.####.exr", "a.####.exr"},
                    {"s/", "s/", "s/"},
                    {"", "", ""}};
        for (const auto& row : rows) {
            QCOMPARE(NameEdits::completed(row.name, "exr", known), std::string(row.completed));
            QCOMPARE(NameEdits::withSuffix(row.name, "exr", known), std::string(row.replaced));
            QCOMPARE(NameEdits::completed(row.name, "", known), std::string(row.name));
        }
    }

    void placeOfTheFrame() {
        const struct {
            const char *single, *sequence, *back;
            int stem;
        } rows[] = {{"a.exr", "a.####.exr", "a.exr", 1},
                    {"a", "a.####", "a", 1},
                    {"a_v012.exr", "a_v012.####.exr", "a_v012.exr", 6},
                    {"a.v012", "a.v012.####", "a.v012", 6},
                    {"a.1001.exr", "a.####.exr", "a.exr", 1},
                    {"a.00001.exr", "a.#####.exr", "a.exr", 1},
                    {"a.12.exr", "a.12.####.exr", "a.12.exr", 4},
                    {"a.tar.gz", "a.####.tar.gz", "a.tar.gz", 1},
                    {"a.mov", "a.####.mov", "a.mov", 1},
                    {"s.####/a.exr", "s.####/a.####.exr", "s.####/a.exr", 1},
                    {"s/", "s/", "s/", 0}};
        for (const auto& row : rows) {
            const auto sequence =
                NameEdits::asSequence(row.single, FileNames::Style::Hashes, 4, known);
            QCOMPARE(sequence, std::string(row.sequence));
            QCOMPARE(NameEdits::asSequence(sequence, FileNames::Style::Printf, 4, known), sequence);
            QCOMPARE(NameEdits::asSingle(sequence), std::string(row.back));
            QCOMPARE(int(NameEdits::stemLength(sequence, known)), row.stem);
        }
        QCOMPARE(NameEdits::asSingle("####.exr"), std::string(".exr"));
        QCOMPARE(NameEdits::withDigits("a.####.x", FileNames::Style::Printf, 6),
                 std::string("a.%06d.x"));
        QCOMPARE(NameEdits::withDigits("a.x", FileNames::Style::Printf, 6), std::string("a.x"));
    }

    void versions() {
        const struct {
            const char *name, *next;
        } rows[] = {{"c_v001.exr", "c_v002.exr"},
                    {"v001/c_v001.exr", "v002/c_v002.exr"},
                    {"v1/v001_b/c_v001.exr", "v2/v002_b/c_v002.exr"},
                    {"v003/c_v001.exr", "v003/c_v002.exr"},
                    {"v009/c.exr", "v010/c.exr"},
                    {"v001", "v002"},
                    {"c.exr", "c.exr"}};
        for (const auto& row : rows)
            QCOMPARE(
                NameEdits::withVersion(row.name, NameEdits::versionOf(row.name).value_or(0) + 1),
                std::string(row.next));
        const Names listed{"C_V004.mov", "c_v002.####.exr", "d_v009.exr", "v007"};
        QCOMPARE(NameEdits::withNextFreeVersion("c_v001.exr", listed), std::string("c_v005.exr"));
        QCOMPARE(NameEdits::withNextFreeVersion("c_v9.exr", listed), std::string("c_v10.exr"));
        QCOMPARE(NameEdits::withNextFreeVersion("v001/c_v001.exr", listed),
                 std::string("v008/c_v008.exr"));
        QCOMPARE(NameEdits::withNextFreeVersion("c.exr", listed), std::string("c.exr"));
    }

    void askedFrames_data() {
        using Problem = AskedFrames::Problem;
        QTest::addColumn<QString>("text");
        QTest::addColumn<FrameRange>("asked");
        QTest::addColumn<int>("problem");
        QTest::addColumn<qint64>("missing");
        QTest::addColumn<int>("gaps");
        const auto row = [](const char* text, FrameRange asked, Problem problem, qint64 missing,
                            int gaps) {
            QTest::newRow(text) << text << asked << int(problem) << missing << gaps;
        };
        // Of 10 to 40 by 2, without 16 and 30 to 34.
        row("", {10, 40, 2}, Problem::None, 4, 2);
        row("10-20", {10, 20, 2}, Problem::None, 1, 1);
        row(" 9 - 21 ", {10, 20, 2}, Problem::None, 1, 1);
        row("12", {12, 12, 1}, Problem::None, 0, 0);
        row("16", {16, 16, 1}, Problem::NoneThere, 1, 0);
        row("30-34", {30, 34, 2}, Problem::NoneThere, 3, 0);
        row("10-40x4", {10, 40, 4}, Problem::None, 2, 1);
        row("10-13,1", {10, 13, 1}, Problem::None, 2, 2);
        row("0-14", {0, 14, 2}, Problem::None, 5, 1);
        row("41-50", {42, 50, 2}, Problem::NoneThere, 5, 0);
        row("-2147483648-2147483647", {-2147483648, 2147483646, 2}, Problem::None,
            2147483648LL - 12, 4);
        row("20-10", {10, 40, 2}, Problem::Unreadable, 0, 0);
        row("abc", {10, 40, 2}, Problem::Unreadable, 0, 0);
    }

    void askedFrames() {
        QFETCH(QString, text);
        QFETCH(FrameRange, asked);
        const std::vector<FrameRange> present{{10, 14, 2}, {18, 28, 2}, {36, 40, 2}};
        const auto read = UI::askedFrames(text.toStdString(), {10, 40, 2}, present);
        QTEST(int(read.problem), "problem");
        QVERIFY2(read.frames == asked, qPrintable(QString::number(read.frames.last)));
        QTEST(qint64(read.missing), "missing");
        QTEST(int(read.gaps.size()), "gaps");
    }

    void commonFramesAreThoseInBoth() {
        std::mt19937 random(3);
        const auto any = [&](int from, int to) {
            return from + int(random() % unsigned(to - from + 1));
        };
        for (int round = 0; round < 3000; ++round) {
            const FrameRange a(any(-30, 30), any(-10, 60), any(1, 9));
            const FrameRange b(any(-30, 30), any(-10, 60), any(1, 9));
            std::set<int> expected;
            const auto inB = framesOf(b);
            for (const int frame : framesOf(a)) {
                if (inB.count(frame))
                    expected.insert(frame);
            }
            std::set<int> actual;
            if (const auto both = commonFrames(a, b)) {
                QVERIFY(both->count() > 0);
                for (auto frame = both->first; frame <= both->last; frame += both->step)
                    actual.insert(int(frame));
            }
            QVERIFY(actual == expected);
        }
        const auto wide = commonFrames({-2147483647, 2147483647, 2147483646},
                                       {-2147483647, 2147483647, 2147483647});
        QVERIFY(wide && wide->first == -2147483647 && wide->count() == 1);
    }
};

KXUI_TEST(NameEditsTest);

#include "NameEditsTest.moc"
