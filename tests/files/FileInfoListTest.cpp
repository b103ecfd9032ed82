#include <KxUI/files/FileInfoList.h>
#include <KxUI/files/FileManager.h>

#include <support/TestRegistry.h>

#include <QDir>
#include <QFileInfo>
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
        QVERIFY(file.open(QFile::WriteOnly));
        QCOMPARE(file.write(QByteArray(bytes, '-')), qint64(bytes));
    }

    static FileInfo& find(FileInfoList& list, const QString& text) {
        for (int i = 0; i < list.size(); ++i) {
            if (list[i].fileName() == text)
                return list[i];
        }
        static FileInfo none;
        return none;
    }

private slots:
    void sequenceItems() {
        QTemporaryDir root;
        for (const int frame : {9998, 9999, 10000, 10003, 10004})
            write(root.filePath(QString("p.%1.exr").arg(frame, 4, 10, QChar('0'))), 3);
        for (const int frame : {2, 4, 6})
            write(root.filePath(QString("q.%1.exr").arg(frame, 3, 10, QChar('0'))), 3);
        FileInfoList list;
        QSignalSpy wanted(&list, &FileInfoList::lazyStatFetchNext);
        list.setShouldFilterSequences(true);
        QCOMPARE(list.fill(root.path()), 10);
        QCOMPARE(wanted.size(), 1);
        QCOMPARE(list.size(), 4);
        QVERIFY(list[0].isDir() && list[1].isDir());

        FileInfo& grown = list[2];
        QCOMPARE(grown.fileName(), QString("p.#.exr 9998-10004 ( 9998-10000  10003-10004 )"));
        QCOMPARE(grown.sequenceName(), QString("p.#.exr 9998-10004"));
        QCOMPARE(grown.getSequenceLongName(),
                 QString("p.#.exr 9998-10004 ( 9998-10000 10003-10004 )"));
        QVERIFY(grown.isSequence() && grown.hasGaps());
        QCOMPARE(grown.startFrame(), 9998);
        QCOMPARE(grown.endFrame(), 10004);
        QCOMPARE(grown.numberOfHashes(), 1);
        QCOMPARE(grown.missingFrames(), std::int64_t(2));
        QCOMPARE(grown.frameRanges(), (std::vector<FrameRange>{{9998, 10000}, {10003, 10004}}));
        QCOMPARE(grown.rawFramePath(5), root.filePath("p.0005.exr").toUtf8());

        FileInfo& stepped = list[3];
        QCOMPARE(stepped.fileName(), QString("q.###.exr 2-6,2"));
        QCOMPARE(stepped.sequenceName(), QString("q.###.exr 2-6"));
        QVERIFY(!stepped.hasGaps() && stepped.frameRanges().empty());
        QCOMPARE(stepped.frameStep(), 2);
        QCOMPARE(stepped.numberOfHashes(), 3);
        FileManager::setInitialSequenceExtensions();
        QVERIFY(stepped.isAutoSequence());
        FileInfo copy(stepped);
        QCOMPARE(copy.rawFramePath(4), root.filePath("q.004.exr").toUtf8());
    }

    void lazyStatus() {
        QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkdir("sub"));
        for (int frame = 1; frame < 4; ++frame)
            write(root.filePath(QString("s.%1.exr").arg(frame)), 10 * frame);
        FileInfoList list;
        QSignalSpy ready(&list, &FileInfoList::fileInfoAvailable);
        QSignalSpy wanted(&list, &FileInfoList::lazyStatFetchNext);
        list.startLazyStat();
        list.onLazyStatFetchNext();
        QVERIFY(ready.isEmpty() && wanted.isEmpty() && !list.lazyStatItem());
        QVERIFY(!list.fetchLazyStat());

        list.setShouldFilterSequences(true);
        connect(
            &list, &FileInfoList::lazyStatFetchNext, &list,
            [&list] {
                list.fetchLazyStat();
                list.onLazyStatFetchNext();
            },
            Qt::QueuedConnection);
        list.fill(root.path());
        QTRY_COMPARE(ready.size(), 1);
        QCOMPARE(wanted.size(), 4);
        for (const FileInfo& info : list.getFileList())
            QVERIFY(info.hasAdditionalInfo() && info.isWritable() && info.lastModified() > 0);
        QVERIFY(find(list, "sub").isDir());
        FileInfo& sequence = find(list, "s.#.exr 1-3");
        QVERIFY(sequence.isFile());
        QCOMPARE(sequence.size(), std::uint64_t(10));

        QCOMPARE(list.lazyStatIndex(), list.size());
        list.onLazyStatFetchNext();
        QCOMPARE(ready.size(), 2);
        list.startLazyStat();
        QCOMPARE(list.lazyStatItem(), &list[0]);
        QCOMPARE(wanted.size(), 5);
    }

    void vanishedFile() {
        QTemporaryDir root;
        write(root.filePath("x"), 1);
        FileInfoList list;
        list.fill(root.path());
        QVERIFY(QFile::remove(root.filePath("x")));
        list.onLazyStatFetchNext();
        list.onLazyStatFetchNext();
        QCOMPARE(list.lazyStatItem()->fileName(), QString("x"));
        QVERIFY(!list.fetchLazyStat());
        QVERIFY(list[2].hasAdditionalInfo() && !list[2].isWritable());
    }

    void unreadableFolder() {
        QTemporaryDir root;
        write(root.filePath("file"), 1);
        FileInfoList list;
        QSignalSpy wanted(&list, &FileInfoList::lazyStatFetchNext);
        for (const char* name : {"missing", "file"}) {
            QCOMPARE(list.fill(root.filePath(name)), 0);
            QCOMPARE(list.size(), 0);
            QVERIFY(!list.errorString().isEmpty());
            QCOMPARE(list.directory(), root.filePath(name));
        }
        QCOMPARE(wanted.size(), 0);
        QVERIFY(list.fill(root.path()) > 0);
        QVERIFY(list.errorString().isEmpty());
    }

    void namesThatAreNotUtf8() {
        QTemporaryDir root;
        const QByteArray odd = root.path().toUtf8() + "/\xff\xfe";
        QCOMPARE(::mkdir(odd, 0777), 0);
        write(root.filePath(QString::fromUtf8("größe 1.exr")), 1);
        FileInfoList list;
        list.fill(root.path());
        const QByteArray listed = find(list, QString(2, QChar(0xFFFD))).rawAbsoluteFilePath();
        const bool sized = find(list, QString::fromUtf8("größe 1.exr")).isFile();
        const int inside = list.fillRaw(odd);
        QCOMPARE(::rmdir(odd), 0);
        QCOMPARE(listed, odd);
        QVERIFY(sized);
        QCOMPARE(inside, 2);
    }

    void handMade() {
        QTemporaryDir root;
        write(root.filePath("x"), 12);
        FileInfoList list;
        QFileInfo file(root.filePath("x"));
        list.push_back(file);
        FileInfo info("y", false);
        list.push_back(info);
        QCOMPARE(list.size(), 2);
        QCOMPARE(list[0].size(), std::uint64_t(12));
        QCOMPARE(list[0].absoluteFilePath(), root.filePath("x"));
        QVERIFY(list[0].hasAdditionalInfo() && !list[1].hasAdditionalInfo());
    }
};

KXUI_TEST(FileInfoListTest);

#include "FileInfoListTest.moc"
