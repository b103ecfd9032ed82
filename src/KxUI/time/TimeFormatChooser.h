#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/Time.h>
#include <KxUI/base/TimeBase.h>

#include <QPointer>
#include <QToolButton>

class QAction;

namespace Kestrel::UI {

class TimeField;
class TimeFormatter;

/** A button with a menu from which the user picks how a formatter and the fields attached to it
   show times: timecode or frames. Interface thread. */
class KXUI_EXPORT TimeFormatChooser : public QToolButton {
    Q_OBJECT

public:
    /** What the frames are counted in, which decides on the entries of the menu. */
    enum Mode {
        ClipMode = 0,    ///< frames of a clip: "TC", "AC", "EC" and "CF"
        TimelineMode = 1 ///< frames of a timeline: "TC" and "TF"
    };
    Q_ENUM(Mode)

    /** Borrows the formatter, and starts in clip mode with the notation that it has. A formatter
        that goes away leaves a chooser that changes nothing. */
    explicit TimeFormatChooser(TimeFormatter* formatter, QWidget* parent = nullptr);
    ~TimeFormatChooser() override;

    /** Lets the field show what the formatter says, now and whenever that changes. The field is
        borrowed; nothing for null. */
    void addTimefield(TimeField* field);

    /** What the menu offers; a value that is no mode is ignored. */
    void setMode(Mode mode);
    Mode mode() const { return m_mode; }

    /** The timecodes of frame 0, as numbers of frames, that the formatter gets while frames are
        shown and while timecode is. */
    void setTimecodeStart(Kestrel::Base::Time framesStart, Kestrel::Base::Time timecodeStart);

    /** Notation and timecode starts at once. */
    void setTimeDisplay(bool displayTimecode, bool displayDropFrames,
                        Kestrel::Base::Time framesStart, Kestrel::Base::Time timecodeStart);

    /** Timecode or frame numbers, and whether timecode drops frame labels at rates that allow it.
     */
    void setTimeDisplayFormat(bool displayTimecode, bool displayDropFrames);
    bool displayTimecode() const { return m_displayTimecode; }
    bool displayDropFrames() const { return m_displayDropFrames; }

public Q_SLOTS:
    /** What the entries of the menu do. */
    void showTimecode();
    void showFrames();
    /** Reserved for times that do not start at the timecode start; changes nothing. */
    void showActualTimecode();
    /** Reserved for film edge code; changes nothing. */
    void showEdgeTimecode();

    /** Hands the chooser's notation to the formatter and shows it. */
    void refresh();

private:
    void updateTimeDisplayFormat(Kestrel::Base::TimeBase timeBase, bool displayTimecode,
                                 bool displayDropFrames, Kestrel::Base::Time timecodeStart);
    void updateChecks();
    void updateText();
    QAction* addEntry(const QString& text, void (TimeFormatChooser::*slot)());

    QPointer<TimeFormatter> m_formatter;
    QAction* m_timecode = nullptr;
    QAction* m_actualTimecode = nullptr;
    QAction* m_edgeCode = nullptr;
    QAction* m_clipFrames = nullptr;
    QAction* m_timelineFrames = nullptr;
    Kestrel::Base::Time m_framesStart = 0;
    Kestrel::Base::Time m_timecodeStart = 0;
    Mode m_mode = ClipMode;
    bool m_displayTimecode = true;
    bool m_displayDropFrames = false;
};

} // namespace Kestrel::UI
