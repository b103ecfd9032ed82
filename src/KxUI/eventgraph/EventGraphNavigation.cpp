// How the view moves over the capture: scale, scroll position, selection, what a search found.

#include <KxUI/eventgraph/EventGraphView_p.h>

#include <KxUI/eventgraph/EventPopup_p.h>
#include <KxUI/eventgraph/ViewPainting_p.h>

#include <QAbstractScrollArea>
#include <QPointer>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

void EventGraphViewPrivate::killStopTimer() {
    if (stopTimer != 0)
        q->killTimer(stopTimer);
    stopTimer = 0;
}

void EventGraphViewPrivate::relayout() {
    found = {};
    q->resize(q->sizeHint());
    q->update();
    Q_EMIT q->layoutChanged();
}

int EventGraphViewPrivate::span() const {
    return timeDifference(state.endTime, state.startTime);
}

const Scene& EventGraphViewPrivate::upToDateScene() const {
    scene.update(state, hideEmptyTracks);
    return scene;
}

ViewPainting EventGraphViewPrivate::painting(const QRect& visible, const ViewColors& colors) const {
    return {upToDateScene(),      colors, scale,         q->size(),      visible,
            visiblePart().left(), span(), stripeSpacing, q->syncTrack(), selectionStart,
            selectionEnd,         found,  foundStart,    foundEnd};
}

QRect EventGraphViewPrivate::visiblePart() const {
    const QWidget* const parent = q->parentWidget();
    return parent ? q->rect() & parent->rect().translated(-q->pos()) : q->rect();
}

int EventGraphViewPrivate::middle() const {
    const QRect seen = visiblePart();
    return seen.left() + nameColumnWidth + std::max(seen.width() - nameColumnWidth, 10) / 2;
}

QScrollBar* EventGraphViewPrivate::scrollBar(Qt::Orientation orientation) const {
    const QWidget* const viewport = q->parentWidget();
    auto* const area =
        viewport ? qobject_cast<QAbstractScrollArea*>(viewport->parentWidget()) : nullptr;
    if (!area || area->viewport() != viewport)
        return nullptr;
    return orientation == Qt::Horizontal ? area->horizontalScrollBar() : area->verticalScrollBar();
}

void EventGraphViewPrivate::scrollTo(int horizontal) {
    if (QScrollBar* const bar = scrollBar(Qt::Horizontal))
        bar->setValue(horizontal);
    if (q->parentWidget())
        q->move(-horizontal, q->y());
}

void EventGraphViewPrivate::scrollBy(Qt::Orientation orientation, int distance) {
    if (QScrollBar* const bar = scrollBar(orientation))
        bar->setValue(bar->value() + distance);
}

bool EventGraphViewPrivate::scrollByKey(int key) {
    const int page = std::max(visiblePart().width() - nameColumnWidth, 10);
    const struct {
        int key;
        Qt::Orientation orientation;
        int distance;
    } keys[] = {{Qt::Key_Left, Qt::Horizontal, -page / 8},
                {Qt::Key_Right, Qt::Horizontal, page / 8},
                {Qt::Key_PageUp, Qt::Horizontal, -page},
                {Qt::Key_PageDown, Qt::Horizontal, page},
                {Qt::Key_Home, Qt::Horizontal, -largestExtent},
                {Qt::Key_End, Qt::Horizontal, largestExtent},
                {Qt::Key_Up, Qt::Vertical, -timelineRowHeight},
                {Qt::Key_Down, Qt::Vertical, timelineRowHeight}};
    for (const auto& each : keys) {
        if (each.key != key)
            continue;
        scrollBy(each.orientation, each.distance);
        return true;
    }
    return false;
}

void EventGraphViewPrivate::setScale(float pixelsPerMs, int fixedX) {
    const float old = std::exchange(scale.pixelsPerMs, pixelsPerMs);
    const QSize hint = q->sizeHint();
    popup->hide();
    const int parentWidth = q->parentWidget() ? q->parentWidget()->width() : hint.width();
    const int scroll =
        scrollAfterZoom(fixedX, -q->x(), old, pixelsPerMs, hint.width(), parentWidth);
    q->resize(hint);
    scrollTo(scroll);
    q->update();
    Q_EMIT q->layoutChanged();
}

void EventGraphViewPrivate::showTimes(int start, int end) {
    if (!state.paused)
        return;
    const int room = std::max(visiblePart().width() - nameColumnWidth, 1);
    const double length = std::max(timeDifference(end, start), 1);
    scale.pixelsPerMs = std::min(fittingScale(length, room), zoomed(1.0f, 120 * 1000, span()));
    const QSize hint = q->sizeHint();
    q->resize(hint);
    const int parentWidth = q->parentWidget() ? q->parentWidget()->width() : hint.width();
    const int spare = room - (scale.x(end) - scale.x(start));
    scrollTo(std::clamp(scale.x(start) - nameColumnWidth - spare / 2, 0,
                        std::max(hint.width() - parentWidth, 0)));
    popup->hide();
    q->update();
    Q_EMIT q->layoutChanged();
}

void EventGraphViewPrivate::showFound(const FoundPlace& place) {
    found = place;
    foundStart = foundEnd = 0;
    const SceneRow row = scene.rows()[static_cast<std::size_t>(place.row)];
    const QPointer<EventGraphView> alive(q);
    if (place.entry != FoundPlace::name)
        showFoundEvent(row);
    if (!alive)
        return;
    if (QScrollBar* const bar = scrollBar(Qt::Vertical)) {
        if (row.top < bar->value())
            bar->setValue(row.top);
        else if (row.top + row.height > bar->value() + bar->pageStep())
            bar->setValue(row.top + row.height - bar->pageStep());
    }
    q->update();
}

void EventGraphViewPrivate::showFoundEvent(const SceneRow& row) {
    const auto times = timesOf(scene.index(row), static_cast<quint32>(found.entry));
    foundStart = times.first;
    foundEnd = times.second;
    const QPointer<EventGraphView> alive(q);
    q->setSelection(foundStart, foundEnd);
    if (!alive)
        return;
    const QRect seen = visiblePart();
    const int from = scale.x(foundStart);
    if (from >= seen.left() + nameColumnWidth && from < seen.right())
        return;
    const int most = q->parentWidget() ? std::max(q->width() - q->parentWidget()->width(), 0) : 0;
    scrollTo(std::clamp(from - seen.width() / 2, 0, most));
}

bool EventGraphViewPrivate::forgetMarks() {
    if (selectionStart == selectionEnd && found.row < 0)
        return false;
    found = {};
    q->update();
    q->setSelection(0, 0);
    return true;
}

void EventGraphViewPrivate::execute(const SelectionDrag::Command& command) {
    switch (command.what) {
    case SelectionDrag::Command::Nothing:
        break;
    case SelectionDrag::Command::Select:
        q->setSelection(truncated(scale.time(command.from)), truncated(scale.time(command.to)));
        break;
    case SelectionDrag::Command::Clear:
        q->setSelection(0, 0);
        break;
    }
}

} // namespace Kestrel::UI
