// Two sliders on one parameter of the host, whose edits are steps of a history.

#include <KxUI/kit/ParameterBinding.h>
#include <KxUI/kit/ParameterWatchers.h>
#include <KxUI/undo/MultiStackUndoGroup.h>
#include <KxUI/undo/MultiStackUndoView.h>
#include <KxUI/undo/ValueEdit.h>
#include <KxUI/values/LogSlider.h>

#include <QApplication>
#include <QVBoxLayout>

namespace Kestrel::UI {

class UndoableProject {
public:
    double exposure = 1.0;
};

} // namespace Kestrel::UI

using namespace Kestrel::UI;

namespace {

// What is edited is shown at once, but in the history only at the end, as one step or none.
class Exposure : public IParameter {
public:
    Exposure(MultiStackUndoGroup* group, UndoableProject* shot)
        : m_shot(shot)
        , m_edit(group, shot, [this](const double& value) {
            m_shot->exposure = value;
            m_watchers.tell();
        }) {}

    QVariant value() const override { return m_shot->exposure; }
    bool setValue(const QVariant& value) override {
        if (value.toDouble() <= 0)
            return false; // the widget goes back
        m_edit.change(value.toDouble());
        return true;
    }
    QString label() const override { return QStringLiteral("Exposure"); }
    void beginEdit(const QString& what) override { m_edit.begin(m_shot->exposure, what); }
    void endEdit(bool accepted) override { m_edit.finish(accepted); }
    std::unique_ptr<ParameterWatch> watch(std::function<void()> changed) override {
        return m_watchers.add(std::move(changed));
    }
    void onCancelled(std::function<void()> cancelled) { m_edit.onCancelled(std::move(cancelled)); }

private:
    UndoableProject* m_shot;
    ParameterWatchers m_watchers;
    ValueEdit<double> m_edit;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    UndoableProject shot;
    MultiStackUndoGroup group;
    group.addProject(&shot);
    Exposure exposure(&group, &shot);

    QWidget window;
    auto* column = new QVBoxLayout(&window);
    QList<ParameterBinding*> bindings;
    for (int i = 0; i < 2; ++i) {
        auto* slider = new LogSlider(Qt::Horizontal);
        slider->setRealRange(-2, 2, 100);
        column->addWidget(slider);
        bindings += ParameterBinding::bind(slider, &exposure); // each shows the other's edits
    }
    exposure.onCancelled([bindings] { // an undo in the middle of a drag
        for (ParameterBinding* binding : bindings)
            binding->cancelEdit();
    });
    auto* view = new MultiStackUndoView;
    view->setGroup(&group);
    column->addWidget(view);

    // As a widget does: two drags, of which the second is taken back.
    for (const bool accepted : {true, false}) {
        exposure.beginEdit(exposure.label());
        for (const double value : {2.0, 5.0, 8.0})
            exposure.setValue(accepted ? value : 1 / value);
        exposure.endEdit(accepted);
    }

    window.resize(420, 200);
    window.show();
    const int result = QApplication::exec();
    group.removeProject(&shot); // before what its steps reach into
    return result;
}
