#include "Bars.h"
#include "Pictures.h"

#include <KxUI/scopes/ScopeResult.h>
#include <KxUI/scopes/VectorTargets.h>

#include <support/TestRegistry.h>

#include <QtTest>

#include <array>
#include <cmath>
#include <map>

using namespace Kestrel::UI;
using Kestrel::Test::goldenLines;
using Kestrel::Test::Picture;

namespace {

constexpr int Width = 24;
constexpr int Height = 40;

// The picture of tools/goldens: three planes of 8- or 10-bit codes.
std::array<std::vector<int>, 3> planes(int bits) {
    std::uint32_t state = 1;
    std::array<std::vector<int>, 3> result;
    constexpr std::array<int, 5> Rare{0, 16, 128, 235, 255};
    for (const int depth : {8, 10}) {
        const int unit = depth == 8 ? 1 : 4;
        for (int y = 0; y < Height; ++y) {
            for (int x = 0; x < Width; ++x) {
                std::array<int, 3> noise{};
                for (int& each : noise) {
                    state = state * 1664525U + 1013904223U;
                    each = int(state >> 24);
                }
                if (depth != bits)
                    continue;
                result[0].push_back(std::min(x * 10 + noise[0] / 16, 255) * unit + noise[1] % unit);
                result[1].push_back(y * 6 * unit);
                result[2].push_back(Rare[std::size_t(noise[2] % 5)] * unit);
            }
        }
    }
    return result;
}

Picture picture8(PixelLayout layout, std::array<int, 4> places) {
    Picture picture(layout, Width, Height);
    const auto from = planes(8);
    const std::size_t step = rowBytes(layout, 1);
    for (int y = 0; y < Height; ++y) {
        for (int x = 0; x < Width; ++x) {
            unsigned char* const pixel =
                picture.memory + picture.image.stride * y + std::ptrdiff_t(step) * x;
            for (std::size_t i = 0; i < 3; ++i)
                pixel[places[i]] = static_cast<unsigned char>(from[i][std::size_t(y * Width + x)]);
            if (step == 4)
                pixel[places[3]] = 255;
        }
    }
    return picture;
}

Picture picture10() {
    Picture picture(PixelLayout::RGB10A2, Width, Height);
    const auto from = planes(10);
    for (int y = 0; y < Height; ++y) {
        for (int x = 0; x < Width; ++x) {
            const auto at = std::size_t(y * Width + x);
            const std::uint32_t word = std::uint32_t(from[0][at]) |
                                       std::uint32_t(from[1][at]) << 10 |
                                       std::uint32_t(from[2][at]) << 20 | 3U << 30;
            std::memcpy(picture.memory + picture.image.stride * y + 4 * x, &word, sizeof word);
        }
    }
    return picture;
}

} // namespace

class GoldenTest : public QObject {
    Q_OBJECT

private slots:
    void waveform_data() {
        QTest::addColumn<int>("bits");
        QTest::newRow("8 bits") << 8;
        QTest::newRow("10 bits") << 10;
    }

    void waveform() {
        QFETCH(int, bits);
        const Picture picture = bits == 8 ? picture8(PixelLayout::RGB8, {0, 1, 2}) : picture10();
        ScopeRequest request;
        request.parts = ScopeRequest::Waveform;
        request.waveform.values = ValueRange::ofCodes(bits, true);
        const ScopeWaveform counted = countScopes(picture.image, request).waveform;
        ScopeWaveform golden = counted;
        for (auto& counts : golden.counts)
            std::fill(counts.begin(), counts.end(), 0);
        const auto all = goldenLines(QStringLiteral("waveform%1.txt").arg(bits));
        QCOMPARE(all.size(), 3 * Width);
        for (const QStringList& line : all) {
            const auto channel = std::size_t(line[0].toInt());
            for (int i = 2; i < line.size(); ++i) {
                const QStringList hit = line[i].split(QLatin1Char(':'));
                golden.counts[channel][std::size_t(line[1].toInt() * golden.luma.bins +
                                                   hit[0].toInt())] = hit[1].toUInt();
            }
        }
        QVERIFY(counted.counts == golden.counts);
        QCOMPARE(counted.columnPixels, std::vector<std::uint32_t>(Width, Height));
    }

    // Codes of luma and chroma survive the way to red, green and blue and back.
    void vectors() {
        const Picture picture = picture8(PixelLayout::CbYCrA8, {1, 0, 2, 3});
        ScopeRequest request;
        request.parts = ScopeRequest::Vectors;
        request.vectors.chroma = ValueRange::ofChromaCodes(8, false);
        const ScopeVectors counted = countScopes(picture.image, request).vectors;
        QCOMPARE(counted.size, 256);
        std::vector<std::uint32_t> golden(counted.counts.size());
        for (const QStringList& line : goldenLines(QStringLiteral("vectors8.txt"))) {
            for (int i = 1; i < line.size(); ++i) {
                const QStringList hit = line[i].split(QLatin1Char(':'));
                golden[std::size_t(line[0].toInt() * 256 + hit[0].toInt())] = hit[1].toUInt();
            }
        }
        QVERIFY(counted.counts == golden);
    }

    void histogram() {
        const Picture picture = picture8(PixelLayout::RGB8, {0, 1, 2});
        ScopeRequest request;
        request.parts = ScopeRequest::Values;
        const auto result = countScopes(picture.image, request);
        const ScopeHistogram histogram = result.values.histogram(ValueRange::ofCodes(8, true));
        std::array<std::vector<std::uint32_t>, 3> golden;
        golden.fill(std::vector<std::uint32_t>(256));
        for (const QStringList& line : goldenLines(QStringLiteral("histogram8.txt")))
            golden[std::size_t(line[0].toInt())][std::size_t(line[1].toInt())] = line[2].toUInt();
        for (std::size_t i = 0; i < 3; ++i)
            QVERIFY(histogram.bins[i] == golden[i]);
    }

    // Red, yellow, green, cyan, blue and magenta of the bars are where targets are.
    void bars_data() {
        QTest::addColumn<QString>("bars");
        QTest::addColumn<int>("colorSpace");
        QTest::addColumn<float>("level");
        QTest::newRow("HD") << "smptehdbars" << int(ColorSpace::Rec709) << 0.75F;
        QTest::newRow("PAL 75 %") << "pal75bars" << int(ColorSpace::Rec601) << 0.75F;
        QTest::newRow("PAL 100 %") << "pal100bars" << int(ColorSpace::Rec601) << 1.0F;
    }

    void bars() {
        QFETCH(QString, bars);
        QFETCH(int, colorSpace);
        QFETCH(float, level);
        QSet<QStringList> codes;
        for (const QStringList& line : goldenLines(QStringLiteral("bars.txt"))) {
            if (line[0] == bars)
                codes.insert(line.mid(1, 3));
        }
        for (const VectorTarget& target : vectorTargets(colorSpaceRgbToYCbCr(colorSpace), level)) {
            const auto code = [](float value, int range, int offset) {
                return QString::number(std::lround(value * float(range)) + offset);
            };
            const QStringList expected{code(target.luma, 219, 16), code(target.cb, 224, 128),
                                       code(target.cr, 224, 128)};
            QVERIFY2(codes.contains(expected), qPrintable(expected.join(QLatin1Char(' '))));
        }
    }

    void statistics() {
        const std::array<float, 12> values{NAN,   INFINITY, -INFINITY, -1.0F, -0.0F, 0.0F,
                                           65504, 1e-8F,    0.5F,      1.0F,  0.25F, 2.0F};
        for (const PixelLayout layout : {PixelLayout::RGBFloat, PixelLayout::RGBHalf}) {
            Picture picture(layout, int(values.size()), 1);
            encodeRow(layout, {nullptr, values.data(), values.data(), values.data()},
                      int(values.size()), picture.memory);
            const auto statistics = countScopes(picture.image, ScopeRequest()).statistics;
            const ChannelStatistics& green = statistics.channels[ScopeHistogram::Green];
            std::map<QString, double> golden;
            for (const QStringList& line : goldenLines(QStringLiteral("statistics.txt")))
                golden[line[0]] = line[1].toDouble();
            QCOMPARE(double(green.nan), golden[QStringLiteral("nan")]);
            QCOMPARE(double(green.positiveInfinity + green.negativeInfinity),
                     golden[QStringLiteral("infinite")]);
            QCOMPARE(double(green.finite), golden[QStringLiteral("finite")]);
            QCOMPARE(green.minimum, golden[QStringLiteral("minimum")]);
            QCOMPARE(green.maximum, golden[QStringLiteral("maximum")]);
            QVERIFY(std::fabs(green.mean / golden[QStringLiteral("mean")] - 1) < 1e-7);
            QVERIFY(std::fabs(green.deviation / golden[QStringLiteral("deviation")] - 1) < 1e-7);
            QCOMPARE(green.median, 0.25);
            QCOMPARE(statistics.illegal, std::uint64_t(6));
        }
    }
};

KXUI_TEST(GoldenTest);
#include "GoldenTest.moc"
