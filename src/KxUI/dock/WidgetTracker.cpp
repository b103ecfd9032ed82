#include <KxUI/dock/WidgetTracker.h>

#include <KxUI/dock/WidgetMonitorEventFilter.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/WindowPlacement.h>
#include <KxUI/settings/AppSettings.h>

#include <QCoreApplication>
#include <QMap>
#include <QPointer>
#include <QSplitter>
#include <QWidget>

namespace Kestrel::UI {

namespace {

WidgetMonitorEventFilter& monitor() {
    static QPointer<WidgetMonitorEventFilter> instance;
    if (!instance)
        instance = new WidgetMonitorEventFilter(QCoreApplication::instance());
    return *instance;
}

/** The splitters whose state is kept with the widget: named, and not like the widget, whose name is
    the key of its rectangle. */
QList<QSplitter*> rememberedSplitters(const QWidget* widget) {
    QList<QSplitter*> splitters = widget->findChildren<QSplitter*>();
    for (int i = int(splitters.size()) - 1; i >= 0; --i) {
        const QString name = splitters.at(i)->objectName();
        if (name.isEmpty() || name == widget->objectName())
            splitters.removeAt(i);
    }
    return splitters;
}

void placeAt(QWidget* widget, const QRect& rect) {
    const QRect place = WindowPlacement::pulledBack(rect, WindowPlacement::availableAreas());
    widget->resize(place.size());
    widget->move(place.topLeft());
}

} // namespace

class WidgetTracker::Private {
public:
    QMap<QString, TrackedWidget> tracked;
    QMap<QString, QRect> rects; // of the session
    bool listens = false;
};

WidgetTracker::WidgetTracker(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>()) {}

WidgetTracker::~WidgetTracker() = default;

void WidgetTracker::registerWidget(QWidget* widget, bool save) {
    if (!widget)
        return;
    d->tracked.insert(widget->objectName(), TrackedWidget(widget->frameGeometry(), save));
    WidgetMonitorEventFilter& events = monitor();
    if (!d->listens) {
        d->listens = true;
        connect(&events, &WidgetMonitorEventFilter::closeEvent, this, &WidgetTracker::onCloseEvent);
        connect(&events, &WidgetMonitorEventFilter::hideEvent, this, &WidgetTracker::onHideEvent);
    }
    widget->installEventFilter(&events);
}

void WidgetTracker::unregisterWidget(QWidget* widget) {
    // The monitor stays on the widget: another tracker may listen to it.
    if (widget)
        d->tracked.remove(widget->objectName());
}

void WidgetTracker::clearRegisteredWidgets() {
    KXUI_INTERFACE_THREAD(this);
    d->tracked.clear();
}

bool WidgetTracker::restoreWidget(QWidget* widget) {
    KXUI_INTERFACE_THREAD(this);
    const QString name = widget ? widget->objectName() : QString();
    if (name.isEmpty())
        return false;
    const AppSettings settings;
    const QRect rect = settings.value(name).toRect();
    if (!rect.isValid())
        return moveWidgetToRegisteredRect(widget);

    placeAt(widget, rect);
    WindowPlacement::moveAside(widget);
    const auto splitters = rememberedSplitters(widget);
    for (QSplitter* splitter : splitters) {
        const QByteArray state = settings.value(splitter->objectName()).toByteArray();
        if (!state.isNull())
            splitter->restoreState(state);
    }
    return true;
}

void WidgetTracker::registerWidgetRect(QWidget* widget) {
    if (widget && !widget->objectName().isEmpty())
        d->rects.insert(widget->objectName(), QRect(widget->pos(), widget->size()));
}

void WidgetTracker::saveWidgetLocation(QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget || widget->objectName().isEmpty())
        return;
    const auto tracked = d->tracked.constFind(widget->objectName());
    if (tracked == d->tracked.constEnd())
        return;
    if (tracked->save()) {
        AppSettings settings;
        settings.setValue(widget->objectName(), QRect(widget->pos(), widget->size()));
        const auto splitters = rememberedSplitters(widget);
        for (const QSplitter* splitter : splitters)
            settings.setValue(splitter->objectName(), splitter->saveState());
    }
    registerWidgetRect(widget);
}

bool WidgetTracker::moveWidgetToRegisteredRect(QWidget* widget) {
    const auto rect = d->rects.constFind(widget ? widget->objectName() : QString());
    if (!widget || widget->objectName().isEmpty() || rect == d->rects.constEnd())
        return false;
    placeAt(widget, *rect);
    return true;
}

void WidgetTracker::onCloseEvent(QObject* object, QCloseEvent*) {
    saveWidgetLocation(object);
}

void WidgetTracker::onHideEvent(QObject*, QHideEvent*) {}

} // namespace Kestrel::UI
