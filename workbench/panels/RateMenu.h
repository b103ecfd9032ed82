#pragma once

#include <QMenu>

class QActionGroup;

namespace Kestrel::Workbench {

class Session;

/** The rates that the open sequence can be played at: the usual ones, and any other by hand. */
class RateMenu : public QMenu {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the menu */
    explicit RateMenu(Session* session, QWidget* parent = nullptr);

private:
    void showRate();
    void askForRate();

    Session* m_session;
    QActionGroup* m_rates;
    /** Checked where the rate is none of the usual ones. */
    QAction* m_other;
};

} // namespace Kestrel::Workbench
