#include <KxUI/undo/MultiStackUndoGroup.h>
#include <KxUI/undo/MultiStackUndoView.h>

#include <support/Bench.h>

#include <QCoreApplication>
#include <QUndoCommand>

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

} // namespace

void registerBenchmarks() {
    using namespace Kestrel::Bench;

    const std::string called = "undo: jump over 4,000 entries, view shown";
    add(called, "ours", [](benchmark::State& state) {
        jump(state, [](MultiStackUndoGroup& group, MultiStackUndoView&, int target) {
            group.makeIndex(target);
        });
    });
    target(called, 0.5e9);

    const std::string picked = "undo: the same, by a row of the view";
    add(picked, "ours", [](benchmark::State& state) {
        jump(state, [](MultiStackUndoGroup&, MultiStackUndoView& view, int target) {
            view.setCurrentIndex(view.model()->index(target, 0));
        });
    });
    target(picked, 0.5e9);
}
