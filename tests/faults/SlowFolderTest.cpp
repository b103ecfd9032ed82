// Folders on a file system that is slow, hangs and fails, as one of the kernel's: see
// SlowFileSystem.cpp.

#include <KxUI/files/FileGatherer_p.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/files/FileManager.h>

#include "SlowFolder.h"

#include <support/Stall.h>
#include <support/TestRegistry.h>

#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTreeView>
#include <QtTest>

#include <cerrno>

using namespace Kestrel::UI;
using Kestrel::Test::SlowFolder;
using State = FileListing::State;

namespace {

void gatherAll(FileGatherer& gatherer, const QString& folder) {
    QSignalSpy finished(&gatherer, &FileGatherer::finished);
    gatherer.gatherPath(folder);
    QVERIFY(!finished.isEmpty() || finished.wait(20000));
}

} // namespace

class SlowFolderTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(SlowFolder::hasOwnMounts()); }

    // A folder that grows while a server stalls for five seconds out of six: the interface goes on.
    void stalls() {
        SlowFolder slow(100000);
        QVERIFY(slow.isMounted() && slow.tell("grow 200"));
        QTemporaryDir local;
        FileListModel frames, folded, other;
        QTreeView view;
        view.setUniformRowHeights(true);
        view.setModel(&frames);
        view.resize(600, 800);
        view.show();
        frames.gatherer()->setFoldsSequences(false);
        for (FileListModel* model : {&frames, &folded}) {
            model->gatherer()->setWatch(FileGatherer::Watch::Always);
            FileGathererPace::of(*model->gatherer()).poll = 300;
            FileGathererPace::of(*model->gatherer()).pollSlow = 60000;
            model->gatherer()->gatherPath(slow.path("frames"));
        }
        QTRY_VERIFY_WITH_TIMEOUT(frames.rowCount() >= 100000 && folded.rowCount() == 1, 60000);
        const int before = frames.rowCount();
        QVERIFY(slow.tell("stall 5000 1000"));
        int answers = 0;
        Kestrel::Test::Stall stall;
        QElapsedTimer time;
        time.start();
        while (time.elapsed() < 13000) {
            // What lies elsewhere is listed at its rate.
            other.gatherer()->gatherPath(local.path());
            QSignalSpy settled(&other, &FileListModel::settled);
            answers += settled.wait(1000);
            frames.setVisibleRows(answers, answers + 40);
            folded.setVisibleRows(0, 0);
        }
        const double longest = stall.longest();
        qInfo("longest stall of the interface thread: %.1f ms; %d listings elsewhere", longest,
              answers);
        QVERIFY(slow.tell("go"));
        QTRY_VERIFY_WITH_TIMEOUT(frames.rowCount() > before, 20000);
        QVERIFY(answers > 100);
        QVERIFY(longest < 2000);
    }

    void hangs() {
        SlowFolder slow(50);
        QVERIFY(slow.isMounted());
        FileListModel model;
        FileGatherer* const gatherer = model.gatherer();
        gatherer->setFoldsSequences(false);
        gatherAll(*gatherer, slow.path("frames"));
        QTRY_COMPARE(model.rowCount(), 50);
        QVERIFY(slow.tell("hang"));
        model.setVisibleRows(0, 40);
        QSignalSpy waiting(gatherer, &FileGatherer::waiting);
        gatherer->refresh();
        QVERIFY(waiting.wait(20000));
        QCOMPARE(model.rowCount(), 50);
        QCOMPARE(gatherer->listing()->status(0).known, FileListing::Status::NotAsked);
        int error = 0;
        FileManager::requestStatus(slow.path("frames/none").toUtf8(), 50, this,
                                   [&](const auto& status) { error = status.error; });
        QTRY_COMPARE(error, int(FileManager::NoAnswer));
        // A folder elsewhere answers, and what hangs is left without a wait.
        FileGatherer elsewhere;
        gatherAll(elsewhere, QStringLiteral("/"));
        QVERIFY(elsewhere.listing()->size() > 0);
        auto* const leaving = new FileGatherer;
        leaving->gatherPath(slow.path("mixed"));
        QElapsedTimer time;
        time.start();
        delete leaving;
        QVERIFY(time.elapsed() < 1000);
        QTRY_VERIFY_WITH_TIMEOUT(!FileManager::stuckDirectories().isEmpty(), 20000);
        QVERIFY(slow.tell("go"));
        QTRY_COMPARE_WITH_TIMEOUT(gatherer->listing()->state(), State::Complete, 20000);
        QTRY_COMPARE(gatherer->listing()->status(0).known, FileListing::Status::Told);
        QTRY_VERIFY(FileManager::stuckDirectories().isEmpty());
    }

    void failures() {
        SlowFolder slow(9);
        QVERIFY(slow.isMounted());
        FileGatherer gatherer;
        gatherAll(gatherer, slow.path("frames"));
        const struct {
            int error;
            const char* text;
        } rows[] = {{EIO, "Reading stopped after 9 entries: This folder cannot be read"},
                    {ESTALE, "Reading stopped after 9 entries: This folder cannot be read"},
                    {EACCES, "You have no permission to read this folder."},
                    {ETIMEDOUT, "Reading stopped after 9 entries: The server of this folder"},
                    {ENOENT, "This folder does not exist any more."}};
        for (const auto& row : rows) {
            QVERIFY(slow.tell("error " + QByteArray::number(row.error)));
            gatherAll(gatherer, slow.path("frames"));
            QCOMPARE(gatherer.listing()->state(), State::Failed);
            QCOMPARE(gatherer.listing()->item(0).frames, 9);
            const QString text = FileManager::errorText(*gatherer.listing());
            QVERIFY2(text.startsWith(row.text), qPrintable(text));
        }
        QVERIFY(slow.tell("error 0"));
        gatherAll(gatherer, slow.path("frames"));
        QCOMPARE(gatherer.listing()->state(), State::Complete);
    }

    // Where names come alone, numbered folders are no sequence in the end.
    void withoutTypes() {
        SlowFolder slow(9);
        QVERIFY(slow.isMounted() && slow.tell("types off"));
        FileGatherer gatherer;
        gatherAll(gatherer, slow.path("mixed"));
        const auto names = [&] {
            QByteArray all;
            for (int i = 0; i < gatherer.listing()->size(); ++i) {
                const auto& item = gatherer.listing()->item(i);
                all += item.kind == FileListing::Kind::Directory ? "/" : " ";
                all.append(item.name.data(), int(item.name.size()));
            }
            return all;
        };
        QTRY_COMPARE(names(), QByteArray(" a.#/sub.1/sub.2"));
    }

    // What the kernel waits for ends with the process.
    void quitting() {
        SlowFolder slow(100);
        QVERIFY(slow.isMounted());
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("ASAN_OPTIONS", "detect_leaks=0"); // it would wait for the threads
        program.setProcessEnvironment(environment);
        program.start(KXUI_QUITTING_PROGRAM, {"mounted", slow.path("")});
        QVERIFY(program.waitForReadyRead(20000));
        QCOMPARE(program.readLine().trimmed(), QByteArray("listed"));
        QVERIFY(slow.setStopped(true));
        program.write("go on\n");
        const bool quits = program.waitForReadyRead(20000);
        QElapsedTimer time;
        time.start();
        const bool hasQuit = program.waitForFinished(10000);
        const qint64 duration = time.elapsed();
        slow.setStopped(false);
        QVERIFY(quits && hasQuit);
        qInfo("quitting took %lld ms with hanging calls", static_cast<long long>(duration));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
    }
};

KXUI_TEST(SlowFolderTest);

#include "SlowFolderTest.moc"
