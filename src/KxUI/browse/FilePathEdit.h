#pragma once

#include <KxUI/Export.h>

#include <QByteArray>
#include <QLineEdit>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

/** A field for one path, with completion, a button that opens a chooser, and drop. It stands outside
    the namespace, where hosts expect it.

    What is typed is taken by Return, or when the field is left, and told once. Return is not passed on
    to the window where it took something, nor Escape where it brought something back. Paths that are
    not edited keep the bytes that they were given with. Without the focus a long path is cut in the
    middle, so that its name is seen; the whole of it is the tool tip.

    Keys: Tab and Down complete, Ctrl+Space opens the list; F4 and Alt+Down choose; to save a file,
    Ctrl+Plus and Ctrl+Minus change its version, in the name and in folders of the same version.
    Left to right in every language. No disk is asked on the interface thread, and without checks()
    none at all but for completion. Interface thread. */
class KXUI_EXPORT FilePathEdit : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged USER true)
    Q_PROPERTY(Kind kind READ kind WRITE setKind NOTIFY settingsChanged)
    Q_PROPERTY(QStringList nameFilters READ nameFilters WRITE setNameFilters NOTIFY settingsChanged)
    Q_PROPERTY(bool acceptsSequences READ acceptsSequences WRITE setAcceptsSequences NOTIFY
                   settingsChanged)
    Q_PROPERTY(QString baseFolder READ baseFolder WRITE setBaseFolder NOTIFY settingsChanged)
    Q_PROPERTY(
        bool prefersRelative READ prefersRelative WRITE setPrefersRelative NOTIFY settingsChanged)
    Q_PROPERTY(QString purpose READ purpose WRITE setPurpose NOTIFY settingsChanged)
    Q_PROPERTY(bool checks READ checks WRITE setChecks NOTIFY settingsChanged)
    Q_PROPERTY(Validity validity READ validity NOTIFY validityChanged)

public:
    /** What the path is for. */
    enum Kind {
        OpenFile, ///< a file, or a sequence, that is there
        SaveFile, ///< one to be written
        Folder,   ///< a folder that is there
        Any       ///< whatever is there
    };
    Q_ENUM(Kind)

    /** What is known of the path. */
    enum Validity {
        NotChecked,  ///< nobody has asked, or the field is empty
        Checking,    ///< the answer is awaited
        Valid,       ///< it can be what kind() says
        Missing,     ///< it is not there, or, to be saved, its folder is not
        WrongKind,   ///< a folder in the place of a file, or the other way round
        NotReachable ///< no answer within two seconds, or no permission to ask
    };
    Q_ENUM(Validity)

    /** An empty field to open a file. */
    explicit FilePathEdit(QWidget* parent = nullptr);
    ~FilePathEdit() override;

    /** What stands in the field, without blanks at both ends, not expanded; also what is not taken
        yet. */
    QString path() const;
    /** What to open: expanded, absolute, without steps, in the system's encoding; of a sequence with #
        for the frame. Empty where the field is, or where it means nothing, as an address on another
        computer. */
    QByteArray rawPath() const;
    /** Shows a path by its bytes, relative to baseFolder() where that is preferred. */
    void setRawPath(const QByteArray& path);

    /** Whether the user changes the path by a key that is held. */
    bool isEditing() const;

    /** What the path is for; at first OpenFile. */
    Kind kind() const;
    void setKind(Kind kind);

    /** Which files are completed, chosen and dropped, as `Images (*.exr *.dpx)` or patterns alone; at
        first all. What is typed is not held to them. */
    QStringList nameFilters() const;
    void setNameFilters(const QStringList& filters);

    /** Whether numbered frames are one thing: listed, chosen and dropped by the name of their
        sequence. At first off. */
    bool acceptsSequences() const;
    void setAcceptsSequences(bool accepts);

    /** What relative paths count from; empty, as at first, for the current directory. */
    QString baseFolder() const;
    void setBaseFolder(const QString& folder);
    /** Whether what is chosen or dropped below, or beside, the base folder is shown as the way from
        there; at first off. */
    bool prefersRelative() const;
    void setPrefersRelative(bool prefers);

    /** Replaces variables in the text before it means a path. Called on the interface thread, often;
        must ask no disk. None at first: then `$` is a letter like any other. */
    void setExpander(std::function<QString(const QString&)> expander);

    /** Under which purpose the file chooser remembers folder, filter and size; see
        Kestrel::UI::FileChooserDialog::setPurpose(). Empty, as at first, for none. */
    QString purpose() const;
    void setPurpose(const QString& purpose);

    /** Called in place of the file chooser: an asset browser. Returns at once, and has
        chooseRawPath() called when the user has chosen. Null for the chooser. */
    void setBrowser(std::function<void(FilePathEdit*)> browser);

    /** Whether a disk is asked about the path, on another thread, 300 ms after the last key; at first
        off. The field takes any text, whatever comes of it. */
    bool checks() const;
    void setChecks(bool checks);
    /** What came of it. */
    Validity validity() const;
    /** The same as a sentence, as that a file to be saved exists; empty where there is nothing to
        say. */
    QString validityText() const;

public Q_SLOTS:
    /** Shows another path. While the user types, nothing where it is the one shown before; another
        one replaces what was typed. QLineEdit::setText() does the same. */
    void setPath(const QString& path);

    /** Takes what stands in the field, as Return does. */
    void finishEditing();

    /** The user chose this path elsewhere: one edit, which undo takes back. */
    void chooseRawPath(const QByteArray& path);

    /** Opens the file chooser, or what setBrowser() gave. */
    void browse();

    /** Takes an edit by a held key, or what is typed, back. */
    void cancelEdit();

Q_SIGNALS:
    /** The path became another one, by whomever: once an edit, when it is taken, and at each step of
        a key that is held. `textEdited` tells of every letter. */
    void pathChanged(const QString& path);
    /** The user changes the path. Always followed by one editFinished(). */
    void editStarted();
    /** The user changed the path. */
    void valueEdited(const QString& path);
    /** The edit is over; not accepted: the path is what it was at editStarted(). */
    void editFinished(bool accepted);

    /** What its name says became another one. */
    void validityChanged();
    /** Kind, filters, base folder, or a switch. */
    void settingsChanged();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
