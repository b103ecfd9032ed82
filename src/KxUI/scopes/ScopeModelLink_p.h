#pragma once

#include <KxUI/scopes/ScopeModel.h>

#include <QPointer>
#include <QWidget>

namespace Kestrel::UI {

/** Makes `view` borrow another model. Its private part is told by modelChanged() and modelGone(), and
    says by askModel() what is needed. Whether the model is another one. */
template <class Private>
bool borrowScopeModel(QWidget* view, Private& part, QPointer<ScopeModel>& held,
                      ScopeModel* wanted) {
    if (held == wanted)
        return false;
    if (held) {
        QObject::disconnect(held, nullptr, view, nullptr);
        held->require(view, {});
    }
    held = wanted;
    if (wanted) {
        QObject::connect(wanted, &ScopeModel::changed, view,
                         [&part](ScopeModel::Changes changes) { part.modelChanged(changes); });
        QObject::connect(wanted, &QObject::destroyed, view, [&part] { part.modelGone(); });
    }
    part.askModel();
    return true;
}

} // namespace Kestrel::UI
