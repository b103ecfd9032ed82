#include "UndoFixture.h"

#include <support/TestRegistry.h>

#include <QAction>

#include <array>
#include <memory>
#include <random>
#include <utility>

using namespace Kestrel::UI;

namespace {

using Projects = std::array<UndoableProject, 4>;

QStringList texts(const MultiStackUndoGroup& group) {
    QStringList all;
    for (const auto* entry : group.undoCommands())
        all += entry->command->text();
    return all;
}

// The rules of the history once more, on numbers.
struct Reference {
    struct Entry {
        QString text;
        int project;
    };
    std::vector<Entry> entries;
    int index = 0;

    void perform(int project, int number, bool merges) {
        for (auto i = entries.size(); i-- > std::size_t(index);) {
            if (entries[i].project == project)
                entries.erase(entries.begin() + std::ptrdiff_t(i));
        }
        int last = index;
        while (last > 0 && entries[std::size_t(last - 1)].project != project)
            --last;
        if (merges && last > 0)
            entries[std::size_t(last - 1)].text += QStringLiteral("+%1").arg(number);
        else
            entries.insert(entries.begin() + index++, {QString::number(number), project});
    }

    void remove(int project) {
        for (auto i = entries.size(); i-- > 0;) {
            if (entries[i].project != project)
                continue;
            entries.erase(entries.begin() + std::ptrdiff_t(i));
            index -= int(i) < index ? 1 : 0;
        }
    }

    QString textAt(int position) const {
        return position >= 0 && position < int(entries.size()) ? entries[std::size_t(position)].text
                                                               : QString();
    }
};

void compare(const MultiStackUndoGroup& group, const Reference& reference,
             const Projects& projects) {
    QStringList expected;
    std::array<QStringList, std::tuple_size<Projects>::value> documents;
    for (const auto& entry : reference.entries) {
        if (expected.size() < reference.index)
            documents[std::size_t(entry.project)] += entry.text.split(QLatin1Char('+'));
        expected += entry.text;
    }
    QCOMPARE(texts(group), expected);
    QCOMPARE(group.index(), reference.index);
    QCOMPARE(AddCommand::alive(), int(expected.size()));
    for (std::size_t i = 0; i < projects.size(); ++i) {
        QStringList document;
        for (const int number : projects[i].document)
            document += QString::number(number);
        QCOMPARE(document, documents[i]);
    }
}

} // namespace

class Deleter : public QObject {
    Q_OBJECT

public:
    explicit Deleter(QObject* victim)
        : m_victim(victim) {}

public slots:
    void deleteVictim() { delete m_victim; }

private:
    QPointer<QObject> m_victim;
};

class MultiStackUndoGroupTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(AddCommand::alive(), 0); }
    void randomOperations() {
        std::mt19937 random(7);
        const auto below = [&random](int end) { return int(random() % unsigned(end)); };
        Projects projects;
        MultiStackUndoGroup group;
        const std::unique_ptr<QAction> undo(group.createUndoAction(nullptr));
        const std::unique_ptr<QAction> redo(group.createRedoAction(nullptr));
        Reference reference;
        for (int number = 0; number < 20000; ++number) {
            const int which = below(int(projects.size()));
            UndoableProject* project = &projects[std::size_t(which)];
            const int size = int(reference.entries.size());
            switch (const int action = below(100)) {
            case 0:
                project->document.clear();
                group.removeProject(project);
                reference.remove(which);
                break;
            case 1:
            case 2:
                reference.index = below(size + 1);
                group.makeIndex(reference.index);
                break;
            default:
                if (action < 30) {
                    undo->trigger();
                    reference.index = std::max(reference.index - 1, 0);
                } else if (action < 55) {
                    redo->trigger();
                    reference.index = std::min(reference.index + 1, size);
                } else {
                    auto* command = new AddCommand(project, number, action < 65);
                    command->setObsolete(action % 2 == 0);
                    group.performCommand(command, project);
                    reference.perform(which, number, action < 65);
                }
            }
            compare(group, reference, projects);
            QCOMPARE(undo->text(), "Undo " + reference.textAt(reference.index - 1));
            QCOMPARE(redo->text(), "Redo " + reference.textAt(reference.index));
            QCOMPARE(undo->isEnabled(), reference.index > 0);
            QCOMPARE(redo->isEnabled(), reference.index < int(reference.entries.size()));
            if (QTest::currentTestFailed())
                return;
        }
        for (UndoableProject& project : projects)
            group.removeProject(&project);
    }

    void signalsOfAStep() {
        UndoableProject project;
        MultiStackUndoGroup group;
        QStringList log;
        const auto take = [&log] { return std::exchange(log, {}); };
        using Group = MultiStackUndoGroup;
        connect(&group, &Group::projectAboutToBeChanged, this, [&] { log += "about to"; });
        connect(&group, &Group::projectChanged, this, [&] { log += "changed"; });
        connect(&group, &Group::setRedoable, this,
                [&](bool on) { log += on ? "redo" : "no redo"; });
        connect(&group, &Group::setUndoable, this,
                [&](bool on) { log += on ? "undo" : "no undo"; });
        connect(&group, &Group::setUndoActionText, this, [&](const QString& text) { log += text; });
        connect(&group, &Group::setRedoActionText, this, [&](const QString& text) { log += text; });
        group.undo();
        group.redo();
        group.makeIndex(0);
        QCOMPARE(take(), QStringList());
        group.performCommand(new AddCommand(&project, 1), &project);
        QCOMPARE(take(), (QStringList{"about to", "no redo", "undo", "1", "", "changed"}));
        group.makeIndex(-5);
        QCOMPARE(take(), (QStringList{"about to", "redo", "no undo", "", "1", "changed"}));
        group.redo();
        group.performCommand(new AddCommand(&project, 2), &project);
        group.undo();
        take();
        group.performCommand(new AddCommand(&project, 3, true), &project);
        QCOMPARE(take(), (QStringList{"about to", "no redo", "undo", "1+3", "", "changed"}));
        group.removeProject(&project);
        QCOMPARE(take(), (QStringList{"no redo", "no undo", "", ""}));
    }

    void changesFromWithinAreRefused() {
        UndoableProject project;
        UndoableProject other;
        MultiStackUndoGroup group;
        auto* command = new AddCommand(&project, 2);
        const std::vector<std::pair<const char*, std::function<void()>>> calls{
            {"performCommand", [&] { group.performCommand(new AddCommand(&other, 9), &other); }},
            {"undo", [&] { group.undo(); }},
            {"undo", [&] { group.makeIndex(0); }},
            {"redo", [&] { group.redo(); }},
            {"addProject", [&] { group.addProject(&other); }},
            {"removeProject", [&] { group.removeProject(&project); }},
        };
        group.performCommand(new AddCommand(&project, 1), &project);
        group.performCommand(command, &project);
        group.performCommand(new AddCommand(&other, 3), &other);
        for (const auto& [name, call] : calls) {
            const QByteArray warning = QByteArray("MultiStackUndoGroup::") + name +
                                       " - refused: the history is being changed";
            command->meanwhile = call;
            QTest::ignoreMessage(QtWarningMsg, warning.constData());
            group.makeIndex(1);
            QCOMPARE(group.index(), 1);
            QTest::ignoreMessage(QtWarningMsg, warning.constData());
            group.makeIndex(3);
            QCOMPARE(texts(group), (QStringList{"1", "2", "3"}));
            QCOMPARE(group.index(), 3);
            QCOMPARE(AddCommand::alive(), 3);
            QVERIFY(group.projects().isEmpty());
        }
        command->meanwhile = nullptr;
        QStringList seen;
        command->atEnd = [&] { seen = texts(group) + QStringList(group.undoText()); };
        group.removeProject(&project);
        QCOMPARE(seen, (QStringList{"3", "3"}));
        group.removeProject(&other);
    }

    // Nothing walks the history: a hundred times these steps, squared, would take minutes.
    void manyCommands() {
        constexpr int Count = 30000;
        Projects projects;
        MultiStackUndoGroup group;
        for (int number = 0; number < Count; ++number) {
            UndoableProject* project = &projects[std::size_t(number % 2)];
            group.performCommand(new AddCommand(project, number), project);
        }
        group.makeIndex(0);
        for (int number = 0; number < Count; ++number) {
            UndoableProject* project = &projects[std::size_t(2 + number % 2)];
            group.performCommand(new AddCommand(project, number, number > 1 && number < 1000),
                                 project);
        }
        QCOMPARE(group.index(), Count - 998);
        group.makeIndex(2 * Count);
        QCOMPARE(projects[3].document.size(), std::size_t(Count / 2));
        for (UndoableProject& project : projects)
            group.removeProject(&project);
        QCOMPARE(group.index(), 0);
    }

    void anySlotMayDeleteTheGroup() {
        using Group = MultiStackUndoGroup;
        UndoableProject project;
        const std::vector<std::function<void(Group&)>> operations{
            [&](Group& group) { group.performCommand(new AddCommand(&project, 3), &project); },
            [&](Group& group) {
                group.performCommand(new AddCommand(&project, 3, true), &project);
            },
            [&](Group& group) { group.makeIndex(0); },
            [&](Group& group) { group.makeIndex(2); },
            [&](Group& group) { group.addProject(&project); },
            [&](Group& group) { group.removeProject(&project); },
        };
        const QMetaObject& meta = Group::staticMetaObject;
        for (int signal = meta.methodOffset(); signal < meta.methodCount(); ++signal) {
            if (meta.method(signal).methodType() != QMetaMethod::Signal)
                continue;
            for (const auto& operation : operations) {
                project.document.clear();
                auto* group = new Group;
                group->performCommand(new AddCommand(&project, 1), &project);
                group->performCommand(new AddCommand(&project, 2), &project);
                group->undo();
                Deleter deleter(group);
                connect(group, meta.method(signal), &deleter,
                        deleter.metaObject()->method(
                            deleter.metaObject()->indexOfSlot("deleteVictim()")));
                operation(*group);
                deleter.deleteVictim();
                AddCommand::deleteAll(); // which a group leaves alone
            }
        }
    }

    // The destructor leaves the command that the history has to its owner.
    void commandsOwnedAlreadyAreRefused() {
        UndoableProject project;
        AddCommand command(&project, 1);
        MultiStackUndoGroup group;
        command.meanwhile = [&] { group.performCommand(&command, &project); };
        for (int i = 0; i < 2; ++i) {
            QTest::ignoreMessage(QtWarningMsg, "MultiStackUndoGroup::performCommand - refused: the "
                                               "history has this command already");
            group.performCommand(&command, &project);
        }
        QTest::ignoreMessage(QtWarningMsg,
                             "MultiStackUndoGroup::performCommand - refused: no command");
        group.performCommand(nullptr, &project);
        QCOMPARE(texts(group), QStringList{"1"});
    }
};

KXUI_TEST(MultiStackUndoGroupTest);

#include "MultiStackUndoGroupTest.moc"
