#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/DockSplitter.h>

#include <support/Bench.h>

#include <DockAreaWidget.h>
#include <DockManager.h>
#include <DockWidget.h>

#include <QApplication>
#include <QBuffer>
#include <QDockWidget>
#include <QHash>
#include <QMainWindow>

#include <malloc.h>

#include <cstdio>
#include <memory>
#include <string>
#include <utility>

namespace {

using namespace Kestrel;

constexpr int TabsPerPane = 3;

void settle(QWidget& window) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
    window.repaint();
    QCoreApplication::processEvents();
}

QWidget* newPage(int index) {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("page%1").arg(index));
    page->setWindowTitle(QStringLiteral("Page %1").arg(index));
    return page;
}

/** Divides one pane into `count`, by halves, side by side and above each other in turns. `Divide`
    adds a pane after one along a direction. */
template <class Pane, class Divide>
void divide(Pane pane, int count, Qt::Orientation orientation, const Divide& addAfter) {
    if (count < 2)
        return;
    Pane other = addAfter(pane, orientation);
    const auto next = orientation == Qt::Horizontal ? Qt::Vertical : Qt::Horizontal;
    divide(pane, count - count / 2, next, addAfter);
    divide(other, count / 2, next, addAfter);
}

class Ours : public UI::DockMainWindow {
public:
    explicit Ours(int panes) {
        setAttribute(Qt::WA_DeleteOnClose, false);
        resize(4000, 3000);
        UI::Dock* first = createDock();
        addWidget(first);
        fill(first);
        divide(first, panes, Qt::Horizontal, [this](UI::Dock* pane, Qt::Orientation orientation) {
            UI::Dock* other = pane->split(orientation, false);
            fill(other);
            return other;
        });
    }
    ~Ours() override { qDeleteAll(m_pages); }

    QWidget* createPage(QString& id) override { return m_pages.value(id); }
    QByteArray state() {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        saveLayout(&buffer, nullptr);
        return buffer.data();
    }
    bool restore(QByteArray state) {
        QBuffer buffer(&state);
        buffer.open(QIODevice::ReadOnly);
        const bool restored = restoreWholeLayout(&buffer, false);
        // The screen of this platform is small, and a restored window fits its screen; the peers
        // stay large, and so must this one for the same work.
        resize(4000, 3000);
        return restored;
    }

private:
    void fill(UI::Dock* dock) {
        for (int i = 0; i < TabsPerPane; ++i) {
            QWidget* page = newPage(m_pages.size());
            m_pages.insert(page->objectName(), page);
            dock->addWidget(page, false, false);
        }
    }
    QHash<QString, QWidget*> m_pages;
};

class Ads : public QMainWindow {
public:
    explicit Ads(int panes) {
        resize(4000, 3000);
        m_manager = new ads::CDockManager(this);
        ads::CDockAreaWidget* first = m_manager->addDockWidget(ads::CenterDockWidgetArea, page());
        fill(first);
        divide(first, panes, Qt::Horizontal,
               [this](ads::CDockAreaWidget* area, Qt::Orientation orientation) {
                   const auto side = orientation == Qt::Horizontal ? ads::RightDockWidgetArea
                                                                   : ads::BottomDockWidgetArea;
                   ads::CDockAreaWidget* other = m_manager->addDockWidget(side, page(), area);
                   fill(other);
                   return other;
               });
    }
    QByteArray state() { return m_manager->saveState(); }
    bool restore(const QByteArray& state) { return m_manager->restoreState(state); }

private:
    ads::CDockWidget* page() {
        QWidget* content = newPage(m_count++);
        auto* dock = new ads::CDockWidget(content->windowTitle());
        dock->setObjectName(content->objectName());
        dock->setWidget(content);
        return dock;
    }
    void fill(ads::CDockAreaWidget* area) {
        for (int i = 1; i < TabsPerPane; ++i)
            m_manager->addDockWidgetTabToArea(page(), area);
    }
    ads::CDockManager* m_manager;
    int m_count = 0;
};

class Plain : public QMainWindow {
public:
    explicit Plain(int panes) {
        resize(4000, 3000);
        setDockNestingEnabled(true);
        QDockWidget* first = page();
        addDockWidget(Qt::LeftDockWidgetArea, first);
        fill(first);
        divide(first, panes, Qt::Horizontal,
               [this](QDockWidget* dock, Qt::Orientation orientation) {
                   QDockWidget* other = page();
                   splitDockWidget(dock, other, orientation);
                   fill(other);
                   return other;
               });
    }
    QByteArray state() { return saveState(); }
    bool restore(const QByteArray& state) { return restoreState(state); }

private:
    QDockWidget* page() {
        QWidget* content = newPage(m_count++);
        auto* dock = new QDockWidget(content->windowTitle());
        dock->setObjectName(content->objectName());
        dock->setWidget(content);
        return dock;
    }
    void fill(QDockWidget* first) {
        for (int i = 1; i < TabsPerPane; ++i)
            tabifyDockWidget(first, page());
    }
    int m_count = 0;
};

template <class Workspace>
void buildAndShow(benchmark::State& state, int panes) {
    for (auto _ : state) {
        auto workspace = std::make_unique<Workspace>(panes);
        workspace->show();
        settle(*workspace);
        state.PauseTiming();
        workspace.reset();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}

template <class Workspace>
void restore(benchmark::State& state, int panes, bool settled) {
    Workspace workspace(panes);
    workspace.show();
    settle(workspace);
    const QByteArray layout = workspace.state();
    for (auto _ : state) {
        workspace.restore(layout);
        if (!settled)
            state.PauseTiming();
        settle(workspace);
        if (!settled)
            state.ResumeTiming();
    }
}

std::size_t heapInUse() {
    return mallinfo2().uordblks;
}

/** Memory and what repeated restores leave behind; printed, since these are no times. */
template <class Workspace>
void report(const char* who, int panes, int cycles) {
    const std::size_t before = heapInUse();
    Workspace workspace(panes);
    workspace.show();
    settle(workspace);
    const double megabytes = double(heapInUse() - before) / 1e6;

    const QByteArray first = workspace.state();
    int same = 0;
    int widgets = 0;
    std::size_t heap = 0;
    for (int i = 0; i < cycles; ++i) {
        workspace.restore(first);
        settle(workspace);
        same += workspace.state() == first;
        if (i == 0) {
            widgets = QApplication::allWidgets().size();
            heap = heapInUse();
        }
    }
    const double growth = (double(heapInUse()) - double(heap)) / (cycles - 1);
    std::printf("%4d panes %-12s heap %6.1f MB; save, restore, save: %d of %d equal, "
                "%+d widgets, %+.0f bytes a cycle\n",
                panes, who, megabytes, same, cycles, QApplication::allWidgets().size() - widgets,
                growth);
}

} // namespace

void registerBenchmarks() {
    using Bench::add;
    for (const int panes : {100, 400}) {
        const std::string size = std::to_string(panes) + " panes";
        const bool withMainWindow = panes == 100; // it takes minutes for 400
        const std::string build = "build and show " + size;
        // The peers take seconds for what ours does in a blink.
        const auto haste = [&](benchmark::internal::Benchmark* added, const std::string& who) {
            if (who != "ours")
                added->Iterations(1)->Repetitions(panes == 100 ? 3 : 1);
        };
        const auto addBuild = [&](const char* who, void (*run)(benchmark::State&, int)) {
            haste(add(build, who, [=](benchmark::State& state) { run(state, panes); }), who);
        };
        addBuild("ours", buildAndShow<Ours>);
        addBuild("ADS", buildAndShow<Ads>);
        if (withMainWindow)
            addBuild("QMainWindow", buildAndShow<Plain>);
        Bench::targetRatio(build, "ADS", 3);

        for (const bool settled : {false, true}) {
            const std::string work = "restore " + size + (settled ? ", settled" : ", the call");
            const auto addRestore = [&](const char* who,
                                        void (*run)(benchmark::State&, int, bool)) {
                haste(add(work, who, [=](benchmark::State& state) { run(state, panes, settled); }),
                      who);
            };
            addRestore("ours", restore<Ours>);
            addRestore("ADS", restore<Ads>);
            if (withMainWindow)
                addRestore("QMainWindow", restore<Plain>);
            Bench::targetRatio(work, "ADS", panes == 100 ? 4 : 5);
        }
    }
    add("heap and stability", "ours", [](benchmark::State& state) {
        for (auto _ : state) {
            static bool isReported = false;
            if (std::exchange(isReported, true))
                continue;
            std::printf("\n");
            for (const int panes : {10, 100, 400})
                report<Ours>("ours", panes, panes == 400 ? 20 : 100);
            report<Ads>("ADS", 100, 3);
        }
    });
}
