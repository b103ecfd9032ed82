// Colours as text: what is read is finite and limited, and what is written of it reads back: numbers
// to the bit, codes to the code, through every display. The last byte chooses the display.

#include <KxUI/picker/ColorText_p.h>

#include <support/Require.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace Kestrel::UI;
using Kestrel::Fuzz::require;

namespace {

ColorWheel::ColorTransform power(float exponent) {
    return [exponent](float* rgb, int pixels) {
        for (int i = 0; i < 3 * pixels; ++i)
            rgb[i] = std::copysign(std::pow(std::fabs(rgb[i]), exponent), rgb[i]);
    };
}

const DisplayCall& displayFrom(unsigned choice) {
    const auto broken = [](float* rgb, int) {
        rgb[0] = std::numeric_limits<float>::quiet_NaN();
        rgb[1] = std::numeric_limits<float>::infinity();
    };
    static const std::vector<DisplayCall> all{
        DisplayCall(), DisplayCall({power(1.0F / 2.4F), power(2.4F), QString()}),
        DisplayCall({power(1.0F / 2.4F), nullptr, QString()}),
        DisplayCall({broken, broken, QString()})};
    return all[choice % all.size()];
}

void checkWritten(const ColorValue& color, const DisplayCall& display) {
    const ColorText numbers = readColorText(colorNumbers(color), display);
    require(numbers.problem == ColorText::None && numbers.hasAlpha && numbers.color == color,
            "numbers come back");
    const ColorCode code = colorCode(color, display);
    require(code.text.size() == 7 || code.text.size() == 9, "a code has its digits");
    const ColorText back = readColorText(code.text, display);
    require((back.problem == ColorText::None) || !display.isInvertible() ||
                !isFinite({display.displayed(color)[0], display.displayed(color)[1],
                           display.displayed(color)[2], 1.0F}),
            "a code is read");
    if (back.problem == ColorText::None)
        require(colorCode(back.color, display).text.left(7) == code.text.left(7),
                "a code comes back");
    require(readColorText(colorPlainText(color, display), display).problem == ColorText::None,
            "what others get is read");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider input(bytes, size);
    const DisplayCall& display = displayFrom(input.ConsumeIntegral<std::uint8_t>());
    const std::string rest = input.ConsumeRemainingBytesAsString();
    const QString text = QString::fromUtf8(rest.data(), static_cast<int>(rest.size()));
    const ColorText read = readColorText(text, display);
    if (read.problem != ColorText::None) {
        require(read.color == ColorValue() && !read.hasAlpha, "nothing is read by half");
        return 0;
    }
    require(isFinite(read.color), "colours are numbers");
    require(read.color.alpha >= 0.0F && read.color.alpha <= 1.0F, "alpha is limited");
    require(read.hasAlpha || read.color.alpha == 1.0F, "alpha is read or opaque");
    checkWritten(read.color, display);
    return 0;
}
