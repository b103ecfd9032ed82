#include "Bars.h"

#include <KxUI/scopes/ScopeView_p.h>
#include <KxUI/scopes/VectorPlane_p.h>
#include <KxUI/scopes/Vectorscope.h>

#include <support/TestRegistry.h>

#include <QApplication>
#include <QMenu>
#include <QtTest>

#include <algorithm>
#include <cmath>

using namespace Kestrel::UI;
using Kestrel::Test::Bars;
using Kestrel::Test::Picture;

namespace {

int light(const QImage& image, const QPointF& place) {
    return qGreen(image.pixel(int(std::floor(place.x())), int(std::floor(place.y()))));
}

double distance(const QPointF& a, const QPointF& b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

} // namespace

class VectorscopeTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_model = std::make_unique<ScopeModel>();
        m_model->setMaximumRate(1000);
        m_scope = std::make_unique<Vectorscope>();
        m_scope->setModel(m_model.get());
        m_scope->resize(420, 420);
        m_scope->show();
    }
    void cleanup() {
        m_scope.reset();
        m_model.reset();
    }

    void plane() {
        for (const bool log : {false, true}) {
            const VectorPlane plane{log};
            QCOMPARE(plane.toUv({}), QPointF(0.5, 0.5));
            QVERIFY(distance(plane.toUv({VectorPlane::Reach, 0}), {1, 0.5}) < 1e-12);
            for (const QPointF chroma : {QPointF(0.3, -0.2), QPointF(-0.01, 0.55)})
                QVERIFY(distance(plane.fromUv(plane.toUv(chroma)), chroma) < 1e-12);
        }
        for (const auto& matrix : {colorSpaceRgbToYCbCr(ColorSpace::Rec601),
                                   colorSpaceRgbToYCbCr(ColorSpace::Rec709), rec2020Matrix()}) {
            const QPolygonF hull = vectorHull(matrix);
            for (const VectorTarget& target : vectorTargets(matrix, 0.75F)) {
                const QPointF at(double(target.cb), double(target.cr));
                const double full = hullReach(matrix, directionOf(at));
                QVERIFY(std::fabs(distance(at, {}) / full - 0.75) < 1e-6);
                QVERIFY(smallBox(target, 0.6).containsPoint(at, Qt::OddEvenFill));
                QVERIFY(largeBox(target).containsPoint(at * 1.19, Qt::OddEvenFill));
                QVERIFY(!largeBox(target).containsPoint(at * 1.21, Qt::OddEvenFill));
                QVERIFY(hull.containsPoint(at, Qt::OddEvenFill));
            }
        }
        QCOMPARE(matrixName(rec2020Matrix()), QStringLiteral("Rec 2020"));
        QCOMPARE(matrixName(rgbToYCbCrMatrix(0.25, 0.1)), QStringLiteral("R 0.25 B 0.1"));
    }

    // What is counted covers what is seen, and not much more where the middle is.
    void countedPart() {
        for (double size = 1; size > 0.13; size *= 0.87) {
            for (const double left : {0.0, 0.5 - size / 2, 1 - size}) {
                for (const int gain : {1, 2, 4}) {
                    const ValueRange range =
                        vectorRangeFor({left, left, size, size}, gain, false, SourceCodes({}, {}));
                    const double seen =
                        2 * VectorPlane::Reach *
                        std::max(std::fabs(left - 0.5), std::fabs(left + size - 0.5)) / gain;
                    QVERIFY(double(range.upper) > seen - 1e-6);
                    QVERIFY(double(range.upper) < 2 * seen + 1e-6);
                    QCOMPARE(range.lower, -range.upper);
                }
            }
        }
    }

    void bars_data() {
        QTest::addColumn<QString>("source");
        QTest::addColumn<double>("ratio");
        for (const double ratio : {1.0, 1.5, 2.0}) {
            QTest::addRow("HD at %.1f", ratio) << "smptehdbars" << ratio;
            QTest::addRow("PAL at %.1f", ratio) << "pal75bars" << ratio;
        }
    }

    // Each colour is in the middle of its box, and light is nowhere else than where colours are.
    void bars() {
        QFETCH(QString, source);
        QFETCH(double, ratio);
        const Bars bars(source);
        ScopeEncoding encoding;
        encoding.matrix = colorSpaceRgbToYCbCr(bars.picture.image.colorSpace);
        m_model->setEncoding(encoding);
        m_model->setImage(bars.picture.image);
        m_scope->setTargets({});
        m_scope->setGamutHull(false);
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(m_model->result()->vectors.size, 256);
        const QImage image = m_scope->toImage(m_scope->size(), ratio);
        const ScopeGeometry where = ScopeViewPrivate::of(*m_scope).geometry(m_scope->size(), ratio);
        const auto place = [&](double cb, double cr) {
            return where.toWidget(VectorPlane().toUv({cb, cr})) * ratio;
        };
        for (const VectorTarget& target : vectorTargets(encoding.matrix, 0.75F)) {
            const QPointF at = place(double(target.cb), double(target.cr));
            // A code has 1.5 pixels; the target is within half a code of it.
            int most = 0;
            for (const double dx : {-1.0, 0.0, 1.0})
                for (const double dy : {-1.0, 0.0, 1.0})
                    most = std::max(most, light(image, at + QPointF(dx, dy) * ratio * 0.75));
            QVERIFY2(most > 200, target.name);
        }
        std::vector<QPointF> all;
        for (const Bars::Codes& codes : bars.all)
            all.push_back(place((codes.cb - 128) / 224.0, (codes.cr - 128) / 224.0));
        const QRectF plot(where.plot.topLeft() * ratio, where.plot.size() * ratio);
        for (int y = int(plot.top()); y < int(plot.bottom()) - int(30 * ratio); ++y) {
            for (int x = int(plot.left()); x < int(plot.right()); ++x) {
                if (light(image, QPointF(x, y)) <= 100)
                    continue;
                QVERIFY2(std::any_of(all.begin(), all.end(),
                                     [&](const QPointF& bar) {
                                         return distance(bar, QPointF(x + 0.5, y + 0.5)) <
                                                2.2 * ratio;
                                     }),
                         qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
            }
        }
    }

    void readOutAndSelection() {
        const Bars bars(QStringLiteral("smptehdbars"));
        m_model->setImage(bars.picture.image);
        m_scope->setUnit(ScopeUnit::Code8);
        QTRY_VERIFY(m_model->isCurrent());
        const ScopeGeometry where = ScopeViewPrivate::of(*m_scope).geometry();
        const QPointF red = where.toWidget(VectorPlane().toUv({-19 / 224.0, 84 / 224.0}));
        const ScopeReadout readout = m_scope->readoutAt(red.toPoint());
        QCOMPARE(readout.count, quint64(Bars::Width * 32));
        QVERIFY2(readout.text.contains(QStringLiteral(" 512 px")) ||
                     readout.text.contains(QStringLiteral(", 512 px")),
                 qPrintable(readout.text));
        QVERIFY(std::fabs(readout.value + 19 / 224.0) < 0.004);
        QVERIFY(std::fabs(readout.second - 84 / 224.0) < 0.004);
        // A path around it by hand.
        const auto move = [this](const QPointF& to) {
            QMouseEvent event(QEvent::MouseMove, to, m_scope->mapToGlobal(to.toPoint()),
                              Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(m_scope.get(), &event);
        };
        QTest::mousePress(m_scope.get(), Qt::LeftButton, {}, (red + QPointF(8, 0)).toPoint());
        for (int degrees = 20; degrees < 360; degrees += 20)
            move(red + unitVector(degrees) * 8);
        QTest::mouseRelease(m_scope.get(), Qt::LeftButton, {}, (red + QPointF(8, 0)).toPoint());
        const auto chosen = [this] {
            const auto mask =
                selectionMask(m_model->image(), m_model->encoding(), m_model->selection());
            return std::count(mask.begin(), mask.end(), 255);
        };
        QCOMPARE(m_model->selection().kind, ScopeSelection::Kind::Chroma);
        QCOMPARE(chosen(), Bars::Width * 32);
        // By keys, from grey, which is in the middle.
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Escape, Qt::Key_Right})
            QTest::keyClick(m_scope.get(), key);
        QTest::keyClick(m_scope.get(), Qt::Key_Return);
        const auto grey = std::count_if(bars.all.begin(), bars.all.end(), [](const auto& each) {
            return each.cb == 128 && each.cr == 128;
        });
        QCOMPARE(chosen(), grey * Bars::Width * 32);
    }

    void hotPixelOfLargePicture() {
        m_scope->resize(200, 150);
        m_scope->setTargets({});
        m_scope->setGamutHull(false);
        const Picture hot = Picture::ofGrey(20, 3840, 2160);
        hot.memory[hot.image.stride * 999 + 3 * 777] = 190;
        m_model->setImage(hot.image);
        QTRY_VERIFY(m_model->isCurrent());
        const auto& matrix = colorSpaceRgbToYCbCr(ColorSpace::Rec709);
        const double red = 170 / 255.0;
        const QPointF chroma(double(matrix.cb[0]) * red, double(matrix.cr[0]) * red);
        for (const bool log : {false, true}) {
            m_scope->setLogRadius(log);
            QTRY_VERIFY(m_model->isCurrent());
            const ScopeGeometry where = ScopeViewPrivate::of(*m_scope).geometry();
            const QPointF at = where.toWidget(VectorPlane{log}.toUv(chroma));
            const QImage image = m_scope->grab().toImage();
            int bright = 0;
            for (int y = -2; y <= 2; ++y)
                for (int x = -2; x <= 2; ++x)
                    bright += light(image, at + QPointF(x, y)) > 38;
            QVERIFY(bright > 0 && bright < 7);
        }
    }

    // The signal grows, the targets stay; what leaves the plane is told at its rim.
    void gainAndOutside() {
        const Picture picture(PixelLayout::RGBAFloat, 32, 16);
        for (int y = 0; y < 16; ++y)
            for (int i = 0; i < 128; ++i)
                picture.setFloat(y, i,
                                 i % 4 == 3   ? 1.0F
                                 : y < 8      ? i % 4 == 0 ? 0.25F : 0.0F
                                 : i % 4 == 2 ? 5.0F
                                              : 0.0F);
        m_model->setImage(picture.image);
        m_scope->setTargets({});
        m_scope->setGamutHull(false);
        const auto& matrix = colorSpaceRgbToYCbCr(ColorSpace::Rec709);
        const QPointF chroma(double(matrix.cb[0]) / 4, double(matrix.cr[0]) / 4);
        for (const int gain : {1, 2, 4}) {
            m_scope->setGain(gain);
            QTRY_VERIFY(m_model->isCurrent());
            const ScopeGeometry where = ScopeViewPrivate::of(*m_scope).geometry();
            const QPointF at = where.toWidget(VectorPlane().toUv(chroma * gain));
            const QImage image = m_scope->grab().toImage();
            int most = 0;
            for (const double x : {-1.0, 0.0, 1.0})
                for (const double y : {-1.0, 0.0, 1.0})
                    most = std::max(most, light(image, at + QPointF(x, y)));
            QVERIFY(most > 200);
            // Blue is to the right, a little below.
            const QRgb rim =
                image.pixel(int(where.plot.right()) + 3,
                            int(where.plot.center().y() + where.plot.width() * 0.0481));
            QCOMPARE(qBlue(rim) > 100, gain == 1);
        }
    }

    void zoomCountsAnew() {
        m_model->setImage(Picture::ofFloats(64, 32).image);
        m_scope->setZoom(4);
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(m_model->result()->vectors.range.upper, 0.15F);
        QCOMPARE(m_scope->zoom(), 4.0);
        m_scope->resetView();
        m_scope->setLumaGate(0.7, 0.4);
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(m_model->result()->vectors.range.upper, 0.6F);
        QVERIFY(m_model->result()->vectors.gated > 0);
    }

    void stateAndMatrix() {
        m_scope->setGain(3);
        QCOMPARE(m_scope->gain(), 2);
        m_scope->setSkinToneAngle(-236.5);
        QCOMPARE(m_scope->skinToneAngle(), 123.5);
        m_scope->setSkinToneLine(true);
        m_scope->setIQLines(true);
        m_scope->setBoxes(Vectorscope::LargeBoxes);
        m_scope->setColoring(Vectorscope::Hue);
        m_scope->setTargets(Vectorscope::Targets75);
        m_scope->setLumaGate(0.1, NAN);
        Vectorscope other;
        other.restoreState(m_scope->saveState());
        QCOMPARE(other.saveState(), m_scope->saveState());
        QVERIFY(other.skinToneLine());
        m_model->setImage(Picture::ofFloats(64, 32).image);
        QTRY_VERIFY(m_model->isCurrent());
        const QImage before = m_scope->grab().toImage();
        connect(m_scope.get(), &ScopeView::contextMenuAboutToShow, this, [](QMenu* menu) {
            for (QAction* const each : menu->findChildren<QAction*>()) {
                if (each->text() == QStringLiteral("Rec 2020"))
                    each->trigger();
            }
            delete menu; // a host that shows one of its own
        });
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {10, 10});
        QApplication::sendEvent(m_scope.get(), &event);
        QCOMPARE(m_model->encoding().matrix.luma[0], 0.2627F);
        QTRY_VERIFY(m_model->isCurrent());
        QVERIFY(m_scope->grab().toImage() != before);
    }

private:
    std::unique_ptr<ScopeModel> m_model;
    std::unique_ptr<Vectorscope> m_scope;
};

KXUI_TEST(VectorscopeTest);
#include "VectorscopeTest.moc"
