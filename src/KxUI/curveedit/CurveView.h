#pragma once

#include <KxUI/Export.h>
#include <KxUI/curveedit/CurveHistogram.h>
#include <KxUI/kit/WheelPolicy.h>

#include <QRectF>
#include <QVector>
#include <QWidget>

#include <memory>

namespace Kestrel::UI {

class CurveModel;
class CurveViewPrivate;
class TimeFormatter;

/** Shows the curves of a model, any number with any number of knots, and lets the user edit them:
    one transfer curve on the unit square as well as the key frames of a shot.

    Mouse:
    - left on a knot: selects it (Shift: too, Control: or no more) and drags what is selected,
      order and limits kept; after 4 pixels Shift holds one axis and Control counts a tenth. A press
      alone moves nothing. A second press at the same place takes the next one of several that
      overlap. A double click resets the knot;
    - left on the line: adds a knot there, which does not bend the curve where the model can, and
      drags it; elsewhere as pressOffLine() says. Shift begins a rubber band anywhere;
    - a knot that is pulled 32 pixels out of the view is taken away, unless othersEditable();
    - handles of selected knots, where the model has slopes: both sides, with Alt one of them; Shift
      by steps of 15 degrees on the screen. A double click on one gives the knot its own way again;
    - the frame around two knots or more, while frameVisible(): its grips scale what is selected;
    - Alt during a drag: snaps where it would not, and the other way round;
    - right: the menu; while the left one drags it takes the drag back, as Escape does;
    - middle pans, with Control it zooms, twice as large for 96 pixels; the wheel zooms about the
      cursor by 1.1 a notch, with Control x alone, with Shift y alone. Without the focus it wants
      Control. A pinch zooms, two fingers pan.

    Keys: Tab and Backtab select the next and the previous knot, then leave the view; the arrows
    move what is selected by a hundredth of what is visible, rounded to 1, 2 or 5 (on a time axis
    by a frame), with Shift ten times, with Control a tenth as much. Home resets, Delete and
    Backspace delete, Insert adds a knot behind; Control with A selects all, with D doubles, with C,
    X and V copies, cuts and pastes. F shows the selection, 0 everything, plus and minus zoom; 1 to 6
    choose a shape; S snaps or not, T shows the frame or not; [ and ] change the curve; Return asks
    for numbers; Escape takes an edit back.

    What the user does to the curves is told as one edit from the first change to the release of
    the button or key, whatever the number of knots and curves. What the host or somebody else does
    to the model meanwhile is seen, and ends a drag whose knots it moved. A selection is no edit.
    Interface thread. */
class KXUI_EXPORT CurveView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int currentCurve READ currentCurve WRITE setCurrentCurve NOTIFY currentCurveChanged
                   USER true)
    Q_PROPERTY(AxisScale xScale READ xScale WRITE setXScale NOTIFY scalesChanged)
    Q_PROPERTY(AxisScale yScale READ yScale WRITE setYScale NOTIFY scalesChanged)
    Q_PROPERTY(double shadowBase READ shadowBase WRITE setShadowBase NOTIFY scalesChanged)
    Q_PROPERTY(
        QRectF nominalRange READ nominalRange WRITE setNominalRange NOTIFY nominalRangeChanged)
    Q_PROPERTY(
        QRectF visibleRange READ visibleRange WRITE setVisibleRange NOTIFY visibleRangeChanged)
    Q_PROPERTY(bool snapEnabled READ isSnapEnabled WRITE setSnapEnabled NOTIFY snapEnabledChanged)
    Q_PROPERTY(bool zoomEnabled READ isZoomEnabled WRITE setZoomEnabled NOTIFY handlingChanged)
    Q_PROPERTY(
        bool othersEditable READ othersEditable WRITE setOthersEditable NOTIFY handlingChanged)
    Q_PROPERTY(
        PressOffLine pressOffLine READ pressOffLine WRITE setPressOffLine NOTIFY handlingChanged)
    Q_PROPERTY(Kestrel::UI::WheelPolicy::Policy wheelPolicy READ wheelPolicy WRITE setWheelPolicy
                   NOTIFY handlingChanged)
    Q_PROPERTY(
        bool frameVisible READ isFrameVisible WRITE setFrameVisible NOTIFY frameVisibleChanged)
    Q_PROPERTY(double marker READ marker WRITE setMarker NOTIFY marksChanged)
    Q_PROPERTY(double playhead READ playhead WRITE setPlayhead NOTIFY marksChanged)

public:
    /** How an axis is drawn. Knots and ranges are in the model's numbers whatever it is. */
    enum AxisScale {
        LinearScale = 0,
        LogarithmicScale =
            1,          ///< by powers of ten; linear where what is visible begins at 0 or below
        ShadowScale = 2 ///< t = ln(1 + x (b - 1)) / ln b: wide near 0, mirrored below it
    };
    Q_ENUM(AxisScale)

    /** What a press means where there is neither a knot nor a line. */
    enum PressOffLine {
        Adds = 0,   ///< a knot of the current curve
        Selects = 1 ///< the beginning of a rubber band; a double click adds a knot
    };
    Q_ENUM(PressOffLine)

    explicit CurveView(QWidget* parent = nullptr);
    ~CurveView() override;

    /** The curves to show; null shows none. Borrowed: it may die first. An edit is over before. */
    void setModel(CurveModel* model);
    CurveModel* model() const;

    /** The curve that is drawn above the others and that keys, menu and added knots mean; 0 at
        first, and always one of the model's where it has any. */
    int currentCurve() const;
    void setCurrentCurve(int curve);

    /** Whether a curve is shown and can be edited; all are at first. The current one always is.
        What was said about a curve is forgotten with the model. */
    bool isCurveVisible(int curve) const;
    void setCurveVisible(int curve, bool visible);

    /** How the axes are drawn; linear at first. */
    AxisScale xScale() const;
    void setXScale(AxisScale scale);
    AxisScale yScale() const;
    void setYScale(AxisScale scale);

    /** How far a `ShadowScale` opens the shadows, 2 to 256; 64 at first, where 0.18 lies at 0.60.
        Others are limited. */
    double shadowBase() const;
    void setShadowBase(double base);

    /** What showAll() shows at least, and zoom is limited by (1e-9 to 1e9 times as large); the unit
        square at first. The rectangle's top is the least y. Ranges that are empty or not finite are
        ignored. A new one is shown at once. */
    QRectF nominalRange() const;
    void setNominalRange(const QRectF& range);

    /** What fills the plot, in the same way. */
    QRectF visibleRange() const;
    void setVisibleRange(const QRectF& range);

    /** Whether drags snap; not at first. */
    bool isSnapEnabled() const;
    void setSnapEnabled(bool enabled);

    /** Whether the user can zoom and pan; the range stays as it is. */
    bool isZoomEnabled() const;
    void setZoomEnabled(bool enabled);

    /** Whether the user edits all visible curves at once; false: the current one alone, the others
        stand behind it. */
    bool othersEditable() const;
    void setOthersEditable(bool editable);

    /** `Adds` at first. */
    PressOffLine pressOffLine() const;
    void setPressOffLine(PressOffLine meaning);

    /** When the plain wheel zooms; with Control it does wherever the focus is, unless `WheelNever`. */
    WheelPolicy::Policy wheelPolicy() const;
    void setWheelPolicy(WheelPolicy::Policy policy);

    /** Whether two selected knots or more have a frame to scale them by; not at first. */
    bool isFrameVisible() const;
    void setFrameVisible(bool visible);

    /** Drawn behind the curves, by the square roots of the counts; none at first. */
    QVector<CurveHistogram> histogram() const;
    void setHistogram(const QVector<CurveHistogram>& channels);

    /** A place along x, as of the pixel under the host's pointer: shown with what each curve makes
        of it. Not a number: none, as at first. */
    double marker() const;
    void setMarker(double x);

    /** A second one, for the time that is shown. Pasted knots begin there. */
    double playhead() const;
    void setPlayhead(double x);

    /** Where drags snap to beside what the curves themselves offer. */
    void setSnapLines(const QVector<double>& x, const QVector<double>& y);

    /** Labels x by times: x is a frame, and drags snap to whole ones. Borrowed; null for numbers. */
    void setTimeAxis(const TimeFormatter* formatter);
    const TimeFormatter* timeAxis() const;

    /** Whether the user has begun to change something: from editStarted() to editFinished(). */
    bool isEditing() const;

    /** What a list of edits may call the current or the last edit, such as "move 3 knots". */
    QString editText() const;

    /** How many knots are selected, of all curves that can be edited. */
    int selectedCount() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Shows the nominal range and all knots of the visible curves. */
    void showAll();
    /** Shows what is selected, with some room around; everything where nothing is. */
    void showSelection();
    /** Zooms about the middle of the plot; above 1 nearer. */
    void zoom(double factor);

    /** Takes an edit back, as Escape does: the curves are what they were at editStarted(). */
    void cancelEdit();

    /** Adds a knot of the current curve on its line; one edit, as are all of the following. Nothing
        where the model takes none. */
    void addOnCurve(double x);
    /** As many of them as the curves can do without, their ends last. */
    void deleteSelected();
    /** What the shape is called by `KeyCurve::Shape`. */
    void setSelectedShape(int shape);
    /** Puts the selected knots on the identity line where the limits are the unit square; lets them
        be `KeyCurve::Shape::Monotone` where they have shapes. */
    void resetSelected();
    /** Makes the current curve the identity, where its limits are the unit square. */
    void resetCurve();
    /** Puts the only selected knot there, as near as neighbours and limits let it. Of several ones
        y alone counts. Not a number: leaves that. */
    void setSelectedPosition(double x, double y);
    /** Doubles what is selected, behind it. */
    void duplicateSelected();
    void selectAll();
    void selectNone();

    /** The selected knots of the current curve, all where none is, to the clipboard. */
    void copy();
    void cut();
    /** Puts the knots of the clipboard into the current curve, at the playhead, the marker, or where
        they were. */
    void paste();

Q_SIGNALS:
    /** The user begins to change the curves; not yet by the press.
        @param what  what a list of edits may say about it; editText() may know more at its end */
    void editStarted(const QString& what);
    /** The user changed the curves; at every movement of a drag that does so. */
    void edited();
    /** The edit is over. Not accepted: the curves are what they were, and edited() said so. */
    void editFinished(bool accepted);

    /** Other knots are selected, by whomever, or other ones count. Where they are the model tells. */
    void selectionChanged();
    void currentCurveChanged(int curve);
    void visibleCurvesChanged();
    void visibleRangeChanged(const QRectF& range);
    void nominalRangeChanged(const QRectF& range);
    void scalesChanged();
    void snapEnabledChanged(bool enabled);
    void frameVisibleChanged(bool visible);
    void handlingChanged();
    void marksChanged();
    void modelChanged();
    /** The user pressed Return: a host that has fields for numbers gives them the focus. */
    void numbersRequested();
    /** Why something was not done, such as "8 knots at most"; the view shows it, too. Empty when it
        does no more. */
    void notice(const QString& text);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    friend class CurveViewPrivate;
    const std::unique_ptr<CurveViewPrivate> d;
};

} // namespace Kestrel::UI
