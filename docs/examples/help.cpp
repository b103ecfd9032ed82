// A help button that opens the page of a node in the browser, and a link in pages that comes back.

#include <KxUI/help/HelpManager.h>

#include <QApplication>
#include <QDesktopServices>
#include <QPushButton>
#include <QUrl>

#include <cstdio>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    HelpManager* help = HelpManager::instance(); // starts the server on the loopback
    help->clearSearchPath();                     // or it serves the application's own folder too
    help->setSearchPath({"/usr/share/doc/host"});

    QPushButton window(QStringLiteral("Help on Blur"));
    // A page sends a POST request, and the host does what it asks for.
    QObject::connect(help, &HelpManager::commandReceived, &window,
                     [&window](const QString& command) {
                         if (command == QLatin1String("raise"))
                             window.raise();
                     });

    // As soon as a panel is made: the answer takes its time, and getUrl() never waits. The file is
    // /usr/share/doc/host/Documentation/html/Blur.html.
    QObject::connect(help, &HelpManager::nodeChecked, &window, [help, &window] {
        window.setToolTip(help->getUrl("Blur.html").empty() ? QStringLiteral("There is no page.")
                                                            : QString());
    });
    help->checkNode("Blur.html");

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
