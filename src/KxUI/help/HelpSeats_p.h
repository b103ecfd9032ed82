#pragma once

#include <KxUI/help/HelpConnection_p.h>

#include <QBasicTimer>
#include <QObject>
#include <QTcpServer>

#include <chrono>
#include <cstddef>
#include <vector>

namespace Kestrel::UI::Help {

/** How much of this process the clients of one server may hold. */
struct Limits {
    std::size_t connections = 64; ///< At a time; accepting pauses beyond.
    int requestBytes = 64 * 1024; ///< In the whole life of a connection.
    int backlog = 4096;           ///< Connections that may wait to be accepted.

    /** For a connection that asks for nothing, or that does not take what it is sent. */
    std::chrono::milliseconds idle = std::chrono::seconds(30);

    /** For a connection that asks for nothing while others may be waiting for its place: browsers
        open connections in advance, and open them anew when they need one. */
    std::chrono::milliseconds idleWhenFull = std::chrono::milliseconds(200);

    /** For a client that goes on sending after it was answered. */
    std::chrono::milliseconds linger = std::chrono::seconds(2);

    /** Between two looks at the connections, and before accepting again after it failed. */
    std::chrono::milliseconds sweep = std::chrono::milliseconds(100);
};

/** The connections of one server: no more at a time than there are seats, and none that sits idle
    for ever. Pauses the server's accepting while all seats are taken or descriptors have run out.
 */
class HelpSeats : public QObject {
    Q_OBJECT

public:
    /** Seats for the clients of `server`, which is also the parent. */
    explicit HelpSeats(QTcpServer& server);
    ~HelpSeats() override;

    Limits limits;

    bool isEmpty() const { return m_connections.empty(); }

    /** Turns an accepted descriptor into a connection, a child of the server; null on failure. */
    HelpConnection* admit(qintptr descriptor);

    /** To be called when a command has run: a client that left meanwhile gives up its seat now. */
    void endCommand(HelpConnection& connection);

    /** Accepts, or not, as the seats demand; called when the server has begun to listen. */
    void updateAccepting();

signals:
    /** The last connection has gone. */
    void emptied();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void release(HelpConnection* connection);
    bool isFull() const { return m_connections.size() >= limits.connections; }
    bool isOverdue(const HelpConnection& connection, HelpConnection::Clock::time_point now) const;

    QTcpServer& m_server;
    std::vector<HelpConnection*> m_connections;
    QBasicTimer m_sweep;
    bool m_acceptFailed = false;
};

} // namespace Kestrel::UI::Help
