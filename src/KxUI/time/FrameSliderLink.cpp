#include <KxUI/time/FrameSliderLink_p.h>

#include <KxUI/kit/RefusalFlash_p.h>
#include <KxUI/time/FrameSlider.h>

#include <QPointer>
#include <QVariant>

#include <algorithm>
#include <climits>
#include <cmath>
#include <optional>
#include <utility>

namespace Kestrel::UI {
namespace {

/** The frame that a host means, if it is a number at all. */
std::optional<int> frameOf(const QVariant& value) {
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number))
        return std::nullopt;
    return static_cast<int>(std::clamp(std::round(number), double{INT_MIN}, double{INT_MAX}));
}

} // namespace

FrameSliderLink::FrameSliderLink(FrameSlider* slider)
    : m_slider(slider) {}

FrameSliderLink::~FrameSliderLink() {
    m_watch.reset();
    if (std::exchange(m_editing, false) && parameter())
        parameter()->endEdit(true); // the slider says nothing more, and what it said was shown
}

IParameter* FrameSliderLink::parameter() const {
    return m_lifetime.expired() ? nullptr : m_parameter;
}

void FrameSliderLink::setParameter(IParameter* parameter) {
    m_watch.reset();
    m_parameter = parameter;
    m_lifetime = parameter ? parameter->lifetime() : std::weak_ptr<const void>();
    m_dirty = m_editing = m_written = false;
    if (!parameter)
        return;
    m_watch = parameter->watch([this] {
        // What is not written yet is newer than what the parameter has to say.
        if (!m_writing && !m_dirty)
            read();
    });
    read();
}

void FrameSliderLink::begin() {
    m_written = false;
    if (!parameter() || std::exchange(m_editing, true))
        return;
    const QString label = parameter()->label();
    parameter()->beginEdit(label.isEmpty() ? m_slider->accessibleName() : label);
}

void FrameSliderLink::edited() {
    if (!parameter())
        return;
    m_dirty = true;
    if (!m_live || std::exchange(m_planned, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_planned = false;
            if (m_live)
                write();
        },
        Qt::QueuedConnection);
}

void FrameSliderLink::finish(bool accepted) {
    const QPointer<FrameSliderLink> alive(this);
    if (accepted || m_written)
        write();
    if (!alive)
        return;
    m_dirty = false;
    if (std::exchange(m_editing, false) && parameter())
        parameter()->endEdit(accepted);
}

void FrameSliderLink::write() {
    if (!parameter() || m_writing || !std::exchange(m_dirty, false))
        return;
    const QPointer<FrameSliderLink> alive(this);
    m_writing = m_written = true;
    const bool taken = parameter()->setValue(m_slider->frame());
    if (!alive)
        return;
    m_writing = false;
    read();
    if (alive && !taken && parameter())
        RefusalFlash::over(m_slider);
}

void FrameSliderLink::read() {
    if (!parameter())
        return;
    const QPointer<FrameSliderLink> alive(this);
    readState();
    const auto frame = alive && parameter() ? frameOf(parameter()->value()) : std::nullopt;
    if (alive && frame)
        m_slider->setFrame(*frame);
}

void FrameSliderLink::readState() {
    const QPointer<FrameSliderLink> alive(this);
    const auto low = frameOf(parameter()->minimum());
    const auto high = frameOf(parameter()->maximum());
    if (low && high)
        m_slider->setRange(*low, *high);
    else if (low)
        m_slider->setMinimum(*low);
    else if (high)
        m_slider->setMaximum(*high);
    if (!alive || !parameter())
        return;
    const bool enabled = parameter()->isEnabled();
    if (std::exchange(m_wasEnabled, enabled) != enabled)
        m_slider->setEnabled(enabled);
}

} // namespace Kestrel::UI
