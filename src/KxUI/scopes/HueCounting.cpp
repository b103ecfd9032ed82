#include <KxUI/scopes/HueCounting_p.h>

#include <limits>

namespace Kestrel::UI {

void hueSlots(const ColorPlanes& from, std::size_t pixels, std::uint16_t* hues,
              std::uint16_t* saturations) noexcept {
    constexpr float Largest = std::numeric_limits<float>::max();
    constexpr auto Codes = float(HueSlots::Codes);
    for (std::size_t i = 0; i < pixels; ++i) {
        const float red = from.red[i];
        const float green = from.green[i];
        const float blue = from.blue[i];
        const float two = red > green ? red : green;
        const float value = two > blue ? two : blue;
        const float other = red < green ? red : green;
        const float least = other < blue ? other : blue;
        const float chroma = value - least;
        // Of what is no number, or infinite, this is none; of finite values it may overflow.
        const float sum = (red - red) + (green - green) + (blue - blue);
        const bool finite = sum == 0 && chroma <= Largest;
        const bool colored = chroma > 0 && value > 0;
        const float safeValue = colored ? value : 1.0F;
        const float safeChroma = colored ? chroma : 1.0F;
        const float saturation = colored ? chroma / safeValue : 0.0F;

        const bool isRed = value == red;
        const bool isGreen = value == green;
        const float difference = isRed ? green - blue : isGreen ? blue - red : red - green;
        const float first = isRed ? 0.0F : isGreen ? 2.0F : 4.0F;
        float hue = (first + difference / safeChroma) / 6.0F;
        hue = hue < 0 ? hue + 1.0F : hue;

        const bool usable = finite && colored;
        const int code = int((usable ? hue : 0.0F) * Codes + 0.5F) & (HueSlots::Codes - 1);
        const int grey = finite ? int(HueSlots::Grey) : int(HueSlots::None);
        hues[i] = std::uint16_t(usable ? code : grey);
        const bool within = finite && saturation <= 1;
        const int level = int((within ? saturation : 0.0F) * Codes + 0.5F);
        const int beyond = finite ? int(HueSlots::Above) : int(HueSlots::None);
        saturations[i] = std::uint16_t(within ? level : beyond);
    }
}

} // namespace Kestrel::UI
