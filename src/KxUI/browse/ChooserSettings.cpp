#include <KxUI/browse/ChooserSettings_p.h>

#include <KxUI/settings/AppSettings.h>

#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace Kestrel::UI {
namespace {

// A purpose may have any characters; it is one group.
QString groupOf(const QString& purpose) {
    return QStringLiteral("FileChooser/") + QString::fromLatin1(QUrl::toPercentEncoding(purpose));
}

// Bytes that are no text survive in a settings file.
QString encoded(const QByteArray& path) {
    return QString::fromLatin1(path.toPercentEncoding("/ "));
}

QByteArray decoded(const QString& text) {
    return QByteArray::fromPercentEncoding(text.toLatin1());
}

} // namespace

ChooserSettings ChooserSettings::of(const QString& purpose) {
    ChooserSettings kept;
    if (purpose.isEmpty())
        return kept;
    AppSettings settings;
    settings.beginGroup(groupOf(purpose));
    kept.folder = decoded(settings.value(QStringLiteral("Folder")).toString());
    kept.filter = settings.value(QStringLiteral("Filter")).toString();
    kept.size = settings.value(QStringLiteral("Size")).toSize();
    if (settings.contains(QStringLiteral("FoldsSequences")))
        kept.folds = settings.value(QStringLiteral("FoldsSequences")).toBool();
    const QStringList paths = settings.value(QStringLiteral("Recent")).toStringList();
    for (const QString& path : paths) {
        if (!path.isEmpty() && kept.recent.size() < MostRecent)
            kept.recent.push_back(decoded(path));
    }
    return kept;
}

void ChooserSettings::save(const QString& purpose) const {
    if (purpose.isEmpty())
        return;
    AppSettings settings;
    settings.beginGroup(groupOf(purpose));
    settings.setValue(QStringLiteral("Folder"), encoded(folder));
    settings.setValue(QStringLiteral("Filter"), filter);
    settings.setValue(QStringLiteral("Size"), size);
    if (folds)
        settings.setValue(QStringLiteral("FoldsSequences"), *folds);
    QStringList paths;
    for (const QByteArray& path : recent)
        paths << encoded(path);
    settings.setValue(QStringLiteral("Recent"), paths);
}

void ChooserSettings::use(const QByteArray& path) {
    recent.erase(std::remove(recent.begin(), recent.end(), path), recent.end());
    recent.insert(recent.begin(), path);
    recent.resize(std::min(recent.size(), MostRecent));
}

QString ChooserSettings::browserKey(const QString& purpose) {
    return purpose.isEmpty() ? QString() : groupOf(purpose) + QStringLiteral("/Browser");
}

} // namespace Kestrel::UI
