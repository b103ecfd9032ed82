// Layouts restored into a live workspace: a refused one changes nothing, none loses a page of the
// host or leaves the workspace in a state that cannot be.

#include <KxUI/dock/DockLayout_p.h>
#include <KxUI/dock/DockWindow.h>

#include <support/Require.h>
#include <support/Snippets.h>
#include <workspace/ModelTree.h>

#include <dock/Workspace.h>

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

using namespace Kestrel::Fuzz;
using namespace Kestrel::Test;
using namespace Kestrel::UI;

namespace {

const Snippets& snippets() {
    static const Snippets all(
        {"<layout version=\"1.0\"><window x=\"%\" y=\"%\" w=\"%\" h=\"%\" screen=\"0\"><splitter "
         "orientation=\"%\">",
         "</", "<splitter orientation=\"%\">", "<split size=\"%\"/>",
         "<split size=\"%\" stretch=\"%\"/>", "<dock id=\"$\" activePageId=\"$\">",
         "<dock id=\"$\" hideTitles=\"%\" activePageId=\"$\" focus=\"true\">", "<page id=\"$\"/>",
         "<page id=\"$\" layout=\"$\"/>", "<dock id=\"$\"><page id=\"$\"/></dock>",
         "<window x=\"%\" y=\"%\" w=\"%\" h=\"%\" screen=\"%\" maximized=\"%\" fullscreen=\"%\">",
         "<other>", "$"},
        {"a", "b", "c", "x", "y", "none", "", "\u00e9", "&lt;", "&#10;"});
    return all;
}

QByteArray written(const Layout& layout) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    require(writeLayout(&buffer, layout), "a layout can be written");
    return buffer.data();
}

LayoutReading read(QByteArray document) {
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return readLayout(&buffer);
}

void look(const Workspace& workspace) {
    settle();
    const QString trouble = checkSanity(workspace);
    require(trouble.isEmpty(), qPrintable(trouble));
    for (const char* name : {"a", "b", "x", "y"})
        require(workspace.m_pages.value(QLatin1String(name)), "the host's pages live on");
}

void restoreWhole(Workspace& workspace, const QByteArray& document) {
    const QString before = describe(workspace);
    DockLayoutError error;
    if (!workspace.wholeRestored(document, &error))
        require(describe(workspace) == before && error, "a refused layout changes nothing");
    look(workspace);
}

// What was saved is restored as it was saved.
void saveAndRestore(Workspace& workspace) {
    workspace.wholeRestored(workspace.saved());
    const QString before = describe(workspace);
    require(workspace.wholeRestored(workspace.saved()) && describe(workspace) == before,
            "a saved layout comes back");
    look(workspace);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto document = QByteArray::fromStdString(snippets().document(textOf(data, size)));
    const LayoutReading reading = read(document);
    if (!reading.error) {
        const QByteArray plain = written(reading.layout);
        const LayoutReading again = read(plain);
        require(!again.error && written(again.layout) == plain,
                "a layout comes back from its text");
    }

    Workspace workspace;
    workspace.pane({"a", "b", "x", "y"});
    workspace.resize(400, 300);
    workspace.show();
    restoreWhole(workspace, document);
    if (!reading.error && size % 4 == 0)
        saveAndRestore(workspace);
    // A box tells of every error, and boxes take long.
    if (!reading.error || size % 32 == 0) {
        QTimer::singleShot(0, [] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
                box->accept();
        });
        require(workspace.restored(document) == !reading.error, "a box for what cannot be read");
        look(workspace);
    }
    // What stays behind where a layout could be read in part. Windows may own each other.
    QVector<QPointer<QWidget>> rest;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (qobject_cast<DockSplitter*>(window) || qobject_cast<DockWindow*>(window))
            rest.append(window);
    }
    for (const QPointer<QWidget>& window : qAsConst(rest)) {
        if (window != &workspace)
            delete window;
    }
    return 0;
}
