// Files of bookmarks: what is read, written and read again is the same; what a stream reader takes we
// take, too; and edits leave a document that it takes. The first byte chooses the edit.

#include <KxUI/browse/Xbel_p.h>

#include <support/Require.h>

#include <QByteArray>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Kestrel::UI;
using Kestrel::Fuzz::require;

namespace {

// False also for what we do not take on purpose.
bool isReadByOthers(const std::string& bytes) {
    const QByteArray all = QByteArray::fromStdString(bytes);
    // It overlooks half a letter at the end, and control characters in names.
    const auto isControl = [](char c) { return c >= 0 && c < ' ' && c != '\n' && c != '\t'; };
    if (QString::fromUtf8(all).toUtf8() != all || std::any_of(all.begin(), all.end(), isControl))
        return false;
    QXmlStreamReader reader(all);
    bool isBookmarks = false;
    bool hasOwnWords = false;
    for (int depth = 0; !reader.atEnd();) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::StartElement && depth++ == 0)
            isBookmarks = reader.qualifiedName() == QLatin1String("xbel");
        else if (token == QXmlStreamReader::EndElement)
            --depth;
        hasOwnWords =
            hasOwnWords || token == QXmlStreamReader::EntityReference ||
            (token == QXmlStreamReader::StartDocument && !reader.documentEncoding().isEmpty() &&
             reader.documentEncoding().compare(QLatin1String("utf-8"), Qt::CaseInsensitive) != 0);
    }
    return !reader.hasError() && isBookmarks && !hasOwnWords;
}

bool areSame(const std::vector<Xbel::Node>& a, const std::vector<Xbel::Node>& b) {
    const auto entries = [](const std::vector<Xbel::Node>& nodes) {
        std::vector<const Xbel::Node*> found;
        for (const Xbel::Node& node : nodes) {
            if (node.isEntry())
                found.push_back(&node);
        }
        return found;
    };
    const auto ours = entries(a);
    const auto theirs = entries(b);
    if (ours.size() != theirs.size())
        return false;
    for (std::size_t i = 0; i < ours.size(); ++i) {
        if (ours[i]->href != theirs[i]->href || ours[i]->title != theirs[i]->title ||
            !areSame(ours[i]->children, theirs[i]->children))
            return false;
    }
    return true;
}

void edit(Xbel::Document& document, unsigned choice, const std::string& bytes) {
    std::string first;
    std::string last;
    for (const Xbel::Node& node : document.nodes) {
        if (node.isEntry()) {
            first = first.empty() ? node.id : first;
            last = node.id;
        }
    }
    const auto found = Xbel::find(document, last);
    const std::string href = Xbel::hrefOf(bytes.substr(0, bytes.find('\0')));
    if (choice % 4 == 0)
        Xbel::insert(document, Xbel::bookmark(href, "t<&>\"", "fresh", "2024"), last, first, {});
    else if (found && choice % 4 == 1)
        Xbel::setTitle(found->node(), choice % 8 == 1 ? "new" : "");
    else if (found && choice % 4 == 2)
        Xbel::take(*found);
    else if (found)
        Xbel::insert(document, Xbel::take(*found), first, {}, first);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    const std::string path = bytes.substr(0, bytes.find('\0'));
    if (!path.empty() && path[0] == '/' && !Xbel::isAddress(path))
        require(Xbel::pathOf(Xbel::hrefOf(path)) == path, "a path comes back");

    Xbel::Document document = Xbel::read(bytes);
    const std::string once = Xbel::written(document);
    const Xbel::Document again = Xbel::read(once);
    require(again.problem == Xbel::Problem::None || once.size() > Xbel::Limits::Bytes,
            "what is written is read");
    require(Xbel::written(again) == once, "what is written stays");
    require(areSame(document.nodes, again.nodes) || once.size() > Xbel::Limits::Bytes,
            "what is written means the same");

    const bool isTaken = isReadByOthers(bytes);
    if (isTaken)
        require(document.problem != Xbel::Problem::NotWellFormed, "what others read is read");
    edit(document, data[0], bytes);
    const std::string edited = Xbel::written(document);
    require(Xbel::read(edited).problem == Xbel::Problem::None ||
                edited.size() > Xbel::Limits::Bytes,
            "what was edited is read");
    if (isTaken && document.problem == Xbel::Problem::None)
        require(isReadByOthers(edited), "others read what was edited");
    return 0;
}
