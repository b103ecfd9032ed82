#pragma once

#include <KxUI/curveedit/CurveDrag_p.h>
#include <KxUI/curveedit/CurveEdit_p.h>
#include <KxUI/curveedit/CurvePictures_p.h>
#include <KxUI/curveedit/CurvePlot_p.h>
#include <KxUI/curveedit/CurveScene_p.h>
#include <KxUI/curveedit/CurveView.h>
#include <KxUI/curves/KeyCurve.h>

#include <QPointer>
#include <QTimer>

#include <limits>
#include <map>
#include <vector>

class QGestureEvent;
class QHelpEvent;
class QKeyEvent;
class QMenu;
class QMouseEvent;
class QPainter;
class QWheelEvent;

namespace Kestrel::UI {

class CurveOverlays;
class TimeFormatter;

/** A knot of a model; none while an index is below 0. */
struct CurveKnot {
    int curve = -1;
    int knot = -1;

    bool isValid() const { return curve >= 0 && knot >= 0; }
    friend bool operator==(const CurveKnot& a, const CurveKnot& b) {
        return a.curve == b.curve && a.knot == b.knot;
    }
    friend bool operator!=(const CurveKnot& a, const CurveKnot& b) { return !(a == b); }
};

/** What a curve view shows, the state of its mouse, and the steps that its events consist of.
    Functions that change the model or emit a signal may delete the view; those of them that return
    bool return false then. */
class CurveViewPrivate {
public:
    explicit CurveViewPrivate(CurveView* view);
    static CurveViewPrivate* of(const CurveView* view) { return view->d.get(); }

    // -- The model and the curves (CurveViewModel.cpp)

    void setModel(CurveModel* wanted);
    bool hasCurve(int curve) const { return model && curve >= 0 && curve < model->count(); }
    bool hasKnot(const CurveKnot& knot) const;
    bool hasAbility(CurveModel::Ability ability) const;
    bool isVisible(int curve) const;
    bool setVisible(int curve, bool shown);
    /** By mouse and keys, as the view is now. */
    bool isEditable(int curve) const;
    std::vector<int> editableCurves() const;
    bool isUnitSquare(int curve) const;
    bool setCurrent(int curve);
    bool showCurrent(int curve);

    /** The selected knots of all curves that can be edited. */
    std::vector<CurveKnot> selected() const;
    int selectedCount() const;
    const std::vector<int>& selectedOf(int curve) const;
    /** The one that keys go on from: the last selected one of the current curve. */
    CurveKnot focused() const;
    /** These and no other ones; none for first > last. */
    bool selectOnly(int curve, int first, int last);
    bool selectOnly(const CurveKnot& knot) { return selectOnly(knot.curve, knot.knot, knot.knot); }

    // -- Ranges and places (CurveViewModel.cpp)

    CurveScene scene() const;
    void setPlot(const QRectF& range);
    void setRange(const QRectF& range);
    void setScales(const CurvePlot::Scales& wanted);
    void zoomAbout(const QPointF& at, double factorX, double factorY);
    void relayout();
    QRectF bounds() const;
    QRectF selectionBounds() const;
    /** Of the arrow keys. */
    QPointF nudgeStep() const;
    QPointF positionOf(const CurveKnot& knot) const;
    QRect playheadRect(double x) const;

    // -- Changes by the user (CurveViewEdits.cpp)

    bool canAdd(int curve);
    bool hasRoom(int curve, double x) const;
    void addOnce(int curve, const QPointF& place, bool onLine);
    void moveOnce(const std::vector<CurveModel::Move>& moves);
    bool removeSelected(const QString& what);
    void resetKnots(const std::vector<CurveKnot>& knots);
    void nudge(const QKeyEvent& event, const QPointF& direction);
    void insertBehind();
    bool nearestX(const CurveKnot& knot, double& x) const;
    static QString moveText(int knots);
    /** Tells why something was not done; nothing to tell any more for an empty text. */
    void say(const QString& text);

    // -- The clipboard (CurveViewClipboard.cpp)

    bool copySelected() const;
    void paste();
    void duplicate();

    // -- Mouse (CurveViewMouse.cpp)

    void press(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void release(const QMouseEvent& event);
    void doubleClick(const QMouseEvent& event);
    bool wheel(const QWheelEvent& event);
    bool gesture(const QGestureEvent& event);
    void hover(const QPointF& at);
    /** Shows a tool tip where there is something to say; false elsewhere. */
    bool help(const QHelpEvent& event) const;
    void setHovered(const CurveKnot& knot);
    CurveKnot knotAt(const QPointF& at) const;
    bool selectForMenu(const QPointF& at);
    /** After the edit saw an event, which may have ended a drag. */
    void meetEvent(const QEvent& event, bool taken);
    /** Somebody else changed a curve. */
    void meetChange();
    /** Back to where a drag began that changes no knots; false without one. */
    bool takeDragBack();
    void endDrag();
    /** Goes on with a drag beyond the edge; every 100 ms. */
    void scroll();
    bool pressAdds() const;

    // -- Keys and menu (CurveViewKeys.cpp)

    bool isOwnKey(const QKeyEvent& event) const;
    bool pressKey(const QKeyEvent& event);
    bool walk(bool next);
    QMenu* makeMenu();

    // -- Painting and words (CurveViewPainting.cpp)

    void paint(QPainter& painter, const QRegion& exposed);
    QString readout() const;
    QString knotName(const CurveKnot& knot) const;
    QString placeText(const QPointF& place) const;
    QString valueText() const;

    CurveView* const q;
    QPointer<CurveModel> model;
    CurveEdit edit;
    CurvePlot plot; ///< of `visible`, `scales` and the size of the view
    CurvePlot::Scales scales;
    QRectF nominal{0.0, 0.0, 1.0, 1.0};
    QRectF visible{0.0, 0.0, 1.0, 1.0};
    int current = 0;
    bool snapEnabled = false;
    bool zoomEnabled = true;
    bool othersEditable = false;
    bool frameVisible = false;
    CurveView::PressOffLine pressOffLine = CurveView::Adds;
    WheelPolicy::Policy wheelPolicy = WheelPolicy::WheelWhenFocused;
    double marker = std::numeric_limits<double>::quiet_NaN();
    double playhead = std::numeric_limits<double>::quiet_NaN();
    QVector<double> snapX;
    QVector<double> snapY;
    QVector<CurveHistogram> histogram;
    int histogramCount = 0; ///< how many were set
    QPointer<const TimeFormatter> timeAxis;

private:
    void follow();
    void modelDied();
    void knotsChanged(int curve, int first, int last);
    void selectionChanged(int curve);
    void curvesChanged();
    void forgetSelection(int curve);
    QRect regionOf(int curve, int first, int last) const;

    bool execute(const CurveCommands& commands);
    bool executeEdits(CurveCommands::const_iterator first, CurveCommands::const_iterator end);
    bool canExecute(const CurveCommand& command);
    int change(const CurveCommand& command);
    void drive(const CurveInput& input);
    QString dragTitle() const;

    void addKeys(int curve, const std::vector<KeyCurve::Key>& keys, double shift);

    void pressInDrag(int key);
    void pressControlled(int key);
    bool pressEditing(int key);
    void pressLooking(int key);
    void stepCurve(int by);
    void addShapes(QMenu* menu, bool enabled);

    const CurveGrid& currentGrid();
    std::vector<CurveLook> looks() const;
    void paintMarks(CurveOverlays& overlays, const std::vector<CurveLook>& curves);
    void paintDrag(QPainter& painter, CurveOverlays& overlays, const CurveGround::Key& ground);
    void paintSnaps(CurveOverlays& overlays) const;
    QPolygonF snapLine(const CurveSnapTarget& snap) const;
    QPolygonF straightLine(const QPointF& from, const QPointF& to) const;
    QRect textRect() const;
    void paintTexts(CurveOverlays& overlays, const std::vector<CurveLook>& curves);
    QString dragText() const;
    QString xText(double x) const;
    QString yText(double y) const;

    CurveDrag drag;
    CurveInput lastInput;
    QTimer scrollTimer;
    std::vector<bool> hidden;                           ///< by curve; those beyond are shown
    mutable std::map<int, std::vector<int>> selections; ///< those that were asked for
    CurvePictures pictures;
    CurveGrid grid;
    bool gridIsCurrent = false;
    CurveKnot hovered;
    QString notice;
};

} // namespace Kestrel::UI
