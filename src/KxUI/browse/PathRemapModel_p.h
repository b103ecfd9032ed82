#pragma once

#include <KxUI/browse/PathRemapModel.h>

#include <QPointer>
#include <QUndoStack>

namespace Kestrel::UI {

struct PathRemapModel::Private {
    static constexpr std::size_t Most = 4096;

    explicit Private(PathRemapModel* model)
        : q(model) {}

    void show(const std::vector<PathRule>& wanted);
    void rework();
    QVariant dataOf(int row, int column, int role) const;
    QString problemOf(int row) const;
    QString textOf(int row, int column) const;
    QString toolTipOf(int row, int column) const;
    QString spoken(int row, int column) const;
    bool setPath(int row, int column, const QString& text);
    bool setDraft(int column, const QString& text);
    int count() const { return static_cast<int>(rules.size()); }
    const PathRule& ruleAt(int row) const {
        return row < count() ? rules[static_cast<std::size_t>(row)] : draft;
    }

    PathRemapModel* const q;
    std::vector<PathRule> rules;
    PathRule draft; ///< of the last row
    bool isDraftTaken = false;
    PathRemap remap;
    std::string tried;
    PathRemap::Result result;
    QPointer<QUndoStack> stack;
};

} // namespace Kestrel::UI
