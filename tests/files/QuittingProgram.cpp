// A program that quits while its folders do not answer: tests look how long that takes. Its first
// argument says who does not: `opens` and `statuses` of eight folders by HangingCalls, or what is
// `mounted`; the second one is where they are.

#include <KxUI/files/FileGatherer.h>
#include <KxUI/files/FileManager.h>

#include "HangingCalls.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <cstdio>
#include <iostream>
#include <string>

using namespace Kestrel::UI;
using Kestrel::Test::HangingCalls;

namespace {

void say(const char* word) {
    std::puts(word);
    std::fflush(stdout);
}

// Neither is destroyed: that is what a killed server leaves behind.
const HangingCalls& hanging(const QString& root, HangingCalls::Calls calls) {
    return *new HangingCalls(root.toStdString(), calls);
}

FileGatherer& gathererOf(const QString& folder, bool isListed) {
    auto* const gatherer = new FileGatherer(QCoreApplication::instance());
    gatherer->gatherPath(folder);
    QEventLoop loop;
    QObject::connect(gatherer, &FileGatherer::finished, &loop, &QEventLoop::quit);
    if (isListed && gatherer->isGathering())
        loop.exec();
    return *gatherer;
}

bool hangInOpens(const QString& root) {
    const HangingCalls& calls = hanging(root, HangingCalls::Opens);
    for (int i = 0; i < 8; ++i)
        gathererOf(root + QString::number(i), false);
    return calls.isReached(8);
}

bool hangInStatuses(const QString& root) {
    const HangingCalls& calls = hanging(root, HangingCalls::Statuses);
    for (int i = 0; i < 8; ++i)
        gathererOf(root + QString::number(i), true).requestStatus({0});
    return calls.isReached(8);
}

bool hangInKernel(const QString& root) {
    FileGatherer& frames = gathererOf(root + "/frames", true);
    FileGatherer& mixed = gathererOf(root + "/mixed", true);
    say("listed");
    std::string line;
    std::getline(std::cin, line);
    frames.requestStatus({0});
    mixed.requestStatus({0, 1, 2});
    gathererOf(root, false);
    FileManager::requestStatus((root + "/none").toUtf8(), 0, nullptr, [](const auto&) {});
    // Stuck when it has had no answer for two seconds.
    while (FileManager::stuckDirectories().size() < 4)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QString how = QCoreApplication::arguments().value(1);
    const QString root = QCoreApplication::arguments().value(2);
    const bool hangs = how == QLatin1String("opens")      ? hangInOpens(root)
                       : how == QLatin1String("statuses") ? hangInStatuses(root)
                                                          : hangInKernel(root);
    if (!hangs)
        return 1;
    say("quitting");
    return 0;
}
