#pragma once

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

namespace Kestrel::Test {

/** Drags something to a widget and drops it; returns whether that was welcome. */
inline bool dropOn(QWidget& widget, const QMimeData& data) {
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &enter);
    if (!enter.isAccepted()) {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(&widget, &leave);
        return false;
    }
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &drop);
    return drop.isAccepted();
}

} // namespace Kestrel::Test
