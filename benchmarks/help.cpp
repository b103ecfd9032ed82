// The help server against others, by what a request costs the serving process in CPU time. `ab`
// makes the load; connections are closed after each response.

#include <support/Bench.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr int requests = 3000;
constexpr std::int64_t bigFileBytes = 512ll << 20;
constexpr int busyConnections = 2000;
constexpr int idleConnections = 500;

const QString& site() {
    static const QTemporaryDir folder;
    static const QString path = [] {
        QFile page(folder.filePath(QStringLiteral("page.html")));
        page.open(QIODevice::WriteOnly);
        page.write(QByteArray(10000, 'p'));
        QFile big(folder.filePath(QStringLiteral("big.html")));
        big.open(QIODevice::WriteOnly);
        big.resize(bigFileBytes);
        return folder.path();
    }();
    return path;
}

/** A connected client socket, non-blocking. */
class Connection {
public:
    explicit Connection(int port)
        : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        ::connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() { ::close(m_socket); }

    int socket() const { return m_socket; }

    bool wait(short what, int milliseconds = 60000) const {
        pollfd each{m_socket, what, 0};
        return ::poll(&each, 1, milliseconds) == 1 && (each.revents & what) != 0;
    }

    bool ask(const std::string& path) const {
        const std::string request =
            "GET /" + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n";
        return wait(POLLOUT) && ::send(m_socket, request.data(), request.size(), MSG_NOSIGNAL) ==
                                    static_cast<ssize_t>(request.size());
    }

    /** Bytes received, 0 at the end, or -1. */
    ssize_t receive(char* buffer, std::size_t size) const {
        return wait(POLLIN) ? ::recv(m_socket, buffer, size, 0) : -1;
    }

private:
    int m_socket;
};

int freePort() {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    ::bind(socket, reinterpret_cast<sockaddr*>(&address), size);
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
    ::close(socket);
    return ntohs(address.sin_port);
}

/** A server process; ends with this object. */
class Server {
public:
    /** `port` 0: the process says on its first line which one it has. */
    Server(const QString& program, const QStringList& arguments, int port)
        : m_port(port) {
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(program, arguments);
        if (!m_process.waitForStarted())
            throw std::runtime_error("cannot start " + program.toStdString());
        if (m_port == 0)
            m_port = readLine().toInt();
        while (!Connection(m_port).wait(POLLOUT) || !answers())
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    ~Server() {
        m_process.kill();
        m_process.waitForFinished();
    }

    int port() const { return m_port; }

    /** CPU time of the whole process so far, threads that have ended included. */
    Seconds cpu() const {
        clockid_t clock;
        timespec time{};
        if (::clock_getcpuclockid(static_cast<pid_t>(m_process.processId()), &clock) != 0 ||
            ::clock_gettime(clock, &time) != 0)
            throw std::runtime_error("the server has gone");
        return Seconds(double(time.tv_sec) + double(time.tv_nsec) * 1e-9);
    }

    std::int64_t memory(const char* what) const {
        QFile status(QStringLiteral("/proc/%1/status").arg(m_process.processId()));
        status.open(QIODevice::ReadOnly);
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith(what))
                return line.split(':').at(1).simplified().split(' ').at(0).toLongLong() * 1024;
        }
        return 0;
    }

    Seconds longestGap() {
        m_process.write("\n");
        return std::chrono::nanoseconds(readLine().toLongLong());
    }

private:
    bool answers() const {
        const Connection client(m_port);
        char byte;
        return client.ask("page.html") && client.receive(&byte, 1) == 1;
    }
    QByteArray readLine() {
        while (!m_process.canReadLine() && m_process.waitForReadyRead()) {
        }
        return m_process.readLine().trimmed();
    }

    QProcess m_process;
    int m_port;
};

QString beside(const char* name) {
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(name);
}

std::unique_ptr<Server> startOurs() {
    return std::make_unique<Server>(beside("bench_help_ours"), QStringList{site()}, 0);
}

std::unique_ptr<Server> startEpoll() {
    return std::make_unique<Server>(beside("bench_help_epoll"),
                                    QStringList{site() + QStringLiteral("/page.html")}, 0);
}

std::unique_ptr<Server> startNginx() {
    const int port = freePort();
    QFile file(site() + QStringLiteral("/nginx.conf"));
    file.open(QIODevice::WriteOnly);
    file.write("daemon off; master_process off; pid nginx.pid; error_log /dev/null;\n"
               "events { worker_connections 4096; }\n"
               "http { access_log off; sendfile on; server { listen 127.0.0.1:" +
               QByteArray::number(port) + " backlog=4096; root " + site().toUtf8() + "; } }\n");
    file.close();
    // Where it is installed is not on everybody's path.
    const QString found = QStandardPaths::findExecutable(
        QStringLiteral("nginx"), {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/bin")});
    return std::make_unique<Server>(
        found, QStringList{QStringLiteral("-p"), site(), QStringLiteral("-c"), file.fileName()},
        port);
}

std::unique_ptr<Server> startPython() {
    const int port = freePort();
    return std::make_unique<Server>(
        QStringLiteral("python3"),
        QStringList{QStringLiteral("-m"), QStringLiteral("http.server"), QStringLiteral("--bind"),
                    QStringLiteral("127.0.0.1"), QStringLiteral("--directory"), site(),
                    QString::number(port)},
        port);
}

using Start = std::function<std::unique_ptr<Server>()>;

// Registers a case whose cost is what `body` returns.
void addMeasured(const std::string& work, const std::string& who, const Start& start,
                 const std::function<Seconds(benchmark::State&, Server&)>& body) {
    benchmark::RegisterBenchmark((work + "/" + who).c_str(),
                                 [=](benchmark::State& state) {
                                     const auto server = start();
                                     for (auto _ : state)
                                         state.SetIterationTime(body(state, *server).count());
                                 })
        ->UseManualTime()
        ->Iterations(1);
}

Seconds requestCost(benchmark::State& state, Server& server) {
    const Seconds before = server.cpu();
    QProcess load;
    load.start(QStringLiteral("ab"),
               {QStringLiteral("-q"), QStringLiteral("-n"), QString::number(requests),
                QStringLiteral("-c"), QStringLiteral("8"),
                QStringLiteral("http://127.0.0.1:%1/page.html").arg(server.port())});
    load.waitForFinished(-1);
    const QByteArray said = load.readAllStandardOutput().simplified();
    if (!said.contains("Complete requests: " + QByteArray::number(requests)) ||
        !said.contains("Failed requests: 0"))
        state.SkipWithError("requests failed");
    return (server.cpu() - before) / requests;
}

struct Download {
    Seconds firstByte{};
    Seconds longestGap{};
};

Download downloadBigFile(benchmark::State& state, Server& server, bool watchLoop) {
    const std::int64_t before = server.memory("VmRSS");
    if (watchLoop)
        server.longestGap();
    Download result;
    const auto start = Clock::now();
    const Connection client(server.port());
    client.ask("big.html");
    std::vector<char> buffer(1 << 20);
    std::int64_t received = 0;
    for (ssize_t now; (now = client.receive(buffer.data(), buffer.size())) > 0; received += now) {
        if (received == 0)
            result.firstByte = Clock::now() - start;
    }
    if (watchLoop)
        result.longestGap = server.longestGap();
    const std::int64_t growth = server.memory("VmHWM") - before;
    if (received < bigFileBytes)
        state.SkipWithError("the file did not arrive");
    else if (growth > 4 << 20)
        state.SkipWithError("the server grew by more than 4 MB");
    return result;
}

// What a server does that takes a file into memory before it sends it.
Seconds readBigFile(benchmark::State&, Server&) {
    const auto start = Clock::now();
    QFile file(site() + QStringLiteral("/big.html"));
    file.open(QIODevice::ReadOnly);
    std::vector<char> buffer(1 << 20);
    while (file.read(buffer.data(), static_cast<qint64>(buffer.size())) > 0) {
    }
    return Clock::now() - start;
}

Seconds crowd(benchmark::State& state, Server& server) {
    const auto start = Clock::now();
    std::vector<std::unique_ptr<Connection>> clients;
    for (int i = 0; i < idleConnections + busyConnections; ++i)
        clients.push_back(std::make_unique<Connection>(server.port()));
    int answered = 0;
    for (int i = idleConnections; i < idleConnections + busyConnections; ++i)
        clients[static_cast<std::size_t>(i)]->ask("page.html");
    for (int i = idleConnections; i < idleConnections + busyConnections; ++i) {
        char buffer[16384];
        std::int64_t received = 0;
        const Connection& client = *clients[static_cast<std::size_t>(i)];
        for (ssize_t now; (now = client.receive(buffer, sizeof buffer)) > 0;)
            received += now;
        answered += received > 10000 ? 1 : 0;
    }
    if (answered != busyConnections)
        state.SkipWithError("requests were not answered");
    return Clock::now() - start;
}

Seconds idleSecond(benchmark::State&, Server& server) {
    std::vector<std::unique_ptr<Connection>> clients;
    for (int i = 0; i < idleConnections; ++i)
        clients.push_back(std::make_unique<Connection>(server.port()));
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const Seconds before = server.cpu();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    return server.cpu() - before;
}

} // namespace

void registerBenchmarks() {
    using Kestrel::Bench::targetRatio;
    rlimit files{};
    ::getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &files);

    const std::string page = "10 kB page, server CPU a request";
    addMeasured(page, "ours", startOurs, requestCost);
    addMeasured(page, "minimal epoll loop", startEpoll, requestCost);
    addMeasured(page, "nginx", startNginx, requestCost);
    addMeasured(page, "python http.server", startPython, requestCost);
    targetRatio(page, "nginx", 1);
    targetRatio(page, "python http.server", 8);

    const std::string firstByte = "512 MB page, first byte";
    const auto measureFirstByte = [](benchmark::State& state, Server& server) {
        return downloadBigFile(state, server, false).firstByte;
    };
    addMeasured(firstByte, "ours", startOurs, measureFirstByte);
    addMeasured(firstByte, "nginx", startNginx, measureFirstByte);
    targetRatio(firstByte, "nginx", 0.1);

    const std::string gap = "512 MB page, longest gap of the event loop";
    addMeasured(gap, "ours", startOurs, [](benchmark::State& state, Server& server) {
        return downloadBigFile(state, server, true).longestGap;
    });
    addMeasured(gap, "the file read at once", startOurs, readBigFile);
    targetRatio(gap, "the file read at once", 10);

    const std::string all = "2,000 requests behind 500 idle connections, all answered";
    addMeasured(all, "ours", startOurs, crowd);
    addMeasured(all, "nginx", startNginx, crowd);
    targetRatio(all, "nginx", 0.5);

    const std::string idle = "500 idle connections, CPU a second";
    addMeasured(idle, "ours", startOurs, idleSecond);
    addMeasured(idle, "nginx", startNginx, idleSecond);
    addMeasured(idle, "50 pages", startOurs, [](benchmark::State& state, Server& server) {
        return 50 * requestCost(state, server);
    });
    targetRatio(idle, "50 pages", 1);
}
