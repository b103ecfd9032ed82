#pragma once

#include <KxUI/help/platform/HelpPlatform_p.h>

#include <QByteArray>
#include <QTcpSocket>

#include <chrono>
#include <functional>

namespace Kestrel::UI::Help {

/** What is sent for one request. */
struct Response {
    QByteArray head;  ///< Everything before the body.
    RegularFile body; ///< Sent as long as it was when it was opened; nothing unless open.
    QByteArray tail;  ///< Everything after the body.

    /** Told how many bytes were written when the last of them is on its way. May be empty. */
    std::function<void(qint64 bytes)> written;
};

/** One client of the help server: receives one request, sends one response, disconnects. A body is
    read from its file piece by piece as the client takes it. */
class HelpConnection : public QTcpSocket {
    Q_OBJECT

public:
    enum class Phase {
        Waiting,    ///< Nothing was asked that deserves an answer.
        Commanding, ///< A command of the host runs; the connection may not be deleted meanwhile.
        Answering,  ///< A response is being sent.
        Lingering   ///< All is queued; what the client still sends is read and dropped.
    };

    using Clock = std::chrono::steady_clock;

    explicit HelpConnection(QObject* parent);

    Phase phase() const { return m_phase; }

    /** What has arrived since the last call, at most `bytes` in all of the connection's life:
        a client that sends more is cut off, and nothing is returned. */
    QByteArray takeInput(int bytes);

    void beginCommand() { m_phase = Phase::Commanding; }
    void endCommand() { m_phase = Phase::Waiting; }

    /** Sends the response, then disconnects. */
    void send(Response response);

    /** The time of the last progress: of connecting, or of the last bytes that the client took. */
    Clock::time_point lastProgress() const { return m_lastProgress; }

private:
    void sendPiece();
    void finish();
    void proceed();

    Phase m_phase = Phase::Waiting;
    bool m_moreMayCome = true;
    bool m_allQueued = false;
    int m_received = 0;
    qint64 m_written = 0;
    std::uint64_t m_bodySent = 0;
    Clock::time_point m_lastProgress = Clock::now();
    Response m_response;
};

} // namespace Kestrel::UI::Help
