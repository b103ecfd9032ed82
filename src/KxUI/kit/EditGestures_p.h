#pragma once

#include <KxUI/kit/EditRest_p.h>
#include <KxUI/kit/EscapeWatch_p.h>
#include <KxUI/kit/WheelNotches_p.h>

#include <QPointer>
#include <QWidget>

#include <memory>

class QContextMenuEvent;
class QFocusEvent;
class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace Kestrel::UI {

/** What the user does to a value widget at the moment, and whether an edit came of it: when one
    begins, goes on, is over or is taken back. What the value is, EditBracket knows.

    An edit opens with the first change, not with the press. Functions that return bool return false
    where somebody who was told deleted the widget, and this object with it. */
class EditGestures {
public:
    enum Gesture {
        NoGesture,
        Drag, ///< from a press to the release of its button
        Keys, ///< from a key, over its repeats, to its release
        Wheel ///< from a notch to the rest after the last one
    };

    explicit EditGestures(QWidget* widget);
    virtual ~EditGestures();
    EditGestures(const EditGestures&) = delete;
    EditGestures& operator=(const EditGestures&) = delete;

    /** The widget gives every event to this one first (from its event()), and is done with those
        that it takes:
        - Escape, and the right button, while a drag or a held key has an edit open: taken back;
        - other buttons and the wheel while the button of a drag is down, also of one that was
          taken back, whose movements and release are taken, too;
        - movements, buttons and the wheel while any button is down after a drag that the widget
          looks after was ended by something else, but no release;
        - the menu that the right button would bring after it took something back.
        It ends a drag where the widget is hidden, disabled or loses the focus to a window or a
        popup, or the release went to somebody else; a run of notches or a held key also where
        another input or any loss of the focus comes. */
    bool takes(QEvent* event);

    Gesture gesture() const { return m_gesture; }
    /** Whether something has been changed that is not over yet. */
    bool isEditing() const { return m_open; }
    /** Whether a drag that the widget looks after was ended by something else while its button was
        down, which it may be still. */
    bool isAdrift() const { return m_adrift; }

    /** A drag begins. Calls finish() at the release itself; movements count only while gesture() is
        Drag. With a button takes() looks after that button; without one the widget does. */
    bool beginDrag(Qt::MouseButton button);

    /** A key of the widget's was pressed, or repeats. None while the mouse drags: look whether
        gesture() is Keys. */
    bool beginKey(const QKeyEvent& event);

    /** A run of notches begins, or goes on. None while the mouse drags, as for beginKey(). */
    bool beginWheel();

    /** The same, and counts: how many whole notches the wheel went on, 0 where there is nothing to
        do, or where the widget is gone. */
    int turnWheel(const QWheelEvent& event);

    /** The edit is over and stands. The gesture ends also without an edit. */
    bool finish();

    /** The edit is taken back: the value at its start is shown and told again. Nothing without an
        edit. */
    bool cancel();

protected:
    /** Whether the edit is, or now is, open, which a listener may have ended again. */
    bool open();
    /** Whether that edit still goes on, for after somebody was told something. */
    bool isOpen(int edit) const { return m_open && !m_closing && edit == m_edit; }
    int edit() const { return m_edit; }
    QWidget* widget() const { return m_widget; }
    bool isClosing() const { return m_closing; }
    /** As finish(), where something else than the gesture itself ends it. */
    bool interrupt();

    /** A gesture begins: remember the value. */
    virtual void keepStart() = 0;
    /** Shows the value of the start and tells of it. */
    virtual void goToStart() = 0;
    virtual void tellStarted() = 0;
    virtual void tellFinished(bool accepted) = 0;

private:
    void begin(Gesture gesture);
    bool takesAdrift(const QMouseEvent& event);
    bool takesPress(const QMouseEvent& event);
    bool takesMove(const QMouseEvent& event);
    bool takesRelease(const QMouseEvent& event);
    bool takesKey(const QKeyEvent& event);
    bool takesFocusOut(const QFocusEvent& event);
    bool takesEscape(const QKeyEvent& event) const;
    bool isHeld() const { return m_button != Qt::NoButton; }

    QWidget* m_widget;
    std::unique_ptr<EscapeWatch> m_escape; ///< made by the first drag
    std::unique_ptr<EditRest> m_rest;      ///< made by the first notch
    WheelNotches m_notches;
    Gesture m_gesture = NoGesture;
    Qt::MouseButton m_button = Qt::NoButton; ///< which is down, also after its drag is over
    int m_key = 0;
    int m_edit = 0; ///< counts the edits, so that one can be told from the next
    bool m_open = false;
    bool m_closing = false; ///< being taken back
    bool m_menuSuppressed = false;
    bool m_adrift = false;
};

} // namespace Kestrel::UI
