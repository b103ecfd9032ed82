#include <KxUI/picker/platform/ScreenPortal_p.h>

namespace Kestrel::UI {

bool hasScreenPortal() {
    return false;
}

void askScreenPortal(QObject*, const ScreenColor::Told&) {}

} // namespace Kestrel::UI
