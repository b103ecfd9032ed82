// A folder as a panel: it never waits for the disk, remembers how it looks, and tells what was chosen.

#include <KxUI/browse/FileBrowser.h>

#include <QApplication>
#include <QMenu>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);

    FileBrowser browser;
    browser.setSettingsKey(QStringLiteral("ExampleBrowser"));
    browser.setShowsFavorites(false); // places would stand beside the rows
    browser.setNameFilters(
        {QStringLiteral("Images (*.exr *.dpx *.tif)"), QStringLiteral("All (*)")});
    browser.setCurrentNameFilter(1);

    QObject::connect(&browser, &FileBrowser::activated, &browser, [&](const FileInfo& file) {
        // A path is bytes: what is opened need not be what a text can say.
        const QByteArray path =
            file.isSequence() ? file.rawFramePath(file.startFrame()) : file.rawAbsoluteFilePath();
        browser.setWindowTitle(QString::fromUtf8(path));
    });
    browser.setContextMenuHook([](QMenu& menu, const std::vector<FileInfo>& files) {
        if (files.size() == 2)
            menu.addAction(QStringLiteral("Compare"));
    });

    browser.setFolderText(QCoreApplication::arguments().value(1, QStringLiteral(".")));
    browser.select("render.1001.exr"); // when it is listed; its sequence has the row

    browser.resize(820, 320);
    browser.show();
    return QApplication::exec();
}
