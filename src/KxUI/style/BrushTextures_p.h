#pragma once

#include <KxUI/style/StyleElements_p.h>
#include <KxUI/style/TextureTable_p.h>

#include <QPixmap>
#include <QTransform>

class QPainter;

namespace Kestrel::UI {

/** Whether pictures come out as they are, as on a screen; not so on printers. */
bool copiesPixels(const QPainter* painter);

/** A painter for as long as it draws in the pixels of its device. Where it can not, being rotated
    or printing, it stays as it is and isExact() is false. */
class PixelSpace {
public:
    explicit PixelSpace(QPainter* painter);
    ~PixelSpace();
    PixelSpace(const PixelSpace&) = delete;
    PixelSpace& operator=(const PixelSpace&) = delete;

    QPainter* painter() const { return m_painter; }
    bool isExact() const { return m_isExact; }
    /** Pixels of the device a logical pixel; 1 where it is not exact. */
    double ratio() const { return m_ratio; }
    /** The pixels that a logical rectangle covers, its edges rounded. */
    QRect toPixels(const QRectF& logical) const;

private:
    QPainter* m_painter;
    QTransform m_world;
    double m_ratio = 1;
    double m_x = 0;
    double m_y = 0;
    bool m_isExact = false;
    bool m_isChanged = false;
    bool m_hadWorld = false;
};

/** The textures of the style: small pictures of bevels and marks that are drawn once and then
    copied to where they are needed. Interface thread. */
class BrushTextures {
public:
    static constexpr std::int64_t StandardLimit = 8 << 20; // bytes

    BrushTextures();

    /** Draws an element. `area` is in logical pixels. */
    void drawBevel(const PixelSpace& space, StyleElement element, const QRectF& area,
                   unsigned state, unsigned edges, const Shades& shades);

    /** Draws a mark in the largest square in the middle of `area`. */
    void drawMark(const PixelSpace& space, StyleMark mark, const QRectF& area, QRgb color);

    /** Forgets all textures. */
    void clear() { m_table.clear(); }
    void setLimit(std::int64_t bytes) { m_table.setLimit(bytes); }

    std::int64_t hits() const { return m_hits; }
    std::int64_t misses() const { return m_misses; }
    std::int64_t bytes() const { return m_table.bytes(); }

private:
    struct Texture {
        QPixmap pixmap;
        TextureShape shape;
        Bevel bevel;
    };

    const Texture& bevelTexture(const TextureKey& key, const Shades& shades, double ratio);
    const Texture& markTexture(const TextureKey& key, QRgb color);

    TextureTable<Texture> m_table;
    std::int64_t m_hits = 0;
    std::int64_t m_misses = 0;
};

/** Draws a bevel by paths, hairlines `pixel` wide, within `area`. */
void paintBevel(QPainter* painter, const QRectF& area, const Bevel& bevel, unsigned edges,
                double radius, const QBrush& fill);

/** A fill from one colour at the top to another one at the bottom, dithered by half a code: there
    are fewer codes between dark greys than rows in a button. Repeats every 8 pixels. */
QImage ditheredFill(QRgb top, QRgb bottom, const QSize& size);

} // namespace Kestrel::UI
