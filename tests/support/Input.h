#pragma once

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTabletEvent>
#include <QWheelEvent>
#include <QWidget>
#include <QtTest>

#include <memory>
#include <type_traits>

namespace Kestrel::Test {

/** A move while buttons are held, which QTest::mouseMove() can't send. */
inline void moveMouse(QWidget& widget, const QPoint& at, Qt::MouseButtons held = Qt::LeftButton,
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QMouseEvent event(QEvent::MouseMove, at, widget.mapToGlobal(at), Qt::NoButton, held, modifiers);
    QCoreApplication::sendEvent(&widget, &event);
}

/** An event of a pen whose tip is at a place. What is asked for differs between versions of Qt, the
    later of which want a device: that of the mouse will do. */
template <class Pen = QTabletEvent, class Mouse = QMouseEvent>
std::unique_ptr<Pen> makePenEvent(QEvent::Type type, const QPointF& at, const QPointF& globally,
                                  Qt::MouseButtons held) {
    const Qt::MouseButton button = type == QEvent::TabletMove ? Qt::NoButton : Qt::LeftButton;
    if constexpr (std::is_constructible_v<Pen, QEvent::Type, QPointF, QPointF, int, int, qreal, int,
                                          int, qreal, qreal, int, Qt::KeyboardModifiers, qint64,
                                          Qt::MouseButton, Qt::MouseButtons>) {
        return std::make_unique<Pen>(type, at, globally, Pen::Stylus, Pen::Pen, 0.5, 0, 0, 0.0, 0.0,
                                     0, Qt::NoModifier, 1, button, held);
    } else {
        const Mouse mouse(QEvent::MouseMove, at, globally, Qt::NoButton, held, Qt::NoModifier);
        return std::make_unique<Pen>(type, mouse.pointingDevice(), at, globally, 0.5, 0.0F, 0.0F,
                                     0.0F, 0.0, 0.0F, Qt::NoModifier, button, held);
    }
}

/** Gives the keyboard focus to a widget of a window that is shown. */
inline bool focus(QWidget& widget) {
    widget.activateWindow();
    if (!QTest::qWaitForWindowActive(widget.window()))
        return false;
    widget.setFocus();
    return widget.hasFocus();
}

/** Turns the wheel, 120 a notch; returns whether the widget took it. */
inline bool turnWheel(QWidget& widget, const QPoint& delta, const QPoint& at = QPoint(5, 5)) {
    QWheelEvent event(at, widget.mapToGlobal(at), {}, delta, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    event.ignore();
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

inline bool turnWheel(QWidget& widget, int delta, const QPoint& at = QPoint(5, 5)) {
    return turnWheel(widget, QPoint(0, delta), at);
}

/** Presses a key as a window does, first as the shortcut that it might be; returns whether the
    widget took it both times. */
inline bool sendKey(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    bool taken = true;
    for (const QEvent::Type type : {QEvent::ShortcutOverride, QEvent::KeyPress}) {
        QKeyEvent event(type, key, modifiers);
        event.setAccepted(type == QEvent::KeyPress);
        QCoreApplication::sendEvent(&widget, &event);
        taken = taken && event.isAccepted();
    }
    return taken;
}

} // namespace Kestrel::Test
