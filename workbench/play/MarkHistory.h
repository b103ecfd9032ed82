#pragma once

#include "media/Marks.h"

#include <KxUI/time/TimeSliderModel.h>

#include <QObject>

namespace Kestrel::UI {
class UndoableProject;
}

namespace Kestrel::Workbench {

class GradeHistory;

/** Keeps the marks of each sequence and makes a step of the history of whatever changes them: a key,
    a button, a drag on the timeline. What happens between two turns of the event loop is one step.
    Interface thread. */
class MarkHistory : public QObject {
    Q_OBJECT

public:
    /** Both are borrowed and outlive it. */
    MarkHistory(UI::TimeSliderModel* model, GradeHistory* grades);

    /** While a mark is being dragged, nothing becomes a step. */
    void hold(bool holds);

    /** Another sequence is about to be opened: what changed becomes a step at once. */
    void leave();

    /** The model has the times of the sequence that is open now: gives it the marks as they were
        left. */
    void enter();

private:
    void follow(UI::TimeSliderModel::TimeFlags flags);
    void lookLater();
    void look();
    Marks marks() const;
    void show(const Marks& marks);
    void apply(UI::UndoableProject* project, const Marks& marks);

    UI::TimeSliderModel* m_model;
    GradeHistory* m_grades;
    bool m_holds = false;
    bool m_looksLater = false;
    /** Between two sequences, and while a step is made. */
    bool m_ignores = false;
};

} // namespace Kestrel::Workbench
