#pragma once

#include <KxUI/curveedit/CurveEdit_p.h>
#include <KxUI/curveedit/CurveEditor.h>
#include <KxUI/curveedit/CurvePresets_p.h>
#include <KxUI/curveedit/CurveShift_p.h>
#include <KxUI/curveedit/CurveView.h>

#include <QPointer>

#include <array>
#include <functional>
#include <vector>

class QLabel;
class QMenu;
class QToolButton;

namespace Kestrel::UI {

class ChoiceBar;
class ChoiceButton;
class CollapsibleToolbar;
class DoubleSpinBox;
class LinearSlider;

/** The widgets of a curve editor, and what they do to its view. */
class CurveEditorPrivate {
public:
    explicit CurveEditorPrivate(CurveEditor* editor);

    // -- Building (CurveEditorTools.cpp)

    void build();
    void makeChoices();
    void makeNumbers();
    void makeShapes();
    void makeButtons();
    QToolButton* addButton(const char* icon, const QString& name, const QString& toolTip,
                           int priority);
    QToolButton* addMenuButton(const char* icon, const QString& name, const QString& toolTip,
                               int priority, void (CurveEditorPrivate::*fill)(QMenu* menu));
    void fillEyes(QMenu* menu);
    void fillScales(QMenu* menu);
    ChoiceBar* scaleBar(const QString& name, bool isX);
    void fillPresets(QMenu* menu);
    void addSaving(QMenu* menu, const std::vector<CurvePreset>& saved);
    void askForName();
    void fillCopies(QMenu* menu);

    // -- What is shown (CurveEditor.cpp)

    void showModel();
    void showCurves();
    void showCurrent();
    void showSelection();
    void showTools();

    // -- Edits (CurveEditor.cpp)

    /** The selected knots: of the current curve, or of all that are edited together. */
    std::vector<CurvePlace> selection() const;
    bool isUnitSquare() const;
    CurveEdit& edit() const;
    /** What the user does to a field is an edit of the view, over when the field's is. */
    template <class Field>
    void bracket(Field* field);
    void moveInField(const std::vector<CurveModel::Move>& moves);
    void editNumber(CurveShift::Axis axis, double value);
    void editEach(CurveShift::Axis axis, QChar operation, double operand);
    void editShape(int shape);
    bool loadOnce(const QString& what, const std::vector<int>& curves, const QByteArray& bytes);

    CurveEditor* const q;
    CurveView* view = nullptr;
    QPointer<CurveModel> model; ///< whose signals are heard
    CurveEditor::Tools tools = CurveEditor::AllTools;
    CurvePresetFolder folder;

    ChoiceBar* choices = nullptr;
    QToolButton* eyes = nullptr;
    CollapsibleToolbar* bar = nullptr;
    std::array<QWidget*, 2> numberParts{};
    std::array<DoubleSpinBox*, 2> numbers{}; ///< by axis
    ChoiceButton* shapes = nullptr;
    QToolButton* snap = nullptr;
    QToolButton* frame = nullptr;
    QToolButton* showAll = nullptr;
    QToolButton* scales = nullptr;
    QToolButton* reset = nullptr;
    QToolButton* presets = nullptr;
    QToolButton* copies = nullptr;
};

} // namespace Kestrel::UI
