#include <KxUI/browse/FavoritesFile.h>
#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/FileBrowser.h>
#include <KxUI/browse/FileChooserDialog.h>
#include <KxUI/browse/FilePathEdit.h>
#include <KxUI/browse/PathBar.h>
#include <KxUI/files/FileListModel.h>

#include <support/Dropping.h>
#include <support/Input.h>
#include <support/SlowCalls.h>
#include <support/TestRegistry.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>
#include <QtTest>

using namespace Kestrel::UI;
using Kestrel::Test::ForbiddenCalls;
using Kestrel::Test::sendKey;

// What the interface thread does with folders and files, it does without asking the system about
// them: a call would end the process, and the test with it.
class NeverWaitsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<ForbiddenCalls> m_forbidden;

    QByteArray path(const char* name = "") const { return m_root->filePath(name).toUtf8(); }

    static bool isListed(const FileBrowser& browser, const QByteArray& name) {
        const FileListModel& model = *browser.model();
        return !model.gatherer()->isGathering() && model.listing() == model.gatherer()->listing() &&
               model.indexOf(name).isValid();
    }

    static void show(QWidget& widget) {
        widget.resize(900, 500);
        widget.show();
        QVERIFY(Kestrel::Test::focus(widget));
    }

    void openMenus(const QWidget& parent) const {
        for (auto* const button : parent.findChildren<QToolButton*>()) {
            if (!button->menu())
                continue;
            button->menu()->popup({});
            QTest::qWait(20);
            button->menu()->close();
        }
    }

private Q_SLOTS:
    void init() {
        m_root = std::make_unique<QTemporaryDir>();
        QDir root(m_root->path());
        root.mkpath("shot/lib");
        for (const char* name : {"plate.1001.exr", "plate.1002.exr", "notes.txt", "comp_v001.exr"})
            QVERIFY(QFile(m_root->filePath(QString("shot/") + name)).open(QFile::WriteOnly));
        m_forbidden = std::make_unique<ForbiddenCalls>(m_root->path().toStdString());
    }
    void cleanup() {
        m_forbidden.reset();
        m_root.reset();
    }

    void browses() {
        FileBrowser browser;
        FavoritesFile file(m_root->filePath("f.xbel"));
        browser.favoritesView()->favoritesModel()->setFile(&file);
        show(browser);
        browser.setFolder(path("shot"));
        QTRY_VERIFY(isListed(browser, "notes.txt"));
        for (const auto mode :
             {FileBrowser::Compact, FileBrowser::Thumbnails, FileBrowser::Details}) {
            browser.setViewMode(mode);
            browser.grab();
        }
        browser.model()->sort(FileListModel::Size);
        browser.setShowsHidden(true);
        browser.setFoldsSequences(false);
        QTRY_VERIFY(isListed(browser, "plate.1002.exr"));
        browser.select("plate.1002.exr");
        QTRY_COMPARE(browser.selection().size(), std::size_t(1));
        delete browser.model()->mimeData({browser.model()->index(0, 0)});
        sendKey(browser, Qt::Key_D, Qt::ControlModifier);
        browser.newFolder();
        const auto isNamed = [&] {
            return !browser.focusWidget() || !browser.focusWidget()->inherits("QLineEdit");
        };
        QTRY_VERIFY(!isNamed());
        sendKey(*browser.focusWidget(), Qt::Key_Return);
        QTRY_VERIFY(isNamed());
        browser.up();
        QTRY_VERIFY(isListed(browser, "shot"));
        browser.back();
        browser.refresh();
        QTRY_VERIFY(isListed(browser, "notes.txt"));
        browser.setFolder(path("none"));
        QTRY_COMPARE(browser.model()->gatherer()->listing()->state(), FileListing::State::Failed);
        openMenus(browser);
    }

    void keepsFavorites() {
        FavoritesFile file(m_root->filePath("f.xbel"));
        FavoritesView view;
        FavoritesModel model(&file);
        view.setModel(&model);
        show(view);
        file.add(path("shot"));
        file.add(path("none"));
        file.save();
        QTRY_VERIFY(file.isSaved());
        model.askReach(model.indexOfPath(path("none")));
        QTRY_COMPARE(model.indexOfPath(path("none")).data(FavoritesModel::ReachRole).toInt(),
                     int(FavoritesModel::Unreachable));
        file.reload();
        file.remove(file.idOf(path("none"))); // is saved as the file goes
    }

    void choosesFiles() {
        for (const auto mode : {FileChooserDialog::OpenFile, FileChooserDialog::OpenFolder,
                                FileChooserDialog::SaveFile}) {
            FileChooserDialog dialog(mode);
            dialog.setFolder(path("shot"));
            dialog.setFilters({"Images (*.exr)"});
            show(dialog);
            QTRY_VERIFY(isListed(*dialog.browser(), "lib"));
            auto* const name = dialog.findChild<QLineEdit*>("name");
            name->setFocus();
            name->selectAll();
            QTest::keyClicks(name, mode == FileChooserDialog::OpenFolder ? "lib" : "comp_v001.exr");
            sendKey(*name, Qt::Key_Return);
            auto* const sheet = dialog.findChild<QWidget*>("sheet");
            QTRY_VERIFY(sheet->isVisible() || !dialog.isVisible());
            if (sheet->isVisible())
                dialog.findChild<QAbstractButton*>("sheetConfirm")->click();
            QTRY_COMPARE(dialog.choices().size(), std::size_t(1));
            QTRY_VERIFY(!dialog.isVisible());
        }
    }

    void editsPaths() {
        QWidget window;
        QVBoxLayout layout(&window);
        auto* const bar = new PathBar;
        auto* const field = new FilePathEdit;
        layout.addWidget(bar);
        layout.addWidget(field);
        field->setChecks(true);
        show(window);
        bar->setPath(path("shot"));
        QSignalSpy went(bar, &PathBar::fileEntered);
        bar->startEditing();
        auto* const line = bar->findChild<QLineEdit*>();
        QTest::keyClicks(line, QString::fromUtf8(path("sh")));
        sendKey(*line, Qt::Key_Tab); // asks for what it may become
        QTRY_COMPARE(line->text(), QString::fromUtf8(path("shot/")));
        QTest::keyClicks(line, "notes.txt");
        sendKey(*line, Qt::Key_Return);
        QTRY_COMPARE(went.count(), 1);
        openMenus(*bar);

        field->setFocus();
        QTest::keyClicks(field, QString::fromUtf8(path("shot/none.exr")));
        sendKey(*field, Qt::Key_Return);
        QTRY_COMPARE(field->validity(), FilePathEdit::Missing);
        QMimeData dropped;
        dropped.setUrls({QUrl::fromLocalFile(m_root->filePath("shot/notes.txt"))});
        Kestrel::Test::dropOn(*field, dropped);
        QTRY_COMPARE(field->validity(), FilePathEdit::Valid);
    }
};

KXUI_TEST(NeverWaitsTest);
#include "NeverWaitsTest.moc"
