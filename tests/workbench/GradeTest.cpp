#include <support/TestRegistry.h>

#include "grade/PreparedGrade.h"

#include <half.h>

#include <QtTest>

#include <algorithm>
#include <cmath>

using namespace Kestrel::Workbench;
using Kestrel::UI::Curve;
namespace UI = Kestrel::UI;

/** Grades as values, and the engine against the same sums done one by one. */
class GradeTest : public QObject {
    Q_OBJECT

private:
    using Type = SampleFormat::Type;

    static Curve bent(float x, float y) {
        Curve curve(8, 3);
        curve.setKnot(1, {x, y, false});
        return curve;
    }

    static double srgb(double light) {
        return light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
    }

    static double light(const SampleFormat& format, std::uint16_t sample) {
        double value = sample / (format.type == Type::Byte ? 255.0 : 65535.0);
        if (format.type == Type::Half) {
            half number;
            number.setBits(sample);
            value = double(float(number));
        }
        if (format.encoding == Encoding::FilmLog) {
            const double black = std::pow(10.0, (95 - 685) * 0.002 / 0.6);
            return (std::pow(10.0, (value * 1023 - 685) * 0.002 / 0.6) - black) / (1 - black);
        }
        if (format.encoding == Encoding::Display)
            return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        return value;
    }

    static int graded(const Grade& grade, const SampleFormat& format, std::uint16_t sample,
                      int channel) {
        const double bright = light(format, sample) * double(gainFactors(grade.gain)[channel]) *
                              std::exp2(double(grade.exposure));
        const auto unit = [](float value) { return std::clamp(value, 0.0F, 1.0F); };
        const auto at = std::size_t(channel);
        const double encoded = std::min(bright > 0.0 ? srgb(bright) : 0.0, 1e6);
        const double moved =
            encoded * double(grade.balance.highlights[at]) + double(grade.balance.shadows[at]);
        const float signal =
            unit(float(std::pow(std::max(moved, 0.0), double(grade.balance.midtones[at]))));
        const float own = unit(grade.curves.curve(channel).valueAt(signal));
        return int(std::lround(unit(grade.curves.curve(Grade::Master).valueAt(own)) * 255.0F));
    }

private slots:
    void engine_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("encoding");
        QTest::newRow("8 bits") << int(Type::Byte) << int(Encoding::Display);
        QTest::newRow("half, light") << int(Type::Half) << int(Encoding::SceneLinear);
        QTest::newRow("half, signal") << int(Type::Half) << int(Encoding::Display);
        QTest::newRow("16 bits, light") << int(Type::Integer16) << int(Encoding::SceneLinear);
        QTest::newRow("16 bits, film") << int(Type::Integer16) << int(Encoding::FilmLog);
        QTest::newRow("16 bits, signal") << int(Type::Integer16) << int(Encoding::Display);
    }

    void engine() {
        QFETCH(int, type);
        QFETCH(int, encoding);
        const SampleFormat format{Type(type), Encoding(encoding)};
        Grade exposed;
        exposed.exposure = -1.5F;
        exposed.gain = {0.6F, 0.3F, 1.2F};
        Grade curved = exposed;
        curved.curves.setCurve(Grade::Red, bent(0.3F, 0.5F));
        curved.curves.setCurve(Grade::Blue, bent(0.8F, 0.2F));
        curved.curves.setCurve(Grade::Master, bent(0.5F, 0.35F));
        Grade balanced = curved;
        balanced.balance = {{0.1F, 0.0F, -0.05F}, {1.0F, 0.6F, 1.8F}, {0.5F, 1.1F, 0.0F}};
        const int samples = type == int(Type::Byte) ? 256 : 65536;
        std::vector<QRgb> out(std::size_t(samples), 0);
        for (const Grade& grade : {exposed, curved, balanced}) {
            const PreparedGrade prepared(grade, format);
            std::vector<std::uint16_t> rgb;
            std::vector<QRgb> codes;
            for (int i = 0; i < samples; ++i) {
                rgb.insert(rgb.end(), 3, std::uint16_t(i));
                codes.push_back(qRgb(i, i, i));
            }
            if (samples == 256)
                prepared.gradeRow(codes.data(), out.data(), samples);
            else
                prepared.gradeRow(rgb.data(), out.data(), samples);
            for (int i = 0; i < samples; ++i) {
                const QRgb pixel = out[std::size_t(i)];
                const int found[] = {qRed(pixel), qGreen(pixel), qBlue(pixel)};
                QCOMPARE(qAlpha(pixel), 255);
                for (int channel = 0; channel < 3; ++channel) {
                    // The table of the curves has 16 bits, so a code may fall to its neighbour.
                    const int expected = graded(grade, format, std::uint16_t(i), channel);
                    if (std::abs(found[channel] - expected) > 1)
                        QFAIL(qPrintable(QStringLiteral("sample %1, channel %2: %3, not %4")
                                             .arg(i)
                                             .arg(channel)
                                             .arg(found[channel])
                                             .arg(expected)));
                }
            }
        }
    }

    /** The signal is what the codes are rounded from, with more than they can say. */
    void signal() {
        Grade bright;
        bright.exposure = 2.0F;
        Grade curved = bright;
        curved.curves.setCurve(Grade::Red, bent(0.3F, 0.5F));
        Grade previewed;
        previewed.preview = UI::ColorSpace::Rec709;
        std::vector<std::uint16_t> halves;
        for (int i = 0; i < 65536; ++i)
            halves.insert(halves.end(), 3, std::uint16_t(i));
        const auto signalOf = [](std::uint16_t bits) {
            half number;
            number.setBits(bits);
            return double(float(number));
        };
        for (const Grade& grade : {bright, curved, previewed}) {
            const PreparedGrade prepared(grade, {Type::Half, Encoding::SceneLinear},
                                         PreparedGrade::CodesAndSignal);
            std::vector<QRgb> codes(65536);
            std::vector<std::uint16_t> graded(halves.size());
            prepared.gradeRow(halves.data(), codes.data(), 65536);
            prepared.signalRow(halves.data(), graded.data(), 65536);
            for (std::size_t i = 0; i < codes.size(); ++i) {
                const int code = screenCode(signalOf(graded[i * 3 + 1]));
                // The preview rounds to 8 bits once more on the way of the codes.
                if (std::abs(code - qGreen(codes[i])) > (grade == previewed ? 3 : 1))
                    QFAIL(qPrintable(QStringLiteral("sample %1: %2, not %3")
                                         .arg(i)
                                         .arg(code)
                                         .arg(qGreen(codes[i]))));
            }
        }
        const PreparedGrade prepared(bright, {Type::Half, Encoding::SceneLinear},
                                     PreparedGrade::CodesAndSignal);
        const std::uint16_t light[] = {half(2.0F).bits(), half(-0.25F).bits(), 0x7e00};
        std::uint16_t signal[3];
        prepared.signalRow(light, signal, 1);
        QVERIFY(std::abs(signalOf(signal[0]) - srgb(8.0)) < 0.002);
        QVERIFY(std::abs(signalOf(signal[1]) + 1.0) < 0.001);
        QVERIFY(std::isnan(signalOf(signal[2])));
        const QRgb dark = qRgb(10, 20, 30);
        PreparedGrade({}, {}, PreparedGrade::CodesAndSignal).signalRow(&dark, signal, 1);
        for (int channel = 0; channel < 3; ++channel)
            QVERIFY(std::abs(signalOf(signal[channel]) * 255 - (channel + 1) * 10) < 0.01);
    }

    /** What changes nothing gives the very codes that are shown without a grade. */
    void neutral() {
        std::vector<QRgb> out(65536);
        std::vector<std::uint16_t> rgb;
        for (int i = 0; i < 65536; ++i)
            rgb.insert(rgb.end(), 3, std::uint16_t(i));
        Grade grade;
        grade.exposureKeys.insert({3.0, 0.0});
        QVERIFY(grade.isIdentity());
        grade.exposureKeys.insert({5.0, 1.0});
        QVERIFY(!grade.isIdentity());
        for (const auto type : {Type::Half, Type::Integer16}) {
            const SampleFormat format{type, Encoding::SceneLinear};
            const auto& table =
                type == Type::Half ? halfTable(format.encoding) : integerTable(format.encoding);
            PreparedGrade({grade, format}, grade.exposureAt(3))
                .gradeRow(rgb.data(), out.data(), 65536);
            for (std::size_t i = 0; i < table.size(); ++i)
                QCOMPARE(out[i], qRgb(table[i], table[i], table[i]));
        }
        for (int i = 0; i < 256; ++i)
            out[std::size_t(i)] = qRgb(i, i, i);
        PreparedGrade(Grade(), {}).gradeRow(out.data(), out.data(), 256);
        for (int i = 0; i < 256; ++i)
            QCOMPARE(out[std::size_t(i)], qRgb(i, i, i));
    }

    void exposureKeys() {
        Grade grade;
        grade.setExposureAt(10, 1.5F);
        QVERIFY(!grade.isKeyed());
        QCOMPARE(grade.exposureAt(77), 1.5F);
        grade.addExposureKey(10);
        const Grade one = grade;
        QCOMPARE(grade.exposureAt(77), 1.5F);
        grade.setExposureAt(20, -20.0F);
        QCOMPARE(grade.exposureKeys.size(), std::size_t(2));
        QCOMPARE(grade.exposureAt(20), -Grade::MostStops); // whatever the keys say
        grade.setExposureAt(20, 0.5F);
        QCOMPARE(grade.exposureAt(15), 1.0F);
        grade.addExposureKey(15);
        QCOMPARE(grade.exposureKeyAt(15), 1);
        QCOMPARE(grade.exposureAt(15), 1.0F);
        QCOMPARE(grade.exposureKeyAt(14), -1);
        QVERIFY(grade != one);
        grade.setExposureKeys(one.exposureKeys);
        QVERIFY(grade == one);
        grade.exposure = 0.0F; // nothing to see of it
        QVERIFY(grade == one);
        grade.setExposureKeys({});
        QCOMPARE(grade.exposureAt(3), 1.5F);
    }

    void curveInputs() {
        Grade grade;
        grade.balance.highlights = {0.5F, 1.0F, 2.0F};
        grade.curves.setCurve(Grade::Green, bent(0.5F, 0.25F));
        const auto inputs = grade.curveInputs({0.5, 0.25, 0.25}, -1.0F);
        const double red = srgb(0.25) * 0.5;
        const double green = srgb(0.125);
        QVERIFY(std::abs(inputs[Grade::Red] - red) < 1e-6);
        QVERIFY(std::abs(inputs[Grade::Green] - green) < 1e-6);
        QVERIFY(std::abs(inputs[Grade::Blue] - 2.0 * green) < 1e-6);
        const auto curved = double(grade.curves.curve(Grade::Green).valueAt(float(green)));
        QVERIFY(std::abs(inputs[Grade::Master] - 0.2126 * red - 0.7152 * curved -
                         0.0722 * 2.0 * green) < 1e-6);
    }

    /** By what each 8-bit 4:2:2 stores of two pixels, and of a last one without a partner. */
    void preview() {
        const QRgb pixels[] = {qRgb(200, 40, 90), qRgb(20, 220, 130), qRgb(255, 128, 0)};
        for (int option = 0; option < UI::ColorSpace::Count; ++option) {
            const bool legacy = option == UI::ColorSpace::NovaLegacyMpeg;
            const double lumaCodes = legacy ? 218.0 : 219.0;
            const double chromaCodes = legacy ? 255.0 : 224.0;
            Grade grade;
            grade.preview = option;
            QRgb out[3] = {};
            PreparedGrade(grade, {}).gradeRow(pixels, out, 3);
            const auto& matrix = UI::colorSpaceRgbToYCbCr(option);
            const auto& back = UI::colorSpaceYCbCrToRgb(option);
            const auto row = [](const std::array<float, 3>& by, QRgb pixel) {
                return (double(by[0]) * qRed(pixel) + double(by[1]) * qGreen(pixel) +
                        double(by[2]) * qBlue(pixel)) /
                       255.0;
            };
            for (int i = 0; i < 3; ++i) {
                const QRgb first = pixels[i & ~1];
                const QRgb second = pixels[std::min(i | 1, 2)];
                const auto chroma = [&](const std::array<float, 3>& by) {
                    const double mean = (row(by, first) + row(by, second)) / 2.0;
                    return (std::floor(mean * chromaCodes + 128.5) - 128.0) / chromaCodes;
                };
                const double luma =
                    (std::floor(row(matrix.luma, pixels[i]) * lumaCodes + 16.5) - 16.0) / lumaCodes;
                const double cb = chroma(matrix.cb);
                const double cr = chroma(matrix.cr);
                const double rgb[] = {luma + double(back.crToRed) * cr,
                                      luma + double(back.crToGreen) * cr +
                                          double(back.cbToGreen) * cb,
                                      luma + double(back.cbToBlue) * cb};
                const int found[] = {qRed(out[i]), qGreen(out[i]), qBlue(out[i])};
                for (int channel = 0; channel < 3; ++channel)
                    QCOMPARE(found[channel],
                             int(std::lround(std::clamp(rgb[channel], 0.0, 1.0) * 255.0)));
                QCOMPARE(qAlpha(out[i]), 255);
            }
        }
    }

    void gain() {
        QVERIFY(Grade().isIdentity());
        const GainColor color{0.3F, 0.4F, 1.5F};
        const Factors factors = gainFactors(color);
        QVERIFY(std::abs(0.2126F * factors[0] + 0.7152F * factors[1] + 0.0722F * factors[2] -
                         1.5F) < 1e-5F);
        const GainColor again = gainColor(factors);
        QVERIFY(std::abs(again.hue - color.hue) + std::abs(again.saturation - color.saturation) +
                    std::abs(again.value - color.value) <
                1e-5F);
        // Typed numbers lead back to neutral, and what they cannot tell stays.
        Grade neutral;
        neutral.gain = gainColor({1.0F, 1.0F, 1.0F}, color);
        QVERIFY(neutral.isIdentity());
        QCOMPARE(neutral.gain.hue, color.hue);
        const GainColor black = gainColor({0.0F, -1.0F, 0.0F}, color);
        QCOMPARE(black.saturation, color.saturation);
        QCOMPARE(gainFactors(black), (Factors{0.0F, 0.0F, 0.0F}));
    }
};

KXUI_TEST(GradeTest);
#include "GradeTest.moc"
