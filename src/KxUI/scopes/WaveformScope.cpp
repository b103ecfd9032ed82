#include <KxUI/scopes/WaveformScope.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/scopes/ScopeMenu_p.h>
#include <KxUI/scopes/ScopeState_p.h>
#include <KxUI/scopes/WaveformScope_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double LargestValue = 65504; // of half floats
constexpr double LeastWidth = 1e-3;

const QString ModeKey = QStringLiteral("mode");
const QString OrientationKey = QStringLiteral("orientation");
const QString ColoringKey = QStringLiteral("coloring");
const QString EnvelopeKey = QStringLiteral("envelope");
const QString LimitsKey = QStringLiteral("limits");
const QString LowerKey = QStringLiteral("lower");
const QString UpperKey = QStringLiteral("upper");
const QString SecondUnitKey = QStringLiteral("secondUnit");
const QString SecondUnitShownKey = QStringLiteral("secondUnitShown");

} // namespace

WaveformScope::WaveformScope(QWidget* parent)
    : ScopeView(std::make_unique<WaveformScopePrivate>(), parent) {}

WaveformScope::~WaveformScope() = default;

WaveformScopePrivate& WaveformScope::own() const {
    return static_cast<WaveformScopePrivate&>(scope());
}

WaveformScope::Mode WaveformScope::mode() const {
    return own().mode;
}

void WaveformScope::setMode(Mode mode) {
    KXUI_INTERFACE_THREAD(this);
    if (own().mode == mode)
        return;
    own().mode = mode;
    own().changeCounts();
    Q_EMIT modeChanged(mode);
}

WaveformScope::Orientation WaveformScope::orientation() const {
    return own().orientation;
}

void WaveformScope::setOrientation(Orientation orientation) {
    KXUI_INTERFACE_THREAD(this);
    if (own().orientation == orientation)
        return;
    own().orientation = orientation;
    own().changeCounts();
    Q_EMIT orientationChanged(orientation);
}

WaveformScope::Coloring WaveformScope::coloring() const {
    return own().coloring;
}

void WaveformScope::setColoring(Coloring coloring) {
    KXUI_INTERFACE_THREAD(this);
    if (own().coloring == coloring)
        return;
    own().coloring = coloring;
    own().changePicture();
    Q_EMIT coloringChanged(coloring);
}

WaveformScope::Envelope WaveformScope::envelope() const {
    return own().envelope;
}

void WaveformScope::setEnvelope(Envelope envelope) {
    KXUI_INTERFACE_THREAD(this);
    if (own().envelope == envelope)
        return;
    own().envelope = envelope;
    own().resetPeak();
    Q_EMIT envelopeChanged(envelope);
}

WaveformScope::Limits WaveformScope::limits() const {
    return own().limits;
}

void WaveformScope::setLimits(Limits limits) {
    KXUI_INTERFACE_THREAD(this);
    if (own().limits == limits)
        return;
    own().limits = limits;
    own().changeTrace();
    Q_EMIT limitsChanged(limits);
}

double WaveformScope::lower() const {
    return own().axis.lower;
}

double WaveformScope::upper() const {
    return own().axis.upper;
}

void WaveformScope::setRange(double lower, double upper) {
    KXUI_INTERFACE_THREAD(this);
    const auto finite = [](double value, double otherwise) {
        return std::isnan(value) ? otherwise : std::clamp(value, -LargestValue, LargestValue);
    };
    const double a = finite(lower, 0);
    const double b = finite(upper, 1);
    WaveformAxis axis{std::min(a, b), std::max(a, b)};
    if (axis.upper - axis.lower < LeastWidth)
        axis.upper = axis.lower + LeastWidth;
    own().fits = false;
    if (own().axis.lower == axis.lower && own().axis.upper == axis.upper)
        return;
    own().axis = axis;
    own().changeCounts();
    Q_EMIT rangeChanged(axis.lower, axis.upper);
}

void WaveformScope::fitRange() {
    KXUI_INTERFACE_THREAD(this);
    own().fits = true;
    own().askModel();
    own().fitIfCounted();
}

ScopeUnit WaveformScope::secondUnit() const {
    return own().secondUnit;
}

void WaveformScope::setSecondUnit(ScopeUnit unit) {
    KXUI_INTERFACE_THREAD(this);
    if (own().secondUnit == unit || int(unit) < 0 || int(unit) >= ScopeUnitCount)
        return;
    own().secondUnit = unit;
    own().changeTrace();
    Q_EMIT secondUnitChanged();
}

bool WaveformScope::isSecondUnitShown() const {
    return own().isSecondUnitShown;
}

void WaveformScope::setSecondUnitShown(bool shown) {
    KXUI_INTERFACE_THREAD(this);
    if (own().isSecondUnitShown == shown)
        return;
    own().isSecondUnitShown = shown;
    own().changeTrace();
    Q_EMIT secondUnitChanged();
}

void WaveformScope::resetPeak() {
    KXUI_INTERFACE_THREAD(this);
    own().resetPeak();
}

QString WaveformScopePrivate::name() const {
    return WaveformScope::tr("Waveform");
}

void WaveformScopePrivate::saveTo(QVariantMap& state) const {
    state.insert(ModeKey, int(mode));
    state.insert(OrientationKey, int(orientation));
    state.insert(ColoringKey, int(coloring));
    state.insert(EnvelopeKey, int(envelope));
    state.insert(LimitsKey, int(limits));
    state.insert(LowerKey, axis.lower);
    state.insert(UpperKey, axis.upper);
    state.insert(SecondUnitKey, int(secondUnit));
    state.insert(SecondUnitShownKey, isSecondUnitShown);
}

void WaveformScopePrivate::restoreFrom(const QVariantMap& state) {
    using Scope = WaveformScope;
    Scope* const scope = view();
    ScopeState<Scope> from(state, scope);
    from.choice(ModeKey, &Scope::setMode, Scope::YCbCrStack);
    from.choice(OrientationKey, &Scope::setOrientation, Scope::Rows);
    from.choice(ColoringKey, &Scope::setColoring, Scope::Phosphor);
    from.choice(EnvelopeKey, &Scope::setEnvelope, Scope::BothEnvelopes);
    from.choice(LimitsKey, &Scope::setLimits, Scope::EbuR103);
    from.take(LowerKey, [&](const QVariant& value) {
        scope->setRange(value.toDouble(), state.value(UpperKey, axis.upper).toDouble());
    });
    from.choice(SecondUnitKey, &Scope::setSecondUnit, ScopeUnitCount - 1);
    from.flag(SecondUnitShownKey, &Scope::setSecondUnitShown);
}

void WaveformScopePrivate::addActions(QMenu& menu) {
    using Scope = WaveformScope;
    Scope* const scope = view();
    addChannelActions(menu);
    addUnitActions(menu);
    addToggle(menu, Scope::tr("By rows"), orientation == Scope::Rows, scope,
              [scope](bool on) { scope->setOrientation(on ? Scope::Rows : Scope::Columns); });
    addToggle(menu, Scope::tr("Phosphor"), coloring == Scope::Phosphor, scope,
              [scope](bool on) { scope->setColoring(on ? Scope::Phosphor : Scope::Plain); });
    QObject::connect(menu.addAction(Scope::tr("Fit range to values")), &QAction::triggered, scope,
                     &Scope::fitRange);
    if (envelope == Scope::PeakEnvelope || envelope == Scope::BothEnvelopes)
        QObject::connect(menu.addAction(Scope::tr("Forget peaks")), &QAction::triggered, scope,
                         &Scope::resetPeak);
}

void WaveformScopePrivate::addChannelActions(QMenu& menu) {
    using Scope = WaveformScope;
    Scope* const scope = view();
    addChoices<Scope::Mode>(menu, Scope::tr("Channels"),
                            {{Scope::Luma, Scope::tr("Luma")},
                             {Scope::RgbOverlay, Scope::tr("RGB, overlaid")},
                             {Scope::RgbParade, Scope::tr("RGB, parade")},
                             {Scope::RgbStack, Scope::tr("RGB, stacked")},
                             {Scope::YCbCrParade, Scope::tr("YCbCr, parade")},
                             {Scope::YCbCrStack, Scope::tr("YCbCr, stacked")}},
                            mode, scope, [scope](Scope::Mode each) { scope->setMode(each); });
    addChoices<Scope::Envelope>(menu, Scope::tr("Envelope"),
                                {{Scope::NoEnvelope, Scope::tr("None")},
                                 {Scope::InstantEnvelope, Scope::tr("Of the picture")},
                                 {Scope::PeakEnvelope, Scope::tr("Of all pictures")},
                                 {Scope::BothEnvelopes, Scope::tr("Both")}},
                                envelope, scope,
                                [scope](Scope::Envelope each) { scope->setEnvelope(each); });
}

void WaveformScopePrivate::addUnitActions(QMenu& menu) {
    using Scope = WaveformScope;
    Scope* const scope = view();
    addChoices<Scope::Limits>(menu, Scope::tr("Limits"),
                              {{Scope::NoLimits, Scope::tr("None")},
                               {Scope::Legal, Scope::tr("0 and 100 %")},
                               {Scope::EbuR103, Scope::tr("EBU R 103")}},
                              limits, scope,
                              [scope](Scope::Limits each) { scope->setLimits(each); });
    std::vector<std::pair<ScopeUnit, QString>> units;
    for (int i = 0; i < ScopeUnitCount; ++i)
        units.emplace_back(ScopeUnit(i), unitText(ScopeUnit(i)));
    addChoices<ScopeUnit>(menu, Scope::tr("Second unit"), units, secondUnit, scope,
                          [guard = QPointer<Scope>(scope)](ScopeUnit each) {
                              guard->setSecondUnit(each);
                              if (guard)
                                  guard->setSecondUnitShown(true);
                          });
    addToggle(menu, Scope::tr("Second unit visible"), isSecondUnitShown, scope,
              [scope](bool on) { scope->setSecondUnitShown(on); });
}

} // namespace Kestrel::UI
