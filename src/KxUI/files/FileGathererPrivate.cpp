#include <KxUI/files/FileGatherer_p.h>
#include <KxUI/files/RecentListings_p.h>

#include <QPointer>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr std::int64_t millisecond = 1000000;

} // namespace

FileGatherer::Private::Private(FileGatherer* gatherer)
    : q(gatherer)
    , newsBox(std::make_shared<Mailbox<GatherNews>>(gatherer))
    , statusBox(std::make_shared<Mailbox<std::vector<FileStatus>>>(gatherer))
    , totalsBox(std::make_shared<Mailbox<TotalsNews>>(gatherer))
    , follower(pace, [this] { changed(); }) {
    for (QTimer* timer : {&waitTimer, &statusTimer, &rereadTimer})
        timer->setSingleShot(true);
    QObject::connect(&waitTimer, &QTimer::timeout, q, [this] { lookWhetherWaiting(); });
    QObject::connect(&statusTimer, &QTimer::timeout, q, [this] { takeStatuses(); });
    QObject::connect(&rereadTimer, &QTimer::timeout, q, [this] { gather(directory, changedAt); });
}

GatherRequest FileGatherer::Private::request(std::int64_t since) {
    GatherRequest request;
    request.id = ++id;
    request.directory = directory;
    request.settings = settings;
    request.pace = pace;
    // Rows that are there do not vanish to come back one by one.
    request.tellsMeanwhile = !hasAllRows;
    request.turn = turn;
    request.isFresh = since != 0;
    request.box = newsBox;
    return request;
}

void FileGatherer::Private::endRequest() {
    if (reading)
        reading->leave(requested);
    reading.reset();
    if (ticket)
        ticket->cancelled = true;
    ticket.reset();
    waitTimer.stop();
    rereadTimer.stop();
    ++id; // what is still told is nobody's
}

/** @param since  a reading that began earlier will not do; 0 for whatever is known */
void FileGatherer::Private::gather(std::string wanted, std::int64_t since) {
    endRequest();
    hasChanged = false;
    const bool isOther = wanted != directory || listing->state() == State::Empty;
    if (!isOther || enter(std::move(wanted)))
        post(isOther ? 0 : since);
}

// False when somebody went elsewhere meanwhile.
bool FileGatherer::Private::enter(std::string wanted) {
    q->cancelTotals();
    follower.stop();
    isFollowing = false;
    if (queue)
        queue->close();
    RecentListings::instance().keepStatus(directory, status);
    directory = std::move(wanted);
    statusBox->close();
    statusBox = std::make_shared<Mailbox<std::vector<FileStatus>>>(q);
    queue = std::make_shared<StatusQueue>(directory, statusBox);

    std::shared_ptr<const ListingData> rows;
    const auto recent = RecentListings::instance().find(directory);
    hasAllRows = recent && recent->settings == settings;
    status = hasAllRows && recent->status ? recent->status : std::make_shared<const StatusTable>();
    if (hasAllRows) {
        rows = recent->data;
        ++turn; // what is shown of them is asked for again
    } else {
        auto nothing = std::make_shared<ListingData>();
        nothing->raw = std::make_shared<const RawEntries>(RawEntries{directory, nullptr, {}});
        nothing->folded = settings.fold;
        rows = std::move(nothing);
    }
    const QPointer<FileGatherer> self(q);
    const std::uint64_t before = id;
    if (!setGathering(true) || id != before)
        return false;
    adopt(std::move(rows), State::Reading, 0);
    return self && id == before;
}

void FileGatherer::Private::post(std::int64_t since) {
    requested = request(since);
    asked = Ticket::now();
    reading = SharedReading::join(requested, since);
    const QPointer<FileGatherer> self(q);
    if (reading) {
        nextWait = 300;
        waitTimer.start(nextWait);
        setGathering(true);
        return;
    }
    adopt(data(), State::Failed, nobodyLeftToRead);
    if (self)
        end();
}

// False when that was the end of the gatherer.
bool FileGatherer::Private::setGathering(bool gathering) {
    if (gathering == isGathering)
        return true;
    isGathering = gathering;
    const QPointer<FileGatherer> self(q);
    Q_EMIT q->gatheringChanged(gathering);
    return !self.isNull();
}

// The same names by other settings: the disk is not asked.
void FileGatherer::Private::rebuild() {
    const GatherRequest wanted = request();
    ticket = WorkerPool::instance().post(
        WorkerPool::Lane::Names, {},
        [wanted, old = data(), state = listing->state(), error = listing->error()](Ticket&) {
            GatherJob::rebuild(wanted, *old, state, error);
        });
}

void FileGatherer::Private::changeSettings() {
    const QPointer<FileGatherer> self(q);
    Q_EMIT q->settingsChanged();
    if (!self || listing->state() == State::Empty)
        return;
    if (!isGathering) {
        rebuild();
        return;
    }
    // The other way round, the reading would end and begin once more.
    const auto before = std::exchange(reading, nullptr);
    const GatherRequest old = std::exchange(requested, {});
    post(old.isFresh ? asked : 0);
    if (before)
        before->leave(old);
}

void FileGatherer::Private::adopt(std::shared_ptr<const ListingData> data, State state, int error) {
    listing = ListingData::listing(std::move(data), status, state, error);
    Q_EMIT q->listingChanged();
}

void FileGatherer::Private::takeNews() {
    auto news = newsBox->take();
    if (!news || news->request != id)
        return;
    const QPointer<FileGatherer> self(q);
    const bool isEnd = isGathering && news->state != State::Reading;
    if (isEnd) {
        waitTimer.stop();
        ended = Ticket::now();
        duration = news->duration;
        follower.setStamp(news->stamp);
    }
    hasAllRows = hasAllRows || news->state == State::Complete;
    if (news->status)
        status = news->status;
    const std::uint64_t current = id;
    adopt(news->data ? std::move(news->data) : data(), news->state, news->error);
    if (self && isEnd && current == id)
        end();
}

void FileGatherer::Private::end() {
    const std::uint64_t current = id;
    if (listing->state() == State::Complete)
        follow();
    if (hasChanged)
        scheduleReread();
    if (setGathering(false) && current == id)
        Q_EMIT q->finished();
}

void FileGatherer::Private::ask(const std::vector<int>& indices) {
    if (!queue || queue->isThrough(*data(), turn))
        return;
    // More of them are looked through by the workers.
    constexpr std::size_t fewEnough = 1000;
    StatusQueue::Wants wants{data(), status, {}, turn};
    wants.items.reserve(indices.size());
    for (const int index : indices) {
        if (index >= 0 && index < listing->size() &&
            (indices.size() > fewEnough || !wants.isTold(index)))
            wants.items.push_back(index);
    }
    queue->replace(std::move(wants));
}

int FileGatherer::Private::itemOf(const FileStatus& told) const {
    const bool isThere =
        told.item >= 0 && told.item < listing->size() && listing->item(told.item).key == told.key;
    return isThere ? told.item : listing->findKey(told.key);
}

void FileGatherer::Private::takeStatuses() {
    if (auto statuses = statusBox->take())
        setStatus(std::move(*statuses));
}

void FileGatherer::Private::setStatus(std::vector<FileStatus> statuses) {
    int first = listing->size();
    int last = -1;
    for (const FileStatus& each : statuses) {
        if (const int index = itemOf(each); index >= 0) {
            first = std::min(first, index);
            last = std::max(last, index);
        }
    }
    auto table = std::make_shared<StatusTable>(*status);
    table->add(std::move(statuses));
    status = std::move(table);
    listing = ListingData::listing(data(), status, listing->state(), listing->error());
    // The next ones in a while: workers may be fast.
    statusTimer.start(pace.statusBatch);
    if (last >= 0)
        Q_EMIT q->statusArrived(first, last);
}

void FileGatherer::Private::takeTotals() {
    const auto news = totalsBox->take();
    if (news && news->request == totalsId)
        Q_EMIT q->totalsArrived(totalsName, news->bytes, news->files, news->isFinal,
                                news->isFinal && news->isExact);
}

std::int64_t FileGatherer::Private::silence() const {
    if (!isGathering || !reading)
        return 0;
    const std::int64_t beat = std::max(reading->beat(), asked);
    return std::max<std::int64_t>((Ticket::now() - beat) / millisecond, 0);
}

void FileGatherer::Private::lookWhetherWaiting() {
    const auto waited = static_cast<int>(silence());
    if (!isGathering)
        return;
    if (waited < nextWait) {
        // It has answered meanwhile.
        if (waited < 300)
            nextWait = 300;
        waitTimer.start(std::max(nextWait - waited, 1));
        return;
    }
    nextWait = nextWait < 2000 ? 2000 : nextWait < 10000 ? 10000 : nextWait + 10000;
    waitTimer.start(std::max(nextWait - waited, 1));
    Q_EMIT q->waiting(waited);
}

void FileGatherer::Private::follow() {
    if (isFollowing || watch == Watch::Never)
        return;
    isFollowing = true;
    follower.follow(directory, watch == Watch::Always);
}

void FileGatherer::Private::changed() {
    const QPointer<FileGatherer> self(q);
    hasChanged = true;
    changedAt = Ticket::now();
    Q_EMIT q->directoryChanged();
    if (self && hasChanged && !isGathering)
        scheduleReread();
}

// Not while a render writes a file a moment: reading takes a fifth of the time at most.
void FileGatherer::Private::scheduleReread() {
    if (rereadTimer.isActive() || watch == Watch::Never)
        return;
    const std::int64_t gap = std::max(pace.reread * millisecond, 4 * duration);
    const std::int64_t wait = (ended + gap - Ticket::now()) / millisecond;
    // Files may have been written, too: what is shown of them is asked for again.
    ++turn;
    rereadTimer.start(static_cast<int>(std::clamp<std::int64_t>(wait, 0, 3600000)));
}

} // namespace Kestrel::UI
