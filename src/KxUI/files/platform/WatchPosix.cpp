#include <KxUI/files/platform/DetachedThread_p.h>
#include <KxUI/files/platform/Watch_p.h>

#include <cerrno>
#include <map>
#include <memory>
#include <mutex>
#include <sys/inotify.h>
#include <unistd.h>
#include <vector>

namespace Kestrel::UI::Platform {
namespace {

using Callback = std::shared_ptr<const std::function<void()>>;

// The watches of the process, read by one thread. Never destroyed: that thread stays.
class Watches {
public:
    static Watches& instance() {
        static auto* const all = new Watches;
        return *all;
    }

    int add(const std::string& path, std::function<void()> changed, std::int64_t& number) {
        const int queue = open();
        if (queue < 0)
            return -queue;
        constexpr std::uint32_t events = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                         IN_CLOSE_WRITE | IN_DELETE_SELF | IN_MOVE_SELF |
                                         IN_ONLYDIR;
        // Outside the lock: the path may lie on a file system that does not answer.
        const int descriptor = ::inotify_add_watch(queue, path.c_str(), events);
        if (descriptor < 0)
            return errno;
        const std::lock_guard<std::mutex> lock(m_mutex);
        number = ++m_lastNumber;
        m_watches[number] = {descriptor,
                             std::make_shared<const std::function<void()>>(std::move(changed))};
        return 0;
    }

    void remove(std::int64_t number) {
        Callback callback; // dies outside the lock
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_watches.find(number);
        if (found == m_watches.end())
            return;
        const int descriptor = found->second.descriptor;
        callback = std::move(found->second.changed);
        m_watches.erase(found);
        for (const auto& [other, watch] : m_watches) {
            if (watch.descriptor == descriptor)
                return; // the system has one for each directory
        }
        ::inotify_rm_watch(m_queue, descriptor);
    }

private:
    struct Watch {
        int descriptor;
        Callback changed;
    };

    // The system's queue, or its error number below zero.
    int open() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_queue >= 0)
            return m_queue;
        m_queue = ::inotify_init1(IN_CLOEXEC);
        if (m_queue < 0)
            return -errno;
        if (startDetached([this] { read(); }))
            return m_queue;
        ::close(m_queue);
        m_queue = -1;
        return -EAGAIN;
    }

    void read() {
        alignas(inotify_event) char buffer[16 * 1024];
        for (;;) {
            const ssize_t filled = ::read(m_queue, buffer, sizeof buffer);
            if (filled < 0 && errno != EINTR)
                return;
            std::vector<Callback> changed;
            for (ssize_t at = 0; at < filled;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
                collect(*event, changed);
                at += static_cast<ssize_t>(sizeof *event + event->len);
            }
            for (const Callback& each : changed)
                (*each)();
        }
    }

    void collect(const inotify_event& event, std::vector<Callback>& changed) {
        // The system forgets a watch when its directory is gone; that was told before.
        if ((event.mask & IN_IGNORED) != 0)
            return;
        const bool isOverflow = (event.mask & IN_Q_OVERFLOW) != 0; // anything may have changed
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (const auto& [number, watch] : m_watches) {
            if (isOverflow || watch.descriptor == event.wd)
                changed.push_back(watch.changed);
        }
    }

    std::mutex m_mutex;
    std::map<std::int64_t, Watch> m_watches;
    std::int64_t m_lastNumber = 0;
    int m_queue = -1;
};

} // namespace

int watchDirectory(const std::string& path, std::function<void()> changed, std::int64_t& watch) {
    return Watches::instance().add(path, std::move(changed), watch);
}

void unwatchDirectory(std::int64_t watch) {
    Watches::instance().remove(watch);
}

} // namespace Kestrel::UI::Platform
