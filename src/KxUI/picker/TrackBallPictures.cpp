#include <KxUI/picker/TrackBallPictures_p.h>

#include <KxUI/color/ColorConversions.h>
#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>
#include <KxUI/kit/QtCompat_p.h>

#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double Turn = 2.0 * M_PI;
constexpr double RimPart = 0.045; // of the radius, where the colours are full
constexpr double NarrowRim = 2.0; // pixels
constexpr double BetweenKnurls = 6.0;

double smooth(double from, double to, double x) {
    const double t = std::clamp((x - from) / (to - from), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<ColorPart>(alpha));
    return color;
}

using Rgb = std::array<double, 3>;

// The hue that lies in a direction, in turns counterclockwise from the right.
Rgb hueOf(double turns, double rotation) {
    const double hue = turns - rotation / Turn;
    std::array<float, 3> rgb{};
    hsvToRgb(static_cast<float>(hue - std::floor(hue)), 1.0F, 1.0F, rgb[0], rgb[1], rgb[2]);
    return {static_cast<double>(rgb[0]), static_cast<double>(rgb[1]), static_cast<double>(rgb[2])};
}

// The hues all around, since each pixel wants one.
class Hues {
public:
    explicit Hues(double rotation) {
        for (std::size_t i = 0; i < Count; ++i)
            m_hues[i] = hueOf(static_cast<double>(i) / Count, rotation);
    }
    const Rgb& at(double x, double y) const {
        const double turns = std::atan2(y, x) / Turn;
        return m_hues[static_cast<std::size_t>((turns + 1.0) * Count) % Count];
    }

private:
    static constexpr std::size_t Count = 1536;
    std::array<Rgb, Count> m_hues;
};

// How the ball takes the light. In units of its radius, y upwards.
class Surface {
public:
    Surface(const TrackBallColors& colors, double rotation, double radius)
        : m_hues(rotation)
        , m_dark(colors.isDark())
        , m_rim(std::max(RimPart, NarrowRim / radius)) {}

    Rgb at(double x, double y) const {
        const double radius = std::min(std::hypot(x, y), 1.0);
        const double height = std::sqrt(1.0 - radius * radius);
        const double light = std::max(0.0, -0.34 * x + 0.54 * y + 0.77 * height);
        const double rim = smooth(1.0 - m_rim * 1.4, 1.0 - m_rim, radius);
        const double hue = 0.62 * smooth(0.08, 1.0, radius) * (1.0 - rim) + rim;
        const double grey = m_dark ? 0.12 + 0.18 * light : 0.70 + 0.26 * light;
        const double shade =
            m_dark ? (0.42 + 0.28 * light) * (1.0 - rim) + 0.84 * rim : 0.82 + 0.16 * light;
        const double white = m_dark ? 0.06 : 0.30 - 0.18 * rim;
        Rgb color{};
        const Rgb& pure = m_hues.at(x, y);
        for (std::size_t i = 0; i < color.size(); ++i) {
            const double tint = shade * (white + (1.0 - white) * pure[i]);
            color[i] = grey + (tint - grey) * hue;
        }
        return color;
    }

private:
    Hues m_hues;
    bool m_dark;
    double m_rim;
};

QRgb packed(const Rgb& color, double alpha) {
    const auto code = [alpha](double x) {
        return static_cast<int>(std::clamp(x, 0.0, 1.0) * alpha * 255.0 + 0.5);
    };
    return qRgba(code(color[0]), code(color[1]), code(color[2]), code(1.0));
}

void paintBall(QImage& image, const TrackBallGeometry& geometry, double rotation, double ratio,
               const TrackBallColors& colors) {
    const Surface surface(colors, rotation, geometry.ball);
    const QPointF centre = geometry.centre * ratio;
    const double radius = geometry.ball * ratio;
    const QRect box = QRectF(centre.x() - radius, centre.y() - radius, 2.0 * radius, 2.0 * radius)
                          .adjusted(-1.0, -1.0, 1.0, 1.0)
                          .toAlignedRect() &
                      image.rect();
    for (int row = box.top(); row <= box.bottom(); ++row) {
        auto* pixels = reinterpret_cast<QRgb*>(image.scanLine(row));
        const double y = centre.y() - (row + 0.5);
        for (int column = box.left(); column <= box.right(); ++column) {
            const double x = column + 0.5 - centre.x();
            const double covered = std::clamp(radius + 0.5 - std::hypot(x, y), 0.0, 1.0);
            if (covered > 0.0)
                pixels[column] = packed(surface.at(x / radius, y / radius), covered);
        }
    }
}

void paintCross(QPainter& painter, const TrackBallGeometry& geometry, double ratio,
                const TrackBallColors& colors) {
    const QColor line = withAlpha(colors.isDark() ? QColor(Qt::white) : QColor(Qt::black), 0.20);
    const double far = geometry.reach();
    const double near = 4.0;
    painter.setPen(QPen(line, 1.0));
    painter.setBrush(Qt::NoBrush);
    const QPointF middle(crisp(geometry.centre.x(), ratio), crisp(geometry.centre.y(), ratio));
    for (const QPointF& way : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)})
        painter.drawLine(middle + way * near, middle + way * far);
    painter.drawEllipse(geometry.centre, near, near);
    if (far >= 36.0)
        painter.drawEllipse(geometry.centre, far / 2.0, far / 2.0);
}

void paintGroove(QPainter& painter, const TrackBallGeometry& geometry,
                 const TrackBallColors& colors) {
    const double middle = geometry.ringMiddle();
    const double width = geometry.ringOuter - geometry.ringInner;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(mixed(colors.window, colors.text, 0.13), width));
    painter.drawEllipse(geometry.centre, middle, middle);
    // Knurled, as what is turned by a finger is.
    painter.setPen(QPen(mixed(colors.window, colors.text, 0.26), 1.0));
    const int knurls = std::max(4, qRound(Turn * middle / BetweenKnurls));
    for (int i = 0; i < knurls; ++i) {
        const double angle = Turn * i / knurls;
        painter.drawLine(geometry.onRing(angle, geometry.ringInner + width * 0.28),
                         geometry.onRing(angle, geometry.ringOuter - width * 0.28));
    }
    painter.setPen(QPen(mixed(colors.window, colors.text, 0.34), 1.0));
    painter.drawEllipse(geometry.centre, geometry.ringOuter, geometry.ringOuter);
    painter.drawEllipse(geometry.centre, geometry.ringInner, geometry.ringInner);
}

} // namespace

TrackBallColors TrackBallColors::of(const QPalette& palette) {
    const QColor window = palette.color(QPalette::Window);
    return {window, palette.color(QPalette::WindowText), visibleHighlight(palette, window)};
}

bool TrackBallColors::isDark() const {
    return brightness(text) > brightness(window);
}

bool operator==(const TrackBallColors& a, const TrackBallColors& b) {
    return a.window == b.window && a.text == b.text && a.mark == b.mark;
}

QImage drawTrackBall(const TrackBallGeometry& geometry, double rotation, const QSize& size,
                     double deviceRatio, const TrackBallColors& colors) {
    const QSizeF pixels = QSizeF(size) * deviceRatio;
    QImage image(static_cast<int>(std::ceil(pixels.width())),
                 static_cast<int>(std::ceil(pixels.height())), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    paintBall(image, geometry, rotation, deviceRatio, colors);
    image.setDevicePixelRatio(deviceRatio);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGroove(painter, geometry, colors);
    paintCross(painter, geometry, deviceRatio, colors);
    painter.setPen(QPen(withAlpha(colors.isDark() ? Qt::black : colors.text, 0.45), 1.0));
    painter.drawEllipse(geometry.centre, geometry.ball, geometry.ball);
    return image;
}

QColor trackBallTint(const QPointF& balance, double rotation, const TrackBallColors& colors) {
    const Rgb pure = hueOf(std::atan2(balance.y(), balance.x()) / Turn, rotation);
    const double away = std::min(std::hypot(balance.x(), balance.y()), 1.0);
    const double hue = std::sqrt(away);
    const double grey = colors.isDark() ? 0.55 : 0.80;
    Rgb color{};
    for (std::size_t i = 0; i < color.size(); ++i)
        color[i] = grey + (pure[i] - grey) * hue;
    return QColor::fromRgb(packed(color, 1.0));
}

const QImage& TrackBallPictures::ball(const TrackBallGeometry& geometry, double rotation,
                                      const QSize& size, double deviceRatio,
                                      const TrackBallColors& colors) {
    const bool isSame = geometry == m_geometry && rotation == m_rotation && size == m_size &&
                        deviceRatio == m_ratio && colors == m_colors;
    if (m_ball.isNull() || !isSame) {
        m_ball = drawTrackBall(geometry, rotation, size, deviceRatio, colors);
        m_geometry = geometry;
        m_rotation = rotation;
        m_size = size;
        m_ratio = deviceRatio;
        m_colors = colors;
    }
    return m_ball;
}

} // namespace Kestrel::UI
