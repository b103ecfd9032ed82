#pragma once

#include <KxUI/undo/MultiStackUndoGroup.h>

#include <QUndoCommand>

#include <functional>
#include <unordered_set>
#include <vector>

namespace Kestrel::UI {

/** A project whose document is the list of numbers that commands have added to it. */
class UndoableProject {
public:
    std::vector<int> document;
};

} // namespace Kestrel::UI

/** Adds numbers to the document of a project, and takes them back from its end. */
class AddCommand : public QUndoCommand {
public:
    AddCommand(Kestrel::UI::UndoableProject* project, int number, bool merges = false)
        : QUndoCommand(QString::number(number))
        , m_project(project)
        , m_numbers{number}
        , m_merges(merges) {
        living().insert(this);
    }
    ~AddCommand() override {
        living().erase(this);
        if (atEnd)
            atEnd();
    }

    void redo() override {
        m_project->document.insert(m_project->document.end(), m_numbers.begin(), m_numbers.end());
        if (meanwhile)
            meanwhile();
    }

    void undo() override {
        for (auto number = m_numbers.rbegin(); number != m_numbers.rend(); ++number) {
            Q_ASSERT(m_project->document.back() == *number);
            m_project->document.pop_back();
        }
        if (meanwhile)
            meanwhile();
    }

    bool mergeWith(const QUndoCommand* other) override {
        const auto* newer = static_cast<const AddCommand*>(other);
        if (!newer->m_merges)
            return false;
        m_numbers.insert(m_numbers.end(), newer->m_numbers.begin(), newer->m_numbers.end());
        setText(text() + QLatin1Char('+') + newer->text());
        return true;
    }

    static int alive() { return int(living().size()); }

    static void deleteAll() {
        while (!living().empty())
            delete *living().begin();
    }

    std::function<void()> meanwhile; ///< called at the end of redo() and undo()
    std::function<void()> atEnd;     ///< called by the destructor

private:
    static std::unordered_set<AddCommand*>& living() {
        static std::unordered_set<AddCommand*> commands;
        return commands;
    }

    Kestrel::UI::UndoableProject* m_project;
    std::vector<int> m_numbers;
    bool m_merges;
};
