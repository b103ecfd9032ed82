#include <KxUI/time/TimeSliderSettings_p.h>

#include <KxUI/time/TimeSlider.h>

namespace Kestrel::UI {

TimeSliderSettings& TimeSliderSettings::all() {
    static TimeSliderSettings settings;
    return settings;
}

void TimeSlider::SetInOutMarkerColor(const QColor& color) {
    TimeSliderSettings::all().inOutMarker = color;
}

QColor TimeSlider::InOutMarkerColor() {
    return TimeSliderSettings::all().inOutMarker;
}

void TimeSlider::SetKeyFrameColor(const QColor& color) {
    TimeSliderSettings::all().keyFrame = color;
}

void TimeSlider::SetStandardPlayheadColor(const QColor& color) {
    TimeSliderSettings::all().standardPlayhead = color;
}

QColor TimeSlider::StandardPlayheadColor() {
    return TimeSliderSettings::all().standardPlayhead;
}

void TimeSlider::SetUseDoublePlayhead(bool on) {
    TimeSliderSettings::all().doublePlayhead = on;
}

void TimeSlider::SetVisibleRangeFollowsPlayhead(bool on) {
    TimeSliderSettings::all().followPlayhead = on;
}

} // namespace Kestrel::UI
