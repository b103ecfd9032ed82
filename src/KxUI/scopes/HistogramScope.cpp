#include <KxUI/scopes/HistogramScope.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/scopes/HistogramScope_p.h>
#include <KxUI/scopes/ScopeMenu_p.h>

#include <QMenu>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double LargestValue = 65504; // of half floats
constexpr double LeastWidth = 1e-6;
constexpr double LeastShare = 0.0001;

const QString LayoutKey = QStringLiteral("layout");
const QString ChannelsKey = QStringLiteral("channels");
const QString AxisKey = QStringLiteral("axis");
const QString LowerKey = QStringLiteral("lower");
const QString UpperKey = QStringLiteral("upper");
const QString LogKey = QStringLiteral("logCounts");
const QString CumulativeKey = QStringLiteral("cumulative");
const QString EqualAreaKey = QStringLiteral("equalArea");
const QString FullHeightKey = QStringLiteral("fullHeight");
const QString FullShareKey = QStringLiteral("fullShare");

} // namespace

HistogramScope::HistogramScope(QWidget* parent)
    : ScopeView(std::make_unique<HistogramScopePrivate>(), parent) {}

HistogramScope::~HistogramScope() = default;

HistogramScopePrivate& HistogramScope::own() const {
    return static_cast<HistogramScopePrivate&>(scope());
}

HistogramScope::Layout HistogramScope::layout() const {
    return own().layout;
}

void HistogramScope::setLayout(Layout layout) {
    KXUI_INTERFACE_THREAD(this);
    if (own().layout == layout)
        return;
    own().layout = layout;
    own().changeColumns();
    Q_EMIT layoutChanged(layout);
}

HistogramScope::Channels HistogramScope::channels() const {
    return own().channels;
}

void HistogramScope::setChannels(Channels channels) {
    KXUI_INTERFACE_THREAD(this);
    const Channels known = channels & Channels(AllChannels);
    if (own().channels == known)
        return;
    own().channels = known;
    own().askModel();
    own().changeColumns();
    Q_EMIT channelsChanged(known);
}

HistogramScope::Axis HistogramScope::axis() const {
    return own().axis;
}

void HistogramScope::setAxis(Axis axis) {
    KXUI_INTERFACE_THREAD(this);
    if (own().axis == axis)
        return;
    own().axis = axis;
    own().changeColumns();
    Q_EMIT axisChanged(axis);
}

double HistogramScope::lower() const {
    return own().lower;
}

double HistogramScope::upper() const {
    return own().upper;
}

void HistogramScope::setRange(double lower, double upper) {
    KXUI_INTERFACE_THREAD(this);
    const auto finite = [](double value, double otherwise) {
        return std::isnan(value) ? otherwise : std::clamp(value, -LargestValue, LargestValue);
    };
    double low = finite(lower, 0);
    double high = finite(upper, 1);
    if (low > high)
        std::swap(low, high);
    if (high - low < LeastWidth)
        high = low + LeastWidth;
    if (own().lower == low && own().upper == high)
        return;
    own().lower = low;
    own().upper = high;
    own().changeColumns();
    Q_EMIT rangeChanged(low, high);
}

void HistogramScope::fitRange() {
    const auto result = own().result();
    if (result->values.isEmpty())
        return;
    const ValueRange range = result->values.fittingRange(1);
    setRange(double(range.lower), double(range.upper));
}

bool HistogramScope::logCounts() const {
    return own().logCounts;
}

void HistogramScope::setLogCounts(bool on) {
    KXUI_INTERFACE_THREAD(this);
    if (own().logCounts == on)
        return;
    own().logCounts = on;
    own().changeColumns();
    Q_EMIT logCountsChanged(on);
}

bool HistogramScope::cumulative() const {
    return own().cumulative;
}

void HistogramScope::setCumulative(bool on) {
    KXUI_INTERFACE_THREAD(this);
    if (own().cumulative == on)
        return;
    own().cumulative = on;
    own().changeColumns();
    Q_EMIT cumulativeChanged(on);
}

bool HistogramScope::equalArea() const {
    return own().equalArea;
}

void HistogramScope::setEqualArea(bool on) {
    KXUI_INTERFACE_THREAD(this);
    if (own().equalArea == on)
        return;
    own().equalArea = on;
    own().changeColumns();
    Q_EMIT equalAreaChanged(on);
}

HistogramScope::FullHeight HistogramScope::fullHeight() const {
    return own().fullHeight;
}

void HistogramScope::setFullHeight(FullHeight rule) {
    KXUI_INTERFACE_THREAD(this);
    if (own().fullHeight == rule)
        return;
    own().fullHeight = rule;
    own().changeColumns();
    Q_EMIT fullHeightChanged();
}

double HistogramScope::fullShare() const {
    return own().fullShare;
}

void HistogramScope::setFullShare(double share) {
    KXUI_INTERFACE_THREAD(this);
    const double wanted = std::isnan(share) ? LeastShare : std::clamp(share, LeastShare, 1.0);
    if (own().fullShare == wanted)
        return;
    own().fullShare = wanted;
    own().changeColumns();
    Q_EMIT fullHeightChanged();
}

QString HistogramScopePrivate::name() const {
    return HistogramScope::tr("Histogram");
}

void HistogramScopePrivate::changeColumns() {
    m_columns.clear();
    changeTrace();
}

void HistogramScopePrivate::saveTo(QVariantMap& state) const {
    state.insert(LayoutKey, int(layout));
    state.insert(ChannelsKey, int(channels));
    state.insert(AxisKey, int(axis));
    state.insert(LowerKey, lower);
    state.insert(UpperKey, upper);
    state.insert(LogKey, logCounts);
    state.insert(CumulativeKey, cumulative);
    state.insert(EqualAreaKey, equalArea);
    state.insert(FullHeightKey, int(fullHeight));
    state.insert(FullShareKey, fullShare);
}

void HistogramScopePrivate::restoreFrom(const QVariantMap& state) {
    const QPointer<HistogramScope> scope(view());
    const auto take = [&](const QString& key, auto set) {
        const auto found = state.find(key);
        if (scope && found != state.end())
            set(*found);
    };
    using Scope = HistogramScope;
    take(LayoutKey, [&](const QVariant& value) {
        scope->setLayout(
            Scope::Layout(std::clamp<int>(value.toInt(), Scope::Overlay, Scope::SideBySide)));
    });
    take(ChannelsKey,
         [&](const QVariant& value) { scope->setChannels(Scope::Channels(value.toInt())); });
    take(AxisKey, [&](const QVariant& value) {
        scope->setAxis(
            Scope::Axis(std::clamp<int>(value.toInt(), Scope::LinearAxis, Scope::PqAxis)));
    });
    take(LowerKey, [&](const QVariant& value) {
        scope->setRange(value.toDouble(), state.value(UpperKey, upper).toDouble());
    });
    if (scope)
        restoreHeights(state);
}

void HistogramScopePrivate::restoreHeights(const QVariantMap& state) {
    using Scope = HistogramScope;
    const QPointer<Scope> scope(view());
    const auto take = [&](const QString& key, auto set) {
        const auto found = state.find(key);
        if (scope && found != state.end())
            set(*found);
    };
    take(LogKey, [&](const QVariant& value) { scope->setLogCounts(value.toBool()); });
    take(CumulativeKey, [&](const QVariant& value) { scope->setCumulative(value.toBool()); });
    take(EqualAreaKey, [&](const QVariant& value) { scope->setEqualArea(value.toBool()); });
    take(FullHeightKey, [&](const QVariant& value) {
        scope->setFullHeight(
            Scope::FullHeight(std::clamp<int>(value.toInt(), Scope::TallestInside, Scope::Share)));
    });
    take(FullShareKey, [&](const QVariant& value) { scope->setFullShare(value.toDouble()); });
}

void HistogramScopePrivate::addActions(QMenu& menu) {
    using Scope = HistogramScope;
    Scope* const scope = view();
    QMenu* const all = menu.addMenu(Scope::tr("Channels"));
    for (int trace = 0; trace < Traces; ++trace) {
        const auto bit = Scope::Channel(1 << trace);
        addToggle(*all, traceName(Trace(trace)), channels.testFlag(bit), scope,
                  [this, scope, bit](bool on) {
                      scope->setChannels(on ? channels | bit : channels & ~Scope::Channels(bit));
                  });
    }
    addChoices<Scope::Layout>(menu, Scope::tr("Layout"),
                              {{Scope::Overlay, Scope::tr("On each other")},
                               {Scope::Stacked, Scope::tr("Above each other")},
                               {Scope::SideBySide, Scope::tr("Side by side")}},
                              layout, scope,
                              [scope](Scope::Layout each) { scope->setLayout(each); });
    addToggle(menu, Scope::tr("Logarithmic heights"), logCounts, scope, &Scope::setLogCounts);
    addToggle(menu, Scope::tr("Cumulative line"), cumulative, scope, &Scope::setCumulative);
    addToggle(menu, Scope::tr("Areas in proportion"), equalArea, scope, &Scope::setEqualArea);
    QObject::connect(menu.addAction(Scope::tr("Fit range to values")), &QAction::triggered, scope,
                     &Scope::fitRange);
}

} // namespace Kestrel::UI
