#pragma once

#include "media/Frame.h"

#include <KxUI/eventgraph/IEventUserData.h>

namespace Kestrel::Workbench {

/** What the profiler shows beside an event of a frame: its number, and what came of it. Holds no
    picture, so that a capture keeps no memory of the cache. */
class FrameNote : public UI::IEventUserData {
public:
    explicit FrameNote(Base::Time time)
        : m_time(time) {}

    /** @param seconds  how long the event took, where that is known to more than the milliseconds of
        a capture */
    FrameNote(Base::Time time, double seconds)
        : m_time(time)
        , m_seconds(seconds) {}

    explicit FrameNote(const Frame& frame, double seconds = 0.0, const QString& sequence = {})
        : m_time(frame.time)
        , m_bytes(frame.cost())
        , m_seconds(seconds)
        , m_message(frame.message)
        , m_sequence(sequence) {}

    QString text() const override;

    Base::Time time() const { return m_time; }
    /** 0 when only the number is of interest. */
    std::size_t bytes() const { return m_bytes; }
    /** 0 where it is not known. */
    double seconds() const { return m_seconds; }
    /** The title of the sequence that the frame is of; may be empty. */
    QString sequence() const { return m_sequence; }

private:
    Base::Time m_time;
    std::size_t m_bytes = 0;
    double m_seconds = 0.0;
    QString m_message;
    QString m_sequence;
};

} // namespace Kestrel::Workbench
