#include "HelpFixture.h"

#include <KxUI/help/HelpServer.h>

#include <support/TestRegistry.h>

using namespace Kestrel::Test;
using Kestrel::UI::HelpServer;

namespace {

QByteArray lastCommand;

void remember(std::string command, std::string argument) {
    lastCommand = QByteArray::fromStdString(command + '|' + argument);
}

// The first of `count` neighbouring ports that are all free.
quint16 freePorts(int count) {
    for (;;) {
        QTcpServer first;
        first.listen(QHostAddress::LocalHost);
        const int port = first.serverPort();
        bool free = port + count < 65536;
        for (int next = 1; free && next < count; ++next)
            free = QTcpServer().listen(QHostAddress::LocalHost, quint16(port + next));
        if (free)
            return quint16(port);
    }
}

} // namespace

class HelpServerTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_site = std::make_unique<Site>();
        m_server = std::make_unique<HelpServer>();
        m_server->clearSearchPath();
        m_server->appendSearchPath({nullptr, "", m_site->path().c_str()});
        QVERIFY(m_server->start("127.0.0.1", 0, 0));
    }
    void cleanup() {
        m_server.reset();
        HelpServer::setVerbose(false);
    }

    void conversations_data() {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const QByteArray& request,
                            const QByteArray& expected) {
            QTest::newRow(name) << request << expected;
        };
        const auto ok = [](const QByteArray& type) {
            return "HTTP/1.1 200 OK\r\nContent-Type: " + type + "\r\n\r\n";
        };
        const QByteArray image = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: "
                                 "5\r\n\r\n\x89PNG\n";
        row("GET", "GET /page.html HTTP/1.1\r\n\r\n", ok("text/html") + m_page + "\r\n");
        row("HEAD", "HEAD /page.html HTTP/1.1\r\n\r\n", ok("text/html"));
        row("style", "GET /a.css HTTP/1.1\r\n\r\n", ok("text/css") + "c\r\n");
        row("empty file", "GET /empty.js HTTP/1.1\r\n\r\n", ok("text/javascript") + "\r\n");
        row("no file type", "GET /index HTTP/1.1\r\n\r\n", ok("text/html") + "dot\r\n");
        row("query and referer", "GET /sub/b.xml?a=b HTTP/1.1\r\nReferer: x\r\n\r\n",
            ok("application/xml") + "x\r\n");
        row("image", "GET /i.png HTTP/1.1\r\n\r\n", image);
        row("HEAD of an image", "HEAD /i.png HTTP/1.1\r\n\r\n", image);
        row("no file", "GET /no&<\"p\">.html?q HTTP/1.1\r\n\r\n",
            notFound("no&amp;&lt;&quot;p&quot;&gt;.html"));
        row("root", "GET / HTTP/1.1\r\n\r\n", notFound(""));
        row("folder", "GET /sub HTTP/1.1\r\n\r\n", notFound("sub"));
        row("no blank", "GET /page.html", notFound(""));
        row("no slash", "HEAD page", notFound(""));
        row("bad command", "POST /go", notFound(""));
        row("up to a zero byte", QByteArray("GET /page.html \0/x", 18),
            ok("text/html") + m_page + "\r\n");
    }
    void conversations() {
        QFETCH(QByteArray, request);
        QFETCH(QByteArray, expected);
        QDir(m_site->file("")).mkdir(QStringLiteral("sub"));
        m_site->put("page.html", m_page);
        m_site->put("a.css", "c");
        m_site->put("empty.js", "");
        m_site->put("index.", "dot");
        m_site->put("sub/b.xml", "x");
        m_site->put("i.png", "\x89PNG\n");
        QCOMPARE(converse(m_server->getPort(), request), expected);
    }

    void commands() {
        const QByteArray ok = "HTTP/1.1 200 OK\r\n\r\n";
        {
            Capture errors(stderr);
            QCOMPARE(converse(m_server->getPort(), "POST /go 7\r\n\r\n"), ok);
            QCOMPARE(errors.text(),
                     QByteArray("[Help] handleRequestPOST - no callback assigned\n"));
        }
        m_server->setRequestHandler(remember);
        QCOMPARE(converse(m_server->getPort(), "POST /go 7\r\n\r\n"), ok);
        QCOMPARE(lastCommand, QByteArray("go|7"));
        // A browser sends the body apart; what it says later must not destroy the answer.
        Client browser(m_server->getPort());
        browser.say("POST /frame HTTP/1.1\r\nContent-Length: 4\r\n\r\n");
        browser.say("body");
        QCOMPARE(browser.answer(), ok);
        QCOMPARE(lastCommand, QByteArray("frame|HTTP/1.1"));
        QTRY_VERIFY(m_server->findChildren<QTcpSocket*>().isEmpty());
    }

    void onlyTheFirstReadCounts() {
        m_site->put("p.html", "page");
        const QByteArray request = "GET /p.html HTTP/1.1\r\nHost: localhost\r\n\r\n";
        for (int cut = 1; cut < request.size(); ++cut) {
            Client client(m_server->getPort());
            client.say(request.left(cut));
            if (cut < 4) {
                QVERIFY(client.isIgnored());
                client.say(request.mid(cut));
                QVERIFY(client.isIgnored());
                client.say(request); // Each read is a request of its own.
            } else {
                client.say(request.mid(cut));
            }
            const bool whole = cut < 4 || cut > 11;
            // A Host that is cut short does not name this machine.
            const bool foreign =
                cut >= request.indexOf(": l") && cut < request.indexOf("t\r\n") + 1;
            QCOMPARE(client.answer().startsWith("HTTP/1.1 200"), whole && !foreign);
        }
    }

    void searchPath() {
        const std::string root = QCoreApplication::applicationDirPath().toStdString() + '/';
        HelpServer server("Pages");
        QCOMPARE(server.getName(), std::string("Pages"));
        QCOMPARE(server.getHost(), std::string("127.0.0.1"));
        QVERIFY(server.getSearchPath() == std::vector<std::string>{root});
        server.appendSearchPath({"/home/u/.nova"});
        QVERIFY(server.getSearchPath() ==
                (std::vector<std::string>{root, "/home/u/.nova/", "/home/u/.nova/Documentation/"}));
        server.setRelativePath("docs");
        QCOMPARE(server.getRelativePath(), std::string("docs/"));
        QVERIFY(server.getSearchPath() == (std::vector<std::string>{root, root + "docs/"}));
        server.clearSearchPath();
        QVERIFY(server.getSearchPath().empty());

        // The first directory that has the page wins.
        Site second;
        second.put("both.html", "2");
        second.put("second.html", "2");
        m_site->put("both.html", "1");
        m_server->appendSearchPath({second.path().c_str()});
        QVERIFY(converse(m_server->getPort(), "GET /both.html ").endsWith("1\r\n"));
        QVERIFY(converse(m_server->getPort(), "GET /second.html ").endsWith("2\r\n"));
    }

    void portSearch() {
        const quint16 port = freePorts(3);
        QTcpServer busy[2];
        HelpServer server;
        Capture errors(stderr);
        const auto failure = [](int first, int last) {
            return "[Help] failed. Port range busy: " + QByteArray::number(first) + '-' +
                   QByteArray::number(last) + '\n';
        };
        QVERIFY(busy[0].listen(QHostAddress::LocalHost, port));
        // The port beyond the range is tried and kept, and still it is a failure.
        QVERIFY(!server.start("127.0.0.1", port, 0));
        QVERIFY(!server.getStarted() && server.isListening());
        QCOMPARE(int(server.serverPort()), port + 1);
        QCOMPARE(int(server.getPort()), 0);
        QCOMPARE(errors.text(), failure(port, port));
        QVERIFY(server.start("127.0.0.1", port, 1));
        QCOMPARE(int(server.getPort()), port + 1);
        QVERIFY(!server.start("127.0.0.1", port + 2, 0));
        server.close();
        QVERIFY(!server.getStarted() && !server.isListening());
        QVERIFY(busy[1].listen(QHostAddress::LocalHost, quint16(port + 1)));
        QVERIFY(!server.start("127.0.0.1", port, 0));
        QVERIFY(!server.isListening());
        QVERIFY(server.start("127.0.0.1", port, 2));
        QCOMPARE(int(server.getPort()), port + 2);
        // Ports end at 65535: no wrap to port 0, which would mean any.
        HelpServer end;
        QVERIFY(!end.start("127.0.0.1", 65535, 1));
        QVERIFY(!end.isListening());
        QTcpServer top;
        const bool topFree = top.listen(QHostAddress::LocalHost, 65535);
        QVERIFY(!end.start("127.0.0.1", 65535, 0));
        QVERIFY(topFree && !end.isListening());
        QVERIFY(!end.start("no address", port, 0));
    }

    void verboseLog() {
        m_site->put("p.html", "page");
        m_site->put("i.gif", "GIF");
        m_server->setRequestHandler(remember);
        Capture output(stdout);
        HelpServer::setVerbose(true);
        {
            Capture errors(stderr);
            HelpServer other("Other"); // The flag is everybody's.
            other.close();
            for (const char* request :
                 {"GET /p.html ", "GET /i.gif ", "GET /x.html ", "POST /go 7\r", "PUT!"}) {
                Client client(m_server->getPort());
                client.say(request);
                client.turns();
            }
            Client::turns();
            QVERIFY(errors.text().startsWith("HelpServer::handleRequestHEADOrGET\n"));
            QVERIFY(errors.text().contains("[Help] handleRequestPOST\n"));
        }
        HelpServer::setVerbose(false);
        const QByteArray site = QByteArray::fromStdString(m_site->path());
        const auto request = [](const QByteArray& text) {
            return "\n[Help] handleRequest::::::::::::::::::::::::::::::\n\n" + text + "\n\n";
        };
        const QByteArray root = QCoreApplication::applicationDirPath().toUtf8() + '/';
        const QByteArray expected =
            "[Help] logging is verbose\n[Help] search path: \n" + root +
            "\n[Help] stopped [Other]\n" + request("GET /p.html ") +
            "[Help] node: p\n[Help] fileType: html\n[Help] file exists: " + site +
            "p.html\n[Help] wrote 50 bytes\n" + request("GET /i.gif ") +
            "[Help] node: i\n[Help] fileType: gif\n[Help] file exists: " + site +
            "i.gif\n[Help] sendImage wrote 17, 25, 19, 2, 3 bytes\n" + request("GET /x.html ") +
            "[Help] node: x\n[Help] fileType: html\n[Help] file not found: " + site +
            "x.html\n[Help] sendPageNotFound\n" + request("POST /go 7\r") +
            "[Help] handleRequestPOST - Command go - Arg 7\n" + request("PUT!") +
            "[Help] handleRequest error detecting request type\n[Help] logging is off\n";
        QCOMPARE(output.text(), expected);
    }

    void verboseByEnvironment() {
        for (const char* value : {"0", "11", "yes", "1"}) {
            qputenv("HELP_VERBOSE", value);
            Capture output(stdout);
            HelpServer server;
            QCOMPARE(output.text().startsWith("[Help] search path: \n"),
                     *value == '1' && !value[1]);
        }
        qunsetenv("HELP_VERBOSE");
    }

private:
    const QByteArray m_page{"<p>\0hi", 6};
    std::unique_ptr<Site> m_site;
    std::unique_ptr<HelpServer> m_server;
};

KXUI_TEST(HelpServerTest);
#include "HelpServerTest.moc"
