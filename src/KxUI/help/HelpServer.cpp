#include <KxUI/help/HelpServer.h>

#include <KxUI/help/HelpConnection_p.h>
#include <KxUI/help/HelpLog_p.h>
#include <KxUI/help/HelpRequest_p.h>
#include <KxUI/help/HelpSeats_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QCoreApplication>
#include <QDir>
#include <QHostAddress>
#include <QMetaMethod>

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace Kestrel::UI {

using namespace Help;

struct HelpServer::Private {
    explicit Private(HelpServer* server)
        : q(server) {}

    bool tryListen(const QHostAddress& address, std::uint16_t candidate);
    void logSearchPath() const;
    void deleteWhenIdle();

    void handleRequest(HelpConnection& connection, const std::string& request);
    void handleRequestHEADOrGET(HelpConnection& connection, const std::string& request,
                                bool isHead);
    void handleRequestPOST(HelpConnection& connection, const std::string& request);
    void runCommand(HelpConnection& connection, const CommandRequest& post);
    RegularFile findFile(const PageRequest& page) const;
    void sendImage(HelpConnection& connection, RegularFile file, const std::string& fileType);
    void sendPageNotFound(HelpConnection& connection, std::string_view message);

    HelpServer* const q;
    RequestHandler requestHandler = nullptr;
    bool started = false;
    std::string name;
    std::string host = "127.0.0.1";
    std::uint16_t port = 0;
    std::string serverRoot;
    std::string relativePath;
    std::vector<std::string> searchPath;

    HelpSeats* seats = nullptr; // A child of the server.
    int runningCommands = 0;
    bool retired = false;
};

HelpServer::HelpServer(const std::string& name, QObject* parent)
    : QTcpServer(parent)
    , d(std::make_unique<Private>(this)) {
    d->name = name.empty() ? "Local" : name;
    d->seats = new HelpSeats(*this, [this](HelpConnection& connection, const std::string& request) {
        d->handleRequest(connection, request);
    });
    if (const char* value = std::getenv("HELP_VERBOSE"); value && std::atoi(value) == 1)
        Help::setVerbose(true);
    connect(d->seats, &HelpSeats::emptied, this, [this] { d->deleteWhenIdle(); });
    setSearchPath();
}

HelpServer::HelpServer(QObject* parent)
    : HelpServer(std::string(), parent) {}

HelpServer::~HelpServer() {
    // The connections speak to this server; they go while it is whole.
    delete d->seats;
}

bool HelpServer::start(const std::string& host, const int& firstPort, const int& range) {
    KXUI_INTERFACE_THREAD(this);
    if (d->started)
        return false;
    const auto first = static_cast<std::uint16_t>(firstPort);
    const auto last = static_cast<std::uint16_t>(first + static_cast<unsigned>(range));
    if (last < first) {
        log({"[Help] bad port range"});
        return false;
    }
    log({"[Help] starting [", d->name, "]"});
    // A start that failed may have left the server on the port beyond its range.
    QTcpServer::close();
    const QHostAddress address(QString::fromStdString(host));
    std::uint16_t port = first;
    bool listening = d->tryListen(address, port);
    // One port beyond the range is tried too, and kept if it is free, although the start then
    // counts as failed: hosts have always found the server there.
    while (!listening && port <= last && port < LastPort)
        listening = d->tryListen(address, ++port);
    if (!listening || port > last) {
        reportError({"[Help] failed. Port range busy: ", std::to_string(firstPort), "-",
                     std::to_string(last)});
        return false;
    }
    d->host = host;
    d->port = serverPort();
    d->started = true;
    return true;
}

void HelpServer::close() {
    KXUI_INTERFACE_THREAD(this);
    QTcpServer::close();
    d->started = false;
    log({"[Help] stopped [", d->name, "]"});
}

void HelpServer::retire() {
    if (isListening())
        close();
    d->retired = true;
    d->deleteWhenIdle();
}

void HelpServer::setRelativePath(const std::string& path) {
    KXUI_INTERFACE_THREAD(this);
    d->relativePath = ensureTrailingSlash(path);
    log({"[Help] relative path is now: ", d->relativePath});
    setSearchPath();
}

void HelpServer::setSearchPath() {
    KXUI_INTERFACE_THREAD(this);
    d->searchPath = {getServerRoot()};
    if (!d->relativePath.empty())
        d->searchPath.push_back(d->serverRoot + d->relativePath);
    d->logSearchPath();
}

void HelpServer::appendSearchPath(const std::vector<const char*>& dirs) {
    for (const char* dir : dirs) {
        if (!dir)
            continue;
        const std::string entry = ensureTrailingSlash(dir);
        d->searchPath.push_back(entry);
        if (entry.find(".nova") != std::string::npos)
            d->searchPath.push_back(entry + "Documentation/");
    }
    d->logSearchPath();
}

void HelpServer::clearSearchPath() {
    KXUI_INTERFACE_THREAD(this);
    d->searchPath.clear();
}

void HelpServer::takeOver(const HelpServer& predecessor) {
    d->searchPath = predecessor.d->searchPath;
    d->relativePath = predecessor.d->relativePath;
    d->requestHandler = predecessor.d->requestHandler;
}

void HelpServer::setVerbose(bool verbose) {
    Help::setVerbose(verbose);
    report({"[Help] logging is ", verbose ? "verbose" : "off"});
}

const std::string& HelpServer::getServerRoot() {
    d->serverRoot = ensureTrailingSlash(QCoreApplication::applicationDirPath().toStdString());
    return d->serverRoot;
}

void HelpServer::setRequestHandler(RequestHandler handler) {
    KXUI_INTERFACE_THREAD(this);
    d->requestHandler = handler;
}

bool HelpServer::isInRequestHandler() const {
    return d->runningCommands > 0;
}

const std::string& HelpServer::getHost() const {
    return d->host;
}

const std::string& HelpServer::getName() const {
    return d->name;
}

std::uint16_t HelpServer::getPort() const {
    return d->port;
}

const std::string& HelpServer::getRelativePath() const {
    return d->relativePath;
}

const std::vector<std::string>& HelpServer::searchPath() const {
    return d->searchPath;
}

bool HelpServer::getStarted() const {
    return d->started;
}

void HelpServer::incomingConnection(qintptr descriptor) {
    d->seats->admit(descriptor);
}

bool HelpServer::Private::tryListen(const QHostAddress& address, std::uint16_t candidate) {
    if (!q->listen(address, candidate))
        return false;
    seats->beginListening();
    return true;
}

void HelpServer::Private::logSearchPath() const {
    log({"[Help] search path: "});
    for (const std::string& entry : searchPath)
        log({entry});
}

void HelpServer::Private::deleteWhenIdle() {
    if (retired && runningCommands == 0 && seats->isEmpty())
        q->deleteLater();
}

void HelpServer::Private::handleRequest(HelpConnection& connection, const std::string& request) {
    log({"\n[Help] handleRequest::::::::::::::::::::::::::::::\n\n", request, "\n"});
    switch (methodOf(request)) {
    case Method::Head:
        handleRequestHEADOrGET(connection, request, true);
        break;
    case Method::Get:
        handleRequestHEADOrGET(connection, request, false);
        break;
    case Method::Post:
        handleRequestPOST(connection, request);
        break;
    case Method::Unknown:
        log({"[Help] handleRequest error detecting request type"});
        break;
    }
}

void HelpServer::Private::handleRequestHEADOrGET(HelpConnection& connection,
                                                 const std::string& request, bool isHead) {
    logToError({"HelpServer::handleRequestHEADOrGET"});
    const auto page = parseRequestGET(request);
    if (!page || isForeign(request, connection.port())) {
        sendPageNotFound(connection, {});
        return;
    }
    log({"[Help] node: ", page->node});
    log({"[Help] fileType: ", page->fileType});
    RegularFile file = findFile(*page);
    if (file.state() == RegularFile::State::Missing) {
        sendPageNotFound(connection, page->path);
        return;
    }
    // A HEAD for an image gets the image too: that is how images have always been served here.
    if (isImage(page->fileType)) {
        sendImage(connection, std::move(file), page->fileType);
        return;
    }
    Response response;
    response.head = "HTTP/1.1 200 OK\r\nContent-Type: ";
    response.head += getMimeType(page->fileType).data();
    response.head += "\r\n\r\n";
    if (!isHead) {
        response.body = std::move(file);
        response.tail = "\r\n";
    }
    if (isVerbose()) {
        response.written = [](std::int64_t bytes) {
            log({"[Help] wrote ", std::to_string(bytes), " bytes"});
        };
    }
    connection.send(std::move(response));
}

RegularFile HelpServer::Private::findFile(const PageRequest& page) const {
    const char separator = QDir::separator().toLatin1();
    const auto fileName = fileNameOf(page, separator);
    if (!fileName)
        return {};
    for (const std::string& entry : searchPath) {
        if (entry.empty())
            continue;
        std::string path = entry;
        std::replace(path.begin(), path.end(), '/', separator);
        RegularFile file = RegularFile::open(path + *fileName);
        const bool exists = file.state() != RegularFile::State::Missing;
        log({"[Help] file ", exists ? "exists: " : "not found: ", file.path()});
        if (exists)
            return file;
    }
    return {};
}

void HelpServer::Private::sendImage(HelpConnection& connection, RegularFile file,
                                    const std::string& fileType) {
    if (file.state() != RegularFile::State::Open) {
        log({"[Help] sendImage cannot find ", fileType, " file ", file.path()});
        return;
    }
    const std::string lines[] = {"HTTP/1.1 200 OK\r\n",
                                 "Content-Type: " + std::string(getMimeType(fileType)) + "\r\n",
                                 "Content-Length: " + std::to_string(file.size()) + "\r\n", "\r\n"};
    Response response;
    std::string counts;
    for (const std::string& line : lines) {
        response.head.append(line.data(), static_cast<int>(line.size()));
        counts += std::to_string(line.size()) + ", ";
    }
    response.body = std::move(file);
    if (isVerbose()) {
        response.written = [counts, head = response.head.size()](std::int64_t bytes) {
            log({"[Help] sendImage wrote ", counts, std::to_string(bytes - head), " bytes"});
        };
    }
    connection.send(std::move(response));
}

void HelpServer::Private::sendPageNotFound(HelpConnection& connection, std::string_view message) {
    log({"[Help] sendPageNotFound"});
    Response response;
    response.head = QByteArray::fromStdString(notFoundResponse(message));
    connection.send(std::move(response));
}

void HelpServer::Private::handleRequestPOST(HelpConnection& connection,
                                            const std::string& request) {
    logToError({"[Help] handleRequestPOST"});
    const auto post = parseRequestPOST(request);
    if (!post || isForeign(request, connection.port())) {
        sendPageNotFound(connection, {});
        return;
    }
    log({"[Help] handleRequestPOST - Command ", post->command, " - Arg ", post->argument});
    static const QMetaMethod told = QMetaMethod::fromSignal(&HelpServer::commandReceived);
    if (requestHandler || q->isSignalConnected(told))
        runCommand(connection, *post);
    else
        reportError({"[Help] handleRequestPOST - no callback assigned"});
    Response response;
    response.head = "HTTP/1.1 200 OK\r\n";
    // Qt's client takes an answer without a length that ends in haste for a connection that failed,
    // and sends the command again.
    if (namesHttpVersion(request))
        response.head += "Content-Length: 0\r\n";
    response.head += "\r\n";
    connection.send(std::move(response));
}

void HelpServer::Private::runCommand(HelpConnection& connection, const CommandRequest& post) {
    // The callback may run an event loop of its own, change the port, or end the help manager.
    // Neither this server nor the connection, both on the stack, may be deleted meanwhile.
    connection.beginCommand();
    ++runningCommands;
    if (requestHandler)
        requestHandler(post.command, post.argument);
    Q_EMIT q->commandReceived(QString::fromStdString(post.command),
                              QString::fromStdString(post.argument));
    --runningCommands;
    connection.endCommand();
}

} // namespace Kestrel::UI
