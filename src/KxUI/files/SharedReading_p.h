#pragma once

#include <KxUI/files/GatherJob_p.h>

namespace Kestrel::UI {

/** A reading of a directory that any number of gatherers wait for: what several windows show of one
    folder is read once. Any thread. */
class SharedReading : public std::enable_shared_from_this<SharedReading> {
public:
    /** Joins the reading of the request's directory that is under way, if it began at `since`
        (Ticket::now()) or later, or begins one. Null when nobody is left to read. */
    static std::shared_ptr<SharedReading> join(const GatherRequest& request, std::int64_t since);

    /** A request is told nothing more. A reading that nobody waits for ends. */
    void leave(const GatherRequest& request);

    /** When the file system answered last; 0 before it was asked. */
    std::int64_t beat() const;

    /** Those who wait, for the reading to tell them; with `isLast` nobody can join any more. */
    std::vector<GatherRequest> listeners(bool isLast = false);

private:
    bool add(const GatherRequest& request, std::int64_t since);
    bool post(const GatherRequest& first);
    void begin();

    mutable std::mutex m_mutex;
    std::vector<GatherRequest> m_listeners;
    std::shared_ptr<Ticket> m_ticket;
    std::int64_t m_begun = 0;
    bool m_isOver = false;
};

} // namespace Kestrel::UI
