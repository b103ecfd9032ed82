#include "Workspace.h"

#include <KxUI/dock/NamedWorkspaces.h>
#include <KxUI/dock/NamedWorkspacesMenu.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QDir>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace Kestrel::UI;
using namespace Kestrel::Test;

namespace {

/** The window of that class that asks or complains. */
template <typename Box>
Box* shown(const QWidget& window) {
    const auto boxes = window.findChildren<Box*>();
    for (Box* box : boxes) {
        if (box->isVisible())
            return box;
    }
    return nullptr;
}

QAction* entry(const QMenu& menu, const QString& text) {
    const auto actions = menu.actions();
    for (QAction* action : actions) {
        if (action->text().remove('&') == text)
            return action;
    }
    return nullptr;
}

} // namespace

class NamedWorkspacesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void names_data() {
        const Columns<QString, bool> row("name", "good");
        row("plain", "Roto", true);
        row("of a person", "Zoë's  paint ", true);
        row("dots inside", "v1.2", true);
        row("longest", QString(NamedWorkspaces::MaximumNameLength, 'n'), true);
        row("too long", QString(NamedWorkspaces::MaximumNameLength + 1, 'n'), false);
        for (const char* bad : {"", "  ", ".", "..", ".hidden", "end.", "../up", "a/b", "a\\b",
                                "c:", "what?", "a\001b", "NUL", "com1.old"})
            row(QByteArray("bad \"") + bad + '"', QString::fromLatin1(bad), false);
    }
    void names() {
        QFETCH(QString, name);
        QFETCH(bool, good);
        const QTemporaryDir folder;
        Workspace workspace;
        workspace.pane({"a"});
        NamedWorkspaces named(&workspace);
        named.setFolder(folder.filePath("below/workspaces"));
        QString error;
        QCOMPARE(NamedWorkspaces::problemOfName(name).isEmpty(), good);
        QCOMPARE(named.save(name, &error), good);
        QCOMPARE(error.isEmpty(), good);
        QCOMPARE(named.names(), good ? QStringList{name.simplified()} : QStringList());
        // Nothing but that file, here or anywhere above.
        QCOMPARE(QDir(named.folder()).entryList(QDir::Files | QDir::Hidden),
                 good ? QStringList{name.simplified() + ".xml"} : QStringList());
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    void keeping() {
        const QTemporaryDir folder;
        Workspace workspace;
        workspace.resize(700, 500);
        workspace.pane({"a"});
        Kestrel::Test::show(workspace);
        NamedWorkspaces named(&workspace);
        const QSignalSpy listed(&named, &NamedWorkspaces::namesChanged);
        const QSignalSpy current(&named, &NamedWorkspaces::currentChanged);
        named.setFolder(folder.path());
        for (const char* name : {"take 10", "take 9", "Paint"})
            QVERIFY(named.save(name));
        QCOMPARE(named.names(), QStringList({"Paint", "take 9", "take 10"}));
        QCOMPARE(listed.count(), 3);
        QCOMPARE(named.current(), QString("Paint"));

        const QByteArray one = workspace.saved();
        workspace.pane({"b"});
        settle();
        const QByteArray two = workspace.saved();
        QVERIFY(named.save("TAKE 9")); // the same name
        QCOMPARE(named.names().size(), 3);
        QCOMPARE(named.current(), QString("take 9"));
        QVERIFY(named.restore("Paint"));
        settle();
        QCOMPARE(workspace.saved(), one);
        QVERIFY(named.restore("take 9"));
        settle();
        QCOMPARE(workspace.saved(), two);

        QVERIFY(named.rename("take 9", "Take nine"));
        QCOMPARE(named.current(), QString("Take nine"));
        QVERIFY(named.rename("Take nine", "take Nine"));
        QVERIFY(named.remove("take Nine"));
        QCOMPARE(named.current(), QString());
        QCOMPARE(named.names(), QStringList({"Paint", "take 10"}));
        QVERIFY(current.count() >= 6);

        // What other programs do to the folder.
        QVERIFY(QFile::remove(folder.filePath("Paint.xml")));
        QVERIFY(QFile::copy(folder.filePath("take 10.xml"), folder.filePath("found.xml")));
        QVERIFY(QFile::copy(folder.filePath("take 10.xml"), folder.filePath("com1.xml")));
        named.refresh();
        QCOMPARE(named.names(), QStringList({"found", "take 10"}));
    }

    void failures() {
        const QTemporaryDir folder;
        Workspace workspace;
        workspace.pane({"a"});
        NamedWorkspaces named(&workspace);
        QString error;
        QVERIFY(!named.save("a", &error)); // nowhere
        QVERIFY(!error.isEmpty());
        QVERIFY(!NamedWorkspaces().save("a", &error));
        named.setFolder(folder.path());
        QVERIFY(named.save("a") && named.save("b"));
        QFile damaged(folder.filePath("a.xml"));
        QVERIFY(damaged.open(QIODevice::WriteOnly) && damaged.write("<layout ") > 0);
        damaged.close();
        const QByteArray before = workspace.saved();
        const auto fails = [&error](bool done) {
            const bool told = !error.isEmpty();
            error.clear();
            return !done && told;
        };
        QVERIFY(fails(named.restore("a", &error)));
        QCOMPARE(workspace.saved(), before);
        QCOMPARE(named.current(), QString("b"));
        QVERIFY(fails(named.restore("none", &error)));
        QVERIFY(fails(named.rename("none", "c", &error)));
        QVERIFY(fails(named.rename("a", "b", &error)));
        QVERIFY(fails(named.rename("a", "../b", &error)));
        QVERIFY(fails(named.remove("none", &error)));
        QVERIFY(fails(named.remove("../b", &error)));
        // A folder stands where the file would; another is a file.
        QVERIFY(QDir(folder.path()).mkdir("d.xml"));
        QVERIFY(fails(named.save("d", &error)));
        named.setFolder(folder.filePath("b.xml/x"));
        QVERIFY(fails(named.save("a", &error)));
        QVERIFY(!named.restore("a")); // no one asks why
    }

    void menu() {
        const QTemporaryDir folder;
        Workspace workspace;
        workspace.pane({"a"});
        show(workspace);
        NamedWorkspaces named(&workspace);
        named.setFolder(folder.path());
        NamedWorkspacesMenu menu(&workspace);
        QVERIFY(menu.actions().isEmpty());
        menu.setWorkspaces(&named);
        const auto choose = [&menu](const QString& text, const QString& inside = QString()) {
            Q_EMIT menu.aboutToShow();
            QAction* action = entry(menu, text);
            if (action && !inside.isEmpty())
                action = entry(*action->menu(), inside);
            if (action)
                action->trigger();
            return action != nullptr;
        };
        const auto answer = [&workspace](const QString& name) {
            auto* dialog = shown<QInputDialog>(workspace);
            if (!dialog)
                return false;
            dialog->setTextValue(name);
            dialog->accept();
            return true;
        };
        const auto press = [&workspace](int button) {
            auto* box = shown<QMessageBox>(workspace);
            if (box)
                box->buttons().at(button)->click();
            return box != nullptr;
        };

        QVERIFY(choose("Save As...") && answer("One & two"));
        QVERIFY(choose("Save As...") && answer("x"));
        QCOMPARE(named.current(), QString("x"));
        workspace.pane({"b"});
        QVERIFY(choose("One  two")); // the ampersands are gone with the mnemonics
        QCOMPARE(named.current(), QString("One & two"));
        QCOMPARE(workspace.docks().size(), 1);
        Q_EMIT menu.aboutToShow();
        QVERIFY(entry(menu, "x") && !entry(menu, "x")->isChecked());

        workspace.pane({"b"});
        QVERIFY(choose("Save As...") && answer("X"));
        auto* box = shown<QMessageBox>(workspace);
        QVERIFY(box);
        box->button(QMessageBox::Cancel)->click();
        QCOMPARE(named.current(), QString("One & two"));
        QVERIFY(choose("Save \"One  two\""));
        QVERIFY(choose("Rename", "x") && answer("../x"));
        QVERIFY(press(0)); // what is wrong with it
        QVERIFY(choose("Rename", "x") && answer("y"));
        QVERIFY(choose("Delete", "y"));
        box = shown<QMessageBox>(workspace);
        QVERIFY(box);
        for (QAbstractButton* button : box->buttons()) {
            if (box->buttonRole(button) == QMessageBox::AcceptRole) {
                button->click();
                break;
            }
        }
        QCOMPARE(named.names(), QStringList("One & two"));
        settle();
    }
};

KXUI_TEST(NamedWorkspacesTest);
#include "NamedWorkspacesTest.moc"
