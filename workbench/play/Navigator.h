#pragma once

#include <KxUI/base/Time.h>
#include <KxUI/time/TransportControlsMode.h>

#include <QObject>

#include <optional>
#include <set>

namespace Kestrel::Workbench {

class Session;

/** The time of a set that is nearest to `from` in a direction, 1 or -1; nothing when there is none.
 */
std::optional<Base::Time> nextTime(const std::set<Base::Time>& times, Base::Time from,
                                   int direction);

/** The time half way from one to another, at least one frame on. */
Base::Time halfWay(Base::Time from, Base::Time to);

/** Takes a session's current time to where its user wants to go. Every move stays within the clip
    and ends playback. */
class Navigator : public QObject {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the navigator */
    explicit Navigator(Session* session);

    /** Frames skipped at a time, 1 or more. */
    int skipLength() const { return m_skipLength; }
    UI::TransportControlsMode jumpMode() const { return m_jumpMode; }

public slots:
    void goTo(Kestrel::Base::Time time);
    void goToStart();
    void goToEnd();
    /** Directions are 1 and -1. */
    void step(int direction);
    void skip(int direction);
    /** To the nearest keyframe, or, by the mode, the nearest edit: where files begin or cease to be
        there. */
    void jump(int direction);
    /** Half way to the nearest keyframe. */
    void goHalfWay(int direction);
    void setSkipLength(int frames);
    void setJumpMode(Kestrel::UI::TransportControlsMode mode);
    /** Marks a range, whichever of its ends is given first; an invalid end is left as it is. */
    void markRange(Kestrel::Base::Time first, Kestrel::Base::Time last);

signals:
    void skipLengthChanged(int frames);
    void jumpModeChanged(Kestrel::UI::TransportControlsMode mode);

private:
    void goBy(Base::Time frames);

    Session* m_session;
    int m_skipLength = 12;
    UI::TransportControlsMode m_jumpMode = UI::KeyframesOrEdits;
};

} // namespace Kestrel::Workbench
