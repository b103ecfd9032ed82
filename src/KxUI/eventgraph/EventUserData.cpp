#include <KxUI/eventgraph/EventUserDataInt.h>
#include <KxUI/eventgraph/EventUserDataPtr.h>
#include <KxUI/eventgraph/EventUserDataQObject.h>
#include <KxUI/eventgraph/EventUserDataQObjectEvent.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <KxUI/eventgraph/EventUserDataVarList.h>

#include <QMetaObject>
#include <QObject>

namespace Kestrel::UI {
namespace {

QString hexadecimal(const void* pointer) {
    return QLatin1String("0x") + QString::number(reinterpret_cast<quintptr>(pointer), 16);
}

QString decimalAndHexadecimal(int value) {
    return QString::number(value) + QLatin1String(" (0x") +
           QString::number(static_cast<quint32>(value), 16) + QLatin1Char(')');
}

QString describe(const QObject* object) {
    QString text;
    if (!object)
        return text;
    if (const QString name = object->objectName(); !name.isEmpty())
        text += QLatin1String(" (") + name + QLatin1Char(')');
    for (const QMetaObject* meta = object->metaObject(); meta; meta = meta->superClass())
        text += QLatin1String(" = ") + QLatin1String(meta->className());
    return text;
}

} // namespace

IEventUserData::~IEventUserData() = default;

// Not inline: compilers that guess the class warn about the guess.
void IEventUserData::destroy() noexcept {
    delete this;
}

EventUserDataInt::EventUserDataInt(int value)
    : m_value(value) {}

QString EventUserDataInt::text() const {
    return decimalAndHexadecimal(m_value);
}

EventUserDataPtr::EventUserDataPtr(void* pointer)
    : m_pointer(pointer) {}

QString EventUserDataPtr::text() const {
    return hexadecimal(m_pointer);
}

EventUserDataString::EventUserDataString(const QString& text)
    : m_text(text) {}

QString EventUserDataString::text() const {
    return m_text;
}

EventUserDataQObject::EventUserDataQObject(QObject* object)
    : m_object(object)
    , m_description(describe(object)) {}

QString EventUserDataQObject::text() const {
    return hexadecimal(m_object) + m_description;
}

EventUserDataQObjectEvent::EventUserDataQObjectEvent(QObject* receiver, int eventType)
    : EventUserDataQObject(receiver)
    , m_eventType(eventType) {}

QString EventUserDataQObjectEvent::text() const {
    return QLatin1String("Event=") + decimalAndHexadecimal(m_eventType) +
           QLatin1String(", RxObject=") + EventUserDataQObject::text();
}

EventUserDataVarList::EventUserDataVarList() = default;

void EventUserDataVarList::append(const QString& name, const QVariant& value) {
    m_values.emplace_back(name, value);
}

QString EventUserDataVarList::text() const {
    QString text;
    for (const auto& [name, value] : m_values)
        text += name + QLatin1String(" = ") + value.toString() + QLatin1Char('\n');
    return text;
}

} // namespace Kestrel::UI
