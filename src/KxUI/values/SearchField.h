#pragma once

#include <KxUI/Export.h>

#include <QLineEdit>
#include <QStringList>

#include <memory>

class QMenu;

namespace Kestrel::UI {

/** A field for what to search for. It waits until typing pauses before it tells its text; Return
    and the arrow keys tell it at once, and so does an empty text.

    Keys: Return and F3 ask for the next result, with Shift for the previous one; Down and Up go to
    the results; Alt+Down opens the menu of the magnifier. Escape clears the field, which undo
    brings back; in an empty field it is left to the window. Return does not reach the window.
    Kestrel::UI::SearchPattern finds what was typed in the host's texts. Interface thread. */
class KXUI_EXPORT SearchField : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(int delay READ delay WRITE setDelay NOTIFY delayChanged)
    Q_PROPERTY(bool historyEnabled READ isHistoryEnabled WRITE setHistoryEnabled NOTIFY
                   historyEnabledChanged)
    Q_PROPERTY(QStringList history READ history WRITE setHistory NOTIFY historyChanged)

public:
    /** An empty field with a delay of 300 ms that remembers what it was used for. */
    explicit SearchField(QWidget* parent = nullptr);
    ~SearchField() override;

    /** How long a text rests until it is told, in milliseconds; with 0 every change is told by the
        next turn of the event loop. Negative ones are 0. */
    int delay() const;
    void setDelay(int milliseconds);

    /** Whether texts that were used (by Return, F3, the arrow keys or leaving the field) are
        offered in the menu of the magnifier. */
    bool isHistoryEnabled() const;
    void setHistoryEnabled(bool enabled);
    /** These texts, the newest first, at most 20; what is empty or twice is left out. */
    QStringList history() const;
    void setHistory(const QStringList& texts);

    /** Shows at the end of the field which of how many results is the present one, counted from 1,
        or with 0 only how many there are. A negative count shows nothing. */
    void setMatches(int current, int count);

    /** What else the menu of the magnifier offers, as whether capitals count. Borrowed; null for
        nothing. */
    void setOptionsMenu(QMenu* menu);

    QSize sizeHint() const override;

public Q_SLOTS:
    /** Shows the menu of the magnifier; nothing where it would be empty. */
    void openMenu();

Q_SIGNALS:
    /** The user searches for another text. Not sent for what the host sets. */
    void searchChanged(const QString& text);
    /** The user wants the next or the previous result; after searchChanged() where that is due. */
    void nextWanted();
    void previousWanted();
    /** The user goes to the results by `Qt::Key_Down` or `Qt::Key_Up`; after searchChanged() where
        that is due. */
    void leaveWanted(Qt::Key key);

    /** What their names say became another one, by whomever. */
    void delayChanged(int milliseconds);
    void historyEnabledChanged(bool enabled);
    void historyChanged();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
