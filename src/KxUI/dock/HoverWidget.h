#pragma once

#include <KxUI/Export.h>
#include <KxUI/dock/DockDropZone.h>

#include <QWidget>

#include <memory>

namespace Kestrel::UI {

/** The indicator of a drop: a translucent window over the target pane with a dashed outline around
    the part that the drop would take. */
class KXUI_EXPORT HoverWidget : public QWidget {
    Q_OBJECT
    Q_PROPERTY(Kestrel::UI::DockDropZone zone READ zone WRITE setZone NOTIFY zoneChanged)

public:
    /** A hidden window for the whole pane, owned by whoever makes it. Interface thread. */
    explicit HoverWidget(QWidget* parent = nullptr);
    ~HoverWidget() override;

    /** The part of the pane that is outlined; `DropCentre`, all of it, at first. */
    DockDropZone zone() const;
    void setZone(DockDropZone zone);

Q_SIGNALS:
    /** Another part is outlined. */
    void zoneChanged(Kestrel::UI::DockDropZone zone);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /** Desktops that do not blend windows would show a black sheet: only the outline is left. */
    void updateShape();

    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
