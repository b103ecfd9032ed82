#include <KxUI/help/HelpRequest_p.h>

#include <support/TestRegistry.h>

#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>

#include <QtTest>

#include <random>

using namespace Kestrel::UI::Help;

namespace {

// What Boost.Beast makes of the head of a request: its target, or nothing.
std::optional<std::string> beastTarget(const std::string& request) {
    boost::beast::http::request_parser<boost::beast::http::string_body> parser;
    boost::beast::error_code error;
    parser.put(boost::asio::buffer(request), error);
    if (error || !parser.is_header_done())
        return {};
    const auto target = parser.get().target();
    return std::string(target.data(), target.size());
}

std::optional<std::string> ourTarget(const std::string& request) {
    const auto page = parseRequestGET(request);
    if (!page)
        return {};
    return '/' + page->path + (page->query.empty() ? "" : '?' + page->query);
}

} // namespace

Q_DECLARE_METATYPE(std::string)

class HelpRequestTest : public QObject {
    Q_OBJECT

private slots:
    void pages_data() {
        QTest::addColumn<std::string>("request");
        QTest::addColumn<QStringList>("expected"); // path, node, file type, query, referer
        const auto row = [](const char* request, const QStringList& expected) {
            QTest::newRow(QByteArray(request).simplified()) << std::string(request) << expected;
        };
        row("", {});
        row("GET", {});
        row("GET /page.html", {});
        row("GET page", {});
        row("GET / HTTP/1.1", {"", "", "", "", ""});
        row("GET /index HTTP/1.1", {"index", "index", "", "", ""});
        row("GET /a/b.c/page.html?x=1 HTTP/1.1",
            {"a/b.c/page.html", "a/b.c/page", "html", "x=1", ""});
        row("GET /a.b/c HTTP/1.1", {"a.b/c", "a", "b/c", "", ""});
        row("GET /p.html?a?b.c HTTP/1.1", {"p.html", "p", "html", "a?b.c", ""});
        row("GET /100%25.html HTTP/1.1", {"100%25.html", "100%25", "html", "", ""});
        row("GET /p HTTP/1.1\r\nreferer: no\r\nReferer: one\r\nReferer: two\r\n\r\n",
            {"p", "p", "", "", "one\r"});
        row("GET /p HTTP/1.1\nReferer:", {"p", "p", "", "", ""});
        // Without a slash of its own the target is looked for in what follows.
        row("GET p HTTP/1.1\r\nHost: x\r\n", {"1.1\r\nHost:", "1", "1\r\nHost:", "", ""});
    }
    void pages() {
        QFETCH(std::string, request);
        QFETCH(QStringList, expected);
        const auto page = parseRequestGET(request);
        QStringList parsed;
        if (page) {
            for (const auto& text :
                 {page->path, page->node, page->fileType, page->query, page->referer})
                parsed << QString::fromStdString(text);
        }
        QCOMPARE(parsed, expected);
    }

    void commands() {
        const auto parse = [](std::string_view request) {
            const auto post = parseRequestPOST(request);
            return post ? post->command + '|' + post->argument : "none";
        };
        QCOMPARE(parse("POST /go 7\r\nHost: x"), std::string("go|7"));
        QCOMPARE(parse("POST /go HTTP/1.1\r\n"), std::string("go|HTTP/1.1"));
        QCOMPARE(parse("POST /go a b/c"), std::string("go|a b/c"));
        QCOMPARE(parse("POST / \r"), std::string("|"));
        QCOMPARE(parse("POST /go"), std::string("none"));
        QCOMPARE(parse("POST go 7"), std::string("none"));
        QVERIFY(methodOf("HEADER") == Method::Head && methodOf("GETS") == Method::Unknown &&
                methodOf("POST") == Method::Post && methodOf("GET") == Method::Unknown);
    }

    void fileNames() {
        const auto name = [](const char* path, char separator) {
            const auto page = parseRequestGET("GET /" + std::string(path) + " ");
            return fileNameOf(*page, separator).value_or("none");
        };
        QCOMPARE(name("", '/'), std::string("."));
        QCOMPARE(name("a/b", '/'), std::string("a/b."));
        QCOMPARE(name("a/..b/c..html", '/'), std::string("a/..b/c..html"));
        QCOMPARE(name("a\\b:c.html", '/'), std::string("a\\b:c.html"));
        QCOMPARE(name("a/b.html", '\\'), std::string("a\\b.html"));
        for (const char* path : {"..", "../a.html", "a/../b.html", "a/..", "x.html/.."})
            QCOMPARE(name(path, '/'), std::string("none"));
        for (const char* path : {"a\\b.html", "c:/a.html", "a.html:stream", "..\\a.html"})
            QCOMPARE(name(path, '\\'), std::string("none"));
    }

    void foreignRequests_data() {
        QTest::addColumn<bool>("foreign");
        QTest::addColumn<std::string>("request");
        const auto row = [](bool foreign, const char* method, const char* headers) {
            QTest::addRow("%s %s", method, QByteArray(headers).simplified().constData())
                << foreign << method + std::string(" /x HTTP/1.1\r\n") + headers + "\r\n\r\n";
        };
        for (const char* host :
             {"localhost", "LocalHost:1", "127.0.0.1:7000", "127.255.0.9", "[::1]", "[::1]:7000"})
            row(false, "GET", (std::string("Host: ") + host).c_str());
        for (const char* host :
             {"evil.example", "127.0.0.1.evil.example", "127.0.0.256", "127.1", "localhost.evil",
              "localhost:80:80", "localhost:x", "[::1", "[::2]", "[::1]x", "u@localhost", "",
              "127..0.1", "0.0.0.0", "128.0.0.1", "localhost:123456"})
            row(true, "GET", (std::string("hOsT : ") + host).c_str());
        row(true, "HEAD", "Host: localhost\r\nHost: evil.example");
        row(false, "GET", "Origin: http://evil.example\r\nSec-Fetch-Site: cross-site");
        row(false, "POST", "\r\nHost: evil.example");
        row(true, "POST", "X: 1\nHost: evil.example");
        for (const char* mine : {"http://127.0.0.1:7000", "HTTP://localhost:7000"})
            row(false, "POST", (std::string("Origin: ") + mine).c_str());
        for (const char* other :
             {"http://evil.example", "http://localhost", "http://localhost:7001", "null", "",
              "https://localhost:7000", "http://localhost:7000/", "http://u@localhost:7000"})
            row(true, "POST", (std::string("origin:") + other).c_str());
        row(false, "POST", "Sec-Fetch-Site: same-origin");
        row(false, "POST", "Sec-Fetch-Site: none");
        row(true, "POST", "Sec-Fetch-Site: same-site");
        row(true, "POST", "Sec-Fetch-Site: cross-site");
    }
    void foreignRequests() {
        QFETCH(bool, foreign);
        QFETCH(std::string, request);
        QCOMPARE(isForeign(request, 7000), foreign);
    }

    void smallThings() {
        QVERIFY(!isForeign("POST /x \r\nOrigin: http://localhost\r\n", 80));
        QCOMPARE(escapeHtml("<a href=\"x\">&amp;'"),
                 std::string("&lt;a href=&quot;x&quot;&gt;&amp;amp;'"));
        QVERIFY(getMimeType("js") == "text/javascript" && getMimeType("css") == "text/css" &&
                getMimeType("xml") == "application/xml" && getMimeType("XML") == "text/html" &&
                getMimeType("png") == "text/html" && getMimeType("") == "text/html");
        QVERIFY(ensureTrailingSlash("").empty() && ensureTrailingSlash("a") == "a/" &&
                ensureTrailingSlash("a/") == "a/");
    }

    // Where a strict parser reads the same bytes another way; each on purpose.
    void differencesFromAStrictParser_data() {
        QTest::addColumn<std::string>("request");
        QTest::addColumn<QString>("ours");
        QTest::addColumn<QString>("strict");
        const auto row = [](const char* why, const char* request, const char* ours,
                            const char* strict) {
            QTest::newRow(why) << std::string(request) << ours << strict;
        };
        row("headers may be missing", "GET /a HTTP/1.1\r\n", "/a", "none");
        row("the version may be missing", "GET /a \r\n\r\n", "/a", "none");
        row("any version", "GET /a HTTP/9.9\r\n\r\n", "/a", "none");
        row("lines may end in a line feed", "GET /a HTTP/1.1\n\n", "/a", "none");
        row("header names are not checked", "GET /a HTTP/1.1\r\nb@d: 1\r\n\r\n", "/a", "none");
        row("bytes of the path are not checked", "GET /a\x01\x7f HTTP/1.1\r\n\r\n", "/a\x01\x7f",
            "none");
        row("a blank ends the path", "GET /a b HTTP/1.1\r\n\r\n", "/a", "none");
        row("blanks before the path", "GET   /a HTTP/1.1\r\n\r\n", "/a", "none");
        row("an absolute target keeps its host", "GET http://h/a HTTP/1.1\r\n\r\n", "//h/a",
            "http://h/a");
        row("no slash in the target", "GET * HTTP/1.1\r\nA: b\r\n\r\n", "/1.1\r\nA:", "*");
        row("an empty query is none", "GET /a? HTTP/1.1\r\n\r\n", "/a", "/a?");
    }
    void differencesFromAStrictParser() {
        QFETCH(std::string, request);
        QFETCH(QString, ours);
        QFETCH(QString, strict);
        const auto text = [](const std::optional<std::string>& target) {
            return QString::fromLatin1(target.value_or("none").c_str());
        };
        QCOMPARE(text(ourTarget(request)), ours);
        QCOMPARE(text(beastTarget(request)), strict);
    }

    // Apart from those: whatever a strict parser accepts, ours reads the same way.
    void agreesWithAStrictParser() {
        std::mt19937 random(7);
        const auto pick = [&](const std::vector<std::string>& from) {
            return from[random() % from.size()];
        };
        int accepted = 0;
        for (int round = 0; round < 20000; ++round) {
            std::string request = pick({"GET ", "GET ", "HEAD "}) + "/";
            for (auto part = random() % 6; part > 0; --part)
                request += pick({"a", "b.c", "/", "..", "%20", "?", "x=1", ".html", "~", "&"});
            request += pick({" HTTP/1.1\r\n", " HTTP/1.0\r\n"});
            for (auto header = random() % 3; header > 0; --header)
                request += pick({"Host: localhost\r\n", "Referer: /r.html x\r\n", "X-Y:\r\n"});
            request += "\r\n";
            if (random() % 3 == 0)
                request[random() % request.size()] = static_cast<char>(random() % 255 + 1);
            const auto strict = beastTarget(request);
            if (!strict || strict->front() != '/' || strict->back() == '?' ||
                methodOf(request) == Method::Unknown)
                continue;
            ++accepted;
            QCOMPARE(ourTarget(request).value_or("none"), *strict);
        }
        QVERIFY(accepted > 10000);
    }
};

KXUI_TEST(HelpRequestTest);
#include "HelpRequestTest.moc"
