#pragma once

#include <QPointer>
#include <QString>
#include <QVariantMap>

#include <algorithm>

namespace Kestrel::UI {

/** Sets what a saved state knows of. Handlers of what is set may delete the scope: then the rest is not. */
template <class Scope>
class ScopeState {
public:
    ScopeState(const QVariantMap& state, Scope* scope)
        : m_state(state)
        , m_scope(scope) {}

    /** Calls `set` with the value. */
    template <class Set>
    void take(const QString& key, Set set) {
        const auto found = m_state.find(key);
        if (m_scope && found != m_state.end())
            set(*found);
    }
    void flag(const QString& key, void (Scope::*set)(bool)) {
        take(key, [&](const QVariant& value) { (m_scope->*set)(value.toBool()); });
    }
    /** One of the choices 0 to `last`; the nearest one. */
    template <class Choice>
    void choice(const QString& key, void (Scope::*set)(Choice), int last) {
        take(key, [&](const QVariant& value) {
            (m_scope->*set)(Choice(std::clamp(value.toInt(), 0, last)));
        });
    }

private:
    const QVariantMap& m_state;
    QPointer<Scope> m_scope;
};

} // namespace Kestrel::UI
