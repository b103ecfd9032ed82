#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/Time.h>
#include <KxUI/kit/CollapsibleToolbar.h>
#include <KxUI/time/PlaybackStatus.h>
#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TransportControlsMode.h>

#include <memory>

namespace Kestrel::UI {

class TimeFormatChooser;

/** The row of transport buttons around a field with the current time.

    It plays nothing: it says what the user wants, and shows the state that the host reports. It is
    disabled until the host reports that there is something to play. In a row that is too narrow the
    outer buttons move into a menu. Interface thread. */
class KXUI_EXPORT TransportControlsWidget : public CollapsibleToolbar {
    Q_OBJECT
    Q_PROPERTY(
        Kestrel::Base::Time currentTime READ currentTime WRITE setCurrentTime NOTIFY timeChanged)
    Q_PROPERTY(Kestrel::UI::TimeFormatter* formatter READ formatter WRITE setFormatter NOTIFY
                   formatterChanged DESIGNABLE false)
    Q_PROPERTY(Kestrel::UI::TransportControlsMode mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(Kestrel::UI::PlaybackStatus playbackState READ playbackState WRITE
                   playbackStateChanged NOTIFY stateChanged)
    Q_PROPERTY(bool bounceMode READ bounceMode WRITE setBounceMode NOTIFY stateChanged)
    Q_PROPERTY(bool timecodeWidgetEnabled READ isTimecodeWidgetEnabled WRITE
                   setTimecodeWidgetEnabled NOTIFY stateChanged)

public:
    explicit TransportControlsWidget(QWidget* parent = nullptr);
    ~TransportControlsWidget() override;

    /** What the jump buttons look for, told by their icons and tooltips; a value that is no mode is
        ignored. */
    void setMode(Kestrel::UI::TransportControlsMode mode);
    TransportControlsMode mode() const;

    /** What playbackStateChanged() was told last; NoPlayback at first. */
    PlaybackStatus playbackState() const;

    /** In bounce mode playback turns round at the ends, so either play button stops it. */
    void setBounceMode(bool bounce);
    bool bounceMode() const;

    /** Lets the time field write and read times as the formatter says, now and whenever that
        changes. The formatter is borrowed; null leaves the field as it is. */
    void setFormatter(TimeFormatter* formatter);
    TimeFormatter* formatter() const;

    /** Lets the time field follow the chooser's formatter. The chooser is borrowed; nothing for
        null. */
    void connectTimecodeWidgetToFormatChooser(TimeFormatChooser* chooser);

    /** Whether the user may type a time. */
    void setTimecodeWidgetEnabled(bool enabled);
    bool isTimecodeWidgetEnabled() const;

    /** The time in the field. */
    Kestrel::Base::Time currentTime() const;

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
    /** Playback state, bounce mode, or whether a time may be typed, became another one. */
    void stateChanged();
    /** The jump buttons look for something else. */
    void modeChanged();
    /** The field follows another formatter. */
    void formatterChanged();

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m;
};

} // namespace Kestrel::UI
