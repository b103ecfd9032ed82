#pragma once

#include <KxUI/Export.h>

#include <QWidget>

namespace Kestrel::UI {

class Dock;

/** The bar on top of a pane that carries its tabs and buttons. While the pane's title is hidden it
   is a strip of 3 pixels, and shows the title while the mouse rests on it. GUI thread. */
class KXUI_EXPORT DockTitleBar : public QWidget {
    Q_OBJECT

public:
    /** The bar of `dock`, which owns it. Panes make their own. */
    explicit DockTitleBar(Dock* dock);
    ~DockTitleBar() override;

    /** Whether the mouse was pressed on the tabs and not released yet; a revealed title then stays.
     */
    bool isPressed() const { return m_pressed; }

    /** Releasing hides a revealed title again unless the mouse is over it. */
    void setPressed(bool pressed);

    /** Whether the title is shown only for as long as the mouse is here. */
    bool isRevealed() const { return m_revealed; }

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void stopTimer();
    void hideRevealedTitle();

    Dock* m_dock;
    bool m_pressed = false;
    int m_revealTimer = 0; // 0: none runs
    bool m_revealed = false;
};

} // namespace Kestrel::UI
