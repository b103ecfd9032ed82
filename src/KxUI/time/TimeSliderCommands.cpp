#include <KxUI/time/TimeSliderPrivate_p.h>

#include <QApplication>
#include <QCursor>
#include <QLabel>
#include <QMouseEvent>

#include <algorithm>

// What the commands of a drag do to a time slider.

namespace Kestrel::UI {
namespace {

using Base::Time;

constexpr int AutoScrollMilliseconds = 100;

// The pop-up of the one slider whose derived handle is being dragged.
QPointer<QLabel>& timePopup() {
    static QPointer<QLabel> popup;
    return popup;
}

} // namespace

void TimeSlider::Private::run(const TimeSliderCommands& commands, QMouseEvent* event) {
    const QPointer<TimeSlider> guard(q);
    escape.setActive(drag.isActive());
    for (const TimeSliderCommand& command : commands) {
        run(command, event);
        if (!guard)
            return;
    }
}

void TimeSlider::Private::run(const TimeSliderCommand& command, QMouseEvent* event) {
    if (!tell(command) && !changeModel(command) && !changeView(command))
        askDerived(command, event);
}

bool TimeSlider::Private::tell(const TimeSliderCommand& command) {
    switch (command.kind) {
    case TimeSliderCommand::AllowTimeUpdates:
        Q_EMIT q->setDoUpdateTime(true);
        return true;
    case TimeSliderCommand::HoldTimeUpdates:
        Q_EMIT q->setDoUpdateTime(false);
        return true;
    case TimeSliderCommand::BeginTimeDrag: {
        const Time times[] = {command.first.time(), command.second.time()};
        Q_EMIT q->beginTimeDrag(command.handle, times);
        return true;
    }
    case TimeSliderCommand::UpdateTimeDrag:
        updateTimeDrag(command.handle);
        return true;
    case TimeSliderCommand::EndTimeDrag:
        Q_EMIT q->endTimeDrag();
        return true;
    case TimeSliderCommand::InOutTimesModified:
        Q_EMIT q->inOutTimesModified();
        return true;
    case TimeSliderCommand::ZoomOrPanChanged:
        Q_EMIT q->zoomOrPanChanged();
        return true;
    case TimeSliderCommand::RightOrMidClicked:
        Q_EMIT q->rightOrMidClicked();
        return true;
    default:
        return false;
    }
}

void TimeSlider::Private::updateTimeDrag(HandleType handle) {
    if (!model)
        return;
    Time times[] = {model->inTime(), model->outTime()};
    if (handle == OutHandle)
        times[0] = model->outTime();
    else if (handle == PlayheadHandle)
        times[0] = model->currentTime();
    Q_EMIT q->updateTimeDrag(times);
}

bool TimeSlider::Private::changeModel(const TimeSliderCommand& command) {
    const Time first = command.first.time();
    TimeSliderModel* to = model;
    switch (command.kind) {
    case TimeSliderCommand::SetInTime:
        if (to)
            to->setInTime(first, true);
        return true;
    case TimeSliderCommand::SetOutTime:
        if (to)
            to->setOutTime(first, true);
        return true;
    case TimeSliderCommand::SetInAndOutTime:
        if (to)
            to->setTimes(to->times().withMarks(first, command.second.time()));
        return true;
    case TimeSliderCommand::PutBackMarks:
        putBackMarks(command);
        return true;
    case TimeSliderCommand::SetCurrentTime:
        if (to)
            to->setCurrentTime(first);
        return true;
    default:
        return false;
    }
}

// Neither limited to the clip nor by each other, as a mark that is set would be.
void TimeSlider::Private::putBackMarks(const TimeSliderCommand& command) {
    const QPointer<TimeSliderModel> to = model;
    if (to && command.on)
        to->enableInOutLock(true);
    if (to)
        to->setTimes(to->times().withMarks(command.first.time(), command.second.time()));
    if (to)
        to->enableInOutLock(command.on);
}

bool TimeSlider::Private::changeView(const TimeSliderCommand& command) {
    switch (command.kind) {
    case TimeSliderCommand::SetFirstVisible:
        q->setFirstVisibleTime(command.first.time());
        return true;
    case TimeSliderCommand::SetLastVisible:
        q->setLastVisibleTime(command.first.time());
        return true;
    case TimeSliderCommand::SetVisibleRange:
        q->setTimeRange(command.first, command.second);
        return true;
    case TimeSliderCommand::PutBackVisible:
        storeRange({command.first, command.second});
        return true;
    case TimeSliderCommand::RedrawRectangle:
        q->redraw();
        return true;
    case TimeSliderCommand::StartAutoScroll:
        autoScrollTimer.start(AutoScrollMilliseconds, q);
        return true;
    case TimeSliderCommand::StopAutoScroll:
        autoScrollTimer.stop();
        return true;
    case TimeSliderCommand::ClearHover:
        endHover();
        return true;
    default:
        return false;
    }
}

void TimeSlider::Private::askDerived(const TimeSliderCommand& command, QMouseEvent* event) {
    const QPointer<TimeSlider> guard(q);
    switch (command.kind) {
    case TimeSliderCommand::AskDerivedClass: {
        const bool taken = q->pressHandle(event);
        if (!guard)
            return;
        if (taken)
            drag.beginDerived();
        run(taken ? TimeSliderCommands() : drag.beginPlayhead(scene()), event);
        break;
    }
    case TimeSliderCommand::MoveDerived:
        showTimePopup(command.first.time());
        q->moveHandle(event, command.first.time());
        break;
    case TimeSliderCommand::TakeBackDerived:
        q->takeBackHandle();
        break;
    case TimeSliderCommand::ReleaseDerived:
        releaseDerived(event);
        break;
    default:
        break;
    }
}

// However the drag ends, the derived class gets a release: its own, or one at the last place.
void TimeSlider::Private::releaseDerived(QMouseEvent* event) {
    hideTimePopup();
    if (event && event->type() == QEvent::MouseButtonRelease) {
        q->releaseHandle(event);
        return;
    }
    QMouseEvent release(QEvent::MouseButtonRelease, mouse, q->mapToGlobal(mouse), Qt::LeftButton,
                        Qt::NoButton, QApplication::keyboardModifiers());
    q->releaseHandle(&release);
}

// A release that went elsewhere is not told; input that was made up is not known to the
// application.
bool TimeSlider::Private::isButtonLost() const {
    return sawButton && !(QGuiApplication::mouseButtons() & drag.button());
}

void TimeSlider::Private::autoScroll() {
    if (isButtonLost()) {
        run(drag.cancel(), nullptr);
        return;
    }
    const QPoint cursor = q->mapFromGlobal(QCursor::pos());
    const TimeSliderTime by = geometry().autoScroll(cursor.x());
    if (!drag.isActive() || !by.isValid() || by == 0)
        return;
    const QPointer<TimeSlider> guard(q);
    const TimeSliderRange range = visible().shifted(by);
    q->setTimeRange(range.first, range.last);
    if (!guard || !drag.isActive())
        return;
    drag.forgetLastMove();
    QMouseEvent move(QEvent::MouseMove, cursor, q->mapToGlobal(cursor), Qt::NoButton, drag.button(),
                     QApplication::keyboardModifiers());
    q->mouseMoveEvent(&move);
}

void TimeSlider::Private::showTimePopup(Time time) {
    QPointer<QLabel>& popup = timePopup();
    if (!popup) {
        popup = new QLabel(q, Qt::ToolTip);
        popup->setAttribute(Qt::WA_ShowWithoutActivating);
        popup->setAttribute(Qt::WA_TransparentForMouseEvents);
        popup->setMargin(3);
    }
    popup->setText(text(time));
    popup->adjustSize();
    int x = std::min(geometry().timeToX(time) - 50, q->width());
    x = std::max(x, -popup->width() / 2);
    popup->move(q->mapToGlobal(QPoint(x, -26)));
    popup->show();
}

void TimeSlider::Private::hideTimePopup() {
    delete timePopup();
}

} // namespace Kestrel::UI
