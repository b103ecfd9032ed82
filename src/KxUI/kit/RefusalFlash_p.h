#pragma once

#include <QWidget>

namespace Kestrel::UI {

/** A frame over a widget, for a moment: what was done there is refused. */
class RefusalFlash : public QWidget {
public:
    static constexpr int Milliseconds = 350;

    /** Deletes itself. Again over the same widget begins anew. */
    static void over(QWidget* widget);

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit RefusalFlash(QWidget* widget);

    int m_timer;
};

} // namespace Kestrel::UI
