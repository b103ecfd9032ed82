#include <KxUI/draw/SvgDrawingContext_p.h>

#include <KxUI/draw/CloudRaster_p.h>
#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/draw/ToneTable_p.h>

#include <QBuffer>
#include <QFontInfo>
#include <QFontMetricsF>

namespace Kestrel::UI {
namespace {

QByteArray number(double value) {
    return QByteArray::number(value, 'g', 8);
}

QByteArray attribute(const char* name, const QByteArray& value) {
    return QByteArray(" ") + name + "=\"" + value + '"';
}

QByteArray placeOf(const QRectF& rect) {
    return attribute("x", number(rect.x())) + attribute("y", number(rect.y())) +
           attribute("width", number(rect.width())) + attribute("height", number(rect.height()));
}

// The name of the attribute is also that of its opacity.
QByteArray colorOf(const QByteArray& name, const QColor& color) {
    QByteArray text = attribute(name.constData(), color.name(QColor::HexRgb).toLatin1());
    if (color.alpha() < 255)
        text += attribute((name + "-opacity").constData(), number(color.alphaF()));
    return text;
}

QByteArray pairOf(const QPointF& point) {
    return number(point.x()) + ' ' + number(point.y());
}

QByteArray dashesOf(const LineStroke& stroke) {
    const QByteArray dash = number(4 * stroke.width);
    const QByteArray dot = number(stroke.width);
    const QByteArray gap = number(2 * stroke.width);
    switch (stroke.style) {
    case Qt::DashLine:
        return dash + ' ' + gap;
    case Qt::DotLine:
        return dot + ' ' + gap;
    case Qt::DashDotLine:
        return dash + ' ' + gap + ' ' + dot + ' ' + gap;
    default:
        return {};
    }
}

} // namespace

SvgDrawingContext::SvgDrawingContext(const QSize& size)
    : m_size(size) {}

SvgDrawingContext::~SvgDrawingContext() = default;

QByteArray SvgDrawingContext::toSvg() const {
    const QByteArray width = number(m_size.width());
    const QByteArray height = number(m_size.height());
    QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg";
    text += attribute("xmlns", "http://www.w3.org/2000/svg") +
            attribute("xmlns:xlink", "http://www.w3.org/1999/xlink") + attribute("version", "1.1") +
            attribute("width", width) + attribute("height", height) +
            attribute("viewBox", "0 0 " + width + ' ' + height) + ">\n" + m_body;
    return text + (m_isClipped ? "</g>\n</svg>\n" : "</svg>\n");
}

void SvgDrawingContext::rectangles(const QRectF* rects, int count, const QColor& color) {
    for (int i = 0; i < count; ++i)
        m_body += "<rect" + placeOf(rects[i]) + colorOf("fill", color) + "/>\n";
}

void SvgDrawingContext::path(const QByteArray& data, const LineStroke& stroke) {
    m_body += "<path" + attribute("d", data) + attribute("fill", "none") +
              colorOf("stroke", stroke.color.isValid() ? stroke.color : QColor(Qt::black)) +
              attribute("stroke-width", number(stroke.width > 0 ? stroke.width : 1)) +
              attribute("stroke-linejoin", "round");
    const QByteArray dashes = dashesOf(stroke);
    if (!dashes.isEmpty())
        m_body += attribute("stroke-dasharray", dashes);
    m_body += "/>\n";
}

void SvgDrawingContext::lines(const QLineF* lines, int count, const LineStroke& stroke) {
    QByteArray data;
    for (int i = 0; i < count; ++i)
        data += 'M' + pairOf(lines[i].p1()) + 'L' + pairOf(lines[i].p2());
    if (!data.isEmpty())
        path(data, stroke);
}

void SvgDrawingContext::polyline(const QPointF* points, int count, const LineStroke& stroke) {
    if (count < 2)
        return;
    QByteArray data;
    for (int i = 0; i < count; ++i)
        data += (i == 0 ? 'M' : 'L') + pairOf(points[i]);
    path(data, stroke);
}

void SvgDrawingContext::polygon(const QPointF* points, int count, const QColor& color) {
    if (count < 3)
        return;
    QByteArray data;
    for (int i = 0; i < count; ++i)
        data += (i == 0 ? QByteArray() : QByteArray(" ")) + pairOf(points[i]);
    m_body += "<polygon" + attribute("points", data) + attribute("fill-rule", "evenodd") +
              colorOf("fill", color) + "/>\n";
}

void SvgDrawingContext::text(const QRectF& rect, int flags, const QString& text, const QFont& font,
                             const QColor& color) {
    if (text.isEmpty())
        return;
    const QFontMetricsF metrics(font);
    const bool isRight = flags & Qt::AlignRight;
    const bool isMiddle = flags & Qt::AlignHCenter;
    const double x = isRight ? rect.right() : isMiddle ? rect.center().x() : rect.left();
    double baseline = rect.top() + metrics.ascent();
    if (flags & Qt::AlignVCenter)
        baseline += (rect.height() - metrics.height()) / 2;
    else if (flags & Qt::AlignBottom)
        baseline += rect.height() - metrics.height();
    m_body += "<text" + attribute("x", number(x)) + attribute("y", number(baseline)) +
              attribute("font-family", font.family().toHtmlEscaped().toUtf8()) +
              attribute("font-size", number(QFontInfo(font).pixelSize())) + colorOf("fill", color);
    if (isRight || isMiddle)
        m_body += attribute("text-anchor", isRight ? "end" : "middle");
    if (font.bold())
        m_body += attribute("font-weight", "bold");
    m_body += '>' + text.toHtmlEscaped().toUtf8() + "</text>\n";
}

void SvgDrawingContext::image(const QRectF& target, const QImage& image) {
    if (image.isNull())
        return;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    m_body += "<image" + placeOf(target) + attribute("preserveAspectRatio", "none") +
              attribute("xlink:href", "data:image/png;base64," + bytes.toBase64()) + "/>\n";
}

void SvgDrawingContext::intensity(const QRectF& target, const IntensityGrid& grid,
                                  const ToneCurve& tone, const QColor& color) {
    if (!grid.isEmpty())
        image(target, lightOf(grid, tone, color));
}

void SvgDrawingContext::points(const QRectF& viewport, const QMatrix4x4& view,
                               const CloudPoint* points, int count) {
    if (points && count > 0)
        image(viewport, rasterizeCloud(viewport.size().toSize(), 1, view, points, count));
}

void SvgDrawingContext::setClip(const QRectF& rect) {
    if (m_isClipped)
        m_body += "</g>\n";
    m_isClipped = !rect.isEmpty();
    if (!m_isClipped)
        return;
    const QByteArray name = "clip" + QByteArray::number(++m_clips);
    m_body += "<clipPath" + attribute("id", name) + "><rect" + placeOf(rect) + "/></clipPath>\n<g" +
              attribute("clip-path", "url(#" + name + ')') + ">\n";
}

} // namespace Kestrel::UI
