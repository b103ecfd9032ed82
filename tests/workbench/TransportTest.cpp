#include "TestImages.h"

#include <support/TestRegistry.h>

#include "app/MainWindow.h"
#include "panels/TimelinePanel.h"
#include "panels/TransportRow.h"
#include "play/Navigator.h"

#include <KxUI/time/JogWheel.h>
#include <KxUI/time/TimeField.h>
#include <KxUI/time/TimeFormatChooser.h>
#include <KxUI/time/TransportControlsWidget.h>

#include <QAction>
#include <QMenu>

using namespace Kestrel::Workbench;
using Kestrel::Base::InvalidTime;
using Kestrel::Base::Time;
using Kestrel::Base::TimeBase;
namespace UI = Kestrel::UI;

/** The workbench driven by the keys and controls that its user has: frames 1 to 40, of which 11 to
    20 are missing. */
class TransportTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    std::unique_ptr<MainWindow> m_window;

    Time current() { return m_window->session()->model()->currentTime(); }
    Player* player() { return m_window->session()->player(); }
    template <class Widget>
    Widget* find() {
        return m_window->timeline()->transportRow()->findChild<Widget*>();
    }

    Time press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(m_window.get(), key, modifiers);
        return current();
    }

    Time type(const char* text) {
        auto* field = find<UI::TimeField>();
        QTest::keyClick(m_window.get(), Qt::Key_T, Qt::ControlModifier);
        if (!field->hasFocus())
            return InvalidTime;
        QTest::keyClicks(field, QString::fromLatin1(text));
        QTest::keyClick(field, Qt::Key_Return);
        return current();
    }

private slots:
    void initTestCase() {
        const auto shot = Kestrel::Test::writeSequence(m_folder.path(), 40,
                                                       {11, 12, 13, 14, 15, 16, 17, 18, 19, 20});
        QCOMPARE(shot.members().size(), std::size_t(30));
        m_window =
            std::make_unique<MainWindow>(TimeBase(25, false), std::size_t(64) << 20, Theme::Dark);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QVERIFY(!find<UI::TransportControlsWidget>()->isEnabled());
        QCOMPARE(press(Qt::Key_Left), InvalidTime);
        QCOMPARE(press(Qt::Key_Left, Qt::ShiftModifier), InvalidTime);
        m_window->openPaths({QFile::encodeName(m_folder.path())});
        QTRY_COMPARE(current(), Time(1));
        QVERIFY(find<UI::TransportControlsWidget>()->isEnabled());
        m_window->session()->formatter()->setTimeDisplayFormat(false, false);
    }

    void keysMove() {
        QCOMPARE(press(Qt::Key_End), Time(40));
        QCOMPARE(press(Qt::Key_Right), Time(40)); // stays in the clip
        QCOMPARE(press(Qt::Key_Left), Time(39));
        QCOMPARE(press(Qt::Key_Left, Qt::ShiftModifier), Time(27));
        QCOMPARE(press(Qt::Key_Right, Qt::ShiftModifier), Time(39));
        QCOMPARE(press(Qt::Key_Left, Qt::AltModifier), Time(21)); // where files come back
        QCOMPARE(press(Qt::Key_Left, Qt::AltModifier), Time(11));
        m_window->session()->model()->setKeyFrames(std::set<Time>{5, 30});
        QCOMPARE(press(Qt::Key_Left, Qt::AltModifier), Time(5));
        QCOMPARE(press(Qt::Key_Right, Qt::ControlModifier), Time(17)); // half way to 30
        m_window->session()->navigator()->setJumpMode(UI::KeyframesOnly);
        QCOMPARE(press(Qt::Key_Right, Qt::AltModifier), Time(30));
        QCOMPARE(press(Qt::Key_Right, Qt::AltModifier), Time(30));
        m_window->session()->navigator()->setJumpMode(UI::KeyframesOrEdits);
        QCOMPARE(press(Qt::Key_Home), Time(1));
        QCOMPARE(halfWay(7, 8), Time(8));
        QCOMPARE(halfWay(7, 6), Time(6));
    }

    void keysPlay() {
        auto* transport = find<UI::TransportControlsWidget>();
        press(Qt::Key_L);
        QCOMPARE(transport->playbackState(), UI::PlayingForwards);
        QTRY_VERIFY(current() > 3);
        press(Qt::Key_J);
        QCOMPARE(transport->playbackState(), UI::PlayingBackwards);
        QTRY_VERIFY(current() < 3);
        press(Qt::Key_K);
        QCOMPARE(transport->playbackState(), UI::Stopped);
        press(Qt::Key_Space);
        QVERIFY(player()->isPlaying());
        press(Qt::Key_Left); // a step takes over
        QVERIFY(!player()->isPlaying());

        player()->setRepeat(PlaybackClock::Repeat::Bounce);
        m_window->session()->model()->setCurrentTime(40);
        press(Qt::Key_L);
        QTRY_COMPARE(transport->playbackState(), UI::PlayingBackwards);
        QVERIFY(current() > 30);
        transport->handlePlayForwardsButtonClicked();
        QCOMPARE(transport->playbackState(), UI::Stopped);
        player()->setRepeat(PlaybackClock::Repeat::Loop);
    }

    void timesAreTyped() {
        auto* field = find<UI::TimeField>();
        QCOMPARE(type("5"), Time(5));
        QCOMPARE(type("+12"), Time(17));
        QCOMPARE(type("-10"), Time(7));
        QCOMPARE(type("999"), Time(40)); // beyond the clip
        QCOMPARE(field->text(), QStringLiteral("40"));
        QCOMPARE(type("30-8"), Time(40));
        QCOMPARE(m_window->session()->model()->inTime(), Time(8));
        QCOMPARE(m_window->session()->model()->outTime(), Time(30));
        m_window->session()->model()->clearInOut();

        m_window->session()->formatter()->setTimeDisplayFormat(true, false);
        QCOMPARE(type("1:00"), Time(25));
        QCOMPARE(type("-:20"), Time(5));
        QCOMPARE(field->text(), QStringLiteral("00:00:00:05"));
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(!field->hasFocus());
        QCOMPARE(press(Qt::Key_Right), Time(6)); // keys are the window's again
    }

    void notationAndJogWheel() {
        for (QAction* action : find<UI::TimeFormatChooser>()->menu()->actions()) {
            if (action->text().startsWith(QLatin1String("TF")))
                action->trigger();
        }
        QCOMPARE(find<UI::TimeField>()->text(), QString::number(current()));
        auto* wheel = find<UI::JogWheel>();
        QCOMPARE(wheel->value(), int(current()));
        QCOMPARE(wheel->maximum(), 40);
        wheel->setValue(33);
        QCOMPARE(current(), Time(33));
        press(Qt::Key_Home);
        QCOMPARE(wheel->value(), 1);
        m_window->session()->open(Sequence());
        QVERIFY(!find<UI::TransportControlsWidget>()->isEnabled());
    }
};

KXUI_TEST(TransportTest);
#include "TransportTest.moc"
