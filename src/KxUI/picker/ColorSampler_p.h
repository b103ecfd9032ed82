#pragma once

#include <KxUI/picker/DisplayCall_p.h>

#include <QImage>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QKeyEvent;
class QMouseEvent;

namespace Kestrel::UI {

class SampleMagnifier;

/** The pipette: has the user point at a colour, in the host's pictures, in the windows of this
    program and, where the desktop permits it, anywhere. While it is active it takes all of the
    mouse, over every window, and shows what is around the pointer beside it; nothing ever lies over
    what is sampled.

    A click takes the colour and ends it, with Shift it goes on; a drag takes the mean of the
    rectangle, which is that of the light. Escape and the right button take a drag back and end it. */
class ColorSampler : public QObject {
    Q_OBJECT

public:
    /** The colour of a picture under a place of the desktop; null where there is none. */
    using Source = std::function<std::optional<ColorValue>(const QPoint& global)>;

    /** How many pixels a side the magnifier shows. */
    static constexpr int Magnified = 9;

    /** A child of `owner`, with which it is hidden and ends. */
    explicit ColorSampler(QWidget* owner);
    ~ColorSampler() override;

    void setDisplay(const DisplayCall& display) { m_display = display; }
    /** What is asked first where the pointer is over `where` or a part of it; an empty source is
        none. */
    void addSource(QWidget* where, Source source);

    bool isActive() const { return m_active; }
    void start();
    /** Until the key, which is down, is released. */
    void startHeld(int key);
    void stop();
    /** Takes the drag that goes on back; the pipette stays. */
    void cancelDrag();

    /** The desktop's own pipette, which sees all windows where this one does not. */
    static bool canAskDesktop();
    void askDesktop();

    /** What can be sampled, for tool tips. */
    static QString hint();

    /** The colour at a place, or the mean of an area that the user drew from a place. */
    std::optional<ColorValue> colorAt(const QPoint& global) const;
    std::optional<ColorValue> meanOf(const QRect& area, const QPoint& from) const;

Q_SIGNALS:
    void activeChanged(bool on);
    /** The pointer is over a colour, with no button pressed; or over none. */
    void hovered(const Kestrel::UI::ColorValue& color);
    void hoverEnded();
    /** A press, the colours that it leads to, and its end. */
    void dragStarted();
    void sampled(const Kestrel::UI::ColorValue& color);
    void dragFinished();
    void dragCancelled();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct SourceOf {
        QPointer<QWidget> where;
        Source source;
    };

    bool takesMouse(const QMouseEvent& event);
    bool takesKey(QKeyEvent& event);
    void press(const QPoint& global);
    void move(const QPoint& global);
    void release(const QPoint& global, bool goesOn);
    void cancel();
    void showMagnifier(const QPoint& global, const std::optional<ColorValue>& color);
    const Source* sourceAt(const QWidget* widget) const;
    QImage pixels(const QRect& area, const QPoint& from) const;
    std::optional<ColorValue> meanOfSource(const Source& source, const QRect& area) const;
    std::optional<ColorValue> meanOfPixels(const QImage& image) const;

    QWidget* m_owner;
    DisplayCall m_display;
    std::vector<SourceOf> m_sources;
    std::unique_ptr<SampleMagnifier> m_magnifier;
    std::optional<QPoint> m_pressed;
    bool m_isArea = false; ///< the drag has gone far enough to be one
    bool m_active = false;
    bool m_hasGrab = false;
    int m_heldKey = 0;
};

} // namespace Kestrel::UI
