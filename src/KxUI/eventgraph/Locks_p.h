#pragma once

#include <KxUI/eventgraph/platform/ThreadSanitizer_p.h>

#include <QMutex>
#include <QReadWriteLock>

namespace Kestrel::UI {

/** Holds a view's state lock for reading. */
class StateReadGuard {
public:
    explicit StateReadGuard(QReadWriteLock& lock)
        : m_lock(lock) {
        beforeLock(&m_lock, LockUse::Shared);
        m_lock.lockForRead();
        afterLock(&m_lock, LockUse::Shared);
    }
    ~StateReadGuard() {
        beforeUnlock(&m_lock, LockUse::Shared);
        m_lock.unlock();
        afterUnlock(&m_lock, LockUse::Shared);
    }
    Q_DISABLE_COPY(StateReadGuard)

private:
    QReadWriteLock& m_lock;
};

/** Holds a view's state lock for writing. */
class StateWriteGuard {
public:
    explicit StateWriteGuard(QReadWriteLock& lock)
        : m_lock(lock) {
        beforeLock(&m_lock, LockUse::Exclusive);
        m_lock.lockForWrite();
        afterLock(&m_lock, LockUse::Exclusive);
    }
    ~StateWriteGuard() {
        beforeUnlock(&m_lock, LockUse::Exclusive);
        m_lock.unlock();
        afterUnlock(&m_lock, LockUse::Exclusive);
    }
    Q_DISABLE_COPY(StateWriteGuard)

private:
    QReadWriteLock& m_lock;
};

/** Holds a mutex that is not recursive. QBasicMutex locks inline, which QMutex does not. */
class MutexGuard {
public:
    explicit MutexGuard(QBasicMutex& mutex)
        : m_mutex(mutex) {
        beforeLock(&m_mutex, LockUse::Exclusive);
        m_mutex.lock();
        afterLock(&m_mutex, LockUse::Exclusive);
    }
    ~MutexGuard() {
        beforeUnlock(&m_mutex, LockUse::Exclusive);
        m_mutex.unlock();
        afterUnlock(&m_mutex, LockUse::Exclusive);
    }
    Q_DISABLE_COPY(MutexGuard)

private:
    QBasicMutex& m_mutex;
};

} // namespace Kestrel::UI
