#include <KxUI/files/FileInfo.h>
#include <KxUI/files/FileManager.h>

#include <support/TestRegistry.h>

#include <QDir>
#include <QtTest>

#include <clocale>

using Kestrel::Base::FrameRange;
using namespace Kestrel::UI;

class FileInfoTest : public QObject {
    Q_OBJECT

private slots:
    void status() {
        FileInfo info("a.exr", false);
        QVERIFY(info.isFile() && !info.isSequence() && !info.hasAdditionalInfo());
        info.setAdditionalInfo(5000000000U, -7, true, true);
        QCOMPARE(info.flags(), 1U | 4U | 8U);
        QCOMPARE(info.size(), std::uint64_t(5000000000U));
        QCOMPARE(info.lastModified(), std::int64_t(-7));
        info.setAdditionalInfo(1, 2, false, false);
        QCOMPARE(info.flags(), 8U);
    }

    // Bytes are kept; they are shown as UTF-8 also where the locale does not know it.
    void names() {
        std::setlocale(LC_ALL, "C");
        const FileInfo accented("gr\xc3\xbc\xc3\x9f.0001.exr", false);
        QCOMPARE(accented.fileName(), QString::fromUtf8("grüß.0001.exr"));
        const FileInfo broken("a\xff.exr", false);
        QCOMPARE(broken.fileName(), QString("a") + QChar(0xFFFD) + ".exr");
        QCOMPARE(QByteArray(broken.rawFileName()), QByteArray("a\xff.exr"));
        QCOMPARE(broken.getFilenameLength(), 6);
        QCOMPARE(broken.rawAbsoluteFilePath(), QDir::currentPath().toUtf8() + "/a\xff.exr");
        const QByteArray longName(1000, 'x');
        QCOMPARE(FileInfo(longName, false).getFilenameLength(), 1000);
        QCOMPARE(FileInfo(nullptr, true).fileName(), QString());
        QCOMPARE(FileInfo("/abs/x", false).absoluteFilePath(), QString("/abs/x"));
    }

    void sequenceName() {
        FileInfo members[6];
        FileInfo info("/d/img.#.exr", true);
        int index = 0;
        for (const int frame : {1, 2, 3, 5, 8, 9})
            info.insertSequenceFile(frame, &members[index++]);
        info.setFrameInformation(0, 0, 4);
        QCOMPARE(info.getSequenceLongName(), QString("/d/img.####.exr 1-9 ( 1-3 5 8-9 )"));
        QVERIFY(!info.sequenceNameBuilt());
        info.constructSequenceName();
        QVERIFY(info.sequenceNameBuilt() && info.hasGaps());
        QCOMPARE(info.sequenceName(), QString("/d/img.####.exr 1-9"));
        QCOMPARE(info.frameRanges(),
                 (std::vector<FrameRange>{FrameRange(1, 3), FrameRange(5, 5), FrameRange(8, 9)}));
        QCOMPARE(info.rawFramePath(12), QByteArray("/d/img.0012.exr"));
        QCOMPARE(info.rawFramePath(12345), QByteArray("/d/img.12345.exr"));

        info.setFrameInformation(3, 4, 2);
        info.constructSequenceName();
        QCOMPARE(info.sequenceName(), QString("/d/img.####.exr 1-9"));
        info.clearSequenceList();
        QVERIFY(!info.hasGaps() && info.frameRanges().empty() && info.sequenceSize() == 0);
        info.constructSequenceName();
        QCOMPARE(info.sequenceName(), QString("/d/img.##.exr 3-4"));

        FileInfo single("one.#.exr", true);
        single.insertSequenceFile(7, &members[0]);
        single.constructSequenceName();
        QCOMPARE(single.sequenceName(), QString("one.#.exr"));
        QCOMPARE(single.sequenceCollection().at(7), &members[0]);

        FileInfo extremes("e#", true);
        extremes.insertSequenceFile(INT32_MIN, nullptr);
        extremes.insertSequenceFile(INT32_MAX, nullptr);
        extremes.constructSequenceName();
        QVERIFY(extremes.hasGaps());
    }

    void extensions() {
        QVERIFY(!FileInfo::isSequenceExtension("exr"));
        FileManager::setInitialSequenceExtensions();
        QVERIFY(FileInfo::isSequenceExtension("exr") && FileInfo::isSequenceExtension(".TIFF16"));
        QVERIFY(!FileInfo::isSequenceExtension("..exr") && !FileInfo::isSequenceExtension("obj"));
        QVERIFY(!FileInfo::isSequenceExtension(nullptr));

        FileInfo mesh("m.#.OBJ", true);
        mesh.setFrameInformation(1, 2, 1);
        QVERIFY(!mesh.isAutoSequence());
        FileManager::addSequenceFileExtension(".Obj");
        QVERIFY(FileInfo::isSequenceExtension("obj"));
        QVERIFY(!mesh.isAutoSequence());
        mesh.clearSequenceList();
        QVERIFY(mesh.isAutoSequence());
    }
};

KXUI_TEST(FileInfoTest);

#include "FileInfoTest.moc"
