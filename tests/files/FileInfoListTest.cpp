#include <KxUI/files/FileInfoList.h>
#include <KxUI/files/FileManager.h>

#include <support/TestRegistry.h>

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using Kestrel::Base::FrameRange;
using namespace Kestrel::UI;

class FileInfoListTest : public QObject {
    Q_OBJECT

private:
    static void write(const QString& path, int bytes) {
        QFile file(path);
        QVERIFY(file.open(QFile::WriteOnly) && file.write(QByteArray(bytes, '-')) == bytes);
    }

private slots:
    void sequenceItems() {
        QTemporaryDir root;
        for (const int frame : {9998, 9999, 10000, 10003, 10004})
            write(root.filePath(QString("p.%1.exr").arg(frame)), 3);
        for (const int frame : {2, 4, 6})
            write(root.filePath(QString("q.00%1.exr").arg(frame)), 3);
        FileInfoList list;
        QSignalSpy wanted(&list, &FileInfoList::lazyStatFetchNext);
        list.setShouldFilterSequences(true);
        QCOMPARE(list.fill(root.path()), 10);
        QCOMPARE(wanted.size(), 1);
        QCOMPARE(list.size(), 4);
        QVERIFY(list[0].isDir() && list[1].isDir());

        const FileInfo& grown = list[2];
        QCOMPARE(grown.fileName(), QString("p.#.exr 9998-10004 ( 9998-10000  10003-10004 )"));
        QCOMPARE(grown.getSequenceLongName(),
                 QString("p.#.exr 9998-10004 ( 9998-10000 10003-10004 )"));
        QCOMPARE(grown.missingFrames(), std::int64_t(2));
        QCOMPARE(grown.frameRanges(), (std::vector<FrameRange>{{9998, 10000}, {10003, 10004}}));
        QCOMPARE(grown.rawFramePath(5), root.filePath("p.0005.exr").toUtf8());

        FileInfo stepped(list[3]);
        QCOMPARE(stepped.fileName(), QString("q.###.exr 2-6,2"));
        QCOMPARE(stepped.sequenceName(), QString("q.###.exr 2-6"));
        QVERIFY(!stepped.hasGaps() && stepped.frameRanges().empty());
        QVERIFY(stepped.frameStep() == 2 && stepped.numberOfHashes() == 3);
        FileManager::setInitialSequenceExtensions();
        QVERIFY(stepped.isAutoSequence());

        // The text of a listing makes the same item, but for its folder.
        for (const int index : {2, 3}) {
            const FileInfo& listed = list[index];
            const FileInfo read(listed.rawFileName(), true);
            QCOMPARE(read.frameName(), listed.frameName());
            QCOMPARE(read.getSequenceLongName(), listed.getSequenceLongName());
            QCOMPARE(read.flags(), listed.flags());
            QCOMPARE(read.frameRanges(), listed.frameRanges());
            QCOMPARE(read.presentRanges(), listed.presentRanges());
            QCOMPARE(read.missingFrames(), listed.missingFrames());
            QCOMPARE(read.numberOfHashes(), listed.numberOfHashes());
            QVERIFY(read.startFrame() == listed.startFrame() &&
                    read.endFrame() == listed.endFrame() && read.frameStep() == listed.frameStep());
            for (const int frame : {4, 9999, 10000})
                QVERIFY(listed.framePath(frame).endsWith(
                    '/' + QFileInfo(read.framePath(frame)).fileName()));
        }
    }

    void presentFrames() {
        const struct {
            QStringList files;
            const char* text;
            std::int64_t missing;
            std::vector<FrameRange> present, split;
        } rows[] = {
            {{"r0010", "r0020", "r0040"}, "r####", 1, {{10, 20, 10}, {40, 40, 10}}, {{10, 20, 10}}},
            {{"a0001", "a0005", "a0007", "a0008"},
             "a####",
             4,
             {{1, 1}, {5, 5}, {7, 8}},
             {{1, 1}, {5, 5}}},
            {{"x1", "x3", "x4", "x5"}, "x#", 1, {{1, 1}, {3, 5}}, {{1, 1}, {3, 3}}},
            {{"s1", "s2", "s3", "s5"}, "s#", 1, {{1, 3}, {5, 5}}, {{1, 3}}},
            {{"m1", "m3", "m02"}, "m#", 0, {{1, 1, 2}, {2, 2, 2}, {3, 3, 2}}, {}},
            {{"o1", "o99999999999"}, "o#", 0, {{1, 1}}, {}}};
        for (const auto& row : rows) {
            QTemporaryDir root;
            for (const QString& file : row.files)
                write(root.filePath(file), 0);
            FileInfoList list;
            list.setShouldFilterSequences(true);
            list.fill(root.path());
            QCOMPARE(list[2].frameName(), QString(row.text));
            QCOMPARE(list[2].presentRanges(), row.present);
            QCOMPARE(list[2].missingFrames(), row.missing);
            list.setSplitIncompleteSequences(true);
            list.fill(root.path());
            if (!row.split.empty())
                QCOMPARE(list[2].presentRanges(), row.split);
        }
    }

    void lazyStatus() {
        QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkdir("sub"));
        for (const int frame : {1, 2, 3})
            write(root.filePath(QString("s.%1.exr").arg(frame)), 10 * frame);
        write(root.filePath("z"), 1);
        FileInfoList list;
        QSignalSpy ready(&list, &FileInfoList::fileInfoAvailable);
        QSignalSpy wanted(&list, &FileInfoList::lazyStatFetchNext);
        list.startLazyStat();
        list.onLazyStatFetchNext();
        QVERIFY(ready.isEmpty() && wanted.isEmpty() && !list.lazyStatItem());
        QVERIFY(!list.fetchLazyStat());

        list.setShouldFilterSequences(true);
        const auto fetch = [&list] {
            list.fetchLazyStat();
            list.onLazyStatFetchNext();
        };
        connect(&list, &FileInfoList::lazyStatFetchNext, &list, fetch, Qt::QueuedConnection);
        list.fill(root.path());
        QVERIFY(QFile::remove(root.filePath("z")));
        QTRY_COMPARE(ready.size(), 1);
        QCOMPARE(wanted.size(), 5);
        for (int i = 0; i < 4; ++i)
            QVERIFY(list[i].hasAdditionalInfo() && list[i].isWritable() && list[i].lastModified());
        QVERIFY(list[2].isFile() && list[2].size() == 10 && list[3].isDir());
        QVERIFY(list[4].hasAdditionalInfo() && !list[4].isWritable());

        QCOMPARE(list.lazyStatIndex(), list.size());
        list.onLazyStatFetchNext();
        QCOMPARE(ready.size(), 2);
        list.startLazyStat();
        QCOMPARE(list.lazyStatItem(), &list[0]);
        QCOMPARE(wanted.size(), 6);
    }

    void unreadableFolder() {
        QTemporaryDir root;
        write(root.filePath("file"), 1);
        FileInfoList list;
        QSignalSpy wanted(&list, &FileInfoList::lazyStatFetchNext);
        for (const char* name : {"missing", "file"}) {
            QCOMPARE(list.fill(root.filePath(name)), 0);
            QVERIFY(list.size() == 0 && !list.errorString().isEmpty());
            QCOMPARE(list.directory(), root.filePath(name));
        }
        QVERIFY(wanted.isEmpty());
        QVERIFY(list.fill(root.path()) > 0 && list.errorString().isEmpty());
    }

    // Each change is told once, and a listener may delete the list.
    void changesAreTold() {
        QTemporaryDir root;
        auto* list = new FileInfoList;
        QSignalSpy changed(list, &FileInfoList::listChanged);
        QSignalSpy settings(list, &FileInfoList::settingsChanged);
        for (const bool on : {true, true, false}) {
            QVERIFY(list->setProperty("shouldFilterSequences", on));
            QVERIFY(list->setProperty("splitIncompleteSequences", on));
        }
        QCOMPARE(settings.size(), 4);
        list->push_back(FileInfo("a", false));
        list->push_back(QFileInfo(root.path()));
        QCOMPARE(changed.size(), 2);
        QCOMPARE(list->property("size").toInt(), 2);
        connect(list, &FileInfoList::listChanged, list, [list] { delete list; });
        QCOMPARE(list->fill(root.path()), 2);
        QCOMPARE(changed.size(), 3);
    }

    void namesThatAreNotUtf8() {
        QTemporaryDir root;
        const QByteArray odd = root.path().toUtf8() + "/\xff\xfe";
        QCOMPARE(::mkdir(odd, 0777), 0);
        FileInfoList list;
        list.fill(root.path());
        const QByteArray listed = list[0].rawAbsoluteFilePath();
        const int inside = list.fillRaw(listed);
        ::rmdir(odd);
        QCOMPARE(listed, odd);
        QCOMPARE(inside, 2);
    }
};

KXUI_TEST(FileInfoListTest);

#include "FileInfoListTest.moc"
