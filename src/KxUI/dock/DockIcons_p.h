#pragma once

#include <QIcon>
#include <QString>

namespace Kestrel::UI {

/** The icons of panes by their image paths; a null icon for any other path. */
QIcon dockIcon(const QString& path);

} // namespace Kestrel::UI
