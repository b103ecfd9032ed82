#pragma once

#include <KxUI/Export.h>

#include <QString>
#include <QVariant>
#include <QVector>

#include <functional>
#include <memory>

namespace Kestrel::UI {

/** Lasts as long as its holder wants to be told: see IParameter::watch(). May outlive the
    parameter. */
class KXUI_EXPORT ParameterWatch {
public:
    ParameterWatch() = default;
    ParameterWatch(const ParameterWatch&) = delete;
    ParameterWatch& operator=(const ParameterWatch&) = delete;
    virtual ~ParameterWatch();
};

/** A parameter of the host, as a widget sees it: a value that can be read, written and told about.
    The host implements it and keeps it; a widget borrows it, see ParameterBinding. Interface
    thread. */
class KXUI_EXPORT IParameter {
public:
    IParameter();
    IParameter(const IParameter&) = delete;
    IParameter& operator=(const IParameter&) = delete;
    virtual ~IParameter();

    /** The value; of a type that the widget's value converts to and from. */
    virtual QVariant value() const = 0;

    /** Sets the value and tells the watchers if it became another one. False where it was refused.
        May take another value than it was given, of a limited range for instance: read it back. */
    virtual bool setValue(const QVariant& value) = 0;

    /** Whether the user may change the value now. */
    virtual bool isEnabled() const;
    /** Asks for that to become otherwise; a parameter that does not know how ignores it. */
    virtual void setEnabled(bool enabled);

    /** Invalid where there is none. */
    virtual QVariant minimum() const;
    virtual QVariant maximum() const;
    virtual QVariant defaultValue() const;

    /** What the user calls it; empty where there is no name. */
    virtual QString label() const;

    /** Where it has keys, for a parameter that is animated over frames; in rising order. */
    virtual QVector<double> keys() const;

    /** Around the calls of setValue() that the user takes for one: one step of the host's history,
        or none where it is not accepted, whose last call of setValue() brought back the value at
        the start. `what` is a text for the history, empty if the widget has none. Come in pairs. */
    virtual void beginEdit(const QString& what);
    virtual void endEdit(bool accepted);

    /** `changed` is called after every change of value or state, by whomever, until the watch is
        destroyed, which may happen in the call itself. */
    virtual std::unique_ptr<ParameterWatch> watch(std::function<void()> changed) = 0;

    /** Expires with the parameter: for who borrows it. */
    std::weak_ptr<const void> lifetime() const { return m_lifetime; }

private:
    const std::shared_ptr<const void> m_lifetime;
};

} // namespace Kestrel::UI
