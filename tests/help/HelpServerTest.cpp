#include "HelpFixture.h"

#include <KxUI/help/HelpServer.h>

#include <support/TestRegistry.h>

#include <sys/socket.h>

using namespace Kestrel::Test;
using Kestrel::UI::HelpServer;

namespace {

QByteArray lastCommand;

void remember(std::string command, std::string argument) {
    lastCommand = QByteArray::fromStdString(command + '|' + argument);
}

const QByteArray done = "HTTP/1.1 200 OK\r\n\r\n";

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
    void cleanup() { m_server.reset(); }

    void conversations() {
        m_server->setRequestHandler(remember);
        m_site->put("page.html", {"<p>\0hi", 6});
        m_site->put("a.css", "c");
        m_site->put("empty.js", "");
        m_site->put("index.", "dot");
        m_site->put("Documentation/b.xml", "x");
        m_site->put("i.png", "\x89PNG\n");
        for (const QByteArray& line : table("conversations.txt")) {
            const int arrow = line.indexOf(" -> ");
            const QByteArray answer = converse(m_server->getPort(), unescaped(line.left(arrow)));
            QVERIFY2(answer == unescaped(line.mid(arrow + 4)), line + ", not " + answer);
        }
    }

    void commands() {
        {
            Capture errors(stderr);
            QCOMPARE(converse(m_server->getPort(), "POST /go 7\r\n\r\n"), done);
            QCOMPARE(errors.text(), "[Help] handleRequestPOST - no callback assigned\n");
        }
        m_server->setRequestHandler(remember);
        // A browser sends the body apart. Speaking to a connection that has been closed already can
        // cost it the answer.
        Client opener(m_server->getPort());
        const int browser = ::dup(static_cast<int>(opener.socketDescriptor()));
        opener.abort();
        for (const std::string part :
             {"POST /go HTTP/1.1\r\nContent-Length: 4\r\n\r\n", "bo", "dy"}) {
            QCOMPARE(::send(browser, part.data(), part.size(), MSG_NOSIGNAL), ssize_t(part.size()));
            Client::turns();
        }
        QByteArray answer(100, 0);
        answer.resize(int(::recv(browser, answer.data(), 100, 0)));
        QCOMPARE(answer, done);
        QCOMPARE(::recv(browser, answer.data(), 100, 0), ssize_t(0));
        QCOMPARE(lastCommand, "go|HTTP/1.1");
        ::close(browser);
        QTRY_VERIFY(m_server->findChildren<QTcpSocket*>().isEmpty());
    }

    void eachReadIsARequest() {
        m_site->put("p.html", "page");
        const QByteArray request = "GET /p.html HTTP/1.1\r\nHost: localhost\r\n\r\n";
        for (int cut = 1; cut < request.size(); ++cut) {
            Client client(m_server->getPort());
            client.say(request.left(cut));
            client.say(request.mid(cut));
            if (cut < 4) { // Neither part begins with a method.
                QVERIFY(client.isIgnored());
                client.say(request);
            }
            // A Host that is cut short does not name this machine.
            const bool isForeign = cut >= request.indexOf(": l") && cut < request.indexOf("\r\n\r");
            QCOMPARE(client.answer().startsWith("HTTP/1.1 200"),
                     cut < 4 || (cut > request.indexOf(" H") && !isForeign));
        }
    }

    void searchPath() {
        using Paths = std::vector<std::string>;
        const std::string root = QCoreApplication::applicationDirPath().toStdString() + '/';
        HelpServer server;
        QVERIFY(server.getName() == "Local" && server.getHost() == "127.0.0.1");
        server.appendSearchPath({"/home/u/.nova"});
        QVERIFY(server.getSearchPath() ==
                (Paths{root, "/home/u/.nova/", "/home/u/.nova/Documentation/"}));
        server.setRelativePath("docs");
        QVERIFY(server.getSearchPath() == (Paths{root, root + "docs/"}));
        // The first directory that has the page wins.
        const Site second;
        second.put("both.html", "2");
        second.put("second.html", "2");
        m_site->put("both.html", "1");
        m_server->appendSearchPath({second.path().c_str()});
        QVERIFY(converse(m_server->getPort(), "GET /both.html ").endsWith("1\r\n"));
        QVERIFY(converse(m_server->getPort(), "GET /second.html ").endsWith("2\r\n"));
    }

    void portSearch() {
        QTcpServer busy, next, top;
        do { // Two free neighbours, of which one is taken.
            busy.close();
            busy.listen(QHostAddress::LocalHost);
        } while (!next.listen(QHostAddress::LocalHost, quint16(busy.serverPort() + 1)));
        next.close();
        const int port = busy.serverPort();
        HelpServer server;
        Capture errors(stderr);
        // The port beyond the range is tried and kept, and still it is a failure.
        QVERIFY(!server.start("127.0.0.1", port, 0));
        QVERIFY(!server.getStarted() && server.serverPort() == port + 1 && server.getPort() == 0);
        const QByteArray number = QByteArray::number(port);
        QCOMPARE(errors.text(), "[Help] failed. Port range busy: " + number + '-' + number + '\n');
        QVERIFY(server.start("127.0.0.1", port, 1));
        QCOMPARE(int(server.getPort()), port + 1);
        QVERIFY(!server.start("127.0.0.1", port + 2, 0)); // Started already.
        server.close();
        QVERIFY(!server.getStarted() && !server.isListening());
        QVERIFY(next.listen(QHostAddress::LocalHost, quint16(port + 1)));
        QVERIFY(!server.start("127.0.0.1", port, 0));
        // Ports end at 65535: no wrap to port 0, which would mean any.
        QVERIFY(!server.start("127.0.0.1", 65535, 1));
        top.listen(QHostAddress::LocalHost, 65535);
        QVERIFY(!server.start("127.0.0.1", 65535, 0));
        QVERIFY(!server.start("no address", port, 0));
        QVERIFY(!server.isListening());
    }

    void verboseLog() {
        m_site->put("p.html", "page");
        m_site->put("i.gif", "GIF");
        m_server->setRequestHandler(remember);
        Capture output(stdout);
        Capture errors(stderr);
        for (const char* value : {"0", "11", "yes", "1"}) {
            qputenv("HELP_VERBOSE", value);
            HelpServer("Other").close(); // The flag is everybody's.
        }
        qunsetenv("HELP_VERBOSE");
        for (const char* request :
             {"GET /p.html ", "GET /i.gif ", "GET /x.html ", "POST /go 7", "PUT!"})
            Client(m_server->getPort()).say(request);
        Client::turns();
        HelpServer::setVerbose(false);
        const QByteArray errorText = errors.text();
        QVERIFY(errorText.startsWith("HelpServer::handleRequestHEADOrGET\n") &&
                errorText.contains("[Help] handleRequestPOST\n"));
        QByteArray text = output.text();
        text.replace(QCoreApplication::applicationDirPath().toUtf8(), "@ROOT@");
        text.replace(QByteArray::fromStdString(m_site->path()), "@SITE@/");
        QCOMPARE(text, testData("server.log"));
    }

private:
    std::unique_ptr<Site> m_site;
    std::unique_ptr<HelpServer> m_server;
};

KXUI_TEST(HelpServerTest);
#include "HelpServerTest.moc"
