#include <KxUI/style/BrushTextures_p.h>

#include <QImage>
#include <QLinearGradient>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int MarkElement = StyleElementCount; // marks follow the elements in keys
constexpr double MostRatio = 16;

bool isWhole(double value) {
    return value == std::floor(value);
}

int rounded(double value) {
    return int(std::floor(value + 0.5));
}

// Order of the thresholds of an ordered dither (Bayer, 1973), 0 to 63.
int ditherRank(int x, int y) {
    int rank = 0;
    for (int bit = 0; bit < 3; ++bit) {
        const int a = (x >> bit) & 1;
        const int b = (y >> bit) & 1;
        rank = rank << 2 | (a ^ b) << 1 | b;
    }
    return rank;
}

} // namespace

bool copiesPixels(const QPainter* painter) {
    const QPaintEngine* engine = painter->paintEngine();
    return engine &&
           (engine->type() == QPaintEngine::Raster || engine->type() == QPaintEngine::OpenGL2);
}

PixelSpace::PixelSpace(QPainter* painter)
    : m_painter(painter) {
    if (!copiesPixels(painter))
        return;
    const QTransform& device = painter->deviceTransform();
    if (device.type() > QTransform::TxScale || device.m11() != device.m22() || device.m11() <= 0 ||
        device.m11() > MostRatio)
        return;
    m_isExact = true;
    m_ratio = device.m11();
    if (m_ratio == 1 && isWhole(device.dx()) && isWhole(device.dy()))
        return;
    m_x = device.dx();
    m_y = device.dy();
    m_world = painter->worldTransform();
    m_hadWorld = painter->worldMatrixEnabled();
    m_isChanged = true;
    const QTransform inverse = device.inverted();
    painter->setWorldTransform(m_hadWorld ? inverse * m_world : inverse);
}

PixelSpace::~PixelSpace() {
    if (!m_isChanged)
        return;
    m_painter->setWorldTransform(m_world);
    m_painter->setWorldMatrixEnabled(m_hadWorld);
}

QRect PixelSpace::toPixels(const QRectF& logical) const {
    const int left = rounded(logical.left() * m_ratio + m_x);
    const int top = rounded(logical.top() * m_ratio + m_y);
    return {left, top, rounded(logical.right() * m_ratio + m_x) - left,
            rounded(logical.bottom() * m_ratio + m_y) - top};
}

QImage ditheredFill(QRgb top, QRgb bottom, const QSize& size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    const double last = std::max(1, size.height() - 1);
    for (int y = 0; y < size.height(); ++y) {
        const double part = y / last;
        const auto between = [part](int from, int to) { return from + (to - from) * part; };
        const double red = between(qRed(top), qRed(bottom));
        const double green = between(qGreen(top), qGreen(bottom));
        const double blue = between(qBlue(top), qBlue(bottom));
        auto* pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const double threshold = (ditherRank(x & 7, y & 7) + 0.5) / 64;
            // One threshold for all three, so that a grey stays a grey.
            const auto code = [threshold](double value) { return int(value + threshold); };
            pixels[x] = qRgb(code(red), code(green), code(blue));
        }
    }
    return image;
}

void paintBevel(QPainter* painter, const QRectF& area, const Bevel& bevel, unsigned edges,
                double radius, const QBrush& fill) {
    // A side that joins a neighbour lies outside of what is shown.
    const double beyond = radius + 2;
    const QRectF shape =
        area.adjusted((edges & JoinLeft) ? -beyond : 0, (edges & JoinTop) ? -beyond : 0,
                      (edges & JoinRight) ? beyond : 0, (edges & JoinBottom) ? beyond : 0);
    const auto inset = [&](double by) {
        QPainterPath path;
        const double corner = std::max(0.0, radius - by);
        path.addRoundedRect(shape.adjusted(by, by, -by, -by), corner, corner);
        return path;
    };
    painter->setRenderHint(QPainter::Antialiasing);
    if (qAlpha(bevel.top) != 0) {
        // Half a pixel within the outline, which covers its edge.
        painter->fillPath(inset(qAlpha(bevel.outline) ? 0.5 : 0), fill);
    }
    const auto line = [&](double by, QRgb color) {
        if (qAlpha(color) != 0)
            painter->strokePath(inset(by), QPen(QColor::fromRgba(color), 1));
    };
    line(1.5, bevel.inner);
    line(0.5, bevel.outline);
}

BrushTextures::BrushTextures()
    : m_table(StandardLimit) {}

const BrushTextures::Texture& BrushTextures::bevelTexture(const TextureKey& key,
                                                          const Shades& shades, double ratio) {
    if (const Texture* known = m_table.find(key)) {
        ++m_hits;
        return *known;
    }
    ++m_misses;
    const auto element = static_cast<StyleElement>(key.element);
    Texture texture;
    texture.bevel = bevelOf(element, key.state, shades);
    texture.shape = textureShape(element, texture.bevel, key.extent, ratio);
    Bevel& bevel = texture.bevel;
    if (key.extent == 0 && !bevel.isFlat())
        bevel.top = bevel.bottom = mixedShade(bevel.top, bevel.bottom, 0.5);
    const QSize size = texture.shape.size();
    const double radius = key.extent > 0 ? std::min(bevel.radius * ratio, key.extent / 2.0)
                                         : frameRadius(bevel) * ratio;
    const bool isUpright = key.state & StateUpright;
    const QSize shown = isUpright ? size.transposed() : size;
    const QBrush fill = bevel.isFlat() ? QBrush(QColor::fromRgba(bevel.top))
                                       : QBrush(ditheredFill(bevel.top, bevel.bottom, shown));
    QImage image(shown, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintBevel(&painter, QRectF(QPointF(), shown), bevel, key.edges, radius, fill);
    painter.end();
    texture.pixmap = QPixmap::fromImage(std::move(image), Qt::NoOpaqueDetection);
    const std::int64_t bytes = std::int64_t(shown.width()) * shown.height() * 4;
    return m_table.insert(key, std::move(texture), bytes);
}

const BrushTextures::Texture& BrushTextures::markTexture(const TextureKey& key, QRgb color) {
    if (const Texture* known = m_table.find(key)) {
        ++m_hits;
        return *known;
    }
    ++m_misses;
    const int side = key.extent;
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side, side);
    painter.fillPath(markPath(static_cast<StyleMark>(key.element - MarkElement)),
                     QColor::fromRgba(color));
    painter.end();
    Texture texture;
    texture.pixmap = QPixmap::fromImage(std::move(image), Qt::NoOpaqueDetection);
    return m_table.insert(key, std::move(texture), std::int64_t(side) * side * 4);
}

void BrushTextures::drawBevel(const PixelSpace& space, StyleElement element, const QRectF& area,
                              unsigned state, unsigned edges, const Shades& shades) {
    QPainter* painter = space.painter();
    if (area.width() <= 0 || area.height() <= 0)
        return;
    if (!space.isExact()) {
        const Bevel bevel = bevelOf(element, state, shades);
        QLinearGradient fill(area.topLeft(), area.bottomLeft());
        fill.setColorAt(0, QColor::fromRgba(bevel.top));
        fill.setColorAt(1, QColor::fromRgba(bevel.bottom));
        painter->save();
        painter->setClipRect(area, Qt::IntersectClip);
        paintBevel(painter, area, bevel, edges,
                   std::min(bevel.radius, std::min(area.width(), area.height()) / 2), fill);
        painter->restore();
        return;
    }
    const QRect target = space.toPixels(area);
    const bool isUpright = state & StateUpright;
    TextureKey key;
    key.element = static_cast<std::uint8_t>(element);
    key.edges = static_cast<std::uint8_t>(edges);
    key.state = static_cast<std::uint16_t>(state);
    key.extent = static_cast<std::uint16_t>(
        textureExtent(element, isUpright ? target.width() : target.height(), space.ratio()));
    key.ratio64 = static_cast<std::uint16_t>(rounded(space.ratio() * 64));
    key.colors = shades.id;
    const Texture& texture = bevelTexture(key, shades, space.ratio());
    const ElementPlan plan = planOf(target, texture.shape, texture.bevel, edges, isUpright);
    for (int i = 0; i < plan.lineCount; ++i) {
        const StyleLine& line = plan.lines[std::size_t(i)];
        painter->fillRect(line.target, QColor::fromRgba(line.color));
    }
    for (int i = 0; i < plan.sliceCount; ++i) {
        const TextureSlice& slice = plan.slices[std::size_t(i)];
        painter->drawPixmap(slice.target, texture.pixmap, slice.source);
    }
}

void BrushTextures::drawMark(const PixelSpace& space, StyleMark mark, const QRectF& area,
                             QRgb color) {
    const double side = std::min(area.width(), area.height());
    if (side <= 0)
        return;
    const QRectF square(area.center() - QPointF(side, side) / 2, QSizeF(side, side));
    QPainter* painter = space.painter();
    if (!space.isExact()) {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(square.topLeft());
        painter->scale(side, side);
        painter->fillPath(markPath(mark), QColor::fromRgba(color));
        painter->restore();
        return;
    }
    const QRect target = space.toPixels(square);
    TextureKey key;
    key.element = static_cast<std::uint8_t>(MarkElement + int(mark));
    key.extent = static_cast<std::uint16_t>(std::clamp(target.width(), 1, 256));
    key.colors = color;
    const Texture& texture = markTexture(key, color);
    painter->drawPixmap(QRect(target.topLeft(), QSize(key.extent, key.extent)), texture.pixmap,
                        texture.pixmap.rect());
}

} // namespace Kestrel::UI
