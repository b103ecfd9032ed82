#pragma once

#include <KxUI/Export.h>

#include <QPointF>
#include <QVarLengthArray>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>

namespace Kestrel::UI {

class ColorWheelDrag;
class ColorWheelPictures;
struct ColorWheelCommand;
struct ColorWheelGeometry;
struct ColorWheelInput;
struct ColorWheelScene;
struct Hsv;

/** Shows and edits a colour as hue (around a disc, counterclockwise from red at the right),
    saturation (outwards) and value. The disc is drawn at full value; the marker is filled with the
    colour itself.

    Mouse, unless the display mode is `SquareWheel`:
    - left: hue and saturation; with Shift saturation only, with Control hue only; in relative
      interaction with both: hue and saturation, absolute for this drag;
    - right, or Alt and left: value, 1 for 500 pixels to the right; in `ValueRingWheel` the angle
      around the ring, which the left button drags as well.

    In `SquareWheel` the ring is hue and any other press is saturation (rightwards) and value
    (upwards); with Control saturation only, with Shift value only.

    In all modes, where zoom is enabled: middle pans; with Control or Alt it zooms, twice as large
    for 96 pixels up or right; the wheel zooms about the cursor. A double click with the left button
    goes back to neutral: saturation 0 (in `SquareWheel` also value 1), or value 1 on a value ring.
    Escape, or the right button pressed while another one drags, takes the drag back.

    Keys: Left and Right change the hue by a degree, Up and Down the saturation and Page Up and Page
    Down the value by a hundredth, ten times as much with Shift; Home goes back to neutral; plus and
    minus zoom, 0 shows all of the wheel again.
    Interface thread. */
class KXUI_EXPORT ColorWheel : public QWidget {
    Q_OBJECT

public:
    /** What is drawn, and what a drag on it means. */
    enum DisplayMode {
        PlainWheel = 0,     ///< a disc of hue and saturation
        SquareWheel = 1,    ///< a hue ring around a saturation/value square
        ValueRingWheel = 2, ///< a disc within a value ring
        EmbeddedWheel = 3   ///< small, of a fixed size, without zoom
    };
    Q_ENUM(DisplayMode)

    /** Any other value is relative, too. */
    enum InteractionMode {
        AbsoluteInteraction = 0, ///< the colour follows the cursor
        RelativeInteraction = 1  ///< the colour moves by the cursor's movement times a scale
    };
    Q_ENUM(InteractionMode)

    /** What a drag changes. */
    enum DragMode {
        NoDrag = 0,         ///< there is no drag
        DragHue = 1,        ///< the hue
        DragSaturation = 2, ///< the saturation
        DragValue = 4,      ///< the value
        DragPan = 8,        ///< the view's place
        DragZoom = 16,      ///< the view's magnification
        DragAbsolute = 64   ///< this drag is absolute whatever the interaction mode is
    };
    /** Bits of DragMode. */
    Q_DECLARE_FLAGS(DragModes, DragMode)

    /** Turns `pixels` colours, three floats red, green and blue each, into what the screen is to
        show, nominally 0-1, in place. Called while painting, on the interface thread. */
    using ColorTransform = std::function<void(float* rgb, int pixels)>;

    /** Red, green and blue of the colour that a picker shows. */
    using ColorSource = std::function<std::array<float, 3>()>;

    /** A `PlainWheel` that shows colours as they are. */
    explicit ColorWheel(QWidget* parent = nullptr);

    /** An empty transform shows colours as they are. An `EmbeddedWheel` is fixed to 89 x 89 pixels
        and does not zoom. */
    explicit ColorWheel(ColorTransform transform, DisplayMode mode = PlainWheel,
                        QWidget* parent = nullptr);
    ~ColorWheel() override;

    /** Stores the three as they are and repaints, without a signal. The ring value stays. */
    void setHSV(float hue, float saturation, float value);

    /** Writes the three. True where the value is exactly 0, so that hue and saturation mean
        nothing. 0, 0 and 1 at first. */
    bool getHSV(float& hue, float& saturation, float& value) const;

    /** Stores the hue wrapped into 0 up to but without 1; 0 for one that is not finite. */
    void setHue(float hue);
    /** These store without clamping. */
    void setSaturation(float saturation);
    void setValue(float value);
    /** What the value ring shows; 1 at first. It follows the value only where the user changes it.
     */
    void setRingValue(float value);
    float ringValue() const { return m_ringValue; }

    /** The hue limited to 0-1; 0 where it is not a number. */
    float getClampedHue() const;

    /** Whether the user can zoom and pan; the view stays as it is. */
    void setZoomEnabled(bool enabled) { m_zoomEnabled = enabled; }
    bool getZoomEnabled() const { return m_zoomEnabled; }

    /** The magnification, 1/8 to 64. */
    float zoom() const { return m_zoom; }
    /** How far the centre is from that of the widget, rightwards and upwards, in radii of the disc;
        each within -1.9 to 1.9. */
    QPointF pan() const { return m_pan; }

    /** What is drawn. A wheel that was made as `EmbeddedWheel` keeps its size and stays without
        zoom. */
    void setDisplayMode(DisplayMode mode);
    DisplayMode displayMode() const { return m_displayMode; }

    /** How a drag moves the colour; counts from the next movement of a drag on. */
    void setInteractionMode(InteractionMode mode) { m_interactionMode = mode; }
    InteractionMode interactionMode() const { return m_interactionMode; }

    /** How far a relative drag moves the colour for each pixel of the cursor; 0.1 at first. */
    void setInteractionScale(float scale) { m_interactionScale = scale; }
    float interactionScale() const { return m_interactionScale; }

    /** Where the hue 0 is, in radians counterclockwise from the right; 0 at first. */
    void setHueRotation(float radians);
    float hueRotation() const { return m_hueRotation; }

    /** Whether the colour follows the cursor, in the current drag if there is one. */
    bool isAbsoluteMode() const;

    /** What the current drag changes. */
    DragModes dragMode() const;

    /** Another transform, or the same one after what it does has changed. */
    void setColorTransform(ColorTransform transform);

    /** Where updateFromControl() finds the picker's colour. */
    void setColorSource(ColorSource source);

    /** Takes over value and saturation of the picker's colour, and its hue unless that is a grey,
        without a signal. Nothing without a source. */
    void updateFromControl();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public slots:
    /** As setHSV(). */
    void setHSVSlot(float hue, float saturation, float value);

    /** Shows all of the wheel again, without zoom and pan. */
    void resetView();

    /** Takes the current drag back, as Escape does: shows the colour or the view of its start again
        and ends it without changedSignal(). Nothing without a drag. */
    void cancelDrag();

signals:
    /** Sent in pairs around all that the user does: a drag, also one that pans or zooms, a double
        click, a key. The colour at the start is the one to come back to. */
    void startDragSignal();
    void stopDragSignal();

    /** At every movement of a drag, after it had its effect. */
    void draggingSignal();

    /** The user finished a change of the colour; right after stopDragSignal(). Not sent for a drag
        that was taken back, for which hsvChanged() has told the colour of its start again. */
    void changedSignal();

    /** The user changed the colour; at every movement of a drag that does so. */
    void hsvChanged(float hue, float saturation, float value);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    ColorWheelGeometry geometryNow() const;
    ColorWheelScene scene() const;
    ColorWheelInput inputOf(const QMouseEvent& event) const;
    QPointF upwards(const QPointF& position) const;
    QRegion markerRegion(const Hsv& color) const;
    void showColor(const Hsv& color, float ringValue);
    Hsv neutralColor() const;
    void editOnce(const Hsv& color);
    void execute(const QVarLengthArray<ColorWheelCommand, 4>& commands);
    void setView(float zoom, const QPointF& pan);
    void zoomAbout(const QPointF& point, double factor);

    float m_hue = 0.0F;
    float m_saturation = 0.0F;
    float m_value = 1.0F;
    float m_ringValue = 1.0F;
    float m_zoom = 1.0F;
    float m_interactionScale = 0.1F;
    float m_hueRotation = 0.0F;
    QPointF m_pan;
    DisplayMode m_displayMode;
    InteractionMode m_interactionMode = AbsoluteInteraction;
    bool m_zoomEnabled;
    bool m_menuSuppressed = false;
    const bool m_embedded;
    ColorTransform m_transform;
    ColorSource m_source;
    std::unique_ptr<ColorWheelDrag> m_drag;
    std::unique_ptr<ColorWheelPictures> m_pictures;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ColorWheel::DragModes)

} // namespace Kestrel::UI
