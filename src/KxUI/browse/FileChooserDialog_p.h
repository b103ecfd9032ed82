#pragma once

#include <KxUI/browse/ChooserForm_p.h>
#include <KxUI/browse/ChooserSettings_p.h>
#include <KxUI/browse/ChooserState_p.h>
#include <KxUI/browse/FileChooserDialog.h>
#include <KxUI/browse/FolderQuestion_p.h>

#include <QPointer>
#include <QTimer>

class QMenu;

namespace Kestrel::UI {

/** The data of a FileChooserDialog, and what its fields do. */
class FileChooserDialogPrivate {
public:
    using Choice = FileChooserDialog::Choice;

    /** A kind of files. */
    struct Filter {
        QString text;
        QStringList patterns;
        std::vector<std::string> suffixes;
    };

    explicit FileChooserDialogPrivate(FileChooserDialog* dialog);

    void setUp();

    /** Takes a new setting over into the fields. */
    void settingChanged();
    void fillFilters(const QStringList& texts);
    void chooseFilter(int index);
    void setName(const std::string& name, const std::vector<std::string>& chosen = {});
    void showPurpose();

    /** Before the dialog is seen for the first time. */
    void begin();
    /** When it is closed. */
    void remember(bool isAccepted);

    std::vector<Choice> choices() const;
    void tryAccept();
    void escape();

    /** The folder in a text, absolute; that which is shown for an empty one. */
    QByteArray folderOf(const std::string& typed) const;

    FileChooserDialog* q;
    ChooserForm form;
    NameRules rules;
    ChooserState state;
    ChooserState::Rules stateRules;
    ChooserSettings settings;
    FolderQuestion question;
    QTimer pause; ///< after the last key
    std::function<QString(const std::vector<Choice>&)> validator;
    QString purpose;
    QStringList filterTexts;
    std::vector<Filter> filters;
    QString ownPattern;
    QByteArray defaultSuffix;
    QByteArray wantedFolder; ///< until the dialog is shown
    QByteArray wantedRow;    ///< the same
    QString acceptText;
    QString ownTitle; ///< where the host gave none
    QPointer<QWidget> extra;
    QPointer<QWidget> focusBefore;   ///< of a sheet
    std::vector<std::string> chosen; ///< rows that the name was made of
    std::string savedName;           ///< to come back to after going to a folder
    std::vector<Choice> finished;    ///< what was chosen in the end
    int padding = 4;
    bool foldsWanted = true;
    bool hasBegun = false;
    bool isFilling = false;
    bool isDenied = false; ///< the folder that is shown cannot be written

private:
    bool isSaving() const { return rules.mode == NameRules::Mode::SaveFile; }
    bool isFolderMode() const { return rules.mode == NameRules::Mode::OpenFolder; }
    NameInput input() const;
    std::shared_ptr<const FileListing> listing() const;
    NameReading reading() const;
    std::vector<Choice> choicesOf(const NameReading& reading, const FileListing& listing,
                                  const QByteArray& folder) const;
    std::string nameText() const;
    const Filter& currentFilter() const;

    void connectFields();
    void connectBrowser();
    void makeShortcuts();
    void textEdited();
    void selectionChanged();
    void folderChanged();
    void filterChosen(int index);
    void showOwnFilter();
    void applyFilter();
    void chooseKind(int kind);
    void choosePadding(int digits);
    void stepVersion(int by);
    void takeNextVersion();
    void fillRecent(QMenu& menu);
    void goTo(const QByteArray& path);

    void refresh();
    void refreshNotice();
    void refreshFields(const NameReading& reading);
    void say(const QString& problem);
    QString folderToBeMade(const NameReading& reading) const;

    void follow(ChooserState::Deed deed, const NameReading& reading);
    void ask(const NameReading& reading);
    void answered(const FolderAnswer& answer);
    void finish(const NameReading& reading);
    void makeFolder(const NameReading& reading);
    void showPhase(const NameReading& reading);
    void showSheet(const NameReading& reading);
    void hideSheet();
    void askWritability();
    void rest();

    NameReading m_asked;                         ///< what is being asked about
    std::shared_ptr<const FileListing> m_answer; ///< the folder's; null when it has not told
    QByteArray m_askedFolder;
    QObject m_listener; ///< context of all connections: widgets outlive the data
};

} // namespace Kestrel::UI
