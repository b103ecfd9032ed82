#include <KxUI/picker/ColorPictures_p.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Floats = std::vector<float>;

struct Line {
    GradientGround ground;
    ComponentSpan span;

    ColorTriple at(float number) const {
        ColorTriple components = ground.components;
        components[static_cast<std::size_t>(ColorModel::indexOf(span.component))] = number;
        return rgbOf(ground.model, components, ground.ycbcr);
    }
};

// Where the light grows evenly two colours say it all.
void fillEvenly(const ColorTriple& from, const ColorTriple& to, float* rgb, int pixels) {
    const float share = 1.0F / static_cast<float>(pixels);
    const ColorTriple step{(to[0] - from[0]) * share, (to[1] - from[1]) * share,
                           (to[2] - from[2]) * share};
    for (int i = 0; i < pixels; ++i) {
        const float at = static_cast<float>(i) + 0.5F;
        rgb[3 * i] = from[0] + at * step[0];
        rgb[3 * i + 1] = from[1] + at * step[1];
        rgb[3 * i + 2] = from[2] + at * step[2];
    }
}

void fillLine(const Line& line, float* rgb, int pixels) {
    const auto [component, from, to] = line.span;
    if (component == ColorModel::Alpha) {
        const ColorTriple same =
            rgbOf(line.ground.model, line.ground.components, line.ground.ycbcr);
        fillEvenly(same, same, rgb, pixels);
    } else if (isLinear(component)) {
        fillEvenly(line.at(from), line.at(to), rgb, pixels);
    } else {
        const float step = (to - from) / static_cast<float>(pixels);
        for (int i = 0; i < pixels; ++i) {
            const ColorTriple color = line.at(from + (static_cast<float>(i) + 0.5F) * step);
            std::copy(color.begin(), color.end(), rgb + 3 * static_cast<std::ptrdiff_t>(i));
        }
    }
}

int code(float part) {
    // As eightBits(), without a branch, for vector code; the order makes 0 of what is no number.
    const float limited = std::min(std::max(0.0F, part), 1.0F);
    return static_cast<int>(limited * 255.0F + 0.5F);
}

void pack(const float* rgb, QRgb* pixels, int count) {
    for (int i = 0; i < count; ++i) {
        const int red = code(rgb[3 * i]);
        const int green = code(rgb[3 * i + 1]);
        const int blue = code(rgb[3 * i + 2]);
        pixels[i] = 0xff000000U | static_cast<unsigned>(red << 16 | green << 8 | blue);
    }
}

void packDenser(const ComponentSpan& span, QRgb* pixels, int count) {
    for (int i = 0; i < count; ++i) {
        const float part = (static_cast<float>(i) + 0.5F) / static_cast<float>(count);
        const int alpha = eightBits(span.from + part * (span.to - span.from));
        pixels[i] = qPremultiply((pixels[i] & 0xffffffU) | static_cast<unsigned>(alpha) << 24);
    }
}

} // namespace

GradientGround GradientGround::of(const ColorState& state, ColorModel::Model model) {
    return {model, state.components(model), state.ycbcr()};
}

bool GradientGround::operator==(const GradientGround& other) const {
    return model == other.model && components == other.components && ycbcr == other.ycbcr;
}

QImage gradientRow(const GradientGround& ground, const ComponentSpan& span, int pixels,
                   const DisplayCall& display) {
    const int width = std::max(pixels, 1);
    const bool isAlpha = span.component == ColorModel::Alpha;
    QImage row(width, 1, isAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    Floats rgb(static_cast<std::size_t>(width) * 3);
    fillLine({ground, span}, rgb.data(), width);
    display.toDisplay(rgb.data(), width);
    auto* const line = reinterpret_cast<QRgb*>(row.scanLine(0));
    pack(rgb.data(), line, width);
    if (isAlpha)
        packDenser(span, line, width);
    return row;
}

QImage gradientField(const GradientGround& ground, const ComponentSpan& across,
                     const ComponentSpan& up, const QSize& pixels, const DisplayCall& display) {
    const int width = std::max(pixels.width(), 1);
    const int height = std::max(pixels.height(), 1);
    QImage field(width, height, QImage::Format_RGB32);
    const std::size_t rowFloats = static_cast<std::size_t>(width) * 3;
    Floats rgb(rowFloats * static_cast<std::size_t>(height));
    Line line{ground, across};
    const auto upIndex = static_cast<std::size_t>(ColorModel::indexOf(up.component));
    const float step = (up.to - up.from) / static_cast<float>(height);
    for (int row = 0; row < height; ++row) {
        line.ground.components[upIndex] = up.to - (static_cast<float>(row) + 0.5F) * step;
        fillLine(line, &rgb[static_cast<std::size_t>(row) * rowFloats], width);
    }
    display.toDisplay(rgb.data(), width * height);
    for (int row = 0; row < height; ++row)
        pack(&rgb[static_cast<std::size_t>(row) * rowFloats],
             reinterpret_cast<QRgb*>(field.scanLine(row)), width);
    return field;
}

bool GradientRow::differs(const GradientGround& ground, const ComponentSpan& span,
                          const DisplayCall& display) const {
    GradientGround free = ground;
    if (span.component != ColorModel::Alpha) {
        const auto index = static_cast<std::size_t>(ColorModel::indexOf(span.component));
        free.components[index] = m_ground.components[index];
    }
    return m_row.isNull() || !(free == m_ground) || span.component != m_span.component ||
           span.from != m_span.from || span.to != m_span.to || display.number() != m_display;
}

const QImage& GradientRow::row(const GradientGround& ground, const ComponentSpan& span, int pixels,
                               const DisplayCall& display) {
    if (m_row.width() == std::max(pixels, 1) && !differs(ground, span, display))
        return m_row;
    m_ground = ground;
    m_span = span;
    m_display = display.number();
    m_row = gradientRow(ground, span, pixels, display);
    return m_row;
}

} // namespace Kestrel::UI
