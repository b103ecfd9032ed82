#include <KxUI/style/ApplicationStyle.h>

#include <KxUI/style/ApplicationStyle_p.h>

#include <support/TestRegistry.h>

#include <QtWidgets>

#include <cstdlib>
#include <memory>
#include <random>

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define COUNTS_ALLOCATIONS
static long allocations = 0;
extern "C" void* __libc_malloc(std::size_t size); // NOLINT
extern "C" void* malloc(std::size_t size) {
    ++allocations;
    return __libc_malloc(size);
}
#endif

using namespace Kestrel::UI;

namespace {

constexpr double ratios[] = {1.0, 1.25, 1.5, 2.0};

QImage canvasOf(const QSize& size, double ratio, const QColor& color) {
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(color);
    return image;
}

QStyleOptionButton buttonOption(const QRect& rect) {
    QStyleOptionButton option;
    option.rect = rect;
    option.state = QStyle::State_Enabled | QStyle::State_Active | QStyle::State_Raised;
    option.palette = QApplication::palette();
    return option;
}

// Every element in eight states, every mark, without any text.
void paintSheet(QPainter* painter, const Shades& shades) {
    constexpr int Width = 38;
    constexpr int Height = 25;
    const unsigned states[] = {0,
                               StateOn,
                               StateEnabled,
                               StateEnabled | StateHover,
                               StateEnabled | StateSunken,
                               StateEnabled | StateOn,
                               StateEnabled | StateFocus,
                               StateEnabled | StateOn | StateHover | StateDefault};
    BrushTextures textures;
    const PixelSpace space(painter);
    for (int element = 0; element < StyleElementCount; ++element) {
        for (int i = 0; i < 8; ++i) {
            const unsigned edges = i == 3 ? unsigned(JoinBottom) : 0U;
            textures.drawBevel(space, StyleElement(element),
                               QRect(i * Width + 3, element * Height + 2, Width - 5, Height - 5),
                               states[i], edges, shades);
        }
    }
    for (int mark = 0; mark < StyleMarkCount; ++mark)
        textures.drawMark(space, StyleMark(mark),
                          QRect(mark * 24 + 3, StyleElementCount * Height + 4, 13, 13),
                          shades.windowText);
}

// The largest difference of two codes.
int difference(const QImage& a, const QImage& b) {
    int most = a.size() == b.size() ? 0 : 255;
    for (int y = 0; most < 255 && y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            most = std::max({most, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                             std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return most;
}

int inkedPixels(const QImage& image, const QColor& ground) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) != ground.rgb();
    }
    return count;
}

/** Counts how often each widget is painted. */
class PaintCounter : public QObject {
public:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            ++paints[object];
        return false;
    }
    QHash<QObject*, int> paints;
};

} // namespace

class ApplicationStyleTest : public QObject {
    Q_OBJECT

private:
    void installDark() { ApplicationStyle::install(ApplicationStyle::Dark); }

private slots:
    void init() { installDark(); }

    void cleanupTestCase() {
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(QApplication::style()->standardPalette());
    }

    // With KXUI_UPDATE_PICTURES set, the pictures are made anew.
    void elementsLookAsTheyDid() {
        const QMetaEnum names = QMetaEnum::fromType<ApplicationStyle::Theme>();
        for (const auto theme :
             {ApplicationStyle::Dark, ApplicationStyle::Light, ApplicationStyle::HighContrast}) {
            const Shades shades = shadesOf(ApplicationStyle::palette(theme), QPalette::Active);
            for (const double ratio : ratios) {
                QImage image = canvasOf(QSize(308, 430), ratio, QColor(shades.window));
                QPainter painter(&image);
                paintSheet(&painter, shades);
                painter.end();
                const QString file = QStringLiteral(KXUI_PICTURES "/%1-%2.png")
                                         .arg(QString::fromLatin1(names.key(theme)).toLower())
                                         .arg(int(ratio * 100));
                if (qEnvironmentVariableIsSet("KXUI_UPDATE_PICTURES"))
                    QVERIFY(image.save(file));
                const int most = difference(image, QImage(file));
                QVERIFY2(most <= 2, qPrintable(QStringLiteral("%1: %2").arg(file).arg(most)));
            }
        }
    }

    // Wherever a widget lies, an outline is one pixel of the device and nothing is smeared.
    void edgesAreSharp() {
        const Shades shades = shadesOf(QApplication::palette(), QPalette::Active);
        for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
            for (int offset = 0; offset < 8; ++offset) {
                QImage image = canvasOf(QSize(400, 60), ratio, QColor(shades.window));
                QPainter painter(&image);
                painter.translate(offset, offset);
                const QTransform before = painter.transform();
                QStyleOptionFrame option;
                option.rect = QRect(5, 5, 321, 23);
                option.lineWidth = 1;
                option.state = QStyle::State_Enabled | QStyle::State_Active;
                option.palette = QApplication::palette();
                QApplication::style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter);
                QCOMPARE(painter.transform(), before);
                painter.end();
                const int row = int((5 + offset + 11) * ratio);
                std::vector<QRgb> runs; // colours along the row, and how long the lines are
                int lines = 0;
                for (int x = 0; x < image.width(); ++x) {
                    const QRgb color = image.pixel(x, row);
                    if (runs.empty() || runs.back() != color)
                        runs.push_back(color);
                    lines += color == shades.outline;
                }
                const std::vector<QRgb> expected{shades.window, shades.outline, shades.base,
                                                 shades.outline, shades.window};
                QCOMPARE(runs, expected);
                QCOMPARE(lines, 2);
            }
        }
    }

    void paintingWarmAllocatesNothing() {
        const ApplicationStyle* style = qobject_cast<ApplicationStyle*>(QApplication::style());
        QVERIFY(style);
        for (const double ratio : ratios) {
            QImage image = canvasOf(QSize(120, 40), ratio, Qt::black);
            QPainter painter(&image);
            const QStyleOptionButton option = buttonOption(QRect(3, 3, 97, 22));
            const auto paint = [&] {
                style->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter);
            };
            paint();
            const auto before = ApplicationStyle::cacheStatistics();
#if defined(COUNTS_ALLOCATIONS)
            paint();
            const long allocationsBefore = allocations;
            paint();
            QVERIFY2(allocations == allocationsBefore, qPrintable(QString::number(ratio)));
#else
            paint();
            paint();
#endif
            QCOMPARE(ApplicationStyle::cacheStatistics().misses, before.misses);
            QVERIFY(ApplicationStyle::cacheStatistics().hits > before.hits);
        }
    }

    // A palette set up anew at each paint, as widgets do that colour one part of themselves.
    void coloursAreWhatCounts() {
        QImage image = canvasOf(QSize(120, 40), 1, Qt::black);
        QPainter painter(&image);
        const auto paint = [&](const QColor& color) {
            QStyleOptionButton option = buttonOption(QRect(3, 3, 97, 22));
            option.palette.setColor(QPalette::Button, color);
            QApplication::style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter);
            return image.pixel(50, 20);
        };
        const QRgb red = paint(Qt::red);
        const qint64 misses = ApplicationStyle::cacheStatistics().misses;
        QCOMPARE(paint(Qt::red), red);
        QCOMPARE(ApplicationStyle::cacheStatistics().misses, misses);
        QVERIFY(paint(Qt::blue) != red);
    }

    void cacheKeepsItsLimit() {
        ApplicationStyle::setCacheLimit(20000);
        QImage image = canvasOf(QSize(120, 120), 1, Qt::black);
        QPainter painter(&image);
        for (int height = 10; height < 90; ++height) {
            const QStyleOptionButton option = buttonOption(QRect(0, 0, 100, height));
            QApplication::style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter);
            QVERIFY(ApplicationStyle::cacheStatistics().bytes <= 20000 + 140 * 90 * 4);
        }
        ApplicationStyle::setCacheLimit(-1);
        QCOMPARE(ApplicationStyle::cacheStatistics().bytes, 0);
        const QStyleOptionButton option = buttonOption(QRect(0, 0, 100, 22));
        QApplication::style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter);
        QVERIFY(image.pixel(50, 10) != QColor(Qt::black).rgb());
        ApplicationStyle::setCacheLimit(8 << 20);
    }

    // Texts that were laid out before lie where the base style draws them.
    void textsLieWhereTheyShould() {
        const QStyle* style = QApplication::style();
        const std::unique_ptr<QStyle> plain(QStyleFactory::create(QStringLiteral("Fusion")));
        const QPalette palette = ApplicationStyle::palette(ApplicationStyle::Light);
        QFont font = QApplication::font();
        const auto boundsBy = [&](const QStyle* by, int flags, const QString& text) {
            QImage image = canvasOf(QSize(140, 50), 1, Qt::white);
            QPainter painter(&image);
            painter.setFont(font);
            by->drawItemText(&painter, QRect(5, 4, 120, 41), flags, palette, true, text,
                             QPalette::Text);
            painter.end();
            const QImage ink = image.convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
            return QRegion(QBitmap::fromImage(ink)).boundingRect();
        };
        for (const int size : {12, 12, 17, 12}) {
            font.setPixelSize(size);
            for (const char* text :
                 {"Render", "&Open", "A & B", "two\nlines", "wider than there is room for it"}) {
                for (const int flags :
                     {int(Qt::AlignCenter), int(Qt::AlignRight | Qt::AlignBottom),
                      int(Qt::AlignLeft), int(Qt::AlignCenter) | int(Qt::TextShowMnemonic)}) {
                    const QRect ours = boundsBy(style, flags, QString::fromLatin1(text));
                    const QRect theirs = boundsBy(plain.get(), flags, QString::fromLatin1(text));
                    QVERIFY(!ours.isEmpty());
                    QVERIFY2(theirs.adjusted(-1, -1, 1, 1).contains(ours) &&
                                 ours.adjusted(-1, -1, 1, 1).contains(theirs),
                             text);
                }
            }
        }
    }

    // No textures where pixels are not copied one to one.
    void paintsByPathsElsewhere() {
        const QStyleOptionButton option = buttonOption(QRect(10, 10, 60, 22));
        const qint64 misses = ApplicationStyle::cacheStatistics().misses;
        QImage turned = canvasOf(QSize(100, 100), 1, Qt::white);
        QPainter painter(&turned);
        painter.rotate(30);
        QApplication::style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter);
        QApplication::style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &option, &painter);
        painter.end();
        QVERIFY(inkedPixels(turned, Qt::white) > 1000);
        QPicture picture;
        painter.begin(&picture);
        QApplication::style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter);
        painter.end();
        QVERIFY(picture.size() > 0);
        QCOMPARE(ApplicationStyle::cacheStatistics().misses, misses);
    }

    void themeSwitchRepaintsOnce() {
        QWidget window;
        auto* column = new QVBoxLayout(&window);
        auto* button = new QPushButton(QStringLiteral("Render"));
        auto* still = new QLabel(QStringLiteral("Held"));
        column->addWidget(button);
        column->addWidget(still);
        auto* scroll = new QScrollArea; // an opaque part
        auto* scrolled = new QLabel(QStringLiteral("Frame"));
        scroll->setWidget(scrolled);
        column->addWidget(scroll);
        window.show();
        QMenu menu;
        menu.addAction(QStringLiteral("Open"));
        menu.popup(QPoint(0, 0));
        still->setUpdatesEnabled(false);
        QCoreApplication::processEvents();
        const QPointer<QStyle> style = QApplication::style();

        PaintCounter counter;
        qApp->installEventFilter(&counter);
        ApplicationStyle::install(ApplicationStyle::Light);
        QCOMPARE(ApplicationStyle::cacheStatistics().bytes, 0);
        QCOMPARE(QApplication::style(), style.data());
        QVERIFY(!still->updatesEnabled() && button->updatesEnabled() && window.updatesEnabled());
        QCoreApplication::processEvents();
        qApp->removeEventFilter(&counter);
        QCOMPARE(counter.paints.value(&window), 1);
        QCOMPARE(counter.paints.value(button), 1);
        QCOMPARE(counter.paints.value(scroll->viewport()), 1);
        QCOMPARE(counter.paints.value(scrolled), 1);
        QCOMPARE(counter.paints.value(&menu), 1);

        const QPalette light = ApplicationStyle::palette(ApplicationStyle::Light);
        QCOMPARE(button->palette().color(QPalette::Button), light.color(QPalette::Button));
        QCOMPARE(QToolTip::palette().color(QPalette::ToolTipBase),
                 light.color(QPalette::ToolTipBase));
        QCOMPARE(window.grab().toImage().pixel(1, 1), light.color(QPalette::Window).rgb());
        const QImage open = menu.grab().toImage();
        QVERIFY(qGray(open.pixel(open.width() - 4, open.height() / 2)) > 128);
    }

    void hostSheetsGoOnWorking() {
        QPushButton plain(QStringLiteral("Render"));
        QPushButton styled(QStringLiteral("Render"));
        styled.setStyleSheet(QStringLiteral("background: #ff0000; border: none"));
        for (QPushButton* button : {&plain, &styled}) {
            button->resize(80, 24);
            button->show();
        }
        QCOMPARE(styled.grab().toImage().pixel(5, 12), QColor(Qt::red).rgb());
        QVERIFY(plain.grab().toImage().pixel(5, 12) != QColor(Qt::red).rgb());
        qApp->setStyleSheet(QStringLiteral("QLabel { color: #00ff00 }"));
        const int before = plain.grab().toImage().pixelColor(5, 12).lightness();
        ApplicationStyle::install(ApplicationStyle::Light);
        const int after = plain.grab().toImage().pixelColor(5, 12).lightness();
        qApp->setStyleSheet(QString());
        QVERIFY(after > before + 50);
        QVERIFY(qobject_cast<ApplicationStyle*>(QApplication::style()));
    }

    void paletteOfTheHostStays() {
        QPalette own = QApplication::palette();
        own.setColor(QPalette::Window, QColor(10, 20, 30));
        QApplication::setPalette(own);
        ApplicationStyle::install(ApplicationStyle::FromPalette);
        QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(10, 20, 30));
        QCOMPARE(ApplicationStyle::palette(ApplicationStyle::FromPalette), QApplication::palette());
    }

    void habits() {
        const QStyle* style = QApplication::style();
        auto* own = qobject_cast<ApplicationStyle*>(QApplication::style());
        QSignalSpy changes(own, &ApplicationStyle::animationDurationChanged);
        QCOMPARE(style->styleHint(QStyle::SH_Widget_Animation_Duration), 0);
        for (const int duration : {150, 150, -3})
            own->setAnimationDuration(duration);
        QCOMPARE(changes.count(), 2);
        QCOMPARE(own->animationDuration(), 0);
        QVERIFY(!style->standardIcon(QStyle::SP_TitleBarCloseButton).isNull());

        // One line of controls has one height.
        QPushButton button(QStringLiteral("Render"));
        QLineEdit field;
        QComboBox choice;
        QSpinBox number;
        const int height = button.sizeHint().height();
        QCOMPARE(height, QFontMetrics(button.font()).height() +
                             qRound(7 * QFontMetrics(button.font()).fontDpi() / 96));
        for (QWidget* widget : {static_cast<QWidget*>(&field), static_cast<QWidget*>(&choice),
                                static_cast<QWidget*>(&number)})
            QCOMPARE(widget->sizeHint().height(), height);
    }

    void partsCanBeHit() {
        QScrollBar bar(Qt::Vertical);
        bar.resize(12, 200);
        bar.setRange(0, 100);
        bar.setPageStep(50);
        bar.show();
        QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(6, 190));
        QCOMPARE(bar.value(), 50);
        QSpinBox number;
        number.resize(100, 24);
        number.show();
        QTest::mouseClick(&number, Qt::LeftButton, {}, QPoint(92, 6));
        QTest::mouseClick(&number, Qt::LeftButton, {}, QPoint(92, 6));
        QTest::mouseClick(&number, Qt::LeftButton, {}, QPoint(92, 18));
        QCOMPARE(number.value(), 1);
        number.setLayoutDirection(Qt::RightToLeft);
        QTest::mouseClick(&number, Qt::LeftButton, {}, QPoint(8, 6));
        QCOMPARE(number.value(), 2);
        QSlider slider(Qt::Horizontal);
        slider.resize(200, 24);
        slider.setRange(0, 100);
        slider.show();
        QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(100, 12));
        QVERIFY(std::abs(slider.value() - 50) <= 3);
    }

    void survivesAnyOption();

    void livesOnItsOwn() {
        const qint64 before = ApplicationStyle::cacheStatistics().misses;
        {
            QPushButton button(QStringLiteral("Render"));
            ApplicationStyle own;
            button.setStyle(&own);
            button.grab();
            button.setStyle(nullptr);
        }
        QVERIFY(ApplicationStyle::cacheStatistics().misses > before);
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QCOMPARE(ApplicationStyle::cacheStatistics().bytes, 0);
        QVERIFY(ApplicationStyle::accentsOf(QApplication::palette()).focus.isValid());
    }
};

namespace {

using Random = std::mt19937;

template <class Option, class Fill>
std::shared_ptr<QStyleOption> filled(const Fill& fill) {
    auto option = std::make_shared<Option>();
    fill(*option);
    return option;
}

// An option of a random kind, with whatever in it. Shared, for options have no virtual destructor.
std::shared_ptr<QStyleOption> anyOption(Random& random) {
    const auto number = [&](int below) { return int(random() % unsigned(below)); };
    const auto value = [&] { return number(4) == 0 ? int(random()) : number(200) - 50; };
    const QString texts[] = {QString(), QStringLiteral("&Text"), QStringLiteral("Text\tCtrl+T")};
    const auto text = [&] { return texts[number(3)]; };
    switch (number(13)) {
    case 0:
        return filled<QStyleOptionButton>([&](auto& option) {
            option.features = QStyleOptionButton::ButtonFeatures(number(32));
            option.text = text();
        });
    case 1:
        return filled<QStyleOptionFrame>([&](auto& option) {
            option.lineWidth = number(3);
            option.features = QStyleOptionFrame::FrameFeatures(number(4));
        });
    case 2:
        return filled<QStyleOptionComboBox>([&](auto& option) {
            option.editable = number(2);
            option.frame = number(2);
            option.currentText = text();
        });
    case 3:
        return filled<QStyleOptionSpinBox>([&](auto& option) {
            option.frame = number(2);
            option.buttonSymbols = QAbstractSpinBox::ButtonSymbols(number(3));
            option.stepEnabled = QAbstractSpinBox::StepEnabled(number(4));
        });
    case 4:
        return filled<QStyleOptionSlider>([&](auto& option) {
            option.minimum = value();
            option.maximum = std::max(value(), option.minimum);
            option.sliderPosition = value();
            option.pageStep = value();
            option.tickInterval = value();
            option.tickPosition = QSlider::TickPosition(number(4));
            option.orientation = number(2) ? Qt::Horizontal : Qt::Vertical;
            option.upsideDown = number(2);
        });
    case 5:
        return filled<QStyleOptionTab>([&](auto& option) {
            option.shape = QTabBar::Shape(number(8));
            option.text = text();
        });
    case 6:
        return filled<QStyleOptionHeader>([&](auto& option) {
            option.orientation = number(2) ? Qt::Horizontal : Qt::Vertical;
            option.position = QStyleOptionHeader::SectionPosition(number(4));
            option.sortIndicator = QStyleOptionHeader::SortIndicator(number(3));
        });
    case 7:
        return filled<QStyleOptionMenuItem>([&](auto& option) {
            option.menuItemType = QStyleOptionMenuItem::MenuItemType(number(8));
            option.checkType = QStyleOptionMenuItem::CheckType(number(3));
            option.checked = number(2);
            option.text = text();
            option.maxIconWidth = number(40);
            // QFusionStyle takes the reserved width as it is.
            option.menuHasCheckableItems = number(2);
        });
    case 8:
        return filled<QStyleOptionProgressBar>([&](auto& option) {
            option.minimum = value();
            option.maximum = value();
            option.progress = value();
            option.invertedAppearance = number(2);
        });
    case 9:
        return filled<QStyleOptionDockWidget>([&](auto& option) {
            option.title = text();
            option.verticalTitleBar = number(2);
        });
    case 10:
        return filled<QStyleOptionTabBarBase>(
            [&](auto& option) { option.shape = QTabBar::Shape(number(8)); });
    case 11:
        return filled<QStyleOptionToolButton>([&](auto& option) {
            option.features = QStyleOptionToolButton::ToolButtonFeatures(number(32));
            option.text = text();
        });
    default:
        return std::make_shared<QStyleOption>();
    }
}

} // namespace

// What no widget would ask for: any option for any element, of any size, without a widget.
void ApplicationStyleTest::survivesAnyOption() {
    Random random(20);
    const auto number = [&](int below) { return int(random() % unsigned(below)); };
    const QStyle* style = QApplication::style();
    QImage image = canvasOf(QSize(100, 60), 1, Qt::black);
    for (int step = 0; step < 6000; ++step) {
        const std::shared_ptr<QStyleOption> option = anyOption(random);
        option->rect = QRect(number(40) - 20, number(40) - 20, number(step % 8 ? 120 : 3000),
                             number(step % 8 ? 60 : 3000));
        option->state = QStyle::State(int(random()) & 0x07ffffff);
        option->direction = number(2) ? Qt::LeftToRight : Qt::RightToLeft;
        option->palette = ApplicationStyle::palette(ApplicationStyle::Theme(number(4)));
        QPainter painter(&image);
        if (number(4) == 0)
            painter.scale(0.5 + number(20) / 8.0, number(2) ? 1.25 : 0.5 + number(20) / 8.0);
        if (number(8) == 0)
            painter.rotate(number(360));
        const QTransform transform = painter.transform();
        if (auto* complex = qstyleoption_cast<QStyleOptionComplex*>(option.get())) {
            complex->subControls = QStyle::SubControls(int(random()));
            complex->activeSubControls = QStyle::SubControls(int(random()));
            const QStyle::ComplexControl controls[] = {QStyle::CC_ComboBox, QStyle::CC_SpinBox,
                                                       QStyle::CC_Slider, QStyle::CC_ScrollBar};
            const auto control = controls[number(4)];
            style->drawComplexControl(control, complex, &painter);
            style->subControlRect(control, complex, QStyle::SubControl(1 << number(8)));
        }
        style->drawPrimitive(QStyle::PrimitiveElement(number(QStyle::PE_IndicatorTabTearRight)),
                             option.get(), &painter);
        const QStyle::ControlElement controls[] = {
            QStyle::CE_PushButton,      QStyle::CE_PushButtonLabel,
            QStyle::CE_ComboBoxLabel,   QStyle::CE_TabBarTabShape,
            QStyle::CE_HeaderSection,   QStyle::CE_MenuItem,
            QStyle::CE_MenuBarItem,     QStyle::CE_ProgressBarContents,
            QStyle::CE_Splitter,        QStyle::CE_DockWidgetTitle,
            QStyle::CE_HeaderEmptyArea, QStyle::CE_ProgressBarGroove};
        style->drawControl(controls[number(12)], option.get(), &painter);
        style->sizeFromContents(QStyle::ContentsType(number(QStyle::CT_ItemViewItem)), option.get(),
                                QSize(number(100), number(40)));
        QCOMPARE(painter.transform(), transform);
    }
    QVERIFY(ApplicationStyle::cacheStatistics().bytes <= 8 << 20);
}

KXUI_TEST(ApplicationStyleTest);
#include "ApplicationStyleTest.moc"
