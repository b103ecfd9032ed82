#include <KxUI/undo/MultiStackUndoGroup.h>
#include <KxUI/undo/MultiStackUndoView.h>

#include <support/Bench.h>

#include <QCoreApplication>
#include <QUndoCommand>
#include <QUndoStack>

#include <memory>

using Kestrel::UI::MultiStackUndoGroup;
using Kestrel::UI::MultiStackUndoView;

namespace {

constexpr int Entries = 4000;

// Jumps from one end of the history to the other, and back in the next round.
template <class Jump>
void jump(benchmark::State& state, const Jump& to) {
    MultiStackUndoGroup group;
    for (int i = 0; i < Entries; ++i)
        group.performCommand(new QUndoCommand(QStringLiteral("Grade %1").arg(i)), nullptr);
    {
        MultiStackUndoView view;
        view.setGroup(&group);
        view.resize(250, 600);
        view.show();
        QCoreApplication::processEvents();
        for (auto _ : state) {
            to(group, view, group.index() == 0 ? Entries : 0);
            QCoreApplication::processEvents();
        }
    }
    group.removeProject(nullptr);
}

constexpr int Million = 1000000;

QUndoCommand* newCommand() {
    return new QUndoCommand(QStringLiteral("Grade"));
}

// A history of a million entries is made, gone through or thrown away; only that is timed.
enum class Work { Perform, Jump, Remove };

struct Ours {
    std::unique_ptr<MultiStackUndoGroup> group = std::make_unique<MultiStackUndoGroup>();

    ~Ours() { clear(); }
    void perform() { group->performCommand(newCommand(), nullptr); }
    void jump(int target) { group->makeIndex(target); }
    void clear() { group->removeProject(nullptr); }
};

struct Stack {
    std::unique_ptr<QUndoStack> stack = std::make_unique<QUndoStack>();

    void perform() { stack->push(newCommand()); }
    void jump(int target) { stack->setIndex(target); }
    void clear() { stack->clear(); }
};

template <class History>
void million(benchmark::State& state, Work work) {
    for (auto _ : state) {
        state.PauseTiming();
        {
            History history;
            if (work == Work::Perform)
                state.ResumeTiming();
            for (int i = 0; i < Million; ++i)
                history.perform();
            if (work == Work::Jump) {
                state.ResumeTiming();
                history.jump(0);
                history.jump(Million);
            }
            if (work == Work::Remove) {
                state.ResumeTiming();
                history.clear();
            }
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

} // namespace

void registerBenchmarks() {
    using namespace Kestrel::Bench;

    const std::string called = "undo: jump over 4,000 entries, view shown";
    add(called, "ours", [](benchmark::State& state) {
        jump(state, [](MultiStackUndoGroup& group, MultiStackUndoView&, int target) {
            group.makeIndex(target);
        });
    });
    target(called, 0.5e6);

    const std::string picked = "undo: the same, by a row of the view";
    add(picked, "ours", [](benchmark::State& state) {
        jump(state, [](MultiStackUndoGroup&, MultiStackUndoView& view, int target) {
            view.setCurrentIndex(view.model()->index(target, 0));
        });
    });
    target(picked, 0.5e6);

    // A step of ours is told to four signals and belongs to a project; a jump of the peer is told
    // once.
    const struct {
        const char* name;
        Work work;
        double ratio;
    } millions[] = {{"undo: a million commands", Work::Perform, 0.4},
                    {"undo: jump over them and back", Work::Jump, 0.1},
                    {"undo: remove their project", Work::Remove, 0.3}};
    for (const auto& [name, work, ratio] : millions) {
        const Work kind = work;
        add(name, "ours", [kind](benchmark::State& state) { million<Ours>(state, kind); });
        add(name, "QUndoStack", [kind](benchmark::State& state) { million<Stack>(state, kind); });
        targetRatio(name, "QUndoStack", ratio);
    }
}
