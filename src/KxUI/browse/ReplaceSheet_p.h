#pragma once

#include <KxUI/browse/ChooserTexts_p.h>

#include <QFrame>

class QLabel;

namespace Kestrel::UI {

class PushButton;

/** A question that stands where the buttons of a dialog were. Return and Escape are Cancel's; the
    letter of the other button, alone or with Alt, is that one's. */
class ReplaceSheet : public QFrame {
    Q_OBJECT

public:
    explicit ReplaceSheet(QWidget* parent = nullptr);

    void ask(const ChooserTexts::Question& question, bool offersNextVersion);
    PushButton* cancelButton() const { return m_cancel; }

Q_SIGNALS:
    void cancelled();
    void nextVersionWanted();
    void confirmed();

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QLabel* m_sign;
    QLabel* m_title;
    QLabel* m_text;
    PushButton* m_cancel;
    PushButton* m_next;
    PushButton* m_confirm;
};

} // namespace Kestrel::UI
