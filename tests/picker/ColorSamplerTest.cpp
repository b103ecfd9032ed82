#include <KxUI/picker/ColorSampler_p.h>
#include <KxUI/picker/SampleMagnifier_p.h>
#include <KxUI/picker/platform/ScreenColor_p.h>
#include <support/Input.h>
#include <support/TestRegistry.h>

#include <QApplication>
#include <QPainter>

#include <functional>

using namespace Kestrel::UI;
using Kestrel::Test::moveMouse;
using Kestrel::Test::sendKey;

namespace {

const QPoint Elsewhere(3000, 3000);

/** A desktop of one colour. */
class FakeScreen : public ScreenColor {
public:
    FakeScreen() { replace(this); }
    ~FakeScreen() override { replace(nullptr); }

    bool canGrab() const override { return sees; }
    QImage grab(const QRect& area) const override {
        if (!sees)
            return {};
        QImage image(area.size(), QImage::Format_RGB32);
        image.fill(QColor(0, 0, 255));
        return image;
    }
    bool canAsk() const override { return asks; }
    void ask(QObject*, const Told& told) override { question = told; }

    bool sees = true;
    bool asks = false;
    Told question;
};

/** A window that is red on the left and green on the right. */
class Picture : public QWidget {
public:
    Picture() {
        setGeometry(100, 100, 200, 100);
        show();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::red);
        painter.fillRect(100, 0, 100, 100, Qt::green);
    }
};

/** A pipette, and what it tells. */
struct Pipette {
    Pipette() {
        QObject::connect(&sampler, &ColorSampler::activeChanged,
                         [this](bool on) { text += on ? '<' : '>'; });
        QObject::connect(&sampler, &ColorSampler::dragStarted, [this] { text += 'S'; });
        QObject::connect(&sampler, &ColorSampler::dragFinished, [this] { text += 'F'; });
        QObject::connect(&sampler, &ColorSampler::dragCancelled, [this] { text += 'R'; });
        QObject::connect(&sampler, &ColorSampler::hovered, [this](const ColorValue& color) {
            text += 'h';
            last = color;
        });
        QObject::connect(&sampler, &ColorSampler::sampled, [this](const ColorValue& color) {
            if (!text.endsWith(QLatin1Char('E')))
                text += 'E';
            last = color;
        });
    }
    void click(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(&picture, Qt::LeftButton, modifiers, at);
    }
    void drag(const QPoint& from, const QPoint& to) {
        QTest::mousePress(&picture, Qt::LeftButton, {}, from);
        moveMouse(picture, (from + to) / 2);
        moveMouse(picture, to);
    }

    FakeScreen screen;
    Picture picture;
    ColorSampler& sampler = *new ColorSampler(&picture);
    QString text;
    ColorValue last;
};

} // namespace

class ColorSamplerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whereColorsComeFrom() {
        Pipette pipette;
        const ColorSampler& sampler = pipette.sampler;
        const QPoint left = pipette.picture.mapToGlobal(QPoint(20, 20));
        QCOMPARE(*sampler.colorAt(left), (ColorValue{1, 0, 0, 1}));
        QCOMPARE(*sampler.colorAt(Elsewhere), (ColorValue{0, 0, 1, 1}));
        pipette.screen.sees = false;
        QVERIFY(!sampler.colorAt(Elsewhere));
        // The host's picture comes first, also where a child of it is; where it has none, the
        // window.
        QWidget child(&pipette.picture);
        child.setGeometry(10, 10, 30, 30);
        child.show();
        pipette.sampler.addSource(&pipette.picture, [&](const QPoint& at) {
            return pipette.picture.mapFromGlobal(at).x() < 100
                       ? std::optional(ColorValue{12.0F, 0.5F, -1.0F, 0.25F})
                       : std::nullopt;
        });
        QCOMPARE(*sampler.colorAt(left), (ColorValue{12.0F, 0.5F, -1.0F, 0.25F}));
        QCOMPARE(sampler.colorAt(left + QPoint(110, 0))->green, 1.0F);
        // Colours of the screen come back by the inverse, where there is one.
        DisplayTransform halving;
        const auto times = [](float factor) {
            return [factor](float* rgb, int pixels) {
                for (int i = 0; i < 3 * pixels; ++i)
                    rgb[i] *= factor;
            };
        };
        halving.toDisplay = times(0.5F);
        pipette.sampler.setDisplay(DisplayCall(halving));
        QVERIFY(!sampler.colorAt(left + QPoint(110, 0)));
        halving.fromDisplay = times(2.0F);
        pipette.sampler.setDisplay(DisplayCall(halving));
        QCOMPARE(sampler.colorAt(left + QPoint(110, 0))->green, 2.0F);
        pipette.sampler.addSource(&pipette.picture, {});
        QCOMPARE(sampler.colorAt(left + QPoint(60, 0))->red, 2.0F);
    }

    void clicksAndDrags() {
        struct Row {
            const char* name;
            std::function<void(Pipette&)> act;
            const char* told;
            bool isActive;
        };
        const QPoint right(150, 50);
        const Row rows[] = {
            {"hover", [&](Pipette& p) { moveMouse(p.picture, right, Qt::NoButton); }, "<h", true},
            {"click", [&](Pipette& p) { p.click(right); }, "<SEF>", false},
            {"several",
             [&](Pipette& p) {
                 p.click(right, Qt::ShiftModifier);
                 p.click(right, Qt::ShiftModifier);
             },
             "<SEFSEF", true},
            {"drag",
             [&](Pipette& p) {
                 p.drag({50, 50}, {149, 60});
                 QTest::mouseRelease(&p.picture, Qt::LeftButton, {}, {149, 60});
                 QCOMPARE(p.last, (ColorValue{0.5F, 0.5F, 0, 1}));
             },
             "<SEF>", false},
            {"Escape", [&](Pipette& p) { QVERIFY(sendKey(p.picture, Qt::Key_Escape)); }, "<>",
             false},
            {"Escape in a drag",
             [&](Pipette& p) {
                 p.drag({50, 50}, {149, 60});
                 QVERIFY(sendKey(p.picture, Qt::Key_Escape));
                 QTest::mouseRelease(&p.picture, Qt::LeftButton, {}, {149, 60});
             },
             "<SER>", false},
            {"right button", [&](Pipette& p) { QTest::mouseClick(&p.picture, Qt::RightButton); },
             "<>", false},
            {"hidden", [](Pipette& p) { p.picture.hide(); }, "<>", false},
            {"other keys", [](Pipette& p) { sendKey(p.picture, Qt::Key_A); }, "<", true},
        };
        for (const Row& row : rows) {
            Pipette pipette;
            pipette.sampler.start();
            QVERIFY(QGuiApplication::overrideCursor());
            row.act(pipette);
            QVERIFY2(pipette.text == QLatin1String(row.told),
                     qPrintable(QLatin1String(row.name) + QStringLiteral(": ") + pipette.text));
            QCOMPARE(pipette.sampler.isActive(), row.isActive);
            pipette.sampler.stop();
            QVERIFY(!QGuiApplication::overrideCursor());
        }
    }

    void heldKey() {
        Pipette pipette;
        pipette.sampler.startHeld(Qt::Key_Space);
        pipette.click({150, 50});
        pipette.click({150, 50});
        QVERIFY(pipette.sampler.isActive());
        QTest::keyRelease(&pipette.picture, Qt::Key_Space);
        QCOMPARE(pipette.text, QStringLiteral("<SEFSEF>"));
    }

    // Whoever is told may delete the pipette and all that it belongs to.
    void deletedWhileItTells() {
        for (int nth = 1; nth <= 5; ++nth) {
            const FakeScreen screen;
            auto* picture = new Picture;
            const QPointer<Picture> alive(picture);
            auto* sampler = new ColorSampler(picture);
            int told = 0;
            const auto tell = [&] {
                if (++told == nth)
                    delete alive.data();
            };
            connect(sampler, &ColorSampler::activeChanged, qApp, tell);
            connect(sampler, &ColorSampler::dragStarted, qApp, tell);
            connect(sampler, &ColorSampler::sampled, qApp, tell);
            connect(sampler, &ColorSampler::dragFinished, qApp, tell);
            sampler->start();
            if (alive)
                QTest::mousePress(picture, Qt::LeftButton);
            if (alive)
                QTest::mouseRelease(picture, Qt::LeftButton);
            QVERIFY(!alive);
            QVERIFY(!QGuiApplication::overrideCursor());
        }
    }

    void theDesktopsOwn() {
        Pipette pipette;
        QVERIFY(!ColorSampler::canAskDesktop());
        const QString all = ColorSampler::hint();
        pipette.screen.sees = false;
        QVERIFY(ColorSampler::hint() != all);
        QVERIFY(!ColorSampler::canAskDesktop());
        pipette.screen.asks = true;
        QVERIFY(ColorSampler::canAskDesktop());
        pipette.sampler.askDesktop();
        pipette.screen.question(std::nullopt);
        QCOMPARE(pipette.text, QString());
        pipette.screen.question(ScreenColor::Rgb{0.25F, 0.5F, 1.0F});
        QCOMPARE(pipette.text, QStringLiteral("SEF"));
        QCOMPARE(pipette.last, (ColorValue{0.25F, 0.5F, 1.0F, 1.0F}));
    }

    // Never over what is sampled, and on the screen.
    void magnifierStaysAside() {
        const QRect screen(0, 0, 1000, 800);
        const QSize size(120, 160);
        const QPoint corners[] = {{0, 0}, {999, 0}, {0, 799}, {999, 799}, {500, 400}};
        for (const QPoint& pointer : corners) {
            for (const QPoint& from : corners) {
                const QRect place(SampleMagnifier::placeBeside(size, pointer, pointer, screen),
                                  size);
                QVERIFY(screen.contains(place));
                QVERIFY(!place.intersects(QRect(pointer - QPoint(5, 5), QSize(11, 11))));
                const QRect dragged(SampleMagnifier::placeBeside(size, {500, 400}, from, screen),
                                    size);
                QVERIFY(!dragged.intersects(QRect(from, QPoint(500, 400)).normalized()));
            }
        }
    }
};

KXUI_TEST(ColorSamplerTest);
#include "ColorSamplerTest.moc"
