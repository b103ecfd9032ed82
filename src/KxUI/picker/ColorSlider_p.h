#pragma once

#include <KxUI/picker/ColorPictures_p.h>
#include <KxUI/picker/ColorSlider.h>
#include <KxUI/values/LinearSliderAccessible_p.h>
#include <KxUI/values/LinearSlider_p.h>

namespace Kestrel::UI {

/** The look of a colour slider, and the colour it is about. */
class ColorSliderLook final : public LinearSliderPrivate {
public:
    static ColorSliderLook& of(const ColorSlider* slider);

    void paint(QPainter& painter, const QRect& exposed) override;
    QSize hint(bool smallest) const override;

    /** Shows a state that is kept elsewhere. The range stays. */
    void show(const ColorState& newState);
    /** Takes over what the slider itself was moved to. */
    void noteValue(double newValue);
    /** An edit is over: the range follows. */
    void settleRange();
    void setComponent(ColorModel::Component newComponent);
    void setDisplay(const DisplayCall& newDisplay);

    ColorState state;
    ColorModel::Component component = ColorModel::Red;
    DisplayCall display;

protected:
    SliderGeometry plan() const override;
    QRectF handleArea(double shown) override;

private:
    GradientGround ground() const;
    ComponentSpan span() const;
    QRectF groove();
    void paintGradient(QPainter& painter, const QRectF& area, double ratio);
    void paintHandle(QPainter& painter);
    bool isSymmetric() const { return ColorModel::usualMinimum(component) < 0.0; }

    GradientRow m_row;
    double m_peak = 0.0; ///< how far from 0 the value was since the range last followed
};

/** Says which number of a colour a slider is for. */
class ColorSliderAccessible final : public LinearSliderAccessible {
public:
    using LinearSliderAccessible::LinearSliderAccessible;

protected:
    QString standardName() const override;
};

/** A ring that is seen on every colour. */
void paintColorRing(QPainter& painter, const QPointF& centre, double radius);

} // namespace Kestrel::UI
