#include <KxUI/curveedit/CurveEdit_p.h>

#include <KxUI/curveedit/CurveView_p.h>

namespace Kestrel::UI {

CurveEdit::CurveEdit(CurveView* view)
    : EditGestures(view)
    , m_view(view) {}

// Not at the press already: keys by the hundred thousand are many bytes.
void CurveEdit::save() {
    m_start.clear();
    const CurveModel* const model = m_view->model();
    if (!model)
        return;
    for (int curve = 0; curve < model->count(); ++curve) {
        if (CurveViewPrivate::of(m_view)->isEditable(curve))
            m_start.push_back({curve, model->save(curve)});
    }
}

void CurveEdit::goToStart() {
    const QPointer<QWidget> alive(m_view);
    const QPointer<CurveModel> model(m_view->model());
    const std::vector<Saved> start = std::exchange(m_start, {});
    ++m_changing;
    for (const Saved& saved : start) {
        if (!alive || !model)
            break;
        if (saved.curve < model->count())
            model->load(saved.curve, saved.bytes);
    }
    if (!alive)
        return;
    --m_changing;
    tellEdited();
}

bool CurveEdit::tellEdited() {
    const QPointer<QWidget> alive(m_view);
    Q_EMIT m_view->edited();
    return !alive.isNull();
}

void CurveEdit::tellStarted() {
    Q_EMIT m_view->editStarted(m_text);
}

// However it ends, also by what takes it back from outside of the view.
void CurveEdit::tellFinished(bool accepted) {
    m_start.clear();
    CurveViewPrivate::of(m_view)->endDrag();
    Q_EMIT m_view->editFinished(accepted);
}

} // namespace Kestrel::UI
