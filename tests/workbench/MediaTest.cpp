#include <support/TestRegistry.h>

#include "media/ChannelPick.h"
#include "media/DisplayTable.h"
#include "media/DroppedPaths.h"
#include "media/HistogramCounter.h"
#include "media/ListedSequence.h"
#include "media/Paths.h"
#include "media/PixelValues.h"
#include "panels/FittedRect.h"

#include <QMimeData>

using namespace Kestrel::Workbench;
using Members = std::vector<Sequence::Member>;
using Kestrel::UI::FileInfo;

/** What is worked out of names and numbers, without a file. */
class MediaTest : public QObject {
    Q_OBJECT

private slots:
    void channels() {
        QCOMPARE(pickChannels({"R", "G", "B", "A"}), (ChannelPick{0, 1, 2}));
        QCOMPARE(pickChannels({"Z", "b", "a", "g", "r"}), (ChannelPick{4, 3, 1}));
        QCOMPARE(pickChannels({"depth.Z", "spec.R", "diff.R", "diff.B", "diff.G"}),
                 (ChannelPick{2, 4, 3}));
        QCOMPARE(pickChannels({"BY", "RY", "Y"}), (ChannelPick{2, 2, 2}));
        QCOMPARE(pickChannels({"u", "v"}), (ChannelPick{0, 0, 0}));
        QCOMPARE(pickChannels({"N.x", "N.y", "N.z", "id"}), (ChannelPick{0, 1, 2}));
    }

    void encodings() {
        QCOMPARE(encodingOf("", true), Encoding::SceneLinear);
        QCOMPARE(encodingOf("", false), Encoding::Display);
        QCOMPARE(encodingOf("Linear", false), Encoding::SceneLinear);
        QCOMPARE(encodingOf("sRGB", true), Encoding::Display);
        QCOMPARE(encodingOf("KodakLog", false), Encoding::FilmLog);
    }

    void tables() {
        const DisplayTable& half = halfTable(Encoding::SceneLinear);
        QCOMPARE(int(half[0x0000]), 0);
        QCOMPARE(int(half[0x3c00]), 255); // 1
        QCOMPARE(int(half[0x3800]), 188); // 0.5
        QCOMPARE(int(half[0x4800]), 255); // 8
        QCOMPARE(int(half[0x7c00]), 255); // infinity
        QCOMPARE(int(half[0x7e00]), 0);   // not a number
        QCOMPARE(int(half[0xbc00]), 0);   // -1
        QCOMPARE(int(halfTable(Encoding::Display)[0x3800]), 128);

        const DisplayTable& log = integerTable(Encoding::FilmLog);
        QCOMPARE(int(log[95 * 65535 / 1023]), 0);
        QVERIFY(log[685 * 65535 / 1023 + 64] >= 254);
        // Mid grey, code 470 by convention, is about 0.18 in light.
        QVERIFY(std::abs(int(log[470 * 65535 / 1023]) - 118) <= 3);
        QVERIFY(std::is_sorted(log.begin(), log.end()));
        QCOMPARE(int(integerTable(Encoding::SceneLinear)[32768]), 188);
    }

    void histograms() {
        QImage picture(3, 2, QImage::Format_RGB32);
        picture.fill(qRgb(10, 20, 255));
        picture.setPixel(2, 1, qRgb(10, 0, 0));
        const Histogram small = Histogram::of(picture);
        QCOMPARE(small.channels[0][10], 6U);
        QCOMPARE(small.channels[1][20], 5U);
        QCOMPARE(small.channels[2][0], 1U);
        // Of a large one a part of the rows, from top to bottom.
        QImage large(1024, 4096, QImage::Format_RGB32);
        for (int y = 0; y < large.height(); ++y)
            std::fill_n(reinterpret_cast<QRgb*>(large.scanLine(y)), 1024, qRgb(y / 16, 0, 0));
        const Histogram rows = Histogram::of(large);
        for (const std::uint32_t count : rows.channels[0])
            QCOMPARE(count, 4096U);
        QCOMPARE(Histogram::of(QImage(2, 2, QImage::Format_RGB888)).channels[0][0], 0U);

        HistogramCounter counter;
        QSignalSpy counted(&counter, &HistogramCounter::counted);
        const auto frame = std::make_shared<Frame>();
        frame->state = Frame::State::Ready;
        frame->image = picture;
        counter.count(frame);
        QTRY_COMPARE(counter.histogram().channels[0][10], 6U);
        counter.count(frame); // no need to
        counter.count(nullptr);
        QCOMPARE(counter.histogram().channels[0][10], 0U);
        QCOMPARE(counted.count(), 2);
    }

    void pixels() {
        Frame source;
        source.state = Frame::State::Ready;
        source.image = QImage(2, 2, QImage::Format_RGB32);
        source.image.fill(qRgb(0, 51, 255));
        Frame shown = source;
        shown.image.fill(qRgb(1, 2, 3));
        const auto codes = PixelValues::of(source, shown, {1, 1});
        QCOMPARE(codes->text(), QStringLiteral("0 51 255 \u2192 1 2 3"));
        QCOMPARE(codes->light[2], 1.0);
        auto samples = std::make_shared<Samples>();
        samples->format = {SampleFormat::Type::Half, Encoding::SceneLinear};
        samples->rgb = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0x3800, 0x4200, 0xbc00}; // 0.5, 3, -1
        source.samples = samples;
        const auto numbers = PixelValues::of(source, shown, {1, 1});
        QCOMPARE(numbers->text(), QStringLiteral("0.5 3 -1 \u2192 1 2 3"));
        QCOMPARE(numbers->light[1], 3.0);
        QVERIFY(!PixelValues::of(source, shown, {2, 0}));
        QVERIFY(!PixelValues::of(Frame(), shown, {0, 0}));

        const QRectF target(10, 20, 30, 20);
        QCOMPARE(pixelAt({10, 20}, target, {3, 2}), QPoint(0, 0));
        QCOMPARE(pixelAt({39.9, 39.9}, target, {3, 2}), QPoint(2, 1));
        QCOMPARE(pixelAt({9.9, 25}, target, {3, 2}), QPoint(-1, -1));
        QCOMPARE(pixelAt({40, 25}, target, {3, 2}), QPoint(-1, -1));
    }

    void sequences() {
        const Sequence threes(QString(), "/d", {{7, "c"}, {1, "a"}, {4, "b"}, {4, "second"}});
        QCOMPARE(threes.step(), Kestrel::Base::Time(3));
        QCOMPARE(threes.missingCount(), Kestrel::Base::Time(0));
        QCOMPARE(threes.path(4), std::string("/d/b"));
        QCOMPARE(threes.path(5), std::string());
        QCOMPARE(threes.heldTime(6).value_or(-1), Kestrel::Base::Time(4));
        QVERIFY(!threes.heldTime(0) && !threes.heldTime(8));

        const Sequence gap(QString(), "/d", {{1, "a"}, {2, "b"}, {5, "c"}});
        QCOMPARE(gap.missingCount(), Kestrel::Base::Time(2));
        QVERIFY(!gap.heldTime(3));
        const Sequence single(QString(), "/", {{9, "a"}});
        QCOMPARE(single.path(9), std::string("/a"));
        QCOMPARE(Sequence().lastTime(), Kestrel::Base::InvalidTime);
    }

    void listedSequences() {
        const Sequence gaps = sequenceOf(FileInfo("a b.##.exr 1-10,3 ( 1-4  10-10 )", true));
        QCOMPARE(gaps.title(), QStringLiteral("a b.##.exr"));
        QCOMPARE(gaps.members(),
                 (Members{{1, "a b.01.exr"}, {4, "a b.04.exr"}, {10, "a b.10.exr"}}));
        QCOMPARE(gaps.step(), Kestrel::Base::Time(3));
        QCOMPARE(timeOf(gaps, "a b.04.exr"), Kestrel::Base::Time(4));
        QCOMPARE(timeOf(gaps, "a b.05.exr"), Kestrel::Base::InvalidTime);
        QCOMPARE(fileNameOf(pathOf(gaps)), std::string("a b.##.exr"));
        // A name that is not UTF-8 comes back by its files.
        const Sequence bytes = sequenceOf(FileInfo("gr\xff#.png 9-10", true));
        QCOMPARE(bytes.members().front().second, std::string("gr\xff"
                                                             "9.png"));
        QCOMPARE(fileNameOf(pathOf(bytes)), std::string("gr\xff"
                                                        "9.png"));
        QVERIFY(pathOf(Sequence()).empty());
        const std::pair<const char*, int> lone[] = {
            {"still.0042.exr", 42}, {"v2", 2}, {"plain.exr", 1}, {"a99999999999999999999.exr", 1}};
        for (const auto& [name, frame] : lone)
            QCOMPARE(sequenceOf(FileInfo(name, false)).members(), (Members{{frame, name}}));
    }

    void drops() {
        QMimeData files;
        files.setData("text/uri-list", "file:///a%20b/x.exr\r\nhttp://host/y\r\n"
                                       "file://localhost/gr%FF\r\nfile://other/z\r\n");
        QCOMPARE(droppedPaths(files), (QList<QByteArray>{"/a b/x.exr", "/gr\xff"}));
        files.setData("application/x-kxui-paths", QByteArray("/s.####.exr\0/t\0", 15));
        QCOMPARE(droppedPaths(files), (QList<QByteArray>{"/s.####.exr", "/t"}));
        QVERIFY(droppedPaths(QMimeData()).isEmpty());
    }

    void paths() {
        QCOMPARE(joinPath("/", "b"), std::string("/b"));
        QCOMPARE(parentFolder("/a/b/"), std::string("/a"));
        QCOMPARE(parentFolder("/"), std::string("/"));
        QCOMPARE(fileNameOf("/a/b c"), std::string("b c"));
        const std::string here = QDir::currentPath().toStdString();
        QCOMPARE(absolutePath("."), here);
        QCOMPARE(absolutePath("x/../y/"), here + "/y");
        QCOMPARE(absolutePath("/a//b/."), std::string("/a/b"));
        QCOMPARE(absolutePath("/odd\\name"), std::string("/odd\\name"));
        QCOMPARE(absolutePath("~/x"), QDir::homePath().toStdString() + "/x");
    }

    void fitting() {
        const QRectF area(10, 10, 100, 100);
        QCOMPARE(fittedRect({200, 100}, area), QRectF(10, 35, 100, 50));
        QCOMPARE(fittedRect({1, 4}, area), QRectF(47.5, 10, 25, 100));
        QVERIFY(fittedRect({0, 4}, area).isEmpty() && fittedRect({1, 1}, QRectF()).isEmpty());
    }
};

KXUI_TEST(MediaTest);
#include "MediaTest.moc"
