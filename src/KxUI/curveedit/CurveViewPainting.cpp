#include <KxUI/curveedit/CurveView_p.h>

#include <KxUI/curveedit/CurveOverlays_p.h>
#include <KxUI/curveedit/CurveSnap_p.h>
#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSliderGeometry_p.h>
#include <KxUI/time/TimeSliderPainter_p.h>

#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double DisabledOpacity = 0.4;
constexpr double TickSpacing = 20.0; // pixels, at least
constexpr double LabelSpacingX = 64.0;
constexpr double LabelSpacingY = 38.0;
constexpr double LeastStep = 6.0;
constexpr double MostFrames = 1e15;
constexpr double WholeFrame = 1e-6;

QString numberText(QLocale locale, double number, int decimals) {
    locale.setNumberOptions(locale.numberOptions() | QLocale::OmitGroupSeparator);
    const double shown = number + 0.0; // no -0
    return decimals < 0 || std::abs(shown) >= 1e12 ? locale.toString(shown, 'g', 6)
                                                   : locale.toString(shown, 'f', decimals);
}

QVector<CurveGridLine> linesOf(const CurveAxis& axis, double labelSpacing, const QLocale& locale) {
    const CurveTicks ticks = CurveTicks::of(axis, TickSpacing, labelSpacing);
    QVector<CurveGridLine> lines;
    for (const CurveTick& tick : ticks.ticks) {
        const QString label =
            tick.isLong ? numberText(locale, tick.value, ticks.decimals) : QString();
        lines.append({tick.pixel, label, tick.isLong});
    }
    return lines;
}

// The ticks that a time slider has over the same frames.
QVector<CurveGridLine> frameLinesOf(const CurvePlot& plot, const TimeFormatter& formatter) {
    const auto frame = [](double x) {
        return TimeSliderTime(static_cast<Base::Time>(std::clamp(x, -MostFrames, MostFrames)));
    };
    TimeSliderGeometry geometry;
    geometry.width = int(plot.rect().width());
    geometry.height = int(plot.rect().height());
    // A tick is never before the first time that is visible, so that begins one earlier.
    geometry.visible = {frame(std::ceil(plot.xAxis().span().low) - 1.0),
                        frame(std::floor(plot.xAxis().span().high))};
    QVector<CurveGridLine> lines;
    if (geometry.visible.length() < 1)
        return lines;
    const TimeSliderTicks ticks = TimeSliderTicks::plan(geometry);
    ticks.forEach(geometry.visible, [&](Base::Time time, TimeSliderTicks::Kind kind) {
        const double x = plot.toX(static_cast<double>(time));
        if (kind == TimeSliderTicks::Major)
            lines.append({x, formatter.formatTime(time), true});
        else if (kind == TimeSliderTicks::Step && ticks.pixelsPerStep >= LeastStep)
            lines.append({x, QString(), false});
    });
    return lines;
}

QString snapName(const CurveSnapTarget& target) {
    switch (target.kind) {
    case CurveSnapTarget::Playhead:
        return CurveView::tr("playhead");
    case CurveSnapTarget::SnapLine:
        return CurveView::tr("line");
    case CurveSnapTarget::OtherKnot:
        return CurveView::tr("knot");
    case CurveSnapTarget::Neighbour:
        return CurveView::tr("neighbour");
    case CurveSnapTarget::Limit:
        return CurveView::tr("limit");
    case CurveSnapTarget::Identity:
        return CurveView::tr("identity");
    case CurveSnapTarget::Chord:
        return CurveView::tr("chord");
    default:
        return {}; // what the grid says already
    }
}

} // namespace

CurveScene CurveViewPrivate::scene() const {
    CurveScene scene;
    scene.model = model;
    scene.plot = plot;
    scene.current = current;
    scene.curves = editableCurves();
    scene.several = othersEditable;
    scene.pressAdds = pressOffLine == CurveView::Adds;
    scene.hasFrame = frameVisible;
    scene.canZoom = zoomEnabled;
    scene.nominal = nominal;
    scene.snaps = snapEnabled;
    scene.snapX = snapX;
    scene.snapY = snapY;
    scene.playhead = playhead;
    scene.hasFrames = !timeAxis.isNull();
    return scene;
}

const CurveGrid& CurveViewPrivate::currentGrid() {
    if (std::exchange(gridIsCurrent, true))
        return grid;
    const QLocale locale = q->locale();
    grid.x =
        timeAxis ? frameLinesOf(plot, *timeAxis) : linesOf(plot.xAxis(), LabelSpacingX, locale);
    grid.y = linesOf(plot.yAxis(), LabelSpacingY, locale);
    grid.identity = hasCurve(current) && isUnitSquare(current);
    return grid;
}

std::vector<CurveLook> CurveViewPrivate::looks() const {
    std::vector<CurveLook> looks;
    const auto add = [&](int curve) {
        CurveLook look;
        look.curve = curve;
        look.color = model->color(curve, q->palette());
        look.hasKnots = isEditable(curve);
        look.hovered = hovered.curve == curve ? hovered.knot : -1;
        if (look.hasKnots)
            look.selected = &selectedOf(curve);
        if (curve != current) {
            look.width = othersEditable ? 1.5 : 1.0;
            look.opacity = othersEditable ? 0.8 : 0.55;
        }
        looks.push_back(look);
    };
    for (int curve = 0; model && curve < model->count(); ++curve) {
        if (curve != current && isVisible(curve))
            add(curve);
    }
    if (hasCurve(current))
        add(current);
    return looks;
}

void CurveViewPrivate::paint(QPainter& painter, const QRegion& exposed) {
    if (!q->isEnabled())
        painter.setOpacity(DisabledOpacity);
    const CurveScene shown = scene();
    const std::vector<CurveLook> curves = looks();
    const CurveGround::Key ground{q->size(),
                                  deviceScale(painter),
                                  plot,
                                  currentGrid(),
                                  q->palette().color(QPalette::Base),
                                  q->palette().color(QPalette::Text),
                                  q->hasFocus() ? q->palette().color(QPalette::Highlight)
                                                : QColor(),
                                  q->font(),
                                  histogramCount};
    for (const QRect& part : exposed)
        pictures.paintLines(painter, ground, histogram, shown, curves, part);
    painter.setClipRect(q->rect().adjusted(1, 1, -1, -1), Qt::IntersectClip);
    CurveOverlays overlays(painter, shown, q->palette());
    painter.setRenderHint(QPainter::Antialiasing);
    paintMarks(overlays, curves);
    for (const CurveLook& look : curves) {
        if (look.hasKnots)
            overlays.paintHandles(look.curve, *look.selected, look.color);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    pictures.paintKnots(painter, ground, shown, curves, exposed.boundingRect());
    painter.setRenderHint(QPainter::Antialiasing);
    paintDrag(painter, overlays, ground);
    paintTexts(overlays, curves);
}

void CurveViewPrivate::paintMarks(CurveOverlays& overlays, const std::vector<CurveLook>& curves) {
    if (std::isfinite(playhead))
        overlays.paintPlayhead(playhead);
    if (!std::isfinite(marker))
        return;
    overlays.paintMarker(marker);
    for (const CurveLook& look : curves) {
        double y = 0.0;
        model->sample(look.curve, marker, marker, 1, &y);
        overlays.paintDot(marker, y, look.color);
    }
}

void CurveViewPrivate::paintDrag(QPainter& painter, CurveOverlays& overlays,
                                 const CurveGround::Key& ground) {
    const CurveScene shown = scene();
    const CurveFrame frame = CurveFrame::of(shown);
    if (!frame.isNull()) {
        std::vector<QPointF> grips;
        for (int grip = 0; grip < CurveFrame::Grips; ++grip)
            grips.push_back(frame.grip(grip));
        overlays.paintFrame(frame.rect, grips);
    }
    if (!drag.isActive())
        return;
    const QRectF band = drag.box(plot);
    if (!band.isNull())
        overlays.paintBand(band);
    paintSnaps(overlays);
    const std::optional<QPointF> gone = drag.pulledOut();
    if (!gone)
        return;
    constexpr double Inside = 2.0 * KnotPictures::Radius;
    const QPointF at(std::clamp(gone->x(), Inside, std::max(Inside, q->width() - Inside)),
                     std::clamp(gone->y(), Inside, std::max(Inside, q->height() - Inside)));
    pictures.paintLoneKnot(painter, ground, at, KnotLook::Gone,
                           model->color(current, q->palette()));
}

void CurveViewPrivate::paintSnaps(CurveOverlays& overlays) const {
    const QRectF& rect = plot.rect();
    if (const std::optional<CurveSnapTarget> snap = drag.snapX()) {
        const double x = plot.toX(snap->value);
        overlays.paintSnap(QVector<QPointF>{{x, rect.top()}, {x, rect.bottom()}}, snapName(*snap));
    }
    if (const std::optional<CurveSnapTarget> snap = drag.snapY())
        overlays.paintSnap(snapLine(*snap), snapName(*snap));
}

// What holds a knot in y: level, or as it goes across the plot.
QPolygonF CurveViewPrivate::snapLine(const CurveSnapTarget& snap) const {
    const QRectF& rect = plot.rect();
    const CurveKnot knot = focused();
    const CurveKnot before{knot.curve, knot.knot - 1};
    const CurveKnot behind{knot.curve, knot.knot + 1};
    if (snap.kind == CurveSnapTarget::Identity)
        return straightLine({plot.xAt(rect.left()), plot.xAt(rect.left())},
                            {plot.xAt(rect.right()), plot.xAt(rect.right())});
    if (snap.kind == CurveSnapTarget::Chord && hasKnot(before) && hasKnot(behind)) {
        const CurveModel::Knot from = model->knot(before.curve, before.knot);
        const CurveModel::Knot to = model->knot(behind.curve, behind.knot);
        return straightLine({from.x, from.y}, {to.x, to.y});
    }
    const double y = hasKnot(knot) ? positionOf(knot).y() : plot.toY(snap.value);
    return QVector<QPointF>{{rect.left(), y}, {rect.right(), y}};
}

// Straight in the curves' numbers, which is bent where a scale is.
QPolygonF CurveViewPrivate::straightLine(const QPointF& from, const QPointF& to) const {
    constexpr int Steps = 64;
    QPolygonF line;
    for (int i = 0; i <= Steps; ++i)
        line.append(plot.toWidget(from + (to - from) * (double(i) / Steps)));
    return line;
}

QRect CurveViewPrivate::textRect() const {
    constexpr int Lines = 2;
    const int height = Lines * (q->fontMetrics().height() + 6);
    return QRect(0, int(plot.rect().bottom()) - height, q->width(), height + 2);
}

// Of a frame that is being scaled.
QString CurveViewPrivate::dragText() const {
    const QPointF scale = drag.scale();
    if (drag.mode() != CurveDrag::DragFrame || scale == QPointF(1.0, 1.0))
        return {};
    const QLocale locale = q->locale();
    return QStringLiteral("\u00d7 %1  \u00d7 %2")
        .arg(locale.toString(scale.x(), 'f', 3), locale.toString(scale.y(), 'f', 3));
}

void CurveViewPrivate::paintTexts(CurveOverlays& overlays, const std::vector<CurveLook>& curves) {
    const QColor ink = q->palette().color(QPalette::Text);
    int line = 0;
    const QString text = readout();
    if (!text.isEmpty())
        overlays.paintText({{text, ink}}, q->font(), line++);
    if (!std::isfinite(marker) || curves.empty())
        return;
    std::vector<CurveWord> words{{xText(marker) + QStringLiteral(" \u2192"), ink}};
    for (const CurveLook& look : curves) {
        double y = 0.0;
        model->sample(look.curve, marker, marker, 1, &y);
        words.push_back({QStringLiteral("  ") + yText(y), look.color});
    }
    // Where all do not fit, the current one, which comes last.
    if (overlays.widthOf(words, q->font()) > plot.rect().width() - 12.0)
        words = {words.front(), words.back()};
    overlays.paintText(words, q->font(), line);
}

// -- Words

QString CurveViewPrivate::xText(double x) const {
    const double whole = std::round(x);
    if (timeAxis && std::abs(x - whole) < WholeFrame && std::abs(whole) < MostFrames)
        return timeAxis->formatTime(static_cast<Base::Time>(whole));
    return numberText(q->locale(), x, plot.xAxis().decimalsAt(x));
}

QString CurveViewPrivate::yText(double y) const {
    return numberText(q->locale(), y, plot.yAxis().decimalsAt(y));
}

QString CurveViewPrivate::placeText(const QPointF& place) const {
    return CurveView::tr("x %1  y %2").arg(xText(place.x()), yText(place.y()));
}

QString CurveViewPrivate::knotName(const CurveKnot& knot) const {
    const QString name =
        CurveView::tr("Knot %1 of %2").arg(knot.knot + 1).arg(model->knots(knot.curve));
    return editableCurves().size() > 1 ? CurveView::tr("%1, %2").arg(model->name(knot.curve), name)
                                       : name;
}

// What assistive tools read as the value of the whole.
QString CurveViewPrivate::valueText() const {
    if (!hasCurve(current))
        return {};
    const int count = selectedCount();
    if (count > 1)
        return CurveView::tr("%n knots selected", nullptr, count);
    const std::vector<CurveKnot> knots = selected();
    if (knots.empty())
        return CurveView::tr("%n knots", nullptr, model->knots(current));
    const CurveModel::Knot knot = model->knot(knots.front().curve, knots.front().knot);
    return CurveView::tr("%1, %2").arg(knotName(knots.front()), placeText({knot.x, knot.y}));
}

// What the user points at comes before what is selected.
QString CurveViewPrivate::readout() const {
    if (!notice.isEmpty())
        return notice;
    if (!model)
        return {};
    const QString dragged = dragText();
    if (!dragged.isEmpty())
        return dragged;
    CurveKnot shown = edit.gesture() == EditGestures::Drag ? CurveKnot() : hovered;
    if (!hasKnot(shown)) {
        const int count = selectedCount();
        if (count > 1)
            return CurveView::tr("%n knots", nullptr, count);
        const std::vector<CurveKnot> knots = selected();
        if (knots.empty())
            return {};
        shown = knots.front();
    }
    const CurveModel::Knot knot = model->knot(shown.curve, shown.knot);
    return placeText({knot.x, knot.y});
}

} // namespace Kestrel::UI
