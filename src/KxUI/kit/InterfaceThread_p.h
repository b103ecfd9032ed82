#pragma once

#include <QDebug>
#include <QObject>
#include <QThread>

#include <atomic>

namespace Kestrel::UI {

/** Whether the caller runs in the thread of `object`. Else warns that `function` was called from
    another one, unless `warned` is set; sets it. */
inline bool runsInThreadOf(const QObject* object, const char* function, std::atomic_flag& warned) {
    if (object->thread() == QThread::currentThread())
        return true;
    if (!warned.test_and_set(std::memory_order_relaxed))
        qWarning("%s::%s - called from another thread than its object's",
                 object->metaObject()->className(), function);
    return false;
}

} // namespace Kestrel::UI

/** Stands first in a member function of a QObject that only the interface thread may call. Warns
    once for each place; does nothing in a release build. */
#if defined(NDEBUG)
#define KXUI_INTERFACE_THREAD(object) static_cast<void>(object)
#else
#define KXUI_INTERFACE_THREAD(object)                                                              \
    do {                                                                                           \
        static std::atomic_flag warned = ATOMIC_FLAG_INIT;                                         \
        Kestrel::UI::runsInThreadOf(object, __func__, warned);                                     \
    } while (false)
#endif
