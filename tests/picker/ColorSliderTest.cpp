#include <KxUI/picker/ColorField_p.h>
#include <KxUI/picker/ColorSlider_p.h>

#include "Transforms.h"
#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QScrollArea>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Kestrel::UI;
using Kestrel::Test::moveMouse;
using Kestrel::Test::sendKey;

namespace {

std::unique_ptr<ColorSlider> makeSlider(ColorModel::Component component) {
    auto slider = std::make_unique<ColorSlider>();
    slider->setComponent(component);
    slider->setColor({0.2F, 0.4F, 0.6F, 0.8F});
    slider->resize(214, 18);
    return slider;
}

QPoint handleOf(const LinearSlider& slider, int right = 0) {
    return LinearSliderPrivate::of(&slider)->geometry().handle(slider.value()).center().toPoint() +
           QPoint(right, 0);
}

QPoint markerOf(const ColorField& field) {
    const ColorPlane plane = ColorFieldPrivate::of(&field).plane();
    return plane.pointOf(ColorFieldPrivate::of(&field).state.components(plane.model())).toPoint();
}

std::unique_ptr<ColorField> makeField(ColorModel::Component pinned = ColorModel::Hue) {
    auto field = std::make_unique<ColorField>();
    field->resize(114, 114);
    field->setPinned(pinned);
    field->setColor({0.2F, 0.4F, 0.6F, 0.8F});
    return field;
}

/** Colours of a widget's inside that differ from others of it by more than light. */
int coloredPixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            count += color.saturation() > 60 && color.value() > 60;
        }
    }
    return count;
}

} // namespace

class ColorSliderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void bracket() {
        for (const ColorModel::Component component : {ColorModel::Green, ColorModel::Value}) {
            Kestrel::Test::EditedWidget<ColorSlider> edited;
            edited.make = [=] { return makeSlider(component); };
            edited.another = 0.77;
            const auto start = std::make_shared<QPoint>();
            edited.press = [=](ColorSlider& slider) {
                QTest::mousePress(&slider, Qt::LeftButton, {}, *start = handleOf(slider));
            };
            edited.move = [=](ColorSlider& slider, int nth) {
                moveMouse(slider, *start + QPoint(15 * nth, 0));
            };
            edited.release = [=](ColorSlider& slider) {
                QTest::mouseRelease(&slider, Qt::LeftButton, {}, *start + QPoint(45, 0));
            };
            edited.key = Qt::Key_Up;
            edited.notch = [](ColorSlider& slider) {
                return Kestrel::Test::turnWheel(slider, 120);
            };
            edited.once = [](ColorSlider& slider) { slider.resetToDefault(); };
            checkEditBracket(std::move(edited));
        }
        Kestrel::Test::EditedWidget<ColorField> edited;
        edited.make = [] { return makeField(); };
        edited.another = QVariant::fromValue(ColorValue{0.9F, 0.1F, 0.3F, 1.0F});
        const auto start = std::make_shared<QPoint>();
        edited.press = [=](ColorField& field) {
            QTest::mousePress(&field, Qt::LeftButton, {}, *start = markerOf(field));
        };
        edited.move = [=](ColorField& field, int nth) {
            moveMouse(field, *start + QPoint(0, -10 * nth));
        };
        edited.release = [=](ColorField& field) {
            QTest::mouseRelease(&field, Qt::LeftButton, {}, *start + QPoint(0, -30));
        };
        edited.key = Qt::Key_Up;
        edited.assisted = false;
        checkEditBracket(std::move(edited));
    }

    void sliderEditsTheColor() {
        const auto slider = makeSlider(ColorModel::Saturation);
        QSignalSpy colors(slider.get(), &ColorSlider::colorChanged);
        const QPoint at = handleOf(*slider);
        QTest::mousePress(slider.get(), Qt::LeftButton, {}, at);
        moveMouse(*slider, QPoint(-500, at.y()));
        QCOMPARE(slider->color(), (ColorValue{0.6F, 0.6F, 0.6F, 0.8F}));
        moveMouse(*slider, at);
        QTest::mouseRelease(slider.get(), Qt::LeftButton, {}, at);
        QCOMPARE(colors.count(), 2);
        QVERIFY(qAbs(slider->color().red - 0.2F) < 0.01F); // the hue was remembered
        slider->setComponent(ColorModel::Alpha);
        QCOMPARE(slider->value(), double(0.8F));
        slider->setColor({NAN, 0.0F, 0.0F, 1.0F});
        QCOMPARE(slider->value(), double(0.8F));
    }

    // The range follows what was done, not what is being done.
    void rangeGrows() {
        const auto slider = makeSlider(ColorModel::Red);
        const auto set = [&](float red) { slider->setColor({red, 0.0F, 0.0F, 1.0F}); };
        for (const auto& [red, end] :
             {std::pair(1.0F, 1.0), std::pair(1.5F, 2.0), std::pair(60.0F, 100.0),
              std::pair(30.0F, 100.0), std::pair(19.0F, 100.0), std::pair(15.0F, 20.0),
              std::pair(0.1F, 20.0), std::pair(0.1F, 1.0), std::pair(-3.0F, 5.0)}) {
            set(red);
            if (red >= 0.0F)
                QCOMPARE(slider->maximum(), end);
            QCOMPARE(slider->minimum(), 0.0);
        }
        const auto chroma = makeSlider(ColorModel::Cb);
        QCOMPARE(chroma->minimum(), -0.5);
        chroma->setColor({0.0F, 0.0F, 3.0F, 1.0F});
        QCOMPARE(chroma->maximum(), 2.0);
        QCOMPARE(chroma->minimum(), -2.0);
        const auto during = makeSlider(ColorModel::Red);
        QTest::mousePress(during.get(), Qt::LeftButton, {}, handleOf(*during));
        moveMouse(*during, handleOf(*during, 20));
        during->setColor({7.0F, 0.0F, 0.0F, 1.0F});
        QCOMPARE(during->maximum(), 1.0);
        QTest::mouseRelease(during.get(), Qt::LeftButton, {}, handleOf(*during));
        QCOMPARE(during->maximum(), 10.0);
    }

    // One call for a gradient, and none where it stays as it is.
    void transformsAreCalledOnce() {
        int calls = 0;
        DisplayTransform counting;
        counting.toDisplay = [&](float*, int pixels) { calls += pixels > 16; };
        const auto slider = makeSlider(ColorModel::Red);
        slider->setDisplayTransform(counting);
        const auto painted = [&](QWidget& widget) {
            calls = 0;
            widget.grab();
            return calls;
        };
        QCOMPARE(painted(*slider), 1);
        QCOMPARE(painted(*slider), 0);
        slider->setColor({0.9F, 0.4F, 0.6F, 0.8F});
        QCOMPARE(painted(*slider), 0); // its own number only
        slider->setColor({0.9F, 0.5F, 0.6F, 0.8F});
        QCOMPARE(painted(*slider), 1);
        const auto field = makeField(ColorModel::Red);
        field->setDisplayTransform(counting);
        QCOMPARE(painted(*field), 1);
        field->setColor({0.2F, 0.9F, 0.1F, 0.8F});
        QCOMPARE(painted(*field), 0);
        field->setColor({0.3F, 0.9F, 0.1F, 0.8F});
        QCOMPARE(painted(*field), 1);
        int later = 0;
        QTRY_VERIFY((later += painted(*field)) == 1); // in full, after a rest
        QCOMPARE(painted(*field), 0);
    }

    void picturesShowWhatThereIs() {
        const auto slider = makeSlider(ColorModel::Red);
        slider->setColor({0.0F, 1.0F, 0.0F, 1.0F});
        const auto at = [&](int x) { return slider->grab().toImage().pixelColor(x, 9); };
        QVERIFY(at(30).green() > 250 && at(30).red() < 40);
        QVERIFY(at(200).green() > 250 && at(200).red() > 220);
        slider->setLayoutDirection(Qt::RightToLeft);
        QVERIFY(at(20).red() > 220 && at(180).red() < 60);
        for (const ColorModel::Component component :
             {ColorModel::Hue, ColorModel::Saturation, ColorModel::Blue, ColorModel::Alpha}) {
            const auto shown = makeSlider(component);
            const QImage plain = shown->grab().toImage();
            shown->setDisplayTransform(Kestrel::Test::inverseTransform());
            const QImage inverse = shown->grab().toImage();
            QVERIFY(coloredPixels(plain) > 400);
            QVERIFY(plain.pixelColor(150, 9) != inverse.pixelColor(150, 9));
        }
    }

    void fieldIsDraggedAlongItsEdges() {
        const auto field = makeField();
        QTest::mousePress(field.get(), Qt::LeftButton, {}, markerOf(*field));
        moveMouse(*field, QPoint(500, -500));
        QCOMPARE(field->color().blue, 1.0F);
        QCOMPARE(field->color().red, 0.0F);
        moveMouse(*field, QPoint(-500, -500));
        QCOMPARE(field->color(), (ColorValue{1.0F, 1.0F, 1.0F, 0.8F}));
        moveMouse(*field, QPoint(500, 500), Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(field->color().blue, 1.0F); // saturation alone
        QVERIFY(sendKey(*field, Qt::Key_Escape));
        QCOMPARE(field->color(), (ColorValue{0.2F, 0.4F, 0.6F, 0.8F}));
        QTest::mouseRelease(field.get(), Qt::LeftButton, {}, QPoint(50, 50));
        field->setPinned(ColorModel::Cr);
        QCOMPARE(int(field->horizontalComponent()), int(ColorModel::Luma));
        QCOMPARE(int(field->verticalComponent()), int(ColorModel::Cb));
        field->setPinned(ColorModel::Alpha);
        QCOMPARE(int(field->pinned()), int(ColorModel::Cr));
    }

    void assistiveTools() {
        const auto slider = makeSlider(ColorModel::Magenta);
        const auto field = makeField();
        QCOMPARE(QAccessible::queryAccessibleInterface(slider.get())->text(QAccessible::Name),
                 QStringLiteral("Magenta"));
        const QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(field.get());
        QCOMPARE(int(seen->role()), int(QAccessible::ColorChooser));
        QCOMPARE(seen->text(QAccessible::Value), QStringLiteral("Saturation 0.667, Value 0.6"));
    }
};

KXUI_TEST(ColorSliderTest);
#include "ColorSliderTest.moc"
