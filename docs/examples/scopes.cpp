// A histogram and the figures of a picture of half floats, and what a host asks of a scope.

#include <KxUI/scopes/HistogramScope.h>
#include <KxUI/scopes/ImageStatisticsPanel.h>

#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace Kestrel::UI;

// A frame as a renderer leaves it: light as half floats, some of it brighter than white.
static ScopeImage frame() {
    constexpr int Width = 640;
    constexpr int Height = 360;
    auto pixels = std::make_shared<std::vector<std::uint16_t>>(4 * Width * Height);
    for (int y = 0; y < Height; ++y) {
        std::vector<float> row(4 * Width, 1.0F);
        for (int x = 0; x < Width; ++x) {
            const auto wave = float(std::sin(x * 0.012 + y * 0.004));
            row[std::size_t(4 * x)] = 0.34F + 0.3F * wave;
            row[std::size_t(4 * x + 1)] = 0.22F + 0.16F * wave + 0.0004F * float(y);
            row[std::size_t(4 * x + 2)] = 0.05F + 0.0011F * float(y);
        }
        if (y == 90)
            row[1200] = 4.0F; // a hot pixel
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

    // What is counted: light, shown as the signal that a display of sRGB gets.
    ScopeModel model;
    ScopeEncoding encoding;
    encoding.transfer = ScopeEncoding::Transfer::Srgb;
    model.setEncoding(encoding);
    model.setImage(frame());
    model.setSample({320, 180}); // what is under the pointer of the viewer

    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* histogram = new HistogramScope;
    histogram->setModel(&model);
    histogram->setUnit(ScopeUnit::Code10);
    histogram->setLogCounts(true);
    layout->addWidget(histogram, 1);
    auto* figures = new ImageStatisticsPanel;
    figures->setModel(&model);
    figures->setColumns(ImageStatisticsPanel::Minimum | ImageStatisticsPanel::Maximum |
                        ImageStatisticsPanel::Mean | ImageStatisticsPanel::Deviation |
                        ImageStatisticsPanel::Median | ImageStatisticsPanel::Above);
    layout->addWidget(figures, 1);

    // Values that are selected in a scope are pixels that a viewer can mark.
    auto* marked = new QLabel(QStringLiteral("Drag in the histogram"));
    layout->addWidget(marked);
    QObject::connect(histogram, &ScopeView::selectionEdited, marked,
                     [&model, marked](const ScopeSelection& selection) {
                         const auto mask =
                             selectionMask(model.image(), model.encoding(), selection);
                         const auto pixels = std::count(mask.begin(), mask.end(), 255);
                         marked->setText(QStringLiteral("%1 pixels").arg(pixels));
                     });

    // Figures may be asked for without a window as well.
    ScopeRequest request;
    request.encoding = encoding;
    const ScopeResult result = countScopes(model.image(), request);
    qInfo("largest red %.3f, 99 %% below %.3f", result.statistics.channels[0].maximum,
          result.values.quantile(ScopeHistogram::Red, 0.99));

    window.resize(640, 480);
    window.show();
    return QApplication::exec();
}
