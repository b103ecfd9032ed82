#pragma once

#include <QFileDevice>

namespace Kestrel::UI {

/** Hands a file's last part, which still waits in memory, to the system, so that a full disk is
    told of now: QSaveFile::commit() takes a file for whole whose last part found no room. Returns
    whether all went well; always true for a device that is no file. */
inline bool flushed(QIODevice* device) {
    auto* const file = qobject_cast<QFileDevice*>(device);
    return !file || file->flush();
}

} // namespace Kestrel::UI
