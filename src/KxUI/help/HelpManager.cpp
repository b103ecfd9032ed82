#include <KxUI/help/HelpManager.h>

#include <KxUI/help/HelpLog_p.h>
#include <KxUI/help/HelpRequest_p.h>

#include <QCoreApplication>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

#include <array>
#include <cstddef>
#include <utility>

namespace Kestrel::UI {

using namespace Help;

namespace {

struct ServerRow {
    std::string name;
    std::string host;
    int port; // Where it is; of the local one, where it was last bound.
    bool local;
};

constexpr int serverCount = 3;
constexpr int localIndex = 0;

// A server that never answers would hold up what is asked of it later.
constexpr int replyTimeoutMs = 30000;

ServerRow& row(int index) {
    static std::array<ServerRow, serverCount> rows{{
        {"Local", "127.0.0.1", 0, true},
        {"The Kestrel", KXUI_HELP_REMOTE_HOST, 80, false},
        {"Custom", "custom", 8080, false},
    }};
    return rows[static_cast<std::size_t>(index)];
}

// The ports that were last asked for on behalf of the local server. Like the table they outlive the
// manager.
struct PortRange {
    int first;
    int range;
};

PortRange& localPorts() {
    static PortRange ports{0, 0};
    return ports;
}

bool isServer(int index) {
    return index >= 0 && index < serverCount;
}

const char* sideName(bool local) {
    return local ? "local" : "remote";
}

HelpManager* theManager = nullptr;

// The application's proxy cannot see this machine's loopback.
class LoopbackIsDirect : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
        if (namesLoopback(query.peerHostName().toStdString()))
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        return proxyForQuery(query);
    }
};

} // namespace

HelpManager* HelpManager::instance() {
    if (!theManager) {
        qAddPostRoutine(Destroy);
        theManager = new HelpManager;
    }
    return theManager;
}

void HelpManager::Destroy() {
    qRemovePostRoutine(Destroy);
    delete std::exchange(theManager, nullptr);
}

HelpManager::HelpManager() {
    setProxyFactory(new LoopbackIsDirect);
    setHelpServer(localIndex);
}

HelpManager::~HelpManager() {
    for (const bool local : {true, false}) {
        while (!pendingReplies(local).empty())
            cancelPendingReply(std::string(pendingReplies(local).begin()->first), local);
    }
    // Whoever calls from within a command callback has its server on the stack.
    for (HelpServer* server : findChildren<HelpServer*>()) {
        if (server->isInRequestHandler()) {
            server->setParent(nullptr);
            server->retire();
        }
    }
}

bool HelpManager::setHelpServer(const int& index) {
    const int wanted = index == CurrentServer ? m_current : index;
    logToError({"HelpManager::setHelpServer index: ", std::to_string(index)});
    if (!m_localServer) {
        restartLocalServer();
        recheckNodes(true);
        m_current = localIndex;
    }
    if (!isServer(wanted)) {
        logToError({"HelpManager::setHelpServer out of range: ", std::to_string(index)});
        return false;
    }
    m_current = wanted;
    logToError({"HelpManager::setHelpServer [", row(m_current).name, "]"});
    if (!row(m_current).local)
        recheckNodes(false);
    return true;
}

bool HelpManager::setCurrentHost(const std::string& host) {
    ServerRow& current = row(m_current);
    logToError({"HelpManager::setCurrentHost [", current.name, "] ", host});
    if (current.local)
        return false;
    current.host = host;
    logToError({"HelpManager::setCurrentHost [", current.name, "] ", current.host});
    return setHelpServer(m_current);
}

bool HelpManager::setCurrentPort(const int& port, const int& range) {
    ServerRow& current = row(m_current);
    if (current.local) {
        HelpServer* const replaced = m_localServer;
        logToError({"HelpManager::setCurrentPort - stopping server [", replaced->getName(), "]"});
        // The port may be wanted again; the server itself may be waiting for a command callback
        // that called this.
        replaced->close();
        localPorts() = {port, range};
        startLocalServer(port, range);
        m_localServer->takeOver(*replaced);
        replaced->retire();
        recheckNodes(true);
    } else {
        current.port = port;
        logToError(
            {"HelpManager::setCurrentPort [", current.name, "] ", std::to_string(current.port)});
    }
    return setHelpServer(m_current);
}

void HelpManager::startLocalServer(int port, int range) {
    ServerRow& local = row(localIndex);
    m_localServer = new HelpServer(local.name, this);
    const bool started = m_localServer->start(local.host, port, range);
    local.port = m_localServer->getPort();
    logToError({"HelpManager::startLocalServer [", local.name, "] using port ",
                std::to_string(local.port), started ? " success" : " failure"});
}

void HelpManager::restartLocalServer() {
    // The port that pages in browsers know from before, unless another program has it now.
    startLocalServer(row(localIndex).port, 0);
    if (!m_localServer->getStarted()) {
        delete std::exchange(m_localServer, nullptr);
        startLocalServer(localPorts().first, localPorts().range);
    }
}

void HelpManager::setRequestHandler(HelpServer::RequestHandler handler) {
    if (!m_localServer) {
        logToError({"HelpManager::setRequestHandler - local server not ready"});
        return;
    }
    logToError({"HelpManager::setRequestHandler - setting in local server"});
    m_localServer->setRequestHandler(handler);
}

void HelpManager::setSearchPath(const std::vector<const char*>& dirs) {
    logToError({"HelpManager::setSearchPath - setting in local server"});
    m_localServer->appendSearchPath(dirs);
}

void HelpManager::clearSearchPath() {
    logToError({"HelpManager::clearSearchPath - in local server"});
    m_localServer->clearSearchPath();
}

void HelpManager::checkNode(const std::string& node, int index) {
    const int server = index == CurrentServer ? m_current : index;
    if (!isServer(server))
        return;
    const bool local = row(server).local;
    logToError({"HelpManager::checkNode ", node, " on [", row(server).name, "]"});
    NodeState& state = m_nodes[node].of(local);
    if (state != NodeState::Unchecked) {
        logToError({"HelpManager::checkNode ", node, " already checked ", sideName(local), "ly."});
        return;
    }
    state = NodeState::Pending;
    logToError({"HelpManager::checkNode ", sideName(local), " ", node, " new request"});
    const std::string address = addressOf(node, server);
    logToError({"HelpManager::checkNode requesting ", address});
    QNetworkReply* const reply = requestHead(address, local);
    if (!reply) {
        state = NodeState::NotFound;
        logToError({"HelpManager::checkNode call to QNetworkAccessManager::head failed"});
        return;
    }
    reply->setProperty("node", QByteArray::fromStdString(node));
    reply->setProperty("local", local);
    connect(reply, &QNetworkReply::finished, this, &HelpManager::handleFinished);
    pendingReplies(local)[node] = reply;
    if (!local) {
        logToError({"HelpManager::checkNode also checking local server"});
        checkNode(node, localIndex);
    }
}

QNetworkReply* HelpManager::requestHead(const std::string& address, bool local) {
    const QUrl url(QString::fromStdString(address));
    // Where the local server could not start, another program has its port.
    if (!url.isValid() || url.host().isEmpty() || (local && !m_localServer->getStarted()))
        return nullptr;
    QNetworkRequest request(url);
    request.setTransferTimeout(replyTimeoutMs);
    return head(request);
}

void HelpManager::handleFinished() {
    auto* const reply = qobject_cast<QNetworkReply*>(sender());
    if (!reply)
        return;
    const std::string node = reply->property("node").toByteArray().toStdString();
    const bool local = reply->property("local").toBool();
    const bool found = reply->error() == QNetworkReply::NoError;
    logToError({"HelpManager::handleFinished for ", node, " [", sideName(local), "] - ",
                found ? "success" : "failure"});
    m_nodes[node].of(local) = found ? NodeState::Found : NodeState::NotFound;
    pendingReplies(local).erase(node);
    reply->deleteLater();
}

void HelpManager::cancelPendingReply(const std::string& node, bool local) {
    const auto pending = pendingReplies(local).find(node);
    if (pending == pendingReplies(local).end())
        return;
    QNetworkReply* const reply = pending->second;
    pendingReplies(local).erase(pending);
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

void HelpManager::recheckNodes(bool local) {
    logToError({"HelpManager::recheckNodes - ", sideName(local)});
    for (auto& [node, states] : m_nodes) {
        cancelPendingReply(node, local);
        states.of(local) = NodeState::Unchecked;
    }
    const int server = local ? localIndex : m_current;
    for (const auto& [node, states] : m_nodes)
        checkNode(node, server);
}

std::string HelpManager::getUrl(const std::string& node, int index, bool force) {
    const int server = index == CurrentServer ? m_current : index;
    if (!isServer(server))
        return {};
    const ServerRow& asked = row(server);
    logToError({"HelpManager::getUrl for ", node, " on [", asked.name, "]"});
    if (!force) {
        const auto known = m_nodes.find(node);
        // A node that nobody asked for is as good as missing, one that is being asked for is not.
        const NodeState state =
            known == m_nodes.end() ? NodeState::NotFound : known->second.of(asked.local);
        if (state != NodeState::Found) {
            logToError({"HelpManager::getUrl for ", node,
                        state == NodeState::NotFound ? " not found" : " not ready", " on ",
                        asked.name});
            return asked.local ? std::string() : getUrl(node, localIndex, false);
        }
    }
    const std::string url = addressOf(node, server);
    logToError({"HelpManager::getUrl resolved to ", url});
    return url;
}

std::string HelpManager::addressOf(const std::string& node, int index) const {
    const ServerRow& server = row(index);
    return GenerateAddress(server.host, server.port,
                           server.local ? m_localPathPrefix + m_commonPath : m_commonPath, node);
}

std::string HelpManager::GenerateAddress(const std::string& host, int port, const std::string& path,
                                         const std::string& node) {
    const std::string stated = port == 0 || port == 80 ? "" : ":" + std::to_string(port);
    return "http://" + host + stated + "/" + path + node;
}

} // namespace Kestrel::UI
