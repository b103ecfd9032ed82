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

class QAction;
class QBoxLayout;
class QComboBox;
class QDropEvent;
class QKeyEvent;
class QLabel;
class QMouseEvent;
class QSplitter;
class QToolButton;

namespace Kestrel::UI {

class BrowserViews;
class PathField;
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
    void buildActions();
    void buildLookMenu();
    void connectParts();
    void arrangeTop();
    QToolButton* addButton(QBoxLayout* row, QAction* action);
    QAction* addAction(const char* icon, const QString& text, const QList<QKeySequence>& keys,
                       std::function<void()> run);

    // FileBrowserPrivate.cpp: going, and what is shown meanwhile
    void go(const QByteArray& folder);
    void travel(bool isBack);
    void gather(const QByteArray& folder);
    void lookSoon();
    void look();
    BrowserFacts facts() const;
    bool obey(BrowserState::Order order);
    void followWish();
    void showFace();
    void showActions();
    void showStatus();
    std::vector<BrowserNoticeBox::Choice> choices(BrowserNotice notice);
    void rowsSelected();
    /** The folder above; the folder itself at the top. */
    static QByteArray parentOf(const QByteArray& folder);
    BrowserTexts::Sum sum(bool ofSelection) const;

    // FileBrowserInput.cpp
    bool filterEvent(QObject* watched, QEvent* event);
    bool pressKey(QKeyEvent& event);
    bool typeAhead(const QString& text);
    bool escape();
    void open(const QModelIndex& index);
    void goToRows();
    bool pressMouse(const QMouseEvent& event);
    bool dragOver(QEvent& event);
    void drop(const QDropEvent& event);
    void copyPaths() const;
    void showMenu(const QPoint& at);
    void setFolds(bool folds);

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
    QTimer change;   ///< until the face changes by itself
    QTimer memorize; ///< until what is remembered is written
    bool isLooking = false;
    bool areRowsLeaving = false;
    bool isRecalling = false;
    bool isRestoring = false; ///< what is selected is not the user's doing

    BrowserViews* views = nullptr;
    BrowserArea* area = nullptr;
    BusyLine* line = nullptr;
    PathField* path = nullptr;
    SearchField* filter = nullptr;
    QSplitter* splitter = nullptr;
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
        QAction* newFolder = nullptr;
        QAction* rename = nullptr;
        QAction* views[3] = {};
    } actions;
    QToolButton* refreshOrStop = nullptr;

    QStringList nameFilters;
    QString settingsKey;
    std::function<void(QMenu&, const std::vector<FileInfo>&)> menuHook;
};

} // namespace Kestrel::UI
