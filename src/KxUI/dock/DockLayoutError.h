#pragma once

#include <KxUI/Export.h>

#include <QString>

namespace Kestrel::UI {

/** Why a layout document was refused. Its layout in memory is frozen. */
struct KXUI_EXPORT DockLayoutError {
    QString reason;    ///< for the user, translated; empty: there was no error
    qint64 line = 0;   ///< where in the document, from 1; 0 when none was read
    qint64 column = 0; ///< characters into the line

    /** The reason and where it is, for the user; empty without an error. */
    QString message() const;

    /** Whether there was an error. */
    explicit operator bool() const { return !reason.isEmpty(); }
};

} // namespace Kestrel::UI
