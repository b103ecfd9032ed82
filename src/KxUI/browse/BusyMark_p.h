#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace Kestrel::UI {

/** A small ring that runs while something is waited for; it stands still where the style has no
    animations. */
class BusyMark : public QWidget {
public:
    static constexpr int Side = 16;

    explicit BusyMark(QWidget* parent);

    QSize sizeHint() const override { return {Side, Side}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QBasicTimer m_timer;
    int m_tick = 0;
};

} // namespace Kestrel::UI
