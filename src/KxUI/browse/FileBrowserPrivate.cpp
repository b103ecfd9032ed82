#include <KxUI/browse/BrowserViews_p.h>
#include <KxUI/browse/FavoritesFile.h>
#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/FileBrowser_p.h>
#include <KxUI/browse/PathBar.h>
#include <KxUI/browse/ThumbnailLoader_p.h>
#include <KxUI/files/FileNames.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/platform/Directory_p.h>
#include <KxUI/kit/IconFactory.h>
#include <KxUI/values/SearchField.h>

#include <QAccessible>
#include <QAction>
#include <QItemSelectionModel>
#include <QLabel>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

using Listing = BrowserFacts::Listing;
using Error = BrowserFacts::Error;

Listing listingOf(FileListing::State state) {
    switch (state) {
    case FileListing::State::Complete:
        return Listing::Complete;
    case FileListing::State::Failed:
        return Listing::Failed;
    case FileListing::State::Stopped:
        return Listing::Stopped;
    case FileListing::State::Empty:
    case FileListing::State::Reading:
        break;
    }
    return Listing::Reading;
}

Error errorOf(int error) {
    using Platform::Failure;
    switch (error < 0 ? Failure::Other : Platform::failureOf(error)) {
    case Failure::None:
        return Error::None;
    case Failure::NotFound:
        return Error::Missing;
    case Failure::NotADirectory:
        return Error::NotAFolder;
    case Failure::Stale:
        return Error::Stale;
    default:
        return Error::Other;
    }
}

// As a gatherer understands it.
QByteArray absolute(const QByteArray& folder) {
    const std::string path = Platform::toUtf8(viewOf(folder));
    return bytesOf(Platform::fromUtf8(Platform::cleanPath(Platform::absolutePath(path))));
}

} // namespace

QString FileBrowserPrivate::withKeys(const QString& text, const QAction* action) {
    if (action->shortcut().isEmpty())
        return text;
    return FileBrowser::tr("%1 (%2)").arg(text,
                                          action->shortcut().toString(QKeySequence::NativeText));
}

QByteArray FileBrowserPrivate::parentOf(const QByteArray& folder) {
    return absolute(folder + "/..");
}

FileBrowserPrivate::FileBrowserPrivate(FileBrowser* browser)
    : q(browser)
    , model(new BrowserModel(browser)) {
    clock.start();
    now = [this] { return clock.elapsed(); };
    change.setSingleShot(true);
    memorize.setSingleShot(true);
    memorize.setInterval(500);
    // Before the selection listens: what it loses with its rows is not the user's doing.
    QObject::connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, q,
                     [this] { areRowsLeaving = true; });
    QObject::connect(model, &QAbstractItemModel::rowsRemoved, q,
                     [this] { areRowsLeaving = false; });
}

Qt::ItemFlags BrowserModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = FileListModel::flags(index);
    return isEditable && index.isValid() && index.column() == Name ? flags | Qt::ItemIsEditable
                                                                   : flags;
}

// Numbers stand on the right, and so does what they are.
QVariant BrowserModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role == Qt::TextAlignmentRole && (section == Missing || section == Size))
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    return FileListModel::headerData(section, orientation, role);
}

void FileBrowserPrivate::go(const QByteArray& wanted) {
    const QByteArray folder = absolute(wanted);
    if (folder == state.folder()) {
        q->refresh();
        return;
    }
    const BrowserPlace left = views->place();
    state.go(folder, left, area->hold(), now());
    gather(folder);
}

// From the path or a place: one goes on in the list.
void FileBrowserPrivate::goFrom(const QByteArray& folder, const QByteArray& name) {
    const QPointer<FileBrowser> self(q);
    if (isNarrow)
        actions.side->setChecked(false);
    arrangeSide();
    q->setFolder(folder);
    if (!self)
        return;
    if (!name.isEmpty())
        q->select(name);
    area->setFocus(Qt::OtherFocusReason);
}

void FileBrowserPrivate::travel(bool isBack) {
    const BrowserPlace left = views->place();
    const bool isHeld = area->hold();
    const auto folder =
        isBack ? state.goBack(left, isHeld, now()) : state.goForward(left, isHeld, now());
    if (folder)
        gather(*folder);
    else
        lookSoon();
}

void FileBrowserPrivate::gather(const QByteArray& folder) {
    const QPointer<FileBrowser> self(q);
    const bool hadRows = views->selection()->hasSelection();
    path->setPath(folder);
    favorites->setCurrentPlace(folder);
    deedError.clear();
    deedText.clear();
    toEdit.clear();
    nearestOf.clear();
    ahead.forget();
    filter->clear();
    model->setSearchText({});
    isReadTold = false;
    isRestoring = true;
    model->gatherer()->gather(folder);
    if (!self)
        return;
    isRestoring = false;
    tellListed(false);
    if (self)
        Q_EMIT q->folderChanged(folder);
    if (self && hadRows)
        Q_EMIT q->selectionChanged();
    if (self)
        look();
}

// Signals come in crowds, and nothing that is shown changes before the next turn of the event loop.
void FileBrowserPrivate::lookSoon() {
    if (isLooking)
        return;
    isLooking = true;
    QMetaObject::invokeMethod(
        q, [this] { look(); }, Qt::QueuedConnection);
}

BrowserFacts FileBrowserPrivate::facts() const {
    const FileGatherer* const gatherer = model->gatherer();
    const auto shown = model->listing();
    BrowserFacts facts;
    facts.isGathering = gatherer->isGathering();
    facts.silence = gatherer->waitingTime();
    facts.listing = listingOf(shown->state());
    if (shown->state() != gatherer->listing()->state() && !facts.isGathering)
        facts.listing = Listing::Reading; // the model is about to follow
    facts.error = errorOf(shown->error());
    // Nobody names a folder like the frames of a sequence.
    if (facts.error == Error::Missing &&
        FileNames::patternOf(viewOf(state.folder().mid(state.folder().lastIndexOf('/') + 1))))
        facts.error = Error::NotAFolder;
    facts.rows = model->rowCount();
    facts.hasEntries = shown->entriesRead() > 0;
    facts.isSearched = !model->searchText().isEmpty();
    facts.isFiltered = !gatherer->namePatterns().isEmpty() || gatherer->directoriesOnly();
    return facts;
}

void FileBrowserPrivate::look() {
    isLooking = false;
    const QPointer<FileBrowser> self(q);
    if (state.folder().isEmpty() || obey(state.update(facts(), now())))
        return;
    followWish();
    if (!self)
        return;
    editWhatCame();
    showFace();
    showActions();
    showStatus();
    tellRead();
    tellListed(q->isListed());
}

void FileBrowserPrivate::tellListed(bool isListed) {
    if (std::exchange(toldListed, isListed) != isListed)
        Q_EMIT q->listedChanged(isListed);
}

// True where that began something else to look at.
bool FileBrowserPrivate::obey(BrowserState::Order order) {
    switch (order) {
    case BrowserState::Order::Nothing:
        return false;
    case BrowserState::Order::Retry:
        model->gatherer()->refresh();
        lookSoon();
        return true;
    case BrowserState::Order::GoToFile:
        goToFile();
        return true;
    }
    return false;
}

// What was gone to as if it were a folder; a sequence in whatever way it is written.
void FileBrowserPrivate::goToFile() {
    const QByteArray file = state.folder();
    const auto pattern = FileNames::patternOf(viewOf(file.mid(file.lastIndexOf('/') + 1)));
    const QPointer<FileBrowser> self(q);
    go(parentOf(file));
    if (self && pattern)
        q->select(
            QByteArray::fromStdString(FileNames::written(*pattern, FileNames::Style::Hashes)));
}

// Rows come one after the other, so it may take several turns.
void FileBrowserPrivate::followWish() {
    // Rows that are about to be folded otherwise are not those that are wished for.
    if (!state.wish() || model->rowCount() == 0 ||
        model->listing()->isFolded() != model->gatherer()->foldsSequences())
        return;
    const QPointer<FileBrowser> self(q);
    const BrowserPlace wish = *state.wish();
    const auto before = views->selectedRows();
    isRestoring = true;
    const bool isWhole = views->restore(wish);
    if (!self)
        return;
    isRestoring = false;
    const FileGatherer* const gatherer = model->gatherer();
    if (isWhole || (!gatherer->isGathering() && model->listing() == gatherer->listing()))
        state.dropWish();
    // What is restored bit by bit is told once a turn.
    if (views->selectedRows() != before)
        Q_EMIT q->selectionChanged();
}

void FileBrowserPrivate::showFace() {
    BrowserFace face = state.face(now());
    line->setBusy(face.isBusy);
    if (face.notice == BrowserNotice::Vanished)
        askForNearest();
    QString text = BrowserTexts::notice(face.notice, *model->listing(), model->searchText());
    std::vector<BrowserNoticeBox::Choice> ways = choices(face.notice);
    if (!deedError.isEmpty()) {
        // What was tried last matters most.
        face.notice = BrowserNotice::Failed;
        text = deedError;
        ways = {{FileBrowser::tr("Close"), [this] {
                     deedError.clear();
                     look();
                 }}};
    }
    area->show(face, text, std::move(ways), model->rowCount() > 0);
    const auto next = state.nextChange(now());
    if (next)
        change.start(static_cast<int>(std::max<std::int64_t>(*next - now(), 1)));
    else
        change.stop();
}

std::vector<BrowserNoticeBox::Choice> FileBrowserPrivate::choices(BrowserNotice notice) {
    using Choice = BrowserNoticeBox::Choice;
    const Choice again{FileBrowser::tr("Try Again"), [this] { q->refresh(); }};
    switch (notice) {
    case BrowserNotice::WaitingLong: {
        std::vector<Choice> ways{{FileBrowser::tr("Stop Waiting"), [this] { q->stop(); }}};
        if (state.canGoBack())
            ways.push_back({FileBrowser::tr("Back"), [this] { q->back(); }});
        return ways;
    }
    case BrowserNotice::Failed:
    case BrowserNotice::Stopped:
        return {again};
    case BrowserNotice::Vanished: {
        if (nearest.isEmpty())
            return {again};
        return {{FileBrowser::tr("Go to %1").arg(decodedName(nearest)),
                 [this, above = nearest] { go(above); }},
                again};
    }
    case BrowserNotice::OnlyHidden:
        return {{FileBrowser::tr("Show Hidden Files"), [this] { q->setShowsHidden(true); }}};
    case BrowserNotice::NoMatch:
        return {{FileBrowser::tr("Clear Filter"), [this] {
                     filter->clear();
                     model->setSearchText({});
                     area->setFocus(Qt::OtherFocusReason);
                 }}};
    default:
        return {};
    }
}

void FileBrowserPrivate::showActions() {
    const FileGatherer* const gatherer = model->gatherer();
    actions.back->setEnabled(state.canGoBack());
    actions.forward->setEnabled(state.canGoForward());
    const bool isSomewhere = !state.folder().isEmpty();
    actions.up->setEnabled(isSomewhere && parentOf(state.folder()) != state.folder());
    actions.refresh->setEnabled(isSomewhere);
    actions.newFolder->setEnabled(isSomewhere && model->isEditable);
    actions.rename->setEnabled(model->isEditable && views->selection()->currentIndex().isValid());
    const FavoritesFile* const file = favoritesFile();
    const bool isFavorite = file && file->contains(state.folder());
    actions.favorite->setEnabled(isSomewhere && file);
    actions.favorite->setIcon(IconFactory::icon(isFavorite ? QStringLiteral("PlaceStarFilled")
                                                           : QStringLiteral("PlaceStar")));
    actions.favorite->setText(isFavorite ? FileBrowser::tr("Remove from Favourites")
                                         : FileBrowser::tr("Add to Favourites"));
    actions.favorite->setToolTip(withKeys(actions.favorite->text(), actions.favorite));
    actions.hidden->setChecked(gatherer->showsHidden());
    actions.frames->setChecked(!gatherer->foldsSequences());
    QAction* const wanted = line->isBusy() ? actions.stop : actions.refresh;
    if (refreshOrStop->defaultAction() != wanted) {
        refreshOrStop->removeAction(refreshOrStop->defaultAction());
        refreshOrStop->setDefaultAction(wanted);
    }
}

BrowserTexts::Sum FileBrowserPrivate::sumOfSelection() const {
    BrowserTexts::Sum sum;
    const auto listing = model->listing();
    for (const auto& [first, last] : views->selectedRows()) {
        for (int row = first; row <= std::min(last, model->rowCount() - 1); ++row)
            sum.add(*listing, model->itemOf(row));
    }
    return sum;
}

// Counted once for rows as they are: there may be a million.
const BrowserTexts::Sum& FileBrowserPrivate::sumOfRows() {
    if (rowSum)
        return *rowSum;
    rowSum.emplace();
    const auto listing = model->listing();
    for (int row = 0; row < model->rowCount(); ++row)
        rowSum->count(listing->item(model->itemOf(row)).kind);
    return *rowSum;
}

void FileBrowserPrivate::showStatus() {
    const BrowserFace face = state.face(now());
    const auto listing = model->listing();
    QString text;
    if (!deedText.isEmpty())
        text = deedText;
    else if (face.notice == BrowserNotice::Waiting || face.notice == BrowserNotice::WaitingLong)
        text = BrowserTexts::notice(face.notice, *listing, {});
    else if (face.isBusy && listing->state() == FileListing::State::Reading)
        text = BrowserTexts::reading(listing->entriesRead());
    else if (views->selection()->hasSelection())
        text = BrowserTexts::selected(sumOfSelection());
    else if (!face.holdsOld)
        text = BrowserTexts::listed(sumOfRows());
    else
        return;
    if (text == status->text())
        return;
    status->setText(text);
    status->setAccessibleName({});
}

// That a folder is empty, or cannot be read, is a notice, which is told by itself.
void FileBrowserPrivate::tellRead() {
    if (isReadTold || model->gatherer()->isGathering() ||
        model->listing()->state() != FileListing::State::Complete || model->rowCount() == 0)
        return;
    isReadTold = true;
    status->setAccessibleName(BrowserTexts::read(model->rowCount()));
    QAccessibleEvent event(status, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void FileBrowserPrivate::rowsSelected() {
    if (isRestoring)
        return;
    deedError.clear();
    if (!areRowsLeaving)
        state.dropWish();
    lookSoon();
    Q_EMIT q->selectionChanged();
}

} // namespace Kestrel::UI
