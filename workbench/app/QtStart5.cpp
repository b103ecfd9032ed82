#include "app/QtStart.h"

#include <QCoreApplication>
#include <QTextCodec>

namespace Kestrel::Workbench {

void prepareFileNames() {
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

void prepareScreens(bool followScale) {
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, followScale);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
}

} // namespace Kestrel::Workbench
