#pragma once

#include <QString>

namespace Kestrel::UI {

class DockMainWindow;

/** Looks over a whole workspace and names the first thing that cannot be: a strip and a stack that
    differ, a page that is in two places, an empty branch, a stranger in the tree, a wrong parent or
    controller, a drag that nobody holds. Empty when all is well. */
QString checkSanity(const DockMainWindow& workspace);

} // namespace Kestrel::UI
