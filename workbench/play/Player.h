#pragma once

#include "play/PlaybackClock.h"
#include "play/RateMeter.h"

#include <KxUI/base/TimeBase.h>
#include <KxUI/time/TimeSliderModel.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace Kestrel::Workbench {

/** Moves a model's current time by the clock, within its playback range. Late wake-ups and slow
    pictures cost frames, never time. */
class Player : public QObject {
    Q_OBJECT

public:
    /** @param model  borrowed; outlives the player */
    explicit Player(UI::TimeSliderModel* model, QObject* parent = nullptr);

    /** The rate of playback; a base without a rate above 0 is ignored. */
    void setTimeBase(Base::TimeBase base);

    bool isPlaying() const { return m_timer.isActive(); }
    /** 1 or -1 while playing, else 0. */
    int direction() const { return isPlaying() ? m_direction : 0; }
    /** How many frames lie between one picture and the next: 1, and more while it shuttles. */
    std::uint32_t speed() const { return m_clock.stride; }
    static constexpr std::uint32_t FastestSpeed = 8;
    PlaybackClock::Repeat repeat() const { return m_clock.repeat; }
    void setRepeat(PlaybackClock::Repeat repeat);

    /** Pictures a second that really were shown over the last second. */
    double achievedRate();
    std::uint64_t dropped() const { return m_meter.dropped(); }
    /** Counts anew: there are other frames. */
    void forgetDropped();

    /** To be called whenever the picture of exactly this time comes to the screen. */
    void pictureShown(Base::Time time);

public slots:
    /** Plays from the current time, or from the start of the range when it lies outside or at the
        end; 1 forwards, -1 backwards. */
    void play(int direction = 1);
    /** Plays; asked for again in the direction in which it plays, twice as fast each time. The
        other direction begins at the usual speed. */
    void shuttle(int direction);
    void stop();
    void toggle();

signals:
    void playingChanged(bool playing);
    /** Whether it plays, its direction, its speed or the kind of repeat changed. */
    void statusChanged();
    /** While playing, the picture of a time came to the screen. */
    void frameShown(Kestrel::Base::Time time);
    /** Playback has passed so many frames whose pictures did not come in time. */
    void framesDropped(quint64 frames);

private:
    void start(int direction, std::uint32_t speed);
    void anchor();
    void tick();
    void scheduleTick();
    void reportDrops();
    void followModel(UI::TimeSliderModel::TimeFlags flags);

    UI::TimeSliderModel* m_model;
    QElapsedTimer m_monotonic;
    QTimer m_timer;
    PlaybackClock m_clock;
    RateMeter m_meter;
    int m_direction = 1;
    std::uint64_t m_ticks = 0;
    std::uint64_t m_reportedDrops = 0;
    Base::Time m_shownTime = Base::InvalidTime;
    /** The model's current time is being moved by the player itself. */
    bool m_moving = false;
};

} // namespace Kestrel::Workbench
