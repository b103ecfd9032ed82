#include "HelpFixture.h"

#include <KxUI/help/HelpManager.h>

#include <support/TestRegistry.h>

#include <functional>

using namespace Kestrel::Test;
using namespace Kestrel::UI;

namespace {

std::function<void()> duringCommand;

std::string url(int port, const char* node) {
    return "http://127.0.0.1:" + std::to_string(port) + "/Documentation/html/" + node;
}

} // namespace

class HelpManagerTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_manager = HelpManager::instance();
        for (const Site* site : {&m_localSite, &m_remoteSite})
            site->put("Documentation/html/both.html", "");
        m_localSite.put("Documentation/html/local.html", "");
        m_remoteSite.put("Documentation/html/remote.html", "");
        m_manager->setSearchPath({m_localSite.path().c_str()});
        m_manager->setRequestHandler([](std::string, std::string) { duringCommand(); });
        m_remote = std::make_unique<HelpServer>("Remote");
        m_remote->appendSearchPath({m_remoteSite.path().c_str()});
        QVERIFY(m_remote->start("127.0.0.1", 0, 0));
    }
    void cleanup() { HelpManager::Destroy(); }

    void remoteNodesAndFallBack() {
        useRemote(m_remote->getPort());
        for (const char* node : {"both.html", "local.html", "remote.html", "missing.html"})
            m_manager->checkNode(node);
        const int local = localServer()->getPort();
        const int remote = m_remote->getPort();
        QTRY_COMPARE(m_manager->getUrl("both.html"), url(remote, "both.html"));
        QTRY_COMPARE(m_manager->getUrl("both.html", 0), url(local, "both.html"));
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(local, "local.html"));
        QTRY_COMPARE(m_manager->getUrl("remote.html"), url(remote, "remote.html"));
        QTRY_VERIFY(says("missing.html", "not found on Custom"));
        QTRY_VERIFY(says("missing.html", "not found on Local"));
        QCOMPARE(m_manager->getUrl("missing.html"), std::string());
        QCOMPARE(m_manager->getUrl("missing.html", 0, true), url(local, "missing.html"));
        QCOMPARE(m_manager->getUrl("unchecked.html"), std::string());
        // A remote that has gone has nothing; what is known of the local one stays.
        m_remote->close();
        QVERIFY(m_manager->setHelpServer(HelpManager::CurrentServer));
        QTRY_VERIFY(says("both.html", "not found on Custom"));
        QCOMPARE(m_manager->getUrl("both.html"), url(local, "both.html"));
        m_manager->setLocalPathPrefix("site/");
        m_manager->setCommonPath("html/");
        QCOMPARE(m_manager->getUrl("both.html"),
                 "http://127.0.0.1:" + std::to_string(local) + "/site/html/both.html");
        QCOMPARE(HelpManager::GenerateAddress("h", 80, "", "n"), std::string("http://h/n"));
    }

    void lateAndMissingReplies() {
        QTcpServer mute;
        std::unique_ptr<QTcpSocket> asked;
        const auto awaitRequest = [&] {
            QTRY_VERIFY(mute.hasPendingConnections());
            asked.reset(mute.nextPendingConnection());
            QTRY_VERIFY(asked->bytesAvailable() > 0);
            QVERIFY(asked->readAll().startsWith("HEAD /Documentation/html/local.html HTTP/1.1"));
            QVERIFY(says("local.html", "not ready on Custom"));
        };
        const auto answer = [&] {
            asked->write("HTTP/1.1 200 OK\r\n\r\n");
            asked->disconnectFromHost();
        };
        QVERIFY(mute.listen(QHostAddress::LocalHost));
        useRemote(mute.serverPort());
        m_manager->checkNode("local.html");
        awaitRequest();
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(localServer()->getPort(), "local.html"));
        // The answer of a server that is no longer asked does not land.
        QVERIFY(m_manager->setCurrentPort(m_remote->getPort()));
        answer();
        QTRY_VERIFY(says("local.html", "not found on Custom"));
        // A late one of the server that is asked does.
        QVERIFY(m_manager->setCurrentPort(mute.serverPort()));
        awaitRequest();
        answer();
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(mute.serverPort(), "local.html"));
    }

    // Each node is told of once for each server that was asked, and commands by whichever server is
    // the local one.
    void announcements() {
        const QSignalSpy checked(m_manager, &HelpManager::nodeChecked);
        for (const char* node : {"both.html", "missing.html"})
            m_manager->checkNode(node);
        QCOMPARE(checked.count(), 0);
        QTRY_COMPARE(checked.count(), 2);
        QCOMPARE(QSet<QString>({checked[0][0].toString(), checked[1][0].toString()}),
                 QSet<QString>({"both.html", "missing.html"}));
        QVERIFY(m_manager->setHelpServer(HelpManager::CustomServer));
        QVERIFY(m_manager->setCurrentHost("no host")); // cannot even be asked
        QTRY_COMPARE(checked.count(), 4);
        QVERIFY(m_manager->setHelpServer(HelpManager::LocalServer));

        m_manager->setRequestHandler(nullptr);
        Capture errors(stderr);
        converse(localServer()->getPort(), "POST /first 1\r\n\r\n");
        QVERIFY(errors.text().contains("no callback assigned"));
        const QSignalSpy commands(m_manager, &HelpManager::commandReceived);
        converse(localServer()->getPort(), "POST /second 2\r\n\r\n");
        QVERIFY(m_manager->setCurrentPort(HelpServer::AnyPort));
        converse(localServer()->getPort(), "POST /third 3\r\n\r\n");
        QCOMPARE(commands.count(), 2);
        QCOMPARE(commands[1], QVariantList({"third", "3"}));
    }

    void outOfRange() {
        for (int index : {3, -2}) {
            QVERIFY(!m_manager->setHelpServer(index) && m_manager->helpServer() == 0);
            m_manager->checkNode("local.html", index);
            QCOMPARE(m_manager->getUrl("local.html", index, true), std::string());
        }
        QVERIFY(!m_manager->setCurrentHost("elsewhere"));
        m_manager->checkNode("a b%?#\r\n<\xff");
        QVERIFY(m_manager->setHelpServer(2));
        QVERIFY(m_manager->setCurrentHost("no host"));
        QVERIFY(says("a b%?#\r\n<\xff", "not found on Custom"));
    }

    void changingTheLocalPort() {
        m_manager->checkNode("local.html");
        const int port = localServer()->getPort();
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(port, "local.html"));
        QPointer<HelpServer> replaced = localServer();
        QVERIFY(m_manager->setCurrentPort(port, 0)); // The very port it had.
        QVERIFY(says("local.html", "not ready on Local"));
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(port, "local.html"));
        QVERIFY(!replaced);
        // From within a command; the page that sent it still gets its answer.
        duringCommand = [this] { QVERIFY(m_manager->setCurrentPort(0)); };
        replaced = localServer();
        QCOMPARE(converse(quint16(port), "POST /move "), "HTTP/1.1 200 OK\r\n\r\n");
        QTRY_VERIFY(!replaced);
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(localServer()->getPort(), "local.html"));
        // No port to be had: nobody else's server is asked.
        QVERIFY(m_manager->setCurrentPort(65535, 1));
        QVERIFY(says("local.html", "not found on Local"));
        m_manager->setCurrentPort(0);
        // The end of the manager from within a command.
        duringCommand = [] { HelpManager::Destroy(); };
        replaced = localServer();
        QCOMPARE(converse(replaced->getPort(), "POST /quit "), "HTTP/1.1 200 OK\r\n\r\n");
        QTRY_VERIFY(!replaced);
    }

    // The port of before, as long as nobody took it meanwhile; then any other of those asked for.
    void portAfterDestroy() {
        const auto cameBack = [this] {
            HelpManager::Destroy();
            m_manager = HelpManager::instance();
            return localServer()->getPort();
        };
        QVERIFY(m_manager->setCurrentPort(0));
        const quint16 port = localServer()->getPort();
        QCOMPARE(cameBack(), port);
        HelpManager::Destroy();
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost, port));
        QVERIFY(cameBack() != port && localServer()->getStarted());
        // A range whose first port is taken: bound above it, and below once that one is taken.
        do {
            other.close();
            other.listen(QHostAddress::LocalHost);
        } while (!m_manager->setCurrentPort(other.serverPort(), 1) || !localServer()->getStarted());
        const quint16 first = other.serverPort();
        HelpManager::Destroy();
        other.close();
        QVERIFY(other.listen(QHostAddress::LocalHost, quint16(first + 1)));
        QCOMPARE(cameBack(), first);
    }

    void log() {
        useRemote(m_remote->getPort());
        HelpServer::setVerbose(true);
        Capture output(stdout);
        Capture errors(stderr);
        m_manager->setHelpServer(7);
        m_manager->checkNode("local.html", 0);
        QTRY_VERIFY(errors.text().contains("handleFinished"));
        m_manager->checkNode("local.html");
        QTRY_VERIFY(errors.text().count("handleFinished") == 2);
        m_manager->getUrl("local.html");
        m_manager->setCurrentHost("127.0.0.1");
        m_manager->setHelpServer(0);
        m_manager->setSearchPath({});
        m_manager->clearSearchPath();
        m_manager->setCurrentPort(localServer()->getPort());
        HelpServer::setVerbose(false);
        QByteArray text = errors.text().replace("HelpServer::handleRequestHEADOrGET\n", "");
        text.replace(QByteArray::number(m_remote->getPort()), "@REMOTE@");
        text.replace(QByteArray::number(localServer()->getPort()), "@LOCAL@");
        QCOMPARE(text, testData("manager.log"));
    }

private:
    HelpServer* localServer() { return m_manager->findChildren<HelpServer*>().last(); }

    void useRemote(int port) {
        QVERIFY(m_manager->setHelpServer(2));
        QVERIFY(m_manager->setCurrentHost("127.0.0.1"));
        QVERIFY(m_manager->setCurrentPort(port));
    }

    // Whether getUrl explains the node's state in these words.
    bool says(const QByteArray& node, const QByteArray& words) {
        Capture output(stdout);
        Capture errors(stderr);
        HelpServer::setVerbose(true);
        m_manager->getUrl(node.toStdString());
        HelpServer::setVerbose(false);
        return errors.text().contains("getUrl for " + node + ' ' + words + '\n');
    }

    const Site m_localSite;
    const Site m_remoteSite;
    std::unique_ptr<HelpServer> m_remote;
    HelpManager* m_manager = nullptr;
};

KXUI_TEST(HelpManagerTest);
#include "HelpManagerTest.moc"
