#include <KxUI/kit/CallbackParameter.h>
#include <KxUI/kit/ParameterWatchers.h>

#include <support/TestRegistry.h>

#include <QtTest>

using Kestrel::UI::CallbackParameter;
using Kestrel::UI::ParameterWatch;
using Kestrel::UI::ParameterWatchers;

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
};

KXUI_TEST(ParameterTest);
#include "ParameterTest.moc"
