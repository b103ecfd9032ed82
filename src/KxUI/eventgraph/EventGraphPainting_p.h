#pragma once

#include <KxUI/eventgraph/TrackIndex_p.h>

#include <QColor>
#include <QPalette>

#include <functional>
#include <vector>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace Kestrel::UI {

/** Spans of fewer columns are too narrow to show where they begin. */
constexpr int narrowestWithEdge = 6;

/** Neighbouring columns of pixels that look the same. */
struct ColumnRun {
    int from;  ///< first x
    int to;    ///< one past the last x
    bool edge; ///< the left border of a span wide enough to have one
};

/** The columns of [left, right) that the spans of a timeline cover, from left to right. Looks at as
    many spans as there are columns, not at all of them. */
std::vector<ColumnRun> spanColumns(const TrackIndex& index, TimeScale scale, int left, int right);

/** Neighbouring columns in which a graph reaches from `top` to `bottom`, inclusive. */
struct GraphRun {
    int from;
    int to;
    int top;
    int bottom;
};

/** The columns of [left, right) of a graph that holds each value until the next sample. y is that
    of graphY for a row that ends above `rowBottom`, held inside the row. */
std::vector<GraphRun> graphColumns(const TrackIndex& index, TimeScale scale, int left, int right,
                                   int rowBottom);

/** Colours of the view, made for light and dark palettes. */
struct ViewColors {
    explicit ViewColors(const QPalette& palette);

    QColor base;
    QColor stripe;
    QColor column; ///< behind the names
    QColor line;
    QColor text;
    QColor faintText;
    QColor selection;
    QColor sync;

    /** A track's colour, moved away from the background until it can be seen. */
    QColor track(const QColor& color) const;
};

/** What of a row is painted where. */
struct RowPainting {
    const TrackIndex& index;
    TimeScale scale;
    QRect row;   ///< in the view, with all its width
    int left;    ///< first visible x right of the names
    int right;   ///< one past the last
    int endTime; ///< of the capture, from its start
    const ViewColors& colors;
    /** The text of the event of a number, for spans that have room for it. */
    std::function<QString(quint32 event)> text;
};

void paintTimeline(QPainter& painter, const RowPainting& painting);
void paintGraph(QPainter& painter, const RowPainting& painting);

/** A time in milliseconds as short text with its unit: "12 ms", "1.25 s". */
QString durationText(double milliseconds);

} // namespace Kestrel::UI
