#pragma once

#include <KxUI/kit/EditGestures_p.h>

#include <functional>
#include <optional>
#include <utility>

namespace Kestrel::UI {

/** The edits of a widget's value by its user, told by the widget's signals: editStarted(), then
    valueEdited() at every change, then editFinished(accepted).

    Every value that the user chooses goes through change() or editOnce(); every setter calls
    hostSet() before it stores. A host that answers an edit by another value (it clamps, it snaps)
    wins: takeRebase() has that value for the next movement to start from. One that echoes what it
    was told does not.

    Functions that return bool return false where the widget was deleted meanwhile. */
template <class Widget, class T>
class EditBracket final : public EditGestures {
public:
    using Read = std::function<T()>;
    using Store = std::function<void(const T&)>;

    /** `store` keeps and shows a value as a setter does, with the signals of one, but without
        hostSet(). `tell` emits valueEdited(). */
    EditBracket(Widget* widget, Read read, Store store, Store tell)
        : EditGestures(widget)
        , m_owner(widget)
        , m_read(std::move(read))
        , m_store(std::move(store))
        , m_tell(std::move(tell)) {}

    EditBracket(Widget* widget, Read read, Store store)
        : EditBracket(widget, std::move(read), std::move(store),
                      [widget](const T& value) { Q_EMIT widget->valueEdited(value); }) {}

    /** The user changed the value in the gesture that goes on. Opens the edit with the first
        change; a value that is shown already is none. Clamp it before. */
    bool change(const T& value) {
        if (gesture() == NoGesture || value == m_read())
            return true;
        if (!isEditing())
            m_start = m_read();
        return tellChange(value, [this](const T& kept) { store(kept); });
    }

    /** The same for a value that is kept already, by a base class; `show` does what is left. */
    template <class Show>
    bool note(const T& value, Show show) {
        return tellChange(value, [&show](const T&) { show(); });
    }

    /** An edit that is complete by itself: text that was taken, a reset, one by an assistive tool.
        What goes on is over before. */
    bool editOnce(const T& value) {
        if (isClosing())
            return true;
        if (!interrupt())
            return false;
        if (value == m_read())
            return true;
        keepStart();
        if (!tellChange(value, [this](const T& kept) { store(kept); }))
            return false;
        return finish();
    }

    /** The host sets the value, which is not stored yet. */
    void hostSet(const T& value) {
        if (isClosing())
            return;
        if (!isEditing())
            m_start = value;
        if (isEditing() && value == m_told)
            m_rebase.reset();
        else
            m_rebase = value;
    }

    /** The value that the host put in the place of the one it was told, once. A movement that
        counts from what was before counts from there instead. */
    std::optional<T> takeRebase() { return std::exchange(m_rebase, std::nullopt); }

    /** The value to come back to, while something goes on. */
    const T& start() const { return m_start; }

protected:
    void keepStart() override {
        m_start = m_read();
        m_rebase.reset();
    }

    void goToStart() override {
        const QPointer<QWidget> alive(m_owner);
        const T start = m_start;
        m_told = start;
        store(start);
        if (alive)
            tell(start);
    }

    void tellStarted() override { Q_EMIT m_owner->editStarted(); }
    void tellFinished(bool accepted) override { Q_EMIT m_owner->editFinished(accepted); }

private:
    // Copies, since the functions may go with the widget that they tell of.
    void store(T value) {
        const Store store = m_store;
        store(value);
    }
    void tell(T value) {
        const Store tell = m_tell;
        tell(value);
    }

    template <class Show>
    bool tellChange(const T& value, Show show) {
        const QPointer<QWidget> alive(m_owner);
        const T kept = value; // what is given may go with the widget
        if (!open())
            return !alive.isNull();
        const int current = edit();
        m_told = kept;
        show(kept);
        if (!alive)
            return false;
        if (!isOpen(current))
            return true;
        m_told = m_read(); // what was heard of it may have been answered already
        tell(m_told);
        return !alive.isNull();
    }

    Widget* m_owner;
    Read m_read;
    Store m_store;
    Store m_tell;
    T m_start = T();
    T m_told = T();
    std::optional<T> m_rebase;
};

} // namespace Kestrel::UI
