#include <KxUI/settings/AppSettings.h>

#include <QCoreApplication>

namespace Kestrel::UI {

namespace {

QString nameOr(const QString& name, const char* fallback) {
    return name.isEmpty() ? QString::fromLatin1(fallback) : name;
}

} // namespace

AppSettings::AppSettings(QObject* parent)
    : QSettings(QSettings::IniFormat, QSettings::UserScope,
                nameOr(QCoreApplication::organizationName(), "Kestrel"),
                nameOr(QCoreApplication::applicationName(), "KxUI"), parent) {}

AppSettings::~AppSettings() = default;

} // namespace Kestrel::UI
