#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/FrameSet.h>
#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSliderModel.h>
#include <KxUI/time/TimeSliderTime.h>

#include <QColor>
#include <QWidget>

#include <memory>

namespace Kestrel::UI {

/** The timeline strip under a viewer: a ruler over the visible part of a TimeSliderModel, an
    overview of the whole clip along the top, the playback range and its marks, keyframes, what the
    renderer has cached, and the playhead.

    Mouse: drag to scrub; with the in/out lock on, drag the marks; Ctrl sets the nearer mark, or
    drags both by either of them; Shift always scrubs and does not snap; Alt and the left button
    pan; the right or middle button sweeps a range to zoom to, with Alt it zooms by dragging; the
    wheel and a pinch zoom, a two-finger drag pans; the overview bar is dragged by its middle or its
    edges. Keys, once focused (by Tab, unless the host sets another focus policy): Left and Right
    step a frame, Home and End go to the ends of the clip.

    What does not depend on the current time is rendered into an image in device pixels and rendered
    again only after a change; a moving playhead repaints no more than where it was and is.

    Escape, or the right button while the left one drags, takes a drag back: everything is as it was
    at the press, and the mouse does nothing until the release.

    The model and the formatter are borrowed. Either may be deleted before the slider, which is then
    empty. Interface thread. */
class KXUI_EXPORT TimeSlider : public QWidget {
    Q_OBJECT
    Q_PROPERTY(Kestrel::UI::TimeSliderModel* model READ model WRITE setModel NOTIFY modelChanged
                   DESIGNABLE false)
    Q_PROPERTY(Kestrel::UI::TimeFormatter* formatter READ formatter WRITE setFormatter NOTIFY
                   formatterChanged DESIGNABLE false)
    Q_PROPERTY(Options options READ options WRITE setOptions NOTIFY settingsChanged)
    Q_PROPERTY(int numCacheBars READ numCacheBars WRITE setNumCacheBars NOTIFY settingsChanged)
    Q_PROPERTY(int scrollMode READ scrollMode WRITE setScrollMode NOTIFY settingsChanged)
    Q_PROPERTY(
        QColor playheadColor READ playheadColor WRITE setPlayheadColor NOTIFY settingsChanged)

public:
    /** What a drag moves. */
    enum HandleType {
        NoHandle = 0,            ///< nothing is dragged
        InHandle = 1,            ///< the in mark
        OutHandle = 2,           ///< the out mark
        InOutHandle = 3,         ///< both marks, their distance kept
        PlayheadHandle = 4,      ///< the current time
        PanHandle = 5,           ///< the visible range, by the ruler
        ZoomRectangleHandle = 6, ///< sweeps the range to zoom to
        ZoomHandle = 7,          ///< zooms about the pressed time
        RangeBarFirstHandle = 8, ///< left edge of the overview bar
        RangeBarLastHandle = 9,  ///< right edge of the overview bar
        RangeBarHandle = 10,     ///< the overview bar as a whole
        DerivedHandle = 11       ///< a handle of a derived class
    };
    Q_ENUM(HandleType)

    /** What kind of slider it is. */
    enum Option {
        /** The main transport slider: the playhead gets its line and, if set, its double; the
            visible range follows it and never starts before frame 0; drags scroll past the
            edges. */
        MainTransport = 1,
        /** Where the formatter shows timecode, ticks and their labels stand on whole seconds, minutes
            and hours, rather than on multiples of 10 frames. */
        TimecodeTicks = 2
    };
    /** Bits of Option. */
    Q_DECLARE_FLAGS(Options, Option)
    Q_FLAG(Options)

    /** Where a time goes that comes into view. */
    enum ScrollMode {
        ScrollBackToEnd = 1,     ///< from before the range to its end, else to the centre
        ScrollToCentre = 2,      ///< to the centre
        ScrollForwardToStart = 3 ///< from after the range to its start, else to the centre
    };

    /** Frames as a set of intervals. */
    using FrameSet = Base::FrameSet;

    /** An empty slider with one cache bar and no options; setModel() and setFormatter() fill it. */
    explicit TimeSlider(QWidget* parent = nullptr);

    /** A slider with `numCacheBars` cache bars, without a parent. `options` is made of Option.
        Model and formatter may be null, as for setModel() and setFormatter(). */
    TimeSlider(TimeSliderModel* model, TimeFormatter* formatter, int numCacheBars, int options);
    ~TimeSlider() override;

    /** What the slider shows and edits, from now on and with its present times. A drag ends.
        Without a model (null, or once it is deleted) the slider is empty. */
    void setModel(TimeSliderModel* model);
    TimeSliderModel* model() const;

    /** How the slider writes times; without a formatter they have no texts. */
    void setFormatter(TimeFormatter* formatter);
    TimeFormatter* formatter() const;

    /** What kind of slider it is. */
    void setOptions(Options options);
    Options options() const;

    QSize sizeHint() const override;

    /** \name The visible range, kept in the model
        Every change through the slider is followed by rangeChanged(). On the main transport slider
        a range that starts before frame 0 is moved to start there.
        @{ */

    /** Limited to one frame before the clip's end; moves the last visible time to the frame after
        it if need be. */
    void setFirstVisibleTime(Base::Time time);
    Base::Time firstVisibleTime() const;

    /** At least one frame after the clip's start; moves the first visible time to the frame before
        it if need be. */
    void setLastVisibleTime(Base::Time time);
    Base::Time lastVisibleTime() const;

    /** Both ends at once; `first` comes before `last`. */
    void setTimeRange(TimeSliderTime first, TimeSliderTime last);

    /** Makes `time` the first visible one, at the same length. */
    void scrollToTime(Base::Time time);

    /** Makes the range `factor` times shorter about a time that keeps its place. A factor other
        than 1 changes the range by a frame at least; one of 0 or less, or not-a-number, does
        nothing. zoomOrPanChanged() follows. */
    void zoomAboutTime(Base::Time time, float factor);

    /** The same, starting from the range `first` to `last` rather than the visible one. */
    void zoomAboutTime(Base::Time time, float factor, TimeSliderTime first, TimeSliderTime last);

    /** Shifts the range back by `time` frames. zoomOrPanChanged() follows unless `time` is 0. */
    void pan(Base::Time time);

    /** Where scrollTimeVisible() puts a time that comes into view, a ScrollMode; ScrollToCentre by
        default, and for any other number. */
    void setScrollMode(int mode);
    int scrollMode() const;
    /** @} */

    /** The x of the left edge of a frame, in widget pixels; 5 for the invalid time. May lie outside
        the widget. */
    int clipTimeToX(Base::Time time) const;

    /** The frame whose left edge is nearest to x; InvalidTime while there is no visible range. */
    Base::Time XToClipTime(int x) const;

    /** x limited to the ruler, 5 to width - 5. */
    int clipXToVisible(int x) const;

    /** \name Cache bars
        `bar` counts from 0; another bar, or an invalid time, is silently ignored. Many single
        frames may be reported at little cost: the bars repaint at most once a turn of the event
        loop.
        @{ */
    /** How many there are; none for a negative number. A bar that goes takes its frames along. */
    void setNumCacheBars(int bars);
    int numCacheBars() const;
    /** One frame is cached, or no longer. */
    void displayFrameAsCached(Base::Time frame, int bar);
    void clearCachedFrame(Base::Time frame, int bar);
    /** Replaces the cached frames of a bar. */
    void setCachedFrames(const FrameSet& frames, int bar);
    /** The colour in which a bar shows its cached frames. */
    void setCacheBarColor(const QColor& color, int bar);
    /** @} */

    /** The colour of this slider's playhead; an invalid colour, the initial one, stands for
        StandardPlayheadColor(). On a keyframe the playhead has the keyframe colour. */
    void setPlayheadColor(const QColor& color);
    QColor playheadColor() const;

    /** Shows the faint second playhead, otherwise the mouse's, at a time that it keeps. */
    void setPreviewPlayhead(Base::Time time);
    /** Hides it, until the mouse or the host shows it again. */
    void clearPreviewPlayhead();

    /** The handle being dragged. */
    HandleType dragHandle() const;

    /** \name Settings of all sliders, for the host to make at start-up
        Colours are Qt::magenta until set.
        @{ */
    /** Of the in and out marks. */
    static void SetInOutMarkerColor(const QColor& color);
    static QColor InOutMarkerColor();
    /** Of keyframes, and of a playhead on one. */
    static void SetKeyFrameColor(const QColor& color);
    /** Of playheads whose slider has no colour of its own. */
    static void SetStandardPlayheadColor(const QColor& color);
    static QColor StandardPlayheadColor();

    /** Draws a second line at the end of the current frame on main transport sliders. Off by
        default. */
    static void SetUseDoublePlayhead(bool on);

    /** Keeps the playhead of main transport sliders in view. On by default. */
    static void SetVisibleRangeFollowsPlayhead(bool on);
    /** @} */

public Q_SLOTS:
    /** The model changed. */
    void timeChanged(Kestrel::UI::TimeSliderModel::TimeFlags flags);

    /** Shows the whole clip. */
    void zoomToFit();

    /** Shows the marked range if the lock is on, else the whole clip. */
    void zoomToFitInOut();

    /** Scrolls, at the same length, if the time is outside the visible range. */
    void scrollTimeVisible(Kestrel::Base::Time time);

    /** Scrolls so that the time falls at x. */
    void scrollTimeToX(Kestrel::Base::Time time, int x);

    /** Renders everything again at the next paint. */
    void redraw();

Q_SIGNALS:
    /** The host should show a frame. Emitted by the host's transport. */
    void seekVideoFrame(Kestrel::Base::Time frame, bool needsAccurateSeek);

    /** False while the user drags a mark or the playhead; true at every press and release. */
    void setDoUpdateTime(bool on);

    /** The visible range was set to this. */
    void rangeChanged(Kestrel::Base::Time first, Kestrel::Base::Time last);

    /** A drag without Shift is about to use `time`; a listener may move it to a snap point. */
    void snapTime(Kestrel::Base::Time& time);

    /** The host should refill the cache bars. Emitted by the host's transport. */
    void requestCacheBarUpdate();

    /** A drag of marks or the playhead begins, moves, ends. `times` holds the dragged time, or the
        in and out times for InOutHandle, for the duration of the call. */
    void beginTimeDrag(Kestrel::UI::TimeSlider::HandleType dragHandle,
                       const Kestrel::Base::Time* times);
    void updateTimeDrag(const Kestrel::Base::Time* times);
    void endTimeDrag();

    /** A drag of marks has ended. */
    void inOutTimesModified();

    /** The user zoomed or panned. */
    void zoomOrPanChanged();

    /** The right or middle button was clicked without a drag. */
    void rightOrMidClicked();

    /** Another model, or formatter, is shown. */
    void modelChanged();
    void formatterChanged();

    /** Options, number of cache bars, scroll mode or playhead colour became another one. */
    void settingsChanged();

protected:
    /** Paints all that does not depend on the current time, on a background of the palette's window
        colour, in widget coordinates. */
    virtual void paintSlider(QPainter& painter);

    /** Paints the playhead, its double and the one under the mouse. */
    virtual void paintPlayHead(QPainter& painter);

    /** The visible range or the size changed: what is drawn per column is out of date. */
    virtual void updateIndicatorBars();

    /** A left press hit no handle. Return true to start a drag of DerivedHandle, whose moves and
        release then come to the hooks below; false to let the playhead have it. */
    virtual bool pressHandle(QMouseEvent* event);

    /** The drag of a DerivedHandle ended, whatever ended it: the release, another press, the slider
        hidden. The event is a release in any case. */
    virtual void releaseHandle(QMouseEvent* event);

    /** A DerivedHandle was dragged to a time, snapped if a listener wished so. */
    virtual void moveHandle(QMouseEvent* event, Base::Time time);

    /** Called by paintSlider() right after the ticks. */
    virtual void paintExtra(QPainter& painter);

    /** The drag of a DerivedHandle was taken back: what pressHandle() found is to be put back.
        releaseHandle() follows. Does nothing by default. */
    virtual void takeBackHandle();

    /** For pressHandle(): emits beginTimeDrag(); endTimeDrag() will follow with the release.
        `times` holds one or two times as the signal says; null does nothing. */
    void announceTimeDrag(HandleType handle, const Base::Time* times);

    /** Paints a playhead with its time and, on the main transport slider, its line. */
    void paintPlayheadAtTime(QPainter& painter, Base::Time time, const QColor& color);

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(TimeSlider::Options)

} // namespace Kestrel::UI
