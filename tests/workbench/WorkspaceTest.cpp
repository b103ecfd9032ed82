#include "app/MainWindow.h"
#include "workspace/BuiltInLayouts.h"

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/TitleBarButton.h>

#include <support/TestRegistry.h>

#include <functional>

using namespace Kestrel;
using namespace Kestrel::Workbench;
using UI::Dock;

class WorkspaceTest : public QObject {
    Q_OBJECT

private slots:
    void emptiedPane_data();
    void emptiedPane();
    void splitPaneCanBeClosed();

private:
    static Dock* paneOf(MainWindow& window, const char* id) {
        return Dock::dockForWidget(window.page(QLatin1String(id)));
    }

    /** What an arrangement looks like in the file that it is saved to. */
    static QByteArray saved(MainWindow& window) {
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("layout.xml")));
        return window.saveTo(file.fileName()).isEmpty() && file.open(QIODevice::ReadOnly)
                   ? file.readAll()
                   : QByteArray();
    }
};

using Leave = std::function<void(MainWindow&, Dock*)>;
Q_DECLARE_METATYPE(Leave)

void WorkspaceTest::emptiedPane_data() {
    QTest::addColumn<Leave>("leave");
    const auto row = [](const char* name, const Leave& leave) { QTest::newRow(name) << leave; };
    row("close button",
        [](MainWindow&, Dock* dock) { dock->findChildren<UI::TitleBarButton*>().last()->click(); });
    row("close tab", [](MainWindow&, Dock* dock) { dock->closeActiveTab(); });
    row("close pane", [](MainWindow&, Dock* dock) { dock->close(); });
    row("float tab", [](MainWindow&, Dock* dock) { dock->floatActiveTab(); });
    row("float pane", [](MainWindow&, Dock* dock) { dock->floatDock(); });
    row("to another pane", [](MainWindow& window, Dock* dock) {
        paneOf(window, "Viewer")->addWidget(dock->currentWidget(), true, false);
    });
    row("while another is expanded", [](MainWindow& window, Dock* dock) {
        paneOf(window, "Viewer")->setExpanded(true);
        dock->closeActiveTab();
    });
}

// It closes, and what was in it comes back to the same place.
void WorkspaceTest::emptiedPane() {
    QFETCH(Leave, leave);
    MainWindow window(Base::TimeBase(24, false), 1 << 20, Theme::Dark);
    window.show();
    for (const BuiltInLayout& layout : builtInLayouts()) {
        window.arrange(layout);
        window.showPage(QStringLiteral("Viewer"));
        QApplication::processEvents();
        const QByteArray before = saved(window);
        const int panes = int(window.panes().size());
        leave(window, paneOf(window, "Timeline"));
        QTRY_COMPARE(window.panes().size(), panes - 1);
        for (const Dock* dock : window.panes())
            QVERIFY2(dock->width() > 20 && dock->height() > 20, layout.id);
        if (paneOf(window, "Timeline") == paneOf(window, "Viewer"))
            continue; // that is its place now
        window.closePage(QStringLiteral("Timeline"));
        QApplication::processEvents();
        window.showPage(QStringLiteral("Timeline"));
        window.showPage(QStringLiteral("Viewer"));
        QApplication::processEvents();
        QCOMPARE(saved(window), before);
    }
}

void WorkspaceTest::splitPaneCanBeClosed() {
    MainWindow window(Base::TimeBase(24, false), 1 << 20, Theme::Dark);
    window.show();
    const auto before = window.panes();
    paneOf(window, "Viewer")->splitHorizontal();
    QApplication::processEvents();
    const auto split = window.panes();
    QCOMPARE(split.size(), before.size() + 1);
    for (Dock* dock : split) {
        if (!before.contains(dock))
            dock->findChildren<UI::TitleBarButton*>().last()->click();
    }
    QCOMPARE(window.panes(), before);
}

KXUI_TEST(WorkspaceTest);
#include "WorkspaceTest.moc"
