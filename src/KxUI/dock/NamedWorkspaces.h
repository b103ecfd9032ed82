#pragma once

#include <KxUI/Export.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace Kestrel::UI {

class DockMainWindow;

/** The arrangements of a workspace that its users gave names to: one layout file each, "NAME.xml",
   in a folder of the host.

    Files are read and written when a function is called, on the interface thread, so the folder
    should be a local one. A file is replaced as a whole or stays as it was. Files whose names could
    not have been given here are neither listed nor touched. NamedWorkspacesMenu is a menu for all
    this. Interface thread. */
class KXUI_EXPORT NamedWorkspaces : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString folder READ folder WRITE setFolder NOTIFY folderChanged)
    Q_PROPERTY(QStringList names READ names NOTIFY namesChanged)
    Q_PROPERTY(QString current READ current NOTIFY currentChanged)

public:
    /** The longest name, in characters. */
    static constexpr int MaximumNameLength = 100;

    /** Those of `workspace`, which owns this object and may be null; they are nowhere until
        `setFolder` is called. */
    explicit NamedWorkspaces(DockMainWindow* workspace = nullptr);
    ~NamedWorkspaces() override;

    /** The workspace that is saved and restored, null without one. */
    DockMainWindow* workspace() const;

    /** Where the files lie; empty at first. The folder is made when something is saved. */
    QString folder() const;
    void setFolder(const QString& folder);

    /** The names, sorted as the user's language does, as they were when the folder was read last.
     */
    QStringList names() const;

    /** Whether there is a workspace of that name, whatever its upper and lower case. */
    bool contains(const QString& name) const;

    /** The name that was saved or restored last, as long as it is there; empty without one. What
        the user changed since then is not looked at. */
    QString current() const;

    /** Why a text cannot be a name, for the user; empty when it can. A name is not empty, has at
       most MaximumNameLength characters, and must be a file name everywhere: without a slash, a
       colon or a control character, and no name that a system reserves. */
    static QString problemOfName(const QString& name);

    /** `text` as names are kept: without blanks at its ends, and with single ones inside. Every
        function here does that to the names it is given. */
    static QString cleanName(const QString& text);

    /** Saves the present arrangement under a name, in place of one of that name. Like the functions
        below it returns whether that went well, and else says why in `error`, for the user; that
       may be null. */
    bool save(const QString& name, QString* error = nullptr);

    /** Arranges everything as it was saved, or changes nothing. See
        DockMainWindow::restoreWholeLayout. */
    bool restore(const QString& name, QString* error = nullptr);

    /** Gives a workspace another name, which no other one may have. */
    bool rename(const QString& name, const QString& newName, QString* error = nullptr);

    /** Deletes the file of a workspace. What is to be seen stays as it is. */
    bool remove(const QString& name, QString* error = nullptr);

public Q_SLOTS:
    /** Reads the folder again: other programs may have changed it. */
    void refresh();

Q_SIGNALS:
    /** The properties of these names changed. */
    void folderChanged(const QString& folder);
    void namesChanged(const QStringList& names);
    void currentChanged(const QString& current);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
