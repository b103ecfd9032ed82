#include <KxUI/browse/BrowserState_p.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

using Listing = BrowserFacts::Listing;
using Error = BrowserFacts::Error;

constexpr std::size_t HistoryLimit = 100;

// The part of `below` that lies directly in `folder`; empty where it lies elsewhere.
QByteArray childTowards(const QByteArray& folder, const QByteArray& below) {
    const QByteArray base = folder.endsWith('/') ? folder : folder + '/';
    if (!below.startsWith(base))
        return {};
    const auto end = below.indexOf('/', base.size());
    return below.mid(base.size(), end < 0 ? -1 : end - base.size());
}

} // namespace

void BrowserState::begin(const QByteArray& folder, bool held, std::int64_t now) {
    m_folder = folder;
    m_facts = {};
    m_facts.isGathering = true;
    m_begun = now;
    m_busySince = now;
    m_lastAnswer = now;
    m_isHeld = held;
    m_hasArrived = false;
    m_wasRetried = false;
}

// Only what was seen is left: who leaves before anything came leaves the folder before that.
void BrowserState::keep(const BrowserPlace& left) {
    if (m_hasArrived && m_at >= 0)
        m_history[static_cast<std::size_t>(m_at)] = left;
}

void BrowserState::go(const QByteArray& folder, const BrowserPlace& left, bool held,
                      std::int64_t now) {
    keep(left);
    m_wish.reset();
    if (QByteArray child = childTowards(folder, m_folder); !child.isEmpty()) {
        m_wish.emplace();
        m_wish->folder = folder;
        m_wish->selected = {child};
        m_wish->current = std::move(child);
    }
    m_goingTo = -1;
    begin(folder, held, now);
}

std::optional<QByteArray> BrowserState::travel(int to, const BrowserPlace& left, bool held,
                                               std::int64_t now) {
    if (to < 0 || to >= static_cast<int>(m_history.size()))
        return {};
    keep(left);
    m_goingTo = to;
    m_wish = m_history[static_cast<std::size_t>(to)];
    begin(m_wish->folder, held, now);
    return m_folder;
}

std::optional<QByteArray> BrowserState::goBack(const BrowserPlace& left, bool held,
                                               std::int64_t now) {
    // From a folder that has not answered yet, back is where one came from.
    const int from = m_goingTo >= 0 ? m_goingTo : m_hasArrived ? m_at : m_at + 1;
    return travel(from - 1, left, held, now);
}

std::optional<QByteArray> BrowserState::goForward(const BrowserPlace& left, bool held,
                                                  std::int64_t now) {
    return travel((m_goingTo >= 0 ? m_goingTo : m_at) + 1, left, held, now);
}

bool BrowserState::canGoBack() const {
    return m_goingTo >= 0 ? m_goingTo > 0 : m_hasArrived ? m_at > 0 : m_at >= 0;
}

bool BrowserState::canGoForward() const {
    return (m_goingTo >= 0 ? m_goingTo : m_at) + 1 < static_cast<int>(m_history.size());
}

// The history has it from now on: not what was typed or passed without a look.
void BrowserState::arrive() {
    m_hasArrived = true;
    m_isHeld = false;
    if (m_goingTo >= 0) {
        m_at = m_goingTo;
        m_goingTo = -1;
        return;
    }
    if (m_at >= 0 && m_history[static_cast<std::size_t>(m_at)].folder == m_folder)
        return;
    m_history.resize(static_cast<std::size_t>(m_at + 1));
    if (m_history.size() == HistoryLimit)
        m_history.erase(m_history.begin());
    BrowserPlace place;
    place.folder = m_folder;
    m_history.push_back(std::move(place));
    m_at = static_cast<int>(m_history.size()) - 1;
}

bool BrowserState::isAnswered() const {
    return m_facts.rows > 0 || m_facts.listing != Listing::Reading;
}

BrowserState::Order BrowserState::update(const BrowserFacts& facts, std::int64_t now) {
    if (facts.isGathering && !m_facts.isGathering)
        m_busySince = now;
    m_facts = facts;
    m_lastAnswer = now - facts.silence;
    const bool hasFailed = facts.listing == Listing::Failed && !facts.isGathering;
    if (hasFailed && facts.error == Error::Stale && !m_wasRetried) {
        m_wasRetried = true;
        return Order::Retry;
    }
    if (hasFailed && facts.error == Error::NotAFolder && !m_hasArrived)
        return Order::GoToFile;
    if (!m_hasArrived && isAnswered())
        arrive();
    return Order::Nothing;
}

BrowserNotice BrowserState::emptyNotice() const {
    if (m_facts.isSearched)
        return BrowserNotice::NoMatch;
    if (!m_facts.hasEntries)
        return BrowserNotice::Empty;
    return m_facts.isFiltered ? BrowserNotice::NoneOfKind : BrowserNotice::OnlyHidden;
}

BrowserNotice BrowserState::notice(std::int64_t silence) const {
    if (m_facts.isGathering && silence >= WaitingAfter)
        return silence >= WayOutAfter ? BrowserNotice::WaitingLong : BrowserNotice::Waiting;
    switch (m_facts.listing) {
    case Listing::Reading:
        return BrowserNotice::None;
    case Listing::Failed:
        return m_facts.error == Error::Missing ? BrowserNotice::Vanished : BrowserNotice::Failed;
    case Listing::Stopped:
        return BrowserNotice::Stopped;
    case Listing::Complete:
        break;
    }
    return m_facts.rows > 0 ? BrowserNotice::None : emptyNotice();
}

BrowserFace BrowserState::face(std::int64_t now) const {
    BrowserFace face;
    if (m_folder.isEmpty())
        return face;
    const std::int64_t silence = now - m_lastAnswer;
    face.notice = notice(silence);
    face.isBusy = m_facts.isGathering && now - m_busySince >= GreyAfter;
    if (!m_hasArrived) {
        // Words in the place of the rows end what was held.
        face.holdsOld = m_isHeld && face.notice == BrowserNotice::None;
        face.isGrey = face.holdsOld && now - m_begun >= GreyAfter;
    } else {
        face.isGrey = face.notice == BrowserNotice::Vanished;
    }
    return face;
}

std::optional<std::int64_t> BrowserState::nextChange(std::int64_t now) const {
    std::optional<std::int64_t> next;
    const auto add = [&](std::int64_t at) {
        if (at > now && (!next || at < *next))
            next = at;
    };
    if (!m_facts.isGathering)
        return next;
    add(m_busySince + GreyAfter);
    add(m_begun + GreyAfter);
    add(m_lastAnswer + WaitingAfter);
    add(m_lastAnswer + WayOutAfter);
    return next;
}

} // namespace Kestrel::UI
