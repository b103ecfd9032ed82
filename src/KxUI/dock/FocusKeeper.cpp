#include <KxUI/dock/FocusKeeper_p.h>

#include <QApplication>
#include <QWidget>

namespace Kestrel::UI {

FocusKeeper::FocusKeeper(const QWidget* subtree) {
    QWidget* focus = QApplication::focusWidget();
    if (isInside(subtree, focus))
        m_focus = focus;
}

FocusKeeper::~FocusKeeper() {
    if (m_focus && !m_focus->hasFocus() && m_focus->isVisible())
        m_focus->setFocus(Qt::OtherFocusReason);
}

bool isInside(const QWidget* ancestor, const QWidget* widget) {
    for (; widget; widget = widget->parentWidget()) {
        if (widget == ancestor)
            return true;
    }
    return false;
}

} // namespace Kestrel::UI
