#pragma once

#include <KxUI/kit/IParameter.h>

#include <QByteArray>

class QObject;

namespace Kestrel::UI {

/** A property of a QObject as a parameter; its NOTIFY signal tells the watchers. Without one only
    setValue() does. Interface thread. */
class KXUI_EXPORT PropertyParameter : public IParameter {
public:
    /** The object is borrowed. Where it is null, goes away or has no such property, the parameter
        has no value, refuses every one and is not enabled. Dynamic properties count, too. */
    PropertyParameter(QObject* object, const QByteArray& property);
    ~PropertyParameter() override;

    /** What the functions of the same names return, which tells the watchers. */
    void setRange(const QVariant& minimum, const QVariant& maximum);
    void setDefaultValue(const QVariant& value);
    /** At first the property's name. */
    void setLabel(const QString& label);

    QVariant value() const override;
    /** Refused also where the property can not be written or the value not be converted. */
    bool setValue(const QVariant& value) override;
    bool isEnabled() const override;
    void setEnabled(bool enabled) override;
    QVariant minimum() const override;
    QVariant maximum() const override;
    QVariant defaultValue() const override;
    QString label() const override;
    std::unique_ptr<ParameterWatch> watch(std::function<void()> changed) override;

private:
    struct Private;
    const std::shared_ptr<Private> m; // outlives a setter that destroys the parameter
};

} // namespace Kestrel::UI
