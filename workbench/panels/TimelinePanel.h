#pragma once

#include <KxUI/base/Time.h>

#include <QWidget>

namespace Kestrel::UI {
class TimeSlider;
}

namespace Kestrel::Workbench {

class Session;

/** The timeline of a session: the slider with a bar of the decoded frames and one of the frames
   that have no file. */
class TimelinePanel : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the panel */
    explicit TimelinePanel(Session* session, QWidget* parent = nullptr);

    UI::TimeSlider* slider() const { return m_slider; }

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
};

} // namespace Kestrel::Workbench
