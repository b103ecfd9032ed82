#include "WorkspaceFuzzer.h"

#include "ModelTree.h"

#include <KxUI/dock/DockDrag_p.h>

#include <dock/Mouse.h>
#include <dock/Workspace.h>

#include <QApplication>
#include <QMessageBox>
#include <QStackedWidget>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <random>

#include <sys/time.h>

using namespace Kestrel::UI;
using namespace Kestrel::Test;

namespace {

/** Random operations on a workspace and on its model, side by side. */
class Fuzzer {
public:
    /** A number below its argument, which is 2 or more. */
    using Numbers = std::function<int(int)>;

    explicit Fuzzer(Numbers numbers)
        : m_numbers(std::move(numbers)) {
        m_workspace.setSplitPanelsByDragging(chance(2));
        m_workspace.setTabsAreClosable(chance(3));
        m_workspace.setHideSingleTabs(chance(5));
        m_workspace.resize(400, 300); // there is more to paint in a larger one, not more to find
        m_workspace.show();
        addPane();
    }

    /** One operation; returns what is wrong after it, empty when all is well. */
    QString step() {
        m_done.clear();
        if (m_model.paneCount() == 0)
            addPane();
        else if (m_model.paneCount() > 14)
            closePane();
        else
            (this->*pick(operations()))();
        settle();
        settle();
        const QString trouble = m_troubleMeanwhile + checkSanity(m_workspace);
        if (!trouble.isEmpty())
            return m_done + ": " + trouble;
        if (describe(m_workspace) != m_model.toString())
            return m_done + ":\n" + describe(m_workspace) + "instead of\n" + m_model.toString();
        return {};
    }

private:
    using Operation = void (Fuzzer::*)();
    static const QVector<Operation>& operations() {
        static const QVector<Operation> all = {
            &Fuzzer::addPage,   &Fuzzer::addPage,   &Fuzzer::addPage,    &Fuzzer::addPane,
            &Fuzzer::closeTab,  &Fuzzer::soloTab,   &Fuzzer::closePane,  &Fuzzer::refuse,
            &Fuzzer::split,     &Fuzzer::split,     &Fuzzer::floatTab,   &Fuzzer::floatPane,
            &Fuzzer::drag,      &Fuzzer::drag,      &Fuzzer::drag,       &Fuzzer::dragIntoTrouble,
            &Fuzzer::reorder,   &Fuzzer::rename,    &Fuzzer::expand,     &Fuzzer::hideTitles,
            &Fuzzer::save,      &Fuzzer::restore,   &Fuzzer::deletePage, &Fuzzer::closeWindow,
            &Fuzzer::walkFocus, &Fuzzer::transpose,
        };
        return all;
    }

    int number(qsizetype below) { return below <= 1 ? 0 : m_numbers(int(below)); }
    bool chance(int of) { return number(of) == 0; }
    template <class Item>
    Item pick(const QVector<Item>& list) {
        return list.at(number(list.size()));
    }
    QString pick(const QStringList& list) { return list.at(number(list.size())); }
    int anyPane() { return number(m_model.paneCount()); }
    Dock* dock(int pane) { return m_workspace.docks().at(pane); }
    /** A pane that has a page, -1 when there is none. */
    int paneWithPage() {
        const QStringList placed = m_model.placed();
        return placed.isEmpty() ? -1 : m_model.paneOf(pick(placed));
    }
    bool refuses(const QString& name) { return m_workspace.page(name)->m_refuses; }
    void say(const QString& text) { m_done += text; }

    void addPane() {
        say("add pane");
        m_workspace.pane({});
        m_model.addPane();
    }
    void addPage() {
        const QString name = QString("p%1").arg(number(16));
        const int pane = anyPane();
        say("add page " + name);
        if (m_model.placed().contains(name))
            return;
        Page* page = m_workspace.page(name);
        // Closing takes the attribute away.
        page->setAttribute(Qt::WA_DeleteOnClose, name.endsWith('3'));
        dock(pane)->addWidget(page, chance(2), chance(4));
        m_model.insert(pane, -1, name);
    }
    void closeTab() {
        const int pane = paneWithPage();
        if (pane < 0)
            return;
        const int index = number(m_model.pages(pane).size());
        const QString name = m_model.pages(pane).at(index);
        say("close tab " + name);
        dock(pane)->closeTab(index);
        if (refuses(name))
            return;
        m_model.take(name);
        m_model.closeIfEmpty(pane);
    }
    void soloTab() {
        const int pane = paneWithPage();
        if (pane < 0)
            return;
        say("solo tab");
        const QString kept = dock(pane)->currentWidget()->objectName();
        dock(pane)->closeInactiveTabs();
        const QStringList names = m_model.pages(pane);
        for (const QString& name : names) {
            if (name != kept && !refuses(name))
                m_model.take(name);
        }
    }
    void closePane() {
        const int pane = anyPane();
        say("close pane");
        dock(pane)->close();
        closePaneInModel(pane);
    }
    void closePaneInModel(int pane) {
        bool stays = false;
        const QStringList names = m_model.pages(pane);
        for (const QString& name : names) {
            if (refuses(name))
                stays = true;
            else
                m_model.take(name);
        }
        if (stays)
            return;
        if (m_model.isFloating(pane) && m_model.isAlone(pane))
            m_model.removeWindowOf(pane);
        else
            m_model.removePane(pane);
    }
    void closeWindow() {
        const int pane = anyPane();
        if (!m_model.isFloating(pane))
            return;
        say("close window");
        dock(pane)->window()->close();
        m_model.removeWindowOf(pane);
    }
    void refuse() {
        const QString name = QString("p%1").arg(number(16));
        say("refuse");
        m_workspace.page(name)->m_refuses = chance(3);
    }
    void split() {
        const int pane = anyPane();
        const auto orientation = chance(2) ? Qt::Horizontal : Qt::Vertical;
        const bool before = chance(2);
        say("split");
        dock(pane)->split(orientation, before);
        m_model.split(pane, orientation, before);
    }
    void floatTab() {
        const int pane = paneWithPage();
        if (pane < 0)
            return;
        say("float tab");
        const QString name = dock(pane)->currentWidget()->objectName();
        dock(pane)->floatActiveTab();
        m_model.take(name);
        m_model.addWindow({name});
        m_model.closeIfEmpty(pane);
    }
    void floatPane() {
        const int pane = anyPane();
        say("float pane");
        dock(pane)->floatDock();
        QStringList pages = m_model.pages(pane);
        for (const QString& name : qAsConst(pages))
            m_model.take(name);
        std::reverse(pages.begin(), pages.end());
        m_model.addWindow(pages);
    }

    /** Takes a tab out by mouse; the pane it came from and the page's name, or -1. */
    int tearOff(QString& name) {
        const int pane = paneWithPage();
        if (pane < 0 || !dock(pane)->tabBar()->isVisible())
            return -1;
        const int index = number(m_model.pages(pane).size());
        name = m_model.pages(pane).at(index);
        Mouse(dock(pane)).tearOff(index);
        if (!DockDragSession::instance().isActive())
            return -1;
        m_model.take(name);
        return pane;
    }
    QPoint somewhere() {
        const Dock* over = dock(anyPane());
        return over->mapToGlobal(QPoint(number(over->width()), number(over->height())));
    }
    void drag() {
        QString name;
        const int source = tearOff(name);
        if (source < 0)
            return;
        DockDragSession& session = DockDragSession::instance();
        Mouse mouse(dock(source));
        for (int i = 0; i < 2; ++i) {
            mouse.move(somewhere());
            m_troubleMeanwhile += checkSanity(m_workspace);
        }
        const QPoint at = chance(5) ? QPoint(-900, -900) : somewhere();
        mouse.move(at);
        const int target = int(m_workspace.docks().indexOf(session.target()));
        const DockDropZone zone = session.zone();
        const int index = zone == DropCentre ? session.dropIndex() : -1;
        const bool floating = target < 0 || chance(5);
        say(QString("drag %1 to %2 zone %3").arg(name).arg(target).arg(zone));
        mouse.release(at, floating ? Qt::ControlModifier : Qt::NoModifier);
        if (floating) {
            m_model.addWindow({name});
            m_model.closeIfEmpty(source);
        } else {
            m_model.drop(name, source, target, zone, index);
        }
    }
    void dragIntoTrouble() {
        QString name;
        const int source = tearOff(name);
        if (source < 0)
            return;
        DockDragSession& session = DockDragSession::instance();
        Mouse mouse(dock(source));
        mouse.move(somewhere());
        const int trouble = number(4);
        say(QString("trouble %1 while dragging %2").arg(trouble).arg(name));
        if (trouble == 0) {
            delete m_workspace.m_pages.take(name);
            m_model.closeIfEmpty(source);
        } else if (trouble == 1 && !m_saved.isEmpty()) {
            m_workspace.wholeRestored(m_saved);
            m_model = m_savedModel;
        } else if (trouble == 2) {
            dock(source)->close();
            if (session.isActive()) { // refused
                const QStringList names = m_model.pages(source);
                for (const QString& other : names) {
                    if (!refuses(other))
                        m_model.take(other);
                }
                session.cancel();
                // Pages on the way to their end still count in the strip.
                settle();
                settle();
                m_model.insert(source, indexIn(name), name);
            } else {
                m_model.addWindow({name});
                closePaneInModel(source);
            }
        } else {
            session.cancel();
            m_model.insert(source, indexIn(name), name);
        }
    }
    int indexIn(const QString& name) {
        const Dock* home = Dock::dockForWidget(m_workspace.page(name));
        return home ? home->stack()->indexOf(m_workspace.page(name)) : -1;
    }

    void reorder() {
        const int pane = paneWithPage();
        if (pane < 0)
            return;
        const QString name = pick(m_model.pages(pane));
        const int to = number(m_model.pages(pane).size());
        say("reorder");
        dock(pane)->insertWidget(to, m_workspace.page(name));
        m_model.take(name);
        m_model.insert(pane, to, name);
    }
    void rename() {
        const QString name = QString("p%1").arg(number(16));
        say("rename");
        m_workspace.page(name)->setWindowTitle(QString(number(40), 'x') + QChar(number(0xFFFF)));
        const auto all = m_workspace.docks();
        for (Dock* each : all)
            each->updateTitles();
    }
    void expand() {
        say("expand");
        Dock* each = dock(anyPane());
        each->setExpanded(!each->isExpanded());
    }
    void hideTitles() {
        say("hide titles");
        Dock* each = dock(anyPane());
        each->setTitleVisible(!each->titleVisible());
    }
    void walkFocus() {
        say("walk focus");
        dock(anyPane())->setFocus();
        if (chance(2))
            m_workspace.nextTab();
        else
            m_workspace.prevDock();
    }
    void transpose() {
        // Twice, since the model does not know it.
        say("transpose");
        Dock* each = dock(anyPane());
        each->transposeDock();
        each->transposeDock();
    }
    void save() {
        say("save");
        m_saved = m_workspace.saved();
        m_savedModel = m_model.collapsed();
    }
    void restore() {
        if (m_saved.isEmpty())
            return;
        const bool whole = chance(2);
        say(whole ? "restore whole" : "restore");
        if (!(whole ? m_workspace.wholeRestored(m_saved) : m_workspace.restored(m_saved)))
            say(" failed");
        m_model = m_savedModel;
    }
    void deletePage() {
        const QString name = QString("p%1").arg(number(16));
        say("delete page " + name);
        delete m_workspace.m_pages.take(name);
        m_model.take(name);
    }

    Numbers m_numbers;
    Workspace m_workspace;
    ModelTree m_model;
    QByteArray m_saved;
    ModelTree m_savedModel;
    QString m_done;
    QString m_troubleMeanwhile;
};

QByteArray damaged(QByteArray document, std::mt19937& random) {
    const auto number = [&](qsizetype below) {
        return int(std::uniform_int_distribution<>(0, int(below) - 1)(random));
    };
    const QList<QByteArray> numbers = {"-1",       "2147483647", "-2147483648", "4294967296",
                                       "16777216", "nan",        "1e9",         ""};
    for (int i = number(4) + 1; i > 0; --i) {
        const int at = number(document.size());
        switch (number(6)) {
        case 0:
            document.truncate(at + 1);
            break;
        case 1:
            document[at] = char(number(256));
            break;
        case 2: { // one more, or one moved element
            QList<QByteArray> rows = document.split('\n');
            const QByteArray row = rows.at(number(rows.size()));
            if (number(2))
                rows.removeOne(row);
            rows.insert(number(rows.size() + 1), row);
            document = rows.join('\n');
            break;
        }
        case 3: { // another number
            const int start = int(document.indexOf('"', at));
            const int end = start < 0 ? -1 : int(document.indexOf('"', start + 1));
            if (end > 0)
                document.replace(start + 1, end - start - 1, numbers.at(number(numbers.size())));
            break;
        }
        case 4:
            document.insert(at, document.mid(number(document.size()), number(200)));
            break;
        default:
            document.remove(at, number(40));
            break;
        }
        if (document.isEmpty())
            break;
    }
    return document;
}

bool isSane(const Workspace& workspace, const QByteArray& document) {
    const QString trouble = checkSanity(workspace);
    if (!trouble.isEmpty())
        std::fprintf(stderr, "%s after\n%s\n", qPrintable(trouble), document.constData());
    return trouble.isEmpty();
}

} // namespace

namespace Kestrel::Fuzz {

QString runOperations(unsigned seed, int steps) {
    std::mt19937 random(seed);
    Fuzzer fuzzer(
        [&](int below) { return int(std::uniform_int_distribution<>(0, below - 1)(random)); });
    for (int i = 0; i < steps; ++i) {
        const QString trouble = fuzzer.step();
        if (!trouble.isEmpty())
            return QStringLiteral("seed %1 step %2, %3").arg(seed).arg(i).arg(trouble);
    }
    return {};
}

QString runOperations(std::string_view bytes) {
    Fuzzer fuzzer([&](int below) {
        int number = 0;
        for (int room = below - 1; room > 0 && !bytes.empty(); room /= 256) {
            number = number * 256 + static_cast<unsigned char>(bytes.front());
            bytes.remove_prefix(1);
        }
        return number % below;
    });
    while (!bytes.empty()) {
        const QString trouble = fuzzer.step();
        if (!trouble.isEmpty())
            return trouble;
    }
    return {};
}

QByteArray sampleLayout() {
    Workspace workspace;
    Dock* first = workspace.pane({"a", "b"}, "one");
    first->split(Qt::Horizontal, false)->addWidget(workspace.page("c"), true, false);
    first->split(Qt::Vertical, true)->addWidget(workspace.page("d"), true, false);
    workspace.page("a")->m_layoutState = "zoom=2";
    workspace.addNewFloatingDock(workspace.page("e"));
    return workspace.saved();
}

int restoreDamaged(const QByteArray& document, unsigned seed, int count) {
    std::mt19937 random(seed);
    Workspace workspace;
    workspace.pane({"a", "b", "x", "y"});
    workspace.show();
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            box->accept();
    });
    answer.start(0);
    for (int i = 0; i < count; ++i) {
        // Ends the process when a document takes longer than its second.
        const itimerval second = {{0, 0}, {1, 0}};
        setitimer(ITIMER_VIRTUAL, &second, nullptr);
        const QByteArray bad = damaged(document, random);
        const QString before = describe(workspace);
        DockLayoutError error;
        const bool restored = workspace.wholeRestored(bad, &error);
        if (!restored && (describe(workspace) != before || !error))
            return 2;
        settle();
        if (!isSane(workspace, bad))
            return 3;
        for (const char* name : {"a", "b", "x", "y"}) {
            if (!workspace.m_pages.value(name))
                return 4;
        }
        if (i % 4 == 0) {
            workspace.restored(bad);
            settle();
            if (!isSane(workspace, bad))
                return 5;
            workspace.wholeRestored(document);
            for (const char* name : {"x", "y"})
                workspace.docks().first()->addWidget(workspace.page(name), false, false);
            settle();
        }
    }
    return 0;
}

} // namespace Kestrel::Fuzz
