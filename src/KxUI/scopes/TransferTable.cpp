#include <KxUI/scopes/TransferTable_p.h>

#include <KxUI/scopes/Transfer_p.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <mutex>
#include <utility>

namespace Kestrel::UI {
namespace {

struct Kept {
    ScopeEncoding::Transfer transfer = ScopeEncoding::Transfer::AsStored;
    float whiteNits = 0;
    float peakNits = 0;
    CodeAxis axis{-1};
    std::shared_ptr<const TransferTable> table;

    bool fits(const ScopeEncoding& encoding, CodeAxis wanted) const {
        return table && transfer == encoding.transfer && whiteNits == encoding.whiteNits &&
               peakNits == encoding.peakNits && axis == wanted;
    }
};

// A film and its graded picture ask by turns. The last one that was asked for comes first.
struct KeptTables {
    std::mutex mutex;
    std::array<Kept, 4> tables;
};

// Never destroyed: a thread may still ask while the process ends.
KeptTables& kept() {
    static KeptTables* const instance = new KeptTables;
    return *instance;
}

TransferTable makeTable(const ScopeEncoding& encoding, CodeAxis axis) {
    TransferTable table(std::size_t(axis.count()));
    for (std::size_t code = 0; code < table.size(); ++code) {
        const float light = axis.value(std::uint32_t(code));
        // Infinities and what is no number stay what they are.
        table[code] = std::isfinite(light) ? float(signalOfLight(encoding, double(light))) : light;
    }
    return table;
}

} // namespace

std::shared_ptr<const TransferTable> transferTable(const ScopeEncoding& encoding, CodeAxis axis) {
    KeptTables& all = kept();
    {
        const std::lock_guard<std::mutex> lock(all.mutex);
        const auto found =
            std::find_if(all.tables.begin(), all.tables.end(),
                         [&](const Kept& each) { return each.fits(encoding, axis); });
        if (found != all.tables.end()) {
            std::rotate(all.tables.begin(), found, found + 1);
            return all.tables.front().table;
        }
    }
    Kept made{encoding.transfer, encoding.whiteNits, encoding.peakNits, axis,
              std::make_shared<const TransferTable>(makeTable(encoding, axis))};
    auto table = made.table;
    const std::lock_guard<std::mutex> lock(all.mutex);
    std::rotate(all.tables.begin(), all.tables.end() - 1, all.tables.end());
    std::swap(all.tables.front(), made); // the oldest dies after the lock
    return table;
}

} // namespace Kestrel::UI
