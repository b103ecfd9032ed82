#pragma once

#include <QPointer>

class QWidget;

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

/** Gives the focus back, at its end, to the widget inside `subtree` that had it: moving a widget to
    another parent takes the focus away. */
class FocusKeeper {
public:
    explicit FocusKeeper(const QWidget* subtree);
    ~FocusKeeper();
    FocusKeeper(const FocusKeeper&) = delete;
    FocusKeeper& operator=(const FocusKeeper&) = delete;

private:
    QPointer<QWidget> m_focus;
};

/** Whether `widget` is `ancestor` or lies inside it, across windows too. */
bool isInside(const QWidget* ancestor, const QWidget* widget);

} // namespace Kestrel::UI
