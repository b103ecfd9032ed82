#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/Time.h>
#include <KxUI/time/TimeFormatter.h>

#include <QToolButton>

#include <memory>

namespace Kestrel::UI {

class TimeField;

/** A button with a menu from which the user picks how a formatter and the fields attached to it
    show times: timecode or frames. Interface thread. */
class KXUI_EXPORT TimeFormatChooser : public QToolButton {
    Q_OBJECT
    Q_PROPERTY(Kestrel::UI::TimeFormatter* formatter READ formatter WRITE setFormatter NOTIFY
                   formatterChanged DESIGNABLE false)
    Q_PROPERTY(Mode mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(
        bool displayTimecode READ displayTimecode WRITE setDisplayTimecode NOTIFY displayChanged)
    Q_PROPERTY(bool displayDropFrames READ displayDropFrames WRITE setDisplayDropFrames NOTIFY
                   displayChanged)
    Q_PROPERTY(
        Kestrel::Base::Time framesStart READ framesStart WRITE setFramesStart NOTIFY displayChanged)
    Q_PROPERTY(Kestrel::Base::Time timecodeStart READ timecodeStart WRITE setTimecodeStart NOTIFY
                   displayChanged)

public:
    /** What the frames are counted in, which decides on the entries of the menu. */
    enum Mode {
        ClipMode = 0,    ///< frames of a clip: "TC", "AC", "EC" and "CF"
        TimelineMode = 1 ///< frames of a timeline: "TC" and "TF"
    };
    Q_ENUM(Mode)

    /** A chooser in clip mode, for timecode, without a formatter. */
    explicit TimeFormatChooser(QWidget* parent = nullptr);

    /** The same, followed by setFormatter(). */
    explicit TimeFormatChooser(TimeFormatter* formatter, QWidget* parent = nullptr);

    ~TimeFormatChooser() override;

    /** Borrows the formatter that the user's choice goes to, and takes over its notation and its
        start at once. Attached fields follow it from now on. Null, or a formatter that goes away,
        leaves a chooser that changes only itself. */
    void setFormatter(TimeFormatter* formatter);
    TimeFormatter* formatter() const;

    /** Lets the field show what the formatter says, now and whenever that changes. The field is
        borrowed; nothing for null. */
    void addTimefield(TimeField* field);

    /** What the menu offers; a value that is no mode is ignored. */
    void setMode(Mode mode);
    Mode mode() const;

    /** The timecodes of frame 0, as numbers of frames, that the formatter gets while frames are
        shown and while timecode is. A start that the host gives to the formatter replaces the one
        of the notation shown then. */
    void setTimecodeStart(Kestrel::Base::Time framesStart, Kestrel::Base::Time timecodeStart);
    void setFramesStart(Kestrel::Base::Time framesStart);
    Kestrel::Base::Time framesStart() const;
    void setTimecodeStart(Kestrel::Base::Time timecodeStart);
    Kestrel::Base::Time timecodeStart() const;

    /** Notation and timecode starts at once. */
    void setTimeDisplay(bool displayTimecode, bool displayDropFrames,
                        Kestrel::Base::Time framesStart, Kestrel::Base::Time timecodeStart);

    /** Timecode or frame numbers, and whether timecode drops frame labels at rates that allow it.
     */
    void setTimeDisplayFormat(bool displayTimecode, bool displayDropFrames);
    void setDisplayTimecode(bool displayTimecode);
    bool displayTimecode() const;
    void setDisplayDropFrames(bool displayDropFrames);
    bool displayDropFrames() const;

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

Q_SIGNALS:
    /** Notation or a timecode start became another one, by whomever. */
    void displayChanged();
    /** The menu offers other entries. */
    void modeChanged();
    /** Another formatter is chosen for. */
    void formatterChanged();

private:
    struct Private;
    const std::unique_ptr<Private> m;
};

} // namespace Kestrel::UI
