#include "Workspace.h"

#include <KxUI/dock/FileQueue_p.h>
#include <KxUI/dock/NamedWorkspaces.h>
#include <KxUI/dock/NamedWorkspacesMenu.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

#include <memory>

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

/** Workspaces whose user waits until what was begun is over, and is told what was wrong. */
class Named : public NamedWorkspaces {
public:
    using NamedWorkspaces::NamedWorkspaces;

    QString saved(const QString& name) {
        return waited([&](const Done& done) { save(name, done); });
    }
    QString restored(const QString& name) {
        return waited([&](const Done& done) { restore(name, done); });
    }
    QString renamed(const QString& name, const QString& newName) {
        return waited([&](const Done& done) { rename(name, newName, done); });
    }
    QString removed(const QString& name) {
        return waited([&](const Done& done) { remove(name, done); });
    }

private:
    template <typename Deed>
    static QString waited(const Deed& deed) {
        QStringList told;
        deed([&told](const QString& problem) { told.append(problem); });
        if (!told.isEmpty() || !QTest::qWaitFor([&told] { return !told.isEmpty(); }))
            return QStringLiteral("told at once, or never");
        return told.first();
    }
};

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
        Named named(&workspace);
        named.setFolder(folder.filePath("below/workspaces"));
        QCOMPARE(NamedWorkspaces::problemOfName(name).isEmpty(), good);
        QCOMPARE(named.saved(name).isEmpty(), good);
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
        Named named(&workspace);
        const QSignalSpy listed(&named, &NamedWorkspaces::namesChanged);
        const QSignalSpy current(&named, &NamedWorkspaces::currentChanged);
        named.setFolder(folder.path());
        for (const char* name : {"take 10", "take 9", "Paint"})
            QCOMPARE(named.saved(name), QString());
        QCOMPARE(named.names(), QStringList({"Paint", "take 9", "take 10"}));
        QCOMPARE(listed.count(), 3);
        QCOMPARE(named.current(), QString("Paint"));

        const QByteArray one = workspace.saved();
        workspace.pane({"b"});
        settle();
        const QByteArray two = workspace.saved();
        QCOMPARE(named.saved("TAKE 9"), QString()); // the same name
        QCOMPARE(named.names().size(), 3);
        QCOMPARE(named.current(), QString("take 9"));
        QCOMPARE(named.restored("Paint"), QString());
        settle();
        QCOMPARE(workspace.saved(), one);
        QCOMPARE(named.restored("take 9"), QString());
        settle();
        QCOMPARE(workspace.saved(), two);

        QCOMPARE(named.renamed("take 9", "Take nine"), QString());
        QCOMPARE(named.current(), QString("Take nine"));
        QCOMPARE(named.renamed("Take nine", "take Nine"), QString());
        QCOMPARE(named.removed("take Nine"), QString());
        QCOMPARE(named.current(), QString());
        QCOMPARE(named.names(), QStringList({"Paint", "take 10"}));
        QVERIFY(current.count() >= 6);

        // What other programs do to the folder.
        QVERIFY(QFile::remove(folder.filePath("Paint.xml")));
        QVERIFY(QFile::copy(folder.filePath("take 10.xml"), folder.filePath("found.xml")));
        QVERIFY(QFile::copy(folder.filePath("take 10.xml"), folder.filePath("com1.xml")));
        named.refresh();
        QTRY_COMPARE(named.names(), QStringList({"found", "take 10"}));
    }

    void failures() {
        const QTemporaryDir folder;
        Workspace workspace;
        workspace.pane({"a"});
        Named named(&workspace);
        QVERIFY(!named.saved("a").isEmpty()); // nowhere
        QVERIFY(!Named().saved("a").isEmpty());
        named.setFolder(folder.path());
        for (const char* name : {"a", "b"})
            QCOMPARE(named.saved(name), QString());
        QFile damaged(folder.filePath("a.xml"));
        QVERIFY(damaged.open(QIODevice::WriteOnly) && damaged.write("<layout ") > 0);
        damaged.close();
        const QByteArray before = workspace.saved();
        QVERIFY(!named.restored("a").isEmpty());
        QCOMPARE(workspace.saved(), before);
        QCOMPARE(named.current(), QString("b"));
        QVERIFY(!named.restored("none").isEmpty());
        QVERIFY(!named.renamed("none", "c").isEmpty());
        QVERIFY(named.renamed("a", "B").contains("\"b\"")); // as it is written
        QVERIFY(!named.renamed("a", "../b").isEmpty());
        QVERIFY(!named.removed("none").isEmpty());
        QVERIFY(!named.removed("../b").isEmpty());
        QCOMPARE(named.names(), QStringList({"a", "b"}));
        // A folder stands where the file would; another is a file.
        QVERIFY(QDir(folder.path()).mkdir("d.xml"));
        QVERIFY(named.saved("d").contains("d.xml")); // what it is about
        named.setFolder(folder.filePath("b.xml/x"));
        QVERIFY(!named.saved("a").isEmpty());
        named.restore("a"); // no one asks why
        QCOMPARE(named.names(), QStringList());
    }

    // A folder that hangs holds up nobody, not even who goes.
    void hangingWork() {
        const auto gate = std::make_shared<QSemaphore>();
        const auto done = std::make_shared<QSemaphore>();
        int told = 0;
        const auto answer = [&told](const FileQueue::Outcome& outcome) {
            told += int(outcome.names.size());
        };
        const auto hang = [gate, done] {
            gate->acquire();
            done->release();
            return FileQueue::Outcome{{}, {}, {QStringLiteral("one")}, {}};
        };
        auto queue = std::make_unique<FileQueue>();
        for (int i = 0; i < 3; ++i)
            queue->add(hang, answer);
        settle();
        QCOMPARE(told, 0);
        gate->release();
        QTRY_COMPARE(told, 1);
        queue.reset();
        gate->release(2);
        done->acquire(3);
        settle();
        QCOMPARE(told, 1);
    }

    // What was begun is done in its order, whatever becomes of who began it.
    void meanwhile() {
        const QTemporaryDir folder;
        Workspace workspace;
        workspace.pane({"a"});
        auto named = std::make_unique<Named>(&workspace);
        named->setFolder(folder.path());
        int told = 0;
        named->save("one", [&told](const QString&) { ++told; });
        named->rename("one", "two", [&told](const QString&) { ++told; });
        named.reset();
        QTRY_VERIFY(QFile::exists(folder.filePath("two.xml")));
        QVERIFY(!QFile::exists(folder.filePath("one.xml")));
        settle();
        QCOMPARE(told, 0);

        // What a folder has is not taken for what the next one has.
        auto* last = new Named(&workspace);
        last->setFolder(folder.path());
        last->setCurrent("TWO");
        QCOMPARE(last->current(), QString());
        QTRY_COMPARE(last->current(), QString("two"));
        last->refresh();
        last->setFolder(folder.filePath("none"));
        QCOMPARE(last->names() + QStringList(last->current()), QStringList(QString()));
        QCOMPARE(last->saved("three"), QString());
        QCOMPARE(last->names(), QStringList("three"));
        last->setCurrent("two");
        QCOMPARE(last->current(), QString());

        // One that is told may destroy it.
        const QPointer<Named> alive(last);
        last->restore("three", [last](const QString&) { delete last; });
        QTRY_VERIFY(!alive);
        settle();
    }

    void menu() {
        const QTemporaryDir folder;
        Workspace workspace;
        workspace.pane({"a"});
        show(workspace);
        Named named(&workspace);
        named.setFolder(folder.path());
        NamedWorkspacesMenu menu(&workspace);
        QVERIFY(menu.actions().isEmpty());
        menu.setWorkspaces(&named);
        // The entries change once the folder has been read again.
        const auto choose = [&menu](const QString& text, const QString& inside = QString()) {
            Q_EMIT menu.aboutToShow();
            QAction* action = nullptr;
            const auto isThere = [&] {
                action = entry(menu, text);
                if (action && !inside.isEmpty())
                    action = entry(*action->menu(), inside);
                return action != nullptr;
            };
            if (!QTest::qWaitFor(isThere))
                return false;
            action->trigger();
            return true;
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
            QMessageBox* box = nullptr;
            if (QTest::qWaitFor([&] { return (box = shown<QMessageBox>(workspace)) != nullptr; }))
                box->buttons().at(button)->click();
            return box != nullptr;
        };

        QVERIFY(choose("Save As...") && answer("One & two"));
        QVERIFY(choose("Save As...") && answer("x"));
        QTRY_COMPARE(named.current(), QString("x"));
        workspace.pane({"b"});
        QVERIFY(choose("One  two")); // the ampersands are gone with the mnemonics
        QTRY_COMPARE(named.current(), QString("One & two"));
        QCOMPARE(workspace.docks().size(), 1);
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
        QTRY_COMPARE(named.names(), QStringList("One & two"));
        settle();
        QCOMPARE(menu.findChildren<QMenu*>().size(), 2); // those of before are gone
    }
};

KXUI_TEST(NamedWorkspacesTest);
#include "NamedWorkspacesTest.moc"
