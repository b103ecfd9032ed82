#include <KxUI/picker/ColorText_p.h>

#include "Transforms.h"
#include <support/TestRegistry.h>

#include <QtTest>

#include <limits>
#include <stdexcept>

using namespace Kestrel::UI;
using Kestrel::Test::gammaTransform;
using Kestrel::Test::inverseTransform;

namespace {

constexpr float Infinite = std::numeric_limits<float>::infinity();

float code(int of255) {
    return static_cast<float>(of255) / 255.0F;
}

} // namespace

class ColorTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reads_data() {
        QTest::addColumn<ColorValue>("color");
        QTest::addColumn<bool>("hasAlpha");
        const ColorValue orange{1.0F, code(136), 0.0F, 1.0F};
        const ColorValue clear{1.0F, code(136), 0.0F, code(51)};
        const ColorValue light{0.18F, 0.2F, 0.3F, 1.0F};
        const auto rows = [](std::initializer_list<const char*> texts, const ColorValue& color,
                             bool hasAlpha = false) {
            for (const char* text : texts)
                QTest::newRow(text) << color << hasAlpha;
        };
        rows({"#f80", "#FF8800", "ff8800", " f80 ", "0xff8800", "0XF80", "rgb(255, 136, 0)",
              "rgb(255 136 0)", "RGB(100%,53.333333%,0%)", "#ff8800;"},
             orange);
        rows({"#f803", "#ff880033", "0xff880033", "rgba(255, 136, 0, 0.2)", "rgb(255 136 0 / 20%)"},
             clear, true);
        rows({"0.18 0.2 0.3", "0.18, 0.2, 0.3", "0.18,0.2,0.3", "{0.18f, 0.2f, 0.3f}",
              "[.18 .2 .3]", "(0.18, 0.2, 0.3)", "0,18 0,2 0,3", "0,18; 0,2; 0,3", "+0.18 2e-1 0.3",
              "0.18\t0.2\n0.3"},
             light);
        rows({"0.18 0.2 0.3 1", "0.18, 0.2, 0.3, 7"}, light, true);
        rows({"\u22121.5 0 1000"}, {-1.5F, 0.0F, 1000.0F, 1.0F});
        rows({"steelblue", "Steel Blue"}, {code(70), code(130), code(180), 1.0F});
        rows({"transparent"}, {0.0F, 0.0F, 0.0F, 0.0F}, true);
    }
    void reads() {
        QFETCH(ColorValue, color);
        QFETCH(bool, hasAlpha);
        const ColorText read = readColorText(QString::fromUtf8(QTest::currentDataTag()), {});
        QCOMPARE(int(read.problem), int(ColorText::None));
        QVERIFY(qAbs(read.color.green - color.green) < 1e-6F);
        QCOMPARE(read.color.red, color.red);
        QCOMPARE(read.color.blue, color.blue);
        QCOMPARE(read.color.alpha, color.alpha);
        QCOMPARE(read.hasAlpha, hasAlpha);
    }

    void refuses() {
        for (const char* text : {"",           " ",
                                 "#",          "#12",
                                 "#12345",     "#1234567",
                                 "#ggg",       "0x",
                                 "12 34",      "1 2 3 4 5",
                                 "1e39 0 0",   "nan 0 0",
                                 "inf 0 0",    "0.1,0.2 0.3 1",
                                 "rgb(1,2)",   "rgb(1,2,3",
                                 "rgb(a,b,c)", "bluish",
                                 "{1 2 3",     "--1 0 0",
                                 "+-1 0 0",    "\u0663\u0663\u0663"})
            QVERIFY2(readColorText(QString::fromUtf8(text), {}).problem == ColorText::Unreadable,
                     text);
        const QString longest = QString(LongestColorText, QLatin1Char(' '));
        QVERIFY(readColorText(longest + QStringLiteral("#fff"), {}).problem ==
                ColorText::Unreadable);
    }

    // Codes and names are the screen's, numbers are light.
    void goesThroughTheDisplay() {
        const DisplayCall display{gammaTransform()};
        const ColorText grey = readColorText(QStringLiteral("#808080"), display);
        QVERIFY(qAbs(grey.color.red - std::pow(code(128), 2.4F)) < 1e-6F);
        QCOMPARE(readColorText(QStringLiteral("0.5 0.5 0.5"), display).color.red, 0.5F);
        for (int i = 0; i < 256; ++i) {
            const auto text = QStringLiteral("#%1%2%3")
                                  .arg(i, 2, 16, QLatin1Char('0'))
                                  .arg(255 - i, 2, 16, QLatin1Char('0'))
                                  .arg(i * 7 % 256, 2, 16, QLatin1Char('0'));
            QCOMPARE(colorCode(readColorText(text, display).color, display).text, text);
        }

        DisplayTransform oneWay = gammaTransform();
        oneWay.fromDisplay = nullptr;
        const DisplayCall shownOnly(oneWay);
        QVERIFY(readColorText(QStringLiteral("#808080"), shownOnly).problem ==
                ColorText::NoWayBack);
        QVERIFY(readColorText(QStringLiteral("1 2 3"), shownOnly).problem == ColorText::None);
        QCOMPARE(colorPlainText({1.0F, 0.5F, 0.0F, 1.0F}, shownOnly), QStringLiteral("1 0.5 0 1"));
    }

    void writes() {
        QCOMPARE(colorCode({1.0F, code(136), 0.0F, 1.0F}, {}).text, QStringLiteral("#ff8800"));
        QCOMPARE(colorCode({1.0F, code(136), 0.0F, 0.2F}, {}).text, QStringLiteral("#ff880033"));
        const ColorCode clipped = colorCode({4.0F, -1.0F, Infinite, 1.0F}, {});
        QCOMPARE(clipped.text, QStringLiteral("#ff00ff"));
        QVERIFY(clipped.isClipped);
        QVERIFY(!colorCode({1.001F, -0.001F, 0.5F, 1.0F}, {}).isClipped);
        QCOMPARE(colorCode({NAN, 0.0F, 0.0F, 1.0F}, {}).text, QStringLiteral("#000000"));
        QCOMPARE(colorPlainText({4.0F, 0.18F, -0.0F, 1.0F}, {}), QStringLiteral("4 0.18 0 1"));
        const ColorValue exact{1.0F / 3.0F, 1e-30F, 123456.79F, 0.7F};
        const ColorText read = readColorText(colorNumbers(exact), {});
        QVERIFY(read.color == exact && read.hasAlpha);
    }

    void throwingTransforms() {
        const auto thrown = [](float* rgb, int) {
            rgb[0] = -99.0F;
            throw std::runtime_error("no processor");
        };
        const DisplayCall display(DisplayTransform{thrown, thrown, QString()});
        QTest::ignoreMessage(QtWarningMsg, "KxUI - a display transform threw: no processor");
        QCOMPARE(display.shown({1.0F, 0.5F, 0.0F, 1.0F}), QColor(255, 128, 0));
        QCOMPARE(colorCode({1.0F, 0.5F, 0.0F, 1.0F}, display).text, QStringLiteral("#ff8000"));
        QVERIFY(readColorText(QStringLiteral("#fff"), display).problem == ColorText::NoWayBack);
        QVERIFY(display.number() != DisplayCall(inverseTransform()).number());
    }
};

KXUI_TEST(ColorTextTest);
#include "ColorTextTest.moc"
