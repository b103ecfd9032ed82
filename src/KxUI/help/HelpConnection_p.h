#pragma once

#include <KxUI/help/platform/HelpPlatform_p.h>

#include <QBasicTimer>
#include <QByteArray>
#include <QObject>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

class QSocketNotifier;

namespace Kestrel::UI::Help {

struct Limits;

/** What is sent for one request. */
struct Response {
    QByteArray head;  ///< Everything before the body.
    RegularFile body; ///< Sent as long as it was when it was opened; nothing unless open.
    QByteArray tail;  ///< Everything after the body.

    /** Told how many bytes were written when the last of them is on its way. May be empty. */
    std::function<void(std::int64_t bytes)> written;
};

/** One client of the help server: receives one request, however it is cut into reads, sends one
    response, disconnects. A body is read from its file piece by piece as the client takes it.

    It speaks to its socket directly: a request that is there when the client is accepted, as nearly
    all are, is answered without the event loop. */
class HelpConnection : public QObject {
    Q_OBJECT

public:
    enum class Phase {
        Waiting,    ///< Nothing was asked that deserves an answer.
        Commanding, ///< A command of the host runs; the connection may not be deleted meanwhile.
        Answering,  ///< A response is being sent.
        Lingering,  ///< All is sent; what the client still sends is read and dropped.
        Closed
    };

    using Clock = std::chrono::steady_clock;

    /** Who has connections. */
    class Owner {
    public:
        /** A request is complete. To be answered by send(), now or never. May run an event loop,
            while the phase is `Commanding`. */
        virtual void handleRequest(HelpConnection& connection, const std::string& request) = 0;

        /** The event loop brought what closed the connection; it may be deleted later. */
        virtual void handleClosed(HelpConnection& connection) = 0;

        virtual const Limits& limits() const = 0;

    protected:
        ~Owner() = default;
    };

    /** Takes over a connected socket that the server accepted on `port`. Nothing happens before
        look(). `owner` outlives the connection. */
    HelpConnection(std::intptr_t socket, std::uint16_t port, Owner& owner, QObject* parent);
    ~HelpConnection() override;

    Phase phase() const { return m_phase; }
    std::uint16_t port() const { return m_port; }

    /** Reads what is there and handles it, up to a whole response. */
    void look();

    /** Around a command of the host. */
    void beginCommand() { m_phase = Phase::Commanding; }
    void endCommand() { m_phase = Phase::Waiting; }

    /** Sends the response, then disconnects. */
    void send(Response response);

    /** Breaks off, whatever is under way. */
    void close();

    /** The time of the last progress: of connecting, or of the last bytes that the client took. */
    Clock::time_point lastProgress() const { return m_lastProgress; }

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    enum class Received { Nothing, Bytes, End };

    Received receive();
    void look(bool isSilent);
    void judge();
    void sendPiece();
    void fillPiece();
    void finish();
    void awaitInput(bool wanted);
    void awaitOutput(bool wanted);
    void tellIfClosed();

    const std::intptr_t m_socket;
    const std::uint16_t m_port;
    Owner& m_owner;
    Phase m_phase = Phase::Waiting;
    bool m_moreMayCome = true;
    Clock::time_point m_lastProgress = Clock::now();

    std::string m_input;
    std::size_t m_received = 0;
    QBasicTimer m_silence;

    Response m_response;
    QByteArray m_piece;
    int m_pieceSent = 0;
    std::uint64_t m_bodyRead = 0;
    bool m_allRead = false;
    std::int64_t m_written = 0;

    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
};

} // namespace Kestrel::UI::Help
