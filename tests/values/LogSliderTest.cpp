#include <KxUI/values/LogSlider.h>
#include <KxUI/values/LogSliderLayout_p.h>

#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QAccessible>

#include <climits>
#include <cmath>
#include <limits>
#include <stdexcept>

using namespace Kestrel::UI;

namespace {

LogScale scaleOf(int minExp, int maxExp, int precision) {
    return {minExp, maxExp, precision, std::pow(10.0, minExp), std::pow(10.0, maxExp)};
}

QString keptTicks(int length, int spacing, std::size_t without = 0) {
    DecadeFlags wanted;
    for (std::size_t tick = 1; tick <= 10; ++tick)
        wanted[tick - 1] = tick != without;
    const DecadeFlags kept =
        Kestrel::UI::preprocessTicks(wanted, scaleOf(0, 1, 1000), length, spacing);
    QString text;
    for (int tick = 1; tick <= 10; ++tick) {
        if (kept[static_cast<std::size_t>(tick - 1)])
            text += QString::number(tick % 10);
    }
    return text;
}

template <class Exception, class Call>
QString messageOf(Call call) {
    try {
        call();
    } catch (const Exception& error) {
        return QString::fromLatin1(error.what());
    }
    return QString();
}

} // namespace

class LogSliderTest : public QObject {
    Q_OBJECT

private slots:
    void positionsAndValues() {
        LogSlider slider(Qt::Horizontal);
        slider.setRealRange(3, -1, 10);
        QCOMPARE(slider.minimum(), -10);
        QCOMPARE(slider.maximum(), 30);
        QSignalSpy changed(&slider, &QSlider::valueChanged);
        slider.setRealValue(0.05);
        QCOMPARE(slider.value(), -10);
        QCOMPARE(slider.realValue(), 0.1);
        slider.setRealValue(2.0);
        QCOMPARE(slider.value(), 3);
        slider.setRealValue(0.5); // log10 is -0.30: cut toward zero
        QCOMPARE(slider.value(), -3);
        slider.setRealValue(std::numeric_limits<double>::infinity());
        QCOMPARE(slider.value(), 30);
        slider.setRealValue(-1);
        QCOMPARE(slider.value(), -10);
        QCOMPARE(changed.count(), 5);
    }

    void echoedValuesDoNotCreep() {
        LogSlider slider;
        for (int precision = 1; precision <= 1000; precision += 37) {
            slider.setRealRange(-3, 2, precision);
            for (int position = slider.minimum(); position <= slider.maximum(); ++position) {
                slider.setValue(position);
                slider.setRealValue(slider.realValue());
                QCOMPARE(slider.value(), position);
            }
        }
    }

    void refusals() {
        LogSlider slider;
        const auto range = [&slider](int minExp, int maxExp, int precision) {
            return messageOf<std::invalid_argument>(
                [&] { slider.setRealRange(minExp, maxExp, precision); });
        };
        QCOMPARE(messageOf<std::logic_error>([&] { slider.realValue(); }),
                 QStringLiteral("Call setRealRange method first"));
        QCOMPARE(messageOf<std::logic_error>([&] { slider.setRealValue(1); }),
                 QStringLiteral("Call setRealRange method first"));
        slider.setRealRange(0, 2, 10);
        slider.setRealValue(5);
        QCOMPARE(range(1, 1, 0), QStringLiteral("precision argument should be > 0"));
        QCOMPARE(range(1, 1, 10), QStringLiteral("minExp cannot be equal to maxExp"));
        QVERIFY(!range(-308, 0, 1).isEmpty());
        QVERIFY(!range(0, 309, 1).isEmpty());
        QVERIFY(!range(0, 300, INT_MAX / 300).isEmpty());
        QVERIFY(!range(INT_MIN, INT_MAX, 1).isEmpty());
        QVERIFY(!messageOf<std::invalid_argument>([&] {
                     slider.setRealValue(std::numeric_limits<double>::quiet_NaN());
                 }).isEmpty());
        QCOMPARE(slider.maximum(), 20);
        QCOMPARE(slider.value(), 6);
        slider.setRealRange(-307, 308, 1000);
        slider.setRealValue(std::numeric_limits<double>::denorm_min());
        QCOMPARE(slider.value(), -307000);
    }

    void ticksThinOutEvenly() {
        QCOMPARE(keptTicks(1000, 4), QStringLiteral("1234567890"));
        QCOMPARE(keptTicks(100, 10), QStringLiteral("123456780"));
        QCOMPARE(keptTicks(100, 20), QStringLiteral("1234570"));
        QCOMPARE(keptTicks(100, 30), QStringLiteral("123570"));
        QCOMPARE(keptTicks(100, 60), QStringLiteral("1350"));
        QCOMPARE(keptTicks(-100, 80), QStringLiteral("150")); // a vertical groove
        QCOMPARE(keptTicks(100, 100), QStringLiteral("10"));
        QCOMPARE(keptTicks(1000, 4, 3), QStringLiteral("1567890"));
    }

    void planHasEveryPixelOnce() {
        for (const int length : {-300, -7, 1, 3, 40, 700}) {
            for (const int precision : {1, 7, 1000}) {
                const LogScale scale = scaleOf(-3, 4, precision);
                const auto ticks =
                    Kestrel::UI::planTicks(scale, 10, length, std::vector<int>(7, 30));
                QVERIFY(!ticks.empty());
                QCOMPARE(ticks.front().pixel, 10);
                for (std::size_t i = 1; i < ticks.size(); ++i) {
                    QVERIFY(length > 0 ? ticks[i].pixel > ticks[i - 1].pixel
                                       : ticks[i].pixel < ticks[i - 1].pixel);
                }
                QVERIFY(ticks.back().wholePower);
                QCOMPARE(ticks.back().pixel, 10 + length);
            }
        }
    }

    // Where the handle stands for a value is where its tick and its label are.
    void layoutFollowsTheDirection() {
        const LogScale scale = scaleOf(-1, 1, 100);
        const auto textOf = [](double value) {
            const QString text = QString::number(value);
            return Kestrel::UI::LogSliderText{text, 8 * int(text.size())};
        };
        for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
            const bool horizontal = orientation == Qt::Horizontal;
            Kestrel::UI::LogSliderRoom room{{300, 300}, QRect(20, 20, 201, 201), {}, orientation};
            const auto places = [&](bool forward) {
                room.forward = forward;
                const auto layout = Kestrel::UI::LogSliderLayout::of(scale, room, textOf);
                QStringList texts;
                for (const auto& mark : layout.marks) {
                    if (mark.wholePower)
                        texts += QString::number(horizontal ? mark.line.x1() : mark.line.y1());
                }
                for (const auto& label : layout.labels) {
                    if (label.wholePower)
                        texts += QStringLiteral("%1:%2-%3")
                                     .arg(label.text)
                                     .arg(label.room.left())
                                     .arg(label.room.right());
                }
                return texts.join(' ');
            };
            QCOMPARE(places(true), QStringLiteral("20 120 220 0.1:20-43 1:120-127 10:205-220"));
            QCOMPARE(places(false), QStringLiteral("220 120 20 0.1:197-220 1:113-120 10:20-35"));
        }
    }

    void ticksFollowTheSlider() {
        for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
            const bool horizontal = orientation == Qt::Horizontal;
            for (const bool inverted : {false, true}) {
                for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
                    LogSlider slider(orientation);
                    slider.resize(horizontal ? QSize(400, 40) : QSize(40, 400));
                    slider.setRealRange(0, 1, 100);
                    slider.setInvertedAppearance(inverted);
                    slider.setLayoutDirection(direction);
                    slider.setTickColor(Qt::blue); // more of them towards the upper end
                    slider.setExpTickColor(Qt::transparent);
                    QImage image = slider.grab().toImage();
                    int marks[2] = {};
                    for (int y = 0; y < image.height(); ++y) {
                        for (int x = 0; x < image.width(); ++x) {
                            if (image.pixelColor(x, y) == QColor(Qt::blue))
                                ++marks[horizontal ? x >= 200 : y >= 200];
                        }
                    }
                    const bool mirrored = horizontal && direction == Qt::RightToLeft;
                    const bool forward = horizontal != (inverted != mirrored);
                    QVERIFY(forward ? marks[1] > marks[0] : marks[0] > marks[1]);
                }
            }
        }
    }

    void accessibleValueIsTheRealOne() {
        LogSlider slider;
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&slider);
        QCOMPARE(seen->role(), QAccessible::Slider);
        QAccessibleValueInterface* value = seen->valueInterface();
        QCOMPARE(value->maximumValue().toDouble(), 99.0); // no range yet
        slider.setRealRange(-2, 3, 10);
        slider.setRealValue(50);
        QCOMPARE(value->currentValue().toDouble(), slider.realValue());
        QCOMPARE(seen->text(QAccessible::Value), slider.locale().toString(slider.realValue()));
        QCOMPARE(value->minimumValue().toDouble(), 0.01);
        QCOMPARE(value->maximumValue().toDouble(), 1000.0);
        for (int i = 0; i < 5; ++i) {
            const int position = slider.value();
            value->setCurrentValue(value->currentValue().toDouble() +
                                   value->minimumStepSize().toDouble());
            QCOMPARE(slider.value(), position + 1);
        }
    }

    void settingsOfTicksAreTold() {
        LogSlider slider;
        QSignalSpy changed(&slider, &LogSlider::ticksChanged);
        for (int round = 0; round < 2; ++round) { // the second one changes nothing
            slider.setDrawLogTicks(false);
            slider.setTickTextSize(11);
            slider.setTickColor(Qt::red);
            slider.setExpTickColor(Qt::green);
            QCOMPARE(changed.count(), 4);
        }
    }

    void realValueIsAProperty() {
        LogSlider slider;
        QSignalSpy told(&slider, &LogSlider::realValueChanged);
        QCOMPARE(slider.property("realValue").toDouble(), 0.0);
        slider.setProperty("realValue", 5.0);
        QCOMPARE(told.count(), 0);
        slider.setRealRange(0, 2, 10); // the position 0 is 1 now
        QCOMPARE(told.takeLast().at(0).toDouble(), 1.0);
        slider.setProperty("realValue", 100.0);
        QCOMPARE(told.takeLast().at(0).toDouble(), 100.0);
        slider.setRealRange(0, 2, 10);
        QCOMPARE(told.count(), 0);
    }

    // Escape and the right button go back to where the drag, or the paging, began.
    void takenBack() {
        for (const bool tracking : {true, false}) {
            for (const bool onHandle : {true, false}) {
                for (const bool byKey : {true, false}) {
                    LogSlider slider(Qt::Horizontal);
                    slider.resize(400, 40);
                    slider.setRealRange(0, 2, 100);
                    slider.setTracking(tracking);
                    slider.setValue(37);
                    slider.grab();
                    QVERIFY(!Kestrel::Test::sendKey(slider, Qt::Key_Escape));
                    QSignalSpy released(&slider, &QSlider::sliderReleased);
                    const QPoint from(onHandle ? 7 + 37 * 386 / 200 : 380, 20);
                    QTest::mousePress(&slider, Qt::LeftButton, {}, from);
                    QCOMPARE(slider.isSliderDown(), onHandle);
                    Kestrel::Test::moveMouse(slider, from + QPoint(-30, 0));
                    QVERIFY(slider.sliderPosition() != 37);
                    if (byKey)
                        QVERIFY(Kestrel::Test::sendKey(slider, Qt::Key_Escape));
                    else
                        QTest::mouseClick(&slider, Qt::RightButton, {}, from);
                    QCOMPARE(slider.value(), 37);
                    QVERIFY(!slider.isSliderDown());
                    Kestrel::Test::moveMouse(slider, QPoint(200, 20));
                    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(200, 20));
                    QCOMPARE(slider.sliderPosition(), 37);
                    QCOMPARE(released.count(), onHandle ? 1 : 0);
                    QVERIFY(!Kestrel::Test::sendKey(slider, Qt::Key_Escape));
                }
            }
        }
    }

    void editsAreBracketed() {
        Kestrel::Test::EditedWidget<LogSlider> edited;
        edited.make = [] {
            auto slider = std::make_unique<LogSlider>(Qt::Horizontal);
            slider->resize(400, 40);
            slider->setRealRange(0, 2, 100);
            slider->setValue(37);
            return slider;
        };
        edited.another = 100.0;
        const QPoint handle(7 + 37 * 386 / 200, 20);
        edited.press = [handle](LogSlider& slider) {
            QTest::mousePress(&slider, Qt::LeftButton, {}, handle);
        };
        edited.move = [handle](LogSlider& slider, int nth) {
            Kestrel::Test::moveMouse(slider, handle + QPoint(20 * nth, 0));
        };
        edited.release = [handle](LogSlider& slider) {
            QTest::mouseRelease(&slider, Qt::LeftButton, {}, handle);
        };
        edited.key = Qt::Key_Right;
        edited.notch = [](LogSlider& slider) { return Kestrel::Test::turnWheel(slider, 120); };
        edited.wheelNeedsFocus = false; // as any slider of the base class
        Kestrel::Test::checkEditBracket(edited);
    }

    void paintsOnlyWhatItShould() {
        for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
            QSlider plain(orientation);
            LogSlider slider(orientation);
            slider.setDrawLogTicks(false);
            QCOMPARE(slider.sizeHint(), plain.sizeHint());
            const QSize size = orientation == Qt::Horizontal ? QSize(400, 40) : QSize(40, 400);
            plain.resize(size);
            slider.resize(size);
            slider.setDrawLogTicks(true);
            QCOMPARE(slider.sizeHint() - plain.sizeHint(),
                     orientation == Qt::Horizontal ? QSize(0, 8) : QSize(8, 0));
            QCOMPARE(slider.grab().toImage(), plain.grab().toImage()); // no range yet

            slider.setRealRange(-2, 2, 100);
            plain.setRange(slider.minimum(), slider.maximum());
            plain.setValue(slider.value());
            slider.setExpTickColor(Qt::red);
            const QImage image = slider.grab().toImage();
            int red = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    red += image.pixelColor(x, y) == QColor(Qt::red);
            }
            QVERIFY(red >= 12); // the marks of 0.01 and 100 at the least
            QVERIFY(slider.tickColor().isValid());
            slider.setDrawLogTicks(false);
            QCOMPARE(slider.grab().toImage(), plain.grab().toImage());
        }
    }
};

KXUI_TEST(LogSliderTest);
#include "LogSliderTest.moc"
