#pragma once

#include "profile/RenderTimes.h"

#include <QTimer>
#include <QWidget>

#include <array>
#include <deque>

class QBoxLayout;
class QLabel;
class QPushButton;
class QStackedWidget;

namespace Kestrel::UI {
class BarChart;
class BarSeries;
class ChartReadout;
class EventGraphView;
class LineChart;
class LineSeries;
class PieChart;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

class Session;

/** How long frames take while the profiler records: decode, grade and paint over time, what each
    sequence brought into the cache, and what memory is full of. It reads the profiler's tracks some
    times a second while it can be seen, and not at all when it cannot. */
class RenderTimesPanel : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the panel */
    explicit RenderTimesPanel(Session* session, QWidget* parent = nullptr);

    UI::LineChart* times() const { return m_times; }
    UI::BarChart* reads() const { return m_reads; }
    UI::PieChart* memory() const { return m_memory; }
    QPushButton* recordButton() const { return m_record; }

    /** Reads the tracks now. */
    void look();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /** A line, and the frames of its points. */
    struct Line {
        UI::LineSeries* series = nullptr;
        std::deque<std::pair<double, Base::Time>> frames;
    };

    void makeTimes();
    void makeReads();
    void makeMemory();
    void connectProfiler();
    void toggleRecording();
    void restart();
    void stopOrGoOn();
    void showWhole();
    void showState();
    void follow(const RenderTimes::News& news);
    void showTop();
    void append(Line& line, const std::vector<RenderTimes::Point>& points);
    void showReads();
    void showMemory();
    void showRate();
    void goTo(const UI::ChartReadout& readout);

    Session* m_session;
    RenderTimes m_reader;
    UI::EventGraphView* m_view; ///< the profiler's; as long as the application
    QTimer m_timer;
    int m_start = 0; ///< of the capture that is shown, in milliseconds of its clock
    QLabel* m_state;
    QPushButton* m_record;
    QStackedWidget* m_pages;
    QBoxLayout* m_charts = nullptr;
    QBoxLayout* m_foot;
    UI::LineChart* m_times;
    UI::BarChart* m_reads;
    UI::PieChart* m_memory;
    UI::BarSeries* m_readSeries;
    UI::BarSeries* m_heldSeries;
    double m_top = 0.0;          ///< of the vertical axis, as the panel has set it; 0 before
    std::array<Line, 3> m_lines; ///< decode, grade, paint
};

} // namespace Kestrel::Workbench
