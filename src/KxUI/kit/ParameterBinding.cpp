#include <KxUI/kit/ParameterBinding.h>

#include <KxUI/kit/IParameter.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/MethodRelay_p.h>
#include <KxUI/kit/RefusalFlash_p.h>

#include <QMetaProperty>
#include <QPointer>
#include <QWidget>

#include <utility>

namespace Kestrel::UI {
namespace {

// Whatever its arguments are: the value is read from the property.
QMetaMethod signalNamed(const QMetaObject* type, const char* name) {
    for (int index = type->methodCount() - 1; index >= 0; --index) {
        const QMetaMethod method = type->method(index);
        if (method.methodType() == QMetaMethod::Signal && method.name() == name)
            return method;
    }
    return {};
}

} // namespace

struct ParameterBinding::Private {
    ParameterBinding* q;
    QWidget* widget;
    IParameter* parameter;
    std::weak_ptr<const void> lifetime;
    QMetaProperty value;
    std::unique_ptr<ParameterWatch> watch = nullptr;
    bool editing = false;    ///< beginEdit() was called
    bool showing = false;    ///< the widget is told the parameter's value
    bool writing = false;    ///< the parameter is told the widget's value
    bool wasEnabled = true;  ///< what the widget was told last
    bool showLater = false;  ///< a change came while showing
    bool writeLater = false; ///< an edit came while either was told

    bool isAlive() const { return !lifetime.expired(); }
    bool isComplete() const;
    void connectAll();
    void begin();
    void finish(bool accepted);
    void write();
    void show();
    void showState();
    void showLimit(const char* name, const QVariant& limit);
    void later(bool& flag, void (Private::*act)());
};

bool ParameterBinding::Private::isComplete() const {
    const QMetaObject* type = widget->metaObject();
    return value.isValid() && value.isWritable() && signalNamed(type, "editStarted").isValid() &&
           signalNamed(type, "valueEdited").isValid() &&
           type->indexOfSignal("editFinished(bool)") >= 0;
}

void ParameterBinding::Private::connectAll() {
    const QMetaObject* type = widget->metaObject();
    const QMetaObject& own = ParameterBinding::staticMetaObject;
    new MethodRelay(
        widget, signalNamed(type, "editStarted"), [this] { begin(); }, q);
    new MethodRelay(
        widget, signalNamed(type, "valueEdited"), [this] { write(); }, q);
    connect(widget, signalNamed(type, "editFinished"), q,
            own.method(own.indexOfSlot("finish(bool)")));
    watch = parameter->watch([this] {
        // What comes of the binding's own writing is read after it.
        if (!writing)
            show();
    });
}

void ParameterBinding::Private::begin() {
    if (!isAlive() || std::exchange(editing, true))
        return;
    const QString label = parameter->label();
    parameter->beginEdit(label.isEmpty() ? widget->accessibleName() : label);
}

void ParameterBinding::Private::finish(bool accepted) {
    if (std::exchange(editing, false) && isAlive())
        parameter->endEdit(accepted);
}

// Not now, where somebody further up is still at it.
void ParameterBinding::Private::later(bool& flag, void (Private::*act)()) {
    if (std::exchange(flag, true))
        return;
    QMetaObject::invokeMethod(
        q,
        [this, &flag, act] {
            flag = false;
            (this->*act)();
        },
        Qt::QueuedConnection);
}

void ParameterBinding::Private::write() {
    if (!isAlive())
        return;
    if (showing || writing) {
        later(writeLater, &Private::write);
        return;
    }
    const QPointer<ParameterBinding> self(q);
    writing = true;
    const bool taken = parameter->setValue(value.read(widget));
    if (!self)
        return;
    writing = false;
    show();
    if (!self || taken || !isAlive())
        return;
    RefusalFlash::over(widget);
    Q_EMIT q->refused();
}

// Whoever hears of the widget's value may destroy everything.
void ParameterBinding::Private::show() {
    if (!isAlive())
        return;
    if (showing) {
        later(showLater, &Private::show);
        return;
    }
    const QPointer<ParameterBinding> self(q);
    showing = true;
    showState();
    const QVariant now = self && isAlive() ? parameter->value() : QVariant();
    if (self && now.isValid())
        value.write(widget, now);
    if (self)
        showing = false;
}

void ParameterBinding::Private::showState() {
    const QPointer<ParameterBinding> self(q);
    showLimit("minimum", parameter->minimum());
    if (self && isAlive())
        showLimit("maximum", parameter->maximum());
    if (self && isAlive())
        showLimit("defaultValue", parameter->defaultValue());
    if (!self || !isAlive())
        return;
    if (widget->accessibleName().isEmpty())
        widget->setAccessibleName(parameter->label());
    const bool enabled = parameter->isEnabled();
    if (std::exchange(wasEnabled, enabled) != enabled)
        widget->setEnabled(enabled);
}

// A slider's ends may be positions where its value is something else.
void ParameterBinding::Private::showLimit(const char* name, const QVariant& limit) {
    const QMetaObject* type = widget->metaObject();
    const QMetaProperty property = type->property(type->indexOfProperty(name));
    if (limit.isValid() && property.isWritable() &&
        qstrcmp(property.typeName(), value.typeName()) == 0)
        property.write(widget, limit);
}

ParameterBinding::ParameterBinding(QWidget* widget, IParameter* parameter)
    : QObject(widget)
    , m(std::make_unique<Private>()) {
    m->q = this;
    m->widget = widget;
    m->parameter = parameter;
    m->lifetime = parameter->lifetime();
    m->value = widget->metaObject()->userProperty();
}

ParameterBinding::~ParameterBinding() {
    m->watch.reset();
    m->finish(true); // the widget says nothing more, and what it said was shown
}

ParameterBinding* ParameterBinding::bind(QWidget* widget, IParameter* parameter) {
    if (!widget)
        return nullptr;
    KXUI_INTERFACE_THREAD(widget);
    const QPointer<QWidget> alive(widget);
    const auto old = widget->findChildren<ParameterBinding*>(QString(), Qt::FindDirectChildrenOnly);
    qDeleteAll(old);
    if (!alive || !parameter)
        return nullptr;
    const QPointer<ParameterBinding> binding(new ParameterBinding(widget, parameter));
    if (!binding->m->isComplete()) {
        qWarning("ParameterBinding::bind - refused: %s tells no edits of a value",
                 widget->metaObject()->className());
        delete binding;
        return nullptr;
    }
    binding->m->connectAll();
    binding->m->show();
    return binding;
}

QWidget* ParameterBinding::widget() const {
    return m->widget;
}

IParameter* ParameterBinding::parameter() const {
    return m->isAlive() ? m->parameter : nullptr;
}

void ParameterBinding::refresh() {
    KXUI_INTERFACE_THREAD(this);
    m->show();
}

void ParameterBinding::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    QMetaObject::invokeMethod(m->widget, "cancelEdit", Qt::DirectConnection);
}

void ParameterBinding::finish(bool accepted) {
    m->finish(accepted);
}

} // namespace Kestrel::UI
