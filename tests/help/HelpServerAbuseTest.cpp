#include "HelpFixture.h"

#include <KxUI/help/HelpSeats_p.h>
#include <KxUI/help/HelpServer.h>

#include <support/TestRegistry.h>

#include <functional>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>

using namespace Kestrel::Test;
using namespace std::chrono_literals;
using Kestrel::UI::Help::HelpConnection;

namespace {

int commands = 0;
std::function<void()> duringCommand;

void runCommand(std::string, std::string) {
    ++commands;
    if (const auto action = std::exchange(duringCommand, nullptr))
        action();
}

const QByteArray goodRequest = "GET /page.html HTTP/1.1\r\nHost: localhost\r\n\r\n";

} // namespace

class HelpServerAbuseTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        commands = 0;
        m_site = std::make_unique<Site>();
        m_site->put("page.html", "PAGE");
        m_server = new Kestrel::UI::HelpServer;
        m_server->clearSearchPath();
        m_server->appendSearchPath({m_site->path().c_str()});
        m_server->setRequestHandler(runCommand);
        QVERIFY(m_server->start("127.0.0.1", 0, 0));
    }
    void cleanup() { delete m_server.data(); }

    void hostileRequests() {
        QDir(m_site->file("")).mkdir(QStringLiteral("folder.html"));
        QCOMPARE(mkfifo(qPrintable(m_site->file("pipe.html")), 0600), 0);
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), m_site->file("zero.html")));
        QVERIFY(QFile::link(m_site->file("page.html"), m_site->file("link.html")));

        limits().silence = 10ms;
        for (const QByteArray& line : table("hostile.txt")) {
            const QByteArray request = line.mid(9);
            QCOMPARE(outcome(unescaped(request)) + ": " + request,
                     line.left(8).trimmed() + ": " + request);
            QCOMPARE(outcome(goodRequest), "page");
        }
        QCOMPARE(commands, 0);
    }

    void whoSitsIdleIsClosed() {
        m_site->put("big.html", QByteArray(16 << 20, 'b'));
        // Who says nothing is not even accepted for a while, where the system knows how.
        m_server->close();
        limits().heldBack = 0s;
        QVERIFY(m_server->start("127.0.0.1", 0, 0));
        Client silent(m_server->getPort());
        Client unknown(m_server->getPort());
        unknown.say("BREW /coffee ");
        Client lingering(m_server->getPort());
        lingering.say("POST /go 7\r\n\r\n");
        Client lazy(m_server->getPort());
        lazy.setReadBufferSize(1);
        lazy.say("GET /big.html \r\n\r\n");
        limits().idle = limits().linger = 1ms;
        QTRY_VERIFY(m_server->findChildren<HelpConnection*>().isEmpty());
        QCOMPARE(silent.answer() + unknown.answer(), QByteArray());
        QCOMPARE(lingering.answer(), "HTTP/1.1 200 OK\r\n\r\n");
    }

    void slowWriter() {
        limits().requestBytes = 100;
        Client client(m_server->getPort());
        for (int sent = 0; sent < 100; ++sent)
            client.say("x");
        QVERIFY(client.isIgnored());
        client.say("x");
        QCOMPARE(client.answer(), QByteArray());
    }

    void flood() {
        std::vector<std::unique_ptr<Client>> clients;
        for (int i = 0; i < 200; ++i)
            clients.push_back(std::make_unique<Client>(m_server->getPort()));
        for (std::size_t i = 1; i < clients.size(); i += 2) // The others ask nothing.
            clients[i]->write(goodRequest);
        for (std::size_t i = 1; i < clients.size(); i += 2) {
            QVERIFY(clients[i]->answer().endsWith("PAGE\r\n"));
            QVERIFY(m_server->findChildren<HelpConnection*>().size() <= 64);
        }
    }

    void withoutDescriptors() {
        Client client(m_server->getPort());
        client.write(goodRequest);
        QVERIFY(client.waitForBytesWritten());
        int failures = 0;
        connect(m_server, &QTcpServer::acceptError, this, [&] { ++failures; });
        rlimit before{};
        getrlimit(RLIMIT_NOFILE, &before);
        const int free = dup(0);
        close(free);
        const rlimit none{static_cast<rlim_t>(free), before.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
        for (int turn = 0; turn < 100; ++turn)
            Client::turns();
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
        QVERIFY(failures >= 1 && failures < 50); // It must not spin on the waiting client.
        QVERIFY(client.answer().endsWith("PAGE\r\n"));
    }

    // A long body goes out as the client takes it, also to one that has ended its sending half.
    void longBody() {
        QByteArray body(12'345'678, 0);
        for (int i = 0; i < body.size(); ++i)
            body[i] = static_cast<char>(i * 31 >> 4);
        for (const char* name : {"big.html", "big.jpg"}) {
            m_site->put(name, body);
            Client client(m_server->getPort());
            client.setReadBufferSize(200'000);
            client.say(QByteArray("GET /") + name + " \r\n\r\n");
            ::shutdown(static_cast<int>(client.socketDescriptor()), SHUT_WR);
            QByteArray answer;
            while (client.state() != QAbstractSocket::UnconnectedState) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
                answer += client.readAll();
            }
            const int start = int(answer.indexOf("\r\n\r\n") + 4);
            QVERIFY(answer.mid(start) == body + (name[4] == 'h' ? "\r\n" : ""));
        }
        // A client that breaks off leaves nothing behind.
        Client rude(m_server->getPort());
        rude.say("GET /big.html ");
        rude.abort();
        QTRY_VERIFY(m_server->findChildren<HelpConnection*>().isEmpty());
    }

    void callbackWithItsOwnEventLoop() {
        limits().sweep = 1ms;
        Client client(m_server->getPort());
        duringCommand = [&] {
            client.abort();
            limits().idle = 0ms;
            QTest::qWait(20); // The connection is overdue, and its client has left.
            limits() = {};
            QCOMPARE(outcome(goodRequest), "page");
        };
        client.say("POST /dialog now\r\n\r\n");
        QCOMPARE(commands, 1);
        QTRY_VERIFY(m_server->findChildren<HelpConnection*>().isEmpty());
    }

    void callbackThatRetiresTheServer() {
        duringCommand = [&] {
            m_server->retire();
            Client::turns();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(m_server && !m_server->isListening());
        };
        QCOMPARE(converse(m_server->getPort(), "POST /go 7"), "HTTP/1.1 200 OK\r\n\r\n");
        QTRY_VERIFY(!m_server);
    }

private:
    Kestrel::UI::Help::Limits& limits() {
        return m_server->findChild<Kestrel::UI::Help::HelpSeats*>()->settings;
    }

    QByteArray outcome(const QByteArray& request) {
        Client client(m_server->getPort());
        client.say(request);
        if (client.isIgnored())
            QTest::qWait(50); // Longer than what ends a request without a blank line.
        if (client.isIgnored())
            return "silence";
        const QByteArray answer = client.answer();
        if (answer.contains("SECRET") || answer.contains("root:") || answer.contains("<script>"))
            return "breach";
        if (answer.isEmpty())
            return "closed";
        if (answer.startsWith("HTTP/1.1 404 "))
            return "404";
        return answer.mid(44) == "PAGE\r\n" ? "page" : answer;
    }

    std::unique_ptr<Site> m_site;
    QPointer<Kestrel::UI::HelpServer> m_server;
};

KXUI_TEST(HelpServerAbuseTest);
#include "HelpServerAbuseTest.moc"
