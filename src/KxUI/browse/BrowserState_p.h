#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <vector>

/** \file
    Where a browser is, where it was, and what its list shows meanwhile: without a window and without a
    clock. Times are milliseconds of any clock that only goes forward. */

namespace Kestrel::UI {

/** A folder as it was left. Names rather than rows: it may be listed anew in between. */
struct BrowserPlace {
    QByteArray folder;
    std::vector<QByteArray> selected;
    QByteArray current;
    QByteArray top; ///< the first row that was seen; empty where that was the first one
};

/** What is known of the folder that is gathered. */
struct BrowserFacts {
    enum class Listing { Reading, Complete, Failed, Stopped };
    enum class Error { None, Missing, NotAFolder, Stale, Other };

    Listing listing = Listing::Reading; ///< of the rows that are there
    Error error = Error::None;
    bool isGathering = false;
    std::int64_t silence = 0; ///< since the file system answered last, while it gathers
    int rows = 0;
    bool hasEntries = false; ///< that are not all shown
    bool isSearched = false; ///< by words
    bool isFiltered = false; ///< by patterns, or folders alone are wanted
};

/** What is in the place of the rows, or above them where there are some. */
enum class BrowserNotice {
    None,
    Waiting,     ///< nothing has answered for a while
    WaitingLong, ///< it is time to offer a way out
    Failed,
    Vanished, ///< the folder is not there, any more or at all
    Stopped,
    Empty,
    OnlyHidden, ///< there are names, but none that is shown
    NoneOfKind, ///< the same because of the patterns
    NoMatch     ///< no row has the words that are searched for
};

/** What the list looks like. */
struct BrowserFace {
    bool holdsOld = false; ///< the rows of the folder that was left are still seen
    bool isGrey = false;
    bool isBusy = false; ///< a bar moves, and there is something to stop
    BrowserNotice notice = BrowserNotice::None;

    bool operator==(const BrowserFace& other) const {
        return holdsOld == other.holdsOld && isGrey == other.isGrey && isBusy == other.isBusy &&
               notice == other.notice;
    }
};

/** Visits, their history, and the face of the list. */
class BrowserState {
public:
    /** What is to be done after news. */
    enum class Order {
        Nothing,
        Retry,    ///< read again, once: a handle of a network share had become stale
        GoToFile, ///< it is a file: to its folder, where it is to be selected
    };

    static constexpr std::int64_t GreyAfter = 300;
    static constexpr std::int64_t WaitingAfter = 2000;
    static constexpr std::int64_t WayOutAfter = 10000;

    /** Where the browser is, or on its way to. */
    const QByteArray& folder() const { return m_folder; }

    /** Begins a visit. What is left is remembered as `left` says, if it was seen at all; `held` tells
        that its rows stay in sight. */
    void go(const QByteArray& folder, const BrowserPlace& left, bool held, std::int64_t now);

    /** Begins to go back or forward; the folder to gather, none where there is none. */
    std::optional<QByteArray> goBack(const BrowserPlace& left, bool held, std::int64_t now);
    std::optional<QByteArray> goForward(const BrowserPlace& left, bool held, std::int64_t now);

    bool canGoBack() const;
    bool canGoForward() const;

    /** News of the folder that is gathered. */
    Order update(const BrowserFacts& facts, std::int64_t now);

    /** What is to be restored once its rows are there: of a folder that was seen, or the child that was
        come from. Kept until it is taken or the user does something. */
    const std::optional<BrowserPlace>& wish() const { return m_wish; }
    void setWish(BrowserPlace wish) { m_wish = std::move(wish); }
    void dropWish() { m_wish.reset(); }

    /** Whether rows or an end of the reading have come since the visit began. */
    bool hasArrived() const { return m_hasArrived; }

    BrowserFace face(std::int64_t now) const;

    /** When face() is another one by time alone; none if never. */
    std::optional<std::int64_t> nextChange(std::int64_t now) const;

private:
    void begin(const QByteArray& folder, bool held, std::int64_t now);
    void keep(const BrowserPlace& left);
    std::optional<QByteArray> travel(int to, const BrowserPlace& left, bool held, std::int64_t now);
    void arrive();
    bool isAnswered() const;
    BrowserNotice notice(std::int64_t silence) const;
    BrowserNotice emptyNotice() const;

    QByteArray m_folder;
    std::vector<BrowserPlace> m_history;
    int m_at = -1;      // the entry that was seen last
    int m_goingTo = -1; // the entry on the way to; -1 for a new one
    std::optional<BrowserPlace> m_wish;
    BrowserFacts m_facts;
    std::int64_t m_begun = 0;     // of the visit
    std::int64_t m_busySince = 0; // of the reading
    std::int64_t m_lastAnswer = 0;
    bool m_isHeld = false;
    bool m_hasArrived = false;
    bool m_wasRetried = false;
};

} // namespace Kestrel::UI
