#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/Time.h>
#include <KxUI/base/TimeBase.h>
#include <KxUI/base/Timecode.h>

#include <QLineEdit>

#include <optional>

namespace Kestrel::UI {

struct TimeFieldNotation;

/** An editor for one time in frames or timecode.

    What may be typed: a time; "+" or "-" and a time, a step from the time shown; two times joined
    by "-", a range. The field beeps at a text that it can not read and leaves it to be mended. Up,
    Down and the wheel count the digit right of the caret. Return and Escape do not reach the
    parent. Interface thread. */
class KXUI_EXPORT TimeField : public QLineEdit {
    Q_OBJECT

public:
    /** A field at frame -1, 25 frames per second, shown as timecode. `frameless` lets it blend into
        the window: bright text on the window's colour. With `ignoreTimecodeStart` times are shown
        and read without the timecode start. */
    explicit TimeField(bool frameless = false, bool ignoreTimecodeStart = false,
                       QWidget* parent = nullptr);
    ~TimeField() override;

    /** Goes to `time` unless it is there or the limits refuse it, and emits both timeChanged();
        `flag` is the second argument of the longer one. InvalidTime is shown as no text. */
    void setTime(Kestrel::Base::Time time, bool flag);
    Kestrel::Base::Time time() const { return m_time; }

    /** Sets the text as though it had been typed; it is read when the edit finishes. */
    void setText(const QString& text);

    /** Whether times outside minTime() to maxTime(), both inclusive, are refused. The setters only
        store: the time shown is not moved. */
    void useMinMaxTime(bool use) { m_useMinMaxTime = use; }
    void setMinTime(Kestrel::Base::Time time) { m_minTime = time; }
    Kestrel::Base::Time minTime() const { return m_minTime; }
    void setMaxTime(Kestrel::Base::Time time) { m_maxTime = time; }
    Kestrel::Base::Time maxTime() const { return m_maxTime; }
    /** Whether the limits, if they are used, allow that time. */
    bool isInRange(Kestrel::Base::Time time) const;

    /** The rate that times are counted, shown and read at. */
    void setTimeBase(Kestrel::Base::TimeBase timeBase);
    Kestrel::Base::TimeBase timeBase() const { return m_timeBase; }

    /** Timecode or frame numbers, and whether timecode drops frame labels at rates that allow it.
        The width of the field follows. */
    void setTimeDisplayFormat(bool displayTimecode, bool displayDropFrames);
    bool displayTimecode() const { return m_displayTimecode; }
    bool displayDropFrames() const { return m_displayDropFrames; }

    /** The notation that the two flags ask for. */
    Kestrel::Base::Timecode::DisplayType timeDisplayFormat() const;

    /** The timecode of frame 0 as a number of frames; a negative one counts too. */
    void setTimecodeStart(Kestrel::Base::Time timecodeStart);
    Kestrel::Base::Time timecodeStart() const { return m_timecodeStart; }

    /** Whether times are shown and read without the timecode start; the text stays as it is. */
    void ignoreTimecodeStart(bool ignore) { m_ignoreTimecodeStart = ignore; }
    bool isIgnoreTimecodeStart() const { return m_ignoreTimecodeStart; }

public Q_SLOTS:
    /** Takes over everything at once; made for TimeFormatter::timeFormatChanged(). */
    void setTimeDisplay(Kestrel::Base::TimeBase timeBase, bool displayTimecode,
                        bool displayDropFrames, Kestrel::Base::Time timecodeStart);

Q_SIGNALS:
    /** The time became another one. */
    void timeChanged(Kestrel::Base::Time time);
    /** The same, with the flag given to setTime(); false where the user changed it. */
    void timeChanged(Kestrel::Base::Time time, bool delta);
    /** The user typed two times. `upper` is InvalidTime where it could not be read. */
    void rangeChanged(Kestrel::Base::Time lower, Kestrel::Base::Time upper);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    TimeFieldNotation notation() const;
    void refresh();
    void updateWidth();
    void handleEditingFinished();
    void handleReturnPressed();
    void incrementDigit(int direction);
    void store(Kestrel::Base::Time time, bool flag);

    Kestrel::Base::TimeBase m_timeBase{25, false};
    Kestrel::Base::Time m_time = -1;
    Kestrel::Base::Time m_minTime = -1;
    Kestrel::Base::Time m_maxTime = -1;
    Kestrel::Base::Time m_timecodeStart = 0;
    // The text that needs no reading: what was shown, or read, last.
    std::optional<QString> m_settledText;
    bool m_displayTimecode = true;
    bool m_displayDropFrames = false;
    bool m_useMinMaxTime = false;
    bool m_updating = false;
    bool m_selectAllOnClick = false;
    bool m_ignoreTimecodeStart = false;
};

} // namespace Kestrel::UI
