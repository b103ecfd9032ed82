#pragma once

#include <KxUI/files/GatherJob_p.h>

#include <QBasicTimer>
#include <QObject>

#include <functional>

namespace Kestrel::UI {

/** Finds out that a directory has changed: the system tells it for disks of this machine; elsewhere
    the directory's time is asked for now and then, less often while nothing happens. */
class DirectoryFollower : public QObject {
public:
    /** `changed` may delete the follower. */
    DirectoryFollower(const GatherPace& pace, std::function<void()> changed);
    ~DirectoryFollower() override;

    /** Follows a directory in place of another one; a remote one only with `remoteToo`. */
    void follow(const std::string& directory, bool remoteToo);

    /** Follows nothing. */
    void stop();

    /** EntryStatus::stamp() of the directory when it was read. */
    void setStamp(std::int64_t stamp) { m_stamp = stamp; }

protected:
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    struct News {
        bool hasChanged = false;
        bool wantsPolls = false;
        bool isPolled = false;
        bool isWatched = false;
        std::int64_t stamp = 0;
        std::int64_t duration = 0; // of asking, in nanoseconds
    };
    struct Link;
    using Box = Mailbox<News>;

    static void watch(const std::string& directory, bool remoteToo,
                      const std::shared_ptr<Link>& link, const std::shared_ptr<Box>& box,
                      Ticket& ticket);
    static void poll(const std::string& directory, const std::shared_ptr<Box>& box, Ticket& ticket);
    static News stampNow(const std::string& path, Ticket& ticket);
    static void tell(const std::shared_ptr<Box>& box, const News& news);
    bool takePoll(const News& news);

    const GatherPace& m_pace;
    const std::function<void()> m_changed;
    std::string m_directory;
    std::shared_ptr<Box> m_box;
    std::shared_ptr<Link> m_link;
    std::shared_ptr<Ticket> m_ticket;
    QBasicTimer m_timer;
    std::int64_t m_stamp = 0;
    int m_interval = 0;
    int m_slowAnswers = 0;
};

} // namespace Kestrel::UI
