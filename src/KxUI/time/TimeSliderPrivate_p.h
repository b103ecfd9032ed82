#pragma once

#include <KxUI/kit/EscapeWatch_p.h>
#include <KxUI/time/TimeGlyphs_p.h>
#include <KxUI/time/TimeSlider.h>
#include <KxUI/time/TimeSliderColors_p.h>
#include <KxUI/time/TimeSliderDrag_p.h>
#include <KxUI/time/TimeSliderGeometry_p.h>
#include <KxUI/time/TimeSliderIndicators_p.h>
#include <KxUI/time/TimeSliderPainter_p.h>
#include <KxUI/time/TimeSliderSettings_p.h>

#include <QBasicTimer>
#include <QImage>
#include <QPalette>
#include <QPointer>

#include <array>
#include <optional>

class QPinchGesture;
class QPanGesture;

namespace Kestrel::UI {

/** The state of a time slider and what it does with it: everything but the interface. */
struct TimeSlider::Private {
    explicit Private(TimeSlider* slider);

    TimeSlider* const q;
    QPointer<TimeSliderModel> model;
    QPointer<TimeFormatter> formatter;
    std::array<QMetaObject::Connection, 3> modelConnections;
    QMetaObject::Connection formatterConnection;
    Options options;
    int scrollMode = ScrollToCentre;

    TimeSliderDrag drag;
    EscapeWatch escape;
    QPoint mouse;           // of the last press or move of a drag
    bool sawButton = false; // the application knew the button at the press
    QBasicTimer autoScrollTimer;

    Base::Time currentTime = Base::InvalidTime;
    Base::Time hoverTime = Base::InvalidTime;
    std::optional<QPoint> hover; // where the mouse is, unless the host set the faint playhead
    bool rangeBarHover = false;
    QColor playheadColor;
    float pendingZoom = 1; // of gestures too small to show
    float pendingPan = 0;  // likewise, in pixels
    bool settingRange = false;

    // What the off-screen image was rendered for.
    bool sliderDirty = true;
    QImage sliderImage;
    qreal scale = 1;
    qint64 paletteKey = -1;
    QPalette::ColorGroup colorGroup = QPalette::Active;
    QColor imageMarkerColor;
    TimeSliderColors colors;
    TimeGlyphs glyphs;

    TimeSliderMarkSpans markSpans; ///< in the off-screen image

    TimeSliderIndicators indicators;
    bool indicatorUpdateQueued = false;
    TimeSliderColumns dirtyColumns;

    bool isMain() const { return options & MainTransport; }
    void setUpWidget();

    // What is where.
    TimeSliderRange visible() const;
    TimeSliderGeometry geometry() const;
    TimeSliderScene scene() const;
    TimeSliderRange playback() const;
    QString text(TimeSliderTime time) const;
    bool isShown(Base::Time time) const;
    QColor colorAt(Base::Time time) const;
    QRegion playheadRegion(Base::Time time) const;

    // Changes.
    void followModel();
    void setHover(Base::Time time);
    void setRangeBarHover(bool on);
    void hoverAt(const QPoint& position);
    void hoverAgain();
    void endHover();
    void setCurrentTime(Base::Time time);
    TimeSliderRange allowed(const TimeSliderRange& range) const;
    void storeRange(const TimeSliderRange& range);
    void queueIndicatorUpdate(const TimeSliderColumns& columns);
    void zoomGradually(Base::Time about, float factor);
    void zoomByWheel(Base::Time about, int delta);
    void pinch(const QPinchGesture& pinch);
    void panBy(const QPanGesture& pan);

    // Drags. Each command may end in foreign code, after which the slider may be gone.
    void run(const TimeSliderCommands& commands, QMouseEvent* event);
    void run(const TimeSliderCommand& command, QMouseEvent* event);
    bool tell(const TimeSliderCommand& command);
    bool changeModel(const TimeSliderCommand& command);
    bool changeView(const TimeSliderCommand& command);
    void askDerived(const TimeSliderCommand& command, QMouseEvent* event);
    void releaseDerived(QMouseEvent* event);
    void updateTimeDrag(HandleType handle);
    void putBackMarks(const TimeSliderCommand& command);
    bool isButtonLost() const;
    void autoScroll();
    void showTimePopup(Base::Time time);
    void hideTimePopup();

    // Painting.
    void prepareGlyphs(qreal paintScale);
    void ensureSliderImage(qreal paintScale);
    TimeSliderPainter painterFor(QPainter& painter, const TimeSliderGeometry& ruler);
    void paintBelowPlayhead(QPainter& painter, const QRegion& region) const;
};

} // namespace Kestrel::UI
