// A folder as a list of sequences; what a file is and how large comes while the event loop runs.

#include <KxUI/files/FileInfoList.h>
#include <KxUI/files/FileManager.h>

#include <QApplication>
#include <QListWidget>

#include <cstdio>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    FileManager::setInitialSequenceExtensions(); // once, before anything is listed

    FileInfoList list;
    list.setShouldFilterSequences(true);
    const QStringList arguments = QCoreApplication::arguments();
    list.fill(arguments.value(1, QStringLiteral(".")));
    if (!list.errorString().isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(list.errorString()));
        return 1;
    }

    QListWidget window;
    const auto show = [&list, &window] {
        window.clear();
        for (const FileInfo& item : list.getFileList()) {
            if (item.isSequence())
                window.addItem(item.getSequenceLongName());
            else
                window.addItem(item.isDir() ? item.fileName() + QLatin1Char('/') : item.fileName());
        }
    };
    // One status call an event keeps the interface alive, however slow the disk is.
    QObject::connect(
        &list, &FileInfoList::lazyStatFetchNext, &list,
        [&list] {
            list.fetchLazyStat();
            list.onLazyStatFetchNext();
        },
        Qt::QueuedConnection);
    QObject::connect(&list, &FileInfoList::fileInfoAvailable, &window, show);
    list.startLazyStat();
    show();

    window.resize(480, 190);
    window.show();
    return QApplication::exec();
}
