#include <KxUI/style/StyleElements_p.h>

#include <KxUI/style/StyleMetrics_p.h>

#include <QPainterPath>
#include <QPainterPathStroker>
#include <QSize>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr QRgb white = 0xffffffff;
constexpr QRgb black = 0xff000000;
constexpr int MostRowPixels = 96; // taller ones are flat frames
constexpr int RowMiddle = 128;
constexpr int SmallMiddle = 8;

QRgb withAlpha(QRgb color, int alpha) {
    return qRgba(qRed(color), qGreen(color), qBlue(color), alpha);
}

void fill(Bevel& bevel, QRgb color) {
    bevel.top = bevel.bottom = color;
}

// A little light from above, which tells a button from a field.
void raise(Bevel& bevel, QRgb color, double light) {
    bevel.top = mixedShade(color, white, light);
    bevel.bottom = mixedShade(color, black, light);
}

void focusLines(Bevel& bevel, const Shades& shades) {
    bevel.outline = shades.focus;
    bevel.inner = withAlpha(shades.focus, 110);
}

void paintButton(Bevel& bevel, unsigned state, const Shades& shades) {
    QRgb color = (state & StateOn) ? shades.checked : shades.button;
    if (state & StateHover)
        color = mixedShade(color, white, shades.isDark ? 0.07 : 0.35);
    bevel.outline = shades.outline;
    if (!(state & StateEnabled))
        fill(bevel, mixedShade(color, shades.window, 0.5));
    else if (state & StateSunken)
        fill(bevel, shades.isHighContrast ? mixedShade(color, shades.buttonText, 0.35)
                                          : mixedShade(color, black, shades.isDark ? 0.25 : 0.12));
    else if (state & StateOn)
        fill(bevel, color);
    else
        raise(bevel, color, shades.isHighContrast ? 0 : shades.isDark ? 0.035 : 0.025);
    if (state & StateDefault)
        bevel.outline = mixedShade(shades.outline, shades.focus, 0.6);
    if (!(state & StateEnabled))
        bevel.outline = mixedShade(shades.outline, shades.window, 0.5);
    if (state & StateFocus)
        focusLines(bevel, shades);
}

void paintField(Bevel& bevel, unsigned state, const Shades& shades) {
    const bool isEnabled = state & StateEnabled;
    fill(bevel, isEnabled ? shades.base : mixedShade(shades.base, shades.window, 0.6));
    bevel.outline = isEnabled ? shades.outline : mixedShade(shades.outline, shades.window, 0.5);
    if (state & StateFocus)
        focusLines(bevel, shades);
}

void paintIndicator(Bevel& bevel, unsigned state, const Shades& shades) {
    const bool isOn = state & StateOn;
    const bool isEnabled = state & StateEnabled;
    QRgb color = isEnabled ? (isOn ? shades.highlight : shades.base)
                           : mixedShade(shades.base, shades.window, 0.6);
    if (state & StateHover)
        color = mixedShade(color, shades.isDark ? white : shades.text, 0.1);
    if (state & StateSunken)
        color = mixedShade(color, black, 0.15);
    fill(bevel, color);
    bevel.outline = isOn && isEnabled ? shades.focus : shades.indicator;
    if (state & StateFocus)
        focusLines(bevel, shades);
}

void paintHandle(Bevel& bevel, unsigned state, const Shades& shades) {
    QRgb color = shades.grip;
    if (state & StateHover)
        color = mixedShade(color, shades.isDark ? white : black, 0.12);
    if (state & StateSunken)
        color = mixedShade(color, shades.isDark ? white : black, 0.2);
    fill(bevel, color);
}

void paintTab(Bevel& bevel, unsigned state, const Shades& shades) {
    QRgb color = (state & StateOn) ? shades.window : shades.idleTab;
    if ((state & StateHover) && !(state & StateOn))
        color = mixedShade(color, shades.window, 0.5);
    fill(bevel, color);
    bevel.outline = shades.outline;
}

void paintHeader(Bevel& bevel, unsigned state, const Shades& shades) {
    if (state & (StateSunken | StateOn))
        fill(bevel, mixedShade(shades.button, black, 0.12));
    else if (state & StateHover)
        fill(bevel, mixedShade(shades.button, white, shades.isDark ? 0.06 : 0.3));
    else
        raise(bevel, shades.button, shades.isHighContrast ? 0 : 0.025);
}

double radiusOf(StyleElement element) {
    constexpr double Round = 1000; // as much as there is room for
    switch (element) {
    case StyleElement::Radio:
    case StyleElement::Groove:
    case StyleElement::ScrollHandle:
        return Round;
    case StyleElement::Header:
    case StyleElement::Menu:
    case StyleElement::Tip:
        return 0;
    case StyleElement::Progress:
        return StyleMetrics::Radius - 1;
    default:
        return StyleMetrics::Radius;
    }
}

} // namespace

Bevel bevelOf(StyleElement element, unsigned state, const Shades& shades) {
    Bevel bevel;
    bevel.radius = radiusOf(element);
    switch (element) {
    case StyleElement::Button:
    case StyleElement::ToolButton:
        paintButton(bevel, state, shades);
        break;
    case StyleElement::Field:
    case StyleElement::Frame:
        paintField(bevel, state, shades);
        if (element == StyleElement::Frame)
            fill(bevel, 0);
        break;
    case StyleElement::Indicator:
    case StyleElement::Radio:
        paintIndicator(bevel, state, shades);
        break;
    case StyleElement::Groove:
        fill(bevel, (state & StateOn) ? shades.grip : shades.groove);
        bevel.outline = shades.isHighContrast ? shades.outline : 0;
        break;
    case StyleElement::Handle:
        paintHandle(bevel, state, shades);
        bevel.outline = shades.outline;
        if (state & StateFocus)
            focusLines(bevel, shades);
        break;
    case StyleElement::ScrollHandle:
        paintHandle(bevel, state, shades);
        break;
    case StyleElement::Progress:
        fill(bevel, shades.highlight);
        break;
    case StyleElement::Tab:
        paintTab(bevel, state, shades);
        break;
    case StyleElement::Header:
        paintHeader(bevel, state, shades);
        break;
    case StyleElement::Panel:
        bevel.outline = shades.outline;
        break;
    case StyleElement::Menu:
        fill(bevel, shades.menu);
        bevel.outline = shades.outline;
        break;
    case StyleElement::Tip:
        fill(bevel, shades.tip);
        bevel.outline = shades.indicator;
        break;
    case StyleElement::Focus:
        bevel.outline = shades.focus;
        break;
    }
    return bevel;
}

double frameRadius(const Bevel& bevel) {
    return std::min(bevel.radius, 2 * StyleMetrics::Radius);
}

void ElementPlan::add(const QRect& target, const QRect& source) {
    if (!target.isEmpty() && sliceCount < int(slices.size()))
        slices[std::size_t(sliceCount++)] = {target, source};
}

void ElementPlan::add(const QRect& target, QRgb color) {
    if (!target.isEmpty() && qAlpha(color) != 0 && lineCount < int(lines.size()))
        lines[std::size_t(lineCount++)] = {target, color};
}

QSize TextureShape::size() const {
    const int length = 2 * cap + middle;
    return {length, extent == 0 ? length : extent};
}

int textureExtent(StyleElement element, int height, double ratio) {
    const bool isSeeThrough = element == StyleElement::Frame || element == StyleElement::Panel ||
                              element == StyleElement::Focus;
    return isSeeThrough || height > int(MostRowPixels * ratio) ? 0 : std::max(height, 1);
}

TextureShape textureShape(StyleElement element, const Bevel& bevel, int extent, double ratio) {
    const bool isRow = extent > 0;
    const double lines = qAlpha(bevel.inner) ? 3 : 2;
    const double radius =
        isRow ? std::min(bevel.radius * ratio, extent / 2.0) : frameRadius(bevel) * ratio;
    const bool isSmall = element == StyleElement::Indicator || element == StyleElement::Radio ||
                         element == StyleElement::Handle;
    TextureShape shape;
    shape.cap = std::max(1, int(std::ceil(std::max(radius, lines))));
    shape.extent = extent;
    if (isRow)
        shape.middle = isSmall ? SmallMiddle : RowMiddle * int(std::ceil(ratio));
    else
        shape.middle = 1;
    return shape;
}

namespace {

QRect turned(const QRect& rect) {
    return {rect.y(), rect.x(), rect.height(), rect.width()};
}

void planRow(ElementPlan* plan, const QRect& target, const TextureShape& shape, bool isUpright) {
    const QRect along = isUpright ? turned(target) : target;
    const int extent = along.height();
    const auto add = [&](int to, int length, int from, int fromLength) {
        const QRect piece(along.x() + to, along.y(), length, extent);
        const QRect source(from, 0, fromLength, extent);
        plan->add(isUpright ? turned(piece) : piece, isUpright ? turned(source) : source);
    };
    const int width = along.width();
    const int tail = std::min(shape.cap, width / 2);
    const int head = std::min(width - tail, shape.cap + shape.middle);
    add(0, head, 0, head);
    int done = head;
    // What is wider than that is stretched, which nobody sees so far from its ends.
    while (done < width - tail && plan->sliceCount < int(plan->slices.size()) - 2) {
        const int length = std::min(shape.middle, width - tail - done);
        add(done, length, shape.cap, length);
        done += length;
    }
    if (done < width - tail)
        add(done, width - tail - done, shape.cap, shape.middle);
    add(width - tail, tail, 2 * shape.cap + shape.middle - tail, tail);
}

void planFrame(ElementPlan* plan, const QRect& target, const TextureShape& shape,
               const Bevel& bevel, unsigned edges) {
    const int left = std::min(shape.cap, target.width() / 2);
    const int top = std::min(shape.cap, target.height() / 2);
    const int right = std::min(shape.cap, target.width() - left);
    const int bottom = std::min(shape.cap, target.height() - top);
    const int side = shape.size().width();
    const int x = target.x();
    const int y = target.y();
    const int xEnd = x + target.width();
    const int yEnd = y + target.height();
    plan->add({x, y, left, top}, {0, 0, left, top});
    plan->add({xEnd - right, y, right, top}, {side - right, 0, right, top});
    plan->add({x, yEnd - bottom, left, bottom}, {0, side - bottom, left, bottom});
    plan->add({xEnd - right, yEnd - bottom, right, bottom},
              {side - right, side - bottom, right, bottom});
    const QRgb middle = bevel.isFlat() ? bevel.top : mixedShade(bevel.top, bevel.bottom, 0.5);
    const int across = target.width() - left - right;
    const int down = target.height() - top - bottom;
    // Between the corners: the fill without the lines' rows and columns, then these.
    plan->add({x + left, y, across, target.height()}, middle);
    plan->add({x, y + top, left, down}, middle);
    plan->add({xEnd - right, y + top, right, down}, middle);
    if (!(edges & JoinTop))
        plan->add({x + left, y, across, 1}, bevel.outline);
    if (!(edges & JoinBottom))
        plan->add({x + left, yEnd - 1, across, 1}, bevel.outline);
    if (!(edges & JoinLeft))
        plan->add({x, y + top, 1, down}, bevel.outline);
    if (!(edges & JoinRight))
        plan->add({xEnd - 1, y + top, 1, down}, bevel.outline);
    if (qAlpha(bevel.inner) == 0)
        return;
    plan->add({x + left, y + 1, across, 1}, bevel.inner);
    plan->add({x + left, yEnd - 2, across, 1}, bevel.inner);
    plan->add({x + 1, y + top, 1, down}, bevel.inner);
    plan->add({xEnd - 2, y + top, 1, down}, bevel.inner);
}

} // namespace

ElementPlan planOf(const QRect& target, const TextureShape& shape, const Bevel& bevel,
                   unsigned edges, bool isUpright) {
    ElementPlan plan;
    if (target.isEmpty())
        return plan;
    if (shape.extent > 0)
        planRow(&plan, target, shape, isUpright);
    else
        planFrame(&plan, target, shape, bevel, edges);
    return plan;
}

namespace {

QPainterPath stroked(const QPainterPath& line, double width) {
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return stroker.createStroke(line).simplified();
}

QPainterPath polyline(std::initializer_list<QPointF> points, double width) {
    QPainterPath line(*points.begin());
    std::for_each(points.begin() + 1, points.end(), [&](const QPointF& to) { line.lineTo(to); });
    return stroked(line, width);
}

QPainterPath dots(const QPointF& step) {
    QPainterPath path;
    for (int i = -1; i <= 1; ++i)
        path.addEllipse(QPointF(0.5, 0.5) + i * step, 0.09, 0.09);
    return path;
}

} // namespace

QPainterPath markPath(StyleMark mark) {
    constexpr double Line = 0.17;
    switch (mark) {
    case StyleMark::ArrowUp:
        return polyline({{0.15, 0.66}, {0.5, 0.31}, {0.85, 0.66}}, Line);
    case StyleMark::ArrowDown:
        return polyline({{0.15, 0.34}, {0.5, 0.69}, {0.85, 0.34}}, Line);
    case StyleMark::ArrowLeft:
        return polyline({{0.66, 0.15}, {0.31, 0.5}, {0.66, 0.85}}, Line);
    case StyleMark::ArrowRight:
        return polyline({{0.34, 0.15}, {0.69, 0.5}, {0.34, 0.85}}, Line);
    case StyleMark::Check:
        return polyline({{0.2, 0.53}, {0.42, 0.75}, {0.82, 0.27}}, 0.15);
    case StyleMark::Dash:
        return polyline({{0.25, 0.5}, {0.75, 0.5}}, 0.16);
    case StyleMark::Plus: {
        QPainterPath path = polyline({{0.15, 0.5}, {0.85, 0.5}}, Line);
        return path.united(polyline({{0.5, 0.15}, {0.5, 0.85}}, Line));
    }
    case StyleMark::Minus:
        return polyline({{0.15, 0.5}, {0.85, 0.5}}, Line);
    case StyleMark::Cross: {
        QPainterPath path = polyline({{0.2, 0.2}, {0.8, 0.8}}, 0.14);
        return path.united(polyline({{0.8, 0.2}, {0.2, 0.8}}, 0.14));
    }
    case StyleMark::GripRow:
        return dots({0.36, 0.0});
    case StyleMark::GripColumn:
        return dots({0.0, 0.36});
    case StyleMark::Dot:
        break;
    }
    QPainterPath path;
    path.addEllipse(QPointF(0.5, 0.5), 0.25, 0.25);
    return path;
}

} // namespace Kestrel::UI
