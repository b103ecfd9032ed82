#include <KxUI/browse/BrowserViews_p.h>
#include <KxUI/browse/FileBrowser_p.h>
#include <KxUI/browse/PathField_p.h>
#include <KxUI/browse/ThumbnailLoader_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/platform/Directory_p.h>
#include <KxUI/values/SearchField.h>

#include <QAction>
#include <QItemSelectionModel>
#include <QLabel>
#include <QToolButton>

#include <algorithm>

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
    ahead.forget();
    filter->clear();
    model->setSearchText({});
    isRestoring = true;
    model->gatherer()->gather(folder);
    if (!self)
        return;
    isRestoring = false;
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
    showFace();
    showActions();
    showStatus();
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
        go(parentOf(state.folder()));
        return true;
    }
    return false;
}

// Rows come one after the other, so it may take several turns.
void FileBrowserPrivate::followWish() {
    // Rows that are about to be folded otherwise are not those that are wished for.
    if (!state.wish() || model->rowCount() == 0 ||
        model->listing()->isFolded() != model->gatherer()->foldsSequences())
        return;
    const QPointer<FileBrowser> self(q);
    const BrowserPlace wish = *state.wish();
    isRestoring = true;
    const bool isWhole = views->restore(wish);
    if (!self)
        return;
    isRestoring = false;
    if (isWhole || (!model->gatherer()->isGathering() &&
                    model->listing()->state() != FileListing::State::Reading))
        state.dropWish();
    // Told by the selection as well, but not while it is restored bit by bit.
    Q_EMIT q->selectionChanged();
}

void FileBrowserPrivate::showFace() {
    const BrowserFace face = state.face(now());
    line->setBusy(face.isBusy);
    area->show(face, BrowserTexts::notice(face.notice, *model->listing(), model->searchText()),
               choices(face.notice), model->rowCount() > 0);
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
        const QByteArray above = parentOf(state.folder());
        return {{FileBrowser::tr("Go to %1").arg(decodedName(above)), [this, above] { go(above); }},
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
    actions.hidden->setChecked(gatherer->showsHidden());
    actions.frames->setChecked(!gatherer->foldsSequences());
    QAction* const wanted = line->isBusy() ? actions.stop : actions.refresh;
    if (refreshOrStop->defaultAction() != wanted) {
        refreshOrStop->removeAction(refreshOrStop->defaultAction());
        refreshOrStop->setDefaultAction(wanted);
    }
}

BrowserTexts::Sum FileBrowserPrivate::sum(bool ofSelection) const {
    BrowserTexts::Sum sum;
    const auto listing = model->listing();
    const auto add = [&](int first, int last) {
        for (int row = first; row <= std::min(last, model->rowCount() - 1); ++row)
            sum.add(*listing, model->itemOf(row));
    };
    if (ofSelection) {
        for (const auto& [first, last] : views->selectedRows())
            add(first, last);
    } else {
        add(0, model->rowCount() - 1);
    }
    return sum;
}

void FileBrowserPrivate::showStatus() {
    const BrowserFace face = state.face(now());
    const auto listing = model->listing();
    QString text;
    if (face.notice == BrowserNotice::Waiting || face.notice == BrowserNotice::WaitingLong)
        text = BrowserTexts::notice(face.notice, *listing, {});
    else if (face.isBusy && listing->state() == FileListing::State::Reading)
        text = BrowserTexts::reading(listing->entriesRead());
    else if (views->selection()->hasSelection())
        text = BrowserTexts::selected(sum(true));
    else if (!face.holdsOld)
        text = BrowserTexts::listed(sum(false));
    else
        return;
    status->setText(text);
}

void FileBrowserPrivate::rowsSelected() {
    if (isRestoring)
        return;
    if (!areRowsLeaving)
        state.dropWish();
    lookSoon();
    Q_EMIT q->selectionChanged();
}

} // namespace Kestrel::UI
