#pragma once

#include <KxUI/base/Time.h>

#include <QWidget>

namespace Kestrel::UI {
class TimeSlider;
}

namespace Kestrel::Workbench {

class Session;

class TransportRow;

/** The timeline of a session: the slider with a bar of the decoded frames and one of the frames
    that have no file, and the transport controls under it. */
class TimelinePanel : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the panel */
    explicit TimelinePanel(Session* session, QWidget* parent = nullptr);

    UI::TimeSlider* slider() const { return m_slider; }
    TransportRow* transportRow() const { return m_transportRow; }

protected:
    void changeEvent(QEvent* event) override;

private:
    enum Bar { CachedBar, MissingBar, BarCount };

    void applyColors();
    void showMissingFrames();
    void refillCacheBar();
    void snap(Base::Time& time) const;

    Session* m_session;
    UI::TimeSlider* m_slider;
    TransportRow* m_transportRow;
};

} // namespace Kestrel::Workbench
