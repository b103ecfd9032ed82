#pragma once

#include <QPointer>
#include <QStackedWidget>
#include <QVector>

class QTabBar;

namespace Kestrel::UI {

/** The pages of a pane: the owner of their list, and the stack that shows one of them. The strip of
    tabs follows; nobody else adds tabs to it or takes them away. Pages that are deleted or given
    another parent by the host leave by themselves. Interface thread. */
class DockPages : public QStackedWidget {
    Q_OBJECT

public:
    enum class Leaving {
        Taken,     ///< by `take`
        Away,      ///< the host gave it another parent, or took it off the stack
        Destroyed, ///< it is in its destructor
    };

    explicit DockPages(QWidget* parent);
    ~DockPages() override;

    /** The strip that follows, borrowed; set once, before pages come. */
    void setStrip(QTabBar* strip);

    /** The index of a page, -1 of anything else. */
    int find(const QWidget* page) const;
    /** The first page of that object name, null for none and for an empty name. */
    QWidget* findNamed(const QString& name) const;
    /** The pages as they are now, for walks in which some may die. */
    QVector<QPointer<QWidget>> list() const;
    /** Whether a page is leaving by itself right now, in the middle of code of Qt's that cannot
        bear what hosts do. */
    bool isFollowing() const { return m_following; }
    /** Whether the list, the stack and the strip are the same. */
    bool isInStep() const;

    /** Puts a page of no pane before the one at `index` (-1: at the end). The first one is shown.
     */
    void insert(int index, QWidget* page);
    /** Takes a page out, hidden and still a child of the stack. When it was the current one, that
        which is at `next` then becomes current. */
    void take(QWidget* page, int next = 0);
    /** Moves a page to another place, counted without it; the current page stays current. */
    void move(QWidget* page, int to);
    /** Makes a page current; other indexes are ignored. */
    void setCurrent(int index);
    /** The index that was current before the last change of it. */
    int previous() const { return m_previous; }

    /** Reads titles and icons again. */
    void updateTitles();
    /** Takes a tab without a page off the strip. */
    void dropTab(int tab);
    /** From here on pages only leave: nothing follows them and nobody is told. */
    void abandon();

    /** The pages of the pane that `page` is a page of, null when it is in none. */
    static DockPages* holding(const QWidget* page);

Q_SIGNALS:
    /** Another page is current, or none. */
    void shown();
    /** A page is not in the list any more. */
    void left(QWidget* page, Kestrel::UI::DockPages::Leaving how);
    /** A page that left by its destruction is no child of the stack any more either. */
    void gone(QWidget* page);
    /** The user chose tab `index`. */
    void chosen(int index);

protected:
    void childEvent(QChildEvent* event) override;

private:
    struct Entry {
        QWidget* page;
        QPointer<QWidget> alive;
    };
    class Edit;

    void follow(int index);
    void dropFromStrip(int index);
    void shift(int from, int to);

    QTabBar* m_strip = nullptr;
    QVector<Entry> m_entries;
    QVector<QWidget*> m_dying;
    int m_edits = 0; // under way: what the stack and the strip say is our own doing
    int m_previous = 0;
    bool m_following = false;
    bool m_abandoned = false;
};

} // namespace Kestrel::UI
