#include <KxUI/help/HelpSeats_p.h>

#include <QTimerEvent>

#include <algorithm>
#include <utility>

namespace Kestrel::UI::Help {

HelpSeats::HelpSeats(QTcpServer& server, Answer answer)
    : QObject(&server)
    , m_server(server)
    , m_answer(std::move(answer)) {
    // Out of descriptors: the listening socket stays readable, so trying at once would spin.
    connect(&server, &QTcpServer::acceptError, this, [this] {
        m_acceptFailed = true;
        m_sweep.start(static_cast<int>(settings.sweep.count()), this);
    });
}

HelpSeats::~HelpSeats() = default;

void HelpSeats::beginListening() {
    prepareListening(m_server.socketDescriptor(), settings.backlog,
                     static_cast<int>(settings.heldBack.count()));
    updateAccepting();
}

void HelpSeats::admit(qintptr socket) {
    auto* const connection = new HelpConnection(socket, m_server.serverPort(), *this, this);
    m_connections.push_back(connection);
    // Whoever is answered at once never fills the seats, but the event loop has others to serve.
    if (++m_admittedInARow >= settings.connections)
        m_nextTurn.start(0, this);
    if (isFull() || m_nextTurn.isActive())
        updateAccepting();
    connection->look();
    if (connection->phase() == HelpConnection::Phase::Closed) {
        leave(*connection);
        delete connection;
    } else if (!m_sweep.isActive()) {
        m_sweep.start(static_cast<int>(settings.sweep.count()), this);
    }
}

void HelpSeats::handleRequest(HelpConnection& connection, const std::string& request) {
    m_answer(connection, request);
}

void HelpSeats::handleClosed(HelpConnection& connection) {
    leave(connection);
    connection.deleteLater();
}

void HelpSeats::leave(HelpConnection& connection) {
    const bool wasFull = isFull();
    m_connections.erase(std::find(m_connections.begin(), m_connections.end(), &connection));
    if (wasFull)
        updateAccepting();
    if (m_connections.empty())
        Q_EMIT emptied();
}

void HelpSeats::updateAccepting() {
    const bool pause = isFull() || m_nextTurn.isActive();
    // The server's accept loop runs until nobody waits, unless it finds more connections pending
    // than it may hold; ours are never pending, so 0 stops it at once.
    m_server.setMaxPendingConnections(pause ? 0 : 1);
    if (!m_server.isListening())
        return;
    if (pause)
        m_server.pauseAccepting();
    else
        m_server.resumeAccepting();
}

bool HelpSeats::isOverdue(const HelpConnection& connection,
                          HelpConnection::Clock::time_point now) const {
    const auto idle = now - connection.lastProgress();
    switch (connection.phase()) {
    case HelpConnection::Phase::Waiting:
        return idle > (isFull() ? settings.idleWhenFull : settings.idle);
    case HelpConnection::Phase::Answering:
        return idle > settings.idle;
    case HelpConnection::Phase::Lingering:
        return idle > settings.linger;
    case HelpConnection::Phase::Commanding:
    case HelpConnection::Phase::Closed:
        break;
    }
    return false;
}

void HelpSeats::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_nextTurn.timerId()) {
        m_nextTurn.stop();
        m_admittedInARow = 0;
        updateAccepting();
    } else if (event->timerId() == m_sweep.timerId()) {
        sweep();
    }
}

void HelpSeats::sweep() {
    const auto now = HelpConnection::Clock::now();
    std::vector<HelpConnection*> overdue;
    std::copy_if(m_connections.begin(), m_connections.end(), std::back_inserter(overdue),
                 [&](const HelpConnection* each) { return isOverdue(*each, now); });
    for (HelpConnection* connection : overdue) {
        connection->close();
        handleClosed(*connection);
    }
    if (std::exchange(m_acceptFailed, false))
        updateAccepting();
    if (m_connections.empty())
        m_sweep.stop();
}

} // namespace Kestrel::UI::Help
