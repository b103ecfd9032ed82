#include "HelpFixture.h"

#include <KxUI/help/HelpManager.h>

#include <support/TestRegistry.h>

#include <QPointer>

#include <functional>

using namespace Kestrel::Test;
using Kestrel::UI::HelpManager;
using Kestrel::UI::HelpServer;

namespace {

std::function<void()> duringCommand;

void runCommand(std::string, std::string) {
    duringCommand();
}

std::string url(int port, const char* node) {
    return "http://127.0.0.1:" + std::to_string(port) + "/Documentation/html/" + node;
}

} // namespace

class HelpManagerTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_local = std::make_unique<Site>();
        m_remote = std::make_unique<Site>();
        m_local->put("Documentation/html/both.html", "local");
        m_local->put("Documentation/html/local.html", "local");
        m_remote->put("Documentation/html/both.html", "remote");
        m_remote->put("Documentation/html/remote.html", "remote");
        m_manager = HelpManager::instance();
        QVERIFY(m_manager->setHelpServer(0));
        m_manager->setSearchPath({m_local->path().c_str()});
        m_remoteServer = std::make_unique<HelpServer>("Remote");
        m_remoteServer->appendSearchPath({m_remote->path().c_str()});
        QVERIFY(m_remoteServer->start("127.0.0.1", 0, 0));
    }
    void cleanup() {
        HelpManager::Destroy();
        HelpServer::setVerbose(false);
    }

    void addresses() {
        const auto address = [](int port, const char* path) {
            return HelpManager::GenerateAddress("host", port, path, "n.html");
        };
        QCOMPARE(address(0, "a/"), std::string("http://host/a/n.html"));
        QCOMPARE(address(80, ""), std::string("http://host/n.html"));
        QCOMPARE(address(8080, "a/"), std::string("http://host:8080/a/n.html"));
    }

    void localNodes() {
        const int port = localServer()->getPort();
        QVERIFY(port > 0 && m_manager->getHelpServer() == 0);
        QCOMPARE(m_manager->getUrl("local.html"), std::string());
        m_manager->checkNode("local.html");
        m_manager->checkNode("missing.html", 0);
        QCOMPARE(m_manager->getUrl("local.html"), std::string()); // The answer is on its way.
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(port, "local.html"));
        QTRY_VERIFY(saysOf("missing.html", "missing.html not found on Local"));
        QCOMPARE(m_manager->getUrl("missing.html"), std::string());
        QCOMPARE(m_manager->getUrl("missing.html", 0, true), url(port, "missing.html"));
        m_manager->setLocalPathPrefix("site/");
        m_manager->setCommonPath("html/");
        QCOMPARE(m_manager->getUrl("local.html"),
                 "http://127.0.0.1:" + std::to_string(port) + "/site/html/local.html");
    }

    void remoteNodesAndFallBack() {
        useRemote(m_remoteServer->getPort());
        for (const char* node : {"both.html", "local.html", "remote.html", "missing.html"})
            m_manager->checkNode(node);
        const int local = localServer()->getPort();
        const int remote = m_remoteServer->getPort();
        QTRY_COMPARE(m_manager->getUrl("both.html"), url(remote, "both.html"));
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(local, "local.html"));
        QTRY_COMPARE(m_manager->getUrl("both.html", 0), url(local, "both.html"));
        QTRY_COMPARE(m_manager->getUrl("remote.html"), url(remote, "remote.html"));
        QTRY_VERIFY(saysOf("remote.html", "remote.html not found on Local", 0));
        QTRY_VERIFY(saysOf("missing.html", "missing.html not found on Custom"));
        QCOMPARE(m_manager->getUrl("missing.html"), std::string());
        QCOMPARE(m_manager->getUrl("missing.html", 2, true), url(remote, "missing.html"));
        // A remote that is gone answers "not found" to all; what is known of the local one stays.
        m_remoteServer->close();
        QVERIFY(m_manager->setHelpServer(2));
        QTRY_VERIFY(saysOf("both.html", "both.html not found on Custom"));
        QCOMPARE(m_manager->getUrl("both.html"), url(local, "both.html"));
        QCOMPARE(m_manager->getUrl("remote.html"), std::string());
    }

    void lateAndMissingReplies() {
        QTcpServer mute;
        QVERIFY(mute.listen(QHostAddress::LocalHost));
        useRemote(mute.serverPort());
        m_manager->checkNode("local.html");
        QTRY_VERIFY(mute.hasPendingConnections());
        std::unique_ptr<QTcpSocket> asked(mute.nextPendingConnection());
        QTRY_VERIFY(asked->bytesAvailable() > 0);
        QVERIFY(asked->readAll().startsWith("HEAD /Documentation/html/local.html HTTP/1.1\r\n"));
        QVERIFY(saysOf("local.html", "local.html not ready on Custom"));
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(localServer()->getPort(), "local.html"));
        // The answer of a server that is no longer asked does not land.
        QVERIFY(m_manager->setCurrentPort(m_remoteServer->getPort()));
        asked->write("HTTP/1.1 200 OK\r\n\r\n");
        asked->disconnectFromHost();
        QTRY_VERIFY(saysOf("local.html", "local.html not found on Custom"));
        // A late one of the server that is asked does.
        QVERIFY(m_manager->setCurrentPort(mute.serverPort()));
        QTRY_VERIFY(mute.hasPendingConnections());
        asked.reset(mute.nextPendingConnection());
        QTRY_VERIFY(asked->bytesAvailable() > 0);
        QVERIFY(saysOf("local.html", "local.html not ready on Custom"));
        asked->write("HTTP/1.1 200 OK\r\n\r\n");
        asked->disconnectFromHost();
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(mute.serverPort(), "local.html"));
    }

    void outOfRange() {
        for (int index : {3, -2}) {
            QVERIFY(!m_manager->setHelpServer(index));
            QCOMPARE(m_manager->getHelpServer(), 0);
            m_manager->checkNode("local.html", index);
            QCOMPARE(m_manager->getUrl("local.html", index, true), std::string());
        }
        QVERIFY(!m_manager->setCurrentHost("elsewhere"));
        m_manager->checkNode("");
        m_manager->checkNode("a b%?#\r\n<\xff");
        QVERIFY(m_manager->setHelpServer(2));
        QVERIFY(m_manager->setCurrentHost("no host"));
        m_manager->checkNode("local.html");
        QVERIFY(saysOf("local.html", "local.html not found on Custom"));
        QVERIFY(m_manager->setHelpServer(HelpManager::CurrentServer));
        QCOMPARE(m_manager->getHelpServer(), 2);
    }

    void changingTheLocalPort() {
        m_manager->setRequestHandler(runCommand);
        m_manager->checkNode("local.html");
        const int before = localServer()->getPort();
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(before, "local.html"));
        QPointer<HelpServer> replaced = localServer();
        QVERIFY(m_manager->setCurrentPort(before, 0)); // The very port it had.
        QCOMPARE(m_manager->getUrl("local.html"), std::string());
        QTRY_VERIFY(!replaced);
        QCOMPARE(int(localServer()->getPort()), before);
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(before, "local.html"));

        // From within a command; the page that sent it still gets its answer.
        duringCommand = [this] { QVERIFY(m_manager->setCurrentPort(0)); };
        replaced = localServer();
        QCOMPARE(converse(localServer()->getPort(), "POST /move \r\n\r\n"),
                 QByteArray("HTTP/1.1 200 OK\r\n\r\n"));
        QTRY_VERIFY(!replaced);
        QTRY_COMPARE(m_manager->getUrl("local.html"), url(localServer()->getPort(), "local.html"));

        // No port to be had: nobody else's server is asked.
        Capture errors(stderr);
        QVERIFY(m_manager->setCurrentPort(65535, 1));
        QCOMPARE(m_manager->getUrl("local.html"), std::string());
        QVERIFY(saysOf("local.html", "local.html not found on Local"));
        m_manager->setCurrentPort(0);
    }

    void destroyedByACommand() {
        m_manager->setRequestHandler(runCommand);
        duringCommand = [] { HelpManager::Destroy(); };
        m_manager->checkNode("local.html");
        QPointer<HelpServer> server = localServer();
        QCOMPARE(converse(server->getPort(), "POST /quit \r\n\r\n"),
                 QByteArray("HTTP/1.1 200 OK\r\n\r\n"));
        QTRY_VERIFY(!server);
    }

    void log() {
        const QByteArray port = QByteArray::number(localServer()->getPort());
        const QByteArray remote = QByteArray::number(m_remoteServer->getPort());
        useRemote(m_remoteServer->getPort());
        m_manager->clearSearchPath();
        HelpServer::setVerbose(true);
        QByteArray text;
        {
            Capture output(stdout);
            Capture errors(stderr);
            m_manager->setHelpServer(7);
            m_manager->checkNode("both.html");
            m_manager->checkNode("both.html");
            QTRY_VERIFY(errors.text().count("handleFinished") == 2);
            m_manager->getUrl("both.html");
            m_manager->setCurrentHost("127.0.0.1");
            m_manager->setHelpServer(0);
            m_manager->setRequestHandler(nullptr);
            m_manager->clearSearchPath();
            text = errors.text();
        }
        HelpServer::setVerbose(false);
        text.replace("HelpServer::handleRequestHEADOrGET\n", "");
        text.replace("HelpManager::", "");
        const QByteArray address = "/Documentation/html/both.html\n";
        const QByteArray ask =
            "checkNode both.html on [Custom]\ncheckNode remote both.html new request\n"
            "checkNode requesting http://127.0.0.1:" +
            remote + address +
            "checkNode also checking local server\ncheckNode both.html on [Local]\n";
        const QByteArray found = "handleFinished for both.html [remote] - success\n";
        const QByteArray missing = "handleFinished for both.html [local] - failure\n";
        const QByteArray before =
            "setHelpServer index: 7\nsetHelpServer out of range: 7\n" + ask +
            "checkNode local both.html new request\ncheckNode requesting http://127.0.0.1:" + port +
            address +
            "checkNode both.html on [Custom]\n"
            "checkNode both.html already checked remotely.\n";
        const QByteArray after =
            "getUrl for both.html on [Custom]\ngetUrl resolved to http://127.0.0.1:" + remote +
            address +
            "setCurrentHost [Custom] 127.0.0.1\nsetCurrentHost [Custom] 127.0.0.1\n"
            "setHelpServer index: 2\nsetHelpServer [Custom]\nrecheckNodes - remote\n" +
            ask +
            "checkNode both.html already checked locally.\n"
            "setHelpServer index: 0\nsetHelpServer [Local]\n"
            "setRequestHandler - setting in local server\nclearSearchPath - in local server\n";
        QVERIFY(text == before + found + missing + after ||
                text == before + missing + found + after);
    }

private:
    HelpServer* localServer() {
        const auto servers = m_manager->findChildren<HelpServer*>();
        return servers.isEmpty() ? nullptr : servers.last();
    }

    void useRemote(int port) {
        QVERIFY(m_manager->setHelpServer(2));
        QVERIFY(m_manager->setCurrentHost("127.0.0.1"));
        QVERIFY(m_manager->setCurrentPort(port));
    }

    // Whether getUrl explains the node's state in these words.
    bool saysOf(const char* node, const QByteArray& words, int index = HelpManager::CurrentServer) {
        Capture output(stdout);
        Capture errors(stderr);
        HelpServer::setVerbose(true);
        m_manager->getUrl(node, index);
        HelpServer::setVerbose(false);
        return errors.text().contains(words + '\n');
    }

    std::unique_ptr<Site> m_local;
    std::unique_ptr<Site> m_remote;
    std::unique_ptr<HelpServer> m_remoteServer;
    HelpManager* m_manager = nullptr;
};

KXUI_TEST(HelpManagerTest);
#include "HelpManagerTest.moc"
