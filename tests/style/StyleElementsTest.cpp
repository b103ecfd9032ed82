#include <KxUI/style/StyleElements_p.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/style/ApplicationStyle.h>
#include <KxUI/style/TextureTable_p.h>

#include <support/TestRegistry.h>

#include <algorithm>
#include <random>
#include <vector>

using namespace Kestrel::UI;

namespace {

const ApplicationStyle::Theme themes[] = {ApplicationStyle::Dark, ApplicationStyle::Light,
                                          ApplicationStyle::HighContrast};

Shades shadesOfTheme(ApplicationStyle::Theme theme) {
    return shadesOf(ApplicationStyle::palette(theme), QPalette::Active);
}

// What is wrong with a plan: each pixel of the target is to be covered once by slices or, where
// `withLines`, at all; and the sources are to lie within the texture.
QString faultOf(const ElementPlan& plan, const QRect& target, const QSize& texture,
                bool withLines) {
    std::vector<int> covered(std::size_t(target.width()) * std::size_t(target.height()));
    const auto cover = [&](const QRect& part) {
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x)
                ++covered[std::size_t(y - target.y()) * std::size_t(target.width()) +
                          std::size_t(x - target.x())];
        }
    };
    for (int i = 0; i < plan.sliceCount; ++i) {
        const TextureSlice& slice = plan.slices[std::size_t(i)];
        if (!target.contains(slice.target))
            return QStringLiteral("outside of the target");
        if (!QRect(QPoint(), texture).contains(slice.source))
            return QStringLiteral("outside of the texture");
        cover(slice.target);
    }
    if (*std::max_element(covered.begin(), covered.end()) > 1)
        return QStringLiteral("drawn twice");
    for (int i = 0; withLines && i < plan.lineCount; ++i) {
        if (!target.contains(plan.lines[std::size_t(i)].target))
            return QStringLiteral("a line outside of the target");
        cover(plan.lines[std::size_t(i)].target);
    }
    return *std::min_element(covered.begin(), covered.end()) > 0 ? QString()
                                                                 : QStringLiteral("not covered");
}

} // namespace

class StyleElementsTest : public QObject {
    Q_OBJECT

private slots:
    void coloursTellApart() {
        for (const ApplicationStyle::Theme theme : themes) {
            const QPalette palette = ApplicationStyle::palette(theme);
            const Shades shades = shadesOfTheme(theme);
            const struct {
                const char* what;
                QColor front;
                QColor back;
                double least;
            } rows[] = {
                {"window text", shades.windowText, shades.window, ReadableContrast},
                {"text", shades.text, shades.base, ReadableContrast},
                {"button text", shades.buttonText, shades.button, ReadableContrast},
                {"checked text", shades.buttonText, shades.checked, ReadableContrast},
                {"selected text", shades.highlightedText, shades.highlight, ReadableContrast},
                {"menu text", shades.windowText, shades.menu, ReadableContrast},
                {"idle tab text", shades.windowText, shades.idleTab, ReadableContrast},
                {"tip text", palette.color(QPalette::ToolTipText), shades.tip, ReadableContrast},
                {"placeholder", palette.color(QPalette::PlaceholderText), shades.base,
                 ReadableContrast},
                {"link", palette.color(QPalette::Link), shades.window, ReadableContrast},
                {"visited", palette.color(QPalette::LinkVisited), shades.base, ReadableContrast},
                {"indicator", shades.indicator, shades.window, 3},
                {"indicator in a field", shades.indicator, shades.base, 3},
                {"focus", shades.focus, shades.window, 3},
                {"focus of a field", shades.focus, shades.base, 3},
                {"focus of a button", shades.focus, shades.button, 3},
                {"warning", ApplicationStyle::accentsOf(palette).warning, shades.window,
                 ReadableContrast},
                {"danger", ApplicationStyle::accentsOf(palette).danger, shades.window,
                 ReadableContrast},
                {"playhead", ApplicationStyle::accentsOf(palette).playhead, shades.window, 3},
                {"mark", ApplicationStyle::accentsOf(palette).mark, shades.window, 3},
                {"key frame", ApplicationStyle::accentsOf(palette).keyFrame, shades.window, 3},
                {"missing", ApplicationStyle::accentsOf(palette).missing, shades.window, 3},
            };
            for (const auto& row : rows) {
                const double contrast = contrastRatio(row.front, row.back);
                QVERIFY2(contrast >= row.least, qPrintable(QStringLiteral("theme %1: %2 has %3")
                                                               .arg(theme)
                                                               .arg(QLatin1String(row.what))
                                                               .arg(contrast)));
            }
        }
    }

    // Nothing beside a picture is tinted but what has a meaning.
    void greysStayGreys() {
        for (const ApplicationStyle::Theme theme :
             {ApplicationStyle::Dark, ApplicationStyle::Light}) {
            const Shades shades = shadesOfTheme(theme);
            for (int element = 0; element < StyleElementCount; ++element) {
                if (StyleElement(element) == StyleElement::Progress ||
                    StyleElement(element) == StyleElement::Focus)
                    continue;
                for (const unsigned state :
                     {0U, unsigned(StateEnabled), StateEnabled | unsigned(StateHover),
                      StateEnabled | unsigned(StateSunken)}) {
                    const Bevel bevel = bevelOf(StyleElement(element), state, shades);
                    for (const QRgb color : {bevel.top, bevel.bottom, bevel.outline})
                        QVERIFY2(qRed(color) == qGreen(color) && qGreen(color) == qBlue(color),
                                 qPrintable(QString::number(element)));
                }
            }
        }
    }

    // Seams: every pixel once, at every scale and size.
    void plansCover() {
        const Shades shades = shadesOfTheme(ApplicationStyle::Dark);
        for (const double ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
            for (int element = 0; element < StyleElementCount; ++element) {
                for (const QSize& size :
                     {QSize(1, 1), QSize(2, 3), QSize(5, 22), QSize(22, 5), QSize(97, 22),
                      QSize(300, 24), QSize(2900, 30), QSize(40, 400), QSize(301, 299)}) {
                    for (const bool isUpright : {false, true}) {
                        const unsigned state =
                            StateEnabled | (isUpright ? unsigned(StateUpright) : 0U);
                        const QRect target(QPoint(7, 3), size);
                        const Bevel bevel = bevelOf(StyleElement(element), state, shades);
                        const int extent = textureExtent(
                            StyleElement(element), isUpright ? size.width() : size.height(), ratio);
                        const TextureShape shape =
                            textureShape(StyleElement(element), bevel, extent, ratio);
                        const ElementPlan plan = planOf(target, shape, bevel, 0, isUpright);
                        const QSize texture =
                            isUpright && extent > 0 ? shape.size().transposed() : shape.size();
                        // A frame leaves its inside to who draws there.
                        const bool isOpen = extent == 0 && qAlpha(bevel.top) == 0;
                        const QString fault = faultOf(plan, target, texture, extent == 0);
                        QVERIFY2(fault.isEmpty() || (isOpen && fault.startsWith(QLatin1Char('n'))),
                                 qPrintable(QStringLiteral("element %1, %2 x %3 at %4: %5")
                                                .arg(element)
                                                .arg(size.width())
                                                .arg(size.height())
                                                .arg(ratio)
                                                .arg(fault)));
                    }
                }
            }
        }
    }

    // Against a list of keys in the order of their use.
    void tableKeepsWhatWasUsedLast() {
        std::mt19937 random(7);
        TextureTable<int> table(4000);
        std::vector<std::pair<int, std::int64_t>> model; // the one used last at the end
        const auto keyOf = [](int number) {
            TextureKey key;
            key.extent = std::uint16_t(number % 7);
            key.state = std::uint16_t(number / 7 % 5);
            key.colors = std::uint64_t(number) / 35;
            return key;
        };
        const auto bytesOf = [&] {
            std::int64_t bytes = 0;
            for (const auto& entry : model)
                bytes += entry.second;
            return bytes;
        };
        for (int step = 0; step < 20000; ++step) {
            const int number = int(random() % 140);
            const auto known = std::find_if(model.begin(), model.end(), [&](const auto& entry) {
                return entry.first == number;
            });
            const int* found = table.find(keyOf(number));
            QCOMPARE(found != nullptr, known != model.end());
            if (found) {
                QCOMPARE(*found, number);
                std::rotate(known, known + 1, model.end());
            } else {
                const std::int64_t bytes = 20 + std::int64_t(random() % 100);
                while (!model.empty() && bytesOf() + bytes > 4000)
                    model.erase(model.begin());
                model.emplace_back(number, bytes);
                QCOMPARE(table.insert(keyOf(number), number, bytes), number);
            }
            QCOMPARE(table.count(), model.size());
            QCOMPARE(table.bytes(), bytesOf());
            if (step % 5000 == 4999) {
                table.clear();
                model.clear();
            }
        }
    }
};

KXUI_TEST(StyleElementsTest);
#include "StyleElementsTest.moc"
