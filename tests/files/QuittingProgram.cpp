// A program that quits while eight folders do not answer: FileGathererTest looks how long it takes.

#include <KxUI/files/FileGatherer.h>
#include <KxUI/files/FileManager.h>

#include "HangingCalls.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QString root = QCoreApplication::arguments().value(1);
    // Neither is destroyed: that is what a killed server leaves behind.
    const auto* const hanging = new Kestrel::Test::HangingCalls(root.toStdString());
    for (int i = 0; i < 8; ++i)
        (new FileGatherer(&application))->gatherPath(root + QString::number(i));
    if (!hanging->isReached(8))
        return 1;
    std::puts("quitting");
    std::fflush(stdout);
    return 0;
}
