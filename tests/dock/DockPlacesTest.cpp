#include "Mouse.h"
#include "Workspace.h"

#include <KxUI/dock/TitleBarButton.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

using namespace Kestrel::UI;
using namespace Kestrel::Test;

using Leave = void (*)(Workspace& workspace, Dock* dock);
Q_DECLARE_METATYPE(Leave)

namespace {

/** Side by side: "left", above one another "top" and "bottom". */
struct Stage : Workspace {
    Stage() {
        setEmptiedPanesClose(true);
        rootSplitter()->setOrientation(Qt::Horizontal);
        Dock* left = pane({"left"});
        Dock* top = pane({"top"});
        Dock* bottom = top->split(Qt::Vertical, false);
        bottom->addWidget(page("bottom"), true, false);
        left->setObjectName("a");
        top->setObjectName("b");
        bottom->setObjectName("c");
        Kestrel::Test::show(*this);
        page("left")->setFocus();
        settle();
    }
    Dock* of(const QString& name) { return Dock::dockForWidget(page(name)); }
};

} // namespace

class DockPlacesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void savedWithoutEmptiedPanes() {
        Stage stage;
        stage.of("top")->closeActiveTab();
        const QByteArray layout = stage.saved(); // before the event loop has a turn
        QVERIFY2(!layout.contains("id=\"b\"") && layout.contains("id=\"c\""), layout);
        settle();
        QCOMPARE(stage.saved(), layout);
    }

    void emptiedPanesCloseAndComeBack_data() {
        const Columns<QString, Leave> row("page", "leave");
        for (const char* page : {"left", "top", "bottom"}) {
            const auto how = [&](const char* name, Leave leave) {
                row(QByteArray(page) + ", " + name, page, leave);
            };
            how("closed", [](Workspace&, Dock* dock) { dock->closeActiveTab(); });
            how("floated", [](Workspace&, Dock* dock) { dock->floatActiveTab(); });
            how("pane closed", [](Workspace&, Dock* dock) { dock->close(); });
            how("dragged away", [](Workspace&, Dock* dock) {
                Mouse mouse(dock);
                mouse.tearOff(0);
                mouse.release({5000, 5000});
            });
            how("while expanded", [](Workspace&, Dock* dock) {
                dock->setExpanded(true);
                dock->closeActiveTab();
            });
            how("taken by the host", [](Workspace& workspace, Dock* dock) {
                workspace.page(dock->currentWidget()->objectName())->setParent(nullptr);
            });
        }
    }
    void emptiedPanesCloseAndComeBack() {
        QFETCH(QString, page);
        QFETCH(Leave, leave);
        Stage stage;
        stage.showPage(stage.page(page));
        settle();
        const QByteArray before = stage.saved();
        leave(stage, stage.of(page));
        QTRY_COMPARE(stage.panes().size(), 2);
        SANE(stage);
        if (Dock* floating = stage.of(page))
            floating->removeWidget(stage.page(page));
        stage.page(page)->setParent(nullptr);
        QTRY_COMPARE(stage.docks().size(), 2);
        stage.showPage(stage.page(page));
        settle();
        QCOMPARE(stage.saved(), before);
        QVERIFY(stage.page(page)->isVisible());
        SANE(stage);
    }

    void panesThatStay() {
        Stage stage;
        Dock* fresh = stage.of("top")->split(Qt::Horizontal, false); // made without pages
        settle();
        QVERIFY(stage.docks().contains(fresh));
        fresh->findChildren<TitleBarButton*>().last()->click();
        QCOMPARE(stage.docks().size(), 3);
        // The last one of the main window, and any without the option.
        for (const char* name : {"top", "left", "bottom"})
            stage.of(name)->closeActiveTab();
        settle();
        QCOMPARE(stage.docks().size(), 1);
        stage.docks().first()->findChildren<TitleBarButton*>().last()->click();
        settle();
        QCOMPARE(stage.docks().size(), 1);
        stage.setEmptiedPanesClose(false);
        Dock* other = stage.pane({"x"});
        other->closeActiveTab();
        settle();
        QCOMPARE(stage.docks().size(), 2);
        SANE(stage);
    }

    void placesThatAreGone() {
        Stage stage;
        stage.of("bottom")->closeActiveTab();
        settle();
        stage.of("left")->addWidget(stage.page("top"), true, false);
        settle();
        QCOMPARE(stage.docks().size(), 1);
        stage.showPage(stage.page("bottom")); // its splitter has gone
        QCOMPARE(stage.of("bottom"), stage.of("left"));
        stage.showPage(stage.page("new"));
        QCOMPARE(stage.of("new"), stage.of("left"));
        stage.showPage(nullptr);
        Workspace empty;
        empty.showPage(empty.page("y"));
        QCOMPARE(empty.docks().size(), 1);
        SANE(stage);
    }

    void shownPagesHaveRoom() {
        Stage stage;
        stage.of("left")->setExpanded(true);
        settle();
        stage.showPage(stage.page("top"));
        settle();
        QVERIFY(!stage.of("left")->isExpanded() && stage.of("top")->width() > 50);
        qobject_cast<QSplitter*>(stage.of("top")->parentWidget())->setSizes({0, 100});
        stage.showPage(stage.page("top"));
        settle();
        QVERIFY(stage.of("top")->height() > 50);
    }

    void dragsAreToldOf() {
        Stage stage;
        const QSignalSpy told(&stage, &DockMainWindow::dragActiveChanged);
        Workspace other;
        const QSignalSpy toldElsewhere(&other, &DockMainWindow::dragActiveChanged);
        for (const bool cancelled : {true, false}) {
            Mouse mouse(stage.of("top"));
            mouse.tearOff(0);
            QVERIFY(stage.isDragActive() && !other.isDragActive());
            settle();
            // The pane waits for its page.
            QCOMPARE(stage.panes().size(), 3);
            if (cancelled)
                QTest::keyClick(&stage, Qt::Key_Escape);
            else
                mouse.release({5000, 5000});
            QVERIFY(!stage.isDragActive());
            QTRY_COMPARE(stage.panes().size(), cancelled ? 3 : 2);
        }
        QTRY_COMPARE(told.count(), 4);
        QCOMPARE(told.at(0).first().toBool(), true);
        QCOMPARE(told.at(1).first().toBool(), false);
        QCOMPARE(toldElsewhere.count(), 0);

        // A host that ends everything when it hears of a drag.
        auto doomed = std::make_unique<Stage>();
        connect(doomed.get(), &DockMainWindow::dragActiveChanged, this, [&] { doomed.reset(); });
        Mouse(doomed->of("top")).tearOff(0);
        QTRY_VERIFY(!doomed);
    }

    // A host that destroys the workspace when it is asked for a pane.
    void panesOfADoomedHost() {
        struct Doomed : Workspace {
            Dock* createDock() override {
                const QPointer<Dock> made(Workspace::createDock());
                if (m_dies)
                    delete this;
                return made;
            }
            bool m_dies = false;
        };
        const QPointer<Doomed> host(new Doomed);
        const QPointer<QWidget> page(new QWidget);
        page->setObjectName("page");
        host->m_dies = true;
        host->showPage(page);
        QVERIFY(!host);
        delete page;
    }
};

KXUI_TEST(DockPlacesTest);
#include "DockPlacesTest.moc"
