#pragma once

#include <KxUI/scopes/CountingKernels_p.h>

#include <array>

namespace Kestrel::UI {

/** What hues and saturations are counted in: slots of codes, and of pixels that have none. */
struct HueSlots {
    static constexpr std::uint16_t Codes = 4096;
    static constexpr std::uint16_t Grey = Codes + 1;  ///< of hues
    static constexpr std::uint16_t Above = Codes + 1; ///< of saturations
    static constexpr std::uint16_t None = Codes + 2;
    static constexpr std::size_t Count = Codes + 3;
};

/** The slots of each pixel. Without branches and by floats alone, so that compilers make vectors of it and
    every processor gets the same. */
void hueSlots(const ColorPlanes& from, std::size_t pixels, std::uint16_t* hues,
              std::uint16_t* saturations) noexcept;

} // namespace Kestrel::UI
