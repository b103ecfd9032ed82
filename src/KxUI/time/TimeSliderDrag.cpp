#include <KxUI/time/TimeSliderDrag_p.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

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
    TimeSliderCommands commands;
    commands.append({Command::StopAutoScroll});
    commands.append({Command::AllowTimeUpdates});
    endAnnounced(commands);

    m_handle = TimeSlider::NoHandle;
    m_button = press.button;
    m_pressX = press.x;
    m_lastX = press.x;
    m_grabOffset = 0;
    m_started = false;
    m_visibleAtPress = scene.geometry.visible;

    if (press.button == Qt::RightButton || press.button == Qt::MiddleButton) {
        m_handle = press.modifiers & Qt::AltModifier ? TimeSlider::ZoomHandle
                                                     : TimeSlider::ZoomRectangleHandle;
        m_zoomStart = m_zoomEnd = scene.geometry.xToTime(press.x);
    } else if (press.button != Qt::LeftButton || !scene.geometry.hasClip()) {
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

void TimeSliderDrag::pressRangeBar(const TimeSliderGeometry& geometry, int x) {
    if (!geometry.visible.isValid())
        return;
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
    const bool hasIn = scene.inTime != InvalidTime;
    const bool hasOut = scene.outTime != InvalidTime;
    const int inX = geometry.timeToX(scene.inTime);
    const int outX = geometry.timeToX(scene.outTime);
    const int playheadX = geometry.timeToX(scene.currentTime);
    const bool nearIn = hasIn && isNear(press.x, inX);
    const bool nearOut = hasOut && isNear(press.x, outX);
    const Time time = geometry.xToTime(press.x);

    if (press.modifiers & Qt::ShiftModifier) {
        commands.append({Command::AskDerivedClass});
    } else if (press.modifiers & Qt::ControlModifier) {
        if (hasIn && hasOut && (nearIn || nearOut)) {
            beginMarks(TimeSlider::InOutHandle, scene, scene.inTime, scene.outTime, commands);
        } else if (press.x >= playheadX) {
            beginMarks(TimeSlider::OutHandle, scene, time, {}, commands);
            commands.append({Command::SetOutTime, time});
        } else {
            beginMarks(TimeSlider::InHandle, scene, time, {}, commands);
            commands.append({Command::SetInTime, time});
        }
    } else if (press.y < geometry.height / 2 && scene.currentTime != InvalidTime &&
               isNear(press.x, playheadX)) {
        const TimeSliderCommands playhead = beginPlayhead(scene);
        commands.append(playhead.data(), playhead.size());
    } else if (nearIn && (!hasOut || press.x < outX)) {
        beginMarks(TimeSlider::InHandle, scene, scene.inTime, {}, commands);
    } else if (nearOut && (!hasIn || press.x > inX)) {
        beginMarks(TimeSlider::OutHandle, scene, scene.outTime, {}, commands);
    } else {
        commands.append({Command::AskDerivedClass});
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
    commands.append({Command::BeginTimeDrag, time, second});
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
    const TimeSliderGeometry& geometry = scene.geometry;
    m_lastX = x;
    m_started = m_started || std::abs(x - m_pressX) > scene.startDragDistance;

    TimeSliderCommands commands;
    switch (m_handle) {
    case TimeSlider::NoHandle:
    case TimeSlider::DerivedHandle:
        break;
    case TimeSlider::InHandle:
        commands.append({Command::SetInTime, time});
        commands.append({Command::UpdateTimeDrag});
        break;
    case TimeSlider::OutHandle:
        commands.append({Command::SetOutTime, time});
        commands.append({Command::UpdateTimeDrag});
        break;
    case TimeSlider::InOutHandle: {
        const TimeSliderTime length = TimeSliderTime(scene.outTime) - scene.inTime;
        TimeSliderTime in = time;
        if (in > geometry.clip.last - length)
            in = geometry.clip.last - length;
        if (in < geometry.clip.first)
            in = geometry.clip.first;
        if (!length.isValid() || !in.isValid())
            break; // a mark was cleared under the drag
        commands.append({Command::SetInAndOutTime, in, in + length});
        commands.append({Command::UpdateTimeDrag});
        break;
    }
    case TimeSlider::PlayheadHandle: {
        TimeSliderTime to = time;
        if (scene.mainTransport && to < geometry.clip.first)
            to = geometry.clip.first;
        if (!m_announced) {
            m_announced = true;
            commands.append({Command::BeginTimeDrag, to});
        }
        commands.append({Command::SetCurrentTime, to});
        commands.append({Command::UpdateTimeDrag});
        break;
    }
    case TimeSlider::PanHandle: {
        const float pixels = static_cast<float>(x) - static_cast<float>(m_pressX);
        show(scene, m_visibleAtPress.shifted(TimeSliderTime(0) - geometry.pixelsToTime(pixels)),
             commands);
        break;
    }
    case TimeSlider::ZoomRectangleHandle:
        m_zoomEnd = time;
        commands.append({Command::RedrawRectangle});
        break;
    case TimeSlider::ZoomHandle: {
        const float pixels = static_cast<float>(m_pressX) - static_cast<float>(x);
        show(scene, zoomedRange(m_visibleAtPress, m_zoomStart, std::pow(DragZoomStep, pixels)),
             commands);
        break;
    }
    // The overview moves by the change of its time since the press, so that an edge grabbed beside
    // its middle stays under the cursor and comes back to exactly where it was.
    case TimeSlider::RangeBarFirstHandle:
    case TimeSlider::RangeBarLastHandle:
    case TimeSlider::RangeBarHandle: {
        const TimeSliderTime by = geometry.xToRangeBarTime(x) - m_rangeBarGrabTime;
        const TimeSliderRange to = m_visibleAtPress.shifted(by);
        if (m_handle == TimeSlider::RangeBarHandle) {
            show(scene, to, commands);
            break;
        }
        if (m_handle == TimeSlider::RangeBarFirstHandle)
            commands.append({Command::SetFirstVisible, to.first});
        else
            commands.append({Command::SetLastVisible, to.last});
        commands.append({Command::ZoomOrPanChanged});
        break;
    }
    }
    return commands;
}

void TimeSliderDrag::endAnnounced(TimeSliderCommands& commands) {
    if (m_announced)
        commands.append({Command::EndTimeDrag});
    m_announced = false;
}

TimeSliderCommands TimeSliderDrag::release() {
    const TimeSliderRange swept = zoomRectangle();
    TimeSliderCommands commands = cancel();
    const bool wasClick =
        (m_button == Qt::RightButton || m_button == Qt::MiddleButton) && !m_started;
    m_button = Qt::NoButton;
    if (wasClick) {
        commands.append({Command::RightOrMidClicked});
    } else if (swept.isValid() && swept.first != swept.last) {
        commands.append({Command::SetVisibleRange, swept.first, swept.last - 1});
        commands.append({Command::ZoomOrPanChanged});
    }
    return commands;
}

TimeSliderCommands TimeSliderDrag::cancel() {
    TimeSliderCommands commands;
    commands.append({Command::StopAutoScroll});
    commands.append({Command::AllowTimeUpdates});
    endAnnounced(commands);
    if (isMark())
        commands.append({Command::InOutTimesModified});
    if (m_zoomStart != m_zoomEnd)
        commands.append({Command::RedrawRectangle});
    m_zoomEnd = m_zoomStart;
    m_handle = TimeSlider::NoHandle;
    return commands;
}

TimeSliderRange TimeSliderDrag::zoomRectangle() const {
    if (m_handle != TimeSlider::ZoomRectangleHandle)
        return {};
    return m_zoomStart > m_zoomEnd ? TimeSliderRange{m_zoomEnd, m_zoomStart}
                                   : TimeSliderRange{m_zoomStart, m_zoomEnd};
}

} // namespace Kestrel::UI
