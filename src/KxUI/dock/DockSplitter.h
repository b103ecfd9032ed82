#pragma once

#include <KxUI/Export.h>

#include <QList>
#include <QSplitter>

#include <memory>

namespace Kestrel::UI {

/** A branch of the workspace tree: its children are panes and further splitters. Deletes itself
    when its last child has gone, unless it is the root of its window. Interface thread. */
class KXUI_EXPORT DockSplitter : public QSplitter {
    Q_OBJECT

public:
    /** One without children; adding it to a splitter or a window gives it an owner. */
    explicit DockSplitter(Qt::Orientation orientation, QWidget* parent = nullptr);
    /** One whose children stand one above the other. */
    explicit DockSplitter(QWidget* parent = nullptr);
    ~DockSplitter() override;

    /** Gives all room to the child at `index` and keeps the sizes for later; -1 gives the kept
        sizes back. Sizes already kept are not replaced by those of an expansion. -1 with nothing
        kept, and an index outside the children, change nothing. */
    void expand(int index);

    /** The sizes without an expansion: the kept ones, else the current ones; pixels. */
    QList<int> realSizes() const;

    /** Removes this splitter when it is empty and neither the root of its window nor alone. Called
        after every change to the tree; may be called again from inside. */
    void updateDocks();

protected:
    bool event(QEvent* event) override;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
