#include <KxUI/dock/DockTitleBar.h>

#include <KxUI/dock/Dock_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QPainter>
#include <QTimerEvent>

namespace Kestrel::UI {

namespace {

constexpr int RevealDelay = 200; // ms

}

class DockTitleBar::Private {
public:
    void stopTimer(DockTitleBar* bar) {
        if (revealTimer != 0)
            bar->killTimer(revealTimer);
        revealTimer = 0;
    }
    void hideRevealedTitle(const DockTitleBar* bar) {
        if (!revealed || pressed || bar->underMouse())
            return;
        revealed = false;
        DockPrivate::of(*dock).setTitleVisible(false);
    }

    bool isHidden() const { return dock && !dock->titleVisible(); }

    Dock* dock = nullptr;
    bool pressed = false;
    bool revealed = false;
    int revealTimer = 0; // 0: none runs
};

DockTitleBar::DockTitleBar(QWidget* dock)
    : QWidget(dock)
    , d(std::make_unique<Private>()) {
    d->dock = qobject_cast<Dock*>(dock);
}

DockTitleBar::~DockTitleBar() = default;

bool DockTitleBar::isPressed() const {
    return d->pressed;
}

void DockTitleBar::setPressed(bool pressed) {
    KXUI_INTERFACE_THREAD(this);
    if (d->pressed == pressed)
        return;
    d->pressed = pressed;
    if (!pressed)
        d->hideRevealedTitle(this);
    const auto tell = [this, pressed] { Q_EMIT pressedChanged(pressed); };
    if (d->dock)
        DockPrivate::of(*d->dock).announce(tell);
    else
        tell();
}

bool DockTitleBar::isRevealed() const {
    return d->revealed;
}

void DockTitleBar::endReveal() {
    d->revealed = false;
}

bool DockTitleBar::event(QEvent* event) {
    if (event->type() == QEvent::Enter && d->isHidden()) {
        d->stopTimer(this);
        d->revealTimer = startTimer(RevealDelay, Qt::CoarseTimer);
        update();
    }
    return QWidget::event(event);
}

void DockTitleBar::leaveEvent(QEvent* event) {
    d->stopTimer(this);
    d->hideRevealedTitle(this);
    update();
    QWidget::leaveEvent(event);
}

void DockTitleBar::timerEvent(QTimerEvent* event) {
    if (event->timerId() != d->revealTimer) {
        QWidget::timerEvent(event);
        return;
    }
    d->stopTimer(this);
    if (!d->isHidden())
        return;
    d->revealed = true;
    DockPrivate::of(*d->dock).setTitleVisible(true);
}

void DockTitleBar::paintEvent(QPaintEvent*) {
    if (!d->isHidden() || !underMouse())
        return;
    QPainter painter(this);
    painter.fillRect(rect(), palette().highlight());
}

} // namespace Kestrel::UI
