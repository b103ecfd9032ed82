#include <KxUI/browse/ChooserTexts_p.h>

#include <support/TestRegistry.h>

#include <QtTest>

using namespace Kestrel::UI;
using Deed = ChooserState::Deed;
using Meaning = NameReading::Meaning;
using Mode = NameRules::Mode;
using Phase = ChooserState::Phase;
using Problem = ChooserState::Problem;
using Sheet = ChooserState::Sheet;

namespace {

NameReading reading(Meaning meaning, NameProblem problem = NameProblem::None, int replaced = 0,
                    const std::string& folder = {}) {
    NameReading reading;
    reading.meaning = meaning;
    reading.problem = problem;
    reading.replaced.count = replaced;
    reading.folder = folder;
    return reading;
}

ChooserState stateFor(Mode mode, bool createsFolders = false) {
    ChooserState state;
    state.setRules({mode, true, createsFolders});
    return state;
}

} // namespace

class ChooserStateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void accepts() {
        const NameReading file = reading(Meaning::Names);
        const struct {
            Mode mode;
            NameReading reading;
            bool isSettled;
            Deed deed;
        } rows[] = {
            {Mode::OpenFile, reading(Meaning::Nothing), true, Deed::None},
            {Mode::OpenFile, file, true, Deed::Finish},
            {Mode::OpenFile, file, false, Deed::Ask},
            {Mode::OpenFile, reading(Meaning::Names, NameProblem::NotFound), false, Deed::Ask},
            {Mode::OpenFile, reading(Meaning::Names, NameProblem::SeveralNames), true, Deed::Say},
            {Mode::OpenFile, reading(Meaning::Filter), true, Deed::Filter},
            {Mode::OpenFile, reading(Meaning::Folder), true, Deed::GoTo},
            {Mode::OpenFile, reading(Meaning::Address), true, Deed::Finish},
            {Mode::SaveFile, file, true, Deed::Ask},
            {Mode::SaveFile, reading(Meaning::Folder), true, Deed::GoTo},
            {Mode::OpenFolder, reading(Meaning::Folder), true, Deed::Finish},
            {Mode::OpenFolder, reading(Meaning::Folder), false, Deed::Ask},
        };
        for (const auto& row : rows) {
            ChooserState state = stateFor(row.mode);
            QCOMPARE(state.accept(row.reading, row.isSettled), row.deed);
            QCOMPARE(state.phase(), row.deed == Deed::Ask ? Phase::Asking : Phase::Editing);
        }
        ChooserState quick;
        quick.setRules({Mode::SaveFile, false, false});
        QCOMPARE(quick.accept(file, true), Deed::Finish);
    }

    void answers() {
        const NameReading file = reading(Meaning::Names);
        const NameReading replacing = reading(Meaning::Names, NameProblem::None, 3);
        const NameReading inFolder = reading(Meaning::Names, NameProblem::None, 0, "v2/");
        const struct {
            Mode mode;
            NameReading reading;
            FolderAnswer answer;
            Deed deed;
            Problem problem;
        } rows[] = {
            {Mode::SaveFile, file, {}, Deed::Finish, Problem::None},
            {Mode::SaveFile, file, {0, false, false}, Deed::Say, Problem::NotWritable},
            {Mode::SaveFile, file, {5, false, true}, Deed::Say, Problem::Folder},
            {Mode::SaveFile, inFolder, {2, true, true}, Deed::MakeFolder, Problem::None},
            {Mode::SaveFile, file, {2, true, true}, Deed::Say, Problem::Folder},
            {Mode::SaveFile, reading(Meaning::Folder), {}, Deed::GoTo, Problem::None},
            {Mode::OpenFile, file, {0, false, false}, Deed::Finish, Problem::None},
            {Mode::OpenFile, replacing, {}, Deed::Finish, Problem::None},
            {Mode::OpenFile,
             reading(Meaning::Names, NameProblem::NotFound),
             {},
             Deed::Say,
             Problem::Name},
            {Mode::OpenFolder, reading(Meaning::Folder), {}, Deed::Finish, Problem::None},
            {Mode::OpenFolder,
             reading(Meaning::Folder),
             {2, true, true},
             Deed::Say,
             Problem::Folder},
        };
        for (const auto& row : rows) {
            ChooserState state = stateFor(row.mode, true);
            QCOMPARE(state.answered(row.reading, row.answer), Deed::None); // nobody asked
            state.accept(reading(Meaning::Names, NameProblem::NotFound), false);
            QCOMPARE(state.phase(), Phase::Asking);
            QCOMPARE(state.answered(row.reading, row.answer), row.deed);
            QCOMPARE(state.problem(), row.problem);
        }
        ChooserState state = stateFor(Mode::SaveFile, true);
        state.accept(inFolder, false);
        QCOMPARE(state.answered(inFolder, {2, true, true}), Deed::MakeFolder);
        QCOMPARE(state.folderMade(13), Deed::Say);
        QCOMPARE(state.problem(), Problem::NotMade);
        state.accept(inFolder, false);
        QCOMPARE(state.folderMade(0), Deed::Finish);
    }

    void asksTheUser() {
        const NameReading replacing = reading(Meaning::Names, NameProblem::None, 3);
        for (const Sheet sheet : {Sheet::Replace, Sheet::NotKnown}) {
            const auto ask = [&](ChooserState& state) {
                state.accept(replacing, true);
                if (sheet == Sheet::Replace)
                    state.answered(replacing, {});
                else
                    state.timedOut();
            };
            ChooserState state = stateFor(Mode::SaveFile);
            ask(state);
            QCOMPARE(state.sheet(), sheet);
            QCOMPARE(state.accept(replacing, true), Deed::None); // Return is Cancel's
            QCOMPARE(state.answered(replacing, {}), Deed::None); // comes too late
            QCOMPARE(state.escape(), Deed::None);
            QCOMPARE(state.phase(), Phase::Editing);
            QCOMPARE(state.confirm(), Deed::None);
            ask(state);
            state.edited();
            QCOMPARE(state.sheet(), Sheet::None);
            ask(state);
            QCOMPARE(state.confirm(), Deed::Finish);
        }
    }

    void escapesOneStepAPress() {
        ChooserState state = stateFor(Mode::SaveFile);
        state.accept(reading(Meaning::Names), true);
        QCOMPARE(state.escape(), Deed::None);
        QCOMPARE(state.timedOut(), Deed::None);
        QCOMPARE(state.escape(), Deed::Reject);
    }
};

KXUI_TEST(ChooserStateTest);

#include "ChooserStateTest.moc"
