// One history over two projects, with its list and its two actions.

#include <KxUI/undo/MultiStackUndoGroup.h>
#include <KxUI/undo/MultiStackUndoView.h>

#include <QAction>
#include <QApplication>
#include <QToolBar>
#include <QUndoCommand>
#include <QVBoxLayout>

namespace Kestrel::UI {

// The class is the host's; the history uses only its address.
class UndoableProject {
public:
    double blur = 0;
};

} // namespace Kestrel::UI

using namespace Kestrel::UI;

namespace {

class SetBlur : public QUndoCommand {
public:
    SetBlur(UndoableProject* project, const QString& name, double blur)
        : QUndoCommand(QStringLiteral("Blur of %1 to %2").arg(name).arg(blur))
        , m_project(project)
        , m_other(blur) {}

    void redo() override { std::swap(m_project->blur, m_other); }
    void undo() override { redo(); }

private:
    UndoableProject* m_project;
    double m_other;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    UndoableProject shot;
    UndoableProject plate;
    MultiStackUndoGroup group;
    group.addProject(&shot);
    group.addProject(&plate);

    QWidget window;
    auto* bar = new QToolBar;
    bar->addAction(group.createUndoAction(bar));
    bar->addAction(group.createRedoAction(bar));
    auto* view = new MultiStackUndoView;
    view->setGroup(&group);
    auto* column = new QVBoxLayout(&window);
    column->addWidget(bar);
    column->addWidget(view);

    // The group owns the commands, and calls redo() first.
    group.performCommand(new SetBlur(&shot, QStringLiteral("shot"), 2.5), &shot);
    group.performCommand(new SetBlur(&plate, QStringLiteral("plate"), 8), &plate);
    group.performCommand(new SetBlur(&shot, QStringLiteral("shot"), 4), &shot);
    group.undo();

    window.resize(360, 200);
    window.show();
    const int result = QApplication::exec();
    // A project that closes takes its commands with it.
    group.removeProject(&plate);
    group.removeProject(&shot);
    return result;
}
