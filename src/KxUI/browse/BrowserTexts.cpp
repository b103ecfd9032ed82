#include <KxUI/browse/BrowserTexts_p.h>

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/files/FileTexts_p.h>

#include <QStringList>

#include <algorithm>
#include <limits>

namespace Kestrel::UI::BrowserTexts {
namespace {

int limited(std::int64_t count) {
    return static_cast<int>(std::min<std::int64_t>(count, std::numeric_limits<int>::max()));
}

QString failure(const FileListing& listing) {
    const QString error = FileManager::errorText(listing.error());
    const int entries = limited(listing.entriesRead());
    if (entries == 0)
        return error;
    return FileBrowser::tr("Reading stopped after %Ln entries: %1", nullptr, entries).arg(error);
}

} // namespace

void Sum::count(FileListing::Kind kind) {
    ++(kind == FileListing::Kind::Directory  ? folders
       : kind == FileListing::Kind::Sequence ? sequences
                                             : files);
}

void Sum::add(const FileListing& listing, int item) {
    const FileListing::Kind kind = listing.item(item).kind;
    count(kind);
    // One that is not known, and the others are not told of.
    if (isUnknown || kind == FileListing::Kind::Directory)
        return;
    const FileListing::Status status = listing.status(item);
    isEstimate = isEstimate || status.isEstimate;
    isUnknown = isUnknown || status.known == FileListing::Status::NotAsked;
    bytes += status.size;
}

QString listed(const Sum& sum) {
    QStringList parts;
    if (sum.folders > 0)
        parts << (sum.folders == 1 ? FileBrowser::tr("1 folder")
                                   : FileBrowser::tr("%Ln folders", nullptr, sum.folders));
    if (sum.sequences > 0)
        parts << (sum.sequences == 1 ? FileBrowser::tr("1 sequence")
                                     : FileBrowser::tr("%Ln sequences", nullptr, sum.sequences));
    if (sum.files > 0)
        parts << (sum.files == 1 ? FileBrowser::tr("1 file")
                                 : FileBrowser::tr("%Ln files", nullptr, sum.files));
    return parts.join(QStringLiteral(", "));
}

QString selected(const Sum& sum) {
    const QString rows = FileBrowser::tr("%Ln selected", nullptr, sum.rows());
    if (sum.sequences + sum.files == 0 || sum.isUnknown)
        return rows;
    return FileBrowser::tr("%1, %2").arg(rows, FileTexts::size(sum.bytes, sum.isEstimate));
}

QString read(int rows) {
    return rows == 1 ? FileBrowser::tr("Folder read, 1 item")
                     : FileBrowser::tr("Folder read, %Ln items", nullptr, rows);
}

QString reading(std::int64_t entries) {
    if (entries == 0)
        return FileBrowser::tr("Reading\u2026");
    return FileBrowser::tr("Reading: %Ln entries", nullptr, limited(entries));
}

QString notice(BrowserNotice notice, const FileListing& listing, const QString& search) {
    switch (notice) {
    case BrowserNotice::None:
        break;
    case BrowserNotice::Waiting:
    case BrowserNotice::WaitingLong:
        return FileBrowser::tr("Waiting for the server of this folder\u2026");
    case BrowserNotice::Failed:
        return failure(listing);
    case BrowserNotice::Vanished:
        return listing.size() > 0 ? FileBrowser::tr("This folder does not exist any more.")
                                  : FileManager::errorText(listing.error());
    case BrowserNotice::Stopped:
        return listing.entriesRead() == 0
                   ? FileBrowser::tr("Reading was stopped.")
                   : FileBrowser::tr("Reading was stopped after %Ln entries.", nullptr,
                                     limited(listing.entriesRead()));
    case BrowserNotice::Empty:
        return FileBrowser::tr("This folder is empty.");
    case BrowserNotice::OnlyHidden:
        return FileBrowser::tr("Everything in this folder is hidden.");
    case BrowserNotice::NoneOfKind:
        return FileBrowser::tr("Nothing of the kind that is looked for is in this folder.");
    case BrowserNotice::NoMatch:
        return FileBrowser::tr("No item matches \u201c%1\u201d.").arg(search);
    }
    return {};
}

} // namespace Kestrel::UI::BrowserTexts
