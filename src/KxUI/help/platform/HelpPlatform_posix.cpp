#include <KxUI/help/platform/HelpPlatform_p.h>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Kestrel::UI::Help {
namespace {

// A client that has gone must not end the process; where there is no such flag, a socket option
// says it.
#ifdef MSG_NOSIGNAL
constexpr int noSignal = MSG_NOSIGNAL;
#else
constexpr int noSignal = 0;
#endif

bool isTemporary(int error) {
    return error == EAGAIN || error == EWOULDBLOCK;
}

} // namespace

RegularFile::RegularFile(RegularFile&& other) noexcept
    : m_path(std::move(other.m_path))
    , m_state(std::exchange(other.m_state, State::Missing))
    , m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_size(std::exchange(other.m_size, 0)) {}

RegularFile& RegularFile::operator=(RegularFile&& other) noexcept {
    std::swap(m_path, other.m_path);
    std::swap(m_state, other.m_state);
    std::swap(m_descriptor, other.m_descriptor);
    std::swap(m_size, other.m_size);
    return *this;
}

RegularFile::~RegularFile() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

RegularFile RegularFile::open(std::string path) {
    RegularFile file(std::move(path));
    struct stat status {};
    // Looked at before it is opened: opening alone can wake the writer of a FIFO or wind a tape.
    if (::stat(file.m_path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return file;
    file.m_state = State::Unreadable;
    // What was a file a moment ago may be a FIFO now.
    file.m_descriptor = ::open(file.m_path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file.m_descriptor < 0)
        return file;
    if (::fstat(file.m_descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return RegularFile(std::move(file.m_path));
    file.m_size = static_cast<std::uint64_t>(status.st_size);
    file.m_state = State::Open;
    return file;
}

std::size_t RegularFile::read(char* to, std::size_t bytes) {
    std::size_t done = 0;
    while (done < bytes) {
        const ssize_t now = ::read(m_descriptor, to + done, bytes - done);
        if (now < 0 && errno == EINTR)
            continue;
        if (now <= 0)
            break;
        done += static_cast<std::size_t>(now);
    }
    return done;
}

void prepareListening(std::intptr_t listeningSocket, int backlog, int silence) {
    const int socket = static_cast<int>(listeningSocket);
#ifdef TCP_DEFER_ACCEPT
    ::setsockopt(socket, IPPROTO_TCP, TCP_DEFER_ACCEPT, &silence, sizeof silence);
#else
    static_cast<void>(silence);
#endif
    ::listen(socket, backlog);
}

void prepareConnection(std::intptr_t socket) {
#ifdef SO_NOSIGPIPE
    const int on = 1;
    ::setsockopt(static_cast<int>(socket), SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#else
    static_cast<void>(socket);
#endif
}

std::ptrdiff_t receive(std::intptr_t socket, char* to, std::size_t bytes) {
    for (;;) {
        const ssize_t got = ::recv(static_cast<int>(socket), to, bytes, MSG_DONTWAIT);
        if (got >= 0)
            return got;
        if (errno != EINTR)
            return isTemporary(errno) ? -1 : 0;
    }
}

std::ptrdiff_t send(std::intptr_t socket, const char* from, std::size_t bytes) {
    for (;;) {
        const ssize_t sent = ::send(static_cast<int>(socket), from, bytes, MSG_DONTWAIT | noSignal);
        if (sent >= 0)
            return sent;
        if (errno != EINTR)
            return isTemporary(errno) ? 0 : -1;
    }
}

void endSending(std::intptr_t socket) {
    ::shutdown(static_cast<int>(socket), SHUT_WR);
}

void closeSocket(std::intptr_t socket) {
    ::close(static_cast<int>(socket));
}

} // namespace Kestrel::UI::Help
