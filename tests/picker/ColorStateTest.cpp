#include <KxUI/picker/ColorState_p.h>
#include <KxUI/picker/DisplayCall_p.h>

#include "Transforms.h"
#include <support/TestRegistry.h>

#include <KxUI/color/ColorConversions.h>

#include <QtTest>

#include <array>
#include <cfloat>
#include <cmath>
#include <limits>

using namespace Kestrel::UI;

namespace {

using Component = ColorModel::Component;

bool isNear(float a, float b, float within = 1e-5F) {
    return std::fabs(a - b) <= within * std::max({1.0F, std::fabs(a), std::fabs(b)});
}

bool isNear(const ColorTriple& a, const ColorTriple& b, float within = 1e-5F) {
    return isNear(a[0], b[0], within) && isNear(a[1], b[1], within) && isNear(a[2], b[2], within);
}

ColorTriple tripleOf(const ColorValue& color) {
    return {color.red, color.green, color.blue};
}

/** A user's edit from one number to the next. */
void walk(ColorState& state, Component component, std::initializer_list<float> numbers) {
    const ColorState start = state;
    for (const float number : numbers)
        state.setComponent(component, number, start);
}

} // namespace

class ColorStateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Whatever makes the colour grey or black, the hue is there again when it means something.
    void hueMemory() {
        const ColorValue teal{0.1F, 0.4F, 0.35F, 1.0F};
        const auto away = std::vector<std::function<void(ColorState&)>>{
            [](ColorState& s) {
                walk(s, ColorModel::Saturation, {0.3F, 0.0F});
            },
            [](ColorState& s) {
                walk(s, ColorModel::Value, {0.2F, 0.0F});
            },
            [](ColorState& s) {
                s.setComponents(ColorModel::Hsv, {s.components(ColorModel::Hsv)[0], 0.0F, 0.5F});
            },
            [](ColorState& s) {
                s.setColor({0.3F, 0.3F, 0.3F, 1.0F});
            },
            [](ColorState& s) {
                s.setColor({0.0F, 0.0F, 0.0F, 1.0F});
            },
            [](ColorState& s) {
                s.setEdited({0.0F, 0.0F, 0.0F, 1.0F});
            },
            [](ColorState& s) {
                walk(s, ColorModel::Temperature, {0.0F});
                walk(s, ColorModel::Magenta, {0.0F});
            },
            [](ColorState& s) {
                s.setLinked(7);
                walk(s, ColorModel::Green, {0.2F, 0.0F});
            },
            [](ColorState& s) {
                walk(s, ColorModel::Cb, {0.0F});
                walk(s, ColorModel::Cr, {0.0F});
            },
        };
        for (std::size_t i = 0; i < away.size(); ++i) {
            ColorState state;
            state.setColor(teal);
            const float hue = state.component(ColorModel::Hue);
            away[i](state);
            walk(state, ColorModel::Saturation, {0.5F});
            walk(state, ColorModel::Value, {0.4F});
            // What leads to grey by steps passes other hues at last, by the last bits of a float.
            const float within = i == 6 || i == 8 ? 0.5F : 1e-5F;
            QVERIFY2(isNear(state.component(ColorModel::Hue), hue, within),
                     qPrintable(QString::number(i)));
            QCOMPARE(state.component(ColorModel::Saturation), 0.5F);
            QCOMPARE(state.component(ColorModel::Value), 0.4F);
        }
    }

    void typedNumbersStay() {
        ColorState state;
        state.setColor({0.2F, 0.3F, 0.1F, 1.0F});
        walk(state, ColorModel::Hue, {1.0F});
        QCOMPARE(state.component(ColorModel::Hue), 1.0F); // not 0, though it looks the same
        walk(state, ColorModel::Saturation, {0.0F});
        walk(state, ColorModel::Hue, {0.3F});
        QCOMPARE(state.component(ColorModel::Hue), 0.3F); // of a grey
        for (const ColorModel::Model model :
             {ColorModel::Hsv, ColorModel::Tmi, ColorModel::YCbCr}) {
            for (int nth = 0; nth < 3; ++nth) {
                const Component moved = ColorModel::component(model, nth);
                const ColorTriple before = state.components(model);
                walk(state, moved, {0.123F, 0.456F});
                QCOMPARE(state.component(moved), 0.456F);
                for (int other = 0; other < 3; ++other) {
                    const auto index = std::size_t(other);
                    if (other != nth)
                        QCOMPARE(state.components(model)[index], before[index]);
                }
            }
        }
    }

    // Every edit works from 0.001 to 1000 and below 0, and no number is lost on the way.
    void highDynamicRange() {
        for (float light = 0.001F; light < 2000.0F; light *= 10.0F) {
            ColorState state;
            const ColorValue color{light, light / 2.0F, light / 4.0F, 0.5F};
            state.setColor(color);
            QCOMPARE(state.color(), color);
            const ColorTriple hsv = state.components(ColorModel::Hsv);
            QVERIFY(isNear(hsv[1], 0.75F));
            QVERIFY(light <= 1.0F ? isNear(hsv[2], light) : isNear(hsv[2], 1.0F));
            QVERIFY(isNear(std::exp2(state.stops()), std::max(light, 1.0F)));
            walk(state, ColorModel::Saturation, {0.5F});
            QVERIFY(isNear(state.color().red / light, 1.0F));
            QVERIFY(isNear(state.color().blue / light, 0.5F));
        }
        ColorState state;
        state.setColor({8.0F, 4.0F, 0.0F, 1.0F});
        QCOMPARE(state.stops(), 3.0F);
        state.setColor({2.0F, 1.0F, 0.0F, 1.0F});
        QCOMPARE(state.stops(), 3.0F); // darker, and seen
        walk(state, ColorModel::Red, {100.0F, 0.001F});
        QCOMPARE(state.stops(), 3.0F); // not by an edit
        state.setColor({0.01F, 0.0F, 0.0F, 1.0F});
        QCOMPARE(state.stops(), 0.0F); // too dark to be seen
        state.setColor({-2.0F, 0.5F, 0.0F, 1.0F});
        QVERIFY(state.isBelowZero());
        QCOMPARE(state.component(ColorModel::Red), -2.0F);
        QCOMPARE(state.component(ColorModel::Saturation), 1.0F);
        walk(state, ColorModel::Value, {0.25F});
        QCOMPARE(tripleOf(state.color()), (ColorTriple{0.0F, 0.25F, 0.0F}));
    }

    void exposure() {
        ColorState state;
        state.setColor({0.5F, 0.25F, 0.125F, 1.0F});
        const ColorState start = state;
        state.setStops(3.0F, start);
        QCOMPARE(tripleOf(state.color()), (ColorTriple{4.0F, 2.0F, 1.0F}));
        QCOMPARE(state.component(ColorModel::Value), 0.5F);
        state.setStops(0.0F, start);
        QVERIFY(state == start);
        state.setStops(std::numeric_limits<float>::quiet_NaN(), start);
        QVERIFY(state == start);
        state.setStops(1e9F, start);
        QCOMPARE(state.stops(), ColorState::MostStops);
        state.setColor({FLT_MAX, 1.0F, -FLT_MAX, 1.0F});
        const ColorState largest = state;
        state.setStops(ColorState::MostStops, largest);
        QVERIFY(isFinite(state.color()));
    }

    void linkedChannels_data() {
        QTest::addColumn<QVector<float>>("numbers"); // linked, start, channel, number, result
        const auto row = [](const char* name, std::initializer_list<float> numbers) {
            QTest::newRow(name) << QVector<float>(numbers);
        };
        row("ratio", {7, 0.2F, 0.4F, 0.6F, 0, 0.4F, 0.4F, 0.8F, 1.2F});
        row("difference", {7, 0.0F, 0.4F, 0.6F, 0, 0.1F, 0.1F, 0.5F, 0.7F});
        row("two", {5, 0.2F, 0.4F, 0.6F, 2, 0.3F, 0.1F, 0.4F, 0.3F});
        row("another", {5, 0.2F, 0.4F, 0.6F, 1, 0.3F, 0.2F, 0.3F, 0.6F});
        row("down to 0", {7, 0.2F, 0.4F, 0.6F, 1, 0.0F, 0.0F, 0.0F, 0.0F});
        row("below 0", {3, 0.2F, 0.4F, 0.6F, 0, -0.2F, -0.2F, -0.4F, 0.6F});
    }
    void linkedChannels() {
        QFETCH(QVector<float>, numbers);
        ColorState state;
        state.setColor({numbers[1], numbers[2], numbers[3], 1.0F});
        state.setLinked(static_cast<unsigned>(numbers[0]));
        const ColorState start = state;
        const auto moved = static_cast<Component>(static_cast<int>(numbers[4]));
        state.setComponent(moved, 0.0F, start);
        state.setComponent(moved, 1e38F, start);
        QVERIFY(isFinite(state.color()));
        state.setComponent(moved, numbers[5], start);
        QVERIFY(isNear(tripleOf(state.color()), {numbers[6], numbers[7], numbers[8]}));
        state.setComponent(moved, start.component(moved), start);
        QCOMPARE(state.color(), start.color()); // to the bit
    }

    void modelsComeBack() {
        for (int option = 0; option < ColorSpace::Count; ++option) {
            for (const ColorModel::Model model :
                 {ColorModel::Rgb, ColorModel::Hsv, ColorModel::Tmi, ColorModel::YCbCr}) {
                for (int i = 0; i < 125; ++i) {
                    const auto part = [](int step) { return static_cast<float>(step % 5) / 4.0F; };
                    const ColorTriple rgb{part(i), part(i / 5), part(i / 25)};
                    QVERIFY(
                        isNear(rgbOf(model, componentsOf(model, rgb, option), option), rgb, 5e-6F));
                }
            }
        }
        QCOMPARE(componentsOf(ColorModel::Tmi, {0.2F, 0.5F, 0.8F}, 0)[0], 0.8F - 0.2F);
        QVERIFY(isNear(componentsOf(ColorModel::Tmi, {0.2F, 0.4F, 0.8F}, 0),
                       {0.6F, 0.1F, 1.4F / 3.0F}));
    }

    // What the display makes of a colour leads back to it.
    void displaysComeBack() {
        const auto curved = [](float x) { return std::copysign(std::sqrt(std::fabs(x)), x); };
        const auto straight = [](float x) { return x * std::fabs(x); };
        DisplayTransform matrix;
        matrix.toDisplay = [=](float* rgb, int pixels) {
            for (float* p = rgb; p < rgb + 3 * pixels; p += 3) {
                const float sum = (p[0] + p[1] + p[2]) * 0.1F;
                for (int i = 0; i < 3; ++i)
                    p[i] = curved(0.7F * p[i] + sum);
            }
        };
        matrix.fromDisplay = [=](float* rgb, int pixels) {
            for (float* p = rgb; p < rgb + 3 * pixels; p += 3) {
                for (int i = 0; i < 3; ++i)
                    p[i] = straight(p[i]);
                const float sum = (p[0] + p[1] + p[2]) * 0.1F;
                for (int i = 0; i < 3; ++i)
                    p[i] = (p[i] - sum) / 0.7F;
            }
        };
        for (const DisplayTransform& transform : {Kestrel::Test::gammaTransform(), matrix}) {
            const DisplayCall display(transform);
            for (float light = 0.001F; light < 2000.0F; light *= 3.0F) {
                const ColorValue color{light, -0.1F * light, 0.3F, 0.4F};
                const auto back = display.colorOf(display.displayed(color), color.alpha);
                QVERIFY(back && isNear(tripleOf(*back), tripleOf(color), 1e-5F));
            }
        }
    }
};

KXUI_TEST(ColorStateTest);
#include "ColorStateTest.moc"
