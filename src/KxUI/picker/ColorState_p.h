#pragma once

#include <KxUI/picker/ColorModels_p.h>
#include <KxUI/picker/ColorValue.h>

namespace Kestrel::UI {

/** A colour as a picker keeps it: with the numbers that its user gave and what the colour alone does
    not tell. Wheel, field, hue, saturation and value are of the colour at the picker's exposure,
    that is, divided by two to the power of its stops. */
class ColorState {
public:
    /** No number of a colour that a user edits goes beyond this, in either direction. */
    static constexpr float Largest = 1e30F;
    /** Nor the exposure. */
    static constexpr float MostStops = 32.0F;

    const ColorValue& color() const { return m_color; }
    float stops() const { return m_stops; }
    int ycbcr() const { return m_ycbcr; }
    /** Bit n is set for each of red, green and blue that go along with each other. */
    unsigned linked() const { return m_linked; }

    /** Numbers of a model. Those that the user gave stay as they were given; hue and saturation of
        greys and black are the last ones that meant something. */
    ColorTriple components(ColorModel::Model model) const;
    float component(ColorModel::Component component) const;
    /** Light at the picker's exposure. */
    ColorTriple exposed() const;
    /** Whether hue, saturation and value say nothing about the colour, which has parts below 0. */
    bool isBelowZero() const;

    /** Light of the components of a model at the exposure that they are of. */
    ColorTriple lightOf(ColorModel::Model model, const ColorTriple& components) const;

    /** By the host: keeps the exposure while the colour can be seen at it, which is up to the value
        1 and down to a sixteenth of it; else the exposure is where the colour has the value 1, or 0
        for one that is darker than that. Nothing for the present colour. */
    void setColor(const ColorValue& color);

    /** By the user. Linked channels keep to the ratios, or where there are none to the differences,
        that they had in `start`, the state at the beginning of the edit, so that a way back restores
        the bits. What is not finite is ignored. */
    void setComponent(ColorModel::Component component, float number, const ColorState& start);
    void setComponents(ColorModel::Model model, const ColorTriple& components);
    /** A colour as a whole; the exposure stays. */
    void setEdited(const ColorValue& color);
    /** The exposure, and the colour along with it. */
    void setStops(float stops, const ColorState& start);

    void setYCbCr(int option);
    void setLinked(unsigned channels) { m_linked = channels & 7U; }

    /** Same numbers, also where the colour does not tell them apart. */
    bool operator==(const ColorState& other) const;

private:
    float scale() const;
    void takeColor(const ColorTriple& rgb);
    void remember();

    ColorValue m_color;
    float m_hue = 0.0F;
    float m_saturation = 0.0F;
    float m_stops = 0.0F;
    ColorTriple m_typed{0.0F, 0.0F, 0.0F}; ///< of a model other than Rgb
    ColorModel::Model m_typedModel = ColorModel::Rgb;
    int m_ycbcr = 0;
    unsigned m_linked = 0;
};

} // namespace Kestrel::UI
