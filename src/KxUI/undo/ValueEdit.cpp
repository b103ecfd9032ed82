#include <KxUI/undo/ValueEdit.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/undo/MultiStackUndoGroup.h>
#include <KxUI/undo/ValueEditClock_p.h>

#include <QPointer>

#include <chrono>

namespace Kestrel::UI {
namespace {

qint64 steadyMilliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

constexpr int CommandId = 0x4b56; // of commands that are compared further

} // namespace

qint64 (*valueEditClock)() = &steadyMilliseconds;

ValueEditBase::Command::Command(std::shared_ptr<const int> source, const QString& text)
    : QUndoCommand(text)
    , m_source(std::move(source))
    , m_time(valueEditClock()) {}

int ValueEditBase::Command::id() const {
    return CommandId;
}

bool ValueEditBase::Command::mergeWith(const QUndoCommand* other) {
    if (*m_source <= 0) // before a look at the other, which may be a command of any kind
        return false;
    const auto* next = dynamic_cast<const Command*>(other);
    if (!next || next->m_source != m_source || next->m_time - m_time > *m_source || !extend(*next))
        return false;
    m_time = next->m_time;
    return true;
}

struct ValueEditBase::Private {
    QPointer<MultiStackUndoGroup> group;
    UndoableProject* project;
    std::shared_ptr<const int> source; ///< shared with the steps, which outlive the edit
    std::function<void()> cancelled;
    QString text;
    QMetaObject::Connection aboutToChange;
    QMetaObject::Connection aboutToRemove;
    bool active = false;

    void leave() {
        active = false;
        QObject::disconnect(aboutToChange);
        QObject::disconnect(aboutToRemove);
    }
};

ValueEditBase::ValueEditBase(MultiStackUndoGroup* group, UndoableProject* project, int mergeWithin)
    : m(std::make_unique<Private>()) {
    m->group = group;
    m->project = project;
    m->source = std::make_shared<const int>(mergeWithin);
}

ValueEditBase::~ValueEditBase() = default;

bool ValueEditBase::isActive() const {
    return m->active;
}

void ValueEditBase::onCancelled(std::function<void()> cancelled) {
    m->cancelled = std::move(cancelled);
}

void ValueEditBase::beginEdit(const QString& text) {
    m->text = text;
    m->active = true;
    if (!m->group)
        return;
    const auto takeBack = [this] {
        m->leave();
        const std::function<void()> cancelled = m->cancelled; // the value may end this object
        showStart();
        if (cancelled)
            cancelled();
    };
    m->aboutToChange = QObject::connect(m->group, &MultiStackUndoGroup::projectAboutToBeChanged,
                                        m->group, takeBack);
    m->aboutToRemove = QObject::connect(m->group, &MultiStackUndoGroup::projectAboutToBeRemoved,
                                        m->group, takeBack);
}

void ValueEditBase::finishEdit(bool accepted) {
    if (!m->active)
        return;
    m->leave();
    if (!accepted)
        showStart();
    else if (isChanged() && m->group)
        m->group->performCommand(makeCommand(m->source, m->text), m->project);
}

void ValueEditBase::end() {
    if (!m->active)
        return;
    m->leave();
    showStart();
}

} // namespace Kestrel::UI
