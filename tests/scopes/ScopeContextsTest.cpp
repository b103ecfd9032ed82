#include "Pictures.h"

#include <KxUI/draw/GlPicture_p.h>
#include <KxUI/scopes/ColorSpaceScope.h>
#include <KxUI/scopes/HistogramScope.h>
#include <KxUI/scopes/ScopeView_p.h>
#include <KxUI/scopes/Vectorscope.h>
#include <KxUI/scopes/WaveformScope.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QtTest>

#include <cmath>
#include <functional>
#include <memory>

using namespace Kestrel::UI;
using Kestrel::Test::Picture;

namespace {

constexpr QSize Size(320, 240);

using Make = std::function<std::unique_ptr<ScopeView>()>;

std::unique_ptr<ScopeView> histogram(HistogramScope::Layout layout) {
    auto scope = std::make_unique<HistogramScope>();
    scope->setLayout(layout);
    scope->setChannels(HistogramScope::AllChannels);
    return scope;
}

std::unique_ptr<ScopeView> solid(ColorSpaceScope::Space space) {
    auto scope = std::make_unique<ColorSpaceScope>();
    scope->setSpace(space);
    scope->setGamutWires(ColorSpaceScope::AllWires);
    return scope;
}

std::unique_ptr<ScopeView> waveform(WaveformScope::Mode mode, bool rows) {
    auto scope = std::make_unique<WaveformScope>();
    scope->setMode(mode);
    scope->setOrientation(rows ? WaveformScope::Rows : WaveformScope::Columns);
    scope->setEnvelope(WaveformScope::InstantEnvelope);
    scope->setLimits(WaveformScope::EbuR103);
    scope->setSecondUnitShown(true);
    return scope;
}

std::unique_ptr<ScopeView> vectors(Vectorscope::Coloring coloring, bool log) {
    auto scope = std::make_unique<Vectorscope>();
    scope->setColoring(coloring);
    scope->setLogRadius(log);
    scope->setIQLines(true);
    scope->setSkinToneLine(true);
    scope->setBoxes(Vectorscope::LargeBoxes);
    return scope;
}

} // namespace

Q_DECLARE_METATYPE(Make)

// What scopes draw by OpenGL, as far as the screen has it, is what the painter draws.
class ScopeContextsTest : public QObject {
    Q_OBJECT

private slots:
    void bothDrawTheSame_data() {
        const Kestrel::Test::Columns<Make> add("make");
        add("histogram", Make([] { return histogram(HistogramScope::Overlay); }));
        add("histograms", Make([] { return histogram(HistogramScope::SideBySide); }));
        add("cube", Make([] { return solid(ColorSpaceScope::RgbCube); }));
        add("YCbCr", Make([] { return solid(ColorSpaceScope::YCbCrSolid); }));
        add("waveform", Make([] { return waveform(WaveformScope::RgbOverlay, false); }));
        add("parade", Make([] { return waveform(WaveformScope::YCbCrParade, true); }));
        add("vectors", Make([] { return vectors(Vectorscope::Phosphor, false); }));
        add("vectors by hue", Make([] { return vectors(Vectorscope::Hue, true); }));
        add("cone", Make([] { return solid(ColorSpaceScope::HsvCone); }));
    }

    void bothDrawTheSame() {
        QFETCH(Make, make);
        ScopeModel model;
        model.setImage(Picture::ofFloats(200, 120).image);
        const std::unique_ptr<ScopeView> scope = make();
        scope->setModel(&model);
        scope->resize(Size);
        scope->show();
        QTRY_VERIFY(model.isCurrent());
        auto& parts = ScopeViewPrivate::of(*scope);
        for (const double ratio : {1.0, 2.0}) {
            GlPicture gl;
            const QImage drawn = gl.take(Size, ratio, [&](DrawingContext& context) {
                parts.paint(context, parts.geometry(Size, ratio), false);
            });
            compare(drawn, scope->toImage(Size, ratio));
        }
    }

private:
    // 99.9 % of the pixels within 2 codes; the edge of a disc may go through the others.
    static void compare(const QImage& a, const QImage& b) {
        QCOMPARE(a.size(), b.size());
        int far = 0;
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x) {
                const QRgb p = a.pixel(x, y);
                const QRgb q = b.pixel(x, y);
                const int away =
                    std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                              std::abs(qBlue(p) - qBlue(q))});
                far += away > 2 ? 1 : 0;
            }
        }
        if (far != 0 && qEnvironmentVariableIsSet("KXUI_PICTURE")) {
            a.save(qEnvironmentVariable("KXUI_PICTURE") + QStringLiteral(".gl.png"));
            b.save(qEnvironmentVariable("KXUI_PICTURE") + QStringLiteral(".painter.png"));
        }
        QVERIFY2(far * 1000 <= a.width() * a.height(),
                 qPrintable(QStringLiteral("%1 pixels differ").arg(far)));
    }
};

KXUI_TEST(ScopeContextsTest);
#include "ScopeContextsTest.moc"
