#include "files_gather.h"

#include "../tests/support/SlowCalls.h"

#include <KxUI/files/FileGatherer.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/files/FileManager.h>

#include <support/Bench.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileSystemModel>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

using namespace Kestrel::UI;

namespace {

// Files of no sequence, so that each of them is a row.
QString looseFiles(int count) {
    static QTemporaryDir hundred;
    static QTemporaryDir million;
    const QTemporaryDir& root = count > 100000 ? million : hundred;
    const QByteArray first = QFile::encodeName(root.filePath("f0x"));
    if (::access(first.constData(), F_OK) != 0) {
        for (int i = 0; i < count; ++i) {
            const QByteArray path = QFile::encodeName(root.filePath(QString("f%1x").arg(i)));
            ::close(::open(path.constData(), O_CREAT | O_WRONLY, 0666));
        }
    }
    return root.path();
}

/** The longest time that the interface thread was busy with one event. */
class Stall {
public:
    Stall() {
        m_timer.callOnTimeout([this] {
            m_longest = std::max(m_longest, m_since.nsecsElapsed());
            m_since.start();
        });
        m_since.start();
        m_timer.start(0);
    }

    double seconds() const { return double(m_longest) / 1e9; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

struct Run {
    double total = 0; // seconds
    double stall = 0;
};

template <class Begin>
Run measured(Begin begin) {
    FileManager::forgetListings(); // the disk is asked, each time
    Stall stall;
    QEventLoop loop;
    QElapsedTimer timer;
    timer.start();
    begin(loop);
    loop.exec();
    return {double(timer.nsecsElapsed()) / 1e9, stall.seconds()};
}

Run gatherNames(const QString& folder) {
    FileGatherer gatherer;
    gatherer.setFoldsSequences(false);
    return measured([&](QEventLoop& loop) {
        QObject::connect(&gatherer, &FileGatherer::finished, &loop, &QEventLoop::quit);
        gatherer.gatherPath(folder);
    });
}

Run readByPeer(const QString& folder) {
    QFileSystemModel model;
    model.setOption(QFileSystemModel::DontWatchForChanges);
    return measured([&](QEventLoop& loop) {
        QObject::connect(&model, &QFileSystemModel::directoryLoaded, &loop, &QEventLoop::quit);
        model.setRootPath(folder);
    });
}

void showIn(QTreeView& view, QAbstractItemModel& model) {
    view.setUniformRowHeights(true);
    view.setModel(&model);
    view.resize(600, 800);
    view.show();
}

Run showRows(const QString& folder) {
    FileListModel model;
    QTreeView view;
    showIn(view, model);
    model.gatherer()->setFoldsSequences(false);
    return measured([&](QEventLoop& loop) {
        QObject::connect(&model, &FileListModel::settled, &loop, [&] {
            if (model.rowCount() > 0 && !model.gatherer()->isGathering())
                QTimer::singleShot(0, &loop, &QEventLoop::quit);
        });
        model.gatherer()->gatherPath(folder);
    });
}

Run showByPeer(const QString& folder) {
    QFileSystemModel model;
    model.setOption(QFileSystemModel::DontWatchForChanges);
    QTreeView view;
    showIn(view, model);
    return measured([&](QEventLoop& loop) {
        QObject::connect(&model, &QFileSystemModel::directoryLoaded, &loop,
                         [&] { QTimer::singleShot(0, &loop, &QEventLoop::quit); });
        view.setRootIndex(model.setRootPath(folder));
    });
}

// With all sizes and times, as the peer has them.
Run allStatuses(const QString& folder) {
    FileGatherer gatherer;
    gatherer.setFoldsSequences(false);
    std::vector<int> all(100000);
    for (int i = 0; i < 100000; ++i)
        all[std::size_t(i)] = i;
    return measured([&](QEventLoop& loop) {
        QObject::connect(&gatherer, &FileGatherer::finished, &loop,
                         [&] { gatherer.requestStatus(all); });
        QObject::connect(&gatherer, &FileGatherer::statusArrived, &loop, [&] {
            const auto listing = gatherer.listing();
            while (!all.empty() &&
                   listing->status(all.back()).known != FileListing::Status::NotAsked)
                all.pop_back();
            if (all.empty())
                loop.quit();
        });
        gatherer.gatherPath(folder);
    });
}

// A server far away: each call takes a millisecond.
template <class Model, class Begin>
Run firstRows(Begin begin) {
    static QTemporaryDir root;
    if (::access(QFile::encodeName(root.filePath("f0x")).constData(), F_OK) != 0) {
        for (int i = 0; i < 10000; ++i) {
            const QByteArray path = QFile::encodeName(root.filePath(QString("f%1x").arg(i)));
            ::close(::open(path.constData(), O_CREAT | O_WRONLY, 0666));
        }
    }
    Kestrel::Test::slowDownCalls(root.path().toStdString(), 1);
    Model model;
    const Run run = measured([&](QEventLoop& loop) {
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &loop,
                         [&](const QModelIndex&, int first, int last) {
                             if (last - first >= 30) // a screen of them
                                 loop.quit();
                         });
        begin(model, root.path());
    });
    Kestrel::Test::slowDownCalls({}, 0);
    return run;
}

Run firstRowsOfOurs(const QString&) {
    return firstRows<FileListModel>([](FileListModel& model, const QString& folder) {
        model.gatherer()->setFoldsSequences(false);
        model.gatherer()->gatherPath(folder);
    });
}

Run firstRowsOfPeer(const QString&) {
    return firstRows<QFileSystemModel>([](QFileSystemModel& model, const QString& folder) {
        model.setOption(QFileSystemModel::DontWatchForChanges);
        model.setRootPath(folder);
    });
}

template <class Body>
void add(const char* work, const char* who, int files, double Run::*what, Body body) {
    Kestrel::Bench::add(work, who,
                        [=](benchmark::State& state) {
                            const QString folder = looseFiles(files);
                            for (auto _ : state)
                                state.SetIterationTime(body(folder).*what);
                            state.SetItemsProcessed(state.iterations() * (files > 100000 ? 10 : 1));
                        })
        ->UseManualTime()
        ->Iterations(1);
}

} // namespace

void registerGathering() {
    constexpr int files = 100000;
    const char* const peer = "QFileSystemModel";
    const char* const names = "FileGatherer, names of 100,000 files, time that passes";
    add(names, "ours", files, &Run::total, &gatherNames);
    add(names, peer, files, &Run::total, &readByPeer);
    Kestrel::Bench::targetRatio(names, peer, 10);

    const char* const statuses = "FileGatherer, 100,000 files with sizes and times";
    add(statuses, "ours", files, &Run::total, &allStatuses);
    add(statuses, peer, files, &Run::total, &readByPeer);
    Kestrel::Bench::targetRatio(statuses, peer, 2);

    const char* const stall = "FileListModel in a view, 100,000 files, longest stall";
    add(stall, "ours", files, &Run::stall, &showRows);
    add(stall, peer, files, &Run::stall, &showByPeer);
    Kestrel::Bench::targetRatio(stall, peer, 20);

    const char* const first = "FileListModel, first rows where each call takes 1 ms";
    add(first, "ours", files, &Run::total, &firstRowsOfOurs);
    add(first, peer, files, &Run::total, &firstRowsOfPeer);
    Kestrel::Bench::targetRatio(first, peer, 10);

    const char* const many = "FileGatherer, a million files, 100,000 of them";
    add(many, "ours", 10 * files, &Run::total, &gatherNames);
    add(many, "of 100,000 files", files, &Run::total, &gatherNames);
    Kestrel::Bench::targetRatio(many, "of 100,000 files", 1 / 1.2);
}
