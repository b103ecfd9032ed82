#include <KxUI/values/DoubleSpinBox.h>
#include <KxUI/values/LinearSliderLook_p.h>
#include <KxUI/values/TinySlider.h>

#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QLineEdit>

#include <cfloat>
#include <cmath>
#include <limits>

using namespace Kestrel::UI;
using Kestrel::Test::moveMouse;
using Kestrel::Test::sendKey;

namespace {

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinite = std::numeric_limits<double>::infinity();

/** A slider of one of the two looks, with a groove of about 200 pixels. */
template <class Slider>
std::unique_ptr<Slider> makeSlider(Qt::Orientation orientation = Qt::Horizontal,
                                   Qt::LayoutDirection direction = Qt::LeftToRight) {
    auto slider = std::make_unique<Slider>();
    slider->setOrientation(orientation);
    slider->setLayoutDirection(direction);
    slider->resize(orientation == Qt::Horizontal ? QSize(220, 60) : QSize(60, 220));
    return slider;
}

const SliderGeometry& partsOf(const LinearSlider& slider) {
    return LinearSliderPrivate::of(&slider)->geometry();
}

QPoint handleOf(const LinearSlider& slider, const QPoint& offset = QPoint()) {
    return partsOf(slider).handle(slider.value()).center().toPoint() + offset;
}

void press(LinearSlider& slider, const QPoint& at, Qt::KeyboardModifiers modifiers = {},
           Qt::MouseButton button = Qt::LeftButton) {
    QTest::mousePress(&slider, button, modifiers, at);
}

void release(LinearSlider& slider, const QPoint& at, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseRelease(&slider, button, {}, at);
}

template <class Slider>
Kestrel::Test::EditedWidget<Slider> editedSlider(Qt::Orientation orientation) {
    Kestrel::Test::EditedWidget<Slider> edited;
    edited.make = [orientation] {
        auto slider = makeSlider<Slider>(orientation);
        slider->setValue(0.4);
        return slider;
    };
    edited.another = 0.77;
    const auto start = std::make_shared<QPoint>();
    const auto at = [=](int nth) {
        const int way = 20 * nth;
        return *start + (orientation == Qt::Horizontal ? QPoint(way, 0) : QPoint(0, -way));
    };
    edited.press = [=](Slider& slider) { press(slider, *start = handleOf(slider)); };
    edited.move = [=](Slider& slider, int nth) { moveMouse(slider, at(nth)); };
    edited.release = [=](Slider& slider) { release(slider, at(3)); };
    edited.key = Qt::Key_Up;
    edited.notch = [](Slider& slider) { return Kestrel::Test::turnWheel(slider, 120); };
    edited.once = [](Slider& slider) { slider.resetToDefault(); };
    return edited;
}

} // namespace

class LinearSliderTest : public QObject {
    Q_OBJECT

private slots:
    void scaleRoundTrips() {
        const std::pair<double, double> ranges[] = {
            {0, 1}, {-1, 1}, {0, 1e-6}, {-1e6, 3}, {1e15, 1e15 + 100}, {-DBL_MAX, DBL_MAX}};
        for (const auto& [low, high] : ranges) {
            for (const double exponent : {0.25, 1.0, 2.0, 3.5}) {
                for (const double length : {1.0, 13.0, 200.5, 4000.0, -300.0}) {
                    const SliderScale scale{low, high, exponent, 7.0, length};
                    QCOMPARE(scale.valueOf(0.0), low);
                    QCOMPARE(scale.valueOf(1.0), high);
                    double last = low;
                    for (int i = 0; i <= 100; ++i) {
                        const double value = scale.valueOf(i / 100.0);
                        QVERIFY(value >= last && value <= high);
                        last = value;
                        const double there = scale.partAt(scale.pixelOf(value));
                        QVERIFY(std::fabs(scale.valueOf(there) - value) <=
                                (high * 1e-9 - low * 1e-9));
                    }
                    QCOMPARE(scale.partOf(-Infinite), 0.0);
                    QCOMPARE(scale.partOf(Infinite), 1.0);
                }
            }
        }
        QCOMPARE((SliderScale{2, 2, 1, 0, 100}.partOf(2)), 0.0); // no range
    }

    void ticksAreRoundAndApart() {
        struct Row {
            double low, high, exponent, length, smallest;
            const char* longTicks;
        };
        const Row rows[] = {
            {0, 1, 1, 200, 0, "0 0.2 0.4 0.6 0.8 1"},
            {0, 1, 1, 400, 0, "0 0.1 0.2 0.3 0.4 0.5 0.6 0.7 0.8 0.9 1"},
            {-1, 1, 1, 200, 0, "-1 -0.5 0 0.5 1"},
            {0.05, 0.95, 1, 200, 0, "0.2 0.4 0.6 0.8"},
            {1001, 1240, 1, 300, 1, "1050 1100 1150 1200"},
            {1, 5, 1, 400, 1, "1 2 3 4 5"},
            {0, 1, 2, 200, 0, "0 0.5 1"},
            {0, 1, 1, 7, 0, ""},
            {0, 0, 1, 200, 0, ""},
            {1e18, 1e18 + 2, 1, 200, 0, ""},
            {-DBL_MAX, DBL_MAX, 1, 200, 0, ""},
        };
        for (const Row& row : rows) {
            const SliderScale scale{row.low, row.high, row.exponent, 10.0, row.length};
            SliderTickSpacing spacing;
            spacing.smallest = row.smallest;
            const SliderTicks plan = SliderTicks::of(scale, spacing);
            QStringList texts;
            double last = -1000;
            for (const SliderTick& tick : plan.ticks) {
                QVERIFY(tick.pixel - last >= 8.0 - 1e-6);
                last = tick.pixel;
                if (tick.isLong)
                    texts += QString::number(tick.value, 'g', 17);
            }
            QStringList wanted;
            for (const QString& text : QString::fromLatin1(row.longTicks).split(' '))
                wanted += text.isEmpty() ? text : QString::number(text.toDouble(), 'g', 17);
            QCOMPARE(texts.join(' '), wanted.join(' '));
        }
    }

    void slowDragsReachEveryValue() {
        const SliderScale scale{0, 1e-6, 1, 0, 1000};
        SliderScene scene{scale, 0.0};
        SliderDrag drag;
        drag.grip(scene, {0.0});
        for (int pixel = 1; pixel <= 1000; ++pixel) {
            const auto value = drag.move(scene, {static_cast<double>(pixel)});
            QVERIFY(value && *value > scene.value);
            QVERIFY(std::fabs(*value - pixel * 1e-9) < 1e-18);
            scene.value = *value;
        }
        QCOMPARE(scene.value, 1e-6);
    }

    // Each movement, "@" with Alt and "*" with the factor of a gear, and the value that it leads to,
    // on a groove of 1000 pixels from 0 to 1 that snaps at 0.5.
    void dragsByPixel() {
        const std::pair<double, const char*> rows[] = {
            // It snaps at 6 pixels and leaves at 12.
            {0.45, "493=0.493 494=0.5 512=0.5 513=0.513 507=0.507 506=0.5"},
            {0.503, "504=0.504 500=0.5"}, // starts beside a snap point
            {0.5, "501=0.501 520=0.52"},  // starts on one
            {0.45, "499@=0.499 499=0.5"},
            {0.49, "590*0.1=0.5 600*0.1=0.501"},
            {0.2, "300=0.3 400*0.1=0.31 410=0.32"}, // changes gear
            {0.9, "1200=1 1100=1 990=0.99"},        // past the end and back
            {0.99, "1200*0.1=1 1190*0.1=0.999"},
            {0.2, "210*10=0.3"},
            {3.2, "1010=3.2 999=0.999"}, // from beyond
        };
        const QRegularExpression form(QStringLiteral("^(\\d+)(@?)(?:\\*([\\d.]+))?=([\\d.]+)$"));
        for (const auto& [start, steps] : rows) {
            const std::vector<double> snaps{0.5};
            SliderScene scene{SliderScale{0, 1, 1, 0, 1000}, start, 0.0, &snaps};
            SliderDrag drag;
            bool isHeld = false;
            for (const QString& step : QString::fromLatin1(steps).split(' ')) {
                const auto parts = form.match(step);
                const double factor =
                    parts.captured(3).isEmpty() ? 1 : parts.captured(3).toDouble();
                if (!std::exchange(isHeld, true))
                    drag.grip(scene, {scene.scale.pixelOf(start), factor});
                const auto value = drag.move(
                    scene, {parts.captured(1).toDouble(), factor, !parts.captured(2).isEmpty()});
                if (value)
                    scene.value = *value;
                QVERIFY2(std::fabs(scene.value - parts.captured(4).toDouble()) < 1e-12,
                         qPrintable(QStringLiteral("%1: %2").arg(step).arg(scene.value)));
            }
        }
    }

    // Neither a host that rounds nor one that limits brings a slow drag to a stop.
    void hostsThatAnswer() {
        auto slider = makeSlider<LinearSlider>();
        slider->setRange(0, 10);
        connect(slider.get(), &LinearSlider::valueEdited, slider.get(),
                [&](double value) { slider->setValue(std::min(std::round(value), 6.0)); });
        const QPoint from = handleOf(*slider);
        press(*slider, from);
        for (int x = 1; x <= 190; ++x)
            moveMouse(*slider, from + QPoint(x, 0));
        QCOMPARE(slider->value(), 6.0);
        release(*slider, from);
    }

    void valuesOutsideStay() {
        TinySlider slider;
        slider.resize(200, 20);
        slider.setValue(3.2);
        QCOMPARE(slider.value(), 3.2);
        slider.grab();
        const QPoint from = handleOf(slider);
        press(slider, from);
        moveMouse(slider, from + QPoint(50, 0));
        QCOMPARE(slider.value(), 3.2);
        moveMouse(slider, from - QPoint(50, 0));
        QVERIFY(slider.value() < 0.8 && slider.value() > 0.7);
        sendKey(slider, Qt::Key_Escape);
        QCOMPARE(slider.value(), 3.2);
        release(slider, from);
        sendKey(slider, Qt::Key_Right); // nowhere to go
        QCOMPARE(slider.value(), 3.2);
        sendKey(slider, Qt::Key_Left);
        QCOMPARE(slider.value(), 0.99);
        for (const double bad : {NotANumber, Infinite, -Infinite}) {
            slider.setValue(bad);
            slider.setRange(bad, 1);
            slider.setMinimum(bad);
            slider.setMaximum(bad);
            slider.setSingleStep(bad);
            slider.setDefaultValue(bad);
            slider.setExponent(bad);
            slider.setSnapPoints({bad});
        }
        slider.setCentre(Infinite);
        slider.setValue(-0.0);
        QVERIFY(!std::signbit(slider.value()));
        QCOMPARE(slider.maximum(), 1.0);
        QCOMPARE(slider.singleStep(), 0.01);
        QVERIFY(std::isnan(slider.centre()));
    }

    void keys() {
        struct Row {
            int key;
            Qt::KeyboardModifiers modifiers;
            double from, value;
        };
        const Row rows[] = {
            {Qt::Key_Right, {}, 0.4, 0.41},
            {Qt::Key_Up, Qt::ShiftModifier, 0.4, 0.5},
            {Qt::Key_Left, Qt::ControlModifier, 0.4, 0.399},
            {Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier, 0.4, 0.3999},
            {Qt::Key_PageUp, {}, 0.4, 0.5},
            {Qt::Key_PageDown, Qt::ShiftModifier, 0.4, 0.0},
            {Qt::Key_Home, {}, 0.4, 0.0},
            {Qt::Key_End, {}, 0.4, 1.0},
            {Qt::Key_Backspace, {}, 0.4, 0.25},
            {Qt::Key_Delete, {}, 0.4, 0.25},
            {Qt::Key_Right, Qt::AltModifier, 0.4, 0.4}, // the host's
        };
        for (const Row& row : rows) {
            LinearSlider slider;
            slider.setDefaultValue(0.25);
            slider.setValue(row.from);
            QCOMPARE(sendKey(slider, row.key, row.modifiers), row.from != row.value);
            QCOMPARE(slider.value(), row.value);
        }
        // Steps follow the range, and a grid.
        LinearSlider slider;
        slider.setRange(0, 360);
        QCOMPARE(slider.singleStep(), 5.0);
        slider.setRange(1001, 1100);
        slider.setGrid(1);
        slider.setValue(1001);
        for (const auto modifiers : {Qt::NoModifier, Qt::ControlModifier})
            sendKey(slider, Qt::Key_Right, modifiers);
        QCOMPARE(slider.value(), 1003.0);
        // Dust of binary fractions does not add up.
        slider.setGrid(0);
        slider.setRange(-1, 1);
        slider.setSingleStep(0.1);
        slider.setValue(1);
        for (int i = 0; i < 10; ++i)
            sendKey(slider, Qt::Key_Down);
        QCOMPARE(slider.value(), 0.0);
    }

    void directions() {
        for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
            for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
                auto slider = makeSlider<LinearSlider>(orientation, direction);
                const bool horizontal = orientation == Qt::Horizontal;
                const bool mirrored = horizontal && direction == Qt::RightToLeft;
                slider->setTickMode(LinearSlider::TicksAndLabels);
                slider->setValue(0.3);
                slider->grab();
                const QPoint high = horizontal ? QPoint(mirrored ? 1 : 218, 20) : QPoint(20, 1);
                press(*slider, high);
                QCOMPARE(slider->value(), 1.0);
                release(*slider, high);
                slider->setValue(0.3);
                sendKey(*slider, mirrored ? Qt::Key_Left : Qt::Key_Right);
                QCOMPARE(slider->value(), 0.31);
                // Labels lie within the widget, whatever the side.
                QVERIFY(!partsOf(*slider).labels.empty());
                for (const SliderLabel& label : partsOf(*slider).labels)
                    QVERIFY(QRectF(slider->rect()).contains(label.room));
            }
        }
    }

    void presses() {
        auto slider = makeSlider<LinearSlider>();
        slider->setValue(0.2);
        QSignalSpy finished(slider.get(), &LinearSlider::editFinished);
        const QPoint there(180, 20);
        press(*slider, there, Qt::ControlModifier); // no jump
        QCOMPARE(slider->value(), 0.2);
        QCOMPARE(finished.count(), 0);
        release(*slider, there);
        slider->setPressMode(LinearSlider::StepToPress);
        press(*slider, there);
        QVERIFY(std::fabs(slider->value() - 0.3) < 1e-12);
        QTRY_VERIFY(std::fabs(slider->value() - partsOf(*slider).scale.valueOf(
                                                    partsOf(*slider).scale.partAt(180))) < 0.06);
        QCOMPARE(finished.count(), 0);
        release(*slider, there);
        QCOMPARE(finished.count(), 1);
        press(*slider, QPoint(60, 20), {}, Qt::MiddleButton);
        QVERIFY(slider->value() < 0.35);
        release(*slider, QPoint(60, 20), Qt::MiddleButton);
        // A double click resets on the handle, not where the first press only brought it.
        slider->setPressMode(LinearSlider::JumpToPress);
        for (const bool onHandle : {false, true}) {
            const QPoint at = onHandle ? handleOf(*slider) : QPoint(150, 20);
            QTest::mouseClick(slider.get(), Qt::LeftButton, {}, at);
            QTest::mouseDClick(slider.get(), Qt::LeftButton, {}, at);
            QCOMPARE(slider->value() == 0.0, onHandle);
        }
    }

    void rangeChangesDuringADrag() {
        auto slider = makeSlider<LinearSlider>();
        slider->setValue(0.5);
        const QPoint from = handleOf(*slider);
        press(*slider, from);
        moveMouse(*slider, from + QPoint(20, 0));
        const double before = slider->value();
        slider->setRange(0, 2);
        QCOMPARE(slider->value(), before);
        moveMouse(*slider, from + QPoint(21, 0));
        QVERIFY(slider->value() > before && slider->value() < before + 0.02);
        release(*slider, from);
    }

    // Digits open a field for the number; what it takes is one edit.
    void exactNumbers() {
        struct Row {
            const char* typed;
            int last;
            double value;
            const char* told;
        };
        const Row rows[] = {
            {"0.123456789", Qt::Key_Return, 0.123456789, "SEF"},
            {"-3", Qt::Key_Return, 0.0, "SEF"}, // limited
            {".5*", Qt::Key_Return, 0.4, ""},   // stays to be mended
            {"0.7", Qt::Key_Escape, 0.4, ""},
        };
        for (const Row& row : rows) {
            auto slider = makeSlider<TinySlider>();
            slider->setValue(0.4);
            slider->show();
            Kestrel::Test::EditLog<TinySlider> log(
                *slider, [](const TinySlider& each) { return each.value(); });
            QVERIFY(sendKey(*slider, Qt::Key_F2));
            QPointer<SliderEntry> entry = slider->findChild<SliderEntry*>();
            QVERIFY(entry && entry->isVisible());
            auto* line = entry->field()->findChild<QLineEdit*>();
            line->selectAll();
            QTest::keyClicks(line, QString::fromLatin1(row.typed));
            QTest::keyClick(line, static_cast<Qt::Key>(row.last));
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(slider->value(), row.value);
            QCOMPARE(log.text, QString::fromLatin1(row.told));
            QCOMPARE(entry.isNull(), row.typed[2] != '*');
        }
        auto slider = makeSlider<LinearSlider>();
        QTest::keyClicks(slider.get(), QStringLiteral("7"));
        auto* entry = slider->findChild<SliderEntry*>();
        QVERIFY(entry);
        QCOMPARE(entry->field()->text(), QStringLiteral("7"));
    }

    void brackets() {
        for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
            Kestrel::Test::checkEditBracket(editedSlider<LinearSlider>(orientation));
            Kestrel::Test::checkEditBracket(editedSlider<TinySlider>(orientation));
        }
    }

    void wheelWithoutTheFocus() {
        LinearSlider slider;
        QVERIFY(!Kestrel::Test::turnWheel(slider, 120));
        slider.setWheelPolicy(WheelPolicy::WheelAlways);
        QVERIFY(Kestrel::Test::turnWheel(slider, 120));
        QCOMPARE(slider.value(), 0.01);
    }

    void toldToAssistiveTools() {
        TinySlider slider;
        slider.setLocale(QLocale(QLocale::German));
        slider.setRange(0, 5000);
        slider.setSuffix(QStringLiteral("\u00a0px"));
        slider.setValue(1234.5);
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&slider);
        QCOMPARE(seen->role(), QAccessible::Slider);
        QCOMPARE(seen->text(QAccessible::Value), QStringLiteral("1234,5\u00a0px"));
        QCOMPARE(seen->valueInterface()->minimumStepSize().toDouble(), 50.0);
        QCOMPARE(seen->valueInterface()->maximumValue().toDouble(), 5000.0);
        seen->valueInterface()->setCurrentValue(1e9);
        QCOMPARE(slider.value(), 5000.0);
        seen->valueInterface()->setCurrentValue(NotANumber);
        seen->valueInterface()->setCurrentValue(QStringLiteral("much"));
        QCOMPARE(slider.value(), 5000.0);
    }

    // What is painted between two values is all of what their pictures differ in.
    void repaintsAllThatChanges() {
        for (const bool tiny : {false, true}) {
            std::unique_ptr<LinearSlider> slider;
            if (tiny)
                slider = makeSlider<TinySlider>();
            else
                slider = makeSlider<LinearSlider>();
            slider->setTickMode(LinearSlider::TicksAndLabels);
            slider->setCentre(0.5);
            slider->show();
            QCoreApplication::processEvents();
            QImage kept(slider->size() * 2, QImage::Format_ARGB32_Premultiplied);
            kept.setDevicePixelRatio(2.0);
            slider->render(&kept);
            for (const double value : {0.1, 0.103, 0.9, 0.5, 1.7, -3.0, 0.2}) {
                const QRectF from = partsOf(*slider).handle(slider->value());
                slider->setValue(value);
                const QRect area =
                    (from | partsOf(*slider).handle(value)).adjusted(-2, -2, 2, 2).toAlignedRect();
                slider->render(&kept, area.topLeft(), area);
                QImage whole(kept.size(), kept.format());
                whole.setDevicePixelRatio(2.0);
                slider->render(&whole);
                QCOMPARE(kept, whole);
            }
        }
    }
};

KXUI_TEST(LinearSliderTest);
#include "LinearSliderTest.moc"
