#include "play/CacheFill.h"

#include "play/Session.h"

namespace Kestrel::Workbench {

namespace {

constexpr int lookMs = 100;

/** The frames of playback that have a file, and those of them that are in the cache. */
std::pair<std::int64_t, std::int64_t> countFrames(Session& session) {
    const UI::TimeSliderModel& times = *session.model();
    std::int64_t all = 0;
    std::int64_t there = 0;
    for (const auto& member : session.sequence().members()) {
        if (member.first < times.playbackStartTime() || member.first > times.playbackEndTime())
            continue;
        ++all;
        there += session.cache().find(member.first) ? 1 : 0;
    }
    return {all, there};
}

} // namespace

CacheFill::CacheFill(Session* session, std::shared_ptr<UI::ProgressTask> task, QObject* parent)
    : QObject(parent)
    , m_session(session)
    , m_task(std::move(task)) {
    m_task->setUnit(UI::ProgressTask::Unit::Frames);
    m_task->start();
    connect(session, &Session::sequenceChanged, this, [this] { m_task->cancel(); });
    connect(&m_timer, &QTimer::timeout, this, &CacheFill::look);
    m_session->setFillsCache(true);
    m_timer.start(lookMs);
    look();
}

CacheFill::~CacheFill() {
    m_session->setFillsCache(false);
}

void CacheFill::look() {
    const auto [all, there] = countFrames(*m_session);
    m_task->setTotal(all);
    m_task->setDone(there);
    const bool isOver = m_session->isSettled();
    if (m_task->isCancelled())
        m_task->finishCancelled();
    else if (isOver)
        m_task->finish();
    if (!m_task->isEnded())
        return;
    m_timer.stop();
    deleteLater();
}

} // namespace Kestrel::Workbench
