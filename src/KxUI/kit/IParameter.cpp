#include <KxUI/kit/IParameter.h>

namespace Kestrel::UI {

ParameterWatch::~ParameterWatch() = default;

IParameter::IParameter()
    : m_lifetime(std::make_shared<char>()) {}

IParameter::~IParameter() = default;

bool IParameter::isEnabled() const {
    return true;
}

void IParameter::setEnabled(bool) {}

QVariant IParameter::minimum() const {
    return QVariant();
}

QVariant IParameter::maximum() const {
    return QVariant();
}

QVariant IParameter::defaultValue() const {
    return QVariant();
}

QString IParameter::label() const {
    return QString();
}

QVector<double> IParameter::keys() const {
    return {};
}

void IParameter::beginEdit(const QString&) {}

void IParameter::endEdit(bool) {}

} // namespace Kestrel::UI
