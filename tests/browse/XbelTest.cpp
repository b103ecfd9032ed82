#include <KxUI/browse/Xbel_p.h>

#include <support/TestRegistry.h>

#include <QXmlStreamReader>
#include <QtTest>

using namespace Kestrel::UI;
using Xbel::Problem;

namespace {

// What other programs write: two families of desktops, and somebody by hand.
const std::string foreignFile =
    "\xef\xbb\xbf<?xml version=\"1.0\"?>\r\n<!-- mine -->\n<!DOCTYPE xbel>\n"
    "<xbel xmlns:bookmark='http://b' xmlns:kdepriv=\"http://k\" >\n <title>all</title>\n"
    " <info>\n  <metadata "
    "owner=\"http://k\"><kde_places_version>4</kde_places_version></metadata>\n"
    " </info>\n <bookmark  href='file:///mnt/%FF%20a'>\n  <title>A &amp; B<!-- no --></title>\n"
    "  <info><metadata owner=\"http://f\"><bookmark:icon name=\"inode\"/></metadata></info>\n"
    " </bookmark>\n <separator/>\n <folder id=\"g\" folded='no'><title>Shots</title>"
    "<bookmark href=\"sftp://farm/x?a&#38;b\" id=\"two\"/><desc>free &lt;text&gt;</desc></folder>\n"
    " <alias ref=\"two\"/><![CDATA[ <x> ]]>\n</xbel>\n<!-- end -->\n";

QStringList linesOf(const std::vector<Xbel::Node>& nodes) {
    QStringList lines;
    for (const Xbel::Node& node : nodes) {
        if (!node.isEntry())
            continue;
        lines << QString::fromStdString(node.title + "|" + node.href);
        for (const QString& line : linesOf(node.children))
            lines << "  " + line;
    }
    return lines;
}

bool isReadByOthers(const std::string& bytes) {
    QXmlStreamReader reader(QByteArray::fromStdString(bytes));
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

} // namespace

class XbelTest : public QObject {
    Q_OBJECT

private slots:
    void keepsWhatItDoesNotKnow() {
        Xbel::Document document = Xbel::read(foreignFile);
        QCOMPARE(document.problem, Problem::None);
        QCOMPARE(linesOf(document.nodes),
                 QStringList({"A & B|file:///mnt/%FF%20a", "Shots|", "  |sftp://farm/x?a&b"}));
        // Only the id that the first one lacked is new.
        const std::string id = document.nodes[1].id;
        std::string expected = foreignFile;
        expected.insert(expected.find("%20a'") + 5, " id=\"" + id + "\"");
        QCOMPARE(Xbel::written(document), expected);
        QCOMPARE(Xbel::written(Xbel::read(expected)), expected);

        // An edit touches nothing else.
        Xbel::setTitle(Xbel::find(document, "two")->node(), "a<\"&\"");
        QCOMPARE(Xbel::written(document),
                 QByteArray::fromStdString(expected)
                     .replace("id=\"two\"/>",
                              "id=\"two\"><title>a&lt;&quot;&amp;&quot;</title></bookmark>")
                     .toStdString());
        Xbel::Node moved = Xbel::take(*Xbel::find(document, "two"));
        Xbel::insert(document, moved, {}, id, {});
        Xbel::insert(document, Xbel::bookmark("file:///n", "N", "new", "2024"), "g", {}, {});
        Xbel::insert(document, Xbel::folder("F", "f"), {}, "gone", "g");
        const Xbel::Document again = Xbel::read(Xbel::written(document));
        QCOMPARE(linesOf(again.nodes),
                 QStringList({"a<\"&\"|sftp://farm/x?a&b", "A & B|file:///mnt/%FF%20a", "Shots|",
                              "  N|file:///n", "F|"}));
        QVERIFY(Xbel::written(document).find("<desc>free &lt;text&gt;</desc>") !=
                std::string::npos);
    }

    void stopsAtDamage_data() {
        QTest::addColumn<QByteArray>("tail");
        QTest::addColumn<int>("problem");
        QTest::addColumn<int>("line");
        const auto row = [](const char* name, const QByteArray& tail, Problem problem, int line) {
            QTest::newRow(name) << tail << int(problem) << line;
        };
        row("ends", "\n\n", Problem::NotWellFormed, 4);
        row("other tag", "</folder></xbel>", Problem::NotWellFormed, 2);
        row("bytes", "<folder><title>\xff</title></folder></xbel>", Problem::NotWellFormed, 2);
        row("entity", "&lol;</xbel>", Problem::NotWellFormed, 2);
        row("attribute twice", "<a b='' b=''/></xbel>", Problem::NotWellFormed, 2);
        row("behind", "</xbel><xbel/>", Problem::NotWellFormed, 2);
        row("deep", QByteArray("<folder>").repeated(40), Problem::TooLarge, 2);
        row("many", QByteArray("<bookmark/>").repeated(5000), Problem::TooLarge, 2);
    }
    void stopsAtDamage() {
        QFETCH(QByteArray, tail);
        const std::string bytes =
            "<xbel>\n<bookmark href=\"file:///a\" id=\"a\"/>" + tail.toStdString();
        Xbel::Document document = Xbel::read(bytes);
        QTEST(int(document.problem), "problem");
        QTEST(document.line, "line");
        QVERIFY(Xbel::find(document, "a"));
        QVERIFY(isReadByOthers(Xbel::written(document)));
        QCOMPARE(Xbel::read(Xbel::written(document)).problem, Problem::None);
    }

    void readsNoOtherDocuments() {
        const std::string bomb = "<!DOCTYPE xbel [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]>"
                                 "<xbel><bookmark href=\"&b;\"/></xbel>";
        QCOMPARE(Xbel::read(bomb).problem, Problem::Forbidden);
        QCOMPARE(Xbel::read("<html/>").problem, Problem::NotBookmarks);
        QCOMPARE(Xbel::read(" ").problem, Problem::NotBookmarks);
        QCOMPARE(Xbel::read(std::string(2 * Xbel::Limits::Bytes, ' ')).problem, Problem::TooLarge);
        for (const char* empty : {"", "<xbel/>", "<xbel version='1/0' />"}) {
            Xbel::Document document = Xbel::read(empty);
            QCOMPARE(document.problem, Problem::None);
            Xbel::insert(document, Xbel::bookmark("file:///a", "", "a", ""), {}, {}, {});
            QVERIFY(isReadByOthers(Xbel::written(document)));
            QCOMPARE(linesOf(Xbel::read(Xbel::written(document)).nodes), {"|file:///a"});
        }
    }

    void givesTheSameIdsToAll() {
        const std::string bytes = "<xbel><bookmark href='a:'/><bookmark href='a:'/><bookmark "
                                  "id='x'/><bookmark id='x'/></xbel>";
        const Xbel::Document one = Xbel::read(bytes);
        const Xbel::Document two = Xbel::read(bytes);
        QSet<QString> ids;
        for (std::size_t i = 0; i < 4; ++i) {
            QCOMPARE(one.nodes[i].id, two.nodes[i].id);
            ids << QString::fromStdString(one.nodes[i].id);
        }
        QCOMPARE(ids.size(), 4);
    }

    void addressesOfPaths() {
        std::string every = "/";
        for (int byte = 1; byte < 256; ++byte)
            every += char(byte);
        for (const std::string& path :
             {std::string("/mnt/\xff x"), every, std::string("/a%2Fb#c?d"),
              std::string("https://a/b c"), std::string("/")})
            QCOMPARE(Xbel::pathOf(Xbel::hrefOf(path)), std::optional<std::string>(path));
        QCOMPARE(Xbel::hrefOf("/mnt/\xff x"), std::string("file:///mnt/%FF%20x"));
        QCOMPARE(Xbel::pathOf("file://localhost/a"), std::optional<std::string>("/a"));
        QCOMPARE(Xbel::pathOf("file://server/a"), std::optional<std::string>("file://server/a"));
        for (const char* none : {"", "a/b", "/a", "file:///a%00b", "file://", "mailto:a"})
            QVERIFY2(!Xbel::pathOf(none), none);
    }
};

KXUI_TEST(XbelTest);
#include "XbelTest.moc"
