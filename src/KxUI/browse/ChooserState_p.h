#pragma once

#include <KxUI/browse/NameRow_p.h>

namespace Kestrel::UI {

/** What the disk said of the folder that names lie in. */
struct FolderAnswer {
    int error = 0;          ///< why it cannot be listed; 0 when it could
    bool isMissing = false; ///< the error says that there is no such folder
    bool isWritable = true;
};

/** The way from "Save" to a closed dialog: what is asked of the disk, for how long, and of the user.
    Plain: the dialog tells it what happened, does what it says and shows phase(), sheet() and
    problem(). */
class ChooserState {
public:
    /** How long the disk has for an answer, in milliseconds. */
    static constexpr int Deadline = 3000;

    enum class Phase : std::uint8_t {
        Editing,
        Asking, ///< the disk; Cancel works
        Sheet   ///< the user
    };
    enum class Sheet : std::uint8_t { None, Replace, NotKnown };

    /** What to do now. */
    enum class Deed : std::uint8_t {
        None,
        Say,        ///< problem()
        Ask,        ///< for the folder, with the deadline
        GoTo,       ///< the folder in the name
        Filter,     ///< the pattern in the name
        MakeFolder, ///< of the name
        Finish,     ///< with what is chosen
        Reject      ///< as Cancel does
    };

    /** What keeps the dialog open, beside a problem of the name. */
    enum class Problem : std::uint8_t { None, Name, Folder, NotWritable, NotMade };

    struct Rules {
        NameRules::Mode mode = NameRules::Mode::OpenFile;
        bool confirmsReplacing = true;
        bool createsFolders = false;
    };

    void setRules(const Rules& rules) { m_rules = rules; }

    Phase phase() const { return m_phase; }
    Sheet sheet() const { return m_sheet; }
    Problem problem() const { return m_problem; }
    int error() const { return m_error; } ///< of the system, with Problem::Folder and NotMade

    /** The user accepts what the fields say.
        @param isSettled  the folder need not be asked for names to be opened */
    Deed accept(const NameReading& reading, bool isSettled);
    /** The folder has answered; `reading` is that of its new listing. */
    Deed answered(const NameReading& reading, const FolderAnswer& answer);
    Deed timedOut();
    Deed folderMade(int error);
    /** The user wants it in spite of what the sheet says. */
    Deed confirm();
    /** One step back. */
    Deed escape();
    /** The fields say something else, or another folder is shown. */
    void edited();

private:
    Deed say(Problem problem, int error = 0);
    Deed show(Sheet sheet);
    Deed finish();
    bool isSaving() const { return m_rules.mode == NameRules::Mode::SaveFile; }

    Rules m_rules;
    Phase m_phase = Phase::Editing;
    Sheet m_sheet = Sheet::None;
    Problem m_problem = Problem::None;
    int m_error = 0;
};

} // namespace Kestrel::UI
