#include <KxUI/browse/FileBrowser_p.h>

#include <KxUI/browse/BrowserViews_p.h>
#include <KxUI/browse/FavoritesFile.h>
#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/PathBar.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/kit/IconFactory.h>
#include <KxUI/values/SearchField.h>

#include <QAction>
#include <QBoxLayout>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QScrollBar>
#include <QSplitter>
#include <QToolButton>
#include <QTreeView>

namespace Kestrel::UI {
namespace {

constexpr int FilterWidth = 170;
constexpr int Gap = 4;
constexpr int NarrowWidth = 640;
constexpr int OneRowWidth = 480;
constexpr int LeastFilterWidth = 60;
constexpr int UsualSide = 170;

} // namespace

// In the order of the Tab key, which is that of their making.
void FileBrowserPrivate::build() {
    auto* const rows = new QVBoxLayout(q);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    buildActions();
    buildLooks();
    buildTop();
    line = new BusyLine(q);
    rows->addWidget(line);
    splitter = new QSplitter(q);
    splitter->setChildrenCollapsible(false);
    rows->addWidget(splitter, 1);
    buildSide();
    views = new BrowserViews(model, q);
    area = new BrowserArea(views, q);
    splitter->addWidget(area);
    splitter->setStretchFactor(1, 1);
    rows->addLayout(buildBottom());
    q->setFocusProxy(area);
    q->setMinimumSize(480, 320);
    connectParts();
}

QBoxLayout* FileBrowserPrivate::buildBottom() {
    status = new QLabel(q);
    status->setTextFormat(Qt::PlainText);
    status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    kinds = new QComboBox(q);
    kinds->setAccessibleName(FileBrowser::tr("Kind of files"));
    kinds->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    kinds->hide();
    auto* const bottom = new QHBoxLayout;
    bottom->setContentsMargins(Gap, Gap, Gap, Gap);
    bottom->addWidget(status, 1);
    bottom->addWidget(kinds);
    return bottom;
}

QAction* FileBrowserPrivate::addAction(const char* icon, const QString& text,
                                       const QList<QKeySequence>& keys, std::function<void()> run) {
    auto* const action = new QAction(text, q);
    if (*icon)
        action->setIcon(IconFactory::icon(QLatin1String(icon)));
    action->setShortcuts(keys);
    // Of this browser alone: there may be two in a window, and the host has keys of its own.
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setToolTip(withKeys(text, action));
    q->addAction(action);
    QObject::connect(action, &QAction::triggered, q, std::move(run));
    return action;
}

void FileBrowserPrivate::buildActions() {
    const auto keys = [](auto... each) { return QList<QKeySequence>{QKeySequence(each)...}; };
    actions.back = addAction("BrowseBack", FileBrowser::tr("Back"), keys(Qt::ALT | Qt::Key_Left),
                             [this] { q->back(); });
    actions.forward = addAction("BrowseForward", FileBrowser::tr("Forward"),
                                keys(Qt::ALT | Qt::Key_Right), [this] { q->forward(); });
    actions.up = addAction("BrowseUp", FileBrowser::tr("Up"), keys(Qt::ALT | Qt::Key_Up),
                           [this] { q->up(); });
    actions.home = addAction("BrowseHome", FileBrowser::tr("Home"), keys(Qt::ALT | Qt::Key_Home),
                             [this] { q->home(); });
    actions.refresh = addAction("BrowseRefresh", FileBrowser::tr("Refresh"),
                                keys(Qt::Key_F5, Qt::CTRL | Qt::Key_R), [this] { q->refresh(); });
    actions.stop = addAction("PaneClose", FileBrowser::tr("Stop"), {}, [this] { q->stop(); });
    actions.path = addAction("", FileBrowser::tr("Edit Path"),
                             keys(Qt::CTRL | Qt::Key_L, Qt::Key_F4), [this] { q->focusPath(); });
    actions.filter = addAction("Search", FileBrowser::tr("Filter"), keys(Qt::CTRL | Qt::Key_F),
                               [this] { q->focusFilter(); });
    actions.favorite =
        addAction("PlaceStar", FileBrowser::tr("Add to Favourites"), keys(Qt::CTRL | Qt::Key_D),
                  [this] { toggleFavorite(state.folder()); });
    actions.side =
        addAction("BrowseSide", FileBrowser::tr("Places"), {}, [this] { arrangeSide(); });
    actions.side->setCheckable(true);
    actions.newFolder =
        addAction("BrowseNewFolder", FileBrowser::tr("New Folder"),
                  keys(Qt::CTRL | Qt::SHIFT | Qt::Key_N), [this] { q->newFolder(); });
    actions.rename =
        addAction("", FileBrowser::tr("Rename"), keys(Qt::Key_F2), [this] { q->renameSelected(); });
    actions.hidden = addAction("", FileBrowser::tr("Show Hidden Files"), keys(Qt::CTRL | Qt::Key_H),
                               [this] { q->setShowsHidden(actions.hidden->isChecked()); });
    actions.frames =
        addAction("", FileBrowser::tr("Show Frames One by One"), keys(Qt::CTRL | Qt::Key_G),
                  [this] { q->setFoldsSequences(!actions.frames->isChecked()); });
    for (QAction* const action : {actions.hidden, actions.frames})
        action->setCheckable(true);
}

void FileBrowserPrivate::buildLooks() {
    const struct {
        const char* icon;
        QString text;
        int key;
    } looks[] = {{"BrowseDetails", FileBrowser::tr("Details"), Qt::Key_1},
                 {"BrowseCompact", FileBrowser::tr("Compact"), Qt::Key_2},
                 {"BrowseThumbnails", FileBrowser::tr("Thumbnails"), Qt::Key_3}};
    for (int i = 0; i < 3; ++i) {
        actions.views[i] =
            addAction(looks[i].icon, looks[i].text, {QKeySequence(int(Qt::CTRL) | looks[i].key)},
                      [this, i] { q->setViewMode(static_cast<FileBrowser::ViewMode>(i)); });
        actions.views[i]->setCheckable(true);
    }
    actions.views[0]->setChecked(true);
    for (int i = 0; i < 9; ++i)
        addAction("", FileBrowser::tr("Go to Favourite %1").arg(i + 1),
                  {QKeySequence(int(Qt::ALT) | (Qt::Key_1 + i))},
                  [this, i] { favorites->activateFavorite(i); });
}

QToolButton* FileBrowserPrivate::addButton(QBoxLayout* row, QAction* action) {
    auto* const button = new QToolButton(q);
    button->setDefaultAction(action);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    row->addWidget(button);
    return button;
}

void FileBrowserPrivate::buildTop() {
    top = new QHBoxLayout;
    top->setContentsMargins(Gap, Gap, Gap, Gap);
    top->setSpacing(Gap / 2);
    second = new QHBoxLayout;
    static_cast<QBoxLayout*>(q->layout())->addLayout(top);
    static_cast<QBoxLayout*>(q->layout())->addLayout(second);
    sideButton = addButton(top, actions.side);
    for (QAction* const action : {actions.back, actions.forward, actions.up})
        addButton(top, action);
    path = new PathBar(q);
    top->addWidget(path, 1);
    addButton(top, actions.favorite);
    refreshOrStop = addButton(top, actions.refresh);
    filter = new SearchField(q);
    filter->setPlaceholderText(FileBrowser::tr("Filter"));
    filter->setAccessibleName(FileBrowser::tr("Filter"));
    filter->setToolTip(
        withKeys(FileBrowser::tr("Words of names, or the number of a frame"), actions.filter));
    filter->setFixedWidth(FilterWidth);
    filter->installEventFilter(q);
    top->addWidget(filter);
    buildLookMenu();
    top->addWidget(viewButton);
}

void FileBrowserPrivate::buildLookMenu() {
    viewButton = new QToolButton(q);
    viewButton->setAutoRaise(true);
    viewButton->setFocusPolicy(Qt::TabFocus);
    viewButton->setPopupMode(QToolButton::InstantPopup);
    viewButton->setIcon(actions.views[0]->icon());
    viewButton->setToolTip(FileBrowser::tr("View"));
    viewButton->setAccessibleName(FileBrowser::tr("View"));
    auto* const menu = new QMenu(viewButton);
    for (QAction* const action : actions.views)
        menu->addAction(action);
    menu->addSeparator();
    menu->addAction(actions.hidden);
    menu->addAction(actions.frames);
    viewButton->setMenu(menu);
}

void FileBrowserPrivate::connectParts() {
    const auto soon = [this] { lookSoon(); };
    const auto changed = [this] {
        rowSum.reset();
        lookSoon();
    };
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        QObject::connect(model, signal, q, changed);
    QObject::connect(model, &QAbstractItemModel::layoutChanged, q, changed);
    QObject::connect(model, &QAbstractItemModel::modelReset, q, changed);
    QObject::connect(model, &QAbstractItemModel::dataChanged, q, [=](const QModelIndex& first) {
        first.column() == FileListModel::Name ? changed() : soon(); // or sizes and times alone
    });
    QObject::connect(model, &FileListModel::settled, q, soon);
    FileGatherer* const gatherer = model->gatherer();
    QObject::connect(gatherer, &FileGatherer::waiting, q, soon);
    QObject::connect(gatherer, &FileGatherer::gatheringChanged, q, soon);
    // A reading may be over before anyone looks.
    QObject::connect(gatherer, &FileGatherer::gatheringChanged, q, [this](bool isGathering) {
        if (isGathering)
            tellListed(false);
    });
    QObject::connect(gatherer, &FileGatherer::settingsChanged, q, [this] {
        showActions();
        rememberSoon();
        Q_EMIT q->settingsChanged();
    });
    QObject::connect(gatherer, &FileGatherer::finished, q, [this] { tellReach(); });
    QObject::connect(&change, &QTimer::timeout, q, soon);
    QObject::connect(&memorize, &QTimer::timeout, q, [this] { remember(); });
    QObject::connect(views, &BrowserViews::columnsChanged, q, [this] { rememberSoon(); });
    QObject::connect(views->selection(), &QItemSelectionModel::selectionChanged, q,
                     [this] { rowsSelected(); });
    QObject::connect(views, &BrowserViews::selectionShrunk, q, &FileBrowser::selectionChanged);
    QObject::connect(path, &PathBar::pathEntered, q,
                     [this](const QByteArray& wanted) { goFrom(wanted, {}); });
    QObject::connect(path, &PathBar::fileEntered, q, [this](const QByteArray& wanted) {
        goFrom(parentOf(wanted), wanted.mid(wanted.lastIndexOf('/') + 1));
    });
    QObject::connect(
        favorites, &FavoritesView::placeActivated, q,
        [this](const QByteArray& wanted) { goFrom(bytesOf(remap.map(viewOf(wanted)).path), {}); });
    QObject::connect(filter, &SearchField::searchChanged, q, [this](const QString& text) {
        state.dropWish();
        model->setSearchText(text);
    });
    for (const auto wanted : {&SearchField::nextWanted, &SearchField::previousWanted})
        QObject::connect(filter, wanted, q, [this] { goToRows(); });
    QObject::connect(filter, &SearchField::leaveWanted, q, [this] { goToRows(); });
    QObject::connect(kinds, QOverload<int>::of(&QComboBox::activated), q,
                     [this](int index) { q->setCurrentNameFilter(index); });
    connectViews();
}

void FileBrowserPrivate::connectViews() {
    QObject::connect(
        views, &BrowserViews::renamed, q,
        [this](const QByteArray& name, const QString& newName) { rename(name, newName); });
    for (QAbstractItemView* const view : {static_cast<QAbstractItemView*>(views->details()),
                                          static_cast<QAbstractItemView*>(views->list())}) {
        QObject::connect(view, &QAbstractItemView::doubleClicked, q,
                         [this](const QModelIndex& index) { open(index); });
        QObject::connect(view, &QWidget::customContextMenuRequested, q,
                         [this](const QPoint& at) { showMenu(at); });
        view->installEventFilter(q);
        view->viewport()->installEventFilter(q);
        view->setAcceptDrops(true);
        view->viewport()->setAcceptDrops(true);
    }
}

void FileBrowserPrivate::buildSide() {
    favorites = new FavoritesView(splitter);
    auto* const places = new FavoritesModel(FavoritesFile::standard(), favorites);
    favorites->setModel(places);
    favorites->setAccessibleName(FileBrowser::tr("Places"));
    favorites->expandAll();
    const auto soon = [this] { lookSoon(); };
    QObject::connect(places, &QAbstractItemModel::rowsInserted, q, soon);
    QObject::connect(places, &QAbstractItemModel::rowsRemoved, q, soon);
    QObject::connect(places, &QAbstractItemModel::modelReset, q, soon);
    QObject::connect(splitter, &QSplitter::splitterMoved, q, [this] {
        sideWidth = favorites->width();
        rememberSoon();
    });
}

// Beside few rows there is no room for places: a button shows them.
void FileBrowserPrivate::arrangeSide() {
    isNarrow = q->width() < NarrowWidth;
    sideButton->setVisible(showsFavorites && isNarrow);
    const bool isShown = showsFavorites && (!isNarrow || actions.side->isChecked());
    if (isShown != favorites->isHidden() && isArranged)
        return;
    isArranged = true;
    favorites->setVisible(isShown);
    const int side = sideWidth > 0 ? sideWidth : UsualSide;
    if (isShown)
        splitter->setSizes({side, std::max(0, q->width() - side)});
}

// A pane of a host may be so narrow that path and filter have a row each.
void FileBrowserPrivate::arrangeTop() {
    const bool isNarrowest = q->width() < OneRowWidth;
    if (isNarrowest == (second->count() > 0))
        return;
    if (isNarrowest) {
        top->removeWidget(filter);
        second->addWidget(filter);
        filter->setMinimumWidth(LeastFilterWidth);
        filter->setMaximumWidth(QWIDGETSIZE_MAX);
    } else {
        second->removeWidget(filter);
        top->insertWidget(top->indexOf(viewButton), filter);
        filter->setFixedWidth(FilterWidth);
    }
    second->setContentsMargins(isNarrowest ? QMargins(Gap, 0, Gap, Gap) : QMargins());
}

} // namespace Kestrel::UI
