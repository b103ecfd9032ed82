#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace Kestrel::Test {

/** What befalls a process that saves a file. */
enum class Fault {
    FileLimit,      ///< no file may grow beyond a number of bytes, as on a disk that is full there
    FullDisk,       ///< the folder's disk has so many pages of 4 KiB left
    ReadOnlyDisk,   ///< the folder's disk is mounted for reading
    ReadOnlyFolder, ///< the process may not write to the folder and its files
    DeathAtByte,    ///< writing beyond a number of bytes ends the process
};

/** Puts this process, a child that ends soon, under a fault of a folder. Mounts are the process's
    own. Where none may be made, what is nearest to it stands in. */
void befall(Fault fault, qint64 amount, const QString& folder);

/** Runs `work` in a copy of this process, and returns how it ended, as waitpid() tells it. Without
    `killAfterUs` the copy ends by itself, with what `work` returns. */
int inChild(const std::function<int()>& work, int killAfterUs = -1);

} // namespace Kestrel::Test
