#pragma once

#include <QEvent>
#include <QtGlobal>

#include <mutex>
#include <optional>
#include <utility>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace Kestrel::UI {

/** The part of a mailbox that does not depend on what is in it. */
class MailboxBase {
public:
    MailboxBase(const MailboxBase&) = delete;
    MailboxBase& operator=(const MailboxBase&) = delete;

    /** From the receiver's destructor: no event is posted after it. */
    void close();

    /** The type of the event that tells a receiver to look into its boxes. */
    static QEvent::Type eventType();

protected:
    explicit MailboxBase(QObject* receiver);
    ~MailboxBase();

    // With the mutex locked.
    bool isOpen() const { return m_receiver != nullptr; }
    void announce();
    void announced() { m_isPosted = false; }

    std::mutex m_mutex;

private:
    static void closeAll();

    QObject* m_receiver;
    bool m_isPosted = false;
};

/** Where worker threads leave their newest result for an object of another thread, which gets an
    event of eventType() and takes it. Shared by both: a worker that comes back after its receiver
    is gone finds the box closed, and its result dies with it. One event is under way at a time, so
    a slow receiver never has a queue of them. */
template <class T>
class Mailbox : public MailboxBase {
public:
    explicit Mailbox(QObject* receiver)
        : MailboxBase(receiver) {}

    /** Replaces what waits. */
    void put(T value) {
        put(std::move(value), [](T& waiting, T& newest) { std::swap(waiting, newest); });
    }

    /** The same where `merge(waiting, newest)` makes one of both when something waits. */
    template <class Merge>
    void put(T value, Merge merge) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!isOpen())
            return;
        if (m_value)
            merge(*m_value, value);
        else
            m_value.emplace(std::move(value));
        announce();
        // What was replaced dies with `value`, after the lock.
    }

    /** Takes what waits, if anything does. */
    std::optional<T> take() {
        std::optional<T> taken;
        const std::lock_guard<std::mutex> lock(m_mutex);
        announced();
        taken.swap(m_value);
        return taken;
    }

private:
    std::optional<T> m_value;
};

} // namespace Kestrel::UI
