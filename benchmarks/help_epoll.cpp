// bench_help_epoll FILE: the least a server can do. One thread, one epoll loop; every request is
// answered with the bytes of FILE, read anew, and the connection is closed.

#include <cstdio>
#include <cstring>

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

int main(int argc, char** argv) {
    const int listening = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (argc != 2 || ::bind(listening, generic, size) != 0 || ::listen(listening, 4096) != 0 ||
        ::getsockname(listening, generic, &size) != 0)
        return 1;
    std::printf("%d\n", ntohs(address.sin_port));
    std::fflush(stdout);

    const int poller = ::epoll_create1(0);
    epoll_event wanted{};
    wanted.events = EPOLLIN;
    wanted.data.fd = listening;
    ::epoll_ctl(poller, EPOLL_CTL_ADD, listening, &wanted);
    static char request[8192];
    static char response[65536] = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n\r\n";
    const std::size_t head = std::strlen(response);
    for (;;) {
        epoll_event events[64];
        const int count = ::epoll_wait(poller, events, 64, -1);
        for (int i = 0; i < count; ++i) {
            const int ready = events[i].data.fd;
            if (ready == listening) {
                for (int client; (client = ::accept4(listening, nullptr, nullptr,
                                                     SOCK_NONBLOCK | SOCK_CLOEXEC)) >= 0;) {
                    wanted.data.fd = client;
                    ::epoll_ctl(poller, EPOLL_CTL_ADD, client, &wanted);
                }
                continue;
            }
            if (::recv(ready, request, sizeof request, 0) > 0) {
                const int file = ::open(argv[1], O_RDONLY | O_CLOEXEC);
                const ssize_t body = ::read(file, response + head, sizeof response - head);
                ::close(file);
                if (body < 0 || ::send(ready, response, head + std::size_t(body), MSG_NOSIGNAL) < 0)
                    std::perror("bench_help_epoll");
            }
            ::close(ready);
        }
    }
}
