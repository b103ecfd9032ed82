#include <KxUI/help/platform/HelpPlatform_p.h>

#include <algorithm>
#include <climits>
#include <utility>

#include <winsock2.h>

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

namespace Kestrel::UI::Help {
namespace {

// A device name such as "nul.html" passes for a file until its handle is asked.
bool isOnDisk(int descriptor) {
    return GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor))) == FILE_TYPE_DISK;
}

int atMostInt(std::size_t bytes) {
    return static_cast<int>(std::min<std::size_t>(bytes, INT_MAX));
}

// The calls for 8-bit paths know only the code page of the process, and UTF-8 says more than that.
// Empty for what is no UTF-8.
std::wstring widePath(const std::string& path) {
    const int length = static_cast<int>(path.size());
    const auto convert = [&](wchar_t* to, int room) {
        return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path.data(), length, to, room);
    };
    std::wstring wide(static_cast<std::size_t>(convert(nullptr, 0)), L'\0');
    convert(wide.data(), static_cast<int>(wide.size()));
    return wide;
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
        _close(m_descriptor);
}

RegularFile RegularFile::open(std::string path) {
    RegularFile file(std::move(path));
    const std::wstring wide = widePath(file.m_path);
    struct _stat64 status {};
    if (_wstat64(wide.c_str(), &status) != 0 || (status.st_mode & _S_IFMT) != _S_IFREG)
        return file;
    file.m_state = State::Unreadable;
    if (_wsopen_s(&file.m_descriptor, wide.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT,
                  _SH_DENYNO, 0) != 0)
        return file;
    if (!isOnDisk(file.m_descriptor) || _fstat64(file.m_descriptor, &status) != 0)
        return RegularFile(std::move(file.m_path));
    file.m_size = static_cast<std::uint64_t>(status.st_size);
    file.m_state = State::Open;
    return file;
}

std::size_t RegularFile::read(char* to, std::size_t bytes) {
    std::size_t done = 0;
    while (done < bytes) {
        const auto piece = static_cast<unsigned>(atMostInt(bytes - done));
        const int now = _read(m_descriptor, to + done, piece);
        if (now <= 0)
            break;
        done += static_cast<std::size_t>(now);
    }
    return done;
}

void prepareListening(std::intptr_t listeningSocket, int backlog, int /*silence*/) {
    ::listen(static_cast<SOCKET>(listeningSocket), backlog);
}

void prepareConnection(std::intptr_t socket) {
    u_long withoutWaiting = 1;
    ::ioctlsocket(static_cast<SOCKET>(socket), static_cast<long>(FIONBIO), &withoutWaiting);
}

std::ptrdiff_t receive(std::intptr_t socket, char* to, std::size_t bytes) {
    const int got = ::recv(static_cast<SOCKET>(socket), to, atMostInt(bytes), 0);
    if (got >= 0)
        return got;
    return WSAGetLastError() == WSAEWOULDBLOCK ? -1 : 0;
}

std::ptrdiff_t send(std::intptr_t socket, const char* from, std::size_t bytes) {
    const int sent = ::send(static_cast<SOCKET>(socket), from, atMostInt(bytes), 0);
    if (sent >= 0)
        return sent;
    return WSAGetLastError() == WSAEWOULDBLOCK ? 0 : -1;
}

void endSending(std::intptr_t socket) {
    ::shutdown(static_cast<SOCKET>(socket), SD_SEND);
}

void closeSocket(std::intptr_t socket) {
    ::closesocket(static_cast<SOCKET>(socket));
}

} // namespace Kestrel::UI::Help
