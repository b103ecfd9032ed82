#pragma once

#include <QString>

#include <vector>

namespace Kestrel::UI {
class ScopeView;
}

namespace Kestrel::Workbench {

/** A scope that a pane can show. */
struct ScopeKind {
    /** Names it in saved workspaces, so it never changes. */
    const char* id;
    /** In English; the reader sees its translation. */
    const char* title;
    /** Makes it, without a parent and without a model. */
    UI::ScopeView* (*make)();

    QString translatedTitle() const;
};

/** Every kind, in the order of the menu. */
const std::vector<ScopeKind>& scopeKinds();

/** The number of that kind; -1 without one. */
int scopeKindIndex(const QString& id);

} // namespace Kestrel::Workbench
