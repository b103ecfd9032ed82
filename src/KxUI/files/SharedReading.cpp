#include <KxUI/files/SharedReading_p.h>

#include <algorithm>
#include <unordered_map>

namespace Kestrel::UI {
namespace {

// The readings of the process by their directories. Never destroyed: workers outlive everything.
struct Readings {
    std::mutex mutex;
    std::unordered_map<std::string, std::weak_ptr<SharedReading>> all;

    static Readings& instance() {
        static auto* const readings = new Readings;
        return *readings;
    }

    void forgetEnded() {
        for (auto each = all.begin(); each != all.end();)
            each = each->second.expired() ? all.erase(each) : std::next(each);
    }
};

} // namespace

std::shared_ptr<SharedReading> SharedReading::join(const GatherRequest& request,
                                                   std::int64_t since) {
    std::shared_ptr<SharedReading> reading;
    {
        Readings& readings = Readings::instance();
        const std::lock_guard<std::mutex> lock(readings.mutex);
        readings.forgetEnded();
        auto& current = readings.all[request.directory];
        reading = current.lock();
        if (reading && reading->add(request, since))
            return reading;
        reading = std::make_shared<SharedReading>();
        reading->m_listeners.push_back(request);
        current = reading;
    }
    return reading->post(request) ? reading : nullptr;
}

bool SharedReading::add(const GatherRequest& request, std::int64_t since) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_isOver || (m_begun != 0 && m_begun < since))
        return false;
    m_listeners.push_back(request);
    return true;
}

bool SharedReading::post(const GatherRequest& first) {
    auto ticket =
        WorkerPool::instance().post(WorkerPool::Lane::Names, Platform::toUtf8(first.directory),
                                    [self = shared_from_this(), first](Ticket& shared) {
                                        self->begin();
                                        GatherJob(self, first, shared).run();
                                    });
    if (!ticket) {
        // The first one is told by the answer to it, the others by their boxes.
        for (const GatherRequest& each : listeners(true)) {
            GatherNews news;
            news.request = each.id;
            news.state = FileListing::State::Failed;
            news.error = nobodyLeftToRead;
            if (each.box != first.box)
                each.tell(std::move(news));
        }
        return false;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_ticket = std::move(ticket);
    if (m_listeners.empty())
        m_ticket->cancelled = true;
    return true;
}

void SharedReading::begin() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_begun = Ticket::now();
}

void SharedReading::leave(const GatherRequest& request) {
    std::vector<GatherRequest> left; // dies outside the lock
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto place =
        std::partition(m_listeners.begin(), m_listeners.end(), [&](const GatherRequest& each) {
            return each.id != request.id || each.box != request.box;
        });
    left.assign(std::make_move_iterator(place), std::make_move_iterator(m_listeners.end()));
    m_listeners.erase(place, m_listeners.end());
    if (!m_listeners.empty())
        return;
    m_isOver = true;
    if (m_ticket)
        m_ticket->cancelled = true;
}

std::int64_t SharedReading::beat() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_ticket ? m_ticket->beat.load() : 0;
}

std::vector<GatherRequest> SharedReading::listeners(bool isLast) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isOver = m_isOver || isLast;
    return m_listeners;
}

} // namespace Kestrel::UI
