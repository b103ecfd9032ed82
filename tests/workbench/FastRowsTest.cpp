#include "TestImages.h"

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include "media/FastRows.h"
#include "media/FrameDecoder.h"

#include <random>

Q_DECLARE_METATYPE(OIIO::ImageSpec)

using namespace Kestrel::Workbench;

/** Fast readers against the general one: pictures, kept samples and words are the same. */
class FastRowsTest : public QObject {
    Q_OBJECT

private:
    /** Shades with steps and noise, so that every filter and both ways of storing a block occur. */
    static bool write(const QString& path, const OIIO::ImageSpec& spec) {
        std::mt19937 random(7);
        std::vector<float> pixels;
        for (int y = 0; y < spec.height; ++y) {
            for (int x = 0; x < spec.width * spec.nchannels; ++x) {
                const float noise = y % 50 < 25 ? float(random() % 1000) / 999.0F : 0.0F;
                pixels.push_back(0.3F * noise + 0.5F * float(x + y) / float(spec.width * 6) -
                                 (y == 3 ? 0.2F : 0.0F));
            }
        }
        const std::string name = path.toStdString();
        const auto output = OIIO::ImageOutput::create(name);
        return output && output->open(name, spec) &&
               output->write_image(OIIO::TypeDesc::FLOAT, pixels.data()) && output->close();
    }

    static OIIO::ImageSpec spec(OIIO::TypeDesc type, const char* compression = "", int bits = 0) {
        OIIO::ImageSpec spec(131, 75, 3, type);
        if (*compression)
            spec["compression"] = compression;
        if (bits > 0)
            spec["oiio:BitsPerSample"] = bits;
        return spec;
    }

    static Frame decode(const QString& path, bool general, bool keepSamples) {
        DecodeLimits limits;
        limits.generalReader = general;
        limits.keepSamples = keepSamples;
        return decodeFrame(path.toStdString(), 1, limits);
    }

    QTemporaryDir m_folder;

private slots:
    void initTestCase() { setUpImageReading(); }

    void sameAsTheGeneralReader_data() {
        const Kestrel::Test::Columns<QString, OIIO::ImageSpec, bool> row("name", "spec", "isKnown");
        const auto half = OIIO::TypeDesc::HALF;
        row("half, ZIP", "a.exr", spec(half, "zip"), true);
        row("half, ZIP of rows", "a.exr", spec(half, "zips"), true);
        row("half, uncompressed", "a.exr", spec(half, "none"), true);
        row("float", "a.exr", spec(OIIO::TypeDesc::FLOAT, "zip"), true);
        OIIO::ImageSpec window = spec(half, "zip");
        window.x = -20;
        window.y = 9;
        window.full_x = 5;
        window.full_width = 90;
        window.full_height = 60;
        row("windows that overlap", "a.exr", window, true);
        OIIO::ImageSpec layers = spec(OIIO::TypeDesc::UNKNOWN, "zip");
        layers.nchannels = 6;
        layers.channelnames = {"R", "G", "B", "A", "Z", "id"};
        layers.channelformats = {
            half, half, half, half, OIIO::TypeDesc::FLOAT, OIIO::TypeDesc::UINT};
        row("layers of other types", "a.exr", layers, true);
        layers.channelformats[1] = OIIO::TypeDesc::FLOAT;
        row("types that differ", "a.exr", layers, false);
        row("PIZ", "a.exr", spec(half, "piz"), false);
        OIIO::ImageSpec tiles = spec(half, "zip");
        tiles.tile_width = tiles.tile_height = 32;
        row("tiles", "a.exr", tiles, false);

        row("PNG", "a.png", spec(OIIO::TypeDesc::UINT8), true);
        row("PNG of 16 bits", "a.png", spec(OIIO::TypeDesc::UINT16), true);
        OIIO::ImageSpec clear = spec(OIIO::TypeDesc::UINT8);
        clear.nchannels = 4;
        clear.default_channel_names();
        row("PNG with alpha", "a.png", clear, false);
    }

    void sameAsTheGeneralReader() {
        QFETCH(QString, name);
        QFETCH(OIIO::ImageSpec, spec);
        QFETCH(bool, isKnown);
        const QString path = m_folder.filePath(name);
        QVERIFY(write(path, spec));
        const auto input = OIIO::ImageInput::open(path.toStdString());
        const OIIO::ImageSpec& read = input->spec();
        const FileLayout layout{
            {read.x, read.y, read.width, read.height}, read.channelnames, {0, 1, 2}};
        const auto reader = name.endsWith("exr") ? fastExrRows : fastPngRows;
        QCOMPARE(reader(path.toStdString(), layout) != nullptr, isKnown);
        for (const bool keeps : {false, true}) {
            const Frame fast = decode(path, false, keeps);
            const Frame general = decode(path, true, keeps);
            QVERIFY2(fast.state == Frame::State::Ready, qPrintable(fast.message));
            QCOMPARE(fast.image, general.image);
            QCOMPARE(fast.samples != nullptr, general.samples != nullptr);
            if (fast.samples)
                QVERIFY(fast.samples->rgb == general.samples->rgb);
        }
    }

    // Whatever byte is damaged and wherever a file ends: a picture or words, never more memory than
    // the file can fill, and where it is cut in the middle the words of the general reader.
    void damagedFiles() {
        for (const QString& name :
             {QStringLiteral("d.exr"), QStringLiteral("d.dpx"), QStringLiteral("d.png")}) {
            const QString path = m_folder.filePath(name);
            QVERIFY(write(path, name.endsWith("dpx")   ? spec(OIIO::TypeDesc::UINT16, "", 10)
                                : name.endsWith("exr") ? spec(OIIO::TypeDesc::HALF, "zip")
                                                       : spec(OIIO::TypeDesc::UINT8)));
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray whole = file.readAll();
            file.close();
            std::mt19937 random(3);
            for (int turn = 0; turn < 200; ++turn) {
                QByteArray bytes = whole;
                const int reach = turn % 2 == 0 ? 600 : int(bytes.size());
                bytes[int(random() % unsigned(qMin<int>(reach, int(bytes.size()))))] =
                    char(random() % 256);
                QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
                file.write(bytes);
                file.close();
                const Frame frame = decode(path, false, turn % 3 == 0);
                QVERIFY(frame.state == Frame::State::Ready || !frame.message.isEmpty());
            }
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(whole.left(int(whole.size()) / 2));
            file.close();
            QCOMPARE(decode(path, false, false).message, decode(path, true, false).message);
        }
    }
};

KXUI_TEST(FastRowsTest);
#include "FastRowsTest.moc"
