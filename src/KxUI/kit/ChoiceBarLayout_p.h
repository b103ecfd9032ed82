#pragma once

#include <QRect>
#include <QSize>

#include <vector>

namespace Kestrel::UI {

/** How wide a choice wants to be. */
struct ChoiceWidth {
    int full = 0;
    int iconOnly = 0; ///< 0 where it has no icon
};

/** The room of a bar. */
struct ChoiceBarRoom {
    QSize size;
    int menuWidth = 0; ///< of the part that opens the menu of what finds no room
    bool uniform = false;
    Qt::LayoutDirection direction = Qt::LeftToRight;
};

/** Where the parts of a bar are. Wider than it has to be, each gets as much more. Narrower, choices
    that have an icon first lose their texts; then the last ones go into a menu. */
struct ChoiceBarLayout {
    std::vector<QRect> parts; ///< of the choices that are seen, the first ones
    QRect menu;               ///< empty where all are seen
    bool iconsOnly = false;

    static ChoiceBarLayout of(const std::vector<ChoiceWidth>& widths, const ChoiceBarRoom& room);

    int seen() const { return static_cast<int>(parts.size()); }
    /** The choice at a point; -1 for none. */
    int choiceAt(const QPoint& point) const;
    /** The rectangle of a choice: that of the menu's part for those in the menu. */
    QRect partOf(int choice) const;

    /** The width at which all texts are seen. */
    static int wantedWidth(const std::vector<ChoiceWidth>& widths, bool uniform);
    /** The least that can be used. */
    static int leastWidth(const std::vector<ChoiceWidth>& widths, bool uniform, int menuWidth);
};

} // namespace Kestrel::UI
