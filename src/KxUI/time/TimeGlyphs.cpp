#include <KxUI/time/TimeGlyphs_p.h>

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cstring>

namespace Kestrel::UI {
namespace {

// Consecutive in ASCII from '0' to ';', then the signs.
constexpr char16_t characters[] = u"0123456789:;-+";

// Labels, marks, keyframes and the two strengths of the playhead; more than a slider shows at once.
constexpr std::size_t mostTints = 8;

} // namespace

int TimeGlyphs::indexOf(QChar character) {
    const char16_t code = character.unicode();
    if (code >= u'0' && code <= u';')
        return code - u'0';
    return code == u'-' ? 12 : code == u'+' ? 13 : -1;
}

void TimeGlyphs::prepare(const QFont& font, int pixelSize, qreal scale) {
    if (m_scale == scale && m_font == font)
        return;
    m_font = font;
    m_scale = scale;
    m_tints.clear();

    QFont deviceFont = font;
    deviceFont.setStyleStrategy(QFont::PreferDefault);
    deviceFont.setPixelSize(std::max(qRound(pixelSize * scale), 1));
    const QFontMetrics metrics(deviceFont);
    const QRect bounds = metrics.tightBoundingRect(QString::fromUtf16(characters));
    m_top = bounds.top() - 1; // hinting may reach a pixel beyond what the metrics say
    m_left[0] = 0;
    for (std::size_t i = 0; i < Count; ++i)
        m_left[i + 1] = m_left[i] + std::max(metrics.horizontalAdvance(QChar(characters[i])), 1);

    m_coverage = QImage(m_left[Count], bounds.height() + 2, QImage::Format_ARGB32_Premultiplied);
    m_coverage.fill(Qt::transparent);
    QPainter painter(&m_coverage);
    painter.setFont(deviceFont);
    painter.setPen(Qt::white);
    for (std::size_t i = 0; i < Count; ++i)
        painter.drawText(m_left[i], -m_top, QString(QChar(characters[i])));
}

int TimeGlyphs::width(const QString& text) const {
    int width = 0;
    for (const QChar character : text) {
        const int index = indexOf(character);
        if (index >= 0)
            width += m_left[static_cast<std::size_t>(index) + 1] -
                     m_left[static_cast<std::size_t>(index)];
    }
    return width;
}

const QImage& TimeGlyphs::tinted(QRgb color) {
    const auto known = std::find_if(m_tints.begin(), m_tints.end(),
                                    [&](const Tint& tint) { return tint.color == color; });
    if (known != m_tints.end())
        return known->glyphs;
    if (m_tints.size() == mostTints)
        m_tints.erase(m_tints.begin());
    QImage glyphs = m_coverage;
    QPainter painter(&glyphs);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(glyphs.rect(), QColor::fromRgba(color));
    painter.end();
    m_tints.push_back({color, glyphs});
    return m_tints.back().glyphs;
}

void TimeGlyphs::draw(QPainter& painter, int x, int baseline, const QString& text,
                      const QColor& color) {
    const int height = m_coverage.height();
    const int textWidth = width(text);
    if (textWidth == 0)
        return;
    if (m_line.width() < textWidth || m_line.height() != height)
        m_line = QImage(textWidth, height, QImage::Format_ARGB32_Premultiplied);

    const QImage& glyphs = tinted(color.rgba());
    const auto sourceStride = static_cast<std::size_t>(glyphs.bytesPerLine());
    const auto stride = static_cast<std::size_t>(m_line.bytesPerLine());
    uchar* target = m_line.bits();
    for (const QChar character : text) {
        const int index = indexOf(character);
        if (index < 0)
            continue;
        const auto left = static_cast<std::size_t>(m_left[static_cast<std::size_t>(index)]);
        const auto end = static_cast<std::size_t>(m_left[static_cast<std::size_t>(index) + 1]);
        const std::size_t bytes = (end - left) * sizeof(QRgb);
        const uchar* source = glyphs.constBits() + left * sizeof(QRgb);
        for (int row = 0; row < height; ++row)
            std::memcpy(target + static_cast<std::size_t>(row) * stride,
                        source + static_cast<std::size_t>(row) * sourceStride, bytes);
        target += bytes;
    }
    painter.drawImage(QPoint(x, baseline + m_top), m_line, QRect(0, 0, textWidth, height));
}

} // namespace Kestrel::UI
