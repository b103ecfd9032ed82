#include <KxUI/browse/BrowserViews_p.h>
#include <KxUI/browse/FavoritesFile.h>
#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/FileBrowser_p.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/platform/Directory_p.h>

#include <QDropEvent>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMimeData>

namespace Kestrel::UI {
namespace {

constexpr int AnswerTime = 3000; // milliseconds that are waited for what was dropped
constexpr int MostNewFolders = 100;

QByteArray joined(const QByteArray& folder, const QByteArray& name) {
    return folder.endsWith('/') ? folder + name : folder + '/' + name;
}

bool isExisting(int error) {
    return error > 0 && Platform::failureOf(error) == Platform::Failure::Exists;
}

QString newFolderName(int number) {
    return number == 1 ? FileBrowser::tr("New Folder")
                       : FileBrowser::tr("New Folder %1").arg(number);
}

} // namespace

// The listing may be older than the folder, and does not have what is hidden: the next number then.
void FileBrowserPrivate::makeFolder(int number) {
    const auto listing = model->listing();
    while (number < MostNewFolders &&
           listing->findFile(viewOf(encodedName(newFolderName(number)))) >= 0)
        ++number;
    const QByteArray folder = state.folder();
    const QByteArray name = encodedName(newFolderName(number));
    const QByteArray made = joined(folder, name);
    FileManager::makeDirectory(made, q, [this, folder, name, made, number](int error) {
        if (folder != state.folder())
            return;
        if (isExisting(error) && number < MostNewFolders)
            makeFolder(number + 1);
        else if (error != 0)
            complain(FileManager::errorText(error, made));
        else
            expect(name, true);
    });
}

/** Shows what was made or named here once it is listed. */
void FileBrowserPrivate::expect(const QByteArray& name, bool isEdited) {
    deedError.clear();
    deedText.clear();
    q->select(name);
    toEdit = isEdited ? name : QByteArray();
    q->refresh();
}

void FileBrowserPrivate::complain(const QString& error) {
    deedText.clear();
    deedError = error;
    lookSoon();
}

void FileBrowserPrivate::editName(const QModelIndex& index) {
    if (!index.isValid() || !model->isEditable)
        return;
    views->current()->setFocus(Qt::OtherFocusReason);
    views->current()->scrollTo(index);
    views->current()->edit(index);
}

// A new folder is named where it stands, once it is listed.
void FileBrowserPrivate::editWhatCame() {
    if (toEdit.isEmpty())
        return;
    const QModelIndex index = model->indexOf(toEdit);
    if (!index.isValid())
        return;
    toEdit.clear();
    editName(index);
}

void FileBrowserPrivate::rename(const QByteArray& name, const QString& newName) {
    const QByteArray wanted = encodedName(newName.trimmed());
    const auto listing = model->listing();
    const int item = listing->find(viewOf(name));
    if (item < 0 || wanted.isEmpty() || wanted == name)
        return;
    if (wanted.contains('/') || wanted == "." || wanted == "..") {
        complain(FileBrowser::tr("A name cannot be \u201c%1\u201d.").arg(newName.trimmed()));
        return;
    }
    const QByteArray folder = listing->directory();
    if (listing->item(item).kind == FileListing::Kind::Sequence) {
        renameFrames(listing->fileInfo(item), folder, wanted);
        return;
    }
    const QByteArray from = joined(folder, name);
    const QByteArray to = joined(folder, wanted);
    FileManager::rename(from, to, q, [this, folder, from, to, wanted](int error) {
        if (folder != state.folder())
            return;
        if (error != 0)
            complain(FileManager::errorText(error, isExisting(error) ? to : from));
        else
            expect(wanted, false);
    });
}

void FileBrowserPrivate::renameFrames(const FileInfo& from, const QByteArray& folder,
                                      const QByteArray& wanted) {
    const auto done = [this, folder, wanted](const FileManager::RenameResult& result) {
        if (folder != state.folder())
            return;
        if (result.error != 0)
            complain(FileManager::errorText(result.error, result.path));
        else
            expect(wanted, false);
    };
    const auto progress = [this](int renamed, int count) {
        deedText = FileBrowser::tr("Renaming: %1 of %2").arg(renamed).arg(count);
        lookSoon();
        return true;
    };
    FileManager::renameSequence(from, wanted, 0, q, done, progress);
}

// One folder is gone to; what it is only the disk knows.
void FileBrowserPrivate::drop(const QDropEvent& event) {
    const QList<QUrl> urls = event.mimeData()->urls();
    if (urls.size() != 1 || !urls.constFirst().isLocalFile()) {
        if (!urls.isEmpty())
            Q_EMIT q->filesDropped(urls);
        return;
    }
    const QByteArray dropped = encodedName(urls.constFirst().toLocalFile());
    FileManager::requestStatus(dropped, AnswerTime, q,
                               [this, dropped, urls](const FileManager::PathStatus& told) {
                                   if (told.kind == FileManager::PathStatus::Kind::Directory)
                                       q->setFolder(dropped);
                                   else
                                       Q_EMIT q->filesDropped(urls);
                               });
}

// Where one can go from a folder that is gone: asked once a visit, without waiting.
void FileBrowserPrivate::askForNearest() {
    const QByteArray folder = state.folder();
    if (nearestOf == folder)
        return;
    nearestOf = folder;
    nearest.clear();
    FileManager::requestNearestDirectory(folder, AnswerTime, q,
                                         [this, folder](const QByteArray& directory) {
                                             if (folder != nearestOf)
                                                 return;
                                             nearest = directory;
                                             lookSoon();
                                         });
}

FavoritesFile* FileBrowserPrivate::favoritesFile() const {
    FavoritesModel* const places = favorites->favoritesModel();
    return places ? places->file() : nullptr;
}

// A visit shows whether a place can be reached, whatever was known of it.
void FileBrowserPrivate::tellReach() {
    const auto listing = model->gatherer()->listing();
    const bool isAnswered = listing->state() == FileListing::State::Complete ||
                            listing->state() == FileListing::State::Failed;
    FavoritesModel* const places = favorites->favoritesModel();
    if (isAnswered && places && places->indexOfPath(listing->directory()).isValid())
        places->setReach(listing->directory(), listing->error());
}

void FileBrowserPrivate::toggleFavorite(const QByteArray& place) {
    FavoritesFile* const file = favoritesFile();
    if (!file || place.isEmpty())
        return;
    if (const QString id = file->idOf(place); !id.isEmpty())
        file->remove(id);
    else
        file->add(place);
}

} // namespace Kestrel::UI
