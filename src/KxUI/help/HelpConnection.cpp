#include <KxUI/help/HelpConnection_p.h>

#include <KxUI/help/HelpLimits_p.h>
#include <KxUI/help/HelpLog_p.h>
#include <KxUI/help/HelpRequest_p.h>

#include <QSocketNotifier>
#include <QTimerEvent>

#include <algorithm>
#include <array>
#include <utility>

namespace Kestrel::UI::Help {
namespace {

// Large enough to keep a fast reader busy, small enough to be read between two frames.
constexpr std::uint64_t pieceBytes = 64 * 1024;

// The request as the server sees it: up to its first zero byte.
std::string_view textOf(const std::string& input) {
    return input.c_str();
}

} // namespace

HelpConnection::HelpConnection(std::intptr_t socket, std::uint16_t port, Owner& owner,
                               QObject* parent)
    : QObject(parent)
    , m_socket(socket)
    , m_port(port)
    , m_owner(owner) {
    prepareConnection(m_socket);
}

HelpConnection::~HelpConnection() {
    close();
}

void HelpConnection::close() {
    if (m_phase == Phase::Closed)
        return;
    m_phase = Phase::Closed;
    m_silence.stop();
    awaitInput(false);
    awaitOutput(false);
    closeSocket(m_socket);
}

void HelpConnection::look() {
    look(false);
}

void HelpConnection::look(bool isSilent) {
    const Received received = receive();
    if (m_phase == Phase::Waiting) {
        const Progress progress = progressOf(textOf(m_input));
        const bool mayEnd =
            received == Received::End || (isSilent && received == Received::Nothing);
        if (progress == Progress::Whole ||
            (progress == Progress::Open && mayEnd && !m_input.empty()))
            judge();
        else if (progress == Progress::Open && received == Received::Bytes)
            m_silence.start(static_cast<int>(m_owner.limits().silence.count()), this);
    }
    // Who is sent something, or whose command runs, is listened to afterwards.
    const bool listens = m_phase == Phase::Waiting || m_phase == Phase::Lingering;
    if (listens && received == Received::End)
        close();
    else
        awaitInput(listens);
}

HelpConnection::Received HelpConnection::receive() {
    static std::array<char, 64 * 1024 + 1> buffer;
    const std::size_t room = m_owner.limits().requestBytes + 1 - m_received;
    const std::ptrdiff_t got =
        Help::receive(m_socket, buffer.data(), std::min(buffer.size(), room));
    if (got < 0)
        return Received::Nothing;
    if (got == 0) {
        m_moreMayCome = false;
        logToError({"[Help] RemoteHostClosed"});
        return Received::End;
    }
    m_received += static_cast<std::size_t>(got);
    if (m_received > m_owner.limits().requestBytes)
        close();
    else if (m_phase == Phase::Waiting)
        m_input.append(buffer.data(), static_cast<std::size_t>(got));
    return Received::Bytes;
}

void HelpConnection::judge() {
    m_silence.stop();
    // A host's event loop must not find here what nobody reads while its command runs.
    awaitInput(false);
    const std::string input = std::exchange(m_input, {});
    const std::string request(headOf(textOf(input)));
    // A browser sends the body of a POST apart.
    if (methodOf(request) != Method::Post && progressOf(request) == Progress::Whole &&
        request.size() == input.size())
        m_moreMayCome = false;
    m_owner.handleRequest(*this, request);
}

void HelpConnection::send(Response response) {
    m_phase = Phase::Answering;
    m_response = std::move(response);
    m_lastProgress = Clock::now();
    sendPiece();
}

void HelpConnection::sendPiece() {
    if (m_pieceSent == m_piece.size())
        fillPiece();
    const std::ptrdiff_t sent = Help::send(m_socket, m_piece.constData() + m_pieceSent,
                                           static_cast<std::size_t>(m_piece.size() - m_pieceSent));
    if (sent < 0) {
        close();
        return;
    }
    if (sent > 0)
        m_lastProgress = Clock::now();
    m_pieceSent += static_cast<int>(sent);
    m_written += sent;
    // One piece a turn of the event loop, or a fast client would keep it until it had all.
    if (m_pieceSent < m_piece.size() || !m_allRead)
        awaitOutput(true);
    else
        finish();
}

void HelpConnection::fillPiece() {
    m_pieceSent = 0;
    m_piece = std::exchange(m_response.head, {});
    m_allRead = true;
    if (m_response.body.state() == RegularFile::State::Open) {
        const auto wanted = std::min(pieceBytes, m_response.body.size() - m_bodyRead);
        const int before = int(m_piece.size());
        m_piece.resize(before + static_cast<int>(wanted));
        const std::size_t got = m_response.body.read(m_piece.data() + before, wanted);
        m_piece.resize(before + static_cast<int>(got));
        m_bodyRead += got;
        m_allRead = m_bodyRead == m_response.body.size() || got < wanted;
    }
    if (m_allRead)
        m_piece += m_response.tail;
}

void HelpConnection::finish() {
    awaitOutput(false);
    if (m_response.written)
        m_response.written(m_written);
    m_response = {};
    if (!m_moreMayCome) {
        close();
        return;
    }
    // Closing on input that nobody read would destroy the response on its way.
    m_phase = Phase::Lingering;
    endSending(m_socket);
    awaitInput(true);
}

void HelpConnection::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_silence.timerId())
        return;
    m_silence.stop();
    look(true);
    tellIfClosed();
}

void HelpConnection::tellIfClosed() {
    if (m_phase == Phase::Closed)
        m_owner.handleClosed(*this);
}

void HelpConnection::awaitInput(bool wanted) {
    if (wanted && !m_readable) {
        m_readable = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
        connect(m_readable.get(), &QSocketNotifier::activated, this, [this] {
            look();
            tellIfClosed();
        });
    } else if (m_readable) {
        m_readable->setEnabled(wanted);
    }
}

void HelpConnection::awaitOutput(bool wanted) {
    if (wanted && !m_writable) {
        m_writable = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Write);
        connect(m_writable.get(), &QSocketNotifier::activated, this, [this] {
            sendPiece();
            tellIfClosed();
        });
    } else if (m_writable) {
        m_writable->setEnabled(wanted);
    }
}

} // namespace Kestrel::UI::Help
