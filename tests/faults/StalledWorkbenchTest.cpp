// The workbench on a file system that is mostly away: see SlowFileSystem.cpp.

#include "../workbench/TestImages.h"
#include "SlowFolder.h"

#include "app/MainWindow.h"
#include "panels/SequenceListPanel.h"

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/files/FileListModel.h>

#include <support/Stall.h>
#include <support/TestRegistry.h>

#include <QSettings>
#include <QtTest>

using namespace Kestrel::Workbench;
using Kestrel::Base::Time;
using Kestrel::Base::TimeBase;
using Kestrel::Test::SlowFolder;
using Kestrel::UI::FileListing;

class StalledWorkbenchTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_settings;
    QTemporaryDir m_shots;

    // Goes through the shot that is open for so long; frames that came to be seen.
    static int scrub(MainWindow& window, int milliseconds) {
        const Session& session = *window.session();
        QSignalSpy turns(window.session(), &Session::frameChanged);
        int seen = 0;
        Time frame = 0;
        QElapsedTimer time;
        time.start();
        while (time.elapsed() < milliseconds) {
            frame = frame % 24 + 1;
            window.session()->navigator()->goTo(frame);
            while (session.isLoading() && time.elapsed() < milliseconds)
                turns.wait(10);
            seen += !session.isLoading() && session.shownFrame()->time == frame ? 1 : 0;
            QTest::qWait(1);
        }
        return seen;
    }

private slots:
    void initTestCase() {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_settings.path());
        QVERIFY(SlowFolder::hasOwnMounts());
        QVERIFY(!Kestrel::Test::writeSequence(m_shots.path(), 24, {}).isEmpty());
    }

    // 100,000 frames that are still being rendered, by a server that answers for a second out of six:
    // another shot is scrubbed all the while, before, during and after the folder is listed.
    void scrubsWhileAFolderStalls() {
        SlowFolder slow(100000);
        QVERIFY(slow.isMounted() && slow.tell("grow 200"));
        const QByteArray folder = QFile::encodeName(slow.path("frames"));
        MainWindow window(TimeBase(24, false), std::size_t(64) << 20, Theme::Dark);
        window.show();
        window.openPaths({QFile::encodeName(m_shots.path())});
        Session& session = *window.session();
        QTRY_COMPARE(session.sequence().lastTime(), Time(24));
        QTRY_VERIFY(session.isSettled());
        constexpr int moment = 2000;
        const int before = scrub(window, moment);

        QVERIFY(slow.tell("stall 5000 1000"));
        const Kestrel::Test::Stall stall;
        SequenceListPanel& list = *window.list();
        list.openFolder(folder);
        // Frames one by one are the most that a list can be asked for.
        list.browser()->setFoldsSequences(false);
        int during = 0;
        constexpr int moments = 8;
        for (int i = 0; i < moments; ++i) {
            during += scrub(window, moment);
            if (list.isSettled())
                list.reload();
        }
        during /= moments;
        const int rows = list.model()->rowCount();
        QCOMPARE(list.folder(), folder);
        QVERIFY(slow.tell("go"));
        QTRY_VERIFY_WITH_TIMEOUT(list.model()->rowCount() >= 100000, 60000);
        list.browser()->setFoldsSequences(true);
        QTRY_COMPARE_WITH_TIMEOUT(list.model()->rowCount(), 1, 60000);
        const double longest = stall.longest();
        qInfo("longest stall of the event loop: %.1f ms; frames scrubbed in %.1f s: %d, and %d "
              "before; %d rows meanwhile",
              longest, moment / 1000.0, during, before, rows);
        // Machines differ, and others use them too: only what stands still fails.
        QVERIFY(during > 0 && before > 0);
        QVERIFY(longest < 4000);
    }

    // A folder that never answers: it is left, and the window closes, at once.
    void leavesAFolderThatHangs() {
        SlowFolder slow(50);
        QVERIFY(slow.isMounted() && slow.tell("hang"));
        const QByteArray shots = QFile::encodeName(m_shots.path());
        auto window =
            std::make_unique<MainWindow>(TimeBase(24, false), std::size_t(64) << 20, Theme::Dark);
        window->show();
        const Kestrel::Test::Stall stall;
        window->openPaths({QFile::encodeName(slow.path("frames")), shots});
        QTest::qWait(2500);
        QVERIFY(!window->list()->isSettled());
        window->openPaths({shots});
        QTRY_COMPARE(window->session()->sequence().lastTime(), Time(24));
        window->openPaths({QFile::encodeName(slow.path("mixed"))});
        QTest::qWait(100);
        window.reset();
        qInfo("longest stall of the event loop: %.1f ms", stall.longest());
        QVERIFY(stall.longest() < 4000);
        QVERIFY(slow.tell("go"));
    }
};

KXUI_TEST(StalledWorkbenchTest);

#include "StalledWorkbenchTest.moc"
