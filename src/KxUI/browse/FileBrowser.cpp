#include <KxUI/browse/FileBrowser.h>

#include <KxUI/browse/BrowserViews_p.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/FileBrowser_p.h>
#include <KxUI/browse/PathBar.h>
#include <KxUI/browse/ThumbnailLoader_p.h>
#include <KxUI/files/FileTexts_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/platform/Platform_p.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/values/SearchField.h>

#include <QAction>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QListView>
#include <QToolButton>
#include <QTreeView>

#include <utility>

namespace Kestrel::UI {
namespace {

// The patterns of `Images (*.exr *.dpx)`, or of a text of patterns alone.
QStringList patternsOf(const QString& filter) {
    const auto open = filter.lastIndexOf(QLatin1Char('('));
    const auto close = filter.lastIndexOf(QLatin1Char(')'));
    const QString inside =
        open >= 0 && close > open ? filter.mid(open + 1, close - open - 1) : filter;
    QStringList patterns = inside.simplified().split(QLatin1Char(' '));
    patterns.removeAll(QString());
    return patterns.contains(QStringLiteral("*")) ? QStringList() : patterns;
}

} // namespace

FileBrowser::FileBrowser(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<FileBrowserPrivate>(this)) {
    qRegisterMetaType<FileBrowser::ViewMode>();
    d->build();
    d->showActions();
}

FileBrowser::~FileBrowser() {
    if (d->memorize.isActive())
        d->remember();
    // The parts go after this: what they tell of each other meanwhile is nobody's.
    d->model->disconnect();
    d->views->disconnect();
    d->views->selection()->disconnect(this);
}

QByteArray FileBrowser::folder() const {
    return d->state.folder();
}

QString FileBrowser::folderText() const {
    return decodedName(d->state.folder());
}

bool FileBrowser::isListed() const {
    const FileGatherer* const gatherer = d->model->gatherer();
    const auto listing = d->model->listing();
    return !folder().isEmpty() && !gatherer->isGathering() && gatherer->directory() == folder() &&
           listing == gatherer->listing() && listing->state() != FileListing::State::Empty;
}

QAction* FileBrowser::action(Command command) const {
    const FileBrowserPrivate::Actions& all = d->actions;
    QAction* const actions[] = {all.back,     all.forward,   all.up,       all.home,
                                all.refresh,  all.stop,      all.path,     all.filter,
                                all.favorite, all.newFolder, all.rename,   all.hidden,
                                all.frames,   all.views[0],  all.views[1], all.views[2]};
    return command >= Back && command <= ShowThumbnails ? actions[command] : nullptr;
}

std::vector<FileInfo> FileBrowser::selection() const {
    std::vector<FileInfo> files;
    const auto listing = d->model->listing();
    for (const auto& [first, last] : d->views->selectedRows()) {
        for (int row = first; row <= last; ++row)
            files.push_back(listing->fileInfo(d->model->itemOf(row)));
    }
    return files;
}

QByteArray FileBrowser::currentPath() const {
    const QModelIndex current = d->views->selection()->currentIndex();
    return current.isValid() ? d->model->listing()->path(d->model->itemOf(current.row()))
                             : QByteArray();
}

QAbstractItemView::SelectionMode FileBrowser::selectionMode() const {
    return d->views->details()->selectionMode();
}

void FileBrowser::setSelectionMode(QAbstractItemView::SelectionMode mode) {
    KXUI_INTERFACE_THREAD(this);
    d->views->details()->setSelectionMode(mode);
    d->views->list()->setSelectionMode(mode);
}

FileListModel* FileBrowser::model() const {
    return d->model;
}

QAbstractItemView* FileBrowser::view() const {
    return d->views->current();
}

FileBrowser::ViewMode FileBrowser::viewMode() const {
    return d->views->mode();
}

void FileBrowser::setViewMode(ViewMode mode) {
    KXUI_INTERFACE_THREAD(this);
    for (int i = 0; i < 3; ++i)
        d->actions.views[i]->setChecked(i == mode);
    if (mode == d->views->mode())
        return;
    d->views->setMode(mode);
    d->viewButton->setIcon(d->actions.views[mode]->icon());
    d->rememberSoon();
    Q_EMIT viewModeChanged(mode);
}

bool FileBrowser::isColumnShown(int column) const {
    return column >= FileListModel::Name && column < FileListModel::ColumnCount &&
           !d->views->details()->isColumnHidden(column);
}

void FileBrowser::setColumnShown(int column, bool shown) {
    KXUI_INTERFACE_THREAD(this);
    if (column > FileListModel::Name && column < FileListModel::ColumnCount)
        d->views->setColumnShown(column, shown);
}

bool FileBrowser::showsFiles() const {
    return !d->model->gatherer()->directoriesOnly();
}

void FileBrowser::setShowsFiles(bool shows) {
    KXUI_INTERFACE_THREAD(this);
    d->model->gatherer()->setDirectoriesOnly(!shows);
}

bool FileBrowser::showsHidden() const {
    return d->model->gatherer()->showsHidden();
}

void FileBrowser::setShowsHidden(bool shows) {
    KXUI_INTERFACE_THREAD(this);
    d->model->gatherer()->setShowsHidden(shows);
}

bool FileBrowser::foldsSequences() const {
    return d->model->gatherer()->foldsSequences();
}

void FileBrowser::setFoldsSequences(bool folds) {
    KXUI_INTERFACE_THREAD(this);
    if (folds != foldsSequences())
        d->setFolds(folds);
}

bool FileBrowser::isReadOnly() const {
    return !d->model->isEditable;
}

void FileBrowser::setReadOnly(bool readOnly) {
    KXUI_INTERFACE_THREAD(this);
    if (readOnly == isReadOnly())
        return;
    d->model->isEditable = !readOnly;
    d->showActions();
    Q_EMIT settingsChanged();
}

bool FileBrowser::showsFavorites() const {
    return d->showsFavorites;
}

void FileBrowser::setShowsFavorites(bool shows) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->showsFavorites, shows) == shows)
        return;
    d->arrangeSide();
    Q_EMIT settingsChanged();
}

FavoritesView* FileBrowser::favoritesView() const {
    return d->favorites;
}

QString FileBrowser::settingsKey() const {
    return d->settingsKey;
}

void FileBrowser::setSettingsKey(const QString& key) {
    KXUI_INTERFACE_THREAD(this);
    if (key == d->settingsKey)
        return;
    const QPointer<FileBrowser> self(this);
    if (d->memorize.isActive())
        d->remember();
    d->settingsKey = key;
    d->recall();
    if (self)
        Q_EMIT settingsChanged();
}

PathRemap FileBrowser::pathRemap() const {
    return d->remap;
}

void FileBrowser::setPathRemap(const PathRemap& remap) {
    KXUI_INTERFACE_THREAD(this);
    d->remap = remap;
    d->path->setExpander([remap](const QString& text) {
        const PathRemap::Result mapped = remap.map(viewOf(encodedName(text)));
        return mapped.rule < 0 ? text : decodedName(bytesOf(mapped.path));
    });
}

void FileBrowser::setThumbnailSource(std::shared_ptr<IThumbnailSource> source) {
    KXUI_INTERFACE_THREAD(this);
    d->views->pictures()->setSource(std::move(source));
}

QStringList FileBrowser::nameFilters() const {
    return d->nameFilters;
}

void FileBrowser::setNameFilters(const QStringList& filters) {
    KXUI_INTERFACE_THREAD(this);
    if (filters == d->nameFilters)
        return;
    d->nameFilters = filters;
    d->kinds->clear();
    for (const QString& filter : filters)
        d->kinds->addItem(filter);
    d->kinds->setVisible(filters.size() > 1);
    d->model->gatherer()->setNamePatterns(filters.isEmpty() ? QStringList()
                                                            : patternsOf(filters.constFirst()));
    Q_EMIT settingsChanged();
}

int FileBrowser::currentNameFilter() const {
    return d->kinds->currentIndex();
}

void FileBrowser::setCurrentNameFilter(int index) {
    KXUI_INTERFACE_THREAD(this);
    if (index < 0 || index >= d->nameFilters.size())
        return;
    d->kinds->setCurrentIndex(index);
    d->model->gatherer()->setNamePatterns(patternsOf(d->nameFilters.at(index)));
}

void FileBrowser::setContextMenuHook(
    std::function<void(QMenu&, const std::vector<FileInfo>&)> hook) {
    d->menuHook = std::move(hook);
}

void FileBrowser::setFolder(const QByteArray& folder) {
    KXUI_INTERFACE_THREAD(this);
    if (!folder.isEmpty())
        d->go(folder);
}

void FileBrowser::setFolderText(const QString& folder) {
    setFolder(encodedName(folder));
}

void FileBrowser::select(const QByteArray& name) {
    KXUI_INTERFACE_THREAD(this);
    BrowserPlace wish;
    wish.folder = folder();
    wish.selected = {name};
    wish.current = name;
    d->state.setWish(std::move(wish));
    d->lookSoon();
}

void FileBrowser::up() {
    const QByteArray above = FileBrowserPrivate::parentOf(folder());
    if (!folder().isEmpty() && above != folder())
        setFolder(above);
}

void FileBrowser::back() {
    KXUI_INTERFACE_THREAD(this);
    d->travel(true);
}

void FileBrowser::forward() {
    KXUI_INTERFACE_THREAD(this);
    d->travel(false);
}

void FileBrowser::home() {
    const std::string home = Platform::homeDirectory();
    if (!home.empty())
        setFolder(bytesOf(home));
}

void FileBrowser::refresh() {
    KXUI_INTERFACE_THREAD(this);
    d->isReadTold = false;
    d->model->gatherer()->refresh();
    d->lookSoon();
}

void FileBrowser::stop() {
    KXUI_INTERFACE_THREAD(this);
    d->model->gatherer()->cancel();
    d->lookSoon();
}

void FileBrowser::newFolder() {
    KXUI_INTERFACE_THREAD(this);
    if (!isReadOnly() && !folder().isEmpty())
        d->makeFolder(1);
}

void FileBrowser::renameSelected() {
    KXUI_INTERFACE_THREAD(this);
    const QModelIndex current = d->views->selection()->currentIndex();
    d->editName(current.siblingAtColumn(FileListModel::Name));
}

void FileBrowser::focusPath() {
    d->path->startEditing();
}

void FileBrowser::focusFilter() {
    d->filter->setFocus(Qt::ShortcutFocusReason);
    d->filter->selectAll();
}

void FileBrowser::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    d->arrangeSide();
    d->arrangeTop();
}

bool FileBrowser::event(QEvent* event) {
    // What the parts leave over. A key that the window has as well would be nobody's, so it is asked
    // for before anyone looks for shortcuts.
    if (event->type() == QEvent::ShortcutOverride &&
        d->actionOf(*static_cast<QKeyEvent*>(event)) != nullptr) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress && d->trigger(*static_cast<QKeyEvent*>(event)))
        return true;
    return QWidget::event(event);
}

bool FileBrowser::eventFilter(QObject* watched, QEvent* event) {
    return d->filterEvent(watched, event) || QWidget::eventFilter(watched, event);
}

} // namespace Kestrel::UI
