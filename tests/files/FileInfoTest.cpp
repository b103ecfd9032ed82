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
        info.setAdditionalInfo(5000000000U, -7, true, true);
        QCOMPARE(info.flags(), 1U | 4U | 8U);
        QVERIFY(info.size() == 5000000000U && info.lastModified() == -7);
        info.setAdditionalInfo(1, 2, false, false);
        QCOMPARE(info.flags(), 8U);
    }

    // Bytes are kept; they are shown as UTF-8 also where the locale does not know it.
    void names() {
        std::setlocale(LC_ALL, "C");
        QCOMPARE(FileInfo("gr\xc3\xbc\xc3\x9f", false).fileName(), QString::fromUtf8("grüß"));
        const FileInfo broken("a\xff.exr", false);
        QCOMPARE(broken.fileName(), QString("a") + QChar(0xFFFD) + ".exr");
        QCOMPARE(broken.rawFileName(), "a\xff.exr");
        QCOMPARE(broken.rawAbsoluteFilePath(), QDir::currentPath().toUtf8() + "/a\xff.exr");
        QCOMPARE(FileInfo(QByteArray(1000, 'x'), false).getFilenameLength(), 1000);
        QCOMPARE(FileInfo(nullptr, true).fileName(), QString());
    }

    void sequenceName() {
        FileInfo info("/d/img.#.exr", true);
        for (const int frame : {1, 2, 3, 5, 8, 9})
            info.insertSequenceFile(frame, nullptr);
        info.setFrameInformation(0, 0, 4);
        QCOMPARE(info.getSequenceLongName(), QString("/d/img.####.exr 1-9 ( 1-3 5 8-9 )"));
        QVERIFY(!info.sequenceNameBuilt());
        info.constructSequenceName();
        QVERIFY(info.sequenceNameBuilt() && info.hasGaps());
        QCOMPARE(info.frameRanges(), (std::vector<FrameRange>{{1, 3}, {5, 5}, {8, 9}}));
        QCOMPARE(info.rawFramePath(12), QByteArray("/d/img.0012.exr"));
        QCOMPARE(info.rawFramePath(12345), QByteArray("/d/img.12345.exr"));

        info.setFrameInformation(3, 4, 2);
        info.constructSequenceName();
        QCOMPARE(info.sequenceName(), QString("/d/img.####.exr 1-9"));
        info.clearSequenceList();
        info.constructSequenceName();
        QCOMPARE(info.getSequenceLongName(), QString("/d/img.##.exr 3-4"));

        info.clearSequenceList();
        info.insertSequenceFile(7, nullptr);
        info.constructSequenceName();
        QCOMPARE(info.sequenceName(), QString("/d/img.#.exr"));
    }

    void extensions() {
        FileManager::setInitialSequenceExtensions();
        QVERIFY(FileInfo::isSequenceExtension("exr") && FileInfo::isSequenceExtension(".TIFF16"));
        QVERIFY(!FileInfo::isSequenceExtension("..exr") && !FileInfo::isSequenceExtension(nullptr));

        FileInfo mesh("m.#.OBJ", true);
        mesh.setFrameInformation(1, 2, 1);
        QVERIFY(!mesh.isAutoSequence());
        FileManager::addSequenceFileExtension(".Obj");
        QVERIFY(!mesh.isAutoSequence());
        mesh.clearSequenceList();
        QVERIFY(mesh.isAutoSequence());
    }
};

KXUI_TEST(FileInfoTest);

#include "FileInfoTest.moc"
