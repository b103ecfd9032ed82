#pragma once

#include <QMetaMethod>
#include <QObject>

#include <functional>

namespace Kestrel::UI {

/** Calls a function for a signal that is known by the meta-object only; the arguments are left
    out. Ends when it is destroyed, which may happen in the call. */
class MethodRelay : public QObject {
    Q_OBJECT

public:
    MethodRelay(const QObject* sender, const QMetaMethod& signal, std::function<void()> told,
                QObject* parent = nullptr);

    /** Whether there is such a signal. */
    bool isConnected() const { return m_connected; }

public Q_SLOTS:
    void tell();

private:
    std::function<void()> m_told;
    bool m_connected;
};

} // namespace Kestrel::UI
