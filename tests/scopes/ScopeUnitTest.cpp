#include <KxUI/scopes/Graticule_p.h>
#include <KxUI/scopes/HistogramColumns_p.h>
#include <KxUI/scopes/ScopeDrag_p.h>
#include <KxUI/scopes/Transfer_p.h>
#include <KxUI/scopes/VectorTargets.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <cmath>
#include <numeric>

using namespace Kestrel::UI;

namespace {

bool near(double a, double b, double slack) {
    return std::fabs(a - b) <= slack;
}

} // namespace

class ScopeUnitTest : public QObject {
    Q_OBJECT

private slots:
    // Reference levels of ITU-R BT.2100 and BT.2408, computed elsewhere.
    void signalsOfNits_data() {
        const Kestrel::Test::Columns<double, double, double, double> add("nits", "pq", "hlg",
                                                                         "code");
        add("black", 0.0, 0.0000007, 0.0, 64.0);
        add("1", 1.0, 0.149946, 0.09740, 195.35);
        add("10", 10.0, 0.299699, 0.25423, 326.54);
        add("100", 100.0, 0.508078, 0.62962, 509.08);
        add("white", 203.0, 0.580689, 0.74988, 572.68);
        add("1000", 1000.0, 0.751827, 1.0, 722.60);
        add("10000", 10000.0, 1.0, NAN, 940.0);
    }

    void signalsOfNits() {
        QFETCH(double, nits);
        QFETCH(double, pq);
        QFETCH(double, hlg);
        QFETCH(double, code);
        ScopeEncoding encoding;
        QVERIFY(near(pqSignal(nits), pq, 1e-6));
        QVERIFY(near(toScopeUnit(ScopeUnit::Code10, pqSignal(nits), encoding), code, 0.006));
        QVERIFY(near(toScopeUnit(ScopeUnit::NitsPq, pqSignal(nits), encoding), nits, 1e-6 * nits));
        if (std::isnan(hlg))
            return;
        QVERIFY(near(hlgSignalOfNits(nits, 1000), hlg, 1e-5));
        QVERIFY(near(toScopeUnit(ScopeUnit::NitsHlg, hlgSignalOfNits(nits, 1000), encoding), nits,
                     1e-6 * nits));
    }

    void thereAndBack() {
        for (const auto transfer : {ScopeEncoding::Transfer::AsStored,
                                    ScopeEncoding::Transfer::Srgb, ScopeEncoding::Transfer::Rec709,
                                    ScopeEncoding::Transfer::Pq, ScopeEncoding::Transfer::Hlg}) {
            ScopeEncoding encoding;
            encoding.transfer = transfer;
            for (double light = -0.5; light <= 8; light += 0.01) {
                const double signal = signalOfLight(encoding, light);
                QVERIFY(
                    near(lightOfSignal(encoding, signal), light, 1e-9 + 1e-6 * std::fabs(light)));
                for (int i = 0; i < ScopeUnitCount; ++i) {
                    const auto unit = ScopeUnit(i);
                    const double number = toScopeUnit(unit, signal, encoding);
                    if (!std::isfinite(number))
                        continue;
                    // As far as it is written.
                    QVERIFY(near(fromScopeUnit(unit, number, encoding), signal,
                                 1e-6 + 1e-6 * std::fabs(signal)));
                    const auto read =
                        scopeUnitValue(unit, scopeUnitText(unit, signal, encoding), encoding);
                    QVERIFY(read.has_value());
                    const double again = toScopeUnit(unit, *read, encoding);
                    QVERIFY(near(again, number,
                                 0.51 * std::pow(10, -scopeUnitDecimals(unit, number)) +
                                     1e-6 * std::fabs(number)));
                }
            }
        }
    }

    void texts_data() {
        const Kestrel::Test::Columns<int, QString, double> add("unit", "text", "value");
        add("percent", int(ScopeUnit::Percent), "64.2 %", 0.642);
        add("without unit", int(ScopeUnit::Percent), " 50 ", 0.5);
        add("code", int(ScopeUnit::Code10), "940", 1.0);
        add("millivolt", int(ScopeUnit::Millivolt), "350 MV", 0.5);
        add("infinite", int(ScopeUnit::Value), "-inf", -INFINITY);
        add("no number", int(ScopeUnit::Percent), "", NAN);
        add("another unit", int(ScopeUnit::Percent), "3 mV", NAN);
        add("a word", int(ScopeUnit::Stops), "white", NAN);
    }

    void texts() {
        QFETCH(int, unit);
        QFETCH(QString, text);
        QFETCH(double, value);
        const auto read = scopeUnitValue(ScopeUnit(unit), text.toStdString(), ScopeEncoding());
        QCOMPARE(read.has_value(), !std::isnan(value));
        if (read)
            QCOMPARE(*read, value);
    }

    // ITU-R BT.709's targets in 10-bit codes, and where NTSC's axes lie.
    void targets() {
        const auto& matrix = colorSpaceRgbToYCbCr(ColorSpace::Rec709);
        const std::array<std::array<int, 3>, 6> codes{{{250, 409, 960},
                                                       {877, 64, 553},
                                                       {691, 167, 105},
                                                       {754, 615, 64},
                                                       {127, 960, 471},
                                                       {313, 857, 919}}};
        const auto targets = vectorTargets(matrix, 1);
        for (std::size_t i = 0; i < codes.size(); ++i) {
            QCOMPARE(int(std::lround(targets[i].luma * 876 + 64)), codes[i][0]);
            QCOMPARE(int(std::lround(targets[i].cb * 896 + 512)), codes[i][1]);
            QCOMPARE(int(std::lround(targets[i].cr * 896 + 512)), codes[i][2]);
        }
        QVERIFY(near(double(vectorReach(matrix)), 0.59566, 1e-5));
        QVERIFY(near(vectorAxes(matrix).i, 134.49, 0.005));
        QVERIFY(near(vectorAxes(matrix).q, 23.23, 0.005));
    }

    void graticuleTextsNeverOverlap() {
        for (int i = 0; i < ScopeUnitCount; ++i) {
            for (const bool chroma : {false, true}) {
                for (int size = 10; size < 1000; size = size * 5 / 4 + 1) {
                    GraticuleRules rules;
                    rules.unit = ScopeUnit(i);
                    rules.chroma = chroma;
                    rules.lower = chroma ? -0.6 : -0.1;
                    rules.upper = size % 2 ? 1.1 : 0.3;
                    rules.length = size;
                    rules.limits = true;
                    rules.userLines = {{0.05, {}}, {0.06, {}}, {0.95, {}}};
                    rules.textLength = [](const QString& text) { return 7.0 * int(text.size()); };
                    double end = -1e9;
                    for (const GraticuleLine& line : planGraticule(rules)) {
                        QVERIFY(line.place >= -1e-6 && line.place <= 1 + 1e-6);
                        if (line.text.isEmpty())
                            continue;
                        const double half = 3.5 * int(line.text.size());
                        QVERIFY(line.place * size - half >= end);
                        end = line.place * size + half;
                    }
                }
            }
        }
    }

    void graticuleOfCodes() {
        GraticuleRules rules;
        rules.unit = ScopeUnit::Code10;
        rules.length = 400;
        rules.locale = QLocale::c();
        QStringList texts;
        for (const GraticuleLine& line : planGraticule(rules))
            texts.append(line.text);
        QCOMPARE(texts, (QStringList{"64", "283", "502", "721", "940"}));
        // Zoomed in, where no quarter is seen.
        rules.lower = 0.5;
        rules.upper = 0.6;
        QVERIFY(planGraticule(rules).size() >= 3);
    }

    // A picture with as many pixels of each code shows no comb, whatever the width.
    void evenCodesAreEvenColumns() {
        for (const int codes : {255, 1023, 65535}) {
            const CodePlaces places({codes}, ScopeHistogram::Axis::Linear, 100);
            const CodeCounts::Counts counts(std::size_t(codes) + 1, 12);
            for (int width = 100; width < 900; width += 37) {
                const auto columns = places.columns(counts, 0.1, 0.9, width);
                const auto [least, most] = std::minmax_element(columns.begin(), columns.end());
                QVERIFY(*most - *least < 1e-3F * *most);
            }
            const auto all = places.columns(counts, -0.1, 1.1, 777);
            const double sum = std::accumulate(all.begin(), all.end(), 0.0);
            QVERIFY(near(sum, 12.0 * (codes + 1), 1e-3 * sum));
            QCOMPARE(places.count(counts, -1, 2), std::uint64_t(12) * std::uint64_t(codes + 1));
        }
    }

    void drags() {
        ScopeDrag drag;
        drag.press({{10, 10}, Qt::LeftButton, {}});
        QCOMPARE(drag.move({{11, 10}, Qt::NoButton, {}}).kind, ScopeCommand::Nothing);
        QCOMPARE(drag.release({{11, 10}, Qt::LeftButton, {}}).kind, ScopeCommand::Click);
        drag.press({{10, 10}, Qt::LeftButton, {}});
        QCOMPARE(drag.move({{20, 10}, Qt::NoButton, {}}).kind, ScopeCommand::BeginSelect);
        drag.press({{20, 10}, Qt::MiddleButton, {}});
        QCOMPARE(drag.move({{30, 10}, Qt::NoButton, {}}).kind, ScopeCommand::Select);
        QCOMPARE(drag.release({{30, 10}, Qt::MiddleButton, {}}).kind, ScopeCommand::Nothing);
        QCOMPARE(drag.cancel().kind, ScopeCommand::CancelSelect);
        QCOMPARE(drag.cancel().kind, ScopeCommand::Nothing);
        drag.press({{0, 0}, Qt::MiddleButton, {}});
        const ScopeCommand pan = drag.move({{3, 4}, Qt::NoButton, {}});
        QCOMPARE(pan.kind, ScopeCommand::Pan);
        QCOMPARE(pan.to - pan.from, QPointF(3, 4));
    }
};

KXUI_TEST(ScopeUnitTest);
#include "ScopeUnitTest.moc"
