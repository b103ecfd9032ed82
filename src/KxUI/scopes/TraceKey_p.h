#pragma once

#include <KxUI/scopes/ScopeGeometry_p.h>

namespace Kestrel::UI {

/** What a trace depends on beside the counts and what is shown of them. */
struct TraceKey {
    TraceKey() = default;
    TraceKey(const ScopeGeometry& geometry, const void* reference)
        : plot(geometry.plot)
        , view(geometry.view)
        , ratio(geometry.ratio)
        , held(reference) {}

    friend bool operator==(const TraceKey& a, const TraceKey& b) {
        return a.plot == b.plot && a.view == b.view && a.ratio == b.ratio && a.held == b.held;
    }

    QRectF plot;
    ScopeViewport view;
    double ratio = 0;           // of none
    const void* held = nullptr; // only compared
};

} // namespace Kestrel::UI
