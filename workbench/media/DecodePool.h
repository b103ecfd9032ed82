#pragma once

#include "media/Frame.h"
#include "media/FrameDecoder.h"

#include <KxUI/eventgraph/EventTrack.h>

#include <QObject>

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace Kestrel::Workbench {

/** Worker threads that decode what is wanted most. The list of wishes is replaced as a whole
    whenever the playhead moves, so that nobody waits for frames that nobody looks at any more.
    Called from the thread that owns it; the signal is emitted there too. */
class DecodePool : public QObject {
    Q_OBJECT

public:
    struct Request {
        Base::Time time = Base::InvalidTime;
        /** In the bytes of the file system. */
        std::string path;
        /** As of DecodeLimits. */
        bool keepSamples = false;
    };

    /** @param tracks  of the profiler: as many workers are made, and each records its decodes into
        one; borrowed, and outlive the pool */
    explicit DecodePool(const std::vector<UI::EventTrack*>& tracks, QObject* parent = nullptr);
    ~DecodePool() override;

    /** Replaces all that has not been begun; most wanted first. What is being decoded already is
        finished, and not begun again when it is asked for anew. */
    void setRequests(std::vector<Request> requests);

    /** Forgets every request, stops what is running and drops its result. */
    void cancelAll();

    /** Requests that have not been begun, and those that are being decoded. */
    std::size_t pending() const;

    /** How long a decode takes, in seconds: a running average; 0 before the first. */
    double averageSeconds() const { return m_averageSeconds; }

signals:
    void frameDecoded(const Kestrel::Workbench::FramePtr& frame);

private:
    void work(UI::EventTrack* track);
    FramePtr decode(const Request& request, std::uint64_t round, UI::EventTrack* track) const;
    void deliver(std::uint64_t round, const FramePtr& frame, double seconds);

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    /** Most wanted last, so that taking one is cheap. */
    std::vector<Request> m_waiting;
    std::vector<Base::Time> m_running;
    /** Grows with every cancelAll; results of an earlier round are dropped. */
    std::uint64_t m_round = 0;
    bool m_quit = false;
    double m_averageSeconds = 0.0;
    std::vector<std::thread> m_threads;
};

} // namespace Kestrel::Workbench
