#include <KxUI/kit/IconPaths_p.h>

#include <QMap>
#include <QPolygonF>
#include <QTransform>

#include <initializer_list>

namespace Kestrel::UI {
namespace {

QPainterPath box(qreal x, qreal y, qreal width, qreal height) {
    QPainterPath path;
    path.addRect(x, y, width, height);
    return path;
}

QPainterPath polygon(std::initializer_list<QPointF> points) {
    QPainterPath path;
    path.addPolygon(QPolygonF(QVector<QPointF>(points)));
    path.closeSubpath();
    return path;
}

// A triangle that points right, from `left` to `right` around the middle line.
QPainterPath triangle(qreal left, qreal right, qreal halfHeight = 5) {
    return polygon({{left, 8 - halfHeight}, {right, 8}, {left, 8 + halfHeight}});
}

QPainterPath diamond(qreal middle, qreal half) {
    return polygon(
        {{middle, 8 - half}, {middle + half, 8}, {middle, 8 + half}, {middle - half, 8}});
}

IconPaths mirrored(const IconPaths& paths) {
    const QTransform mirror(-1, 0, 0, 1, IconUnits, 0);
    return {mirror.map(paths.solid), mirror.map(paths.pale)};
}

IconPaths turned(const IconPaths& paths) {
    const QTransform turn(0, 1, 1, 0, 0, 0);
    return {turn.map(paths.solid), turn.map(paths.pale)};
}

QMap<QString, IconPaths> makeIcons() {
    const IconPaths end{triangle(3, 11) | box(11, 3, 2, 10), {}};
    const IconPaths frame{triangle(7, 13, 4), box(4, 4, 2, 8)};
    const IconPaths play{polygon({{4, 2}, {14, 8}, {4, 14}}), {}};
    const IconPaths interval{triangle(3, 9, 4) | box(11, 2, 2, 12), box(9, 7, 2, 2)};
    const IconPaths key{triangle(1, 7, 4) | diamond(11, 4), {}};
    const IconPaths skip{triangle(2, 8, 4) | triangle(8, 14, 4), {}};
    // A pane cut into two, one of them filled.
    const QPainterPath frameLine = box(2, 2, 12, 12) - box(3, 3, 10, 10);
    const IconPaths split{frameLine | box(7, 3, 2, 10), box(3, 3, 4, 10)};
    QPainterPath lines;
    for (const int y : {4, 7, 10})
        lines |= box(3, y, 10, 1);

    // What the panels of a host show: rows, a picture, a ruler, sliders, a clock.
    IconPaths rows;
    for (const int y : {2, 6, 10}) {
        rows.pale |= box(2, y, 3, 3);
        rows.solid |= box(6, y + 1, 8, 1);
    }
    const IconPaths picture{box(1, 3, 14, 10) - box(2, 4, 12, 8),
                            polygon({{2, 12}, {6, 7}, {9, 10}, {11, 8}, {14, 12}})};
    IconPaths ruler{polygon({{5, 2}, {11, 2}, {8, 6}}) | box(7, 5, 2, 9), {}};
    for (const int x : {1, 4, 11, 14})
        ruler.pale |= box(x, 10, 1, 4);
    IconPaths sliders;
    for (const QPoint knob : {QPoint(2, 9), QPoint(7, 3), QPoint(12, 7)}) {
        const QPainterPath handle = box(knob.x(), knob.y(), 3, 3);
        sliders.solid |= handle;
        sliders.pale |= box(knob.x() + 1, 2, 1, 12) - handle;
    }
    QPainterPath rim;
    rim.addEllipse(2, 2, 12, 12);
    QPainterPath face;
    face.addEllipse(3, 3, 10, 10);
    const IconPaths clock{(rim - face) | box(8, 4, 1, 5) | box(8, 8, 4, 1), face};

    // On the title bar of a pane.
    const IconPaths cross{polygon({{4, 5}, {5, 4}, {12, 11}, {11, 12}}) |
                              polygon({{11, 4}, {12, 5}, {5, 12}, {4, 11}}),
                          {}};
    const QPainterPath front = box(3, 6, 7, 7);
    const IconPaths windows{front - box(4, 8, 5, 4), (box(6, 3, 7, 7) - box(7, 5, 5, 4)) - front};

    // Before a text that is searched for; with an arrow where a menu opens.
    QPainterPath lens;
    lens.addEllipse(1, 1, 10, 10);
    QPainterPath glass;
    glass.addEllipse(2.5, 2.5, 7, 7);
    const IconPaths search{(lens - glass) | polygon({{8, 9.5}, {9.5, 8}, {14, 12.5}, {12.5, 14}}),
                           {}};
    const IconPaths searchMenu{search.solid, polygon({{11, 1}, {16, 1}, {13.5, 4}})};

    QMap<QString, IconPaths> icons;
    const auto both = [&icons](const char* backward, const char* forward, const IconPaths& paths) {
        icons.insert(QLatin1String(forward), paths);
        icons.insert(QLatin1String(backward), mirrored(paths));
    };
    both("TCStart", "TCEnd", end);
    both("TCFrameBackward", "TCFrameForward", frame);
    both("TCPlayBackward", "TCPlayForward", play);
    both("TCIntervalBackward", "TCIntervalForward", interval);
    both("TCKeyBackward", "TCKeyForward", key);
    both("FrameSkipBackwards", "FrameSkipForwards", skip);
    icons.insert(QStringLiteral("TCStop"), {box(4, 4, 8, 8), {}});
    icons.insert(QStringLiteral("PageSequences"), rows);
    icons.insert(QStringLiteral("PageViewer"), picture);
    icons.insert(QStringLiteral("PageTimeline"), ruler);
    icons.insert(QStringLiteral("PageGrade"), sliders);
    icons.insert(QStringLiteral("PageHistory"), clock);
    icons.insert(QStringLiteral("PaneClose"), cross);
    icons.insert(QStringLiteral("Search"), search);
    icons.insert(QStringLiteral("SearchMenu"), searchMenu);
    icons.insert(QStringLiteral("PaneFloat"), windows);
    // The panes' menus name their icons by these paths.
    icons.insert(QStringLiteral(":/ui/qrc/images/HSplit.png"), turned(split));
    icons.insert(QStringLiteral(":/ui/qrc/images/VSplit.png"), split);
    icons.insert(QStringLiteral(":/ui/qrc/images/PanelMenu.png"), {lines, {}});
    return icons;
}

const QMap<QString, IconPaths>& icons() {
    static const QMap<QString, IconPaths> all = makeIcons();
    return all;
}

} // namespace

IconPaths iconPaths(const QString& name) {
    return icons().value(name);
}

QStringList iconPathNames() {
    return icons().keys();
}

} // namespace Kestrel::UI
