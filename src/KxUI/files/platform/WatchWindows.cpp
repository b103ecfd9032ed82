#include <KxUI/files/platform/DetachedThread_p.h>
#include <KxUI/files/platform/Platform_p.h>
#include <KxUI/files/platform/Watch_p.h>

#include <memory>
#include <mutex>
#include <vector>
#include <windows.h>

namespace Kestrel::UI::Platform {
namespace {

struct Watch {
    std::int64_t number = 0;
    HANDLE search = INVALID_HANDLE_VALUE;
    std::function<void()> changed;

    ~Watch() { FindCloseChangeNotification(search); }
};
using SharedWatch = std::shared_ptr<const Watch>;

// The watches of the process, which one thread waits for. Never destroyed: that thread stays.
class Watches {
public:
    static Watches& instance() {
        static auto* const all = new Watches;
        return *all;
    }

    int add(const std::string& path, std::function<void()> changed, std::int64_t& number) {
        constexpr DWORD events = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME |
                                 FILE_NOTIFY_CHANGE_SIZE | FILE_NOTIFY_CHANGE_LAST_WRITE;
        const auto watch = std::make_shared<Watch>();
        watch->changed = std::move(changed);
        // Outside the lock: the path may lie on a file system that does not answer.
        watch->search = FindFirstChangeNotificationA(fromUtf8(path).c_str(), FALSE, events);
        if (watch->search == INVALID_HANDLE_VALUE)
            return static_cast<int>(GetLastError());
        const std::lock_guard<std::mutex> lock(m_mutex);
        // As many as one call waits for, with the one that says that there are others now.
        if (m_watches.size() + 1 >= MAXIMUM_WAIT_OBJECTS)
            return ERROR_NOT_ENOUGH_MEMORY;
        if (!m_isRunning && !startDetached([this] { wait(); }))
            return ERROR_NOT_ENOUGH_MEMORY;
        m_isRunning = true;
        number = watch->number = ++m_lastNumber;
        m_watches.push_back(watch);
        SetEvent(m_others);
        return 0;
    }

    void remove(std::int64_t number) {
        SharedWatch removed; // dies outside the lock, or where it is waited for
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (auto each = m_watches.begin(); each != m_watches.end(); ++each) {
            if ((*each)->number != number)
                continue;
            removed = std::move(*each);
            m_watches.erase(each);
            SetEvent(m_others);
            return;
        }
    }

private:
    void wait() {
        for (;;) {
            std::vector<SharedWatch> watches;
            {
                const std::lock_guard<std::mutex> lock(m_mutex);
                watches = m_watches;
            }
            std::vector<HANDLE> handles{m_others};
            for (const SharedWatch& each : watches)
                handles.push_back(each->search);
            const DWORD told = WaitForMultipleObjects(static_cast<DWORD>(handles.size()),
                                                      handles.data(), FALSE, INFINITE);
            if (told == WAIT_FAILED)
                Sleep(1000);
            if (told <= WAIT_OBJECT_0 || told >= WAIT_OBJECT_0 + handles.size())
                continue;
            const SharedWatch& watch = watches[told - WAIT_OBJECT_0 - 1];
            FindNextChangeNotification(watch->search);
            watch->changed();
        }
    }

    std::mutex m_mutex;
    std::vector<SharedWatch> m_watches;
    std::int64_t m_lastNumber = 0;
    const HANDLE m_others = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    bool m_isRunning = false;
};

} // namespace

int watchDirectory(const std::string& path, std::function<void()> changed, std::int64_t& watch) {
    return Watches::instance().add(path, std::move(changed), watch);
}

void unwatchDirectory(std::int64_t watch) {
    Watches::instance().remove(watch);
}

} // namespace Kestrel::UI::Platform
