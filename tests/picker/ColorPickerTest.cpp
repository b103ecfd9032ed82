#include <KxUI/picker/ColorPicker_p.h>
#include <KxUI/values/LinearSlider_p.h>

#include "Transforms.h"
#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QLabel>
#include <QScrollArea>
#include <QSignalSpy>
#include <QToolButton>
#include <QtTest>

#include <memory>

using namespace Kestrel::UI;
using Kestrel::Test::moveMouse;
using Kestrel::Test::sendKey;

namespace {

const ColorValue Start{0.8F, 0.4F, 0.1F, 0.75F};

ColorPickerParts& partsOf(const ColorPicker& picker) {
    return ColorPickerPrivate::of(&picker).parts;
}

std::unique_ptr<ColorPicker> makePicker() {
    auto picker = std::make_unique<ColorPicker>();
    picker->setColor(Start);
    picker->show();
    return picker;
}

void press(QWidget& widget, const QPoint& at) {
    QTest::mousePress(&widget, Qt::LeftButton, {}, at);
}

void release(QWidget& widget, const QPoint& at) {
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, at);
}

/** What a user drags, and whether the page that it is on is seen at first. */
struct Dragged {
    const char* name;
    ColorPicker::Page page;
    std::function<QWidget*(ColorPickerParts&)> part;
};

std::vector<Dragged> draggedParts() {
    const auto row = [](std::size_t nth) {
        return [nth](ColorPickerParts& parts) -> QWidget* { return parts.rows[nth].slider; };
    };
    const auto wheel = [](ColorPickerParts& parts) -> QWidget* { return parts.wheel; };
    return {
        {"red", ColorPicker::RgbPage, row(0)},
        {"saturation", ColorPicker::HsvPage, row(1)},
        {"temperature", ColorPicker::TmiPage, row(0)},
        {"luma", ColorPicker::YCbCrPage, row(0)},
        {"alpha", ColorPicker::RgbPage,
         [](ColorPickerParts& parts) -> QWidget* { return parts.alpha.slider; }},
        {"exposure", ColorPicker::RgbPage,
         [](ColorPickerParts& parts) -> QWidget* { return parts.exposureSlider; }},
        {"number", ColorPicker::HsvPage,
         [](ColorPickerParts& parts) -> QWidget* { return parts.rows[2].label; }},
        {"wheel", ColorPicker::WheelPage, wheel},
        {"field", ColorPicker::FieldPage,
         [](ColorPickerParts& parts) -> QWidget* { return parts.field; }},
    };
}

/** Whether every part that is seen shows the same colour. */
bool agrees(const ColorPicker& picker) {
    const ColorPickerParts& parts = partsOf(picker);
    const ColorState& state = ColorPickerPrivate::of(&picker).state;
    bool same = parts.newSwatch->color() == state.color();
    const auto check = [&](const ColorPickerRow& row) {
        const float number = state.component(row.component());
        same = same && static_cast<float>(row.slider->value()) == number &&
               static_cast<float>(row.number->value()) == number;
    };
    for (const ColorPickerRow& row : parts.rows)
        check(row);
    check(parts.alpha);
    const ColorTriple hsv = state.components(ColorModel::Hsv);
    if (picker.shownPages() & ColorPicker::WheelPage)
        same = same && parts.wheel->hsv() == QVector3D(hsv[0], hsv[1], hsv[2]);
    if (picker.shownPages() & ColorPicker::FieldPage)
        same = same && ColorFieldPrivate::of(parts.field).state == state;
    return same && parts.code->text().endsWith(colorCode(state.color(), {}).text) &&
           static_cast<float>(parts.exposureNumber->value()) == state.stops();
}

void type(QWidget& field, const char* text) {
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&field, QString::fromUtf8(text));
    QTest::keyClick(&field, Qt::Key_Return);
}

} // namespace

class ColorPickerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { EditRest::stopTheClock(); }

    // One drag of each part: one edit, which all others show; Escape restores the bits.
    void everyPartEdits() {
        for (const Dragged& dragged : draggedParts()) {
            for (const bool escapes : {false, true}) {
                const auto picker = makePicker();
                picker->setCurrentPage(dragged.page);
                picker->grab();
                QWidget* part = dragged.part(partsOf(*picker));
                Kestrel::Test::EditLog<ColorPicker> log(*picker, [](const ColorPicker& from) {
                    return QVariant::fromValue(from.color());
                });
                bool agreed = true;
                log.answer = [&] { agreed = agreed && agrees(*picker); };
                const QPoint middle = part->rect().center();
                press(*part, middle);
                for (int i = 1; i <= 4; ++i)
                    moveMouse(*part, middle + QPoint(6 * i, -5 * i));
                QVERIFY2(picker->isEditing() && picker->color() != Start, dragged.name);
                if (escapes)
                    QVERIFY2(sendKey(*part, Qt::Key_Escape), dragged.name);
                release(*part, middle);
                QVERIFY2(agreed && agrees(*picker), dragged.name);
                const QString told = log.text;
                QVERIFY2(told.startsWith(QStringLiteral("SE")) &&
                             told.count(QLatin1Char('S')) == 1 &&
                             told.endsWith(escapes ? QStringLiteral("ER") : QStringLiteral("EF")) &&
                             told.count(QRegularExpression(QStringLiteral("[FR]"))) == 1,
                         dragged.name);
                QCOMPARE(picker->color() == Start, escapes);
                QVERIFY(log.values.last().value<ColorValue>() == picker->color());
            }
        }
    }

    void bracket() {
        Kestrel::Test::EditedWidget<ColorPicker> edited;
        edited.make = [] { return makePicker(); };
        edited.another = QVariant::fromValue(ColorValue{0.3F, 0.2F, 4.0F, 1.0F});
        edited.part = [](ColorPicker& picker) { return partsOf(picker).rows[1].slider; };
        const auto start = std::make_shared<QPoint>();
        edited.press = [=](ColorPicker& picker) {
            LinearSlider& slider = *partsOf(picker).rows[1].slider;
            press(slider, *start = LinearSliderPrivate::of(&slider)
                                       ->geometry()
                                       .handle(slider.value())
                                       .center()
                                       .toPoint());
        };
        edited.move = [=](ColorPicker& picker, int nth) {
            moveMouse(*edited.part(picker), *start + QPoint(9 * nth, 0));
        };
        edited.release = [=](ColorPicker& picker) { release(*edited.part(picker), *start); };
        edited.key = Qt::Key_Right;
        edited.once = [](ColorPicker& picker) {
            QTest::mouseClick(partsOf(picker).oldSwatch, Qt::LeftButton);
        };
        edited.assisted = false;
        checkEditBracket(std::move(edited));
    }

    // A host that clamps wins, and one that goes away may.
    void hosts() {
        const auto picker = makePicker();
        LinearSlider* slider = partsOf(*picker).rows[0].slider;
        const QPoint at = slider->rect().center();
        const auto host = connect(picker.get(), &ColorPicker::valueEdited, [&](ColorValue color) {
            color.red = std::min(color.red, 0.25F);
            picker->setColor(color);
        });
        press(*slider, at);
        moveMouse(*slider, at + QPoint(8, 0));
        QCOMPARE(picker->color().red, 0.25F);
        QVERIFY(picker->isEditing() && agrees(*picker));
        disconnect(host);
        picker->cancelEdit();
        QCOMPARE(picker->color(), Start);
        release(*slider, at);

        for (const char* signal : {SIGNAL(editStarted()), SIGNAL(editFinished(bool)),
                                   SIGNAL(colorChanged(Kestrel::UI::ColorValue))}) {
            auto* gone = makePicker().release();
            connect(gone, signal, gone, SLOT(deleteLater()));
            QPointer<ColorPicker> alive(gone);
            connect(gone, &ColorPicker::valueEdited, qApp, [&] { delete alive.data(); });
            LinearSlider* part = partsOf(*gone).rows[1].slider;
            const QPointer<LinearSlider> partAlive(part);
            press(*part, part->rect().center());
            if (partAlive)
                moveMouse(*part, QPoint(0, 0));
            QVERIFY(!alive);
        }
    }

    // Old, swatches, codes and drops are colours as a whole.
    void wholeColors() {
        const auto picker = makePicker();
        QSignalSpy finished(picker.get(), &ColorPicker::editFinished);
        picker->setPreviousColor({4.0F, 1.0F, 0.0F, 1.0F});
        QTest::mouseClick(partsOf(*picker).oldSwatch, Qt::LeftButton);
        QCOMPARE(picker->color(), picker->previousColor());
        QCOMPARE(picker->exposure(), 2.0);
        QVERIFY(partsOf(*picker).code->text().startsWith(QChar(0x2248)));
        type(*partsOf(*picker).code, "0.25 .5 1");
        QCOMPARE(picker->color(), (ColorValue{0.25F, 0.5F, 1.0F, 1.0F}));
        type(*partsOf(*picker).code, "no colour");
        QCOMPARE(finished.count(), 2);
        QVERIFY(sendKey(*partsOf(*picker).code, Qt::Key_Escape));
        QCOMPARE(partsOf(*picker).code->text(), QStringLiteral("#4080ff"));
        picker->setAlphaEnabled(false);
        type(*partsOf(*picker).code, "#ff000080");
        QCOMPARE(picker->color(), (ColorValue{1.0F, 0.0F, 0.0F, 1.0F}));
        QVERIFY(!partsOf(*picker).alpha.slider->isVisible());
        picker->setCurrentPage(ColorPicker::SwatchPage);
        SwatchModel own;
        own.append({0.0F, 0.0F, 2.0F, 1.0F});
        picker->setSwatches(&own);
        Q_EMIT partsOf(*picker).grid->colorChosen(own.color(0));
        QCOMPARE(picker->color(), own.color(0));
        QTest::mouseClick(partsOf(*picker).addSwatch, Qt::LeftButton);
        QCOMPARE(own.count(), 2);
        QCOMPARE(finished.count(), 4);
    }

    void swatchesOfTheHostMayGo() {
        const auto picker = makePicker();
        auto own = std::make_unique<SwatchModel>();
        picker->setSwatches(own.get());
        QCOMPARE(picker->swatches(), own.get());
        own.reset();
        QVERIFY(picker->swatches());
        picker->setCurrentPage(ColorPicker::SwatchPage);
        QTest::mouseClick(partsOf(*picker).addSwatch, Qt::LeftButton);
        QCOMPARE(picker->swatches()->count(), 1);
    }

    void numbersCalculateAndLink() {
        const auto picker = makePicker();
        type(*partsOf(*picker).rows[0].number, "0.2*2");
        QCOMPARE(picker->color().red, 0.4F);
        partsOf(*picker).rows[0].link->click();
        partsOf(*picker).rows[1].link->click();
        type(*partsOf(*picker).rows[0].number, "40");
        QCOMPARE(picker->color(), (ColorValue{40.0F, 40.0F, 0.1F, 0.75F}));
        QCOMPARE(partsOf(*picker).rows[0].slider->maximum(), 50.0);
        QCOMPARE(picker->exposure(), 0.0); // not by the user's numbers
        type(*partsOf(*picker).exposureNumber, "-3");
        QCOMPARE(picker->color().red, 5.0F);
        QVERIFY(agrees(*picker));
    }

    // The wheel reads the picker's light, and is told what the light does not tell.
    void wheelFollows() {
        const auto picker = makePicker();
        ColorWheel* const wheel = partsOf(*picker).wheel;
        QSignalSpy edits(wheel, &ColorWheel::editStarted);
        QSignalSpy told(wheel, &ColorWheel::hsvChanged);
        const ColorValue blue{0.25F, 0.5F, 1.0F, 1.0F};
        picker->setColor(blue);
        const QVector3D shown = wheel->hsv();
        QVERIFY(std::abs(shown.x() - 11 / 18.0F) < 1e-6F && shown.y() == 0.75F &&
                shown.z() == 1.0F);
        for (const float grey : {0.5F, 0.0F}) { // black has no saturation either
            picker->setColor({grey, grey, grey, 1.0F});
            QCOMPARE(wheel->hsv(), QVector3D(shown.x(), grey > 0.0F ? 0.0F : 0.75F, grey));
            QCOMPARE(wheel->ringValue(), grey);
            picker->setColor(blue);
        }
        picker->setColor({4.0F, 4.0F, 1.0F, 1.0F}); // at the picker's exposure
        QVERIFY(wheel->value() == 1.0F && wheel->saturation() == 0.75F);
        type(*partsOf(*picker).exposureNumber, "0");
        QCOMPARE(wheel->value(), 1.0F);
        QCOMPARE(picker->color().red, 1.0F);

        const QVector3D before = wheel->hsv();
        picker->setCurrentPage(ColorPicker::HsvPage);
        type(*partsOf(*picker).rows[2].number, "0");
        QCOMPARE(picker->color().red, 0.0F);
        QCOMPARE(wheel->hsv(), QVector3D(before.x(), before.y(), 0.0F));
        QCOMPARE(edits.count() + told.count(), 0);
        QVERIFY(sendKey(*wheel, Qt::Key_PageUp));
        QCOMPARE(wheel->hsv(), QVector3D(before.x(), before.y(), 0.01F));
        QVERIFY(picker->color().red > picker->color().blue && agrees(*picker));
    }

    void belowZeroIsSaid() {
        const auto picker = makePicker();
        picker->setColor({-0.5F, 0.5F, 0.0F, 1.0F});
        QVERIFY(partsOf(*picker).note->isVisible());
        picker->setCurrentPage(ColorPicker::FieldPage);
        QVERIFY(!partsOf(*picker).note->isVisible());
        QCOMPARE(picker->color().red, -0.5F);
        picker->setColor({NAN, 0.0F, 0.0F, 1.0F});
        picker->setColor({1.0F, 0.0F, INFINITY, 1.0F});
        QCOMPARE(picker->color().red, -0.5F);
    }

    void pages() {
        const auto picker = makePicker();
        QSignalSpy shown(picker.get(), &ColorPicker::shownPagesChanged);
        const auto seen = [&] { return static_cast<int>(picker->shownPages()); };
        QCOMPARE(seen(), ColorPicker::WheelPage | ColorPicker::RgbPage);
        QVERIFY(Kestrel::Test::focus(*picker));
        QTest::keyClick(picker.get(), Qt::Key_5, Qt::ControlModifier);
        QCOMPARE(int(picker->currentPage()), int(ColorPicker::TmiPage));
        picker->setCurrentPage(ColorPicker::FieldPage);
        QCOMPARE(seen(), ColorPicker::FieldPage | ColorPicker::TmiPage);
        QCOMPARE(int(partsOf(*picker).field->pinned()), int(ColorModel::Intensity));
        QCOMPARE(shown.count(), 2);
        const QByteArray saved = picker->saveState();
        picker->setPages(ColorPicker::WheelPage | ColorPicker::HsvPage);
        QCOMPARE(seen(), ColorPicker::WheelPage | ColorPicker::HsvPage);
        picker->setCurrentPage(ColorPicker::RgbPage); // not offered
        QCOMPARE(int(picker->currentPage()), int(ColorPicker::WheelPage));
        QVERIFY(!partsOf(*picker).pictureBar->isVisible());

        const ColorPicker other;
        for (int size = 0; size < saved.size(); ++size)
            QVERIFY(!picker->restoreState(saved.left(size)));
        QVERIFY(!picker->restoreState(QByteArray(64, 'x')));
        QCOMPARE(seen(), ColorPicker::WheelPage | ColorPicker::HsvPage);
        QVERIFY(picker->restoreState(saved));
        QCOMPARE(picker->saveState(), saved);
        picker->setPages({});
        QVERIFY(!partsOf(*picker).pictures->isVisible());
        picker->setPages(ColorPicker::FieldPage);
        QCOMPARE(seen(), int(ColorPicker::FieldPage));
        QVERIFY(!partsOf(*picker).rows[0].slider->isVisible());
        QCOMPARE(int(partsOf(*picker).field->pinned()), int(ColorModel::Hue));
    }

    // One movement asks the transform once for every gradient that changes.
    void transformsAreCalledOnce() {
        const auto picker = makePicker();
        int gradients = 0;
        DisplayTransform counting = Kestrel::Test::gammaTransform();
        counting.toDisplay = [&](float*, int pixels) { gradients += pixels > 16; };
        picker->setDisplayTransform(counting);
        picker->grab();
        for (const auto& [page, most] :
             {std::pair(ColorPicker::WheelPage, 4), std::pair(ColorPicker::FieldPage, 5)}) {
            picker->setCurrentPage(page);
            picker->grab();
            for (int i = 0; i < 3; ++i) {
                gradients = 0;
                const float x = static_cast<float>(i) * 0.1F;
                picker->setColor({0.3F + x, 0.6F - x, 0.2F + x, 1.0F});
                picker->grab();
                QVERIFY(gradients <= most);
            }
        }
    }

    // Nothing that is coloured forgets the transform.
    void everythingIsTransformed() {
        for (const ColorPicker::Page page : {ColorPicker::WheelPage, ColorPicker::FieldPage,
                                             ColorPicker::SwatchPage, ColorPicker::HsvPage}) {
            const auto picker = makePicker();
            picker->setColor({0.9F, 0.2F, 0.1F, 1.0F});
            picker->setPreviousColor({0.1F, 0.9F, 0.2F, 1.0F});
            picker->swatches()->append({0.9F, 0.1F, 0.8F, 1.0F});
            picker->setCurrentPage(page);
            const QImage plain = picker->grab().toImage();
            picker->setDisplayTransform([] {
                DisplayTransform inverse = Kestrel::Test::inverseTransform();
                inverse.name.clear(); // which would take room
                return inverse;
            }());
            const QImage inverse = picker->grab().toImage();
            int forgotten = 0;
            int colored = 0;
            for (int y = 0; y < plain.height(); ++y) {
                for (int x = 0; x < plain.width(); ++x) {
                    const QColor color = plain.pixelColor(x, y);
                    if (color.hsvSaturation() < 120 || color.value() < 120)
                        continue;
                    ++colored;
                    forgotten += color == inverse.pixelColor(x, y);
                }
            }
            QVERIFY(colored > 3000);
            // The palette's own blue: the bars and the exposure.
            const int own = countOwn(*picker, plain);
            QVERIFY2(
                forgotten <= own,
                qPrintable(
                    QStringLiteral("%1 of %2, page %3").arg(forgotten).arg(colored).arg(page)));
        }
    }

    void throwingTransformsAreToldOnce() {
        const auto picker = makePicker();
        DisplayTransform thrown;
        thrown.toDisplay = [](float*, int) { throw std::runtime_error("no processor"); };
        thrown.fromDisplay = thrown.toDisplay;
        QTest::ignoreMessage(QtWarningMsg, "KxUI - a display transform threw: no processor");
        picker->setDisplayTransform(thrown);
        picker->setCurrentPage(ColorPicker::FieldPage);
        picker->grab();
        type(*partsOf(*picker).code, "#123456");
        QCOMPARE(picker->color(), Start);
        QVERIFY(picker->displayTransform().toDisplay);
    }

    // The wheel of the mouse scrolls the panel, whatever it is over.
    void scrolls() {
        QScrollArea area;
        auto* picker = new ColorPicker;
        area.setWidget(picker);
        area.resize(300, 120);
        area.show();
        for (QWidget* part : {static_cast<QWidget*>(partsOf(*picker).wheel),
                              static_cast<QWidget*>(partsOf(*picker).rows[0].slider),
                              static_cast<QWidget*>(partsOf(*picker).rows[0].number),
                              static_cast<QWidget*>(partsOf(*picker).option)}) {
            part->clearFocus();
            QVERIFY(!Kestrel::Test::turnWheel(*part, -120));
        }
        QCOMPARE(picker->color(), ColorValue());
    }

    void compactFits() {
        const auto picker = makePicker();
        picker->setCompact(true);
        picker->resize(220, 600);
        for (const ColorPicker::Page page : {ColorPicker::YCbCrPage, ColorPicker::FieldPage}) {
            picker->setCurrentPage(page);
            QVERIFY(picker->minimumSizeHint().width() <= 240);
            const QRect inside = picker->rect();
            for (QWidget* part : picker->findChildren<QWidget*>()) {
                if (part->isVisible() && part->parentWidget() == partsOf(*picker).numbers)
                    QVERIFY(
                        inside.contains(QRect(part->mapTo(picker.get(), QPoint()), part->size())));
            }
        }
    }

private:
    static int countOwn(const ColorPicker& picker, const QImage& image) {
        int count = 0;
        for (const QWidget* part : {static_cast<const QWidget*>(partsOf(picker).pictureBar),
                                    static_cast<const QWidget*>(partsOf(picker).numberBar),
                                    static_cast<const QWidget*>(partsOf(picker).pinBar),
                                    static_cast<const QWidget*>(partsOf(picker).exposureSlider)}) {
            if (!part->isVisible())
                continue;
            const QRect area(part->mapTo(&picker, QPoint()), part->size());
            for (int y = area.top(); y <= area.bottom(); ++y) {
                for (int x = area.left(); x <= area.right(); ++x)
                    count += image.pixelColor(x, y).hsvSaturation() >= 120;
            }
        }
        return count + 200; // lines around what has the focus
    }
};

KXUI_TEST(ColorPickerTest);
#include "ColorPickerTest.moc"
