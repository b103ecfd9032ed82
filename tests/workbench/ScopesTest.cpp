#include "TestImages.h"

#include <support/Input.h>
#include <support/TestRegistry.h>

#include "app/MainWindow.h"
#include "media/DisplayTable.h"
#include "panels/ScopeOverlay.h"
#include "panels/ScopesPanel.h"
#include "panels/StatisticsPanel.h"
#include "panels/ViewerPanel.h"
#include "play/ScopeFeed.h"
#include "scopes/ScopeCell.h"
#include "scopes/ScopeKinds.h"

#include <KxUI/scopes/HistogramScope.h>
#include <KxUI/scopes/ImageStatisticsPanel.h>

using namespace Kestrel::Workbench;
using Kestrel::Base::TimeBase;
using Kestrel::UI::ScopeHistogram;
using Kestrel::UI::ScopeModel;
using Kestrel::UI::ScopeSelection;

/** Scopes and figures beside the viewer, on frames of half floats whose light is 0.18, 0.5 and 1. */
class ScopesTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    Sequence m_shot;
    std::unique_ptr<Session> m_session;

    ScopeModel& model() { return *m_session->scopes()->model(); }

    double mean(ScopeHistogram::Channel channel) {
        return model().result()->statistics.channels[channel].mean;
    }

    bool isCounted() { return model().result()->parts != 0 && model().isCurrent(); }

    static bool isNear(double value, double expected) {
        return std::abs(value - expected) <= expected * 0.001; // of a half float
    }

private slots:
    void initTestCase() {
        qRegisterMetaType<QRect>();
        m_shot = Kestrel::Test::writeSequence(m_folder.path(), 4, {3});
    }

    void init() {
        m_session = std::make_unique<Session>(TimeBase(24, false), std::size_t(1) << 20);
        m_session->open(m_shot, 1);
    }

    void cleanup() { m_session.reset(); }

    void regions_data() {
        QTest::addColumn<QRect>("region");
        QTest::addColumn<int>("edges");
        QTest::addColumn<QPoint>("by");
        QTest::addColumn<QRect>("moved");
        const QRect box(10, 20, 30, 40);
        const auto row = [&box](const char* name, int edges, const QPoint& by, const QRect& moved) {
            QTest::newRow(name) << box << edges << by << moved;
        };
        row("all", AllEdges, {5, -5}, {15, 15, 30, 40});
        row("against an edge", AllEdges, {-50, 500}, {0, 60, 30, 40});
        row("corner", RightEdge | BottomEdge, {3, 4}, {10, 20, 33, 44});
        row("turned over", LeftEdge, {50, 9}, {40, 20, 20, 40});
        row("no less than a pixel", RightEdge, {-30, 0}, {10, 20, 1, 40});
        row("beyond the last pixel", TopEdge | LeftEdge, {500, 500}, {40, 60, 60, 40});
    }

    void regions() {
        QFETCH(QRect, region);
        QFETCH(int, edges);
        QFETCH(QPoint, by);
        QTEST(movedRegion(region, edges, by, {100, 100}), "moved");
    }

    // A pane behind others costs nothing, whatever goes by.
    void hiddenPanesCostNothing() {
        ScopesPanel scopes(m_session.get());
        StatisticsPanel figures(m_session.get());
        QTRY_VERIFY(m_session->isSettled());
        QVERIFY(!scopes.cell(0)->view());
        QCOMPARE(model().passCount(), quint64(0));
        QVERIFY(!m_session->sourceFrame()->isComplete);
        scopes.show();
        QTRY_VERIFY(isCounted());
        QVERIFY(scopes.cell(0)->view() && !scopes.cell(3)->view());
        QVERIFY(m_session->sourceFrame()->isComplete);
        scopes.hide();
        const quint64 passes = model().passCount();
        m_session->model()->setCurrentTime(2);
        QTRY_VERIFY(!m_session->isLoading());
        QCOMPARE(model().passCount(), passes);
        QVERIFY(model().image().isEmpty());
        {
            StatisticsPanel deleted(m_session.get());
            deleted.show();
            QTRY_VERIFY(isCounted());
        }
        QVERIFY(!m_session->scopes()->isWatched());
        m_session->model()->setCurrentTime(3);
        figures.show();
        QVERIFY(model().image().isEmpty());
    }

    // The grade is counted as finely as the file, and with what is brighter than white.
    void sources() {
        StatisticsPanel figures(m_session.get());
        figures.show();
        ScopeFeed* feed = m_session->scopes();
        const auto reads = [&](double red, double blue) {
            return isCounted() && isNear(mean(ScopeHistogram::Red), red) &&
                   isNear(mean(ScopeHistogram::Blue), blue);
        };
        QTRY_VERIFY(reads(srgbSignal(0.18), 1.0));
        feed->setSource(ScopeFeed::File);
        QTRY_VERIFY(reads(0.18, 1.0));
        QVERIFY(feed->description().contains(QStringLiteral("scene-linear")));
        Grade grade;
        grade.exposure = 1.0F;
        m_session->grades()->edit(grade, QStringLiteral("Exposure"));
        QTRY_VERIFY(m_session->shownFrame() != m_session->sourceFrame());
        QTRY_VERIFY(reads(0.18, 1.0));
        QVERIFY(!m_session->shownFrame()->samples);
        feed->setSource(ScopeFeed::Screen);
        QTRY_VERIFY(reads(srgbSignal(0.36), srgbSignal(2.0)));
        // What nobody looks at is not kept.
        figures.hide();
        grade.exposure = 2.0F;
        m_session->grades()->edit(grade, QStringLiteral("Exposure"));
        QTRY_VERIFY(!m_session->isLoading());
        QVERIFY(!m_session->shownFrame()->samples);
    }

    void playbackComesFirst() {
        StatisticsPanel figures(m_session.get());
        figures.show();
        QTRY_VERIFY(isCounted());
        const double rate = model().maximumRate();
        m_session->player()->play();
        for (int i = 0; i < 20; ++i)
            emit m_session->player()->framesDropped(1);
        QVERIFY(model().maximumRate() < rate / 4 && model().maximumRate() > 0.5);
        m_session->player()->stop();
        QCOMPARE(model().maximumRate(), rate);
        QVERIFY(!model().isInteractive());
    }

    void regionOnTheViewer() {
        ViewerPanel viewer(m_session.get());
        StatisticsPanel figures(m_session.get());
        viewer.resize(400, 300);
        viewer.show();
        auto* overlay = viewer.findChild<ScopeOverlay*>();
        QVERIFY(overlay && !overlay->isVisible());
        figures.show();
        QTRY_VERIFY(isCounted() && overlay->isVisible());
        QString log;
        connect(overlay, &ScopeOverlay::editStarted, this, [&log] { log += 'S'; });
        connect(overlay, &ScopeOverlay::regionEdited, this, [&log] { log += 'E'; });
        connect(overlay, &ScopeOverlay::editFinished, this,
                [&log](bool accepted) { log += accepted ? 'F' : 'R'; });
        // 32 x 18 pixels over the whole width.
        const double scale = overlay->width() / 32.0;
        const double top = (overlay->height() - 18 * scale) / 2;
        const auto at = [&](double x, double y) {
            return QPointF(x * scale, top + y * scale).toPoint();
        };
        const auto drag = [&](const QPoint& from, const QPoint& to, bool cancels = false) {
            log.clear();
            QTest::mousePress(overlay, Qt::LeftButton, {}, from);
            Kestrel::Test::moveMouse(*overlay, (from + to) / 2);
            Kestrel::Test::moveMouse(*overlay, to);
            if (cancels)
                QTest::keyClick(&viewer, Qt::Key_Escape);
            QTest::mouseRelease(overlay, Qt::LeftButton, {}, to);
        };
        drag(at(4, 2), at(12, 8));
        QCOMPARE(log, QStringLiteral("SEEF"));
        QCOMPARE(overlay->region(), QRect(4, 2, 8, 6));
        QTRY_COMPARE(model().result()->statistics.pixels, std::uint64_t(48));
        QVERIFY(overlay->accessibleDescription().contains(QStringLiteral("8 \u00d7 6")));
        drag(at(8, 5), at(10, 5));
        QCOMPARE(overlay->region(), QRect(6, 2, 8, 6));
        drag(at(14, 8), at(20, 12));
        QCOMPARE(overlay->region(), QRect(6, 2, 14, 10));
        drag(at(6, 5), at(2, 5), true);
        QCOMPARE(log, QStringLiteral("SEEER"));
        QCOMPARE(overlay->region(), QRect(6, 2, 14, 10));
        // Mouse buttons leave the keyboard to the shortcuts of the window.
        QVERIFY(!overlay->hasFocus());
        log.clear();
        QTest::mouseDClick(overlay, Qt::LeftButton, {}, at(10, 5));
        QVERIFY(overlay->region().isNull());
        QCOMPARE(log, QStringLiteral("SEF"));
    }

    void regionByKeys() {
        ViewerPanel viewer(m_session.get());
        StatisticsPanel figures(m_session.get());
        viewer.show();
        figures.show();
        QTRY_VERIFY(isCounted());
        auto* overlay = viewer.findChild<ScopeOverlay*>();
        m_session->scopes()->editRegion();
        QVERIFY(QTest::qWaitForWindowActive(&viewer));
        QTRY_VERIFY(overlay->hasFocus());
        QCOMPARE(overlay->region(), QRect(8, 4, 16, 9));
        const auto press = [overlay](int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
            QVERIFY(Kestrel::Test::sendKey(*overlay, key, modifiers));
            QKeyEvent up(QEvent::KeyRelease, key, modifiers);
            QCoreApplication::sendEvent(overlay, &up);
        };
        QSignalSpy finished(overlay, &ScopeOverlay::editFinished);
        press(Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(overlay->region(), QRect(0, 4, 16, 9));
        press(Qt::Key_Down, Qt::ControlModifier);
        QCOMPARE(overlay->region(), QRect(0, 4, 16, 10));
        QCOMPARE(finished.count(), 2);
        press(Qt::Key_Delete);
        QVERIFY(overlay->region().isNull());
        press(Qt::Key_Escape);
        QVERIFY(!overlay->hasFocus());
    }

    // What is selected in a scope, the pixel that figures ask for, and the one under the pointer.
    void scopesAndViewer() {
        ViewerPanel viewer(m_session.get());
        StatisticsPanel figures(m_session.get());
        viewer.resize(400, 300);
        viewer.show();
        figures.show();
        QTRY_VERIFY(isCounted());
        const auto middle = [&viewer] { return viewer.grab().toImage().pixelColor(200, 150); };
        const QColor before = middle();
        ScopeSelection selection;
        selection.kind = ScopeSelection::Kind::Values;
        selection.channel = ScopeSelection::Red;
        selection.upper = 0.5F;
        model().setSelection(selection);
        QTRY_VERIFY(middle() != before);
        model().setSelection({});
        QCOMPARE(middle(), before);

        ScopesPanel scopes(m_session.get());
        scopes.cell(0)->setKind(QStringLiteral("histogram"));
        scopes.show();
        QTRY_VERIFY(isCounted());
        Kestrel::UI::ScopeView* scope = scopes.cell(0)->view();
        int x = 0;
        while (x < scope->width() && scope->readoutAt({x, scope->height() / 2}).count == 0)
            ++x;
        Kestrel::Test::moveMouse(*scope, {x, scope->height() / 2}, Qt::NoButton);
        QTest::keyClick(scope, Qt::Key_P);
        QTRY_COMPARE(m_session->scopes()->mark(), std::optional<QPoint>(QPoint(0, 0)));
        emit figures.figures()->pixelRequested({3, 4});
        QCOMPARE(m_session->scopes()->mark(), std::optional<QPoint>(QPoint(3, 4)));
        m_session->pointAt({5, 6});
        QVERIFY(model().sample() && model().sample()->x == 5);
        QVERIFY(isNear(double(model().sample()->rgb[0]), srgbSignal(0.18)));
        m_session->pointAt({-1, -1});
        QVERIFY(!model().sample());
        m_session->model()->setCurrentTime(2);
        QTRY_VERIFY(!m_session->scopes()->mark());
    }

    // A hot pixel of a large picture is not lost where it is shown small.
    void maskKeepsSinglePixels() {
        std::vector<std::uint16_t> rgb(std::size_t(4000) * 100 * 3, 0);
        rgb[(std::size_t(50) * 4000 + 3001) * 3] = 65535;
        SelectionMask::Request request;
        request.image.pixels = rgb.data();
        request.image.layout = Kestrel::UI::PixelLayout::RGB16;
        request.image.width = 4000;
        request.image.height = 100;
        request.image.stride = 4000 * 6;
        request.selection.kind = ScopeSelection::Kind::Values;
        request.selection.channel = ScopeSelection::Red;
        request.selection.lower = 0.5F;
        request.selection.upper = 2.0F;
        for (const QSize& shown : {QSize(40, 10), QSize(4000, 100), QSize(9000, 200)}) {
            request.shown = shown;
            const QImage mask = SelectionMask::imageOf(request);
            QCOMPARE(mask.size(), shown.boundedTo({4000, 100}));
            int count = 0;
            for (int y = 0; y < mask.height(); ++y) {
                for (int x = 0; x < mask.width(); ++x)
                    count += mask.pixel(x, y) != 0 ? 1 : 0;
            }
            QCOMPARE(count, 1);
        }
    }

    // As a workspace keeps it, and from what it cannot know.
    void state() {
        const QString id = QLatin1String(scopeKinds().back().id);
        QString saved;
        {
            MainWindow window(TimeBase(24, false), 1 << 20, Theme::Dark);
            auto* scopes = static_cast<ScopesPanel*>(window.page(QStringLiteral("Scopes")));
            window.showPage(QStringLiteral("Scopes"));
            window.show();
            scopes->setScopeCount(4);
            scopes->cell(3)->setKind(id);
            QVERIFY(scopes->cell(3)->view());
            scopes->cell(3)->view()->setUnit(Kestrel::UI::ScopeUnit::Code12);
            window.session()->scopes()->setSource(ScopeFeed::File);
            QVERIFY(window.saveTo(m_folder.filePath("layout.xml")).isEmpty());
        }
        MainWindow window(TimeBase(24, false), 1 << 20, Theme::Dark);
        QVERIFY(window.loadFrom(m_folder.filePath("layout.xml")).isEmpty());
        window.show();
        auto* scopes = static_cast<ScopesPanel*>(window.page(QStringLiteral("Scopes")));
        QCOMPARE(scopes->scopeCount(), 4);
        QCOMPARE(scopes->cell(3)->kind(), id);
        QTRY_VERIFY(scopes->cell(3)->view());
        QCOMPARE(int(scopes->cell(3)->view()->unit()), int(Kestrel::UI::ScopeUnit::Code12));
        QCOMPARE(window.session()->scopes()->source(), ScopeFeed::File);
        saved = scopes->layoutState();
        for (const char* strange : {"", "nonsense", "{\"scopes\":3,\"cells\":[{\"scope\":\"x\"}]}"})
            scopes->setLayoutState(QLatin1String(strange));
        QCOMPARE(scopes->layoutState(), saved);
    }
};

KXUI_TEST(ScopesTest);
#include "ScopesTest.moc"
