#pragma once

#include <KxUI/Export.h>

#include <QCloseEvent>
#include <QObject>

namespace Kestrel::UI {

/** Tells by signals when the widgets it is installed on move, change size, hide or are asked to
    close. Lets every event through. Interface thread. */
class KXUI_EXPORT WidgetMonitorEventFilter : public QObject {
    Q_OBJECT

public:
    explicit WidgetMonitorEventFilter(QObject* parent = nullptr);
    ~WidgetMonitorEventFilter() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /** What happened to `object`, told before the object hears of it. `event` lives for the
        duration of the call, so connect directly. */
    void moveEvent(QObject* object, QMoveEvent* event);
    void resizeEvent(QObject* object, QResizeEvent* event);
    void hideEvent(QObject* object, QHideEvent* event);
    void closeEvent(QObject* object, QCloseEvent* event);
};

} // namespace Kestrel::UI
