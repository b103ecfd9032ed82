#include "TestImages.h"

#include <support/TestRegistry.h>

#include "panels/StatusLine.h"
#include "panels/TimelinePanel.h"
#include "panels/ViewerPanel.h"
#include "play/Session.h"

#include <KxUI/time/TimeSlider.h>
#include <KxUI/values/DoubleSpinBox.h>

using namespace Kestrel::Workbench;
using Kestrel::Base::InvalidTime;
using Kestrel::Base::Time;
using Kestrel::Base::TimeBase;

/** A session on real files, with its viewer and timeline. */
class SessionTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    Sequence m_shot;

private slots:
    // Frames 1 to 12 without 5 and 6; 9 is empty.
    void initTestCase() {
        m_shot = Kestrel::Test::writeSequence(m_folder.path(), 12, {5, 6});
        QCOMPARE(m_shot.members().size(), std::size_t(10));
        QVERIFY(Kestrel::Test::truncate(m_folder.filePath("s.0009.exr"), 0));
    }

    void scrubbing() {
        Session session(TimeBase(24, false), std::size_t(1) << 20);
        ViewerPanel viewer(&session);
        TimelinePanel timeline(&session);
        QSignalSpy cached(&session, &Session::frameCached);
        session.open(m_shot, 3);
        QCOMPARE(session.model()->currentTime(), Time(3));
        QCOMPARE(session.model()->playbackEndTime(), Time(12));
        QVERIFY(session.isLoading());
        QTRY_VERIFY(session.isSettled());
        QCOMPARE(session.shownFrame()->time, Time(3));
        QVERIFY(!session.isLoading());
        QCOMPARE(cached.count(), 9);
        QCOMPARE(session.cache().pictureTimes(), (std::vector<Time>{1, 2, 3, 4, 7, 8, 10, 11, 12}));

        session.model()->setCurrentTime(5);
        QCOMPARE(session.shownFrame()->state, Frame::State::Missing);
        session.model()->setCurrentTime(9);
        QCOMPARE(session.shownFrame()->state, Frame::State::Unreadable);
        QVERIFY(session.shownFrame()->message.contains("empty"));
        session.model()->setCurrentTime(40);
        QCOMPARE(session.shownFrame()->state, Frame::State::Missing);
        // Painting each of these states.
        viewer.resize(300, 200);
        QVERIFY(!viewer.grab().isNull());

        session.open(Sequence());
        QVERIFY(!session.shownFrame());
        session.player()->play();
        QVERIFY(!session.player()->isPlaying());
        QVERIFY(!viewer.grab().isNull());
    }

    // A cache of two frames: the nearest stands in, the exact one follows, and it comes to rest.
    void smallCache() {
        Session session(TimeBase(24, false), 6000);
        TimelinePanel timeline(&session);
        QSignalSpy uncached(&session, &Session::frameUncached);
        session.open(m_shot, 1);
        QTRY_VERIFY(session.isSettled() && !session.isLoading());
        QCOMPARE(session.cache().pictureTimes().size(), std::size_t(2));
        session.model()->setCurrentTime(12);
        QVERIFY(session.isLoading());
        QVERIFY(session.shownFrame() && session.shownFrame()->time < 3);
        QTRY_VERIFY(session.isSettled() && !session.isLoading());
        QCOMPARE(session.shownFrame()->time, Time(12));
        QVERIFY(uncached.count() >= 1);

        // No room even for one: shown all the same.
        Session tiny(TimeBase(24, false), 100);
        tiny.open(m_shot, 2);
        QTRY_VERIFY(tiny.isSettled() && !tiny.isLoading());
        QCOMPARE(tiny.shownFrame()->time, Time(2));
        QCOMPARE(tiny.cache().count(), std::size_t(0));
    }

    void openingAnotherDropsTheFirst() {
        Session session(TimeBase(24, false), std::size_t(1) << 20);
        session.open(m_shot);
        session.open(
            Sequence(QStringLiteral("one"), m_folder.path().toStdString(), {{70, "s.0001.exr"}}));
        QTRY_VERIFY(session.isSettled() && !session.isLoading());
        QCOMPARE(session.cache().pictureTimes(), (std::vector<Time>{70}));
        QCOMPARE(session.model()->duration(), Time(1));
    }

    void playback() {
        Session session(TimeBase(100, false), std::size_t(1) << 20);
        session.open(m_shot, 12);
        QTRY_VERIFY(session.isSettled());
        Player* player = session.player();
        session.model()->setInTime(2, true);
        session.model()->setOutTime(4, true);
        QSignalSpy moved(session.model(), &Kestrel::UI::TimeSliderModel::timeChanged);
        player->play();
        QCOMPARE(session.model()->currentTime(), Time(2));
        QTRY_VERIFY(moved.count() > 8);
        QVERIFY(session.model()->currentTime() >= 2 && session.model()->currentTime() <= 4);
        session.model()->clearInOut();
        session.model()->setCurrentTime(10);
        player->setRepeat(PlaybackClock::Repeat::Once);
        QTRY_VERIFY(!player->isPlaying());
        QCOMPARE(session.model()->currentTime(), Time(12));
        player->play(-1);
        QTRY_VERIFY(!player->isPlaying());
        QCOMPARE(session.model()->currentTime(), Time(1));
    }

    // A key pressed again goes faster, up to a limit; the other direction begins anew.
    void shuttling() {
        Session session(TimeBase(24, false), std::size_t(1) << 20);
        session.open(m_shot, 3);
        Player* player = session.player();
        for (const std::uint32_t speed : {1U, 2U, 4U, 8U, 8U}) {
            player->shuttle(1);
            QCOMPARE(player->speed(), speed);
        }
        player->shuttle(-1);
        QCOMPARE(player->speed(), 1U);
        QCOMPARE(player->direction(), -1);
        player->shuttle(-1);
        player->play(-1);
        QCOMPARE(player->speed(), 1U);
    }

    void ratesOfSequences() {
        Session session(TimeBase(24, false), std::size_t(1) << 20);
        QSignalSpy changed(&session, &Session::timeBaseChanged);
        Sequence other("other", m_shot.folder(), m_shot.members());
        session.open(m_shot);
        session.setTimeBase(TimeBase(25, false));
        session.setTimeBase(TimeBase(0, false));
        session.open(other);
        QVERIFY(session.formatter()->timeBase() == TimeBase(25, false)); // as chosen last
        session.setTimeBase(TimeBase(30, true));
        session.open(m_shot);
        QVERIFY(session.formatter()->timeBase() == TimeBase(25, false));
        session.open(other);
        QVERIFY(session.formatter()->timeBase() == TimeBase(30, true));
        QCOMPARE(changed.count(), 4);
    }

    // What changes marks is a step, a drag one as a whole; steps of another sequence open it.
    void marksAreUndone() {
        Session session(TimeBase(24, false), std::size_t(1) << 20);
        Sequence other("other", m_shot.folder(), m_shot.members());
        auto* model = session.model();
        auto* steps = session.grades()->group();
        session.open(m_shot, 3);
        session.navigator()->markRange(4, 8);
        QTRY_VERIFY(steps->canUndo());
        session.marks()->hold(true);
        for (const Time time : {5, 6, 7}) {
            model->setInTime(time, true);
            QCoreApplication::processEvents();
        }
        session.marks()->hold(false);
        QCoreApplication::processEvents();
        session.toggleKeyFrame();
        session.open(other);
        QCOMPARE(model->inTime(), InvalidTime);
        QVERIFY(model->keyFrames().empty());
        QCOMPARE(steps->undoCommands().size(), 3);

        steps->undo();
        QTRY_COMPARE(session.sequence().title(), m_shot.title());
        QVERIFY(model->keyFrames().empty());
        QCOMPARE(model->inTime(), Time(7));
        steps->undo();
        QCOMPARE(model->inTime(), Time(4));
        QCOMPARE(model->outTime(), Time(8));
        steps->undo();
        QCOMPARE(model->inTime(), InvalidTime);
        QVERIFY(!model->inOutLock());
        steps->redo();
        QCOMPARE(model->inTime(), Time(4));
        QVERIFY(model->inOutLock());
        QCoreApplication::processEvents();
        QVERIFY(steps->canRedo()); // what was shown made no step of its own
    }

    void keyFrames() {
        Session session(TimeBase(24, false), std::size_t(1) << 20);
        session.toggleKeyFrame();
        QVERIFY(session.model()->keyFrames().empty());
        session.open(m_shot, 3);
        session.toggleKeyFrame();
        session.model()->setCurrentTime(8);
        session.toggleKeyFrame();
        QCOMPARE(session.model()->keyFrames(), (std::set<Time>{3, 8}));
        session.toggleKeyFrame();
        QCOMPARE(session.model()->keyFrames(), std::set<Time>{3});

        // A dragged time is drawn to the keyframe next to it.
        TimelinePanel timeline(&session);
        timeline.resize(1200, 41);
        Time dragged = 4;
        emit timeline.slider()->snapTime(dragged);
        QCOMPARE(dragged, Time(4));
        session.model()->setFirstVisibleTime(Time(0));
        session.model()->setLastVisibleTime(Time(1000));
        emit timeline.slider()->snapTime(dragged);
        QCOMPARE(dragged, Time(3));
    }

    void cacheSize() {
        Session session(TimeBase(24, false), std::size_t(1) << 20);
        StatusLine line(&session);
        auto* field = line.findChild<Kestrel::UI::DoubleSpinBox*>();
        QSignalSpy told(&session, &Session::cacheSizeChanged);
        QSignalSpy uncached(&session, &Session::frameUncached);
        QSignalSpy chosen(&line, &StatusLine::cacheSizeChosen);
        QCOMPARE(field->value(), 1.0);
        session.open(m_shot, 3);
        QTRY_VERIFY(session.isSettled() && session.cache().count() == 10);
        session.setCacheBytes(6000); // two frames: those that come next
        QCOMPARE(session.cache().pictureTimes(), (std::vector<Time>{3, 4}));
        QCOMPARE(uncached.count(), 8);
        QTRY_VERIFY(session.isSettled());
        QCOMPARE(session.cache().count(), std::size_t(2));
        QVERIFY(session.cache().bytes() <= 6000);
        session.setCacheBytes(6000);
        QCOMPARE(told.count(), 1);
        session.setCacheBytes(std::size_t(2) << 20); // the others come back
        QTRY_VERIFY(session.isSettled() && session.cache().count() == 10);
        QCOMPARE(field->value(), 2.0);
        QCOMPARE(chosen.count(), 0);

        field->selectAll();
        QTest::keyClicks(field, QStringLiteral("1.5 G"));
        QCOMPARE(session.cache().capacity(), std::size_t(2) << 20);
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(session.cache().capacity(), std::size_t(1536) << 20);
        QCOMPARE(chosen.count(), 1);
        QCOMPARE(chosen.last().first().toInt(), 1536);
    }

    // Beyond what the screen shows, as soon as somebody looks at it.
    void lightOfThePixels() {
        QTemporaryDir folder;
        for (const char* name : {"l.0001.exr", "l.0002.exr"}) {
            Kestrel::Test::TestImage image;
            image.values = {4.0F, 0.5F, -0.25F};
            QVERIFY(image.write(folder.filePath(QLatin1String(name))));
        }
        const Sequence shot(QStringLiteral("l"), folder.path().toStdString(),
                            {{1, "l.0001.exr"}, {2, "l.0002.exr"}});
        for (const std::size_t bytes : {std::size_t(1) << 20, std::size_t(100)}) {
            Session session(TimeBase(24, false), bytes);
            session.open(shot, 1);
            QTRY_VERIFY(session.isSettled() && !session.isLoading());
            QCOMPARE(session.pixelAt({3, 3})->light[0], 1.0);
            QSignalSpy pointed(&session, &Session::pointedPixelChanged);
            session.pointAt({3, 3});
            QTRY_VERIFY(session.pointedPixel()->ownIsExact);
            QCOMPARE(session.pointedPixel()->light[0], 4.0);
            QCOMPARE(session.pointedPixel()->light[2], -0.25);
            QVERIFY(pointed.count() >= 2);
            QTRY_VERIFY(session.isSettled());
            const FramePtr other = session.cache().find(2);
            QVERIFY(!other || !other->samples); // as cheap as before

            session.pointAt({-1, -1});
            session.readPixels(true); // the pipette, which takes the mouse
            session.model()->setCurrentTime(2);
            QTRY_VERIFY(session.pixelAt({3, 3}) && session.pixelAt({3, 3})->light[0] == 4.0);
            QTRY_VERIFY(session.isSettled());
        }
    }

    void steppedSequence() {
        Session session(TimeBase(24, false), std::size_t(1) << 20);
        session.open(Sequence(QString(), m_folder.path().toStdString(),
                              {{1, "s.0001.exr"}, {3, "s.0003.exr"}, {5, "s.0004.exr"}}));
        QTRY_VERIFY(session.isSettled());
        session.model()->setCurrentTime(4);
        QCOMPARE(session.shownFrame()->time, Time(3));
        QVERIFY(!session.isLoading());
    }
};

KXUI_TEST(SessionTest);
#include "SessionTest.moc"
