#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/Time.h>
#include <KxUI/kit/CollapsibleToolbar.h>
#include <KxUI/time/PlaybackStatus.h>
#include <KxUI/time/TransportControlsMode.h>

class QToolButton;

namespace Kestrel::UI {

class TimeField;
class TimeFormatChooser;

/** The row of transport buttons around a field with the current time.

    It plays nothing: it says what the user wants, and shows the state that the host reports. It is
    disabled until the host reports that there is something to play. In a row that is too narrow the
    outer buttons move into a menu. Interface thread. */
class KXUI_EXPORT TransportControlsWidget : public CollapsibleToolbar {
    Q_OBJECT

public:
    explicit TransportControlsWidget(QWidget* parent = nullptr);
    ~TransportControlsWidget() override;

    /** What the jump buttons look for, told by their icons and tooltips; a value that is no mode is
        ignored. */
    void setMode(TransportControlsMode mode);

    /** What playbackStateChanged() was told last; NoPlayback at first. */
    PlaybackStatus playbackState() const { return m_playbackState; }

    /** In bounce mode playback turns round at the ends, so either play button stops it. */
    void setBounceMode(bool bounce);

    /** Lets the time field follow the chooser's formatter. The chooser is borrowed; nothing for
        null. */
    void connectTimecodeWidgetToFormatChooser(TimeFormatChooser* chooser);

    /** Whether the user may type a time. */
    void setTimecodeWidgetEnabled(bool enabled);

public Q_SLOTS:
    /** Shows a time; timeChanged() tells of it if it is another one than was shown. */
    void setCurrentTime(Kestrel::Base::Time time);
    /** Shows what the host's player does. */
    void playbackStateChanged(Kestrel::UI::PlaybackStatus state);
    /** Puts the keyboard focus into the time field, all its text selected. */
    void setFocusToTimecodeWidget();
    /** What a click on a play button does: asks the host to play that way, or to stop. */
    void handlePlayForwardsButtonClicked();
    void handlePlayBackwardsButtonClicked();

Q_SIGNALS:
    /** The user clicked the button of that name; the host does what it says. */
    void jumpToBeginningButtonClicked();
    void jumpBackwardsButtonClicked();
    void frameBackwardsButtonClicked();
    void playBackwardsButtonClicked();
    void playForwardsButtonClicked();
    void frameForwardsButtonClicked();
    void jumpForwardButtonClicked();
    void jumpToEndButtonClicked();
    /** The user clicked the button of a player that is playing. */
    void stop();
    /** The time in the field became another one. */
    void timeChanged(Kestrel::Base::Time time);
    /** The user typed a range; `outTime` is InvalidTime where it could not be read. */
    void rangeSet(Kestrel::Base::Time inTime, Kestrel::Base::Time outTime);

protected:
    void changeEvent(QEvent* event) override;

private:
    QToolButton* addButton(const char* icon, const QString& toolTip, const QString& name,
                           int priority);
    void updateFieldColor();

    QToolButton* m_jumpBackwards = nullptr;
    QToolButton* m_playBackwards = nullptr;
    TimeField* m_timeField = nullptr;
    QToolButton* m_playForwards = nullptr;
    QToolButton* m_jumpForwards = nullptr;
    PlaybackStatus m_playbackState = NoPlayback;
    bool m_bounceMode = false;
};

} // namespace Kestrel::UI
