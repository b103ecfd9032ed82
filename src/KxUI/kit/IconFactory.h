#pragma once

#include <KxUI/Export.h>

#include <QIcon>
#include <QString>
#include <QStringList>

namespace Kestrel::UI {

/** The library's icons by name. They are drawn as vectors in the palette's text colour when they
    are painted, so they are crisp at any size and device pixel ratio and readable on light and dark
    palettes. Disabled icons use the palette's disabled text, checked and selected ones its
    highlight. Each icon is made once per process and shared. Interface thread. */
class KXUI_EXPORT IconFactory {
public:
    IconFactory() = delete;

    /** The icon of that name; a null icon for a name that is not in names(). A host sees sharp
        icons on scaled screens with Qt::AA_UseHighDpiPixmaps set before its application object. */
    static QIcon icon(const QString& name);

    /** The names of all icons, in alphabetical order. */
    static QStringList names();
};

} // namespace Kestrel::UI
