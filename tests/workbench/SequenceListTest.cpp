#include "TestImages.h"

#include <support/Dropping.h>
#include <support/TestRegistry.h>

#include "app/FileMenu.h"
#include "app/MainWindow.h"
#include "media/ListedSequence.h"
#include "panels/SequenceListPanel.h"
#include "panels/ViewerPanel.h"
#include "sample/SampleGenerator.h"

#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/FileBrowser.h>
#include <KxUI/browse/PathRemapTable.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/settings/AppSettings.h>

#include <QAbstractItemView>
#include <QDialog>
#include <QMimeData>
#include <QSettings>

using namespace Kestrel::Workbench;
using Kestrel::Base::InvalidTime;
using Kestrel::Base::Time;
using Kestrel::Base::TimeBase;
using Kestrel::UI::FileBrowser;
using Kestrel::UI::FileChooserDialog;
using Kestrel::UI::FileListModel;

Q_DECLARE_METATYPE(Kestrel::Workbench::Sequence)

class SequenceListTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_settings;

    static void write(const QString& path, int bytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(bytes, 'x'));
    }

    static QByteArray path(const QTemporaryDir& folder, const char* name = "") {
        return QFile::encodeName(*name ? folder.filePath(QString::fromUtf8(name)) : folder.path());
    }

    static int rowOf(const SequenceListPanel& panel, const char* name) {
        return panel.model()->indexOf(name).row();
    }

    static QStringList cells(const SequenceListPanel& panel, int row) {
        QStringList texts;
        for (const int column :
             {FileListModel::Name, FileListModel::Frames, FileListModel::Missing})
            texts << panel.model()->index(row, column).data().toString();
        return texts;
    }

private slots:
    void initTestCase() {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_settings.path());
        qRegisterMetaType<Sequence>("Kestrel::Workbench::Sequence");
        qRegisterMetaType<Time>("Kestrel::Base::Time");
    }

    void opening() {
        const QTemporaryDir folder;
        for (const int frame : {1, 2, 3, 10})
            write(folder.filePath(QStringLiteral("b.%1.exr").arg(frame, 4, 10, QLatin1Char('0'))),
                  1024);
        for (const int frame : {9, 10, 11})
            write(folder.filePath(QString::fromUtf8("é a%1.png").arg(frame)), 100);
        write(folder.filePath("still.0042.exr"), 10);
        write(folder.filePath(".hidden"), 10);
        QVERIFY(QDir(folder.path()).mkdir("zz"));
        QVERIFY(QFile::link("zz", folder.filePath("link")));

        SequenceListPanel panel;
        panel.resize(400, 300);
        panel.show();
        QSignalSpy chosen(&panel, &SequenceListPanel::sequenceChosen);
        const auto chosenShot = [&] { return chosen.last().at(0).value<Sequence>(); };
        panel.openPath(path(folder));
        QVERIFY(!panel.isSettled()); // nobody waits
        QTRY_COMPARE(chosen.count(), 1);
        QCOMPARE(chosenShot().members().size(), std::size_t(3)); // the first in natural order
        QCOMPARE(chosen.last().at(1).value<Time>(), InvalidTime);
        QCOMPARE(panel.model()->rowCount(), 5);
        QCOMPARE(cells(panel, rowOf(panel, "b.####.exr")),
                 (QStringList{"b.####.exr", "1-10", "6"}));
        QTRY_COMPARE(panel.browser()->currentPath(), path(folder, "é a#.png"));

        const struct {
            const char* name;
            Time at;
            Time first;
        } rows[] = {{"é a10.png", 10, 9},
                    {"still.0042.exr", 42, 42},
                    {"b.%04d.exr", InvalidTime, 1},
                    {"b.####.exr", InvalidTime, 1},
                    {"b.0010.exr", 10, 1}};
        int count = 1;
        for (const auto& row : rows) {
            panel.openPath(path(folder, row.name));
            ++count;
            QTRY_COMPARE(chosen.count(), count);
            QCOMPARE(chosen.last().at(1).value<Time>(), row.at);
            QCOMPARE(chosenShot().firstTime(), row.first);
            QCOMPARE(panel.folder(), path(folder));
        }

        // What waits for a folder is forgotten when the user goes elsewhere, and there is nothing in
        // a folder or a path that is not there.
        panel.openPath(path(folder, "é a10.png"));
        panel.openFolder(path(folder, "zz"));
        for (const char* name : {"zz", "none", "b.0005.exr"}) {
            panel.openPath(path(folder, name));
            QTRY_VERIFY(panel.isSettled());
        }
        QCOMPARE(chosen.count(), count);

        // Into a link to a folder, and up again to where it was left.
        panel.openFolder(path(folder));
        QTRY_VERIFY(panel.isSettled());
        panel.view()->setCurrentIndex(panel.model()->indexOf("link"));
        QTest::keyClick(panel.view(), Qt::Key_Return);
        QTRY_COMPARE(panel.folder(), path(folder, "link"));
        QTest::keyClick(panel.view(), Qt::Key_Backspace);
        QTRY_COMPARE(panel.browser()->currentPath(), path(folder, "link"));
        QCOMPARE(chosen.count(), count);
    }

    // From a file manager: a sequence, whatever it is dropped on; folders are offered beside the list.
    void dropping() {
        const QTemporaryDir folder;
        const Sequence shot = Kestrel::Test::writeSequence(folder.path(), 4, {});
        QCOMPARE(shot.members().size(), std::size_t(4));
        MainWindow window(TimeBase(25, false), std::size_t(64) << 20, Theme::Dark);
        window.show();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(folder.filePath("s.0003.exr")),
                      QUrl::fromLocalFile(folder.path())});
        const Session& session = *window.session();
        for (QWidget* target :
             {static_cast<QWidget*>(window.viewer()), window.list()->view()->viewport()}) {
            window.session()->open(Sequence());
            QVERIFY(Kestrel::Test::dropOn(*target, data));
            QTRY_COMPARE(session.sequence().members(), shot.members());
            QCOMPARE(window.session()->model()->currentTime(), Time(3));
        }
        const auto* places = window.list()->browser()->favoritesView()->favoritesModel();
        QTRY_VERIFY(places->indexOfPath(path(folder)).isValid());
        QMimeData words;
        words.setText("nothing");
        QVERIFY(!Kestrel::Test::dropOn(*window.viewer(), words));
    }

    // A part that was asked for lies between the marks.
    void choosing() {
        const QTemporaryDir folder;
        QVERIFY(!Kestrel::Test::writeSequence(folder.path(), 12, {3, 4}).isEmpty());
        MainWindow window(TimeBase(25, false), std::size_t(64) << 20, Theme::Dark);
        SequenceListPanel* list = window.list();
        list->openFolder(path(folder));
        QTRY_VERIFY(list->isSettled());
        FileChooserDialog::Choice choice;
        choice.path = path(folder, "s.####.exr");
        choice.isSequence = true;
        choice.info = list->itemOfFile("s.0001.exr");
        const struct {
            Kestrel::Base::FrameRange asked;
            Time in;
            Time out;
            Time current;
        } rows[] = {
            {{1, 12, 1}, InvalidTime, InvalidTime, 1}, {{3, 8, 1}, 5, 8, 5}, {{1, 4, 1}, 1, 2, 1}};
        const auto* model = window.session()->model();
        for (const auto& row : rows) {
            choice.frames = row.asked;
            window.files()->open(choice);
            QCOMPARE(model->inTime(), row.in);
            QCOMPARE(model->outTime(), row.out);
            QCOMPARE(model->currentTime(), row.current);
            QTRY_COMPARE(list->browser()->currentPath(), choice.path);
        }
        // One that the chooser has not listed.
        window.session()->open(Sequence());
        choice.info = {};
        window.files()->open(choice);
        QTRY_COMPARE(window.session()->sequence().lastTime(), Time(12));
    }

    // From one start to the next: shots, mappings, and what the list looks like.
    void remembering() {
        const QTemporaryDir folder;
        QVERIFY(!Kestrel::Test::writeSequence(folder.path(), 2, {}).isEmpty());
        const QByteArray there = "P:\\show\\s.####.exr";
        for (const bool isAgain : {false, true}) {
            MainWindow window(TimeBase(25, false), std::size_t(64) << 20, Theme::Dark);
            window.rememberArrangement();
            window.show();
            FileMenu& files = *window.files();
            FileBrowser& browser = *window.list()->browser();
            QCOMPARE(!files.recent()->paths().isEmpty(), isAgain);
            QCOMPARE(browser.isColumnShown(FileListModel::Modified), isAgain);
            if (!isAgain) {
                files.mappings()->edit(&window);
                auto* dialog = window.findChild<QDialog*>("PathMappings");
                QVERIFY(dialog);
                dialog->findChild<Kestrel::UI::PathRemapTable*>()->setRules(
                    {{true,
                      Kestrel::UI::PathStyle::Windows,
                      "P:\\show",
                      folder.path().toStdString(),
                      {}}});
                dialog->accept();
                browser.setColumnShown(FileListModel::Modified, true);
            }
            QCOMPARE(browser.pathRemap().map(there.toStdString()).path,
                     path(folder, "s.####.exr").toStdString());
            window.openPaths({there});
            QTRY_COMPARE(window.session()->sequence().lastTime(), Time(2));
            QCOMPARE(files.recent()->paths(), QList<QByteArray>{path(folder, "s.####.exr")});
            window.session()->open(Sequence());
            files.recent()->actions().front()->trigger();
            QTRY_COMPARE(window.session()->sequence().lastTime(), Time(2));
            window.close();
        }
        Kestrel::UI::AppSettings().clear();
    }

    // The frames that have come since are seen, at the frame where one is.
    void reloading() {
        const QTemporaryDir folder;
        QVERIFY(!Kestrel::Test::writeSequence(folder.path(), 3, {}).isEmpty());
        MainWindow window(TimeBase(25, false), std::size_t(64) << 20, Theme::Dark);
        window.show();
        window.openPaths({path(folder)});
        QTRY_COMPARE(window.session()->sequence().lastTime(), Time(3));
        window.session()->model()->setCurrentTime(2);
        QVERIFY(Kestrel::Test::writeImage(folder.filePath("s.0004.exr")));
        // Also where the keyboard is in the list, whose own key it would be.
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.list()->setFocus();
        QTest::keyClick(window.list()->view(), Qt::Key_F5);
        QTRY_COMPARE(window.session()->sequence().lastTime(), Time(4));
        QCOMPARE(window.session()->model()->currentTime(), Time(2));
    }

    void sampleIsWholeOrNotThere() {
        const QTemporaryDir cache;
        const QString folder = cache.filePath("deep/sample");
        {
            SampleGenerator generator(folder);
            QSignalSpy progressed(&generator, &SampleGenerator::progressed);
            QSignalSpy finished(&generator, &SampleGenerator::finished);
            generator.start();
            QVERIFY(progressed.wait(20000));
            generator.cancel();
            QVERIFY(finished.count() == 1 || finished.wait(20000));
            QCOMPARE(finished.first().at(0).toBool(), false);
            QVERIFY(!generator.exists());
        }
        QVERIFY(QDir(cache.filePath("deep")).isEmpty());

        write(cache.filePath("blocked"), 1);
        SampleGenerator blocked(cache.filePath("blocked/sample"));
        QSignalSpy finished(&blocked, &SampleGenerator::finished);
        blocked.start();
        QVERIFY(finished.wait(20000));
        QVERIFY(!finished.first().at(1).toString().isEmpty());
    }
};

KXUI_TEST(SequenceListTest);
#include "SequenceListTest.moc"
