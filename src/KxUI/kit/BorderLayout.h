#pragma once

#include <KxUI/Export.h>

#include <QLayout>

#include <memory>

namespace Kestrel::UI {

class BorderLayoutPrivate;

/** Strips along the four edges and a centre that gets what remains, as a host's window or a panel
    with a bar above and a status line below. North and south go over the full width and are as high
    as their items want at that width; start and end share the height that is left. Several items of
    one edge lie next to each other, the first one outermost. Items of the centre lie over each
    other in the same rectangle, for a host that shows one of them.

    What is hidden takes no room, and no spacing either. Where the room is short, strips shrink from
    their hints towards their minimum sizes, so that the centre keeps its own; where even that is
    too much, the outermost strips come first. Interface thread. */
class KXUI_EXPORT BorderLayout : public QLayout {
    Q_OBJECT

public:
    /** Where an item lies. */
    enum Place {
        Centre, ///< what the strips leave
        North,  ///< above
        South,  ///< below
        Start,  ///< at the left, or at the right where text runs from right to left
        End     ///< opposite of the start
    };
    Q_ENUM(Place)

    /** Without margins, and with the style's spacing. Lays out `parent` when it is given. */
    explicit BorderLayout(QWidget* parent = nullptr);
    ~BorderLayout() override;

    /** Appends a widget, which becomes a child of the laid out one. Null is ignored. */
    void addWidget(QWidget* widget, Place place = Centre);
    /** Appends an item and takes it, a layout too. Null is ignored. */
    void add(QLayoutItem* item, Place place);
    /** Appends an item to the centre, as QLayout's functions do. */
    void addItem(QLayoutItem* item) override;

    /** The first widget of that place; null without one. */
    QWidget* widgetAt(Place place) const;

    /** The items in the order in which they were added. */
    int count() const override;
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;

    /** What the items want together, with margins. */
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    Qt::Orientations expandingDirections() const override;
    /** True when an item that is not hidden has. */
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;

    void invalidate() override;
    void setGeometry(const QRect& rect) override;

private:
    const std::unique_ptr<BorderLayoutPrivate> d;
};

} // namespace Kestrel::UI
