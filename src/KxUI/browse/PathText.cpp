#include <KxUI/browse/PathText_p.h>

#include <KxUI/browse/NameEdits_p.h>
#include <KxUI/files/FileNames.h>
#include <KxUI/files/FileTexts_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/platform/Directory_p.h>

#include <algorithm>

namespace Kestrel::UI::PathText {
namespace {

using Size = decltype(QByteArray().size()); // int on Qt 5

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

QByteArray withSlashes(QByteArray path, System system) {
    if (system == System::Windows)
        path.replace('\\', '/');
    return path;
}

QString withSlashes(QString text, System system) {
    if (system == System::Windows)
        text.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return text;
}

// The end of a component that begins there, or of the path.
Size componentEnd(const QByteArray& path, Size from) {
    const Size end = path.indexOf('/', from);
    return end < 0 ? path.size() : end;
}

// How many bytes of a path with slashes are no folder's name, without the slash at the end: those
// of `C:`, of `//server/share`, none of `/`. -1 for a relative path.
Size rootLength(const QByteArray& path, System system) {
    if (system == System::Posix)
        return path.startsWith('/') ? 0 : -1;
    if (path.size() > 1 && isLetter(path.at(0)) && path.at(1) == ':')
        return 2;
    if (!path.startsWith("//") || path.size() == 2 || path.at(2) == '/')
        return path.startsWith('/') ? 0 : -1;
    const Size server = componentEnd(path, 2);
    const Size share = componentEnd(path, server + 1);
    return share > server + 1 ? share : server;
}

// Without steps, which are taken away by the text, and separators that say nothing.
QByteArray cleaned(const QByteArray& path, System system) {
    const Size root = rootLength(path, system);
    QByteArray clean = path.left(root);
    for (Size at = root; at < path.size();) {
        const Size end = componentEnd(path, at);
        const QByteArray name = path.mid(at, end - at);
        at = end + 1;
        if (name == "..")
            clean.truncate(std::max<Size>(root, clean.lastIndexOf('/')));
        else if (!name.isEmpty() && name != ".")
            clean += '/' + name;
    }
    if (clean.size() == root)
        return clean + '/';
    // Behind a server, the first name is a share, which no step leads out of.
    return rootLength(clean, system) == root ? clean : cleaned(clean, system);
}

QString unquoted(const QString& text) {
    for (const char quote : {'"', '\''}) {
        const QLatin1Char mark(quote);
        if (text.size() > 1 && text.startsWith(mark) && text.endsWith(mark))
            return text.mid(1, text.size() - 2).trimmed();
    }
    return text;
}

QString firstLine(const QString& text) {
    const QString rest = text.trimmed();
    const auto end = std::find_if(rest.begin(), rest.end(), [](QChar c) {
        return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::LineSeparator ||
               c == QChar::ParagraphSeparator;
    });
    return unquoted(rest.left(static_cast<Size>(end - rest.begin())).trimmed());
}

bool isAddress(const QString& text) {
    return text.startsWith(QLatin1String("file:"), Qt::CaseInsensitive);
}

Meaning refused(Refusal refusal) {
    Meaning meaning;
    meaning.refusal = refusal;
    return meaning;
}

Size sharedLength(const QByteArray& path, const QByteArray& base) {
    Size shared = 0;
    for (Size at = 0; at <= path.size() && at <= base.size(); ++at) {
        const bool pathEnds = at == path.size() || path.at(at) == '/';
        const bool baseEnds = at == base.size() || base.at(at) == '/';
        if (pathEnds && baseEnds)
            shared = at;
        if (at == path.size() || at == base.size() || path.at(at) != base.at(at))
            break;
    }
    return shared;
}

} // namespace

System thisSystem() {
    return Platform::backslashSeparates() ? System::Windows : System::Posix;
}

std::vector<Crumb> crumbsOf(const QByteArray& path, System system) {
    std::vector<Crumb> crumbs;
    if (!isAbsolute(path, system))
        return crumbs;
    const QByteArray clean = cleaned(withSlashes(path, system), system);
    const Size root = rootLength(clean, system);
    const QByteArray first = root == 0 ? QByteArray("/") : clean.left(root);
    crumbs.push_back({readable(first), root == 0 ? first : first + '/'});
    for (Size at = root + 1; at < clean.size();) {
        const Size end = componentEnd(clean, at);
        crumbs.push_back({readable(clean.mid(at, end - at)), clean.left(end)});
        at = end + 1;
    }
    return crumbs;
}

QString shown(const QByteArray& path) {
    QString text;
    for (Size at = 0; at <= path.size();) {
        const Size end = componentEnd(path, at);
        if (at > 0)
            text += QLatin1Char('/');
        text += decodedName(path.mid(at, end - at));
        at = end + 1;
    }
    return text;
}

QString readable(const QByteArray& path) {
    return FileTexts::name(viewOf(path));
}

QByteArray typed(const QString& text, const QByteArray& filled, System system) {
    const QString wanted = withSlashes(text, system);
    Size kept = 0;   // bytes
    Size shared = 0; // characters
    for (Size at = 0; at <= filled.size();) {
        const Size end = componentEnd(filled, at);
        const QString part = shown(filled.left(end));
        if (!wanted.startsWith(part))
            break;
        const bool ends = part.size() == wanted.size();
        if (!ends && wanted.at(part.size()) != QLatin1Char('/'))
            break;
        kept = end;
        shared = part.size();
        at = end + 1;
    }
    return filled.left(kept) + encodedName(wanted.mid(shared));
}

Meaning meaningOf(const QByteArray& given, const Place& place) {
    QByteArray path = withSlashes(given, place.system);
    if (path.isEmpty())
        return refused(Refusal::Empty);
    if (path.contains('\0'))
        return refused(Refusal::Nul);
    Meaning meaning;
    for (const char* end : {"/", "/.", "/.."})
        meaning.endsAsFolder = meaning.endsAsFolder || path.endsWith(end);
    for (const char* whole : {".", "..", "~"})
        meaning.endsAsFolder = meaning.endsAsFolder || path == whole;
    if (path == "~" || path.startsWith("~/")) {
        if (place.home.isEmpty())
            return refused(Refusal::NoHome);
        path.replace(0, 1, withSlashes(place.home, place.system));
    }
    const QByteArray folder = withSlashes(place.folder, place.system);
    const Size root = rootLength(path, place.system);
    if (root < 0)
        path.prepend(folder + '/');
    else if (root == 0 && place.system == System::Windows) // on the drive where we are
        path.prepend(folder.left(std::max<Size>(0, rootLength(folder, place.system))));
    meaning.path = cleaned(path, place.system);
    return meaning;
}

Meaning meaningOf(const QString& text, const QByteArray& filled, const Place& place) {
    if (!filled.isEmpty() && text == shown(filled))
        return meaningOf(filled, place);
    const QByteArray bytes = typed(text.trimmed(), filled, place.system);
    const bool isKept = !filled.isEmpty() && bytes.startsWith(filled + '/');
    if (isKept) // names that have been there may have what a pasted line has
        return meaningOf(bytes, place);
    const QString line = firstLine(text);
    if (!isAddress(line))
        return meaningOf(typed(line, filled, place.system), place);
    const QByteArray path = pathOfAddress(line, place.system);
    return path.isEmpty() ? refused(Refusal::OtherHost) : meaningOf(path, place);
}

QString pasted(const QString& text, System system) {
    const QString line = firstLine(text);
    if (!isAddress(line))
        return line;
    const QByteArray path = pathOfAddress(line, system);
    return path.isEmpty() ? line : shown(path);
}

QByteArray pathOfAddress(const QString& address, System system) {
    if (!isAddress(address))
        return {};
    QByteArray path = QByteArray::fromPercentEncoding(address.mid(5).toUtf8());
    if (path.startsWith("//")) {
        const Size end = componentEnd(path, 2);
        const QByteArray host = path.mid(2, end - 2);
        const bool isHere = host.isEmpty() || host.toLower() == "localhost";
        if (!isHere && system == System::Posix)
            return {};
        if (isHere)
            path.remove(0, end);
    }
    const bool hasDrive = path.size() > 2 && isLetter(path.at(1)) && path.at(2) == ':';
    return system == System::Windows && hasDrive ? path.mid(1) : path;
}

bool isAbsolute(const QByteArray& path, System system) {
    return rootLength(withSlashes(path, system), system) >= 0;
}

bool looksAbsolute(const QString& text, System system) {
    const QString line = firstLine(text);
    return isAddress(line) || line == QLatin1String("~") || line.startsWith(QLatin1String("~/")) ||
           isAbsolute(encodedName(line), system);
}

QByteArray parentOf(const QByteArray& path, System system) {
    return cleaned(withSlashes(path, system) + "/..", system);
}

QByteArray nameOf(const QByteArray& path, System system) {
    const QByteArray clean = withSlashes(path, system);
    return clean.mid(clean.lastIndexOf('/') + 1);
}

QByteArray joined(const QByteArray& folder, const QByteArray& name) {
    return folder.endsWith('/') ? folder + name : folder + '/' + name;
}

QByteArray relativeTo(const QByteArray& path, const QByteArray& base, System system) {
    const Size root = std::max<Size>(0, rootLength(path, system));
    const QByteArray from = base.endsWith('/') ? base.left(base.size() - 1) : base;
    const Size shared = sharedLength(path, from);
    if (shared <= root)
        return path;
    QByteArray way;
    for (Size steps = from.mid(shared).count('/'); steps > 0; --steps)
        way += "../";
    way += path.mid(shared + 1);
    if (way.isEmpty())
        return ".";
    if (way.startsWith('~') || isAbsolute(way, system))
        way.prepend("./"); // the name means nothing else
    return way.endsWith('/') ? way.left(way.size() - 1) : way;
}

QString elided(const QString& path, double width, const Measure& measure) {
    if (measure(path) <= width)
        return path;
    const QString dots(QChar(0x2026));
    const auto slash = QLatin1Char('/');
    // The front is kept up to the slash behind the first folder.
    const Size front = path.indexOf(slash, 1) + 1;
    for (const QString& head : {path.left(front), QString()}) {
        for (Size at = path.indexOf(slash, head.size()); at >= 0;
             at = path.indexOf(slash, at + 1)) {
            const QString text = head + dots + path.mid(at);
            if (measure(text) <= width)
                return text;
        }
    }
    const QString name = path.mid(path.lastIndexOf(slash) + 1);
    for (Size kept = name.size() - 1; kept > 0; --kept) {
        // More of the end, where versions and frames are.
        const QString text = name.left(kept / 3) + dots + name.right(kept - kept / 3);
        if (measure(text) <= width)
            return text;
    }
    return dots;
}

QByteArray sequenceOf(const std::vector<QByteArray>& paths, System system) {
    if (paths.size() < 2)
        return {};
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const QByteArray first = withSlashes(paths.front(), system);
    Size end = first.size();
    const Size name = first.lastIndexOf('/') + 1;
    while (end > name && !isDigit(first.at(end - 1)))
        --end;
    Size begin = end;
    while (begin > name && isDigit(first.at(begin - 1)))
        --begin;
    if (begin == end)
        return {};
    const QByteArray before = first.left(begin);
    const QByteArray after = first.mid(end);
    bool isPadded = true;
    for (const QByteArray& each : paths) {
        const QByteArray path = withSlashes(each, system);
        if (path.size() <= before.size() + after.size() || !path.startsWith(before) ||
            !path.endsWith(after))
            return {};
        const QByteArray number =
            path.mid(before.size(), path.size() - before.size() - after.size());
        if (!std::all_of(number.begin(), number.end(), isDigit))
            return {};
        isPadded = isPadded && number.size() == end - begin;
    }
    return before + QByteArray(isPadded ? end - begin : 1, '#') + after;
}

QByteArray withVersion(const QByteArray& path, std::int32_t number) {
    return bytesOf(NameEdits::withVersion(path.toStdString(), number));
}

} // namespace Kestrel::UI::PathText
