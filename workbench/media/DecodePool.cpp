#include "media/DecodePool.h"

#include "media/FrameNote.h"
#include "media/platform/BackgroundThread.h"

#include <KxUI/eventgraph/EventAdder.h>

#include <algorithm>
#include <chrono>

namespace Kestrel::Workbench {

DecodePool::DecodePool(const std::vector<UI::EventTrack*>& tracks, QObject* parent)
    : QObject(parent) {
    m_threads.reserve(tracks.size());
    for (UI::EventTrack* track : tracks)
        m_threads.emplace_back([this, track] { work(track); });
}

DecodePool::~DecodePool() {
    {
        const std::lock_guard lock(m_mutex);
        m_quit = true;
        ++m_round;
        m_waiting.clear();
    }
    m_wake.notify_all();
    for (auto& thread : m_threads)
        thread.join();
}

void DecodePool::setRequests(std::vector<Request> requests) {
    {
        const std::lock_guard lock(m_mutex);
        const auto begun = [this](const Request& request) {
            return std::find(m_running.begin(), m_running.end(), request.time) != m_running.end();
        };
        requests.erase(std::remove_if(requests.begin(), requests.end(), begun), requests.end());
        std::reverse(requests.begin(), requests.end());
        m_waiting = std::move(requests);
    }
    m_wake.notify_all();
}

void DecodePool::cancelAll() {
    const std::lock_guard lock(m_mutex);
    m_waiting.clear();
    m_running.clear();
    ++m_round;
}

std::size_t DecodePool::pending() const {
    const std::lock_guard lock(m_mutex);
    return m_waiting.size() + m_running.size();
}

void DecodePool::work(UI::EventTrack* track) {
    workInBackground();
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_quit || !m_waiting.empty(); });
        if (m_quit)
            return;
        const Request request = std::move(m_waiting.back());
        m_waiting.pop_back();
        m_running.push_back(request.time);
        const std::uint64_t round = m_round;
        lock.unlock();

        const auto start = std::chrono::steady_clock::now();
        const FramePtr frame = decode(request, round, track);
        const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
        QMetaObject::invokeMethod(
            this, [this, round, frame, spent] { deliver(round, frame, spent.count()); },
            Qt::QueuedConnection);
        lock.lock();
    }
}

FramePtr DecodePool::decode(const Request& request, std::uint64_t round,
                            UI::EventTrack* track) const {
    const auto cancelled = [this, round] {
        const std::lock_guard guard(m_mutex);
        return m_round != round;
    };
    UI::EventAdder activity(track, {}, true);
    const auto start = std::chrono::steady_clock::now();
    DecodeLimits limits;
    limits.keepSamples = request.keepSamples;
    auto frame =
        std::make_shared<const Frame>(decodeFrame(request.path, request.time, limits, cancelled));
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
    activity.setUserData(new FrameNote(*frame, spent.count()));
    return frame;
}

void DecodePool::deliver(std::uint64_t round, const FramePtr& frame, double seconds) {
    {
        const std::lock_guard lock(m_mutex);
        if (round != m_round)
            return;
        // Only now: until the owner has seen the frame, a repeated wish for it is void.
        m_running.erase(std::remove(m_running.begin(), m_running.end(), frame->time),
                        m_running.end());
    }
    constexpr double weight = 0.1;
    m_averageSeconds += (seconds - m_averageSeconds) * (m_averageSeconds == 0.0 ? 1.0 : weight);
    emit frameDecoded(frame);
}

} // namespace Kestrel::Workbench
