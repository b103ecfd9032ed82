#pragma once

#include <QAccessibleWidget>

namespace Kestrel::UI {

/** What assistive technology sees of every widget that shows a number: a role, a name, and a value
    that can be read, set and told in words. */
class ValueAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    ValueAccessible(QWidget* widget, QAccessible::Role role);

    QString text(QAccessible::Text kind) const final;
    void* interface_cast(QAccessible::InterfaceType type) override;

protected:
    /** The value as it is spoken. Empty: as Qt would say it. */
    virtual QString valueText() const = 0;
    /** What it is called where the host did not say. */
    virtual QString standardName() const { return QString(); }

    template <class Widget>
    Widget* widgetAs() const {
        return static_cast<Widget*>(object());
    }
};

/** The same of a widget whose value has a range: minimum() to maximum(). */
template <class Widget>
class RangeAccessible : public ValueAccessible {
public:
    using ValueAccessible::ValueAccessible;

    QVariant maximumValue() const final { return widgetAs<Widget>()->maximum(); }
    QVariant minimumValue() const final { return widgetAs<Widget>()->minimum(); }
};

/** Makes Qt create `Interface` for the widgets of this class and of those derived from it. */
template <class Interface, class Widget>
void installAccessible() {
    static const bool installed = [] {
        QAccessible::installFactory([](const QString& name, QObject* object) {
            QAccessibleInterface* made = nullptr;
            if (name == QLatin1String(Widget::staticMetaObject.className())) {
                if (auto* widget = qobject_cast<Widget*>(object))
                    made = new Interface(widget);
            }
            return made;
        });
        return true;
    }();
    Q_UNUSED(installed)
}

/** Tells assistive technology, if there is any, that a widget shows another value. */
void tellAccessibleValue(QWidget* widget, const QVariant& value);

} // namespace Kestrel::UI
