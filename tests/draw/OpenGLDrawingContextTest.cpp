#include <KxUI/draw/CloudPoint.h>
#include <KxUI/draw/DrawingSurface_p.h>
#include <KxUI/draw/GlPicture_p.h>
#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/draw/OpenGLDrawingContext.h>
#include <KxUI/draw/PainterDrawingContext.h>
#include <KxUI/draw/ToneCurve.h>

#include <support/TestRegistry.h>

#include <QPainter>
#include <QWidget>

#include <cmath>
#include <random>

using namespace Kestrel::UI;

namespace {

constexpr QSizeF Size(300, 200);

QImage painted(qreal ratio, const std::function<void(DrawingContext&)>& draw) {
    QImage image((Size * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::black);
    QPainter painter(&image);
    PainterDrawingContext context(painter, Size, ratio);
    draw(context);
    return image;
}

IntensityGrid someLight(int width, int height) {
    std::vector<float> all;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            all.push_back(x % 7 == 0 ? 0.0F : std::ldexp(1.0F + float(y) / 64, x / 8 - 12));
    return IntensityGrid(width, height, std::move(all));
}

const std::vector<QPointF> Star{{20, 20}, {280, 60}, {40, 180}, {150, 5}, {260, 190}, {20, 20}};

void drawFlat(DrawingContext& c, bool isLight) {
    c.fill(QRectF(QPointF(), c.size()), isLight ? QColor(240, 240, 240) : QColor(30, 30, 34));
    const QRectF rects[]{{10.3, 10.6, 50, 30}, {70, 12, 0.4, 90}, {90, 10, 60, 5.5}};
    c.rectangles(rects, 3, QColor(200, 80, 20));
    c.rectangles(rects, 2, QColor(0, 80, 220, 90));
    const QLineF lines[]{{5, 5, 290, 190}, {0, 50.5, 300, 50.5}, {100.25, 0, 100.25, 200}};
    c.lines(lines, 3, {QColor(90, 200, 90), 1.5, Qt::DashLine});
    c.polyline(Star.data(), int(Star.size()), {QColor(250, 230, 40), 2});
    c.polygon(Star.data(), int(Star.size()), QColor(200, 40, 200, 120));
    QImage picture(8, 8, QImage::Format_ARGB32_Premultiplied);
    picture.fill(QColor(10, 200, 240, 180));
    c.image({200, 20, 40, 40}, picture);
    c.text({10, 150, 200, 30}, Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("41.7 ms"), QFont(),
           isLight ? Qt::black : Qt::white);
}

void drawLight(DrawingContext& c, ToneCurve::Kind kind) {
    drawFlat(c, false);
    ToneCurve tone;
    tone.kind = kind;
    tone.brightness = 1.5;
    const QRectF target(20, 30, 240, 150);
    const QSize pixels = (target.size() * c.devicePixelRatio()).toSize();
    const IntensityGrid grid = someLight(pixels.width(), pixels.height());
    c.intensity(target, grid, tone, QColor(255, 70, 70));
    c.setClip({40, 40, 100, 60});
    c.intensity(target, grid, tone, QColor(70, 255, 70, 128));
    c.line({0, 0}, {300, 200}, QColor(Qt::white));
    c.setClip({});
    c.line({300, 0}, {0, 200}, QColor(Qt::white));
}

void drawCloud(DrawingContext& c) {
    drawFlat(c, true);
    std::mt19937 random(4);
    std::uniform_real_distribution<float> place(-1.2F, 1.2F);
    std::vector<CloudPoint> points;
    for (int i = 0; i < 3000; ++i)
        points.push_back({place(random), place(random), place(random), float(random() % 50) / 10.0F,
                          QRgb(random())});
    QMatrix4x4 view;
    view.perspective(40, 1.3F, 0.5F, 10);
    view.translate(0, 0, -3);
    view.rotate(30, {1, 1, 0});
    c.points({30, 20, 240, 160}, view, points.data(), int(points.size()));
    c.polyline(Star.data(), int(Star.size()), {QColor(Qt::black), 1});
}

} // namespace

// By whatever OpenGL the screen has, which under a virtual one is a program.
class OpenGLDrawingContextTest : public QObject {
    Q_OBJECT

private slots:
    void bothDrawTheSame_data() {
        QTest::addColumn<int>("what");
        QTest::addColumn<double>("ratio");
        for (int what = 0; what < 5; ++what)
            for (const double ratio : {1.0, 2.0})
                QTest::addRow("%d at %.0f", what, ratio) << what << ratio;
    }
    void bothDrawTheSame() {
        QFETCH(int, what);
        QFETCH(double, ratio);
        const std::function<void(DrawingContext&)> pictures[]{
            [](DrawingContext& c) { drawFlat(c, false); },
            [](DrawingContext& c) { drawFlat(c, true); },
            [](DrawingContext& c) { drawLight(c, ToneCurve::Logarithmic); },
            [](DrawingContext& c) { drawLight(c, ToneCurve::Linear); },
            [](DrawingContext& c) { drawCloud(c); }};
        GlPicture gl;
        gl.take(Size, ratio, pictures[(what + 1) % 5]); // what another frame left must not be seen
        compare(gl.take(Size, ratio, pictures[what]), painted(ratio, pictures[what]));
        compare(gl.take(Size, ratio, pictures[what]), painted(ratio, pictures[what]));
        QCOMPARE(gl.error(), QString());
    }

    void changedCallsAreSeen() {
        GlPicture gl;
        for (const QColor& color : {QColor(Qt::red), QColor(Qt::green)}) {
            const auto draw = [color](DrawingContext& c) {
                c.line({0, 100.5}, {300, 100.5}, color);
            };
            QCOMPARE(gl.take(Size, 1, draw).pixelColor(50, 100), color);
        }
    }

    void whatCannotBeDrawn() {
        GlPicture gl;
        int calls = 0;
        const auto draw = [&](DrawingContext&) { ++calls; };
        QVERIFY(gl.take(QSizeF(1e5, 10), 1, draw).isNull());
        QVERIFY(gl.error().contains(QLatin1String("100000 x 10")));
        QVERIFY(gl.take(QSizeF(0, 10), 1, draw).isNull());
        QCOMPARE(calls, 0);
        QVERIFY(!gl.take(Size, 1, draw).isNull());
        OpenGLDrawingContext nowhere;
        QVERIFY(!nowhere.error().isEmpty());
        QVERIFY(!nowhere.begin(Size, 1));
        drawFlat(nowhere, true);
        nowhere.end();
    }

    void renderers() {
        QVERIFY(isSoftwareRenderer(QStringLiteral("llvmpipe (LLVM 15.0.6, 256 bits)")));
        QVERIFY(isSoftwareRenderer(QStringLiteral("Google SwiftShader")));
        QVERIFY(isSoftwareRenderer(QString()));
        QVERIFY(!isSoftwareRenderer(QStringLiteral("Mesa Intel(R) UHD Graphics 620")));
    }

    // A view goes on by the painter, and hears of it once.
    void viewsFallBack() {
        class View : public QWidget {
        public:
            DrawingSurface surface{this, [this] { ++told; }};
            int told = 0;

        protected:
            void paintEvent(QPaintEvent*) override {
                surface.paint([](DrawingContext& c) { drawFlat(c, true); });
            }
        };
        View view;
        view.resize(300, 200);
        const QImage byPainter = view.grab().toImage();
        view.surface.setDrawing(Drawing::OpenGL);
        compare(view.grab().toImage(), byPainter);
        QVERIFY(view.surface.usesOpenGL());
        view.resize(40000, 1);
        view.grab();
        QVERIFY(!view.surface.usesOpenGL() && !view.surface.problem().isEmpty());
        QCOMPARE(view.told, 0);
        QTRY_COMPARE(view.told, 1);
    }

private:
    // 99.9 % of the pixels within 2 codes, the others, at edges of points, within 24 where a point's
    // edge goes through them.
    static void compare(const QImage& a, const QImage& b) {
        QCOMPARE(a.size(), b.size());
        int far = 0;
        int furthest = 0;
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x) {
                const QRgb p = a.pixel(x, y);
                const QRgb q = b.pixel(x, y);
                const int away =
                    std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                              std::abs(qBlue(p) - qBlue(q))});
                far += away > 2 ? 1 : 0;
                furthest = std::max(furthest, away);
            }
        }
        if (far != 0 && qEnvironmentVariableIsSet("KXUI_PICTURE")) {
            a.save(qEnvironmentVariable("KXUI_PICTURE") + QStringLiteral(".gl.png"));
            b.save(qEnvironmentVariable("KXUI_PICTURE") + QStringLiteral(".painter.png"));
        }
        QVERIFY2(far * 1000 <= a.width() * a.height(),
                 qPrintable(QStringLiteral("%1 pixels, up to %2").arg(far).arg(furthest)));
        if (far != 0)
            qInfo("%d pixels differ, up to %d", far, furthest);
    }
};

KXUI_TEST(OpenGLDrawingContextTest);
#include "OpenGLDrawingContextTest.moc"
