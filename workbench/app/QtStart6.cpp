#include "app/QtStart.h"

namespace Kestrel::Workbench {

// Qt 6 does all of it by itself.
void prepareFileNames() {}
void prepareScreens(bool) {}

} // namespace Kestrel::Workbench
