#include "panels/RenderTimesPanel.h"

#include "play/FrameRate.h"
#include "play/Session.h"

#include <KxUI/charts/BarChart.h>
#include <KxUI/charts/BarSeries.h>
#include <KxUI/charts/ChartAxis.h>
#include <KxUI/charts/ChartLegend.h>
#include <KxUI/charts/LineChart.h>
#include <KxUI/charts/LineSeries.h>
#include <KxUI/charts/PieChart.h>
#include <KxUI/charts/PieSeries.h>
#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/eventgraph/EventGraphView.h>

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

constexpr int lookMs = 100;
/** An hour of the usual rate. */
constexpr std::size_t mostPoints = 100000;
/** What a recording keeps, in seconds. */
constexpr float recordedSeconds = 600.0F;
/** What the lines show while they follow, in seconds. */
constexpr double shownSeconds = 10.0;
/** Narrower than that the lower charts stand one below the other. */
constexpr int narrow = 420;

/** Told from the ground of a light and of a dark chart. */
const QColor freeColor(0x80, 0x80, 0x80);

} // namespace

RenderTimesPanel::RenderTimesPanel(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_reader(session->profiling())
    , m_view(UI::EventGraph::instance()->view())
    , m_state(new QLabel)
    , m_record(new QPushButton)
    , m_pages(new QStackedWidget)
    , m_foot(new QBoxLayout(QBoxLayout::LeftToRight))
    , m_times(new UI::LineChart)
    , m_reads(new UI::BarChart)
    , m_memory(new UI::PieChart)
    , m_readSeries(new UI::BarSeries)
    , m_heldSeries(new UI::BarSeries) {
    setObjectName(QStringLiteral("RenderTimesPanel"));
    makeTimes();
    makeReads();
    makeMemory();
    auto* hint =
        new QLabel(tr("Here is shown how long frames take to decode, to grade and to paint, "
                      "while the profiler records it."));
    hint->setWordWrap(true);
    hint->setAlignment(Qt::AlignCenter);
    hint->setMargin(24);
    auto* charts = new QWidget;
    m_charts = new QVBoxLayout(charts);
    m_charts->setContentsMargins(0, 0, 0, 0);
    m_charts->addWidget(m_times, 3);
    m_foot->addWidget(m_reads, 3);
    m_foot->addWidget(m_memory, 2);
    m_charts->addLayout(m_foot, 2);
    m_pages->addWidget(hint);
    m_pages->addWidget(charts);
    auto* head = new QHBoxLayout;
    m_state->setWordWrap(true);
    head->addWidget(m_state, 1);
    head->addWidget(m_record);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->addLayout(head);
    layout->addWidget(m_pages, 1);
    connectProfiler();
    restart();
}

void RenderTimesPanel::makeTimes() {
    m_times->setTitle(tr("Time a frame"));
    m_times->setAccessibleName(m_times->title());
    m_times->xAxis()->setUnit(UI::Ticks::Seconds);
    m_times->yAxis()->setUnit(UI::Ticks::Seconds);
    m_times->yAxis()->setLimits(0.0, 3600.0);
    const QString names[] = {tr("Decode"), tr("Grade"), tr("Paint")};
    const char* const keys[] = {"decode", "grade", "paint"};
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        m_lines[i].series = new UI::LineSeries;
        m_lines[i].series->setName(names[i]);
        m_lines[i].series->setKey(QLatin1String(keys[i]));
        m_lines[i].series->setCapacity(mostPoints);
        m_times->addSeries(m_lines[i].series);
    }
    connect(m_times, &UI::Chart::clicked, this, &RenderTimesPanel::goTo);
    connect(m_session->formatter(), &UI::TimeFormatter::timeFormatChanged, this,
            &RenderTimesPanel::showRate);
    showRate();
}

void RenderTimesPanel::makeReads() {
    m_reads->setTitle(tr("Cache by sequence"));
    m_reads->setAccessibleName(m_reads->title());
    m_reads->setOrientation(Qt::Horizontal);
    m_reads->valueAxis()->setUnit(UI::Ticks::Bytes);
    m_readSeries->setName(tr("Read"));
    m_readSeries->setKey(QStringLiteral("read"));
    m_heldSeries->setName(tr("Held now"));
    m_heldSeries->setKey(QStringLiteral("held"));
    m_reads->addSeries(m_readSeries);
    m_reads->addSeries(m_heldSeries);
}

void RenderTimesPanel::makeMemory() {
    m_memory->setTitle(tr("Memory"));
    m_memory->setAccessibleName(m_memory->title());
    m_memory->series()->setUnit(UI::Ticks::Bytes);
    m_memory->setLabelPlace(UI::PieChart::LegendOnly);
}

/** The line that a frame must stay below to be played at its rate. */
void RenderTimesPanel::showRate() {
    const double rate = double(m_session->formatter()->timeBase().rate());
    if (rate <= 0.0)
        return m_times->setBands({});
    UI::ChartBand band;
    band.lower = band.upper = 1.0 / rate;
    band.label = tr("%1 fps").arg(formatFrameRate(rate));
    m_times->setBands({band});
}

void RenderTimesPanel::connectProfiler() {
    connect(m_record, &QPushButton::clicked, this, &RenderTimesPanel::toggleRecording);
    connect(&m_timer, &QTimer::timeout, this, &RenderTimesPanel::look);
    connect(m_view, &UI::EventGraphView::captureStarting, this, &RenderTimesPanel::restart,
            Qt::QueuedConnection);
    connect(m_view, &UI::EventGraphView::pausedChanged, this, &RenderTimesPanel::stopOrGoOn);
}

void RenderTimesPanel::toggleRecording() {
    UI::EventGraph* profiler = UI::EventGraph::instance();
    if (!m_view->paused())
        return profiler->stop();
    m_session->profiling()->addTo(m_view);
    profiler->start(recordedSeconds, UI::EventGraphMode::History);
}

void RenderTimesPanel::restart() {
    m_start = m_view->startTime();
    m_reader.restart(m_start);
    for (Line& line : m_lines) {
        line.series->clear();
        line.frames.clear();
    }
    m_times->showAll();
    m_times->xAxis()->setRange(0.0, shownSeconds);
    m_top = 0.0;
    showTop();
    showState();
    if (isVisible())
        look();
}

void RenderTimesPanel::stopOrGoOn() {
    if (m_view->paused() && isVisible()) {
        look();
        showWhole();
    }
    showState();
}

/** Of a recording that was too short to follow. */
void RenderTimesPanel::showWhole() {
    UI::ChartAxis* axis = m_times->xAxis();
    double last = 0.0;
    for (const Line& line : m_lines)
        last = std::max(last, line.frames.empty() ? 0.0 : line.frames.back().first);
    if (last > 0.0 && last < shownSeconds && axis->lower() == 0.0 && axis->upper() == shownSeconds)
        axis->setRange(0.0, last);
}

void RenderTimesPanel::showState() {
    const bool records = !m_view->paused() && m_session->profiling()->gradeTrack()->graph();
    const bool hasSome = std::any_of(m_lines.begin(), m_lines.end(),
                                     [](const Line& line) { return line.series->size() > 0; });
    m_record->setText(m_view->paused() ? tr("&Start Recording") : tr("&Stop Recording"));
    m_state->setText(records   ? tr("Recording")
                     : hasSome ? tr("Recording has stopped.")
                               : tr("Nothing is recorded."));
    m_pages->setCurrentIndex(records || hasSome ? 1 : 0);
    if (records && isVisible())
        m_timer.start(lookMs);
    else
        m_timer.stop();
}

void RenderTimesPanel::look() {
    // It was cleared while it went on.
    if (!m_view->paused() && m_view->startTime() != m_start)
        return restart();
    const RenderTimes::News news = m_reader.look();
    append(m_lines[0], news.decoded);
    append(m_lines[1], news.graded);
    append(m_lines[2], news.painted);
    showTop();
    follow(news);
    // What is held now is not what was held when it was recorded.
    if (!m_view->paused() || m_reads->categoryAxis()->categories().isEmpty())
        showReads();
    showMemory();
}

/** As soon as there is more than the chart shows, unless its user looks at another part. */
void RenderTimesPanel::follow(const RenderTimes::News& news) {
    const UI::ChartAxis* axis = m_times->xAxis();
    if (!news.decoded.empty() && news.decoded.back().at > shownSeconds && axis->lower() == 0.0 &&
        axis->upper() == shownSeconds)
        m_times->setFollowing(true);
}

/** The line of the frame rate is in sight, and whatever is above it, unless somebody has zoomed. */
void RenderTimesPanel::showTop() {
    UI::ChartAxis* axis = m_times->yAxis();
    if (!axis->isAutoRange() && m_top > 0.0 && axis->upper() != m_top)
        return;
    double most = 0.0;
    for (const Line& line : m_lines) {
        const double from = line.frames.empty() ? 0.0 : line.frames.back().first - shownSeconds;
        for (std::size_t i = line.series->size(); i > 0 && line.series->at(i - 1).x() >= from; --i)
            most = std::max(most, line.series->at(i - 1).y());
    }
    const double rate = double(m_session->formatter()->timeBase().rate());
    m_top = std::max(1.1 * most, rate > 0.0 ? 1.2 / rate : 0.01);
    axis->setRange(0.0, m_top);
    m_top = axis->upper();
}

void RenderTimesPanel::append(Line& line, const std::vector<RenderTimes::Point>& points) {
    for (const RenderTimes::Point& point : points) {
        // Threads end in another order than they are read.
        const double at =
            line.frames.empty() ? point.at : std::max(point.at, line.frames.back().first);
        if (!line.series->append(at, point.took))
            continue;
        line.frames.emplace_back(at, point.frame);
        if (line.frames.size() > mostPoints)
            line.frames.pop_front();
    }
}

void RenderTimesPanel::showReads() {
    const QString open = m_session->sequence().title();
    QStringList names;
    std::vector<double> read;
    std::vector<double> held;
    for (const RenderTimes::Read& each : m_reader.reads()) {
        names << each.sequence;
        read.push_back(double(each.bytes));
        held.push_back(each.sequence == open ? double(m_session->cache().bytes()) : 0.0);
    }
    if (names != m_reads->categoryAxis()->categories())
        m_reads->categoryAxis()->setCategories(names);
    if (read != m_readSeries->values())
        m_readSeries->setValues(read);
    if (held != m_heldSeries->values())
        m_heldSeries->setValues(held);
}

void RenderTimesPanel::showMemory() {
    const auto decoded = double(m_session->cache().bytes());
    const auto graded = double(m_session->grader().bytes());
    // Graded frames take a quarter as much besides.
    const double capacity = double(m_session->cache().capacity()) * 1.25;
    const std::vector<double> values{decoded, graded, std::max(capacity - decoded - graded, 0.0)};
    const auto slices = m_memory->series()->slices();
    if (slices.size() == values.size() &&
        std::equal(values.begin(), values.end(), slices.begin(),
                   [](double value, const UI::PieSlice& slice) { return value == slice.value; }))
        return;
    m_memory->series()->setSlices({{tr("Decoded"), values[0], QStringLiteral("decode"), {}},
                                   {tr("Graded"), values[1], QStringLiteral("grade"), {}},
                                   {tr("Free"), values[2], QStringLiteral("free"), freeColor}});
}

/** The frame of the point that was clicked at. */
void RenderTimesPanel::goTo(const UI::ChartReadout& readout) {
    if (readout.nearest < 0 || readout.nearest >= readout.items.size())
        return;
    const QString name = readout.items.at(readout.nearest).name;
    for (const Line& line : m_lines) {
        if (line.series->name() != name)
            continue;
        const double at = line.series->nearest(readout.x).x();
        const auto found =
            std::lower_bound(line.frames.begin(), line.frames.end(), at,
                             [](const auto& each, double x) { return each.first < x; });
        if (found != line.frames.end())
            m_session->navigator()->goTo(found->second);
    }
}

void RenderTimesPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    look();
    showState();
}

void RenderTimesPanel::hideEvent(QHideEvent* event) {
    m_timer.stop();
    QWidget::hideEvent(event);
}

void RenderTimesPanel::resizeEvent(QResizeEvent* event) {
    const bool isNarrow = width() < narrow;
    m_foot->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    m_charts->setStretchFactor(m_foot, isNarrow ? 5 : 2);
    m_foot->setStretch(1, isNarrow ? 4 : 2);
    QWidget::resizeEvent(event);
}

} // namespace Kestrel::Workbench
