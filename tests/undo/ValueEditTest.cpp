#include "UndoFixture.h"

#include <KxUI/undo/ValueEdit.h>
#include <KxUI/undo/ValueEditClock_p.h>

#include <support/TestRegistry.h>

using namespace Kestrel::UI;

namespace {

qint64 now = 0;

} // namespace

class ValueEditTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_group = std::make_unique<MultiStackUndoGroup>();
        m_group->addProject(&m_project);
        m_group->addProject(&m_other);
        m_value = 1;
    }
    void cleanup() {
        if (m_group)
            m_group->removeProject(&m_project);
        if (m_group)
            m_group->removeProject(&m_other);
    }

    // One step at the end, or none; what can be redone is only lost with a step.
    void stepsLeft() {
        const struct {
            QVector<int> changes;
            bool accepted;
            int entries; ///< afterwards; before there is one to redo and the other project's
            int value;
        } rows[] = {
            {{}, true, 2, 1},     {{2, 3}, true, 2, 3}, // instead of the one to redo
            {{2, 1}, true, 2, 1}, {{2, 3}, false, 2, 1}, {{2, 1}, false, 2, 1},
        };
        for (const auto& row : rows) {
            cleanup();
            init();
            ValueEdit<int> edit = {m_group.get(), &m_project, setter()};
            perform(edit, {5});
            m_group->undo();
            m_group->performCommand(new AddCommand(&m_other, 9), &m_other);
            const QUndoCommand* redo = m_group->getRedoCommand();
            perform(edit, row.changes, row.accepted);
            QCOMPARE(int(m_group->undoCommands().size()), row.entries);
            QCOMPARE(m_value, row.value);
            QVERIFY(!edit.isActive());
            const bool stepped = row.accepted && row.value != 1;
            QCOMPARE(m_group->getRedoCommand(), stepped ? nullptr : redo);
            QCOMPARE(m_group->undoText(), stepped ? QStringLiteral("change") : QStringLiteral("9"));
            m_group->undo();
            QCOMPARE(m_value, 1);
        }
    }

    // Whoever reaches into the history first sees the value of the start.
    void takenBackByOthers() {
        const std::function<void()> acts[] = {
            [this] { m_group->undo(); },
            [this] { m_group->redo(); },
            [this] { m_group->performCommand(new AddCommand(&m_other, 9), &m_other); },
            [this] { m_group->removeProject(&m_project); },
        };
        for (const auto& act : acts) {
            cleanup();
            init();
            m_group->performCommand(new AddCommand(&m_other, 7), &m_other);
            m_group->performCommand(new AddCommand(&m_other, 8), &m_other);
            m_group->undo();
            ValueEdit<int> edit = {m_group.get(), &m_project, setter()};
            int cancelled = 0;
            edit.onCancelled([&] {
                ++cancelled;
                edit.change(77); // as a widget tells that goes back itself
                edit.finish(false);
            });
            edit.begin(m_value, QStringLiteral("change"));
            edit.change(4);
            const auto before = m_group->undoCommands();
            act();
            QCOMPARE(cancelled, 1);
            QCOMPARE(m_value, 1);
            QVERIFY(!edit.isActive());
            m_group->undo();
            QCOMPARE(cancelled, 1);
        }
    }

    void endsWithTheObject() {
        {
            ValueEdit<int> edit = {m_group.get(), &m_project, setter()};
            edit.begin(m_value, QString());
            edit.change(4);
        }
        QCOMPARE(m_value, 1);
        auto* deleted = new ValueEdit<int>(m_group.get(), &m_project,
                                           [&](int) { delete std::exchange(m_edit, nullptr); });
        m_edit = deleted;
        deleted->begin(1, QString());
        deleted->change(2); // the host destroys the edit when it hears of the value
        ValueEdit<int> alone = {nullptr, nullptr, setter()};
        perform(alone, {6});
        QCOMPARE(m_value, 6);
        ValueEdit<int> left = {m_group.get(), &m_project, setter()};
        left.begin(m_value, QString());
        left.change(8);
        m_group.reset();
        left.finish(true);
        QCOMPARE(m_value, 8);
    }

    void merges() {
        valueEditClock = [] { return now; };
        const struct {
            int mergeWithin;
            int wait;
            int to;
            int entries;
        } rows[] = {{0, 0, 3, 2}, {2000, 2000, 3, 1}, {2000, 2001, 3, 2}, {2000, 10, 1, 2}};
        for (const auto& row : rows) {
            cleanup();
            init();
            ValueEdit<int> edit = {m_group.get(), &m_project, setter(), row.mergeWithin};
            ValueEdit<int> another = {m_group.get(), &m_project, setter(), row.mergeWithin};
            perform(edit, {2});
            now += row.wait;
            perform(edit, {row.to});
            QCOMPARE(int(m_group->undoCommands().size()), row.entries);
            perform(another, {8});
            QCOMPARE(int(m_group->undoCommands().size()), row.entries + 1);
            m_group->makeIndex(0);
            QCOMPARE(m_value, 1);
            m_group->makeIndex(row.entries);
            QCOMPARE(m_value, row.to);
        }
    }

private:
    ValueEdit<int>::Apply setter() {
        return [this](int value) { m_value = value; };
    }
    void perform(ValueEdit<int>& edit, const QVector<int>& changes, bool accepted = true) {
        edit.begin(m_value, QStringLiteral("change"));
        for (const int value : changes) {
            edit.change(value);
            QCOMPARE(m_value, value);
        }
        edit.finish(accepted);
    }

    UndoableProject m_project;
    UndoableProject m_other;
    std::unique_ptr<MultiStackUndoGroup> m_group;
    ValueEdit<int>* m_edit = nullptr;
    int m_value = 1;
};

KXUI_TEST(ValueEditTest);
#include "ValueEditTest.moc"
