// A toolbar that moves its less important buttons into a menu when it gets too narrow.

#include <KxUI/kit/CollapsibleToolbar.h>
#include <KxUI/kit/IconFactory.h>

#include <QApplication>
#include <QLineEdit>
#include <QToolButton>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    CollapsibleToolbar window;

    window.addItem(new QLineEdit(QStringLiteral("stays")));
    int priority = 0;
    const QStringList names = {
        "TCStart",      "TCKeyBackward", "TCPlayBackward",     "TCPlayForward",
        "TCKeyForward", "TCEnd",         "FrameSkipBackwards", "FrameSkipForwards"};
    for (const QString& name : names) {
        auto* button = new QToolButton;
        button->setAutoRaise(true);
        button->setIcon(IconFactory::icon(name));
        button->setToolTip(name);
        window.addOverflowItem(button, name, priority++); // the lowest goes first
    }

    window.resize(300, 40);
    window.show();
    return QApplication::exec();
}
