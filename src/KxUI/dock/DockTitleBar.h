#pragma once

#include <KxUI/Export.h>

#include <QWidget>

#include <memory>

namespace Kestrel::UI {

/** The bar on top of a pane that carries its tabs and buttons. While the pane's title is hidden it
    is a strip of 3 pixels, and shows the title while the mouse rests on it. Interface thread. */
class KXUI_EXPORT DockTitleBar : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool pressed READ isPressed WRITE setPressed NOTIFY pressedChanged)

public:
    /** The bar of a pane, which owns it; panes make their own. With another parent, a plain bar. */
    explicit DockTitleBar(QWidget* dock = nullptr);
    ~DockTitleBar() override;

    /** Whether the mouse was pressed on the tabs and not released yet; a revealed title then stays.
     */
    bool isPressed() const;

    /** Releasing hides a revealed title again unless the mouse is over it. */
    void setPressed(bool pressed);

    /** Whether the title is shown only for as long as the mouse is here. */
    bool isRevealed() const;

    /** A revealed title is shown for good: it does not hide when the mouse leaves. */
    void endReveal();

Q_SIGNALS:
    /** The mouse went down on the tabs, or was released. */
    void pressedChanged(bool pressed);

protected:
    bool event(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
