#include <KxUI/charts/ChartAccessible_p.h>
#include <KxUI/charts/ChartColorProvider.h>
#include <KxUI/charts/ChartLegend_p.h>
#include <KxUI/charts/Chart_p.h>

#include <KxUI/draw/PainterDrawingContext.h>

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int Colors = 8;
constexpr int RefreshMilliseconds = 33;
constexpr int Margin = 6;
// Below this height the plot is worth more than a legend.
constexpr int LeastHeightWithLegend = 110;

} // namespace

ChartPrivate::ChartPrivate()
    : provider(std::make_shared<ChartColorProvider>()) {}

ChartPrivate::~ChartPrivate() = default;

void ChartPrivate::begin(Chart* chart) {
    q = chart;
    surface.emplace(chart, [chart] { Q_EMIT chart->drawingChanged(); });
    legend = new ChartLegend(chart);
    legend->hide();
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, chart, [this] { refresh(); });
}

void ChartPrivate::adopt(ChartSeries* series) {
    series->setParent(q);
    colorIndex(series);
    QObject::connect(series, &ChartSeries::dataChanged, q, [this] { dataChanged(); });
    QObject::connect(series, &ChartSeries::lookChanged, q, [this] { itemsChanged(); });
    QObject::connect(series, &ChartSeries::visibilityChanged, q, [this] { itemsChanged(); });
}

void ChartPrivate::release(ChartSeries* series) {
    series->disconnect(q);
    series->setParent(nullptr);
    m_colorIndices.remove(series);
}

int ChartPrivate::colorIndex(const QObject* series) {
    const auto found = m_colorIndices.constFind(series);
    if (found != m_colorIndices.constEnd())
        return found.value();
    int index = 0;
    const QList<int> taken = m_colorIndices.values();
    while (taken.contains(index))
        ++index;
    m_colorIndices.insert(series, index);
    QObject::connect(series, &QObject::destroyed, q,
                     [this](const QObject* gone) { m_colorIndices.remove(gone); });
    return index;
}

QColor ChartPrivate::colorOf(const QString& key, const QColor& own, int index) const {
    return own.isValid() ? own : provider->color(key, index, q->palette().color(QPalette::Base));
}

// From the ninth on, the same colours in dashes.
Qt::PenStyle ChartPrivate::styleOf(int index) {
    constexpr Qt::PenStyle Styles[]{Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine};
    return Styles[index / Colors % 4];
}

void ChartPrivate::dataChanged() {
    m_isStale = true;
    if (m_timer.isActive())
        return;
    const qint64 since = m_sinceRefresh.isValid() ? m_sinceRefresh.elapsed() : RefreshMilliseconds;
    m_timer.start(int(std::max<qint64>(0, RefreshMilliseconds - since)));
}

void ChartPrivate::lookChanged() {
    m_isDrawn = false;
    placeLegend();
    q->update();
}

void ChartPrivate::itemsChanged() {
    m_isStale = true; // what is hidden counts for no range
    ChartLegendPrivate::of(legend)->setItems(items());
    lookChanged();
    dataChanged();
}

void ChartPrivate::refresh() {
    m_sinceRefresh.start();
    const QPointer<Chart> alive(q);
    if (std::exchange(m_isStale, false))
        updateRanges();
    if (!alive)
        return;
    m_isDrawn = false;
    q->update();
    if (hover)
        updateReadout();
}

void ChartPrivate::setHover(const std::optional<QPointF>& place) {
    if (hover == place)
        return;
    hover = place;
    updateReadout();
}

void ChartPrivate::updateReadout() {
    const bool was = !readout.isEmpty();
    readoutSeries.clear();
    readout = hover ? readoutAt(*hover) : ChartReadout();
    // Not the whole widget: a pointer that moves is to cost next to nothing.
    const QRegion before = std::exchange(m_readoutRegion, readoutRegion());
    q->update(before | m_readoutRegion);
    showValuesInLegend();
    if (!readout.isEmpty()) {
        ChartAccessible::tell(q);
        const ChartReadout told = readout; // a slot may change it
        Q_EMIT q->hovered(told);
    } else if (was) {
        Q_EMIT q->hoverLeft();
    }
}

QRegion ChartPrivate::readoutRegion() const {
    if (readout.isEmpty() || !hover)
        return {};
    const QRectF box = readoutBox(*hover, q->rect(), readout, look(), q->devicePixelRatioF());
    const auto around = [](const QRectF& rect) {
        return QRegion(rect.toAlignedRect().adjusted(-1, -1, 1, 1));
    };
    return around(readoutRect()) | around(box);
}

void ChartPrivate::showValuesInLegend() {
    std::vector<QString> values;
    for (std::size_t i = 0; i < readoutSeries.size(); ++i) {
        const auto series = std::size_t(readoutSeries[i]);
        values.resize(std::max(values.size(), series + 1));
        values[series] = readout.items[int(i)].text;
    }
    if (ChartLegendPrivate::of(legend)->showValues(values))
        lookChanged();
}

ChartLook ChartPrivate::look() const {
    return ChartLook(q->palette(), q->font());
}

QRectF ChartPrivate::plotArea() const {
    QRectF area = QRectF(q->rect()).adjusted(Margin, Margin, -Margin, -Margin);
    if (!title.isEmpty())
        area.setTop(area.top() + QFontMetricsF(look().titleFont).height() + 4);
    if (legend->isHidden())
        return area;
    const QRectF place = legend->geometry();
    switch (legend->position()) {
    case Qt::TopEdge:
        area.setTop(place.bottom() + 2);
        break;
    case Qt::BottomEdge:
        area.setBottom(place.top() - 2);
        break;
    case Qt::LeftEdge:
        area.setLeft(place.right() + Margin);
        break;
    case Qt::RightEdge:
        area.setRight(place.left() - Margin);
        break;
    }
    return area;
}

void ChartPrivate::placeLegend() {
    const bool isShown =
        ChartLegendPrivate::of(legend)->isWanted() && q->height() >= LeastHeightWithLegend;
    legend->setVisible(isShown);
    if (!isShown)
        return;
    QRect area = q->rect().adjusted(Margin, Margin, -Margin, -Margin);
    if (!title.isEmpty())
        area.setTop(area.top() + int(QFontMetricsF(look().titleFont).height()) + 4);
    const Qt::Edge edge = legend->position();
    if (edge == Qt::TopEdge || edge == Qt::BottomEdge) {
        const int height = std::min(legend->heightForWidth(area.width()), q->height() / 3);
        const int top = edge == Qt::TopEdge ? area.top() : area.bottom() + 1 - height;
        legend->setGeometry(area.left(), top, area.width(), height);
        return;
    }
    const int width = std::min(legend->sizeHint().width() + 8, q->width() / 3);
    const int left = edge == Qt::LeftEdge ? area.left() : area.right() + 1 - width;
    legend->setGeometry(left, area.top(), width, area.height());
}

void ChartPrivate::drawTitle(DrawingContext& context, const QRectF& rect) const {
    const ChartLook colors = look();
    context.text(rect, int(Qt::AlignLeft | Qt::AlignTop) | Qt::TextSingleLine, title,
                 colors.titleFont, colors.text);
}

// What the painter draws is kept: a read-out that moves costs a copy of it.
const QImage& ChartPrivate::picture() {
    const qreal ratio = q->devicePixelRatioF();
    const QSize pixels = (QSizeF(q->size()) * ratio).toSize();
    const bool hasSize = m_picture.size() == pixels;
    if (std::exchange(m_isDrawn, true) && hasSize)
        return m_picture;
    if (!hasSize)
        m_picture = QImage(pixels, QImage::Format_RGB32);
    m_picture.setDevicePixelRatio(ratio);
    QPainter painter(&m_picture);
    PainterDrawingContext context(painter, q->size(), ratio);
    context.fill(q->rect(), look().ground);
    arrange(plotArea(), ratio);
    drawTitle(context, QRectF(q->rect()).adjusted(Margin, Margin, -Margin, 0));
    draw(context);
    return m_picture;
}

void ChartPrivate::paint(DrawingContext& context) {
    if (std::exchange(m_isStale, false)) {
        updateRanges();
        m_isDrawn = false;
    }
    if (surface->usesOpenGL()) {
        context.fill(q->rect(), look().ground);
        arrange(plotArea(), context.devicePixelRatio());
        drawTitle(context, QRectF(q->rect()).adjusted(Margin, Margin, -Margin, 0));
        draw(context);
    } else {
        context.image(q->rect(), picture());
    }
    drawMarks(context);
    if (!readout.isEmpty()) {
        drawReadout(context);
        drawReadoutBox(context, *hover, q->rect(), readout, look());
    }
}

void ChartPrivate::paintWith(DrawingContext& context, const QSizeF& size) {
    if (std::exchange(m_isStale, false)) {
        updateRanges();
        m_isDrawn = false;
    }
    const ChartLook colors = look();
    const QRectF all(QPointF(), size);
    context.fill(all, colors.ground);
    QRectF area = all.adjusted(Margin, Margin, -Margin, -Margin);
    drawTitle(context, area);
    if (!title.isEmpty())
        area.setTop(area.top() + QFontMetricsF(colors.titleFont).height() + 4);
    const std::vector<ChartItem> entries = items();
    if (ChartLegendPrivate::of(legend)->isWanted()) {
        const double height =
            std::min(legendHeight(entries, area.width(), colors.font), size.height() / 3);
        drawLegend(context, {area.left(), area.bottom() - height, area.width(), height}, entries,
                   colors);
        area.setBottom(area.bottom() - height - 2);
    }
    arrange(area, context.devicePixelRatio());
    draw(context);
    drawMarks(context);
    arrange(plotArea(), q->devicePixelRatioF()); // what the pointer finds is that of the widget
}

} // namespace Kestrel::UI
