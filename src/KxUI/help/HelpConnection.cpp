#include <KxUI/help/HelpConnection_p.h>

#include <algorithm>
#include <utility>

namespace Kestrel::UI::Help {
namespace {

// Large enough to keep a fast reader busy, small enough to be read between two frames.
constexpr std::uint64_t pieceBytes = 64 * 1024;

} // namespace

HelpConnection::HelpConnection(QObject* parent)
    : QTcpSocket(parent) {
    // Queued: the socket writes as long as it has something, so a piece that were added at once
    // would keep it from the event loop until a fast client had the whole file.
    connect(this, &QTcpSocket::bytesWritten, this, &HelpConnection::proceed, Qt::QueuedConnection);
}

QByteArray HelpConnection::takeInput(int bytes) {
    const QByteArray input = read(bytes - m_received + 1);
    m_received += input.size();
    if (m_received > bytes) {
        abort();
        return {};
    }
    m_moreMayCome = input.startsWith("POST") || !input.endsWith("\r\n\r\n");
    return input;
}

void HelpConnection::send(Response response) {
    m_phase = Phase::Answering;
    m_response = std::move(response);
    m_lastProgress = Clock::now();
    sendPiece();
    if (!m_allQueued) {
        // A client that has ended its sending half would be taken for one that has gone, and lose
        // the rest of the body. A full buffer stops the socket from reading.
        ungetChar('\n');
        setReadBufferSize(1);
        m_moreMayCome = false;
    }
    finish();
}

void HelpConnection::sendPiece() {
    QByteArray piece = std::exchange(m_response.head, {});
    if (m_response.body.state() == RegularFile::State::Open) {
        const auto wanted = std::min(pieceBytes, m_response.body.size() - m_bodySent);
        const int before = piece.size();
        piece.resize(before + static_cast<int>(wanted));
        const std::size_t got = m_response.body.read(piece.data() + before, wanted);
        piece.resize(before + static_cast<int>(got));
        m_bodySent += got;
        m_allQueued = m_bodySent == m_response.body.size() || got < wanted;
    } else {
        m_allQueued = true;
    }
    if (m_allQueued)
        piece += m_response.tail;
    m_written += std::max<qint64>(write(piece), 0);
    // Straight to the kernel: waiting for the event loop costs a turn.
    flush();
    if (m_allQueued && m_response.written)
        m_response.written(m_written);
}

void HelpConnection::proceed() {
    m_lastProgress = Clock::now();
    if (m_phase != Phase::Answering)
        return;
    if (!m_allQueued && bytesToWrite() < static_cast<qint64>(pieceBytes))
        sendPiece();
    finish();
}

void HelpConnection::finish() {
    if (!m_allQueued || m_phase != Phase::Answering)
        return;
    if (!m_moreMayCome) {
        m_phase = Phase::Lingering;
        // Closes when what is queued has been sent.
        disconnectFromHost();
    } else if (bytesToWrite() == 0) {
        m_phase = Phase::Lingering;
        // Closing on input that nobody read would destroy the response on its way.
        endSending(socketDescriptor());
    }
}

} // namespace Kestrel::UI::Help
