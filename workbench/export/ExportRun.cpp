#include "export/ExportRun.h"

#include "media/FrameDecoder.h"
#include "media/Paths.h"

#include <QCoreApplication>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <new>
#include <thread>

namespace Kestrel::Workbench {

namespace {

struct Message {
    Q_DECLARE_TR_FUNCTIONS(ExportRun)
};

QString shownName(const std::string& path) {
    return QString::fromStdString(fileNameOf(path));
}

} // namespace

ExportRun::ExportRun(ExportPlan plan, std::shared_ptr<UI::ProgressTask> task, Listener listener,
                     WriteFile write)
    : m_plan(std::move(plan))
    , m_frames(m_plan.frames())
    , m_task(std::move(task))
    , m_listener(std::move(listener))
    , m_write(std::move(write)) {
    m_result.asked = m_frames.size();
    m_result.missing = m_plan.missing();
    m_task->setUnit(UI::ProgressTask::Unit::Frames);
    m_task->setTotal(std::int64_t(m_frames.size()));
}

void ExportRun::start(const std::shared_ptr<ExportRun>& run, int threads) {
    run->m_task->setCancelHandler([weak = std::weak_ptr<ExportRun>(run)] {
        if (const auto alive = weak.lock())
            alive->wake();
    });
    run->m_task->start();
    run->m_workers = threads;
    for (int i = 0; i < threads; ++i)
        std::thread([run] { run->work(); }).detach();
}

void ExportRun::answer(ExportAnswer answer) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_isAsked)
            m_answer = answer;
    }
    m_wake.notify_all();
}

void ExportRun::wake() {
    // The lock is passed, so that nobody is between looking and waiting.
    { const std::lock_guard lock(m_mutex); }
    m_wake.notify_all();
}

bool ExportRun::waitForEnd(std::chrono::milliseconds time) {
    std::unique_lock lock(m_mutex);
    return m_wake.wait_for(lock, time, [this] { return m_workers == 0; });
}

std::optional<Base::Time> ExportRun::next() {
    const std::lock_guard lock(m_mutex);
    if (m_isStopped || m_next == m_frames.size())
        return std::nullopt;
    return m_frames[m_next++];
}

void ExportRun::work() {
    std::optional<ExportTables> tables;
    while (m_task->waitWhilePaused()) {
        const std::optional<Base::Time> frame = next();
        if (!frame)
            break;
        for (bool again = true; again && !m_task->isCancelled();) {
            const QString problem = exportFrame(*frame, tables);
            if (m_task->isCancelled() && !problem.isEmpty())
                break;
            const ExportAnswer answer =
                problem.isEmpty() ? ExportAnswer::Skip : ask(*frame, problem);
            again = answer == ExportAnswer::Retry;
            if (again || answer == ExportAnswer::Stop)
                continue; // a stop is seen by next()
            const std::lock_guard lock(m_mutex);
            if (problem.isEmpty())
                ++m_result.written;
            else
                m_result.skipped.push_back({*frame, problem});
            m_task->advance();
        }
    }
    leave();
}

/** Returns what went wrong, for the user. */
QString ExportRun::exportFrame(Base::Time time, std::optional<ExportTables>& tables) const {
    const std::string from = m_plan.sequence.path(time);
    const std::string to = m_plan.path(time);
    m_task->setDetail(shownName(to));
    std::error_code ignored;
    if (std::filesystem::equivalent(from, to, ignored))
        return Message::tr("This is the file that the frame is read from.");
    DecodeLimits limits;
    limits.keepSamples = true;
    limits.longestEdge = std::numeric_limits<int>::max();
    const Frame frame = decodeFrame(from, time, limits, [this] { return m_task->isCancelled(); });
    if (frame.state != Frame::State::Ready)
        return frame.message.isEmpty() ? Message::tr("The frame cannot be read.") : frame.message;
    QString problem;
    try {
        const FileBytes bytes = encodeImage(graded(frame, tables), &problem);
        if (!problem.isEmpty() || m_task->isCancelled())
            return problem.isEmpty() ? Message::tr("Cancelled.") : problem;
        if (const auto error = putFile(to, bytes, m_plan.mayReplace(time), m_write))
            problem = fileProblem(error);
    } catch (const std::bad_alloc&) {
        problem = Message::tr("There is not enough memory for this image.");
    }
    return problem;
}

ExportImage ExportRun::graded(const Frame& frame, std::optional<ExportTables>& tables) const {
    const SampleFormat format = frame.samples ? frame.samples->format : SampleFormat();
    const float stops = m_plan.grade.exposureAt(frame.time);
    if (!tables || !tables->isFor(format, stops))
        tables.emplace(m_plan.grade, format, stops, m_plan.format);
    ExportImage image;
    image.width = frame.image.width();
    image.height = frame.image.height();
    image.pixelAspect = frame.pixelAspect;
    image.format = m_plan.format;
    const auto width = std::size_t(image.width);
    const std::size_t size = m_plan.format == ExportFormat::Png8 ? 1 : 2;
    image.pixels.resize(width * std::size_t(image.height) * 3 * size);
    const auto convertRow = [&](int y, auto* to) {
        if (frame.samples)
            tables->convert(frame.samples->rgb.data() + std::size_t(y) * width * 3, to, width);
        else
            tables->convert(reinterpret_cast<const QRgb*>(frame.image.constScanLine(y)), to, width);
    };
    for (int y = 0; y < image.height; ++y) {
        std::byte* row = image.pixels.data() + std::size_t(y) * width * 3 * size;
        if (size == 1)
            convertRow(y, reinterpret_cast<std::uint8_t*>(row));
        else
            convertRow(y, reinterpret_cast<std::uint16_t*>(row));
    }
    return image;
}

/** Waits for the user; meanwhile other threads go on with their frames. */
ExportAnswer ExportRun::ask(Base::Time frame, const QString& why) {
    const auto isOver = [this] { return m_isStopped || m_task->isCancelled(); };
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [&] { return !m_isAsked || m_skipsAll || isOver(); });
    if (isOver())
        return ExportAnswer::Stop;
    if (m_skipsAll)
        return ExportAnswer::Skip;
    m_isAsked = true;
    lock.unlock();
    m_task->setDetail(Message::tr("Waits for an answer about frame %1").arg(frame));
    m_listener.asked(frame, why);
    lock.lock();
    m_wake.wait(lock, [&] { return m_answer || isOver(); });
    const ExportAnswer answer = m_answer.value_or(ExportAnswer::Stop);
    m_answer.reset();
    m_isAsked = false;
    m_skipsAll = m_skipsAll || answer == ExportAnswer::SkipAll;
    m_isStopped = m_isStopped || answer == ExportAnswer::Stop;
    lock.unlock();
    m_wake.notify_all();
    return answer;
}

/** The last one closes the door. */
void ExportRun::leave() {
    {
        const std::lock_guard lock(m_mutex);
        if (m_workers > 1) {
            --m_workers;
            return;
        }
        std::sort(m_result.skipped.begin(), m_result.skipped.end(),
                  [](const auto& a, const auto& b) { return a.frame < b.frame; });
        const bool isComplete = m_result.written + m_result.skipped.size() == m_result.asked;
        if (!isComplete)
            m_result.end =
                m_task->isCancelled() ? ExportResult::End::Cancelled : ExportResult::End::Stopped;
    }
    endTask();
    m_listener.ended(m_result);
    {
        const std::lock_guard lock(m_mutex);
        m_workers = 0;
    }
    m_wake.notify_all();
}

void ExportRun::endTask() {
    if (m_result.end == ExportResult::End::Cancelled)
        return m_task->finishCancelled();
    const std::size_t lost = m_result.asked - m_result.written;
    if (lost == 0)
        return m_task->finish();
    const QString why = m_result.skipped.empty() ? QString() : m_result.skipped.front().why;
    m_task->fail(Message::tr("%1 of %2 frames were not written. %3")
                     .arg(lost)
                     .arg(m_result.asked)
                     .arg(why)
                     .trimmed());
}

} // namespace Kestrel::Workbench
