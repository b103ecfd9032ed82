#include <support/Columns.h>
#include <support/Input.h>
#include <support/TestRegistry.h>

#include <KxUI/curveedit/CurveLine_p.h>
#include <KxUI/curveedit/CurveView.h>
#include <KxUI/curveedit/CurvesModel.h>
#include <KxUI/curveedit/KeyCurveModel.h>

#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QtTest>

#include <cmath>
#include <functional>
#include <random>

using namespace Kestrel::UI;

using Function = std::function<double(double)>;
Q_DECLARE_METATYPE(Function)

namespace {

constexpr int Width = 120;
constexpr int Height = 100;

// Of a function in pixels.
CurveColumns columnsOf(const Function& function) {
    CurveColumns line;
    for (int x = 0; x < Width; ++x) {
        const auto in = float(function(x));
        const auto out = float(function(x + 1));
        line.columns.push_back({in, out, std::min(in, out), std::max(in, out), false});
    }
    return line;
}

QImage blank() {
    QImage image(Width, Height, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

// How much of a pixel is black.
double ink(const QImage& image, int x, int y) {
    return 1.0 - qGray(image.pixel(x, y)) / 255.0;
}

double inkOfColumn(const QImage& image, int x) {
    double sum = 0.0;
    for (int y = 0; y < image.height(); ++y)
        sum += ink(image, x, y);
    return sum;
}

KeyCurve manyKeys(int count) {
    std::mt19937 random(3);
    std::vector<KeyCurve::Key> keys;
    keys.resize(std::size_t(count));
    for (std::size_t i = 0; i < keys.size(); ++i) {
        keys[i].x = double(i) / double(count);
        keys[i].y = double(random() % 1000) / 1000.0;
    }
    return KeyCurve(keys);
}

} // namespace

class CurvePicturesTest : public QObject {
    Q_OBJECT

private slots:
    void strokes_data() {
        const Kestrel::Test::Columns<Function, double> row("line", "width");
        const auto add = [&](const char* name, const Function& line) {
            for (const double width : {2.0, 4.0})
                row(qPrintable(QStringLiteral("%1, %2").arg(QLatin1String(name)).arg(width)), line,
                    width);
        };
        add("level", [](double) { return 40.3; });
        add("a slope", [](double x) { return 10.2 + 0.6 * x; });
        add("steep", [](double x) { return 7.0 * x - 300.0; });
        add("a wave", [](double x) { return 50.0 + 35.0 * std::sin(x / 9.0); });
        add("a corner", [](double x) { return 20.0 + 3.0 * std::abs(x - 60.0); });
        add("outside", [](double x) { return -200.0 + 3.0 * x; });
    }

    // What a path that is stroked with round joins looks like.
    void strokes() {
        QFETCH(Function, line);
        QFETCH(double, width);
        QImage ours = blank();
        strokeCurve(ours, ours.rect(), columnsOf(line), width, Qt::black);
        QImage theirs = blank();
        QPainter painter(&theirs);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::black, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        QPainterPath path(QPointF(0.0, line(0.0)));
        for (int x = 1; x <= Width; ++x)
            path.lineTo(x, line(x));
        painter.drawPath(path);
        painter.end();
        for (int x = 3; x < Width - 3; ++x) {
            for (int y = 0; y < Height; ++y) {
                const double difference = ink(ours, x, y) - ink(theirs, x, y);
                if (std::abs(difference) > 0.33)
                    QFAIL(qPrintable(QStringLiteral("%1, %2: %3").arg(x).arg(y).arg(difference)));
            }
            const double more = inkOfColumn(ours, x) - inkOfColumn(theirs, x);
            QVERIFY2(
                std::abs(more) < 0.2 + 0.1 * inkOfColumn(theirs, x),
                qPrintable(
                    QStringLiteral("%1: %2 of %3").arg(x).arg(more).arg(inkOfColumn(theirs, x))));
        }
    }

    void strokesWithinTheClip() {
        QImage image = blank();
        const QRect clip(20, 30, 50, 40);
        CurveColumns line = columnsOf([](double x) { return 50.0 + 45.0 * std::sin(x); });
        line.columns[40] = {10.0F, 90.0F, -1e6F, 1e6F, true};
        strokeCurve(image, clip, line, 3.0, Qt::black);
        line.first = -50; // beyond the picture on both sides
        strokeCurve(image, clip, line, 3.0, Qt::black);
        for (int x = 0; x < Width; ++x) {
            for (int y = 0; y < Height; ++y)
                QVERIFY(clip.contains(x, y) || ink(image, x, y) == 0.0);
        }
        QCOMPARE(ink(image, 40, 50), 1.0);
    }

    void columns() {
        KeyCurveModel model;
        std::vector<KeyCurve::Key> keys(3);
        keys[0].shape = KeyCurve::Shape::Constant;
        keys[1].x = 0.505;
        keys[1].y = 1.0;
        keys[2].x = 1.0;
        model.addCurve(QStringLiteral("steps"), KeyCurve(keys));
        const CurvePlot plot(QRectF(0, 0, 100, 100), QRectF(0, 0, 1, 1));
        const CurveLine steps = CurveLine::of(model, 0, plot, 1.0, 100);
        const CurveColumn& jump = steps.columns.columns.at(50);
        QCOMPARE(double(jump.bottom), 100.0);
        QCOMPARE(double(jump.top), 0.0);
        QCOMPARE(steps.knots(), 3);

        // Thousands of keys: each column has the extremes of its own.
        model.setKeyCurve(0, manyKeys(10000));
        const CurveLine dense = CurveLine::of(model, 0, plot, 1.0, 100);
        QVERIFY(dense.isCrowded(100.0));
        for (int i = 0; i < 100; ++i) {
            const KeyCurve::Range range = model.keyCurve(0).range(i / 100.0, (i + 1) / 100.0);
            const CurveColumn& column = dense.columns.columns.at(std::size_t(i));
            QVERIFY(std::abs(double(column.top) - 100.0 * (1.0 - range.high)) < 1e-3);
            QVERIFY(std::abs(double(column.bottom) - 100.0 * (1.0 - range.low)) < 1e-3);
            QVERIFY(std::abs(dense.density.at(std::size_t(i)) - 100) <= 1);
        }

        // The line ends where the limits do.
        CurvesModel square;
        const CurvePlot wide(QRectF(0, 0, 100, 100), QRectF(-1, 0, 4, 1));
        const CurveLine unit = CurveLine::of(square, 0, wide, 1.0, 100);
        QCOMPARE(unit.columns.first, 25);
        QCOMPARE(unit.columns.end(), 51);
    }

    void scales_data() {
        const Kestrel::Test::Columns<int, int> row("x", "y");
        row("logarithmic", CurveView::LogarithmicScale, CurveView::LogarithmicScale);
        row("shadows", CurveView::ShadowScale, CurveView::LinearScale);
    }

    // Every column is where the plot says that the curve is.
    void scales() {
        QFETCH(int, x);
        QFETCH(int, y);
        KeyCurveModel model;
        model.addCurve(QStringLiteral("a"), KeyCurve({{0.01, 0.02}, {0.1, 0.5}, {1.0, 0.9}}));
        const CurvePlot plot(QRectF(5, 5, 200, 100), QRectF(0.01, 0.01, 0.99, 0.99),
                             {AxisScale(x), AxisScale(y), 64.0});
        const CurveLine line = CurveLine::of(model, 0, plot, 2.0, 400);
        for (int i = 20; i < 400; i += 30) {
            const double value = model.keyCurve(0).valueAt(plot.xAt(i / 2.0));
            QVERIFY(std::abs(double(line.columns.columns.at(std::size_t(i)).in) -
                             2.0 * plot.toY(value)) < 1e-2);
        }
    }

    void repaints_data() {
        const Kestrel::Test::Columns<int, int> row("keys", "knot");
        row("a few, the first", 8, 0);
        row("a few, the middle", 8, 4);
        row("a hundred, one in between", 100, 50);
        row("a hundred, the last", 100, 99);
        row("thousands", 10000, 5000);
    }

    // After a change of one knot the window shows what a picture of all shows.
    void repaints() {
        QFETCH(int, keys);
        QFETCH(int, knot);
        KeyCurveModel model;
        model.addCurve(QStringLiteral("a"), manyKeys(keys));
        model.select(0, knot, knot, CurveModel::SelectOnly);
        CurveView view;
        view.setModel(&model);
        view.resize(400, 200);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const auto shown = [&] {
            QCoreApplication::processEvents();
            return view.screen()
                ->grabWindow(view.winId())
                .toImage()
                .convertToFormat(QImage::Format_RGB32);
        };
        shown();
        for (const double y : {0.1, 0.9, 0.35}) {
            QVERIFY(model.move({{0, knot, model.knot(0, knot).x, y}}));
            const QImage window = shown();
            QCOMPARE(window, view.grab().toImage().convertToFormat(QImage::Format_RGB32));
            CurveView other; // that has drawn nothing before
            other.setModel(&model);
            other.resize(view.size());
            other.setVisibleRange(view.visibleRange());
            view.clearFocus();
            QCOMPARE(shown(), other.grab().toImage().convertToFormat(QImage::Format_RGB32));
            view.setFocus();
        }
    }

    // Nothing at all, single keys, ratios between whole ones.
    void paintsAnything() {
        KeyCurveModel model;
        CurveView view;
        view.setHistogram({CurveHistogram()});
        for (const int keys : {-1, 0, 1, 2, 3000}) {
            if (keys == 0)
                model.addCurve(QStringLiteral("a"));
            else if (keys > 0)
                model.setKeyCurve(0, manyKeys(keys));
            view.setModel(&model);
            view.setMarker(0.5);
            view.setFrameVisible(true);
            view.selectAll();
            for (const QSize& size : {QSize(300, 200), QSize(10, 10), QSize(1, 1)}) {
                view.resize(size);
                for (const double ratio : {1.0, 1.25, 2.0}) {
                    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_RGB32);
                    image.setDevicePixelRatio(ratio);
                    view.render(&image);
                }
            }
        }
    }
};

KXUI_TEST(CurvePicturesTest);
#include "CurvePicturesTest.moc"
