#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/Translations.h>
#include <KxUI/time/TimeSliderModel.h>

#include <support/TestRegistry.h>

#include <thread>

using namespace Kestrel::UI;

/** What the library does for a host as a whole: its language, and warnings of misuse. */
class HostServicesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void speaksTheLanguageAskedFor() {
        const char* english = "Next Pane";
        const char* german = "N\u00e4chster Bereich";
        const struct {
            QLocale locale;
            bool found;
            const char* text;
        } rows[] = {{QLocale(QLocale::German), true, german},
                    {QLocale(QLocale::German, QLocale::Austria), true, german},
                    {QLocale(QLocale::Welsh), false, english}, // there is no catalog
                    {QLocale(QLocale::English), true, english},
                    {QLocale::c(), true, english}};
        for (const auto& row : rows) {
            // What another call installed is gone.
            QVERIFY(Translations::install(QLocale(QLocale::German)));
            QCOMPARE(Translations::install(row.locale), row.found);
            QCOMPARE(DockMainWindow::tr("Next Pane"), QString::fromUtf8(row.text));
        }
        QVERIFY(Translations::install(QLocale::c()));
    }

    void warnsOnceOfAWrongThread() {
        std::atomic_flag warned = ATOMIC_FLAG_INIT;
        QVERIFY(runsInThreadOf(this, "use", warned));
        QTest::ignoreMessage(
            QtWarningMsg, "HostServicesTest::use - called from another thread than its object's");
        bool right = true;
        std::thread([&] {
            right = runsInThreadOf(this, "use", warned) || runsInThreadOf(this, "use", warned);
        }).join();
        QVERIFY(!right);
    }

    void settersWarnInDebugBuilds() {
        TimeSliderModel model;
#if !defined(NDEBUG)
        QTest::ignoreMessage(QtWarningMsg,
                             "Kestrel::UI::TimeSliderModel::setCurrentTime - called from another "
                             "thread than its object's");
#endif
        std::thread([&] {
            model.setCurrentTime(1);
            model.setCurrentTime(2);
        }).join();
        QCOMPARE(model.currentTime(), Kestrel::Base::Time(2));
    }
};

KXUI_TEST(HostServicesTest);
#include "HostServicesTest.moc"
