#pragma once

#include <KxUI/picker/platform/ScreenColor_p.h>

namespace Kestrel::UI {

/** Whether the desktop may have a pipette that it is asked for by D-Bus. */
bool hasScreenPortal();

/** As ScreenColor::ask(). */
void askScreenPortal(QObject* context, const ScreenColor::Told& told);

} // namespace Kestrel::UI
