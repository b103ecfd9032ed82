#include <KxUI/base/FrameRange.h>

#include <support/TestRegistry.h>

#include <QtTest>

using Kestrel::Base::FrameRange;
using Kestrel::Base::parseFrameRange;

class FrameRangeTest : public QObject {
    Q_OBJECT

private slots:
    void reads() {
        QVERIFY(parseFrameRange("7") == FrameRange(7, 7));
        QVERIFY(parseFrameRange("1-10") == FrameRange(1, 10));
        QVERIFY(parseFrameRange("-5--1") == FrameRange(-5, -1));
        QVERIFY(parseFrameRange("1-10x3") == FrameRange(1, 10, 3));
        QVERIFY(parseFrameRange("10-40,10") == FrameRange(10, 40, 10));
    }

    void refuses() {
        for (const char* text : {"", "a", "1-", "-", "10-1", "1-10x", "1-10x0", "1-10x-1", "1-10 ",
                                 " 1", "1-10x2x", "5x2", "99999999999", "1-99999999999"}) {
            std::string error;
            QVERIFY2(!parseFrameRange(text, &error), text);
            QCOMPARE(error, "Frame range failed to parser: \"" + std::string(text) + "\"");
        }
    }
};

KXUI_TEST(FrameRangeTest);
#include "FrameRangeTest.moc"
