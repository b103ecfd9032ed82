#include "grade/FrameGrader.h"

#include <QThread>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <optional>

namespace Kestrel::Workbench {

namespace {

/** Enough for any frame to be graded at once; one core is left to the interface. */
int gradeThreads() {
    return std::clamp(QThread::idealThreadCount() - 1, 1, 4);
}

/** Rows that a thread takes at a time. */
constexpr int bandRows = 64;

/** More exposures than frames are graded ahead. */
constexpr std::size_t mostPrepared = 16;

std::size_t signalSamples(const Frame& frame) {
    return std::size_t(frame.image.width()) * std::size_t(frame.image.height()) * 3;
}

SampleFormat formatOf(const Frame& frame) {
    return frame.samples ? frame.samples->format : SampleFormat();
}

} // namespace

/** Are made by the thread that needs them first; the others wait for it. */
class FrameGrader::LazyTables {
public:
    LazyTables(const Grade& grade, const SampleFormat& format)
        : m_grade(grade)
        , m_format(format) {}

    const SampleFormat& format() const { return m_format; }

    const GradeTables& get() {
        std::call_once(m_once, [this] { m_tables.emplace(m_grade, m_format); });
        return *m_tables;
    }

private:
    const Grade m_grade;
    const SampleFormat m_format;
    std::once_flag m_once;
    std::optional<GradeTables> m_tables;
};

/** Is prepared like them. */
class FrameGrader::LazyGrade {
public:
    LazyGrade(std::shared_ptr<LazyTables> tables, float stops, PreparedGrade::Results results)
        : m_tables(std::move(tables))
        , m_stops(stops)
        , m_results(results) {}

    bool is(const SampleFormat& format, float stops) const {
        return m_stops == stops && m_tables->format() == format;
    }

    const PreparedGrade& get() {
        std::call_once(m_once, [this] { m_prepared.emplace(m_tables->get(), m_stops, m_results); });
        return *m_prepared;
    }

private:
    const std::shared_ptr<LazyTables> m_tables;
    const float m_stops;
    const PreparedGrade::Results m_results;
    std::once_flag m_once;
    std::optional<PreparedGrade> m_prepared;
};

struct FrameGrader::Job {
    FramePtr source;
    std::shared_ptr<LazyGrade> grade;
    std::shared_ptr<Frame> graded;
    /** The graded picture's memory, for the workers. */
    uchar* bits = nullptr;
    bool keepsSignal = false;
    int nextRow = 0;
    int rowsLeft = 0;
    std::chrono::steady_clock::time_point begun;
    std::chrono::duration<double> spent{0};

    void gradeRows(int first, int last) {
        const PreparedGrade& prepared = grade->get();
        if (keepsSignal)
            std::call_once(m_once, [this] { makeSignal(); });
        const QImage& image = source->image;
        const auto width = std::size_t(image.width());
        for (int y = first; y < last; ++y) {
            const std::size_t first3 = std::size_t(y) * width * 3;
            if (source->samples)
                gradeRow(prepared, source->samples->rgb.data() + first3, y);
            else
                gradeRow(prepared, reinterpret_cast<const QRgb*>(image.constScanLine(y)), y);
        }
    }

private:
    /** Here, since the interface is not to wait for so much memory to be cleared. */
    void makeSignal() {
        auto samples = std::make_shared<Samples>();
        samples->format = {SampleFormat::Type::Half, Encoding::Display};
        samples->rgb.resize(signalSamples(*source));
        m_signal = samples->rgb.data();
        graded->samples = std::move(samples);
    }

    template <typename Pixel>
    void gradeRow(const PreparedGrade& prepared, const Pixel* from, int y) const {
        const int width = source->image.width();
        const std::size_t before = std::size_t(y) * std::size_t(width);
        prepared.gradeRow(from, reinterpret_cast<QRgb*>(bits) + before, width);
        if (m_signal)
            prepared.signalRow(from, m_signal + before * 3, width);
    }

    std::once_flag m_once;
    std::uint16_t* m_signal = nullptr;
};

FrameGrader::FrameGrader(std::size_t capacity, QObject* parent)
    : QObject(parent)
    , m_capacity(capacity) {
    for (int i = 0; i < gradeThreads(); ++i)
        m_threads.emplace_back([this] { work(); });
}

FrameGrader::~FrameGrader() {
    {
        const std::lock_guard lock(m_mutex);
        m_quit = true;
    }
    m_wake.notify_all();
    for (auto& thread : m_threads)
        thread.join();
}

void FrameGrader::setGrade(const Grade& grade) {
    if (grade == m_grade)
        return;
    clear();
    m_grade = grade;
    m_isIdentity = grade.isIdentity();
    m_isNeutral = grade.isIdentity(0.0F);
    m_tables.clear();
    m_prepared.clear();
}

FramePtr FrameGrader::find(const FramePtr& source) {
    if (staysAsItIs(source))
        return source;
    const auto found = findGraded(source);
    if (found == m_graded.end())
        return nullptr;
    m_graded.splice(m_graded.begin(), m_graded, found);
    return found->frame;
}

bool FrameGrader::isGrading(const FramePtr& source) {
    const std::lock_guard lock(m_mutex);
    return isBegun(source) || isAsked(source);
}

void FrameGrader::setRequests(const std::vector<FramePtr>& sources) {
    std::vector<FramePtr> wanted;
    std::size_t room = m_capacity;
    for (const FramePtr& source : sources) {
        if (staysAsItIs(source))
            continue;
        if (!wanted.empty() && costOf(source) > room)
            break;
        room -= std::min(costOf(source), room);
        wanted.push_back(source);
    }
    // What is wanted goes to the front, or it would make room for what is wanted later.
    for (auto source = wanted.rbegin(); source != wanted.rend(); ++source) {
        if (const auto graded = findGraded(*source); graded != m_graded.end())
            m_graded.splice(m_graded.begin(), m_graded, graded);
    }
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.erase(std::remove_if(m_jobs.begin(), m_jobs.end(),
                                    [&](const JobPtr& job) { return !isBegun(job->source); }),
                     m_jobs.end());
        for (const FramePtr& source : wanted) {
            if (isBegun(source) || isAsked(source) || findGraded(source) != m_graded.end())
                continue;
            JobPtr job = makeJob(source);
            if (job->bits)
                m_jobs.push_back(std::move(job));
        }
    }
    m_wake.notify_all();
}

FrameGrader::JobPtr FrameGrader::makeJob(const FramePtr& source) {
    auto job = std::make_shared<Job>();
    job->source = source;
    job->grade = prepared(formatOf(*source), stopsOf(source));
    job->graded = std::make_shared<Frame>(*source);
    job->graded->samples = nullptr;
    job->graded->image = QImage(source->image.size(), QImage::Format_RGB32);
    job->bits = job->graded->image.bits();
    job->rowsLeft = source->image.height();
    job->keepsSignal = m_keepsSignal;
    return job;
}

void FrameGrader::setKeepsSignal(bool keeps) {
    if (keeps == m_keepsSignal)
        return;
    m_keepsSignal = keeps;
    m_prepared.clear();
    if (keeps)
        clear();
}

void FrameGrader::clear() {
    m_graded.clear();
    m_bytes = 0;
    const std::lock_guard lock(m_mutex);
    m_jobs.clear();
    m_begun.clear();
    ++m_round;
}

bool FrameGrader::staysAsItIs(const FramePtr& source) const {
    if (m_isIdentity || !source || source->state != Frame::State::Ready)
        return true;
    return m_isNeutral && m_grade.isKeyed() && stopsOf(source) == 0.0F;
}

float FrameGrader::stopsOf(const FramePtr& source) const {
    return m_grade.exposureAt(source->time);
}

/** What the frame takes when it is graded. */
std::size_t FrameGrader::costOf(const FramePtr& source) const {
    const std::size_t samples = m_keepsSignal ? signalSamples(*source) : 0;
    return source->pictureCost() + samples * sizeof(std::uint16_t);
}

bool FrameGrader::isBegun(const FramePtr& source) const {
    return std::find(m_begun.begin(), m_begun.end(), source) != m_begun.end();
}

bool FrameGrader::isAsked(const FramePtr& source) const {
    return std::any_of(m_jobs.begin(), m_jobs.end(),
                       [&source](const JobPtr& job) { return job->source == source; });
}

std::list<FrameGrader::Graded>::iterator FrameGrader::findGraded(const FramePtr& source) {
    return std::find_if(m_graded.begin(), m_graded.end(),
                        [&source](const Graded& graded) { return graded.source.lock() == source; });
}

std::shared_ptr<FrameGrader::LazyTables> FrameGrader::tables(const SampleFormat& format) {
    const auto found = std::find_if(m_tables.begin(), m_tables.end(),
                                    [&](const auto& each) { return each->format() == format; });
    if (found != m_tables.end())
        return *found;
    m_tables.push_back(std::make_shared<LazyTables>(m_grade, format));
    return m_tables.back();
}

std::shared_ptr<FrameGrader::LazyGrade> FrameGrader::prepared(const SampleFormat& format,
                                                              float stops) {
    const auto found = std::find_if(m_prepared.begin(), m_prepared.end(),
                                    [&](const auto& each) { return each->is(format, stops); });
    if (found != m_prepared.end()) {
        m_prepared.splice(m_prepared.begin(), m_prepared, found);
        return m_prepared.front();
    }
    m_prepared.push_front(std::make_shared<LazyGrade>(tables(format), stops,
                                                      m_keepsSignal ? PreparedGrade::CodesAndSignal
                                                                    : PreparedGrade::Codes));
    if (m_prepared.size() > mostPrepared)
        m_prepared.pop_back();
    return m_prepared.front();
}

void FrameGrader::work() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_quit || !m_jobs.empty(); });
        if (m_quit)
            return;
        const JobPtr job = m_jobs.front();
        const std::uint64_t round = m_round;
        const int first = job->nextRow;
        const int last = std::min(first + bandRows, job->source->image.height());
        if (first == 0) {
            m_begun.push_back(job->source);
            job->begun = std::chrono::steady_clock::now();
        }
        job->nextRow = last;
        if (last == job->source->image.height())
            m_jobs.pop_front();
        lock.unlock();
        job->gradeRows(first, last);
        lock.lock();
        job->rowsLeft -= last - first;
        if (job->rowsLeft > 0)
            continue;
        job->spent = std::chrono::steady_clock::now() - job->begun;
        QMetaObject::invokeMethod(
            this, [this, job, round] { deliver(job, round); }, Qt::QueuedConnection);
    }
}

void FrameGrader::deliver(const JobPtr& job, std::uint64_t round) {
    {
        const std::lock_guard lock(m_mutex);
        if (round != m_round)
            return;
        m_begun.erase(std::remove(m_begun.begin(), m_begun.end(), job->source), m_begun.end());
    }
    ++m_gradedCount;
    m_lastSeconds = job->spent.count();
    m_graded.push_front({job->source, job->graded});
    m_bytes += job->graded->cost();
    // The newest one is kept in any case: somebody waits for it.
    while (m_bytes > m_capacity && m_graded.size() > 1) {
        m_bytes -= m_graded.back().frame->cost();
        m_graded.pop_back();
    }
    emit frameGraded(job->source);
}

} // namespace Kestrel::Workbench
