#include <KxUI/values/LinearSlider.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/values/LinearSliderAccessible_p.h>
#include <KxUI/values/LinearSliderLook_p.h>

#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace Kestrel::UI {

LinearSlider::LinearSlider(QWidget* parent)
    : LinearSlider(std::make_unique<LinearSliderLook>(), parent) {}

LinearSlider::LinearSlider(std::unique_ptr<LinearSliderPrivate> own, QWidget* parent)
    : QWidget(parent)
    , d(std::move(own)) {
    installAccessible<LinearSliderAccessible, LinearSlider>();
    qRegisterMetaType<PressMode>();
    qRegisterMetaType<WheelPolicy::Policy>();
    d->attach(this);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_WState_OwnSizePolicy, false); // not the host's
}

LinearSlider::~LinearSlider() {
    d->closeEntry();
}

double LinearSlider::value() const {
    return d->value;
}

void LinearSlider::setValue(double value) {
    KXUI_INTERFACE_THREAD(this);
    if (std::isfinite(value))
        d->setByHost(value + 0.0);
}

double LinearSlider::minimum() const {
    return d->minimum;
}

double LinearSlider::maximum() const {
    return d->maximum;
}

void LinearSlider::setRange(double minimum, double maximum) {
    KXUI_INTERFACE_THREAD(this);
    if (!std::isfinite(minimum) || !std::isfinite(maximum))
        return;
    const auto [low, high] = std::minmax(minimum, maximum);
    const auto range = std::pair(low + 0.0, high + 0.0);
    if (range == std::pair(d->minimum, d->maximum))
        return;
    std::tie(d->minimum, d->maximum) = range;
    d->relayout();
    Q_EMIT limitsChanged();
}

void LinearSlider::setMinimum(double minimum) {
    KXUI_INTERFACE_THREAD(this);
    setRange(minimum, std::max(minimum, d->maximum));
}

void LinearSlider::setMaximum(double maximum) {
    KXUI_INTERFACE_THREAD(this);
    setRange(std::min(d->minimum, maximum), maximum);
}

double LinearSlider::singleStep() const {
    return d->step();
}

void LinearSlider::setSingleStep(double step) {
    KXUI_INTERFACE_THREAD(this);
    d->setStep(d->singleStep, step);
}

double LinearSlider::pageStep() const {
    return d->page();
}

void LinearSlider::setPageStep(double step) {
    KXUI_INTERFACE_THREAD(this);
    d->setStep(d->pageStep, step);
}

double LinearSlider::grid() const {
    return d->grid;
}

void LinearSlider::setGrid(double grid) {
    KXUI_INTERFACE_THREAD(this);
    d->setStep(d->grid, grid);
}

double LinearSlider::defaultValue() const {
    return d->defaultValue;
}

void LinearSlider::setDefaultValue(double value) {
    KXUI_INTERFACE_THREAD(this);
    if (!std::isfinite(value) || std::exchange(d->defaultValue, value + 0.0) == value)
        return;
    d->relayout();
    Q_EMIT handlingChanged();
}

Qt::Orientation LinearSlider::orientation() const {
    return d->orientation;
}

void LinearSlider::setOrientation(Qt::Orientation orientation) {
    KXUI_INTERFACE_THREAD(this);
    if (orientation == d->orientation)
        return;
    if (!testAttribute(Qt::WA_WState_OwnSizePolicy)) {
        setSizePolicy(sizePolicy().transposed());
        setAttribute(Qt::WA_WState_OwnSizePolicy, false);
    }
    d->setDisplay(d->orientation, orientation);
}

LinearSlider::TickMode LinearSlider::tickMode() const {
    return d->tickMode;
}

void LinearSlider::setTickMode(TickMode mode) {
    KXUI_INTERFACE_THREAD(this);
    d->setDisplay(d->tickMode, mode);
}

double LinearSlider::exponent() const {
    return d->exponent;
}

void LinearSlider::setExponent(double exponent) {
    KXUI_INTERFACE_THREAD(this);
    if (exponent >= 0.01 && exponent <= 100.0)
        d->setDisplay(d->exponent, exponent);
}

double LinearSlider::centre() const {
    return d->centre;
}

void LinearSlider::setCentre(double value) {
    KXUI_INTERFACE_THREAD(this);
    if (!std::isinf(value) && !(std::isnan(value) && std::isnan(d->centre)))
        d->setDisplay(d->centre, value);
}

QString LinearSlider::suffix() const {
    return d->suffix;
}

void LinearSlider::setSuffix(const QString& suffix) {
    KXUI_INTERFACE_THREAD(this);
    d->setDisplay(d->suffix, suffix);
}

LinearSlider::PressMode LinearSlider::pressMode() const {
    return d->pressMode;
}

void LinearSlider::setPressMode(PressMode mode) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->pressMode, mode) != mode)
        Q_EMIT handlingChanged();
}

WheelPolicy::Policy LinearSlider::wheelPolicy() const {
    return d->wheelPolicy;
}

void LinearSlider::setWheelPolicy(WheelPolicy::Policy policy) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->wheelPolicy, policy) != policy)
        Q_EMIT handlingChanged();
}

QVector<double> LinearSlider::snapPoints() const {
    return d->snapPoints;
}

void LinearSlider::setSnapPoints(const QVector<double>& values) {
    KXUI_INTERFACE_THREAD(this);
    d->snapPoints = values;
    d->relayout();
}

bool LinearSlider::isEditing() const {
    return d->bracket->isEditing();
}

QSize LinearSlider::sizeHint() const {
    return d->hint(false);
}

QSize LinearSlider::minimumSizeHint() const {
    return d->hint(true);
}

void LinearSlider::resetToDefault() {
    KXUI_INTERFACE_THREAD(this);
    if (const auto target = d->defaultInRange())
        d->bracket->editOnce(*target);
}

void LinearSlider::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->bracket->cancel();
}

void LinearSlider::editNumber() {
    KXUI_INTERFACE_THREAD(this);
    d->openEntry(QKeyEvent(QEvent::KeyPress, Qt::Key_F2, Qt::NoModifier));
}

bool LinearSlider::event(QEvent* event) {
    if (d->bracket->takes(event))
        return true;
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (d->isOwnKey(*static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
        break;
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
    case QEvent::HoverLeave:
        d->hover(static_cast<QHoverEvent*>(event)->pos());
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void LinearSlider::changeEvent(QEvent* event) {
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::LayoutDirectionChange:
    case QEvent::LocaleChange:
        d->relayout();
        break;
    default:
        break;
    }
    QWidget::changeEvent(event);
}

void LinearSlider::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    d->paint(painter, event->rect());
}

void LinearSlider::resizeEvent(QResizeEvent* event) {
    d->forgetGeometry();
    QWidget::resizeEvent(event);
}

void LinearSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton)
        d->press(*event);
    else
        event->ignore();
}

void LinearSlider::mouseMoveEvent(QMouseEvent* event) {
    d->move(*event);
}

void LinearSlider::mouseReleaseEvent(QMouseEvent*) {
    d->release();
}

void LinearSlider::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && d->wasHandlePressed())
        resetToDefault();
    else
        mousePressEvent(event);
}

void LinearSlider::wheelEvent(QWheelEvent* event) {
    event->setAccepted(WheelPolicy::takes(d->wheelPolicy, this) && d->turn(*event));
}

void LinearSlider::keyPressEvent(QKeyEvent* event) {
    if (!d->isOwnKey(*event))
        QWidget::keyPressEvent(event);
    else
        d->pressKey(*event);
}

void LinearSlider::timerEvent(QTimerEvent* event) {
    if (!d->page(event->timerId()))
        QWidget::timerEvent(event);
}

} // namespace Kestrel::UI
