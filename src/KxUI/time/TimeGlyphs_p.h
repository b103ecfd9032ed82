#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QString>

#include <array>
#include <vector>

class QPainter;

namespace Kestrel::UI {

/** Paints the texts of times. Their few characters are rendered once per font, scale and colour and
    then only copied, which makes a label several times cheaper than laying out its text. All
    coordinates and sizes are device pixels, so the glyphs are never resampled. */
class TimeGlyphs {
public:
    /** Gets ready for a font of `pixelSize` logical pixels at `scale` device pixels each. */
    void prepare(const QFont& font, int pixelSize, qreal scale);

    /** Width of a text; a character that times do not use takes no room. */
    int width(const QString& text) const;

    /** Rows that glyphs may occupy, measured from the baseline down. */
    int top() const { return m_top; }
    int bottom() const { return m_top + m_coverage.height(); }

    /** Paints with the left end of the baseline at (x, baseline). */
    void draw(QPainter& painter, int x, int baseline, const QString& text, const QColor& color);

private:
    static constexpr int Count = 14;

    struct Tint {
        QRgb color;
        QImage glyphs;
    };

    static int indexOf(QChar character);
    const QImage& tinted(QRgb color);

    QFont m_font;
    qreal m_scale = 0;
    int m_top = 0;
    std::array<int, Count + 1> m_left = {}; ///< of each glyph's cell, and the end of the last
    QImage m_coverage;
    std::vector<Tint> m_tints;
    QImage m_line; ///< the text being painted
};

} // namespace Kestrel::UI
