// The browser against the toolkit's dialog and model on the same 100,000 files: when rows are there,
// all of them, the longest time that nothing else could be done, and memory.

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/files/FileManager.h>

#include <support/Bench.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

using namespace Kestrel::UI;

namespace {

constexpr int Files = 100000;

// Files of no sequence, so that each of them is a row.
const QString& looseFiles() {
    static const QTemporaryDir root;
    static const QString path = [] {
        for (int i = 0; i < Files; ++i) {
            const QByteArray name = QFile::encodeName(root.filePath(QString("f%1x").arg(i)));
            ::close(::open(name.constData(), O_CREAT | O_WRONLY, 0666));
        }
        return root.path();
    }();
    return path;
}

/** What a visit cost, in seconds and bytes. */
struct Visit {
    double first = 0; // until a row is there
    double total = 0;
    double stall = 0; // the longest time between two turns of the event loop
    double bytes = 0;
};

// With what is too large for the heap's own pages.
double heapInUse() {
    const auto heap = mallinfo2();
    return double(heap.uordblks) + double(heap.hblkhd);
}

class Clock {
public:
    Clock()
        : m_before(heapInUse()) {
        m_turns.callOnTimeout([this] {
            m_longest = std::max(m_longest, m_since.nsecsElapsed());
            m_since.start();
        });
        m_since.start();
        m_total.start();
        m_turns.start(0);
    }

    void row() {
        if (m_visit.first <= 0)
            m_visit.first = double(m_total.nsecsElapsed()) / 1e9;
    }

    Visit end() {
        m_visit.total = double(m_total.nsecsElapsed()) / 1e9;
        m_visit.stall = double(std::max(m_longest, m_since.nsecsElapsed())) / 1e9;
        m_visit.bytes = heapInUse() - m_before;
        return m_visit;
    }

private:
    Visit m_visit;
    QTimer m_turns;
    QElapsedTimer m_since;
    QElapsedTimer m_total;
    qint64 m_longest = 0;
    double m_before;
};

Visit visit() {
    const QString& folder = looseFiles(); // made before the clock runs
    FileManager::forgetListings();        // the disk is asked, each time
    FileBrowser browser;
    browser.setShowsFavorites(false);
    browser.setFoldsSequences(false);
    browser.resize(800, 800);
    browser.show();
    QEventLoop loop;
    QTimer::singleShot(50, &loop, &QEventLoop::quit);
    loop.exec();
    Clock clock;
    QObject::connect(browser.model(), &FileListModel::rowsInserted, &loop, [&] { clock.row(); });
    const auto look = [&] {
        if (browser.model()->rowCount() == Files && !browser.model()->gatherer()->isGathering())
            QTimer::singleShot(20, &loop, &QEventLoop::quit);
    };
    QObject::connect(browser.model(), &FileListModel::settled, &loop, look);
    QObject::connect(browser.model()->gatherer(), &FileGatherer::finished, &loop, look);
    browser.setFolderText(folder);
    loop.exec();
    return clock.end();
}

template <class View, class Show>
Visit visitByPeer(View& view, QFileSystemModel& model, Show show) {
    model.setOption(QFileSystemModel::DontWatchForChanges);
    looseFiles();
    QEventLoop loop;
    Clock clock;
    QObject::connect(&model, &QFileSystemModel::rowsInserted, &loop,
                     [&](const QModelIndex& parent) {
                         if (model.filePath(parent) == looseFiles())
                             clock.row();
                     });
    QObject::connect(&model, &QFileSystemModel::directoryLoaded, &loop, [&](const QString& path) {
        if (path == looseFiles())
            QTimer::singleShot(20, &loop, &QEventLoop::quit);
    });
    show(view, model);
    loop.exec();
    return clock.end();
}

Visit visitByTree() {
    QTreeView view;
    QFileSystemModel model;
    view.setUniformRowHeights(true);
    view.setModel(&model);
    view.resize(800, 800);
    view.show();
    return visitByPeer(view, model, [](QTreeView& tree, QFileSystemModel& files) {
        tree.setRootIndex(files.setRootPath(looseFiles()));
    });
}

Visit visitByDialog() {
    QFileDialog dialog;
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.resize(800, 800);
    dialog.show();
    return visitByPeer(
        dialog, *dialog.findChild<QFileSystemModel*>(),
        [](QFileDialog& view, QFileSystemModel&) { view.setDirectory(looseFiles()); });
}

void addCase(const char* work, const char* who, Visit (*run)(), double Visit::*part) {
    Kestrel::Bench::add(work, who,
                        [=](benchmark::State& state) {
                            for (auto _ : state) {
                                const Visit cost = run();
                                state.SetIterationTime(cost.*part);
                                if (part == &Visit::bytes)
                                    state.counters["bytes"] = cost.bytes;
                            }
                        })
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

} // namespace

void registerBenchmarks() {
    const struct {
        const char* work;
        double Visit::*part;
        double times;
    } works[] = {// The peer shows a hundred as the disk has them, long before their order is known.
                 {"first of 100,000 files in a browser, the peers' in no order", &Visit::first, 0},
                 {"all of 100,000 files in a browser", &Visit::total, 10},
                 {"longest stall of a browser with 100,000 files", &Visit::stall, 20},
                 {"memory of a browser with 100,000 files", &Visit::bytes, 4}};
    for (const auto& each : works) {
        addCase(each.work, "ours", &visit, each.part);
        addCase(each.work, "QFileSystemModel and QTreeView", &visitByTree, each.part);
        addCase(each.work, "QFileDialog", &visitByDialog, each.part);
        if (each.times > 0)
            Kestrel::Bench::targetRatio(each.work, "QFileSystemModel and QTreeView", each.times);
    }
}
