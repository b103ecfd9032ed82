#pragma once

#include <KxUI/eventgraph/IEventUserData.h>

namespace Kestrel::UI {

/** User data: an address, shown as "0x7f00". What it points to is never read. */
class KXUI_EXPORT EventUserDataPtr : public IEventUserData {
public:
    /** Keeps the address, which may be null or of something that is gone. */
    explicit EventUserDataPtr(void* pointer);

    QString text() const override;

private:
    void* m_pointer;
};

} // namespace Kestrel::UI
