#include <KxUI/files/FileInfo.h>
#include <KxUI/files/FileManager.h>

#include <support/TestRegistry.h>

#include <clocale>

using Kestrel::Base::FrameRange;
using namespace Kestrel::UI;

class FileInfoTest : public QObject {
    Q_OBJECT

private slots:
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
        static_assert(!std::is_constructible_v<FileInfo, const char*, const char*>);
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

    // Made from the text of a listing, an item knows what the text says.
    void listingText() {
        const struct {
            const char *text, *frameName, *longName;
            std::vector<FrameRange> present;
            std::int64_t missing;
            int frame;
            const char* path;
        } rows[] = {{"/a b.##.e 1-90", "/a b.##.e", "/a b.##.e 1-90", {{1, 90}}, 0, 7, "/a b.07.e"},
                    {"/q.#.e 8-12,2", "/q.#.e", "/q.#.e 8-12", {{8, 12, 2}}, 0, 10, "/q.10.e"},
                    {"/p#.e 1-9 ( 1-3  5-5 )",
                     "/p#.e",
                     "/p#.e 1-9 ( 1-3 5 )",
                     {{1, 3}, {5, 5}, {9, 9}},
                     4,
                     9,
                     "/p9.e"},
                    {"/#_##.e 1-9,4 ( 1-5 )",
                     "/#_##.e",
                     "/#_##.e 1-9 ( 1-5 )",
                     {{1, 9, 4}},
                     0,
                     5,
                     "/#_05.e"},
                    {"/#.e 3-4 ()", "/#.e", "/#.e 3-4", {{4, 4}}, 1, 4, "/4.e"},
                    {"/v#.e 4-1", "/v#.e 4-1", "/v.e 4-1 0-0", {}, 0, 4, "/v4.e 4-1"},
                    {"/v.e 1-4", "/v.e 1-4", "/v.e 1-4 0-0", {}, 0, 2, "/v.e 1-4"},
                    {"/v#.e 1 ( 1-x )",
                     "/v#.e 1 ( 1-x )",
                     "/v.e 1 ( 1-x ) 0-0",
                     {},
                     0,
                     2,
                     "/v2.e 1 ( 1-x )"}};
        for (const auto& row : rows) {
            const FileInfo info(row.text, true);
            QCOMPARE(info.fileName(), QString(row.text));
            QCOMPARE(info.frameName(), QString(row.frameName));
            QCOMPARE(info.getSequenceLongName(), QString(row.longName));
            QCOMPARE(info.presentRanges(), row.present);
            QCOMPARE(info.missingFrames(), row.missing);
            QCOMPARE(info.hasFrame(row.frame), !row.present.empty());
            QCOMPARE(info.framePath(row.frame), QString(row.path));
        }
        QVERIFY(!FileInfo("img.####.exr 1-100", false).sequenceNameBuilt());
    }

    // A sequence that a host puts together goes by its members, or by its range without any.
    void framesOfMembers() {
        FileInfo file("left/s.7.exr", false);
        FileInfo info("/d/s.#.exr", true);
        QVERIFY(info.presentRanges().empty() && !info.hasFrame(0));
        info.setFrameInformation(4, 9, 1);
        QCOMPARE(info.presentRanges(), (std::vector<FrameRange>{{4, 9}}));
        QVERIFY(info.hasFrame(4) && info.hasFrame(9) && !info.hasFrame(10));
        for (const int frame : {4, 5, 9})
            info.insertSequenceFile(frame, nullptr);
        info.insertSequenceFile(7, &file);
        QCOMPARE(info.presentRanges(), (std::vector<FrameRange>{{4, 5}, {7, 7}, {9, 9}}));
        QVERIFY(info.hasFrame(7) && !info.hasFrame(8));
        QCOMPARE(info.framePath(9), QString("/d/s.9.exr"));
        QCOMPARE(info.framePath(7), QDir::currentPath() + "/left/s.7.exr");

        const FileInfo copy(info);
        info.clearSequenceList();
        QVERIFY(copy.sequenceSize() == 4 && info.sequenceSize() == 0);
        info.setIsSequence(false);
        QVERIFY(info.presentRanges().empty() && !info.hasFrame(7));
    }

    void folderThatIsGone() {
        QTemporaryDir root;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(root.path()) && root.remove());
        const QString path = FileInfo("a", false).absoluteFilePath();
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(path, QString());
    }

    void extensions() {
        FileManager::setInitialSequenceExtensions();
        QVERIFY(FileInfo::isSequenceExtension("exr") && FileInfo::isSequenceExtension(".TIFF16"));
        FileManager::addSequenceFileExtension(nullptr);
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
