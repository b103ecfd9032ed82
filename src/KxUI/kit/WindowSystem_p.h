#pragma once

class QRegion;
class QWidget;

namespace Kestrel::UI {

/** \file
    Requests that some window systems cannot fulfil and then complain about on every call. These ask
    only where the answer can be yes; elsewhere they do nothing. */

/** Has the window manager treat a tool window that is not shown yet like any other window: many let
    no tool window go full screen, and some do not maximize one. */
void presentAsNormal(QWidget* window);

/** Raises a top-level window above the others of the application. */
void raiseWindow(QWidget* window);

/** Raises and activates a top-level window. */
void bringToFront(QWidget* window);

/** Sets the opacity of a top-level window, 0 (unseen) to 1. */
void setWindowOpacity(QWidget* window, double opacity);

/** Gives a top-level window the shape `mask`, in its own coordinates. */
void setWindowShape(QWidget* window, const QRegion& mask);

/** Sends every mouse event to `widget` until `releaseMouse`; returns whether the window system was
    asked. */
bool grabMouse(QWidget* widget);

} // namespace Kestrel::UI
