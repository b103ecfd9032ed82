#pragma once

#include "grade/FrameGrader.h"
#include "grade/GradeHistory.h"
#include "media/DecodePool.h"
#include "media/FrameCache.h"
#include "media/PixelValues.h"
#include "media/Sequence.h"
#include "play/MarkHistory.h"
#include "play/Navigator.h"
#include "play/Player.h"
#include "play/ScopeFeed.h"
#include "profile/Profiling.h"

#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSliderModel.h>

#include <QObject>
#include <QPoint>

#include <optional>

namespace Kestrel::Workbench {

/** What the panels share: the open sequence, its times, how times are written, its grade, the
    decoded and graded frames, and what the viewer should show right now. Interface thread; it never
    waits for a decode or a grade. */
class Session : public QObject {
    Q_OBJECT

public:
    /** @param cacheBytes  memory for decoded frames; graded ones take a quarter as much besides */
    Session(Base::TimeBase timeBase, std::size_t cacheBytes, QObject* parent = nullptr);

    UI::TimeSliderModel* model() { return &m_model; }
    UI::TimeFormatter* formatter() { return &m_formatter; }
    Player* player() { return &m_player; }
    Navigator* navigator() { return &m_navigator; }
    const Sequence& sequence() const { return m_sequence; }
    const FrameCache& cache() const { return m_cache; }
    /** Other memory for frames, as that of the constructor. */
    void setCacheBytes(std::size_t bytes);
    /** The rate of the open sequence, from now on; a sequence that was never open begins with the
        one chosen last. A base without a rate above 0 is ignored. */
    void setTimeBase(Base::TimeBase timeBase);
    MarkHistory* marks() { return &m_marks; }
    Profiling* profiling() { return &m_profiling; }
    GradeHistory* grades() { return &m_grades; }
    const FrameGrader& grader() const { return m_grader; }

    /** Opens a sequence at a time (its first when InvalidTime) in place of the open one. */
    void open(Sequence sequence, Base::Time at = Base::InvalidTime);

    /** What the viewer shows: the graded frame of the current time, or the nearest one while that
        is being decoded, or the one shown before while it is being graded. Null when there is
        nothing to show. */
    FramePtr shownFrame() const { return m_shown; }

    /** Whether the shown frame stands in for one that is still being decoded or graded. */
    bool isLoading() const { return m_loading; }

    /** The frame whose file is shown at the current time, which for a shot on twos may be the one
        before; the current time where there is none. */
    Base::Time heldTime() const;

    /** What the user points at in the viewer, a pixel of the shown frame; (-1, -1) for none. */
    void pointAt(const QPoint& pixel);

    /** What is there; nothing where no pixel is pointed at, and while its frame is on its way. */
    std::optional<PixelValues> pointedPixel() const;

    /** The same of any pixel of the shown frame. */
    std::optional<PixelValues> pixelAt(const QPoint& pixel) const;

    /** While somebody reads pixels of the shown frame, and while one is pointed at, it is decoded
        with all that its file holds, not for the screen alone. Not while playing. */
    void readPixels(bool reads);

    /** The decoded frame behind the shown one, ungraded; while loading, behind what is to come. */
    FramePtr sourceFrame() const { return m_source; }

    /** The pixel that the user points at; (-1, -1) for none. */
    QPoint pointedAt() const { return m_pointed; }

    /** While scopes look at all that goes by: frames are decoded with all that their files hold,
        also while playing, and, with `signal`, graded ones keep more than their 8-bit codes. */
    void keepForScopes(bool samples, bool signal);

    /** What the scopes look at. */
    ScopeFeed* scopes() { return &m_scopes; }

    /** While it does, the frames of playback are decoded in the order of play, as if it played, and
        those outside of the marks make room for them. */
    void setFillsCache(bool fills);

    /** Whether everything that fits into the cache is decoded. */
    bool isSettled() const { return m_pool.pending() == 0; }

    /** Sets a keyframe at the current time, or removes the one that is there. */
    void toggleKeyFrame();

signals:
    void sequenceChanged();
    /** The shown frame, or whether it stands in for another, changed. */
    void frameChanged();
    /** Another pixel is pointed at, or it has other values. */
    void pointedPixelChanged();
    /** The picture of a time came into the cache or left it. */
    void frameCached(Kestrel::Base::Time time);
    void frameUncached(Kestrel::Base::Time time);
    void cacheCleared();
    void cacheSizeChanged();
    /** The formatter and the player have another rate. */
    void timeBaseChanged();

private:
    void showCurrent();
    void show(const FramePtr& source, bool standsIn);
    void present();
    void regrade();
    void applyGrade();
    void planGrades();
    bool areSamplesWanted(Base::Time held) const;
    bool isGoodEnough(const FramePtr& source, Base::Time held) const;
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
    GradeHistory m_grades;
    MarkHistory m_marks{&m_model, &m_grades};
    FrameCache m_cache;
    /** The decoded frame behind what is shown or being graded. */
    FramePtr m_source;
    bool m_sourceStandsIn = false;
    FramePtr m_shown;
    bool m_loading = false;
    QPoint m_pointed{-1, -1};
    bool m_readsPixels = false;
    bool m_fillsCache = false;
    /** The grade changed while the source was being graded. */
    bool m_regradeWaits = false;
    /** Frames are decoded with their samples: there is a grade. */
    bool m_keepSamples = false;
    bool m_scopesNeedSamples = false;
    /** Bytes of the frame decoded last, to reckon how many fit. */
    std::size_t m_frameBytes = 0;
    /** The cache holds nothing that is needed later than what it turned away. */
    bool m_cacheFull = false;
    ScopeFeed m_scopes{this};
    /** Last: their threads end before the rest goes. */
    FrameGrader m_grader;
    DecodePool m_pool;
};

} // namespace Kestrel::Workbench
