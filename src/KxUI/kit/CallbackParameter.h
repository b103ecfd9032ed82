#pragma once

#include <KxUI/kit/IParameter.h>

namespace Kestrel::UI {

/** A parameter made of functions of the host. Interface thread. */
class KXUI_EXPORT CallbackParameter : public IParameter {
public:
    /** What value() returns, and what setValue(), beginEdit(), endEdit() and setEnabled() do. */
    using Read = std::function<QVariant()>;
    using Write = std::function<bool(const QVariant&)>;
    using Begin = std::function<void(const QString& what)>;
    using End = std::function<void(bool accepted)>;
    using Enable = std::function<void(bool enabled)>;

    /** `write` stores a value as IParameter::setValue() does, and returns false where it refuses;
        the watchers are told here. Without `write` every value is refused, without `read` the value
        is invalid. */
    explicit CallbackParameter(Read read, Write write = Write());
    ~CallbackParameter() override;

    /** What beginEdit() and endEdit() call. */
    void setBracket(Begin begin, End end);
    /** What setEnabled() calls before it takes effect here. */
    void setEnabler(Enable enable);

    /** What the functions of the same names return, which tells the watchers. */
    void setRange(const QVariant& minimum, const QVariant& maximum);
    void setDefaultValue(const QVariant& value);
    void setLabel(const QString& label);
    void setKeys(const QVector<double>& keys);

    /** The value was changed by somebody else: tells the watchers. */
    void notify();

    QVariant value() const override;
    bool setValue(const QVariant& value) override;
    bool isEnabled() const override;
    void setEnabled(bool enabled) override;
    QVariant minimum() const override;
    QVariant maximum() const override;
    QVariant defaultValue() const override;
    QString label() const override;
    QVector<double> keys() const override;
    void beginEdit(const QString& what) override;
    void endEdit(bool accepted) override;
    std::unique_ptr<ParameterWatch> watch(std::function<void()> changed) override;

private:
    struct Private;
    const std::shared_ptr<Private> m; // outlives a function that destroys the parameter
};

} // namespace Kestrel::UI
