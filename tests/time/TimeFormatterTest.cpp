#include <KxUI/time/TimeFormatter.h>

#include <support/TestRegistry.h>

using Kestrel::Base::InvalidTime;
using Kestrel::Base::Time;
using Kestrel::Base::TimeBase;
using Kestrel::UI::TimeFormatter;

class TimeFormatterTest : public QObject {
    Q_OBJECT

private slots:
    void announcesRealChangesOnce() {
        TimeFormatter formatter;
        QSignalSpy spy(&formatter, SIGNAL(timeFormatChanged(Kestrel::Base::TimeBase, bool, bool,
                                                            Kestrel::Base::Time)));
        const TimeBase ntsc(30, true);
        formatter.setTimeDisplay(ntsc, true, true, 100);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).value<TimeBase>(), ntsc);
        QCOMPARE(spy.takeFirst().at(3).value<Time>(), Time{100});

        formatter.setTimeDisplay(TimeBase::fromFraction(29970, 1000), true, true, 100);
        formatter.setTimeBase(TimeBase::fromFraction(29970, 1000));
        formatter.setTimeDisplayFormat(true, true);
        formatter.setTimecodeStart(100);
        QCOMPARE(spy.count(), 0);

        formatter.setTimeBase(TimeBase(24, false));
        formatter.setTimeDisplayFormat(false, true);
        formatter.setTimecodeStart(-5);
        QCOMPARE(spy.count(), 3);
    }

    void formats() {
        TimeFormatter formatter;
        QCOMPARE(formatter.formatTime(26), QStringLiteral("00:00:01:01"));
        QCOMPARE(formatter.formatTime(InvalidTime), QStringLiteral("--:--:--:--"));
        formatter.setTimecodeStart(-100);
        QCOMPARE(formatter.formatTime(25), QStringLiteral("00:00:01:00"));
        formatter.setTimeDisplay(TimeBase(30, true), true, true, 1790);
        QCOMPARE(formatter.formatTime(10), QStringLiteral("00;01;00;02"));
        formatter.setTimeDisplayFormat(false, true);
        QCOMPARE(formatter.formatTime(10), QStringLiteral("1800"));
    }
};

KXUI_TEST(TimeFormatterTest);

#include "TimeFormatterTest.moc"
