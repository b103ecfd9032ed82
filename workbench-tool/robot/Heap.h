#pragma once

#include <QtGlobal>

namespace Kestrel::Workbench {

/** Bytes that the process has allocated and not freed; 0 where the system does not tell. */
qint64 heapBytes();

} // namespace Kestrel::Workbench
