#include <support/Dropping.h>
#include <support/Input.h>
#include <support/TempFolder.h>
#include <support/TestRegistry.h>

#include <KxUI/browse/CompletionPopup_p.h>
#include <KxUI/browse/CrumbButton_p.h>
#include <KxUI/browse/CrumbMenu_p.h>
#include <KxUI/browse/PathBar.h>
#include <KxUI/browse/PathProbe_p.h>

#include <QtWidgets>

#include <atomic>
#include <fstream>
#include <thread>

using namespace Kestrel::UI;
using Kestrel::Test::dropOn;
using Kestrel::Test::focus;
using Kestrel::Test::sendKey;
using Kestrel::Test::TempFolder;

namespace {

/** What a bar says where to go. */
class Told : public QObject {
public:
    explicit Told(PathBar& bar) {
        connect(&bar, &PathBar::pathEntered, this,
                [this](const QByteArray& path) { text += "go " + path + ";"; });
        connect(&bar, &PathBar::fileEntered, this,
                [this](const QByteArray& path) { text += "file " + path + ";"; });
    }
    QByteArray take() { return std::exchange(text, QByteArray()); }

    QByteArray text;
};

CrumbButton* crumb(PathBar& bar, CrumbButton::Part part, const char* path) {
    for (QAbstractButton* each : bar.findChildren<QAbstractButton*>()) {
        auto* button = dynamic_cast<CrumbButton*>(each);
        if (button && button->part() == part && !button->isHidden() && button->path() == path)
            return button;
    }
    return nullptr;
}

/** A bar in a window, with a folder to be in: plates/, renders/ and notes.txt. */
struct Stage {
    Stage() {
        for (const char* name : {"plates", "renders"})
            std::filesystem::create_directory(folder.path() / name);
        for (const char* name : {"notes.txt", "s.0001.exr"})
            std::ofstream(folder.path() / name) << "x";
        bar.setPath(path);
        window.resize(900, 60);
        window.show();
    }

    QLineEdit& field() { return *bar.findChild<QLineEdit*>(); }
    CompletionPopup* popup() { return bar.findChild<CompletionPopup*>(); }

    TempFolder folder;
    QByteArray path = QByteArray::fromStdString(folder.utf8());
    QWidget window;
    QVBoxLayout layout{&window};
    PathBar& bar = *add();
    Told told{bar};

private:
    PathBar* add() {
        auto* made = new PathBar;
        layout.addWidget(made);
        return made;
    }
};

} // namespace

class PathBarTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void crumbsGo() {
        Stage stage;
        QSignalSpy changed(&stage.bar, &PathBar::pathChanged);
        stage.bar.setPath("/show/shot//comp/.");
        stage.bar.setPath("/show/shot/comp");
        stage.bar.setPath("relative");
        QCOMPARE(changed.count(), 1);
        QCOMPARE(stage.bar.path(), QByteArray("/show/shot/comp"));
        crumb(stage.bar, CrumbButton::Name, "/show")->click();
        QCOMPARE(stage.told.take(), QByteArray("go /show;"));
        QCOMPARE(stage.bar.path(), QByteArray("/show/shot/comp")); // the host says when it is there

        auto* seen =
            QAccessible::queryAccessibleInterface(crumb(stage.bar, CrumbButton::Name, "/"));
        QCOMPARE(seen->role(), QAccessible::Button);
        QCOMPARE(seen->text(QAccessible::Name), QStringLiteral("/"));
        seen->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(stage.told.take(), QByteArray("go /;"));
    }

    void keysGoAlong() {
        Stage stage;
        stage.bar.setPath("/show/shot");
        QVERIFY(focus(stage.bar));
        const auto focused = [] {
            auto* button = dynamic_cast<CrumbButton*>(QApplication::focusWidget());
            return button ? button->path() + (button->part() == CrumbButton::Arrow ? ">" : "")
                          : QByteArray();
        };
        QCOMPARE(focused(), QByteArray("/show/shot"));
        for (const auto& [key, at] : {std::pair(Qt::Key_Left, "/show>"),
                                      {Qt::Key_Left, "/show"},
                                      {Qt::Key_Home, "/"},
                                      {Qt::Key_Left, "/"},
                                      {Qt::Key_End, "/show/shot>"},
                                      {Qt::Key_Right, "/show/shot>"},
                                      {Qt::Key_Left, "/show/shot"},
                                      {Qt::Key_Left, "/show>"},
                                      {Qt::Key_Left, "/show"}}) {
            QTest::keyClick(QApplication::focusWidget(), key);
            QCOMPARE(focused(), QByteArray(at));
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(stage.told.take(), QByteArray("go /show;"));
    }

    void whatIsTypedIsLookedAt_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QByteArray>("told"); // % is the folder
        QTest::newRow("folder") << "plates" << QByteArray("go %/plates;");
        QTest::newRow("slash") << "plates/" << QByteArray("go %/plates;");
        QTest::newRow("up") << "plates/.." << QByteArray("go %;");
        QTest::newRow("file") << "notes.txt" << QByteArray("file %/notes.txt;");
        QTest::newRow("sequence") << "s.####.exr" << QByteArray("file %/s.####.exr;");
        QTest::newRow("none") << "nothing" << QByteArray();
        QTest::newRow("no frame") << "t.####.exr" << QByteArray();
        QTest::newRow("other host") << "file://server/a" << QByteArray();
    }

    void whatIsTypedIsLookedAt() {
        QFETCH(QString, typed);
        QFETCH(QByteArray, told);
        Stage stage;
        stage.bar.startEditing();
        QVERIFY(stage.bar.isEditing());
        stage.field().setText(typed);
        sendKey(stage.field(), Qt::Key_Return);
        QTRY_VERIFY(!stage.bar.isBusy());
        QCOMPARE(stage.told.take(), told.replace("%", stage.path));
        // What cannot be gone to stays to be mended, with a word under it.
        QCOMPARE(stage.bar.isEditing(), told.isEmpty());
        QCOMPARE(stage.bar.errorText().isEmpty(), !told.isEmpty());
    }

    void whatDoesNotAnswerIsSaid() {
        Stage stage;
        std::atomic<bool> isReleased{false};
        const PathProbe::Look before =
            std::exchange(PathProbe::looker(), [&](const QByteArray&, Ticket&) {
                while (!isReleased)
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                return PathFound{PathFound::Folder, 0};
            });
        stage.bar.startEditing();
        sendKey(stage.field(), Qt::Key_Return);
        QVERIFY(stage.bar.isBusy());
        sendKey(stage.field(), Qt::Key_Escape); // the question first
        QVERIFY(!stage.bar.isBusy() && stage.bar.isEditing());

        sendKey(stage.field(), Qt::Key_Return);
        auto* deadline = stage.bar.findChild<QTimer*>(QStringLiteral("deadline"));
        QVERIFY(deadline && deadline->isActive() && deadline->interval() == 10000);
        deadline->start(0);
        QTRY_VERIFY(!stage.bar.isBusy());
        QVERIFY(!stage.bar.errorText().isEmpty());
        isReleased = true;
        PathProbe::looker() = before;
        sendKey(stage.field(), Qt::Key_Escape);
        QVERIFY(!stage.bar.isEditing() && stage.bar.errorText().isEmpty());
        QCOMPARE(stage.told.take(), QByteArray());
    }

    void keysBeginAndEndEditing() {
        Stage stage;
        QVERIFY(focus(stage.bar));
        QWidget* const before = QApplication::focusWidget();
        QTest::keyClick(before, Qt::Key_F4);
        QVERIFY(stage.bar.isEditing());
        QCOMPARE(stage.field().selectedText().toUtf8(), stage.path);
        QTest::keyClick(&stage.field(), Qt::Key_Escape);
        QVERIFY(!stage.bar.isEditing());
        QCOMPARE(QApplication::focusWidget(), before);
        QTest::keyClick(before, '~');
        QCOMPARE(stage.field().text(), QStringLiteral("~"));
        stage.field().clearFocus();
        QVERIFY(!stage.bar.isEditing());
        QTest::mouseClick(&stage.bar, Qt::LeftButton, {}, QPoint(stage.bar.width() - 5, 12));
        QVERIFY(stage.bar.isEditing());
    }

    void menusOfFolders() {
        Stage stage;
        stage.bar.setPath(stage.path + "/plates");
        crumb(stage.bar, CrumbButton::Arrow, stage.path.constData())->click();
        auto* menu = stage.bar.findChild<QMenu*>();
        QVERIFY(menu && menu->isVisible());
        QCOMPARE(menu->actions().size(), 1); // it is being read
        QVERIFY(!menu->actions().first()->isEnabled());
        QTRY_COMPARE(menu->actions().size(), 2);
        QCOMPARE(menu->defaultAction()->text(), QStringLiteral("plates"));
        menu->actions().last()->trigger();
        QCOMPARE(stage.told.take(), "go " + stage.path + "/renders;");
        menu->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        // What has no room is behind the dots.
        stage.window.resize(240, 60);
        stage.bar.setPath("/a/long/path/to/some/folder/of/a/show");
        crumb(stage.bar, CrumbButton::Dots, "/a/long/path/to/some/folder/of/a")->click();
        menu = stage.bar.findChild<QMenu*>();
        menu->actions().first()->trigger();
        QCOMPARE(stage.told.take(), QByteArray("go /a;"));
    }

    void completes() {
        Stage stage;
        QVERIFY(focus(stage.bar));
        stage.bar.startEditing();
        QTest::keyClick(&stage.field(), Qt::Key_End);
        QTest::keyClicks(&stage.field(), QStringLiteral("/pl"));
        QTest::keyClick(&stage.field(), Qt::Key_Tab);
        QTRY_COMPARE(stage.field().text().toUtf8(), stage.path + "/plates/");
        QVERIFY(stage.field().hasFocus());
        QTest::keyClick(&stage.field(), Qt::Key_Backspace);
        for (int i = 0; i < 6; ++i)
            QTest::keyClick(&stage.field(), Qt::Key_Backspace);
        QTRY_VERIFY(stage.popup() && stage.popup()->isVisible());
        QCOMPARE(stage.popup()->model()->rowCount(), 2);
        QVERIFY(stage.field().hasFocus());
        QTest::keyClick(&stage.field(), Qt::Key_Escape); // the list first
        QVERIFY(!stage.popup()->isVisible() && stage.bar.isEditing());
        QTest::keyClick(&stage.field(), Qt::Key_Down);
        QTest::keyClick(&stage.field(), Qt::Key_Down);
        QTest::keyClick(&stage.field(), Qt::Key_Down);
        QTest::keyClick(&stage.field(), Qt::Key_Return);
        QCOMPARE(stage.field().text().toUtf8(), stage.path + "/renders/");
        QTest::keyClick(&stage.field(), Qt::Key_Return);
        QTRY_COMPARE(stage.told.text, "go " + stage.path + "/renders;");
    }

    void dropsAndPastes() {
        Stage stage;
        std::filesystem::create_directory(stage.folder.path() / "\xE9");
        QMimeData addresses;
        addresses.setData(QStringLiteral("text/uri-list"), "file://" + stage.path + "/%E9\r\n");
        QVERIFY(dropOn(stage.bar, addresses));
        QTRY_COMPARE(stage.told.text, "go " + stage.path + "/\xE9;");
        stage.told.take();
        QMimeData raw;
        raw.setData(QStringLiteral("application/x-kxui-paths"),
                    stage.path + '/' + '\xE9' + QByteArray(1, 0));
        QVERIFY(dropOn(stage.bar, raw));
        QTRY_COMPARE(stage.told.text, "go " + stage.path + "/\xE9;");

        stage.told.take();
        QApplication::clipboard()->setText(QStringLiteral("no path"));
        QVERIFY(!stage.bar.paste());
        QApplication::clipboard()->setText(
            QStringLiteral(" \"%1/plates\"\n").arg(QString::fromUtf8(stage.path)));
        QVERIFY(stage.bar.paste());
        QTRY_COMPARE(stage.told.text, "go " + stage.path + "/plates;");
    }

    // Each of the signals may delete the bar.
    void deletedBySlots() {
        const std::function<void(PathBar&)> acts[] = {
            [](PathBar& bar) { crumb(bar, CrumbButton::Name, "/")->click(); },
            [](PathBar& bar) { bar.startEditing(); },
            [](PathBar& bar) {
                const QPointer<PathBar> alive(&bar);
                bar.startEditing(QStringLiteral("file://server/x"));
                if (alive)
                    sendKey(*bar.findChild<QLineEdit*>(), Qt::Key_Return);
            },
            [](PathBar& bar) {
                const QPointer<PathBar> alive(&bar);
                bar.startEditing();
                if (alive)
                    sendKey(*bar.findChild<QLineEdit*>(), Qt::Key_Return);
                QTRY_VERIFY(!alive || !alive->isBusy());
            },
        };
        for (const auto& act : acts) {
            for (int nth = 1; nth <= 5; ++nth) {
                QPointer<PathBar> bar(new PathBar);
                bar->setPath("/tmp");
                bar->show();
                int count = 0;
                const auto count1 = [&, nth] {
                    if (++count == nth)
                        delete bar.data();
                };
                connect(bar, &PathBar::pathEntered, qApp, count1);
                connect(bar, &PathBar::editingChanged, qApp, count1);
                connect(bar, &PathBar::busyChanged, qApp, count1);
                connect(bar, &PathBar::errorTextChanged, qApp, count1);
                act(*bar);
                delete bar.data();
            }
        }
    }
};

KXUI_TEST(PathBarTest);
#include "PathBarTest.moc"
