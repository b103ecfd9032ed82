#include <KxUI/curveedit/CurveEditor_p.h>

#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/kit/ChoiceButton.h>
#include <KxUI/kit/CollapsibleToolbar.h>
#include <KxUI/kit/IconFactory.h>
#include <KxUI/values/DoubleSpinBox.h>
#include <KxUI/values/LinearSlider.h>

#include <QCursor>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidgetAction>

#include <algorithm>

namespace Kestrel::UI {

namespace {

constexpr int Gap = 4;
constexpr int RoomForArrows = 32;
constexpr int ScalesWidth = 240;
/** So that half of the slider is for the bases that differ most. */
constexpr double BaseExponent = 3.0;

/** A name of the host's or the user's as it is, without a letter of its own. */
QString inMenu(QString name) {
    return name.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

void CurveEditorPrivate::build() {
    view = new CurveView;
    bar = new CollapsibleToolbar;
    makeChoices();
    auto* const column = new QVBoxLayout(q);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Gap);
    column->addWidget(choices);
    column->addWidget(bar);
    column->addWidget(view, 1);
    makeNumbers();
    makeShapes();
    auto* const between = new QWidget;
    between->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    bar->addItem(between);
    makeButtons();
    q->setFocusProxy(view);

    using View = CurveView;
    QObject::connect(view, &View::modelChanged, q, [this] { showModel(); });
    QObject::connect(view, &View::currentCurveChanged, q, [this] { showCurrent(); });
    QObject::connect(view, &View::selectionChanged, q, [this] { showSelection(); });
    QObject::connect(view, &View::handlingChanged, q, [this] { showSelection(); });
    QObject::connect(view, &View::numbersRequested, q, &CurveEditor::editNumbers);
    QObject::connect(view, &View::editStarted, q, &CurveEditor::editStarted);
    QObject::connect(view, &View::edited, q, &CurveEditor::edited);
    QObject::connect(view, &View::editFinished, q, &CurveEditor::editFinished);
    showModel();
}

void CurveEditorPrivate::makeChoices() {
    choices = new ChoiceBar;
    choices->setAccessibleName(CurveEditor::tr("Curve"));
    QObject::connect(choices, &ChoiceBar::valueEdited, view, &CurveView::setCurrentCurve);
}

template <class Field>
void CurveEditorPrivate::bracket(Field* field) {
    QObject::connect(field, &Field::editStarted, q, [this] { edit().beginDrag(Qt::NoButton); });
    QObject::connect(field, &Field::editFinished, q, [this](bool accepted) {
        const QPointer<CurveEditor> self(q);
        if (accepted ? edit().finish() : edit().cancel() && self)
            showSelection();
    });
    // Whoever takes the edit back takes it from the field, too.
    QObject::connect(view, &CurveView::editFinished, field, [field](bool accepted) {
        if (!accepted)
            field->cancelEdit();
    });
}

void CurveEditorPrivate::makeNumbers() {
    const std::array<QString, 2> names{CurveEditor::tr("X"), CurveEditor::tr("Y")};
    for (const auto axis : {CurveShift::X, CurveShift::Y}) {
        auto* const part = new QWidget;
        auto* const label = new QLabel(names[axis]);
        auto* const box = new DoubleSpinBox;
        box->setLabel(label);
        box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("-00.0000")) +
                           RoomForArrows);
        box->setAccessibleName(axis == CurveShift::X ? CurveEditor::tr("X of the selected knots")
                                                     : CurveEditor::tr("Y of the selected knots"));
        part->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        auto* const row = new QHBoxLayout(part);
        row->setContentsMargins(0, 0, 2 * Gap, 0);
        row->setSpacing(Gap);
        row->addWidget(label);
        row->addWidget(box);
        numbers[axis] = box;
        numberParts[axis] = part;
        bar->addItem(part);
        bracket(box);
        QObject::connect(box, &DoubleSpinBox::valueEdited, q,
                         [this, axis](double value) { editNumber(axis, value); });
        QObject::connect(
            box, &DoubleSpinBox::relativeEdited, q,
            [this, axis](QChar operation, double operand) { editEach(axis, operation, operand); });
    }
}

void CurveEditorPrivate::makeShapes() {
    shapes = new ChoiceButton;
    // In the order of KeyCurve::Shape.
    for (const QString& name :
         {CurveEditor::tr("Constant"), CurveEditor::tr("Linear"), CurveEditor::tr("Smooth"),
          CurveEditor::tr("Monotone"), CurveEditor::tr("Natural"), CurveEditor::tr("Free")})
        shapes->addChoice(name);
    shapes->setPlaceholderText(CurveEditor::tr("Shape"));
    shapes->setAccessibleName(CurveEditor::tr("Shape of the selected knots"));
    shapes->setToolTip(CurveEditor::tr("How the line goes on from the selected knots"));
    shapes->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    bar->addItem(shapes);
    bracket(shapes);
    QObject::connect(shapes, &ChoiceButton::valueEdited, q,
                     [this](int shape) { editShape(shape); });
}

void CurveEditorPrivate::makeButtons() {
    eyes =
        addMenuButton("CurveEye", CurveEditor::tr("Shown Curves"),
                      CurveEditor::tr("Which curves are shown"), 2, &CurveEditorPrivate::fillEyes);
    snap = addButton("CurveSnap", CurveEditor::tr("Snap"),
                     CurveEditor::tr("Drags snap to knots, lines and whole values"), 3);
    snap->setCheckable(true);
    QObject::connect(snap, &QToolButton::toggled, view, &CurveView::setSnapEnabled);
    QObject::connect(view, &CurveView::snapEnabledChanged, snap, &QToolButton::setChecked);
    frame = addButton("CurveFrame", CurveEditor::tr("Frame"),
                      CurveEditor::tr("A frame around the selected knots, to scale them by"), 2);
    frame->setCheckable(true);
    QObject::connect(frame, &QToolButton::toggled, view, &CurveView::setFrameVisible);
    QObject::connect(view, &CurveView::frameVisibleChanged, frame, &QToolButton::setChecked);
    showAll = addButton("CurveShowAll", CurveEditor::tr("Show All"),
                        CurveEditor::tr("Shows the whole range and all knots"), 5);
    QObject::connect(showAll, &QToolButton::clicked, view, &CurveView::showAll);
    reset = addButton("CurveReset", CurveEditor::tr("Reset"),
                      CurveEditor::tr("Makes the curve the identity"), 4);
    QObject::connect(reset, &QToolButton::clicked, q, &CurveEditor::resetCurve);
    presets =
        addMenuButton("CurvePresets", CurveEditor::tr("Presets"),
                      CurveEditor::tr("Curves to begin with"), 4, &CurveEditorPrivate::fillPresets);
    copies = addMenuButton("CurveCopy", CurveEditor::tr("Copy To"),
                           CurveEditor::tr("Makes other curves what this one is"), 1,
                           &CurveEditorPrivate::fillCopies);
    scales = addMenuButton("CurveScale", CurveEditor::tr("Axes"),
                           CurveEditor::tr("How the axes are drawn"), 1,
                           &CurveEditorPrivate::fillScales);
}

QToolButton* CurveEditorPrivate::addButton(const char* icon, const QString& name,
                                           const QString& toolTip, int priority) {
    auto* const button = new QToolButton;
    button->setIcon(IconFactory::icon(QLatin1String(icon)));
    button->setAutoRaise(true);
    button->setToolTip(toolTip);
    button->setAccessibleName(name);
    bar->addOverflowItem(button, name, priority);
    return button;
}

/** Opened by a click, also one from the menu that the button may have moved into. */
QToolButton* CurveEditorPrivate::addMenuButton(const char* icon, const QString& name,
                                               const QString& toolTip, int priority,
                                               void (CurveEditorPrivate::*fill)(QMenu* menu)) {
    QToolButton* const button = addButton(icon, name, toolTip, priority);
    auto* const menu = new QMenu(button);
    QObject::connect(button, &QToolButton::clicked, q, [this, button, menu, fill] {
        menu->clear();
        (this->*fill)(menu);
        menu->popup(
            button->isVisible()
                ? button->mapToGlobal(QPoint(0, button->height()))
                : bar->mapToGlobal(QPoint(bar->width() - menu->sizeHint().width(), bar->height())));
    });
    return button;
}

ChoiceBar* CurveEditorPrivate::scaleBar(const QString& name, bool isX) {
    auto* const scale = new ChoiceBar;
    // In the order of CurveView::AxisScale.
    for (const QString& text :
         {CurveEditor::tr("Linear"), CurveEditor::tr("Logarithmic"), CurveEditor::tr("Shadows")})
        scale->addChoice(text);
    scale->setAccessibleName(name);
    scale->setCurrentIndex(isX ? view->xScale() : view->yScale());
    QObject::connect(scale, &ChoiceBar::valueEdited, view, [this, isX](int index) {
        const auto chosen = CurveView::AxisScale(index);
        isX ? view->setXScale(chosen) : view->setYScale(chosen);
    });
    return scale;
}

void CurveEditorPrivate::fillEyes(QMenu* menu) {
    const int count = model ? model->count() : 0;
    const auto show = [this](int from, int to, bool visible) {
        const QPointer<CurveView> alive(view);
        for (int curve = from; alive && curve < to; ++curve)
            view->setCurveVisible(curve, visible);
    };
    QObject::connect(menu->addAction(CurveEditor::tr("All")), &QAction::triggered, q,
                     [show, count] { show(0, count, true); });
    // The one that is edited stays.
    QObject::connect(menu->addAction(CurveEditor::tr("No Others")), &QAction::triggered, q,
                     [show, count] { show(0, count, false); });
    menu->addSeparator();
    for (int curve = 0; curve < count; ++curve) {
        QAction* const action = menu->addAction(inMenu(model->name(curve)));
        action->setCheckable(true);
        action->setChecked(view->isCurveVisible(curve));
        action->setEnabled(curve != view->currentCurve());
        QObject::connect(action, &QAction::triggered, q,
                         [show, curve](bool visible) { show(curve, curve + 1, visible); });
    }
}

void CurveEditorPrivate::fillScales(QMenu* menu) {
    auto* const panel = new QWidget;
    panel->setMinimumWidth(ScalesWidth);
    auto* const form = new QFormLayout(panel);
    // Times are drawn evenly.
    if (!view->timeAxis())
        form->addRow(CurveEditor::tr("X"), scaleBar(CurveEditor::tr("Scale of x"), true));
    form->addRow(CurveEditor::tr("Y"), scaleBar(CurveEditor::tr("Scale of y"), false));
    auto* const base = new LinearSlider;
    base->setRange(2.0, 256.0);
    base->setExponent(BaseExponent);
    base->setDefaultValue(64.0);
    base->setValue(view->shadowBase());
    base->setAccessibleName(CurveEditor::tr("How far shadows are opened"));
    QObject::connect(base, &LinearSlider::valueEdited, view, &CurveView::setShadowBase);
    form->addRow(CurveEditor::tr("Shadows"), base);
    auto* const action = new QWidgetAction(menu);
    action->setDefaultWidget(panel);
    menu->addAction(action);
}

void CurveEditorPrivate::fillPresets(QMenu* menu) {
    const auto add = [this, menu](const CurvePreset& preset) {
        QAction* const action = menu->addAction(inMenu(preset.name));
        QObject::connect(action, &QAction::triggered, q,
                         [this, preset] { q->applyPreset(preset.name, preset.text); });
    };
    const std::vector<CurvePreset> saved = savedCurvePresets();
    for (const auto& group : {builtInCurvePresets(), saved, folder.presets()}) {
        if (!group.empty())
            menu->addSeparator();
        for (const CurvePreset& preset : group)
            add(preset);
    }
    addSaving(menu, saved);
    // Those that were read while the menu is open come into it.
    const QPointer<QMenu> open(menu);
    folder.refresh([this, open] {
        if (!open || !open->isVisible())
            return;
        open->clear();
        fillPresets(open);
    });
}

void CurveEditorPrivate::addSaving(QMenu* menu, const std::vector<CurvePreset>& saved) {
    menu->addSeparator();
    QObject::connect(menu->addAction(CurveEditor::tr("Save Curve...")), &QAction::triggered, q,
                     [this] { askForName(); });
    if (saved.empty())
        return;
    QMenu* const forget = menu->addMenu(CurveEditor::tr("Forget"));
    for (const CurvePreset& preset : saved) {
        QObject::connect(forget->addAction(inMenu(preset.name)), &QAction::triggered, q,
                         [this, name = preset.name] { q->removePreset(name); });
    }
}

void CurveEditorPrivate::askForName() {
    auto* const dialog = new QInputDialog(q);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(CurveEditor::tr("Save Curve"));
    dialog->setLabelText(CurveEditor::tr("Name of the preset"));
    dialog->setOkButtonText(CurveEditor::tr("Save"));
    QObject::connect(dialog, &QInputDialog::textValueSelected, q, &CurveEditor::savePreset);
    dialog->open();
}

void CurveEditorPrivate::fillCopies(QMenu* menu) {
    if (!model)
        return;
    if (model->count() > 2) {
        QObject::connect(menu->addAction(CurveEditor::tr("All Others")), &QAction::triggered, q,
                         [this] { q->copyToOthers(); });
        menu->addSeparator();
    }
    for (int curve = 0; curve < model->count(); ++curve) {
        if (curve == view->currentCurve())
            continue;
        QAction* const action =
            menu->addAction(model->name(curve).replace(QLatin1Char('&'), QLatin1String("&&")));
        QObject::connect(action, &QAction::triggered, q, [this, curve] { q->copyToOthers(curve); });
    }
}

} // namespace Kestrel::UI
