// Linked into every example: where KXUI_PICTURE names a file, a picture of the first window is
// saved there once the event loop runs, and the program ends. So the pictures of the reference are
// those of its code, and a test can run the examples to their end.

#include <QApplication>
#include <QMetaEnum>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

namespace {

void savePicture() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible()) {
            const bool saved = window->grab().save(qEnvironmentVariable("KXUI_PICTURE"), "PNG");
            QCoreApplication::exit(saved ? 0 : 1);
            return;
        }
    }
    QCoreApplication::exit(1);
}

// Qt 6 draws icons as sharp as the screen is without being told, and calls this name outdated.
void sharpenIcons() {
    bool isKnown = false;
    const int attribute = QMetaEnum::fromType<Qt::ApplicationAttribute>().keyToValue(
        "AA_UseHighDpiPixmaps", &isKnown);
    if (isKnown)
        QCoreApplication::setAttribute(static_cast<Qt::ApplicationAttribute>(attribute));
}

void planPicture() {
    if (!qEnvironmentVariableIsSet("KXUI_PICTURE") ||
        !qobject_cast<QApplication*>(QCoreApplication::instance()))
        return;
    sharpenIcons();
    QFont font = QApplication::font();
    font.setPointSize(9);
    QApplication::setFont(font);
    QTimer::singleShot(200, qApp, savePicture);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(planPicture)
