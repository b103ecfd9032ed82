#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/Time.h>
#include <KxUI/base/TimeBase.h>
#include <KxUI/base/Timecode.h>
#include <KxUI/time/TimeFieldNotation.h>
#include <KxUI/time/TimeFormatter.h>

#include <QLineEdit>

#include <memory>

namespace Kestrel::UI {

/** An editor for one time in frames or timecode.

    What may be typed: a time; "+" or "-" and a time, a step from the time shown; two times joined
    by "-", a range. The field beeps at a text that it can not read and leaves it to be mended. Up,
    Down and the wheel count the digit right of the caret. Return and Escape do not reach the
    parent. Each time that is typed is an edit, told at once; so is what a held key, or a run of
    notches until half a second after the last one, counts. Interface thread. */
class KXUI_EXPORT TimeField : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(Kestrel::Base::Time time READ time WRITE setTime NOTIFY valueChanged USER true)
    Q_PROPERTY(Kestrel::UI::TimeFormatter* formatter READ formatter WRITE setFormatter NOTIFY
                   formatterChanged DESIGNABLE false)
    Q_PROPERTY(
        Kestrel::Base::TimeBase timeBase READ timeBase WRITE setTimeBase NOTIFY displayChanged)
    Q_PROPERTY(
        bool displayTimecode READ displayTimecode WRITE setDisplayTimecode NOTIFY displayChanged)
    Q_PROPERTY(bool displayDropFrames READ displayDropFrames WRITE setDisplayDropFrames NOTIFY
                   displayChanged)
    Q_PROPERTY(Kestrel::Base::Time timecodeStart READ timecodeStart WRITE setTimecodeStart NOTIFY
                   displayChanged)
    Q_PROPERTY(bool ignoreTimecodeStart READ isIgnoreTimecodeStart WRITE ignoreTimecodeStart NOTIFY
                   displayChanged)
    Q_PROPERTY(Kestrel::Base::Time minTime READ minTime WRITE setMinTime NOTIFY limitsChanged)
    Q_PROPERTY(Kestrel::Base::Time maxTime READ maxTime WRITE setMaxTime NOTIFY limitsChanged)
    Q_PROPERTY(bool useMinMaxTime READ usesMinMaxTime WRITE useMinMaxTime NOTIFY limitsChanged)

public:
    /** A field at frame -1, 25 frames per second, shown as timecode, that counts the timecode
        start. */
    explicit TimeField(QWidget* parent = nullptr);

    /** `frameless` lets the field blend into the window: bright text on the window's colour. With
        `ignoreTimecodeStart` times are shown and read without the timecode start. */
    TimeField(bool frameless, bool ignoreTimecodeStart, QWidget* parent = nullptr);

    /** No pointer is a flag. */
    template <class T>
    TimeField(T*, bool, QWidget* = nullptr) = delete;
    template <class T>
    TimeField(bool, T*, QWidget* = nullptr) = delete;

    ~TimeField() override;

    /** Goes to `time` unless it is there or the limits refuse it, and emits valueChanged() and both
        timeChanged(); `flag` is the second argument of the longer one. InvalidTime is shown as no
        text. */
    void setTime(Kestrel::Base::Time time, bool flag = false);
    Kestrel::Base::Time time() const;

    /** Sets the text as though it had been typed; it is read when the edit finishes. */
    void setText(const QString& text);

    /** Shows times as the formatter says, now and whenever that changes. The formatter is borrowed;
        null, or one that goes away, leaves the field as it is. */
    void setFormatter(TimeFormatter* formatter);
    TimeFormatter* formatter() const;

    /** Whether times outside minTime() to maxTime(), both inclusive, are refused. The setters only
        store: the time shown is not moved. */
    void useMinMaxTime(bool use);
    bool usesMinMaxTime() const;
    void setMinTime(Kestrel::Base::Time time);
    Kestrel::Base::Time minTime() const;
    void setMaxTime(Kestrel::Base::Time time);
    Kestrel::Base::Time maxTime() const;
    /** Whether the limits, if they are used, allow that time. */
    bool isInRange(Kestrel::Base::Time time) const;

    /** The rate that times are counted, shown and read at. */
    void setTimeBase(Kestrel::Base::TimeBase timeBase);
    Kestrel::Base::TimeBase timeBase() const;

    /** Timecode or frame numbers, and whether timecode drops frame labels at rates that allow it.
        The width of the field follows. */
    void setTimeDisplayFormat(bool displayTimecode, bool displayDropFrames);
    void setDisplayTimecode(bool displayTimecode);
    bool displayTimecode() const;
    void setDisplayDropFrames(bool displayDropFrames);
    bool displayDropFrames() const;

    /** The notation that the two flags ask for. */
    Kestrel::Base::Timecode::DisplayType timeDisplayFormat() const;

    /** How the field writes its time and reads what is typed. */
    TimeFieldNotation notation() const;

    /** The timecode of frame 0 as a number of frames; a negative one counts too. */
    void setTimecodeStart(Kestrel::Base::Time timecodeStart);
    Kestrel::Base::Time timecodeStart() const;

    /** Whether times are shown and read without the timecode start; the text stays as it is. */
    void ignoreTimecodeStart(bool ignore);
    bool isIgnoreTimecodeStart() const;

    /** Whether the user has begun to change the time: from editStarted() to editFinished(). */
    bool isEditing() const;

public Q_SLOTS:
    /** Takes the current edit back: goes to the time that it began at. Nothing without an edit. */
    void cancelEdit();

    /** Takes over everything at once; made for TimeFormatter::timeFormatChanged(). */
    void setTimeDisplay(Kestrel::Base::TimeBase timeBase, bool displayTimecode,
                        bool displayDropFrames, Kestrel::Base::Time timecodeStart);

Q_SIGNALS:
    /** The time became another one, by whomever. */
    void valueChanged(Kestrel::Base::Time value);
    /** The user made it another one, by typing, by a key or by the wheel. Follows valueChanged().
     */
    void valueEdited(Kestrel::Base::Time value);
    /** The user begins to make it another one; before valueChanged(). Always followed by one
        editFinished(), unless the field is deleted. */
    void editStarted();
    /** The edit is over. Not accepted: it was taken back, the time is what it was at editStarted(),
        and valueEdited() said so before. */
    void editFinished(bool accepted);
    /** As valueChanged(). Of two signals by this name, so that a connection by pointer must choose:
        `qOverload<Kestrel::Base::Time>(&TimeField::timeChanged)`. */
    void timeChanged(Kestrel::Base::Time time);
    /** The same, with the flag given to setTime(); false where the user changed it. */
    void timeChanged(Kestrel::Base::Time time, bool delta);
    /** The user typed two times. `upper` is InvalidTime where it could not be read. */
    void rangeChanged(Kestrel::Base::Time lower, Kestrel::Base::Time upper);
    /** Rate, notation or timecode start became other ones. */
    void displayChanged();
    /** The limits, or whether they are used, became other ones. */
    void limitsChanged();
    /** Another formatter is followed. */
    void formatterChanged();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m;
};

} // namespace Kestrel::UI
