#pragma once

#include <KxUI/picker/ColorModel.h>
#include <KxUI/picker/ColorValue.h>
#include <KxUI/picker/DisplayTransform.h>
#include <KxUI/values/LinearSlider.h>

namespace Kestrel::UI {

/** A slider for one number of a colour, over the colours that it leads to: what is under the handle
    is what the colour becomes. A hue stays where it is while the colour is grey or black.

    The range is the usual one of the component. When an edit leads beyond, by the field for an exact
    number, the range grows to the next of 1, 2, 5, 10 and so on as the edit ends; it shrinks again
    when the value stays under a fifth of it for a whole edit. Otherwise as a LinearSlider, without
    ticks. Interface thread. */
class KXUI_EXPORT ColorSlider : public LinearSlider {
    Q_OBJECT
    Q_PROPERTY(Kestrel::UI::ColorModel::Component component READ component WRITE setComponent NOTIFY
                   componentChanged)
    Q_PROPERTY(Kestrel::UI::ColorValue color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(int colorSpace READ colorSpace WRITE setColorSpace NOTIFY colorSpaceChanged)

public:
    /** The red of black. */
    explicit ColorSlider(QWidget* parent = nullptr);
    ~ColorSlider() override;

    /** Which number value() is; `Red` at first. */
    ColorModel::Component component() const;
    void setComponent(ColorModel::Component component);

    /** The colour whose number it is, as it was set or as the user changed it. */
    ColorValue color() const;

    /** The option of colorSpaceName() for luma, Cb and Cr; `ColorSpace::Rec709` at first, and for
        any other number. */
    int colorSpace() const;
    void setColorSpace(int option);

    /** How the colours are shown. None at first: as they are. */
    DisplayTransform displayTransform() const;
    void setDisplayTransform(const DisplayTransform& transform);

public Q_SLOTS:
    /** Shows the number of this colour. One with a part that is not finite is ignored. */
    void setColor(const Kestrel::UI::ColorValue& color);

Q_SIGNALS:
    /** The colour became another one, by whomever; valueEdited() follows where it was the user. */
    void colorChanged(const Kestrel::UI::ColorValue& color);
    /** A setter had an effect. */
    void componentChanged(Kestrel::UI::ColorModel::Component component);
    void colorSpaceChanged(int option);
};

} // namespace Kestrel::UI
