#pragma once

#include <KxUI/eventgraph/IEventUserData.h>

namespace Kestrel::UI {

/** User data: an address, shown as "0x7f00". What it points to is never read. */
class KXUI_EXPORT EventUserDataPtr : public IEventUserData {
public:
    explicit EventUserDataPtr(void* pointer);

    QString text() const override;

private:
    void* m_pointer;
};

} // namespace Kestrel::UI
