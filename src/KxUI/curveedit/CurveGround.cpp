#include <KxUI/curveedit/CurveGround_p.h>

#include <KxUI/kit/Crisp_p.h>
#include <KxUI/kit/QtCompat_p.h>

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QPolygonF>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double MajorInk = 0.16;
constexpr double MinorInk = 0.07;
constexpr double FrameInk = 0.3;
constexpr double LabelInk = 0.62;
constexpr double HistogramInk = 0.22;
constexpr double LabelGap = 3.0;
// Smaller plots have no room for numbers.
constexpr double LeastWidth = 150.0;
constexpr double LeastHeight = 90.0;

class GroundPainter {
public:
    GroundPainter(QPainter& painter, const CurveGround::Key& key)
        : m_painter(painter)
        , m_key(key)
        , m_plot(key.plot.rect())
        , m_ink(key.ink) {}

    void paint(const QVector<CurveHistogram>& histogram) {
        paintHistogram(histogram);
        paintGrid();
        paintIdentity();
        if (m_plot.width() >= LeastWidth && m_plot.height() >= LeastHeight)
            paintLabels();
        if (m_key.focus.isValid())
            paintFocus();
    }

private:
    void paintHistogram(const QVector<CurveHistogram>& channels) {
        std::uint32_t most = 0;
        for (const CurveHistogram& channel : channels)
            most = std::max(most, *std::max_element(channel.counts.begin(), channel.counts.end()));
        if (most == 0)
            return;
        m_painter.save();
        m_painter.setClipRect(m_plot);
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.setPen(Qt::NoPen);
        for (const CurveHistogram& channel : channels) {
            m_painter.setBrush(
                faint(channel.color.isValid() ? channel.color : m_ink, HistogramInk));
            m_painter.drawPolygon(outline(channel, most));
        }
        m_painter.restore();
    }

    // By square roots, so that the few pixels of the shadows are seen beside those of a wall.
    QPolygonF outline(const CurveHistogram& channel, std::uint32_t most) const {
        QPolygonF outline;
        outline.reserve(2 * CurveHistogram::Bins + 2);
        const auto edge = [&](int bin) {
            return m_key.plot.toX(channel.from +
                                  (channel.to - channel.from) * bin / CurveHistogram::Bins);
        };
        outline.append({edge(0), m_plot.bottom()});
        for (int bin = 0; bin < CurveHistogram::Bins; ++bin) {
            const double part = std::sqrt(double(channel.counts[std::size_t(bin)]) / most);
            const double y = m_plot.bottom() - part * m_plot.height();
            outline.append({edge(bin), y});
            outline.append({edge(bin + 1), y});
        }
        outline.append({edge(CurveHistogram::Bins), m_plot.bottom()});
        return outline;
    }

    void paintGrid() {
        const double ratio = m_key.ratio;
        for (const CurveGridLine& line : m_key.grid.x) {
            m_painter.setPen(pen(line.major ? MajorInk : MinorInk));
            const double x = crisp(line.at, ratio);
            m_painter.drawLine(QPointF(x, m_plot.top()), QPointF(x, m_plot.bottom()));
        }
        for (const CurveGridLine& line : m_key.grid.y) {
            m_painter.setPen(pen(line.major ? MajorInk : MinorInk));
            const double y = crisp(line.at, ratio);
            m_painter.drawLine(QPointF(m_plot.left(), y), QPointF(m_plot.right(), y));
        }
        m_painter.setPen(pen(FrameInk));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawRect(
            QRectF(QPointF(crisp(m_plot.left(), ratio), crisp(m_plot.top(), ratio)),
                   QPointF(crisp(m_plot.right(), ratio), crisp(m_plot.bottom(), ratio))));
    }

    // A curve on scales that differ, so by points.
    void paintIdentity() {
        if (!m_key.grid.identity)
            return;
        constexpr int Steps = 64;
        QPolygonF line;
        for (int i = 0; i <= Steps; ++i) {
            const double x = m_key.plot.xAt(m_plot.left() + m_plot.width() * i / Steps);
            line.append({m_key.plot.toX(x), m_key.plot.toY(x)});
        }
        m_painter.save();
        m_painter.setClipRect(m_plot);
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.setPen(QPen(faint(m_ink, FrameInk), 1.0, Qt::DashLine));
        m_painter.drawPolyline(line);
        m_painter.restore();
    }

    // Inside of the plot, so that what is seen of the curves is the same with and without.
    void paintLabels() {
        QFont font = m_key.font;
        font.setPointSizeF(QFontInfo(font).pointSizeF() * 0.8);
        m_painter.setFont(font);
        m_painter.setPen(faint(m_ink, LabelInk));
        const QFontMetricsF metrics(font);
        double taken = m_plot.left();
        for (const CurveGridLine& line : m_key.grid.x) {
            const double width = metrics.horizontalAdvance(line.label);
            const double left = line.at + LabelGap;
            if (line.label.isEmpty() || left < taken || left + width > m_plot.right() - LabelGap)
                continue;
            m_painter.drawText(QPointF(left, m_plot.bottom() - LabelGap), line.label);
            taken = left + width + 2.0 * LabelGap;
        }
        double free = m_plot.bottom() - metrics.height() - LabelGap;
        for (const CurveGridLine& line : m_key.grid.y) {
            const double baseline = line.at - LabelGap;
            if (line.label.isEmpty() || baseline > free ||
                baseline - metrics.ascent() < m_plot.top())
                continue;
            m_painter.drawText(QPointF(m_plot.left() + LabelGap, baseline), line.label);
            free = baseline - metrics.height();
        }
    }

    void paintFocus() {
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.setPen(QPen(m_key.focus, 1.5));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawRoundedRect(
            QRectF(QPointF(), QSizeF(m_key.size)).adjusted(0.75, 0.75, -0.75, -0.75), 3.0, 3.0);
    }

    QPen pen(double alpha) const { return QPen(faint(m_ink, alpha), 1.0 / m_key.ratio); }

    QPainter& m_painter;
    const CurveGround::Key& m_key;
    const QRectF m_plot;
    const QColor m_ink;
};

} // namespace

QColor faint(QColor color, double alpha) {
    color.setAlphaF(static_cast<ColorPart>(alpha));
    return color;
}

const QImage& CurveGround::picture(const Key& key, const QVector<CurveHistogram>& histogram) {
    if (!m_picture.isNull() && isSame(key, m_key))
        return m_picture;
    m_key = key;
    const QSize pixels(qCeil(key.size.width() * key.ratio), qCeil(key.size.height() * key.ratio));
    m_picture = QImage(pixels, QImage::Format_RGB32);
    m_picture.setDevicePixelRatio(key.ratio);
    m_picture.fill(key.base);
    QPainter painter(&m_picture);
    GroundPainter(painter, m_key).paint(histogram);
    return m_picture;
}

bool CurveGround::isSame(const Key& a, const Key& b) {
    return a.size == b.size && a.ratio == b.ratio && a.plot == b.plot && a.grid == b.grid &&
           a.histogram == b.histogram && a.font == b.font && a.base == b.base && a.ink == b.ink &&
           a.focus == b.focus;
}

} // namespace Kestrel::UI
