#pragma once

#include <QRect>
#include <QSize>
#include <QVector>

namespace Kestrel::UI {

/** What the layout of a pane depends on. Lengths in pixels, hints of missing parts are 0 x 0. */
struct PaneMetrics {
    QSize pane;
    bool titleVisible = true;
    bool hasMenu = false;
    bool hasCloseButton = false;
    QSize closeHint;
    QSize floatHint;
    int margin = 0;      ///< the style's margin of dock titles
    int lineSpacing = 0; ///< of the pane's font
    QSize stripHint;
    bool rightToLeft = false;
};

/** Where the parts of a pane go, in pane coordinates. */
struct PaneLayout {
    int titleHeight = 0;
    QRect titleBar;
    QRect menuButton;
    QRect strip;
    QRect closeButton;
    QRect floatButton;
    bool buttonsFit = true; ///< false: too narrow for the close and float buttons
    QRect stack;
};

/** Height of the title bar of a pane whose title is hidden. */
constexpr int HiddenTitleHeight = 3;

/** Width kept for the panel-menu button. */
constexpr int MenuButtonSpace = 22;

PaneLayout layOutPane(const PaneMetrics& metrics);

/** A window as a layout document describes it. */
struct SavedWindow {
    QRect rect; ///< position of the frame, size without it
    int screen = 0;
    bool maximized = false;
    bool fullScreen = false;
    QRect normal =
        {};           ///< the rectangle when it is no longer maximized; null when that is not known
    int stacking = 0; ///< among the floating windows: higher ones lie above lower ones
};

/** Where a saved window goes on the screens that are there. */
struct WindowPlan {
    QRect available; ///< of the screen it goes to
    QRect rect;      ///< position of the frame, size without it
    bool fullScreen = false;
};

/** Plans a window for the available areas of the present screens, the primary one first. `frame` is
    what the window manager adds to the size; `fillScreen` asks for the whole available area. */
WindowPlan planWindow(const SavedWindow& saved, bool fillScreen, const QVector<QRect>& areas,
                      const QSize& frame);

/** Sizes that a splitter can hold: none negative, and their sum no larger than a widget can be;
    larger ones keep their proportions. */
QList<int> splitterSizes(const QVector<int>& sizes);

} // namespace Kestrel::UI
