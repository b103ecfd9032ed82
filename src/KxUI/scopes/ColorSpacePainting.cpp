#include <KxUI/scopes/ColorSpaceScope_p.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double LabelDistance = 11; // from a corner to the middle of its text
constexpr int GreyDots = 48;         // of the grey axis
constexpr float GreyRadius = 0.6F;
constexpr float HeldRadius = 1.0F;
constexpr double MarkRadius = 5;

QString cornerText(int corner) {
    switch (corner) {
    case 0:
        return ColorSpaceScope::tr("K", "black");
    case 1:
        return ColorSpaceScope::tr("R", "red");
    case 2:
        return ColorSpaceScope::tr("G", "green");
    case 3:
        return ColorSpaceScope::tr("Yl", "yellow");
    case 4:
        return ColorSpaceScope::tr("B", "blue");
    case 5:
        return ColorSpaceScope::tr("Mg", "magenta");
    case 6:
        return ColorSpaceScope::tr("Cy", "cyan");
    default:
        return ColorSpaceScope::tr("W", "white");
    }
}

bool isFront(const SolidProjection& at, const QVector3D& place, const QVector3D* outward,
             std::size_t count) {
    return std::any_of(outward, outward + count,
                       [&](const QVector3D& normal) { return at.isFront(place, normal); });
}

void paintFrame(DrawingContext& context, const QPointF& middle, double half,
                const LineStroke& stroke) {
    const QRectF box(middle.x() - half, middle.y() - half, 2 * half, 2 * half);
    const std::array<QPointF, 5> points{box.topLeft(), box.topRight(), box.bottomRight(),
                                        box.bottomLeft(), box.topLeft()};
    context.polyline(points.data(), int(points.size()), stroke);
}

} // namespace

// What is behind the cloud, the cloud, and what is before it.
void ColorSpaceScopePrivate::paintTrace(DrawingContext& context, const ScopeGeometry& geometry) {
    const SolidProjection at = projectionOn(geometry);
    context.setClip(geometry.plot);
    paintWires(context, at, false);
    paintCorners(context, at, false);
    paintCloud(context, geometry, at);
    paintWires(context, at, true);
    paintCorners(context, at, true);
    context.setClip(QRectF());
    paintNotes(context, geometry);
}

void ColorSpaceScopePrivate::paintWires(DrawingContext& context, const SolidProjection& at,
                                        bool front) const {
    const SolidShape shape(space, encoding());
    const auto paint = [&](const std::vector<SolidSegment>& segments, LineStroke stroke) {
        std::vector<QLineF> seen;
        for (const SolidSegment& each : segments) {
            const QVector3D middle = (each.from + each.to) / 2;
            if (isFront(at, middle, each.outward.data(), each.outward.size()) == front)
                seen.emplace_back(at.toWidget(each.from), at.toWidget(each.to));
        }
        // What is behind is fainter, so that the eye does not turn the solid inside out.
        stroke.color.setAlpha(front ? stroke.color.alpha() : stroke.color.alpha() / 2);
        context.lines(seen.data(), int(seen.size()), stroke);
    };
    if (wires & ColorSpaceScope::LegalWire)
        paint(shape.wires(), colors.strongLine);
    for (const auto gamut : {ColorSpaceScope::Rec709Wire, ColorSpaceScope::Rec2020Wire}) {
        if (wires & gamut)
            paint(shape.wires(gamut),
                  gamut == ColorSpaceScope::Rec709Wire ? colors.user : colors.limit);
    }
}

void ColorSpaceScopePrivate::paintCorners(DrawingContext& context, const SolidProjection& at,
                                          bool front) const {
    if (!(wires & ColorSpaceScope::LegalWire))
        return;
    const QFont font = labelFont();
    for (const SolidCorner& corner : SolidShape(space, encoding()).corners()) {
        if (isFront(at, corner.place, corner.outward.data(), corner.outward.size()) != front)
            continue;
        const QPointF place = at.toWidget(corner.place);
        const QPointF away = at.toWidget(corner.place + corner.label * 0.1F) - place;
        const double length = std::max(std::hypot(away.x(), away.y()), 1e-6);
        // A corner that points at the eye has its text above it.
        const QPointF shift =
            length < 1 ? QPointF(0, -LabelDistance) : away / length * LabelDistance;
        const QPointF middle = place + shift;
        QColor color(SolidCloud::color(
            {float(corner.color & 1), float(corner.color >> 1 & 1), float(corner.color >> 2 & 1)}));
        if (corner.color == 0)
            color = colors.text;
        context.text({middle.x() - 40, middle.y() - 20, 80, 40}, Qt::AlignCenter,
                     cornerText(corner.color), font, color.lighter(front ? 130 : 100));
    }
}

void ColorSpaceScopePrivate::paintCloud(DrawingContext& context, const ScopeGeometry& geometry,
                                        const SolidProjection& at) const {
    const SolidShape shape(space, encoding());
    std::vector<CloudPoint> points =
        SolidCloud::points(cells(geometry), at, colors.warning, colors.ground);
    const auto addDot = [&points](const QVector3D& place, float radius, const QColor& color) {
        points.push_back({place.x(), place.y(), place.z(), radius, color.rgb()});
    };
    // Among the discs, so that these hide it where they are before it.
    for (int i = 0; i <= GreyDots && (wires & ColorSpaceScope::GreyAxis); ++i) {
        const float grey = float(i) / GreyDots;
        addDot(shape.place({grey, grey, grey}), GreyRadius, QColor(150, 150, 155));
    }
    if (const auto held = shownReference()) {
        for (const SolidCell& cell :
             SolidCloud::cells(held->solid, shape, encoding().matrix.luma, rules(geometry)))
            addDot(cell.place, HeldRadius, QColor(160, 165, 175));
    }
    context.points(geometry.plot, at.matrix(), points.data(), int(points.size()));
}

// What the picture does not say by itself: the space, what is left out, what is beyond.
void ColorSpaceScopePrivate::paintNotes(DrawingContext& context,
                                        const ScopeGeometry& geometry) const {
    const QFont font = labelFont();
    const QFontMetricsF metrics(font);
    QRectF area(geometry.plot.left(), geometry.plot.bottom(), geometry.plot.width(),
                metrics.height());
    const std::uint64_t outside = result()->solid.outside;
    if (outside > 0) {
        const QString text =
            ColorSpaceScope::tr("Beyond %1").arg(q->locale().toString(quint64(outside)));
        context.text(area, Qt::AlignRight | Qt::AlignVCenter, text, font, colors.warning);
        area.setRight(area.right() - metrics.horizontalAdvance(text) - metrics.averageCharWidth());
    }
    QStringList notes;
    if (hasSlab)
        notes.append(
            ColorSpaceScope::tr("Luma %1 to %2").arg(valueText(slabLower), valueText(slabUpper)));
    if (minimumCount > 1)
        notes.append(ColorSpaceScope::tr("From %1 px").arg(q->locale().toString(minimumCount)));
    const QString left = notes.join(QStringLiteral("   "));
    context.text(area, Qt::AlignLeft | Qt::AlignVCenter,
                 metrics.elidedText(left, Qt::ElideRight, std::max(area.width(), 0.0)), font,
                 colors.text);
}

void ColorSpaceScopePrivate::paintMarks(DrawingContext& context, const ScopeGeometry& geometry) {
    const SolidProjection at = projectionOn(geometry);
    if (cursor) {
        if (const int cell = cellAt(*cursor); cell >= 0)
            paintFrame(context, places().place(cell), places().radius(cell) + 2, colors.cursor);
    }
    const auto sample = model ? model->sample() : std::nullopt;
    if (!sample || !std::all_of(sample->rgb.begin(), sample->rgb.end(),
                                [](float each) { return std::isfinite(each); }))
        return;
    // Hung from the grey axis, or nobody could tell how deep it lies.
    const SolidShape shape(space, encoding());
    const QVector3D place = shape.place(sample->rgb);
    const QPointF here = at.toWidget(place);
    const float grey = sample->luma;
    context.line(at.toWidget(shape.place({grey, grey, grey})), here,
                 LineStroke(colors.cursor, 1, Qt::DotLine));
    context.fill({here.x() - MarkRadius, here.y() - MarkRadius, 2 * MarkRadius, 2 * MarkRadius},
                 QColor(SolidCloud::color(sample->rgb)));
    paintFrame(context, here, MarkRadius, LineStroke(QColor(Qt::black), 3));
    paintFrame(context, here, MarkRadius, LineStroke(QColor(Qt::white), 1.5));
}

void ColorSpaceScopePrivate::paintSelection(DrawingContext& context,
                                            const ScopeGeometry& geometry) {
    if (drag.isSelecting() && (drag.modifiers() & Qt::ControlModifier))
        context.polygon(drag.path().data(), int(drag.path().size()), colors.selection);
    else
        ScopeViewPrivate::paintSelection(context, geometry);
    if (!model || model->selection().kind == ScopeSelection::Kind::Nothing)
        return;
    // Also of what another scope selects, as far as the middles of cells can tell.
    const ScopeSelection& selection = model->selection();
    const double dot = 1.5;
    std::vector<QRectF> dots;
    const std::vector<SolidCell>& all = cells(geometry);
    for (std::size_t i = 0; i < all.size(); ++i) {
        const QPointF here = places().place(int(i));
        if (selection.contains(all[i].rgb, encoding().matrix))
            dots.emplace_back(here.x() - dot, here.y() - dot, 2 * dot, 2 * dot);
    }
    context.rectangles(dots.data(), int(dots.size()), QColor(Qt::white));
}

} // namespace Kestrel::UI
