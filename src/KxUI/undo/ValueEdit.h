#pragma once

#include <KxUI/Export.h>
#include <KxUI/undo/UndoCommandItem.h>

#include <QString>
#include <QUndoCommand>

#include <functional>
#include <memory>
#include <utility>

namespace Kestrel::UI {

class MultiStackUndoGroup;

/** What edits of all types of values have in common: see ValueEdit. */
class KXUI_EXPORT ValueEditBase {
public:
    ValueEditBase(const ValueEditBase&) = delete;
    ValueEditBase& operator=(const ValueEditBase&) = delete;

    /** Whether an edit goes on. */
    bool isActive() const;

    /** Told when an undo, a redo or another command took the edit back: connect it to the widget's
        cancelEdit(). Only the last one that was given is told. */
    void onCancelled(std::function<void()> cancelled);

protected:
    /** A step of the history. Steps of the same source merge within a time that it knows. */
    class KXUI_EXPORT Command : public QUndoCommand {
    public:
        /** Steps with the same `source`, which is shared with their edit, may merge; it holds the
            milliseconds that they do so within, or 0. */
        Command(std::shared_ptr<const int> source, const QString& text);
        /** Reimplemented from Qt. */
        int id() const override;
        bool mergeWith(const QUndoCommand* other) override;

    protected:
        /** Goes on to the value after the other command, which is of the same source. False where
            nothing would be left of both. */
        virtual bool extend(const Command& other) = 0;

    private:
        std::shared_ptr<const int> m_source; ///< the milliseconds that it merges within
        qint64 m_time;
    };

    /** As ValueEdit(). */
    ValueEditBase(MultiStackUndoGroup* group, UndoableProject* project, int mergeWithin);
    virtual ~ValueEditBase();

    /** What ValueEdit::begin() and finish() do about the history. */
    void beginEdit(const QString& text);
    void finishEdit(bool accepted);
    /** What ~ValueEdit() calls, while the values are still there. */
    void end();

    /** Applies the value of the beginning, if another one was applied since. */
    virtual void showStart() = 0;
    /** Whether the value is another one than at the beginning. */
    virtual bool isChanged() const = 0;
    /** The step from the value of the beginning to the present one, for the caller to own. */
    virtual QUndoCommand* makeCommand(std::shared_ptr<const int> source,
                                      const QString& text) const = 0;

private:
    struct Private;
    const std::unique_ptr<Private> m;
};

/** One edit of one value, seen from the host: shows every change at once and leaves one step in the
    history when the edit ends, or none. While it runs, nothing is in the history, so that an edit
    taken back leaves the entries to redo as they were. When anybody undoes, redoes or performs a
    command meanwhile, or a project is removed, the edit is taken back first.

    A widget's editStarted() begins, valueEdited() changes and editFinished() finishes it. The
    object serves one edit after another. `T` is copied, and compared by ==. Interface thread. */
template <class T>
class ValueEdit final : public ValueEditBase {
public:
    /** Sets the value in the project. */
    using Apply = std::function<void(const T&)>;

    /** Group and project are borrowed; an edit of a group that is gone leaves no step. `apply` sets
        the value in the project; the steps in the history keep copies of it. Edits that end within
        `mergeWithin` milliseconds after another one become one step with it: for a widget whose
        wheel and keys are short edits. */
    ValueEdit(MultiStackUndoGroup* group, UndoableProject* project, Apply apply,
              int mergeWithin = 0)
        : ValueEditBase(group, project, mergeWithin)
        , m_apply(std::move(apply)) {}

    /** Takes back what is not finished. */
    ~ValueEdit() override { end(); }

    /** An edit begins; one that goes on is over before, and accepted. `now` is the value to come
        back to, `text` that of the step. */
    void begin(const T& now, const QString& text) {
        finish(true);
        m_start = now;
        m_value = now;
        beginEdit(text);
    }

    /** Applies the value, nothing else. Ignored where no edit goes on: it may have been taken
        back. */
    void change(const T& value) {
        if (!isActive())
            return;
        m_value = value;
        const Apply apply = m_apply; // may destroy this object
        apply(value);
    }

    /** The edit is over. Accepted, it becomes a step of the history if the value is not what it was
        at the beginning; else the value of the beginning is applied. Ignored where no edit goes
        on. */
    void finish(bool accepted) { finishEdit(accepted); }

private:
    class Step final : public Command {
    public:
        Step(std::shared_ptr<const int> source, const QString& text, T before, T after, Apply apply)
            : Command(std::move(source), text)
            , m_before(std::move(before))
            , m_after(std::move(after))
            , m_apply(std::move(apply)) {}

        void undo() override { m_apply(m_before); }
        void redo() override { m_apply(m_after); }

    protected:
        bool extend(const Command& other) override {
            const T& after = static_cast<const Step&>(other).m_after;
            if (after == m_before)
                return false;
            m_after = after;
            return true;
        }

    private:
        const T m_before;
        T m_after;
        const Apply m_apply;
    };

    void showStart() override {
        if (m_value == m_start)
            return;
        m_value = m_start;
        const Apply apply = m_apply;
        const T start = m_start;
        apply(start);
    }
    bool isChanged() const override { return !(m_value == m_start); }
    QUndoCommand* makeCommand(std::shared_ptr<const int> source,
                              const QString& text) const override {
        return new Step(std::move(source), text, m_start, m_value, m_apply);
    }

    Apply m_apply;
    T m_start = T();
    T m_value = T();
};

} // namespace Kestrel::UI
