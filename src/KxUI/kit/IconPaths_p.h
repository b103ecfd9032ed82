#pragma once

#include <QPainterPath>
#include <QString>
#include <QStringList>

namespace Kestrel::UI {

/** The side of the square that icon outlines are drawn in. Straight edges lie on whole units, so
    that an icon of 16 pixels has no blurred edge. */
inline constexpr int IconUnits = 16;

/** What an icon consists of: a solid shape, and a second one that is painted paler. */
struct IconPaths {
    QPainterPath solid;
    QPainterPath pale;
};

/** The outlines of the icon of that name, both empty for an unknown name. */
IconPaths iconPaths(const QString& name);

/** The names that iconPaths() knows, in alphabetical order. */
QStringList iconPathNames();

} // namespace Kestrel::UI
