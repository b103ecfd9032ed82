#include <KxUI/eventgraph/NameColumn_p.h>

#include <QPainter>

#include <algorithm>

namespace Kestrel::UI {
namespace {

// The ends of the axis at the right of the column; returns the room that is left for the name.
QRect paintAxis(QPainter& painter, const SceneRow& row, const ViewColors& colors, QRect room) {
    const QFontMetrics metrics = painter.fontMetrics();
    if (row.track.type == EventTrack::TrackType::Timeline || row.height < metrics.height())
        return room;
    const QString top = QString::number(static_cast<double>(row.track.maxValue), 'g', 6);
    const QString base = QString::number(static_cast<double>(row.track.minValue), 'g', 6);
    painter.setPen(colors.faintText);
    painter.drawText(room, Qt::AlignRight | Qt::AlignTop, top);
    if (row.height >= 2 * metrics.height())
        painter.drawText(room, Qt::AlignRight | Qt::AlignBottom, base);
    // In a low row the name stands beside them, not between.
    if (2 * row.height < 5 * metrics.height())
        room.setRight(room.right() - 8 -
                      std::max(metrics.horizontalAdvance(top), metrics.horizontalAdvance(base)));
    return room;
}

void paintInColumn(QPainter& painter, const SceneRow& row, const ViewColors& colors,
                   const QColor& swatch) {
    const QRect column(0, row.top, nameColumnWidth, row.height);
    painter.fillRect(column, colors.column);
    painter.fillRect(0, row.top + 3, 4, row.height - 6, swatch);
    const QRect room = paintAxis(painter, row, colors, column.adjusted(12, 0, -8, 0));
    painter.setPen(colors.text);
    painter.drawText(
        room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        painter.fontMetrics().elidedText(row.track.name, Qt::ElideRight, room.width()));
}

void paintOverRow(QPainter& painter, const SceneRow& row, const ViewColors& colors,
                  const QColor& swatch, int scrolled) {
    const QFontMetrics metrics = painter.fontMetrics();
    const QString text = metrics.elidedText(row.track.name, Qt::ElideRight, nameColumnWidth);
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

} // namespace

void paintName(QPainter& painter, const SceneRow& row, const ViewColors& colors, int scrolled) {
    const QColor swatch = colors.track(row.track.color);
    if (scrolled < nameColumnWidth)
        paintInColumn(painter, row, colors, swatch);
    else
        paintOverRow(painter, row, colors, swatch, scrolled);
}

} // namespace Kestrel::UI
