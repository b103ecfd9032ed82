#pragma once

#include <QWidget>

class QLayout;
class QToolButton;

namespace Kestrel::UI {
class JogWheel;
class TransportControlsWidget;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

class Session;

/** The controls under the timeline: notation, transport buttons round the time field, frame skip
    and jog wheel, wired to a session's player and navigator. */
class TransportRow : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the row */
    explicit TransportRow(Session* session, QWidget* parent = nullptr);

    UI::TransportControlsWidget* transport() const { return m_transport; }

private:
    void connectTransport();
    QLayout* makeSkip();
    QToolButton* skipButton(const QString& icon, int direction);
    void showState();
    void showTime();

    Session* m_session;
    UI::TransportControlsWidget* m_transport;
    UI::JogWheel* m_jogWheel;
};

} // namespace Kestrel::Workbench
