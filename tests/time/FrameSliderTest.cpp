#include <KxUI/kit/CallbackParameter.h>
#include <KxUI/time/FrameSlider.h>
#include <KxUI/time/TimeField.h>
#include <KxUI/time/TimeFormatter.h>
#include <KxUI/values/LinearSlider_p.h>

#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QToolButton>

#include <climits>

using namespace Kestrel::UI;
using Kestrel::Test::moveMouse;
using Kestrel::Test::sendKey;

namespace {

LinearSlider& barOf(const FrameSlider& slider) {
    return *slider.findChild<LinearSlider*>();
}

QPoint handleOf(const FrameSlider& slider) {
    LinearSlider& bar = barOf(slider);
    return LinearSliderPrivate::of(&bar)->geometry().handle(bar.value()).center().toPoint();
}

void turnEventLoop() {
    QCoreApplication::processEvents();
}

/** A parameter of a host, which notes what is done to it. */
struct Host {
    int value = 40;
    int highest = 60; ///< what it limits to
    int refused = -1;
    bool tellsInside = false;
    QStringList notes;
    std::unique_ptr<CallbackParameter> parameter = make();

    std::unique_ptr<CallbackParameter> make() {
        auto made =
            std::make_unique<CallbackParameter>([this] { return QVariant(value); },
                                                [this](const QVariant& wanted) {
                                                    notes += QString::number(wanted.toInt());
                                                    if (wanted.toInt() == refused)
                                                        return false;
                                                    value = std::min(wanted.toInt(), highest);
                                                    if (tellsInside)
                                                        parameter->notify();
                                                    return true;
                                                });
        made->setRange(1, 200);
        made->setLabel(QStringLiteral("Frame range"));
        made->setBracket([this](const QString& what) { notes += what; },
                         [this](bool accepted) {
                             notes += accepted ? QStringLiteral("end") : QStringLiteral("back");
                         });
        return made;
    }
    QString take() {
        const QString all = notes.join(' ');
        notes.clear();
        return all;
    }
};

std::unique_ptr<FrameSlider> makeSlider() {
    auto slider = std::make_unique<FrameSlider>();
    slider->resize(500, 50);
    slider->show();
    slider->grab();
    return slider;
}

} // namespace

class FrameSliderTest : public QObject {
    Q_OBJECT

private slots:
    void brackets() {
        Kestrel::Test::EditedWidget<FrameSlider> edited;
        edited.make = [] {
            auto slider = makeSlider();
            slider->setFrame(40);
            return slider;
        };
        edited.another = 77;
        const auto start = std::make_shared<QPoint>();
        edited.press = [=](FrameSlider& slider) {
            *start = handleOf(slider);
            QTest::mousePress(&barOf(slider), Qt::LeftButton, {}, *start);
        };
        edited.move = [=](FrameSlider& slider, int nth) {
            moveMouse(barOf(slider), *start + QPoint(20 * nth, 0));
        };
        edited.release = [=](FrameSlider& slider) {
            QTest::mouseRelease(&barOf(slider), Qt::LeftButton, {}, *start);
        };
        edited.key = Qt::Key_Right;
        edited.notch = [](FrameSlider& slider) { return Kestrel::Test::turnWheel(slider, 120); };
        edited.once = [](FrameSlider& slider) {
            auto* field = slider.findChild<TimeField*>();
            field->setText(QStringLiteral("55"));
            QTest::keyClick(field, Qt::Key_Return);
        };
        Kestrel::Test::checkEditBracket(edited);
    }

    void writesOnceATurn() {
        Host host;
        const auto slider = makeSlider();
        slider->setParameter(host.parameter.get());
        QCOMPARE(slider->frame(), 40);
        QCOMPARE(slider->maximum(), 200);
        const QPoint from = handleOf(*slider);
        QTest::mousePress(&barOf(*slider), Qt::LeftButton, {}, from);
        for (int x = 1; x <= 20; ++x)
            moveMouse(barOf(*slider), from + QPoint(x, 0));
        QVERIFY(slider->frame() > 42);
        QCOMPARE(host.take(), QStringLiteral("Frame range"));
        turnEventLoop();
        QCOMPARE(host.take(), QString::number(slider->frame()));
        turnEventLoop();
        QCOMPARE(host.take(), QString());
        QVERIFY(sendKey(*slider, Qt::Key_Escape));
        QCOMPARE(host.take(), QStringLiteral("40 back"));
        QTest::mouseRelease(&barOf(*slider), Qt::LeftButton, {}, from);

        // Slow hosts are told at the end, or not at all.
        slider->setTracking(false);
        for (const bool accepted : {true, false}) {
            QTest::mousePress(&barOf(*slider), Qt::LeftButton, {}, handleOf(*slider));
            moveMouse(barOf(*slider), handleOf(*slider) + QPoint(9, 0));
            turnEventLoop();
            host.parameter->notify(); // what it says is older
            const int frame = slider->frame();
            QVERIFY(frame != host.value);
            if (!accepted)
                slider->cancelEdit();
            QTest::mouseRelease(&barOf(*slider), Qt::LeftButton, {}, from);
            QCOMPARE(host.take(), accepted ? QStringLiteral("Frame range %1 end").arg(frame)
                                           : QStringLiteral("Frame range back"));
            QCOMPARE(slider->frame(), host.value);
        }
    }

    void hostsThatAnswer() {
        for (const bool tellsInside : {false, true}) {
            Host host;
            host.tellsInside = tellsInside;
            host.refused = 41;
            const auto slider = makeSlider();
            slider->setParameter(host.parameter.get());
            sendKey(*slider, Qt::Key_Right); // refused
            turnEventLoop();
            QCOMPARE(slider->frame(), 40);
            sendKey(*slider, Qt::Key_End); // limited
            turnEventLoop();
            QCOMPARE(slider->frame(), 60);
            host.value = 12;
            QCOMPARE(slider->frame(), 60);
            slider->refresh(); // it does not tell
            QCOMPARE(slider->frame(), 12);
            host.value = 13;
            host.parameter->notify();
            QCOMPARE(slider->frame(), 13);
            host.parameter->setEnabled(false);
            QVERIFY(!slider->isEnabled());
        }
    }

    void parametersThatGo() {
        auto host = std::make_unique<Host>();
        const auto slider = makeSlider();
        slider->setParameter(host->parameter.get());
        sendKey(*slider, Qt::Key_Right);
        host.reset(); // with an edit open and a write planned
        turnEventLoop();
        QVERIFY(!slider->parameter());
        QCOMPARE(slider->frame(), 41);
        sendKey(*slider, Qt::Key_Left);
        slider->refresh();
        QCOMPARE(slider->frame(), 40);
        // Both ways of a widget that goes while the parameter is written to.
        for (const bool told : {false, true}) {
            Host other;
            auto* doomed = makeSlider().release();
            QPointer<FrameSlider> alive(doomed);
            CallbackParameter deadly([&other] { return QVariant(other.value); },
                                     [&](const QVariant&) {
                                         if (!told)
                                             delete alive.data();
                                         return true;
                                     });
            if (told)
                connect(doomed, &FrameSlider::frameChanged, qApp, [alive] { delete alive.data(); });
            doomed->setParameter(&deadly);
            if (alive)
                sendKey(*doomed, Qt::Key_Right);
            turnEventLoop();
            delete alive.data();
        }
    }

    void keyFrames() {
        Host host;
        host.parameter->setKeys({10, 35.4, 40, 58, 900});
        const auto slider = makeSlider();
        slider->setParameter(host.parameter.get());
        const std::pair<int, int> steps[] = {{Qt::Key_Left, 35},  {Qt::Key_Left, 10},
                                             {Qt::Key_Left, 10},  {Qt::Key_Right, 35},
                                             {Qt::Key_Right, 40}, {Qt::Key_Right, 58}};
        for (const auto& [key, frame] : steps) {
            QTest::keyClick(&barOf(*slider), static_cast<Qt::Key>(key), Qt::ControlModifier);
            QCOMPARE(slider->frame(), frame);
        }
    }

    void buttonsAndField() {
        const auto slider = makeSlider();
        slider->setStep(5);
        slider->setFrame(90);
        Kestrel::Test::EditLog<FrameSlider> log(
            *slider, [](const FrameSlider& each) { return each.frame(); });
        const auto buttons = slider->findChildren<QToolButton*>();
        QCOMPARE(buttons.size(), 2);
        QTest::mousePress(buttons.last(), Qt::LeftButton);
        QCOMPARE(slider->frame(), 95);
        QTRY_COMPARE(slider->frame(), 100); // it repeats
        QCOMPARE(log.text, QStringLiteral("SEE"));
        QTest::mouseRelease(buttons.last(), Qt::LeftButton);
        QCOMPARE(log.text, QStringLiteral("SEEF"));
        QTest::mouseClick(buttons.first(), Qt::LeftButton);
        QCOMPARE(slider->frame(), 95);
        auto* field = slider->findChild<TimeField*>();
        QCOMPARE(field->text(), QStringLiteral("95"));
        field->setText(QStringLiteral("4000"));
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(slider->frame(), 100);
        QCOMPARE(field->text(), QStringLiteral("100"));
        slider->setFrame(4000); // the host may
        QCOMPARE(slider->frame(), 4000);
        QCOMPARE(field->text(), QStringLiteral("4000"));
        slider->setRange(INT_MIN, INT_MAX);
        slider->setFrame(INT_MIN);
        QCOMPARE(slider->frame(), INT_MIN);
    }

    void toldInTheNotationShown() {
        FrameSlider slider;
        TimeFormatter formatter;
        slider.setFormatter(&formatter);
        slider.setFrame(50);
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&slider);
        QCOMPARE(seen->role(), QAccessible::Slider);
        QCOMPARE(seen->text(QAccessible::Name), QStringLiteral("Frame"));
        QCOMPARE(seen->text(QAccessible::Value), formatter.formatTime(50));
        QCOMPARE(slider.findChild<TimeField*>()->text(), formatter.formatTime(50));
        slider.setFormatter(nullptr);
        QCOMPARE(seen->text(QAccessible::Value), QStringLiteral("50"));
        QCOMPARE(slider.findChild<TimeField*>()->text(), QStringLiteral("50"));
        QCOMPARE(seen->valueInterface()->maximumValue().toInt(), 100);
    }
};

KXUI_TEST(FrameSliderTest);
#include "FrameSliderTest.moc"
