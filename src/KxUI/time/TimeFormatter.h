#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/Time.h>
#include <KxUI/base/TimeBase.h>
#include <KxUI/base/Timecode.h>
#include <KxUI/time/TimeMetaTypes.h>

#include <QObject>
#include <QString>

#include <memory>

namespace Kestrel::UI {

/** How times are shown, shared by the widgets of one viewer or timeline: time base, notation and
    the timecode of frame 0. Widgets borrow it and listen to timeFormatChanged(). Interface thread.
 */
class KXUI_EXPORT TimeFormatter : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        Kestrel::Base::TimeBase timeBase READ timeBase WRITE setTimeBase NOTIFY timeFormatChanged)
    Q_PROPERTY(
        bool displayTimecode READ displayTimecode WRITE setDisplayTimecode NOTIFY timeFormatChanged)
    Q_PROPERTY(bool displayDropFrames READ displayDropFrames WRITE setDisplayDropFrames NOTIFY
                   timeFormatChanged)
    Q_PROPERTY(Kestrel::Base::Time timecodeStart READ timecodeStart WRITE setTimecodeStart NOTIFY
                   timeFormatChanged)

public:
    /** 25 frames per second, shown as timecode that starts at 0 and drops nothing. */
    explicit TimeFormatter(QObject* parent = nullptr);
    ~TimeFormatter() override;

    /** The rate that times are counted and shown at. A base equal by rate is not stored. */
    void setTimeBase(Kestrel::Base::TimeBase timeBase);
    Kestrel::Base::TimeBase timeBase() const;

    /** Whether times are shown as timecode rather than frame numbers, and whether that timecode
        drops frame labels at rates that allow it. */
    void setTimeDisplayFormat(bool displayTimecode, bool displayDropFrames);
    void setDisplayTimecode(bool displayTimecode);
    bool displayTimecode() const;
    void setDisplayDropFrames(bool displayDropFrames);
    bool displayDropFrames() const;

    /** The notation that the two flags ask for; drop frame also at rates that do not allow it. */
    Kestrel::Base::Timecode::DisplayType timeDisplayFormat() const;

    /** The timecode of frame 0 as a number of frames, added to every time that is shown. A negative
        start is stored, but shown as 0. */
    void setTimecodeStart(Kestrel::Base::Time timecodeStart);
    Kestrel::Base::Time timecodeStart() const;

    /** Sets everything, with one signal if anything differs. */
    void setTimeDisplay(Kestrel::Base::TimeBase timeBase, bool displayTimecode,
                        bool displayDropFrames, Kestrel::Base::Time timecodeStart);

    /** The text of a time, dashes for InvalidTime. */
    QString formatTime(Kestrel::Base::Time time) const;

Q_SIGNALS:
    /** The format became what the arguments say. */
    void timeFormatChanged(Kestrel::Base::TimeBase timeBase, bool displayTimecode,
                           bool displayDropFrames, Kestrel::Base::Time timecodeStart);

private:
    struct Private;
    const std::unique_ptr<Private> m;
};

} // namespace Kestrel::UI
