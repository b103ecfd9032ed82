#pragma once

#include <KxUI/Export.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace Kestrel::UI {

class DockMainWindow;

/** The arrangements of a workspace that its users gave names to: one layout file each, "NAME.xml",
    in a folder of the host.

    Files are read and written on another thread, in the order of the calls, so the folder may lie
    on a slow server. A file is replaced as a whole or stays as it was; what is being saved when the
    process ends may be lost. Files whose names could not have been given here are neither listed
    nor touched. NamedWorkspacesMenu is a menu for all this.

    The arrangement of the last session is not kept here: save it with DockMainWindow::saveLayout()
    in the workspace's closeEvent(), and the name of current() with it. Interface thread. */
class KXUI_EXPORT NamedWorkspaces : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString folder READ folder WRITE setFolder NOTIFY folderChanged)
    Q_PROPERTY(QStringList names READ names NOTIFY namesChanged)
    Q_PROPERTY(QString current READ current WRITE setCurrent NOTIFY currentChanged)

public:
    /** The longest name, in characters. */
    static constexpr int MaximumNameLength = 100;

    /** Is told how something went: with an empty text when well, else with what was wrong, for the
        user. Called once, later from the event loop; not any more once the object is destroyed, and
        may destroy it. */
    using Done = std::function<void(const QString& problem)>;

    /** Those of `workspace`, which owns this object and may be null; they are nowhere until
        `setFolder` is called. */
    explicit NamedWorkspaces(DockMainWindow* workspace = nullptr);
    ~NamedWorkspaces() override;

    /** The workspace that is saved and restored, null without one. */
    DockMainWindow* workspace() const;

    /** Where the files lie; empty at first. The folder is made when something is saved. Another one
        has no names until it has been read; namesChanged() tells. */
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
    /** Makes a name the current one and arranges nothing: for hosts that restore the arrangement of
        the last session by themselves. Call it after setFolder(); where the folder is still to be
        read, it becomes the current one then. A name that is not there stands for none. */
    void setCurrent(const QString& name);

    /** Why a text cannot be a name, for the user; empty when it can. A name is not empty, has at
        most MaximumNameLength characters, and must be a file name everywhere: without a slash, a
        colon or a control character, and no name that a system reserves. */
    static QString problemOfName(const QString& name);

    /** `text` as names are kept: without blanks at its ends, and with single ones inside. Every
        function here does that to the names it is given. */
    static QString cleanName(const QString& text);

    /** Saves the arrangement as it is at this call under a name, in place of one of that name. */
    void save(const QString& name, const Done& done = {});

    /** Arranges everything as it was saved, once the file has been read, or changes nothing. See
        DockMainWindow::restoreWholeLayout. */
    void restore(const QString& name, const Done& done = {});

    /** Gives a workspace another name, which no other one may have. */
    void rename(const QString& name, const QString& newName, const Done& done = {});

    /** Deletes the file of a workspace. What is to be seen stays as it is. */
    void remove(const QString& name, const Done& done = {});

public Q_SLOTS:
    /** Reads the folder again: other programs may have changed it. namesChanged() tells. */
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
