#include <KxUI/dock/DropZones_p.h>

#include <QTabBar>

#include <algorithm>

namespace Kestrel::UI {

DockDropZone dropZoneAt(const QPoint& point, const QRect& stack, const QSize& pane) {
    constexpr int Deepest = 30;
    const int mx = std::min(pane.width() / 3, Deepest);
    const int my = std::min(pane.height() / 3, Deepest);
    const int left = point.x() - stack.left();
    const int right = stack.right() - point.x();
    const int top = point.y() - stack.top();
    const int bottom = stack.bottom() - point.y();
    // By distances: a stack thinner than its edge zones has no inside.
    const bool isInside = left >= mx && right >= mx && top >= my && bottom >= my;
    if (point.y() < stack.top() || isInside)
        return DropCentre;
    if (left < right && left < top && left < bottom)
        return DropLeft;
    if (right < top && right < bottom)
        return DropRight;
    return top < bottom ? DropTop : DropBottom;
}

QRect dropZoneArea(const QRect& area, DockDropZone zone) {
    QRect part = area;
    switch (zone) {
    case DropLeft:
        part.setRight(area.center().x());
        break;
    case DropRight:
        part.setLeft(area.center().x());
        break;
    case DropTop:
        part.setBottom(area.center().y());
        break;
    case DropBottom:
        part.setTop(area.center().y());
        break;
    case DropCentre:
        break;
    }
    return part;
}

QVector<QRect> tabRects(const QTabBar& strip) {
    QVector<QRect> rects;
    for (int i = 0; i < strip.count(); ++i)
        rects.append(strip.tabRect(i));
    return rects;
}

int dropIndexAt(const QPoint& point, const QVector<QRect>& tabs) {
    for (int i = 0; i < tabs.size(); ++i) {
        if (tabs.at(i).contains(point))
            return point.x() > tabs.at(i).center().x() ? i + 1 : i;
    }
    return -1;
}

} // namespace Kestrel::UI
