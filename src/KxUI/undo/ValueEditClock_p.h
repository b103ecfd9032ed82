#pragma once

#include <QtGlobal>

namespace Kestrel::UI {

/** Milliseconds that only grow; tests replace it. */
extern qint64 (*valueEditClock)();

} // namespace Kestrel::UI
