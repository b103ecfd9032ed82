#include "Transforms.h"

#include <KxUI/picker/ColorButton.h>
#include <KxUI/picker/ColorMime_p.h>
#include <KxUI/picker/ColorPicker.h>
#include <KxUI/picker/ColorPopup_p.h>
#include <KxUI/picker/ColorSlider.h>
#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QVector4D>

using namespace Kestrel::UI;
using Kestrel::Test::sendKey;

namespace {

const ColorValue Orange{1.0F, 0.5F, 0.0F, 1.0F};
const ColorValue Blue{0.0F, 0.25F, 1.0F, 1.0F};

QVector4D vectorOf(const ColorValue& color) {
    return {color.red, color.green, color.blue, color.alpha};
}

ColorSlider* sliderOf(const ColorPicker& picker) {
    const auto all = picker.findChildren<ColorSlider*>();
    for (ColorSlider* slider : all) {
        if (slider->isVisible() && slider->component() == ColorModel::Green)
            return slider;
    }
    return nullptr;
}

/** A window with a button that is at a colour, and what the button tells. */
struct Panel {
    Panel() {
        window.setGeometry(50, 50, 200, 80);
        button->setGeometry(10, 10, 60, 24);
        button->setColor(Orange);
        window.show();
        log = std::make_unique<Kestrel::Test::EditLog<ColorButton>>(
            *button, [](const ColorButton& each) { return vectorOf(each.color()); });
    }
    ColorPopup* popup() const { return button->findChild<ColorPopup*>(); }
    void press() {
        slider = sliderOf(*button->picker());
        QTest::mousePress(slider.data(), Qt::LeftButton, {}, QPoint(30, slider->height() / 2));
    }
    void move(int x) { Kestrel::Test::moveMouse(*slider, QPoint(x, slider->height() / 2)); }
    void release() {
        QTest::mouseRelease(slider.data(), Qt::LeftButton, {}, QPoint(40, slider->height() / 2));
    }

    QWidget window;
    QPointer<ColorButton> button = new ColorButton(&window);
    QPointer<ColorSlider> slider;
    std::unique_ptr<Kestrel::Test::EditLog<ColorButton>> log;
};

} // namespace

class ColorButtonTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void places() {
        const QRect area(0, 0, 1000, 800);
        const QSize size(240, 400);
        struct Row {
            QRect button;
            bool isMirrored;
            QPoint at;
        };
        const Row rows[] = {
            {{100, 100, 60, 24}, false, {100, 126}}, {{100, 100, 60, 24}, true, {0, 126}},
            {{900, 100, 60, 24}, false, {760, 126}}, {{100, 700, 60, 24}, false, {100, 298}},
            {{100, 390, 60, 24}, false, {100, 400}},
        };
        for (const Row& row : rows)
            QCOMPARE(ColorPopup::placeBeside(row.button, size, area, row.isMirrored).topLeft(),
                     row.at);
        QCOMPARE(ColorPopup::placeBeside({0, 0, 9, 9}, {2000, 2000}, area, false), area);
    }

    // Each drag in the picker is an edit; what ends the picker itself is none, but a way back.
    void editsInThePicker() {
        Panel panel;
        panel.button->click();
        QVERIFY(panel.button->isOpen() && panel.popup());
        QCOMPARE(panel.button->picker()->previousColor(), Orange);
        panel.press();
        panel.move(60);
        panel.move(90);
        panel.release();
        QVERIFY(QRegularExpression(QStringLiteral("^SE+F$")).match(panel.log->text).hasMatch());
        QCOMPARE(panel.button->picker()->color(), panel.button->color());
        const ColorValue picked = panel.button->color();
        QVERIFY(picked != Orange);
        // Escape in a drag takes that one back, and the next closes, back to the first colour.
        panel.log->text.clear();
        panel.press();
        panel.move(120);
        QVERIFY(sendKey(*panel.slider, Qt::Key_Escape));
        QVERIFY(panel.log->text.startsWith(QLatin1Char('S')) &&
                panel.log->text.endsWith(QLatin1Char('R')));
        QCOMPARE(panel.button->color(), picked);
        QCOMPARE(panel.button->picker()->color(), picked);
        panel.release();
        QVERIFY(panel.button->isOpen() && !panel.button->picker()->isEditing());
        panel.log->text.clear();
        sendKey(*panel.popup(), Qt::Key_Escape);
        QCOMPARE(panel.log->text, QStringLiteral("SEF"));
        QCOMPARE(panel.button->color(), Orange);
        QVERIFY(!panel.button->isOpen());
        // Without a change it tells nothing; Return keeps.
        panel.button->setOpen(true);
        sendKey(*panel.popup(), Qt::Key_Escape);
        QCOMPARE(panel.log->text, QStringLiteral("SEF"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        panel.button->setOpen(true);
        panel.button->setColor(Blue);
        QCOMPARE(panel.button->picker()->color(), Blue);
        sendKey(*panel.popup(), Qt::Key_Return);
        QVERIFY(!panel.button->isOpen());
        QCOMPARE(panel.button->color(), Blue);
        QCOMPARE(panel.log->text, QStringLiteral("SEF"));
    }

    // A host that answers wins, in the picker, too.
    void hostAnswers() {
        Panel panel;
        panel.button->setOpen(true);
        panel.log->answer = [&] { panel.button->setColor(Blue); };
        panel.press();
        panel.move(60);
        QCOMPARE(panel.button->color(), Blue);
        QCOMPARE(panel.button->picker()->color(), Blue);
        panel.release();
        QVERIFY(!panel.button->isEditing());
    }

    void sharedPicker() {
        ColorPicker picker;
        {
            Panel first;
            Panel second;
            for (Panel* panel : {&first, &second})
                panel->button->setPicker(&picker);
            second.button->setColor(Blue);
            second.button->setAlphaEnabled(false);
            first.button->setOpen(true);
            first.press();
            first.move(60);
            second.button->setOpen(true); // in the middle of it
            QVERIFY(!first.button->isOpen() && !first.button->isEditing());
            QCOMPARE(picker.color(), Blue);
            QVERIFY(!picker.isAlphaEnabled());
            QCOMPARE(ColorPopup::of(&picker), second.popup());
            const ColorValue kept = first.button->color();
            second.press();
            second.move(90);
            second.release();
            QCOMPARE(first.button->color(), kept);
            QVERIFY(second.button->color() != Blue);
            second.button->setOpen(false);
            QVERIFY(!picker.parentWidget() && !picker.isVisible());
            second.button->setOpen(true);
        }
        // The buttons went while it was open.
        QVERIFY(!picker.parentWidget());
        Panel panel;
        auto* mortal = new ColorPicker;
        panel.button->setPicker(mortal);
        panel.button->setOpen(true);
        delete mortal;
        QVERIFY(!panel.button->isOpen());
        panel.button->setOpen(true);
        QVERIFY(panel.button->isOpen() && panel.button->picker());
    }

    void deletedWhileOpen() {
        for (int nth = 0; nth < 8; ++nth) {
            Panel panel;
            int told = 0;
            const auto tell = [&] {
                if (told++ == nth)
                    delete panel.button.data();
            };
            connect(panel.button.data(), &ColorButton::openChanged, qApp, tell);
            connect(panel.button.data(), &ColorButton::editStarted, qApp, tell);
            connect(panel.button.data(), &ColorButton::colorChanged, qApp, tell);
            connect(panel.button.data(), &ColorButton::valueEdited, qApp, tell);
            connect(panel.button.data(), &ColorButton::editFinished, qApp, tell);
            panel.button->setOpen(true);
            const std::function<void()> steps[] = {
                [&] { panel.press(); }, [&] { panel.move(60); }, [&] { panel.move(90); },
                [&] { panel.release(); }, [&] { panel.button->setOpen(false); }};
            for (const auto& step : steps) {
                if (panel.button)
                    step();
            }
            delete panel.button.data();
        }
    }

    void bracket() {
        Kestrel::Test::EditedWidget<ColorButton> edited;
        edited.make = [] {
            auto button = std::make_unique<ColorButton>();
            button->setColor(Orange);
            copyColor({0.5F, 0.5F, 0.25F, 1.0F}, {});
            return button;
        };
        edited.value = [](const ColorButton& button) { return vectorOf(button.color()); };
        edited.set = [](ColorButton& button, const QVariant& wanted) {
            const auto to = wanted.value<QVector4D>();
            button.setColor({to.x(), to.y(), to.z(), to.w()});
        };
        edited.another = vectorOf(Blue);
        edited.once = [](ColorButton& button) { button.paste(); };
        edited.assisted = false;
        Kestrel::Test::checkEditBracket(edited);
    }

    void alphaAndTransform() {
        Panel panel;
        panel.button->setAlphaEnabled(false);
        panel.button->setDisplayTransform(Kestrel::Test::inverseTransform());
        copyColor({0.5F, 0.5F, 0.25F, 0.125F}, {});
        panel.button->paste();
        QCOMPARE(panel.button->color(), (ColorValue{0.5F, 0.5F, 0.25F, 1.0F}));
        panel.button->setTitle(QStringLiteral("Gain"));
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(panel.button.data());
        QCOMPARE(seen->text(QAccessible::Name), QStringLiteral("Gain"));
        QVERIFY(seen->text(QAccessible::Value).startsWith(QLatin1String("#8080bf")));
        panel.button->setColor({0, 0, 0, 1});
        const QImage image = panel.button->grab().toImage();
        QCOMPARE(image.pixelColor(image.rect().center()), QColor(Qt::white));
    }
};

KXUI_TEST(ColorButtonTest);
#include "ColorButtonTest.moc"
