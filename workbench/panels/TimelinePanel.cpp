#include "panels/TimelinePanel.h"

#include "panels/TransportRow.h"
#include "play/Session.h"

#include <KxUI/style/ApplicationStyle.h>
#include <KxUI/time/TimeSlider.h>

#include <QEvent>
#include <QVBoxLayout>

#include <cstdlib>

namespace Kestrel::Workbench {

using UI::TimeSlider;

TimelinePanel::TimelinePanel(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_slider(new TimeSlider(session->model(), session->formatter(), BarCount,
                              TimeSlider::MainTransport | TimeSlider::TimecodeTicks))
    , m_transportRow(new TransportRow(session)) {
    setObjectName(QStringLiteral("TimelinePanel"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->addWidget(m_slider);
    layout->addWidget(m_transportRow);
    layout->addStretch(1); // a tall pane leaves them together at its top
    applyColors();

    connect(session, &Session::frameCached, m_slider,
            [this](Base::Time time) { m_slider->displayFrameAsCached(time, CachedBar); });
    connect(session, &Session::frameUncached, m_slider,
            [this](Base::Time time) { m_slider->clearCachedFrame(time, CachedBar); });
    connect(session, &Session::cacheCleared, m_slider,
            [this] { m_slider->setCachedFrames({}, CachedBar); });
    connect(session, &Session::sequenceChanged, this, &TimelinePanel::showMissingFrames);
    connect(m_slider, &TimeSlider::requestCacheBarUpdate, this, &TimelinePanel::refillCacheBar);
    connect(m_slider, &TimeSlider::snapTime, this, &TimelinePanel::snap);
    // Scrubbing takes over from playback; a mark is moved while it goes on.
    connect(m_slider, &TimeSlider::beginTimeDrag, this, [this](TimeSlider::HandleType handle) {
        if (handle == TimeSlider::PlayheadHandle)
            m_session->player()->stop();
        m_session->marks()->hold(true);
    });
    connect(m_slider, &TimeSlider::endTimeDrag, this, [this] { m_session->marks()->hold(false); });
    showMissingFrames();
    refillCacheBar();
}

void TimelinePanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

void TimelinePanel::applyColors() {
    const auto colors = UI::ApplicationStyle::accentsOf(palette());
    TimeSlider::SetStandardPlayheadColor(colors.playhead);
    TimeSlider::SetInOutMarkerColor(colors.mark);
    TimeSlider::SetKeyFrameColor(colors.keyFrame);
    m_slider->setCacheBarColor(colors.cached, CachedBar);
    m_slider->setCacheBarColor(colors.missing, MissingBar);
    m_slider->redraw();
}

void TimelinePanel::showMissingFrames() {
    TimeSlider::FrameSet missing;
    using Interval = boost::icl::interval<Base::Time>;
    const Sequence& sequence = m_session->sequence();
    const auto& members = sequence.members();
    for (std::size_t i = 1; i < members.size(); ++i) {
        const Base::Time expected = members[i - 1].first + sequence.step();
        if (members[i].first > expected)
            missing.add(Interval::right_open(expected, members[i].first));
    }
    m_slider->setCachedFrames(missing, MissingBar);
}

void TimelinePanel::refillCacheBar() {
    TimeSlider::FrameSet cached;
    using Interval = boost::icl::interval<Base::Time>;
    for (const Base::Time time : m_session->cache().pictureTimes())
        cached.add(Interval::right_open(time, time + 1));
    m_slider->setCachedFrames(cached, CachedBar);
}

/** Draws a dragged time to a keyframe or mark within a few pixels. */
void TimelinePanel::snap(Base::Time& time) const {
    constexpr int reach = 4;
    int nearest = reach + 1;
    Base::Time snapped = time;
    const int x = m_slider->clipTimeToX(time);
    const auto consider = [&](Base::Time point) {
        if (point == Base::InvalidTime)
            return;
        const int apart = std::abs(m_slider->clipTimeToX(point) - x);
        if (apart < nearest) {
            nearest = apart;
            snapped = point;
        }
    };
    const UI::TimeSliderModel& model = *m_session->model();
    for (const Base::Time key : model.keyFrames())
        consider(key);
    // A mark that is being dragged must not hold itself.
    if (m_slider->dragHandle() == TimeSlider::PlayheadHandle) {
        consider(model.inTime());
        consider(model.outTime());
    }
    time = snapped;
}

} // namespace Kestrel::Workbench
