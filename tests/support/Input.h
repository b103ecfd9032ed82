#pragma once

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

namespace Kestrel::Test {

/** A move while buttons are held, which QTest::mouseMove() can't send. */
inline void moveMouse(QWidget& widget, const QPoint& at, Qt::MouseButtons held = Qt::LeftButton,
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QMouseEvent event(QEvent::MouseMove, at, widget.mapToGlobal(at), Qt::NoButton, held, modifiers);
    QCoreApplication::sendEvent(&widget, &event);
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

} // namespace Kestrel::Test
