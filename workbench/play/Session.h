#pragma once

#include "media/DecodePool.h"
#include "media/FrameCache.h"
#include "media/Sequence.h"
#include "play/Navigator.h"
#include "play/Player.h"
#include "profile/Profiling.h"

#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSliderModel.h>

#include <QObject>

namespace Kestrel::Workbench {

/** What the panels share: the open sequence, its times, how times are written, the decoded frames,
    and what the viewer should show right now. Interface thread; it never waits for a decode. */
class Session : public QObject {
    Q_OBJECT

public:
    /** @param cacheBytes  memory for decoded frames */
    Session(Base::TimeBase timeBase, std::size_t cacheBytes, QObject* parent = nullptr);

    UI::TimeSliderModel* model() { return &m_model; }
    UI::TimeFormatter* formatter() { return &m_formatter; }
    Player* player() { return &m_player; }
    Navigator* navigator() { return &m_navigator; }
    const Sequence& sequence() const { return m_sequence; }
    const FrameCache& cache() const { return m_cache; }
    Profiling* profiling() { return &m_profiling; }

    /** Opens a sequence at a time (its first when InvalidTime) in place of the open one. */
    void open(Sequence sequence, Base::Time at = Base::InvalidTime);

    /** What the viewer shows: the frame of the current time, or the nearest one while that is being
        decoded. Null when there is nothing to show. */
    FramePtr shownFrame() const { return m_shown; }

    /** Whether the shown frame stands in for one that is still being decoded. */
    bool isLoading() const { return m_loading; }

    /** Whether everything that fits into the cache is decoded. */
    bool isSettled() const { return m_pool.pending() == 0; }

    /** Sets a keyframe at the current time, or removes the one that is there. */
    void toggleKeyFrame();

signals:
    void sequenceChanged();
    /** The shown frame, or whether it stands in for another, changed. */
    void frameChanged();
    /** The picture of a time came into the cache or left it. */
    void frameCached(Kestrel::Base::Time time);
    void frameUncached(Kestrel::Base::Time time);
    void cacheCleared();

private:
    void showCurrent();
    void show(const FramePtr& frame, bool loading);
    void plan();
    void takeIn(const FramePtr& frame);
    PlayOrder order() const;
    FramePtr missingFrame(Base::Time time) const;

    /** First: everything records into it until it is gone. */
    Profiling m_profiling;
    UI::TimeSliderModel m_model;
    UI::TimeFormatter m_formatter;
    Player m_player;
    Navigator m_navigator{this};
    Sequence m_sequence;
    FrameCache m_cache;
    FramePtr m_shown;
    bool m_loading = false;
    /** Bytes of the frame decoded last, to reckon how many fit. */
    std::size_t m_frameBytes = 0;
    /** The cache holds nothing that is needed later than what it turned away. */
    bool m_cacheFull = false;
    /** Last: its threads end before the rest goes. */
    DecodePool m_pool;
};

} // namespace Kestrel::Workbench
