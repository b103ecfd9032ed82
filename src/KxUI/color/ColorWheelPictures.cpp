#include <KxUI/color/ColorWheelPictures_p.h>

#include <KxUI/color/ColorConversions.h>

#include <QtMath>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace Kestrel::UI {
namespace {

struct Rgb {
    float red;
    float green;
    float blue;
};
static_assert(sizeof(Rgb) == 3 * sizeof(float), "transforms see rows of it as rows of floats");

Rgb rgbOf(const Hsv& color) {
    Rgb rgb{};
    hsvToRgb(color.hue, color.saturation, color.value, rgb.red, rgb.green, rgb.blue);
    return rgb;
}

// The hues at full saturation. They are linear between sixths of a turn, so that no pixel of eight
// bits misses those in between.
class PureHues {
public:
    static const PureHues& table() {
        static const PureHues hues;
        return hues;
    }

    const Rgb& at(float hue) const {
        return m_colors[static_cast<std::size_t>(hue * static_cast<float>(Count) + 0.5F)];
    }

private:
    static constexpr std::size_t Count = 6 * 512;

    PureHues() {
        for (std::size_t i = 0; i <= Count; ++i)
            m_colors[i] = rgbOf({static_cast<float>(i) / static_cast<float>(Count), 1.0F, 1.0F});
    }

    std::array<Rgb, Count + 1> m_colors; // the last one is the first one again
};

// The angle of a point in turns, 0-1, to 2e-6 turns.
// Abramowitz and Stegun, Handbook of Mathematical Functions, 4.4.47.
inline float turnOf(float x, float y) {
    constexpr float Turn = 6.28318531F;
    const float across = std::fabs(x);
    const float up = std::fabs(y);
    const float t = std::min(across, up) / (std::max(across, up) + 1e-30F);
    const float s = t * t;
    float turn =
        t * (0.9998660F / Turn +
             s * (-0.3302995F / Turn +
                  s * (0.1801410F / Turn + s * (-0.0851330F / Turn + s * (0.0208351F / Turn)))));
    turn = up > across ? 0.25F - turn : turn;
    turn = x < 0.0F ? 0.5F - turn : turn;
    return y < 0.0F ? 1.0F - turn : turn;
}

float clamped(float x) {
    return x > 0.0F ? std::min(x, 1.0F) : 0.0F;
}

QRgb packed(const float* rgb, float alpha) {
    const float scale = 255.0F * alpha;
    const auto code = [scale](float x) { return static_cast<int>(clamped(x) * scale + 0.5F); };
    return qRgba(code(rgb[0]), code(rgb[1]), code(rgb[2]), static_cast<int>(scale + 0.5F));
}

// The part of `shape` that the widget can show, in pixels of the device.
QRect visiblePixels(const QRectF& shape, const QSizeF& size, double deviceRatio) {
    const QRectF visible = shape.intersected(QRectF(QPointF(), size));
    return QRectF(visible.topLeft() * deviceRatio, visible.size() * deviceRatio).toAlignedRect();
}

// The pixels of a wheel, row by row. Lengths are pixels of the device.
class WheelPainter {
public:
    WheelPainter(const ColorWheelGeometry& geometry, double deviceRatio, const QColor& outline)
        : m_centre(geometry.toWidget({0.0, 0.0}) * deviceRatio)
        , m_hasValues(geometry.mode == ColorWheel::ValueRingWheel)
        , m_rotation(wrappedUnit(static_cast<float>(geometry.rotation / (2.0 * M_PI))))
        , m_disc(static_cast<float>(geometry.disc * deviceRatio))
        , m_inner(static_cast<float>(geometry.ringInner * deviceRatio))
        , m_outer(static_cast<float>(geometry.ringOuter * deviceRatio))
        , m_ringStart(geometry.mode == ColorWheel::SquareWheel ? -1.0F : (m_disc + m_inner) / 2.0F)
        , m_lineWidth(static_cast<float>(deviceRatio))
        , m_line{static_cast<float>(outline.redF()), static_cast<float>(outline.greenF()),
                 static_cast<float>(outline.blueF())}
        , m_lineAlpha(static_cast<float>(outline.alphaF())) {}

    void paint(const ColorWheelPicture& picture, int row, QRgb* pixels,
               const ColorWheel::ColorTransform& transform) {
        const auto width = static_cast<std::size_t>(picture.area.width());
        const auto y = static_cast<float>(m_centre.y() - (picture.area.top() + row) - 0.5);
        const auto left = static_cast<float>(picture.area.left() + 0.5 - m_centre.x());
        m_distances.resize(width);
        m_turns.resize(width);
        m_colors.resize(width);
        float* distances = m_distances.data();
        float* turns = m_turns.data();
        // On its own, without a branch, for vector code.
        for (int i = 0; i < picture.area.width(); ++i) {
            const float x = left + static_cast<float>(i);
            distances[i] = std::sqrt(x * x + y * y);
            turns[i] = turnOf(x, y);
        }
        for (std::size_t i = 0; i < width; ++i)
            m_colors[i] = colorAt(distances[i], turns[i]);
        if (transform)
            transform(&m_colors[0].red, picture.area.width());
        for (std::size_t i = 0; i < width; ++i)
            pixels[i] = pixelAt(m_colors[i], distances[i]);
    }

private:
    bool isOnRing(float away) const { return away > m_ringStart; }

    Rgb colorAt(float away, float turn) const {
        if (away > m_outer + 1.0F)
            return {0.0F, 0.0F, 0.0F};
        const bool onRing = isOnRing(away);
        if (onRing && m_hasValues) {
            const float grey = turn < 0.25F ? 0.25F - turn : 1.25F - turn;
            return {grey, grey, grey};
        }
        const float hue = turn - m_rotation;
        const Rgb& pure = PureHues::table().at(hue < 0.0F ? hue + 1.0F : hue);
        const float saturation = onRing ? 1.0F : std::min(away / m_disc, 1.0F);
        const float white = 1.0F - saturation;
        return {white + saturation * pure.red, white + saturation * pure.green,
                white + saturation * pure.blue};
    }

    // How much of a pixel a disc of this radius covers.
    static float covered(float radius, float away) { return clamped(radius + 0.5F - away); }

    // How much of a pixel the line around it covers.
    float lined(float radius, float away) const {
        return clamped(0.5F * m_lineWidth + 0.5F - std::fabs(away - radius));
    }

    QRgb pixelAt(const Rgb& color, float away) const {
        if (away > m_outer + m_lineWidth + 1.0F)
            return 0;
        const bool onRing = isOnRing(away);
        if (!onRing && away < m_disc - m_lineWidth - 1.0F)
            return packed(&color.red, 1.0F);
        const float alpha = onRing ? covered(m_outer, away) * (1.0F - covered(m_inner, away))
                                   : covered(m_disc, away);
        float line =
            onRing ? std::max(lined(m_outer, away), lined(m_inner, away)) : lined(m_disc, away);
        line *= m_lineAlpha;
        const float whole = alpha + line * (1.0F - alpha);
        if (!(whole > 0.0F))
            return 0;
        // The line lies over the colour; what it leaves free of the pixel stays free.
        const float share = line / whole;
        const auto mix = [share](float below, float above) {
            return clamped(below) + (above - clamped(below)) * share;
        };
        const float rgb[]{mix(color.red, m_line.red), mix(color.green, m_line.green),
                          mix(color.blue, m_line.blue)};
        return packed(rgb, whole);
    }

    QPointF m_centre;
    bool m_hasValues;
    float m_rotation;
    float m_disc;
    float m_inner;
    float m_outer;
    float m_ringStart; // between the disc and the ring; none without a disc
    float m_lineWidth;
    Rgb m_line;
    float m_lineAlpha;
    std::vector<float> m_distances;
    std::vector<float> m_turns;
    std::vector<Rgb> m_colors;
};

} // namespace

ColorWheelPicture drawColorWheel(const ColorWheelGeometry& geometry, const QSizeF& size,
                                 double deviceRatio, const QColor& outline,
                                 const ColorWheel::ColorTransform& transform) {
    const double radius = geometry.ringOuter + 2.0;
    const QRectF shape(geometry.toWidget({-radius, radius}), QSizeF(2.0 * radius, 2.0 * radius));
    ColorWheelPicture picture;
    picture.area = visiblePixels(shape, size, deviceRatio);
    if (picture.area.isEmpty())
        return picture;
    picture.image = QImage(picture.area.size(), QImage::Format_ARGB32_Premultiplied);
    WheelPainter painter(geometry, deviceRatio, outline);
    for (int row = 0; row < picture.area.height(); ++row) {
        painter.paint(picture, row, reinterpret_cast<QRgb*>(picture.image.scanLine(row)),
                      transform);
    }
    return picture;
}

ColorWheelPicture drawColorSquare(const ColorWheelGeometry& geometry, const QSizeF& size,
                                  double deviceRatio, float hue,
                                  const ColorWheel::ColorTransform& transform) {
    const QRectF shape = geometry.square();
    ColorWheelPicture picture;
    picture.area = visiblePixels(shape, size, deviceRatio);
    if (picture.area.isEmpty())
        return picture;
    picture.image = QImage(picture.area.size(), QImage::Format_RGB32);
    const auto side = static_cast<float>(shape.width() * deviceRatio);
    const auto left = static_cast<float>(picture.area.left() + 0.5 - shape.left() * deviceRatio);
    const auto bottom = static_cast<float>(shape.bottom() * deviceRatio - picture.area.top() - 0.5);
    const Rgb pure = rgbOf({hue, 1.0F, 1.0F});
    const int width = picture.area.width();
    std::vector<float> saturations(static_cast<std::size_t>(width));
    for (int i = 0; i < width; ++i)
        saturations[static_cast<std::size_t>(i)] = clamped((left + static_cast<float>(i)) / side);
    std::vector<Rgb> colors(transform ? saturations.size() : 0);
    for (int row = 0; row < picture.area.height(); ++row) {
        auto* pixels = reinterpret_cast<QRgb*>(picture.image.scanLine(row));
        const float value = clamped((bottom - static_cast<float>(row)) / side);
        const Rgb change{value * (pure.red - 1.0F), value * (pure.green - 1.0F),
                         value * (pure.blue - 1.0F)};
        if (transform) {
            std::transform(
                saturations.begin(), saturations.end(), colors.begin(), [&](float saturation) {
                    return Rgb{value + saturation * change.red, value + saturation * change.green,
                               value + saturation * change.blue};
                });
            transform(&colors[0].red, width);
            std::transform(colors.begin(), colors.end(), pixels,
                           [](const Rgb& color) { return packed(&color.red, 1.0F); });
            continue;
        }
        // Drawn anew at each step of a hue drag: free of calls and branches, for vector code.
        const float* saturation = saturations.data();
        const float from = 255.0F * value + 0.5F;
        const Rgb step{255.0F * change.red, 255.0F * change.green, 255.0F * change.blue};
        for (int i = 0; i < width; ++i) {
            const int red = static_cast<int>(from + saturation[i] * step.red);
            const int green = static_cast<int>(from + saturation[i] * step.green);
            const int blue = static_cast<int>(from + saturation[i] * step.blue);
            pixels[i] = 0xff000000U | static_cast<unsigned>(red << 16 | green << 8 | blue);
        }
    }
    return picture;
}

QColor shownColor(const Hsv& color, const ColorWheel::ColorTransform& transform) {
    Rgb rgb = rgbOf(color);
    if (transform)
        transform(&rgb.red, 1);
    return QColor::fromRgb(packed(&rgb.red, 1.0F));
}

bool ColorWheelPictures::Key::operator==(const Key& other) const {
    return geometry == other.geometry && size == other.size && deviceRatio == other.deviceRatio &&
           color == other.color && hue == other.hue;
}

const ColorWheelPicture& ColorWheelPictures::wheel(const ColorWheelGeometry& geometry,
                                                   const QSizeF& size, double deviceRatio,
                                                   const QColor& outline,
                                                   const ColorWheel::ColorTransform& transform) {
    const Key key{geometry, size, deviceRatio, outline.rgba(), 0.0F};
    if (!(key == m_wheelKey)) {
        m_wheel = drawColorWheel(geometry, size, deviceRatio, outline, transform);
        m_wheelKey = key;
    }
    return m_wheel;
}

const ColorWheelPicture& ColorWheelPictures::square(const ColorWheelGeometry& geometry,
                                                    const QSizeF& size, double deviceRatio,
                                                    float hue,
                                                    const ColorWheel::ColorTransform& transform) {
    const Key key{geometry, size, deviceRatio, 0, hue};
    if (!(key == m_squareKey)) {
        m_square = drawColorSquare(geometry, size, deviceRatio, hue, transform);
        m_squareKey = key;
    }
    return m_square;
}

} // namespace Kestrel::UI
