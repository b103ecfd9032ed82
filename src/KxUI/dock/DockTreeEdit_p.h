#pragma once

namespace Kestrel::UI {

/** While one is alive, splitters that are empty for the moment stay in the tree. The edit's author
    calls `updateDocks` on what may have stayed empty. Interface thread. */
class DockTreeEdit {
public:
    DockTreeEdit();
    ~DockTreeEdit();
    DockTreeEdit(const DockTreeEdit&) = delete;
    DockTreeEdit& operator=(const DockTreeEdit&) = delete;

    static bool isRunning();
};

} // namespace Kestrel::UI
