#pragma once

#include <KxUI/draw/DrawingContext.h>
#include <KxUI/draw/DrawingSurface_p.h>
#include <KxUI/draw/ToneCurve.h>
#include <KxUI/kit/WheelNotches_p.h>
#include <KxUI/scopes/Graticule_p.h>
#include <KxUI/scopes/ScopeDrag_p.h>
#include <KxUI/scopes/ScopeGeometry_p.h>
#include <KxUI/scopes/ScopeView.h>

#include <QPointer>

#include <memory>
#include <optional>

class QKeyEvent;

namespace Kestrel::UI {

/** The colours that a scope's plot is drawn in, whatever the palette: light is added to a dark ground,
    as on every scope. */
struct ScopeColors {
    QColor ground{12, 12, 14};
    QColor line{255, 255, 255, 46};
    QColor strongLine{255, 255, 255, 110};
    QColor limit{255, 176, 46};
    QColor user{120, 190, 255};
    QColor text{225, 225, 228};
    QColor warning{216, 150, 255};
    QColor selection{255, 255, 255, 60};
    QColor cursor{255, 255, 255, 190};
};

/** What a scope shows and the state of its mouse. A scope derives from it and says what it needs
    counted, draws it, and tells what is where. */
class ScopeViewPrivate {
public:
    ScopeViewPrivate();
    virtual ~ScopeViewPrivate();

    // ---- What a scope is.

    virtual QString name() const = 0;
    /** What is to be counted while the scope is seen. */
    virtual ScopeModel::Parts parts() const = 0;
    virtual WaveformRange waveformRange() const { return {}; }
    virtual VectorRange vectorRange() const { return {}; }
    /** Room around the plot for labels. */
    virtual QMarginsF margins() const { return {}; }
    virtual bool isSquare() const { return false; }
    /** The directions that the wheel zooms in. */
    virtual Qt::Orientations zooms() const { return Qt::Horizontal | Qt::Vertical; }

    /** Everything that follows from counts, settings and size; kept until one of them changes. */
    virtual void paintTrace(DrawingContext& context, const ScopeGeometry& geometry) = 0;
    /** Marks over it that follow the model's sample. */
    virtual void paintMarks(DrawingContext& context, const ScopeGeometry& geometry);
    /** Where the mouse reads something off. */
    virtual QRectF readArea(const ScopeGeometry& geometry) const { return geometry.plot; }
    /** Whether the left button pans there. */
    virtual bool pansAt(const ScopeGeometry& geometry, const QPointF& position) const;
    /** How far the whole goes when the mouse pans by a part of it. */
    virtual QPointF panned(const QPointF& uv) const { return uv; }
    /** What is selected, or being selected. */
    virtual void paintSelection(DrawingContext& context, const ScopeGeometry& geometry);

    /** What is at a place of the whole. */
    virtual ScopeReadout readoutAt(const QPointF& uv) const = 0;
    /** The size of a bin there. */
    virtual QSizeF step() const = 0;
    /** The values between two places; `path` is that of the mouse, in the same units. */
    virtual ScopeSelection selectionOf(const QPointF& from, const QPointF& to,
                                       const QVector<QPointF>& path) const = 0;
    /** The part of the full frame that a place speaks of; null: all that is counted. */
    virtual QRect pixelsAt(const QPointF& uv) const;
    /** A press and release at a place of the widget; false: nothing of the scope's own. */
    virtual bool click(const ScopeGeometry& geometry, const QPointF& position);
    /** The mouse turns what is shown by a path in logical pixels; of scopes whose drags turn. */
    virtual void turn(const QPointF& path);
    /** Home, as the 0 key and the menu have it. */
    virtual void resetView();
    /** Keys beyond those of all scopes, which these take before. */
    virtual bool isMoreKey(const QKeyEvent& event) const;
    virtual void pressMoreKey(const QKeyEvent& event);
    /** The result, the image or the reference is another one. */
    virtual void resultChanged() {}
    virtual void saveTo(QVariantMap& state) const;
    virtual void restoreFrom(const QVariantMap& state);
    virtual void addActions(QMenu& menu);

    // ---- What scopes share.

    static ScopeViewPrivate& of(const ScopeView& view) { return view.scope(); }

    /** A unit as users know it, in their language. */
    static QString unitText(ScopeUnit unit);

    /** Once, from the view's constructor. */
    void setView(ScopeView* view);

    ScopeGeometry geometry() const;
    ScopeGeometry geometry(const QSizeF& size, double ratio) const;
    ToneCurve toneCurve() const;
    /** The result, never null; empty without a model. */
    std::shared_ptr<const ScopeResult> result() const;
    /** What is held, if it is to be shown; else null. */
    std::shared_ptr<const ScopeResult> shownReference() const;
    const ScopeEncoding& encoding() const;
    QFont labelFont() const;
    QString valueText(double value, bool chroma = false) const;
    /** Fills what a read-out says in words: "red 64.2 %, 1,204 pixels". */
    void describe(ScopeReadout& readout) const;

    void paint(DrawingContext& context, const ScopeGeometry& geometry, bool withCursor);
    void paintGraticule(DrawingContext& context, const QRectF& plot,
                        const std::vector<GraticuleLine>& lines, bool vertical) const;

    /** Tells the model what is needed now. */
    void askModel();
    /** The trace has to be drawn anew. */
    void changeTrace();
    void modelChanged(ScopeModel::Changes changes);
    /** There is another one, or none. */
    void modelGone();
    void setViewport(const ScopeViewport& wanted);
    virtual void zoomAbout(const QPointF& uv, double factor);

    /** These tell of what has changed, so the view may be gone afterwards. */
    void setCursor(const std::optional<QPointF>& uv);
    void execute(const ScopeCommand& command);
    void select(const ScopeSelection& selection, bool asWholeEdit);
    bool pressKey(const QKeyEvent& event);
    void escape();
    void showMenu(const QPoint& globalPosition);

    ScopeView* q = nullptr;
    QPointer<ScopeModel> model;
    double brightness = 0;
    ScopeView::Tone tone = ScopeView::LogTone;
    bool singlePixels = true;
    ScopeUnit unit = ScopeUnit::Percent;
    QVector<ScopeLine> userLines;
    bool showReference = true;
    ScopeViewport viewport;
    ScopeDrag drag;
    std::optional<QPointF> cursor; ///< of the mouse or of the keys, in the whole
    bool cursorIsOfKeys = false;
    WheelNotches notches;
    ScopeColors colors;
    std::unique_ptr<DrawingSurface> surface;

private:
    QStringList badges() const;
    void paintBadges(DrawingContext& context, const ScopeGeometry& geometry) const;
    void paintCursor(DrawingContext& context, const ScopeGeometry& geometry) const;
    void moveCursor(const QPointF& bins);
    /** What is selected at a place. */
    ScopeSelection binAt(const QPointF& uv) const;
    void requestPixel(const QPointF& uv);
    bool shortcut(const QKeyEvent& event);
    bool isTraceOf(ScopeModel::Changes changes);

    ScopeSelection m_before; // that an edit began with
    bool m_isEditing = false;
    // Of the model's image.
    bool m_hadImage = false;
    PixelLayout m_layout = PixelLayout::RGBAHalf;
    // What paintTrace() has drawn, for the painter.
    QImage m_trace;
    QSizeF m_traceSize;
    bool m_traceIsOld = true;
};

} // namespace Kestrel::UI
