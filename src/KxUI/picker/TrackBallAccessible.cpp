#include <KxUI/picker/TrackBallAccessible_p.h>

#include <KxUI/picker/TrackBall_p.h>

#include <cmath>

namespace Kestrel::UI {

TrackBallAccessible::TrackBallAccessible(TrackBall* ball)
    : QAccessibleWidget(ball, QAccessible::ColorChooser) {}

TrackBallAccessible::~TrackBallAccessible() {
    if (m_ring != 0)
        QAccessible::deleteAccessibleInterface(m_ring);
}

TrackBall* TrackBallAccessible::ball() const {
    return static_cast<TrackBall*>(object());
}

void TrackBallAccessible::tellValue(TrackBall* ball) {
    auto* const self =
        dynamic_cast<TrackBallAccessible*>(QAccessible::queryAccessibleInterface(ball));
    if (!self)
        return;
    QAccessibleValueChangeEvent changed(ball, ball->d->valueText());
    QAccessible::updateAccessibility(&changed);
    QAccessibleValueChangeEvent turned(self->child(0), ball->master());
    QAccessible::updateAccessibility(&turned);
}

QString TrackBallAccessible::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Value)
        return ball()->d->valueText();
    const QString text = QAccessibleWidget::text(kind);
    if (kind != QAccessible::Name || !text.isEmpty())
        return text;
    return ball()->title().isEmpty() ? TrackBall::tr("Track ball") : ball()->title();
}

QAccessibleInterface* TrackBallAccessible::child(int index) const {
    if (index != 0)
        return nullptr;
    if (m_ring == 0)
        m_ring = QAccessible::registerAccessibleInterface(new TrackBallRingAccessible(ball()));
    return QAccessible::accessibleInterface(m_ring);
}

int TrackBallAccessible::indexOfChild(const QAccessibleInterface* child) const {
    return child && m_ring != 0 && child == QAccessible::accessibleInterface(m_ring) ? 0 : -1;
}

QAccessibleInterface* TrackBallAccessible::childAt(int x, int y) const {
    const QPoint at = ball()->mapFromGlobal(QPoint(x, y));
    return ball()->d->geometry().partAt(at) == TrackBallGeometry::Ring ? child(0) : nullptr;
}

TrackBallRingAccessible::TrackBallRingAccessible(TrackBall* ball)
    : m_ball(ball) {}

QWindow* TrackBallRingAccessible::window() const {
    return parent() ? parent()->window() : nullptr;
}

QAccessibleInterface* TrackBallRingAccessible::parent() const {
    return m_ball ? QAccessible::queryAccessibleInterface(m_ball) : nullptr;
}

QString TrackBallRingAccessible::text(QAccessible::Text kind) const {
    if (!m_ball)
        return {};
    if (kind == QAccessible::Value)
        return m_ball->d->masterText();
    return kind == QAccessible::Name ? TrackBall::tr("Master") : QString();
}

QRect TrackBallRingAccessible::rect() const {
    if (!m_ball)
        return {};
    const TrackBallGeometry places = m_ball->d->geometry();
    const QPointF corner(places.ringOuter, places.ringOuter);
    const QRect ring = QRectF(places.centre - corner, places.centre + corner).toAlignedRect();
    return {m_ball->mapToGlobal(ring.topLeft()), ring.size()};
}

QAccessible::State TrackBallRingAccessible::state() const {
    QAccessible::State state;
    state.invalid = m_ball.isNull();
    state.disabled = m_ball && !m_ball->isEnabled();
    state.invisible = m_ball && !m_ball->isVisible();
    return state;
}

void* TrackBallRingAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleInterface::interface_cast(type);
}

QVariant TrackBallRingAccessible::currentValue() const {
    return m_ball ? m_ball->master() : 0.0;
}

void TrackBallRingAccessible::setCurrentValue(const QVariant& value) {
    bool isNumber = false;
    const double wanted = value.toDouble(&isNumber);
    if (!m_ball || !m_ball->isEnabled() || !isNumber || !std::isfinite(wanted))
        return;
    TrackBallPrivate& own = *m_ball->d;
    TrackBallPose pose = own.value.pose;
    if (!pose.isOffset && !(wanted > 0.0)) // that would be no gain
        return;
    pose.master = wanted;
    own.editOnce(pose);
}

double TrackBallRingAccessible::masterAt(double steps) const {
    if (!m_ball)
        return 0.0;
    const TrackBallScale scale = m_ball->d->scale();
    TrackBallPose pose = m_ball->d->value.pose;
    pose.master = scale.neutral;
    return scale.masterAfter(pose, steps);
}

QVariant TrackBallRingAccessible::maximumValue() const {
    return masterAt(TrackBallGeometry::RingSpan);
}

QVariant TrackBallRingAccessible::minimumValue() const {
    return masterAt(-TrackBallGeometry::RingSpan);
}

QVariant TrackBallRingAccessible::minimumStepSize() const {
    return std::fabs(masterAt(TrackBallPrivate::StepsPerNotch) - masterAt(0.0));
}

} // namespace Kestrel::UI
