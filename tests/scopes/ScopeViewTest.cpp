#include "Pictures.h"

#include <KxUI/scopes/HistogramScope.h>
#include <KxUI/scopes/ImageStatisticsPanel.h>

#include <support/TestRegistry.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QSignalSpy>
#include <QTableView>
#include <QWheelEvent>
#include <QtTest>

#include <algorithm>
#include <array>

using namespace Kestrel::UI;
using Kestrel::Test::Picture;

namespace {

void moveTo(QWidget& widget, const QPoint& position, Qt::MouseButtons buttons = Qt::NoButton) {
    QMouseEvent event(QEvent::MouseMove, position, widget.mapToGlobal(position), Qt::NoButton,
                      buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void drag(QWidget& widget, const QPoint& from, const QPoint& to) {
    QTest::mousePress(&widget, Qt::LeftButton, {}, from);
    moveTo(widget, (from + to) / 2, Qt::LeftButton);
    moveTo(widget, to, Qt::LeftButton);
}

// How many pixels of the plot are brighter than its ground and lines.
int brightPixels(const QImage& image) {
    int bright = 0;
    for (int y = 10; y < image.height(); ++y) {
        for (int x = 20; x < image.width() - 20; ++x)
            bright += qRed(image.pixel(x, y)) > 140 && qGreen(image.pixel(x, y)) < 120 ? 1 : 0;
    }
    return bright;
}

} // namespace

class ScopeViewTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_model = std::make_unique<ScopeModel>();
        m_model->setMaximumRate(1000);
        m_model->setImage(Picture::ofGrey(128).image);
        m_scope = std::make_unique<HistogramScope>();
        m_scope->setModel(m_model.get());
        m_scope->resize(400, 200);
        m_scope->show();
        QTRY_VERIFY(m_model->isCurrent());
    }
    void cleanup() {
        m_scope.reset();
        m_model.reset();
    }

    void hiddenScopeNeedsNothing() {
        const quint64 passes = m_model->passCount();
        m_scope->hide();
        QCOMPARE(m_model->requiredParts(), ScopeModel::Parts());
        m_model->setImage(Picture::ofGrey(3).image);
        QTest::qWait(5);
        QCOMPARE(m_model->passCount(), passes);
        m_scope->show();
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(m_model->passCount(), passes + 1);
        m_scope.reset();
        QCOMPARE(m_model->requiredParts(), ScopeModel::Parts());
    }

    void readOutByMouseAndKeys() {
        m_scope->setUnit(ScopeUnit::Code8);
        m_model->setEncoding([] {
            ScopeEncoding full;
            full.fullRange = true;
            return full;
        }());
        QTRY_VERIFY(m_model->isCurrent());
        QSignalSpy hovered(m_scope.get(), &ScopeView::hovered);
        QSignalSpy left(m_scope.get(), &ScopeView::hoverLeft);
        m_scope->setFocus();
        // From the middle of the axis to the one value that there is.
        QTest::keyClick(m_scope.get(), Qt::Key_Right);
        for (int i = 0; i < 300 && m_scope->readout().count == 0; ++i)
            QTest::keyClick(m_scope.get(), Qt::Key_Right);
        const ScopeReadout found = m_scope->readout();
        QCOMPARE(found.count, quint64(64 * 32));
        QCOMPARE(found.share, 1.0);
        QVERIFY(std::fabs(found.value - 128 / 255.0) < 0.01);
        QVERIFY(hovered.count() > 0);
        QAccessibleInterface* const accessible =
            QAccessible::queryAccessibleInterface(m_scope.get());
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::Chart);
        QCOMPARE(accessible->text(QAccessible::Value), found.text);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Histogram"));
        moveTo(*m_scope, {1, 1});
        QCOMPARE(left.count(), 1);
        QVERIFY(m_scope->readout().isNull());
    }

    void selectionIsAnEdit() {
        QSignalSpy started(m_scope.get(), &ScopeView::editStarted);
        QSignalSpy edited(m_scope.get(), &ScopeView::selectionEdited);
        QSignalSpy finished(m_scope.get(), &ScopeView::editFinished);
        drag(*m_scope, {100, 100}, {300, 120});
        QVERIFY(m_scope->isEditing());
        QCOMPARE(started.count(), 1);
        QVERIFY(edited.count() >= 1);
        const ScopeSelection chosen = m_model->selection();
        QCOMPARE(chosen.kind, ScopeSelection::Kind::Values);
        QVERIFY(chosen.lower > 0.1F && chosen.lower < 0.3F && chosen.upper > 0.7F);
        QTest::mouseRelease(m_scope.get(), Qt::LeftButton, {}, {300, 120});
        QCOMPARE(finished.takeFirst()[0].toBool(), true);
        // Another one is taken back.
        drag(*m_scope, {50, 100}, {60, 120});
        QVERIFY(m_model->selection() != chosen);
        QTest::keyClick(m_scope.get(), Qt::Key_Escape);
        QVERIFY(m_model->selection() == chosen);
        QCOMPARE(finished.takeFirst()[0].toBool(), false);
        QTest::keyClick(m_scope.get(), Qt::Key_Escape);
        QCOMPARE(m_model->selection().kind, ScopeSelection::Kind::Nothing);
    }

    void clickBesidesPlotSelectsBeyond() {
        QTest::mouseClick(m_scope.get(), Qt::LeftButton, {}, {m_scope->width() - 8, 100});
        QVERIFY(std::isinf(m_model->selection().upper));
        QVERIFY(m_model->selection().lower > 1.09F);
    }

    // What is beyond the axis, nowhere on it, and on it adds up; the bars tell it and select it.
    void nothingIsLostAtTheSides() {
        const Picture picture = Picture::ofFloats(31, 20);
        m_model->setImage(picture.image);
        m_scope->setLayout(HistogramScope::SideBySide);
        m_scope->setChannels(HistogramScope::Red | HistogramScope::Hue);
        QTRY_VERIFY(m_model->isCurrent());
        QVERIFY(m_model->requiredParts() & ScopeModel::Hues);
        const auto counted = m_model->result();
        const ChannelStatistics& red = counted->statistics.channels[ScopeHistogram::Red];
        // From the left: below, the axis of red, above, no number; then the same of hue.
        std::array<quint64, 4> sums{};
        QStringList seen;
        for (int x = 0; x < m_scope->width() / 2; ++x) {
            const ScopeReadout there = m_scope->readoutAt({x, 60});
            const std::size_t kind = there.text.startsWith(QLatin1String("Below"))   ? 0
                                     : there.text.startsWith(QLatin1String("Above")) ? 2
                                     : there.text.startsWith(QLatin1String("No "))   ? 3
                                                                                     : 1;
            if (!there.isNull() && (kind == 1 || !seen.contains(there.text)))
                sums[kind] += there.count;
            seen.append(there.text);
        }
        QCOMPARE(sums[3], quint64(red.nan));
        QCOMPARE(sums[0] + sums[1] + sums[2] + sums[3], quint64(31 * 20));

        // The bars of hue are those of what has none.
        const int right = m_scope->width() - 7;
        const ScopeReadout none = m_scope->readoutAt({right, 60});
        QCOMPARE(none.count, quint64(counted->hues.greys + counted->hues.none));
        QTest::mouseClick(m_scope.get(), Qt::LeftButton, {}, {right, 60});
        const auto chosen = [this] {
            const auto mask =
                selectionMask(m_model->image(), m_model->encoding(), m_model->selection());
            return quint64(std::count(mask.begin(), mask.end(), 255));
        };
        QCOMPARE(chosen(), none.count);
        // A drag over the cell of hue selects by hue, and no further than that cell.
        drag(*m_scope, {260, 60}, {390, 60});
        QTest::mouseRelease(m_scope.get(), Qt::LeftButton, {}, {390, 60});
        QCOMPARE(m_model->selection().channel, ScopeSelection::Hue);
        QCOMPARE(m_model->selection().upper, 1.0F);
        QVERIFY(chosen() > 0 && chosen() < 31 * 20);
    }

    void asksForAPixelOfWhatIsThere() {
        const Picture picture = Picture::ofGrey(128);
        picture.memory[picture.image.stride * 7 + 3 * 9] = 255;
        m_model->setImage(picture.image);
        m_scope->setChannels(HistogramScope::Red);
        QTRY_VERIFY(m_model->isCurrent());
        QSignalSpy requested(m_scope.get(), &ScopeView::pixelRequested);
        int x = m_scope->width() - 30;
        while (x > 200 && m_scope->readoutAt({x, 60}).count == 0)
            --x;
        QTest::mouseClick(m_scope.get(), Qt::LeftButton, Qt::ControlModifier, {x, 60});
        QTRY_COMPARE(requested.count(), 1);
        QCOMPARE(requested.takeFirst()[0].toPoint(), QPoint(9, 7));
        moveTo(*m_scope, {x, 60});
        QTest::keyClick(m_scope.get(), Qt::Key_P);
        QTRY_COMPARE(requested.count(), 1);
        QCOMPARE(m_model->selection().kind, ScopeSelection::Kind::Nothing);
    }

    void axisPansAndZoomsInEveryCell() {
        m_scope->setLayout(HistogramScope::SideBySide);
        m_scope->setChannels(HistogramScope::Red | HistogramScope::Green);
        const auto valueAt = [this](int x) { return m_scope->readoutAt({x, 60}).value; };
        const double before = valueAt(300);
        QWheelEvent wheel({300, 60}, m_scope->mapToGlobal(QPoint(300, 60)), {}, {0, 1200}, {}, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_scope.get(), &wheel);
        QVERIFY(std::fabs(valueAt(300) - before) < 1e-3);
        const int axis = m_scope->height() - 8;
        drag(*m_scope, {300, axis}, {320, axis});
        QTest::mouseRelease(m_scope.get(), Qt::LeftButton, {}, {320, axis});
        QCOMPARE(m_model->selection().kind, ScopeSelection::Kind::Nothing);
        QVERIFY(std::fabs(valueAt(320) - before) < 1e-3);
    }

    void heightsByRule() {
        // One value in each pixel: whatever fills the height is seen at the upper edge.
        m_scope->setChannels(HistogramScope::Red);
        const auto topIsLit = [this] {
            const QImage image = m_scope->grab().toImage();
            for (int x = 20; x < image.width() - 20; ++x) {
                if (qRed(image.pixel(x, 8)) > 120)
                    return true;
            }
            return false;
        };
        QVERIFY(topIsLit());
        m_scope->setFullHeight(HistogramScope::Share);
        m_scope->setFullShare(1);
        QVERIFY(!topIsLit()); // a code is wider than a column
        m_scope->setFullShare(0.001);
        QVERIFY(topIsLit());
        m_scope->setFullShare(NAN);
        QVERIFY(m_scope->fullShare() > 0);
        // While a film plays, the height stays.
        m_scope->setFullHeight(HistogramScope::TallestInside);
        QVERIFY(topIsLit());
        m_model->setInteractive(true);
        m_model->setImage(Picture::ofGrey(128, 16, 8).image);
        QTRY_VERIFY(m_model->isCurrent());
        QVERIFY(!topIsLit());
    }

    void handlersMayDeleteTheScope_data() {
        QTest::addColumn<QByteArray>("signal");
        for (const char* name : {"hovered(Kestrel::UI::ScopeReadout)", "editStarted()",
                                 "selectionEdited(Kestrel::UI::ScopeSelection)",
                                 "editFinished(bool)", "viewChanged()"})
            QTest::newRow(name) << QByteArray(name);
    }

    void handlersMayDeleteTheScope() {
        QFETCH(QByteArray, signal);
        QPointer<HistogramScope> scope = new HistogramScope;
        scope->setModel(m_model.get());
        scope->resize(300, 200);
        scope->show();
        const QByteArray coded = QByteArray::number(QSIGNAL_CODE) + signal;
        m_doomed = scope;
        QVERIFY(connect(scope, coded.constData(), this, SLOT(deleteDoomed())));
        const auto act = [&scope](auto what) {
            if (scope)
                what();
        };
        act([&] { moveTo(*scope, {150, 100}); });
        act([&] { QTest::mousePress(scope, Qt::LeftButton, {}, {100, 100}); });
        act([&] { moveTo(*scope, {150, 100}, Qt::LeftButton); });
        act([&] { QTest::mouseRelease(scope, Qt::LeftButton, {}, {150, 100}); });
        act([&] { QTest::keyClick(scope, Qt::Key_Plus); });
        QVERIFY(!scope);
    }

    void stateComesBack() {
        m_scope->setBrightness(2);
        m_scope->setUnit(ScopeUnit::Millivolt);
        m_scope->setLayout(HistogramScope::SideBySide);
        m_scope->setEqualArea(true);
        m_scope->setFullHeight(HistogramScope::TallOnes);
        m_scope->setAxis(HistogramScope::LogAxis);
        m_scope->setChannels(HistogramScope::Red | HistogramScope::Largest);
        m_scope->setRange(-2, 30);
        m_scope->setLogCounts(true);
        const QVariantMap state = m_scope->saveState();
        HistogramScope other;
        other.restoreState(state);
        QCOMPARE(other.saveState(), state);
        other.restoreState({{QStringLiteral("axis"), 99}, {QStringLiteral("lower"), "x"}});
        QVERIFY(other.axis() <= HistogramScope::PqAxis);
        QVERIFY(other.lower() < other.upper());
    }

    void singlePixelOfLargePictureIsSeen() {
        const Picture picture = Picture::ofGrey(20, 3840, 2160);
        unsigned char* const pixel = picture.memory + picture.image.stride * 999 + 3 * 777;
        pixel[0] = 190;
        m_scope->setLogCounts(true);
        m_scope->setChannels(HistogramScope::Red);
        m_scope->resize(200, 150);
        m_model->setImage(Picture::ofGrey(20, 3840, 2160).image);
        QTRY_VERIFY(m_model->isCurrent());
        const int without = brightPixels(m_scope->grab().toImage());
        m_model->setImage(picture.image);
        QTRY_VERIFY(m_model->isCurrent());
        QVERIFY(brightPixels(m_scope->grab().toImage()) > without);
    }

    void imagesOfAnySize() {
        QVERIFY(m_scope->toImage({}).isNull());
        QVERIFY(m_scope->toImage({100000, 1}).isNull());
        QCOMPARE(m_scope->toImage({1, 1}).size(), QSize(1, 1));
        QCOMPARE(m_scope->toImage({300, 200}, 1.5).size(), QSize(450, 300));
        m_scope->setModel(nullptr);
        QVERIFY(!m_scope->toImage({300, 200}).isNull());
    }

    void menuOffersWhatKeysDo() {
        QPointer<QMenu> shown;
        connect(m_scope.get(), &ScopeView::contextMenuAboutToShow, this, [&](QMenu* menu) {
            shown = menu;
            menu->addAction(QStringLiteral("of the host"));
        });
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {10, 10});
        QApplication::sendEvent(m_scope.get(), &event);
        QVERIFY(shown);
        QVERIFY(shown->actions().size() >= 7);
        shown->close();
        QTRY_VERIFY(!shown);
    }

    void panelOfFigures() {
        ImageStatisticsPanel panel;
        panel.setModel(m_model.get());
        panel.setColumns(ImageStatisticsPanel::Minimum | ImageStatisticsPanel::Maximum |
                         ImageStatisticsPanel::NotANumber | ImageStatisticsPanel::Legal |
                         ImageStatisticsPanel::EbuR103);
        panel.setPrecision(2);
        panel.setUnit(ScopeUnit::Percent);
        panel.show();
        QTRY_VERIFY(m_model->isCurrent());
        const QString first = QStringLiteral(
            "Channel\tMin\tMax\tNaN\tLegal %\tR 103 %\nRed\t50.20\t50.20\t0\t100.00\t100.00\n");
        QTRY_VERIFY(panel.toText().startsWith(first));
        QTest::keyClick(panel.findChild<QTableView*>(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), panel.toText());
        m_model->hold();
        panel.setShowDifference(true);
        const Picture picture = Picture::ofGrey(128);
        picture.memory[picture.image.stride * 5 + 3 * 11] = 255;
        m_model->setImage(picture.image);
        QTRY_VERIFY(panel.toText().contains(QStringLiteral("Red\t0.00\t49.80\t0\t0.00\t0.00\n")));

        // Where the largest red is.
        QSignalSpy requested(&panel, &ImageStatisticsPanel::pixelRequested);
        auto* const table = panel.findChild<QTableView*>();
        Q_EMIT table->doubleClicked(table->model()->index(0, 1));
        QTRY_COMPARE(requested.count(), 1);
        QCOMPARE(requested[0][0].toPoint(), QPoint(11, 5));
    }

public Q_SLOTS:
    void deleteDoomed() { delete m_doomed; }

private:
    std::unique_ptr<ScopeModel> m_model;
    std::unique_ptr<HistogramScope> m_scope;
    QPointer<QObject> m_doomed;
};

KXUI_TEST(ScopeViewTest);
#include "ScopeViewTest.moc"
