#include <KxUI/scopes/TransferTable_p.h>

#include <KxUI/scopes/Transfer_p.h>

#include <cmath>
#include <mutex>

namespace Kestrel::UI {
namespace {

struct Kept {
    std::mutex mutex;
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

// Never destroyed: a thread may still ask while the process ends.
Kept& kept() {
    static Kept* const instance = new Kept;
    return *instance;
}

} // namespace

std::shared_ptr<const TransferTable> transferTable(const ScopeEncoding& encoding, CodeAxis axis) {
    Kept& last = kept();
    {
        const std::lock_guard<std::mutex> lock(last.mutex);
        if (last.fits(encoding, axis))
            return last.table;
    }
    auto table = std::make_shared<TransferTable>(std::size_t(axis.count()));
    for (std::size_t code = 0; code < table->size(); ++code) {
        const float light = axis.value(std::uint32_t(code));
        // Infinities and what is no number stay what they are.
        (*table)[code] =
            std::isfinite(light) ? float(signalOfLight(encoding, double(light))) : light;
    }
    const std::lock_guard<std::mutex> lock(last.mutex);
    last.transfer = encoding.transfer;
    last.whiteNits = encoding.whiteNits;
    last.peakNits = encoding.peakNits;
    last.axis = axis;
    last.table = table;
    return table;
}

} // namespace Kestrel::UI
