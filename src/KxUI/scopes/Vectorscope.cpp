#include <KxUI/scopes/Vectorscope.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/scopes/ScopeMenu_p.h>
#include <KxUI/scopes/ScopeState_p.h>
#include <KxUI/scopes/Vectorscope_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double FullTurn = 360;

const QString GainKey = QStringLiteral("gain");
const QString LogKey = QStringLiteral("logRadius");
const QString TargetsKey = QStringLiteral("targets");
const QString BoxesKey = QStringLiteral("boxes");
const QString IQKey = QStringLiteral("iqLines");
const QString SkinKey = QStringLiteral("skinToneLine");
const QString SkinAngleKey = QStringLiteral("skinToneAngle");
const QString HullKey = QStringLiteral("gamutHull");
const QString ColoringKey = QStringLiteral("coloring");
const QString LumaLowerKey = QStringLiteral("lumaLower");
const QString LumaUpperKey = QStringLiteral("lumaUpper");

} // namespace

Vectorscope::Vectorscope(QWidget* parent)
    : ScopeView(std::make_unique<VectorscopePrivate>(), parent) {}

Vectorscope::~Vectorscope() = default;

VectorscopePrivate& Vectorscope::own() const {
    return static_cast<VectorscopePrivate&>(scope());
}

double Vectorscope::zoom() const {
    return 1 / own().viewport.width;
}

void Vectorscope::setZoom(double zoom) {
    KXUI_INTERFACE_THREAD(this);
    if (!(zoom > 0))
        return;
    const double size = 1 / std::clamp(zoom, 1.0, ScopeViewport::MostZoom);
    own().setViewport({(1 - size) / 2, (1 - size) / 2, size, size});
}

int Vectorscope::gain() const {
    return own().gain;
}

void Vectorscope::setGain(int gain) {
    KXUI_INTERFACE_THREAD(this);
    const int wanted = gain >= 4 ? 4 : gain >= 2 ? 2 : 1;
    if (own().gain == wanted)
        return;
    own().gain = wanted;
    own().changeCounts();
    Q_EMIT gainChanged(wanted);
}

bool Vectorscope::logRadius() const {
    return own().logRadius;
}

void Vectorscope::setLogRadius(bool on) {
    KXUI_INTERFACE_THREAD(this);
    if (own().logRadius == on)
        return;
    own().logRadius = on;
    own().changeCounts();
    Q_EMIT logRadiusChanged(on);
}

Vectorscope::Targets Vectorscope::targets() const {
    return own().targets;
}

void Vectorscope::setTargets(Targets targets) {
    KXUI_INTERFACE_THREAD(this);
    const Targets known = targets & (Targets75 | Targets100);
    if (own().targets == known)
        return;
    own().targets = known;
    own().changeTrace();
    Q_EMIT targetsChanged(known);
}

Vectorscope::Boxes Vectorscope::boxes() const {
    return own().boxes;
}

void Vectorscope::setBoxes(Boxes boxes) {
    KXUI_INTERFACE_THREAD(this);
    if (own().boxes == boxes)
        return;
    own().boxes = boxes;
    own().changeTrace();
    Q_EMIT boxesChanged(boxes);
}

bool Vectorscope::iqLines() const {
    return own().iqLines;
}

void Vectorscope::setIQLines(bool shown) {
    KXUI_INTERFACE_THREAD(this);
    if (own().iqLines == shown)
        return;
    own().iqLines = shown;
    own().changeTrace();
    Q_EMIT iqLinesChanged(shown);
}

bool Vectorscope::skinToneLine() const {
    return own().skinToneLine;
}

void Vectorscope::setSkinToneLine(bool shown) {
    KXUI_INTERFACE_THREAD(this);
    if (own().skinToneLine == shown)
        return;
    own().skinToneLine = shown;
    own().changeTrace();
    Q_EMIT skinToneLineChanged(shown);
}

double Vectorscope::skinToneAngle() const {
    return own().skinToneAngle;
}

void Vectorscope::setSkinToneAngle(double degrees) {
    KXUI_INTERFACE_THREAD(this);
    if (!std::isfinite(degrees))
        return;
    const double turned = std::fmod(degrees, FullTurn);
    const double wanted = turned < 0 ? std::fmod(turned + FullTurn, FullTurn) : turned;
    if (own().skinToneAngle == wanted)
        return;
    own().skinToneAngle = wanted;
    own().changeTrace();
    Q_EMIT skinToneAngleChanged(wanted);
}

bool Vectorscope::gamutHull() const {
    return own().gamutHull;
}

void Vectorscope::setGamutHull(bool shown) {
    KXUI_INTERFACE_THREAD(this);
    if (own().gamutHull == shown)
        return;
    own().gamutHull = shown;
    own().changeTrace();
    Q_EMIT gamutHullChanged(shown);
}

Vectorscope::Coloring Vectorscope::coloring() const {
    return own().coloring;
}

void Vectorscope::setColoring(Coloring coloring) {
    KXUI_INTERFACE_THREAD(this);
    if (own().coloring == coloring)
        return;
    own().coloring = coloring;
    own().changeTrace();
    Q_EMIT coloringChanged(coloring);
}

double Vectorscope::lumaLower() const {
    return own().lumaLower;
}

double Vectorscope::lumaUpper() const {
    return own().lumaUpper;
}

void Vectorscope::setLumaGate(double lower, double upper) {
    KXUI_INTERFACE_THREAD(this);
    const double a = std::isnan(lower) ? -Infinity : lower;
    const double b = std::isnan(upper) ? Infinity : upper;
    if (own().lumaLower == std::min(a, b) && own().lumaUpper == std::max(a, b))
        return;
    own().lumaLower = std::min(a, b);
    own().lumaUpper = std::max(a, b);
    own().changeCounts();
    Q_EMIT lumaGateChanged(own().lumaLower, own().lumaUpper);
}

QString VectorscopePrivate::name() const {
    return Vectorscope::tr("Vectorscope");
}

void VectorscopePrivate::saveTo(QVariantMap& state) const {
    state.insert(GainKey, gain);
    state.insert(LogKey, logRadius);
    state.insert(TargetsKey, int(targets));
    state.insert(BoxesKey, int(boxes));
    state.insert(IQKey, iqLines);
    state.insert(SkinKey, skinToneLine);
    state.insert(SkinAngleKey, skinToneAngle);
    state.insert(HullKey, gamutHull);
    state.insert(ColoringKey, int(coloring));
    state.insert(LumaLowerKey, lumaLower);
    state.insert(LumaUpperKey, lumaUpper);
}

void VectorscopePrivate::restoreFrom(const QVariantMap& state) {
    using Scope = Vectorscope;
    Scope* const scope = view();
    ScopeState<Scope> from(state, scope);
    from.take(GainKey, [&](const QVariant& value) { scope->setGain(value.toInt()); });
    from.flag(LogKey, &Scope::setLogRadius);
    from.take(TargetsKey,
              [&](const QVariant& value) { scope->setTargets(Scope::Targets(value.toInt())); });
    from.choice(BoxesKey, &Scope::setBoxes, Scope::LargeBoxes);
    from.flag(IQKey, &Scope::setIQLines);
    from.flag(SkinKey, &Scope::setSkinToneLine);
    from.take(SkinAngleKey,
              [&](const QVariant& value) { scope->setSkinToneAngle(value.toDouble()); });
    from.flag(HullKey, &Scope::setGamutHull);
    from.choice(ColoringKey, &Scope::setColoring, Scope::Hue);
    from.take(LumaLowerKey, [&](const QVariant& value) {
        scope->setLumaGate(value.toDouble(), state.value(LumaUpperKey, lumaUpper).toDouble());
    });
}

void VectorscopePrivate::addActions(QMenu& menu) {
    using Scope = Vectorscope;
    Scope* const scope = view();
    if (model)
        addMatrixActions(menu);
    addChoices<int>(menu, Scope::tr("Gain"),
                    {{1, QStringLiteral("1")}, {2, QStringLiteral("2")}, {4, QStringLiteral("4")}},
                    gain, scope, [scope](int each) { scope->setGain(each); });
    addChoices<Scope::Coloring>(menu, Scope::tr("Colour"),
                                {{Scope::Phosphor, Scope::tr("Phosphor")},
                                 {Scope::White, Scope::tr("White")},
                                 {Scope::Hue, Scope::tr("Hue")}},
                                coloring, scope,
                                [scope](Scope::Coloring each) { scope->setColoring(each); });
    addLineActions(menu);
    addToggle(menu, Scope::tr("Logarithmic distances"), logRadius, scope, &Scope::setLogRadius);
}

void VectorscopePrivate::addMatrixActions(QMenu& menu) {
    std::vector<std::pair<int, QString>> names;
    std::vector<RgbToYCbCrMatrix> all;
    int present = -1;
    const auto add = [&](const RgbToYCbCrMatrix& matrix) {
        const QString text = matrixName(matrix);
        if (text == matrixName(encoding().matrix))
            present = int(all.size());
        names.emplace_back(int(all.size()), text);
        all.push_back(matrix);
    };
    for (int i = 0; i < ColorSpace::Count; ++i)
        add(colorSpaceRgbToYCbCr(i));
    add(rec2020Matrix());
    addChoices<int>(menu, Vectorscope::tr("Matrix"), names, present, view(), [this, all](int each) {
        if (!model)
            return;
        ScopeEncoding changed = model->encoding();
        changed.matrix = all[std::size_t(each)];
        model->setEncoding(changed);
    });
}

void VectorscopePrivate::addLineActions(QMenu& menu) {
    using Scope = Vectorscope;
    Scope* const scope = view();
    const auto addTargets = [&](const QString& text, Scope::Target target) {
        addToggle(menu, text, targets & target, scope, [scope, target](bool on) {
            const Scope::Targets others = scope->targets() & ~Scope::Targets(target);
            scope->setTargets(on ? others | target : others);
        });
    };
    addTargets(Scope::tr("Targets of 75 %"), Scope::Targets75);
    addTargets(Scope::tr("Targets of 100 %"), Scope::Targets100);
    addToggle(menu, Scope::tr("Large boxes"), boxes == Scope::LargeBoxes, scope,
              [scope](bool on) { scope->setBoxes(on ? Scope::LargeBoxes : Scope::SmallBoxes); });
    addToggle(menu, Scope::tr("Hull of the gamut"), gamutHull, scope, &Scope::setGamutHull);
    addToggle(menu, Scope::tr("I and Q"), iqLines, scope, &Scope::setIQLines);
    addToggle(menu, Scope::tr("Skin tone line"), skinToneLine, scope, &Scope::setSkinToneLine);
}

} // namespace Kestrel::UI
