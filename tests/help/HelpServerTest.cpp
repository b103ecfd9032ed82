#include "HelpFixture.h"

#include <KxUI/help/HelpConnection_p.h>
#include <KxUI/help/HelpServer.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <sys/socket.h>

using namespace Kestrel::Test;
using Kestrel::UI::HelpServer;
using Kestrel::UI::Help::HelpConnection;

namespace {

QByteArray lastCommand;

int commandsRun = 0;

void remember(std::string command, std::string argument) {
    ++commandsRun;
    lastCommand = QByteArray::fromStdString(command + '|' + argument);
}

const QByteArray done = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n";
const QByteArray bareDone = "HTTP/1.1 200 OK\r\n\r\n";

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
            const int arrow = int(line.indexOf(" -> "));
            const QByteArray answer = converse(m_server->getPort(), unescaped(line.left(arrow)));
            QVERIFY2(answer == unescaped(line.mid(arrow + 4)), line + ", not " + answer);
        }
    }

    void commands() {
        {
            Capture errors(stderr);
            QCOMPARE(converse(m_server->getPort(), "POST /go 7\r\n\r\n"), bareDone);
            QCOMPARE(errors.text(), "[Help] handleRequestPOST - no callback assigned\n");
        }
        {
            Capture errors(stderr);
            const QSignalSpy told(m_server.get(), &HelpServer::commandReceived);
            QCOMPARE(converse(m_server->getPort(), "POST /gr\xc3\xbc n 7\r\n\r\n"), bareDone);
            QCOMPARE(told.count(), 1);
            QCOMPARE(told.first(), QVariantList({QString::fromUtf8("gr\xc3\xbc"), "n 7"}));
            QCOMPARE(errors.text(), QByteArray());
        }
        m_server->setRequestHandler(remember);
        // The end of what a client has to say ends its request.
        Client brief(m_server->getPort());
        brief.write("POST /go 8");
        QVERIFY(brief.waitForBytesWritten());
        ::shutdown(static_cast<int>(brief.socketDescriptor()), SHUT_WR);
        QCOMPARE(brief.answer(), bareDone);
        QCOMPARE(lastCommand, "go|8");
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
        QTRY_VERIFY(m_server->findChildren<HelpConnection*>().isEmpty());
    }

    // Cut at any place and at any pair of places, a request is answered as if it came whole.
    void cuts_data() {
        const Columns<QByteArray, QByteArray, int> row("request", "answer", "commands");
        const QByteArray no = "HTTP/1.1 404 Not Found";
        const QByteArray page = "HTTP/1.1 200 OK\r\nContent-Type";
        row("own", "POST /go HTTP/1.1\r\nHost: localhost\r\n\r\n", done, 1);
        row("Origin", "POST /go HTTP/1.1\r\nA: b\r\nOrigin: null\r\n\r\n", no, 0);
        row("Sec-Fetch-Site", "POST /go HTTP/1.1\nSec-Fetch-Site: cross-site\n\n", no, 0);
        row("Host", "GET /p.html HTTP/1.1\r\nHost: evil\r\n\r\n", no, 0);
        row("page", "GET /p.html HTTP/1.0\r\nHost: [::1]\r\n\r\n", page, 0);
        row("bare page", "GET /p.html ", page, 0);
        row("bare", "POST /go 12", bareDone, 1);
        row("bare, foreign", "POST /go 1\r\nOrigin: x\r\n", no, 0);
        row("no method", "PUT /x\nGET / \n\n", "", 0);
    }

    void cuts() {
        QFETCH(QByteArray, request);
        QFETCH(QByteArray, answer);
        QFETCH(int, commands);
        m_site->put("p.html", "page");
        m_server->setRequestHandler(remember);
        const bool isWhole = request.endsWith("\n\n") || request.endsWith("\n\r\n");
        std::vector<std::unique_ptr<Client>> clients;
        QByteArrayList wrong;
        const auto settle = [&] {
            if (answer.isEmpty()) // What is wrong would be there at once, or after the silence.
                QTest::qWait(200);
            for (const auto& client : clients) {
                const QByteArray got = answer.isEmpty() ? client->readAll() : client->answer();
                if (got.isEmpty() != answer.isEmpty() || !got.startsWith(answer))
                    wrong << got;
            }
            clients.clear();
        };
        commandsRun = 0;
        int conversations = 0;
        for (int first = 0; first < request.size(); ++first) {
            for (int second = first; second < request.size(); ++second, ++conversations) {
                clients.push_back(std::make_unique<Client>(m_server->getPort()));
                for (const QByteArray& part :
                     {request.left(first), request.mid(first, second - first), request.mid(second)})
                    if (!part.isEmpty())
                        clients.back()->say(part);
                // Those who wait for the silence wait together.
                if ((isWhole && !answer.isEmpty()) || clients.size() == 50)
                    settle();
            }
        }
        settle();
        QVERIFY2(wrong.isEmpty(), QByteArray::number(wrong.size()) + ", as " + wrong.value(0));
        QCOMPARE(commandsRun, commands * conversations);
    }

    // Qt's own client repeats a request whose answer it takes for a failure.
    void commandsRunOnce() {
        m_server->setRequestHandler(remember);
        commandsRun = 0;
        QNetworkAccessManager network;
        QNetworkRequest request(
            QUrl(QStringLiteral("http://127.0.0.1:%1/go").arg(m_server->getPort())));
        request.setHeader(QNetworkRequest::ContentTypeHeader, "text/plain");
        std::vector<std::unique_ptr<QNetworkReply>> replies;
        for (int sent = 0; sent < 60; ++sent)
            replies.emplace_back(network.post(request, QByteArray("body")));
        for (const auto& reply : replies) {
            QTRY_VERIFY(reply->isFinished());
            QCOMPARE(reply->error(), QNetworkReply::NoError);
        }
        QCOMPARE(commandsRun, 60);
        QCOMPARE(lastCommand, "go|HTTP/1.1");
    }

    void searchPath() {
        using Paths = std::vector<std::string>;
        const std::string root = QCoreApplication::applicationDirPath().toStdString() + '/';
        HelpServer server;
        QVERIFY(server.getName() == "Local" && server.getHost() == "127.0.0.1");
        server.appendSearchPath({"/home/u/.nova"});
        QVERIFY(server.searchPath() ==
                (Paths{root, "/home/u/.nova/", "/home/u/.nova/Documentation/"}));
        server.setRelativePath("docs");
        QVERIFY(server.searchPath() == (Paths{root, root + "docs/"}));
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
        for (const char* request : {"GET /p.html ", "GET /i.gif ", "GET /x.html ", "POST /go 7"})
            converse(m_server->getPort(), request);
        Client(m_server->getPort()).say("PUT!");
        QTRY_VERIFY(output.text().contains("error detecting"));
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
