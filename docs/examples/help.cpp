// A help button that opens the page of a node in the browser, and a link in pages that comes back.

#include <KxUI/help/HelpManager.h>

#include <QApplication>
#include <QDesktopServices>
#include <QPushButton>
#include <QUrl>

#include <cstdio>

using namespace Kestrel::UI;

namespace {

// A page sends a POST request, and the host does what it asks for.
void runCommand(std::string command, std::string argument) {
    std::printf("%s %s\n", command.c_str(), argument.c_str());
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    HelpManager* help = HelpManager::instance(); // starts the server on the loopback
    help->clearSearchPath();                     // or it serves the application's own folder too
    help->setSearchPath({"/usr/share/doc/host/"});
    help->setRequestHandler(runCommand);

    // As soon as a panel is made: the answer takes its time, and getUrl() never waits.
    help->checkNode("Blur.html");

    QPushButton window(QStringLiteral("Help on Blur"));
    QObject::connect(&window, &QPushButton::clicked, help, [help] {
        const std::string url = help->getUrl("Blur.html");
        if (!url.empty())
            QDesktopServices::openUrl(QUrl(QString::fromStdString(url)));
    });
    std::printf("%s\n", help->getUrl("Blur.html", HelpManager::CurrentServer, true).c_str());

    window.resize(220, 40);
    window.show();
    return QApplication::exec();
}
