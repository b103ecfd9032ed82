#pragma once

namespace Kestrel::Workbench {

/** Once per process, before the first decode: memory of pictures goes back to the system when they
    are freed, whatever was allocated after them. */
void setUpHeap();

} // namespace Kestrel::Workbench
