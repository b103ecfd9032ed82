#include <KxUI/kit/IconFactory.h>

#include <support/TestRegistry.h>

#include <QApplication>
#include <QPalette>
#include <QPixmap>

using Kestrel::UI::IconFactory;

namespace {

QImage imageOf(const QIcon& icon, int side, QIcon::Mode mode = QIcon::Normal,
               QIcon::State state = QIcon::Off) {
    return icon.pixmap(QSize(side, side), mode, state)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32);
}

// The colour of the most opaque pixel, and how many pixels are inked.
QColor inkOf(const QImage& image, int* inked = nullptr) {
    QRgb ink = 0;
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            count += qAlpha(pixel) > 0;
            if (qAlpha(pixel) > qAlpha(ink))
                ink = pixel;
        }
    }
    if (inked)
        *inked = count;
    return QColor(ink);
}

} // namespace

class IconFactoryTest : public QObject {
    Q_OBJECT

private slots:
    void everyNameHasItsOwnPicture() {
        const QStringList names = IconFactory::names();
        QVERIFY(names.contains(QStringLiteral("TCStop")));
        QList<QImage> seen;
        for (const QString& name : names) {
            for (const int side : {16, 32, 64}) {
                const QImage image = imageOf(IconFactory::icon(name), side);
                QCOMPARE(image.size(), QSize(side, side));
                int inked = 0;
                inkOf(image, &inked);
                QVERIFY2(inked > side * side / 20, qPrintable(name));
                if (side == 32) {
                    QVERIFY2(!seen.contains(image), qPrintable(name));
                    seen.append(image);
                }
            }
        }
    }

    void colourFollowsPaletteModeAndState() {
        const QPalette before = QApplication::palette();
        const QIcon icon = IconFactory::icon(QStringLiteral("TCStop"));
        for (const QColor& text : {QColor(Qt::black), QColor(Qt::white)}) {
            QPalette palette = before;
            palette.setColor(QPalette::ButtonText, text);
            palette.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::darkGreen);
            palette.setColor(QPalette::Highlight, Qt::darkYellow);
            QApplication::setPalette(palette);
            QCOMPARE(inkOf(imageOf(icon, 16)), text);
            QCOMPARE(inkOf(imageOf(icon, 16, QIcon::Disabled)), QColor(Qt::darkGreen));
            QCOMPARE(inkOf(imageOf(icon, 16, QIcon::Normal, QIcon::On)), QColor(Qt::darkYellow));
        }
        QApplication::setPalette(before);
    }

    void sharedAndNullForUnknown() {
        const QString name = QStringLiteral("TCPlayForward");
        QCOMPARE(IconFactory::icon(name).cacheKey(), IconFactory::icon(name).cacheKey());
        QVERIFY(IconFactory::icon(QStringLiteral("no such icon")).isNull());
        QVERIFY(IconFactory::icon(QString()).isNull());
    }
};

KXUI_TEST(IconFactoryTest);
#include "IconFactoryTest.moc"
