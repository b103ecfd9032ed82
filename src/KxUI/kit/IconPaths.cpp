#include <KxUI/kit/IconPaths_p.h>

#include <QMap>
#include <QPainterPathStroker>
#include <QPolygonF>
#include <QTransform>

#include <cmath>
#include <initializer_list>
#include <utility>

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

/** From `inner` to `outer`, around a point. */
QPainterPath ring(qreal x, qreal y, qreal outer, qreal inner) {
    QPainterPath path;
    path.addEllipse(QPointF(x, y), outer, outer);
    QPainterPath hole;
    hole.addEllipse(QPointF(x, y), inner, inner);
    return path - hole;
}

/** A line 2 units wide from the first point of `from` to the last of `to`, by the others. */
QPainterPath line(const std::pair<QPointF, QPointF>& from, const std::pair<QPointF, QPointF>& to) {
    QPainterPath path(from.first);
    path.cubicTo(from.second, to.first, to.second);
    QPainterPathStroker pen;
    pen.setWidth(2);
    pen.setCapStyle(Qt::RoundCap);
    return pen.createStroke(path);
}

IconPaths mirrored(const IconPaths& paths) {
    const QTransform mirror(-1, 0, 0, 1, IconUnits, 0);
    return {mirror.map(paths.solid), mirror.map(paths.pale)};
}

IconPaths turned(const IconPaths& paths) {
    const QTransform turn(0, 1, 1, 0, 0, 0);
    return {turn.map(paths.solid), turn.map(paths.pale)};
}

// In a field, what is known of its path.
void addPathIcons(QMap<QString, IconPaths>& icons) {
    const QPainterPath disc = ring(8, 8, 7, 0);
    const QPainterPath inner = ring(8, 8, 6, 0);
    const QPainterPath sign = polygon({{8, 1}, {15.5, 15}, {0.5, 15}});
    const QPainterPath inside = polygon({{8, 3.1}, {13.8, 14}, {2.2, 14}});
    const IconPaths wrong{(sign - inside) | box(7, 6, 2, 4) | box(7, 11, 2, 2), {}};
    const IconPaths there{(disc - inner) | box(7, 7, 2, 5) | box(7, 4, 2, 2), {}};
    const IconPaths waiting{ring(3, 8, 1.5, 0) | ring(8, 8, 1.5, 0) | ring(13, 8, 1.5, 0), {}};
    icons.insert(QStringLiteral("PathWrong"), wrong);
    icons.insert(QStringLiteral("PathThere"), there);
    icons.insert(QStringLiteral("PathWaiting"), waiting);
}

void addCurveIcons(QMap<QString, IconPaths>& icons) {
    // Above curves: a magnet, a frame with its grips, arrows into the corners, a grid of powers, a
    // straight line, a bent one, two sheets, an eye.
    QPainterPath magnet = ring(8, 8, 6, 3) - box(2, 8, 12, 7);
    magnet |= box(2, 8, 3, 3) | box(11, 8, 3, 3);
    const IconPaths snap{magnet, box(2, 12, 3, 2) | box(11, 12, 3, 2)};
    IconPaths grips;
    for (const QPoint& grip : {QPoint(1, 1), QPoint(12, 1), QPoint(1, 12), QPoint(12, 12)})
        grips.solid |= box(grip.x(), grip.y(), 3, 3);
    grips.pale = (box(2, 2, 12, 12) - box(3, 3, 10, 10)) - grips.solid;
    IconPaths corners;
    const QPainterPath corner = polygon({{1, 1}, {6, 1}, {1, 6}});
    for (const int turn : {0, 90, 180, 270})
        corners.solid |= QTransform().translate(8, 8).rotate(turn).translate(-8, -8).map(corner);
    corners.pale = box(6, 6, 4, 4);
    IconPaths powers;
    for (const int at : {2, 7, 10, 12, 13})
        powers.pale |= box(at, 2, 1, 12);
    powers.solid = box(1, 1, 1, 14) | box(1, 14, 14, 1);
    const QPainterPath axes = box(2, 2, 1, 12) | box(2, 13, 12, 1);
    const IconPaths straight{line({{3, 13}, {3, 13}}, {{13, 3}, {13, 3}}), axes};
    const IconPaths bent{line({{3, 12}, {12, 12}}, {{5, 3}, {14, 3}}), axes};
    const QPainterPath sheet = box(2, 2, 8, 9);
    const IconPaths copies{box(6, 5, 8, 9) - box(7, 6, 6, 7),
                           (sheet - box(3, 3, 6, 7)) - box(6, 5, 8, 9)};
    QPainterPath lids(QPointF(1, 8));
    lids.quadTo(8, 1, 15, 8);
    lids.quadTo(8, 15, 1, 8);
    const QPainterPath iris = ring(8, 8, 3.5, 0);
    const IconPaths eye{
        (lids - QTransform(0.8, 0, 0, 0.66, 1.6, 2.72).map(lids)) | ring(8, 8, 2, 0), iris & lids};
    icons.insert(QStringLiteral("CurveSnap"), snap);
    icons.insert(QStringLiteral("CurveFrame"), grips);
    icons.insert(QStringLiteral("CurveShowAll"), corners);
    icons.insert(QStringLiteral("CurveScale"), powers);
    icons.insert(QStringLiteral("CurveReset"), straight);
    icons.insert(QStringLiteral("CurvePresets"), bent);
    icons.insert(QStringLiteral("CurveCopy"), copies);
    icons.insert(QStringLiteral("CurveEye"), eye);
}

// What a file browser lists.
void addFileIcons(QMap<QString, IconPaths>& icons) {
    const QPainterPath tab = polygon({{1, 3}, {6, 3}, {7.5, 5}, {15, 5}, {15, 14}, {1, 14}});
    const QPainterPath inside = box(2, 6, 12, 7);
    const IconPaths folder{tab - inside, inside};
    // An arrow that leads elsewhere, in the lower left corner.
    const QPainterPath badge = box(0, 9, 7, 7);
    const QPainterPath leads =
        polygon({{2, 10}, {6, 10}, {6, 14}, {4.7, 12.7}, {2, 15.4}, {0.6, 14}, {3.3, 11.3}});
    const QPainterPath sheet = polygon({{3, 1}, {10, 1}, {13, 4}, {13, 15}, {3, 15}});
    const QPainterPath blank = polygon({{4, 2}, {9, 2}, {9, 5}, {12, 5}, {12, 14}, {4, 14}});
    const IconPaths file{sheet - blank, blank};
    // Frames one behind the other.
    const QPainterPath front = box(1, 6, 11, 8);
    const IconPaths sequence{(front - box(2, 7, 9, 6)) | (box(3, 4, 11, 1) | box(13, 4, 1, 8)) |
                                 (box(5, 2, 11, 1) | box(15, 2, 1, 8)),
                             polygon({{2, 13}, {5, 9}, {7, 11}, {8.5, 9.5}, {11, 13}})};
    const QPainterPath plus = box(11, 8, 2, 7) | box(8.5, 10.5, 7, 2);
    const QPainterPath around = box(7.5, 7, 9, 9);
    const auto insert = [&icons](const char* name, const IconPaths& paths) {
        icons.insert(QLatin1String(name), paths);
    };
    insert("BrowseFolder", folder);
    insert("BrowseFolderLink", {(folder.solid - badge) | leads, folder.pale - badge});
    insert("BrowseNewFolder", {(folder.solid - around) | plus, folder.pale - around});
    insert("BrowseFile", file);
    insert("BrowseLink", {(file.solid - badge) | leads, file.pale - badge});
    insert("BrowseSequence", sequence);
}

// Where a browser goes, and how its rows are shown.
void addBrowserIcons(QMap<QString, IconPaths>& icons) {
    const IconPaths back{line({{3, 8}, {6, 8}}, {{10, 8}, {13, 8}}) |
                             line({{3, 8}, {4, 7}}, {{6.5, 4.5}, {7.5, 3.5}}) |
                             line({{3, 8}, {4, 9}}, {{6.5, 11.5}, {7.5, 12.5}}),
                         {}};
    QPainterPath circle = ring(8, 8, 6, 4);
    circle -= polygon({{8, 8}, {16, 8}, {16, 1}, {11, 1}});
    const IconPaths again{circle | polygon({{9.5, 6.5}, {15, 6.5}, {15, 1.5}}), {}};
    const IconPaths house{polygon({{8, 1.5}, {15, 8}, {13.5, 9.2}, {8, 4.2}, {2.5, 9.2}, {1, 8}}),
                          polygon({{8, 5.5},
                                   {13, 10},
                                   {13, 14.5},
                                   {9.5, 14.5},
                                   {9.5, 11},
                                   {6.5, 11},
                                   {6.5, 14.5},
                                   {3, 14.5},
                                   {3, 10}})};
    IconPaths details;
    IconPaths compact;
    for (const int y : {2, 6, 10}) {
        details.solid |= box(1, y + 1, 7, 1);
        details.pale |= box(9, y + 1, 2, 1) | box(12, y + 1, 3, 1);
        for (const int x : {1, 9}) {
            compact.pale |= box(x, y, 2, 2);
            compact.solid |= box(x + 3, y + 0.5, 3, 1);
        }
    }
    IconPaths tiles;
    for (const QPoint& at : {QPoint(1, 1), QPoint(9, 1), QPoint(1, 9), QPoint(9, 9)}) {
        tiles.solid |= box(at.x(), at.y(), 6, 5) - box(at.x() + 1, at.y() + 1, 4, 3);
        tiles.pale |= box(at.x() + 1, at.y() + 1, 4, 3);
    }
    const auto insert = [&icons](const char* name, const IconPaths& paths) {
        icons.insert(QLatin1String(name), paths);
    };
    insert("BrowseBack", back);
    insert("BrowseForward", mirrored(back));
    insert("BrowseUp", turned(back));
    insert("BrowseHome", house);
    insert("BrowseRefresh", again);
    insert("BrowseSide",
           {(box(1, 2, 14, 12) - box(2, 3, 12, 10)) | box(6, 3, 1, 10), box(2, 3, 4, 10)});
    insert("BrowseDetails", details);
    insert("BrowseCompact", compact);
    insert("BrowseThumbnails", tiles);
}

void addPlaceIcons(QMap<QString, IconPaths>& icons) {
    // Beside places: several folders, a drive, a screen, a clock, a star.
    const QPainterPath front = box(4, 7, 11, 7);
    const IconPaths group{
        (front - box(5, 8, 9, 5)) |
            polygon({{1, 3}, {5, 3}, {6, 4.5}, {11, 4.5}, {11, 6}, {3, 6}, {3, 11}, {1, 11}}),
        box(5, 8, 9, 5)};
    const IconPaths drive{(box(1.5, 6, 13, 6) - box(2.5, 7, 11, 4)) | box(11, 8.5, 2, 1),
                          box(2.5, 7, 11, 4)};
    const IconPaths screen{(box(1, 2.5, 14, 9) - box(2, 3.5, 12, 7)) | box(5, 13, 6, 1) |
                               box(7, 11.5, 2, 2),
                           box(2, 3.5, 12, 7)};
    const IconPaths recent{ring(8, 8, 6, 5) | box(7.5, 4, 1, 4.5) | box(7.5, 8, 3.5, 1), {}};
    QPolygonF points;
    for (int i = 0; i < 10; ++i) {
        const double angle = M_PI * (i / 5.0 - 0.5);
        const double radius = i % 2 == 0 ? 7 : 2.9;
        points << QPointF(8 + radius * std::cos(angle), 8.5 + radius * std::sin(angle));
    }
    QPainterPath star;
    star.addPolygon(points);
    star.closeSubpath();
    const QPainterPath inside = QTransform(0.68, 0, 0, 0.68, 8 * 0.32, 8.5 * 0.32).map(star);
    icons.insert(QStringLiteral("PlaceGroup"), group);
    icons.insert(QStringLiteral("PlaceDrive"), drive);
    icons.insert(QStringLiteral("PlaceDesktop"), screen);
    icons.insert(QStringLiteral("PlaceRecent"), recent);
    icons.insert(QStringLiteral("PlaceStar"), {star - inside, {}});
    icons.insert(QStringLiteral("PlaceStarFilled"), {star, {}});
}

// What the panes of scopes show: a trace between two lines, and figures in a table.
void addScopeIcons(QMap<QString, IconPaths>& icons) {
    IconPaths trace;
    trace.pale = box(1, 2, 14, 1) | box(1, 13, 14, 1);
    constexpr int Heights[] = {2, 5, 8, 6, 3, 4, 2};
    for (int i = 0; i < 7; ++i)
        trace.solid |= box(1 + 2 * i, 12 - Heights[i], 2, Heights[i]);
    IconPaths figures;
    figures.pale = box(1, 2, 14, 3);
    for (const int y : {7, 10, 13}) {
        for (const int x : {1, 6, 11})
            figures.solid |= box(x, y, 4, 1);
    }
    icons.insert(QStringLiteral("PageScopes"), trace);
    icons.insert(QStringLiteral("PageStatistics"), figures);
}

void addChartIcons(QMap<QString, IconPaths>& icons) {
    // A line over columns.
    IconPaths columns;
    for (const QPoint& top : {QPoint(3, 10), QPoint(7, 8), QPoint(11, 5)})
        columns.pale |= box(top.x(), top.y(), 3, 14 - top.y());
    columns.solid =
        box(1, 2, 1, 13) | box(1, 14, 14, 1) |
        polygon({{3, 7}, {7, 4.5}, {9, 5}, {14, 1}, {14, 2.4}, {9.2, 6.2}, {7.2, 5.7}, {3, 8.3}});
    columns.pale -= columns.solid;
    icons.insert(QStringLiteral("PageRenderTimes"), columns);
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

    // In a picker of colours: two links of a chain, and a plus.
    const auto ring = [](qreal x) {
        QPainterPath outer;
        outer.addRoundedRect(x, 5, 8, 6, 3, 3);
        QPainterPath inner;
        inner.addRoundedRect(x + 1.5, 6.5, 5, 3, 1.5, 1.5);
        return outer - inner;
    };
    const IconPaths chain{ring(1) | ring(7), {}};
    const IconPaths plus{box(7, 3, 2, 10) | box(3, 7, 10, 2), {}};
    // A pipette: its bulb, the collar, and the tube down to the tip.
    const IconPaths pipette{polygon({{10, 1.5}, {14.5, 6}, {11.8, 8.7}, {7.3, 4.2}}) |
                                polygon({{6.2, 4.3}, {7.2, 3.3}, {12.7, 8.8}, {11.7, 9.8}}),
                            polygon({{7.2, 6.2}, {9.8, 8.8}, {4.8, 13.8}, {2, 14}, {2.2, 11.2}})};

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
    addPathIcons(icons);
    icons.insert(QStringLiteral("Key"), {diamond(8, 6), {}});
    icons.insert(QStringLiteral("TCStop"), {box(4, 4, 8, 8), {}});
    icons.insert(QStringLiteral("PageSequences"), rows);
    icons.insert(QStringLiteral("PageViewer"), picture);
    icons.insert(QStringLiteral("PageTimeline"), ruler);
    icons.insert(QStringLiteral("PageGrade"), sliders);
    icons.insert(QStringLiteral("PageHistory"), clock);
    addScopeIcons(icons);
    addCurveIcons(icons);
    addPlaceIcons(icons);
    addChartIcons(icons);
    icons.insert(QStringLiteral("PaneClose"), cross);
    addFileIcons(icons);
    addBrowserIcons(icons);
    icons.insert(QStringLiteral("Search"), search);
    icons.insert(QStringLiteral("SearchMenu"), searchMenu);
    icons.insert(QStringLiteral("PaneFloat"), windows);
    icons.insert(QStringLiteral("Link"), chain);
    icons.insert(QStringLiteral("Add"), plus);
    icons.insert(QStringLiteral("Pipette"), pipette);
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
