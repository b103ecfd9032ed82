#include "Bars.h"

#include <KxUI/scopes/CountWindow_p.h>
#include <KxUI/scopes/ScopeView_p.h>
#include <KxUI/scopes/WaveformLayout_p.h>
#include <KxUI/scopes/WaveformScope.h>

#include <support/TestRegistry.h>

#include <QApplication>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <cmath>

using namespace Kestrel::UI;
using Kestrel::Test::Bars;
using Kestrel::Test::Picture;

namespace {

void moveTo(QWidget& widget, const QPointF& position, Qt::MouseButtons buttons = Qt::NoButton) {
    QMouseEvent event(QEvent::MouseMove, position, widget.mapToGlobal(position.toPoint()),
                      Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

int light(const QImage& image, const QPointF& place) {
    return qGreen(image.pixel(int(std::floor(place.x())), int(std::floor(place.y()))));
}

} // namespace

class WaveformScopeTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_model = std::make_unique<ScopeModel>();
        m_model->setMaximumRate(1000);
        m_scope = std::make_unique<WaveformScope>();
        m_scope->setModel(m_model.get());
        m_scope->resize(500, 340);
        m_scope->show();
    }
    void cleanup() {
        m_scope.reset();
        m_model.reset();
    }

    // Sums of any part of a table, over pixels that know nothing of its cells.
    void windows() {
        std::vector<std::uint32_t> counts(30 * 7, 5);
        for (int width = 3; width < 60; ++width) {
            CountAxis across;
            across.cells = 30;
            across.begin = 0.37 * width / 60;
            across.end = 30 - 0.71 * width / 60;
            across.pixels = width;
            CountAxis down;
            down.step = 30;
            down.cells = 7;
            down.end = 7;
            down.pixels = 11;
            const IntensityGrid even = densitiesOf(counts.data(), across, down, 5);
            for (int y = 0; y < 11; ++y)
                for (int x = 0; x < width; ++x)
                    QVERIFY(std::fabs(even.row(y)[x] - 1) < 1e-5F);
        }
        // One cell of all, counted by columns and from below; then a part far outside.
        std::vector<std::uint32_t> one(30 * 7, 0);
        one[12 * 7 + 1] = 3;
        CountAxis across;
        across.step = 7;
        across.cells = 30;
        across.begin = -3.3;
        across.end = 31;
        across.pixels = 19;
        CountAxis down;
        down.step = -1;
        down.cells = 7;
        down.end = 7.5;
        down.pixels = 5;
        const IntensityGrid grid = densitiesOf(one.data() + 6, across, down, 1);
        double sum = 0;
        for (int y = 0; y < 5; ++y)
            for (int x = 0; x < 19; ++x)
                sum += double(grid.row(y)[x]) * 34.3 / 19 * 7.5 / 5;
        QVERIFY(std::fabs(sum - 3) < 1e-5);
        QVERIFY(grid.row(3)[8] > 0 && grid.row(0)[8] == 0.0F);
        across.begin = 40;
        across.end = 50;
        QCOMPARE(densitiesOf(one.data() + 6, across, down, 1).row(3)[8], 0.0F);
    }

    void cellsAndAxes() {
        const std::vector<ScopeWaveform::Channel> rgb{ScopeWaveform::Red, ScopeWaveform::Green,
                                                      ScopeWaveform::Blue};
        using Layout = WaveformLayout;
        for (const auto arrangement : {Layout::Overlay, Layout::Parade, Layout::Stack}) {
            for (const bool rows : {false, true}) {
                const Layout layout(rgb, arrangement, rows);
                const auto last = layout.cells.size() - 1;
                for (const QPointF st : {QPointF(0.2, 0.9), QPointF(0.7, 0.1)}) {
                    const QPointF uv = layout.fromCell(last, st);
                    QCOMPARE(layout.cellAt(uv), last);
                    const QPointF away = layout.toCell(last, uv) - st;
                    QVERIFY(away.manhattanLength() < 1e-12);
                }
                // The first is on the left or at the top, as the picture's first row is.
                const QPointF first = layout.fromCell(0, {0, 0});
                QVERIFY(first.x() < 1e-9 &&
                        std::fabs(first.y() - (rows                           ? 1.0
                                               : arrangement == Layout::Stack ? 2.0 / 3
                                                                              : 0.0)) < 1e-9);
            }
        }
        // The same codes at the same height.
        const WaveformAxis chroma = WaveformAxis{-16 / 219.0, 239 / 219.0}.ofChroma({});
        QVERIFY(std::fabs(chroma.lower + 128 / 224.0) < 1e-9);
        QVERIFY(std::fabs(chroma.upper - 127 / 224.0) < 1e-9);
        for (double size = 1; size > 0.004; size *= 0.83) {
            for (double begin = 0; begin + size <= 1; begin += 0.013) {
                const AxisPart part = AxisPart::around(begin, begin + size);
                QVERIFY(part.begin <= begin + 1e-9 && part.end >= begin + size - 1e-9);
                QVERIFY(part.begin >= 0 && part.end <= 1 && part.end - part.begin <= 4 * size);
            }
        }
    }

    void bars_data() {
        QTest::addColumn<QString>("source");
        QTest::newRow("HD") << "smptehdbars";
        QTest::newRow("PAL") << "pal75bars";
    }

    // Each bar is at its codes and nowhere else, in the counts and in the picture of them.
    void bars() {
        QFETCH(QString, source);
        const Bars bars(source);
        ScopeEncoding encoding;
        encoding.matrix = colorSpaceRgbToYCbCr(bars.picture.image.colorSpace);
        m_model->setEncoding(encoding);
        m_model->setImage(bars.picture.image);
        m_scope->setUnit(ScopeUnit::Code8);
        m_scope->setMode(WaveformScope::YCbCrParade);
        QTRY_VERIFY(m_model->isCurrent());
        const ScopeGeometry where = ScopeViewPrivate::of(*m_scope).geometry();
        const QImage image = m_scope->grab().toImage();
        const WaveformLayout layout({ScopeWaveform::Luma, ScopeWaveform::Cb, ScopeWaveform::Cr},
                                    WaveformLayout::Parade, false);
        const int bins = 256;
        for (std::size_t i = 0; i < bars.all.size(); ++i) {
            const Bars::Codes& codes = bars.all[i];
            const int each[]{codes.luma, codes.cb, codes.cr};
            for (std::size_t cell = 0; cell < 3; ++cell) {
                const double s = (double(i) + 0.5) / double(bars.all.size());
                const WaveformAxis axis;
                const double value = (each[cell] - 16) / 219.0; // of the same code in luma
                const QPointF at = where.toWidget(layout.fromCell(cell, {s, axis.placeOf(value)}));
                const ScopeReadout readout = m_scope->readoutAt(at.toPoint());
                QVERIFY(readout.count >= quint64(bars.picture.image.height));
                QVERIFY(std::fabs(readout.valueText.toDouble() - each[cell]) <= 0.51);
                QVERIFY(light(image, at) > 60);
                // A bin is more than a pixel of this size, so two are its edges and no more.
                const double size = where.plot.height() / 1.2 / 219;
                QVERIFY(size < 1.5);
                for (const double away : {-3.0, 3.0})
                    QVERIFY(light(image, at + QPointF(0, away)) < light(image, at) / 2 ||
                            std::any_of(bars.all.begin(), bars.all.end(),
                                        [&](const Bars::Codes& other) {
                                            const int rest[]{other.luma, other.cb, other.cr};
                                            const int apart = std::abs(rest[cell] - each[cell]);
                                            return apart > 0 && apart < 8;
                                        }));
            }
        }
        QCOMPARE(m_model->result()->waveform.range(ScopeWaveform::Cb).bins, bins);
    }

    // Light of known strength is where the labels say.
    void nits_data() {
        QTest::addColumn<int>("transfer");
        QTest::addColumn<int>("unit");
        QTest::addColumn<double>("white");
        using Transfer = ScopeEncoding::Transfer;
        QTest::newRow("PQ") << int(Transfer::Pq) << int(ScopeUnit::NitsPq) << 203.0;
        QTest::newRow("HLG") << int(Transfer::Hlg) << int(ScopeUnit::NitsHlg) << 203.0;
    }

    void nits() {
        QFETCH(int, transfer);
        QFETCH(int, unit);
        QFETCH(double, white);
        const Picture picture(PixelLayout::RGBAFloat, 64, 16);
        for (int y = 0; y < 16; ++y)
            for (int i = 0; i < 4 * 64; ++i)
                picture.setFloat(y, i, i % 4 == 3 ? 1.0F : i < 2 * 64 ? 1.0F : 0.25F);
        ScopeEncoding encoding;
        encoding.transfer = ScopeEncoding::Transfer(transfer);
        encoding.whiteNits = float(white);
        m_model->setEncoding(encoding);
        m_model->setImage(picture.image);
        m_scope->setUnit(ScopeUnit(unit));
        m_scope->setRange(0, 1);
        QTRY_VERIFY(m_model->isCurrent());
        m_scope->setFocus();
        const ScopeGeometry where = ScopeViewPrivate::of(*m_scope).geometry();
        for (const double share : {1.0, 0.25}) {
            const double signal = fromScopeUnit(ScopeUnit(unit), share * white, encoding);
            const QPointF at = where.toWidget({share == 1.0 ? 0.25 : 0.75, signal});
            const ScopeReadout readout = m_scope->readoutAt(at.toPoint());
            QVERIFY2(readout.count > 0, qPrintable(readout.text));
            const double read = readout.valueText.section(QLatin1Char(' '), 0, 0).toDouble();
            QVERIFY2(std::fabs(read / (share * white) - 1) < 0.03, qPrintable(readout.text));
            // A bin may begin in the pixel beside.
            const QImage image = m_scope->grab().toImage();
            QVERIFY(std::max(light(image, at), light(image, at + QPointF(0, 0.7))) > 60);
        }
    }

    void hotPixelOfLargePicture() {
        m_scope->resize(200, 150);
        const Picture plain = Picture::ofGrey(20, 3840, 2160);
        const Picture hot = Picture::ofGrey(20, 3840, 2160);
        hot.memory[hot.image.stride * 999 + 3 * 777 + 1] = 190;
        const auto bright = [this](const Picture& picture) {
            m_model->setImage(picture.image);
            [this] { QTRY_VERIFY(m_model->isCurrent()); }();
            const QRectF plot = ScopeViewPrivate::of(*m_scope).geometry().plot;
            const QImage image = m_scope->grab().toImage();
            int count = 0;
            for (int x = int(plot.left()); x < int(plot.right()) - 3; ++x)
                for (int y = int(plot.top()) + 30; y < int(plot.bottom()) - 40; ++y)
                    count += light(image, QPointF(x, y)) >= 34 && // beside any line
                             light(image, QPointF(x + 3, y)) < 30;
            return count;
        };
        m_scope->setMode(WaveformScope::RgbOverlay);
        QCOMPARE(bright(plain), 0);
        QVERIFY(bright(hot) > 0);
        QVERIFY(bright(hot) < 5);
    }

    void beyondTheAxis() {
        const Picture picture(PixelLayout::RGBAFloat, 40, 10);
        for (int y = 0; y < 10; ++y)
            for (int i = 0; i < 160; ++i)
                picture.setFloat(y, i, i % 4 == 3 ? 1.0F : i < 80 ? INFINITY : y ? -3.0F : NAN);
        m_model->setImage(picture.image);
        m_scope->setMode(WaveformScope::RgbOverlay);
        QTRY_VERIFY(m_model->isCurrent());
        const QRectF plot = ScopeViewPrivate::of(*m_scope).geometry().plot;
        const QImage image = m_scope->grab().toImage();
        const double left = plot.left() + plot.width() / 4;
        const double right = plot.left() + plot.width() * 3 / 4;
        QVERIFY(light(image, {left, plot.top() - 4}) > 100);
        QVERIFY(light(image, {right, plot.top() - 4}) < 40);
        QVERIFY(light(image, {right, plot.bottom() + 3}) > 100);
        QVERIFY(light(image, {left, plot.bottom() + 3}) < 40);
        // What has no place has no range either; what has, fits.
        m_scope->fitRange();
        QTRY_COMPARE(m_scope->lower(), -3.0 - 3 / 1024.0);
        QTRY_VERIFY(m_model->isCurrent());
        QVERIFY(!(m_model->requiredParts() & ScopeModel::Values));
    }

    void selectionAndPixels() {
        const Bars bars(QStringLiteral("smptehdbars"));
        m_model->setImage(bars.picture.image);
        m_scope->setMode(WaveformScope::YCbCrParade);
        QTRY_VERIFY(m_model->isCurrent());
        const ScopeGeometry where = ScopeViewPrivate::of(*m_scope).geometry();
        // A drag in the cell of Cb.
        const QPointF from = where.toWidget({0.5, 0.55});
        QTest::mousePress(m_scope.get(), Qt::LeftButton, {}, from.toPoint());
        moveTo(*m_scope, from + QPointF(0, -30), Qt::LeftButton);
        moveTo(*m_scope, where.toWidget({0.9, 0.95}), Qt::LeftButton);
        QTest::mouseRelease(m_scope.get(), Qt::LeftButton, {},
                            where.toWidget({0.9, 0.95}).toPoint());
        const ScopeSelection chosen = m_model->selection();
        QCOMPARE(chosen.channel, ScopeSelection::Cb);
        QVERIFY(std::fabs(chosen.upper - 0.498F) < 0.02F && chosen.lower > 0);
        const auto isBlue = [](const Bars::Codes& codes) { return codes.cb == 212; };
        const int blue =
            int(std::find_if(bars.all.begin(), bars.all.end(), isBlue) - bars.all.begin());
        // Pixels of a column are looked for in that column, and where pixels are counted.
        QVector<QPoint> found;
        connect(m_model.get(), &ScopeModel::found, this,
                [&found](const QObject*, const QPoint& pixel) { found.append(pixel); });
        m_model->find(this, chosen, QRect(0, 0, 3, 3));
        m_model->find(this, chosen, QRect(blue * Bars::Width + 3, 5, 2, 2));
        QTRY_COMPARE(found.size(), 1);
        QCOMPARE(found[0], QPoint(blue * Bars::Width + 3, 5));
        m_model->setRegion({0, 20, 500, 5});
        m_model->find(this, chosen);
        QTRY_COMPARE(found.size(), 2);
        QCOMPARE(found[1].y(), 20);
        // A click says where that is which a scope shows: in the column that it is shown in.
        QSignalSpy requested(m_scope.get(), &ScopeView::pixelRequested);
        m_model->setRegion({});
        QTRY_VERIFY(m_model->isCurrent());
        const double value = (bars.all[std::size_t(blue)].luma - 16) / 219.0;
        const double s = (blue + 0.5) / double(bars.all.size());
        const QPointF at = where.toWidget({s / 3, WaveformAxis().placeOf(value)});
        QTest::mouseClick(m_scope.get(), Qt::LeftButton, Qt::ControlModifier, at.toPoint());
        QTRY_COMPARE(requested.count(), 1);
        const QPoint pixel = requested[0][0].toPoint();
        QVERIFY(pixel.x() / Bars::Width == blue && pixel.y() == 0);
    }

    // Two views of one model see what each of them needs.
    void zoomedNeighbour() {
        const Picture picture = Picture::ofFloats(64, 32);
        m_model->setImage(picture.image);
        WaveformScope other;
        other.setModel(m_model.get());
        other.setMode(WaveformScope::YCbCrParade);
        other.resize(300, 200);
        other.show();
        for (int i = 0; i < 8; ++i)
            QTest::keyClick(&other, Qt::Key_Plus);
        QTRY_VERIFY(m_model->isCurrent());
        const ScopeWaveform& counted = m_model->result()->waveform;
        QVERIFY(counted.has(ScopeWaveform::Luma) && counted.has(ScopeWaveform::Cr));
        QVERIFY(counted.luma.lower <= -0.1F && counted.luma.upper >= 1.1F);
        QVERIFY(counted.luma.bins > 1000);
    }

    void readOutByKeys() {
        m_model->setImage(Picture::ofGrey(128).image);
        m_scope->setUnit(ScopeUnit::Code8);
        ScopeEncoding encoding;
        encoding.fullRange = true;
        m_model->setEncoding(encoding);
        QTRY_VERIFY(m_model->isCurrent());
        m_scope->setFocus();
        QTest::keyClick(m_scope.get(), Qt::Key_Right);
        for (int i = 0; i < 60 && m_scope->readout().count == 0; ++i)
            QTest::keyClick(m_scope.get(), Qt::Key_Up);
        const ScopeReadout readout = m_scope->readout();
        QCOMPARE(readout.text, QStringLiteral("Luma 128, 32 px, x 32"));
        QCOMPARE(readout.share, 1 / 64.0);
        QTest::keyClick(m_scope.get(), Qt::Key_Right);
        QCOMPARE(m_scope->readout().firstColumn, 33);
        QTest::keyClick(m_scope.get(), Qt::Key_Return);
        QVERIFY(m_model->selection().lower < 128 / 255.0F &&
                m_model->selection().upper > 128 / 255.0F);
    }

    void stateAndPeaks() {
        m_scope->setMode(WaveformScope::YCbCrStack);
        m_scope->setOrientation(WaveformScope::Rows);
        m_scope->setEnvelope(WaveformScope::BothEnvelopes);
        m_scope->setLimits(WaveformScope::EbuR103);
        m_scope->setColoring(WaveformScope::Phosphor);
        m_scope->setRange(3, -2);
        m_scope->setSecondUnit(ScopeUnit::Millivolt);
        m_scope->setSecondUnitShown(true);
        WaveformScope other;
        other.restoreState(m_scope->saveState());
        QCOMPARE(other.saveState(), m_scope->saveState());
        other.restoreState({{QStringLiteral("mode"), 99}, {QStringLiteral("lower"), "x"}});
        QCOMPARE(other.mode(), WaveformScope::YCbCrStack);
        QVERIFY(other.lower() < other.upper());
        for (const int code : {50, 200}) {
            m_model->setImage(Picture::ofGrey(static_cast<unsigned char>(code)).image);
            QTRY_VERIFY(m_model->isCurrent());
        }
        // What is held is seen where it is to be.
        m_model->hold();
        m_model->setImage(Picture::ofGrey(90).image);
        QTRY_VERIFY(m_model->isCurrent());
        const QImage compared = m_scope->toImage({300, 200});
        m_scope->setShowReference(false);
        const QImage reached = m_scope->toImage({300, 200});
        QVERIFY(reached != compared);
        m_scope->resetPeak();
        QVERIFY(m_scope->toImage({300, 200}) != reached);
    }

private:
    std::unique_ptr<ScopeModel> m_model;
    std::unique_ptr<WaveformScope> m_scope;
};

KXUI_TEST(WaveformScopeTest);
#include "WaveformScopeTest.moc"
