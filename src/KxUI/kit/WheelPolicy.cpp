#include <KxUI/kit/WheelPolicy.h>

#include <QApplication>
#include <QWidget>

namespace Kestrel::UI {

bool WheelPolicy::takes(Policy policy, const QWidget* widget) {
    if (!widget || policy == WheelNever)
        return false;
    if (policy == WheelAlways || widget->hasFocus())
        return true;
    const QWidget* focused = QApplication::focusWidget();
    return focused && widget->isAncestorOf(focused);
}

} // namespace Kestrel::UI
