#pragma once

#include <KxUI/Export.h>
#include <KxUI/dock/TrackedWidget.h>

#include <QCloseEvent>
#include <QObject>

#include <memory>

class QWidget;

namespace Kestrel::UI {

/** Remembers where named top-level widgets were, for the session and, when asked, in the settings,
    together with the state of the named splitters inside them. Widgets are known by their object
    names; one without a name is never remembered. Widgets are borrowed; null is
    ignored. Interface thread. */
class KXUI_EXPORT WidgetTracker : public QObject {
    Q_OBJECT

public:
    explicit WidgetTracker(QObject* parent = nullptr);
    ~WidgetTracker() override;

    /** Remembers `widget` when it is closed; `save` also across sessions. */
    void registerWidget(QWidget* widget, bool save);
    /** The place of `widget` is not remembered any more when it is closed; the place that was
        remembered before stays known. */
    void unregisterWidget(QWidget* widget);
    /** `unregisterWidget` for every widget. */
    void clearRegisteredWidgets();

    /** Puts `widget` where it was, from the settings or else from the session, and its named
        splitters as they were. A place on no present screen is pulled back. Returns whether a place
        was known. */
    bool restoreWidget(QWidget* widget);

    /** Remembers where `widget` is now, for the session. */
    void registerWidgetRect(QWidget* widget);

    /** Remembers a registered widget as on its close. */
    void saveWidgetLocation(QObject* object);

protected:
    /** Moves `widget` to its place of this session; false when there is none. */
    bool moveWidgetToRegisteredRect(QWidget* widget);

protected Q_SLOTS:
    /** A widget is asked to close: remembers where it is. */
    void onCloseEvent(QObject* object, QCloseEvent* event);
    /** Hiding saves nothing. */
    void onHideEvent(QObject* object, QHideEvent* event);

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
