#include <KxUI/settings/AppSettings.h>

#include <support/TestRegistry.h>

using Kestrel::UI::AppSettings;

class AppSettingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isAnIniFileOfTheUser() {
        const AppSettings settings;
        QCOMPARE(settings.format(), QSettings::IniFormat);
        QCOMPARE(settings.scope(), QSettings::UserScope);
        QCOMPARE(settings.organizationName(), QString("Kestrel"));
        QCOMPARE(settings.applicationName(), QCoreApplication::applicationName());
    }

    void keepsWhatAnotherObjectWrote() {
        AppSettings writer;
        writer.setValue("window", QRect(1, 2, 3, 4));
        QCOMPARE(AppSettings().value("window").toRect(), QRect(1, 2, 3, 4));
        writer.remove("window");
    }
};

KXUI_TEST(AppSettingsTest);
#include "AppSettingsTest.moc"
