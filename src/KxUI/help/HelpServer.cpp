#include <KxUI/help/HelpServer.h>

#include <KxUI/help/HelpConnection_p.h>
#include <KxUI/help/HelpLog_p.h>
#include <KxUI/help/HelpRequest_p.h>
#include <KxUI/help/HelpSeats_p.h>

#include <QCoreApplication>
#include <QDir>
#include <QHostAddress>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <utility>

namespace Kestrel::UI {

using namespace Help;

HelpServer::HelpServer(const std::string& name, QObject* parent)
    : QTcpServer(parent)
    , m_name(name.empty() ? "Local" : name)
    , m_seats(new HelpSeats(*this)) {
    if (const char* value = std::getenv("HELP_VERBOSE"); value && std::atoi(value) == 1)
        Help::setVerbose(true);
    connect(m_seats, &HelpSeats::emptied, this, &HelpServer::deleteWhenIdle);
    setSearchPath();
}

HelpServer::~HelpServer() {
    // The connections speak to this server; they go while it is whole.
    delete m_seats;
}

bool HelpServer::start(const std::string& host, const int& firstPort, const int& range) {
    if (m_started)
        return false;
    const auto first = static_cast<std::uint16_t>(firstPort);
    const auto last = static_cast<std::uint16_t>(first + static_cast<unsigned>(range));
    if (last < first) {
        log({"[Help] bad port range"});
        return false;
    }
    log({"[Help] starting [", m_name, "]"});
    // A start that failed may have left the server on the port beyond its range.
    QTcpServer::close();
    const QHostAddress address(QString::fromStdString(host));
    std::uint16_t port = first;
    bool listening = tryListen(address, port);
    // One port beyond the range is tried on purpose, and kept on purpose if it is free.
    while (!listening && port <= last && port < std::numeric_limits<std::uint16_t>::max())
        listening = tryListen(address, ++port);
    if (!listening || port > last) {
        reportError({"[Help] failed. Port range busy: ", std::to_string(firstPort), "-",
                     std::to_string(last)});
        return false;
    }
    m_host = host;
    m_port = serverPort();
    m_started = true;
    return true;
}

bool HelpServer::tryListen(const QHostAddress& address, std::uint16_t port) {
    if (!listen(address, port))
        return false;
    widenBacklog(socketDescriptor(), m_seats->limits.backlog);
    m_seats->updateAccepting();
    return true;
}

void HelpServer::close() {
    QTcpServer::close();
    m_started = false;
    log({"[Help] stopped [", m_name, "]"});
}

void HelpServer::retire() {
    if (isListening())
        close();
    m_retired = true;
    deleteWhenIdle();
}

void HelpServer::deleteWhenIdle() {
    if (m_retired && m_runningCommands == 0 && m_seats->isEmpty())
        deleteLater();
}

void HelpServer::setRelativePath(const std::string& path) {
    m_relativePath = ensureTrailingSlash(path);
    log({"[Help] relative path is now: ", m_relativePath});
    setSearchPath();
}

void HelpServer::setSearchPath() {
    m_searchPath = {getServerRoot()};
    if (!m_relativePath.empty())
        m_searchPath.push_back(m_serverRoot + m_relativePath);
    logSearchPath();
}

void HelpServer::appendSearchPath(const std::vector<const char*>& dirs) {
    for (const char* dir : dirs) {
        if (!dir)
            continue;
        const std::string entry = ensureTrailingSlash(dir);
        m_searchPath.push_back(entry);
        if (entry.find(".nova") != std::string::npos)
            m_searchPath.push_back(entry + "Documentation/");
    }
    logSearchPath();
}

void HelpServer::clearSearchPath() {
    m_searchPath.clear();
}

void HelpServer::logSearchPath() const {
    log({"[Help] search path: "});
    for (const std::string& entry : m_searchPath)
        log({entry});
}

void HelpServer::takeOver(const HelpServer& predecessor) {
    m_searchPath = predecessor.m_searchPath;
    m_relativePath = predecessor.m_relativePath;
    m_requestHandler = predecessor.m_requestHandler;
}

void HelpServer::setVerbose(bool verbose) {
    Help::setVerbose(verbose);
    report({"[Help] logging is ", verbose ? "verbose" : "off"});
}

const std::string& HelpServer::getServerRoot() {
    m_serverRoot = ensureTrailingSlash(QCoreApplication::applicationDirPath().toStdString());
    return m_serverRoot;
}

void HelpServer::incomingConnection(qintptr descriptor) {
    HelpConnection* connection = m_seats->admit(descriptor);
    if (!connection)
        return;
    connect(connection, &QTcpSocket::readyRead, this,
            [this, connection] { handleRequest(*connection); });
    connect(connection, &QTcpSocket::errorOccurred, this, &HelpServer::handleError);
}

void HelpServer::handleError(QAbstractSocket::SocketError error) {
    if (error == QAbstractSocket::RemoteHostClosedError)
        logToError({"[Help] RemoteHostClosed"});
}

void HelpServer::handleRequest(HelpConnection& connection) {
    if (connection.state() != QAbstractSocket::ConnectedState)
        return;
    const QByteArray input = connection.takeInput(m_seats->limits.requestBytes);
    if (connection.state() != QAbstractSocket::ConnectedState ||
        connection.phase() != HelpConnection::Phase::Waiting)
        return;
    const std::string request = input.constData(); // Up to its first zero byte.
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
    }
}

void HelpServer::handleRequestHEADOrGET(HelpConnection& connection, const std::string& request,
                                        bool isHead) {
    logToError({"HelpServer::handleRequestHEADOrGET"});
    const auto page = parseRequestGET(request);
    if (!page || isForeign(request, connection.localPort())) {
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
        response.written = [](qint64 bytes) {
            log({"[Help] wrote ", std::to_string(bytes), " bytes"});
        };
    }
    connection.send(std::move(response));
}

RegularFile HelpServer::findFile(const PageRequest& page) const {
    const char separator = QDir::separator().toLatin1();
    const auto name = fileNameOf(page, separator);
    if (!name)
        return {};
    for (const std::string& entry : m_searchPath) {
        if (entry.empty())
            continue;
        std::string path = entry;
        std::replace(path.begin(), path.end(), '/', separator);
        RegularFile file = RegularFile::open(path + *name);
        const bool exists = file.state() != RegularFile::State::Missing;
        log({"[Help] file ", exists ? "exists: " : "not found: ", file.path()});
        if (exists)
            return file;
    }
    return {};
}

void HelpServer::sendImage(HelpConnection& connection, RegularFile file,
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
        response.written = [counts, head = response.head.size()](qint64 bytes) {
            log({"[Help] sendImage wrote ", counts, std::to_string(bytes - head), " bytes"});
        };
    }
    connection.send(std::move(response));
}

void HelpServer::sendPageNotFound(HelpConnection& connection, std::string_view message) {
    log({"[Help] sendPageNotFound"});
    Response response;
    response.head = QByteArray::fromStdString(notFoundResponse(message));
    connection.send(std::move(response));
}

void HelpServer::handleRequestPOST(HelpConnection& connection, const std::string& request) {
    logToError({"[Help] handleRequestPOST"});
    const auto post = parseRequestPOST(request);
    if (!post || isForeign(request, connection.localPort())) {
        sendPageNotFound(connection, {});
        return;
    }
    log({"[Help] handleRequestPOST - Command ", post->command, " - Arg ", post->argument});
    if (m_requestHandler)
        runCommand(connection, *post);
    else
        reportError({"[Help] handleRequestPOST - no callback assigned"});
    if (connection.state() != QAbstractSocket::ConnectedState)
        return;
    Response response;
    response.head = "HTTP/1.1 200 OK\r\n\r\n";
    connection.send(std::move(response));
}

void HelpServer::runCommand(HelpConnection& connection, const CommandRequest& post) {
    // The callback may run an event loop of its own, change the port, or end the help manager.
    // Neither this server nor the connection, both on the stack, may be deleted meanwhile.
    connection.beginCommand();
    ++m_runningCommands;
    m_requestHandler(post.command, post.argument);
    --m_runningCommands;
    m_seats->endCommand(connection);
    deleteWhenIdle();
}

} // namespace Kestrel::UI
