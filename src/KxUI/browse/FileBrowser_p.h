#pragma once

#include <KxUI/browse/BrowserArea_p.h>
#include <KxUI/browse/BrowserState_p.h>
#include <KxUI/browse/BrowserTexts_p.h>
#include <KxUI/browse/FileBrowser.h>
#include <KxUI/browse/TypeAhead_p.h>
#include <KxUI/files/FileListModel.h>

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

#include <optional>

class QAction;
class QBoxLayout;
class QComboBox;
class QDropEvent;
class QHBoxLayout;
class QKeyEvent;
class QLabel;
class QMouseEvent;
class QSplitter;
class QToolButton;

namespace Kestrel::UI {

class BrowserViews;
class FavoritesFile;
class FavoritesView;
class PathBar;
class SearchField;

/** Rows whose names can be edited where the browser lets them be. */
class BrowserModel : public FileListModel {
public:
    using FileListModel::FileListModel;

    bool isEditable = true;

    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
};

/** The parts of a browser, and how they act on each other. */
class FileBrowserPrivate {
public:
    explicit FileBrowserPrivate(FileBrowser* browser);
    static FileBrowserPrivate& of(FileBrowser& browser) { return *browser.d; }

    // FileBrowserParts.cpp
    void build();
    void buildTop();
    QBoxLayout* buildBottom();
    void buildActions();
    void buildLooks();
    void buildLookMenu();
    void connectParts();
    void buildSide();
    void connectViews();
    void arrangeSide();
    void arrangeTop();
    QToolButton* addButton(QBoxLayout* row, QAction* action);
    QAction* addAction(const char* icon, const QString& text, const QList<QKeySequence>& keys,
                       std::function<void()> run);

    // FileBrowserPrivate.cpp: going, and what is shown meanwhile
    void go(const QByteArray& folder);
    void goFrom(const QByteArray& folder, const QByteArray& name);
    void travel(bool isBack);
    void gather(const QByteArray& folder);
    void lookSoon();
    void look();
    BrowserFacts facts() const;
    bool obey(BrowserState::Order order);
    void goToFile();
    void followWish();
    void showFace();
    void tellListed(bool isListed);
    void showActions();
    void showStatus();
    void tellRead();
    std::vector<BrowserNoticeBox::Choice> choices(BrowserNotice notice);
    void rowsSelected();
    /** The folder above; the folder itself at the top. */
    static QByteArray parentOf(const QByteArray& folder);
    /** What is said of a button: with its keys. */
    static QString withKeys(const QString& text, const QAction* action);
    BrowserTexts::Sum sumOfSelection() const;
    const BrowserTexts::Sum& sumOfRows();

    // FileBrowserInput.cpp
    bool filterEvent(QObject* watched, QEvent* event);
    bool pressKey(QKeyEvent& event);
    bool isRowsKey(const QKeyEvent& event) const;
    QAction* actionOf(const QKeyEvent& event) const;
    bool trigger(const QKeyEvent& event);
    bool typeAhead(const QString& text);
    bool escape();
    void open(const QModelIndex& index);
    void goToRows();
    bool pressMouse(const QMouseEvent& event);
    bool dragOver(QEvent& event);
    void addFavoriteTo(QMenu& menu);
    void copyPaths() const;
    void showMenu(const QPoint& at);
    void setFolds(bool folds);

    // FileBrowserDeeds.cpp: what asks or changes the disk, which answers when it likes
    void makeFolder(int number);
    void expect(const QByteArray& name, bool isEdited);
    void complain(const QString& error);
    void editName(const QModelIndex& index);
    void editWhatCame();
    void rename(const QByteArray& name, const QString& newName);
    void renameFrames(const FileInfo& from, const QByteArray& folder, const QByteArray& wanted);
    void drop(const QDropEvent& event);
    void askForNearest();
    FavoritesFile* favoritesFile() const;
    void toggleFavorite(const QByteArray& place);
    void tellReach();

    // FileBrowserMemory.cpp
    void rememberSoon();
    void remember();
    void recall();

    FileBrowser* const q;
    BrowserModel* const model;
    BrowserState state;
    TypeAhead ahead;
    std::function<std::int64_t()> now; ///< milliseconds; tests have a clock of their own
    QElapsedTimer clock;
    QTimer change;                           ///< until the face changes by itself
    QTimer memorize;                         ///< until what is remembered is written
    std::optional<BrowserTexts::Sum> rowSum; ///< none after rows have changed
    bool isReadTold = true;                  ///< to assistive tools, once a visit
    bool isLooking = false;
    bool toldListed = false; ///< FileBrowser::isListed()
    bool areRowsLeaving = false;
    bool isRecalling = false;
    bool isRestoring = false; ///< what is selected is not the user's doing

    BrowserViews* views = nullptr;
    BrowserArea* area = nullptr;
    BusyLine* line = nullptr;
    PathBar* path = nullptr;
    SearchField* filter = nullptr;
    FavoritesView* favorites = nullptr;
    QSplitter* splitter = nullptr;
    QHBoxLayout* top = nullptr;
    QHBoxLayout* second = nullptr; ///< for what has no room in the first row
    QLabel* status = nullptr;
    QComboBox* kinds = nullptr;
    QToolButton* viewButton = nullptr;

    struct Actions {
        QAction* back = nullptr;
        QAction* forward = nullptr;
        QAction* up = nullptr;
        QAction* home = nullptr;
        QAction* refresh = nullptr;
        QAction* stop = nullptr;
        QAction* path = nullptr;
        QAction* filter = nullptr;
        QAction* hidden = nullptr;
        QAction* frames = nullptr;
        QAction* favorite = nullptr;
        QAction* side = nullptr;
        QAction* newFolder = nullptr;
        QAction* rename = nullptr;
        QAction* views[3] = {};
    } actions;
    QToolButton* refreshOrStop = nullptr;

    QToolButton* sideButton = nullptr;

    QString deedText;   ///< what is being done
    QString deedError;  ///< why something could not be done; until one goes on
    QByteArray toEdit;  ///< the name of what is to be named once it is listed
    QByteArray nearest; ///< the folder nearest to one that is gone
    QByteArray nearestOf;
    bool showsFavorites = true;
    bool isNarrow = false;
    bool isArranged = false;
    int sideWidth = 0; ///< that the user gave

    QStringList nameFilters;
    QString settingsKey;
    PathRemap remap;
    std::function<void(QMenu&, const std::vector<FileInfo>&)> menuHook;
};

} // namespace Kestrel::UI
