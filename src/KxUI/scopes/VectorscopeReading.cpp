#include <KxUI/scopes/Vectorscope_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int MostCorners = 256; // of a selection by hand
constexpr int Cells = 512;       // where nothing is counted

} // namespace

VectorRange VectorscopePrivate::vectorRange() const {
    const SourceCodes codes(model ? model->image() : ScopeImage(), encoding());
    VectorRange range;
    range.chroma = vectorRangeFor({viewport.left, viewport.bottom, viewport.width, viewport.height},
                                  gain, logRadius, codes);
    range.lumaLower = float(lumaLower);
    range.lumaUpper = float(lumaUpper);
    return range;
}

void VectorscopePrivate::changeCounts() {
    askModel();
    m_key = TraceKey();
    changeTrace();
}

void VectorscopePrivate::resultChanged() {
    m_key = TraceKey();
    // Another picture may be in other codes.
    const VectorRange wanted = vectorRange();
    if (wanted == m_asked)
        return;
    m_asked = wanted;
    askModel();
}

// The cells, without their ends, that a place stands for: the one that it is in, or those of its pixel.
QRectF VectorscopePrivate::cellsAt(const ScopeVectors& vectors, const QPointF& uv) const {
    const QSizeF size = step();
    const QPointF half(size.width() / 2, size.height() / 2);
    const QPointF a = signalAt(uv - half);
    const QPointF b = signalAt(uv + half);
    const QPointF middle = signalAt(uv);
    const double cell = (double(vectors.range.upper) - double(vectors.range.lower)) / vectors.size;
    const auto cut = [&](double from, double to, double at) {
        const auto place = [&](double chroma) {
            return (chroma - double(vectors.range.lower)) / cell;
        };
        double begin = std::floor(place(at));
        double end = begin + 1;
        if (place(to) - place(from) > 1 + 1e-6) {
            begin = std::floor(place(from));
            end = std::ceil(place(to));
        }
        return QPointF(std::clamp(begin, 0.0, double(vectors.size)),
                       std::clamp(end, 0.0, double(vectors.size)));
    };
    const QPointF across = cut(std::min(a.x(), b.x()), std::max(a.x(), b.x()), middle.x());
    const QPointF up = cut(std::min(a.y(), b.y()), std::max(a.y(), b.y()), middle.y());
    return {QPointF(across.x(), up.x()), QPointF(across.y(), up.y())};
}

std::uint64_t VectorscopePrivate::countAt(const QPointF& uv) const {
    const auto counted = result();
    const ScopeVectors& vectors = counted->vectors;
    const QRectF cells = cellsAt(vectors, uv);
    std::uint64_t sum = 0;
    for (int cr = int(cells.top()); cr < int(cells.bottom()); ++cr)
        for (int cb = int(cells.left()); cb < int(cells.right()); ++cb)
            sum += vectors.count(cb, cr);
    return sum;
}

ScopeReadout VectorscopePrivate::readoutAt(const QPointF& uv) const {
    const auto counted = result();
    if (counted->vectors.size == 0 || !QRectF(0, 0, 1, 1).contains(uv))
        return {};
    const QPointF chroma = signalAt(uv);
    const double direction = directionOf(chroma);
    const double full = hullReach(encoding().matrix, direction);
    const double strength = full > 0 ? std::hypot(chroma.x(), chroma.y()) / full : 0;
    const QLocale locale = q->locale();
    ScopeReadout readout;
    readout.value = chroma.x();
    readout.second = chroma.y();
    readout.valueText = Vectorscope::tr("Cb %1, Cr %2")
                            .arg(valueText(chroma.x(), true), valueText(chroma.y(), true));
    readout.count = countAt(uv);
    const double all = double(std::max<std::uint64_t>(counted->vectors.pixels, 1));
    readout.share = double(readout.count) / all;
    describe(readout);
    readout.text = Vectorscope::tr("%1\u00b0, %2 %, %3")
                       .arg(locale.toString(direction, 'f', 1),
                            locale.toString(strength * 100, 'f', 1), readout.text);
    return readout;
}

// A cell, or a pixel where that is larger.
QSizeF VectorscopePrivate::step() const {
    const QRectF plot = geometry().plot;
    const auto counted = result();
    const ScopeVectors& vectors = counted->vectors;
    const double whole = 2 * VectorPlane::Reach;
    const double cell =
        vectors.size > 0
            ? (double(vectors.range.upper) - double(vectors.range.lower)) / vectors.size / whole
            : 1.0 / Cells;
    const double shown = logRadius ? 0 : cell * gain;
    return {std::max(viewport.width / plot.width(), shown),
            std::max(viewport.height / plot.height(), shown)};
}

ScopeSelection VectorscopePrivate::selectionOf(const QPointF& from, const QPointF& to,
                                               const QVector<QPointF>& path) const {
    ScopeSelection selection;
    selection.kind = ScopeSelection::Kind::Chroma;
    const auto add = [&selection](const QPointF& chroma) {
        selection.polygon.push_back({float(chroma.x()), float(chroma.y())});
    };
    if (drag.isSelecting() && path.size() > 2) {
        const int every = std::max(int(path.size()) / MostCorners, 1);
        for (int i = 0; i < int(path.size()); i += every)
            add(signalAt(path[i]));
        return selection;
    }
    QRectF area = drag.isSelecting() ? QRectF() : chromaAt((from + to) / 2);
    if (area.isEmpty())
        area = QRectF(signalAt(from), signalAt(to));
    for (const QPointF& corner :
         {area.topLeft(), area.topRight(), area.bottomRight(), area.bottomLeft()})
        add(corner);
    return selection;
}

QRectF VectorscopePrivate::chromaAt(const QPointF& uv) const {
    const auto counted = result();
    const ScopeVectors& vectors = counted->vectors;
    if (vectors.size == 0)
        return {};
    const double cell = (double(vectors.range.upper) - double(vectors.range.lower)) / vectors.size;
    const QRectF cells = cellsAt(vectors, uv);
    const QPointF origin(double(vectors.range.lower), double(vectors.range.lower));
    return {origin + cells.topLeft() * cell, origin + cells.bottomRight() * cell};
}

} // namespace Kestrel::UI
