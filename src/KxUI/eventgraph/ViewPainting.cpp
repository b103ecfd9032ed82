#include <KxUI/eventgraph/ViewPainting_p.h>

#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/NameColumn_p.h>

#include <QPainter>

#include <algorithm>

namespace Kestrel::UI {
namespace {

// The first x at which times are painted.
int firstX(const ViewPainting& view) {
    return std::max(view.visible.left(), nameColumnWidth);
}

void paintStripes(QPainter& painter, const ViewPainting& view) {
    if (view.stripeSpacing <= 0)
        return;
    const QRect& visible = view.visible;
    const int spacing = std::min(view.stripeSpacing, largestExtent);
    const int period = 2 * spacing;
    for (int x = nameColumnWidth + (firstX(view) - nameColumnWidth) / period * period;
         x <= visible.right(); x += period)
        painter.fillRect(QRect(x + spacing, visible.top(), spacing, visible.height()) & visible,
                         view.colors.stripe);
}

// A line at each of the events, which are ordered by time.
template <class Events, class TimeOf>
void paintLines(QPainter& painter, const ViewPainting& view, const Events& events, TimeOf timeOf) {
    const QRect& visible = view.visible;
    const auto firstFrom = [&](int x) {
        return std::partition_point(events.begin(), events.end(), [&](const auto& each) {
            return view.scale.x(timeOf(each)) < x;
        });
    };
    const auto last = firstFrom(visible.right() + 1);
    const auto first = firstFrom(firstX(view));
    // Lines that stand close together say nothing.
    constexpr int closest = 12;
    if ((last - first) * closest > visible.width())
        return;
    for (auto each = first; each < last; ++each)
        painter.fillRect(view.scale.x(timeOf(*each)), visible.top(), 1, visible.height(),
                         view.colors.sync);
}

void paintSyncLines(QPainter& painter, const ViewPainting& view) {
    const SceneRow* const row = view.scene.rowOf(view.syncTrack);
    if (!row)
        return;
    const TrackIndex& sync = view.scene.index(*row);
    paintLines(painter, view, sync.spans, [](const auto& span) { return span.start; });
    paintLines(painter, view, sync.instants, [](const auto& mark) { return mark.time; });
    paintLines(painter, view, sync.samples, [](const auto& sample) { return sample.time; });
}

void paintRow(QPainter& painter, const ViewPainting& view, const SceneRow& row) {
    const QRect area(0, row.top, view.size.width(), row.height);
    if (!area.intersects(view.visible) || row.height == 0)
        return;
    painter.save();
    painter.setClipRect(area & view.visible);
    const TrackIndex& index = view.scene.index(row);
    const RowPainting painting{index,
                               view.scale,
                               area,
                               firstX(view),
                               view.visible.right() + 1,
                               view.span,
                               view.colors,
                               [&index](quint32 event) { return userText(index, event); }};
    if (row.track.type == EventTrack::TrackType::Timeline)
        paintTimeline(painter, painting);
    else
        paintGraph(painter, painting);
    paintName(painter, row, view.colors, view.scrolled);
    painter.fillRect(view.visible.left(), area.bottom(), view.visible.width(), 1, view.colors.line);
    painter.restore();
}

void paintSelection(QPainter& painter, const ViewPainting& view) {
    const QRect& visible = view.visible;
    const QColor& color = view.colors.selection;
    const int from = std::max(view.scale.x(view.selectionStart), visible.left() - 2);
    const int to = std::min(view.scale.x(view.selectionEnd), visible.right() + 2);
    if (view.selectionStart == view.selectionEnd || from > to)
        return;
    QColor fill = color;
    fill.setAlpha(50);
    painter.fillRect(from, visible.top(), to - from, visible.height(), fill);
    painter.fillRect(from, visible.top(), 1, visible.height(), color);
    painter.fillRect(to, visible.top(), 1, visible.height(), color);
}

// A frame around the event, or the name, that was found.
void paintFound(QPainter& painter, const ViewPainting& view) {
    const auto& rows = view.scene.rows();
    if (view.found.row < 0 || view.found.row >= static_cast<int>(rows.size()))
        return;
    const SceneRow& row = rows[static_cast<std::size_t>(view.found.row)];
    QRect frame(0, row.top, nameColumnWidth - 1, row.height - 1);
    if (view.found.entry != FoundPlace::name) {
        const QRect& visible = view.visible;
        const int from = std::max(view.scale.x(view.foundStart), visible.left() - 4);
        const int to =
            std::min(std::max(view.scale.x(view.foundEnd), from + 1), visible.right() + 4);
        frame = QRect(from - 1, row.top, to - from + 1, row.height - 1);
    }
    painter.setPen(QPen(view.colors.selection, 2));
    painter.drawRect(frame.adjusted(0, 1, 0, -1));
}

} // namespace

void paintCapture(QPainter& painter, const ViewPainting& view) {
    paintStripes(painter, view);
    paintSyncLines(painter, view);
    for (const SceneRow& row : view.scene.rows())
        paintRow(painter, view, row);
    const QRect below(0, static_cast<int>(view.scene.height()), nameColumnWidth,
                      view.size.height());
    painter.fillRect(below & view.visible, view.colors.column);
    painter.fillRect(nameColumnWidth - 1, view.visible.top(), 1, view.visible.height(),
                     view.colors.line);
    paintSelection(painter, view);
    paintFound(painter, view);
}

void paintRecording(QPainter& painter, const QRect& view, const QColor& color) {
    const QString text = EventGraphView::tr("Recording...");
    const QFontMetrics metrics = painter.fontMetrics();
    const int size = metrics.height() * 2 / 3;
    QRect room(0, 0, size + 6 + metrics.horizontalAdvance(text), size);
    room.moveCenter(view.center());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xd8, 0x2c, 0x2c));
    painter.drawEllipse(QRect(room.topLeft(), QSize(size, size)));
    painter.setPen(color);
    painter.drawText(view.adjusted(room.left() + size + 6, 0, 0, 0),
                     Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text);
}

} // namespace Kestrel::UI
