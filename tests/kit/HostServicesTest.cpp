#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/Translations.h>
#include <KxUI/time/TimeSliderModel.h>

#include <support/TestRegistry.h>

#include <QtTest>

#include <thread>

using namespace Kestrel::UI;

/** What the library does for a host as a whole: its language, and warnings of misuse. */
class HostServicesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void speaksTheLanguageAskedFor_data() {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<bool>("found");
        QTest::addColumn<QString>("text");
        const QString english = QStringLiteral("Next Pane");
        const QString german = QStringLiteral("Nächster Bereich");
        QTest::newRow("German") << QLocale(QLocale::German) << true << german;
        QTest::newRow("country") << QLocale(QLocale::German, QLocale::Austria) << true << german;
        QTest::newRow("no catalog") << QLocale(QLocale::Welsh) << false << english;
        QTest::newRow("English") << QLocale(QLocale::English) << true << english;
        QTest::newRow("classic") << QLocale::c() << true << english;
    }
    void speaksTheLanguageAskedFor() {
        QFETCH(QLocale, locale);
        QFETCH(bool, found);
        // What another call installed is gone.
        QVERIFY(Translations::install(QLocale(QLocale::German)));
        QCOMPARE(Translations::install(locale), found);
        QTEST(DockMainWindow::tr("Next Pane"), "text");
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
