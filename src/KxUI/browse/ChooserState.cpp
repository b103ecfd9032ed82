#include <KxUI/browse/ChooserState_p.h>

namespace Kestrel::UI {

using Meaning = NameReading::Meaning;
using Mode = NameRules::Mode;

ChooserState::Deed ChooserState::say(Problem problem, int error) {
    edited();
    m_problem = problem;
    m_error = error;
    return Deed::Say;
}

ChooserState::Deed ChooserState::show(Sheet sheet) {
    m_phase = Phase::Sheet;
    m_sheet = sheet;
    return Deed::None;
}

ChooserState::Deed ChooserState::finish() {
    edited();
    return Deed::Finish;
}

void ChooserState::edited() {
    m_phase = Phase::Editing;
    m_sheet = Sheet::None;
    m_problem = Problem::None;
    m_error = 0;
}

ChooserState::Deed ChooserState::accept(const NameReading& reading, bool isSettled) {
    if (m_phase != Phase::Editing)
        return Deed::None;
    // What is not listed may have been written since.
    const bool mayAppear = reading.problem == NameProblem::NotFound;
    if (reading.problem != NameProblem::None && !mayAppear)
        return say(Problem::Name);
    switch (reading.meaning) {
    case Meaning::Nothing:
        return Deed::None;
    case Meaning::Filter:
        return Deed::Filter;
    case Meaning::Address:
        return finish();
    case Meaning::Folder:
        if (m_rules.mode != Mode::OpenFolder)
            return Deed::GoTo;
        break;
    case Meaning::Names:
        break;
    }
    const bool mustAsk =
        isSaving() ? m_rules.confirmsReplacing || !reading.folder.empty() : !isSettled || mayAppear;
    if (!mustAsk)
        return finish();
    edited();
    m_phase = Phase::Asking;
    return Deed::Ask;
}

ChooserState::Deed ChooserState::answered(const NameReading& reading, const FolderAnswer& answer) {
    if (m_phase != Phase::Asking)
        return Deed::None;
    if (answer.isMissing && isSaving() && m_rules.createsFolders && !reading.folder.empty())
        return Deed::MakeFolder;
    if (answer.error != 0)
        return say(Problem::Folder, answer.error);
    if (reading.meaning == Meaning::Folder && m_rules.mode != Mode::OpenFolder) {
        edited();
        return Deed::GoTo;
    }
    if (reading.problem != NameProblem::None)
        return say(Problem::Name);
    if (!isSaving())
        return finish();
    if (!answer.isWritable)
        return say(Problem::NotWritable);
    if (m_rules.confirmsReplacing && reading.replaced.count > 0)
        return show(Sheet::Replace);
    return finish();
}

ChooserState::Deed ChooserState::timedOut() {
    return m_phase == Phase::Asking ? show(Sheet::NotKnown) : Deed::None;
}

ChooserState::Deed ChooserState::folderMade(int error) {
    if (m_phase != Phase::Asking)
        return Deed::None;
    return error != 0 ? say(Problem::NotMade, error) : finish();
}

ChooserState::Deed ChooserState::confirm() {
    return m_phase == Phase::Sheet ? finish() : Deed::None;
}

ChooserState::Deed ChooserState::escape() {
    if (m_phase == Phase::Editing)
        return Deed::Reject;
    edited();
    return Deed::None;
}

} // namespace Kestrel::UI
