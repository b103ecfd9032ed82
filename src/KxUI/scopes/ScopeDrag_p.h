#pragma once

#include <QPointF>
#include <QVector>
#include <Qt>

namespace Kestrel::UI {

/** What a mouse did, in logical pixels of the scope. */
struct ScopeInput {
    QPointF position;
    Qt::MouseButton button = Qt::NoButton; ///< that was pressed or released
    Qt::KeyboardModifiers modifiers;
    bool pans = false; ///< the left button does there
};

/** What the scope is to do about it. */
struct ScopeCommand {
    enum Kind {
        Nothing,
        Click,       ///< at `to`, without a drag
        BeginSelect, ///< an edit begins
        Select,      ///< from `from` to `to`, by way of `path`
        EndSelect,   ///< the edit is over
        CancelSelect,
        Pan, ///< by `to` less `from`
        Turn ///< likewise
    };

    Kind kind = Nothing;
    QPointF from;
    QPointF to;
};

/** The state of a scope's mouse. */
class ScopeDrag {
public:
    /** How far the mouse moves before it selects, in logical pixels. */
    static constexpr double Slack = 3;

    /** The left button turns what is shown, and selects with Shift or Control. */
    void setTurns(bool turns) { m_turns = turns; }
    /** Whether a button drags. */
    bool isActive() const { return m_state != Idle; }
    bool isSelecting() const { return m_state == Selecting; }
    /** What was held when it was pressed. */
    Qt::KeyboardModifiers modifiers() const { return m_modifiers; }
    /** Where the mouse has been since a drag began. */
    const QVector<QPointF>& path() const { return m_path; }

    void press(const ScopeInput& input);
    /** The first movement of a selection answers BeginSelect; Select follows with the same input. */
    ScopeCommand move(const ScopeInput& input);
    ScopeCommand release(const ScopeInput& input);
    ScopeCommand cancel();

private:
    enum State { Idle, Pressed, Selecting, Panning, Turning };

    State m_state = Idle;
    Qt::MouseButton m_button = Qt::NoButton;
    Qt::KeyboardModifiers m_modifiers;
    bool m_turns = false;
    QPointF m_start;
    QPointF m_last;
    QVector<QPointF> m_path;
};

} // namespace Kestrel::UI
