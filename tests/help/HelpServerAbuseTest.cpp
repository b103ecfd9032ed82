#include "HelpFixture.h"

#include <KxUI/help/HelpSeats_p.h>
#include <KxUI/help/HelpServer.h>

#include <support/TestRegistry.h>

#include <QPointer>
#include <QScopeGuard>

#include <functional>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>

using namespace Kestrel::Test;
using Kestrel::UI::HelpServer;
using namespace std::chrono_literals;

namespace {

int commands = 0;
std::function<void()> duringCommand;

void runCommand(std::string, std::string) {
    ++commands;
    if (const auto action = std::exchange(duringCommand, nullptr))
        action();
}

const QByteArray goodRequest = "GET /page.html HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";

} // namespace

class HelpServerAbuseTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        commands = 0;
        duringCommand = nullptr;
        m_site = std::make_unique<Site>();
        m_site->put("page.html", "PAGE");
        m_server = new HelpServer;
        m_server->clearSearchPath();
        m_server->appendSearchPath({m_site->path().c_str()});
        m_server->setRequestHandler(runCommand);
        QVERIFY(m_server->start("127.0.0.1", 0, 0));
    }
    void cleanup() { delete m_server.data(); }

    // '2' the page, '4' the not-found page, '-' silence on an open connection, 'x' a closed one.
    void hostileRequests_data() {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<char>("expected");
        const auto raw = [](const char* name, const QByteArray& request, char expected) {
            QTest::newRow(QByteArray(name).toPercentEncoding(" /\\:;<>()?*,"))
                << request << expected;
        };
        const auto get = [&](const QByteArray& path, char expected) {
            raw(path.left(60), "GET " + path + " HTTP/1.1\r\nHost: localhost\r\n\r\n", expected);
        };
        for (const char* path : {"/../secret.html",
                                 "/a/../../secret.html",
                                 "/..//secret.html",
                                 "/./../secret.html",
                                 "//../secret.html",
                                 "/../site/page.html",
                                 "/page.html/../../secret.html",
                                 "/..",
                                 "/%2e%2e/secret.html",
                                 "/..%2fsecret.html",
                                 "/%2e%2e%2fsecret.html",
                                 "/%252e%252e/secret.html",
                                 "/..%00/secret.html",
                                 "/..%c0%afsecret.html",
                                 "/\xc0\xae\xc0\xae/secret.html",
                                 "/..\\secret.html",
                                 "/\\..\\secret.html",
                                 "\\..\\secret.html/",
                                 "/..;/secret.html",
                                 "/.../secret.html",
                                 "//etc/passwd",
                                 "/etc/passwd",
                                 "/~root/x.html",
                                 "/C:/secret.html",
                                 "http://127.0.0.1/../secret.html",
                                 "file:///etc/passwd",
                                 "/page.html/",
                                 "/PAGE.HTML",
                                 "/page.html#top",
                                 "/page.html%00",
                                 "/folder.html",
                                 "/pipe.html",
                                 "/zero.html",
                                 "/%s%n%x.html",
                                 "/a%0d%0aX:%201",
                                 "/<script>alert(1)</script>"})
            get(path, '4');
        for (const char* path : {"//page.html", "/./page.html", "/page.html?/../../secret.html",
                                 "/link.html", "\\../page.html"})
            get(path, '2');
        get('/' + QByteArray(10000, 'a') + ".html", '4');
        get(QByteArray(10000, '/') + "x.html", '4');
        get('/' + QByteArray("../").repeated(3000) + "secret.html", '4');
        raw("zero byte in the path", QByteArray("GET /page.html\0.png HTTP/1.1\r\n\r\n", 31), '4');
        raw("zero byte first", QByteArray("\0GET /page.html HTTP/1.1\r\n\r\n", 27), '-');
        raw("HEAD without a blank", "HEAD/../secret.html HTTP/1.1\r\n\r\n", '4');
        for (const char* noise :
             {"OPTIONS / HTTP/1.1\r\n\r\n", "DELETE /page.html HTTP/1.1\r\n\r\n", "GET",
              "CONNECT evil.example:443 HTTP/1.1\r\n\r\n", "get /page.html HTTP/1.1\r\n\r\n",
              "GET\t/page.html HTTP/1.1\r\n\r\n", "\r\n\r\nGET /page.html HTTP/1.1\r\n\r\n",
              "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", "\x16\x03\x01\x02\xfc\x03\x03", "\xff\xfe\xfd"})
            raw(noise, noise, '-');
        raw("two at once", goodRequest + goodRequest, '2');
        raw("big head", goodRequest.chopped(2) + "X: " + QByteArray(60000, 'x') + "\r\n\r\n", '2');
        raw("bigger head", goodRequest.chopped(2) + "X: " + QByteArray(66000, 'x') + "\r\n\r\n",
            'x');
        raw("huge body", "POST /go 7\r\n\r\n" + QByteArray(1 << 20, 'x'), 'x');
        for (const char* header :
             {"Host: evil.example", "Host: localhost.evil.example:80", "Host: 127.0.0.1@evil",
              "Origin: http://evil.example", "Origin: null", "Origin: http://127.0.0.1:1",
              "Sec-Fetch-Site: cross-site", "Sec-Fetch-Site: same-site", "hOST:evil.example"})
            raw(header, QByteArray("POST /go HTTP/1.1\r\n") + header + "\r\n\r\n", '4');
        raw("rebound name", "GET /page.html HTTP/1.1\r\nHost: evil.example\r\n\r\n", '4');
    }
    void hostileRequests() {
        QFETCH(QByteArray, request);
        QFETCH(char, expected);
        QDir(m_site->file("")).mkdir(QStringLiteral("folder.html"));
        QCOMPARE(mkfifo(qPrintable(m_site->file("pipe.html")), 0600), 0);
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), m_site->file("zero.html")));
        QVERIFY(QFile::link(m_site->file("page.html"), m_site->file("link.html")));

        Client client(m_server->getPort());
        client.say(request);
        if (expected == '-') {
            QVERIFY(client.isIgnored());
        } else {
            const QByteArray answer = client.answer();
            QVERIFY(!answer.contains("SECRET") && !answer.contains("root:"));
            QVERIFY(!answer.contains("<script>"));
            if (expected == 'x')
                QCOMPARE(answer, QByteArray());
            else if (expected == '4')
                QVERIFY(answer.startsWith("HTTP/1.1 404 "));
            else
                QCOMPARE(answer.mid(44), QByteArray("PAGE\r\n"));
        }
        QCOMPARE(commands, 0);
        QVERIFY(isAlive());
    }

    void unreadableFiles() {
        m_site->put("page.png", "PNG");
        for (const char* name : {"page.html", "page.png"})
            QFile::setPermissions(m_site->file(name), {});
        const bool isRoot = geteuid() == 0;
        if (isRoot) { // Root reads everything; nobody does not.
            chmod(qPrintable(m_site->file("..")), 0755);
            QCOMPARE(seteuid(65534), 0);
        }
        const auto again = qScopeGuard([&] { isRoot&& seteuid(0); });
        QVERIFY(converse(m_server->getPort(), goodRequest).endsWith("text/html\r\n\r\n\r\n"));
        Client client(m_server->getPort());
        client.say("GET /page.png ");
        QVERIFY(client.isIgnored());
    }

    void sitsOutTheIdle() {
        limits().idle = limits().linger = limits().sweep = 1ms;
        m_site->put("big.html", QByteArray(16 << 20, 'b'));
        Client silent(m_server->getPort());
        Client unknown(m_server->getPort());
        unknown.say("BREW /coffee ");
        Client lingering(m_server->getPort());
        lingering.say("POST /go 7");
        Client lazy(m_server->getPort());
        lazy.setReadBufferSize(1);
        lazy.say("GET /big.html ");
        QTRY_VERIFY(m_server->findChildren<QTcpSocket*>().isEmpty());
        QCOMPARE(silent.answer(), QByteArray());
        QCOMPARE(unknown.answer(), QByteArray());
        QCOMPARE(lingering.answer(), QByteArray("HTTP/1.1 200 OK\r\n\r\n"));
        limits() = {};
        QVERIFY(isAlive());
    }

    void slowWriter() {
        limits().requestBytes = 100;
        Client client(m_server->getPort());
        for (int sent = 0; sent < 100; ++sent) {
            QCOMPARE(client.state(), QAbstractSocket::ConnectedState);
            client.say("x");
        }
        client.say("x");
        QCOMPARE(client.answer(), QByteArray());
    }

    void flood() {
        std::vector<std::unique_ptr<Client>> clients;
        for (int i = 0; i < 100; ++i) {
            clients.push_back(std::make_unique<Client>(m_server->getPort())); // Asks nothing.
            clients.push_back(std::make_unique<Client>(m_server->getPort()));
            clients.back()->write(goodRequest);
        }
        for (std::size_t i = 1; i < clients.size(); i += 2) {
            QVERIFY(clients[i]->answer().endsWith("PAGE\r\n"));
            QVERIFY(m_server->findChildren<QTcpSocket*>().size() <= 64);
        }
    }

    void withoutDescriptors() {
        Client first(m_server->getPort());
        Client second(m_server->getPort());
        rlimit before{};
        getrlimit(RLIMIT_NOFILE, &before);
        const int free = dup(0);
        close(free);
        rlimit none = before;
        none.rlim_cur = static_cast<rlim_t>(free);
        int failures = 0;
        connect(m_server, &QTcpServer::acceptError, this, [&] { ++failures; });
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
        for (int turn = 0; turn < 100; ++turn)
            Client::turns();
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
        QVERIFY(failures >= 1 && failures < 50); // It must not spin on the waiting clients.
        first.say(goodRequest);
        QVERIFY(first.answer().endsWith("PAGE\r\n"));
        QVERIFY(isAlive());
    }

    // A long body goes out as the client takes it, also to one that has ended its sending half.
    void longBody() {
        QByteArray body(12'345'678, 0);
        for (int i = 0; i < body.size(); ++i)
            body[i] = static_cast<char>(i * 31 >> 4);
        m_site->put("big.html", body);
        m_site->put("big.jpg", body);
        for (const char* name : {"big.html", "big.jpg"}) {
            Client client(m_server->getPort());
            client.setReadBufferSize(200'000);
            client.say(QByteArray("GET /") + name + " \r\n\r\n");
            ::shutdown(static_cast<int>(client.socketDescriptor()), SHUT_WR);
            QByteArray answer;
            bool isBounded = true;
            while (client.state() != QAbstractSocket::UnconnectedState) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
                answer += client.readAll();
                for (const auto* connection : m_server->findChildren<QTcpSocket*>())
                    isBounded = isBounded && connection->bytesToWrite() <= 2 * 65536 + 100;
            }
            QVERIFY(isBounded);
            const int head = answer.indexOf("\r\n\r\n") + 4;
            const QByteArray tail = name == QByteArray("big.html") ? "\r\n" : "";
            QVERIFY(answer.mid(head) == body + tail);
        }
        // A client that breaks off leaves nothing behind.
        Client rude(m_server->getPort());
        rude.say("GET /big.html ");
        rude.abort();
        QTRY_VERIFY(m_server->findChildren<QTcpSocket*>().isEmpty());
        // What becomes shorter on its way ends the connection early.
        Client robbed(m_server->getPort());
        robbed.setReadBufferSize(1000);
        robbed.say("GET /big.jpg ");
        QFile::resize(m_site->file("big.jpg"), 1);
        robbed.setReadBufferSize(0);
        QVERIFY(robbed.answer().size() < body.size());
    }

    void callbackWithItsOwnEventLoop() {
        Client client(m_server->getPort());
        QByteArray nested;
        duringCommand = [&] {
            client.abort();
            limits().idle = 0ms;
            for (int turn = 0; turn < 20; ++turn)
                Client::turns();
            limits() = {};
            nested = converse(m_server->getPort(), goodRequest);
        };
        client.say("POST /dialog now\r\n\r\n");
        QCOMPARE(commands, 1);
        QVERIFY(nested.endsWith("PAGE\r\n"));
        QVERIFY(isAlive());
        QTRY_VERIFY(m_server->findChildren<QTcpSocket*>().isEmpty());
    }

    void callbackThatRetiresTheServer() {
        Client client(m_server->getPort());
        duringCommand = [&] {
            m_server->retire();
            Client::turns();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(m_server && !m_server->isListening());
        };
        client.say("POST /go 7\r\n\r\n");
        QCOMPARE(client.answer(), QByteArray("HTTP/1.1 200 OK\r\n\r\n"));
        QTRY_VERIFY(!m_server);
    }

private:
    Kestrel::UI::Help::Limits& limits() {
        return m_server->findChild<Kestrel::UI::Help::HelpSeats*>()->limits;
    }
    bool isAlive() { return converse(m_server->getPort(), goodRequest).endsWith("PAGE\r\n"); }

    std::unique_ptr<Site> m_site;
    QPointer<HelpServer> m_server;
};

KXUI_TEST(HelpServerAbuseTest);
#include "HelpServerAbuseTest.moc"
