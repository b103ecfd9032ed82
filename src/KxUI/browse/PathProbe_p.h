#pragma once

#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/kit/Mailbox_p.h>

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <functional>

namespace Kestrel::UI {

/** What stands at a path. */
struct PathFound {
    enum Kind {
        Folder,
        File,    ///< or a sequence that has a frame
        Nothing, ///< or a link that leads nowhere
        Denied,  ///< a folder on the way may not be searched
        Failed,  ///< another error of the system
        NoAnswer ///< in the time that there was
    };

    Kind kind = Nothing;
    int error = 0; ///< the system's number, where it is Denied or Failed
};

/** Asks a disk about one path at a time and never waits for it. Interface thread. */
class PathProbe : public QObject {
public:
    using Answer = std::function<void(const PathFound&)>;
    using Look = std::function<PathFound(const QByteArray& path, Ticket& ticket)>;

    /** What looks at a path on a thread of the pool; tests give another one. A name with a place
        for a frame, of which there is no file, is looked for among the names of its folder. */
    static PathFound look(const QByteArray& path, Ticket& ticket);
    static Look& looker();

    explicit PathProbe(QObject* parent = nullptr);
    ~PathProbe() override;

    /** Asks about an absolute path; forgets what was asked before. The answer comes later, and not
        at all after cancel() or another question. */
    void ask(const QByteArray& path, int milliseconds, Answer answer);
    void cancel();

    bool isAsking() const { return static_cast<bool>(m_answer); }
    /** What runs out where nothing answers. */
    QTimer& deadline() { return m_deadline; }

protected:
    bool event(QEvent* event) override;

private:
    struct News {
        int question = 0;
        PathFound found;
    };

    void tell(const PathFound& found);

    std::shared_ptr<Mailbox<News>> m_box;
    std::shared_ptr<Ticket> m_ticket;
    Answer m_answer;
    QTimer m_deadline;
    int m_question = 0;
};

} // namespace Kestrel::UI
