#pragma once

#include <KxUI/Export.h>

#include <QByteArray>
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>

namespace Kestrel::UI {

class PathBarPrivate;

/** The path of a folder as a row of buttons, one a component, that turns into a text field.

    A button goes to its folder, the arrow behind it shows a menu of what lies in there. Where there
    is no room, those in the middle are in a menu behind dots. A click on free space, F4, Ctrl+L, `/`
    or `~` begins to edit; Return goes there, Escape brings the buttons back. What is typed may be
    absolute, begin with `~/`, count from path(), or be an address of a file; folders are completed
    by Tab and Down. Left, Right, Home and End go along the buttons, Down opens the menu behind one,
    Ctrl+C copies the path and Ctrl+V goes to the one that was copied. What is dropped here is gone
    to.

    Going is the host's: pathEntered() says where, and setPath() shows it. A text is looked at before
    that, on another thread: what is not there, or does not answer within ten seconds, is said under
    the field, in errorText(). Paths are bytes in the system's encoding; what is not edited keeps
    them. Left to right in every language. Interface thread. */
class KXUI_EXPORT PathBar : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QByteArray path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(bool editing READ isEditing NOTIFY editingChanged)
    Q_PROPERTY(bool busy READ isBusy NOTIFY busyChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorTextChanged)
    Q_PROPERTY(bool completionEnabled READ isCompletionEnabled WRITE setCompletionEnabled NOTIFY
                   completionEnabledChanged)

public:
    /** A bar without a path. */
    explicit PathBar(QWidget* parent = nullptr);
    ~PathBar() override;

    /** The folder that is shown; absolute, or empty. */
    QByteArray path() const;

    /** Whether the field is shown, rather than the buttons. */
    bool isEditing() const;

    /** Whether a text that was entered is being looked at. */
    bool isBusy() const;

    /** What was wrong with the last text; empty for nothing. */
    QString errorText() const;

    /** Whether names of folders are completed; at first on. */
    bool isCompletionEnabled() const;
    void setCompletionEnabled(bool enabled);

    /** Replaces variables in a text that was entered, before it is looked at. Called on the
        interface thread; must ask no disk. None at first: then `$` is a letter like any other. */
    void setExpander(std::function<QString(const QString&)> expander);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Shows another path, which no disk is asked about; relative ones are ignored. Ends no editing,
        but Escape then comes back to this one. */
    void setPath(const QByteArray& path);

    /** Begins to edit, with all of the path selected, or with that text where one is given, as the key
        that began it. */
    void startEditing(const QString& text = QString());

    /** Shows the buttons of path() again; what was typed, and what is being looked at, is forgotten. */
    void stopEditing();

    /** Goes to what was copied, if that is a path or addresses of files, and says whether it is. */
    bool paste();

Q_SIGNALS:
    /** The user goes to a folder: by a button, a menu, Return, a drop or paste(). */
    void pathEntered(const QByteArray& path);
    /** The same for a path of a file, or of a sequence, with # for the frame: its folder is to be
        shown, and the file selected in it. */
    void fileEntered(const QByteArray& path);

    /** What their names say became another one. */
    void pathChanged(const QByteArray& path);
    void editingChanged(bool editing);
    void busyChanged(bool busy);
    void errorTextChanged(const QString& text);
    void completionEnabledChanged(bool enabled);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    friend class PathBarPrivate;

    const std::unique_ptr<PathBarPrivate> d;
};

} // namespace Kestrel::UI
