#pragma once

#include <KxUI/picker/ColorState_p.h>
#include <KxUI/picker/DisplayCall_p.h>

#include <QImage>
#include <QSize>

#include <vector>

namespace Kestrel::UI {

/** Values of a component along a line, from the first pixel's edge to the last one's. */
struct ComponentSpan {
    ColorModel::Component component = ColorModel::Red;
    float from = 0.0F;
    float to = 1.0F;
};

/** What a gradient is made of: the numbers of a model. The ones that
    the gradient runs along count for nothing. */
struct GradientGround {
    ColorModel::Model model = ColorModel::Rgb;
    ColorTriple components{0.0F, 0.0F, 0.0F};
    int ycbcr = 0;

    /** Hue, saturation and value as at the exposure 0, so that bright colours are not all white. */
    static GradientGround of(const ColorState& state, ColorModel::Model model);

    bool operator==(const GradientGround& other) const;
};

/** The row of colours over which a component runs while the others stay, by one call of the
    transform. For alpha: the colour in all pixels, growing denser. One pixel high, at least one
    wide. */
QImage gradientRow(const GradientGround& ground, const ComponentSpan& span, int pixels,
                   const DisplayCall& display);

/** Two components of a model, rightwards and upwards, by one call of the transform. */
QImage gradientField(const GradientGround& ground, const ComponentSpan& across,
                     const ComponentSpan& up, const QSize& pixels, const DisplayCall& display);

/** The row of a slider, drawn again only when what it shows has changed. */
class GradientRow {
public:
    /** Whether something else is to be seen than in the last row that was drawn. */
    bool differs(const GradientGround& ground, const ComponentSpan& span,
                 const DisplayCall& display) const;
    const QImage& row(const GradientGround& ground, const ComponentSpan& span, int pixels,
                      const DisplayCall& display);

private:
    GradientGround m_ground;
    ComponentSpan m_span;
    quint64 m_display = 0;
    QImage m_row;
};

} // namespace Kestrel::UI
