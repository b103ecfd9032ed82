// The colours of a picture as a cloud in the cube of RGB and in the cone of HSV, turned by the mouse.

#include <KxUI/scopes/ColorSpaceScope.h>

#include <QApplication>
#include <QHBoxLayout>

#include <array>
#include <cmath>
#include <vector>

using namespace Kestrel::UI;

// A sunset over water, about: few colours, in the codes of a display.
static ScopeImage sunset() {
    constexpr int Width = 640;
    constexpr int Height = 360;
    auto pixels = std::make_shared<std::vector<unsigned char>>(3 * Width * Height);
    unsigned char* to = pixels->data();
    for (int y = 0; y < Height; ++y) {
        for (int x = 0; x < Width; ++x) {
            const double high = std::fabs(y - 200.0) / 200;
            const double glow = std::exp(-std::hypot(x - 420.0, y - 190.0) / 90);
            const double wave = y > 200 ? 0.08 * std::sin(x * 0.05 + y * 0.9) : 0;
            const std::array<double, 3> rgb{0.85 - 0.62 * high + 0.6 * glow + wave,
                                            0.42 - 0.25 * high + 0.5 * glow + wave,
                                            0.28 + 0.25 * high + 0.1 * glow};
            for (const double each : rgb)
                *to++ = static_cast<unsigned char>(std::lround(255 * std::min(each, 1.0)));
        }
    }
    ScopeImage image;
    image.owner = pixels;
    image.pixels = pixels->data();
    image.layout = PixelLayout::RGB8;
    image.width = Width;
    image.height = Height;
    image.stride = 3 * Width;
    return image;
}

int main(int argc, char** argv) {
    QApplication application(argc, argv);

    ScopeModel model;
    model.setSolidRange({0, 1, 32}); // of codes, none of which is outside
    model.setImage(sunset());
    model.setSample({420, 190}); // what is under the pointer of the viewer

    QWidget window;
    auto* layout = new QHBoxLayout(&window);
    for (const auto space : {ColorSpaceScope::RgbCube, ColorSpaceScope::HsvCone}) {
        auto* scope = new ColorSpaceScope;
        scope->setModel(&model);
        scope->setSpace(space);
        layout->addWidget(scope);
    }

    window.resize(820, 380);
    window.show();
    return QApplication::exec();
}
