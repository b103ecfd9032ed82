#include <KxUI/curveedit/CurveEditor.h>

#include <KxUI/curveedit/CurveEditor_p.h>
#include <KxUI/curveedit/CurveView_p.h>
#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/kit/ChoiceButton.h>
#include <KxUI/kit/CollapsibleToolbar.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/values/DoubleSpinBox.h>

#include <QEvent>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::UI {

namespace {

/** Coordinates of floats have more digits than were meant. */
constexpr double Rounding = 1e-6;

double numberOf(const CurveModel::Knot& knot, CurveShift::Axis axis) {
    return axis == CurveShift::X ? knot.x : knot.y;
}

/** Without touching a number that says the same already, with more digits of its own. */
void showNumber(DoubleSpinBox* box, double number) {
    if (std::abs(box->value() - number) > Rounding * std::max(1.0, std::abs(number)))
        box->setValue(number);
}

} // namespace

CurveEditor::CurveEditor(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<CurveEditorPrivate>(this)) {
    qRegisterMetaType<Tools>();
    d->build();
}

CurveEditor::~CurveEditor() {
    // What they tell while they go must not reach the data, which go first.
    disconnect(d->view, nullptr, this, nullptr);
    if (d->model)
        disconnect(d->model, nullptr, this, nullptr);
    delete d->bar;
    delete d->view;
}

CurveView* CurveEditor::view() const {
    return d->view;
}

CurveModel* CurveEditor::model() const {
    return d->view->model();
}

void CurveEditor::setModel(CurveModel* model) {
    KXUI_INTERFACE_THREAD(this);
    d->view->setModel(model);
}

CurveEditor::Tools CurveEditor::tools() const {
    return d->tools;
}

void CurveEditor::setTools(Tools tools) {
    KXUI_INTERFACE_THREAD(this);
    if (tools == d->tools)
        return;
    d->tools = tools;
    d->showTools();
    Q_EMIT toolsChanged(tools);
}

QString CurveEditor::presetFolder() const {
    return d->folder.folder();
}

void CurveEditor::setPresetFolder(const QString& folder) {
    KXUI_INTERFACE_THREAD(this);
    if (folder == d->folder.folder())
        return;
    d->folder.setFolder(folder);
    Q_EMIT presetFolderChanged(folder);
}

bool CurveEditor::isEditing() const {
    return d->view->isEditing();
}

void CurveEditor::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->view->cancelEdit();
}

void CurveEditor::resetCurve() {
    KXUI_INTERFACE_THREAD(this);
    if (d->isUnitSquare())
        d->loadOnce(tr("reset"), {d->view->currentCurve()}, "(0, 0), (1, 1)");
}

void CurveEditor::applyPreset(const QString& name, const QByteArray& text) {
    KXUI_INTERFACE_THREAD(this);
    if (!model() || model()->count() == 0)
        return;
    const QPointer<CurveEditor> self(this);
    if (!d->loadOnce(name, {d->view->currentCurve()}, text) && self)
        CurveViewPrivate::of(d->view)->say(tr("\"%1\" is no curve that fits here").arg(name));
}

QStringList CurveEditor::savedPresets() const {
    QStringList names;
    for (const CurvePreset& each : savedCurvePresets())
        names.append(each.name);
    return names;
}

bool CurveEditor::savePreset(const QString& name) {
    KXUI_INTERFACE_THREAD(this);
    return d->isUnitSquare() && saveCurvePreset(name, model()->save(d->view->currentCurve()));
}

void CurveEditor::removePreset(const QString& name) {
    KXUI_INTERFACE_THREAD(this);
    removeCurvePreset(name);
}

void CurveEditor::copyToOthers(int curve) {
    KXUI_INTERFACE_THREAD(this);
    const CurveModel* const model = d->view->model();
    const int current = d->view->currentCurve();
    if (!model || current >= model->count())
        return;
    std::vector<int> others;
    for (int other = 0; other < model->count(); ++other) {
        if (other != current && (curve < 0 || other == curve))
            others.push_back(other);
    }
    if (!others.empty())
        d->loadOnce(others.size() == 1 ? tr("copy to %1").arg(model->name(others.front()))
                                       : tr("copy to others"),
                    others, model->save(current));
}

void CurveEditor::editNumbers() {
    KXUI_INTERFACE_THREAD(this);
    DoubleSpinBox* const number = d->numbers[CurveShift::Y];
    if (!number->isVisibleTo(this) || !number->isEnabled())
        return;
    number->setFocus(Qt::ShortcutFocusReason);
    number->selectAll();
}

void CurveEditor::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        d->showCurves();
}

CurveEditorPrivate::CurveEditorPrivate(CurveEditor* editor)
    : q(editor) {}

CurveEdit& CurveEditorPrivate::edit() const {
    return CurveViewPrivate::of(view)->edit;
}

void CurveEditorPrivate::showModel() {
    if (model)
        QObject::disconnect(model, nullptr, q, nullptr);
    model = view->model();
    if (model) {
        QObject::connect(model, &CurveModel::curvesChanged, q, [this] {
            showCurves();
            showCurrent();
        });
        QObject::connect(model, &CurveModel::knotsChanged, q, [this] { showSelection(); });
    }
    showCurves();
    showCurrent();
}

/** What the curves are called and drawn in. */
void CurveEditorPrivate::showCurves() {
    const int count = model ? model->count() : 0;
    while (choices->choiceCount() > count)
        choices->removeChoice(choices->choiceCount() - 1);
    while (choices->choiceCount() < count)
        choices->addChoice({});
    for (int curve = 0; curve < count; ++curve) {
        // A letter of the name is none for the keyboard.
        choices->setChoiceText(curve,
                               model->name(curve).replace(QLatin1Char('&'), QLatin1String("&&")));
        choices->setChoiceColor(curve, model->color(curve, q->palette()));
    }
    choices->setCurrentIndex(count > 0 ? view->currentCurve() : -1);
}

/** What can be done to the current curve. */
void CurveEditorPrivate::showCurrent() {
    const int curve = view->currentCurve();
    if (model && curve < model->count()) {
        choices->setCurrentIndex(curve);
        const CurveModel::Limits limits = model->limits(curve);
        numbers[CurveShift::X]->setRange(limits.lowX, limits.highX);
        numbers[CurveShift::Y]->setRange(limits.lowY, limits.highY);
        numbers[CurveShift::X]->setSingleStep(limits.stepX > 0.0 ? limits.stepX : 0.01);
    }
    showTools();
    showSelection();
}

void CurveEditorPrivate::showTools() {
    const int curve = view->currentCurve();
    const bool hasCurve = model && curve < model->count();
    const bool isSeveral = model && model->count() > 1;
    const bool isSquare = isUnitSquare();
    const auto abilities = hasCurve ? model->abilities(curve) : CurveModel::Abilities();
    const auto has = [this](CurveEditor::Tool tool) { return tools.testFlag(tool); };
    choices->setVisible(isSeveral && has(CurveEditor::CurveChoice));
    bar->setItemVisible(eyes, isSeveral && has(CurveEditor::CurveEyes));
    for (QWidget* part : numberParts)
        bar->setItemVisible(part, has(CurveEditor::Numbers));
    bar->setItemVisible(shapes,
                        has(CurveEditor::Shapes) && abilities.testFlag(CurveModel::HasShapes));
    bar->setItemVisible(snap, has(CurveEditor::Snap));
    bar->setItemVisible(frame, has(CurveEditor::Frame));
    bar->setItemVisible(showAll, has(CurveEditor::ShowAll));
    bar->setItemVisible(scales, has(CurveEditor::Scales));
    bar->setItemVisible(reset, has(CurveEditor::Reset) && isSquare);
    bar->setItemVisible(presets, has(CurveEditor::Presets) && isSquare);
    bar->setItemVisible(copies, has(CurveEditor::CopyToOthers) && isSeveral);
}

void CurveEditorPrivate::showSelection() {
    const std::vector<CurvePlace> places = selection();
    for (const auto axis : {CurveShift::X, CurveShift::Y}) {
        DoubleSpinBox* const box = numbers[axis];
        const bool moves = axis == CurveShift::Y ||
                           std::all_of(places.begin(), places.end(), [&](const CurvePlace& each) {
                               return model->abilities(each.curve).testFlag(CurveModel::CanMoveX);
                           });
        box->setEnabled(!places.empty() && moves);
        if (places.empty()) {
            box->setMixed(true); // there is no number
            continue;
        }
        const auto valueOf = [&](const CurvePlace& each) {
            return numberOf(model->knot(each.curve, each.knot), axis);
        };
        const double value = valueOf(places.back());
        showNumber(box, value);
        if (!box->isEditing())
            box->setMixed(std::any_of(places.begin(), places.end(), [&](const CurvePlace& each) {
                return valueOf(each) != value;
            }));
    }
    int shape = -1;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const int own = model->knot(places[i].curve, places[i].knot).shape;
        shape = i == 0 || own == shape ? own : -1;
        if (shape < 0)
            break;
    }
    shapes->setEnabled(!places.empty());
    if (!shapes->isEditing())
        shapes->setCurrentIndex(shape);
}

std::vector<CurvePlace> CurveEditorPrivate::selection() const {
    std::vector<CurvePlace> places;
    if (!model || !view->model())
        return places;
    for (const CurveKnot& each : CurveViewPrivate::of(view)->selected())
        places.push_back({each.curve, each.knot});
    return places;
}

bool CurveEditorPrivate::isUnitSquare() const {
    const CurveViewPrivate* const shown = CurveViewPrivate::of(view);
    return shown->hasCurve(view->currentCurve()) && shown->isUnitSquare(view->currentCurve());
}

/** In the edit of a field. */
void CurveEditorPrivate::moveInField(const std::vector<CurveModel::Move>& moves) {
    const bool changes = std::any_of(moves.begin(), moves.end(), [this](const auto& move) {
        const CurveModel::Knot knot = model->knot(move.curve, move.knot);
        return knot.x != move.x || knot.y != move.y;
    });
    if (!changes)
        return showSelection();
    const int count = int(moves.size());
    const QString what =
        count == 1 ? CurveView::tr("move knot") : CurveView::tr("move %n knots", nullptr, count);
    const QPointer<CurveEditor> self(q);
    edit().change(what, [this, moves] { model->move(moves); });
    if (self)
        showSelection();
}

void CurveEditorPrivate::editNumber(CurveShift::Axis axis, double value) {
    const std::vector<CurvePlace> places = selection();
    if (places.size() == 1)
        moveInField(CurveShift::moveTo(*model, places.front(), axis, value));
    else if (!places.empty())
        moveInField(CurveShift::moveBy(
            *model, places, axis,
            value - numberOf(model->knot(places.back().curve, places.back().knot), axis)));
}

void CurveEditorPrivate::editEach(CurveShift::Axis axis, QChar operation, double operand) {
    const std::vector<CurvePlace> places = selection();
    if (!places.empty())
        moveInField(CurveShift::moveEach(*model, places, axis, operation, operand));
}

/** In the edit of the shapes' field. */
void CurveEditorPrivate::editShape(int shape) {
    std::vector<std::pair<int, std::vector<int>>> all;
    for (const CurvePlace& each : selection()) {
        if (!model->abilities(each.curve).testFlag(CurveModel::HasShapes) ||
            model->knot(each.curve, each.knot).shape == shape)
            continue;
        if (all.empty() || all.back().first != each.curve)
            all.push_back({each.curve, {}});
        all.back().second.push_back(each.knot);
    }
    if (all.empty())
        return;
    edit().change(CurveView::tr("shape"), [shown = model, all, shape] {
        for (const auto& [curve, knots] : all) {
            if (shown && curve < shown->count())
                shown->setShape(curve, knots, shape);
        }
    });
}

/** One edit; false where a curve did not take the bytes. */
bool CurveEditorPrivate::loadOnce(const QString& what, const std::vector<int>& curves,
                                  const QByteArray& bytes) {
    // What would change nothing is no edit.
    const QPointer<CurveModel> shown = model;
    const bool differs = std::any_of(curves.begin(), curves.end(),
                                     [&](int curve) { return shown->save(curve) != bytes; });
    if (!differs)
        return true;
    bool loaded = true;
    edit().editOnce(what, [shown, curves, bytes, &loaded] {
        for (const int curve : curves) {
            if (shown && curve < shown->count())
                loaded = shown->load(curve, bytes) && loaded;
        }
    });
    return loaded;
}

} // namespace Kestrel::UI
