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

    explicit FrameNote(const Frame& frame)
        : m_time(frame.time)
        , m_bytes(frame.cost())
        , m_message(frame.message) {}

    QString text() const override;

private:
    Base::Time m_time;
    /** 0 when only the number is of interest. */
    std::size_t m_bytes = 0;
    QString m_message;
};

} // namespace Kestrel::Workbench
