#pragma once

#include <KxUI/kit/IParameter.h>

#include <QObject>

#include <memory>

class FrameSlider;

namespace Kestrel::UI {

/** What ties a frame slider to the parameter of the host: collects what is edited in a turn of the
    event loop into one write, and reads back what became of it. */
class FrameSliderLink : public QObject {
public:
    explicit FrameSliderLink(FrameSlider* slider);
    ~FrameSliderLink() override;

    /** Null where it is gone. */
    IParameter* parameter() const;
    void setParameter(IParameter* parameter);

    bool isLive() const { return m_live; }
    void setLive(bool live) { m_live = live; }

    /** The edits of the slider. Each may delete the slider, and this object with it. */
    void begin();
    void edited();
    void finish(bool accepted);

    /** Shows the parameter. */
    void read();

private:
    void write();
    void readState();

    FrameSlider* m_slider;
    IParameter* m_parameter = nullptr;
    std::weak_ptr<const void> m_lifetime;
    std::unique_ptr<ParameterWatch> m_watch;
    bool m_live = true;
    bool m_editing = false; ///< beginEdit() was called
    bool m_dirty = false;   ///< the parameter does not know the frame yet
    bool m_planned = false; ///< and will with the next turn of the event loop
    bool m_written = false; ///< something, in this edit
    bool m_writing = false;
    bool m_wasEnabled = true;
};

} // namespace Kestrel::UI
