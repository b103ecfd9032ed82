#pragma once

#include <KxUI/eventgraph/EventUserDataQObject.h>

namespace Kestrel::UI {

/** User data: a Qt event on its way to an object, shown as
    "Event=12 (0xc), RxObject=" and the text of the object. */
class KXUI_EXPORT EventUserDataQObjectEvent : public EventUserDataQObject {
public:
    /** `receiver` may be null; `eventType` is a QEvent::Type. */
    EventUserDataQObjectEvent(QObject* receiver, int eventType);

    QString text() const override;

private:
    int m_eventType;
};

} // namespace Kestrel::UI
