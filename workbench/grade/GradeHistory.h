#pragma once

#include "grade/Grade.h"
#include "media/Sequence.h"

#include <KxUI/base/TimeBase.h>
#include <KxUI/undo/MultiStackUndoGroup.h>
#include <KxUI/undo/ValueEdit.h>

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

namespace Kestrel::Workbench {

/** The grades of all sequences that were opened, each a project of one undo history. A sequence
    that is opened again has its grade and its history. Interface thread. */
class GradeHistory : public QObject {
    Q_OBJECT

public:
    explicit GradeHistory(QObject* parent = nullptr);
    ~GradeHistory() override;

    UI::MultiStackUndoGroup* group() { return &m_group; }

    /** Makes a sequence the one that is graded; the empty one makes it none.
        @param leftAt  where the playhead stands in the sequence before */
    void open(const Sequence& sequence, Base::Time leftAt);

    /** Of the open sequence; the identity when there is none. */
    const Grade& grade() const;
    /** The same as it was before the edit that goes on. */
    const Grade& gradeBefore() const;
    bool hasSequence() const { return m_open != nullptr; }

    /** What the history calls the open sequence; null when there is none. Owned by this object. */
    UI::UndoableProject* openProject() const { return m_open; }

    /** The rate that the open sequence was given; nothing when it never was. */
    std::optional<Base::TimeBase> timeBase() const;
    void setTimeBase(Base::TimeBase timeBase);

    /** A step of another kind was undone or redone: asks for the sequence if it is not open. */
    void showChanged(UI::UndoableProject* project);

    /** Whether the open sequence is shown without its grade. No edit: it is not undone. */
    bool isBypassed() const { return m_bypassed; }

    /** Changes the open sequence's grade by one step.
        @param text  for the list of steps */
    void edit(const Grade& grade, const QString& text);

    /** Shows a grade that somebody edits, outside the history. The first one begins the edit; that
        of another editor is over then. */
    void change(const QObject* editor, const Grade& grade, const QString& text);

    /** The edit of that editor is over: one step, or, where it was not accepted or changed nothing,
        none. Nothing without one. */
    void finish(const QObject* editor, bool accepted);

    /** The title of the sequence that a step of the history belongs to. */
    QString titleOf(int step) const;

public slots:
    void setBypassed(bool bypassed);

signals:
    /** The open sequence's grade changed, or another sequence is open. */
    void gradeChanged();
    void bypassChanged(bool bypassed);

    /** An edit was ended by something else than its editor, which is still at it: an undo, or
        another sequence. */
    void editInterrupted();

    /** A step was undone or redone whose sequence is not the open one: it should be opened, to see
        what was done. Comes after all steps of a jump, for the last of them. */
    void sequenceWanted(const Kestrel::Workbench::Sequence& sequence, Kestrel::Base::Time at);

private:
    UI::UndoableProject* find(const Sequence& sequence) const;
    bool isEditing() const { return m_edit && m_edit->isActive(); }
    void begin(const QObject* editor, const QString& text);
    void apply(UI::UndoableProject* project, const Grade& grade);
    void askForChanged();

    UI::MultiStackUndoGroup m_group;
    std::vector<std::unique_ptr<UI::UndoableProject>> m_projects;
    UI::UndoableProject* m_open = nullptr;
    /** Whose step was undone or redone last, until it was asked for. */
    UI::UndoableProject* m_changed = nullptr;
    std::unique_ptr<UI::ValueEdit<Grade>> m_edit; ///< of the open sequence
    const QObject* m_editor = nullptr;
    Grade m_before; ///< the edit
    bool m_performing = false;
    bool m_bypassed = false;
};

} // namespace Kestrel::Workbench
