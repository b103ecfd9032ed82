#include <KxUI/picker/TrackBall.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/ValueAccessible_p.h>
#include <KxUI/picker/TrackBallAccessible_p.h>
#include <KxUI/picker/TrackBall_p.h>

#include <QFontMetrics>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cfloat>
#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int NominalSide = 140;
constexpr int SmallestSide = 60;

// Of what a scale or a drag multiplies by: nothing overflows within.
bool isUsual(double x) {
    return x >= 1e-6 && x <= 1e6;
}

} // namespace

TrackBall::TrackBall(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<TrackBallPrivate>(this)) {
    installAccessible<TrackBallAccessible, TrackBall>();
    qRegisterMetaType<Mode>();
    qRegisterMetaType<WheelPolicy::Policy>();
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setContextMenuPolicy(Qt::PreventContextMenu); // the right button drags
}

TrackBall::~TrackBall() = default;

QVector3D TrackBall::factors() const {
    return d->value.factors;
}

void TrackBall::setFactors(const QVector3D& factors) {
    KXUI_INTERFACE_THREAD(this);
    if (std::isfinite(factors.x()) && std::isfinite(factors.y()) && std::isfinite(factors.z()))
        d->setByHost(d->scale().valueOf(factors));
}

void TrackBall::setFactors(float red, float green, float blue) {
    KXUI_INTERFACE_THREAD(this);
    setFactors(QVector3D(red, green, blue));
}

QPointF TrackBall::balance() const {
    return d->value.pose.balance;
}

double TrackBall::master() const {
    return d->value.pose.master;
}

TrackBall::Mode TrackBall::mode() const {
    return d->mode;
}

void TrackBall::setMode(Mode mode) {
    KXUI_INTERFACE_THREAD(this);
    d->setScale(d->mode, mode);
}

double TrackBall::range() const {
    return d->scale().range;
}

void TrackBall::setRange(double range) {
    KXUI_INTERFACE_THREAD(this);
    if (range == 0.0)
        d->setScale(d->range, std::optional<double>());
    else if (isUsual(range))
        d->setScale(d->range, std::optional<double>(range));
}

double TrackBall::neutral() const {
    return d->scale().neutral;
}

void TrackBall::setNeutral(double neutral) {
    KXUI_INTERFACE_THREAD(this);
    if (std::fabs(neutral) <= static_cast<double>(FLT_MAX))
        d->setScale(d->neutral, std::optional<double>(neutral));
}

double TrackBall::hueRotation() const {
    return d->rotation;
}

void TrackBall::setHueRotation(double radians) {
    KXUI_INTERFACE_THREAD(this);
    if (std::isfinite(radians))
        d->setScale(d->rotation, radians);
}

double TrackBall::sensitivity() const {
    return d->sensitivity;
}

void TrackBall::setSensitivity(double sensitivity) {
    KXUI_INTERFACE_THREAD(this);
    if (isUsual(sensitivity) && std::exchange(d->sensitivity, sensitivity) != sensitivity)
        Q_EMIT handlingChanged();
}

WheelPolicy::Policy TrackBall::wheelPolicy() const {
    return d->wheelPolicy;
}

void TrackBall::setWheelPolicy(WheelPolicy::Policy policy) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->wheelPolicy, policy) != policy)
        Q_EMIT handlingChanged();
}

QString TrackBall::title() const {
    return d->title;
}

void TrackBall::setTitle(const QString& title) {
    KXUI_INTERFACE_THREAD(this);
    if (d->title == title)
        return;
    d->title = title;
    updateGeometry();
    update();
    Q_EMIT titleChanged(title);
}

bool TrackBall::isEditing() const {
    return d->bracket.isEditing();
}

QSize TrackBall::sizeHint() const {
    return {NominalSide, NominalSide + static_cast<int>(d->titleHeight())};
}

QSize TrackBall::minimumSizeHint() const {
    return {SmallestSide, SmallestSide + static_cast<int>(d->titleHeight())};
}

void TrackBall::resetBalance() {
    KXUI_INTERFACE_THREAD(this);
    d->editOnce(d->resetPose(true, false));
}

void TrackBall::resetMaster() {
    KXUI_INTERFACE_THREAD(this);
    d->editOnce(d->resetPose(false, true));
}

void TrackBall::resetToNeutral() {
    KXUI_INTERFACE_THREAD(this);
    d->editOnce(d->resetPose(true, true));
}

void TrackBall::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->bracket.cancel();
}

bool TrackBall::event(QEvent* event) {
    if (d->bracket.takes(event))
        return true;
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (TrackBallPrivate::isOwnKey(*static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
        break;
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        d->hover(d->geometry().partAt(static_cast<QHoverEvent*>(event)->pos()));
        break;
    case QEvent::HoverLeave:
        d->hover(TrackBallGeometry::Nowhere);
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void TrackBall::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    QWidget::changeEvent(event);
}

void TrackBall::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    d->paint(painter);
}

void TrackBall::mousePressEvent(QMouseEvent* event) {
    event->setAccepted(d->press(*event));
}

void TrackBall::mouseMoveEvent(QMouseEvent* event) {
    d->move(*event);
}

void TrackBall::mouseReleaseEvent(QMouseEvent*) {
    d->release();
}

void TrackBall::mouseDoubleClickEvent(QMouseEvent* event) {
    const TrackBallGeometry::Part part = d->geometry().partAt(event->localPos());
    if (event->button() != Qt::LeftButton || part == TrackBallGeometry::Nowhere)
        mousePressEvent(event);
    else if (part == TrackBallGeometry::Ball)
        resetBalance();
    else
        resetMaster();
}

void TrackBall::wheelEvent(QWheelEvent* event) {
    event->setAccepted(WheelPolicy::takes(d->wheelPolicy, this) && d->turn(*event));
}

void TrackBall::keyPressEvent(QKeyEvent* event) {
    if (TrackBallPrivate::isOwnKey(*event))
        d->pressKey(*event);
    else
        QWidget::keyPressEvent(event);
}

} // namespace Kestrel::UI
