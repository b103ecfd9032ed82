#pragma once

#include <KxUI/Export.h>

#include <QList>
#include <QObject>

#include <memory>

class QWidget;

namespace Kestrel::UI {

/** The floating windows that are alive. Windows are borrowed; one that is destroyed leaves by
    itself. Interface thread. */
class KXUI_EXPORT FloatingWindowRegistry : public QObject {
    Q_OBJECT

public:
    explicit FloatingWindowRegistry(QObject* parent = nullptr);
    ~FloatingWindowRegistry() override;

    /** Adds a window; null and one that is listed already are ignored. */
    void addWindow(QWidget* window);
    /** Takes a window off the list; one that is not listed is ignored. */
    void removeWindow(QWidget* window);
    /** The windows in the order in which they were added. */
    QList<QWidget*> windows() const;

public Q_SLOTS:
    /** Takes a window off the list that is being destroyed; only its address is used. */
    void windowDestroyed(QObject* window);

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
