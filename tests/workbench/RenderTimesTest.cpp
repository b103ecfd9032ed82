#include "TestImages.h"

#include <support/TestRegistry.h>

#include "panels/RenderTimesPanel.h"
#include "panels/ViewerPanel.h"
#include "play/Session.h"

#include <KxUI/charts/BarChart.h>
#include <KxUI/charts/BarSeries.h>
#include <KxUI/charts/LineChart.h>
#include <KxUI/charts/LineSeries.h>
#include <KxUI/charts/PieChart.h>
#include <KxUI/charts/PieSeries.h>
#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/eventgraph/EventGraphView.h>

#include <QPushButton>

using namespace Kestrel::Workbench;
using Kestrel::Base::TimeBase;
using Kestrel::UI::EventGraph;

/** The pane that shows what the profiler's tracks tell of frames. */
class RenderTimesTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_folder;

    static std::size_t points(const RenderTimesPanel& panel, std::size_t line) {
        return panel.times()->series().at(line)->size();
    }

private slots:
    void watchesWhileItIsSeen() {
        const Sequence shot = Kestrel::Test::writeSequence(m_folder.path(), 12, {});
        Session session(TimeBase(24, false), std::size_t(1) << 20);
        ViewerPanel viewer(&session);
        viewer.resize(300, 200);
        auto* panel = new RenderTimesPanel(&session);
        panel->resize(500, 500);
        panel->show();
        auto* view = EventGraph::instance()->view();
        QVERIFY(view->paused() && !panel->times()->isVisible());
        session.open(shot, 1);
        QTRY_VERIFY(session.isSettled());
        Grade grade;
        grade.exposure = 1.0F;
        session.grades()->edit(grade, "Exposure");
        QTRY_VERIFY(session.isSettled() && !session.isLoading());
        panel->look();
        QCOMPARE(points(*panel, 0), std::size_t(0)); // nothing was recorded

        panel->recordButton()->click();
        QVERIFY(!view->paused() && panel->times()->isVisible());
        QTest::qWait(5); // it begins with the next turn
        session.open(Sequence(shot), 1);
        QTRY_VERIFY(session.isSettled() && !session.isLoading());
        QVERIFY(!viewer.grab().isNull());
        QTRY_COMPARE(points(*panel, 0), std::size_t(12));
        QTRY_VERIFY(points(*panel, 1) >= 1 && points(*panel, 2) >= 1);
        for (std::size_t line = 0; line < 3; ++line)
            QVERIFY(panel->times()->series().at(line)->at(0).y() > 0.0);
        const auto reads = panel->reads()->series();
        QCOMPARE(reads.at(0)->values(), reads.at(1)->values());
        QCOMPARE(reads.at(1)->values().at(0), double(session.cache().bytes()));
        QCOMPARE(panel->memory()->series()->slices().size(), std::size_t(3));

        // Hidden it looks at nothing; shown again it has missed nothing.
        panel->hide();
        session.open(Sequence(shot), 1);
        QTRY_VERIFY(session.isSettled());
        QTest::qWait(250);
        QCOMPARE(points(*panel, 0), std::size_t(12));
        panel->show();
        QVERIFY(points(*panel, 0) >= 24);

        EventGraph::instance()->clear();
        QTRY_COMPARE(points(*panel, 0), std::size_t(0));
        panel->recordButton()->click();
        QVERIFY(view->paused());
        delete panel;
    }
};

KXUI_TEST(RenderTimesTest);
#include "RenderTimesTest.moc"
