#pragma once

#include "grade/Grade.h"
#include "media/Sequence.h"

#include <KxUI/undo/MultiStackUndoGroup.h>

#include <QObject>

#include <memory>
#include <vector>

namespace Kestrel::Workbench {

/** The grades of all sequences that were opened, each a project of one undo history. A sequence
    that is opened again has its grade and its history. Interface thread. */
class GradeHistory : public QObject {
    Q_OBJECT

public:
    /** What an edit changes. */
    enum class Part { Gain, Exposure, RedCurve, GreenCurve, BlueCurve, MasterCurve, Preview, All };

    explicit GradeHistory(QObject* parent = nullptr);
    ~GradeHistory() override;

    UI::MultiStackUndoGroup* group() { return &m_group; }

    /** Makes a sequence the one that is graded; the empty one makes it none.
        @param leftAt  where the playhead stands in the sequence before */
    void open(const Sequence& sequence, Base::Time leftAt);

    /** Of the open sequence; the identity when there is none. */
    const Grade& grade() const;
    bool hasSequence() const { return m_open != nullptr; }

    /** Whether the open sequence is shown without its grade. No edit: it is not undone. */
    bool isBypassed() const { return m_bypassed; }

    /** Changes the open sequence's grade, to be undone by one step with all changes of the same
        part since finishEdit().
        @param text  for the list of steps */
    void edit(const Grade& grade, Part part, const QString& text);

    /** The next change is a step of its own: the mouse was released. */
    void finishEdit() { ++m_edit; }

    /** The title of the sequence that a step of the history belongs to. */
    QString titleOf(int step) const;

public slots:
    void setBypassed(bool bypassed);

signals:
    /** The open sequence's grade changed, or another sequence is open. */
    void gradeChanged();
    void bypassChanged(bool bypassed);

    /** A step was undone or redone whose sequence is not the open one: it should be opened, to see
        what was done. Comes after all steps of a jump, for the last of them. */
    void sequenceWanted(const Kestrel::Workbench::Sequence& sequence, Kestrel::Base::Time at);

private:
    class Command;

    UI::UndoableProject* find(const Sequence& sequence) const;
    void apply(UI::UndoableProject* project, const Grade& grade);
    void askForChanged();

    UI::MultiStackUndoGroup m_group;
    std::vector<std::unique_ptr<UI::UndoableProject>> m_projects;
    UI::UndoableProject* m_open = nullptr;
    /** Whose step was undone or redone last, until it was asked for. */
    UI::UndoableProject* m_changed = nullptr;
    /** Changes of one edit have its number. */
    quint64 m_edit = 0;
    bool m_performing = false;
    bool m_bypassed = false;
};

} // namespace Kestrel::Workbench
