#pragma once

#include <QMetaType>

namespace Kestrel::UI {

/** Where in a pane a dragged tab is dropped. The edge zones split the pane. */
enum DockDropZone : int {
    DropCentre = 0, ///< add as a tab
    DropLeft = 1,   ///< new pane to the left
    DropRight = 2,  ///< new pane to the right
    DropTop = 4,    ///< new pane above
    DropBottom = 8, ///< new pane below
};

} // namespace Kestrel::UI

Q_DECLARE_METATYPE(Kestrel::UI::DockDropZone)
