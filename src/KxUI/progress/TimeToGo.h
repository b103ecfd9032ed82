#pragma once

#include <KxUI/Export.h>

#include <memory>
#include <optional>

namespace Kestrel::UI {

/** How long a piece of work will still take, from what it has reported, and what to show of it, which
    may change less often than what is known.

    The rate is a ratio of exponentially weighted work and exponentially weighted time, so that
    bursts and frames of minutes are both taken for what they are. The weights halve within at least
    15 s, six reports, and 15 % of the time that has passed. It has no clock of its own: every
    function gets the time, in seconds from any beginning; times that go back count as the last one.
    Not for several threads at once. */
class KXUI_EXPORT TimeToGo {
public:
    using Seconds = double; ///< The unit of all times.

    /** Of work that has not begun. */
    TimeToGo();
    TimeToGo(const TimeToGo& other);
    TimeToGo& operator=(const TimeToGo& other);
    ~TimeToGo();

    /** Begins anew.
        @param now    the time
        @param total  how much there is to do, in any unit; 0 or less where nobody knows */
    void start(Seconds now, double total);

    /** So much is done. At any rate; less than before means that something is done again.
        @param now   the time
        @param done  of the total, in its unit */
    void report(Seconds now, double done);

    /** The clock stands still between the two. */
    void pause(Seconds now);
    /** It goes on. */
    void resume(Seconds now);

    /** There is more or less to do than it seemed; what is shown follows at once.
        @param now    the time
        @param total  as start() */
    void setTotal(Seconds now, double total);

    /** How long all of it took an earlier time; counts less and less until a fifth is done. */
    void hint(Seconds expected);

    /** How long it will take from now on, as well as is known; nothing where it is not. */
    std::optional<Seconds> estimate(Seconds now) const;

    /** The same for people: it counts down, follows slowly and jumps only when it is truly wrong.
        Nothing within the first two seconds and three reports, while isStalled(), and beyond 99
        days. Call it about once a second. */
    std::optional<Seconds> shown(Seconds now);

    /** Whether nothing was reported for longer than is usual here: more than 10 s, four times the
        usual pause, and one and a half times the longest. */
    bool isStalled(Seconds now) const;

    /** For how long nothing was reported. */
    Seconds silence(Seconds now) const;

private:
    struct Private;

    std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
