#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/FrameRange.h>
#include <KxUI/files/FileInfo.h>
#include <KxUI/files/FileNames.h>

#include <QByteArray>
#include <QDialog>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace Kestrel::UI {

class FileBrowser;
class FileChooserDialogPrivate;

/** Asks the user for files, for a name to save as, or for a folder; image sequences are one thing.

    It never waits for a disk, and never opens a second window: what it has to ask or to say, as that
    files would be replaced, stands in the dialog. A question is always answered by Cancel when the
    user only presses Return. Names are bytes in the system's encoding.

    Show it by open(), which returns at once, or by exec(); chosen() or `done` tells of choices().
    Everything about one kind of question is remembered under its purpose().

    The name field takes a name, or where several are wanted, each in double quotes; a folder, which is
    gone to; a pattern of names (`*.exr`), which becomes a filter. A sequence may be written as
    `a.####.exr`, `a.@@@@.exr`, `a.%04d.exr` or `a.$F4.exr`; to open one, the name of any frame will do.

    Keys: Alt+N goes to the name, Return accepts; where files are saved, Ctrl+Plus and Ctrl+Minus
    change the version in the name and Ctrl+Shift+Plus takes the next free one. Escape takes one
    step back: it ends what is edited, searched, asked or waited for, then the dialog. Those of the list
    are told at FileBrowser.

    Between the question and the writing, others may write the same file: a host that cares creates it
    in a way that does not replace any. Interface thread. */
class KXUI_EXPORT FileChooserDialog : public QDialog {
    Q_OBJECT
    Q_PROPERTY(Mode mode READ mode WRITE setMode NOTIFY settingsChanged)
    Q_PROPERTY(QString purpose READ purpose WRITE setPurpose NOTIFY settingsChanged)
    Q_PROPERTY(QByteArray folder READ folder WRITE setFolder NOTIFY folderChanged)
    Q_PROPERTY(QStringList filters READ filters WRITE setFilters NOTIFY settingsChanged)
    Q_PROPERTY(int currentFilter READ currentFilter WRITE setCurrentFilter NOTIFY settingsChanged)
    Q_PROPERTY(
        QByteArray defaultSuffix READ defaultSuffix WRITE setDefaultSuffix NOTIFY settingsChanged)
    Q_PROPERTY(
        bool foldsSequences READ foldsSequences WRITE setFoldsSequences NOTIFY settingsChanged)
    Q_PROPERTY(bool acceptsSequences READ acceptsSequences WRITE setAcceptsSequences NOTIFY
                   settingsChanged)
    Q_PROPERTY(bool acceptsSingleFrames READ acceptsSingleFrames WRITE setAcceptsSingleFrames NOTIFY
                   settingsChanged)
    Q_PROPERTY(int padding READ padding WRITE setPadding NOTIFY settingsChanged)
    Q_PROPERTY(bool confirmsReplacing READ confirmsReplacing WRITE setConfirmsReplacing NOTIFY
                   settingsChanged)
    Q_PROPERTY(
        bool createsFolders READ createsFolders WRITE setCreatesFolders NOTIFY settingsChanged)
    Q_PROPERTY(QString acceptButtonText READ acceptButtonText WRITE setAcceptButtonText NOTIFY
                   settingsChanged)

public:
    /** What is asked for. */
    enum Mode {
        OpenFile,  ///< a file or a sequence that is there
        OpenFiles, ///< any number of them, in one folder
        SaveFile,  ///< a name to write
        OpenFolder ///< a folder
    };
    Q_ENUM(Mode)

    /** What was chosen. */
    struct Choice {
        /** File, folder, name of a sequence in patternStyle(), or the address of a scheme. */
        QByteArray path;
        bool isSequence = false; ///< The path has a place for the frame.
        /** Of a sequence to be opened: all of it, or the part that was asked for. Of one to be
            written: frameRange(). */
        Base::FrameRange frames;
        FileInfo info; ///< As listed; without a name when it is not listed.
        /** What is lost by writing it: of a sequence its frames; of a file, `replacesFile`. As far as
            the folder answered. */
        std::vector<Base::FrameRange> replaces;
        bool replacesFile = false; ///< A single file is lost.
    };

    /** To open a file. */
    explicit FileChooserDialog(QWidget* parent = nullptr);
    explicit FileChooserDialog(Mode mode, QWidget* parent = nullptr);
    ~FileChooserDialog() override;

    /** Shows a dialog that deletes itself. `done` is called once when the user accepts, and not at all
        when the user cancels. Set more on what is returned. Null for `filters` is not needed: an empty
        list shows all files. */
    static FileChooserDialog* open(Mode mode, QWidget* parent, const QString& purpose,
                                   const QStringList& filters,
                                   std::function<void(const std::vector<Choice>&)> done);
    using QDialog::open;

    /** What is asked for. */
    Mode mode() const;
    void setMode(Mode mode);

    /** What the dialog is for, as "open-plate": folder, filter, columns, size, files used last and
        the switch for sequences are remembered under it. Set it before the folder and what else is not
        to be read from there. Empty, as at first, remembers nothing. */
    QString purpose() const;
    void setPurpose(const QString& purpose);

    /** The folder that is shown; before the dialog is, the one set or remembered. Nobody looks whether
        it is there before it is shown. Without one it begins with the user's folder. */
    QByteArray folder() const;
    void setFolder(const QByteArray& folder);

    /** The name in the field, to begin with; with folders before it, setFolder() as well. To open a
        file, its row is selected; a frame selects its sequence. */
    void setFileName(const QByteArray& name);

    /** Kinds of files, as `Images (*.exr *.dpx)` or patterns alone; one for all files is added at the
        end where the last one is none, as `All files (*)`. The first suffix of the current one is
        given to names to be saved. */
    QStringList filters() const;
    void setFilters(const QStringList& filters);
    /** Index of the filter that holds; the last one is for all files. */
    int currentFilter() const;
    void setCurrentFilter(int index);

    /** Suffix of names to be saved where the filter asks for none; without a point. */
    QByteArray defaultSuffix() const;
    void setDefaultSuffix(const QByteArray& suffix);

    /** Whether sequences are listed as one row to begin with; the user may switch. At first on. */
    bool foldsSequences() const;
    void setFoldsSequences(bool folds);

    /** Whether sequences can be chosen, and single files; at first both. */
    bool acceptsSequences() const;
    void setAcceptsSequences(bool accepts);
    bool acceptsSingleFrames() const;
    void setAcceptsSingleFrames(bool accepts);

    /** Digits of the frame in the name of a new sequence, 1 to 9; at first 4. */
    int padding() const;
    void setPadding(int digits);

    /** How frames are written in paths; all styles are read. At first Hashes. */
    FileNames::Style patternStyle() const;
    void setPatternStyle(FileNames::Style style);

    /** The frames that the host will write, when it knows: others are not lost. At first none is
        known, and all that exist count. */
    std::optional<Base::FrameRange> frameRange() const;
    void setFrameRange(const std::optional<Base::FrameRange>& frames);

    /** Whether the user is asked before something is replaced; at first on. */
    bool confirmsReplacing() const;
    void setConfirmsReplacing(bool confirms);

    /** Whether a folder in a name to be saved, as in `v002/comp.exr`, is made when it is not there; at
        first off: then such a name cannot be taken. */
    bool createsFolders() const;
    void setCreatesFolders(bool creates);

    /** Text of the button that accepts; empty for "Open", "Save" or "Choose". */
    QString acceptButtonText() const;
    void setAcceptButtonText(const QString& text);

    /** Schemes of addresses that are taken unread, as `asset` for "asset://shot/12"; at first none. */
    QStringList schemes() const;
    void setSchemes(const QStringList& schemes);

    /** A widget of the host below the name, which the dialog then owns; null takes it away and
        deletes it. */
    QWidget* extraWidget() const;
    void setExtraWidget(QWidget* widget);

    /** Asked while the user types and before the dialog closes: a text that is not empty is shown
        under the name, and the dialog stays open. */
    void setValidator(std::function<QString(const std::vector<Choice>&)> validator);

    /** What the fields say at this moment, whether or not it can be accepted. What the folder has
        not told yet has a path, but no `info`. After chosen(): what was chosen. */
    std::vector<Choice> choices() const;

    /** The list; the dialog owns it. For thumbnails, menus and the order of tabs. */
    FileBrowser* browser() const;

public Q_SLOTS:
    /** As a click of the accepting button: checks, asks the disk and the user what has to be asked,
        and closes the dialog when all is well. */
    void accept() override;
    void done(int result) override;

Q_SIGNALS:
    /** The user has chosen; choices() tells what. Before accepted(). */
    void chosen();
    /** folder() is another one. */
    void folderChanged(const QByteArray& folder);
    /** One of the settings is another. */
    void settingsChanged();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    friend class FileChooserDialogPrivate;

    const std::unique_ptr<FileChooserDialogPrivate> d;
};

} // namespace Kestrel::UI
