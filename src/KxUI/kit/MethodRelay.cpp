#include <KxUI/kit/MethodRelay_p.h>

#include <utility>

namespace Kestrel::UI {

MethodRelay::MethodRelay(const QObject* sender, const QMetaMethod& signal,
                         std::function<void()> told, QObject* parent)
    : QObject(parent)
    , m_told(std::move(told)) {
    const int slot = staticMetaObject.indexOfSlot("tell()");
    m_connected = signal.isValid() && connect(sender, signal, this, staticMetaObject.method(slot));
}

void MethodRelay::tell() {
    const std::function<void()> told = m_told; // outlives the relay
    told();
}

} // namespace Kestrel::UI
