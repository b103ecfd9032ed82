#include <KxUI/eventgraph/EventGraphView.h>

#include <KxUI/eventgraph/EventGraphPainting_p.h>
#include <KxUI/eventgraph/EventGraphReader.h>
#include <KxUI/eventgraph/EventGraphScene_p.h>
#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/eventgraph/EventGraphTimerQTime.h>
#include <KxUI/eventgraph/EventGraphWriter.h>
#include <KxUI/eventgraph/EventTraceWriter_p.h>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QFrame>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QSaveFile>
#include <QScreen>
#include <QScrollBar>
#include <QTextEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>
#include <utility>

namespace Kestrel::UI {
namespace {

// A pipe or a device is written to; anything else is replaced when the new content is complete.
template <class Write>
bool writeFile(const QString& path, Write write) {
    if (const QFileInfo info(path); info.exists() && !info.isFile()) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && write(&file);
    }
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    return file.open(QIODevice::WriteOnly) && write(&file) && file.commit();
}

} // namespace

EventGraphView::EventGraphView(QWidget* parent, IEventGraphTimer* timer)
    : QWidget(parent)
    , m_ownTimer(timer ? nullptr : std::make_unique<EventGraphTimerQTime>())
    , m_state(CaptureState::acquire(this, timer ? timer : m_ownTimer.get()))
    , m_scene(std::make_unique<Scene>()) {
    setFocusPolicy(Qt::WheelFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    {
        const StateWriteGuard guard(m_state.lock);
        m_state.startTime = m_state.endTime = m_state.timer->time();
    }
    auto* const popup = new QFrame(this, Qt::Popup);
    popup->setFrameShape(QFrame::StyledPanel);
    m_popupText = new QTextEdit(popup);
    m_popupText->setReadOnly(true);
    m_popupText->setLineWrapMode(QTextEdit::NoWrap);
    m_popupText->setFrameShape(QFrame::NoFrame);
    auto* const layout = new QVBoxLayout(popup);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_popupText);
    popup->hide();
    m_popup = popup;
    resize(sizeHint());
}

EventGraphView::~EventGraphView() {
    m_state.retire();
}

IEventGraphTimer* EventGraphView::timer() const {
    return m_state.timer;
}

QReadWriteLock* EventGraphView::stateLock() const {
    return &m_state.lock;
}

QMutex* EventGraphView::GetMutex() {
    return &profilerMutex();
}

bool EventGraphView::paused() const {
    return m_state.paused;
}

EventGraphMode EventGraphView::mode() const {
    return m_state.mode;
}

float EventGraphView::durationSeconds() const {
    return m_state.durationSeconds;
}

int EventGraphView::startTime() const {
    return m_state.startTime;
}

int EventGraphView::endTime() const {
    return m_state.endTime;
}

void EventGraphView::start(float durationSeconds, EventGraphMode mode) {
    const bool timed = mode == EventGraphMode::Forwards && durationSeconds != unlimitedDuration;
    emit captureStarting(timed);
    {
        Dropped dropped;
        const StateWriteGuard guard(m_state.lock);
        killStopTimer();
        m_state.mode = mode;
        m_state.durationSeconds = durationSeconds;
        m_state.clear(dropped);
        if (timed)
            m_stopTimer = startTimer(std::max(truncated(double(durationSeconds) * 1000.0), 0),
                                     Qt::CoarseTimer);
        m_state.paused = false;
    }
    hidePopup();
    m_found = {};
    setSelection(0, 0);
    relayout();
}

void EventGraphView::stop() {
    {
        Dropped dropped;
        const StateWriteGuard guard(m_state.lock);
        killStopTimer();
        m_state.stop(dropped);
    }
    relayout();
    emit captureStopped();
}

void EventGraphView::clear() {
    {
        Dropped dropped;
        const StateWriteGuard guard(m_state.lock);
        m_state.clear(dropped);
    }
    relayout();
}

void EventGraphView::addTrack(EventTrack* track) {
    if (!track)
        return;
    Dropped dropped;
    const StateReadGuard stateGuard(m_state.lock);
    const MutexGuard guard(profilerMutex());
    m_state.add(EventTrackPrivate::of(*track), dropped);
}

void EventGraphView::removeTrack(EventTrack* track) {
    if (!track)
        return;
    const MutexGuard guard(profilerMutex());
    m_state.remove(EventTrackPrivate::of(*track));
}

const QMultiMap<int, EventTrack*>& EventGraphView::tracks() const {
    return m_state.tracks;
}

EventGraphSnapshot EventGraphView::snapshot() const {
    EventGraphSnapshot result;
    std::vector<TrackContent> contents;
    {
        const StateReadGuard stateGuard(m_state.lock);
        const MutexGuard guard(profilerMutex());
        result.startTime = m_state.startTime;
        result.endTime = m_state.endTime;
        for (const EventTrack* track : qAsConst(m_state.tracks))
            contents.push_back(CaptureState::contentOf(EventTrackPrivate::of(*track)));
    }
    for (TrackContent& content : contents)
        result.tracks.push_back(snapshotOf(std::move(content)));
    return result;
}

void EventGraphView::setBackgroundStripeSpacing(int pixels) {
    if (m_stripeSpacing == pixels)
        return;
    m_stripeSpacing = pixels;
    update();
}

void EventGraphView::setSyncTrack(EventTrack* track) {
    const MutexGuard guard(profilerMutex());
    m_state.syncTrack = track;
    m_state.rowsChanged();
}

EventTrack* EventGraphView::syncTrack() const {
    const MutexGuard guard(profilerMutex());
    return m_state.syncTrack;
}

void EventGraphView::setHideEmptyTracks(bool hide) {
    if (m_hideEmptyTracks == hide)
        return;
    m_hideEmptyTracks = hide;
    relayout();
}

void EventGraphView::setHitTestMode(EventHitTestMode mode) {
    m_hitTestMode = mode;
}

bool EventGraphView::save(const QString& path, int flags) const {
    return save(path, SaveFlags(QFlag(flags)));
}

bool EventGraphView::save(const QString& path, SaveFlags flags) const {
    return writeFile(
        path, [&](QIODevice* device) { return EventGraphWriter(*this, flags).write(device); });
}

bool EventGraphView::exportTrace(const QString& path) const {
    return writeFile(path, [&](QIODevice* device) { return writeEventTrace(*this, device); });
}

void EventGraphView::load(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    EventGraphReader reader(*this);
    const QPointer<EventGraphView> alive(this);
    if (!reader.read(&file))
        QMessageBox::warning(this, tr("Open result"),
                             tr("Error opening '%1':\n\n%2").arg(path, reader.errorString()));
    if (alive)
        relayout();
}

// What is shown has changed as a whole.
void EventGraphView::relayout() {
    m_found = {};
    resize(sizeHint());
    update();
    emit layoutChanged();
}

int EventGraphView::span() const {
    return timeDifference(m_state.endTime, m_state.startTime);
}

QSize EventGraphView::sizeHint() const {
    if (!m_state.paused)
        return {200, 100};
    return viewSize(span(), m_scale, scene().height());
}

const Scene& EventGraphView::scene() const {
    m_scene->startTime = m_state.startTime;
    m_scene->endTime = m_state.endTime;
    m_scene->setTracks(m_state.trackInfos(), m_hideEmptyTracks);
    return *m_scene;
}

const TrackIndex& EventGraphView::index(const SceneRow& row) const {
    TrackIndex& index = m_scene->indexes[row.track.content];
    if (!index.isFor(row.track, m_scene->startTime)) {
        const auto content = CaptureState::contentOf(row.track);
        index = content ? makeIndex(*content, m_scene->startTime)
                        : makeIndex(row.track, m_scene->startTime, {});
    }
    return index;
}

// The text of the event of an index, or nothing when it is no longer held.
QString EventGraphView::userText(const TrackInfo& track, quint64 event) {
    const EventUserDataIP data = CaptureState::userDataOf(track, track.firstEvent + event);
    return data ? data->text() : QString();
}

QString EventGraphView::eventTextAt(const QPoint& point, QRect* hitRect) const {
    if (!m_state.paused)
        return {};
    const Scene& shown = scene();
    const TimeScale scale{m_scale};
    std::optional<EventHit> hit;
    const SceneRow* row = nullptr;
    for (const SceneRow& each : shown.rows) {
        // A sample on the border of its row can be hit from the next one.
        const bool near = point.y() >= each.top - 2 && point.y() <= each.top + each.height + 2;
        if (near && point.x() > nameColumnWidth - 1 &&
            each.track.type != EventTrack::TrackType::Timeline)
            hit = hitGraph(index(each), scale, point, each.top + each.height);
        if (hit) {
            row = &each;
            break;
        }
    }
    if (!hit) {
        row = shown.rowAt(point.y());
        if (!row || row->track.type != EventTrack::TrackType::Timeline)
            return {};
        hit = hitTimeline(index(*row), {scale, point.x(), width(), m_hitTestMode});
        if (!hit)
            return {};
        hit->rect = QRect(hit->rect.x(), row->top, hit->rect.width(), row->height);
    }
    if (hitRect)
        *hitRect = hit->rect;

    QString text;
    if (hit->kind != EventHit::Kind::Sample) {
        text = userText(row->track, hit->event);
        if (!text.isEmpty())
            text += QLatin1String(", ");
    }
    switch (hit->kind) {
    case EventHit::Kind::Sample:
        text += QStringLiteral("Time=%1, Value=%2")
                    .arg(QString::number(hit->time),
                         QString::number(static_cast<double>(hit->value), 'g', 6));
        break;
    case EventHit::Kind::Instant:
        text += QStringLiteral("Time=") + QString::number(hit->time);
        break;
    case EventHit::Kind::Activity:
        text += QStringLiteral("Start=%1, Duration=%2")
                    .arg(QString::number(hit->time),
                         QString::number(timeDifference(hit->end, hit->time)));
        break;
    }
    return text + CaptureState::tooltipText(row->track);
}

void EventGraphView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), palette().color(QPalette::Base));
    if (m_state.paused)
        paintRows(painter, event->rect());
    else
        paintRecording(painter);
}

void EventGraphView::paintRecording(QPainter& painter) const {
    const QString text = tr("Recording...");
    const int size = fontMetrics().height() * 2 / 3;
    const int width = size + 6 + fontMetrics().horizontalAdvance(text);
    QRect room(0, 0, width, size);
    room.moveCenter(rect().center());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xd8, 0x2c, 0x2c));
    painter.drawEllipse(QRect(room.topLeft(), QSize(size, size)));
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(rect().adjusted(room.left() + size + 6, 0, 0, 0),
                     Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text);
}

void EventGraphView::paintRows(QPainter& painter, const QRect& visible) const {
    const Scene& shown = scene();
    const ViewColors colors(palette());
    const TimeScale scale{m_scale};
    const int left = std::max(visible.left(), nameColumnWidth);
    const int right = visible.right() + 1;
    paintStripes(painter, visible, colors);
    paintSyncLines(painter, visible, colors);
    for (const SceneRow& row : shown.rows) {
        const QRect area(0, row.top, width(), row.height);
        if (!area.intersects(visible) || row.height == 0)
            continue;
        painter.save();
        painter.setClipRect(area & visible);
        const RowPainting painting{
            index(row), scale,
            area,       left,
            right,      span(),
            colors,     [&row](quint32 number) { return userText(row.track, number); }};
        if (row.track.type == EventTrack::TrackType::Timeline)
            paintTimeline(painter, painting);
        else
            paintGraph(painter, painting);
        paintName(painter, row, colors);
        painter.fillRect(visible.left(), area.bottom(), visible.width(), 1, colors.line);
        painter.restore();
    }
    const QRect below(0, static_cast<int>(shown.height()), nameColumnWidth, height());
    painter.fillRect(below & visible, colors.column);
    painter.fillRect(nameColumnWidth - 1, visible.top(), 1, visible.height(), colors.line);
    paintSelection(painter, visible, colors);
}

void EventGraphView::paintStripes(QPainter& painter, const QRect& visible,
                                  const ViewColors& colors) const {
    if (m_stripeSpacing <= 0)
        return;
    const int spacing = std::min(m_stripeSpacing, largestExtent);
    const int period = 2 * spacing;
    const int left = std::max(visible.left(), nameColumnWidth);
    for (int x = nameColumnWidth + (left - nameColumnWidth) / period * period; x <= visible.right();
         x += period)
        painter.fillRect(QRect(x + spacing, visible.top(), spacing, visible.height()) & visible,
                         colors.stripe);
}

void EventGraphView::paintSyncLines(QPainter& painter, const QRect& visible,
                                    const ViewColors& colors) const {
    const EventTrack* const track = syncTrack();
    const auto& rows = m_scene->rows;
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&](const auto& each) { return each.track.track == track; });
    if (!track || row == rows.end())
        return;
    const TimeScale scale{m_scale};
    const int left = std::max(visible.left(), nameColumnWidth);
    const auto draw = [&](const auto& events, auto timeOf) {
        const auto firstFrom = [&](int x) {
            return std::partition_point(events.begin(), events.end(), [&](const auto& each) {
                return scale.x(timeOf(each)) < x;
            });
        };
        const auto last = firstFrom(visible.right() + 1);
        const auto first = firstFrom(left);
        // Lines that stand close together say nothing.
        constexpr int closest = 12;
        if ((last - first) * closest > visible.width())
            return;
        for (auto each = first; each < last; ++each)
            painter.fillRect(scale.x(timeOf(*each)), visible.top(), 1, visible.height(),
                             colors.sync);
    };
    const TrackIndex& sync = index(*row);
    draw(sync.spans, [](const TrackIndex::Span& span) { return span.start; });
    draw(sync.instants, [](const TrackIndex::Mark& mark) { return mark.time; });
    draw(sync.samples, [](const TrackIndex::Sample& sample) { return sample.time; });
}

void EventGraphView::paintName(QPainter& painter, const SceneRow& row,
                               const ViewColors& colors) const {
    const int scrolled = visiblePart().left();
    const QColor swatch = colors.track(row.track.color);
    const QString& name = row.track.name;
    const QFontMetrics metrics = fontMetrics();
    if (scrolled < nameColumnWidth) {
        const QRect column(0, row.top, nameColumnWidth, row.height);
        painter.fillRect(column, colors.column);
        painter.fillRect(0, row.top + 3, 4, row.height - 6, swatch);
        QRect room = column.adjusted(12, 0, -8, 0);
        if (row.track.type != EventTrack::TrackType::Timeline && row.height >= metrics.height()) {
            // The ends of the axis, beside the graph.
            const QString top = QString::number(static_cast<double>(row.track.maxValue), 'g', 6);
            const QString base = QString::number(static_cast<double>(row.track.minValue), 'g', 6);
            painter.setPen(colors.faintText);
            painter.drawText(room, Qt::AlignRight | Qt::AlignTop, top);
            if (row.height >= 2 * metrics.height())
                painter.drawText(room, Qt::AlignRight | Qt::AlignBottom, base);
            // In a low row the name stands beside them, not between.
            if (2 * row.height < 5 * metrics.height())
                room.setRight(
                    room.right() - 8 -
                    std::max(metrics.horizontalAdvance(top), metrics.horizontalAdvance(base)));
        }
        painter.setPen(colors.text);
        painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                         metrics.elidedText(name, Qt::ElideRight, room.width()));
        return;
    }
    // The column is out of sight: the name goes with the view.
    const QString text = metrics.elidedText(name, Qt::ElideRight, nameColumnWidth);
    QRect chip(scrolled + 4, row.top, metrics.horizontalAdvance(text) + 16, metrics.height() + 2);
    chip.moveTop(row.top +
                 std::max((std::min(row.height, timelineRowHeight) - chip.height()) / 2, 0));
    QColor back = colors.column;
    back.setAlpha(225);
    painter.fillRect(chip, back);
    painter.fillRect(chip.left(), chip.top(), 4, chip.height(), swatch);
    painter.setPen(colors.text);
    painter.drawText(chip.adjusted(10, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, text);
}

void EventGraphView::paintSelection(QPainter& painter, const QRect& visible,
                                    const ViewColors& colors) const {
    const TimeScale scale{m_scale};
    if (m_selectionStart != m_selectionEnd) {
        const int from = std::max(scale.x(m_selectionStart), visible.left() - 2);
        const int to = std::min(scale.x(m_selectionEnd), visible.right() + 2);
        if (from > to)
            return;
        QColor fill = colors.selection;
        fill.setAlpha(50);
        painter.fillRect(from, visible.top(), to - from, visible.height(), fill);
        painter.fillRect(from, visible.top(), 1, visible.height(), colors.selection);
        painter.fillRect(to, visible.top(), 1, visible.height(), colors.selection);
    }
    if (m_found.row >= 0 && m_found.row < int(m_scene->rows.size())) {
        const SceneRow& row = m_scene->rows[std::size_t(m_found.row)];
        QRect frame(0, row.top, nameColumnWidth - 1, row.height - 1);
        if (m_found.entry >= 0) {
            const int from = std::max(scale.x(m_found.start), visible.left() - 4);
            const int to = std::min(std::max(scale.x(m_found.end), from + 1), visible.right() + 4);
            frame = QRect(from - 1, row.top, to - from + 1, row.height - 1);
        }
        painter.setPen(QPen(colors.selection, 2));
        painter.drawRect(frame.adjusted(0, 1, 0, -1));
    }
}

void EventGraphView::wheelEvent(QWheelEvent* event) {
    const int delta = event->angleDelta().y();
    if (delta == 0) {
        event->ignore();
        return;
    }
    event->accept();
    if (m_state.paused)
        setScale(zoomed(m_scale, delta, span()), static_cast<int>(event->position().x()));
}

void EventGraphView::zoomAbout(int x, int steps) {
    if (m_state.paused)
        setScale(zoomed(m_scale, std::clamp(steps, -1000, 1000) * 120, span()), x);
}

// Changes the scale while the time at an x of the view stays where it is.
void EventGraphView::setScale(float scale, int fixedX) {
    const float old = std::exchange(m_scale, scale);
    const QSize hint = sizeHint();
    hidePopup();
    const int parentWidth = parentWidget() ? parentWidget()->width() : hint.width();
    const int scroll = scrollAfterZoom(fixedX, -x(), old, scale, hint.width(), parentWidth);
    resize(hint);
    scrollTo(scroll);
    update();
    emit layoutChanged();
}

void EventGraphView::scrollTo(int horizontal) {
    if (QScrollBar* const bar = scrollBar(Qt::Horizontal))
        bar->setValue(horizontal);
    if (parentWidget())
        move(-horizontal, y());
}

// Shows the times between two, as large as the ladder of scales allows.
void EventGraphView::showTimes(int start, int end) {
    if (!m_state.paused)
        return;
    const int room = std::max(visiblePart().width() - nameColumnWidth, 1);
    const double length = std::max(timeDifference(end, start), 1);
    m_scale = std::min(fittingScale(length, room), zoomed(1.0f, 120 * 1000, span()));
    const QSize hint = sizeHint();
    resize(hint);
    const int parentWidth = parentWidget() ? parentWidget()->width() : hint.width();
    const TimeScale scale{m_scale};
    const int spare = room - (scale.x(end) - scale.x(start));
    scrollTo(std::clamp(scale.x(start) - nameColumnWidth - spare / 2, 0,
                        std::max(hint.width() - parentWidth, 0)));
    hidePopup();
    update();
    emit layoutChanged();
}

void EventGraphView::zoomToFit() {
    showTimes(0, span());
}

void EventGraphView::zoomToSelection() {
    if (m_selectionStart != m_selectionEnd)
        showTimes(m_selectionStart, m_selectionEnd);
}

void EventGraphView::setSelection(int start, int end) {
    const int longest = std::max(span(), 0);
    start = std::clamp(start, 0, longest);
    end = std::clamp(end, 0, longest);
    if (start > end)
        std::swap(start, end);
    if (m_selectionStart == start && m_selectionEnd == end)
        return;
    m_selectionStart = start;
    m_selectionEnd = end;
    update();
    emit selectionChanged();
}

bool EventGraphView::findNext(const QString& text, bool backwards) {
    if (text.isEmpty() || !m_state.paused)
        return false;
    const Scene& shown = scene();
    const int rowCount = static_cast<int>(shown.rows.size());
    if (rowCount == 0)
        return false;
    const Found from = m_found.row < rowCount ? m_found : Found();
    const int first = from.row >= 0 ? from.row : backwards ? rowCount - 1 : 0;
    constexpr qint64 none = -2;
    constexpr qint64 farthest = std::numeric_limits<qint64>::max();
    // Around once: the rest of the row where it begins comes first, its other part last.
    for (int step = 0; step <= rowCount; ++step) {
        const int number =
            ((backwards ? first - step : first + step) % rowCount + rowCount) % rowCount;
        const TrackInfo& track = shown.rows[std::size_t(number)].track;
        qint64 low = -1, high = farthest;
        if (from.row >= 0 && step == 0)
            (backwards ? high : low) = backwards ? from.entry - 1 : from.entry + 1;
        else if (from.row >= 0 && step == rowCount)
            (backwards ? low : high) = from.entry;
        else if (step == rowCount)
            break;
        const qint64 entry =
            backwards ? lastMatch(track, text, low, high) : firstMatch(track, text, low, high);
        if (entry != none)
            return showFound({number, entry, 0, 0});
    }
    return false;
}

// Finds the first entry of a track in [low, high] that holds the text: -1 is the track's name,
// other numbers are those of events; -2 when there is none.
qint64 EventGraphView::firstMatch(const TrackInfo& track, const QString& text, qint64 low,
                                  qint64 high) {
    if (low <= -1 && high >= -1 && track.name.contains(text, Qt::CaseInsensitive))
        return -1;
    const auto content = CaptureState::contentOf(track);
    const qint64 end =
        content ? std::min(high, static_cast<qint64>(content->events.size()) - 1) : -1;
    for (qint64 at = std::max<qint64>(low, 0); at <= end; ++at) {
        if (isMatch(content->events[std::size_t(at)], text))
            return at;
    }
    return -2;
}

qint64 EventGraphView::lastMatch(const TrackInfo& track, const QString& text, qint64 low,
                                 qint64 high) {
    const auto content = CaptureState::contentOf(track);
    const qint64 end =
        content ? std::min(high, static_cast<qint64>(content->events.size()) - 1) : -1;
    for (qint64 at = end; at >= std::max<qint64>(low, 0); --at) {
        if (isMatch(content->events[std::size_t(at)], text))
            return at;
    }
    if (low <= -1 && high >= -1 && track.name.contains(text, Qt::CaseInsensitive))
        return -1;
    return -2;
}

// A start says nothing that its end does not.
bool EventGraphView::isMatch(const EventTrack::Event& event, const QString& text) {
    return event.type != EventTrack::Type::Start && event.userData &&
           event.userData->text().contains(text, Qt::CaseInsensitive);
}

// Marks what was found and brings it into sight.
bool EventGraphView::showFound(const Found& found) {
    m_found = found;
    const SceneRow& row = m_scene->rows[std::size_t(found.row)];
    if (found.entry >= 0) {
        const TrackIndex& events = index(row);
        const auto before = [&](const auto& member) {
            return [&, member](const auto& each) { return each.*member < quint32(found.entry); };
        };
        const auto span = std::partition_point(events.spans.begin(), events.spans.end(),
                                               before(&TrackIndex::Span::endEvent));
        const auto mark = std::partition_point(events.instants.begin(), events.instants.end(),
                                               before(&TrackIndex::Mark::event));
        if (span != events.spans.end() && span->endEvent == quint32(found.entry)) {
            m_found.start = span->start;
            m_found.end = span->end;
        } else if (mark != events.instants.end() && mark->event == quint32(found.entry)) {
            m_found.start = m_found.end = mark->time;
        }
        setSelection(m_found.start, m_found.end);
        const QRect seen = visiblePart();
        const int from = TimeScale{m_scale}.x(m_found.start);
        if (from < seen.left() + nameColumnWidth || from >= seen.right()) {
            const int most = parentWidget() ? std::max(width() - parentWidget()->width(), 0) : 0;
            scrollTo(std::clamp(from - seen.width() / 2, 0, most));
        }
    }
    if (QScrollBar* const bar = scrollBar(Qt::Vertical)) {
        if (row.top < bar->value())
            bar->setValue(row.top);
        else if (row.top + row.height > bar->value() + bar->pageStep())
            bar->setValue(row.top + row.height - bar->pageStep());
    }
    update();
    return true;
}

void EventGraphView::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    if (m_popup->isVisible()) {
        hidePopup();
        return;
    }
    const bool selects = event->modifiers() & Qt::ShiftModifier;
    const QString text = selects ? QString() : eventTextAt(event->pos());
    if (!text.isEmpty()) {
        showPopup(text, event->globalPos());
    } else if (event->button() == Qt::LeftButton && m_state.paused) {
        m_dragX = event->pos().x();
        m_dragging = Dragging::Pressed;
    }
}

void EventGraphView::mouseMoveEvent(QMouseEvent* event) {
    const int x = event->pos().x();
    if (m_dragging == Dragging::Pressed &&
        std::abs(x - m_dragX) >= QApplication::startDragDistance())
        m_dragging = Dragging::Selecting;
    if (m_dragging != Dragging::Selecting)
        return;
    const TimeScale scale{m_scale};
    setSelection(truncated(scale.time(m_dragX)), truncated(scale.time(x)));
}

void EventGraphView::mouseReleaseEvent(QMouseEvent*) {
    if (m_dragging == Dragging::Pressed)
        setSelection(0, 0);
    m_dragging = Dragging::None;
}

void EventGraphView::keyPressEvent(QKeyEvent* event) {
    const QRect seen = visiblePart();
    const int page = std::max(seen.width() - nameColumnWidth, 10);
    const auto scrollBy = [&](Qt::Orientation orientation, int distance) {
        if (QScrollBar* const bar = scrollBar(orientation))
            bar->setValue(bar->value() + distance);
    };
    const int middle = seen.left() + nameColumnWidth + page / 2;
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return zoomAbout(middle, 1);
    case Qt::Key_Minus:
        return zoomAbout(middle, -1);
    case Qt::Key_F:
        return zoomToFit();
    case Qt::Key_Z:
        return zoomToSelection();
    case Qt::Key_Left:
        return scrollBy(Qt::Horizontal, -page / 8);
    case Qt::Key_Right:
        return scrollBy(Qt::Horizontal, page / 8);
    case Qt::Key_PageUp:
        return scrollBy(Qt::Horizontal, -page);
    case Qt::Key_PageDown:
        return scrollBy(Qt::Horizontal, page);
    case Qt::Key_Home:
        return scrollBy(Qt::Horizontal, -largestExtent);
    case Qt::Key_End:
        return scrollBy(Qt::Horizontal, largestExtent);
    case Qt::Key_Up:
        return scrollBy(Qt::Vertical, -timelineRowHeight);
    case Qt::Key_Down:
        return scrollBy(Qt::Vertical, timelineRowHeight);
    case Qt::Key_Escape:
        if (m_selectionStart != m_selectionEnd || m_found.row >= 0) {
            m_found = {};
            setSelection(0, 0);
            update();
            return;
        }
        break;
    default:
        break;
    }
    QWidget::keyPressEvent(event);
}

void EventGraphView::hideEvent(QHideEvent* event) {
    hidePopup();
    QWidget::hideEvent(event);
}

void EventGraphView::showPopup(const QString& text, const QPoint& globalPosition) {
    const QScreen* screen = QGuiApplication::screenAt(globalPosition);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect room = screen->geometry();
    const QFontMetrics metrics(m_popupText->document()->defaultFont());
    m_popupText->setPlainText(text);
    m_popup->setFixedSize((metrics.size(0, text) + QSize(30, 30)).boundedTo(room.size()));
    QPoint corner = globalPosition;
    corner.setX(
        std::max(std::min(corner.x(), room.x() + room.width() - m_popup->width()), room.x()));
    corner.setY(std::min(corner.y(), room.y() + room.height() - m_popup->height()));
    m_popup->move(corner);
    m_popup->show();
}

void EventGraphView::hidePopup() {
    m_popup->hide();
}

// What of the view can be seen in what it is scrolled in.
QRect EventGraphView::visiblePart() const {
    return parentWidget() ? rect() & parentWidget()->rect().translated(-pos()) : rect();
}

QScrollBar* EventGraphView::scrollBar(Qt::Orientation orientation) const {
    const QWidget* const viewport = parentWidget();
    auto* const area =
        viewport ? qobject_cast<QAbstractScrollArea*>(viewport->parentWidget()) : nullptr;
    if (!area || area->viewport() != viewport)
        return nullptr;
    return orientation == Qt::Horizontal ? area->horizontalScrollBar() : area->verticalScrollBar();
}

void EventGraphView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_stopTimer)
        stop();
    else
        QWidget::timerEvent(event);
}

void EventGraphView::killStopTimer() {
    if (m_stopTimer != 0)
        killTimer(m_stopTimer);
    m_stopTimer = 0;
}

} // namespace Kestrel::UI
