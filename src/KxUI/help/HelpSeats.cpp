#include <KxUI/help/HelpSeats_p.h>

#include <QTimerEvent>

#include <algorithm>
#include <memory>

namespace Kestrel::UI::Help {

HelpSeats::HelpSeats(QTcpServer& server)
    : QObject(&server)
    , m_server(server) {
    // Out of descriptors: the listening socket stays readable, so trying at once would spin.
    connect(&server, &QTcpServer::acceptError, this, [this] {
        m_acceptFailed = true;
        m_sweep.start(static_cast<int>(limits.sweep.count()), this);
    });
}

HelpSeats::~HelpSeats() {
    for (HelpConnection* connection : m_connections)
        connection->disconnect();
    qDeleteAll(m_connections);
}

HelpConnection* HelpSeats::admit(qintptr descriptor) {
    auto connection = std::make_unique<HelpConnection>(&m_server);
    if (!connection->setSocketDescriptor(descriptor)) {
        closeSocket(descriptor);
        return nullptr;
    }
    connection->setReadBufferSize(limits.requestBytes + 1);
    connect(connection.get(), &QTcpSocket::disconnected, this,
            [this, admitted = connection.get()] { release(admitted); });
    m_connections.push_back(connection.get());
    if (!m_sweep.isActive())
        m_sweep.start(static_cast<int>(limits.sweep.count()), this);
    if (isFull())
        updateAccepting();
    return connection.release();
}

void HelpSeats::release(HelpConnection* connection) {
    const auto seat = std::find(m_connections.begin(), m_connections.end(), connection);
    if (seat == m_connections.end() || connection->phase() == HelpConnection::Phase::Commanding)
        return;
    const bool wasFull = isFull();
    m_connections.erase(seat);
    connection->deleteLater();
    if (wasFull)
        updateAccepting();
    if (m_connections.empty())
        emit emptied();
}

void HelpSeats::endCommand(HelpConnection& connection) {
    connection.endCommand();
    if (connection.state() == QAbstractSocket::UnconnectedState)
        release(&connection);
}

void HelpSeats::updateAccepting() {
    // The server's accept loop runs until nobody waits, unless it finds more connections pending
    // than it may hold; ours are never pending, so 0 stops it at once.
    m_server.setMaxPendingConnections(isFull() ? 0 : 1);
    if (!m_server.isListening())
        return;
    if (isFull())
        m_server.pauseAccepting();
    else
        m_server.resumeAccepting();
}

bool HelpSeats::isOverdue(const HelpConnection& connection,
                          HelpConnection::Clock::time_point now) const {
    const auto idle = now - connection.lastProgress();
    switch (connection.phase()) {
    case HelpConnection::Phase::Waiting:
        return idle > (isFull() ? limits.idleWhenFull : limits.idle);
    case HelpConnection::Phase::Commanding:
        return false;
    case HelpConnection::Phase::Answering:
        return idle > limits.idle;
    case HelpConnection::Phase::Lingering:
        break;
    }
    return idle > (connection.bytesToWrite() > 0 ? limits.idle : limits.linger);
}

void HelpSeats::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_sweep.timerId())
        return;
    const auto now = HelpConnection::Clock::now();
    std::vector<HelpConnection*> overdue;
    for (HelpConnection* connection : m_connections) {
        if (isOverdue(*connection, now))
            overdue.push_back(connection);
    }
    for (HelpConnection* connection : overdue)
        connection->abort();
    if (m_acceptFailed) {
        m_acceptFailed = false;
        updateAccepting();
    }
    if (m_connections.empty())
        m_sweep.stop();
}

} // namespace Kestrel::UI::Help
