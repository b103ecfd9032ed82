#include <KxUI/curveedit/CurveView.h>

#include <KxUI/curveedit/CurveViewAccessible_p.h>
#include <KxUI/curveedit/CurveView_p.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/ValueAccessible_p.h>
#include <KxUI/time/TimeFormatter.h>

#include <QContextMenuEvent>
#include <QGestureEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int NominalSize = 240;
constexpr int SmallestSize = 112;
constexpr double RoomAround = 0.1; // of what is shown as a whole

bool isSame(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool isUsable(const QRectF& range) {
    return std::isfinite(range.left()) && std::isfinite(range.top()) && range.width() > 0.0 &&
           range.height() > 0.0 && std::isfinite(range.width()) && std::isfinite(range.height());
}

} // namespace

CurveView::CurveView(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<CurveViewPrivate>(this)) {
    installAccessible<CurveViewAccessible, CurveView>();
    qRegisterMetaType<AxisScale>();
    qRegisterMetaType<PressOffLine>();
    qRegisterMetaType<WheelPolicy::Policy>();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
    grabGesture(Qt::PinchGesture);
    d->setPlot(d->visible);
}

CurveView::~CurveView() = default;

CurveModel* CurveView::model() const {
    return d->model;
}

void CurveView::setModel(CurveModel* model) {
    KXUI_INTERFACE_THREAD(this);
    d->setModel(model);
}

int CurveView::currentCurve() const {
    return d->current;
}

void CurveView::setCurrentCurve(int curve) {
    KXUI_INTERFACE_THREAD(this);
    d->setCurrent(curve);
}

bool CurveView::isCurveVisible(int curve) const {
    return d->hasCurve(curve) && d->isVisible(curve);
}

void CurveView::setCurveVisible(int curve, bool visible) {
    KXUI_INTERFACE_THREAD(this);
    if (curve < 0 || !d->setVisible(curve, visible))
        return;
    update();
    Q_EMIT visibleCurvesChanged();
}

CurveView::AxisScale CurveView::xScale() const {
    return AxisScale(d->scales.x);
}

void CurveView::setXScale(AxisScale scale) {
    KXUI_INTERFACE_THREAD(this);
    d->setScales({UI::AxisScale(scale), d->scales.y, d->scales.shadowBase});
}

CurveView::AxisScale CurveView::yScale() const {
    return AxisScale(d->scales.y);
}

void CurveView::setYScale(AxisScale scale) {
    KXUI_INTERFACE_THREAD(this);
    d->setScales({d->scales.x, UI::AxisScale(scale), d->scales.shadowBase});
}

double CurveView::shadowBase() const {
    return d->scales.shadowBase;
}

void CurveView::setShadowBase(double base) {
    KXUI_INTERFACE_THREAD(this);
    if (std::isfinite(base))
        d->setScales({d->scales.x, d->scales.y,
                      std::clamp(base, CurveAxis::LeastShadowBase, CurveAxis::MostShadowBase)});
}

QRectF CurveView::nominalRange() const {
    return d->nominal;
}

void CurveView::setNominalRange(const QRectF& range) {
    KXUI_INTERFACE_THREAD(this);
    if (!isUsable(range) || range == d->nominal)
        return;
    d->nominal = range;
    const QPointer<CurveView> self(this);
    d->setRange(range);
    if (self)
        Q_EMIT nominalRangeChanged(range);
}

QRectF CurveView::visibleRange() const {
    return d->visible;
}

void CurveView::setVisibleRange(const QRectF& range) {
    KXUI_INTERFACE_THREAD(this);
    if (isUsable(range))
        d->setRange(range);
}

bool CurveView::isSnapEnabled() const {
    return d->snapEnabled;
}

void CurveView::setSnapEnabled(bool enabled) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->snapEnabled, enabled) != enabled)
        Q_EMIT snapEnabledChanged(enabled);
}

bool CurveView::isZoomEnabled() const {
    return d->zoomEnabled;
}

void CurveView::setZoomEnabled(bool enabled) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->zoomEnabled, enabled) != enabled)
        Q_EMIT handlingChanged();
}

bool CurveView::othersEditable() const {
    return d->othersEditable;
}

void CurveView::setOthersEditable(bool editable) {
    KXUI_INTERFACE_THREAD(this);
    const QPointer<CurveView> self(this);
    if (editable == d->othersEditable || !d->edit.finish())
        return;
    d->othersEditable = editable;
    update();
    Q_EMIT handlingChanged();
    if (self)
        Q_EMIT selectionChanged();
}

CurveView::PressOffLine CurveView::pressOffLine() const {
    return d->pressOffLine;
}

void CurveView::setPressOffLine(PressOffLine meaning) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->pressOffLine, meaning) != meaning)
        Q_EMIT handlingChanged();
}

WheelPolicy::Policy CurveView::wheelPolicy() const {
    return d->wheelPolicy;
}

void CurveView::setWheelPolicy(WheelPolicy::Policy policy) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->wheelPolicy, policy) != policy)
        Q_EMIT handlingChanged();
}

bool CurveView::isFrameVisible() const {
    return d->frameVisible;
}

void CurveView::setFrameVisible(bool visible) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->frameVisible, visible) == visible)
        return;
    update();
    Q_EMIT frameVisibleChanged(visible);
}

QVector<CurveHistogram> CurveView::histogram() const {
    return d->histogram;
}

void CurveView::setHistogram(const QVector<CurveHistogram>& channels) {
    KXUI_INTERFACE_THREAD(this);
    if (channels.isEmpty() && d->histogram.isEmpty())
        return;
    d->histogram = channels;
    ++d->histogramCount;
    update();
}

double CurveView::marker() const {
    return d->marker;
}

void CurveView::setMarker(double x) {
    KXUI_INTERFACE_THREAD(this);
    if (isSame(std::exchange(d->marker, x), x))
        return;
    update();
    Q_EMIT marksChanged();
}

double CurveView::playhead() const {
    return d->playhead;
}

void CurveView::setPlayhead(double x) {
    KXUI_INTERFACE_THREAD(this);
    const double before = std::exchange(d->playhead, x);
    if (isSame(before, x))
        return;
    update(d->playheadRect(before));
    update(d->playheadRect(x));
    Q_EMIT marksChanged();
}

void CurveView::setSnapLines(const QVector<double>& x, const QVector<double>& y) {
    KXUI_INTERFACE_THREAD(this);
    d->snapX = x;
    d->snapY = y;
}

void CurveView::setTimeAxis(const TimeFormatter* formatter) {
    KXUI_INTERFACE_THREAD(this);
    if (formatter == d->timeAxis)
        return;
    if (d->timeAxis)
        disconnect(d->timeAxis, nullptr, this, nullptr);
    d->timeAxis = formatter;
    d->relayout();
    if (!formatter)
        return;
    connect(formatter, &TimeFormatter::timeFormatChanged, this, [this] { d->relayout(); });
    connect(formatter, &QObject::destroyed, this, [this] {
        d->timeAxis.clear();
        d->relayout();
    });
}

const TimeFormatter* CurveView::timeAxis() const {
    return d->timeAxis;
}

bool CurveView::isEditing() const {
    return d->edit.isEditing();
}

QString CurveView::editText() const {
    return d->edit.text();
}

int CurveView::selectedCount() const {
    return d->selectedCount();
}

QSize CurveView::sizeHint() const {
    return {NominalSize, NominalSize};
}

QSize CurveView::minimumSizeHint() const {
    return {SmallestSize, SmallestSize};
}

void CurveView::showAll() {
    KXUI_INTERFACE_THREAD(this);
    d->setRange(d->bounds());
}

void CurveView::showSelection() {
    KXUI_INTERFACE_THREAD(this);
    if (d->selectedCount() == 0)
        return showAll();
    // What has no extent is shown at the present size.
    QRectF range = d->selectionBounds();
    const QPointF middle = range.center();
    const auto widened = [](double extent, double shown) {
        return extent > 0.0 ? extent * (1.0 + 2.0 * RoomAround) : shown;
    };
    range.setSize(
        {widened(range.width(), d->visible.width()), widened(range.height(), d->visible.height())});
    range.moveCenter(middle);
    d->setRange(range);
}

void CurveView::zoom(double factor) {
    KXUI_INTERFACE_THREAD(this);
    if (std::isfinite(factor) && factor > 0.0)
        d->zoomAbout(d->plot.rect().center(), factor, factor);
}

void CurveView::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->edit.cancel();
}

void CurveView::selectAll() {
    KXUI_INTERFACE_THREAD(this);
    const QPointer<CurveView> self(this);
    for (const int curve : d->editableCurves()) {
        if (self && d->hasCurve(curve))
            d->model->select(curve, 0, d->model->knots(curve) - 1, CurveModel::SelectOnly);
    }
}

void CurveView::selectNone() {
    KXUI_INTERFACE_THREAD(this);
    d->selectOnly(-1, 0, -1);
}

bool CurveView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && d->isOwnKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    const QPointer<CurveView> self(this);
    const bool taken = d->edit.takes(event);
    if (self)
        d->meetEvent(*event, taken);
    if (taken || !self)
        return true;
    if (event->type() == QEvent::ToolTip && d->help(*static_cast<QHelpEvent*>(event)))
        return true;
    if (event->type() == QEvent::Gesture && d->gesture(*static_cast<QGestureEvent*>(event)))
        return true;
    return QWidget::event(event);
}

void CurveView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange) // else what is behind shines through
        setAttribute(Qt::WA_OpaquePaintEvent, isEnabled());
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::LocaleChange:
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
    case QEvent::EnabledChange:
    case QEvent::LanguageChange:
        d->relayout();
        break;
    default:
        break;
    }
    QWidget::changeEvent(event);
}

void CurveView::contextMenuEvent(QContextMenuEvent* event) {
    const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
    const QPointer<CurveView> self(this);
    if (byMouse && !d->selectForMenu(event->pos()))
        return;
    QMenu* const menu = d->makeMenu();
    const CurveKnot knot = d->focused();
    const QPoint at =
        d->hasKnot(knot) ? d->positionOf(knot).toPoint() : d->plot.rect().center().toPoint();
    menu->popup(byMouse ? event->globalPos() : mapToGlobal(at));
}

void CurveView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    if (!d->hasCurve(d->current))
        return;
    if (event->reason() == Qt::TabFocusReason)
        d->selectOnly(d->current, 0, 0);
    else if (event->reason() == Qt::BacktabFocusReason)
        d->selectOnly(d->current, d->model->knots(d->current) - 1, d->model->knots(d->current) - 1);
}

bool CurveView::focusNextPrevChild(bool next) {
    return d->walk(next) || QWidget::focusNextPrevChild(next);
}

void CurveView::keyPressEvent(QKeyEvent* event) {
    const QPointer<CurveView> self(this);
    d->say({});
    if (self && !d->pressKey(*event) && self)
        QWidget::keyPressEvent(event);
}

void CurveView::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    d->setHovered({});
    d->say({});
}

void CurveView::mouseDoubleClickEvent(QMouseEvent* event) {
    d->doubleClick(*event);
}

void CurveView::mouseMoveEvent(QMouseEvent* event) {
    d->move(*event);
}

void CurveView::mousePressEvent(QMouseEvent* event) {
    d->press(*event);
}

void CurveView::mouseReleaseEvent(QMouseEvent* event) {
    d->release(*event);
}

void CurveView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    d->paint(painter, event->region());
}

void CurveView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    d->setPlot(d->visible);
}

void CurveView::wheelEvent(QWheelEvent* event) {
    event->setAccepted(d->wheel(*event));
}

} // namespace Kestrel::UI
