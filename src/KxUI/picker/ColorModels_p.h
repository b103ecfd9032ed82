#pragma once

#include <KxUI/picker/ColorModel.h>

#include <QString>

#include <array>

namespace Kestrel::UI {

/** Three numbers of a colour: light, or what a model makes of it. */
using ColorTriple = std::array<float, 3>;

/** The numbers of a model for red, green and blue; `ycbcr` is an option of colorSpaceName(). Hue and
    saturation are 0 where they mean nothing, and colours with parts below 0 are seen as if those
    were 0 by hue, saturation and value. */
ColorTriple componentsOf(ColorModel::Model model, const ColorTriple& rgb, int ycbcr);

/** The same back. */
ColorTriple rgbOf(ColorModel::Model model, const ColorTriple& components, int ycbcr);

/** What a component is called: in full, and in one or two letters. */
QString componentName(ColorModel::Component component);
QString componentLetter(ColorModel::Component component);

/** Whether light grows evenly with a component while the others of its model stay. */
bool isLinear(ColorModel::Component component);

} // namespace Kestrel::UI
