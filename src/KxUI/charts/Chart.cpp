#include <KxUI/charts/Chart.h>

#include <KxUI/charts/ChartAccessible_p.h>
#include <KxUI/charts/ChartColorProvider.h>
#include <KxUI/charts/ChartLegend_p.h>
#include <KxUI/charts/Chart_p.h>
#include <KxUI/draw/PainterDrawingContext.h>
#include <KxUI/draw/SvgDrawingContext_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <utility>

namespace Kestrel::UI {

Chart::Chart(std::unique_ptr<ChartPrivate> facts, QWidget* parent)
    : QWidget(parent)
    , d(std::move(facts)) {
    qRegisterMetaType<ChartReadout>();
    ChartAccessible::install();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    d->begin(this);
}

Chart::~Chart() {
    // The children go after what their signals would reach.
    for (QObject* child : children())
        child->disconnect(this);
}

QString Chart::title() const {
    return d->title;
}

void Chart::setTitle(const QString& title) {
    KXUI_INTERFACE_THREAD(this);
    if (d->title == title)
        return;
    d->title = title;
    d->lookChanged();
    Q_EMIT titleChanged(title);
}

Drawing Chart::drawing() const {
    return d->surface->drawing();
}

void Chart::setDrawing(Drawing drawing) {
    KXUI_INTERFACE_THREAD(this);
    if (d->surface->drawing() != drawing)
        d->surface->setDrawing(drawing);
}

bool Chart::usesOpenGL() const {
    return d->surface->usesOpenGL();
}

void Chart::setColorProvider(std::shared_ptr<IChartColorProvider> provider) {
    KXUI_INTERFACE_THREAD(this);
    d->provider = provider ? std::move(provider) : std::make_shared<ChartColorProvider>();
    d->itemsChanged();
}

ChartLegend* Chart::legend() const {
    return d->legend;
}

QImage Chart::toImage(const QSize& size, qreal ratio) const {
    const QSize logical = size.isEmpty() ? this->size() : size;
    const qreal scale = ratio > 0 ? ratio : 1;
    QImage image((QSizeF(logical) * scale).toSize(), QImage::Format_RGB32);
    if (image.isNull())
        return image;
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    QPainter painter(&image);
    PainterDrawingContext context(painter, logical, scale);
    d->paintWith(context, logical);
    return image;
}

QByteArray Chart::toSvg(const QSize& size) const {
    const QSize logical = size.isEmpty() ? this->size() : size;
    SvgDrawingContext context(logical);
    d->paintWith(context, logical);
    return context.toSvg();
}

QString Chart::toText() const {
    return d->toText();
}

QSize Chart::sizeHint() const {
    return {400, 240};
}

QSize Chart::minimumSizeHint() const {
    return {80, 50};
}

void Chart::copy() {
    KXUI_INTERFACE_THREAD(this);
    auto* contents = new QMimeData;
    contents->setText(toText());
    contents->setImageData(toImage());
    contents->setData(QStringLiteral("image/svg+xml"), toSvg());
    QGuiApplication::clipboard()->setMimeData(contents);
}

bool Chart::event(QEvent* event) {
    // Or the menu keys of a host would take them.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Polish)
        d->placeLegend();
    return QWidget::event(event);
}

void Chart::paintEvent(QPaintEvent*) {
    d->surface->paint([this](DrawingContext& context) { d->paint(context); });
}

void Chart::resizeEvent(QResizeEvent*) {
    d->placeLegend();
    d->lookChanged();
}

void Chart::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::StyleChange || event->type() == QEvent::LanguageChange)
        d->itemsChanged();
}

void Chart::mousePressEvent(QMouseEvent* event) {
    event->setAccepted(d->press(event) || event->button() == Qt::LeftButton);
}

void Chart::mouseMoveEvent(QMouseEvent* event) {
    if (!d->drag(event))
        d->setHover(QPointF(event->pos()));
}

void Chart::mouseReleaseEvent(QMouseEvent* event) {
    const QPointer<Chart> alive(this);
    if (d->drop(event) || event->button() != Qt::LeftButton || !alive)
        return;
    d->setHover(QPointF(event->pos()));
    if (alive && !d->readout.isEmpty())
        Q_EMIT clicked(d->readout);
}

void Chart::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        d->showAll();
}

void Chart::wheelEvent(QWheelEvent* event) {
    event->setAccepted(d->wheel(event));
}

void Chart::keyPressEvent(QKeyEvent* event) {
    if (d->key(event))
        return;
    const int step = event->modifiers() & Qt::ShiftModifier ? 10 : 1;
    const auto move = [&](int along, int across) {
        const QPointF from = d->hover.value_or(QPointF(-1, -1));
        if (const auto to = d->moved(from, along, across))
            d->setHover(to);
    };
    if (event->matches(QKeySequence::Copy))
        copy();
    else if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)
        move(event->key() == Qt::Key_Left ? -step : step, 0);
    else if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)
        move(0, event->key() == Qt::Key_Up ? -1 : 1);
    else if (event->key() == Qt::Key_Escape && d->hover)
        d->setHover({});
    else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
             !d->readout.isEmpty())
        Q_EMIT clicked(d->readout);
    else
        QWidget::keyPressEvent(event);
}

void Chart::leaveEvent(QEvent*) {
    if (!hasFocus())
        d->setHover({});
}

void Chart::focusOutEvent(QFocusEvent* event) {
    const QPointer<Chart> alive(this);
    d->setHover({});
    if (alive)
        QWidget::focusOutEvent(event);
}

} // namespace Kestrel::UI
