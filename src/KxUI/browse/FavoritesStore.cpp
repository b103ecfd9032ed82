#include <KxUI/browse/FavoritesStore_p.h>

#include <KxUI/kit/Flush_p.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>

namespace Kestrel::UI::FavoritesStore {
namespace {

constexpr int staleAfter = 10000; // milliseconds: nobody writes for so long

Stamp stampOf(const QString& fileName) {
    const QFileInfo info(fileName);
    if (!info.exists())
        return {};
    return {info.lastModified().toMSecsSinceEpoch(), info.size()};
}

// The file that a link leads to, so that the link stays one.
QString targetOf(const QString& fileName) {
    QString target = fileName;
    for (int links = 0; links < 40; ++links) {
        const QFileInfo info(target);
        if (!info.isSymLink())
            break;
        target = info.symLinkTarget();
    }
    return target;
}

// False where there is a file that cannot be read: it must not be taken for an empty one.
bool readBytes(const QString& fileName, QByteArray& bytes, QString& error) {
    QFile file(fileName);
    if (!file.open(QFile::ReadOnly)) {
        error = file.errorString();
        // A link that leads nowhere is no file yet, but a folder that may not be entered may have one.
        const QFileInfo folder(QFileInfo(fileName).absolutePath());
        return !QFileInfo::exists(fileName) &&
               (!folder.exists() || (folder.isReadable() && folder.isExecutable()));
    }
    bytes = file.read(static_cast<qint64>(Xbel::Limits::Bytes) + 1);
    error = file.errorString();
    return file.error() == QFile::NoError;
}

Result resultOf(const QByteArray& bytes, const Stamp& stamp) {
    Result result;
    result.isNew = true;
    result.stamp = stamp;
    result.document =
        Xbel::read(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    return result;
}

// A copy of what could not be read to its end. Copies are never overwritten.
QString keepCopy(const QString& fileName) {
    QFile original(fileName);
    if (!original.open(QFile::ReadOnly))
        return {};
    for (int number = 1; number < 10; ++number) {
        const QString name =
            fileName + QLatin1String(".bad") + (number == 1 ? QString() : QString::number(number));
        if (!QFileInfo::exists(name))
            return original.copy(name) ? name : QString();
        QFile copy(name);
        if (copy.size() == original.size() && copy.open(QFile::ReadOnly) && original.seek(0) &&
            copy.readAll() == original.readAll())
            return name;
    }
    return {};
}

Result failed(Failure failure, const QString& detail) {
    Result result;
    result.failure = failure;
    result.detail = detail;
    return result;
}

bool write(const QString& fileName, const std::string& bytes, QString& error) {
    const bool isNew = !QFileInfo::exists(fileName);
    QSaveFile file(fileName);
    file.setDirectWriteFallback(false);
    const bool isWritten = file.open(QFile::WriteOnly) &&
                           (!isNew || file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)) &&
                           file.write(bytes.data(), static_cast<qint64>(bytes.size())) ==
                               static_cast<qint64>(bytes.size()) &&
                           flushed(&file) && file.commit();
    if (!isWritten)
        error = file.errorString();
    return isWritten;
}

} // namespace

void apply(Xbel::Document& document, const Change& change) {
    const auto place = Xbel::find(document, change.id);
    switch (change.kind) {
    case Change::Kind::Insert:
        if (!place)
            Xbel::insert(document, change.entry, change.group, change.before, change.behind);
        break;
    case Change::Kind::Remove:
        if (place)
            Xbel::take(*place);
        break;
    case Change::Kind::Rename:
        if (place)
            Xbel::setTitle(place->node(), change.title);
        break;
    case Change::Kind::Move:
        if (place) {
            Xbel::Node entry = Xbel::take(*place);
            Xbel::insert(document, std::move(entry), change.group, change.before, change.behind);
        }
        break;
    }
}

Result load(const QString& fileName, const Stamp& known) {
    const QString target = targetOf(fileName);
    const Stamp stamp = stampOf(target);
    if (stamp == known && stamp.size >= 0) {
        Result result;
        result.stamp = stamp;
        return result;
    }
    QByteArray bytes;
    QString error;
    if (!readBytes(target, bytes, error))
        return failed(Failure::CannotRead, error);
    Result result = resultOf(bytes, stamp);
    if (result.document.problem != Xbel::Problem::None)
        result.copy = keepCopy(target);
    return result;
}

Result save(const QString& fileName, const std::vector<Change>& changes, int lockWait) {
    const QString target = targetOf(fileName);
    QDir().mkpath(QFileInfo(target).absolutePath());
    QLockFile lock(target + QLatin1String(".lock"));
    lock.setStaleLockTime(staleAfter);
    if (!lock.tryLock(lockWait))
        return failed(lock.error() == QLockFile::LockFailedError ? Failure::Locked
                                                                 : Failure::CannotWrite,
                      QFileInfo(target).absolutePath());
    QByteArray bytes;
    QString error;
    if (!readBytes(target, bytes, error))
        return failed(Failure::CannotRead, error);
    Result result = resultOf(bytes, {});
    if (result.document.problem != Xbel::Problem::None) {
        result.copy = keepCopy(target);
        if (result.copy.isEmpty())
            return failed(Failure::CannotKeep, QString());
    }
    for (const Change& change : changes)
        apply(result.document, change);
    const std::string changed = Xbel::written(result.document);
    const bool isSame =
        changed == std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (!isSame && !write(target, changed, error))
        return failed(Failure::CannotWrite, error);
    result.stamp = stampOf(target);
    result.applied = changes.size();
    result.hasSaved = true;
    return result;
}

} // namespace Kestrel::UI::FavoritesStore
