#include <KxUI/browse/BrowserViews_p.h>
#include <KxUI/browse/FavoritesFile.h>
#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/FileBrowser.h>
#include <KxUI/browse/FileBrowser_p.h>
#include <KxUI/browse/PathBar.h>
#include <KxUI/settings/AppSettings.h>
#include <KxUI/values/SearchField.h>

#include <support/Input.h>
#include <support/TestRegistry.h>

#include "../files/HangingCalls.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTreeView>

#include <fstream>

using namespace Kestrel::UI;

namespace {

FileBrowserPrivate& partsOf(FileBrowser& browser) {
    return FileBrowserPrivate::of(browser);
}

QByteArray nameOf(const QByteArray& path) {
    return path.mid(path.lastIndexOf('/') + 1);
}

QStringList selectedNames(const FileBrowser& browser) {
    QStringList names;
    for (const FileInfo& info : browser.selection())
        names << info.frameName();
    return names;
}

QPushButton* button(FileBrowser& browser, const QString& text) {
    for (auto* const each : browser.findChildren<QPushButton*>()) {
        if (each->text() == text && each->isVisible())
            return each;
    }
    return nullptr;
}

} // namespace

class FileBrowserTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_root;

    QByteArray path(const char* name) const { return m_root->filePath(name).toUtf8(); }

    void write(const QString& name, int bytes = 0) const {
        std::ofstream(m_root->filePath(name).toStdString()) << std::string(std::size_t(bytes), '-');
    }

    static bool isQuiet(FileBrowser& browser) {
        const FileListModel& model = *browser.model();
        return !model.gatherer()->isGathering() && model.listing() == model.gatherer()->listing() &&
               !partsOf(browser).isLooking && model.listing()->state() != FileListing::State::Empty;
    }

    static void goTo(FileBrowser& browser, const QByteArray& folder) {
        browser.setFolder(folder);
        QTRY_VERIFY_WITH_TIMEOUT(isQuiet(browser), 20000);
    }

    static void show(FileBrowser& browser) {
        browser.resize(700, 400);
        browser.show();
        QVERIFY(Kestrel::Test::focus(browser));
    }

private slots:
    void init() {
        m_root = std::make_unique<QTemporaryDir>();
        QDir root(m_root->path());
        for (const char* name : {"empty", "shots", "shots/s010", "shots/s020", ".dots"})
            root.mkdir(name);
        for (const int frame : {1001, 1002, 1003, 1007})
            write(QString("plate.%1.exr").arg(frame), 1024);
        write("notes.txt", 10);
        write("bee.dpx");
    }

    void goesAndComesBack() {
        FileBrowser browser;
        QSignalSpy folders(&browser, &FileBrowser::folderChanged);
        goTo(browser, path("shots"));
        QCOMPARE(browser.model()->rowCount(), 2);
        browser.select("s020");
        QTRY_COMPARE(selectedNames(browser), QStringList{"s020"});
        goTo(browser, path("shots/s020"));
        browser.up();
        QTRY_COMPARE(selectedNames(browser), QStringList{"s020"});
        browser.select("s010");
        QTRY_COMPARE(selectedNames(browser), QStringList{"s010"});
        browser.up();
        QTRY_COMPARE(selectedNames(browser), QStringList{"shots"});
        browser.back();
        QTRY_COMPARE(selectedNames(browser), QStringList{"s010"});
        QCOMPARE(browser.folder(), path("shots"));
        browser.forward();
        QTRY_COMPARE(browser.folder(), QByteArray(m_root->path().toUtf8()));
        // A file goes to its folder; a frame selects its sequence, before it is listed, too.
        goTo(browser, path("empty"));
        goTo(browser, path("notes.txt"));
        QTRY_COMPARE(selectedNames(browser), QStringList{"notes.txt"});
        QCOMPARE(nameOf(browser.currentPath()), QByteArray("notes.txt"));
        // So does a sequence, as people write it.
        goTo(browser, path("plate.%04d.exr"));
        QTRY_COMPARE(selectedNames(browser), QStringList{"plate.####.exr"});
        goTo(browser, path("empty"));
        browser.setFolder(m_root->path().toUtf8());
        browser.select("plate.1002.exr");
        QTRY_COMPARE(selectedNames(browser), QStringList{"plate.####.exr"});
        QCOMPARE(browser.selection().front().missingFrames(), 3);
        for (const auto& each : folders)
            QVERIFY(QDir::isAbsolutePath(each.front().toString()));
    }

    // A window may have the same keys, as players of pictures do.
    void keysBeforeTheWindow() {
        QWidget window;
        auto* const browser = new FileBrowser(&window);
        QAction host;
        host.setShortcuts({QKeySequence("F5"), QKeySequence("Home"), QKeySequence("Alt+Left"),
                           QKeySequence("Ctrl+2"), QKeySequence("L")});
        window.addAction(&host);
        browser->resize(700, 400);
        window.show();
        QVERIFY(Kestrel::Test::focus(*browser));
        goTo(*browser, path("shots"));
        goTo(*browser, m_root->path().toUtf8());
        QSignalSpy hostTook(&host, &QAction::triggered);
        QSignalSpy listed(browser, &FileBrowser::listedChanged);
        browser->view()->setCurrentIndex(browser->model()->index(3, 0));
        QTest::keyClick(browser->view(), Qt::Key_Home);
        QCOMPARE(browser->view()->currentIndex().row(), 0);
        QTest::keyClick(browser->view(), Qt::Key_F5);
        QTRY_COMPARE(listed.count(), 2);
        QCOMPARE(listed.front().front().toBool(), false);
        QVERIFY(browser->isListed());
        QCOMPARE(hostTook.count(), 0);
        QTest::keyClick(browser->view(), Qt::Key_L); // letters only go on with a name
        QCOMPARE(hostTook.count(), 1);
        QTest::keyClick(browser->view(), Qt::Key_P);
        QTest::keyClick(browser->view(), Qt::Key_L);
        QCOMPARE(selectedNames(*browser), QStringList{"plate.####.exr"});
        browser->action(FileBrowser::ShowCompact)->setShortcuts(QList<QKeySequence>());
        QTest::keyClick(browser->view(), Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(browser->viewMode(), FileBrowser::Details);
        QCOMPARE(hostTook.count(), 2);
        QTest::keyClick(browser->view(), Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(browser->folder(), path("shots"));
        QCOMPARE(hostTook.count(), 2);
    }

    // Paths of other machines, typed and copied; what a narrow pane keeps in sight.
    void asPane() {
        FileBrowser browser;
        browser.setMinimumSize(100, 100);
        browser.setColumnShown(FileListModel::Modified, false);
        browser.setPathRemap(
            PathRemap({{true, PathStyle::Windows, "P:\\show", path("shots").toStdString(), {}}}));
        show(browser);
        goTo(browser, m_root->path().toUtf8());
        QApplication::clipboard()->setText("p:\\show\\s010");
        QTest::keyClick(browser.view(), Qt::Key_V, Qt::ControlModifier);
        QTRY_COMPARE(browser.folder(), path("shots/s010"));
        browser.focusPath();
        auto* const field = partsOf(browser).path->findChild<QLineEdit*>();
        field->setText("P:/show/s020");
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE(browser.folder(), path("shots/s020"));
        const QHeaderView& header = *partsOf(browser).views->details()->header();
        const auto resize = [&](int width) {
            browser.resize(width, 300);
            QApplication::processEvents();
            return header.sectionSize(FileListModel::Frames);
        };
        const int roomy = header.sectionSize(FileListModel::Frames);
        QVERIFY(resize(380) < roomy);
        QVERIFY(partsOf(browser).filter->width() > 300);
        QCOMPARE(resize(700), roomy);
        QVERIFY(partsOf(browser).filter->width() < 300);
    }

    void words() {
        FileBrowser browser;
        show(browser);
        auto& parts = partsOf(browser);
        const auto notice = [&] {
            return parts.area->notice()->isHidden() ? QString() : parts.area->notice()->text();
        };
        goTo(browser, path("empty"));
        QTRY_COMPARE(notice(), QString("This folder is empty."));
        write("empty/.dot");
        browser.refresh();
        QTRY_COMPARE(notice(), QString("Everything in this folder is hidden."));
        button(browser, "Show Hidden Files")->click();
        QTRY_COMPARE(browser.model()->rowCount(), 1);
        QTRY_COMPARE(notice(), QString());
        QCOMPARE(parts.status->text(), QString("1 file"));
        browser.setNameFilters({"Images (*.exr *.dpx)", "*"});
        QTRY_COMPARE(notice(),
                     QString("Nothing of the kind that is looked for is in this folder."));
        browser.setCurrentNameFilter(1);
        QTRY_COMPARE(notice(), QString());
        parts.filter->setFocus();
        QTest::keyClicks(parts.filter, "zz\r");
        QTRY_COMPARE(notice(), QString("No item matches “zz”."));
        button(browser, "Clear Filter")->click();
        QTRY_COMPARE(notice(), QString());
        goTo(browser, path("none"));
        QTRY_COMPARE(notice(), QString("This folder does not exist."));
        QTRY_VERIFY(button(browser, "Go to " + m_root->path()));
        button(browser, "Go to " + m_root->path())->click();
        QTRY_COMPARE(browser.folder(), m_root->path().toUtf8());
        QTRY_COMPARE(parts.status->text(), QString("3 folders, 1 sequence, 2 files"));
        browser.view()->selectAll();
        QTRY_VERIFY(parts.status->text().startsWith("6 selected"));
        browser.setShowsFiles(false);
        QTRY_COMPARE(browser.model()->rowCount(), 3);
    }

    // The folder is gone while it is shown: its rows stay, in grey.
    void vanishes() {
        FileBrowser browser;
        show(browser);
        browser.model()->gatherer()->setWatch(FileGatherer::Watch::Never);
        goTo(browser, path("shots"));
        QDir(m_root->filePath("shots")).removeRecursively();
        browser.refresh();
        auto& parts = partsOf(browser);
        QTRY_COMPARE(parts.area->notice()->text(), QString("This folder does not exist any more."));
        QVERIFY(browser.model()->rowCount() == 2 && parts.area->notice()->isBanner());
        QVERIFY(parts.area->veil()->isVisible() && parts.area->veil()->isGrey());
        QCOMPARE(browser.folder(), path("shots"));
    }

    void keys() {
        FileBrowser browser;
        show(browser);
        goTo(browser, m_root->path().toUtf8());
        auto& parts = partsOf(browser);
        std::int64_t now = 0;
        parts.now = [&] { return now; };
        QSignalSpy activated(&browser, &FileBrowser::activated);
        const auto current = [&] { return nameOf(browser.currentPath()); };
        QWidget* const list = browser.view();
        QTest::keyClicks(list, "n");
        QCOMPARE(current(), QByteArray("notes.txt"));
        QTest::keyClicks(list, "p");
        QCOMPARE(current(), QByteArray("notes.txt")); // no name begins with "np"
        now += 2000;
        QTest::keyClicks(list, "pl");
        QCOMPARE(current(), QByteArray("plate.####.exr"));
        QTest::keyClick(list, Qt::Key_Return);
        QCOMPARE(activated.count(), 1);
        QCOMPARE(activated[0][0].value<FileInfo>().frameName(), QString("plate.####.exr"));
        // One by one, and together again: what is selected stays.
        QTest::keyClick(list, Qt::Key_G, Qt::ControlModifier);
        QTRY_COMPARE(current(), QByteArray("plate.1001.exr"));
        QCOMPARE(browser.model()->rowCount(), 8);
        QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, Qt::Key_G, Qt::ControlModifier);
        QTRY_COMPARE(browser.model()->rowCount(), 5);
        QTRY_COMPARE(selectedNames(browser), QStringList{"plate.####.exr"});
        QTest::keyClick(list, Qt::Key_H, Qt::ControlModifier);
        QTRY_COMPARE(browser.model()->rowCount(), 6);
        now += 2000;
        QTest::keyClicks(list, "sh");
        QTest::keyClick(list, Qt::Key_Return);
        QCOMPARE(browser.folder(), path("shots"));
        QTRY_VERIFY_WITH_TIMEOUT(isQuiet(browser), 20000);
        QTest::keyClick(list, Qt::Key_Backspace);
        QTRY_COMPARE(current(), QByteArray("shots"));
        QTest::keyClick(list, Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(browser.folder(), path("shots"));
        QTest::keyClick(list, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(browser.folder(), m_root->path().toUtf8());
        // Words, and the number of a frame; Escape takes them back, then the focus.
        QTest::keyClick(list, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(parts.filter->hasFocus());
        QTest::keyClicks(parts.filter, "1003");
        QTest::keyClick(parts.filter, Qt::Key_Return);
        QTRY_COMPARE(browser.model()->rowCount(), 1);
        QVERIFY(list->hasFocus());
        QTest::keyClick(list, Qt::Key_F, Qt::ControlModifier);
        QTest::keyClick(parts.filter, Qt::Key_Escape);
        QTRY_COMPARE(browser.model()->rowCount(), 6);
        QVERIFY(parts.filter->hasFocus());
        QTest::keyClick(parts.filter, Qt::Key_Escape);
        QVERIFY(list->hasFocus());
        // Nothing is left to take back: the window's turn.
        now += 2000;
        QVERIFY(!Kestrel::Test::sendKey(*list, Qt::Key_Escape));
    }

    // A render writes: what is selected, current and seen stays where it is.
    void staysInPlace() {
        for (int i = 0; i < 60; ++i)
            write(QString("m%1x.%2").arg(i, 3, 10, QChar('0')).arg(i));
        FileBrowser browser;
        show(browser);
        browser.model()->gatherer()->setWatch(FileGatherer::Watch::Never);
        goTo(browser, m_root->path().toUtf8());
        browser.select("m040x.40");
        QTRY_COMPARE(selectedNames(browser), QStringList{"m040x.40"});
        auto* const view = browser.view();
        view->scrollTo(browser.model()->indexOf("m040x.40"), QAbstractItemView::PositionAtCenter);
        const auto top = [&] {
            return view->visualRect(browser.model()->indexOf("m040x.40")).top();
        };
        const int before = top();
        QVERIFY(before > 0);
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < 5; ++i)
                write(QString("a%1_%2.txt").arg(round).arg(QString(i + 1, 'x')));
            QFile::remove(m_root->filePath(QString("m00%1x.%1").arg(round)));
            write("plate.1004.exr");
            browser.refresh();
            QTRY_VERIFY_WITH_TIMEOUT(isQuiet(browser), 20000);
            QTest::qWait(0);
            QCOMPARE(top(), before);
            QCOMPARE(selectedNames(browser), QStringList{"m040x.40"});
        }
        // The views share what is selected, and each knows what it shows.
        for (const auto mode :
             {FileBrowser::Compact, FileBrowser::Thumbnails, FileBrowser::Details}) {
            browser.setViewMode(mode);
            QCOMPARE(selectedNames(browser), QStringList{"m040x.40"});
            QTest::qWait(50);
            const auto [first, last] = partsOf(browser).views->visibleRows();
            const int row = browser.model()->indexOf("m040x.40").row();
            QVERIFY(first <= row && row <= last && last - first < browser.model()->rowCount() - 1);
            QVERIFY(browser.view()->viewport()->rect().intersects(
                browser.view()->visualRect(browser.model()->index(first, 0))));
        }
    }

    // A share whose server is gone: everything says so and can be left.
    void folderThatDoesNotAnswer() {
        FileBrowser browser;
        show(browser);
        auto& parts = partsOf(browser);
        std::int64_t late = 0;
        QElapsedTimer clock;
        clock.start();
        goTo(browser, m_root->path().toUtf8());
        Kestrel::Test::HangingCalls hanging(path("shots").toStdString());
        browser.setFolder(path("shots"));
        QVERIFY(hanging.isReached(1));
        QVERIFY(parts.area->veil()->hasPicture() && !parts.area->veil()->isGrey());
        QTRY_VERIFY_WITH_TIMEOUT(parts.area->veil()->isGrey() && parts.line->isBusy(), 20000);
        QCOMPARE(parts.refreshOrStop->defaultAction(), parts.actions.stop);
        parts.now = [&] { return late; };
        late = parts.clock.elapsed() + 12000;
        parts.showFace();
        QCOMPARE(parts.area->notice()->text(), QString("Waiting for the server of this folder…"));
        QVERIFY(!parts.area->veil()->isVisible());
        QTRY_VERIFY(button(browser, "Back"));
        button(browser, "Stop Waiting")->click();
        QTRY_COMPARE(parts.area->notice()->text(), QString("Reading was stopped."));
        QVERIFY(!browser.model()->gatherer()->isGathering());
        browser.back();
        QTRY_VERIFY_WITH_TIMEOUT(isQuiet(browser), 20000);
        QCOMPARE(browser.model()->rowCount(), 5);
        hanging.release();
    }

    void remembers() {
        AppSettings().remove("BrowserTest");
        {
            FileBrowser browser;
            browser.setSettingsKey("BrowserTest");
            auto* const header = partsOf(browser).views->details()->header();
            header->moveSection(header->visualIndex(FileListModel::Size), 1);
            header->resizeSection(FileListModel::Size, 133);
            header->hideSection(FileListModel::Missing);
            partsOf(browser).views->details()->sortByColumn(FileListModel::Modified,
                                                            Qt::DescendingOrder);
            browser.setShowsHidden(true);
            browser.setViewMode(FileBrowser::Compact);
        }
        FileBrowser browser;
        QSignalSpy modes(&browser, &FileBrowser::viewModeChanged);
        browser.setSettingsKey("BrowserTest");
        QCOMPARE(modes.count(), 1);
        QVERIFY(browser.viewMode() == FileBrowser::Compact && browser.showsHidden());
        const auto* const header = partsOf(browser).views->details()->header();
        QCOMPARE(header->visualIndex(FileListModel::Size), 1);
        QCOMPARE(header->sectionSize(FileListModel::Size), 133);
        QVERIFY(header->isSectionHidden(FileListModel::Missing));
        QCOMPARE(header->sortIndicatorSection(), int(FileListModel::Modified));
        AppSettings().remove("BrowserTest");
    }

    void makesAndRenames() {
        FileBrowser browser;
        show(browser);
        auto& parts = partsOf(browser);
        goTo(browser, m_root->path().toUtf8());
        const auto editor = [&] { return browser.view()->findChild<QLineEdit*>(); };
        browser.newFolder();
        QTRY_VERIFY_WITH_TIMEOUT(editor() && editor()->selectedText() == "New Folder", 20000);
        QTest::keyClicks(editor(), "plates");
        QTest::keyClick(editor(), Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(selectedNames(browser), QStringList{"plates"}, 20000);
        QVERIFY(QDir(m_root->filePath("plates")).exists());
        // All frames of a sequence, of which the place of the number stays.
        browser.select("plate.1001.exr");
        QTRY_COMPARE(selectedNames(browser), QStringList{"plate.####.exr"});
        browser.renameSelected();
        QTRY_VERIFY(editor() && editor()->selectedText() == "plate");
        QTest::keyClicks(editor(), "comp");
        QTest::keyClick(editor(), Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(selectedNames(browser), QStringList{"comp.####.exr"}, 20000);
        QVERIFY(QFile::exists(m_root->filePath("comp.1007.exr")));
        // Nothing is replaced, and what went wrong stands above the rows until one goes on.
        for (const char* name : {"bee.dpx", "a/b"}) {
            parts.rename("notes.txt", name);
            QTRY_VERIFY_WITH_TIMEOUT(parts.area->notice()->text().contains(name), 20000);
            QVERIFY(parts.area->notice()->isBanner());
            button(browser, "Close")->click();
            QVERIFY(parts.area->notice()->isHidden());
        }
        QCOMPARE(QFile(m_root->filePath("notes.txt")).size(), 10);
        QTRY_VERIFY(!browser.model()->holdsOrder());
        browser.renameSelected();
        QVERIFY(browser.model()->holdsOrder());
        QTest::keyClick(editor(), Qt::Key_Escape);
        QTRY_VERIFY(!editor() && !browser.model()->holdsOrder());
        browser.setReadOnly(true);
        browser.renameSelected();
        browser.newFolder();
        QTest::qWait(20);
        QVERIFY(!editor() && !QDir(m_root->filePath("New Folder")).exists());
    }

    void takesDrops() {
        FileBrowser browser;
        show(browser);
        goTo(browser, m_root->path().toUtf8());
        QSignalSpy dropped(&browser, &FileBrowser::filesDropped);
        const auto drop = [&](const QStringList& names) {
            QMimeData data;
            QList<QUrl> urls;
            for (const QString& name : names)
                urls << QUrl::fromLocalFile(m_root->filePath(name));
            data.setUrls(urls);
            partsOf(browser).drop(
                QDropEvent(QPointF(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier));
        };
        drop({"shots", "empty"});
        QCOMPARE(dropped.count(), 1);
        drop({"notes.txt"});
        QTRY_COMPARE_WITH_TIMEOUT(dropped.count(), 2, 20000);
        drop({"shots"});
        QTRY_COMPARE_WITH_TIMEOUT(browser.folder(), path("shots"), 20000);
        QCOMPARE(dropped.count(), 2);
    }

    void places() {
        FileBrowser browser;
        show(browser);
        goTo(browser, path("shots"));
        auto& parts = partsOf(browser);
        FavoritesFile file(m_root->filePath("places.xbel"));
        browser.favoritesView()->favoritesModel()->setFile(&file);
        QTRY_VERIFY_WITH_TIMEOUT(file.isLoaded() && parts.actions.favorite->isEnabled(), 20000);
        QTest::keyClick(browser.view(), Qt::Key_D, Qt::ControlModifier);
        QVERIFY(file.contains(path("shots")));
        QTRY_COMPARE(parts.actions.favorite->text(), QString("Remove from Favourites"));
        goTo(browser, path("empty"));
        QTRY_COMPARE(parts.actions.favorite->text(), QString("Add to Favourites"));
        QTest::keyClick(browser.view(), Qt::Key_1, Qt::AltModifier);
        QTRY_COMPARE(browser.folder(), path("shots"));
        QTest::keyClick(browser.view(), Qt::Key_D, Qt::ControlModifier);
        QVERIFY(!file.contains(path("shots")));
        // Where there is no room for them a button shows them, until one goes.
        browser.resize(500, 400);
        QVERIFY(!browser.favoritesView()->isVisible() && parts.sideButton->isVisible());
        parts.sideButton->click();
        QVERIFY(browser.favoritesView()->isVisible());
        Q_EMIT browser.favoritesView()->placeActivated(path("empty"));
        QVERIFY(!browser.favoritesView()->isVisible());
        browser.resize(800, 400);
        QVERIFY(browser.favoritesView()->isVisible() && !parts.sideButton->isVisible());
        browser.setShowsFavorites(false);
        QVERIFY(!browser.favoritesView()->isVisible());
    }

    void menuAndClipboard() {
        FileBrowser browser;
        show(browser);
        goTo(browser, m_root->path().toUtf8());
        browser.select("plate.####.exr");
        QTRY_COMPARE(selectedNames(browser).size(), 1);
        std::vector<FileInfo> seen;
        browser.setContextMenuHook([&](QMenu& menu, const std::vector<FileInfo>& files) {
            seen = files;
            menu.addAction("Grade");
        });
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
        partsOf(browser).showMenu({5, 5});
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu && menu->actions().back()->text() == "Grade" && seen.size() == 1);
        menu->close();
        partsOf(browser).copyPaths();
        const QMimeData* const copied = QGuiApplication::clipboard()->mimeData();
        QCOMPARE(copied->text(), m_root->filePath("plate.####.exr"));
        QCOMPARE(copied->urls().size(), 4);
    }

    // Whoever is told may be done with the browser.
    void deletedByASlot() {
        for (int round = 0; round < 3; ++round) {
            QPointer<FileBrowser> browser = new FileBrowser;
            const auto end = [&] { delete browser; };
            show(*browser);
            goTo(*browser, m_root->path().toUtf8());
            browser->select("notes.txt");
            QTRY_COMPARE(selectedNames(*browser).size(), 1);
            if (round == 0) {
                connect(browser, &FileBrowser::activated, browser, end);
                QTest::keyClick(browser->view(), Qt::Key_Return);
            } else if (round == 1) {
                connect(browser, &FileBrowser::folderChanged, browser, end);
                browser->up();
            } else {
                connect(browser, &FileBrowser::selectionChanged, browser, end);
                browser->select("bee.dpx");
            }
            QTRY_VERIFY(!browser);
        }
    }
};

KXUI_TEST(FileBrowserTest);
#include "FileBrowserTest.moc"
