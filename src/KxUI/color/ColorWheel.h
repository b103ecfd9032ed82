#pragma once

#include <KxUI/Export.h>

#include <QPointF>
#include <QVector3D>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>

namespace Kestrel::UI {

class ColorWheelPrivate;

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

    What the user does to the colour is told as one edit from the first change to the release of the
    button or key; valueEdited() is hsvChanged() with the three as one.
    Interface thread. */
class KXUI_EXPORT ColorWheel : public QWidget {
    Q_OBJECT
    /** Hue, saturation and value as one thing. */
    Q_PROPERTY(QVector3D hsv READ hsv WRITE setHSV NOTIFY colorChanged USER true)
    Q_PROPERTY(float hue READ hue WRITE setHue NOTIFY colorChanged)
    Q_PROPERTY(float saturation READ saturation WRITE setSaturation NOTIFY colorChanged)
    Q_PROPERTY(float value READ value WRITE setValue NOTIFY colorChanged)
    Q_PROPERTY(float ringValue READ ringValue WRITE setRingValue NOTIFY ringValueChanged)
    Q_PROPERTY(bool zoomEnabled READ getZoomEnabled WRITE setZoomEnabled NOTIFY zoomEnabledChanged)
    Q_PROPERTY(float zoom READ zoom NOTIFY viewChanged)
    Q_PROPERTY(QPointF pan READ pan NOTIFY viewChanged)
    Q_PROPERTY(
        DisplayMode displayMode READ displayMode WRITE setDisplayMode NOTIFY displayModeChanged)
    Q_PROPERTY(InteractionMode interactionMode READ interactionMode WRITE setInteractionMode NOTIFY
                   interactionModeChanged)
    Q_PROPERTY(float interactionScale READ interactionScale WRITE setInteractionScale NOTIFY
                   interactionScaleChanged)
    Q_PROPERTY(float hueRotation READ hueRotation WRITE setHueRotation NOTIFY hueRotationChanged)

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

    /** Stores the three as they are and repaints. The ring value stays. Like all setters here it
        emits no signal of an edit, only colorChanged(). */
    void setHSV(float hue, float saturation, float value);
    void setHSV(const QVector3D& hsv);
    QVector3D hsv() const;

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
    float ringValue() const;

    /** The colour, as getHSV(). */
    float hue() const;
    float saturation() const;
    float value() const;

    /** The hue limited to 0-1; 0 where it is not a number. */
    float getClampedHue() const;

    /** Whether the user can zoom and pan; the view stays as it is. */
    void setZoomEnabled(bool enabled);
    bool getZoomEnabled() const;

    /** The magnification, 1/8 to 64. */
    float zoom() const;
    /** How far the centre is from that of the widget, rightwards and upwards, in radii of the disc;
        each within -1.9 to 1.9. */
    QPointF pan() const;

    /** What is drawn. A wheel that was made as `EmbeddedWheel` keeps its size and stays without
        zoom. */
    void setDisplayMode(DisplayMode mode);
    DisplayMode displayMode() const;

    /** How a drag moves the colour; counts from the next movement of a drag on. */
    void setInteractionMode(InteractionMode mode);
    InteractionMode interactionMode() const;

    /** How far a relative drag moves the colour for each pixel of the cursor; 0.1 at first. */
    void setInteractionScale(float scale);
    float interactionScale() const;

    /** Where the hue 0 is, in radians counterclockwise from the right; 0 at first. */
    void setHueRotation(float radians);
    float hueRotation() const;

    /** Whether the colour follows the cursor, in the current drag if there is one. */
    bool isAbsoluteMode() const;

    /** What the current drag changes. */
    DragModes dragMode() const;

    /** Another transform, or the same one after what it does has changed. */
    void setColorTransform(ColorTransform transform);

    /** Where updateFromControl() finds the picker's colour. */
    void setColorSource(ColorSource source);

    /** Takes over value and saturation of the picker's colour, and its hue unless that is a grey,
        without a signal of an edit. Nothing without a source. */
    void updateFromControl();

    /** Whether the user has begun to change the colour: from editStarted() to editFinished(). */
    bool isEditing() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** As setHSV(). */
    void setHSVSlot(float hue, float saturation, float value);

    /** Shows all of the wheel again, without zoom and pan. */
    void resetView();

    /** Takes the current drag back, as Escape does: shows the colour or the view of its start again
        and ends it without changedSignal(). Nothing without a drag. */
    void cancelDrag();
    /** Takes the current edit back, as Escape does. Nothing without an edit: a drag that pans or
        zooms is none. */
    void cancelEdit();

Q_SIGNALS:
    /** The user begins to change the colour. Always followed by one editFinished(), unless the
        wheel is deleted. */
    void editStarted();
    /** The user changed the colour; after hsvChanged(). */
    void valueEdited(const QVector3D& hsv);
    /** The edit is over. Not accepted: it was taken back, the colour is what it was at
        editStarted(), and valueEdited() said so before. */
    void editFinished(bool accepted);

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

    /** Something became another one, by whomever; sent after it did. `viewChanged` tells of zoom
        and pan. */
    void colorChanged();
    void ringValueChanged(float value);
    void viewChanged();
    void zoomEnabledChanged(bool enabled);
    void displayModeChanged(Kestrel::UI::ColorWheel::DisplayMode mode);
    void interactionModeChanged(Kestrel::UI::ColorWheel::InteractionMode mode);
    void interactionScaleChanged(float scale);
    void hueRotationChanged(float radians);

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
    friend class ColorWheelPrivate;

    const std::unique_ptr<ColorWheelPrivate> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ColorWheel::DragModes)

} // namespace Kestrel::UI
