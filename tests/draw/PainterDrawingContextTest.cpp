#include <KxUI/draw/CloudPoint.h>
#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/draw/PainterDrawingContext.h>
#include <KxUI/draw/ToneCurve.h>

#include <support/TestRegistry.h>

#include <QImage>
#include <QPainter>

#include <cmath>
#include <functional>
#include <iterator>
#include <limits>

using namespace Kestrel::UI;

namespace {

// What is drawn on 20 x 10 logical pixels.
QImage drawn(qreal ratio, const std::function<void(DrawingContext&)>& draw) {
    QImage image(QSize(20, 10) * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::black);
    QPainter painter(&image);
    PainterDrawingContext context(painter, QSizeF(20, 10), ratio);
    draw(context);
    return image;
}

int litPixels(const QImage& image) {
    int lit = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            lit += image.pixelColor(x, y) == Qt::black ? 0 : 1;
    return lit;
}

} // namespace

class PainterDrawingContextTest : public QObject {
    Q_OBJECT

private slots:
    void rectanglesEndBetweenPixels() {
        const auto fill = [](DrawingContext& c) { c.fill({1.3, 0.6, 2.3, 2}, Qt::red); };
        const QImage once = drawn(1, fill);
        QCOMPARE(litPixels(once), 3 * 2);
        QCOMPARE(once.pixelColor(1, 1), QColor(Qt::red));
        const QImage twice = drawn(2, fill);
        QCOMPARE(litPixels(twice), 4 * 4);
        QCOMPARE(twice.pixelColor(3, 1), QColor(Qt::red));
    }

    // Where pixels are written without the painter, they are those that it would have drawn.
    void writtenAndPaintedRectangles() {
        const QRectF rects[]{{1.3, 0.6, 2.3, 2}, {-5, -5, 6, 7.5}, {18.5, 8.5, 9, 9},
                             {4, 4, 0, 3},       {6, 3, 1e9, 1},   {7.5, 1.5, 0.5, 0.5}};
        for (const qreal ratio : {1.0, 1.5, 2.0}) {
            for (const QRectF& clip : {QRectF(), QRectF(2, 1, 17, 8.4), QRectF(30, 30, 5, 5)}) {
                QImage images[]{QImage(QSize(20, 10) * ratio, QImage::Format_RGB32),
                                QImage(QSize(20, 10) * ratio, QImage::Format_ARGB32_Premultiplied)};
                for (QImage& image : images) {
                    image.setDevicePixelRatio(ratio);
                    image.fill(Qt::black);
                    QPainter painter(&image);
                    PainterDrawingContext context(painter, QSizeF(20, 10), ratio);
                    context.setClip(clip);
                    context.rectangles(rects, int(std::size(rects)), Qt::green);
                }
                QCOMPARE(images[0], images[1].convertToFormat(QImage::Format_RGB32));
            }
        }
    }

    void hairlinesAreDevicePixels() {
        const QImage image = drawn(2, [](DrawingContext& c) {
            c.line({0, 0.25}, {20, 0.25}, {QColor(Qt::white), 0});
        });
        QCOMPARE(litPixels(image), 40);
        QCOMPARE(image.pixelColor(7, 0), QColor(Qt::white));
    }

    void lightIsAddedAndSaturates() {
        const IntensityGrid grid(20, 10, std::vector<float>(200, 16.0F));
        const QImage image = drawn(1, [&](DrawingContext& c) {
            c.fill({0, 0, 20, 10}, QColor(10, 20, 30));
            c.intensity({0, 0, 20, 10}, grid, ToneCurve(), QColor(250, 100, 0));
            c.setClip({0, 0, 5, 5});
            c.intensity({0, 0, 20, 10}, grid, ToneCurve(), QColor(0, 100, 0));
        });
        QCOMPARE(image.pixelColor(10, 5), QColor(255, 120, 30));
        QCOMPARE(image.pixelColor(2, 2), QColor(255, 220, 30));
    }

    // Light that is added without the painter is what it would have added.
    void writtenAndPaintedLight() {
        std::vector<float> densities;
        for (int i = 0; i < 16 * 8; ++i)
            densities.push_back(i % 7 == 0 ? -1.0F : std::ldexp(1.0F + float(i % 5), i / 4 - 20));
        densities[5] = std::numeric_limits<float>::quiet_NaN();
        densities[6] = std::numeric_limits<float>::infinity();
        const IntensityGrid grid(16, 8, densities);
        for (const QPointF& at : {QPointF(2, 1), QPointF(-3, -2), QPointF(10, 7)}) {
            for (const double least : {0.0, 0.12, 2.0}) {
                ToneCurve tone;
                tone.least = least;
                QImage images[]{QImage(20, 10, QImage::Format_RGB32),
                                QImage(20, 10, QImage::Format_ARGB32_Premultiplied)};
                for (QImage& image : images) {
                    image.fill(QColor(10, 100, 250));
                    QPainter painter(&image);
                    PainterDrawingContext context(painter, QSizeF(20, 10), 1);
                    context.setClip({1, 1, 15, 8});
                    context.intensity(QRectF(at, QSizeF(16, 8)), grid, tone, {255, 70, 20});
                    context.intensity(QRectF(at, QSizeF(16, 8)), grid, tone, {0, 90, 9, 128});
                }
                QCOMPARE(images[0], images[1].convertToFormat(QImage::Format_RGB32));
            }
        }
    }

    void nearerPointsLieInFront() {
        const std::vector<CloudPoint> cloud{{0, 0, 0.5F, 3, qRgb(255, 0, 0)},
                                            {0, 0, -0.5F, 1, qRgb(0, 255, 0)},
                                            {0, 0, 0.9F, 4, qRgb(0, 0, 255)},
                                            {5, 0, 0, 4, qRgb(255, 255, 255)},
                                            {0, 0, 0, 90, qRgb(9, 9, 9)}};
        const auto view = [&](int count, double w) {
            return drawn(1, [&](DrawingContext& c) {
                QMatrix4x4 matrix;
                matrix(3, 3) = float(w);
                c.points({0, 0, 20, 10}, matrix, cloud.data(), count);
            });
        };
        const QImage image = view(4, 1);
        QCOMPARE(image.pixelColor(10, 5), QColor(0, 255, 0));
        QCOMPARE(image.pixelColor(12, 5), QColor(255, 0, 0));
        QCOMPARE(image.pixelColor(13, 5), QColor(0, 0, 255));
        QCOMPARE(litPixels(view(4, -1)), 0); // behind the eye
        QCOMPARE(litPixels(view(4, qQNaN())), 0);
        QCOMPARE(litPixels(view(5, 1)), 200);
    }

    void thePainterIsGivenBack() {
        QImage image(20, 10, QImage::Format_RGB32);
        QPainter painter(&image);
        painter.setPen(Qt::green);
        {
            PainterDrawingContext context(painter, QSizeF(20, 10), 1);
            context.setClip({1, 1, 2, 2});
            context.polyline(nullptr, 0, QColor(Qt::red));
            context.polygon(nullptr, 0, Qt::red);
            context.image({0, 0, 5, 5}, QImage());
            context.text({0, 0, 20, 10}, Qt::AlignCenter, QStringLiteral("x"), QFont(), Qt::red);
        }
        QCOMPARE(painter.pen().color(), QColor(Qt::green));
        QVERIFY(!painter.hasClipping());
    }
};

KXUI_TEST(PainterDrawingContextTest);
#include "PainterDrawingContextTest.moc"
