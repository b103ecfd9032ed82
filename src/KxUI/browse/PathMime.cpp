#include <KxUI/browse/PathMime_p.h>

#include <KxUI/browse/PathText_p.h>
#include <KxUI/files/platform/Platform_p.h>

#include <QMimeData>

namespace Kestrel::UI::PathMime {
namespace {

std::vector<QByteArray> filled(const QByteArrayList& paths) {
    std::vector<QByteArray> all;
    for (const QByteArray& path : paths) {
        if (!path.isEmpty())
            all.push_back(path);
    }
    return all;
}

// Not by QUrl, which knows no names that are not UTF-8.
std::vector<QByteArray> addresses(const QByteArray& list) {
    std::vector<QByteArray> paths;
    for (const QByteArray& line : list.split('\n')) {
        const QByteArray path = PathText::pathOfAddress(QString::fromUtf8(line.trimmed()));
        if (!path.isEmpty())
            paths.push_back(path);
    }
    return paths;
}

} // namespace

std::vector<QByteArray> pathsOf(const QMimeData& data) {
    const QString type = QString::fromLatin1(Type);
    if (data.hasFormat(type))
        return filled(data.data(type).split('\0'));
    const QString list = QStringLiteral("text/uri-list");
    if (data.hasFormat(list))
        return addresses(data.data(list));
    if (!data.hasText() || !PathText::looksAbsolute(data.text()))
        return {};
    PathText::Place place;
    const std::string home = Platform::homeDirectory();
    place.home = QByteArray(home.data(), static_cast<int>(home.size()));
    const PathText::Meaning meaning = PathText::meaningOf(data.text(), {}, place);
    return filled({meaning.path});
}

} // namespace Kestrel::UI::PathMime
