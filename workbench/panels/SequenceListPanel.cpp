#include "panels/SequenceListPanel.h"

#include "media/ListedSequence.h"
#include "media/Paths.h"

#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/FileBrowser.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/files/FileNames.h>

#include <QAction>
#include <QDesktopServices>
#include <QFile>
#include <QMenu>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace Kestrel::Workbench {

using UI::FileBrowser;
using UI::FileListModel;

namespace {

constexpr QSize leastSize(200, 120);

QByteArray parentOf(const QByteArray& path) {
    return QByteArray::fromStdString(parentFolder(path.toStdString()));
}

QByteArray nameOf(const UI::FileInfo& info) {
    return info.isSequence() ? info.rawFrameName() : QByteArray(info.rawFileName());
}

} // namespace

SequenceListPanel::SequenceListPanel(QWidget* parent)
    : QWidget(parent)
    , m_browser(new FileBrowser) {
    setObjectName(QStringLiteral("SequenceListPanel"));
    m_browser->setSelectionMode(QAbstractItemView::SingleSelection);
    m_browser->setMinimumSize(leastSize); // panes are narrow
    m_browser->setColumnShown(FileListModel::Modified, false);
    // The window's own keys: its layouts, and the sequence that is open is read again with the folder.
    for (const auto look :
         {FileBrowser::ShowDetails, FileBrowser::ShowCompact, FileBrowser::ShowThumbnails})
        m_browser->action(look)->setShortcuts(QList<QKeySequence>());
    m_browser->action(FileBrowser::Refresh)->setShortcut(QKeySequence(QStringLiteral("Ctrl+R")));
    m_browser->setContextMenuHook(
        [this](QMenu& menu, const std::vector<UI::FileInfo>& files) { addToMenu(&menu, files); });
    setFocusProxy(m_browser);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_browser);
    connect(m_browser, &FileBrowser::activated, this,
            [this](const UI::FileInfo& file) { choose(file, Base::InvalidTime); });
    connect(m_browser, &FileBrowser::folderChanged, this, [this](const QByteArray& folder) {
        // A path that turns out to be a file leads to its folder.
        if (folder != m_wanted && folder != parentOf(m_wanted))
            m_deed = {};
    });
    connect(m_browser, &FileBrowser::listedChanged, this, &SequenceListPanel::takeListed);
    connect(m_browser, &FileBrowser::filesDropped, this, [this](const QList<QUrl>& urls) {
        QList<QByteArray> paths;
        for (const QUrl& url : urls) {
            if (url.isLocalFile())
                paths.append(QFile::encodeName(url.toLocalFile()));
        }
        emit pathsDropped(paths);
    });
}

FileListModel* SequenceListPanel::model() const {
    return m_browser->model();
}

QAbstractItemView* SequenceListPanel::view() const {
    return m_browser->view();
}

QByteArray SequenceListPanel::folder() const {
    return m_browser->folder();
}

bool SequenceListPanel::isSettled() const {
    return !m_deed && m_browser->isListed();
}

void SequenceListPanel::openFolder(const QByteArray& folder) {
    m_deed = {};
    m_browser->setFolder(folder);
}

void SequenceListPanel::openPath(const QByteArray& wanted) {
    const auto path = QByteArray::fromStdString(absolutePath(wanted.toStdString()));
    m_deed = {};
    m_browser->setFolder(path);
    whenListed(path, [this, path] {
        if (folder() == path)
            chooseFirst();
        else
            chooseFile(fileNameOf(path.toStdString()));
    });
}

void SequenceListPanel::showFile(const QByteArray& path) {
    if (const QByteArray parent = parentOf(path); parent != folder())
        openFolder(parent);
    m_browser->select(QByteArray::fromStdString(fileNameOf(path.toStdString())));
}

void SequenceListPanel::offerFolder(const QByteArray& folder) {
    const bool isOffered = std::any_of(m_offered.begin(), m_offered.end(),
                                       [&](const auto& place) { return place.path == folder; });
    if (isOffered)
        return;
    UI::FavoritesFile::Favorite place;
    place.path = folder;
    m_offered.push_back(std::move(place));
    m_browser->favoritesView()->favoritesModel()->setProjectPlaces(m_offered);
}

void SequenceListPanel::reload(std::function<void()> done) {
    m_browser->refresh();
    whenListed(folder(), std::move(done));
}

UI::FileInfo SequenceListPanel::item(int row) const {
    return model()->index(row, 0).data(FileListModel::FileInfoRole).value<UI::FileInfo>();
}

UI::FileInfo SequenceListPanel::itemOfFile(const std::string& name) const {
    const QModelIndex index = model()->indexOf(QByteArray::fromStdString(name));
    return index.isValid() ? item(index.row()) : UI::FileInfo();
}

bool SequenceListPanel::isFolder(int row) const {
    const int kind = model()->index(row, 0).data(FileListModel::KindRole).toInt();
    return kind == int(UI::FileListing::Kind::Directory);
}

void SequenceListPanel::whenListed(const QByteArray& path, std::function<void()> deed) {
    m_wanted = path;
    m_deed = std::move(deed);
    takeListed();
}

void SequenceListPanel::takeListed() {
    if (m_deed && m_browser->isListed())
        std::exchange(m_deed, {})();
}

void SequenceListPanel::choose(const UI::FileInfo& info, Base::Time at) {
    const Sequence sequence = sequenceOf(info);
    if (sequence.isEmpty() || info.isDir())
        return;
    m_browser->favoritesView()->favoritesModel()->noteUsed(
        QByteArray::fromStdString(sequence.folder()));
    emit sequenceChosen(sequence, at);
}

void SequenceListPanel::chooseFirst() {
    int first = -1;
    for (int row = 0; row < model()->rowCount(); ++row) {
        if (isFolder(row))
            continue;
        const bool isSequence = item(row).isSequence();
        if (first < 0 || isSequence)
            first = row;
        if (isSequence)
            break;
    }
    if (first < 0)
        return;
    const UI::FileInfo info = item(first);
    m_browser->select(nameOf(info));
    choose(info, Base::InvalidTime);
}

void SequenceListPanel::chooseFile(const std::string& name) {
    UI::FileInfo info = itemOfFile(name);
    // A sequence may be written in a way that is not the list's.
    if (const auto pattern = UI::FileNames::patternOf(name);
        pattern && info.getFilenameLength() == 0)
        info = itemOfFile(UI::FileNames::written(*pattern, UI::FileNames::Style::Hashes));
    if (info.getFilenameLength() == 0)
        return;
    m_browser->select(nameOf(info));
    choose(info, timeOf(sequenceOf(info), name));
}

void SequenceListPanel::addToMenu(QMenu* menu, const std::vector<UI::FileInfo>& files) {
    const QByteArray path =
        files.empty() || !files.front().isDir() ? folder() : files.front().rawAbsoluteFilePath();
    if (path.isEmpty())
        return;
    menu->addSeparator();
    connect(menu->addAction(tr("Show in File Manager")), &QAction::triggered, this,
            [path] { QDesktopServices::openUrl(QUrl::fromLocalFile(QFile::decodeName(path))); });
}

} // namespace Kestrel::Workbench
