#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include <deque>
#include <functional>
#include <memory>

namespace Kestrel::UI {

/** Work on a folder of files, done off the interface thread, one piece after another.

    A thread lives for as long as there is work and nobody ever waits for it: a folder on a server
    that is gone holds up what follows here, and nothing else. What was added is done even where the
    queue is destroyed meanwhile, since somebody wanted it kept; only nobody is told. Interface
    thread. */
class FileQueue {
public:
    /** What a piece of work found. */
    struct Outcome {
        enum class Fault { None, NoFolder, NoSuchName, NameTaken, System };

        Fault fault = Fault::None;
        QString text;      ///< what the system says of which file; else the folder or the name
        QStringList names; ///< what the folder has now
        QByteArray bytes;  ///< what was read
    };
    /** Runs on another thread, and so holds values only. */
    using Work = std::function<Outcome()>;
    /** Called and destroyed on the interface thread; may destroy the queue. */
    using Answer = std::function<void(const Outcome& outcome)>;

    FileQueue();
    ~FileQueue();
    Q_DISABLE_COPY_MOVE(FileQueue)

    void add(Work work, Answer answer);

private:
    struct Shared;

    static void run(const std::shared_ptr<Shared>& shared);
    void deliver();

    const std::shared_ptr<Shared> m_shared;
    std::deque<Answer> m_answers; // in the order of the work
    QObject m_mailbox;            // takes with it what nobody wants any more
};

} // namespace Kestrel::UI
