#include <KxUI/kit/BorderRects_p.h>
#include <KxUI/kit/ChannelColors.h>
#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>
#include <KxUI/kit/HorizontalLayout.h>
#include <KxUI/kit/VerticalLayout.h>

#include <support/TestRegistry.h>

#include <QLabel>

using namespace Kestrel::UI;

namespace {

using Place = BorderLayout::Place;

BorderItem item(Place place, const QSize& hint, const QSize& minimum = QSize(10, 5)) {
    return {place, hint, minimum, {}, false};
}

QString text(const std::vector<QRect>& rects) {
    QStringList all;
    for (const QRect& rect : rects)
        all += rect.isEmpty() ? QStringLiteral("-")
                              : QStringLiteral("%1,%2 %3x%4")
                                    .arg(rect.x())
                                    .arg(rect.y())
                                    .arg(rect.width())
                                    .arg(rect.height());
    return all.join(QStringLiteral("; "));
}

QWidget* box(const QSize& size) {
    auto* made = new QWidget;
    made->setMinimumSize(size);
    return made;
}

QPalette paletteOf(const QColor& window, const QColor& base) {
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, base);
    return palette;
}

} // namespace

class LayoutsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void borderPlaces() {
        const struct {
            QSize room;
            Qt::LayoutDirection direction;
            const char* places; ///< north, south, start, end, centre
        } rows[] = {
            {{200, 100},
             Qt::LeftToRight,
             "0,0 200x20; 0,90 200x10; 0,22 30x66; 160,22 40x66; 32,22 126x66"},
            {{200, 100},
             Qt::RightToLeft,
             "0,0 200x20; 0,90 200x10; 170,22 30x66; 0,22 40x66; 42,22 126x66"},
            // Too short: the strips shrink, the centre keeps its own.
            {{60, 29}, Qt::LeftToRight, "0,0 60x11; 0,21 60x8; 0,13 20x6; 34,13 26x6; 22,13 10x6"},
            {{20, 9}, Qt::LeftToRight, "0,0 20x5; -; -; -; -"},
            {{0, 0}, Qt::LeftToRight, "-; -; -; -; -"},
        };
        const BorderItems items{item(Place::North, QSize(50, 20)), item(Place::South, {50, 10}),
                                item(Place::Start, QSize(30, 8)), item(Place::End, {40, 8}),
                                item(Place::Centre, QSize(60, 50), QSize(10, 6))};
        for (const auto& row : rows)
            QCOMPARE(text(borderRects(QRect(QPoint(0, 0), row.room), items, 2, row.direction)),
                     QString::fromLatin1(row.places));
        QCOMPARE(borderHint(items, 2), QSize(134, 84));
        QCOMPARE(borderMinimum(items, 2), QSize(34, 20));
    }

    void borderOrderHiddenAndHeights() {
        BorderItems items{item(Place::North, QSize(50, 20)), item(Place::North, QSize(50, 8)),
                          item(Place::South, QSize(50, 10)), item(Place::South, QSize(50, 6)),
                          item(Place::Centre, QSize(60, 50))};
        items.front().heightForWidth = [](int width) { return 2000 / width; };
        QCOMPARE(text(borderRects(QRect(0, 0, 100, 100), items, 1)),
                 QStringLiteral("0,0 100x20; 0,21 100x8; 0,90 100x10; 0,83 100x6; 0,30 100x52"));
        QCOMPARE(borderHeightForWidth(items, 1, 50), 40 + 8 + 10 + 6 + 4 + 50);
        items[1].hidden = items[4].hidden = true;
        QCOMPARE(text(borderRects(QRect(0, 0, 100, 100), items, 1)),
                 QStringLiteral("0,0 100x20; -; 0,90 100x10; 0,83 100x6; -"));
        QCOMPARE(borderHint(items, 1).height(), 20 + 10 + 6 + 2);
    }

    void borderLayoutOfWidgets() {
        QWidget window;
        auto* layout = new BorderLayout(&window);
        layout->setSpacing(3);
        QWidget* north = box({50, 20});
        QWidget* centre = box({40, 40});
        layout->addWidget(centre);
        layout->addWidget(north, BorderLayout::North);
        layout->addWidget(nullptr, BorderLayout::South);
        auto* column = new QVBoxLayout;
        column->addWidget(box({30, 10}));
        layout->add(column, BorderLayout::End);
        QCOMPARE(layout->widgetAt(BorderLayout::Centre), centre);
        QCOMPARE(layout->widgetAt(BorderLayout::End), nullptr);
        QCOMPARE(layout->minimumSize(), QSize(73, 63));

        window.resize(100, 100);
        window.show();
        QCOMPARE(north->geometry(), QRect(0, 0, 100, 20));
        QCOMPARE(centre->geometry(), QRect(0, 23, 67, 77));
        window.setLayoutDirection(Qt::RightToLeft);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(centre->geometry(), QRect(33, 23, 67, 77));
        north->hide();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(centre->geometry(), QRect(33, 0, 67, 100));

        QVERIFY(!layout->hasHeightForWidth());
        auto* words = new QLabel(QStringLiteral("many words that need several lines here"));
        words->setWordWrap(true);
        layout->addWidget(words, BorderLayout::South);
        words->show();
        QVERIFY(layout->hasHeightForWidth());
        QVERIFY(layout->heightForWidth(60) > layout->heightForWidth(600));

        delete words;
        delete centre;
        QCOMPARE(layout->count(), 2);
        delete layout->takeAt(1);
        QCOMPARE(layout->takeAt(1), nullptr);
        QCOMPARE(layout->minimumSize(), QSize(0, 0)); // the hidden one alone
    }

    void boxesHaveTheGap() {
        QWidget row;
        const HorizontalLayout layout(&row);
        QCOMPARE(layout.contentsMargins(), QMargins());
        QCOMPARE(layout.spacing(), HorizontalLayout::Gap);
        const VerticalLayout column(5, 2);
        QCOMPARE(column.contentsMargins(), QMargins(5, 5, 5, 5));
        QCOMPARE(column.spacing(), 2);
    }

    void channelsAreSeen() {
        const std::pair<QColor, QColor> rows[] = {
            {QColor(0xef, 0xef, 0xef), Qt::white},
            {QColor(0x35, 0x35, 0x35), QColor(0x23, 0x23, 0x23)},
            {QColor(0x48, 0x48, 0x48), QColor(0x10, 0x10, 0x10)},
            {QColor(0xb0, 0xb0, 0xb0), QColor(0xd0, 0xd0, 0xd0)},
            {Qt::black, Qt::black},
            {Qt::white, Qt::white},
            {QColor(0xff, 0xff, 0), Qt::white},
        };
        for (const auto& row : rows) {
            const QColor window = row.first, base = row.second;
            const ChannelColors colors = ChannelColors::of(paletteOf(window, base));
            const auto least = [&](const QColor& color) {
                return std::min(contrastRatio(color, window), contrastRatio(color, base));
            };
            QSet<QRgb> different;
            for (int i = ChannelColors::Red; i <= ChannelColors::Z; ++i) {
                const auto channel = static_cast<ChannelColors::Channel>(i);
                const QString name = QStringLiteral("%1 on %2").arg(i).arg(window.name());
                QVERIFY2(least(colors.line(channel)) >= 3.0, qPrintable(name));
                QVERIFY2(least(colors.text(channel)) >= 4.5, qPrintable(name));
                different.insert(colors.text(channel).rgb());
            }
            QCOMPARE(different.size(), 5); // the axes look as red, green and blue
            QCOMPARE(colors.line(ChannelColors::X), colors.line(ChannelColors::Red));
            const QColor red = colors.text(ChannelColors::Red);
            QVERIFY(red.red() > red.green());
        }
    }

    void noColorWouldDo() {
        // The best that there is, on a window and a base that no colour is seen on both of.
        const QPalette odd = paletteOf(Qt::black, QColor(0xc0, 0xc0, 0xc0));
        QVERIFY(contrastRatio(ChannelColors::of(odd).text(ChannelColors::Luma), Qt::black) > 1.5);
    }

    void crispLines() {
        const struct {
            double ratio, line;
            QRectF rect;
        } rows[] = {
            {1.0, 3.5, {1, 1, 3, 3}}, {1.25, 3.6, {0.8, 0.8, 3.2, 3.2}}, {2.0, 3.25, {1, 1, 3, 3}}};
        for (const auto& row : rows) {
            QCOMPARE(crisp(3.2, row.ratio), row.line);
            QCOMPARE(rectOnPixels(QRectF(0.9, 0.9, 3.1, 3.1), row.ratio), row.rect);
        }
    }
};

KXUI_TEST(LayoutsTest);
#include "LayoutsTest.moc"
