#pragma once

#include <KxUI/Export.h>
#include <KxUI/kit/WheelPolicy.h>

#include <QComboBox>

#include <memory>

namespace Kestrel::UI {

/** A combo box that says what to choose ("Choose a camera") until something is chosen. Nothing is
    chosen by adding items. Lists of more than 20 items open with a field to search them; typing on
    the closed box opens it, too. The value of the edits is the index, -1 for the prompt.
    Interface thread. */
class KXUI_EXPORT PromptComboBox : public QComboBox {
    Q_OBJECT
    Q_PROPERTY(QString prompt READ prompt WRITE setPrompt NOTIFY promptChanged)
    Q_PROPERTY(Behaviour behaviour READ behaviour WRITE setBehaviour NOTIFY handlingChanged)
    Q_PROPERTY(Kestrel::UI::WheelPolicy::Policy wheelPolicy READ wheelPolicy WRITE setWheelPolicy
                   NOTIFY handlingChanged)

public:
    /** What the box shows after a choice. */
    enum Behaviour {
        PromptUntilChosen = 0, ///< what was chosen
        PromptAgain = 1        ///< the prompt; the items are actions
    };
    Q_ENUM(Behaviour)

    /** An empty box that prompts by "Choose…". */
    explicit PromptComboBox(QWidget* parent = nullptr);
    ~PromptComboBox() override;

    /** Shown while nothing is chosen, and the accessible name meanwhile where the host gave none.
     */
    QString prompt() const;
    void setPrompt(const QString& prompt);

    /** `PromptUntilChosen` at first. With `PromptAgain` arrow keys and letters open the list, the
        wheel does nothing, and a choice is no edit of a value: only chosen() tells of it. */
    Behaviour behaviour() const;
    void setBehaviour(Behaviour behaviour);

    /** `WheelWhenFocused` at first. */
    WheelPolicy::Policy wheelPolicy() const;
    void setWheelPolicy(WheelPolicy::Policy policy);

    /** Shows other items, of which none is chosen. Call it on this class: that of QComboBox chooses
        the first. */
    template <class Model> // which overrides nothing, virtual or not
    void setModel(Model* model) {
        showModel(model);
    }

    /** Whether an item is chosen, by whomever. */
    bool hasChoice() const;
    /** Between editStarted() and editFinished(). */
    bool isEditing() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    void showPopup() override;
    void hidePopup() override;

public Q_SLOTS:
    /** Back to the prompt, as the host. */
    void clearChoice();
    /** Takes a run of notches or a held key back, as Escape does; nothing without one. */
    void cancelEdit();

Q_SIGNALS:
    /** The user chose an item, also the one that was chosen already; with `PromptAgain` before the
        prompt comes back. */
    void chosen(int index);

    /** Another item is the chosen one, by whomever; -1 for none. */
    void valueChanged(int index);
    /** The user begins to change the choice. Always followed by exactly one editFinished(). */
    void editStarted();
    /** The user changed it. */
    void valueEdited(int index);
    /** The edit is over. Not accepted: the choice is what it was at editStarted(). */
    void editFinished(bool accepted);

    /** The prompt became another one. */
    void promptChanged(const QString& prompt);
    /** Behaviour or wheel policy became other ones. */
    void handlingChanged();

protected:
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Private;

    void showModel(QAbstractItemModel* model);

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
