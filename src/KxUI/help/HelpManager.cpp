#include <KxUI/help/HelpManager.h>

#include <KxUI/help/HelpLog_p.h>
#include <KxUI/help/HelpRequest_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QCoreApplication>
#include <QMetaMethod>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

#include <array>
#include <cstddef>
#include <map>
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

// The port that an address need not say.
constexpr int httpPort = 80;
constexpr int customPort = 8080;

// A server that never answers would hold up what is asked of it later.
constexpr int replyTimeoutMs = 30000;

ServerRow& row(int index) {
    static std::array<ServerRow, serverCount> rows{{
        {"Local", "127.0.0.1", HelpServer::AnyPort, true},
        {"The Kestrel", KXUI_HELP_REMOTE_HOST, httpPort, false},
        {"Custom", "custom", customPort, false},
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
    static PortRange ports{HelpServer::AnyPort, 0};
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

struct HelpManager::Private {
    enum class NodeState { Unchecked = 0, Pending = 1, NotFound = 2, Found = 3 };

    struct NodeStates {
        NodeState local = NodeState::Unchecked;
        NodeState other = NodeState::Unchecked;

        NodeState& of(bool isLocal) { return isLocal ? local : other; }
    };

    using PendingReplies = std::map<std::string, QNetworkReply*>;

    explicit Private(HelpManager* manager)
        : q(manager) {}

    PendingReplies& pendingReplies(bool local) { return local ? pendingLocal : pendingOther; }
    std::string addressOf(const std::string& node, int index) const;
    void startLocalServer(int port, int range);
    void restartLocalServer();
    void passCommandsOn();
    QNetworkReply* requestHead(const std::string& address, bool local);

    HelpManager* const q;
    std::string commonPath = "Documentation/html/";
    int current = LocalServer;
    HelpServer* localServer = nullptr; // A child of the manager.
    std::map<std::string, NodeStates> nodes;
    PendingReplies pendingLocal;
    PendingReplies pendingOther;
    std::string localPathPrefix;
};

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

HelpManager::HelpManager()
    : d(std::make_unique<Private>(this)) {
    setProxyFactory(new LoopbackIsDirect);
    setHelpServer(LocalServer);
}

HelpManager::~HelpManager() {
    for (const bool local : {true, false}) {
        while (!d->pendingReplies(local).empty())
            cancelPendingReply(std::string(d->pendingReplies(local).begin()->first), local);
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
    KXUI_INTERFACE_THREAD(this);
    const int wanted = index == CurrentServer ? d->current : index;
    logToError({"HelpManager::setHelpServer index: ", std::to_string(index)});
    if (!d->localServer) {
        d->restartLocalServer();
        recheckNodes(true);
        d->current = LocalServer;
    }
    if (!isServer(wanted)) {
        logToError({"HelpManager::setHelpServer out of range: ", std::to_string(index)});
        return false;
    }
    d->current = wanted;
    logToError({"HelpManager::setHelpServer [", row(d->current).name, "]"});
    if (!row(d->current).local)
        recheckNodes(false);
    return true;
}

int HelpManager::helpServer() const {
    return d->current;
}

bool HelpManager::setCurrentHost(const std::string& host) {
    KXUI_INTERFACE_THREAD(this);
    ServerRow& asked = row(d->current);
    logToError({"HelpManager::setCurrentHost [", asked.name, "] ", host});
    if (asked.local)
        return false;
    asked.host = host;
    logToError({"HelpManager::setCurrentHost [", asked.name, "] ", asked.host});
    return setHelpServer(d->current);
}

bool HelpManager::setCurrentPort(const int& port, const int& range) {
    KXUI_INTERFACE_THREAD(this);
    ServerRow& asked = row(d->current);
    if (asked.local) {
        HelpServer* const replaced = d->localServer;
        logToError({"HelpManager::setCurrentPort - stopping server [", replaced->getName(), "]"});
        // The port may be wanted again; the server itself may be waiting for a command callback
        // that called this.
        replaced->close();
        localPorts() = {port, range};
        d->startLocalServer(port, range);
        d->localServer->takeOver(*replaced);
        replaced->retire();
        recheckNodes(true);
    } else {
        asked.port = port;
        logToError({"HelpManager::setCurrentPort [", asked.name, "] ", std::to_string(asked.port)});
    }
    return setHelpServer(d->current);
}

void HelpManager::Private::startLocalServer(int port, int range) {
    ServerRow& local = row(LocalServer);
    localServer = new HelpServer(local.name, q);
    const bool started = localServer->start(local.host, port, range);
    local.port = localServer->getPort();
    logToError({"HelpManager::startLocalServer [", local.name, "] using port ",
                std::to_string(local.port), started ? " success" : " failure"});
    passCommandsOn();
}

/** The local server complains of commands that nobody listens to: so only where somebody does. */
void HelpManager::Private::passCommandsOn() {
    static const QMetaMethod told = QMetaMethod::fromSignal(&HelpManager::commandReceived);
    if (localServer && q->isSignalConnected(told))
        connect(localServer, &HelpServer::commandReceived, q, &HelpManager::commandReceived,
                Qt::UniqueConnection);
}

void HelpManager::connectNotify(const QMetaMethod& signal) {
    QNetworkAccessManager::connectNotify(signal);
    if (signal == QMetaMethod::fromSignal(&HelpManager::commandReceived))
        d->passCommandsOn();
}

void HelpManager::Private::restartLocalServer() {
    // The port that pages in browsers know from before, unless another program has it now.
    startLocalServer(row(LocalServer).port, 0);
    if (!localServer->getStarted()) {
        delete std::exchange(localServer, nullptr);
        startLocalServer(localPorts().first, localPorts().range);
    }
}

void HelpManager::setRequestHandler(HelpServer::RequestHandler handler) {
    KXUI_INTERFACE_THREAD(this);
    if (!d->localServer) {
        logToError({"HelpManager::setRequestHandler - local server not ready"});
        return;
    }
    logToError({"HelpManager::setRequestHandler - setting in local server"});
    d->localServer->setRequestHandler(handler);
}

void HelpManager::setSearchPath(const std::vector<const char*>& dirs) {
    KXUI_INTERFACE_THREAD(this);
    logToError({"HelpManager::setSearchPath - setting in local server"});
    d->localServer->appendSearchPath(dirs);
}

void HelpManager::clearSearchPath() {
    KXUI_INTERFACE_THREAD(this);
    logToError({"HelpManager::clearSearchPath - in local server"});
    d->localServer->clearSearchPath();
}

void HelpManager::setCommonPath(const std::string& path) {
    KXUI_INTERFACE_THREAD(this);
    d->commonPath = path;
}

void HelpManager::setLocalPathPrefix(const std::string& prefix) {
    KXUI_INTERFACE_THREAD(this);
    d->localPathPrefix = prefix;
}

void HelpManager::checkNode(const std::string& node, int index) {
    const int server = index == CurrentServer ? d->current : index;
    if (!isServer(server))
        return;
    const bool local = row(server).local;
    logToError({"HelpManager::checkNode ", node, " on [", row(server).name, "]"});
    Private::NodeState& state = d->nodes[node].of(local);
    if (state != Private::NodeState::Unchecked) {
        logToError({"HelpManager::checkNode ", node, " already checked ", sideName(local), "ly."});
        return;
    }
    state = Private::NodeState::Pending;
    logToError({"HelpManager::checkNode ", sideName(local), " ", node, " new request"});
    const std::string address = d->addressOf(node, server);
    logToError({"HelpManager::checkNode requesting ", address});
    QNetworkReply* const reply = d->requestHead(address, local);
    if (!reply) {
        state = Private::NodeState::NotFound;
        logToError({"HelpManager::checkNode call to QNetworkAccessManager::head failed"});
        const QString asked = QString::fromStdString(node);
        QMetaObject::invokeMethod(
            this, [this, asked] { Q_EMIT nodeChecked(asked); }, Qt::QueuedConnection);
        return;
    }
    reply->setProperty("node", QByteArray::fromStdString(node));
    reply->setProperty("local", local);
    connect(reply, &QNetworkReply::finished, this, &HelpManager::handleFinished);
    d->pendingReplies(local)[node] = reply;
    if (!local) {
        logToError({"HelpManager::checkNode also checking local server"});
        checkNode(node, LocalServer);
    }
}

QNetworkReply* HelpManager::Private::requestHead(const std::string& address, bool local) {
    const QUrl url(QString::fromStdString(address));
    // Where the local server could not start, another program has its port.
    if (!url.isValid() || url.host().isEmpty() || (local && !localServer->getStarted()))
        return nullptr;
    QNetworkRequest request(url);
    request.setTransferTimeout(replyTimeoutMs);
    return q->head(request);
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
    d->nodes[node].of(local) = found ? Private::NodeState::Found : Private::NodeState::NotFound;
    d->pendingReplies(local).erase(node);
    reply->deleteLater();
    Q_EMIT nodeChecked(QString::fromStdString(node));
}

void HelpManager::cancelPendingReply(const std::string& node, bool local) {
    const auto pending = d->pendingReplies(local).find(node);
    if (pending == d->pendingReplies(local).end())
        return;
    QNetworkReply* const reply = pending->second;
    d->pendingReplies(local).erase(pending);
    reply->disconnect(this);
    reply->deleteLater(); // which breaks it off; abort() warns where a failure is on its way
}

void HelpManager::recheckNodes(bool local) {
    logToError({"HelpManager::recheckNodes - ", sideName(local)});
    for (auto& [node, states] : d->nodes) {
        cancelPendingReply(node, local);
        states.of(local) = Private::NodeState::Unchecked;
    }
    const int server = local ? LocalServer : d->current;
    for (const auto& [node, states] : d->nodes)
        checkNode(node, server);
}

std::string HelpManager::getUrl(const std::string& node, int index, bool force) {
    const int server = index == CurrentServer ? d->current : index;
    if (!isServer(server))
        return {};
    const ServerRow& asked = row(server);
    logToError({"HelpManager::getUrl for ", node, " on [", asked.name, "]"});
    if (!force) {
        const auto known = d->nodes.find(node);
        // A node that nobody asked for is as good as missing, one that is being asked for is not.
        const Private::NodeState state =
            known == d->nodes.end() ? Private::NodeState::NotFound : known->second.of(asked.local);
        if (state != Private::NodeState::Found) {
            logToError({"HelpManager::getUrl for ", node,
                        state == Private::NodeState::NotFound ? " not found" : " not ready", " on ",
                        asked.name});
            return asked.local ? std::string() : getUrl(node, LocalServer, false);
        }
    }
    const std::string url = d->addressOf(node, server);
    logToError({"HelpManager::getUrl resolved to ", url});
    return url;
}

std::string HelpManager::Private::addressOf(const std::string& node, int index) const {
    const ServerRow& server = row(index);
    return GenerateAddress(server.host, server.port,
                           server.local ? localPathPrefix + commonPath : commonPath, node);
}

std::string HelpManager::GenerateAddress(const std::string& host, int port, const std::string& path,
                                         const std::string& node) {
    const std::string stated =
        port == HelpServer::AnyPort || port == httpPort ? "" : ":" + std::to_string(port);
    return "http://" + host + stated + "/" + path + node;
}

} // namespace Kestrel::UI
