#pragma once

#include <KxUI/eventgraph/IEventUserData.h>

namespace Kestrel::UI {

/** User data: an integer, shown as "42 (0x2a)". */
class KXUI_EXPORT EventUserDataInt : public IEventUserData {
public:
    /** Keeps the value. */
    explicit EventUserDataInt(int value);

    /** Decimal and hexadecimal; a negative value has 8 hexadecimal digits. */
    QString text() const override;

private:
    int m_value;
};

} // namespace Kestrel::UI
