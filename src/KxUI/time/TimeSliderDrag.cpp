#include <KxUI/time/TimeSliderDrag_p.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace Kestrel::UI {
namespace {

using Base::InvalidTime;
using Base::Time;
using Command = TimeSliderCommand;

constexpr int CatchDistance = 8;       // under this many pixels a press catches a mark
constexpr int RangeBarCatch = 7;       // up to this many, an edge of the overview bar
constexpr float DragZoomStep = 0.994F; // zoom factor of a pixel

bool isNear(int x, int handleX) {
    return std::abs(x - handleX) < CatchDistance;
}

} // namespace

TimeSliderCommands TimeSliderDrag::press(const TimeSliderScene& scene,
                                         const TimeSliderPress& press) {
    if (press.button == Qt::RightButton && m_button == Qt::LeftButton &&
        (isActive() || m_takenBack))
        return takeBack(scene);

    TimeSliderCommands commands;
    if (m_handle == TimeSlider::DerivedHandle)
        commands.append({Command::ReleaseDerived});
    commands.append({Command::StopAutoScroll});
    commands.append({Command::AllowTimeUpdates});
    endAnnounced(commands);
    if (m_zoomStart != m_zoomEnd)
        commands.append({Command::RedrawRectangle});
    begin(scene, press);

    if (press.button == Qt::RightButton || press.button == Qt::MiddleButton) {
        m_handle = press.modifiers & Qt::AltModifier ? TimeSlider::ZoomHandle
                                                     : TimeSlider::ZoomRectangleHandle;
        m_zoomStart = m_zoomEnd = scene.geometry.xToTime(press.x);
    } else if (press.button != Qt::LeftButton || !scene.geometry.hasClip() ||
               !scene.geometry.visible.isValid()) {
        return commands;
    } else if (press.y < TimeSliderGeometry::Margin) {
        pressRangeBar(scene.geometry, press.x);
    } else if (press.modifiers & Qt::AltModifier) {
        m_handle = TimeSlider::PanHandle;
    } else {
        if (scene.mainTransport)
            commands.append({Command::StartAutoScroll});
        pressRuler(scene, press, commands);
    }
    commands.append({Command::ClearHover});
    return commands;
}

void TimeSliderDrag::begin(const TimeSliderScene& scene, const TimeSliderPress& press) {
    m_handle = TimeSlider::NoHandle;
    m_button = press.button;
    m_pressX = press.x;
    m_lastX = press.x;
    m_grabOffset = 0;
    m_started = false;
    m_takenBack = false;
    m_zoomEnd = m_zoomStart;
    m_pressed = scene;
}

void TimeSliderDrag::pressRangeBar(const TimeSliderGeometry& geometry, int x) {
    const int first = geometry.timeToRangeBarX(geometry.visible.first);
    const int end = geometry.timeToRangeBarX(geometry.visible.last + 1);
    if (std::abs(x - first) <= RangeBarCatch)
        m_handle = TimeSlider::RangeBarFirstHandle;
    else if (std::abs(x - end) <= RangeBarCatch)
        m_handle = TimeSlider::RangeBarLastHandle;
    else if (x > first && x < end)
        m_handle = TimeSlider::RangeBarHandle;
    m_rangeBarGrabTime = geometry.xToRangeBarTime(x);
}

void TimeSliderDrag::pressRuler(const TimeSliderScene& scene, const TimeSliderPress& press,
                                TimeSliderCommands& commands) {
    const TimeSliderGeometry& geometry = scene.geometry;
    const bool hasIn = scene.inOutLock && scene.inTime != InvalidTime;
    const bool hasOut = scene.inOutLock && scene.outTime != InvalidTime;
    const int inX = geometry.timeToX(scene.inTime);
    const int outX = geometry.timeToX(scene.outTime);
    const bool onPlayhead = press.y < geometry.height / 2 && scene.currentTime != InvalidTime &&
                            isNear(press.x, geometry.timeToX(scene.currentTime));

    if (press.modifiers & Qt::ShiftModifier) {
        commands.append({Command::AskDerivedClass});
    } else if (press.modifiers & Qt::ControlModifier) {
        pressWithControl(scene, press.x, commands);
    } else if (onPlayhead) {
        const TimeSliderCommands playhead = beginPlayhead(scene);
        commands.append(playhead.data(), playhead.size());
    } else if (hasIn && isNear(press.x, inX) && (!hasOut || press.x < outX)) {
        beginMarks(TimeSlider::InHandle, scene, scene.inTime, {}, commands);
    } else if (hasOut && isNear(press.x, outX) && (!hasIn || press.x > inX)) {
        beginMarks(TimeSlider::OutHandle, scene, scene.outTime, {}, commands);
    } else {
        commands.append({Command::AskDerivedClass});
    }
}

// Both marks where one of them is caught, else the mark on this side of the playhead.
void TimeSliderDrag::pressWithControl(const TimeSliderScene& scene, int x,
                                      TimeSliderCommands& commands) {
    const TimeSliderGeometry& geometry = scene.geometry;
    const bool hasBoth =
        scene.inOutLock && scene.inTime != InvalidTime && scene.outTime != InvalidTime;
    const Time time = geometry.xToTime(x);
    if (hasBoth &&
        (isNear(x, geometry.timeToX(scene.inTime)) || isNear(x, geometry.timeToX(scene.outTime)))) {
        beginMarks(TimeSlider::InOutHandle, scene, scene.inTime, scene.outTime, commands);
    } else if (x >= geometry.timeToX(scene.currentTime)) {
        beginMarks(TimeSlider::OutHandle, scene, time, {}, commands);
        commands.append({Command::SetOutTime, time});
    } else {
        beginMarks(TimeSlider::InHandle, scene, time, {}, commands);
        commands.append({Command::SetInTime, time});
    }
}

void TimeSliderDrag::grab(Handle handle, const TimeSliderScene& scene, Time time) {
    m_handle = handle;
    m_grabOffset = m_pressX - scene.geometry.timeToX(time);
}

void TimeSliderDrag::beginMarks(Handle handle, const TimeSliderScene& scene, TimeSliderTime time,
                                TimeSliderTime second, TimeSliderCommands& commands) {
    grab(handle, scene, time.time());
    m_announced = true;
    commands.append({Command::HoldTimeUpdates});
    commands.append({Command::BeginTimeDrag, time, second, handle});
}

TimeSliderCommands TimeSliderDrag::beginPlayhead(const TimeSliderScene& scene) {
    TimeSliderTime time = scene.geometry.xToTime(m_pressX);
    if (scene.mainTransport && time < scene.geometry.clip.first)
        time = scene.geometry.clip.first;
    grab(TimeSlider::PlayheadHandle, scene, time.time());
    TimeSliderCommands commands;
    commands.append({Command::HoldTimeUpdates});
    commands.append({Command::SetCurrentTime, time});
    return commands;
}

bool TimeSliderDrag::isMark() const {
    return m_handle == TimeSlider::InHandle || m_handle == TimeSlider::OutHandle ||
           m_handle == TimeSlider::InOutHandle;
}

bool TimeSliderDrag::isOfVisibleRange() const {
    return m_handle == TimeSlider::PanHandle || m_handle == TimeSlider::ZoomHandle ||
           m_handle == TimeSlider::RangeBarFirstHandle ||
           m_handle == TimeSlider::RangeBarLastHandle || m_handle == TimeSlider::RangeBarHandle;
}

bool TimeSliderDrag::isToTime() const {
    return isMark() || m_handle == TimeSlider::PlayheadHandle ||
           m_handle == TimeSlider::ZoomRectangleHandle || m_handle == TimeSlider::DerivedHandle;
}

Time TimeSliderDrag::timeAt(const TimeSliderScene& scene, int x) const {
    return scene.geometry.xToTime(x - m_grabOffset);
}

void TimeSliderDrag::show(const TimeSliderScene& scene, const TimeSliderRange& range,
                          TimeSliderCommands& commands) const {
    if (range == scene.geometry.visible)
        return;
    commands.append({Command::SetVisibleRange, range.first, range.last});
    commands.append({Command::ZoomOrPanChanged});
}

TimeSliderCommands TimeSliderDrag::move(const TimeSliderScene& scene, int x, Time time) {
    m_lastX = x;
    m_started = m_started || std::abs(x - m_pressX) > scene.startDragDistance;
    TimeSliderCommands commands;
    if (isToTime() && time == InvalidTime)
        return commands; // nothing is visible that could be dragged to
    switch (m_handle) {
    case TimeSlider::NoHandle:
        break;
    case TimeSlider::InHandle:
    case TimeSlider::OutHandle:
        moveMark(time, commands);
        break;
    case TimeSlider::InOutHandle:
        moveMarks(scene, time, commands);
        break;
    case TimeSlider::PlayheadHandle:
        movePlayhead(scene, time, commands);
        break;
    case TimeSlider::PanHandle:
        movePan(scene, x, commands);
        break;
    case TimeSlider::ZoomRectangleHandle:
        m_zoomEnd = time;
        commands.append({Command::RedrawRectangle});
        break;
    case TimeSlider::ZoomHandle:
        moveZoom(scene, x, commands);
        break;
    case TimeSlider::RangeBarFirstHandle:
    case TimeSlider::RangeBarLastHandle:
    case TimeSlider::RangeBarHandle:
        moveRangeBar(scene, x, commands);
        break;
    case TimeSlider::DerivedHandle:
        commands.append({Command::MoveDerived, time});
        break;
    }
    return commands;
}

void TimeSliderDrag::moveMark(TimeSliderTime time, TimeSliderCommands& commands) const {
    const bool isIn = m_handle == TimeSlider::InHandle;
    commands.append({isIn ? Command::SetInTime : Command::SetOutTime, time});
    commands.append({Command::UpdateTimeDrag, {}, {}, m_handle});
}

void TimeSliderDrag::moveMarks(const TimeSliderScene& scene, TimeSliderTime time,
                               TimeSliderCommands& commands) const {
    if (!scene.inOutLock)
        return;
    const TimeSliderRange& clip = scene.geometry.clip;
    const TimeSliderTime length = TimeSliderTime(scene.outTime) - scene.inTime;
    TimeSliderTime in = time;
    if (in > clip.last - length)
        in = clip.last - length;
    if (in < clip.first)
        in = clip.first;
    if (!length.isValid() || !in.isValid())
        return; // a mark was cleared under the drag
    commands.append({Command::SetInAndOutTime, in, in + length});
    commands.append({Command::UpdateTimeDrag, {}, {}, m_handle});
}

void TimeSliderDrag::movePlayhead(const TimeSliderScene& scene, TimeSliderTime time,
                                  TimeSliderCommands& commands) {
    if (scene.mainTransport && time < scene.geometry.clip.first)
        time = scene.geometry.clip.first;
    if (!m_announced) {
        m_announced = true;
        commands.append({Command::BeginTimeDrag, time, {}, m_handle});
    }
    commands.append({Command::SetCurrentTime, time});
    commands.append({Command::UpdateTimeDrag, {}, {}, m_handle});
}

void TimeSliderDrag::movePan(const TimeSliderScene& scene, int x,
                             TimeSliderCommands& commands) const {
    const float pixels = static_cast<float>(x) - static_cast<float>(m_pressX);
    const TimeSliderTime by = TimeSliderTime(0) - scene.geometry.pixelsToTime(pixels);
    show(scene, m_pressed.geometry.visible.shifted(by), commands);
}

void TimeSliderDrag::moveZoom(const TimeSliderScene& scene, int x,
                              TimeSliderCommands& commands) const {
    const float pixels = static_cast<float>(m_pressX) - static_cast<float>(x);
    const float factor = std::pow(DragZoomStep, pixels);
    show(scene, zoomedRange(m_pressed.geometry.visible, m_zoomStart, factor), commands);
}

// The overview moves by the change of its time since the press, so that an edge grabbed beside its
// middle stays under the cursor and comes back to exactly where it was.
void TimeSliderDrag::moveRangeBar(const TimeSliderScene& scene, int x,
                                  TimeSliderCommands& commands) const {
    const TimeSliderTime by = scene.geometry.xToRangeBarTime(x) - m_rangeBarGrabTime;
    const TimeSliderRange to = m_pressed.geometry.visible.shifted(by);
    if (m_handle == TimeSlider::RangeBarHandle) {
        show(scene, to, commands);
        return;
    }
    if (m_handle == TimeSlider::RangeBarFirstHandle)
        commands.append({Command::SetFirstVisible, to.first});
    else
        commands.append({Command::SetLastVisible, to.last});
    commands.append({Command::ZoomOrPanChanged});
}

void TimeSliderDrag::endAnnounced(TimeSliderCommands& commands) {
    if (m_announced)
        commands.append({Command::EndTimeDrag});
    m_announced = false;
}

void TimeSliderDrag::end(TimeSliderCommands& commands) {
    if (m_handle == TimeSlider::DerivedHandle)
        commands.append({Command::ReleaseDerived});
    commands.append({Command::StopAutoScroll});
    commands.append({Command::AllowTimeUpdates});
    endAnnounced(commands);
    if (isMark())
        commands.append({Command::InOutTimesModified});
    if (m_zoomStart != m_zoomEnd)
        commands.append({Command::RedrawRectangle});
    m_zoomEnd = m_zoomStart;
    m_handle = TimeSlider::NoHandle;
}

TimeSliderCommands TimeSliderDrag::release(Qt::MouseButton button) {
    TimeSliderCommands commands;
    if (button != m_button)
        return commands;
    m_button = Qt::NoButton;
    if (std::exchange(m_takenBack, false))
        return commands;
    const TimeSliderRange swept = zoomRectangle();
    end(commands);
    if ((button == Qt::RightButton || button == Qt::MiddleButton) && !m_started) {
        commands.append({Command::RightOrMidClicked});
    } else if (swept.isValid() && swept.first != swept.last) {
        commands.append({Command::SetVisibleRange, swept.first, swept.last - 1});
        commands.append({Command::ZoomOrPanChanged});
    }
    return commands;
}

TimeSliderCommands TimeSliderDrag::cancel() {
    TimeSliderCommands commands;
    if (isActive())
        end(commands);
    m_button = Qt::NoButton;
    m_takenBack = false;
    return commands;
}

TimeSliderCommands TimeSliderDrag::takeBack(const TimeSliderScene& scene) {
    TimeSliderCommands commands;
    if (!isActive())
        return commands;
    const TimeSliderRange& visible = m_pressed.geometry.visible;
    if (isMark())
        commands.append({Command::PutBackMarks, m_pressed.inTime, m_pressed.outTime, m_handle,
                         m_pressed.inOutLock});
    else if (m_handle == TimeSlider::PlayheadHandle)
        commands.append({Command::SetCurrentTime, m_pressed.currentTime});
    else if (m_handle == TimeSlider::DerivedHandle)
        commands.append({Command::TakeBackDerived});
    if (!(visible == scene.geometry.visible))
        commands.append({Command::PutBackVisible, visible.first, visible.last});
    if (isOfVisibleRange())
        commands.append({Command::ZoomOrPanChanged});
    else if (m_announced && m_handle != TimeSlider::DerivedHandle)
        commands.append({Command::UpdateTimeDrag, {}, {}, m_handle});
    end(commands);
    m_takenBack = true;
    return commands;
}

TimeSliderRange TimeSliderDrag::zoomRectangle() const {
    if (m_handle != TimeSlider::ZoomRectangleHandle)
        return {};
    return m_zoomStart > m_zoomEnd ? TimeSliderRange{m_zoomEnd, m_zoomStart}
                                   : TimeSliderRange{m_zoomStart, m_zoomEnd};
}

} // namespace Kestrel::UI
