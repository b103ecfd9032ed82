#pragma once

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockTabBar.h>

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>

namespace Kestrel::Test {

/** The left button on a strip of tabs, by events as the window system sends them while the strip
    has the mouse. Points are in desktop coordinates. */
class Mouse {
public:
    explicit Mouse(UI::Dock* dock)
        : m_strip(dock->tabBar()) {}

    QPoint tab(int index) const {
        return m_strip ? m_strip->mapToGlobal(m_strip->tabRect(index).center()) : QPoint();
    }
    void press(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        send(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, modifiers);
    }
    void move(const QPoint& at, Qt::MouseButtons held = Qt::LeftButton) {
        send(QEvent::MouseMove, at, Qt::NoButton, held, Qt::NoModifier);
    }
    void release(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        send(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton, modifiers);
    }
    /** Takes tab `index` out of the strip. */
    void tearOff(int index) {
        const QPoint at = tab(index);
        press(at);
        move(at + QPoint(0, 25));
        move(at + QPoint(0, 120));
    }

private:
    void send(QEvent::Type type, const QPoint& at, Qt::MouseButton button, Qt::MouseButtons buttons,
              Qt::KeyboardModifiers modifiers) {
        if (!m_strip)
            return;
        QMouseEvent event(type, m_strip->mapFromGlobal(at), at, button, buttons, modifiers);
        QCoreApplication::sendEvent(m_strip, &event);
    }
    QPointer<UI::DockTabBar> m_strip;
};

} // namespace Kestrel::Test
