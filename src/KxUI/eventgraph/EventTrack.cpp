#include <KxUI/eventgraph/EventTrack_p.h>

#include <KxUI/eventgraph/CaptureState_p.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventTrackSnapshot.h>
#include <KxUI/eventgraph/IEventGraphTimer.h>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

quint64 nextNumber() {
    static std::atomic<quint64> last{0};
    return ++last;
}

EventTrack::Options optionsOf(const QString& name, const QColor& color, int sortKey,
                              EventTrack::TrackType type, float minValue, float maxValue,
                              int maxEventsPerSecond, int maxEvents, int graphHeight,
                              EventTrack* timeTrack) {
    EventTrack::Options options;
    options.name = name;
    options.color = color;
    options.sortKey = sortKey;
    options.type = type;
    options.minValue = minValue;
    options.maxValue = maxValue;
    options.maxEventsPerSecond = maxEventsPerSecond;
    options.maxEvents = maxEvents;
    options.graphHeight = graphHeight;
    options.timeTrack = timeTrack;
    return options;
}

} // namespace

EventTrackPrivate::EventTrackPrivate(EventTrack* track, const EventTrack::Options& with)
    : q(track)
    , birth(nextNumber())
    , options(with) {}

EventTrack::EventTrack(const Options& options)
    : d(std::make_unique<EventTrackPrivate>(this, options)) {
    const MutexGuard guard(profilerMutex());
    CaptureState::trackBorn(*d);
    d->contentReplaced();
    if (!options.timeTrack)
        return;
    d->setTimeTrack(options.timeTrack->d.get());
    if (options.type == TrackType::Bandwidth) {
        d->timeTrack->followers.insert(d.get());
        d->followed.insert(d->timeTrack);
    }
}

EventTrack::EventTrack(const QString& name, const QColor& color, int sortKey, TrackType type,
                       float minValue, float maxValue, int maxEventsPerSecond, int maxEvents,
                       int graphHeight, EventTrack* timeTrack)
    : EventTrack(optionsOf(name, color, sortKey, type, minValue, maxValue, maxEventsPerSecond,
                           maxEvents, graphHeight, timeTrack)) {}

EventTrack::EventTrack(const EventTrack& other)
    : d(std::make_unique<EventTrackPrivate>(this, Options())) {
    const MutexGuard guard(profilerMutex());
    CaptureState::trackBorn(*d);
    d->copyFrom(*other.d);
}

EventTrack& EventTrack::operator=(const EventTrack& other) {
    if (this == &other)
        return *this;
    Dropped dropped;
    const MutexGuard guard(profilerMutex());
    dropped.add(std::exchange(d->events, {}));
    d->copyFrom(*other.d);
    return *this;
}

EventTrack::~EventTrack() {
    // The events go with the members, after the mutex.
    const MutexGuard guard(profilerMutex());
    CaptureState::trackDies(*d);
    d->unlink();
}

void EventTrack::addEvent(Type type, EventUserDataIP userData, int time) {
    using TimeOf = EventTrackPrivate::TimeOf;
    d->record(type, userData, time, time == -1 ? TimeOf::Now : TimeOf::Event);
}

void EventTrackPrivate::record(EventTrack::Type type, const EventUserDataIP& userData, int time,
                               TimeOf timeOf) {
    CaptureState* const to = capture.load(std::memory_order_acquire);
    if (!to)
        return;
    Dropped dropped;
    const StateReadGuard stateGuard(to->lock);
    const MutexGuard guard(profilerMutex());
    if (capture.load(std::memory_order_relaxed) != to)
        return;

    if (timeOf == TimeOf::Now)
        time = to->timer->time();
    if (!passesNesting(type, time))
        return;
    for (EventTrackPrivate* track : followers)
        track->follow(type, time, *to, dropped);
    if (timeOf == TimeOf::Now && to->paused.load(std::memory_order_relaxed))
        return;
    append({time, type, 0.0f, userData}, *to, dropped);
    ++CaptureState::changes;
    if (type == EventTrack::Type::End) {
        totals.duration = wrappingSum(totals.duration, timeDifference(time, openStartTime));
        totals.count = wrappingSum(totals.count, 1);
    }
}

// Keeps count of open activities; false when the event is not the outermost of its activity.
bool EventTrackPrivate::passesNesting(EventTrack::Type type, int time) {
    switch (type) {
    case EventTrack::Type::Sample:
        return true;
    case EventTrack::Type::Start:
        if (openDepth == 0)
            openStartTime = time;
        return openDepth++ == 0;
    case EventTrack::Type::End:
        if (openDepth == 0)
            return false;
        return --openDepth == 0;
    }
    return false;
}

// What a bandwidth track makes of an event of its time track.
void EventTrackPrivate::follow(EventTrack::Type type, int time, const CaptureState& from,
                               Dropped& dropped) {
    if (type == EventTrack::Type::Start) {
        ++openDepth;
        openStartTime = time;
        openBytes = 0;
    } else if (type == EventTrack::Type::End && openDepth > 0) {
        // A track made amid an activity sees an end without its start; it has nothing to measure.
        --openDepth;
        if (from.paused.load(std::memory_order_relaxed))
            return;
        const qint32 duration = timeDifference(time, openStartTime);
        totals.duration = wrappingSum(totals.duration, duration);
        totals.bytes += openBytes;
        totals.count = wrappingSum(totals.count, 1);
        const double bandwidth =
            static_cast<double>(openBytes) * 1000.0 / (duration == 0 ? 1 : duration);
        append({time, EventTrack::Type::Sample, static_cast<float>(bandwidth), {}}, from, dropped);
    }
}

void EventTrack::addEvent(float value) {
    d->recordSample(value);
}

void EventTrackPrivate::recordSample(float value) {
    CaptureState* const to = capture.load(std::memory_order_acquire);
    if (!to)
        return;
    Dropped dropped;
    const StateReadGuard stateGuard(to->lock);
    // A view that dies needs the lock to unlink its tracks, so the timer holds while we do.
    if (capture.load(std::memory_order_relaxed) != to || to->paused.load(std::memory_order_relaxed))
        return;
    const int time = to->timer->time();
    const MutexGuard guard(profilerMutex());
    if (capture.load(std::memory_order_relaxed) != to)
        return;
    append({time, EventTrack::Type::Sample, value, {}}, *to, dropped);
    ++CaptureState::changes;
    totals.count = wrappingSum(totals.count, 1);
    totals.values += static_cast<double>(value);
}

// Adds the event if the limit allows. In a history the oldest one goes for it.
void EventTrackPrivate::append(EventTrack::Event&& event, const CaptureState& to,
                               Dropped& dropped) {
    const auto limit = static_cast<std::size_t>(eventLimit);
    if (to.mode == EventGraphMode::History) {
        if (events.size() == limit && !events.empty()) {
            dropped.add(events.takeFront(dropped).userData);
            ++removed;
        }
    } else if (events.size() >= limit) {
        return;
    }
    events.push_back(std::move(event), dropped);
}

void EventTrack::addDataSize(quint64 bytes) {
    CaptureState* const capture = d->capture.load(std::memory_order_acquire);
    if (!capture)
        return;
    const StateReadGuard stateGuard(capture->lock);
    const MutexGuard guard(profilerMutex());
    if (d->capture.load(std::memory_order_relaxed) == capture && d->openDepth > 0)
        d->openBytes += bytes;
}

template <class Function>
void EventTrackPrivate::withLocks(Function function) {
    for (;;) {
        CaptureState* const in = capture.load(std::memory_order_acquire);
        if (!in) {
            const MutexGuard guard(profilerMutex());
            if (!capture.load(std::memory_order_relaxed))
                return function(nullptr);
        } else {
            const StateReadGuard stateGuard(in->lock);
            const MutexGuard guard(profilerMutex());
            if (capture.load(std::memory_order_relaxed) == in)
                return function(in);
        }
    }
}

void EventTrack::clear() {
    Dropped dropped;
    d->withLocks([&](const CaptureState* capture) { d->clear(capture, dropped); });
}

void EventTrackPrivate::clear(const CaptureState* in, Dropped& dropped) {
    dropped.add(std::exchange(events, {}));
    contentReplaced();
    if (in && in->durationSeconds == EventGraphView::unlimitedDuration) {
        eventLimit = std::max(options.maxEvents, 0);
    } else if (in) {
        const float limit = static_cast<float>(options.maxEventsPerSecond) * in->durationSeconds;
        eventLimit = std::max(truncated(static_cast<double>(limit)), 0);
    }
    totals = {};
}

void EventTrack::finaliseHistory(int startTime) {
    Dropped dropped;
    d->withLocks([&](const CaptureState*) { d->finalise(startTime, dropped); });
}

void EventTrackPrivate::finalise(int startTime, Dropped& dropped) {
    ++CaptureState::changes;
    while (!events.empty() && timeDifference(events.front().time, startTime) < 0) {
        if (EventTrack::Event event = events.takeFront(dropped); event.userData)
            dropped.add(std::move(event.userData));
        ++removed;
    }
}

void EventTrackPrivate::contentReplaced() {
    content = nextNumber();
    removed = 0;
    ++CaptureState::changes;
}

void EventTrackPrivate::setCapture(CaptureState* to) {
    if (capture.load(std::memory_order_relaxed) == to)
        return;
    capture.store(to, std::memory_order_release);
    closeOpen();
}

void EventTrackPrivate::closeOpen() {
    openDepth = 0;
    openBytes = 0;
    for (EventTrackPrivate* track : followers) {
        track->openDepth = 0;
        track->openBytes = 0;
    }
}

void EventTrackPrivate::copyFrom(const EventTrackPrivate& other) {
    closeOpen();
    contentReplaced();
    capture.store(other.capture.load(std::memory_order_relaxed), std::memory_order_release);
    options = other.options;
    events = other.events;
    eventLimit = other.eventLimit;
    openDepth = other.openDepth;
    openStartTime = other.openStartTime;
    openBytes = other.openBytes;
    totals = other.totals;
    setTimeTrack(other.timeTrack);
    for (EventTrackPrivate* track : followers)
        track->followed.erase(this);
    followers = other.followers;
    for (EventTrackPrivate* track : followers)
        track->followed.insert(this);
}

void EventTrackPrivate::setTimeTrack(EventTrackPrivate* track) {
    if (timeTrack)
        timeTrack->timed.erase(this);
    timeTrack = track;
    if (timeTrack)
        timeTrack->timed.insert(this);
}

void EventTrackPrivate::unlink() {
    closeOpen();
    setTimeTrack(nullptr);
    for (EventTrackPrivate* track : followers)
        track->followed.erase(this);
    for (EventTrackPrivate* track : followed)
        track->followers.erase(this);
    for (EventTrackPrivate* track : timed)
        track->timeTrack = nullptr;
}

namespace {

struct Mean {
    const char* text = nullptr; // null: there is none
    double value = 0;
};

Mean meanOf(EventTrack::TrackType type, const TrackTotals& totals) {
    switch (type) {
    case EventTrack::TrackType::Timeline:
        if (totals.count != 0)
            return {QT_TRANSLATE_NOOP("Kestrel::UI::EventGraphView", ", Mean Duration=%1"),
                    double(totals.duration) / totals.count};
        break;
    case EventTrack::TrackType::Value:
        if (totals.count != 0)
            return {QT_TRANSLATE_NOOP("Kestrel::UI::EventGraphView", ", Mean Value=%1"),
                    totals.values / totals.count};
        break;
    case EventTrack::TrackType::Bandwidth:
        if (totals.duration != 0)
            return {QT_TRANSLATE_NOOP("Kestrel::UI::EventGraphView", ", Mean Bandwidth=%1"),
                    double(totals.bytes) * 1000.0 / totals.duration};
        break;
    }
    return {};
}

QString inserted(const QString& text, double value) {
    return text.arg(QString::number(value, 'g', 6));
}

} // namespace

// Asked for by any thread, also while the application with its translators comes to its end: not
// translated.
QString tooltipText(EventTrack::TrackType type, const TrackTotals& totals) {
    const Mean mean = meanOf(type, totals);
    return mean.text ? inserted(QString::fromLatin1(mean.text), mean.value) : QString();
}

QString localTooltipText(EventTrack::TrackType type, const TrackTotals& totals) {
    const Mean mean = meanOf(type, totals);
    return mean.text ? inserted(EventGraphView::tr(mean.text), mean.value) : QString();
}

QString EventTrack::trackTooltipText() const {
    TrackTotals totals;
    {
        const MutexGuard guard(profilerMutex());
        totals = d->totals;
    }
    return tooltipText(type(), totals);
}

EventTrackSnapshot snapshotOf(TrackContent&& content) {
    const TrackInfo& info = content.info;
    return {info.name,        info.color,
            info.sortKey,     info.type,
            info.minValue,    info.maxValue,
            info.graphHeight, std::move(content.events),
            info.hasSamples,  tooltipText(info.type, content.totals)};
}

EventTrackSnapshot EventTrack::snapshot() const {
    TrackContent content;
    {
        const MutexGuard guard(profilerMutex());
        content = CaptureState::contentOf(*d);
    }
    return snapshotOf(std::move(content));
}

const EventTrack::EventList& EventTrack::events() const {
    return d->events;
}

bool EventTrack::hasSamples() const {
    const MutexGuard guard(profilerMutex());
    return d->totals.count != 0;
}

EventGraphView* EventTrack::graph() const {
    const MutexGuard guard(profilerMutex());
    const CaptureState* const capture = d->capture.load(std::memory_order_relaxed);
    return capture ? capture->view : nullptr;
}

void EventTrack::setGraph(EventGraphView* graph) {
    const MutexGuard guard(profilerMutex());
    d->setCapture(graph ? &CaptureState::of(*graph) : nullptr);
}

QString EventTrack::name() const {
    return d->options.name;
}

QColor EventTrack::color() const {
    return d->options.color;
}

int EventTrack::sortKey() const {
    return d->options.sortKey;
}

EventTrack::TrackType EventTrack::type() const {
    return d->options.type;
}

bool EventTrack::displayAsGraph() const {
    return type() != TrackType::Timeline;
}

float EventTrack::minValue() const {
    return d->options.minValue;
}

float EventTrack::maxValue() const {
    return d->options.maxValue;
}

int EventTrack::graphHeight() const {
    return d->options.graphHeight;
}

} // namespace Kestrel::UI
