#include <KxUI/files/FileGatherer.h>
#include <KxUI/files/FileGatherer_p.h>
#include <KxUI/files/FileInfoList.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/files/RawName_p.h>

#include "HangingCalls.h"

#include <support/TestRegistry.h>

#include <QDir>
#include <QElapsedTimer>
#include <QPointer>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <fstream>
#include <random>
#include <thread>

using namespace Kestrel::UI;
using Kestrel::Test::FailingCalls;
using Kestrel::Test::HangingCalls;

namespace {

void write(const QString& path, int bytes = 0) {
    QFile file(path);
    QVERIFY(file.open(QFile::WriteOnly) && file.write(QByteArray(bytes, '-')) == bytes);
}

QStringList namesOf(const FileListing& listing) {
    QStringList names;
    for (int i = 0; i < listing.size(); ++i)
        names << QString::fromUtf8(listing.fileInfo(i).fileName().toUtf8());
    return names;
}

void gatherAll(FileGatherer& gatherer, const QString& directory) {
    QSignalSpy finished(&gatherer, &FileGatherer::finished);
    gatherer.gatherPath(directory);
    QVERIFY(finished.count() == 1 || finished.wait(20000));
}

} // namespace

class FileGathererTest : public QObject {
    Q_OBJECT

private slots:
    // The gatherer and the blocking list fold alike, item by item.
    void listsAsTheListDoes() {
        std::mt19937 random(7);
        for (int round = 0; round < 12; ++round) {
            QTemporaryDir root;
            for (int i = 0; i < 60; ++i) {
                const QString stem = QString("abAB.").at(int(random() % 5));
                const int width = int(random() % 3) * 2;
                const QString number = QString::number(random() % 120).rightJustified(width, '0');
                const QString name = "x" + stem + number + (random() % 4 ? ".exr" : "");
                if (random() % 12 == 0)
                    QDir(root.path()).mkdir(name);
                else if (random() % 12 == 0)
                    QFile::link(random() % 2 ? "/" : "/dev/null", root.filePath(name));
                else if (!QFileInfo::exists(root.filePath(name)))
                    write(root.filePath(name));
            }
            for (const bool fold : {true, false}) {
                FileInfoList list;
                list.setShouldFilterSequences(fold);
                list.fill(root.path());
                FileGatherer gatherer;
                gatherer.setFoldsSequences(fold);
                gatherAll(gatherer, root.path());
                QStringList wanted;
                for (int i = 2; i < list.size(); ++i)
                    wanted << list[i].fileName();
                // Links to folders are found out after the names are there.
                QTRY_COMPARE_WITH_TIMEOUT(namesOf(*gatherer.listing()), wanted, 20000);
                for (int i = 0; i < gatherer.listing()->size(); ++i) {
                    const FileInfo ours = gatherer.listing()->fileInfo(i);
                    const FileInfo& theirs = list[i + 2];
                    QCOMPARE(ours.presentRanges(), theirs.presentRanges());
                    QCOMPARE(ours.missingFrames(), theirs.missingFrames());
                    QCOMPARE(gatherer.listing()->item(i).missing, theirs.missingFrames());
                    QCOMPARE(ours.rawAbsoluteFilePath(), theirs.rawAbsoluteFilePath());
                    for (const int frame : {1, 7, 77, 101})
                        QCOMPARE(gatherer.listing()->framePath(i, frame),
                                 ours.isSequence() ? theirs.rawFramePath(frame)
                                                   : theirs.rawAbsoluteFilePath());
                    QCOMPARE(gatherer.listing()->findKey(gatherer.listing()->item(i).key), i);
                }
            }
        }
    }

    void settings() {
        QTemporaryDir root;
        for (const char* name : {"a.1.exr", "a.2.exr", "b.jpg", ".hidden", "n\xff\n.exr"})
            std::ofstream(root.path().toStdString() + '/' + name);
        QDir(root.path()).mkdir("sub");
        FileGatherer gatherer;
        QCOMPARE(gatherer.listing()->state(), FileListing::State::Empty);
        gatherAll(gatherer, root.path() + "/./sub/..//");
        QCOMPARE(gatherer.directory(), root.path().toUtf8());
        const auto size = [&] { return gatherer.listing()->size(); };
        QCOMPARE(size(), 4);
        const int odd = gatherer.listing()->find("n\xff\n.exr");
        QCOMPARE(gatherer.listing()->path(odd), root.path().toUtf8() + "/n\xff\n.exr");
        gatherer.setFoldsSequences(false);
        QTRY_COMPARE(size(), 5);
        gatherer.setShowsHidden(true);
        QTRY_COMPARE(size(), 6);
        gatherer.setNamePatterns({"*.exr"});
        QTRY_COMPARE(size(), 4);
        gatherer.setDirectoriesOnly(true);
        QTRY_COMPARE(size(), 1);
        QCOMPARE(gatherer.listing()->state(), FileListing::State::Complete);
        std::remove((root.path().toStdString() + "/n\xff\n.exr").c_str());
    }

    void failures() {
        QTemporaryDir root;
        write(root.filePath("file"));
        QFile::link("loop", root.filePath("loop"));
        FileGatherer gatherer;
        for (const char* name : {"none", "file", "loop"}) {
            gatherAll(gatherer, root.filePath(name));
            QCOMPARE(gatherer.listing()->state(), FileListing::State::Failed);
            QVERIFY(gatherer.listing()->error() > 0 && !gatherer.isGathering());
        }
        // What was read stays when the folder goes.
        QDir(root.path()).mkdir("sub");
        write(root.filePath("sub/x"));
        gatherAll(gatherer, root.filePath("sub"));
        QVERIFY(QDir(root.filePath("sub")).removeRecursively());
        gatherAll(gatherer, root.filePath("sub"));
        QCOMPARE(gatherer.listing()->state(), FileListing::State::Failed);
        QCOMPARE(namesOf(*gatherer.listing()), QStringList{"x"});
        QCOMPARE(FileManager::errorText(*gatherer.listing()),
                 QString("This folder does not exist any more."));
    }

    // The system refuses this or that.
    void refusals() {
        QTemporaryDir root;
        const std::string path = root.path().toStdString();
        const QByteArray longest = QByteArray(251, 'n') + ".exr";
        for (int i = 0; i < 3000; ++i)
            write(root.filePath(QString("a file with a longer name, no. %1 of many").arg(i)));
        write(root.filePath(longest));
        FileGatherer gatherer;
        FileGathererPace::of(gatherer).poll = FileGathererPace::of(gatherer).reread = 10;
        {
            const FailingCalls second(path, HangingCalls::Readings, EIO, 1);
            gatherAll(gatherer, root.path());
            QCOMPARE(gatherer.listing()->state(), FileListing::State::Failed);
            const int read = gatherer.listing()->size();
            QVERIFY(read > 0 && read < 3001);
            QVERIFY(FileManager::errorText(*gatherer.listing())
                        .startsWith(QString("Reading stopped after %1 entries: ").arg(read)));
        }
        {
            // A server that was restarted is asked once more.
            const FailingCalls first(path, HangingCalls::Opens, ESTALE, 0, 1);
            gatherer.setWatch(FileGatherer::Watch::Never);
            gatherAll(gatherer, root.path());
            QCOMPARE(gatherer.listing()->state(), FileListing::State::Complete);
        }
        {
            // No watch is left: the folder's time is asked for.
            const FailingCalls watch(path, HangingCalls::Watches, ENOSPC);
            gatherer.setWatch(FileGatherer::Watch::Local);
            QCOMPARE(gatherer.listing()->size(), 3001);
            QVERIFY(gatherer.listing()->find(viewOf(longest)) >= 0);
            QTest::qWait(30);
            write(root.filePath("zz"));
            QTRY_COMPARE(gatherer.listing()->find("zz"), 3001);
        }
        const struct {
            int error;
            FileListing::Status::Known known;
        } rows[] = {{ENOENT, FileListing::Status::Gone},
                    {EACCES, FileListing::Status::Denied},
                    {EIO, FileListing::Status::Failed}};
        int index = 0;
        for (const auto& row : rows) {
            const FailingCalls statuses(path, HangingCalls::Statuses, row.error);
            gatherer.requestStatus({++index});
            QTRY_COMPARE(gatherer.listing()->status(index).known, row.known);
        }
    }

    // What several show is read once, each by its own settings; whoever comes late or leaves early
    // changes nothing for the others.
    void sharedReading() {
        QTemporaryDir root;
        for (const char* name : {"a.1.exr", "a.2.exr", ".b"})
            write(root.filePath(name));
        HangingCalls hanging(root.path().toStdString());
        FileGatherer first, same, all, leaving;
        all.setFoldsSequences(false);
        all.setShowsHidden(true);
        for (FileGatherer* each : {&first, &same, &all, &leaving})
            each->gatherPath(root.path());
        QVERIFY(hanging.isReached(1));
        leaving.gatherPath(QStringLiteral("/"));
        same.setShowsHidden(true);
        same.setShowsHidden(false);
        QTest::qWait(20);
        QVERIFY(!hanging.isReached(2, 20));
        hanging.release();
        for (FileGatherer* each : {&first, &same, &all, &leaving})
            QTRY_COMPARE_WITH_TIMEOUT(each->listing()->state(), FileListing::State::Complete,
                                      20000);
        QCOMPARE(namesOf(*first.listing()), QStringList{"a.#.exr 1-2"});
        QCOMPARE(namesOf(*all.listing()), (QStringList{".b", "a.1.exr", "a.2.exr"}));
        QVERIFY(ListingData::of(*first.listing()) == ListingData::of(*same.listing()));
        QCOMPARE(leaving.directory(), QByteArray("/"));
        // One that began before a change does not do for who knows of it.
        QSignalSpy finished(&first, &FileGatherer::finished);
        write(root.filePath("new"));
        first.refresh();
        QTRY_COMPARE(finished.count(), 1);
        QVERIFY(first.listing()->find("new") >= 0);
    }

    // A folder that is entered again is there before its disk has answered.
    void recentListing() {
        QTemporaryDir root;
        for (const char* name : {"one", "two"})
            QDir(root.path()).mkdir(name);
        write(root.filePath("one/x"), 5);
        FileGatherer gatherer;
        FileGathererPace::of(gatherer).settled = 0;
        gatherer.setWatch(FileGatherer::Watch::Never);
        FileManager::forgetListings();
        const auto leaveAndComeBack = [&](bool isHanging) {
            gatherAll(gatherer, root.filePath("two"));
            std::optional<HangingCalls> hanging;
            if (isHanging)
                hanging.emplace(root.filePath("one").toStdString());
            gatherer.gatherPath(root.filePath("one"));
        };
        gatherAll(gatherer, root.filePath("one"));
        gatherer.requestStatus({0});
        QTRY_COMPARE(gatherer.listing()->status(0).size, std::uint64_t(5));
        const auto data = ListingData::of(*gatherer.listing());
        leaveAndComeBack(true);
        QCOMPARE(gatherer.listing()->state(), FileListing::State::Reading);
        QCOMPARE(gatherer.listing()->find("x"), 0);
        QCOMPARE(gatherer.listing()->status(0).size, std::uint64_t(5));
        QTRY_VERIFY(!gatherer.isGathering());
        QVERIFY(ListingData::of(*gatherer.listing()) == data);
        // A change since then is seen, and one that the time does not show when it is asked for.
        leaveAndComeBack(false);
        write(root.filePath("one/y"));
        leaveAndComeBack(false);
        QTRY_COMPARE(gatherer.listing()->find("y"), 1);
        QTRY_VERIFY(!gatherer.isGathering());
        write(root.filePath("one/z"));
        gatherer.refresh();
        QTRY_COMPARE(gatherer.listing()->find("z"), 2);
        // Without it, and by other settings, there is nothing at first.
        gatherer.setShowsHidden(true);
        leaveAndComeBack(true);
        QCOMPARE(gatherer.listing()->size(), 0);
        QTRY_COMPARE(gatherer.listing()->size(), 3);
        FileManager::forgetListings();
        leaveAndComeBack(true);
        QCOMPARE(gatherer.listing()->size(), 0);
    }

    void statusesAndTotals() {
        QTemporaryDir root;
        for (const int frame : {1, 2, 3})
            write(root.filePath(QString("s.%1.exr").arg(frame)), 10 * frame);
        write(root.filePath("z"), 7);
        QDir(root.path()).mkdir("d");
        write(root.filePath("d/inner"), 100);
        QFile::link(root.path(), root.filePath("d/up"));
        FileGatherer gatherer;
        gatherAll(gatherer, root.path());
        const auto before = gatherer.listing();
        const int sequence = before->find("s.#.exr");
        const int file = before->find("z");
        QSignalSpy arrived(&gatherer, &FileGatherer::statusArrived);
        gatherer.requestStatus({sequence, file, 99, -1});
        QTRY_VERIFY(gatherer.listing()->status(sequence).known == FileListing::Status::Told);
        QTRY_VERIFY(gatherer.listing()->status(file).known == FileListing::Status::Told);
        QCOMPARE(gatherer.listing()->status(sequence).size, std::uint64_t(30));
        QVERIFY(gatherer.listing()->status(sequence).isEstimate);
        QCOMPARE(gatherer.listing()->status(file).size, std::uint64_t(7));
        QCOMPARE(before->status(file).known, FileListing::Status::NotAsked);

        const struct {
            const char* name;
            qint64 bytes, files;
        } rows[] = {{"s.#.exr", 60, 3}, {"z", 7, 1}, {"d", 100, 1}};
        for (const auto& row : rows) {
            QSignalSpy totals(&gatherer, &FileGatherer::totalsArrived);
            gatherer.requestTotals(gatherer.listing()->find(row.name));
            QTRY_VERIFY(!totals.isEmpty() && totals.last().at(3).toBool());
            QCOMPARE(totals.last().at(0).toByteArray(), QByteArray(row.name));
            QCOMPARE(totals.last().at(1).toLongLong(), row.bytes);
            QCOMPARE(totals.last().at(2).toLongLong(), row.files);
            QVERIFY(totals.last().at(4).toBool());
        }
        // A file that has gone says so when it is asked for again.
        QVERIFY(QFile::remove(root.filePath("z")));
        gatherer.setWatch(FileGatherer::Watch::Never);
        gatherAll(gatherer, root.path());
        QCOMPARE(gatherer.listing()->find("z"), -1);
    }

    // Where a directory tells sizes and times with its names.
    void listedStatuses() {
        auto names = std::make_shared<Platform::Listing>();
        const struct {
            const char* name;
            Platform::EntryType type;
            std::uint64_t size;
        } rows[] = {{"s.1.exr", Platform::EntryType::Other, 10},
                    {"s.3.exr", Platform::EntryType::Other, 30},
                    {"f", Platform::EntryType::Other, 7},
                    {"d", Platform::EntryType::Directory, 0},
                    {"link", Platform::EntryType::Unknown, 1}};
        for (const auto& row : rows) {
            names->entries.emplace_back(names->names.add(row.name), row.type);
            names->statuses.push_back({row.size, std::int64_t(row.size) + 100});
        }
        const auto data = makeListing(
            std::make_shared<const RawEntries>(RawEntries{"/x", names, names->entries}), {});
        auto table = std::make_shared<StatusTable>();
        table->add(Kestrel::UI::listedStatuses(*data, *names, 1));
        const auto listing = ListingData::listing(data, table, FileListing::State::Complete, 0);
        const auto status = [&](const char* name) { return listing->status(listing->find(name)); };
        QCOMPARE(status("s.#.exr").size, std::uint64_t(20));
        QCOMPARE(status("s.#.exr").modified, std::int64_t(130));
        QCOMPARE(status("f").size, std::uint64_t(7));
        QCOMPARE(status("d").known, FileListing::Status::Told);
        QCOMPARE(status("link").known, FileListing::Status::NotAsked);
    }

    void watching() {
        QTemporaryDir root;
        FileGatherer gatherer;
        FileGathererPace::of(gatherer).reread = 10;
        FileGathererPace::of(gatherer).poll = 10;
        gatherAll(gatherer, root.path());
        // The watch begins after the reading; something new is told sooner or later.
        for (int i = 0; i < 200 && gatherer.listing()->size() == 0; ++i) {
            write(root.filePath(QString("f%1x").arg(i)));
            QTest::qWait(20);
        }
        QTRY_VERIFY_WITH_TIMEOUT(gatherer.listing()->size() > 0, 20000);
        write(root.filePath("last"));
        QTRY_VERIFY_WITH_TIMEOUT(gatherer.listing()->find("last") >= 0, 20000);
    }

    // Files that come and go all the time: it is never read without end, and what is there when they
    // rest is listed.
    void changesWhileListed() {
        QTemporaryDir root;
        FileGatherer gatherer;
        FileGathererPace::of(gatherer).reread = 20;
        FileGathererPace::of(gatherer).poll = 10;
        QSignalSpy finished(&gatherer, &FileGatherer::finished);
        gatherAll(gatherer, root.path());
        std::atomic<bool> isEnded{false};
        std::thread churn([&, random = std::mt19937(5)]() mutable {
            const std::string path = root.path().toStdString() + "/f.";
            for (int i = 0; i < 20000; ++i) {
                const std::string name = path + std::to_string(random() % 300) + ".exr";
                if (random() % 2)
                    std::remove(name.c_str());
                else
                    std::ofstream out(name);
            }
            isEnded = true;
        });
        QTRY_VERIFY_WITH_TIMEOUT(isEnded, 60000);
        churn.join();
        write(root.filePath("f.7.exr"));
        FileInfoList list;
        list.setShouldFilterSequences(true);
        list.fill(root.path());
        QTRY_COMPARE_WITH_TIMEOUT(namesOf(*gatherer.listing()), QStringList{list[2].fileName()},
                                  20000);
        QVERIFY(finished.count() < 2000);
        QVERIFY(QDir(root.path()).removeRecursively());
        QTRY_COMPARE(gatherer.listing()->state(), FileListing::State::Failed);
        QCOMPARE(gatherer.listing()->size(), 1);
        QVERIFY(QDir().mkpath(root.path()));
    }

    // A file system that does not answer holds up nobody but its worker.
    void hangs() {
        QTemporaryDir root;
        QDir(root.path()).mkdir("hang");
        QDir(root.path()).mkdir("good");
        write(root.filePath("good/x"));
        HangingCalls hanging(root.filePath("hang").toStdString());
        auto* const gatherer = new FileGatherer;
        QSignalSpy waiting(gatherer, &FileGatherer::waiting);
        gatherer->gatherPath(root.filePath("hang"));
        QVERIFY(hanging.isReached(1));
        QVERIFY(waiting.wait(20000));
        QVERIFY(gatherer->waitingTime() >= 300 && gatherer->isGathering());
        gatherAll(*gatherer, root.filePath("good"));
        QCOMPARE(gatherer->listing()->find("x"), 0);
        gatherer->gatherPath(root.filePath("hang"));
        gatherer->cancel();
        QCOMPARE(gatherer->listing()->state(), FileListing::State::Stopped);
        gatherer->gatherPath(root.filePath("hang"));
        delete gatherer; // and what comes after it is nobody's
        hanging.release();
        QTest::qWait(50);
    }

    void quitsWhileFoldersHang_data() {
        QTest::addColumn<QString>("how");
        for (const char* how : {"opens", "statuses"})
            QTest::newRow(how) << how;
    }

    // A process ends at once, whatever its folders do. The limit is far above what it takes.
    void quitsWhileFoldersHang() {
        QFETCH(QString, how);
        QTemporaryDir root;
        for (int i = 0; i < 8; ++i) {
            QDir(root.path()).mkdir(QString::number(i));
            write(root.filePath(QString::number(i) + "/x"));
        }
        QProcess program;
        // It leaves behind what its threads hold, and a look for leaks would wait for those.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("ASAN_OPTIONS", "detect_leaks=0");
        program.setProcessEnvironment(environment);
        program.start(KXUI_QUITTING_PROGRAM, {how, root.path() + "/"});
        QVERIFY(program.waitForReadyRead(60000));
        QElapsedTimer timer;
        timer.start();
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(timer.elapsed() < 5000);
        qInfo("quitting took %lld ms with eight hanging %s",
              static_cast<long long>(timer.elapsed()), qPrintable(how));
    }

    void hostsMayDelete() {
        QTemporaryDir root;
        write(root.filePath("x"));
        const auto signalled = [&](auto signal) {
            QPointer<FileGatherer> gatherer = new FileGatherer;
            connect(gatherer, signal, gatherer, [=] { delete gatherer; });
            gatherer->gatherPath(root.path());
            if (gatherer)
                gatherer->requestStatus({0});
            QTRY_VERIFY_WITH_TIMEOUT(!gatherer, 20000);
        };
        signalled(&FileGatherer::listingChanged);
        signalled(&FileGatherer::gatheringChanged);
        signalled(&FileGatherer::finished);
        // Here and there, and only the last is answered.
        FileGatherer gatherer;
        QSignalSpy finished(&gatherer, &FileGatherer::finished);
        for (int i = 0; i < 500; ++i)
            gatherer.gatherPath(i % 2 ? root.path() : QStringLiteral("/"));
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        QCOMPARE(gatherer.listing()->find("x"), 0);
    }
};

KXUI_TEST(FileGathererTest);

#include "FileGathererTest.moc"
