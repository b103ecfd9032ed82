#include <KxUI/draw/RasterLayer_p.h>

#include <QPainter>

#include <utility>

namespace Kestrel::UI {

void RasterLayer::clear() {
    m_key.clear();
    m_calls.clear();
}

void RasterLayer::add(const QByteArray& key, std::function<void(DrawingContext&)> call) {
    m_key += key;
    m_calls.push_back(std::move(call));
}

QImage RasterLayer::toImage(const QSizeF& size, const QSize& pixels, qreal ratio) const {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    PainterDrawingContext context(painter, size, ratio);
    for (const auto& call : m_calls)
        call(context);
    return image;
}

} // namespace Kestrel::UI
