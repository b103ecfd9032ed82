#include <KxUI/kit/CallbackParameter.h>

#include <KxUI/kit/ParameterFacts_p.h>

#include <utility>

namespace Kestrel::UI {

struct CallbackParameter::Private : ParameterFacts {
    Read read;
    Write write;
    Begin begin;
    End end;
    Enable enable;
    QVector<double> keys;
};

CallbackParameter::CallbackParameter(Read read, Write write)
    : m(std::make_shared<Private>()) {
    m->read = std::move(read);
    m->write = std::move(write);
}

CallbackParameter::~CallbackParameter() = default;

void CallbackParameter::setBracket(Begin begin, End end) {
    m->begin = std::move(begin);
    m->end = std::move(end);
}

void CallbackParameter::setEnabler(Enable enable) {
    m->enable = std::move(enable);
}

void CallbackParameter::setRange(const QVariant& minimum, const QVariant& maximum) {
    m->setRange(minimum, maximum);
}

void CallbackParameter::setDefaultValue(const QVariant& value) {
    m->set(m->defaultValue, value);
}

void CallbackParameter::setLabel(const QString& label) {
    m->set(m->label, label);
}

void CallbackParameter::setKeys(const QVector<double>& keys) {
    m->set(m->keys, keys);
}

void CallbackParameter::notify() {
    m->watchers.tell();
}

QVariant CallbackParameter::value() const {
    return m->read ? m->read() : QVariant();
}

bool CallbackParameter::setValue(const QVariant& value) {
    const std::shared_ptr<Private> data = m;
    const QVariant before = this->value();
    if (!data->write || !data->write(value))
        return false;
    if (!data->read || data->read() != before)
        data->watchers.tell();
    return true;
}

bool CallbackParameter::isEnabled() const {
    return m->enabled;
}

void CallbackParameter::setEnabled(bool enabled) {
    if (enabled == m->enabled)
        return;
    const std::shared_ptr<Private> data = m;
    if (data->enable)
        data->enable(enabled);
    data->set(data->enabled, enabled);
}

QVariant CallbackParameter::minimum() const {
    return m->minimum;
}

QVariant CallbackParameter::maximum() const {
    return m->maximum;
}

QVariant CallbackParameter::defaultValue() const {
    return m->defaultValue;
}

QString CallbackParameter::label() const {
    return m->label;
}

QVector<double> CallbackParameter::keys() const {
    return m->keys;
}

void CallbackParameter::beginEdit(const QString& what) {
    const std::shared_ptr<Private> data = m;
    if (data->begin)
        data->begin(what);
}

void CallbackParameter::endEdit(bool accepted) {
    const std::shared_ptr<Private> data = m;
    if (data->end)
        data->end(accepted);
}

std::unique_ptr<ParameterWatch> CallbackParameter::watch(std::function<void()> changed) {
    return m->watchers.add(std::move(changed));
}

} // namespace Kestrel::UI
