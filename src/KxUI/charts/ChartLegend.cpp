#include <KxUI/charts/ChartLegend.h>

#include <KxUI/charts/ChartLegend_p.h>
#include <KxUI/draw/PainterDrawingContext.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionFocusRect>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

namespace {

constexpr int ValueGap = 8;

} // namespace

LegendEntry::LegendEntry(Chart* chart, QWidget* parent)
    : QAbstractButton(parent)
    , m_chart(chart) {
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
}

void LegendEntry::show(const ChartItem& item) {
    m_item = item;
    setText(QString(item.name).replace(QLatin1Char('&'), QLatin1String("&&")));
    setAccessibleName(item.name);
    setChecked(item.isVisible);
    setToolTip(item.value);
    m_room = std::max(m_room, roomOf(item.widest));
    update();
}

bool LegendEntry::showValue(const QString& value) {
    if (std::exchange(m_value, value) == value)
        return false;
    update();
    // The room stays: entries that move about with the pointer cannot be read.
    return std::exchange(m_room, std::max(m_room, roomOf(value))) < m_room;
}

int LegendEntry::roomOf(const QString& value) const {
    return value.isEmpty() ? 0 : fontMetrics().horizontalAdvance(value) + ValueGap;
}

QSize LegendEntry::sizeHint() const {
    const int width = fontMetrics().horizontalAdvance(m_item.name);
    return {std::min(width, 220) + 32 + m_room, fontMetrics().height() + 4};
}

void LegendEntry::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ChartLook look(palette(), font());
    {
        PainterDrawingContext context(painter, size(), devicePixelRatioF());
        drawLegend(context, QRectF(rect()).adjusted(2, 0, -m_room, 0), {m_item}, look);
        context.text(QRectF(rect()).adjusted(0, 0, -ValueGap, 0),
                     int(Qt::AlignRight | Qt::AlignVCenter) | Qt::TextSingleLine, m_value, font(),
                     look.faint);
    }
    if (!hasFocus())
        return;
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.backgroundColor = look.ground;
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void LegendEntry::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn && event->key() != Qt::Key_Space) {
        QAbstractButton::keyPressEvent(event);
        return;
    }
    if (event->modifiers() & Qt::AltModifier)
        Q_EMIT alone();
    else
        click();
}

void LegendEntry::mouseReleaseEvent(QMouseEvent* event) {
    const bool isAlone = event->modifiers() & Qt::AltModifier && rect().contains(event->pos());
    if (!isAlone) {
        QAbstractButton::mouseReleaseEvent(event);
        return;
    }
    setDown(false);
    Q_EMIT alone();
}

ChartLegendPrivate::ChartLegendPrivate(ChartLegend* legend, Chart* owner)
    : q(legend)
    , chart(owner) {}

bool ChartLegendPrivate::isWanted() const {
    return isShown && entries.size() > 1;
}

void ChartLegendPrivate::setItems(const std::vector<ChartItem>& items) {
    while (entries.size() > items.size()) {
        entries.back()->deleteLater(); // it may be the one that was clicked
        entries.back()->hide();
        entries.pop_back();
    }
    while (entries.size() < items.size()) {
        auto* entry = new LegendEntry(chart, inside);
        const auto index = int(entries.size());
        QObject::connect(entry, &QAbstractButton::clicked, q, [this, index](bool isVisible) {
            ChartPrivate::of(chart)->setItemVisible(index, isVisible);
        });
        QObject::connect(entry, &LegendEntry::alone, q, [this, index] { showAlone(index); });
        entry->QWidget::show();
        entries.push_back(entry);
    }
    for (std::size_t i = 0; i < items.size(); ++i)
        entries[i]->show(items[i]);
    arrange();
}

bool ChartLegendPrivate::showValues(const std::vector<QString>& values) {
    bool grew = false;
    for (std::size_t i = 0; i < entries.size(); ++i)
        grew = entries[i]->showValue(i < values.size() ? values[i] : QString()) || grew;
    if (grew)
        arrange();
    return grew;
}

// The bar is there or not before entries are placed: it takes a part of their width.
void ChartLegendPrivate::arrange() {
    const bool isLong = flow(q->width(), false) > q->height();
    area->setVerticalScrollBarPolicy(isLong ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    area->setGeometry(q->rect());
    // Not the width of the viewport, which hidden areas learn when they are shown.
    flow(q->width() - (isLong ? area->verticalScrollBar()->sizeHint().width() : 0), true);
}

int ChartLegendPrivate::flow(int width, bool isMoving) const {
    int x = 0;
    int y = 0;
    int height = 0;
    for (LegendEntry* entry : entries) {
        const QSize size = entry->sizeHint().boundedTo(QSize(std::max(width, 1), 10000));
        if (x > 0 && x + size.width() > width) {
            x = 0;
            y += size.height();
        }
        if (isMoving)
            entry->setGeometry(QRect(QPoint(x, y), size));
        x += size.width();
        height = y + size.height();
    }
    if (isMoving)
        inside->resize(width, height);
    return height;
}

void ChartLegendPrivate::showAlone(int index) {
    ChartPrivate* const facts = ChartPrivate::of(chart);
    const auto items = facts->items();
    const QPointer<Chart> alive(chart);
    const auto isAlone = [&] {
        for (std::size_t i = 0; i < items.size(); ++i)
            if (items[i].isVisible != (int(i) == index))
                return false;
        return true;
    };
    const bool showsAll = isAlone();
    for (std::size_t i = 0; i < items.size() && alive; ++i)
        facts->setItemVisible(int(i), showsAll || int(i) == index);
}

ChartLegend::ChartLegend(Chart* chart)
    : QWidget(chart)
    , d(std::make_unique<ChartLegendPrivate>(this, chart)) {
    d->area = new QScrollArea(this);
    d->area->setFrameShape(QFrame::NoFrame);
    d->area->setFocusPolicy(Qt::NoFocus);
    d->area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    d->inside = new QWidget;
    d->area->setWidget(d->inside);
    d->area->viewport()->setAutoFillBackground(false);
    d->inside->setAutoFillBackground(false);
    setAccessibleName(tr("Legend"));
}

ChartLegend::~ChartLegend() = default;

Qt::Edge ChartLegend::position() const {
    return d->edge;
}

void ChartLegend::setPosition(Qt::Edge edge) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->edge, edge) == edge)
        return;
    ChartPrivate::of(d->chart)->lookChanged();
    Q_EMIT positionChanged();
}

bool ChartLegend::isShown() const {
    return d->isShown;
}

void ChartLegend::setShown(bool shown) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->isShown, shown) == shown)
        return;
    ChartPrivate::of(d->chart)->lookChanged();
    Q_EMIT positionChanged();
}

int ChartLegend::heightForWidth(int width) const {
    return d->flow(width, false);
}

bool ChartLegend::hasHeightForWidth() const {
    return true;
}

QSize ChartLegend::sizeHint() const {
    int width = 0;
    for (const LegendEntry* entry : d->entries)
        width = std::max(width, entry->sizeHint().width());
    return {width, heightForWidth(width)};
}

void ChartLegend::resizeEvent(QResizeEvent*) {
    d->arrange();
}

} // namespace Kestrel::UI
