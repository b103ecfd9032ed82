#include "scopes/ScopeKinds.h"

#include <KxUI/scopes/HistogramScope.h>

#include <QCoreApplication>

#include <algorithm>

namespace Kestrel::Workbench {

using UI::HistogramScope;

const std::vector<ScopeKind>& scopeKinds() {
    static const std::vector<ScopeKind> kinds{
        {"histogram", QT_TRANSLATE_NOOP("ScopeKind", "Histogram"),
         []() -> UI::ScopeView* { return new HistogramScope; }},
        {"histogram-channels", QT_TRANSLATE_NOOP("ScopeKind", "Histogram by Channel"),
         []() -> UI::ScopeView* {
             auto* scope = new HistogramScope;
             scope->setLayout(HistogramScope::Stacked);
             return scope;
         }},
    };
    return kinds;
}

int scopeKindIndex(const QString& id) {
    const auto& kinds = scopeKinds();
    const auto found = std::find_if(kinds.begin(), kinds.end(), [&id](const ScopeKind& kind) {
        return id == QLatin1String(kind.id);
    });
    return found == kinds.end() ? -1 : int(found - kinds.begin());
}

QString ScopeKind::translatedTitle() const {
    return QCoreApplication::translate("ScopeKind", title);
}

} // namespace Kestrel::Workbench
