#pragma once

#include <QFile>

#include <csignal>
#include <cstdlib>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/** What may go wrong around a process. Where no disk may be mounted, the nearest thing to it is used. */
namespace Kestrel::Test {

/** Lets this process write no more than so many bytes of a file: it dies of them, or is told. */
inline void limitFiles(rlim_t bytes, bool deadly) {
    std::signal(SIGXFSZ, deadly ? SIG_DFL : SIG_IGN);
    const rlimit none{0, 0}, size{bytes, bytes};
    ::setrlimit(RLIMIT_CORE, &none);
    ::setrlimit(RLIMIT_FSIZE, &size);
}

/** A small disk, which the end of this process takes away, in place of a folder. */
inline bool mountDisk(const QString& folder) {
    return ::unshare(CLONE_NEWNS) == 0 &&
           ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("none", QFile::encodeName(folder).constData(), "tmpfs", 0, "size=256k") == 0;
}

/** Such a disk with what `save` puts there, and so many pages left. */
template <class Save>
void fillDisk(const QString& folder, int pagesLeft, Save save) {
    if (!mountDisk(folder))
        return limitFiles(rlim_t(pagesLeft) * 4096, false);
    save();
    QFile ballast(folder + QLatin1String("/ballast"));
    ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    while (ballast.write(QByteArray(4096, 'x')) == 4096) {
    }
    ballast.resize(ballast.size() - pagesLeft * 4096);
}

/** Runs `work` in a copy of this process; returns how that ended, as waitpid() tells it. */
template <class Work>
int inChild(Work work, int killAfterUs = -1) {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(int(work()));
    if (killAfterUs >= 0) {
        ::usleep(useconds_t(killAfterUs));
        ::kill(child, SIGKILL);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

} // namespace Kestrel::Test
