#include <KxUI/kit/PropertyParameter.h>

#include <KxUI/kit/MethodRelay_p.h>
#include <KxUI/kit/ParameterFacts_p.h>

#include <QMetaProperty>
#include <QPointer>

namespace Kestrel::UI {

struct PropertyParameter::Private : ParameterFacts {
    QPointer<QObject> object;
    QByteArray name;
    QMetaProperty property; ///< invalid for a dynamic one
    std::unique_ptr<MethodRelay> relay;
    QMetaObject::Connection destroyed;
    bool writing = false;
    bool told = false; ///< while writing

    void tell() {
        told = true;
        if (!writing)
            watchers.tell();
    }
};

PropertyParameter::PropertyParameter(QObject* object, const QByteArray& property)
    : m(std::make_shared<Private>()) {
    m->object = object;
    m->name = property;
    m->label = QString::fromLatin1(property);
    if (!object)
        return;
    const QMetaObject* type = object->metaObject();
    m->property = type->property(type->indexOfProperty(property.constData()));
    const std::weak_ptr<Private> data = m;
    const auto tell = [data] {
        if (const auto alive = data.lock())
            alive->tell();
    };
    m->relay = std::make_unique<MethodRelay>(object, m->property.notifySignal(), tell);
    m->destroyed = QObject::connect(object, &QObject::destroyed, tell);
}

PropertyParameter::~PropertyParameter() {
    QObject::disconnect(m->destroyed);
}

void PropertyParameter::setRange(const QVariant& minimum, const QVariant& maximum) {
    m->setRange(minimum, maximum);
}

void PropertyParameter::setDefaultValue(const QVariant& value) {
    m->set(m->defaultValue, value);
}

void PropertyParameter::setLabel(const QString& label) {
    m->set(m->label, label);
}

QVariant PropertyParameter::value() const {
    return m->object ? m->object->property(m->name.constData()) : QVariant();
}

bool PropertyParameter::setValue(const QVariant& value) {
    const QVariant before = this->value();
    if (!m->object || !before.isValid())
        return false;
    const std::shared_ptr<Private> data = m;
    data->writing = true;
    data->told = false;
    // QObject::setProperty() returns false for a dynamic property.
    const bool taken = data->property.isValid()
                           ? data->property.write(data->object, value)
                           : (data->object->setProperty(data->name.constData(), value), true);
    data->writing = false;
    const QVariant after =
        data->object ? data->object->property(data->name.constData()) : QVariant();
    if (data->told || after != before)
        data->watchers.tell();
    return taken;
}

bool PropertyParameter::isEnabled() const {
    if (!m->enabled || !m->object)
        return false;
    return m->property.isValid() ? m->property.isWritable() : value().isValid();
}

void PropertyParameter::setEnabled(bool enabled) {
    m->set(m->enabled, enabled);
}

QVariant PropertyParameter::minimum() const {
    return m->minimum;
}

QVariant PropertyParameter::maximum() const {
    return m->maximum;
}

QVariant PropertyParameter::defaultValue() const {
    return m->defaultValue;
}

QString PropertyParameter::label() const {
    return m->label;
}

std::unique_ptr<ParameterWatch> PropertyParameter::watch(std::function<void()> changed) {
    return m->watchers.add(std::move(changed));
}

} // namespace Kestrel::UI
