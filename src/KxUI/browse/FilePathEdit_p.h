#pragma once

#include <KxUI/browse/FilePathEdit.h>
#include <KxUI/browse/PathCompleter_p.h>
#include <KxUI/browse/PathProbe_p.h>
#include <KxUI/browse/PathText_p.h>
#include <KxUI/kit/EditBracket_p.h>

#include <QTimer>

class QAction;

namespace Kestrel::UI {

class FileChooserDialog;

/** A path as it is kept: its text, and the bytes that the text was made from. */
struct FilePathValue {
    QString text;
    QByteArray bytes;

    bool operator==(const FilePathValue& other) const {
        return text == other.text && bytes == other.bytes;
    }
};

} // namespace Kestrel::UI

struct FilePathEdit::Private {
    static constexpr int CheckAfter = 300; // milliseconds without a key
    static constexpr int AnswerWithin = 2000;
    static constexpr int DropAnswerWithin = 1000;

    explicit Private(FilePathEdit* field);

    void setUp();

    using FilePathValue = Kestrel::UI::FilePathValue;

    // What is kept.
    FilePathValue typed() const; ///< what stands in the field, as it would be taken
    FilePathValue valueOf(const QByteArray& path) const;
    void store(const FilePathValue& value);
    void replaceText(const QString& text);
    void hostSet(const FilePathValue& value);
    bool takeTyped(); ///< false where there is nothing to take, or the field is gone
    bool restoreText();
    void followClearButton(QObject* child);
    void takeByUser(const QByteArray& path);

    // What it means.
    Kestrel::UI::PathText::Place place() const;
    Kestrel::UI::PathText::Meaning meaningOf(const QString& text) const;
    void followSettings();
    QStringList patterns() const;

    // Keys.
    enum class Deed { None, Take, Restore, Browse, VersionUp, VersionDown, Paste };
    Deed deedOf(const QKeyEvent& event) const;
    void run(Deed deed, QKeyEvent& event);
    void changeVersion(int by, const QKeyEvent& event);
    bool paste();

    // What a disk says of it.
    void check();
    void ask();
    void takeAnswer(const Kestrel::UI::PathFound& found, bool isOfFolder);
    void tell(Validity now, const QString& sentence);

    // Drops.
    QByteArray dropped(const QMimeData& data) const;
    bool welcomes(const QDropEvent& event) const;
    void takeDrop(const QByteArray& path);

    // Looks.
    QRect textRoom() const;
    QString elided() const;
    void showButtons();
    void openChooser();

    FilePathEdit* const q;
    Kestrel::UI::EditBracket<FilePathEdit, FilePathValue> bracket;
    FilePathValue taken; ///< the last finished edit's
    QByteArray bytes;    ///< what the text in the field was made from
    bool isStoring = false;
    bool isUndoable = false; ///< what is stored can be taken back by undo
    bool isEdited = false;   ///< the text changes by the user
    bool isClearing = false; ///< the button that clears is down
    bool isCleared = false;

    Kind kind = OpenFile;
    QStringList filters;
    bool acceptsSequences = false;
    QString baseFolder;
    bool prefersRelative = false;
    std::function<QString(const QString&)> expander;
    std::function<void(FilePathEdit*)> browser;
    QString purpose;
    QPointer<Kestrel::UI::FileChooserDialog> chooser;

    Kestrel::UI::PathCompleter* completer = nullptr;
    Kestrel::UI::PathProbe probe;
    Kestrel::UI::PathProbe dropProbe;
    QTimer checkTimer;
    bool checks = false;
    Validity validity = NotChecked;
    QString validityText;
    QAction* browseAction = nullptr;
    QAction* stateAction = nullptr;
    bool isFirstPress = false; ///< the mouse brings the focus, over a text that was cut
};
