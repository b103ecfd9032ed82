#pragma once

#include <KxUI/Export.h>
#include <KxUI/browse/IThumbnailSource.h>
#include <KxUI/files/FileInfo.h>
#include <KxUI/files/PathRemap.h>

#include <QAbstractItemView>
#include <QList>
#include <QStringList>
#include <QUrl>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QAction;
class QMenu;

namespace Kestrel::UI {

class FavoritesView;
class FileBrowserPrivate;
class FileListModel;

/** A folder with its path, a filter and its rows: what is inside the file dialogs and the browser
    panels of hosts. It never waits for a disk.

    Going to a folder that does not answer at once leaves the rows of the last one in sight for 300
    ms, then greyed; after 2 s the list says what it waits for, after 10 s it offers a way out, and
    everything else can be used all the while. Rows that are listed keep their selection, the
    current one and their place on the screen while a render writes into the folder.

    Names are bytes in the system's encoding: what is selected does not depend on what a name looks
    like.

    Keys, of the whole browser: Alt+Left and Alt+Right go back and forward, Alt+Up to the folder
    above, Alt+Home home, Alt+1 to Alt+9 to favourites; Ctrl+L and F4 edit the path, Ctrl+F the
    filter; F5 and Ctrl+R read anew; Ctrl+H shows hidden files, Ctrl+G the frames of sequences one by
    one; Ctrl+Shift+N makes a folder, F2 renames; Ctrl+D makes the folder a favourite, or no longer
    one; Ctrl+1, Ctrl+2 and Ctrl+3 choose the view. In the list: Return opens, Backspace goes up,
    letters go to the next name that begins with them, `/` and `~` begin to edit the path, Ctrl+C
    copies the paths, Ctrl+V goes to a path that was copied. Escape takes one step back: it ends
    renaming or editing, clears the filter, stops the reading; what is left of it goes to the window.
    While the keyboard is in the browser these keys are its own, also where the window has actions of
    the same ones; give those of action() others where that is not wanted. Letters are the window's,
    but for those that go on with a name. Interface thread. */
class KXUI_EXPORT FileBrowser : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QByteArray folder READ folder WRITE setFolder NOTIFY folderChanged)
    Q_PROPERTY(bool listed READ isListed NOTIFY listedChanged)
    Q_PROPERTY(ViewMode viewMode READ viewMode WRITE setViewMode NOTIFY viewModeChanged)
    Q_PROPERTY(bool showsFiles READ showsFiles WRITE setShowsFiles NOTIFY settingsChanged)
    Q_PROPERTY(bool showsHidden READ showsHidden WRITE setShowsHidden NOTIFY settingsChanged)
    Q_PROPERTY(
        bool foldsSequences READ foldsSequences WRITE setFoldsSequences NOTIFY settingsChanged)
    Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly NOTIFY settingsChanged)
    Q_PROPERTY(
        bool showsFavorites READ showsFavorites WRITE setShowsFavorites NOTIFY settingsChanged)
    Q_PROPERTY(QString settingsKey READ settingsKey WRITE setSettingsKey NOTIFY settingsChanged)
    Q_PROPERTY(QStringList nameFilters READ nameFilters WRITE setNameFilters NOTIFY settingsChanged)
    Q_PROPERTY(int currentNameFilter READ currentNameFilter WRITE setCurrentNameFilter NOTIFY
                   settingsChanged)

public:
    /** How rows are shown. */
    enum ViewMode {
        Details,   ///< one below the other, with columns
        Compact,   ///< names in columns
        Thumbnails ///< pictures of the thumbnail source
    };
    Q_ENUM(ViewMode)

    /** What the user can do, by keys, buttons and menus. */
    enum Command {
        Back,           ///< back()
        Forward,        ///< forward()
        Up,             ///< up()
        Home,           ///< home()
        Refresh,        ///< refresh()
        Stop,           ///< stop()
        EditPath,       ///< focusPath()
        Filter,         ///< focusFilter()
        ToggleFavorite, ///< makes the folder a favourite, or no longer one
        NewFolder,      ///< newFolder()
        Rename,         ///< renameSelected()
        ShowHidden,     ///< setShowsHidden(); can be checked, as those that follow
        ShowFrames,     ///< the opposite of setFoldsSequences()
        ShowDetails,    ///< setViewMode()
        ShowCompact,    ///< setViewMode()
        ShowThumbnails  ///< setViewMode()
    };
    Q_ENUM(Command)

    /** Without a folder until one is set. */
    explicit FileBrowser(QWidget* parent = nullptr);
    ~FileBrowser() override;

    /** The folder that was gone to last, also while it does not answer; empty before. */
    QByteArray folder() const;
    /** The same as text. */
    QString folderText() const;

    /** Whether all of folder() was read and is seen, or its reading has ended otherwise:
        model()->listing() tells. */
    bool isListed() const;

    /** What the user can do, for menus and buttons of the host, and to give it other keys. The browser
        owns it; text, tool tip and state are its business. */
    QAction* action(Command command) const;

    /** What is selected, in the order of the list. */
    std::vector<Kestrel::UI::FileInfo> selection() const;
    /** The path of the current row: of a sequence with # for the frame. Empty for none. */
    QByteArray currentPath() const;

    /** How many rows can be selected; at first any number. */
    QAbstractItemView::SelectionMode selectionMode() const;
    void setSelectionMode(QAbstractItemView::SelectionMode mode);

    /** The rows; the browser owns it. What it lists is the browser's business: patterns, hidden
        files, folding and the search text may be set on it, a folder only here. */
    FileListModel* model() const;

    /** The view that is seen now, of model(); another one after setViewMode(). For focus and order of
        tabs use the browser, which hands the focus on. */
    QAbstractItemView* view() const;

    /** How rows are shown; at first Details. */
    ViewMode viewMode() const;
    void setViewMode(ViewMode mode);

    /** Whether Details has a column, a FileListModel::Column; the names are always there. The user can
        change it, and settingsKey() remembers it. */
    bool isColumnShown(int column) const;
    void setColumnShown(int column, bool shown);

    /** Whether files are listed at all; off for choosing folders. At first on. */
    bool showsFiles() const;
    void setShowsFiles(bool shows);

    /** Whether names that begin with a dot are listed; at first off. */
    bool showsHidden() const;
    void setShowsHidden(bool shows);

    /** Whether numbered files are sequences; at first on. What is selected stays so: a sequence as its
        first frame, a frame as its sequence. */
    bool foldsSequences() const;
    void setFoldsSequences(bool folds);

    /** Whether folders can be made and names changed here; at first they can. */
    bool isReadOnly() const;
    void setReadOnly(bool readOnly);

    /** Whether places are shown beside the list; at first they are. A browser that is less than 640 px
        wide shows them when its button is pressed. */
    bool showsFavorites() const;
    void setShowsFavorites(bool shows);

    /** The places, with a FavoritesModel of FavoritesFile::standard() at first; the browser owns it. */
    FavoritesView* favoritesView() const;

    /** Under which key of AppSettings columns, their widths and order, the order of the rows, view,
        splitter and switches are remembered, and read from now; empty for nowhere, as at first. */
    QString settingsKey() const;
    void setSettingsKey(const QString& key);

    /** How paths of other machines become ours: what is typed, copied from elsewhere, or a place. At
        first they stay as they are. What a host sets is never changed. */
    PathRemap pathRemap() const;
    void setPathRemap(const Kestrel::UI::PathRemap& remap);

    /** Where Thumbnails has its pictures from; null for none. */
    void setThumbnailSource(std::shared_ptr<Kestrel::UI::IThumbnailSource> source);

    /** Kinds of files to choose from below the list, as `Images (*.exr *.dpx)` or patterns alone; with
        one there is no choice. Folders are listed whatever they are called. */
    QStringList nameFilters() const;
    void setNameFilters(const QStringList& filters);
    /** Which of them holds; -1 for none. */
    int currentNameFilter() const;
    void setCurrentNameFilter(int index);

    /** Called before the menu of the rows is shown, with what is selected, for hosts to add to it.
        The menu lives until it is closed. */
    void
    setContextMenuHook(std::function<void(QMenu&, const std::vector<Kestrel::UI::FileInfo>&)> hook);

public Q_SLOTS:
    /** Goes to a folder, in the system's encoding; a relative path counts from the current directory. A
        path that turns out to be a file goes to its folder and selects it. */
    void setFolder(const QByteArray& folder);
    /** The same by its text. */
    void setFolderText(const QString& folder);

    /** Selects the row of a name and scrolls to it: at once, or when it is listed in the folder that is
        being read, unless the user selects something meanwhile. The name of a frame selects its
        sequence. */
    void select(const QByteArray& name);

    /** Goes to the folder above, where the one that was left is selected. */
    void up();
    /** Goes through the folders that were seen, with selection and scroll position. */
    void back();
    void forward();
    /** Goes to the user's folder. */
    void home();
    /** Reads the folder again. */
    void refresh();
    /** Gives the reading up. */
    void stop();

    /** Makes a folder and begins to edit its name in the list. Nothing where the browser is read-only,
        as renameSelected(). */
    void newFolder();
    /** Begins to edit the name of the current row: of a sequence that of all its files. */
    void renameSelected();

    /** Begins to edit the path, or the filter. */
    void focusPath();
    void focusFilter();

Q_SIGNALS:
    /** folder() is another one; its rows may still be coming. */
    void folderChanged(const QByteArray& folder);
    /** isListed() is another. It is off while a folder is read, also when that is for new files. */
    void listedChanged(bool listed);
    /** selection() is another one. */
    void selectionChanged();
    /** A file or a sequence was chosen by a double click or Return. */
    void activated(const Kestrel::UI::FileInfo& file);
    /** Files were dropped on the list; not sent for one folder, which is gone to. */
    void filesDropped(const QList<QUrl>& urls);
    /** viewMode() is another one. */
    void viewModeChanged(Kestrel::UI::FileBrowser::ViewMode mode);
    /** One of the settings is another. */
    void settingsChanged();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    friend class FileBrowserPrivate;
    const std::unique_ptr<FileBrowserPrivate> d;
};

} // namespace Kestrel::UI
