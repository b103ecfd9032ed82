#pragma once

#include <KxUI/help/HelpConnection_p.h>
#include <KxUI/help/HelpLimits_p.h>

#include <QBasicTimer>
#include <QObject>
#include <QTcpServer>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace Kestrel::UI::Help {

/** The connections of one server: no more at a time than there are seats, and none that sits idle
    for ever. Pauses the server's accepting while all seats are taken or descriptors have run out,
    and for a turn of the event loop after as many clients as there are seats. */
class HelpSeats : public QObject, private HelpConnection::Owner {
    Q_OBJECT

public:
    /** Answers a request, now or never; see HelpConnection::Owner. */
    using Answer = std::function<void(HelpConnection& connection, const std::string& request)>;

    /** Seats for the clients of `server`, which is also the parent. */
    HelpSeats(QTcpServer& server, Answer answer);
    ~HelpSeats() override;

    Limits settings;

    bool isEmpty() const { return m_connections.empty(); }

    /** Seats the client of an accepted socket, and answers what it has asked already. */
    void admit(qintptr socket);

    /** To be called when the server has begun to listen. */
    void beginListening();

Q_SIGNALS:
    /** The last connection has gone. */
    void emptied();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void handleRequest(HelpConnection& connection, const std::string& request) override;
    void handleClosed(HelpConnection& connection) override;
    const Limits& limits() const override { return settings; }

    bool isFull() const { return m_connections.size() >= settings.connections; }
    bool isOverdue(const HelpConnection& connection, HelpConnection::Clock::time_point now) const;
    void leave(HelpConnection& connection);
    void sweep();
    void updateAccepting();

    QTcpServer& m_server;
    const Answer m_answer;
    std::vector<HelpConnection*> m_connections;
    QBasicTimer m_sweep;
    QBasicTimer m_nextTurn;
    std::size_t m_admittedInARow = 0;
    bool m_acceptFailed = false;
};

} // namespace Kestrel::UI::Help
