#pragma once

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockDropZone.h>
#include <KxUI/dock/DockMainWindow.h>

#include <QStringList>

#include <memory>
#include <vector>

namespace Kestrel::Test {

/** A workspace as a plain tree, with the rules by which it changes, and nothing of widgets. Panes
    are named by their index in depth-first order over all windows, as `DockMainWindow::docks` lists
    them. */
class ModelTree {
public:
    ModelTree();
    ModelTree(const ModelTree& other);
    ModelTree& operator=(const ModelTree& other);
    ~ModelTree();

    int paneCount() const;
    QStringList pages(int pane) const;
    /** Every page that is in some pane. */
    QStringList placed() const;

    void addPane();
    void insert(int pane, int index, const QString& page);
    /** Takes a page out and nothing else. */
    void take(const QString& page);
    void split(int pane, Qt::Orientation orientation, bool before);
    void removePane(int pane);
    /** Closes the floating window of a pane that is empty and alone in it. */
    void closeIfEmpty(int pane);
    bool isAlone(int pane) const;
    bool isFloating(int pane) const;
    int paneOf(const QString& page) const;
    /** A new floating window with one pane. */
    void addWindow(const QStringList& pages);
    void removeWindowOf(int pane);
    /** Drops a page that has been taken out of `source`. */
    void drop(const QString& page, int source, int target, UI::DockDropZone zone, int index);
    /** As a layout keeps it: without splitters that hold nothing but another one. */
    ModelTree collapsed() const;

    QString toString() const;

private:
    struct Node;
    using Nodes = std::vector<std::unique_ptr<Node>>;
    Node* pane(int index) const;
    int indexOf(const Node* wanted) const;
    static void collect(const Node& node, std::vector<Node*>& panes);
    std::vector<Node*> panes() const;
    std::size_t windowOf(const Node* node) const;

    Nodes m_windows; // the roots, that of the main window first
};

/** The same words for a real workspace. */
QString describe(const UI::DockMainWindow& workspace);

} // namespace Kestrel::Test
