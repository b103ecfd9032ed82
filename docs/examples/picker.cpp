// A colour picker whose colours are light, shown as a screen shows them, and a slider of its own.

#include <KxUI/picker/ColorPicker.h>
#include <KxUI/picker/SwatchModel.h>

#include <QApplication>

#include <cmath>

using namespace Kestrel::UI;

namespace {

// The curve of IEC 61966-2-1, and straight on below 0.
float encoded(float light) {
    if (light <= 0.0031308F)
        return 12.92F * light;
    return 1.055F * std::pow(light, 1.0F / 2.4F) - 0.055F;
}

float decoded(float code) {
    if (code <= 0.04045F)
        return code / 12.92F;
    return std::pow((code + 0.055F) / 1.055F, 2.4F);
}

// A colour management library takes whole rows as well: its processor's "apply" stands here then.
DisplayTransform displayTransform() {
    const auto each = [](float (*curve)(float)) {
        return [curve](float* rgb, int pixels) {
            for (int i = 0; i < 3 * pixels; ++i)
                rgb[i] = curve(rgb[i]);
        };
    };
    return {each(encoded), each(decoded), QStringLiteral("sRGB - Display")};
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    ColorPicker picker;
    picker.setDisplayTransform(displayTransform());
    picker.setPreviousColor({0.18F, 0.18F, 0.18F, 1.0F});
    picker.setColor({4.0F, 1.6F, 0.4F, 1.0F}); // two stops above white: the exposure follows

    SwatchModel swatches;
    swatches.append({0.18F, 0.18F, 0.18F, 1.0F}, QStringLiteral("Middle grey"));
    picker.setSwatches(&swatches);

    // Live while the user drags; one step in the history when the edit is over, none after Escape.
    ColorValue kept = picker.color(); // what the host keeps
    QObject::connect(&picker, &ColorPicker::valueEdited,
                     [&](const ColorValue& color) { kept = color; });
    QObject::connect(&picker, &ColorPicker::editFinished, [&](bool accepted) {
        if (accepted)
            swatches.remember(kept);
    });

    picker.show();
    return QApplication::exec();
}
