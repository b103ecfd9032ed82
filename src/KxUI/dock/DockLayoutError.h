#pragma once

#include <KxUI/Export.h>

#include <QString>

namespace Kestrel::UI {

/** Why a layout document was refused. */
struct KXUI_EXPORT DockLayoutError {
    QString reason; ///< for the user, translated; empty: there was no error
    qint64 line = 0;
    qint64 column = 0;

    explicit operator bool() const { return !reason.isEmpty(); }
};

} // namespace Kestrel::UI
