#include <KxUI/kit/Mailbox_p.h>

#include <QCoreApplication>

#include <unordered_set>

namespace Kestrel::UI {
namespace {

// The open boxes of the process. Never destroyed: workers outlive everything.
struct Registry {
    std::mutex mutex;
    std::unordered_set<MailboxBase*> boxes;
    bool willCloseAll = false;
};

Registry& registry() {
    static auto* const all = new Registry;
    return *all;
}

} // namespace

QEvent::Type MailboxBase::eventType() {
    static const int type = QEvent::registerEventType();
    return static_cast<QEvent::Type>(type);
}

MailboxBase::MailboxBase(QObject* receiver)
    : m_receiver(receiver) {
    eventType();
    Registry& all = registry();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.boxes.insert(this);
    // An application that is gone has no queue to post to.
    if (!all.willCloseAll)
        qAddPostRoutine(&MailboxBase::closeAll);
    all.willCloseAll = true;
}

MailboxBase::~MailboxBase() {
    close();
}

void MailboxBase::close() {
    Registry& all = registry();
    const std::lock_guard<std::mutex> registered(all.mutex);
    all.boxes.erase(this);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_receiver = nullptr;
}

void MailboxBase::closeAll() {
    Registry& all = registry();
    const std::lock_guard<std::mutex> registered(all.mutex);
    for (MailboxBase* box : all.boxes) {
        const std::lock_guard<std::mutex> lock(box->m_mutex);
        box->m_receiver = nullptr;
    }
    all.boxes.clear();
    all.willCloseAll = false;
}

void MailboxBase::announce() {
    if (std::exchange(m_isPosted, true))
        return;
    QCoreApplication::postEvent(m_receiver, new QEvent(eventType()));
}

} // namespace Kestrel::UI
