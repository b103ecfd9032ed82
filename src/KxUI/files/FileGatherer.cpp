#include <KxUI/files/FileGatherer.h>

#include <KxUI/files/FileGatherer_p.h>
#include <KxUI/files/RawName_p.h>

#include <QPointer>

namespace Kestrel::UI {

FileGatherer::FileGatherer(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this)) {
    qRegisterMetaType<std::shared_ptr<const FileListing>>();
}

// Nothing here waits: what a worker still holds dies there, whenever it comes back.
FileGatherer::~FileGatherer() {
    d->newsBox->close();
    d->statusBox->close();
    d->totalsBox->close();
    d->endRequest();
    if (d->totalsTicket)
        d->totalsTicket->cancelled = true;
    if (d->queue)
        d->queue->close();
}

std::shared_ptr<const FileListing> FileGatherer::listing() const {
    return d->listing;
}

QByteArray FileGatherer::directory() const {
    return bytesOf(d->directory);
}

bool FileGatherer::isGathering() const {
    return d->isGathering;
}

int FileGatherer::waitingTime() const {
    return static_cast<int>(d->silence());
}

bool FileGatherer::foldsSequences() const {
    return d->settings.fold;
}

bool FileGatherer::showsHidden() const {
    return d->settings.showHidden;
}

QStringList FileGatherer::namePatterns() const {
    return d->patterns;
}

bool FileGatherer::directoriesOnly() const {
    return d->settings.directoriesOnly;
}

FileGatherer::Watch FileGatherer::watch() const {
    return d->watch;
}

void FileGatherer::setFoldsSequences(bool folds) {
    if (folds == d->settings.fold)
        return;
    d->settings.fold = folds;
    d->changeSettings();
}

void FileGatherer::setShowsHidden(bool shows) {
    if (shows == d->settings.showHidden)
        return;
    d->settings.showHidden = shows;
    d->changeSettings();
}

void FileGatherer::setNamePatterns(const QStringList& patterns) {
    if (patterns == d->patterns)
        return;
    d->patterns = patterns;
    d->settings.patterns.clear();
    for (const QString& pattern : patterns)
        d->settings.patterns.push_back(Platform::fromUtf8(pattern.toStdString()));
    d->changeSettings();
}

void FileGatherer::setDirectoriesOnly(bool only) {
    if (only == d->settings.directoriesOnly)
        return;
    d->settings.directoriesOnly = only;
    d->changeSettings();
}

void FileGatherer::setWatch(Watch watch) {
    if (watch == d->watch)
        return;
    d->watch = watch;
    d->follower.stop();
    d->isFollowing = false;
    d->rereadTimer.stop();
    if (d->listing->state() == FileListing::State::Complete)
        d->follow();
    Q_EMIT settingsChanged();
}

void FileGatherer::requestStatus(const std::vector<int>& indices) {
    d->ask(indices);
}

void FileGatherer::requestTotals(int index) {
    cancelTotals();
    if (index < 0 || index >= d->listing->size())
        return;
    d->totalsName = bytesOf(d->listing->item(index).name);
    const TotalsRequest request{d->totalsId, d->data(), index, d->totalsBox};
    d->totalsTicket =
        WorkerPool::instance().post(WorkerPool::Lane::Files, Platform::toUtf8(d->directory),
                                    [request](Ticket& ticket) { countTotals(request, ticket); });
    // Nobody is left to ask: nothing is known.
    if (!d->totalsTicket)
        d->totalsBox->put({d->totalsId, 0, 0, true, false});
}

void FileGatherer::gather(const QByteArray& directory) {
    const std::string path = Platform::toUtf8(viewOf(directory));
    d->gather(Platform::fromUtf8(Platform::cleanPath(Platform::absolutePath(path))), Ticket::now());
}

void FileGatherer::gatherPath(const QString& directory) {
    gather(encodedName(directory));
}

void FileGatherer::refresh() {
    if (d->listing->state() == FileListing::State::Empty)
        return;
    ++d->turn;
    d->gather(d->directory, Ticket::now());
}

void FileGatherer::cancel() {
    if (!d->isGathering)
        return;
    d->endRequest();
    d->ended = Ticket::now();
    const QPointer<FileGatherer> self(this);
    const std::uint64_t current = d->id;
    d->adopt(d->data(), FileListing::State::Stopped, 0);
    if (self && current == d->id)
        d->end();
}

void FileGatherer::cancelTotals() {
    if (d->totalsTicket)
        d->totalsTicket->cancelled = true;
    d->totalsTicket.reset();
    ++d->totalsId;
}

bool FileGatherer::event(QEvent* event) {
    if (event->type() != MailboxBase::eventType())
        return QObject::event(event);
    const QPointer<FileGatherer> self(this);
    d->takeNews();
    if (self)
        d->takeTotals();
    if (self && !d->statusTimer.isActive())
        d->takeStatuses();
    return true;
}

} // namespace Kestrel::UI
