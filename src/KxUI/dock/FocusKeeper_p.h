#pragma once

#include <QPointer>

class QWidget;

namespace Kestrel::UI {

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
