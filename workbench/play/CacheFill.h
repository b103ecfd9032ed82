#pragma once

#include <KxUI/progress/ProgressTask.h>

#include <QObject>
#include <QTimer>

#include <memory>

namespace Kestrel::Workbench {

class Session;

/** Fills a session's cache with the frames that playback will need, in their order, as a task. Ends
    when all of them are there, or when no more fit; deletes itself then. */
class CacheFill : public QObject {
    Q_OBJECT

public:
    /** Begins. @param session  borrowed; outlives the fill */
    CacheFill(Session* session, std::shared_ptr<UI::ProgressTask> task, QObject* parent);
    ~CacheFill() override;

private:
    void look();

    Session* m_session;
    std::shared_ptr<UI::ProgressTask> m_task;
    QTimer m_timer;
};

} // namespace Kestrel::Workbench
