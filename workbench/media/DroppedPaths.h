#pragma once

#include <QByteArray>
#include <QList>

class QMimeData;

namespace Kestrel::Workbench {

/** The files and folders that something dragged stands for, in the bytes of the file system; of a
    sequence of the list its name with # for the frame. Empty for what is not on this machine. */
QList<QByteArray> droppedPaths(const QMimeData& data);

} // namespace Kestrel::Workbench
