#include "ModelTree.h"

#include <KxUI/dock/DockSplitter.h>

#include <algorithm>

namespace Kestrel::Test {

struct ModelTree::Node {
    bool isPane = false;
    Qt::Orientation orientation = Qt::Vertical;
    QStringList pages;
    Nodes children;
    Node* parent = nullptr;

    std::unique_ptr<Node> copy() const {
        auto result = std::make_unique<Node>();
        result->isPane = isPane;
        result->orientation = orientation;
        result->pages = pages;
        for (const auto& child : children)
            result->add(result->children.size(), child->copy());
        return result;
    }
    Node* add(std::size_t index, std::unique_ptr<Node> child) {
        child->parent = this;
        return children.insert(children.begin() + std::ptrdiff_t(index), std::move(child))->get();
    }
    std::size_t indexInParent() const {
        const auto& all = parent->children;
        const auto me = std::find_if(all.begin(), all.end(),
                                     [this](const auto& node) { return node.get() == this; });
        return std::size_t(me - all.begin());
    }
    std::unique_ptr<Node> takeFromParent() {
        const auto me = parent->children.begin() + std::ptrdiff_t(indexInParent());
        std::unique_ptr<Node> taken = std::move(*me);
        parent->children.erase(me);
        return taken;
    }
    static std::unique_ptr<Node> newPane(const QStringList& pages = {}) {
        auto pane = std::make_unique<Node>();
        pane->isPane = true;
        pane->pages = pages;
        return pane;
    }
    void collapse() {
        while (!isPane && children.size() == 1 && !children.front()->isPane) {
            const std::unique_ptr<Node> only = std::move(children.front());
            orientation = only->orientation;
            children.clear();
            for (auto& child : only->children)
                add(children.size(), std::move(child));
        }
        for (auto& child : children)
            child->collapse();
    }
    QString toString() const {
        if (isPane)
            return QLatin1Char('(') + pages.join(QLatin1Char(' ')) + QLatin1Char(')');
        QString text(QLatin1Char(orientation == Qt::Horizontal ? 'H' : 'V'));
        text += QLatin1Char('[');
        for (const auto& child : children)
            text += child->toString();
        return text + QLatin1Char(']');
    }
};

ModelTree::ModelTree() {
    m_windows.push_back(std::make_unique<Node>());
}

ModelTree::ModelTree(const ModelTree& other) {
    *this = other;
}

ModelTree& ModelTree::operator=(const ModelTree& other) {
    Nodes copies;
    for (const auto& window : other.m_windows)
        copies.push_back(window->copy());
    m_windows = std::move(copies);
    return *this;
}

ModelTree::~ModelTree() = default;

void ModelTree::collect(const Node& node, std::vector<Node*>& panes) {
    for (const auto& child : node.children) {
        if (child->isPane)
            panes.push_back(child.get());
        else
            collect(*child, panes);
    }
}

std::vector<ModelTree::Node*> ModelTree::panes() const {
    std::vector<Node*> all;
    for (const auto& window : m_windows)
        collect(*window, all);
    return all;
}

ModelTree::Node* ModelTree::pane(int index) const {
    return panes().at(std::size_t(index));
}

int ModelTree::indexOf(const Node* wanted) const {
    const auto all = panes();
    return int(std::find(all.begin(), all.end(), wanted) - all.begin());
}

std::size_t ModelTree::windowOf(const Node* node) const {
    while (node->parent)
        node = node->parent;
    const auto window = std::find_if(m_windows.begin(), m_windows.end(),
                                     [&](const auto& root) { return root.get() == node; });
    return std::size_t(window - m_windows.begin());
}

int ModelTree::paneCount() const {
    return int(panes().size());
}

QStringList ModelTree::pages(int index) const {
    return pane(index)->pages;
}

QStringList ModelTree::placed() const {
    QStringList all;
    for (const Node* each : panes())
        all += each->pages;
    return all;
}

int ModelTree::paneOf(const QString& page) const {
    const auto all = panes();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i]->pages.contains(page))
            return int(i);
    }
    return -1;
}

void ModelTree::addPane() {
    Node& root = *m_windows.front();
    root.add(root.children.size(), Node::newPane());
}

void ModelTree::insert(int index, int at, const QString& page) {
    QStringList& list = pane(index)->pages;
    list.insert(at < 0 ? list.size() : std::min(at, int(list.size())), page);
}

void ModelTree::take(const QString& page) {
    for (Node* each : panes())
        each->pages.removeAll(page);
}

void ModelTree::split(int index, Qt::Orientation orientation, bool before) {
    Node* node = pane(index);
    Node* parent = node->parent;
    const std::size_t at = node->indexInParent();
    if (parent->orientation != orientation && parent->children.size() > 1) {
        auto own = node->takeFromParent();
        Node* branch = parent->add(at, std::make_unique<Node>());
        branch->orientation = orientation;
        branch->add(0, std::move(own));
        branch->add(before ? 0 : 1, Node::newPane());
        return;
    }
    parent->orientation = orientation;
    parent->add(before ? at : at + 1, Node::newPane());
}

void ModelTree::removePane(int index) {
    Node* node = pane(index);
    while (node->parent) {
        Node* parent = node->parent;
        node->takeFromParent();
        if (!parent->children.empty())
            break;
        node = parent;
    }
}

bool ModelTree::isAlone(int index) const {
    for (const Node* node = pane(index)->parent; node; node = node->parent) {
        if (node->children.size() > 1)
            return false;
    }
    return true;
}

bool ModelTree::isFloating(int index) const {
    return windowOf(pane(index)) > 0;
}

void ModelTree::removeWindowOf(int index) {
    m_windows.erase(m_windows.begin() + std::ptrdiff_t(windowOf(pane(index))));
}

void ModelTree::closeIfEmpty(int index) {
    if (pages(index).isEmpty() && isFloating(index) && isAlone(index))
        removeWindowOf(index);
}

void ModelTree::addWindow(const QStringList& pages) {
    auto root = std::make_unique<Node>();
    root->add(0, Node::newPane(pages));
    m_windows.push_back(std::move(root));
}

void ModelTree::drop(const QString& page, int source, int target, UI::DockDropZone zone,
                     int index) {
    Node* sourceNode = source < 0 ? nullptr : pane(source);
    Node* node = pane(target);
    if (zone != UI::DropCentre) {
        const bool before = zone == UI::DropLeft || zone == UI::DropTop;
        const bool across = zone == UI::DropLeft || zone == UI::DropRight;
        split(target, across ? Qt::Horizontal : Qt::Vertical, before);
        node = pane(indexOf(node) + (before ? -1 : 1));
    }
    node->pages.insert(index < 0 ? node->pages.size() : std::min(index, int(node->pages.size())),
                       page);
    if (sourceNode)
        closeIfEmpty(indexOf(sourceNode));
}

ModelTree ModelTree::collapsed() const {
    ModelTree result(*this);
    for (auto& window : result.m_windows)
        window->collapse();
    return result;
}

QString ModelTree::toString() const {
    QString text;
    for (const auto& window : m_windows)
        text += window->toString() + QLatin1Char('\n');
    return text;
}

namespace {

QString describeBranch(const QSplitter& splitter) {
    QString text(QLatin1Char(splitter.orientation() == Qt::Horizontal ? 'H' : 'V'));
    text += QLatin1Char('[');
    for (int i = 0; i < splitter.count(); ++i) {
        const QWidget* child = splitter.widget(i);
        if (const auto* dock = qobject_cast<const UI::Dock*>(child)) {
            QStringList pages;
            for (int tab = 0; tab < dock->count(); ++tab)
                pages.append(dock->widget(tab)->objectName());
            text += QLatin1Char('(') + pages.join(QLatin1Char(' ')) + QLatin1Char(')');
        } else if (const auto* branch = qobject_cast<const QSplitter*>(child)) {
            text += describeBranch(*branch);
        } else {
            text += QLatin1Char('?');
        }
    }
    return text + QLatin1Char(']');
}

} // namespace

QString describe(const UI::DockMainWindow& workspace) {
    QString text = describeBranch(*workspace.rootSplitter()) + QLatin1Char('\n');
    const auto windows = workspace.floatingWindows();
    for (const UI::DockWindow* window : windows)
        text += describeBranch(*window->rootSplitter()) + QLatin1Char('\n');
    return text;
}

} // namespace Kestrel::Test
