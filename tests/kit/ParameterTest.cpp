#include <KxUI/color/ColorWheel.h>
#include <KxUI/kit/CallbackParameter.h>
#include <KxUI/kit/ChoiceButton.h>
#include <KxUI/kit/ParameterBinding.h>
#include <KxUI/kit/ParameterWatchers.h>
#include <KxUI/kit/PropertyParameter.h>
#include <KxUI/time/JogWheel.h>
#include <KxUI/time/TimeField.h>
#include <KxUI/values/LogSlider.h>

#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QLineEdit>

using Kestrel::Test::sendKey;
using namespace Kestrel::UI;

namespace {

// A parameter of whole numbers that allows no odd ones above 10, and nothing above 20.
struct EvenParameter : CallbackParameter {
    explicit EvenParameter(QVariant first)
        : CallbackParameter([this] { return stored; },
                            [this](const QVariant& value) {
                                log += 'v';
                                if (value.toInt() > 20)
                                    return false;
                                stored = value.toInt() > 10 ? value.toInt() / 2 * 2 : value.toInt();
                                return true;
                            })
        , stored(std::move(first)) {
        setBracket([this](const QString& what) { log += '<' + what; },
                   [this](bool accepted) { log += accepted ? '>' : '!'; });
        setLabel(QStringLiteral("p"));
    }

    QVariant stored;
    QString log;
};

void up(QWidget& widget, int times = 1) {
    for (int i = 0; i < times; ++i)
        sendKey(widget, Qt::Key_Up);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Up, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &release);
}

} // namespace

class ParameterTest : public QObject {
    Q_OBJECT

private slots:
    void callbacks() {
        double stored = 1.0;
        CallbackParameter parameter([&] { return QVariant(stored); },
                                    [&](const QVariant& value) {
                                        if (value.toDouble() < 0.0)
                                            return false;
                                        stored = qMin(value.toDouble(), 10.0);
                                        return true;
                                    });
        int told = 0;
        auto watch = parameter.watch([&] { ++told; });
        QVERIFY(parameter.setValue(2.0));
        QVERIFY(parameter.setValue(2.0)); // became no other one
        QCOMPARE(told, 1);
        QVERIFY(!parameter.setValue(-1.0));
        QVERIFY(parameter.setValue(20.0));
        QCOMPARE(parameter.value().toDouble(), 10.0);
        parameter.setRange(0.0, 10.0);
        parameter.setRange(0.0, 10.0);
        parameter.setEnabled(false);
        QVERIFY(!parameter.isEnabled());
        QCOMPARE(told, 4);
        watch.reset();
        parameter.notify();
        QCOMPARE(told, 4);
        QVERIFY(!CallbackParameter(nullptr).setValue(1));
    }

    // Who is told may end watches, begin them and destroy the parameter.
    void watchersComeAndGo() {
        auto watchers = std::make_unique<ParameterWatchers>();
        QString told;
        std::unique_ptr<ParameterWatch> third;
        std::unique_ptr<ParameterWatch> late;
        const auto first = watchers->add([&] {
            told += '1';
            third.reset();
            if (!late)
                late = watchers->add([&] { told += '4'; });
        });
        const auto second = watchers->add([&] { told += '2'; });
        third = watchers->add([&] { told += '3'; });
        watchers->tell();
        QCOMPARE(told, QStringLiteral("12"));
        watchers->tell();
        QCOMPARE(told, QStringLiteral("12124"));
        const auto last = watchers->add([&] { told += '5'; });
        late = watchers->add([&] { watchers.reset(); });
        const auto never = watchers->add([&] { told += '6'; });
        watchers->tell();
        QCOMPARE(told, QStringLiteral("12124125"));
    }

    void properties() {
        JogWheel wheel;
        PropertyParameter value(&wheel, "value");
        int told = 0;
        const auto watch = value.watch([&] { ++told; });
        QVERIFY(value.setValue(7));
        QCOMPARE(wheel.value(), 7);
        wheel.setValue(8);
        QCOMPARE(value.value().toInt(), 8);
        QCOMPARE(told, 2);
        QVERIFY(value.setValue(8));
        QCOMPARE(told, 2);
        QVERIFY(!value.setValue(QPoint()));
        QVERIFY(!PropertyParameter(&wheel, "none").setValue(1));
        auto object = std::make_unique<QObject>();
        object->setProperty("dynamic", 3);
        PropertyParameter dynamic(object.get(), "dynamic");
        QVERIFY(dynamic.setValue(4) && dynamic.isEnabled());
        object.reset();
        QVERIFY(!dynamic.value().isValid() && !dynamic.isEnabled() && !dynamic.setValue(5));
    }

    void everyWidgetIsBound() {
        const auto edits = [](QWidget& widget, const QVariant& first, const QVariant& second) {
            QVariant stored = first;
            CallbackParameter plain([&] { return stored; },
                                    [&](const QVariant& value) {
                                        stored = value;
                                        return true;
                                    });
            const QMetaProperty value = widget.metaObject()->userProperty();
            QVERIFY(ParameterBinding::bind(&widget, &plain));
            QVERIFY(value.read(&widget) == first);
            stored = second;
            plain.notify();
            QVERIFY(value.read(&widget) == second);
            if (auto* text = qobject_cast<QLineEdit*>(&widget))
                text->setCursorPosition(1);
            up(widget);
            QVERIFY2(stored != second, widget.metaObject()->className());
            QVERIFY(stored == value.read(&widget));
            ParameterBinding::bind(&widget, nullptr);
            stored = first;
            plain.notify();
            QVERIFY(value.read(&widget) != first);
        };
        LogSlider slider;
        slider.setRealRange(0, 2, 10);
        edits(slider, 10.0, 1.0);
        JogWheel jog;
        edits(jog, 5, 6);
        TimeField field;
        field.setTimeDisplayFormat(false, false);
        edits(field, 12, 77);
        ChoiceButton button;
        for (const char* choice : {"one", "two", "three"})
            button.addChoice(QLatin1String(choice));
        edits(button, 0, 2);
        ColorWheel wheel;
        edits(wheel, QVector3D(0.5F, 0.5F, 0.5F), QVector3D(0.1F, 0.2F, 0.3F));
        QTest::ignoreMessage(QtWarningMsg,
                             "ParameterBinding::bind - refused: QWidget tells no edits of a value");
        QWidget none;
        EvenParameter parameter(1);
        QVERIFY(!ParameterBinding::bind(&none, &parameter));
    }

    void bracketsAndAnswers() {
        EvenParameter parameter(9);
        parameter.setRange(0, 30);
        JogWheel wheel;
        wheel.setAccessibleName(QString());
        JogWheel twin;
        ParameterBinding* binding = ParameterBinding::bind(&wheel, &parameter);
        ParameterBinding::bind(&twin, &parameter);
        QSignalSpy refused(binding, &ParameterBinding::refused);
        QCOMPARE(wheel.maximum(), 30);
        QCOMPARE(wheel.accessibleName(), QStringLiteral("p"));
        up(wheel, 2); // to 11, which becomes 10
        QCOMPARE(parameter.log, QStringLiteral("<pvv>"));
        QCOMPARE(wheel.value(), 10);
        QCOMPARE(twin.value(), 10);
        parameter.setValue(20);
        parameter.log.clear();
        sendKey(wheel, Qt::Key_Up);
        QCOMPARE(wheel.value(), 20);
        QCOMPARE(refused.count(), 1);
        QVERIFY(!wheel.findChildren<QWidget*>().isEmpty()); // the flash
        binding->cancelEdit();
        QCOMPARE(parameter.log, QStringLiteral("<pvv!"));
        parameter.setEnabled(false);
        QVERIFY(!wheel.isEnabled() && !twin.isEnabled());
    }

    // Each side may go at any time, also in the middle of an edit.
    void eitherSideGoes() {
        auto parameter = std::make_unique<EvenParameter>(5);
        auto wheel = std::make_unique<JogWheel>();
        auto twin = std::make_unique<JogWheel>();
        ParameterBinding::bind(wheel.get(), parameter.get());
        ParameterBinding* left = ParameterBinding::bind(twin.get(), parameter.get());
        sendKey(*wheel, Qt::Key_Up);
        wheel.reset();
        QCOMPARE(parameter->log, QStringLiteral("<pv>"));
        connect(twin.get(), &JogWheel::valueChanged, this, [&] { parameter.reset(); });
        sendKey(*twin, Qt::Key_Up);
        QCOMPARE(left->parameter(), nullptr);
        up(*twin);
        QCOMPARE(twin->value(), 8);
        for (const bool inWrite : {true, false}) {
            JogWheel* victim = new JogWheel;
            CallbackParameter deletes([] { return 1; },
                                      [&](const QVariant&) {
                                          if (inWrite)
                                              delete victim;
                                          return false;
                                      });
            ParameterBinding* bound = ParameterBinding::bind(victim, &deletes);
            if (!inWrite)
                connect(bound, &ParameterBinding::refused, this, [&] { delete victim; });
            sendKey(*victim, Qt::Key_Up);
        }
    }
};

KXUI_TEST(ParameterTest);
#include "ParameterTest.moc"
