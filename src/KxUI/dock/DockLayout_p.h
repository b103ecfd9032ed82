#pragma once

#include <KxUI/dock/DockGeometry_p.h>
#include <KxUI/dock/DockLayoutError.h>
#include <KxUI/kit/XmlLimits_p.h>

#include <QString>
#include <QVector>

#include <variant>
#include <vector>

class QIODevice;

namespace Kestrel::UI {

/** \file
    The arrangement of a workspace as plain values: what a layout document says, and nothing of
    widgets. Read from and written to a device here; taken from and built into a workspace by
    DockLayoutBuilder. */

struct LayoutPage {
    QString id;
    QString state; ///< the page's own "layoutState"; empty when it has none
};

struct LayoutPane {
    QString id;
    QString activePage;
    bool hideTitles = false;
    bool hasActivePage = false; ///< whether the document names an active page at all
    bool hasFocus = false;
    QVector<LayoutPage> pages;
};

/** Place of one child of a splitter, along the splitter's direction. */
struct LayoutSplit {
    int size = 0;
    int stretch = 0;
};

struct LayoutNode;

struct LayoutSplitter {
    Qt::Orientation orientation = Qt::Vertical;
    QVector<LayoutSplit> splits; ///< the i-th belongs to the i-th child
    std::vector<LayoutNode> children;
};

/** A widget in a splitter that is neither a splitter nor a pane; only its place is written. */
struct LayoutStranger {};

struct LayoutNode {
    std::variant<LayoutPane, LayoutSplitter, LayoutStranger> value;
};

struct LayoutWindow {
    SavedWindow place;
    std::vector<LayoutSplitter> splitters; ///< of a document written here exactly one
};

struct Layout {
    std::vector<LayoutWindow> windows; ///< the main window first
    QVector<LayoutPane> loosePanes;    ///< panes outside every window
};

/** Bounds of what is read; documents beyond them are refused. */
constexpr int MaxSplitterNesting = 100;
constexpr int MaxLayoutItems = 10000; ///< of windows, of splitters and of panes each
constexpr int MaxLayoutPages = 100000;
constexpr XmlBounds LayoutBounds{qint64(64) << 20, 1000, 64};

/** A document as far as it could be read, and why reading stopped there. */
struct LayoutReading {
    Layout layout;
    DockLayoutError error; ///< its reason is empty when the whole document was read
};

/** Reads a document from an open device. Unknown elements and attributes are skipped, unreadable
    numbers are 0, numbers are clamped to what widgets can hold. */
LayoutReading readLayout(QIODevice* device);

/** Whether the first element of the document is a layout of the known version. Reads from the
    device only what it needs; a random-access device is put back to where it was. */
bool startsLayout(QIODevice* device);

/** Writes a document to an open device; returns whether everything could be written. Characters
    that no XML document can hold are replaced, so what was written can always be read. */
bool writeLayout(QIODevice* device, const Layout& layout);

} // namespace Kestrel::UI
