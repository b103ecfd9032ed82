#pragma once

#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/kit/Mailbox_p.h>

#include <QBasicTimer>
#include <QCoreApplication>
#include <QObject>
#include <QTimerEvent>

#include <functional>
#include <memory>

namespace Kestrel::UI {

/** Carries the answer of worker threads to a function of the thread that asked, once, and is gone
    after it. It lives as long as its context at most: then nobody is called, and what has not begun
    is given up. */
template <class Result>
class Reply final : public QObject {
public:
    using Answered = std::function<void(const Result&)>;

    /** Without a context, of the application. */
    Reply(QObject* context, Answered answered)
        : QObject(context ? context : QCoreApplication::instance())
        , m_box(std::make_shared<Mailbox<Result>>(this))
        , m_answered(std::move(answered)) {}

    ~Reply() override {
        m_box->close();
        giveUp();
    }

    /** Where workers put the answer. */
    std::shared_ptr<Mailbox<Result>> box() const { return m_box; }

    /** Posts a job that is to answer; `refused` is the answer when nobody is left to ask. */
    void post(const std::string& directory, WorkerPool::Job job, const Result& refused) {
        auto ticket =
            WorkerPool::instance().post(WorkerPool::Lane::Names, directory, std::move(job));
        if (ticket)
            m_tickets.push_back(std::move(ticket));
        else
            m_box->put(refused);
    }

    /** What is answered when nothing else is for so many milliseconds; 0 for as long as it takes. */
    void answerAfter(int milliseconds, std::function<Result()> lost) {
        m_lost = std::move(lost);
        if (milliseconds > 0)
            m_timer.start(milliseconds, this);
    }

protected:
    bool event(QEvent* event) override {
        if (event->type() != MailboxBase::eventType())
            return QObject::event(event);
        if (auto result = m_box->take())
            answer(*result);
        return true;
    }

    void timerEvent(QTimerEvent*) override { answer(m_lost()); }

private:
    void answer(const Result& result) {
        m_timer.stop();
        m_box->close();
        giveUp();
        deleteLater();
        // It may be the end of the context, and so of this object.
        if (const Answered answered = std::exchange(m_answered, nullptr))
            answered(result);
    }

    void giveUp() {
        for (const auto& ticket : m_tickets)
            ticket->cancelled = true;
        m_tickets.clear();
    }

    const std::shared_ptr<Mailbox<Result>> m_box;
    Answered m_answered;
    std::function<Result()> m_lost;
    std::vector<std::shared_ptr<Ticket>> m_tickets;
    QBasicTimer m_timer;
};

} // namespace Kestrel::UI
