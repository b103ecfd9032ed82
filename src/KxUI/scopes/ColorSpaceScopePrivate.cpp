#include <KxUI/scopes/ColorSpaceScope_p.h>
#include <KxUI/scopes/ScopeMenu_p.h>

#include <QKeyEvent>
#include <QMenu>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace Kestrel::UI {
namespace {

constexpr double Slack = 6;      // logical pixels that the mouse may miss a disc by
constexpr double KeyDegrees = 5; // that an arrow turns
constexpr double FastDegrees = 45;
constexpr double UsualSize = 360; // of a plot whose discs have their own size

const QString SpaceKey = QStringLiteral("space");
const QString ProjectionKey = QStringLiteral("projection");
const QString YawKey = QStringLiteral("yaw");
const QString PitchKey = QStringLiteral("pitch");
const QString LeastKey = QStringLiteral("minimumCount");
const QString SlabKey = QStringLiteral("slab");
const QString SlabLowerKey = QStringLiteral("slabLower");
const QString SlabUpperKey = QStringLiteral("slabUpper");
const QString WiresKey = QStringLiteral("gamutWires");

QString spaceText(ColorSpaceScope::Space space) {
    switch (space) {
    case ColorSpaceScope::YCbCrSolid:
        return ColorSpaceScope::tr("YCbCr");
    case ColorSpaceScope::HsvCone:
        return ColorSpaceScope::tr("HSV cone");
    case ColorSpaceScope::RgbCube:
        break;
    }
    return ColorSpaceScope::tr("RGB cube");
}

double cornerReach(float low, float high, const SolidShape& shape) {
    float reach = 0;
    for (int corner = 0; corner < 8; ++corner) {
        const auto end = [corner, low, high](int bit) { return corner & bit ? high : low; };
        reach = std::max(reach, shape.place({end(1), end(2), end(4)}).length());
    }
    return double(reach);
}

// How far from the middle is to be seen: the signal with its texts, and most of what is counted, whose
// very corners hold little.
double reachOf(const ValueRange& range, const SolidShape& shape) {
    constexpr double RoomForTexts = 1.12;
    constexpr double MostOfCorners = 0.9;
    return std::max(RoomForTexts * cornerReach(0, 1, shape),
                    MostOfCorners * cornerReach(range.lower, range.upper, shape));
}

} // namespace

QString ColorSpaceScopePrivate::name() const {
    return ColorSpaceScope::tr("Colour space");
}

QMarginsF ColorSpaceScopePrivate::margins() const {
    return {0, 0, 0, QFontMetricsF(labelFont()).height()}; // of the notes
}

void ColorSpaceScopePrivate::changeCells() {
    m_isOld = true;
    changeTrace();
}

SolidRules ColorSpaceScopePrivate::rules(const ScopeGeometry& geometry) const {
    SolidRules rules;
    rules.least = std::uint32_t(minimumCount);
    rules.hasSlab = hasSlab;
    rules.lower = float(slabLower);
    rules.upper = float(slabUpper);
    rules.logarithmic = tone == ScopeView::LogTone;
    rules.brightness = brightness;
    rules.singlePixels = singlePixels;
    const double side = std::min(geometry.plot.width(), geometry.plot.height());
    rules.scale = std::clamp(side / UsualSize, 0.7, 2.0) / std::sqrt(geometry.view.width);
    return rules;
}

const std::vector<SolidCell>& ColorSpaceScopePrivate::cells(const ScopeGeometry& geometry) const {
    const SolidRules wanted = rules(geometry);
    if (m_isOld || !(m_rules == wanted)) {
        const auto counted = result();
        const SolidShape shape(space, encoding());
        m_cells = SolidCloud::cells(counted->solid, shape, encoding().matrix.luma, wanted);
        m_reach = reachOf(counted->solid.cells > 0 ? counted->solid.range : ValueRange(), shape);
        m_rules = wanted;
        m_placed = QMatrix4x4();
        m_placedIn = QRectF();
        m_isOld = false;
    }
    return m_cells;
}

SolidProjection ColorSpaceScopePrivate::projectionOn(const ScopeGeometry& geometry) const {
    cells(geometry); // which know the reach
    return {orbit, projection == ColorSpaceScope::Perspective, m_reach, geometry};
}

const SolidPlaces& ColorSpaceScopePrivate::places() const {
    const ScopeGeometry where = geometry();
    const SolidProjection at = projectionOn(where);
    if (m_placed != at.matrix() || m_placedIn != where.plot) {
        m_places = SolidPlaces(cells(where), at);
        m_placed = at.matrix();
        m_placedIn = where.plot;
    }
    return m_places;
}

int ColorSpaceScopePrivate::cellAt(const QPointF& uv) const {
    // Keys find their way from one disc to the next, however far they are.
    const double slack = cursorIsOfKeys ? std::numeric_limits<double>::infinity() : Slack;
    return places().cellAt(geometry().toWidget(uv), slack);
}

QString ColorSpaceScopePrivate::colorText(const SolidShape::Color& rgb) const {
    const QLocale locale = q->locale();
    const auto value = [this](float each) { return valueText(double(each)); };
    if (space == ColorSpaceScope::YCbCrSolid) {
        const RgbToYCbCrMatrix& matrix = encoding().matrix;
        const auto dot = [&rgb](const std::array<float, 3>& row) {
            return double(row[0] * rgb[0] + row[1] * rgb[1] + row[2] * rgb[2]);
        };
        return ColorSpaceScope::tr("Y %1, Cb %2, Cr %3")
            .arg(valueText(dot(matrix.luma)), valueText(dot(matrix.cb), true),
                 valueText(dot(matrix.cr), true));
    }
    if (space == ColorSpaceScope::HsvCone) {
        float hue = 0;
        float saturation = 0;
        float top = 0;
        rgbToHsv(rgb[0], rgb[1], rgb[2], hue, saturation, top);
        return ColorSpaceScope::tr("H %1\u00b0, S %2 %, V %3")
            .arg(locale.toString(double(hue) * 360, 'f', 0),
                 locale.toString(double(saturation) * 100, 'f', 0), value(top));
    }
    return ColorSpaceScope::tr("R %1, G %2, B %3").arg(value(rgb[0]), value(rgb[1]), value(rgb[2]));
}

ScopeReadout ColorSpaceScopePrivate::readoutAt(const QPointF& uv) const {
    const int found = cellAt(uv);
    if (found < 0)
        return {};
    const SolidCell& cell = cells(geometry())[std::size_t(found)];
    ScopeReadout readout;
    readout.value = double(cell.rgb[0]);
    readout.second = double(cell.rgb[1]);
    readout.third = double(cell.rgb[2]);
    readout.valueText = colorText(cell.rgb);
    readout.count = quint64(cell.count) + cell.outside;
    readout.share =
        double(readout.count) / double(std::max<std::uint64_t>(result()->solid.pixels, 1));
    describe(readout);
    if (cell.outside > 0)
        readout.text = ColorSpaceScope::tr("%1, %2 of them beyond")
                           .arg(readout.text, q->locale().toString(cell.outside));
    return readout;
}

QSizeF ColorSpaceScopePrivate::step() const {
    const auto counted = result();
    const ScopeGeometry where = geometry();
    const double side = std::min(where.plot.width(), where.plot.height()) /
                        double(std::max(counted->solid.cells, 8)) / 2;
    return {side / where.plot.width() * viewport.width,
            side / where.plot.height() * viewport.height};
}

ScopeSelection ColorSpaceScopePrivate::selectionOf(const QPointF& from, const QPointF& to,
                                                   const QVector<QPointF>& path) const {
    ScopeSelection selection;
    const auto counted = result();
    if (counted->solid.cells == 0)
        return selection;
    const ScopeGeometry where = geometry();
    std::vector<int> chosen;
    if (drag.isActive()) {
        QPolygonF outline;
        if (drag.modifiers() & Qt::ControlModifier) {
            for (const QPointF& each : path)
                outline.append(where.toWidget(each));
        } else {
            outline = QRectF(where.toWidget(from), where.toWidget(to)).normalized();
        }
        chosen = places().cellsIn(outline);
    } else if (const int cell = cellAt((from + to) / 2); cell >= 0) {
        chosen = {cell};
    }
    selection.kind = ScopeSelection::Kind::Cells;
    selection.edge = counted->solid.range;
    for (const int each : chosen)
        selection.cells.push_back(cells(where)[std::size_t(each)].index);
    return selection;
}

void ColorSpaceScopePrivate::turn(const QPointF& path) {
    const SolidOrbit wanted = orbit.turned(path);
    view()->setOrbit(wanted.yaw, wanted.pitch);
}

void ColorSpaceScopePrivate::resetView() {
    const QPointer<ColorSpaceScope> guard(view());
    guard->setOrbit(Home.yaw, Home.pitch);
    if (guard)
        guard->setProjection(ColorSpaceScope::Perspective);
    if (guard)
        ScopeViewPrivate::resetView();
}

bool ColorSpaceScopePrivate::isMoreKey(const QKeyEvent& event) const {
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return held.testFlag(Qt::ControlModifier) &&
               !(held & ~(Qt::ControlModifier | Qt::ShiftModifier));
    case Qt::Key_1:
    case Qt::Key_2:
    case Qt::Key_3:
        return held == Qt::NoModifier;
    default:
        return false;
    }
}

void ColorSpaceScopePrivate::pressMoreKey(const QKeyEvent& event) {
    const double degrees = event.modifiers() & Qt::ShiftModifier ? FastDegrees : KeyDegrees;
    ColorSpaceScope* const scope = view();
    switch (event.key()) {
    case Qt::Key_Left:
        return scope->setOrbit(orbit.yaw + degrees, orbit.pitch);
    case Qt::Key_Right:
        return scope->setOrbit(orbit.yaw - degrees, orbit.pitch);
    case Qt::Key_Up:
        return scope->setOrbit(orbit.yaw, orbit.pitch - degrees);
    case Qt::Key_Down:
        return scope->setOrbit(orbit.yaw, orbit.pitch + degrees);
    case Qt::Key_1:
        return scope->showView(ColorSpaceScope::FrontView);
    case Qt::Key_2:
        return scope->showView(ColorSpaceScope::SideView);
    default:
        return scope->showView(ColorSpaceScope::TopView);
    }
}

void ColorSpaceScopePrivate::saveTo(QVariantMap& state) const {
    state.insert(SpaceKey, int(space));
    state.insert(ProjectionKey, int(projection));
    state.insert(YawKey, orbit.yaw);
    state.insert(PitchKey, orbit.pitch);
    state.insert(LeastKey, minimumCount);
    state.insert(SlabKey, hasSlab);
    state.insert(SlabLowerKey, slabLower);
    state.insert(SlabUpperKey, slabUpper);
    state.insert(WiresKey, int(wires));
}

void ColorSpaceScopePrivate::restoreFrom(const QVariantMap& state) {
    using Scope = ColorSpaceScope;
    const QPointer<Scope> scope(view());
    const auto take = [&](const QString& key, auto set) {
        const auto found = state.find(key);
        if (scope && found != state.end())
            set(*found);
    };
    take(SpaceKey, [&](const QVariant& value) { scope->setSpace(Scope::Space(value.toInt())); });
    take(ProjectionKey, [&](const QVariant& value) {
        scope->setProjection(value.toInt() == Scope::Orthographic ? Scope::Orthographic
                                                                  : Scope::Perspective);
    });
    take(YawKey, [&](const QVariant& value) {
        scope->setOrbit(value.toDouble(), state.value(PitchKey, orbit.pitch).toDouble());
    });
    take(LeastKey, [&](const QVariant& value) { scope->setMinimumCount(value.toInt()); });
    take(SlabKey, [&](const QVariant&) { restoreSlab(state); });
    take(WiresKey,
         [&](const QVariant& value) { scope->setGamutWires(Scope::GamutWires(value.toInt())); });
}

void ColorSpaceScopePrivate::restoreSlab(const QVariantMap& state) {
    if (state.value(SlabKey).toBool())
        view()->setSlab(state.value(SlabLowerKey).toDouble(),
                        state.value(SlabUpperKey, 1).toDouble());
    else
        view()->clearSlab();
}

void ColorSpaceScopePrivate::addActions(QMenu& menu) {
    using Scope = ColorSpaceScope;
    Scope* const scope = view();
    std::vector<std::pair<Scope::Space, QString>> spaces;
    for (const Scope::Space each : {Scope::RgbCube, Scope::YCbCrSolid, Scope::HsvCone})
        spaces.emplace_back(each, spaceText(each));
    addChoices(menu, Scope::tr("Space"), spaces, space, scope,
               [scope](Scope::Space each) { scope->setSpace(each); });
    addChoices<int>(menu, Scope::tr("Look from"),
                    {{Scope::HomeView, Scope::tr("Home")},
                     {Scope::FrontView, Scope::tr("Front")},
                     {Scope::SideView, Scope::tr("Side")},
                     {Scope::TopView, Scope::tr("Top")}},
                    presentView(), scope,
                    [scope](int from) { scope->showView(Scope::NamedView(from)); });
    addToggle(
        menu, Scope::tr("Without perspective"), projection == Scope::Orthographic, scope,
        [scope](bool on) { scope->setProjection(on ? Scope::Orthographic : Scope::Perspective); });
    addWires(menu);
    addSizes(menu);
}

// -1 where it has no name.
int ColorSpaceScopePrivate::presentView() const {
    if (projection == ColorSpaceScope::Perspective)
        return orbit == Home && viewport.isWhole() ? ColorSpaceScope::HomeView : -1;
    return orbit == SolidOrbit{0, 0}    ? ColorSpaceScope::FrontView
           : orbit == SolidOrbit{90, 0} ? ColorSpaceScope::SideView
           : orbit == SolidOrbit{0, 90} ? ColorSpaceScope::TopView
                                        : -1;
}

void ColorSpaceScopePrivate::addWires(QMenu& menu) {
    using Scope = ColorSpaceScope;
    QMenu* const lines = menu.addMenu(Scope::tr("Lines"));
    const auto add = [&](const QString& text, Scope::GamutWire which) {
        addToggle(*lines, text, wires.testFlag(which), view(), [this, which](bool on) {
            view()->setGamutWires(on ? wires | which : wires & ~Scope::GamutWires(which));
        });
    };
    add(Scope::tr("Edges of the signal"), Scope::LegalWire);
    add(Scope::tr("Grey axis"), Scope::GreyAxis);
    add(Scope::tr("Rec 709 in this space"), Scope::Rec709Wire);
    add(Scope::tr("Rec 2020 in this space"), Scope::Rec2020Wire);
}

void ColorSpaceScopePrivate::addSizes(QMenu& menu) {
    if (!model)
        return;
    std::vector<std::pair<int, QString>> sizes;
    for (const int cells : {16, 32, 64})
        sizes.emplace_back(cells, ColorSpaceScope::tr("%1 along each edge").arg(cells));
    addChoices(menu, ColorSpaceScope::tr("Cells"), sizes, model->solidRange().bins, view(),
               [held = model](int cells) {
                   if (!held)
                       return;
                   ValueRange range = held->solidRange();
                   range.bins = cells;
                   held->setSolidRange(range);
               });
}

} // namespace Kestrel::UI
