#pragma once

#include <KxUI/Export.h>

#include <QStringList>
#include <QWidget>

#include <memory>

namespace Kestrel::UI {

class CurveEditorPrivate;
class CurveModel;
class CurveView;

/** A `CurveView` and what stands above it: which curve is edited and which are seen, where the
    selected knots are as numbers, how the line goes on from them, snapping, the frame, the range,
    how the axes are drawn, presets, and copies to other curves. What there is no room for goes into
    a menu.

    Whatever of it the user edits is an edit of the view, so a host listens to one of the two: from
    the first change of a drag, a number or a preset to its end. Several knots show a dash where
    their numbers differ; a drag of such a number moves them together, and "+=0.1" or "*=2" change
    each.

    Presets are for curves on the unit square: those that come with the library, those that the user
    saved, which all editors of an application share, and the files `*.curve` of presetFolder(), each
    with a text such as "(0, 0), (0.5, 0.6), (1, 1)". Files are read on another thread while the menu
    is open. Interface thread. */
class KXUI_EXPORT CurveEditor : public QWidget {
    Q_OBJECT
    Q_PROPERTY(Tools tools READ tools WRITE setTools NOTIFY toolsChanged)
    Q_PROPERTY(
        QString presetFolder READ presetFolder WRITE setPresetFolder NOTIFY presetFolderChanged)

public:
    /** What stands above the view, where it has a meaning for the curves. */
    enum Tool {
        CurveChoice = 1,     ///< which curve is the current one; of several ones
        CurveEyes = 2,       ///< which ones are seen; of several ones
        Numbers = 4,         ///< x and y of the selection
        Shapes = 8,          ///< how the line goes on; where the model has shapes
        Snap = 16,           ///< whether drags snap
        Frame = 32,          ///< whether the selection has a frame to scale it by
        ShowAll = 64,        ///< the whole range
        Scales = 128,        ///< how the axes are drawn
        Reset = 256,         ///< the identity; on the unit square
        Presets = 512,       ///< the menu of them; on the unit square
        CopyToOthers = 1024, ///< the current curve to other ones
        AllTools = 2047
    };
    /** Bits of Tool. */
    Q_DECLARE_FLAGS(Tools, Tool)
    Q_FLAG(Tools)

    explicit CurveEditor(QWidget* parent = nullptr);
    ~CurveEditor() override;

    /** The view, for all that is not here: marks, histogram, ranges, snapping lines. Owned. */
    CurveView* view() const;

    /** The curves of the view; borrowed, null for none. */
    CurveModel* model() const;
    void setModel(CurveModel* model);

    /** Which tools may be seen; `AllTools` at first. */
    Tools tools() const;
    void setTools(Tools tools);

    /** The folder of the user's own presets; none where it is empty, as at first. */
    QString presetFolder() const;
    void setPresetFolder(const QString& folder);

    /** The names of the presets that were saved, sorted. */
    QStringList savedPresets() const;

    /** Whether the user has begun to change something, in the view or above it. */
    bool isEditing() const;

public Q_SLOTS:
    /** As CurveView::cancelEdit(). */
    void cancelEdit();

    /** Makes the current curve the identity, one edit. Nothing for one that is not on the unit
        square. */
    void resetCurve();

    /** Makes the current curve what a text says, such as "(0, 0), (0.5, 0.6), (1, 1)", one edit.
        @param name  for the list of edits
        @param text  the curve in the notation of its model */
    void applyPreset(const QString& name, const QByteArray& text);

    /** Keeps the current curve as a preset of that name in the settings, in place of one that has it.
        Of the name no more than 64 characters in one line. False, and nothing, for an empty name,
        and for a curve that is not on the unit square. */
    bool savePreset(const QString& name);
    /** Forgets a preset that was saved. */
    void removePreset(const QString& name);

    /** Makes another curve, or all others for -1, what the current one is; one edit. */
    void copyToOthers(int curve = -1);

    /** Gives the focus to the number of y, as Return does in the view. */
    void editNumbers();

Q_SIGNALS:
    /** The user begins to change the curves.
        @param what  what a list of edits may say about it */
    void editStarted(const QString& what);
    /** The user changed them; at every movement of a drag that does so. */
    void edited();
    /** The edit is over. Not accepted: the curves are what they were, and edited() said so. */
    void editFinished(bool accepted);

    /** Other tools are offered. */
    void toolsChanged(Kestrel::UI::CurveEditor::Tools tools);
    /** Presets come from another folder. */
    void presetFolderChanged(const QString& folder);

protected:
    void changeEvent(QEvent* event) override;

private:
    friend class CurveEditorPrivate;
    const std::unique_ptr<CurveEditorPrivate> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(CurveEditor::Tools)

} // namespace Kestrel::UI
