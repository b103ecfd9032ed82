#include "panels/RateMenu.h"

#include "play/FrameRate.h"
#include "play/Session.h"

#include <QActionGroup>
#include <QInputDialog>
#include <QLineEdit>
#include <QPushButton>

namespace Kestrel::Workbench {

namespace {

/** As users write them; the fractions behind them are exact. */
const char* const usualRates[] = {"23.976", "24", "25", "29.97", "30", "48", "50", "59.94", "60"};

Base::TimeBase usualRate(const char* text) {
    return parseFrameRate(QLatin1String(text)).value_or(Base::TimeBase());
}

} // namespace

RateMenu::RateMenu(Session* session, QWidget* parent)
    : QMenu(tr("Frames per Secon&d"), parent)
    , m_session(session)
    , m_rates(new QActionGroup(this)) {
    for (const char* text : usualRates) {
        QAction* action = addAction(tr("%1 fps").arg(QLatin1String(text)));
        action->setData(QString::fromLatin1(text));
        action->setCheckable(true);
        m_rates->addAction(action);
        connect(action, &QAction::triggered, session,
                [session, text] { session->setTimeBase(usualRate(text)); });
    }
    addSeparator();
    m_other = addAction(tr("&Other..."));
    m_other->setCheckable(true);
    m_rates->addAction(m_other);
    connect(m_other, &QAction::triggered, this, &RateMenu::askForRate);
    connect(session, &Session::timeBaseChanged, this, &RateMenu::showRate);
    showRate();
}

void RateMenu::showRate() {
    const Base::TimeBase current = m_session->formatter()->timeBase();
    const auto actions = m_rates->actions();
    for (QAction* action : actions) {
        const auto rate = parseFrameRate(action->data().toString());
        if (action == m_other || (rate && *rate == current))
            action->setChecked(true);
        if (action->isChecked() && action != m_other)
            return;
    }
}

/** Asks in a window of its own; nothing waits for it. */
void RateMenu::askForRate() {
    showRate(); // it was asked for, not chosen
    auto* dialog = new QInputDialog(parentWidget() ? parentWidget()->window() : nullptr);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Frame Rate"));
    dialog->setLabelText(tr("Frames per second, as 24, 23.976 or 30000/1001:"));
    dialog->setTextValue(QString::number(double(m_session->formatter()->timeBase().rate())));
    dialog->setOkButtonText(tr("Set"));
    auto* field = dialog->findChild<QLineEdit*>();
    const auto buttons = dialog->findChildren<QPushButton*>();
    if (field && !buttons.isEmpty()) {
        QPushButton* set = buttons.first();
        connect(field, &QLineEdit::textChanged, set,
                [set](const QString& text) { set->setEnabled(parseFrameRate(text).has_value()); });
    }
    connect(dialog, &QInputDialog::textValueSelected, m_session,
            [session = m_session](const QString& text) {
                if (const auto rate = parseFrameRate(text))
                    session->setTimeBase(*rate);
            });
    dialog->open();
}

} // namespace Kestrel::Workbench
