#include <support/TestRegistry.h>

#include <KxUI/browse/CrumbLayout_p.h>
#include <KxUI/browse/PathText_p.h>

#include <QtTest>

using namespace Kestrel::UI;
using namespace Kestrel::UI::PathText;

namespace {

QString joinedCrumbs(const char* path, System system) {
    QStringList all;
    for (const Crumb& crumb : crumbsOf(path, system))
        all += crumb.text + QLatin1Char('=') + shown(crumb.path);
    return all.join(QLatin1Char(' '));
}

double lettersOf(const QString& text) {
    return static_cast<double>(text.size());
}

} // namespace

class PathTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void meanings_data() {
        QTest::addColumn<bool>("windows");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("path");
        const auto row = [](bool windows, const char* text, const char* path) {
            QTest::newRow(text) << windows << QString::fromUtf8(text) << QString::fromUtf8(path);
        };
        row(false, "/a/b", "/a/b");
        row(false, "  /a//b/./c/../ ", "/a/b");
        row(false, "/../..", "/");
        row(false, "b/c", "/shots/b/c");
        row(false, "../x", "/x");
        row(false, "~", "/home/kim");
        row(false, "~/x", "/home/kim/x");
        row(false, "~kim", "/shots/~kim");
        row(false, "\"/a b/c\"", "/a b/c");
        row(false, "'/a b'", "/a b");
        row(false, "/a\n/b", "/a");
        row(false, "\n /a \r\n/b", "/a");
        row(false, "file:///a%20b", "/a b");
        row(false, "FILE:/a", "/a");
        row(false, "file://localhost/a", "/a");
        row(false, "file://server/a", "!host");
        row(false, "/a/%20", "/a/%20");
        row(false, "C:\\a", "/shots/C:\\a");
        row(false, " ", "!empty");
        row(true, "c:\\a\\..\\b\\", "c:/b");
        row(true, "c:", "c:/");
        row(true, "\\\\server\\share\\a\\..\\..\\..", "//server/share/");
        row(true, "//server/share/x", "//server/share/x");
        row(true, "//server//share", "//server/share/");
        row(true, "\\x", "z:/x");
        row(true, "x\\y", "z:/work/x/y");
        row(true, "file:///C:/a%20b", "C:/a b");
        row(true, "file://server/share/a", "//server/share/a");
    }

    void meanings() {
        QFETCH(bool, windows);
        QFETCH(QString, text);
        const Place place = windows ? Place{"z:\\work", "z:\\home", System::Windows}
                                    : Place{"/shots", "/home/kim", System::Posix};
        const Meaning meaning = meaningOf(text, {}, place);
        const QString refusals[] = {QString(), QStringLiteral("!empty"), QStringLiteral("!nul"),
                                    QStringLiteral("!host"), QStringLiteral("!home")};
        const QString told =
            meaning ? shown(meaning.path) : refusals[static_cast<int>(meaning.refusal)];
        QTEST(told, "path");
    }

    void refusesWhatNoPathHas() {
        const Place place{"/shots", {}, System::Posix};
        QCOMPARE(
            meaningOf(QString(QStringLiteral("/a") + QChar(0) + QStringLiteral("b")), {}, place)
                .refusal,
            Refusal::Nul);
        QCOMPARE(meaningOf(QStringLiteral("~/x"), {}, place).refusal, Refusal::NoHome);
    }

    void keepsTheBytesOfWhatIsNotEdited() {
        const Place place{"/shots", "/home", System::Posix};
        const QByteArray filled("/plates/\xE9t\xE9/take \n1 ");
        const QString text = shown(filled);
        struct Row {
            QString edited;
            QByteArray path;
        };
        const Row rows[] = {
            {text, filled}, // even its blank at the end
            {text + QStringLiteral("/comp"), filled + "/comp"},
            {text.left(text.lastIndexOf(QLatin1Char('/'))), "/plates/\xE9t\xE9"},
            {text.left(text.lastIndexOf(QLatin1Char('/')) + 1) + QStringLiteral("\u00e9"),
             "/plates/\xE9t\xE9/\xC3\xA9"},
            {QStringLiteral("/plates/x"), "/plates/x"},
            {QStringLiteral("x"), "/shots/x"},
        };
        for (const Row& row : rows)
            QCOMPARE(meaningOf(row.edited, filled, place).path, row.path);
    }

    void crumbs() {
        QCOMPARE(joinedCrumbs("/", System::Posix), QStringLiteral("/=/"));
        QCOMPARE(joinedCrumbs("/a/b", System::Posix), QStringLiteral("/=/ a=/a b=/a/b"));
        QCOMPARE(joinedCrumbs("c:\\a", System::Windows), QStringLiteral("c:=c:/ a=c:/a"));
        QCOMPARE(joinedCrumbs("\\\\s\\p\\a", System::Windows),
                 QStringLiteral("//s/p=//s/p/ a=//s/p/a"));
        QCOMPARE(joinedCrumbs("a", System::Posix), QString());
    }

    void relations() {
        QCOMPARE(parentOf("/a/b", System::Posix), QByteArray("/a"));
        QCOMPARE(parentOf("/", System::Posix), QByteArray("/"));
        QCOMPARE(parentOf("c:/a", System::Windows), QByteArray("c:/"));
        struct Row {
            const char* path;
            const char* base;
            const char* way;
        };
        const Row rows[] = {{"/p/a/x", "/p/a", "x"},   {"/p/b/x", "/p/a", "../b/x"},
                            {"/p", "/p/a/b", "../.."}, {"/p/a", "/p/a", "."},
                            {"/q/x", "/p/a", "/q/x"},  {"/p/ab", "/p/a", "../ab"},
                            {"/p/a/x", "/p/a/", "x"},  {"/p/a/~", "/p/a", "./~"}};
        for (const Row& row : rows)
            QCOMPARE(relativeTo(row.path, row.base, System::Posix), QByteArray(row.way));
    }

    void elisionKeepsTheName() {
        const QString path = QStringLiteral("/mnt/show/shot/comp/comp_v003.####.exr");
        const struct {
            double width;
            const char* text;
        } rows[] = {{38, "/mnt/show/shot/comp/comp_v003.####.exr"},
                    {29, "/mnt/\u2026/comp_v003.####.exr"},
                    {22, "\u2026/comp_v003.####.exr"},
                    {12, "com\u2026####.exr"},
                    {0, "\u2026"}};
        for (const auto& row : rows)
            QCOMPARE(elided(path, row.width, lettersOf), QString::fromUtf8(row.text));
        QCOMPARE(elided(QStringLiteral("/mnt/a"), 3, lettersOf), QStringLiteral("\u2026/a"));
    }

    void framesOfOneSequence() {
        QCOMPARE(sequenceOf({"/a/s.0001.exr", "/a/s.0002.exr"}), QByteArray("/a/s.####.exr"));
        QCOMPARE(sequenceOf({"/a/s.9.exr", "/a/s.10.exr"}), QByteArray("/a/s.#.exr"));
        QCOMPARE(sequenceOf({"/a/s.1.exr", "/b/s.2.exr"}), QByteArray());
        QCOMPARE(sequenceOf({"/a/s.1.exr", "/a/t.2.exr"}), QByteArray());
        QCOMPARE(sequenceOf({"/a1/s", "/a1/s"}), QByteArray());
        QCOMPARE(sequenceOf({"/a/s.1.exr"}), QByteArray());
    }

    // Nothing overlaps or leaves the room while that is wide enough for one name; root and end are
    // the last to go.
    void crumbsFit() {
        const std::vector<int> widths{30, 80, 60, 100, 90};
        for (int room = 84; room < 600; ++room) {
            const CrumbLayout layout = CrumbLayout::of(widths, 20, 24, room);
            QVERIFY(layout.end <= room);
            int at = 0;
            bool hides = false;
            for (std::size_t i = 0; i < widths.size(); ++i) {
                if (i == 1 && layout.dots.width > 0) {
                    QCOMPARE(layout.dots.left, at);
                    at = layout.dotsArrow.right();
                }
                if (layout.crumbs[i].width == 0) {
                    hides = true;
                    continue;
                }
                QCOMPARE(layout.crumbs[i].left, at);
                QVERIFY(layout.crumbs[i].width == widths[i] || i + 1 == widths.size());
                at = layout.arrows[i].right();
            }
            QCOMPARE(hides, layout.dots.width > 0);
            QCOMPARE(hides, room < 460);
            QVERIFY(layout.crumbs.back().width > 0);
        }
        QVERIFY(CrumbLayout::of({}, 20, 24, 100).crumbs.empty());
    }
};

KXUI_TEST(PathTextTest);
#include "PathTextTest.moc"
