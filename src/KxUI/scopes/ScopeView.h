#pragma once

#include <KxUI/Export.h>
#include <KxUI/draw/Drawing.h>
#include <KxUI/scopes/ScopeModel.h>
#include <KxUI/scopes/ScopeReadout.h>
#include <KxUI/scopes/ScopeUnit.h>

#include <QImage>
#include <QPoint>
#include <QVariantMap>
#include <QVector>
#include <QWidget>

#include <memory>

class QMenu;

namespace Kestrel::UI {

class ScopeViewPrivate;

/** What all scopes have in common. A scope shows what a ScopeModel has counted; it never looks at
    pixels, and needs nothing counted while it is hidden.

    Mouse: moving it tells what is below it; dragging with the left button selects values, whose
    pixels hosts show (selectionMask()); a double click takes the selection away, and a click with
    Control asks for the first pixel of what is there. The middle button pans and the wheel zooms
    about the cursor.

    Keys: the arrows move a cursor from bin to bin, ten with Shift, and Return selects what is there;
    plus and minus zoom, 0 shows everything; B brightens and Shift+B dims; U takes the next unit; H
    holds the present result for comparison, or lets it go; P asks for the first pixel of what the
    cursor is on; Escape takes back a drag, else the selection, else the cursor.

    A selection is told as one edit from press to release. Made by its subclasses only. Interface
    thread. */
class KXUI_EXPORT ScopeView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double brightness READ brightness WRITE setBrightness NOTIFY brightnessChanged)
    Q_PROPERTY(Tone tone READ tone WRITE setTone NOTIFY toneChanged)
    Q_PROPERTY(bool singlePixels READ singlePixels WRITE setSinglePixels NOTIFY singlePixelsChanged)
    Q_PROPERTY(
        bool showReference READ showReference WRITE setShowReference NOTIFY showReferenceChanged)

public:
    /** How counts become light. */
    enum Tone {
        LogTone,   ///< by their logarithm, so that rare values are seen beside common ones
        LinearTone ///< in proportion
    };
    Q_ENUM(Tone)

    ~ScopeView() override;

    /** What is shown; borrowed, forgotten when it is destroyed, null at first. */
    ScopeModel* model() const;
    void setModel(ScopeModel* model);

    /** By what it is drawn; the painter at first. The painter also draws where OpenGL fails, and
        drawingChanged() tells. */
    Drawing drawing() const;
    void setDrawing(Drawing drawing);
    /** Whether OpenGL is what draws. */
    bool usesOpenGL() const;

    /** How bright counts are shown, in stops: -6 to 6, 0 at first. */
    double brightness() const;
    void setBrightness(double stops);
    /** LogTone at first. */
    Tone tone() const;
    void setTone(Tone tone);
    /** Whether a single pixel of a large picture is bright enough to be seen; on at first. */
    bool singlePixels() const;
    void setSinglePixels(bool visible);

    /** What values are labelled in; percent at first. */
    ScopeUnit unit() const;
    void setUnit(ScopeUnit unit);
    /** A unit as users know it, in their language, for a menu of units. */
    static QString unitText(ScopeUnit unit);
    /** Lines of the user's own; none at first. */
    QVector<ScopeLine> userLines() const;
    void setUserLines(const QVector<ScopeLine>& lines);
    /** Whether what the model holds is drawn beside what it has counted; on at first. */
    bool showReference() const;
    void setShowReference(bool show);

    /** What is at a place of the widget; a null one where nothing is. */
    ScopeReadout readoutAt(const QPoint& position) const;
    /** What the cursor of the mouse or of the keys is on. */
    ScopeReadout readout() const;

    /** Whether the user drags out a selection. */
    bool isEditing() const;
    /** Takes that back. */
    void cancelEdit();

    /** The scope as it is, in another size, without cursor. */
    QImage toImage(const QSize& size, qreal devicePixelRatio = 1) const;

    /** What the user can set here, by names that stay; restoreState() takes what it knows and leaves
        the rest as it is. */
    QVariantMap saveState() const;
    void restoreState(const QVariantMap& state);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Shows everything again, without zoom. */
    void resetView();

Q_SIGNALS:
    /** What the cursor is on, or that it is on nothing. */
    void hovered(const Kestrel::UI::ScopeReadout& readout);
    void hoverLeft();

    /** The user asks where in the picture that is which the cursor is on: the first such pixel from the
        upper left, in the full frame. Comes some time after the key or the click, and not where there
        is none. */
    void pixelRequested(const QPoint& fullFramePixel);

    /** The user begins to select values. Always followed by one editFinished(), unless the scope is
        deleted. */
    void editStarted();
    /** The user changed the selection; the model has it already. */
    void selectionEdited(const Kestrel::UI::ScopeSelection& selection);
    /** The edit is over. Not accepted: it was taken back, and selectionEdited() said so before. */
    void editFinished(bool accepted);

    /** The menu of a right click is about to be shown; a host may add to it. It is deleted
        afterwards. */
    void contextMenuAboutToShow(QMenu* menu);

    /** Something became another one, by whomever; sent after it did. `viewChanged` tells of zoom and
        pan. */
    void viewChanged();
    void drawingChanged();
    void brightnessChanged(double stops);
    void toneChanged(Kestrel::UI::ScopeView::Tone tone);
    void singlePixelsChanged(bool visible);
    void unitChanged();
    void userLinesChanged();
    void showReferenceChanged(bool show);

protected:
    /** For the subclasses of the library. */
    ScopeView(std::unique_ptr<ScopeViewPrivate> scope, QWidget* parent);

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

    /** The scope's own part. */
    ScopeViewPrivate& scope() const { return *d; }

private:
    friend class ScopeViewPrivate;

    const std::unique_ptr<ScopeViewPrivate> d;
};

} // namespace Kestrel::UI
