#pragma once

#include <KxUI/Export.h>
#include <KxUI/kit/WheelPolicy.h>
#include <KxUI/time/TimeFormatter.h>

#include <QWidget>

#include <memory>

namespace Kestrel::UI {
class IParameter;
} // namespace Kestrel::UI

/** A slider over frames with a field and two buttons that step, for a parameter of the host. It
    stands in the global namespace, where older panels look for it. Frames run from left to right,
    whatever the layout direction is, as on a timeline.

    The slider has the mouse and the keys of Kestrel::UI::LinearSlider; Control+Left and
    Control+Right go to the parameter's keys before and after the frame, where it has any. While a
    button is down it steps again and again. What is typed is limited to the range. The frame that a
    host sets stays as it is, also outside the range. Interface thread. */
class KXUI_EXPORT FrameSlider : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int frame READ frame WRITE setFrame NOTIFY frameChanged USER true)
    Q_PROPERTY(int minimum READ minimum WRITE setMinimum NOTIFY limitsChanged)
    Q_PROPERTY(int maximum READ maximum WRITE setMaximum NOTIFY limitsChanged)
    Q_PROPERTY(int step READ step WRITE setStep NOTIFY handlingChanged)
    Q_PROPERTY(bool tracking READ hasTracking WRITE setTracking NOTIFY handlingChanged)
    Q_PROPERTY(Kestrel::UI::WheelPolicy::Policy wheelPolicy READ wheelPolicy WRITE setWheelPolicy
                   NOTIFY handlingChanged)
    Q_PROPERTY(Kestrel::UI::TimeFormatter* formatter READ formatter WRITE setFormatter NOTIFY
                   formatterChanged DESIGNABLE false)

public:
    /** Frames 1 to 100, at frame 1, a frame a step; no parameter. */
    explicit FrameSlider(QWidget* parent = nullptr);
    ~FrameSlider() override;

    /** The frame as it was set. */
    int frame() const;
    /** The range, in either order. The frame stays as it is. */
    int minimum() const;
    int maximum() const;
    void setRange(int minimum, int maximum);
    /** One end of the range; moves the other one along where it would lie beyond it. */
    void setMinimum(int minimum);
    void setMaximum(int maximum);

    /** The frames that an arrow key or a button goes; at least 1. */
    int step() const;
    void setStep(int frames);

    /** Shows the parameter's value, range and enabled state, now and whenever they change, and
        writes what the user edits into it: rounded to frames, at most once in a turn of the event
        loop, and between its beginEdit() and endEdit(). What it answers wins: one that limits a
        value is shown limited, one that refuses it is shown as it was. Borrowed; null for none. One
        that goes away is let go. An edit that is under way ends. */
    void setParameter(Kestrel::UI::IParameter* parameter);
    Kestrel::UI::IParameter* parameter() const;

    /** Whether the parameter is written to while the user drags; true at first. Else only when the
        edit is over, for hosts that are slow to follow. */
    void setTracking(bool live);
    bool hasTracking() const;

    /** How the field writes frames: as numbers or timecode. Borrowed; null: as numbers. */
    void setFormatter(Kestrel::UI::TimeFormatter* formatter);
    Kestrel::UI::TimeFormatter* formatter() const;

    /** `WheelWhenFocused` at first, as for every widget here. */
    Kestrel::UI::WheelPolicy::Policy wheelPolicy() const;
    void setWheelPolicy(Kestrel::UI::WheelPolicy::Policy policy);

    /** Between editStarted() and editFinished(). */
    bool isEditing() const;

public Q_SLOTS:
    /** Shows a frame, also one outside the range; the parameter is not written to. */
    void setFrame(int frame);
    /** Reads the parameter again, for hosts that do not tell. */
    void refresh();
    /** Ends an edit as Escape does; nothing without one. */
    void cancelEdit();

Q_SIGNALS:
    /** The frame became another one, by whomever. */
    void frameChanged(int frame);
    /** The user begins to change the frame. Always followed by exactly one editFinished(). */
    void editStarted();
    /** The user changed it; at every movement of a drag, every notch, every key repeat. */
    void valueEdited(int frame);
    /** The edit is over. Not accepted: taken back, by Escape, the right button or cancelEdit(); the
        frame is what it was at editStarted(), and valueEdited() said so before. */
    void editFinished(bool accepted);

    /** The range became another one. */
    void limitsChanged();
    /** Step, tracking or wheel policy became other ones. */
    void handlingChanged();
    /** Another formatter is followed. */
    void formatterChanged();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m;
};
