#pragma once

#include <QPoint>

namespace Kestrel::UI {

/** Puts the pointer to a place on the desktop; whether it got there. Some window systems do not let
    a program do that. Tests put a window system of their own in its place. */
extern bool (*warpPointer)(const QPoint& to);

} // namespace Kestrel::UI
