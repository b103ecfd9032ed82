#include <KxUI/eventgraph/EventGraphPainting_p.h>

#include <KxUI/kit/ColorContrast_p.h>

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int narrowestWithText = 40;

// One past the last column of a span, which has one column at least.
int columnsEnd(const TrackIndex::Span& span, TimeScale scale) {
    return std::max(scale.x(span.end), scale.x(span.start) + 1);
}

void addRun(std::vector<ColumnRun>& runs, int from, int to) {
    if (!runs.empty() && !runs.back().edge && runs.back().to == from)
        runs.back().to = to;
    else
        runs.push_back({from, to, false});
}

void addSpan(std::vector<ColumnRun>& runs, const TrackIndex::Span& span, TimeScale scale, int left,
             int right) {
    const int start = scale.x(span.start);
    const int end = columnsEnd(span, scale);
    int from = std::max(start, left);
    const int to = std::min(end, right);
    // The column where a span begins may be taken by one without width that ended there.
    const int painted = runs.empty() ? left : std::max(left, runs.back().to);
    if (end - start >= narrowestWithEdge && start >= left && start < right) {
        if (painted == start + 1) {
            if (--runs.back().to == runs.back().from)
                runs.pop_back();
        }
        if (painted <= start + 1) {
            runs.push_back({start, start + 1, true});
            from = start + 1;
        }
    }
    from = std::max(from, runs.empty() ? left : runs.back().to);
    if (from < to)
        addRun(runs, from, to);
}

void paintSpanTexts(QPainter& painter, const RowPainting& painting, const QRect& bar,
                    const QColor& fill) {
    if (!painting.text)
        return;
    const auto& spans = painting.index.spans;
    painter.setPen(brightness(fill) > 0.5 ? Qt::black : Qt::white);
    auto span = painting.index.sorted
                    ? std::partition_point(spans.begin(), spans.end(),
                                           [&](const auto& each) {
                                               return painting.scale.x(each.end) <= painting.left;
                                           })
                    : spans.begin();
    // Wide spans only; when even the time of all visible ones has no room for one, none is looked
    // at.
    while (span != spans.end()) {
        const int start = painting.scale.x(span->start);
        if (start >= painting.right && painting.index.sorted)
            break;
        const int from = std::max(start, painting.left);
        const int to = std::min(painting.scale.x(span->end), painting.right);
        if (to - from >= narrowestWithText) {
            const QRect room(from + 4, bar.top(), to - from - 6, bar.height());
            const QString text = painting.text(span->endEvent).simplified();
            if (!text.isEmpty())
                painter.drawText(
                    room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                    painter.fontMetrics().elidedText(text.left(256), Qt::ElideRight, room.width()));
        }
        if (painting.index.sorted) {
            // The next that could be wide enough ends that much farther right.
            span = std::partition_point(span + 1, spans.end(), [&](const auto& each) {
                return painting.scale.x(each.end) < std::max(to, from) + narrowestWithText;
            });
        } else {
            ++span;
        }
    }
}

} // namespace

std::vector<ColumnRun> spanColumns(const TrackIndex& index, TimeScale scale, int left, int right) {
    std::vector<ColumnRun> runs;
    if (!index.sorted) {
        // Columns in any order: sort the spans, then they are covered as any others.
        std::vector<TrackIndex::Span> spans = index.spans;
        std::stable_sort(spans.begin(), spans.end(),
                         [](const auto& a, const auto& b) { return a.start < b.start; });
        for (const TrackIndex::Span& span : spans)
            addSpan(runs, span, scale, left, right);
        return runs;
    }
    const auto& spans = index.spans;
    int painted = left;
    for (auto span = spans.begin();;) {
        span = std::partition_point(span, spans.end(), [&](const auto& each) {
            return columnsEnd(each, scale) <= painted;
        });
        if (span == spans.end() || scale.x(span->start) >= right)
            return runs;
        addSpan(runs, *span, scale, left, right);
        painted = std::max(painted, columnsEnd(*span, scale));
        ++span;
    }
}

std::vector<GraphRun> graphColumns(const TrackIndex& index, TimeScale scale, int left, int right,
                                   int rowBottom) {
    std::vector<GraphRun> runs;
    const TrackInfo& track = index.source;
    const auto& samples = index.samples;
    const auto y = [&](float value) {
        return std::clamp(
            graphY(value, track.minValue, track.maxValue, track.graphHeight, rowBottom),
            rowBottom - track.graphHeight, rowBottom - 1);
    };
    const auto firstAt = [&](std::size_t from, int x) {
        const auto begin = samples.begin();
        return static_cast<std::size_t>(
            std::partition_point(begin + static_cast<std::ptrdiff_t>(from), samples.end(),
                                 [&](const auto& each) { return scale.x(each.time) < x; }) -
            begin);
    };
    std::size_t next = firstAt(0, left);
    for (int x = left; x < right;) {
        const int sampleX =
            next < samples.size() ? std::min(scale.x(samples[next].time), right) : right;
        if (sampleX > x) {
            if (next > 0) {
                const int held = y(samples[next - 1].value);
                runs.push_back({x, sampleX, held, held});
            }
            x = sampleX;
            continue;
        }
        const std::size_t after = firstAt(next, x + 1);
        const TrackIndex::Range range = valueRange(index, next > 0 ? next - 1 : next, after);
        const auto [top, bottom] = std::minmax({y(range.low), y(range.high)});
        runs.push_back({x, x + 1, top, bottom});
        next = after;
        ++x;
    }
    return runs;
}

ViewColors::ViewColors(const QPalette& palette)
    : base(palette.color(QPalette::Base))
    , stripe(mixed(base, palette.color(QPalette::Text), 0.04))
    , column(mixed(palette.color(QPalette::Window), base, 0.3))
    , line(mixed(base, palette.color(QPalette::Text), 0.16))
    , text(palette.color(QPalette::Text))
    , faintText(mixed(base, text, 0.6))
    , selection(palette.color(QPalette::Highlight))
    , sync(mixed(base, text, 0.3)) {}

QColor ViewColors::track(const QColor& color) const {
    QColor result = color.isValid() ? color : faintText;
    result.setAlpha(255);
    for (int i = 0; i < 4 && std::abs(brightness(result) - brightness(base)) < 0.12; ++i)
        result = mixed(result, text, 0.2);
    return result;
}

void paintTimeline(QPainter& painter, const RowPainting& painting) {
    const QColor fill = painting.colors.track(painting.index.source.color);
    const QColor edge = mixed(fill, painting.colors.text, 0.45);
    const QRect bar = painting.row.adjusted(0, 3, 0, -3);

    // Activities that were open when the capture ended fade.
    for (const TrackIndex::Mark& mark : painting.index.unclosed) {
        const int from = std::max(painting.scale.x(mark.time), painting.left);
        const int to = std::min(painting.scale.x(painting.endTime), painting.right);
        const bool last = &mark == &painting.index.unclosed.back();
        if (last && from < to)
            painter.fillRect(from, bar.top(), to - from, bar.height(),
                             QBrush(mixed(painting.colors.base, fill, 0.6), Qt::BDiagPattern));
    }
    for (const ColumnRun& run :
         spanColumns(painting.index, painting.scale, painting.left, painting.right))
        painter.fillRect(run.from, bar.top(), run.to - run.from, bar.height(),
                         run.edge ? edge : fill);
    paintSpanTexts(painter, painting, bar, fill);

    // Instants stand over the whole row, so that they are seen before and behind spans.
    const auto& instants = painting.index.instants;
    int painted = painting.left;
    for (auto mark = instants.begin(); mark != instants.end(); ++mark) {
        if (painting.index.sorted) {
            mark = std::partition_point(mark, instants.end(), [&](const auto& each) {
                return painting.scale.x(each.time) < painted;
            });
            if (mark == instants.end() || painting.scale.x(mark->time) >= painting.right)
                break;
        }
        const int x = painting.scale.x(mark->time);
        if (x < painting.left || x >= painting.right)
            continue;
        painter.fillRect(x, painting.row.top() + 1, 1, painting.row.height() - 2, edge);
        painted = x + 1;
    }
}

void paintGraph(QPainter& painter, const RowPainting& painting) {
    const QColor line = painting.colors.track(painting.index.source.color);
    QColor area = line;
    area.setAlpha(60);
    const int bottom = painting.row.top() + painting.row.height();
    int previous = -1;
    for (const GraphRun& run :
         graphColumns(painting.index, painting.scale, painting.left, painting.right, bottom)) {
        const int width = run.to - run.from;
        painter.fillRect(run.from, run.top, width, bottom - run.top, area);
        painter.fillRect(run.from, run.top, width, run.bottom - run.top + 1, line);
        previous = run.to;
    }
    // Samples get a mark of their own where there is room between them.
    const auto& samples = painting.index.samples;
    const auto first = std::partition_point(samples.begin(), samples.end(), [&](const auto& each) {
        return painting.scale.x(each.time) < painting.left;
    });
    const auto last = std::partition_point(first, samples.end(), [&](const auto& each) {
        return painting.scale.x(each.time) < painting.right;
    });
    if (previous < 0 || (last - first) * 8 > painting.right - painting.left)
        return;
    for (auto sample = first; sample != last; ++sample) {
        const int y = graphY(sample->value, painting.index.source.minValue,
                             painting.index.source.maxValue, painting.row.height(), bottom);
        if (y >= painting.row.top() && y <= bottom)
            painter.fillRect(painting.scale.x(sample->time) - 1, std::min(y, bottom - 1) - 1, 3, 3,
                             line);
    }
}

QString durationText(double milliseconds) {
    const double size = std::abs(milliseconds);
    if (size >= 1000.0)
        return QString::number(milliseconds / 1000.0, 'g', 6) + QStringLiteral(" s");
    return QString::number(milliseconds, 'g', 4) + QStringLiteral(" ms");
}

} // namespace Kestrel::UI
