#include <KxUI/scopes/ScopeModel_p.h>

#include <QPointer>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int MostThreads = 4;
constexpr int StuckAfter = 2000; // milliseconds
// More than this many hang in transforms: nothing is to be expected of the next one either.
constexpr std::size_t MostLeft = 3;
constexpr int MostSharedBins = 2048;

int threads() {
    return std::clamp(QThread::idealThreadCount(), 1, MostThreads);
}

// A range that covers both, with the bins of one of them where they will do: those of codes stay on
// their codes.
ValueRange united(const ValueRange& a, const ValueRange& b) {
    const auto covers = [](const ValueRange& range, const ValueRange& other) {
        return range.lower <= other.lower && range.upper >= other.upper &&
               range.scale() >= other.scale();
    };
    if (covers(a, b))
        return a;
    if (covers(b, a))
        return b;
    ValueRange both{std::min(a.lower, b.lower), std::max(a.upper, b.upper), 1};
    const double bins = double(both.upper - both.lower) * double(std::max(a.scale(), b.scale()));
    both.bins = int(std::clamp(std::ceil(bins), 1.0, double(MostSharedBins)));
    return both;
}

WaveformRange united(const WaveformRange& a, const WaveformRange& b, bool laterIsB) {
    WaveformRange both = laterIsB ? b : a;
    both.channels = a.channels | b.channels;
    both.values = united(a.values, b.values);
    both.chroma = united(a.chroma, b.chroma);
    both.mostColumns = std::max(a.mostColumns, b.mostColumns);
    return both;
}

VectorRange united(const VectorRange& a, const VectorRange& b, bool laterIsB) {
    VectorRange both = laterIsB ? b : a;
    both.chroma = united(a.chroma, b.chroma);
    return both;
}

} // namespace

ScopeModel::Private::Private(ScopeModel& model)
    : q(model)
    , m_results(std::make_shared<ScopeResults>(&model))
    , m_worker(std::make_shared<ScopeWorker>(m_results, threads()))
    , m_samples(std::make_shared<ScopeResults>(&model))
    , m_found(std::make_shared<ScopeResults>(&model)) {
    pace.setSingleShot(true);
    pace.setTimerType(Qt::PreciseTimer);
    connect(&pace, &QTimer::timeout, &q, [this] { schedule(); });
    m_watch.setInterval(StuckAfter);
    connect(&m_watch, &QTimer::timeout, &q, [this] { look(); });
}

void ScopeModel::Private::close() {
    m_results->close();
    m_samples->close();
    m_found->close();
    for (const auto& worker : {m_worker, m_sampler, m_finder}) {
        if (worker)
            worker->close();
    }
}

void ScopeModel::Private::tell(Changes changes) {
    const QPointer<ScopeModel> guard(&q);
    Q_EMIT q.changed(changes);
    if (guard && (changes & (Image | Encoding)) && samplePlace)
        readSample();
}

void ScopeModel::Private::invalidate() {
    isStale = true;
    if (image.isEmpty())
        showNothing();
    else
        schedule();
}

// Whoever takes the picture away is not to wait for its counts.
void ScopeModel::Private::showNothing() {
    if (inFlight != 0)
        m_worker->cancel();
    inFlight = 0;
    isStale = false;
    m_watch.stop();
    m_submitted = Need();
    if (result->parts == 0 && result->error.empty())
        return;
    const auto replaced = std::exchange(result, std::make_shared<const ScopeResult>());
    tell(Result);
}

void ScopeModel::Private::schedule() {
    const Need wanted = need();
    if (!isStale || inFlight != 0 || wanted.parts == Parts() || pace.isActive())
        return;
    const double interval = 1000 / rate;
    const double passed =
        m_sinceBegin.isValid() ? double(m_sinceBegin.nsecsElapsed()) * 1e-6 : interval;
    if (passed < interval) {
        pace.start(int(interval - passed) + 1);
        return;
    }
    submit();
}

void ScopeModel::Private::submit() {
    m_submitted = need();
    isStale = false;
    inFlight = ++passes;
    m_sinceBegin.start();
    m_seenProgress = m_worker->progress();
    m_watch.start();
    ScopeJob job;
    job.serial = inFlight;
    job.image = image;
    job.request = request();
    m_worker->submit(std::move(job));
}

ScopeRegion ScopeModel::Private::countedRegion() const {
    ScopeRegion counted = image.frame();
    if (!region.isNull())
        counted = counted.intersected({region.x(), region.y(), region.width(), region.height()});
    if (row >= 0)
        counted = counted.intersected({counted.left, row, counted.width, 1});
    return counted;
}

ScopeRequest ScopeModel::Private::request() const {
    ScopeRequest request;
    request.parts = int(m_submitted.parts);
    request.encoding = encoding;
    request.waveform = m_submitted.waveform;
    request.vectors = m_submitted.vectors;
    request.solid = solid;
    request.rowStep = interactive ? rowStep : 1;
    request.wholeFrame = region.isNull() && row < 0;
    request.region = countedRegion();
    return request;
}

void ScopeModel::Private::takeResult() {
    const std::optional<ScopeDelivery> delivery = m_results->take();
    if (!delivery || delivery->serial != inFlight)
        return;
    inFlight = 0;
    m_watch.stop();
    // An earlier result may be a host's to keep; it goes when everybody has been told.
    const auto replaced = std::exchange(result, delivery->result);
    const QPointer<ScopeModel> guard(&q);
    schedule();
    if (guard)
        tell(Result);
}

// A pass that does nothing for two seconds hangs; what is newer is counted by other threads then.
void ScopeModel::Private::look() {
    const std::uint64_t progress = m_worker->progress();
    if (std::exchange(m_seenProgress, progress) == progress && isStale && inFlight != 0)
        replaceWorker();
}

void ScopeModel::Private::replaceWorker() {
    m_left.erase(
        std::remove_if(m_left.begin(), m_left.end(),
                       [](const std::weak_ptr<ScopeWorker>& each) { return each.expired(); }),
        m_left.end());
    if (m_left.size() >= MostLeft)
        return;
    m_worker->close();
    m_left.push_back(m_worker);
    m_worker = std::make_shared<ScopeWorker>(m_results, threads());
    inFlight = 0;
    schedule();
}

void ScopeModel::Private::setNeed(const QObject* who, const Need& wanted) {
    if (!who)
        return;
    const auto known = m_needs.find(who);
    if (wanted.parts == Parts()) {
        if (known == m_needs.end())
            return;
        m_needs.erase(known);
        QObject::disconnect(who, &QObject::destroyed, &q, nullptr);
    } else {
        if (known == m_needs.end())
            connect(who, &QObject::destroyed, &q, [this, who] { m_needs.erase(who); });
        m_needs[who] = wanted;
        m_needs[who].order = ++m_order;
    }
    // The parts that nobody needs any more are left out of the next pass.
    const Need all = need();
    if (!covers(all) && !image.isEmpty())
        isStale = true;
    schedule();
}

ScopeModel::Private::Need ScopeModel::Private::need() const {
    Need all;
    std::uint64_t waveformOrder = 0;
    std::uint64_t vectorsOrder = 0;
    for (const auto& [who, each] : m_needs) {
        if (each.parts & Waveform) {
            const bool first = !(all.parts & Waveform);
            all.waveform = first ? each.waveform
                                 : united(all.waveform, each.waveform, each.order > waveformOrder);
            waveformOrder = std::max(waveformOrder, each.order);
        }
        if (each.parts & Vectors) {
            const bool first = !(all.parts & Vectors);
            all.vectors =
                first ? each.vectors : united(all.vectors, each.vectors, each.order > vectorsOrder);
            vectorsOrder = std::max(vectorsOrder, each.order);
        }
        all.parts |= each.parts;
    }
    return all;
}

// Whether the newest pass counts, or has counted, what is wanted.
bool ScopeModel::Private::covers(const Need& wanted) const {
    if ((wanted.parts & m_submitted.parts) != wanted.parts)
        return false;
    if (wanted.parts & Waveform) {
        WaveformRange counted = m_submitted.waveform;
        if ((counted.channels & wanted.waveform.channels) != wanted.waveform.channels)
            return false;
        counted.channels = wanted.waveform.channels;
        if (counted != wanted.waveform)
            return false;
    }
    return !(wanted.parts & Vectors) || wanted.vectors == m_submitted.vectors;
}

void ScopeModel::Private::readSample() {
    ++m_sampleSerial;
    if (!samplePlace || !encoding.transform) {
        if (m_sampler)
            m_sampler->cancel();
        setSample(samplePlace
                      ? std::optional<ScopeSample>(scopeSample(image, encoding, samplePlace->x,
                                                               samplePlace->y, samplePlace->radius))
                      : std::nullopt);
        return;
    }
    // A transform may take as long as it likes, so it is not called here.
    if (!m_sampler)
        m_sampler = std::make_shared<ScopeWorker>(m_samples, 1);
    ScopeJob job;
    job.serial = m_sampleSerial;
    job.image = image;
    job.request.encoding = encoding;
    job.sample = samplePlace;
    m_sampler->submit(std::move(job));
}

void ScopeModel::Private::takeSample() {
    const std::optional<ScopeDelivery> delivery = m_samples->take();
    if (delivery && delivery->serial == m_sampleSerial)
        setSample(delivery->sample);
}

void ScopeModel::Private::find(const QObject* who, const ScopeSelection& wanted,
                               const QRect& within) {
    m_findsFor = who;
    if (!m_finder)
        m_finder = std::make_shared<ScopeWorker>(m_found, 1);
    ScopeJob job;
    job.serial = ++m_findSerial;
    job.image = image;
    job.request.encoding = encoding;
    job.request.region = countedRegion();
    if (!within.isNull())
        job.request.region = job.request.region.intersected(
            {within.x(), within.y(), within.width(), within.height()});
    job.find = wanted;
    m_finder->submit(std::move(job));
}

void ScopeModel::Private::takeFound() {
    const std::optional<ScopeDelivery> delivery = m_found->take();
    if (delivery && delivery->serial == m_findSerial && delivery->sample)
        Q_EMIT q.found(m_findsFor, QPoint(delivery->sample->x, delivery->sample->y));
}

void ScopeModel::Private::setSample(const std::optional<ScopeSample>& read) {
    const bool has = read && read->pixels >= 0;
    if (!has && !sample)
        return;
    sample = has ? read : std::nullopt;
    tell(Sample);
}

} // namespace Kestrel::UI
