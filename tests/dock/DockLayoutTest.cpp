#include "Workspace.h"

#include <KxUI/dock/DockGeometry_p.h>
#include <KxUI/dock/DockLayout_p.h>
#include <KxUI/dock/DockPlaceHolder.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

using namespace Kestrel::UI;
using namespace Kestrel::Test;

namespace {

const char* const Example = R"(<?xml version="1.0" encoding="UTF-8"?>
<layout version="1.0">
    <window x="10" y="20" w="700" h="500" screen="0">
        <splitter orientation="1">
            <split size="300"/>
            <dock id="dock1" activePageId="b">
                <page id="a" layout="zoom=2"/>
                <page id="b"/>
            </dock>
            <split size="396" stretch="1"/>
            <splitter orientation="2">
                <split size="200"/>
                <dock id="dock2" hideTitles="1" activePageId="c">
                    <page id="c"/>
                </dock>
                <split size="296"/>
                <dock id="dock3"/>
            </splitter>
        </splitter>
    </window>
    <window x="40" y="50" w="200" h="150" screen="0">
        <splitter orientation="2">
            <split size="150"/>
            <dock id="" activePageId="d">
                <page id="d"/>
            </dock>
        </splitter>
    </window>
</layout>
)";

/** For a comparison that names the first line that differs. Which pane has the focus depends on
    what window is active. */
QStringList lines(QByteArray document) {
    return QString(document.replace(" focus=\"true\"", "")).split('\n');
}

QByteArray wrapped(const QByteArray& contents) {
    return "<layout version=\"1.0\"><window x=\"0\" y=\"0\" w=\"400\" h=\"300\" screen=\"0\">" +
           contents + "</window></layout>";
}

LayoutReading parsed(QByteArray document) {
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return readLayout(&buffer);
}

/** A restore that fails shows a box; answers it and returns its text. */
QString boxText(const std::function<void()>& action) {
    QString text;
    QTimer timer;
    timer.setInterval(10);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            text = box->windowTitle() + "|" + box->text();
            box->button(QMessageBox::Ok)->click();
        }
    });
    timer.start();
    action();
    return text;
}

} // namespace

class DockLayoutTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theStatedFormComesBackByteForByte() {
        Workspace workspace;
        show(workspace);
        QVERIFY(workspace.restored(Example));
        settle();
        SANE(workspace);
        QCOMPARE(lines(workspace.saved()), lines(Example));
        QCOMPARE(workspace.page("a")->m_layoutState, QString("zoom=2"));
        QVERIFY(!workspace.docks().at(1)->titleVisible());
        QVERIFY(workspace.isInLayout("dock3") && !workspace.isInLayout("e"));
        QCOMPARE(workspace.docks().first()->paneIDs(), QStringList({"a", "b"}));
    }

    void unknownThingsAreSkipped() {
        QByteArray document = Example;
        document.replace(
            "<split size=\"300\"/>",
            "<tray><dock id=\"no\"><page/></dock></tray><split size=\"300\" x=\"y\"/>");
        document.replace("<page id=\"b\"/>",
                         "<note/><page id=\"b\"><dock/></page><page id=\"none\"/>");
        Workspace workspace;
        show(workspace);
        QVERIFY(workspace.restored(document));
        settle();
        QCOMPARE(lines(workspace.saved()), lines(Example));
    }

    void savingAgainAndAgainChangesNothing() {
        Workspace workspace;
        show(workspace);
        QByteArray document = Example;
        document.replace("w=\"700\" h=\"500\"", "w=\"5000\" h=\"5000\"");
        document.replace("x=\"40\" y=\"50\"", "x=\"-900\" y=\"-90\" maximized=\"1\"");
        QVERIFY(workspace.restored(document));
        settle();
        const QByteArray first = workspace.saved();
        for (int i = 0; i < 4; ++i) {
            QVERIFY(i % 2 ? workspace.restored(first) : workspace.wholeRestored(first));
            settle();
            const int widgets = int(QApplication::allWidgets().size());
            QCOMPARE(lines(workspace.saved()), lines(first));
            QVERIFY(workspace.wholeRestored(first));
            settle();
            QCOMPARE(QApplication::allWidgets().size(), widgets);
            SANE(workspace);
        }
        QCOMPARE(workspace.floatingWindows().size(), 1);
    }

    void chainsAndExpansionsAreSavedPlain() {
        Workspace workspace;
        Dock* left = workspace.pane({"a"});
        show(workspace);
        Dock* right = left->split(Qt::Horizontal, false);
        right->addWidget(workspace.page("b"), true, false);
        const QByteArray plain = workspace.saved();
        right->setExpanded(true);
        QCOMPARE(workspace.saved(), plain);
        right->setExpanded(false);

        auto* chain = new DockSplitter(Qt::Vertical);
        auto* inner = new DockSplitter(Qt::Horizontal);
        chain->addWidget(inner);
        inner->addWidget(left);
        inner->addWidget(right);
        workspace.rootSplitter()->addWidget(chain);
        settle();
        QCOMPARE(workspace.saved().count("<splitter"), 1);
        SANE(workspace);
    }

    void unwritableTextIsReplaced() {
        Workspace workspace;
        Page* page = workspace.page(QString("tab\t&<") + QChar(1) + QChar(0xD800) + QChar(0xFFFF));
        page->m_layoutState = QString(QChar(0xDC00)) + "x" + QString::fromUcs4(U"\U0001F600", 1);
        Dock* dock = workspace.pane({});
        dock->addWidget(page, true, false);
        const LayoutReading reading = parsed(workspace.saved());
        QVERIFY(!reading.error);
        const auto& splitter = reading.layout.windows.front().splitters.front();
        const auto& pane = std::get<LayoutPane>(splitter.children.front().value);
        const QString bad(QChar::ReplacementCharacter);
        QCOMPARE(pane.pages.first().id, "tab\t&<" + bad + bad + bad);
        QCOMPARE(pane.pages.first().state, bad + "x" + QString::fromUcs4(U"\U0001F600", 1));

        QBuffer closed;
        QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QBuffer): device not open");
        QVERIFY(!writeLayout(&closed, Layout()));
    }

    void focusIsMarkedAndRead() {
        Workspace workspace;
        workspace.pane({"a"});
        workspace.pane({"b"});
        QBuffer buffer;
        buffer.open(QIODevice::ReadWrite);
        QVERIFY(workspace.saveLayout(&buffer, workspace.page("b")));
        QCOMPARE(buffer.data().count("focus=\"true\""), 1);
        buffer.seek(0);
        QVERIFY(DockMainWindow::IsLayoutValid(&buffer));
        QCOMPARE(buffer.pos(), qint64(0));
        QVERIFY(workspace.restoreLayout(&buffer, true));
        QCOMPARE(workspace.getFocusPage(), QString("b"));
    }

    void refused_data() {
        const Columns<QByteArray, QString> row("document", "reason");
        const QString foreign = "The file is not a Kestrel panel layout version 1.0 file.";
        const QString cut = "Premature end of document.";
        const QString tooMany = "The layout has too many elements.";
        const auto repeated = [](const char* text, int times) {
            return QByteArray(text).repeated(times);
        };
        row("nothing", "", cut);
        row("other root", "<scene version=\"1.0\"/>", foreign);
        row("other version", "<layout version=\"2.0\"/>", foreign);
        row("cut", QByteArray(Example).left(300), cut);
        row("doctype", "<!DOCTYPE layout [<!ENTITY a \"b\">]>" + wrapped(""),
            "A document type declaration is not allowed");
        row("nesting", wrapped(repeated("<splitter>", 101) + repeated("</splitter>", 101)),
            "The layout has too many nested splitters.");
        row("strange nesting", wrapped(repeated("<a>", 1001)),
            "Elements are nested more than 1000 deep");
        row("panes", wrapped("<splitter>" + repeated("<dock/>", 10001) + "</splitter>"), tooMany);
        row("windows", "<layout version=\"1.0\">" + repeated("<window/>", 10001) + "</layout>",
            tooMany);
        row("size", repeated("\n", int(LayoutBounds.bytes) + 1), "The file is larger than 64 MiB");
    }
    void refused() {
        QFETCH(QByteArray, document);
        Workspace workspace;
        workspace.pane({"a", "b"});
        workspace.addNewFloatingDock(workspace.page("c"));
        const QByteArray before = workspace.saved();
        DockLayoutError error;
        QVERIFY(!workspace.wholeRestored(document, &error));
        QTEST(error.reason, "reason");
        QVERIFY(error.line > 0 && error.column >= 0);
        QCOMPARE(workspace.saved(), before);
        SANE(workspace);
    }

    void aFailedRestoreKeepsWhatItGot() {
        Workspace workspace;
        Dock* old = workspace.pane({"x"});
        workspace.addNewFloatingDock(workspace.page("y"));
        const QPointer<DockWindow> oldWindow(workspace.floatingWindows().first());
        show(workspace);
        const QByteArray cut =
            QByteArray(Example).left(QByteArray(Example).indexOf("<dock id=\"dock3"));
        bool restored = true;
        const QString text = boxText([&] { restored = workspace.restored(cut); });
        QVERIFY(!restored);
        QCOMPARE(text, QString("Dock Layout|Parse error at line %1, column %2:\n%3")
                           .arg(parsed(cut).error.line)
                           .arg(parsed(cut).error.column)
                           .arg("Premature end of document."));
        settle();
        QCOMPARE(workspace.docks().size(), 2);
        QVERIFY(!old->isVisible());
        QVERIFY(oldWindow && oldWindow->isVisible());
        QVERIFY(workspace.floatingWindows().isEmpty());
        SANE(workspace);
        QWidget* oldRoot = old->window();
        delete oldRoot;
    }

    /** Windows of the arrangement before are in no list any more. */
    void leftoversOfAFailedRestoreMayOutliveTheWorkspace() {
        auto workspace = std::make_unique<Workspace>();
        std::unique_ptr<DockWindow> window(workspace->addNewFloatingDock(workspace->page("y")));
        window->setParent(nullptr);
        const std::unique_ptr<QWidget> oldRoot(workspace->rootSplitter());
        boxText([&] { workspace->restored("<layout"); });
        workspace.reset();
        QVERIFY(!window->controller());
    }

    void aWholeRestoreKeepsPages() {
        Workspace workspace;
        workspace.pane({"a", "extra"});
        Dock* dock = workspace.pane({"c"});
        DockWindow* window = dock->controller()->addNewFloatingDock(workspace.page("d"));
        show(workspace);
        const QPointer<DockWindow> oldWindow(window);
        const QList<QWidget*> before = {workspace.page("a"), workspace.page("c"),
                                        workspace.page("d"), workspace.page("extra")};
        QSignalSpy removed(&workspace, &DockMainWindow::widgetRemoved);
        workspace.m_created = 0;
        // From inside a window that the restore takes away.
        QTimer::singleShot(0, oldWindow, [&] { QVERIFY(workspace.wholeRestored(Example)); });
        settle();
        QVERIFY(!oldWindow);
        QCOMPARE(workspace.m_created, 1);
        QCOMPARE(removed.size(), 1);
        QCOMPARE(lines(workspace.saved()), lines(Example));
        for (QWidget* page : before)
            QCOMPARE(workspace.m_pages[page->objectName()].data(), page);
        QVERIFY(!workspace.page("extra")->parentWidget());
        SANE(workspace);
    }

    void focusAndHiddenTitlesStay() {
        Workspace workspace;
        workspace.setHideSingleTabs(true);
        workspace.resize(600, 400);
        show(workspace);
        workspace.pane({"a", "b"})->setTitleVisible(false);
        workspace.pane({"c"})->setTitleVisible(true);
        const QByteArray layout = workspace.saved();
        QVERIFY(workspace.restored(layout));
        QCOMPARE(workspace.saved(), layout);
        workspace.page("c")->setFocus();
        const QByteArray focused = workspace.saved();
        QVERIFY(workspace.wholeRestored(focused));
        settle();
        QVERIFY(workspace.page("c")->hasFocus());
        QCOMPARE(workspace.saved(), focused);
    }

    void emptyBranchesAreLeftOut() {
        Workspace workspace;
        QVERIFY(workspace.restored(wrapped("<splitter><split size=\"10\"/><splitter><splitter/>"
                                           "</splitter><split size=\"20\"/><dock/></splitter>")));
        SANE(workspace);
        QCOMPARE(workspace.rootSplitter()->count(), 1);
        // A page named twice is in one place.
        QVERIFY(workspace.wholeRestored(wrapped(
            "<splitter><dock><page id=\"a\"/></dock><dock><page id=\"a\"/></dock></splitter>")));
        SANE(workspace);
        QCOMPARE(workspace.docks().size(), 2);
    }

    void pagesMayRestoreAndDestroyWhileTheyAreMade() {
        class Meddler : public Workspace {
        public:
            QWidget* createPage(QString& id) override {
                if (id == "b")
                    m_nested = restored(Example) || wholeRestored(Example);
                QCoreApplication::processEvents();
                if (id == "c")
                    delete m_pages["a"];
                return Workspace::createPage(id);
            }
            bool m_nested = false;
        } workspace;
        show(workspace);
        QVERIFY(workspace.restored(Example));
        QVERIFY(!workspace.m_nested);
        settle();
        SANE(workspace);
        QCOMPARE(names(workspace.docks().first()), QStringList({"b"}));
    }

    void namesakesAreWarnedOf() {
        Workspace workspace;
        Dock* dock = workspace.pane({"a"});
        Page first{QString()}, second{QString()};
        dock->addWidget(&first, true, false);
        workspace.saved();
        dock->addWidget(&second, true, false);
        QTest::ignoreMessage(QtWarningMsg,
                             "DockMainWindow::saveLayout - 2 pages have the object name \"\"; the "
                             "layout can bring back one");
        workspace.saved();
    }

    void placeHoldersStandForUnknownPages() {
        struct Late : Workspace {
            QWidget* createPage(QString& id) override {
                return m_knows ? Workspace::createPage(id) : DockMainWindow::createPage(id);
            }
            bool m_knows = false;
        } workspace;
        QByteArray document = Example;
        for (int i = 0; i < 3; ++i) {
            QBuffer buffer(&document);
            buffer.open(QIODevice::ReadOnly);
            QVERIFY(workspace.restoreLayout(&buffer, false));
            settle();
        }
        QCOMPARE(workspace.placeHolders().size(), 4);
        const auto widgets = QApplication::allWidgets();
        QCOMPARE(std::count_if(widgets.begin(), widgets.end(),
                               [](QWidget* w) { return qobject_cast<DockPlaceHolder*>(w); }),
                 4);
        // They are no pages to keep: the host is asked again.
        workspace.m_knows = true;
        QVERIFY(workspace.wholeRestored(document));
        settle();
        QVERIFY(workspace.placeHolders().isEmpty());
        QCOMPARE(workspace.m_created, 4);
        SANE(workspace);
    }

    void windowsArePlanned() {
        const QRect one(0, 20, 1000, 780), two(1000, 0, 800, 600), small(50, 60, 300, 200);
        struct Row {
            SavedWindow saved; // the rectangle, screen, maximized and full screen
            QVector<QRect> areas;
            QRect rect;
            QSize frame = QSize(4, 24);
            bool fullScreen = false;
        };
        const QSize none(0, 0), some(4, 24);
        const Row rows[] = {
            {{small, 0, false, false}, {one}, small},
            {{{50, 0, 300, 200}, 0, false, false}, {one}, {50, 20, 300, 200}}, // below the top bar
            // Too tall and wide, by the frame only, just fitting.
            {{{0, 20, 3000, 3000}, 0, false, false}, {one}, {0, 20, 996, 756}},
            {{{0, 20, 998, 770}, 0, false, false}, {one}, {0, 20, 996, 756}},
            {{{0, 20, 996, 756}, 0, false, false}, {one}, {0, 20, 996, 756}},
            {{{100, 20, 1500, 500}, 0, false, false}, {one, two}, {100, 20, 1500, 500}},
            {{{1000, 0, 1500, 900}, 1, true, false}, {one, two}, {1000, 0, 796, 576}},
            // Off to the right and to the left.
            {{{5000, 5000, 300, 200}, 0, false, false}, {one}, {700, 600, 300, 200}, none},
            {{{-5000, 100, 300, 200}, 0, false, false}, {one}, {0, 100, 300, 200}, none},
            // On the second screen, which is gone then.
            {{{1100, 50, 300, 200}, 1, false, false}, {one, two}, {1100, 50, 300, 200}},
            {{{1100, 50, 300, 200}, 1, false, false}, {one}, {700, 50, 300, 200}, none},
            {{small, -3, false, false}, {one, two}, small},
            {{{0, 0, 1000, 800}, 0, false, true}, {one}, {166, 150, 666, 520}, some, true},
            {{{1000, 0, 800, 600}, 1, false, true}, {one}, {166, 150, 666, 520}},
            {{{}, 0, false, false}, {one}, {0, 20, 0, 0}},
            {{small, 0, false, true}, {}, small},
        };
        for (const auto& [saved, areas, rect, frame, fullScreen] : rows) {
            const WindowPlan plan = planWindow(saved, false, areas, frame);
            QCOMPARE(plan.rect, rect);
            QCOMPARE(plan.fullScreen, fullScreen);
            // Saved and planned again, it does not move.
            SavedWindow again = saved;
            again.rect = plan.rect;
            if (!saved.fullScreen)
                QCOMPARE(planWindow(again, false, areas, frame).rect, plan.rect);
        }
        const SavedWindow filling{small, 0, false, false};
        QCOMPARE(planWindow(filling, true, {one}, some).rect, QRect(0, 20, 996, 756));
    }
};

KXUI_TEST(DockLayoutTest);
#include "DockLayoutTest.moc"
