// bench_help_ours DIR: serves DIR, says on which port, and then answers each line of its input with
// the longest gap of its event loop since the line before, in nanoseconds.

#include <KxUI/help/HelpServer.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include <unistd.h>

int main(int argc, char** argv) {
    using Clock = std::chrono::steady_clock;
    QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    Kestrel::UI::HelpServer server;
    server.appendSearchPath({argv[1]});
    if (!server.start("127.0.0.1", 0, 0))
        return 1;
    std::printf("%d\n", int(server.getPort()));
    std::fflush(stdout);

    QTimer pulse; // Runs between the first line and the second, and so on: it costs CPU too.
    auto last = Clock::now();
    Clock::duration longest{};
    QObject::connect(&pulse, &QTimer::timeout, [&] {
        const auto now = Clock::now();
        longest = std::max(longest, now - last);
        last = now;
    });
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        char line[64];
        if (::read(STDIN_FILENO, line, sizeof line) <= 0)
            QCoreApplication::quit();
        std::printf("%lld\n", static_cast<long long>(
                                  std::chrono::nanoseconds(std::exchange(longest, {})).count()));
        std::fflush(stdout);
        last = Clock::now();
        if (pulse.isActive())
            pulse.stop();
        else
            pulse.start(0);
    });
    return QCoreApplication::exec();
}
