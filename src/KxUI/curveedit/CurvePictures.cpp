#include <KxUI/curveedit/CurvePictures_p.h>

#include <KxUI/curveedit/CurveModel.h>
#include <KxUI/curveedit/CurvePick_p.h>
#include <KxUI/time/TimeSliderPainter_p.h>

#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <unordered_set>

namespace Kestrel::UI {
namespace {

constexpr double StripHeight = 4.0; // of the strip that tells where knots lie too close to be seen
constexpr double StripRoom = 1.0;   // between those of two curves
constexpr double DotCell = 3.0;     // of those in such a square one knot is drawn
constexpr int InkBlock = 16;        // columns
constexpr int SomeKnots = 255;      // a column with so many looks as full as it can

/** Of knots that lie almost on each other one is drawn. */
class KnotCells {
public:
    bool take(const QPointF& at, KnotLook look) {
        const auto cell = [](double x) { return std::int64_t(std::floor(x / DotCell)); };
        return m_taken.insert((cell(at.x()) * 0x10000 + cell(at.y())) * 4 + int(look)).second;
    }

private:
    std::unordered_set<std::int64_t> m_taken;
};

// Only where it will be seen.
void copyRows(QImage& to, const QImage& from, const QRect& part) {
    const auto bytes = std::size_t(part.width()) * sizeof(QRgb);
    for (int row = part.top(); row <= part.bottom(); ++row) {
        const auto* source = reinterpret_cast<const QRgb*>(from.constScanLine(row));
        auto* target = reinterpret_cast<QRgb*>(to.scanLine(row));
        std::memcpy(target + part.left(), source + part.left(), bytes);
    }
}

QRect devicePixels(const QRect& part, double ratio) {
    return QRectF(QPointF(part.topLeft()) * ratio, QSizeF(part.size()) * ratio).toAlignedRect();
}

} // namespace

void CurvePictures::forget(int curve, const QRect& changed) {
    const QRect pixels = devicePixels(changed, m_ratio);
    m_drawn -= pixels;
    if (curve >= 0 && std::size_t(curve) < m_lines.size())
        m_lines[std::size_t(curve)].stale |= pixels;
}

void CurvePictures::forgetAll() {
    m_lines.clear();
    m_drawn = QRegion();
}

const CurveLine& CurvePictures::line(const CurveModel& model, int curve, const CurvePlot& plot,
                                     double ratio, int width) {
    if (!(plot == m_plot) || ratio != m_ratio || width != m_width) {
        forgetAll();
        m_plot = plot;
        m_ratio = ratio;
        m_width = width;
    }
    if (m_lines.size() <= std::size_t(curve))
        m_lines.resize(std::size_t(curve) + 1);
    Kept& kept = m_lines[std::size_t(curve)];
    if (!kept.valid)
        kept.line = CurveLine::of(model, curve, plot, ratio, width);
    else if (!kept.stale.isEmpty())
        kept.line.renew(model, curve, plot, ratio, width, kept.stale.left(),
                        kept.stale.right() + 1);
    kept.valid = true;
    kept.stale = QRect();
    return kept.line;
}

void CurvePictures::paintLines(QPainter& painter, const CurveGround::Key& ground,
                               const QVector<CurveHistogram>& histogram, const CurveScene& scene,
                               const std::vector<CurveLook>& curves, const QRect& exposed) {
    const QImage& behind = m_ground.picture(ground, histogram);
    const QRect pixels = devicePixels(exposed, ground.ratio) & behind.rect();
    if (pixels.isEmpty())
        return;
    if (m_canvas.size() != behind.size()) {
        m_canvas = QImage(behind.size(), QImage::Format_RGB32);
        m_covered = QRegion();
    }
    // Asked for first, since what they find out may be that nothing drawn before is right.
    for (const CurveLook& look : curves)
        line(*scene.model, look.curve, ground.plot, ground.ratio, behind.width());
    if (m_behind != behind.cacheKey() || !(m_looks == curves)) {
        m_drawn = QRegion();
        if (m_behind != behind.cacheKey())
            m_covered = QRegion();
        m_behind = behind.cacheKey();
        m_looks = curves;
    }
    for (const QRect& part : QRegion(pixels) - m_drawn)
        compose(ground, behind, scene, curves, part);
    m_drawn += pixels;
    const DeviceSpace device(painter);
    painter.drawImage(pixels.topLeft(), m_canvas, pixels);
}

void CurvePictures::compose(const CurveGround::Key& ground, const QImage& behind,
                            const CurveScene& scene, const std::vector<CurveLook>& curves,
                            const QRect& pixels) {
    uncover(behind, pixels);
    // No line goes through the frame of the focus.
    const int frame = ground.focus.isValid() ? qCeil(1.5 * ground.ratio) : 0;
    const QRect inside = behind.rect().adjusted(frame, frame, -frame, -frame) & pixels;
    for (const CurveLook& look : curves) {
        const CurveLine& seen =
            line(*scene.model, look.curve, ground.plot, ground.ratio, behind.width());
        const bool hasStrip = look.hasKnots && seen.isCrowded(ground.plot.rect().width());
        noteInk(look, seen, ground.ratio, pixels, hasStrip);
        strokeCurve(m_canvas, inside, seen.columns, look.width * ground.ratio,
                    faint(look.color, look.opacity));
        if (hasStrip)
            paintDensity(look, seen, ground, pixels);
    }
}

// Of what the lines left alone nothing has to be copied: most of a picture.
void CurvePictures::uncover(const QImage& behind, const QRect& pixels) {
    m_ink.resize(std::size_t(behind.width() / InkBlock + 1));
    const bool isCovered = (QRegion(pixels) - m_covered).isEmpty();
    for (int block = pixels.left() / InkBlock; block <= pixels.right() / InkBlock; ++block) {
        Rows& ink = m_ink[std::size_t(block)];
        const QRect columns(block * InkBlock, 0, InkBlock, behind.height());
        const QRect inked(columns.left(), ink.first, InkBlock, ink.end - ink.first);
        if (isCovered && ink.first < ink.end)
            copyRows(m_canvas, behind, inked & pixels);
        if (pixels.contains(columns & behind.rect()))
            ink = {};
    }
    if (!isCovered)
        copyRows(m_canvas, behind, pixels);
    m_covered += pixels;
}

void CurvePictures::noteInk(const CurveLook& look, const CurveLine& line, double ratio,
                            const QRect& pixels, bool hasStrip) {
    // What a column draws reaches over to its neighbours.
    const int reach = qCeil(look.width * ratio / 2.0) + 2;
    const int last = m_canvas.width() - 1;
    const int height = m_canvas.height();
    const auto bound = float(height);
    const auto note = [&](int from, int to, const Rows& rows) {
        const int end = std::clamp(to, 0, last) / InkBlock;
        for (int block = std::clamp(from, 0, last) / InkBlock; block <= end; ++block) {
            Rows& ink = m_ink[std::size_t(block)];
            ink.first = std::min(ink.first, rows.first);
            ink.end = std::max(ink.end, rows.end);
        }
    };
    if (hasStrip)
        note(pixels.left(), pixels.right(), {0, height});
    const int end = std::min(pixels.right() + 1 + reach, line.columns.end());
    for (int x = std::max(pixels.left() - reach, line.columns.first); x < end; ++x) {
        const CurveColumn& column = line.columns.columns[std::size_t(x - line.columns.first)];
        const float top = column.top - float(reach);
        const float bottom = column.bottom + float(reach) + 1.0F;
        // A model may well say what is no number.
        note(x - reach, x + reach,
             {top > 0.0F && top < bound ? int(top) : 0,
              bottom > 0.0F && bottom < bound ? int(bottom) : height});
    }
}

// At the lower edge of the plot, curves one above the other.
void CurvePictures::paintDensity(const CurveLook& look, const CurveLine& line,
                                 const CurveGround::Key& ground, const QRect& pixels) {
    const double bottom = ground.plot.rect().bottom() - look.curve * (StripHeight + StripRoom);
    const QRect strip =
        QRect(pixels.left(), int(std::round((bottom - StripHeight) * ground.ratio)), pixels.width(),
              std::max(1, int(std::round(StripHeight * ground.ratio)))) &
        pixels;
    const int first = std::max(strip.left(), line.columns.first);
    const int end = std::min(strip.right() + 1, line.columns.end());
    const double most = std::log1p(SomeKnots);
    QPainter painter(&m_canvas);
    for (int x = first; x < end; ++x) {
        const int knots = line.density[std::size_t(x - line.columns.first)];
        if (knots > 0)
            painter.fillRect(QRect(x, strip.top(), 1, strip.height()),
                             faint(look.color, 0.35 + 0.65 * std::log1p(knots) / most));
    }
}

void CurvePictures::paintKnots(QPainter& painter, const CurveGround::Key& ground,
                               const CurveScene& scene, const std::vector<CurveLook>& curves,
                               const QRect& exposed) {
    constexpr double Beyond = 2.0 * KnotPictures::Radius;
    const QRectF area = QRectF(exposed).adjusted(-Beyond, -Beyond, Beyond, Beyond);
    m_knots.prepare(ground.ratio, ground.ink, ground.base);
    const DeviceSpace device(painter);
    for (const CurveLook& look : curves) {
        if (look.hasKnots)
            paintKnotsOf(painter, ground, scene, look, area);
    }
}

void CurvePictures::paintLoneKnot(QPainter& painter, const CurveGround::Key& ground,
                                  const QPointF& at, KnotLook look, const QColor& color) {
    m_knots.prepare(ground.ratio, ground.ink, ground.base);
    const DeviceSpace device(painter);
    m_knots.draw(painter, at * ground.ratio, look, color);
}

void CurvePictures::paintKnotsOf(QPainter& painter, const CurveGround::Key& ground,
                                 const CurveScene& scene, const CurveLook& look,
                                 const QRectF& exposed) {
    const CurveModel& model = *scene.model;
    const CurveLine& seen = line(model, look.curve, ground.plot, ground.ratio,
                                 qCeil(ground.size.width() * ground.ratio));
    KnotCells cells;
    const auto draw = [&](const QPointF& knot, KnotLook drawn) {
        const QPointF at = CurvePick::shownAt(scene, look.curve, knot);
        if (exposed.contains(at) && cells.take(at, drawn))
            m_knots.draw(painter, at * ground.ratio, drawn, look.color);
    };
    if (!seen.isCrowded(ground.plot.rect().width())) {
        std::vector<QPointF> places(std::size_t(seen.knots()));
        model.places(look.curve, seen.firstKnot, seen.knots(), places.data());
        for (const QPointF& place : places)
            draw(place, KnotLook::Plain);
    }
    const auto placeOf = [&](int knot) {
        QPointF place;
        model.places(look.curve, knot, 1, &place);
        return place;
    };
    if (look.hovered >= 0 && look.hovered < model.knots(look.curve))
        draw(placeOf(look.hovered), KnotLook::Hovered);
    if (!look.selected)
        return;
    for (const int knot : *look.selected) {
        if (knot >= seen.firstKnot && knot < seen.endKnot)
            draw(placeOf(knot), KnotLook::Selected);
    }
}

} // namespace Kestrel::UI
