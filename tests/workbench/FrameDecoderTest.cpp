#include "TestImages.h"

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include "media/FrameDecoder.h"

#include <sys/stat.h>

using namespace Kestrel::Workbench;
using Kestrel::Test::TestImage;

class FrameDecoderTest : public QObject {
    Q_OBJECT

private:
    static Frame decode(const QString& path, const DecodeLimits& limits = {}) {
        return decodeFrame(QFile::encodeName(path).toStdString(), 1, limits);
    }

    static bool near(QRgb a, QRgb b, int tolerance = 1) {
        return std::abs(qRed(a) - qRed(b)) <= tolerance &&
               std::abs(qGreen(a) - qGreen(b)) <= tolerance &&
               std::abs(qBlue(a) - qBlue(b)) <= tolerance;
    }

    QTemporaryDir m_folder;

private slots:
    void initTestCase() { setUpImageReading(); }

    void formats_data() {
        const Kestrel::Test::Columns<QString, QRgb> row("name", "expected");
        const QRgb linear = qRgb(118, 188, 255);
        const QRgb codes = qRgb(46, 128, 255);
        row("exr", "a.exr", linear);
        row("name of blanks and letters", QString::fromUtf8("größe 1.exr"), linear);
        row("png", "a.png", codes);
        row("jpeg", "a.jpg", codes);
        row("tiff", "a.tif", codes);
        row("dpx", "a.dpx", codes);
    }

    void formats() {
        QFETCH(QString, name);
        QFETCH(QRgb, expected);
        const QString path = m_folder.filePath(name);
        QVERIFY(Kestrel::Test::writeImage(path));
        const Frame frame = decode(path);
        QVERIFY2(frame.state == Frame::State::Ready, qPrintable(frame.message));
        QCOMPARE(frame.image.size(), QSize(32, 18));
        QCOMPARE(frame.fullSize, QSize(32, 18));
        for (const QPoint point : {QPoint(0, 0), QPoint(31, 17)})
            QVERIFY(near(frame.image.pixel(point), expected, 3));
        QVERIFY(frame.format.endsWith(QStringLiteral("3 channels")));
    }

    // The display window is shown; data outside is cut off, what no data covers is black.
    void windows() {
        TestImage image;
        image.spec.x = -8;
        image.spec.y = 4;
        image.spec.full_width = 20;
        image.spec.full_height = 10;
        image.spec["PixelAspectRatio"] = 2.0F;
        const QString path = m_folder.filePath("window.exr");
        QVERIFY(image.write(path));
        const Frame frame = decode(path);
        QVERIFY2(frame.state == Frame::State::Ready, qPrintable(frame.message));
        QCOMPARE(frame.image.size(), QSize(20, 10));
        QCOMPARE(frame.image.pixel(0, 3), qRgb(0, 0, 0));
        QVERIFY(near(frame.image.pixel(0, 4), qRgb(118, 188, 255)));
        QVERIFY(near(frame.image.pixel(19, 9), qRgb(118, 188, 255)));
        QCOMPARE(frame.pixelAspect, 2.0);

        image.spec.x = 100;
        QVERIFY(image.write(path));
        QCOMPARE(decode(path).image.pixel(19, 9), qRgb(0, 0, 0));
    }

    void channelsAndTiles() {
        TestImage image;
        image.spec = OIIO::ImageSpec(70, 50, 40, OIIO::TypeDesc::FLOAT);
        image.spec.channelnames.clear();
        for (int c = 0; c < 40; ++c)
            image.spec.channelnames.push_back("pass" + std::to_string(c) + ".Z");
        image.spec.channelnames[2] = "B";
        image.spec.channelnames[20] = "G";
        image.spec.channelnames[39] = "R";
        image.values.assign(40, 0.0F);
        image.values[2] = 1.0F;
        image.values[20] = 0.5F;
        image.values[39] = 0.18F;
        image.spec.tile_width = 32;
        image.spec.tile_height = 32;
        const QString path = m_folder.filePath("many.exr");
        QVERIFY(image.write(path));
        const Frame frame = decode(path);
        QVERIFY2(frame.state == Frame::State::Ready, qPrintable(frame.message));
        for (const QPoint point : {QPoint(0, 0), QPoint(69, 49), QPoint(33, 31)})
            QVERIFY(near(frame.image.pixel(point), qRgb(118, 188, 255)));

        TestImage grey;
        grey.spec = OIIO::ImageSpec(8, 8, 1, OIIO::TypeDesc::UINT16);
        grey.values = {0.5F};
        QVERIFY(grey.write(m_folder.filePath("grey.tif")));
        QVERIFY(near(decode(m_folder.filePath("grey.tif")).image.pixel(7, 7), qRgb(128, 128, 128)));
    }

    void largeImagesAreReduced() {
        TestImage image;
        image.spec = OIIO::ImageSpec(101, 40, 3, OIIO::TypeDesc::UINT8);
        const QString path = m_folder.filePath("large.png");
        QVERIFY(image.write(path));
        DecodeLimits limits;
        limits.longestEdge = 10;
        const Frame frame = decode(path, limits);
        QCOMPARE(frame.image.size(), QSize(10, 4));
        QCOMPARE(frame.fullSize, QSize(101, 40));
        for (const QPoint point : {QPoint(0, 0), QPoint(9, 3)})
            QVERIFY(near(frame.image.pixel(point), qRgb(46, 128, 255)));
        limits.sourcePixels = 1000;
        const Frame refused = decode(path, limits);
        QCOMPARE(refused.state, Frame::State::Unreadable);
        QVERIFY(refused.message.contains(QStringLiteral("101 x 40")));
    }

    void badFiles() {
        const auto message = [this](const char* name, const QByteArray& content) {
            QFile file(m_folder.filePath(name));
            if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
                return QString();
            file.close();
            const Frame frame = decode(file.fileName());
            return frame.state == Frame::State::Unreadable ? frame.message : QString();
        };
        QVERIFY(message("e.exr", "").contains("empty"));
        QVERIFY(message("t.exr", "hello world").contains("cannot be read"));
        QVERIFY(message("notes.txt", "hi").contains("cannot be read"));
        // Nothing but the beginning of a header.
        QVERIFY(message("p.png", "\x89PNG\r\n\x1a\n").contains("cannot be read"));
        QVERIFY(message("x.exr", QByteArray("\x76\x2f\x31\x01\x02\0\0\0", 8))
                    .contains("cannot be read"));

        QVERIFY(decode(m_folder.filePath("gone.exr")).message.contains("cannot be found"));
        QVERIFY(decode(m_folder.path()).message.contains("not a regular file"));
        // Opening a pipe would wait for ever.
        const QString pipe = m_folder.filePath("pipe.exr");
        QCOMPARE(::mkfifo(QFile::encodeName(pipe), 0600), 0);
        QVERIFY(decode(pipe).message.contains("not a regular file"));
    }

    // Cut short at any length, a file gives a message or a picture, and never a crash.
    void truncatedFiles() {
        for (const char* name : {"cut.exr", "cut.png", "cut.tif", "cut.dpx", "cut.jpg"}) {
            const QString path = m_folder.filePath(name);
            QVERIFY(Kestrel::Test::writeImage(path));
            const qint64 whole = QFileInfo(path).size();
            for (qint64 size = whole - 1; size > 0; size -= qMax<qint64>(whole / 40, 1)) {
                QVERIFY(Kestrel::Test::truncate(path, size));
                const Frame frame = decode(path);
                QVERIFY(frame.state == Frame::State::Ready || !frame.message.isEmpty());
            }
        }
        const QString path = m_folder.filePath("half.exr");
        QVERIFY(Kestrel::Test::writeImage(path));
        QVERIFY(Kestrel::Test::truncate(path, QFileInfo(path).size() / 2));
        QCOMPARE(decode(path).state, Frame::State::Unreadable);
    }

    void cancelled() {
        const QString path = m_folder.filePath("c.exr");
        QVERIFY(Kestrel::Test::writeImage(path));
        const Frame frame = decodeFrame(path.toStdString(), 1, {}, [] { return true; });
        QCOMPARE(frame.state, Frame::State::Unreadable);
        QVERIFY(frame.message.isEmpty());
    }
};

KXUI_TEST(FrameDecoderTest);
#include "FrameDecoderTest.moc"
