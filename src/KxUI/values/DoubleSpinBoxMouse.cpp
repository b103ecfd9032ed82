#include <KxUI/values/DoubleSpinBox_p.h>

#include <KxUI/kit/EditModifiers.h>
#include <KxUI/values/NumberSteps_p.h>

#include <QGuiApplication>
#include <QHelpEvent>
#include <QHoverEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScreen>
#include <QStyleOptionSpinBox>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {

namespace {

bool isOfMouse(const QEvent& event) {
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        return true;
    default:
        return false;
    }
}

} // namespace

ScrubDrag::Start DoubleSpinBoxPrivate::scrubStart(const QPoint& at, bool onArrow) {
    m_scrubUnit = unitOf(value);
    m_scrubBase = value;
    const auto end = [this](double base, double none) {
        const double number = m_scrubUnit < 0 ? base : units.fromBase(m_scrubUnit, base);
        return std::isnan(number) ? none : number;
    };
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const auto [low, high] = std::minmax({end(minimum, -infinity), end(maximum, infinity)});
    ScrubDrag::Start start;
    start.number = numberOf(value);
    start.minimum = low;
    start.maximum = high;
    start.grain = stepMode == DoubleSpinBox::AdaptiveSteps
                      ? adaptiveStep(start.number, 1.0, singleStep)
                      : grainAt(at).value_or(singleStep);
    start.upAndDownOnly = onArrow;
    return start;
}

bool DoubleSpinBoxPrivate::press(const QMouseEvent& event, QStyle::SubControl arrow) {
    if (!takeText())
        return false;
    if (!problem.isNull())
        return true;
    if (!bracket.beginDrag(event.button()))
        return false;
    m_modifiers = event.modifiers();
    m_snaps = false;
    m_travel.begin();
    m_scrub.press(event.screenPos(),
                  scrubStart(q->mapFromGlobal(event.globalPos()), arrow != QStyle::SC_None));
    if (arrow != QStyle::SC_None)
        beginArrow(arrow);
    return true;
}

bool DoubleSpinBoxPrivate::move(const QMouseEvent& event) {
    if (bracket.gesture() != EditGestures::Drag || !fineTune || q->isReadOnly())
        return true;
    if (const std::optional<double> base = bracket.takeRebase())
        rebaseScrub(*base);
    const bool isFirst = m_scrub.state() == ScrubDrag::Armed;
    m_modifiers = event.modifiers();
    const bool snap = m_snaps != m_modifiers.testFlag(Qt::AltModifier);
    const QPointF before = m_scrub.place();
    const bool isNew = m_scrub.moveTo(event.screenPos(), EditModifiers::factor(m_modifiers), snap);
    if (m_scrub.state() != ScrubDrag::Scrubbing)
        return true;
    const bool across = m_scrub.axis() == Qt::Horizontal;
    if (isFirst) {
        q->setCursor(across ? Qt::SizeHorCursor : Qt::SizeVerCursor);
        if (m_arrow != QStyle::SC_None) { // which has stepped meanwhile
            stopArrow();
            rebaseScrub(value);
        }
        return true;
    }
    const QPointF way = event.screenPos() - before;
    if (!way.isNull()) // a pointer that is held at the edge may say so
        m_travel.moved(across ? way.x() : -way.y());
    passEdge(event);
    return showScrubbed(isNew);
}

void DoubleSpinBoxPrivate::rebaseScrub(double base) {
    m_scrubBase = base;
    m_scrub.rebase(m_scrubUnit < 0 ? base : units.fromBase(m_scrubUnit, base));
}

bool DoubleSpinBoxPrivate::showScrubbed(bool isNew) {
    if (!isNew)
        return true;
    // Where it began, and at the ends, it is the very value again.
    const double number = m_scrub.number();
    const double wanted = baseOf(number, m_scrubUnit) + 0.0;
    if (number == m_scrub.base())
        return changeTo(m_scrubBase);
    if (m_scrub.isAtEnd() && std::fabs(wanted - minimum) != std::fabs(wanted - maximum))
        return changeTo(std::fabs(wanted - minimum) < std::fabs(wanted - maximum) ? minimum
                                                                                  : maximum);
    return changeTo(clamped(wanted));
}

void DoubleSpinBoxPrivate::passEdge(const QMouseEvent& event) {
    const QScreen* screen = QGuiApplication::screenAt(event.globalPos());
    const std::optional<QPoint> place =
        screen ? PointerTravel::beyond(event.globalPos(), screen->geometry(), m_scrub.axis())
               : std::nullopt;
    if (!place) {
        if (m_edge)
            m_edge->stop();
        return;
    }
    // The pen of a tablet is where it is.
    if (event.source() == Qt::MouseEventNotSynthesized && m_travel.jump(*place)) {
        m_scrub.jumpTo(*place);
        return;
    }
    if (!m_edge) {
        m_edge = std::make_unique<QTimer>();
        m_edge->setInterval(PointerTravel::TickMilliseconds);
        QObject::connect(m_edge.get(), &QTimer::timeout, q, [this] { goOnAtEdge(); });
    }
    m_edge->start();
}

void DoubleSpinBoxPrivate::goOnAtEdge() {
    if (bracket.gesture() != EditGestures::Drag || m_scrub.state() != ScrubDrag::Scrubbing) {
        m_edge->stop();
        return;
    }
    const bool snap = m_snaps != m_modifiers.testFlag(Qt::AltModifier);
    if (const std::optional<double> base = bracket.takeRebase())
        rebaseScrub(*base);
    showScrubbed(m_scrub.moveBy(m_travel.tick(), EditModifiers::factor(m_modifiers), snap));
}

bool DoubleSpinBoxPrivate::release(bool& wasClick) {
    wasClick = bracket.gesture() == EditGestures::Drag && m_scrub.state() == ScrubDrag::Armed &&
               m_arrow == QStyle::SC_None;
    m_scrub.release();
    if (m_edge)
        m_edge->stop();
    stopArrow();
    return bracket.finish();
}

QStyle::SubControl DoubleSpinBoxPrivate::arrowAt(const QPoint& at) const {
    QStyleOptionSpinBox option;
    q->initStyleOption(&option);
    const QStyle::SubControl hit =
        q->style()->hitTestComplexControl(QStyle::CC_SpinBox, &option, at, q);
    const bool isArrow = hit == QStyle::SC_SpinBoxUp || hit == QStyle::SC_SpinBoxDown;
    return isArrow && q->buttonSymbols() != QAbstractSpinBox::NoButtons ? hit : QStyle::SC_None;
}

// The base class steps by arrows, too, but looks at itself afterwards, when a host may have deleted
// it.
void DoubleSpinBoxPrivate::beginArrow(QStyle::SubControl arrow) {
    m_arrow = arrow;
    q->update();
    if (!m_repeat) {
        m_repeat = std::make_unique<QTimer>();
        QObject::connect(m_repeat.get(), &QTimer::timeout, q, [this] {
            m_repeat->setInterval(
                q->style()->styleHint(QStyle::SH_SpinBox_ClickAutoRepeatRate, nullptr, q));
            stepByArrow();
        });
    }
    m_repeat->start(q->style()->styleHint(QStyle::SH_SpinBox_ClickAutoRepeatThreshold, nullptr, q));
    stepByArrow();
}

void DoubleSpinBoxPrivate::stepByArrow() {
    if (bracket.gesture() != EditGestures::Drag || m_arrow == QStyle::SC_None || q->isReadOnly()) {
        stopArrow();
        return;
    }
    changeTo(
        stepped(m_arrow == QStyle::SC_SpinBoxUp ? 1.0 : -1.0, EditModifiers::factor(m_modifiers)));
}

void DoubleSpinBoxPrivate::stopArrow() {
    if (m_arrow == QStyle::SC_None)
        return;
    m_arrow = QStyle::SC_None;
    m_repeat->stop();
    q->update();
}

void DoubleSpinBoxPrivate::hover(const QPoint& at) {
    if (bracket.gesture() == EditGestures::Drag)
        return;
    const bool scrubs = fineTune && !typing && !q->isReadOnly() && edit()->geometry().contains(at);
    if (scrubs && q->cursor().shape() != Qt::SizeHorCursor)
        q->setCursor(Qt::SizeHorCursor);
    else if (!scrubs && q->testAttribute(Qt::WA_SetCursor))
        q->unsetCursor();
}

// While text is edited: the middle button drags the number.
bool DoubleSpinBoxPrivate::filterEdit(QEvent* event) {
    if (!isOfMouse(*event))
        return false;
    if (bracket.takes(event))
        return true;
    const auto& mouse = *static_cast<QMouseEvent*>(event);
    bool wasClick = false;
    if (event->type() == QEvent::MouseButtonPress && mouse.button() == Qt::MiddleButton)
        press(mouse);
    else if (bracket.gesture() != EditGestures::Drag)
        return false;
    else if (event->type() == QEvent::MouseMove)
        move(mouse);
    else if (event->type() == QEvent::MouseButtonRelease)
        release(wasClick);
    return true;
}

bool DoubleSpinBoxPrivate::filterLabel(QEvent* event) {
    if (!isOfMouse(*event))
        return false;
    if (!q->isEnabled() || bracket.takes(event))
        return true;
    const auto& mouse = *static_cast<QMouseEvent*>(event);
    const bool drags = bracket.gesture() == EditGestures::Drag;
    if (event->type() == QEvent::MouseMove) {
        move(mouse);
        return drags;
    }
    if (event->type() == QEvent::MouseButtonRelease) {
        bool wasClick = false;
        if (drags && release(wasClick) && wasClick && !typing)
            q->setFocus(Qt::MouseFocusReason);
        return drags;
    }
    if (mouse.button() != Qt::LeftButton && mouse.button() != Qt::MiddleButton)
        return false;
    if (event->type() == QEvent::MouseButtonDblClick)
        q->resetToDefault();
    else
        press(mouse);
    return true;
}

bool DoubleSpinBox::event(QEvent* event) {
    if (d->bracket.takes(event))
        return true;
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (d->isOwnKey(*static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
        return d->typing ? lineEdit()->event(event) : QWidget::event(event);
    case QEvent::InputMethod:
        inputMethodEvent(static_cast<QInputMethodEvent*>(event));
        return true;
    case QEvent::ToolTip:
        return d->showToolTip(*static_cast<QHelpEvent*>(event)) || QWidget::event(event);
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        d->hover(static_cast<QHoverEvent*>(event)->pos());
        break;
    default:
        break;
    }
    return QAbstractSpinBox::event(event);
}

bool DoubleSpinBox::eventFilter(QObject* watched, QEvent* event) {
    if (watched == d->label)
        return d->filterLabel(event);
    return watched == lineEdit() && d->filterEdit(event);
}

void DoubleSpinBox::mousePressEvent(QMouseEvent* event) {
    const bool left = event->button() == Qt::LeftButton;
    if (left || event->button() == Qt::MiddleButton)
        d->press(*event, left ? d->arrowAt(event->pos()) : QStyle::SC_None);
    else
        event->ignore();
}

void DoubleSpinBox::mouseMoveEvent(QMouseEvent* event) {
    d->move(*event);
}

void DoubleSpinBox::mouseReleaseEvent(QMouseEvent* event) {
    const bool left = event->button() == Qt::LeftButton;
    bool wasClick = false;
    if (d->release(wasClick) && wasClick && left)
        d->beginTyping();
}

void DoubleSpinBox::wheelEvent(QWheelEvent* event) {
    if (isReadOnly() || event->angleDelta().y() == 0 || !WheelPolicy::takes(d->wheelPolicy, this)) {
        event->ignore();
        return;
    }
    event->accept();
    const int notches = d->bracket.turnWheel(*event); // 0 where the field is gone
    if (notches == 0)
        return;
    const double factor = EditModifiers::factor(event->modifiers());
    if (d->typing)
        d->stepDigit(notches * factor);
    else
        d->changeTo(d->stepped(notches, factor, d->grainAt(event->position().toPoint())));
}

bool DoubleSpinBoxPrivate::showToolTip(const QHelpEvent& event) {
    QString text = q->toolTip();
    if (!problem.isNull())
        text = DoubleSpinBox::tr("%1 (character %2)").arg(problem).arg(problemColumn + 1);
    else if (text.isEmpty() && !mixed && !typing && q->exactText() != numberTextOf(value))
        text = exactNumberText(numberOf(value), notation) + suffixText();
    if (text.isEmpty())
        return false;
    QToolTip::showText(event.globalPos(), text, q);
    return true;
}

} // namespace Kestrel::UI
