#pragma once

#include <QKeyEvent>

#include <algorithm>
#include <initializer_list>

namespace Kestrel::UI {

/** Whether the event is one of the keys, alone or with Shift: a widget that edits by them takes
    them before the shortcuts of its window, while it has the focus. */
inline bool isOwnKey(const QKeyEvent& event, std::initializer_list<int> keys) {
    const Qt::KeyboardModifiers others =
        event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    return others == Qt::NoModifier &&
           std::find(keys.begin(), keys.end(), event.key()) != keys.end();
}

/** The keys by which Qt's sliders, and what is like them, are moved. */
inline bool isSliderKey(const QKeyEvent& event) {
    return isOwnKey(event, {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp,
                            Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End});
}

} // namespace Kestrel::UI
