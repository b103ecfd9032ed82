#pragma once

#include <KxUI/scopes/CodeCounts_p.h>
#include <KxUI/scopes/ScopeEncoding.h>

#include <memory>
#include <vector>

namespace Kestrel::UI {

/** The signal of each code of light. */
using TransferTable = std::vector<float>;

/** The table of the encoding's transfer for these codes. The last one is kept, since a film asks for
    it at each picture. Any thread. */
std::shared_ptr<const TransferTable> transferTable(const ScopeEncoding& encoding, CodeAxis axis);

} // namespace Kestrel::UI
