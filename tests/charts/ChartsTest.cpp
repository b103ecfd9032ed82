#include <KxUI/charts/BarChart.h>
#include <KxUI/charts/BarSeries.h>
#include <KxUI/charts/ChartAxis.h>
#include <KxUI/charts/ChartColorProvider.h>
#include <KxUI/charts/ChartLegend.h>
#include <KxUI/charts/LineChart.h>
#include <KxUI/charts/LineSeries.h>
#include <KxUI/charts/PieChart.h>
#include <KxUI/charts/PieSeries.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QXmlStreamReader>

#include <cfloat>
#include <cmath>
#include <memory>

using namespace Kestrel::UI;

namespace {

LineSeries* addLine(LineChart& chart, const char* name, std::vector<double> y) {
    auto* series = new LineSeries;
    series->setName(QLatin1String(name));
    std::vector<double> x;
    for (std::size_t i = 0; i < y.size(); ++i)
        x.push_back(double(i));
    series->setData(std::move(x), std::move(y));
    chart.addSeries(series);
    return series;
}

void show(QWidget& widget, int width = 400, int height = 240) {
    widget.resize(width, height);
    widget.show();
    widget.grab();
}

void press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&widget, static_cast<Qt::Key>(key), modifiers);
}

class Repainted : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            region |= static_cast<QPaintEvent*>(event)->region();
        return false;
    }
    QRegion region;
};

QList<QAbstractButton*> entries(const Chart& chart) {
    return chart.legend()->findChildren<QAbstractButton*>();
}

} // namespace

class ChartsTest : public QObject {
    Q_OBJECT

private slots:
    void rangesFollowTheData() {
        LineChart chart;
        LineSeries* const series = addLine(chart, "a", {1, 5, 3});
        QSignalSpy ranges(chart.xAxis(), &ChartAxis::rangeChanged);
        show(chart);
        QCOMPARE(chart.xAxis()->upper(), 2.0);
        QVERIFY(chart.yAxis()->lower() < 1 && chart.yAxis()->upper() > 5);
        series->append(10, 100);
        QTRY_COMPARE(chart.xAxis()->upper(), 10.0);
        QVERIFY(chart.yAxis()->upper() > 100);
        QCOMPARE(ranges.size(), 2);
        chart.xAxis()->setRange(5, 1);
        QCOMPARE(chart.xAxis()->lower(), 1.0);
        QVERIFY(!chart.xAxis()->isAutoRange());
        chart.showAll();
        QCOMPARE(chart.xAxis()->lower(), 0.0);
    }

    void oddRangesAreRefused() {
        ChartAxis axis;
        axis.setRange(2, 3);
        for (const auto& [lower, upper] :
             {std::pair(1.0, 1.0), {qQNaN(), 1.0}, {0.0, qInf()}, {-qInf(), qInf()}})
            axis.setRange(lower, upper);
        QCOMPARE(axis.lower(), 2.0);
        axis.setLimits(0, 10);
        axis.setRange(-5, 20);
        QCOMPARE(axis.upper(), 10.0);
        axis.setLimits(20, 30);
        QCOMPARE(axis.lower(), 20.0);
        axis.setLimits(-10, 10);
        axis.setRange(-10, 10);
        axis.setLogarithmic(true);
        QVERIFY(axis.lower() > 0);
        axis.setRange(-1, 10);
        QVERIFY(axis.lower() > 0);
    }

    void oddDataAreDrawn_data() {
        QTest::addColumn<QVector<double>>("values");
        QTest::newRow("none") << QVector<double>();
        QTest::newRow("one") << QVector<double>{7};
        QTest::newRow("all nan") << QVector<double>{qQNaN(), qQNaN()};
        QTest::newRow("equal") << QVector<double>{3, 3, 3};
        QTest::newRow("zeros") << QVector<double>{0, 0};
        QTest::newRow("huge") << QVector<double>{1e308, -1e308, 0};
        QTest::newRow("infinite") << QVector<double>{qInf(), 1, -qInf()};
        QTest::newRow("negative") << QVector<double>{-1, -2};
        QTest::newRow("subnormal") << QVector<double>{5e-324, 0};
    }
    void oddDataAreDrawn() {
        QFETCH(QVector<double>, values);
        const std::vector<double> all(values.begin(), values.end());
        LineChart lines;
        addLine(lines, "a", all);
        for (const auto style :
             {LineSeries::Line, LineSeries::Step, LineSeries::Area, LineSeries::Points}) {
            lines.series()[0]->setStyle(style);
            lines.yAxis()->setLogarithmic(style == LineSeries::Step);
            show(lines);
            QVERIFY(lines.yAxis()->lower() < lines.yAxis()->upper());
        }
        BarChart bars;
        auto* series = new BarSeries;
        series->setValues(all);
        bars.addSeries(series);
        for (const auto arrangement : {BarChart::Grouped, BarChart::Stacked, BarChart::Percent})
            for (const auto orientation : {Qt::Horizontal, Qt::Vertical}) {
                bars.setArrangement(arrangement);
                bars.setOrientation(orientation);
                show(bars);
                QVERIFY(bars.valueAxis()->lower() <= 0 && bars.valueAxis()->upper() >= 0);
            }
        PieChart pie;
        std::vector<PieSlice> slices;
        for (const double value : all)
            slices.push_back({QStringLiteral("s"), value, {}, {}});
        pie.series()->setSlices(slices);
        show(pie);
        for (const QSize& size : {QSize(1, 1), QSize(20, 300), QSize(300, 20), QSize(200, 100)})
            for (Chart* chart : std::initializer_list<Chart*>{&lines, &bars, &pie}) {
                chart->resize(size);
                chart->grab();
                chart->toSvg(size);
            }
    }

    void followingAndCapacity() {
        LineChart chart;
        LineSeries* const series = addLine(chart, "a", {});
        series->setCapacity(1000);
        show(chart);
        chart.xAxis()->setRange(0, 100);
        QSignalSpy followed(&chart, &LineChart::followingChanged);
        chart.setFollowing(true);
        for (int i = 0; i < 5000; ++i)
            series->append(i, i % 50);
        QCOMPARE(series->size(), std::size_t(1000));
        QTRY_COMPARE(chart.xAxis()->upper(), 4999.0);
        QCOMPARE(chart.xAxis()->lower(), 4899.0);
        QTest::keyClick(&chart, Qt::Key_PageUp); // looking back ends it
        QVERIFY(!chart.isFollowing());
        QCOMPARE(followed.size(), 2);
    }

    void keysMoveTheCrosshair() {
        LineChart chart;
        addLine(chart, "a", {1, 2, 3, 4, 5});
        addLine(chart, "b", {5, 4, qQNaN(), 2, 1});
        show(chart);
        QSignalSpy hovered(&chart, &Chart::hovered);
        QSignalSpy left(&chart, &Chart::hoverLeft);
        QSignalSpy clicked(&chart, &Chart::clicked);
        press(chart, Qt::Key_Right);
        auto readout = hovered.last()[0].value<ChartReadout>();
        QCOMPARE(readout.x, 2.0);
        QCOMPARE(readout.items.size(), 1); // the other has a gap there
        press(chart, Qt::Key_Right);
        readout = hovered.last()[0].value<ChartReadout>();
        QCOMPARE(readout.x, 3.0);
        QCOMPARE(readout.items.size(), 2);
        QCOMPARE(readout.nearest, 0);
        press(chart, Qt::Key_Down);
        QCOMPARE(hovered.last()[0].value<ChartReadout>().nearest, 1);
        press(chart, Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(hovered.last()[0].value<ChartReadout>().x, 4.0);
        press(chart, Qt::Key_Return);
        QCOMPARE(clicked.size(), 1);
        press(chart, Qt::Key_Escape);
        QCOMPARE(left.size(), 1);
    }

    // A pointer that moves repaints what its read-out covered and covers, and no pixel less.
    void hoverRepaintsItsRegion_data() {
        const Kestrel::Test::Columns<bool> add("bars");
        add("lines", false);
        add("bars", true);
    }

    void hoverRepaintsItsRegion() {
        QFETCH(bool, bars);
        std::unique_ptr<Chart> chart;
        if (bars) {
            auto* const one = new BarChart;
            chart.reset(one);
            auto* const values = new BarSeries;
            values->setValues({1, 4, 2, 3, 5, 2, 4, 1});
            one->addSeries(values);
        } else {
            auto* const one = new LineChart;
            chart.reset(one);
            addLine(*one, "a", {1, 2, 3, 4, 5, 1, 2, 3});
            addLine(*one, "b", {5, 4, 3, 2, 1, 4, 3, 2});
        }
        show(*chart, 900, 500);
        Repainted repainted;
        chart->installEventFilter(&repainted);
        QTest::mouseMove(chart.get(), QPoint(200, 200));
        QCoreApplication::processEvents();
        for (const int x : {260, 400, 700}) {
            const QImage before = chart->grab().toImage();
            repainted.region = QRegion();
            QMouseEvent move(QEvent::MouseMove, QPointF(x, 200), chart->mapToGlobal(QPoint(x, 200)),
                             Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(chart.get(), &move);
            QCoreApplication::processEvents();
            const QRegion region = repainted.region;
            int area = 0;
            for (const QRect& rect : region)
                area += rect.width() * rect.height();
            QVERIFY(area > 0 && area < chart->width() * chart->height() / 2);
            const QImage after = chart->grab().toImage();
            for (int y = 0; y < after.height(); ++y)
                for (int column = 0; column < after.width(); ++column)
                    QVERIFY(before.pixel(column, y) == after.pixel(column, y) ||
                            region.contains(QPoint(column, y)) ||
                            chart->legend()->geometry().contains(column, y));
        }
    }

    void legendShowsValuesUnderTheCrosshair() {
        LineChart chart;
        addLine(chart, "a", {1, 2, 3});
        addLine(chart, "b", {3, 2, qQNaN()});
        show(chart);
        const auto all = entries(chart);
        const auto pictures = [&all] {
            return QVector<QImage>{all[0]->grab().toImage(), all[1]->grab().toImage()};
        };
        const auto without = pictures();
        const QRect place = all[1]->geometry();
        press(chart, Qt::Key_Right);
        const auto with = pictures();
        QVERIFY(with[0] != without[0] && with[1] != without[1]);
        press(chart, Qt::Key_Right); // where the second has a gap
        QVERIFY(pictures()[0] != with[0] && pictures()[1] == without[1]);
        press(chart, Qt::Key_Escape);
        QCOMPARE(pictures(), without);
        QCOMPARE(all[1]->geometry(), place);
    }

    void zoomAndPan() {
        LineChart chart;
        addLine(chart, "a", std::vector<double>(101, 1));
        LineChart other;
        show(chart);
        show(other);
        other.linkTo(&chart);
        QCOMPARE(other.xAxis()->upper(), 100.0);
        press(chart, Qt::Key_Plus);
        const double length = chart.xAxis()->upper() - chart.xAxis()->lower();
        QVERIFY(std::abs(length - 80) < 1e-6);
        QCOMPARE(other.xAxis()->lower(), chart.xAxis()->lower());
        chart.grab();
        QTest::mousePress(&chart, Qt::LeftButton, {}, {200, 100});
        for (const QPointF& place : {QPointF(260, 100), QPointF(280, 100)}) {
            QMouseEvent move(QEvent::MouseMove, place, place, Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(&chart, &move);
        }
        QTest::mouseRelease(&chart, Qt::LeftButton, {}, {280, 100});
        QVERIFY(chart.xAxis()->lower() < 0);
        QVERIFY(std::abs(chart.xAxis()->upper() - chart.xAxis()->lower() - length) < 1e-6);
        press(chart, Qt::Key_Home);
        QCOMPARE(chart.xAxis()->lower(), 0.0);
        for (int i = 0; i < 400; ++i) // to the end of the digits, and far beyond all data
            press(chart, i < 200 ? Qt::Key_Plus : Qt::Key_Minus);
        QVERIFY(chart.xAxis()->lower() < chart.xAxis()->upper());
        chart.grab();
    }

    void colorsStayWithTheirSeries() {
        LineChart chart;
        LineSeries* const a = addLine(chart, "a", {1, 2});
        addLine(chart, "b", {1, 2});
        show(chart);
        QList<QColor> before;
        const auto colorOfB = [&chart] {
            QSignalSpy hovered(&chart, &Chart::hovered);
            press(chart, Qt::Key_Escape);
            press(chart, Qt::Key_Right);
            return hovered.last()[0].value<ChartReadout>().items.last().color;
        };
        const QColor first = colorOfB();
        a->setVisible(false);
        chart.grab();
        QCOMPARE(colorOfB(), first);
        delete a;
        chart.grab();
        QCOMPARE(colorOfB(), first);
        QCOMPARE(chart.series().size(), std::size_t(1));
        auto provider = std::make_shared<ChartColorProvider>();
        provider->setColor(QStringLiteral("b"), Qt::red);
        chart.setColorProvider(provider);
        QCOMPARE(colorOfB(), QColor(Qt::red));
    }

    void legendByKeysAndMouse() {
        LineChart chart;
        LineSeries* const a = addLine(chart, "a", {1, 2});
        LineSeries* const b = addLine(chart, "b", {1, 2});
        LineSeries* const c = addLine(chart, "c", {1, 2});
        show(chart);
        QVERIFY(chart.legend()->isVisible());
        QCOMPARE(entries(chart).size(), 3);
        QTest::keyClick(entries(chart)[0], Qt::Key_Space);
        QVERIFY(!a->isVisible());
        QTest::keyClick(entries(chart)[0], Qt::Key_Return);
        QVERIFY(a->isVisible());
        QTest::mouseClick(entries(chart)[1], Qt::LeftButton, Qt::AltModifier);
        QVERIFY(!a->isVisible() && b->isVisible() && !c->isVisible());
        QTest::keyClick(entries(chart)[1], Qt::Key_Return, Qt::AltModifier);
        QVERIFY(a->isVisible() && b->isVisible() && c->isVisible());
        for (const Qt::Edge edge : {Qt::TopEdge, Qt::LeftEdge, Qt::RightEdge}) {
            chart.legend()->setPosition(edge);
            chart.grab();
            QVERIFY(chart.rect().contains(chart.legend()->geometry()));
        }
        chart.legend()->setShown(false);
        QVERIFY(!chart.legend()->isVisible());
    }

    void tables() {
        LineChart lines;
        lines.xAxis()->setTitle(QStringLiteral("frame"));
        addLine(lines, "a", {1.5, qQNaN()});
        addLine(lines, "b\tc", {0, 1, 1e300});
        QCOMPARE(lines.toText(), QStringLiteral("frame\ta\tb c\n0\t1.5\t0\n1\t\t1\n2\t\t1e+300\n"));
        BarChart bars;
        bars.categoryAxis()->setCategories({QStringLiteral("x"), QStringLiteral("y")});
        auto* series = new BarSeries;
        series->setName(QStringLiteral("s"));
        series->setValues({0.25});
        bars.addSeries(series);
        QCOMPARE(bars.toText(), QStringLiteral("\ts\nx\t0.25\ny\t\n"));
        PieChart pie;
        pie.series()->setSlices(
            {{QStringLiteral("p"), 2, {}, {}}, {QStringLiteral("q"), qQNaN(), {}, {}}});
        QCOMPARE(pie.toText(), QStringLiteral("Name\tValue\np\t2\nq\t\n"));
        QCOMPARE(pie.series()->invalidCount(), 1);
    }

    void picturesAndSvg() {
        LineChart chart;
        chart.setTitle(QStringLiteral("a < b & \"c\""));
        addLine(chart, "<x>", {1, 2, qQNaN(), 4});
        addLine(chart, "y", {4, 2});
        QCOMPARE(chart.toImage({300, 200}, 2).size(), QSize(600, 400));
        QXmlStreamReader xml(chart.toSvg({300, 200}));
        int texts = 0;
        int paths = 0;
        while (!xml.atEnd()) {
            xml.readNext();
            texts += xml.isStartElement() && xml.name() == QLatin1String("text") ? 1 : 0;
            paths += xml.isStartElement() && xml.name() == QLatin1String("path") ? 1 : 0;
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QVERIFY(texts > 5 && paths > 3);
    }

    void screenReaders() {
        LineChart chart;
        chart.setTitle(QStringLiteral("Times"));
        chart.yAxis()->setUnit(Ticks::Seconds);
        addLine(chart, "GPU", {0.01, 0.03});
        addLine(chart, "CPU", {0.02, 0.02});
        show(chart);
        QAccessibleInterface* const tree = QAccessible::queryAccessibleInterface(&chart);
        QCOMPARE(tree->role(), QAccessible::Chart);
        QCOMPARE(tree->text(QAccessible::Name), QStringLiteral("Times"));
        QCOMPARE(tree->childCount(), 3);
        QCOMPARE(tree->child(0)->text(QAccessible::Name), QStringLiteral("GPU"));
        QVERIFY(tree->child(0)->text(QAccessible::Value).contains(QLatin1String("30")));
        QCOMPARE(tree->child(1)->parent(), tree);
        QCOMPARE(tree->indexOfChild(tree->child(1)), 1);
        press(chart, Qt::Key_Right);
        QVERIFY(tree->text(QAccessible::Value).contains(QLatin1String("GPU")));
        delete chart.series()[1];
        QCOMPARE(tree->childCount(), 2);
    }

    // A host may do anything when it is told.
    void deletedWhileTelling() {
        auto* chart = new LineChart;
        LineSeries* const series = addLine(*chart, "a", {1, 2, 3});
        show(*chart);
        connect(chart, &Chart::hovered, chart, [chart] { delete chart; });
        const QPointer<LineSeries> gone(series);
        press(*chart, Qt::Key_Right);
        QVERIFY(!gone);
        auto* ranged = new LineChart;
        addLine(*ranged, "a", {1, 2, 3});
        const QPointer<LineChart> alive(ranged);
        connect(ranged->xAxis(), &ChartAxis::rangeChanged, ranged,
                [ranged] { ranged->deleteLater(); });
        show(*ranged);
        QTRY_VERIFY(!alive);
    }

    void barsAndSlicesByKeys() {
        BarChart bars;
        bars.categoryAxis()->setCategories({QStringLiteral("x"), QStringLiteral("y")});
        for (const char* name : {"a", "b"}) {
            auto* series = new BarSeries;
            series->setName(QLatin1String(name));
            series->setValues({1, 2});
            bars.addSeries(series);
        }
        show(bars);
        QSignalSpy hovered(&bars, &Chart::hovered);
        press(bars, Qt::Key_Right);
        QCOMPARE(hovered.last()[0].value<ChartReadout>().xText, QStringLiteral("x"));
        press(bars, Qt::Key_Right);
        const auto readout = hovered.last()[0].value<ChartReadout>();
        QCOMPARE(readout.xText, QStringLiteral("y"));
        QCOMPARE(readout.items.size(), 2);
        PieChart pie;
        pie.series()->setSlices(
            {{QStringLiteral("p"), 3, {}, {}}, {QStringLiteral("q"), 1, {}, {}}});
        show(pie);
        QSignalSpy slices(&pie, &Chart::hovered);
        for (const char* name : {"p", "q", "p"}) {
            press(pie, Qt::Key_Right);
            QCOMPARE(slices.last()[0].value<ChartReadout>().items[0].name, QLatin1String(name));
        }
        pie.series()->setSliceVisible(0, false);
        pie.setSeries(new PieSeries);
        delete pie.series();
        pie.grab();
        QVERIFY(!pie.series());
    }
};

KXUI_TEST(ChartsTest);
#include "ChartsTest.moc"
