#pragma once

#include "grade/PreparedGrade.h"
#include "media/Frame.h"

#include <QObject>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <list>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace Kestrel::Workbench {

/** Worker threads that grade decoded frames, all of them at the rows of one frame, and the graded
    frames of late. What is wanted is replaced as a whole whenever the playhead moves or the grade
    changes. Called from the thread that owns it; the signal is emitted there too. */
class FrameGrader : public QObject {
    Q_OBJECT

public:
    /** @param capacity  bytes that graded frames may take, those seen last are kept */
    explicit FrameGrader(std::size_t capacity, QObject* parent = nullptr);
    ~FrameGrader() override;

    /** Forgets all that was graded by another grade. */
    void setGrade(const Grade& grade);

    /** Whether graded frames keep their signal, too, as samples of half floats: for whom 8 bits are
        not enough. Not at first. Turning it on forgets those that have none. */
    void setKeepsSignal(bool keeps);

    /** Another number of bytes; what is too much goes when the next frame comes. */
    void setCapacity(std::size_t capacity) { m_capacity = capacity; }

    /** Whether the grade changes anything. */
    bool isActive() const { return !m_isIdentity; }

    /** The frame as the grade makes it; itself where that changes nothing or there is no picture.
        Null until it is graded. */
    FramePtr find(const FramePtr& source);

    /** Whether the frame will be graded without another word. */
    bool isGrading(const FramePtr& source);

    /** Replaces all wishes for frames that are not begun; most wanted first. Those that would push
        out more wanted ones are left aside. */
    void setRequests(const std::vector<FramePtr>& sources);

    /** Forgets every frame and every wish. */
    void clear();

    /** How many frames were graded so far. */
    std::uint64_t gradedCount() const { return m_gradedCount; }

    /** How long the last of them took from its first row to its last, in seconds. */
    double lastSeconds() const { return m_lastSeconds; }

    /** The memory of graded frames. */
    std::size_t bytes() const { return m_bytes; }

signals:
    /** find() gives the frame from now on. */
    void frameGraded(const Kestrel::Workbench::FramePtr& source);

private:
    class LazyTables;
    class LazyGrade;
    struct Job;
    using JobPtr = std::shared_ptr<Job>;

    struct Graded {
        std::weak_ptr<const Frame> source;
        FramePtr frame;
    };

    bool staysAsItIs(const FramePtr& source) const;
    // These two under the lock.
    bool isBegun(const FramePtr& source) const;
    bool isAsked(const FramePtr& source) const;
    std::size_t costOf(const FramePtr& source) const;
    JobPtr makeJob(const FramePtr& source);
    std::list<Graded>::iterator findGraded(const FramePtr& source);
    float stopsOf(const FramePtr& source) const;
    std::shared_ptr<LazyTables> tables(const SampleFormat& format);
    std::shared_ptr<LazyGrade> prepared(const SampleFormat& format, float stops);
    void work();
    void deliver(const JobPtr& job, std::uint64_t round);

    std::size_t m_capacity;
    std::size_t m_bytes = 0;
    std::uint64_t m_gradedCount = 0;
    double m_lastSeconds = 0.0;
    Grade m_grade;
    bool m_isIdentity = true;
    /** Whether it does so to frames of no exposure. */
    bool m_isNeutral = true;
    bool m_keepsSignal = false;
    /** One a format. */
    std::vector<std::shared_ptr<LazyTables>> m_tables;
    /** Those of late, the one asked for last first: frames have exposures of their own. */
    std::list<std::shared_ptr<LazyGrade>> m_prepared;
    /** The one seen last first. */
    std::list<Graded> m_graded;

    std::mutex m_mutex;
    std::condition_variable m_wake;
    /** Most wanted first; jobs leave it when their last rows have been handed out. */
    std::deque<JobPtr> m_jobs;
    /** Begun, and not delivered yet. */
    std::vector<FramePtr> m_begun;
    /** Grows when all is forgotten; results of an earlier round are dropped. */
    std::uint64_t m_round = 0;
    bool m_quit = false;
    std::vector<std::thread> m_threads;
};

} // namespace Kestrel::Workbench
