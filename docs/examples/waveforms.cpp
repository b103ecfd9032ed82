// A waveform in nits and a vectorscope of a picture of light, and the way from a scope to a viewer.

#include <KxUI/scopes/Vectorscope.h>
#include <KxUI/scopes/WaveformScope.h>

#include <QApplication>
#include <QHBoxLayout>

#include <cmath>
#include <vector>

using namespace Kestrel::UI;

// Light as half floats: 1 is a sheet of paper, a lamp is a dozen times as bright.
static ScopeImage frame() {
    constexpr int Width = 640;
    constexpr int Height = 360;
    auto pixels = std::make_shared<std::vector<std::uint16_t>>(4 * Width * Height);
    for (int y = 0; y < Height; ++y) {
        std::vector<float> row(4 * Width, 1.0F);
        for (int x = 0; x < Width; ++x) {
            const auto lamp = 12 * float(std::exp(-std::hypot(x - 430, y - 120) / 24.0));
            const auto fold = float(0.5 + 0.4 * std::sin(x * 0.021 + y * 0.006));
            row[std::size_t(4 * x)] = 0.02F + 0.55F * fold + lamp;
            row[std::size_t(4 * x + 1)] = 0.02F + 0.33F * fold + 0.0003F * float(y) + 0.8F * lamp;
            row[std::size_t(4 * x + 2)] = 0.03F + 0.0011F * float(y) + 0.5F * lamp;
        }
        encodeRow(PixelLayout::RGBAHalf, {&row[3], &row[0], &row[1], &row[2], 4}, Width,
                  pixels->data() + std::ptrdiff_t(4) * Width * y);
    }
    ScopeImage image;
    image.owner = pixels; // scopes keep the memory for as long as they read it
    image.pixels = pixels->data();
    image.layout = PixelLayout::RGBAHalf;
    image.width = Width;
    image.height = Height;
    image.stride = 8 * Width;
    return image;
}

int main(int argc, char** argv) {
    QApplication application(argc, argv);

    // The signal of an HDR display, on which light of 1 has 203 cd/m2, in the colours of Rec 2020.
    ScopeModel model;
    ScopeEncoding encoding;
    encoding.transfer = ScopeEncoding::Transfer::Pq;
    encoding.whiteNits = 203;
    encoding.matrix = rgbToYCbCrMatrix(0.2627, 0.0593);
    model.setEncoding(encoding);
    model.setImage(frame());
    model.setSample({430, 120}); // what is under the pointer of the viewer

    QWidget window;
    auto* layout = new QHBoxLayout(&window);
    auto* waveform = new WaveformScope;
    waveform->setModel(&model);
    waveform->setMode(WaveformScope::RgbParade);
    waveform->setRange(0, 1);
    waveform->setUnit(ScopeUnit::NitsPq);
    waveform->setSecondUnit(ScopeUnit::Code10);
    waveform->setSecondUnitShown(true);
    layout->addWidget(waveform, 3);
    auto* vectors = new Vectorscope;
    vectors->setModel(&model);
    vectors->setGain(2); // of the signal; targets stay where they are
    vectors->setSkinToneLine(true);
    vectors->setColoring(Vectorscope::Hue);
    layout->addWidget(vectors, 2);

    // A click with Control in a scope asks where that is in the picture; here it becomes the sample.
    for (ScopeView* scope : {static_cast<ScopeView*>(waveform), static_cast<ScopeView*>(vectors)})
        QObject::connect(scope, &ScopeView::pixelRequested, &model,
                         [&model](const QPoint& pixel) { model.setSample(pixel); });

    window.resize(900, 380);
    window.show();
    return QApplication::exec();
}
