#pragma once

#include <KxUI/Export.h>

#include <QObject>

namespace Kestrel::UI {

/** The numbers by which a colour can be picked. Spell them `Kestrel::UI::ColorModel::Component` and
    `Kestrel::UI::ColorModel::Model` in properties. */
class KXUI_EXPORT ColorModel {
    Q_GADGET

public:
    /** One of the numbers. The first three are light as it is, the others are made of it. */
    enum Component {
        Red = 0,
        Green = 1,
        Blue = 2,
        Alpha = 3,       ///< 0-1, in every model
        Hue = 4,         ///< 0-1, from red over green to blue
        Saturation = 5,  ///< 0-1
        Value = 6,       ///< the largest of red, green and blue
        Temperature = 7, ///< blue less red: above 0 is cold
        Magenta = 8,     ///< the mean of red and blue less green: below 0 is green
        Intensity = 9,   ///< the mean of red, green and blue
        Luma = 10,       ///< Y of the YCbCr option
        Cb = 11,         ///< nominally -0.5 to 0.5
        Cr = 12          ///< nominally -0.5 to 0.5
    };
    Q_ENUM(Component)

    /** Three of the numbers, which say everything about a colour but its alpha. */
    enum Model {
        Rgb = 0,  ///< red, green, blue
        Hsv = 1,  ///< hue, saturation, value
        Tmi = 2,  ///< temperature, magenta, intensity
        YCbCr = 3 ///< luma, Cb, Cr by one of the options of colorSpaceName()
    };
    Q_ENUM(Model)

    /** The model of a component; that of alpha is `Rgb`. */
    static Model modelOf(Component component);
    /** The components of a model, counted from 0; others count as the last. */
    static Component component(Model model, int nth);
    /** Which of the three of its model a component is; 3 for alpha. */
    static int indexOf(Component component);

    /** What a component usually is at least, and at most: 0 or -1, and 1, or the halves of them. */
    static double usualMinimum(Component component);
    static double usualMaximum(Component component);
    /** Whether there are colours beyond the usual ends. Not for alpha, hue and saturation. */
    static bool isUnlimited(Component component);
};

} // namespace Kestrel::UI
