#pragma once

#include <KxUI/kit/ChoiceList_p.h>
#include <KxUI/kit/EditGestures_p.h>

#include <QList>

#include <functional>

class QMenu;

namespace Kestrel::UI {

/** The signals that both widgets have. */
enum class ChoiceSignal {
    CountChanged,
    ExclusiveChanged,
    CheckedChanged,
    CurrentIndexChanged,
    EditStarted,
    ValueEdited,
    Chosen,
    EditFinished
};

/** The choices of a widget, what the user does to them, and what that emits. */
class ChoicesPrivate : public EditGestures {
public:
    explicit ChoicesPrivate(QWidget* chooser)
        : EditGestures(chooser)
        , owner(chooser) {}

    /** Emits a signal; `value` is its argument, if it has one. */
    virtual void tell(ChoiceSignal signal, int value) = 0;
    /** What is shown became another one; `sizes` where its size may have, too. */
    virtual void shown(bool sizes) = 0;

    /** Lets `change` change the list, and tells what became another one. */
    void change(const std::function<void(ChoiceList&)>& change);

    /** The user chose: an edit by itself, or a part of the one by the key or the wheel that goes
        on. A choice that is on already is told as chosen, but is no edit. */
    void choose(int index);
    /** The same by a key, which may repeat. */
    void chooseByKey(int index, const QKeyEvent& event);

    /** Fills the menu with the choices from `first` on; they choose. */
    void fillMenu(QMenu* menu, int first);

    QWidget* const owner;
    ChoiceList list;

    /** A line in the menu above a choice, with the title of what follows. */
    struct Break {
        int before = 0;
        QString title;
    };
    std::vector<Break> breaks;

protected:
    void keepStart() override { m_before = list.checked(); }
    void goToStart() override;
    void tellStarted() override { tell(ChoiceSignal::EditStarted, 0); }
    void tellFinished(bool accepted) override { tell(ChoiceSignal::EditFinished, accepted); }

    /** What tell() does: both widgets have the same signals, but no class in common that has. */
    template <class Widget>
    static void emitSignal(Widget* teller, ChoiceSignal signal, int value);

private:
    /** False once the widget is gone. */
    bool emitted(ChoiceSignal signal, int value = 0);

    QList<int> m_before; ///< what was on at the begin of the edit
};

template <class Widget>
void ChoicesPrivate::emitSignal(Widget* teller, ChoiceSignal signal, int value) {
    switch (signal) {
    case ChoiceSignal::CountChanged:
        Q_EMIT teller->countChanged(value);
        break;
    case ChoiceSignal::ExclusiveChanged:
        Q_EMIT teller->exclusiveChanged(value != 0);
        break;
    case ChoiceSignal::CheckedChanged:
        Q_EMIT teller->checkedChanged();
        break;
    case ChoiceSignal::CurrentIndexChanged:
        Q_EMIT teller->currentIndexChanged(value);
        break;
    case ChoiceSignal::EditStarted:
        Q_EMIT teller->editStarted();
        break;
    case ChoiceSignal::ValueEdited:
        Q_EMIT teller->valueEdited(value);
        break;
    case ChoiceSignal::Chosen:
        Q_EMIT teller->chosen(value);
        break;
    case ChoiceSignal::EditFinished:
        Q_EMIT teller->editFinished(value != 0);
        break;
    }
}

} // namespace Kestrel::UI
