#include <KxUI/kit/IconFactory.h>
#include <KxUI/time/JogWheel.h>
#include <KxUI/time/TimeField.h>
#include <KxUI/time/TimeFormatChooser.h>
#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSlider.h>
#include <KxUI/time/TransportControlsWidget.h>
#include <KxUI/time/ViewerFrameSkipControl.h>

#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QAccessible>
#include <QLayout>
#include <QToolButton>

#include <climits>
#include <limits>

using namespace Kestrel::UI;
using Kestrel::Base::InvalidTime;
using Kestrel::Base::Time;

namespace {

// The buttons and the field in their order, the menu's button left out.
template <class Widget>
Widget* at(const QWidget& row, int index) {
    return qobject_cast<Widget*>(row.layout()->itemAt(index)->widget());
}

QString iconName(const QToolButton* button) {
    for (const QString& name : IconFactory::names()) {
        if (IconFactory::icon(name).cacheKey() == button->icon().cacheKey())
            return name;
    }
    return QString();
}

} // namespace

class TransportControlsTest : public QObject {
    Q_OBJECT

private slots:
    void everyPropertyCanBeSetAndNotifies() {
        TimeFormatter formatter;
        TimeSliderModel model;
        QWidget parent;
        QObject* const objects[] = {&formatter,
                                    &model,
                                    new TimeSlider(&parent),
                                    new TimeField(&parent),
                                    new TimeFormatChooser(&parent),
                                    new TransportControlsWidget(&parent),
                                    new ViewerFrameSkipControl(&parent),
                                    new JogWheel(&parent)};
        for (QObject* object : objects) {
            const QMetaObject* meta = object->metaObject();
            QVERIFY2(meta->propertyCount() > meta->propertyOffset(), meta->className());
            for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
                const QMetaProperty property = meta->property(i);
                const QByteArray name = meta->className() + QByteArray("::") + property.name();
                QVERIFY2(property.hasNotifySignal() && property.isWritable(), name);
                const QVariant value = property.read(object);
                QVERIFY2(value.isValid(), name);
                QSignalSpy notified(object, "2" + property.notifySignal().methodSignature());
                QVERIFY2(property.write(object, value), name);
                const bool isMark = name.endsWith("inTime") || name.endsWith("outTime");
                QVERIFY2(notified.isEmpty() || isMark, name); // a mark is announced again
                notified.clear();
                if (value.userType() == QMetaType::Bool)
                    QVERIFY2(property.write(object, !value.toBool()) && notified.count() == 1,
                             name);
            }
        }
    }

    void playButtons() {
        const struct {
            PlaybackStatus state;
            bool bounce, backwardsStops, forwardsStops;
        } rows[] = {{NoPlayback, false, false, false},    {PlayingBackwards, false, true, false},
                    {Stopped, false, false, false},       {PlayingForwards, false, false, true},
                    {PlayingBackwards, true, true, true}, {Stopped, true, false, false},
                    {PlayingForwards, true, true, true}};
        for (const auto& row : rows) {
            TransportControlsWidget transport;
            transport.playbackStateChanged(row.state);
            transport.setBounceMode(row.bounce);
            const bool enabled = row.state != NoPlayback;
            QCOMPARE(transport.isEnabled(), enabled);
            QSignalSpy stop(&transport, &TransportControlsWidget::stop);
            QSignalSpy backwards(&transport, &TransportControlsWidget::playBackwardsButtonClicked);
            QSignalSpy forwards(&transport, &TransportControlsWidget::playForwardsButtonClicked);

            auto* backwardsButton = at<QToolButton>(transport, 3);
            auto* forwardsButton = at<QToolButton>(transport, 5);
            QCOMPARE(iconName(backwardsButton),
                     QLatin1String(row.backwardsStops ? "TCStop" : "TCPlayBackward"));
            QCOMPARE(iconName(forwardsButton),
                     QLatin1String(row.forwardsStops ? "TCStop" : "TCPlayForward"));
            backwardsButton->click();
            forwardsButton->click();
            QCOMPARE(stop.count(), int(row.backwardsStops) + int(row.forwardsStops));
            QCOMPARE(backwards.count(), int(enabled && !row.backwardsStops));
            QCOMPARE(forwards.count(), int(enabled && !row.forwardsStops));
        }
    }

    void buttonsAndFieldEmit() {
        TransportControlsWidget transport;
        transport.playbackStateChanged(Stopped);
        using T = TransportControlsWidget;
        const QList<std::pair<int, void (T::*)()>> buttons{
            {0, &T::jumpToBeginningButtonClicked}, {1, &T::jumpBackwardsButtonClicked},
            {2, &T::frameBackwardsButtonClicked},  {6, &T::frameForwardsButtonClicked},
            {7, &T::jumpForwardButtonClicked},     {8, &T::jumpToEndButtonClicked}};
        for (const auto& [index, signal] : buttons) {
            QSignalSpy spy(&transport, signal);
            at<QToolButton>(transport, index)->click();
            QCOMPARE(spy.count(), 1);
        }

        auto* field = at<TimeField>(transport, 4);
        TimeFormatter formatter;
        TimeFormatChooser chooser(&formatter);
        transport.connectTimecodeWidgetToFormatChooser(nullptr);
        transport.connectTimecodeWidgetToFormatChooser(&chooser);
        QCOMPARE(transport.formatter(), &formatter);
        chooser.showFrames();
        QSignalSpy times(&transport, &T::timeChanged);
        QSignalSpy ranges(&transport, &T::rangeSet);
        transport.setCurrentTime(7);
        QCOMPARE(field->text(), QStringLiteral("7"));
        const auto enter = [field](const char* text) {
            field->setText(QLatin1String(text));
            QTest::keyClick(field, Qt::Key_Return);
        };
        enter("50");
        QCOMPARE(times.count(), 2);
        QCOMPARE(times[1][0].value<Time>(), Time(50));
        enter("100-200");
        QCOMPARE(ranges.count(), 1);
        QCOMPARE(ranges[0][1].value<Time>(), Time(200));
    }

    void modesAndColors() {
        TransportControlsWidget transport;
        auto* backwards = at<QToolButton>(transport, 1);
        QCOMPARE(iconName(backwards), QStringLiteral("TCIntervalBackward"));
        transport.setMode(KeyframesOnly);
        QCOMPARE(iconName(backwards), QStringLiteral("TCKeyBackward"));

        auto* field = at<TimeField>(transport, 4);
        const auto color = [field] { return field->palette().color(QPalette::Text); };
        transport.playbackStateChanged(Stopped);
        QCOMPARE(color(), TimeSlider::StandardPlayheadColor());
        transport.playbackStateChanged(PlayingForwards);
        QCOMPARE(color(), transport.palette().color(QPalette::Text));
        QPalette green = transport.palette();
        green.setColor(QPalette::Text, Qt::darkGreen);
        transport.setPalette(green);
        QCOMPARE(color(), QColor(Qt::darkGreen)); // a new palette is followed
    }

    void skipLengthIsNotEchoed() {
        ViewerFrameSkipControl control;
        auto* field = at<QLineEdit>(control, 1);
        QSignalSpy changed(&control, &ViewerFrameSkipControl::incrementFieldValueChanged);
        QSignalSpy forwards(&control, &ViewerFrameSkipControl::skipForwardsButtonClicked);
        QSignalSpy backwards(&control, &ViewerFrameSkipControl::skipBackwardsButtonClicked);
        control.setIncrement(5);
        QTest::keyClick(field, Qt::Key_Return);
        control.frameIncrementChanged(6);
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(changed.count(), 0);

        field->selectAll();
        QTest::keyClicks(field, QStringLiteral("0"));
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(changed.count(), 0); // 1 to 999
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClicks(field, QStringLiteral("24"));
        QTest::keyClick(field, Qt::Key_Return);
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].toInt(), 24);
        at<QToolButton>(control, 0)->click();
        at<QToolButton>(control, 2)->click();
        QCOMPARE(forwards.count(), 1);
        QCOMPARE(backwards.count(), 1);
    }

    void aSkipTakesTheNumberThatIsTyped() {
        ViewerFrameSkipControl control;
        auto* field = at<QLineEdit>(control, 1);
        QStringList log;
        connect(&control, &ViewerFrameSkipControl::incrementFieldValueChanged,
                [&](int frames) { log << QString::number(frames); });
        connect(&control, &ViewerFrameSkipControl::skipForwardsButtonClicked,
                [&] { log << QStringLiteral("skip"); });
        const auto typeAndClick = [&](const char* text) {
            field->selectAll();
            QTest::keyClicks(field, QLatin1String(text));
            at<QToolButton>(control, 2)->click();
            return log.join(QLatin1Char(' '));
        };
        QCOMPARE(typeAndClick("24"), QStringLiteral("24 skip"));
        QCOMPARE(typeAndClick("0"), QStringLiteral("24 skip skip"));
        QCOMPARE(field->text(), QStringLiteral("24")); // what was skipped

        const int width = field->width();
        QFont font = control.font();
        font.setPixelSize(3 * QFontInfo(font).pixelSize());
        control.setFont(font);
        QVERIFY(field->width() > 2 * width);
    }

    void jogWheel() {
        JogWheel wheel;
        wheel.resize(22, 22);
        QSignalSpy changed(&wheel, &JogWheel::valueChanged);
        const auto drag = [&wheel](int pressX, int toX) {
            QTest::mousePress(&wheel, Qt::LeftButton, Qt::NoModifier, QPoint(pressX, 11));
            Kestrel::Test::moveMouse(wheel, QPoint(toX, 11));
            QTest::mouseRelease(&wheel, Qt::LeftButton, Qt::NoModifier, QPoint(toX, 11));
            return wheel.value();
        };
        wheel.setValue(5);
        wheel.setValue(5);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(drag(10, 13), 5);     // 5.9
        QCOMPARE(drag(10, 14), 6);     // 6.2
        QCOMPARE(drag(10, 9), 5);      // 5.7: the whole sum is cut
        QCOMPARE(drag(20, 10), 2);     // exactly 2
        QCOMPARE(drag(10, -10000), 0); // clamped, and no change the second time
        const int before = int(changed.count());
        drag(10, -10000);
        QCOMPARE(changed.count(), before);

        wheel.setSensitivity(std::numeric_limits<float>::quiet_NaN());
        QCOMPARE(wheel.sensitivity(), 0.3F);
        wheel.setSensitivity(std::numeric_limits<float>::max());
        QCOMPARE(drag(0, 1000), 1000);
        wheel.setRange(INT_MIN, INT_MAX);
        QCOMPARE(drag(0, 1000), INT_MAX);
        QCOMPARE(drag(0, 0), INT_MAX); // a press alone keeps what single precision could not
        wheel.setRange(10, 5);
        QCOMPARE(wheel.value(), 10);
    }

    void jogWheelByKeysAndWheel() {
        JogWheel wheel;
        wheel.setValue(500);
        const auto key = [&wheel](Qt::Key which) {
            QTest::keyClick(&wheel, which);
            return wheel.value();
        };
        QCOMPARE(key(Qt::Key_Down), 499);
        QCOMPARE(key(Qt::Key_PageUp), 509);
        QCOMPARE(key(Qt::Key_End), 1000);
        QCOMPARE(key(Qt::Key_Home), 0);
        const auto turn = [&wheel](int delta) {
            Kestrel::Test::turnWheel(wheel, delta);
            return wheel.value();
        };
        QCOMPARE(turn(240), 2);
        QCOMPARE(turn(60), 2); // a trackpad's shares add up
        QCOMPARE(turn(60), 3);

        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&wheel);
        QVERIFY(accessible && accessible->valueInterface());
        QCOMPARE(accessible->text(QAccessible::Value), QStringLiteral("3"));
        accessible->valueInterface()->setCurrentValue(8);
        QCOMPARE(wheel.value(), 8);
    }

    void jogWheelEditsAreBracketed() {
        Kestrel::Test::EditedWidget<JogWheel> edited;
        edited.make = [] {
            auto wheel = std::make_unique<JogWheel>();
            wheel->resize(22, 22);
            wheel->setValue(500);
            return wheel;
        };
        edited.another = 77;
        edited.press = [](JogWheel& w) { QTest::mousePress(&w, Qt::LeftButton, {}, {9, 9}); };
        edited.move = [](JogWheel& w, int nth) { Kestrel::Test::moveMouse(w, {9 + 20 * nth, 9}); };
        edited.release = [](JogWheel& w) { QTest::mouseRelease(&w, Qt::LeftButton, {}, {9, 9}); };
        edited.key = Qt::Key_Up;
        edited.notch = [](JogWheel& w) { return Kestrel::Test::turnWheel(w, 120); };
        edited.wheelNeedsFocus = false;
        Kestrel::Test::checkEditBracket(edited);
    }
};

KXUI_TEST(TransportControlsTest);
#include "TransportControlsTest.moc"
