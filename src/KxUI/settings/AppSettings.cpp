#include <KxUI/settings/AppSettings.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace Kestrel::UI {

namespace {

QString nameOr(const QString& name, const char* fallback) {
    return name.isEmpty() ? QString::fromLatin1(fallback) : name;
}

// A process that ended while it took the lock leaves it without a name in it. QSettings would wait
// half a minute before it takes such a lock for dead; a living process fills it at once.
void removeDeadLock(const QString& file) {
    constexpr qint64 longestMs = 1000;
    const QFileInfo lock(file + QStringLiteral(".lock"));
    if (lock.exists() && lock.size() == 0 &&
        lock.lastModified().msecsTo(QDateTime::currentDateTime()) > longestMs)
        QFile::remove(lock.filePath());
}

} // namespace

AppSettings::AppSettings(QObject* parent)
    : QSettings(QSettings::IniFormat, QSettings::UserScope,
                nameOr(QCoreApplication::organizationName(), "Kestrel"),
                nameOr(QCoreApplication::applicationName(), "KxUI"), parent) {
    removeDeadLock(fileName());
}

AppSettings::~AppSettings() = default;

} // namespace Kestrel::UI
