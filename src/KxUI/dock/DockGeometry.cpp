#include <KxUI/dock/DockGeometry_p.h>

#include <QStyle>
#include <QWidget>

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace Kestrel::UI {

PaneLayout layOutPane(const PaneMetrics& m) {
    PaneLayout layout;
    const QRect pane(QPoint(), m.pane);
    if (!m.titleVisible) {
        layout.titleHeight = HiddenTitleHeight;
        layout.titleBar = QRect(0, 0, pane.width(), HiddenTitleHeight);
        layout.stack = pane.adjusted(0, HiddenTitleHeight, 0, 0);
        return layout;
    }

    const int menuSpace = m.hasMenu ? MenuButtonSpace : 0;
    const QSize largest = m.closeHint.expandedTo(m.floatHint);
    const int side = std::max(largest.width(), largest.height());
    const int height =
        std::max(std::max(side, m.lineSpacing) + 2 * m.margin + 2, m.stripHint.height());

    int right = pane.right();
    if (m.hasCloseButton) {
        layout.buttonsFit =
            pane.width() >= 2 * m.margin + m.closeHint.width() + m.floatHint.width() + menuSpace;
        const QRect title(0, 0, pane.width(), height);
        const auto place = [&](const QSize& size) {
            const QRect button(QPoint(right - m.margin - size.width(),
                                      title.top() + (title.height() - size.height()) / 2),
                               size);
            right -= size.width() + 1;
            const auto direction = m.rightToLeft ? Qt::RightToLeft : Qt::LeftToRight;
            return QStyle::visualRect(direction, title, button);
        };
        layout.closeButton = place(m.closeHint);
        layout.floatButton = place(m.floatHint);
    }

    layout.titleHeight = height;
    layout.titleBar = QRect(0, 0, pane.width(), height);
    layout.menuButton = QRect(0, 0, menuSpace, height);
    const int stripWidth = std::min(m.stripHint.width(), right - menuSpace);
    layout.strip = QRect(menuSpace, 0, std::max(0, stripWidth), height);
    layout.stack = QRect(0, height, pane.width(), std::max(0, pane.height() - height));
    return layout;
}

namespace {

/** The client length for one that is no larger than the area: as it is while the frame fits beside
    it. Subtracting the frame always would shrink the window at every restore. */
int lengthWithinFrame(int wanted, int available, int frame) {
    return std::min(wanted, available - frame);
}

} // namespace

WindowPlan planWindow(const SavedWindow& saved, bool fillScreen, const QVector<QRect>& areas,
                      const QSize& frame) {
    WindowPlan plan;
    plan.rect = saved.maximized && !saved.normal.isEmpty() ? saved.normal : saved.rect;
    if (areas.isEmpty())
        return plan;

    const int screen = std::min(saved.screen, int(areas.size()) - 1);
    const QRect area = areas.at(std::max(0, screen));
    plan.available = area;
    plan.fullScreen = saved.fullScreen && saved.screen < areas.size();

    QRect& r = plan.rect;
    bool widthIsBounded = true;
    if (fillScreen) {
        r = area;
    } else if (saved.fullScreen) {
        r = QRect(area.left() + area.width() / 6, area.top() + area.height() / 6,
                  2 * area.width() / 3, 2 * area.height() / 3);
    } else {
        r.setHeight(std::min(r.height(), area.height()));
        if (areas.size() == 1 || saved.maximized)
            r.setWidth(std::min(r.width(), area.width()));
        // A window that spans screens is as wide as it likes; its frame is not taken off either.
        widthIsBounded = r.width() <= area.width();
        if (!r.intersects(area)) {
            r.moveBottom(std::min(r.bottom(), area.bottom()));
            r.moveLeft(std::max(r.left(), area.left()));
            r.moveRight(std::min(r.right(), area.right()));
        }
        r.moveTop(std::max(r.top(), area.top()));
    }
    if (widthIsBounded)
        r.setWidth(lengthWithinFrame(r.width(), area.width(), frame.width()));
    r.setHeight(lengthWithinFrame(r.height(), area.height(), frame.height()));
    return plan;
}

QList<int> splitterSizes(const QVector<int>& sizes) {
    QList<int> result;
    result.reserve(sizes.size());
    for (const int size : sizes)
        result.append(std::max(0, std::min(size, QWIDGETSIZE_MAX)));
    const auto sum = std::accumulate(result.begin(), result.end(), std::int64_t(0));
    if (sum > QWIDGETSIZE_MAX) {
        for (int& size : result)
            size = int(std::int64_t(size) * QWIDGETSIZE_MAX / sum);
    }
    return result;
}

} // namespace Kestrel::UI
