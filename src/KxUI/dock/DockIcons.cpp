#include <KxUI/dock/DockIcons_p.h>

#include <QApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace Kestrel::UI {

namespace {

using Draw = void (*)(QPainter&);

/** Draws on a square of 16 units in the text colour of the palette that is current when it draws,
   so that the icon follows the theme and any pixel ratio. */
class VectorIcon : public QIconEngine {
public:
    explicit VectorIcon(Draw draw)
        : m_draw(draw) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor color = QApplication::palette().color(group, QPalette::WindowText);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / 16.0, rect.height() / 16.0);
        painter->setPen(QPen(color, 1.0));
        painter->setBrush(Qt::NoBrush);
        m_draw(*painter);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap image(size);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return image;
    }

    QIconEngine* clone() const override { return new VectorIcon(m_draw); }

private:
    Draw m_draw;
};

void drawFrame(QPainter& painter) {
    painter.drawRect(QRectF(2.5, 2.5, 11, 11));
}

void drawHSplit(QPainter& painter) {
    drawFrame(painter);
    painter.drawLine(QLineF(2.5, 8, 13.5, 8));
}

void drawVSplit(QPainter& painter) {
    drawFrame(painter);
    painter.drawLine(QLineF(8, 2.5, 8, 13.5));
}

void drawPanelMenu(QPainter& painter) {
    for (const double y : {4.5, 8.0, 11.5})
        painter.drawLine(QLineF(3, y, 13, y));
}

} // namespace

QIcon dockIcon(const QString& path) {
    static const QHash<QString, QIcon> icons = {
        {QStringLiteral(":/ui/qrc/images/HSplit.png"), QIcon(new VectorIcon(drawHSplit))},
        {QStringLiteral(":/ui/qrc/images/VSplit.png"), QIcon(new VectorIcon(drawVSplit))},
        {QStringLiteral(":/ui/qrc/images/PanelMenu.png"), QIcon(new VectorIcon(drawPanelMenu))},
    };
    return icons.value(path);
}

} // namespace Kestrel::UI
