#pragma once

#include <KxUI/eventgraph/IEventUserData.h>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace Kestrel::UI {

/** User data: a QObject, shown by address, object name and classes:
    "0x55e0 (viewer) = Viewer = QWidget = QObject".

    The object is described while it is known to live, at construction, and never read again. */
class KXUI_EXPORT EventUserDataQObject : public IEventUserData {
public:
    /** `object` may be null. Call on the thread that may read its name. */
    explicit EventUserDataQObject(QObject* object);

    QString text() const override;

private:
    QObject* m_object;
    QString m_description;
};

} // namespace Kestrel::UI
