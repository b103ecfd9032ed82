#pragma once

#include <KxUI/dock/DockMainWindow.h>

#include <QHash>
#include <QPointer>
#include <QString>

namespace Kestrel::Workbench {

struct BuiltInLayout;
class Session;

/** A window whose panels are pages in panes: made by id when they are first needed, kept while they
    are closed, so that they come back as they were, and arranged by layouts. A pane closes when the
    last of its pages leaves it, as long as the main window has another. */
class Workspace : public UI::DockMainWindow {
    Q_OBJECT

public:
    /** An empty one. @param session  borrowed; what the panels are made on */
    explicit Workspace(Session* session);
    ~Workspace() override;

    /** The panel of that id, made when it does not exist yet; null when no kind has that id.
        Whether it is in a pane is another question. */
    QWidget* page(const QString& id);

    /** Whether the panel is in a pane, behind other tabs or not. */
    bool holdsPage(const QString& id) const;

    /** Whether the panel can be seen: its tab is the one shown, and its pane is neither behind one
        that is expanded nor in a window that is closed or minimised. */
    bool showsPage(const QString& id) const;

    /** Brings a panel to the front, out of a minimised window or from behind an expanded pane if it
        is there, and gives it the focus. A closed one goes where it was, or else
        into the pane that has the focus. */
    void showPage(const QString& id);

    /** Takes a panel out of its pane. */
    void closePage(const QString& id);

    /** Arranges the pages as a layout says; those that it does not name are closed. The window
        stays where it is. */
    void arrange(const BuiltInLayout& layout);

    /** Saves the arrangement to a file, or leaves the file as it was. Returns what went wrong, for
        the user; nothing when it is saved. */
    QString saveTo(const QString& file);

    /** Arranges everything as a file says, or changes nothing. Returns what is wrong with it. */
    QString loadFrom(const QString& file);

    /** Keeps the arrangement in the settings, for `recall`. */
    void remember();

    /** Arranges everything as it was when the program was last left; false when it never was. What
        is wrong with it goes to `problem`, and then nothing is changed. */
    bool recall(QString* problem);

    QWidget* createPage(QString& id) override;

signals:
    /** A panel was made. */
    void pageMade(const QString& id, QWidget* page);

protected:
    void showEvent(QShowEvent* event) override;

    /** Destroys every panel. For a destructor that is about to destroy what they work on. */
    void destroyPages();

private:
    QString restore(QIODevice* device);
    QString restore(QByteArray document);
    void nameWindows();
    void fitWindows();

    Session* m_session;
    QHash<QString, QPointer<QWidget>> m_pages;
    /** It was arranged for other screens. */
    bool m_fitsScreen = false;
};

} // namespace Kestrel::Workbench
