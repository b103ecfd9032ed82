#include "media/DroppedPaths.h"

#include <QMimeData>

namespace Kestrel::Workbench {

QList<QByteArray> droppedPaths(const QMimeData& data) {
    QList<QByteArray> paths;
    // A list of the library says more: a sequence is one path.
    const QByteArray listed = data.data(QStringLiteral("application/x-kxui-paths"));
    for (const QByteArray& path : listed.split('\0')) {
        if (!path.isEmpty())
            paths.append(path);
    }
    if (!paths.isEmpty())
        return paths;
    // Not by QUrl, which cannot carry a name that is not UTF-8.
    const QByteArray addresses = data.data(QStringLiteral("text/uri-list"));
    for (const QByteArray& line : addresses.split('\n')) {
        const QByteArray address = line.trimmed();
        const auto path = address.startsWith("file://") ? address.indexOf('/', 7) : -1;
        const QByteArray host = path < 0 ? QByteArray() : address.mid(7, path - 7);
        if (path >= 0 && (host.isEmpty() || host == "localhost"))
            paths.append(QByteArray::fromPercentEncoding(address.mid(path)));
    }
    return paths;
}

} // namespace Kestrel::Workbench
