// Settings of the host in the file of the library's.

#include <KxUI/settings/AppSettings.h>

#include <QCoreApplication>

#include <cstdio>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Example"));
    QCoreApplication::setApplicationName(QStringLiteral("Host"));

    AppSettings settings;
    const int starts = settings.value(QStringLiteral("host/starts"), 0).toInt() + 1;
    settings.setValue(QStringLiteral("host/starts"), starts);
    std::printf("start %d, kept in %s\n", starts, qPrintable(settings.fileName()));

    settings.sync(); // otherwise written when control is back in the event loop
    return settings.status() == QSettings::NoError ? 0 : 1;
}
