#include <KxUI/draw/DrawingContext.h>

namespace Kestrel::UI {

DrawingContext::DrawingContext() = default;
DrawingContext::~DrawingContext() = default;

void DrawingContext::fill(const QRectF& rect, const QColor& color) {
    rectangles(&rect, 1, color);
}

void DrawingContext::line(const QPointF& from, const QPointF& to, const LineStroke& stroke) {
    const QLineF line(from, to);
    lines(&line, 1, stroke);
}

} // namespace Kestrel::UI
