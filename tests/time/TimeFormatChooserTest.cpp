#include <KxUI/time/TimeField.h>
#include <KxUI/time/TimeFormatChooser.h>
#include <KxUI/time/TimeFormatter.h>

#include <support/TestRegistry.h>

#include <QAction>
#include <QMenu>

using Kestrel::Base::Time;
using namespace Kestrel::UI;

namespace {

// The visible entries by their two letters, the checked one with a star.
QString entries(const TimeFormatChooser& chooser) {
    QStringList shown;
    for (const QAction* action : chooser.menu()->actions()) {
        if (action->isVisible())
            shown +=
                action->text().left(2) + (action->isChecked() ? QStringLiteral("*") : QString());
    }
    return shown.join(QLatin1Char(' '));
}

QAction* entry(const TimeFormatChooser& chooser, const char* letters) {
    for (QAction* action : chooser.menu()->actions()) {
        if (action->text().startsWith(QLatin1String(letters)))
            return action;
    }
    return nullptr;
}

} // namespace

class TimeFormatChooserTest : public QObject {
    Q_OBJECT

private slots:
    void entriesFollowModeAndNotation() {
        TimeFormatter formatter;
        TimeFormatChooser chooser(&formatter);
        QCOMPARE(entries(chooser), QStringLiteral("TC* AC EC CF"));
        entry(chooser, "CF")->trigger();
        QCOMPARE(entries(chooser), QStringLiteral("TC AC EC CF*"));
        chooser.setMode(TimeFormatChooser::TimelineMode);
        QCOMPARE(entries(chooser), QStringLiteral("TC TF*"));
        chooser.setMode(TimeFormatChooser::ClipMode);
        QCOMPARE(entries(chooser), QStringLiteral("TC AC EC CF*"));
        for (const char* reserved : {"AC", "EC"}) {
            entry(chooser, "TC")->trigger();
            entry(chooser, reserved)->trigger();
            QVERIFY(formatter.displayTimecode());
            chooser.setMode(TimeFormatChooser::TimelineMode);
            QCOMPARE(entries(chooser), QStringLiteral("TC* TF"));
            chooser.setMode(TimeFormatChooser::ClipMode);
        }
    }

    void choosesForFormatterAndFields() {
        TimeFormatter formatter;
        TimeFormatChooser chooser(&formatter);
        formatter.setTimeBase(Kestrel::Base::TimeBase(50, false));
        TimeField field;
        chooser.addTimefield(&field);
        field.setTime(50, false);
        QCOMPARE(field.text(), QStringLiteral("00:00:01:00")); // at once
        formatter.setTimeBase(Kestrel::Base::TimeBase(25, false));
        chooser.setTimecodeStart(1001, 25);
        QCOMPARE(field.text(), QStringLiteral("00:00:03:00"));

        QSignalSpy changed(&formatter, &TimeFormatter::timeFormatChanged);
        entry(chooser, "CF")->trigger();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(field.text(), QStringLiteral("1051")); // the start of frames
        QCOMPARE(chooser.text(), QStringLiteral("TF"));
        chooser.showFrames();
        chooser.setTimeDisplay(false, false, 1001, 25);
        QCOMPARE(changed.count(), 1);
        chooser.setTimeDisplayFormat(true, true);
        QCOMPARE(changed.count(), 2);
        QVERIFY(formatter.displayDropFrames());
        QCOMPARE(formatter.timecodeStart(), Time(25));
    }

    void followsTheFormatter() {
        auto* formatter = new TimeFormatter;
        TimeFormatChooser chooser(formatter);
        formatter->setTimeDisplayFormat(false, true);
        QCOMPARE(entries(chooser), QStringLiteral("TC AC EC CF*"));

        // What the host gives to the formatter survives the user's choice.
        formatter->setTimecodeStart(77);
        chooser.showTimecode();
        chooser.showFrames();
        QCOMPARE(formatter->timecodeStart(), Time(77));

        // What it did not change is the chooser's still.
        chooser.setTimecodeStart(1001, 25);
        chooser.showTimecode();
        formatter->setTimeBase(Kestrel::Base::TimeBase(30, false));
        formatter->setTimeDisplayFormat(false, false);
        chooser.showTimecode();
        chooser.showFrames();
        QCOMPARE(formatter->timecodeStart(), Time(1001));

        // Another formatter: its values hold at once, and the fields go along.
        TimeFormatter next;
        next.setTimeDisplay(Kestrel::Base::TimeBase(24, false), true, true, 5);
        TimeField field, own;
        chooser.addTimefield(&field);
        chooser.addTimefield(&own);
        TimeFormatter another;
        own.setFormatter(&another);
        chooser.setFormatter(&next);
        QVERIFY(chooser.displayTimecode() && chooser.displayDropFrames());
        QCOMPARE(chooser.timecodeStart(), Time(5));
        QCOMPARE(field.formatter(), &next);
        QCOMPARE(own.formatter(), &another);
        chooser.setFormatter(formatter);

        delete formatter;
        chooser.showTimecode();
        QCOMPARE(chooser.text(), QStringLiteral("TC"));
    }
};

KXUI_TEST(TimeFormatChooserTest);
#include "TimeFormatChooserTest.moc"
