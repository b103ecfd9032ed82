#include <KxUI/kit/IconFactory.h>
#include <KxUI/kit/IconPaths_p.h>

#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

namespace Kestrel::UI {
namespace {

QColor inkOf(QIcon::Mode mode, QIcon::State state) {
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Disabled)
        return palette.color(QPalette::Disabled, QPalette::ButtonText);
    if (mode == QIcon::Selected)
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    return palette.color(QPalette::Active,
                         state == QIcon::On ? QPalette::Highlight : QPalette::ButtonText);
}

class VectorIconEngine : public QIconEngine {
public:
    VectorIconEngine(const QString& name, const IconPaths& paths)
        : m_name(name)
        , m_paths(paths) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        QColor ink = inkOf(mode, state);
        const qreal side = qMin(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        // Whole pixels of offset keep straight edges sharp.
        painter->translate(rect.x() + int((rect.width() - side) / 2),
                           rect.y() + int((rect.height() - side) / 2));
        painter->scale(side / IconUnits, side / IconUnits);
        painter->setBrush(ink);
        painter->drawPath(m_paths.solid);
        ink.setAlphaF(ink.alphaF() * 0.5f);
        painter->setBrush(ink);
        painter->drawPath(m_paths.pale);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        // The colour is part of the key: a new palette draws new pixmaps.
        const QString key = QStringLiteral("kxui-icon/%1/%2x%3/%4/%5")
                                .arg(m_name)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(int(mode))
                                .arg(inkOf(mode, state).rgba());
        QPixmap pixmap;
        if (QPixmapCache::find(key, &pixmap))
            return pixmap;
        pixmap = QPixmap(size);
        pixmap.fill(Qt::transparent);
        if (!pixmap.isNull()) {
            QPainter painter(&pixmap);
            paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        }
        QPixmapCache::insert(key, pixmap);
        return pixmap;
    }

    QIconEngine* clone() const override { return new VectorIconEngine(*this); }
    QString key() const override { return QStringLiteral("kxui"); }

private:
    QString m_name;
    IconPaths m_paths;
};

} // namespace

QIcon IconFactory::icon(const QString& name) {
    static QHash<QString, QIcon> made;
    const auto known = made.constFind(name);
    if (known != made.constEnd())
        return *known;
    const IconPaths paths = iconPaths(name);
    if (paths.solid.isEmpty())
        return QIcon();
    const QIcon icon(new VectorIconEngine(name, paths));
    made.insert(name, icon);
    return icon;
}

QStringList IconFactory::names() {
    return iconPathNames();
}

} // namespace Kestrel::UI
