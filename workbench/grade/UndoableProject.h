#pragma once

#include "grade/Grade.h"
#include "media/Marks.h"
#include "media/Sequence.h"

#include <KxUI/base/TimeBase.h>

#include <optional>

/** What the shared history calls a project, and leaves to its host: here a sequence with its grade, its marks and
    its rate.
    Lives from the first opening of the sequence to the end of the session. */
class Kestrel::UI::UndoableProject {
public:
    explicit UndoableProject(Workbench::Sequence opened)
        : sequence(std::move(opened)) {}

    Workbench::Sequence sequence;
    Workbench::Grade grade;
    Workbench::Marks marks;
    /** Nothing until it was open. */
    std::optional<Base::TimeBase> timeBase;
    /** Where the playhead was when another sequence was opened. */
    Base::Time leftAt = Base::InvalidTime;
};
