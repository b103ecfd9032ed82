#include <KxUI/picker/ColorState_p.h>

#include <KxUI/color/ColorConversions.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr float DarkestSeen = 1.0F / 16.0F;
constexpr float JustAboveOne = 1.000001F; // what dividing by a power of two leaves of 1

ColorTriple tripleOf(const ColorValue& color) {
    return {color.red, color.green, color.blue};
}

float limited(float number) {
    return std::clamp(number, -ColorState::Largest, ColorState::Largest);
}

float limited(ColorModel::Component component, float number) {
    if (!ColorModel::isUnlimited(component))
        return std::clamp(number, 0.0F, 1.0F);
    return component == ColorModel::Value ? std::clamp(number, 0.0F, ColorState::Largest)
                                          : limited(number);
}

// Red, green and blue after one of those that are linked was moved.
ColorTriple linkedTo(const ColorTriple& start, std::size_t moved, float number, unsigned linked) {
    ColorTriple rgb = start;
    rgb[moved] = number;
    if (number == start[moved])
        return rgb;
    for (std::size_t i = 0; i < 3; ++i) {
        if (i == moved || !(linked >> i & 1U))
            continue;
        rgb[i] =
            limited(start[moved] != 0.0F ? start[i] * (number / start[moved]) : start[i] + number);
        if (!std::isfinite(rgb[i])) // 0 times a ratio beyond all numbers
            rgb[i] = start[i];
    }
    return rgb;
}

} // namespace

float ColorState::scale() const {
    return std::exp2(m_stops);
}

ColorTriple ColorState::exposed() const {
    const float by = scale();
    return {m_color.red / by, m_color.green / by, m_color.blue / by};
}

bool ColorState::isBelowZero() const {
    return m_color.red < 0.0F || m_color.green < 0.0F || m_color.blue < 0.0F;
}

ColorTriple ColorState::lightOf(ColorModel::Model model, const ColorTriple& components) const {
    ColorTriple rgb = rgbOf(model, components, m_ycbcr);
    for (float& part : rgb)
        part = limited(model == ColorModel::Hsv ? part * scale() : part);
    return rgb;
}

ColorTriple ColorState::components(ColorModel::Model model) const {
    if (model == m_typedModel && model != ColorModel::Rgb)
        return m_typed;
    if (model == ColorModel::Hsv)
        return {m_hue, m_saturation, componentsOf(model, exposed(), m_ycbcr)[2]};
    return componentsOf(model, tripleOf(m_color), m_ycbcr);
}

float ColorState::component(ColorModel::Component component) const {
    if (component == ColorModel::Alpha)
        return m_color.alpha;
    return components(
        ColorModel::modelOf(component))[static_cast<std::size_t>(ColorModel::indexOf(component))];
}

void ColorState::takeColor(const ColorTriple& rgb) {
    m_color = {rgb[0], rgb[1], rgb[2], m_color.alpha};
}

// Exactly 0 is what means nothing: the least trace of a hue in a dark colour is one.
void ColorState::remember() {
    const ColorTriple hsv = componentsOf(ColorModel::Hsv, exposed(), m_ycbcr);
    if (!(hsv[2] > 0.0F))
        return;
    m_saturation = hsv[1];
    if (hsv[1] > 0.0F)
        m_hue = hsv[0];
}

void ColorState::setColor(const ColorValue& color) {
    if (color == m_color)
        return;
    m_color = color;
    m_typedModel = ColorModel::Rgb;
    const float brightest = std::max({color.red, color.green, color.blue});
    const float shown = brightest / scale();
    if (brightest > 0.0F && (shown > JustAboveOne || shown < DarkestSeen))
        m_stops = std::clamp(std::log2(brightest), 0.0F, MostStops);
    remember();
}

void ColorState::setEdited(const ColorValue& color) {
    if (color == m_color)
        return;
    m_color = color;
    m_typedModel = ColorModel::Rgb;
    remember();
}

void ColorState::setComponents(ColorModel::Model model, const ColorTriple& components) {
    if (!std::all_of(components.begin(), components.end(),
                     [](float x) { return std::isfinite(x); }))
        return;
    ColorTriple kept = components;
    for (int i = 0; i < 3; ++i) {
        float& number = kept[static_cast<std::size_t>(i)];
        number = limited(ColorModel::component(model, i), number);
    }
    takeColor(lightOf(model, kept));
    m_typed = kept;
    m_typedModel = model;
    if (model == ColorModel::Hsv) {
        m_hue = kept[0];
        m_saturation = kept[1];
    } else {
        remember();
    }
}

void ColorState::setComponent(ColorModel::Component component, float number,
                              const ColorState& start) {
    if (!std::isfinite(number))
        return;
    if (component == ColorModel::Alpha) {
        m_color.alpha = std::clamp(number, 0.0F, 1.0F);
        return;
    }
    const ColorModel::Model model = ColorModel::modelOf(component);
    const auto index = static_cast<std::size_t>(ColorModel::indexOf(component));
    if (model == ColorModel::Rgb && (m_linked >> index & 1U)) {
        setComponents(model, linkedTo(tripleOf(start.m_color), index, limited(number), m_linked));
        return;
    }
    ColorTriple edited = components(model);
    edited[index] = number;
    setComponents(model, edited);
}

void ColorState::setStops(float stops, const ColorState& start) {
    if (!std::isfinite(stops))
        return;
    m_stops = std::clamp(stops, -MostStops, MostStops);
    const float by = std::exp2(m_stops - start.m_stops);
    const ColorTriple from = tripleOf(start.m_color);
    takeColor({limited(from[0] * by), limited(from[1] * by), limited(from[2] * by)});
    m_hue = start.m_hue;
    m_saturation = start.m_saturation;
    if (m_typedModel != ColorModel::Hsv)
        m_typedModel = ColorModel::Rgb;
}

void ColorState::setYCbCr(int option) {
    m_ycbcr = option >= 0 && option < ColorSpace::Count ? option : ColorSpace::Rec709;
    if (m_typedModel == ColorModel::YCbCr)
        m_typedModel = ColorModel::Rgb;
}

bool ColorState::operator==(const ColorState& other) const {
    return m_color == other.m_color && m_hue == other.m_hue && m_saturation == other.m_saturation &&
           m_stops == other.m_stops && m_ycbcr == other.m_ycbcr && m_linked == other.m_linked &&
           components(m_typedModel) == other.components(m_typedModel);
}

} // namespace Kestrel::UI
