#include "scopes/ScopeKinds.h"

#include <KxUI/scopes/ColorSpaceScope.h>
#include <KxUI/scopes/HistogramScope.h>
#include <KxUI/scopes/Vectorscope.h>
#include <KxUI/scopes/WaveformScope.h>

#include <QCoreApplication>

#include <algorithm>

namespace Kestrel::Workbench {

using UI::HistogramScope;
using UI::WaveformScope;

namespace {

template <WaveformScope::Mode Mode>
UI::ScopeView* waveform() {
    auto* scope = new WaveformScope;
    scope->setMode(Mode);
    return scope;
}

} // namespace

const std::vector<ScopeKind>& scopeKinds() {
    static const std::vector<ScopeKind> kinds{
        {"waveform", QT_TRANSLATE_NOOP("ScopeKind", "Waveform"), waveform<WaveformScope::Luma>},
        {"rgb-parade", QT_TRANSLATE_NOOP("ScopeKind", "RGB Parade"),
         waveform<WaveformScope::RgbParade>},
        {"ycbcr-parade", QT_TRANSLATE_NOOP("ScopeKind", "YCbCr Parade"),
         waveform<WaveformScope::YCbCrParade>},
        {"vectorscope", QT_TRANSLATE_NOOP("ScopeKind", "Vectorscope"),
         []() -> UI::ScopeView* { return new UI::Vectorscope; }},
        {"histogram", QT_TRANSLATE_NOOP("ScopeKind", "Histogram"),
         []() -> UI::ScopeView* { return new HistogramScope; }},
        {"histogram-channels", QT_TRANSLATE_NOOP("ScopeKind", "Histogram by Channel"),
         []() -> UI::ScopeView* {
             auto* scope = new HistogramScope;
             scope->setLayout(HistogramScope::Stacked);
             return scope;
         }},
        {"cube", QT_TRANSLATE_NOOP("ScopeKind", "Colour Space"),
         []() -> UI::ScopeView* { return new UI::ColorSpaceScope; }},
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
