#include <KxUI/base/Timecode.h>

#include <support/TestRegistry.h>

#include <QtTest>

#include <limits>

using namespace Kestrel::Base;

namespace {

constexpr Time Largest = std::numeric_limits<Time>::max();
const TimeBase bases[] = {
    TimeBase(25, false),  TimeBase(30, true), TimeBase(60, true), TimeBase(24, true),
    TimeBase(240, false), TimeBase(12.5),     TimeBase(0.0),      TimeBase()};
enum BaseIndex { Fps25, Fps2997, Fps5994, Fps23976, Fps240, Fps12_5, FpsZero, FpsInvalid };

} // namespace

class TimecodeTest : public QObject {
    Q_OBJECT

private slots:
    void format_data() {
        QTest::addColumn<Time>("time");
        QTest::addColumn<int>("base");
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("showPlus");
        QTest::addColumn<Time>("offset");
        QTest::addColumn<QString>("text");
        const auto row = [](Time time, BaseIndex base, int type, const char* text, Time offset = 0,
                            bool showPlus = false) {
            QTest::addRow("%lld %d %d %lld%s", static_cast<long long>(time), base, type,
                          static_cast<long long>(offset), showPlus ? " plus" : "")
                << time << int{base} << type << showPlus << offset << QString::fromLatin1(text);
        };
        using namespace Timecode;
        row(93784, Fps25, Timecode::Timecode, "01:02:31:09");
        row(93784, Fps25, DropFrameTimecode, "01:02:31:09");
        row(-1, Fps25, Timecode::Timecode, "-00:00:00:01");
        row(-1, Fps25, Timecode::Timecode, "+00:00:00:01", 2, true);
        row(-1, Fps25, Timecode::Timecode, "00:00:00:00", 1);
        row(24 * 3600 * 25, Fps25, Timecode::Timecode, "00:00:00:00");
        row(24 * 3600 * 25 - 1, Fps25, Timecode::Timecode, "23:59:59:24");
        row(239, Fps240, Timecode::Timecode, "00:00:00:239");
        row(18, Fps12_5, Timecode::Timecode, "00:00:01:05");
        row(1799, Fps2997, DropFrameTimecode, "00;00;59;29");
        row(1800, Fps2997, DropFrameTimecode, "00;01;00;02");
        row(1800, Fps2997, Timecode::Timecode, "00:01:00:00");
        row(17981, Fps2997, DropFrameTimecode, "00;09;59;29");
        row(17982, Fps2997, DropFrameTimecode, "00;10;00;00");
        row(-1800, Fps2997, DropFrameTimecode, "-00;01;00;02");
        row(3600, Fps5994, DropFrameTimecode, "00;01;00;04");
        row(1440, Fps23976, DropFrameTimecode, "00:01:00:00");
        row(1800, FpsZero, Timecode::Timecode, "00:00:00:00");
        row(-1800, FpsInvalid, DropFrameTimecode, "-00:00:00:00");
        row(7, FpsInvalid, Timecode::Timecode, "+00:00:00:00", 0, true);
        row(-42, Fps25, Frames, "-42");
        row(42, Fps25, Frames, "42", 0, true);
        row(Time{1} << 31, Fps25, Frames, "-2147483648");
        row(FpsInvalid, FpsInvalid, Frames, "7");
        row(485, Fps25, FeetFrames40, "12+05");
        row(-197, Fps25, FeetFrames16, "-12+05");
        row(1600, Fps25, FeetFrames16, "+100+00", 0, true);
        row(Time{40} << 31, Fps25, FeetFrames40, "-2147483648+00");
        row(InvalidTime, Fps25, Frames, "--", 5);
        row(InvalidTime, Fps25, Timecode::Timecode, "--:--:--:--", 5, true);
        row(InvalidTime, Fps2997, DropFrameTimecode, "--;--;--;--");
        row(InvalidTime, Fps25, DropFrameTimecode, "--:--:--:--");
        row(InvalidTime, Fps25, FeetFrames16, "--:--:--:--");
        row(InvalidTime, Fps25, 5, "--:--:--:--");
        row(5, Fps25, 5, "");
        // Sums wrap; the most negative one has no positive counterpart in 64 bits.
        row(Largest, Fps25, Timecode::Timecode, "00:37:12:07");
        row(Largest, Fps25, Timecode::Timecode, "-00:37:12:08", 1);
        row(Largest, Fps25, FeetFrames16, "-00+00", 1);
        row(Largest, Fps2997, DropFrameTimecode, "22;22;15;29");
        row(Largest, Fps2997, DropFrameTimecode, "-22;22;16;00", 1);
    }

    void format() {
        QFETCH(Time, time);
        QFETCH(int, base);
        QFETCH(int, type);
        QFETCH(bool, showPlus);
        QFETCH(Time, offset);
        const auto displayType = static_cast<Timecode::DisplayType>(type);
        const std::string text =
            Timecode::toString(time, bases[base], displayType, showPlus, offset);
        QTEST(QString::fromStdString(text), "text");
        char buffer[Timecode::MaximumLength];
        const std::size_t length =
            Timecode::format(buffer, time, bases[base], displayType, showPlus, offset);
        QCOMPARE(QString::fromLatin1(buffer, static_cast<int>(length)),
                 QString::fromStdString(text));
    }

    void parse_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("base");
        QTest::addColumn<int>("type");
        QTest::addColumn<Time>("offset");
        QTest::addColumn<Time>("time");
        QTest::addColumn<int>("fieldCount"); // -1: left alone
        const auto row = [](const char* text, BaseIndex base, int type, Time time, int fieldCount,
                            Time offset = 0) {
            QTest::addRow("\"%s\" %d %d", text, base, type)
                << QString::fromLatin1(text) << int{base} << type << offset << time << fieldCount;
        };
        using namespace Timecode;
        row("01:02:31:09", Fps25, Timecode::Timecode, 93784, 4);
        row("01:02:31:09", Fps25, Timecode::Timecode, 93684, 4, 100);
        row("-1;2.3:4", Fps25, Timecode::Timecode, -93079, 4);
        row("1:2", Fps25, Timecode::Timecode, 27, 2);
        row(":", Fps25, Timecode::Timecode, 0, 2);
        row("1::", Fps25, Timecode::Timecode, 1500, 3);
        row("1.2.3.4.5", Fps25, Timecode::Timecode, InvalidTime, -1);
        row("60:00", Fps25, Timecode::Timecode, InvalidTime, 2);
        row("60:00:00", Fps25, Timecode::Timecode, InvalidTime, 3);
        row("00:25", Fps25, Timecode::Timecode, InvalidTime, 2);
        row("100:0:0:0", Fps25, Timecode::Timecode, 9000000, 4);
        row("000000000000000000000000007:0", Fps25, Timecode::Timecode, 175, 2);
        row("4294967296:0", Fps25, Timecode::Timecode, InvalidTime, 2);
        row("99999999999999999999:0:0:0", Fps25, Timecode::Timecode, -90000, 4);
        row("10203", Fps25, Timecode::Timecode, 1553, 3);
        row("-10203", Fps25, Timecode::Timecode, -1553, 3);
        row("90s", Fps25, Timecode::Timecode, InvalidTime, 2);
        row("-1h", Fps25, Timecode::Timecode, -90000, 4);
        row("2m", Fps25, Timecode::Timecode, 3000, 3);
        row("12+5", Fps25, Timecode::Timecode, 12, 2);
        row("1h2", Fps25, Timecode::Timecode, InvalidTime, -1);
        row("00;01;00;02", Fps2997, DropFrameTimecode, 1800, 4);
        row("00;01;00;00", Fps2997, DropFrameTimecode, 1798, 4);
        row("00;10;00;00", Fps2997, DropFrameTimecode, 17982, 4);
        row("00;01;00;00", Fps2997, Timecode::Timecode, 1800, 4);
        row("00;01;00;04", Fps5994, DropFrameTimecode, 3600, 4);
        row("00;01;00;00", Fps23976, DropFrameTimecode, 1440, 4);
        row("1:00", FpsZero, Timecode::Timecode, 0, 2);
        row("1:01", FpsZero, Timecode::Timecode, InvalidTime, 2);
        row("1:00", FpsInvalid, Timecode::Timecode, InvalidTime, -1);
        row("7", FpsInvalid, Frames, InvalidTime, -1);
        row("-12:30", Fps25, Frames, -12, -1);
        row("5", Fps25, Frames, 4, -1, 1);
        row(".5", Fps25, Frames, 0, -1);
        row("3000000000", Fps25, Frames, 2147483647, -1);
        row("-3000000000", Fps25, Frames, -2147483648, -1);
        row("12+5", Fps25, FeetFrames16, 197, 4, 100);
        row("-12+-5", Fps25, FeetFrames40, -485, 4);
        row("99999999999+0", Fps25, FeetFrames40, 85899345880, 4);
        row("12", Fps25, FeetFrames16, InvalidTime, 4);
        row("12+5", Fps25, 5, InvalidTime, 4);
    }

    void parse() {
        QFETCH(QString, text);
        QFETCH(int, base);
        QFETCH(int, type);
        QFETCH(Time, offset);
        std::int32_t fieldCount = -1;
        const Time time =
            Timecode::fromString(text.toStdString(), bases[base],
                                 static_cast<Timecode::DisplayType>(type), offset, &fieldCount);
        QTEST(time, "time");
        QTEST(int{fieldCount}, "fieldCount");
    }

    // Counts labels the way a person would: one up, and over those that are skipped.
    void dropFrameDay_data() {
        QTest::addColumn<int>("base");
        QTest::newRow("29.97") << int{Fps2997};
        QTest::newRow("59.94") << int{Fps5994};
    }

    void dropFrameDay() {
        QFETCH(int, base);
        const TimeBase& timeBase = bases[base];
        const std::int32_t fps = timeBase.roundedFps();
        Time time = 0;
        for (std::int32_t label = 0; label < fps * 86400; ++label, ++time) {
            const std::int32_t minute = label / fps / 60;
            if (label % (fps * 60) == 0 && minute % 10 != 0)
                label += fps / 15;
            std::int32_t h = 0, m = 0, s = 0, f = 0;
            Timecode::toFields(time, timeBase, true, h, m, s, f);
            if (((h * 60 + m) * 60 + s) * fps + f != label)
                QCOMPARE(((h * 60 + m) * 60 + s) * fps + f, label);
            const std::string text =
                Timecode::toString(time, timeBase, Timecode::DropFrameTimecode);
            const Time back = Timecode::fromString(text, timeBase, Timecode::DropFrameTimecode);
            if (back != time)
                QCOMPARE(back, time);
        }
        QCOMPARE(time, Time{fps} * 86400 - 144 * 9 * (fps / 15));
    }

    // In every form and at every base: what was written reads back, and no time is undefined.
    void everyTimeEverywhere() {
        for (int shift = 0; shift < 64; ++shift) {
            for (const Time step : {-1, 0, 1}) {
                const auto bits = (std::uint64_t{1} << shift) + static_cast<std::uint64_t>(step);
                const auto time = static_cast<Time>(bits);
                for (const TimeBase& base : bases) {
                    for (int type = Timecode::Timecode; type <= Timecode::FeetFrames16; ++type) {
                        const auto displayType = static_cast<Timecode::DisplayType>(type);
                        const std::string text =
                            Timecode::toString(time, base, displayType, true, time / 2);
                        QVERIFY(text.size() <= Timecode::MaximumLength);
                        const bool exact = base.roundedFps() > 0 && time > 0 && time < 1000000;
                        if (exact)
                            QCOMPARE(
                                Timecode::fromString(Timecode::toString(time, base, displayType),
                                                     base, displayType),
                                time);
                        Timecode::fromString(text, base, displayType, time);
                    }
                    std::int32_t h = 0, m = 0, s = 0, f = 0;
                    Timecode::toFields(time, base, true, h, m, s, f);
                    Timecode::fromFields(base, true, static_cast<std::int32_t>(bits), m,
                                         static_cast<std::int32_t>(bits >> 32), f);
                }
                QVERIFY(Timecode::dropFrameOffset(time, 30) >= 0);
            }
        }
    }

    void signOfFields() {
        std::int32_t h = 0, m = 0, s = 0, f = 0;
        Timecode::toFields(-(60 * 25 + 3), bases[Fps25], false, h, m, s, f);
        QCOMPARE(m, -1);
        QCOMPARE(f, 3);
        Timecode::toFields(-3, bases[Fps25], false, h, m, s, f);
        QCOMPARE(f, -3);
    }

    void notation() {
        using namespace Timecode;
        QCOMPARE(displayTypeOf(""), Frames);
        QCOMPARE(displayTypeOf("1.5"), Frames);
        QCOMPARE(displayTypeOf("1;2:3"), Timecode::Timecode);
        QCOMPARE(displayTypeOf("1:2;3."), DropFrameTimecode);
    }
};

KXUI_TEST(TimecodeTest);

#include "TimecodeTest.moc"
