#include <KxUI/kit/IconFactory.h>
#include <KxUI/time/JogWheel.h>
#include <KxUI/time/TimeField.h>
#include <KxUI/time/TimeFormatChooser.h>
#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSlider.h>
#include <KxUI/time/TransportControlsWidget.h>
#include <KxUI/time/ViewerFrameSkipControl.h>

#include <support/TestRegistry.h>

#include <QAccessible>
#include <QLayout>
#include <QSignalSpy>
#include <QToolButton>
#include <QtTest>

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
    void playButtons_data();
    void playButtons();
    void buttonsAndFieldEmit();
    void modesAndColors();
    void skipLengthIsNotEchoed();
    void jogWheel();
    void jogWheelByKeysAndWheel();
};

void TransportControlsTest::playButtons_data() {
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("bounce");
    QTest::addColumn<bool>("backwardsStops");
    QTest::addColumn<bool>("forwardsStops");
    QTest::newRow("nothing") << int(NoPlayback) << false << false << false;
    QTest::newRow("backwards") << int(PlayingBackwards) << false << true << false;
    QTest::newRow("stopped") << int(Stopped) << false << false << false;
    QTest::newRow("forwards") << int(PlayingForwards) << false << false << true;
    QTest::newRow("bounce, backwards") << int(PlayingBackwards) << true << true << true;
    QTest::newRow("bounce, stopped") << int(Stopped) << true << false << false;
    QTest::newRow("bounce, forwards") << int(PlayingForwards) << true << true << true;
}

void TransportControlsTest::playButtons() {
    QFETCH(int, state);
    QFETCH(bool, bounce);
    QFETCH(bool, backwardsStops);
    QFETCH(bool, forwardsStops);

    TransportControlsWidget transport;
    transport.playbackStateChanged(PlaybackStatus(state));
    transport.setBounceMode(bounce);
    QCOMPARE(transport.playbackState(), PlaybackStatus(state));
    QCOMPARE(transport.isEnabled(), state != NoPlayback);
    QSignalSpy stop(&transport, &TransportControlsWidget::stop);
    QSignalSpy backwards(&transport, &TransportControlsWidget::playBackwardsButtonClicked);
    QSignalSpy forwards(&transport, &TransportControlsWidget::playForwardsButtonClicked);

    auto* backwardsButton = at<QToolButton>(transport, 3);
    auto* forwardsButton = at<QToolButton>(transport, 5);
    QCOMPARE(iconName(backwardsButton),
             QLatin1String(backwardsStops ? "TCStop" : "TCPlayBackward"));
    QCOMPARE(iconName(forwardsButton), QLatin1String(forwardsStops ? "TCStop" : "TCPlayForward"));
    backwardsButton->click();
    forwardsButton->click();
    const bool enabled = state != NoPlayback;
    QCOMPARE(stop.count(), int(backwardsStops) + int(forwardsStops));
    QCOMPARE(backwards.count(), int(enabled && !backwardsStops));
    QCOMPARE(forwards.count(), int(enabled && !forwardsStops));
}

void TransportControlsTest::buttonsAndFieldEmit() {
    TransportControlsWidget transport;
    QVERIFY(!transport.isEnabled());
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
    transport.connectTimecodeWidgetToFormatChooser(&chooser);
    chooser.showFrames();
    QSignalSpy times(&transport, &T::timeChanged);
    QSignalSpy ranges(&transport, &T::rangeSet);
    transport.setCurrentTime(7);
    QCOMPARE(field->text(), QStringLiteral("7"));
    field->setText(QStringLiteral("50"));
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(times.count(), 2);
    QCOMPARE(times[1][0].value<Time>(), Time(50));
    field->setText(QStringLiteral("100-200"));
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(ranges.count(), 1);
    QCOMPARE(ranges[0][1].value<Time>(), Time(200));
    transport.setTimecodeWidgetEnabled(false);
    QVERIFY(!field->isEnabled());
}

void TransportControlsTest::modesAndColors() {
    TransportControlsWidget transport;
    auto* backwards = at<QToolButton>(transport, 1);
    QCOMPARE(iconName(backwards), QStringLiteral("TCIntervalBackward"));
    transport.setMode(KeyframesOnly);
    QCOMPARE(iconName(backwards), QStringLiteral("TCKeyBackward"));
    QCOMPARE(backwards->toolTip(),
             QStringLiteral("Go to previous keyframe. (Alt+Left or Ctrl+left for 1/2 way)"));
    transport.setMode(TransportControlsMode(7));
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

void TransportControlsTest::skipLengthIsNotEchoed() {
    ViewerFrameSkipControl control;
    auto* field = at<QLineEdit>(control, 1);
    QSignalSpy changed(&control, &ViewerFrameSkipControl::incrementFieldValueChanged);
    QSignalSpy forwards(&control, &ViewerFrameSkipControl::skipForwardsButtonClicked);
    QSignalSpy backwards(&control, &ViewerFrameSkipControl::skipBackwardsButtonClicked);
    QCOMPARE(field->text(), QStringLiteral("12"));
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

void TransportControlsTest::jogWheel() {
    JogWheel wheel;
    wheel.resize(22, 22);
    QSignalSpy changed(&wheel, &JogWheel::valueChanged);
    const auto drag = [&wheel](int pressX, int toX) {
        QTest::mousePress(&wheel, Qt::LeftButton, Qt::NoModifier, QPoint(pressX, 11));
        QMouseEvent move(QEvent::MouseMove, QPointF(toX, 11), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&wheel, &move);
        QTest::mouseRelease(&wheel, Qt::LeftButton, Qt::NoModifier, QPoint(toX, 11));
    };
    wheel.setValue(5);
    wheel.setValue(5);
    QCOMPARE(changed.count(), 1);
    drag(10, 13);
    QCOMPARE(wheel.value(), 5); // 5.9
    drag(10, 14);
    QCOMPARE(wheel.value(), 6); // 6.2
    drag(10, 9);
    QCOMPARE(wheel.value(), 5); // 5.7: the whole sum is cut
    drag(20, 10);
    QCOMPARE(wheel.value(), 2); // exactly 2
    drag(10, -10000);
    QCOMPARE(wheel.value(), 0);
    const int before = changed.count();
    drag(10, -10000);
    QCOMPARE(changed.count(), before);

    wheel.setSensitivity(std::numeric_limits<float>::quiet_NaN());
    QCOMPARE(wheel.sensitivity(), 0.3F);
    wheel.setSensitivity(std::numeric_limits<float>::max());
    drag(0, 1000);
    QCOMPARE(wheel.value(), 1000);
    wheel.setRange(INT_MIN, INT_MAX);
    drag(0, 1000);
    QCOMPARE(wheel.value(), INT_MAX);
    drag(0, 0); // a press alone keeps what single precision could not
    QCOMPARE(wheel.value(), INT_MAX);
    wheel.setRange(10, 5);
    QCOMPARE(wheel.maximum(), 10);
    QCOMPARE(wheel.value(), 10);
}

void TransportControlsTest::jogWheelByKeysAndWheel() {
    JogWheel wheel;
    wheel.setValue(500);
    const auto key = [&wheel](Qt::Key which) {
        QTest::keyClick(&wheel, which);
        return wheel.value();
    };
    QCOMPARE(key(Qt::Key_Right), 501);
    QCOMPARE(key(Qt::Key_Down), 500);
    QCOMPARE(key(Qt::Key_PageUp), 510);
    QCOMPARE(key(Qt::Key_End), 1000);
    QCOMPARE(key(Qt::Key_Up), 1000);
    QCOMPARE(key(Qt::Key_Home), 0);
    const auto turn = [&wheel](int delta) {
        QWheelEvent event(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, delta), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&wheel, &event);
        return wheel.value();
    };
    QCOMPARE(turn(240), 2);
    QCOMPARE(turn(60), 2); // a trackpad's shares add up
    QCOMPARE(turn(60), 3);

    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&wheel);
    QVERIFY(accessible && accessible->valueInterface());
    QCOMPARE(accessible->role(), QAccessible::Dial);
    QCOMPARE(accessible->text(QAccessible::Value), QStringLiteral("3"));
    accessible->valueInterface()->setCurrentValue(8);
    QCOMPARE(wheel.value(), 8);
}

KXUI_TEST(TransportControlsTest);
#include "TransportControlsTest.moc"
